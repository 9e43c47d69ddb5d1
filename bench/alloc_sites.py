#!/usr/bin/env python3
"""Sums a heaptrack profile of the load by the library's own functions.

heaptrack's own report names the innermost frames, which for this library
are string and map internals. This groups the stacks of the load instead:
by the reader function (the innermost member of HBOParser, HBOBoardParser
or a section reader such as HBOPinFileReader) and by the allocation site
(the innermost frame in one of the library's sources), with each one's share.

    heaptrack -o /tmp/ht boardtool catalog --data-dir DIR --jobs 1 > /dev/null
    heaptrack_print -f /tmp/ht.zst --flamegraph-cost-type allocations -F allocs.txt
    heaptrack_print -f /tmp/ht.zst --flamegraph-cost-type peak -F peak.txt
    bench/alloc_sites.py --boards 50 allocs.txt peak.txt

Only stacks that pass through HBOParser::parseFile count: start-up, the
printing of the catalog and the teardown are left out.
"""
import argparse
import collections
import re
import sys

LOAD = "HBOParser::parseFile("
READER = re.compile(r"^(HBO\w*(?:Parser|Reader|Validator)::\w+)\(")
# A frame "function (File.cpp)" in one of the library's sources.
OWN_SOURCE = re.compile(r"\((?:H[A-Z]\w+|Com\w+|KqStream)\.(?:cpp|h)\)$")


def short(frame):
    """The function's qualified name without its parameter list."""
    name = frame.rsplit(" (", 1)[0]
    depth = 0
    for i, c in enumerate(name):
        if c == "(" and depth == 0 and i > 0:
            return name[:i]
        if c == "<":
            depth += 1
        elif c == ">":
            depth -= 1
    return name


def read(path):
    by_reader = collections.Counter()
    by_site = collections.Counter()
    load_total = 0
    total = 0
    with open(path) as stacks:
        for line in stacks:
            frames, _, cost = line.rstrip("\n").rpartition(" ")
            if not cost.isdigit():
                continue
            cost = int(cost)
            total += cost
            frames = [f for f in frames.split(";") if f]
            if not any(f.startswith(LOAD) for f in frames):
                continue
            load_total += cost
            reader = next((READER.match(f).group(1) for f in reversed(frames)
                           if READER.match(f)), "(outside the readers)")
            site = next((short(f) for f in reversed(frames) if OWN_SOURCE.search(f)),
                        "(no frame of the library)")
            by_reader[reader] += cost
            by_site[site] += cost
    return total, load_total, by_reader, by_site


def show(title, counter, load_total, unit, per_board, top):
    print(f"\n{title}")
    for name, cost in counter.most_common(top):
        share = 100.0 * cost / load_total if load_total else 0
        print(f"  {share:5.1f}%  {cost / per_board:12.0f} {unit}  {name}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--boards", type=int, default=1, help="boards loaded, for the per-board figures")
    parser.add_argument("--top", type=int, default=15)
    parser.add_argument("allocations", help="stacks of --flamegraph-cost-type allocations")
    parser.add_argument("peak", nargs="?", help="stacks of --flamegraph-cost-type peak")
    args = parser.parse_args()
    boards = max(1, args.boards)

    total, load, readers, sites = read(args.allocations)
    print(f"allocations: {total} in the process, {load} in the load, "
          f"{load / boards:.0f} per board ({100.0 * load / total if total else 0:.1f}% of all)")
    show("allocations by reader function (per board)", readers, load, "allocs", boards, args.top)
    show("allocations by site (per board)", sites, load, "allocs", boards, args.top)
    if args.peak:
        total, load, readers, sites = read(args.peak)
        print(f"\nheap at the peak: {total / 1048576:.1f} MiB in the process, "
              f"{load / 1048576:.1f} MiB made by the load, {load / boards / 1024:.0f} KiB per board")
        show("heap at the peak by reader function (per board)", readers, load, "bytes", boards,
             args.top)
        show("heap at the peak by site (per board)", sites, load, "bytes", boards, args.top)
    return 0


if __name__ == "__main__":
    sys.exit(main())
