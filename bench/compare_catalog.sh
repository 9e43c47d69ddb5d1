#!/usr/bin/env bash
# Whole-process comparison of the catalog load against a bare XML parse of
# the same files, for one or more boardtool builds side by side:
#
#   bench/compare_catalog.sh [--runs N] [--jobs N] [--bench-load PATH] [--no-hyperfine]
#                            DATA_DIR [LABEL=]BOARDTOOL...
#
# Each round runs `boardtool catalog --data-dir DATA_DIR --jobs N > /dev/null`
# for every BOARDTOOL given, and `bench_load --bare-parse --dir DATA_DIR`,
# one after the other, the order turning round every other round, so that
# a neighbour's build spreads over all of them alike. Every run is timed by
# `bench_load --time` (wall, user, system, peak RSS). Then it prints the
# medians, each build against the bare parse and against the first build,
# and the peak RSS against the bytes on disk. With hyperfine installed it
# also runs the same commands through hyperfine, as a second opinion
# (hyperfine runs each command in a block, not alternating).
#
# Example, a baseline build against the current one:
#   bench/compare_catalog.sh /work/bench-1000 \
#       before=/work/baseline-build/tools/boardtool/boardtool \
#       after=build/tools/boardtool/boardtool
set -euo pipefail

usage() {
  sed -n '2,12p' "$0" | sed 's/^# \{0,1\}//' >&2
  exit 2
}

runs=5
jobs=1
bench_load=""
use_hyperfine=1
positional=()
while [ $# -gt 0 ]; do
  case "$1" in
    --runs) runs="${2:?--runs needs a number}"; shift 2 ;;
    --runs=*) runs="${1#*=}"; shift ;;
    --jobs) jobs="${2:?--jobs needs a number}"; shift 2 ;;
    --jobs=*) jobs="${1#*=}"; shift ;;
    --bench-load) bench_load="${2:?--bench-load needs a path}"; shift 2 ;;
    --bench-load=*) bench_load="${1#*=}"; shift ;;
    --no-hyperfine) use_hyperfine=0; shift ;;
    -h|--help) usage ;;
    -*) echo "compare_catalog: unknown option $1" >&2; usage ;;
    *) positional+=("$1"); shift ;;
  esac
done
[ ${#positional[@]} -ge 2 ] || usage
set -- "${positional[@]}"
case "$runs" in ''|*[!0-9]*|0) echo "compare_catalog: --runs takes a positive number" >&2; exit 2 ;; esac

data_dir="$1"
shift
[ -d "$data_dir" ] || { echo "compare_catalog: no directory $data_dir" >&2; exit 2; }

labels=()
tools=()
for arg in "$@"; do
  if [[ "$arg" == *=* ]]; then
    label="${arg%%=*}"
    tool="${arg#*=}"
  else
    label="$arg"
    tool="$arg"
  fi
  [ -x "$tool" ] || { echo "compare_catalog: $tool is not an executable" >&2; exit 2; }
  labels+=("$label")
  tools+=("$tool")
done

# bench_load sits in the bench/ directory of a build tree, beside
# tools/boardtool/; by default the one of the first boardtool's tree.
if [ -z "$bench_load" ]; then
  bench_load="$(cd "$(dirname "${tools[0]}")/../.." && pwd)/bench/bench_load"
fi
[ -x "$bench_load" ] || {
  echo "compare_catalog: no bench_load at $bench_load; give one with --bench-load" >&2
  exit 2
}

# Commands: one per boardtool, then the bare parse. Arrays of words, kept
# as single strings with printf %q so that paths with blanks survive.
names=("${labels[@]}" "bare parse")
commands=()
for tool in "${tools[@]}"; do
  commands+=("$(printf '%q ' "$tool" catalog --data-dir "$data_dir" --jobs "$jobs")")
done
commands+=("$(printf '%q ' "$bench_load" --bare-parse --dir "$data_dir" --workers 1)")
count=${#commands[@]}

loadavg() { cut -d' ' -f1-3 /proc/loadavg; }

# One pass of each that is not measured: it warms the page cache, shows
# that every command works, and tells what each loaded.
echo "data: $data_dir"
bare_out="$(eval "${commands[count - 1]}")" || {
  echo "compare_catalog: the bare parse failed: $bare_out" >&2
  exit 1
}
disk_bytes="$(echo "$bare_out" | awk '{ print $(NF - 1) }')"
echo "  bare parse: $bare_out"
for ((i = 0; i < count - 1; i++)); do
  tail_line="$(eval "${commands[i]}" 2>/dev/null | tail -n 1)" || {
    echo "compare_catalog: ${names[i]} failed" >&2
    exit 1
  }
  echo "  ${names[i]}: $tail_line"
done
echo "load average before: $(loadavg) ($(nproc) cores)"

results="$(mktemp)"
trap 'rm -f "$results"' EXIT
for ((round = 0; round < runs; round++)); do
  for ((k = 0; k < count; k++)); do
    if ((round % 2)); then i=$((count - 1 - k)); else i=$k; fi
    line="$(eval "$(printf '%q ' "$bench_load" --time --) ${commands[i]}")" || {
      echo "compare_catalog: ${names[i]} failed in round $((round + 1))" >&2
      exit 1
    }
    # TIME wall user sys maxrss_kib status
    echo "$i $line" >> "$results"
  done
done
echo "load average after:  $(loadavg)"

# Medians per command: wall, CPU (user + system), peak RSS.
median() { sort -g | awk '{ v[NR] = $1 } END { if (NR % 2) print v[(NR + 1) / 2]; else print (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }
declare -a wall cpu rss
for ((i = 0; i < count; i++)); do
  wall[i]="$(awk -v i="$i" '$1 == i { print $3 }' "$results" | median)"
  cpu[i]="$(awk -v i="$i" '$1 == i { print $4 + $5 }' "$results" | median)"
  rss[i]="$(awk -v i="$i" '$1 == i { print $6 }' "$results" | median)"
done
bare=$((count - 1))

width=12
for name in "${names[@]}"; do ((${#name} > width)) && width=${#name}; done
echo
echo "medians of $runs alternating runs, whole processes, --jobs $jobs"
printf "%-${width}s %10s %10s %11s %10s %12s %9s\n" "" "wall" "CPU" "wall/bare" "CPU/bare" "peak RSS" "RSS/disk"
for ((i = 0; i < count; i++)); do
  awk -v n="${names[i]}" -v w="${wall[i]}" -v c="${cpu[i]}" -v bw="${wall[bare]}" \
      -v bc="${cpu[bare]}" -v r="${rss[i]}" -v d="$disk_bytes" -v width="$width" 'BEGIN {
    printf "%-*s %8.3f s %8.3f s %10.2fx %9.2fx %8.1f MiB %8.2fx\n",
           width, n, w, c, w / bw, c / bc, r / 1024, r * 1024 / d }'
done
printf 'bytes on disk: %s (%.1f MiB)\n' "$disk_bytes" "$(awk -v d="$disk_bytes" 'BEGIN { print d / 1048576 }')"
echo "goals: a catalog within 4x the bare parse (wall and CPU), peak RSS within 1.5x the bytes on disk"
if ((count > 2)); then
  for ((i = 1; i < count - 1; i++)); do
    awk -v n="${names[i]}" -v f="${names[0]}" -v w="${wall[i]}" -v w0="${wall[0]}" \
        -v c="${cpu[i]}" -v c0="${cpu[0]}" -v r="${rss[i]}" -v r0="${rss[0]}" 'BEGIN {
      printf "%s against %s: wall %.2fx, CPU %.2fx, peak RSS %.2fx\n", n, f, w / w0, c / c0, r / r0 }'
  done
fi

if ((use_hyperfine)) && command -v hyperfine > /dev/null; then
  echo
  echo "hyperfine, as a second opinion (each command in a block):"
  args=()
  for ((i = 0; i < count; i++)); do
    args+=(--command-name "${names[i]}" "${commands[i]} > /dev/null")
  done
  hyperfine --warmup 1 --runs "$runs" --style basic "${args[@]}"
fi
