#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Measures the whole program in a window under Xvfb: time from the start to the painted main window,
proportional memory five seconds later, and processor time while a line scrolls and while idle.

usage: program_cost.py [--build DIR] [--runs N] [--seconds S] [--board]
       program_cost.py --start [--feeds N] [--messages M] [--build DIR] [--runs N]

  --board   scroll on the simulated board instead of the on-screen board
  --start   only the time to the painted main window, with that many feeds and remembered messages

Prints a table. The feeds are the bundled samples, served on this machine.
"""
import argparse
import os
import pathlib
import plistlib
import shutil
import signal
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
TICKS = os.sysconf("SC_CLK_TCK")


def start_xvfb():
    read_end, write_end = os.pipe()
    server = subprocess.Popen(
        ["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1280x800x24", "-nolisten", "tcp"],
        pass_fds=[write_end], stderr=subprocess.DEVNULL)
    os.close(write_end)
    with os.fdopen(read_end) as numbers:
        return server, ":" + numbers.readline().strip()


def start_feeds():
    server = subprocess.Popen([sys.executable, ROOT / "tools" / "sample_feed_server.py"],
                              stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    return server, server.stdout.readline().strip()


def profile(folder, feeds, automatic):
    entries = [{"RSSValidate": True, "RSSAddressString": f"{feeds}/{name}", "RSSNameString": name,
                "RSSFormat": kind}
               for name, kind in (("town.rdf", 1), ("shop.rss", 2), ("station.atom", 3))]
    path = folder / "config" / "QoVelmorRSS" / "QoVelmorRSS.plist"
    path.parent.mkdir(parents=True)
    path.write_bytes(plistlib.dumps({"RSSSiteAddresses": entries, "DisplayAuto": automatic}))


def large_profile(folder, feeds, messages):
    """A store of someone who has read many feeds for a long time; nothing has to be fetched."""
    entries = [{"RSSValidate": True, "RSSAddressString": f"http://127.0.0.1:9/feed{number}.rss",
                "RSSNameString": f"見本新聞 {number}", "RSSFormat": 2} for number in range(feeds)]
    remembered = [{"HeadlineString": f"ニュースの見出しは三十文字ほどの長さになることが多い {number}",
                   "DateString": f"11/{number % 28 + 1:02} 10:{number % 60:02}",
                   "DescriptionString": "本文の初めの部分。" * 8, "RSSNameString": "見本新聞",
                   "LinkString": f"http://example.com/news/{number}", "NewRSSMessage": False}
                  for number in range(messages)]
    path = folder / "config" / "QoVelmorRSS" / "QoVelmorRSS.plist"
    path.parent.mkdir(parents=True)
    # The threshold is stored by the very first start; a store of this size has seen one.
    path.write_bytes(plistlib.dumps({"RSSSiteAddresses": entries, "LastRSSMessages": remembered,
                                     "FontBoarderValue": 72}))


def measure_start(build, runs, feeds, messages):
    server, display = start_xvfb()
    print("| feeds | remembered messages | start to painted main window | processor time |")
    print("|---:|---:|---:|---:|")
    try:
        for counts in ((0, 0), (feeds, messages)):
            starts, processor = [], []
            for _ in range(runs):
                folder = pathlib.Path(tempfile.mkdtemp())
                large_profile(folder, *counts)
                program, shown = start_program(build, display, folder, {})
                processor.append(cpu_seconds(program.pid))
                starts.append(shown)
                end(program)
                shutil.rmtree(folder)
            print(f"| {counts[0]} | {counts[1]:,} | {statistics.median(starts):.3f} s | "
                  f"{statistics.median(processor):.3f} s |")
    finally:
        end(server)


def start_program(build, display, folder, extra):
    # A port that opens but leads to no board costs the half second that a board has for its answer;
    # without a board no port is there.
    environment = dict(os.environ, HOME=str(folder), XDG_CONFIG_HOME=str(folder / "config"),
                       DISPLAY=display, QT_LOGGING_RULES="qovelmorrss.app.debug=true",
                       **({"QOVELMORRSS_SERIAL_DEVICES": str(folder / "no-port")} | extra))
    environment.pop("QT_QPA_PLATFORM", None)
    begin = time.monotonic()
    program = subprocess.Popen([build / "qovelmorrss"], env=environment, stderr=subprocess.PIPE,
                               stdout=subprocess.DEVNULL, text=True)
    for line in program.stderr:
        if "main window shown" in line:
            return program, time.monotonic() - begin
    raise SystemExit("the program ended before its window was shown")


def proportional_memory(pid):
    for line in pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines():
        if line.startswith("Pss:"):
            return int(line.split()[1]) / 1024
    return float("nan")


def cpu_seconds(pid):
    fields = pathlib.Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / TICKS


def cpu_share(pid, seconds):
    before, begin = cpu_seconds(pid), time.monotonic()
    time.sleep(seconds)
    return 100 * (cpu_seconds(pid) - before) / (time.monotonic() - begin)


def end(process):
    process.send_signal(signal.SIGTERM)
    try:
        process.wait(10)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


def start_board(build, folder):
    link = folder / "board"
    board = subprocess.Popen([build / "qovelmorboard", "--link", link],
                             stdout=subprocess.PIPE, text=True)
    board.stdout.readline()
    return board, {"QOVELMORRSS_SERIAL_DEVICES": str(link)}


def measure(build, runs, seconds, with_board):
    server, display = start_xvfb()
    feeds_server, feeds = start_feeds()
    starts, memories = [], []
    board = None
    try:
        for _ in range(runs):
            folder = pathlib.Path(tempfile.mkdtemp())
            profile(folder, feeds, False)
            program, shown = start_program(build, display, folder, {})
            starts.append(shown)
            time.sleep(5)
            memories.append(proportional_memory(program.pid))
            idle = cpu_share(program.pid, seconds) if len(starts) == runs else None
            end(program)
            shutil.rmtree(folder)
        folder = pathlib.Path(tempfile.mkdtemp())
        profile(folder, feeds, True)
        extra = {}
        if with_board:
            board, extra = start_board(build, folder)
        program, _ = start_program(build, display, folder, extra)
        time.sleep(12)  # past the read at the start
        scrolling = cpu_share(program.pid, seconds)
        end(program)
        shutil.rmtree(folder)
    finally:
        for process in filter(None, (board, feeds_server, server)):
            end(process)
    where = "simulated board" if with_board else "on-screen board"
    print("| what | figure |\n|---|---|")
    print(f"| start to painted main window, median of {runs} | {statistics.median(starts):.3f} s |")
    print(f"| proportional memory 5 s later, median | {statistics.median(memories):.1f} MB |")
    print(f"| processor while idle, {seconds} s | {idle:.2f} % of a core |")
    print(f"| processor while scrolling on the {where}, {seconds} s | {scrolling:.2f} % of a core |")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build")
    parser.add_argument("--runs", type=int, default=7)
    parser.add_argument("--seconds", type=int, default=30)
    parser.add_argument("--board", action="store_true")
    parser.add_argument("--start", action="store_true")
    parser.add_argument("--feeds", type=int, default=200)
    parser.add_argument("--messages", type=int, default=10_000)
    arguments = parser.parse_args()
    if arguments.start:
        measure_start(arguments.build, arguments.runs, arguments.feeds, arguments.messages)
        return
    measure(arguments.build, arguments.runs, arguments.seconds, arguments.board)


if __name__ == "__main__":
    main()
