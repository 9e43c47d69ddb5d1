#!/usr/bin/env bash
# Runs every fuzz target of a fuzzing build (`make fuzz`) for a while, each
# from a seed corpus made of our sample and test boards and of the inputs
# under tests/fuzz-regressions. Fails on the first target that finds a
# crash, a leak, undefined behaviour or a hang; the input is left under
# BUILD/fuzz-findings, to be added to tests/fuzz-regressions/TARGET/ with the
# fix. The executions of each run are added to BUILD/fuzz-runs.log.
#
# Leak checks run after every input that allocates more than it frees, which
# is most of them (the string pools grow), and cost four fifths of the time:
# --fast runs without them and then replays the whole corpus with them, for
# long runs.
#
#   tests/fuzz/run.sh [--build DIR] [--seconds N] [--fast] [TARGET...]
set -euo pipefail
cd "$(dirname "$0")/../.."
src=$PWD
build=build-fuzz
seconds=60
targets=()
leaks=1
while [ $# -gt 0 ]; do
  case "$1" in
    --build) build=$2; shift 2 ;;
    --seconds) seconds=$2; shift 2 ;;
    --fast) leaks=0; shift ;;
    -*) echo "run.sh: unknown option $1" >&2; exit 2 ;;
    *) targets+=("$1"); shift ;;
  esac
done
[ ${#targets[@]} -gt 0 ] || targets=(board pin_file preset legacy dtd filter utils)
build=$(cd "$build" && pwd)

# Seeds: which files of the tree each target starts from.
seed_files() {
  case "$1" in
    board) find data tests/data -name board.xml -not -path '*/board_parts/*' ;;
    pin_file) find data tests/data -name '*pins*.xml' ;;
    preset) find data tests/data -name 'preset*.xml' ;;
    legacy) find data/boards/board_parts tests/data/legacy tests/data/legacy_install -name '*.xml' ;;
    dtd) find data tests/data -name '*.xml' -size -64k ;;
    filter | utils) find tests/fuzz/seeds/"$1" -type f ;;
  esac
}

make_seeds() {
  local target=$1 dir=$2 n=0
  rm -rf "$dir"
  mkdir -p "$dir"
  while IFS= read -r file; do
    n=$((n + 1))
    if [ "$target" = dtd ]; then
      # The first byte of a DTD input picks the kind of file it is held as.
      for kind in 0 1 2 3 4; do
        { printf "\\x0$kind"; cat "$file"; } >"$dir/$n.$kind"
      done
    else
      cp "$file" "$dir/$n"
    fi
  done < <(seed_files "$target" | sort)
  if [ -d "tests/fuzz-regressions/$target" ]; then
    find "tests/fuzz-regressions/$target" -type f -not -name '.*' -exec cp {} "$dir/" \;
  fi
}

mkdir -p "$build/fuzz-findings"
status=0
for target in "${targets[@]}"; do
  program="$build/tests/fuzz/fuzz_$target"
  [ -x "$program" ] || { echo "run.sh: $program is not built (make fuzz)" >&2; exit 2; }
  seeds="$build/fuzz-seeds/$target"
  corpus="$build/fuzz-corpus/$target"
  make_seeds "$target" "$seeds"
  mkdir -p "$corpus"
  dict=()
  case "$target" in
    filter) dict=(-dict="$src/tests/fuzz/filter.dict") ;;
    board | pin_file | preset | legacy | dtd) dict=(-dict="$src/tests/fuzz/board.dict") ;;
  esac
  log="$build/fuzz-findings/$target.log"
  echo "fuzz $target: ${seconds}s"
  # A small quarantine keeps the heap that the leak checks scan small.
  asan=quarantine_size_mb=16:detect_leaks=$leaks
  options=(-timeout=10 -rss_limit_mb=2048 -print_final_stats=1
    -artifact_prefix="$build/fuzz-findings/$target-")
  set +e
  ASAN_OPTIONS=$asan "$program" "${dict[@]}" "${options[@]}" -max_total_time="$seconds" \
    -max_len=65536 "$corpus" "$seeds" >"$log" 2>&1
  rc=$?
  if [ $rc -eq 0 ] && [ $leaks -eq 0 ]; then
    ASAN_OPTIONS=quarantine_size_mb=16:detect_leaks=1 "$program" "${options[@]}" -runs=0 \
      "$corpus" >"$log.leaks" 2>&1
    rc=$?
    [ $rc -eq 0 ] || cat "$log.leaks" >>"$log"
  fi
  set -e
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  echo "$(date -u +%FT%TZ) $target ${runs:-0} rc=$rc" >>"$build/fuzz-runs.log"
  echo "fuzz $target: ${runs:-0} executions, exit $rc"
  if [ $rc -ne 0 ]; then
    grep -E '^(==[0-9]+==ERROR|SUMMARY|.*runtime error|artifact_prefix|Test unit written)' "$log" | head -20 >&2
    echo "fuzz $target: FAILED; the whole output is in $log" >&2
    status=1
  fi
done
exit $status
