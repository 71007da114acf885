#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Time python3-feedparser on the documents of feed_parse_bench.

    feed_parse_bench --write /tmp/feeds
    bench/feedparser_compare.py /tmp/feeds
"""
import pathlib
import sys
import time

import feedparser


def best_of(runs, path):
    data = path.read_bytes()
    best = float("inf")
    for _ in range(runs):
        start = time.perf_counter()
        result = feedparser.parse(data)
        best = min(best, time.perf_counter() - start)
    return best, len(result.entries)


def main():
    folder = pathlib.Path(sys.argv[1])
    print("| document | items | feedparser, ms |")
    print("|---|---|---|")
    for path in sorted(folder.glob("format*.xml")):
        size = path.stat().st_size
        seconds, items = best_of(1 if size > 4_000_000 else 3, path)
        print(f"| {path.stem} | {items} | {seconds * 1e3:.1f} |")


if __name__ == "__main__":
    main()
