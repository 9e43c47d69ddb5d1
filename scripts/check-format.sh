#!/usr/bin/env bash
# Checks that every tracked C++ source follows .clang-format. With --fix the
# sources are formatted in place instead.
set -euo pipefail
cd "$(dirname "$0")/.."
format=$(command -v clang-format || command -v clang-format-14 || true)
if [ -z "$format" ]; then
  echo "check-format: clang-format is not installed (scripts/install-deps.sh installs it)" >&2
  exit 1
fi
mapfile -t files < <(git ls-files '*.cpp' '*.h')
if [ "${1:-}" = "--fix" ]; then
  "$format" -i "${files[@]}"
else
  "$format" --dry-run --Werror "${files[@]}"
fi
