#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What the program's memory consists of, five seconds after its start under Xvfb: proportional
memory (of a page that N processes share, the N-th part) by kind of mapping.

usage: memory_cost.py [--build DIR] [--runs N] [--alone]

  --alone   With copies of the libraries and fonts that nobody else uses, as if no other program of
            the kind ran on the machine. Needs root: the copies are mounted over the originals, for
            this run's own processes only.
"""
import argparse
import collections
import os
import pathlib
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

import program_cost

# The first kind whose pattern is found in a mapping's name takes it.
KINDS = (
    ("heap", r"^\[heap\]"),
    ("other anonymous memory, stacks", r"^(\[|$)"),
    ("Noto Sans CJK, regular", r"NotoSansCJK-Regular"),
    ("Noto Sans CJK, bold", r"NotoSansCJK-Bold"),
    ("other fonts", r"/fonts/"),
    ("window contents, shared with the X server", r"memfd:|SYSV"),
    ("the program's own file", r"/qovelmorrss$"),
    ("Qt: Core, Gui, Widgets, X11", r"Qt6(Core|Gui|Widgets|XcbQpa)|plugins/platforms"),
    ("Qt: D-Bus, Network, Multimedia", r"Qt6"),
    ("sound", r"pulse|sndfile|vorbis|FLAC|opus|mpg123|mp3lame|asyncns|libogg"),
    ("HTTP with its ciphers and log-ins",
     r"curl|crypto|libssl|ssh2|gnutls|krb5|gssapi|ldap|lber|sasl|rtmp|nghttp2|p11-kit|tasn1|nettle"
     r"|hogweed|gmp|idn2|psl|unistring"),
)


def mappings(pid):
    """Proportional kilobytes by the name of what is mapped."""
    sizes = collections.Counter()
    name = ""
    for line in pathlib.Path(f"/proc/{pid}/smaps").read_text().splitlines():
        if re.match(r"[0-9a-f]+-[0-9a-f]+ ", line):
            name = (line.split(maxsplit=5) + [""])[5]
        elif line.startswith("Pss:"):
            sizes[name] += int(line.split()[1])
    return sizes


def kind_of(name):
    return next((kind for kind, pattern in KINDS if re.search(pattern, name)), "other libraries")


def by_kind(sizes):
    kinds = collections.Counter()
    for name, size in sizes.items():
        kinds[kind_of(name)] += size
    return kinds


def run(build, display, feeds, look):
    """Starts the program, looks at it after five seconds, and ends it."""
    folder = pathlib.Path(tempfile.mkdtemp())
    program_cost.profile(folder, feeds, False)
    program, _ = program_cost.start_program(build, display, folder, {})
    try:
        time.sleep(5)
        return look(program.pid)
    finally:
        program_cost.end(program)
        shutil.rmtree(folder)


def measure(build, runs, look):
    server, display = program_cost.start_xvfb()
    feeds_server, feeds = program_cost.start_feeds()
    try:
        return [run(build, display, feeds, look) for _ in range(runs)]
    finally:
        program_cost.end(feeds_server)
        program_cost.end(server)


def measure_with_copies(build, arguments):
    """Runs this script again where the files that the program maps are copies."""
    [sizes] = measure(build, 1, mappings)
    with tempfile.TemporaryDirectory() as copies:
        mounts = []
        for name in filter(lambda name: name.startswith("/usr/"), sizes):
            copy = pathlib.Path(copies) / str(len(mounts))
            shutil.copy2(name, copy)
            mounts.append(f"{copy}\t{name}\n")
        script = 'while IFS="$(printf "\\t")" read -r copy name; do mount --bind "$copy" "$name"; ' \
                 'done && exec "$@"'
        subprocess.run(["unshare", "--mount", "sh", "-c", script, "sh", *arguments],
                       input="".join(mounts), text=True, check=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", type=pathlib.Path, default=program_cost.ROOT / "build")
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--alone", action="store_true")
    arguments = parser.parse_args()
    if arguments.alone:
        measure_with_copies(arguments.build,
                              [sys.executable, os.path.abspath(__file__), "--build",
                               str(arguments.build), "--runs", str(arguments.runs)])
        return
    runs = measure(arguments.build, arguments.runs, lambda pid: by_kind(mappings(pid)))
    print("| kind of memory | MB |\n|---|---:|")
    medians = {kind: statistics.median(run[kind] for run in runs) / 1024
               for kind in set().union(*runs)}
    for kind, size in sorted(medians.items(), key=lambda entry: -entry[1]):
        print(f"| {kind} | {size:.1f} |")
    print(f"| all | {statistics.median(sum(run.values()) for run in runs) / 1024:.1f} |")


if __name__ == "__main__":
    main()
