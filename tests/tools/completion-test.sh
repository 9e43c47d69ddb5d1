#!/usr/bin/env bash
# The bash completion of boardtool, run as bash runs it: each case sets the
# words of a command line and checks what _boardtool offers.
#   completion-test.sh BOARDTOOL COMPLETION_SCRIPT DATA_DIR
set -uo pipefail
tool=$1 script=$2 data=$3
# shellcheck source=/dev/null
source "$script"
failures=0

# expect WANT LINE: LINE is the command line after "boardtool ", split into
# words as bash splits it (at blanks, and around colons).
expect() {
  local want=$1 line=$2
  COMP_LINE="$tool $line"
  COMP_POINT=${#COMP_LINE}
  read -r -a COMP_WORDS <<<"$tool ${line//:/ : }"
  [[ $line == *" " ]] && COMP_WORDS+=("")
  COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
  COMPREPLY=()
  _boardtool
  local got
  got=$(printf '%s\n' "${COMPREPLY[@]}" | sort | paste -sd' ')
  if [ "$got" != "$want" ]; then
    echo "FAILED: boardtool $*"
    echo "  want: $want"
    echo "  got:  $got"
    failures=$((failures + 1))
  fi
}

expect "catalog check compose" "c"
expect "--jumper" "diagram --ju"
expect "kite:1.0 kite:1.10 kite:1.2" "diagram --data-dir $data/catalog_install kestrel-boards:ki"
expect "--version" "--v"
expect "--data-dir --debug" "catalog --d"
expect "--jobs --json" "catalog --j"
expect "board.enableSchemaV2=" "catalog --param board.enableSch"
expect "kite:1.0 kite:1.10 kite:1.2" "show --data-dir $data/catalog_install kestrel-boards:ki"
expect "1.0 1.10 1.2" "show --data-dir $data/catalog_install kestrel-boards:kite:"
expect "$data/catalog_install" "catalog --data-dir $data/catalog_ins"
# site writes into a folder: the folders only, not the README beside them.
expect "$data/site_install" "site $data/site_i"
[ $failures -eq 0 ] && echo "all completions as expected"
exit $failures
