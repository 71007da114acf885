#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Lets the real program run for real minutes beside feeds and a board that misbehave, and watches what it
takes of the machine.

usage: soak.py [--minutes N] [--build DIR] [--seed S] [--csv FILE]

The feeds come from a server on this machine: some are whole and new with each read, others are cut, slow,
endless, hostile, redirected in a circle, or answered with an error. The simulated board answers late, twice,
wrongly, in single bytes, with noise, not at all, or restarts, a few lines at a time.

Every ten seconds memory, descriptors and threads are sampled. Prints a table and ends with status 1 when one
of them grew, the log book stood still, or the program did not end in an orderly way with its lists whole.
"""
import argparse
import gzip
import http.server
import os
import pathlib
import plistlib
import random
import signal
import statistics
import subprocess
import sys
import tempfile
import threading
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
SAMPLE_SECONDS = 10
WARM_UP = 0.25          # of the run: caches fill, the first large documents come and go
MEMORY_GROWTH = 8192    # KiB between the middle and the end of the run
MOST_SILENCE = 150      # seconds without a new line in the log book
BOARD_FAULTS = ["late=300*20", "bytewise=3*20", "noise=1*40", "twice*5", "wrong*3", "no-ok*5", "mute*2",
                "refuse*5", "deaf=1000"]


def feed(number):
    items = "".join(f"<item><title>知らせ {number}-{i}</title><link>http://h/{number}/{i}</link>"
                    f"<description>&lt;p&gt;{'本文' * 200}</description></item>" for i in range(2))
    return (f"<?xml version='1.0' encoding='UTF-8'?><rss version='2.0'><channel><title>t</title>{items}"
            "</channel></rss>").encode()


class Feeds(http.server.BaseHTTPRequestHandler):
    """The path says what goes wrong."""
    reads = 0

    def log_message(self, *arguments):
        pass

    def head(self, status=200, **headers):
        self.send_response(status)
        for name, value in headers.items():
            self.send_header(name.replace("_", "-"), value)
        self.end_headers()

    def do_GET(self):
        Feeds.reads += 1
        try:
            getattr(self, "do_" + self.path.strip("/"))(feed(Feeds.reads))
        except (BrokenPipeError, ConnectionResetError):
            pass

    def do_whole(self, body):
        self.head(Content_Length=str(len(body)), ETag=f'"{Feeds.reads}"')
        self.wfile.write(body)

    def do_same(self, body):
        if "If-None-Match" in self.headers:
            return self.head(304)
        self.head(ETag='"same"')
        self.wfile.write(body)

    def do_cut(self, body):
        self.head(Content_Length=str(len(body)))
        self.wfile.write(body[:len(body) // 2])

    def do_bomb(self, body):
        self.head(Content_Encoding="gzip")
        self.wfile.write(BOMB)

    def do_endless(self, body):
        self.head()
        while True:
            self.wfile.write(b" " * 100_000)

    def do_crowd(self, body):
        self.head()
        self.wfile.write(b"<rss>" + b"<a b=''/>" * 2_000_000)

    def do_drip(self, body):
        self.head()
        for byte in body[:120]:
            self.wfile.write(bytes([byte]))
            time.sleep(0.1)

    def do_circle(self, body):
        self.head(302, Location="/circle")

    def do_refused(self, body):
        self.head(random.choice([403, 404, 429, 500, 503]), Retry_After="5")


BOMB = gzip.compress(b" " * (40 << 20))
KINDS = ["whole", "same", "cut", "bomb", "endless", "crowd", "drip", "circle", "refused"]


def write_profile(folder, address):
    entries = [{"RSSValidate": True, "RSSAddressString": f"{address}/{kind}", "RSSNameString": kind,
                "RSSFormat": 2} for kind in KINDS]
    path = folder / "config" / "QoVelmorRSS" / "QoVelmorRSS.plist"
    path.parent.mkdir(parents=True)
    path.write_bytes(plistlib.dumps({
        "RSSSiteAddresses": entries, "DisplayAuto": True, "LogRSSRead": True, "LogRSSDisp": True,
        "LogSystem": True, "LogTimer": True, "ScrollSpeed": 1, "ComPortNumber": 0}))
    return path


def sample(pid):
    status = dict(line.split(":", 1) for line in pathlib.Path(f"/proc/{pid}/status").read_text().splitlines())
    return (int(status["VmRSS"].split()[0]), len(os.listdir(f"/proc/{pid}/fd")), int(status["Threads"]))


def watch(program, board, log, minutes, chance, report):
    """The samples, and what went wrong."""
    samples, wrong = [], []
    end, lines, last_line = time.monotonic() + minutes * 60, 0, time.monotonic()
    while time.monotonic() < end:
        time.sleep(SAMPLE_SECONDS)
        if program.poll() is not None:
            wrong.append(f"the program ended with status {program.returncode}")
            break
        samples.append(sample(program.pid))
        report(samples[-1])
        count = log.read_bytes().count(b"\n") if log.exists() else 0
        if count > lines:
            lines, last_line = count, time.monotonic()
        elif time.monotonic() - last_line > MOST_SILENCE:
            wrong.append("the log book stands still")
            break
        if chance.random() < 0.3:
            print("restart" if chance.random() < 0.1 else f"misbehave {chance.choice(BOARD_FAULTS)}",
                  file=board.stdin, flush=True)
    return samples, lines, wrong


def growth(samples):
    """Of memory at rest, descriptors and threads, from the first half of the settled run to the second."""
    settled = samples[int(len(samples) * WARM_UP):]
    half = len(settled) // 2
    values = [([s[i] for s in settled[:half]], [s[i] for s in settled[half:]]) for i in range(3)]
    # Memory comes and goes with each document; what it falls back to must not rise.
    return [min(values[0][1]) - min(values[0][0])] + [statistics.median(later) - statistics.median(earlier)
                                                      for earlier, later in values[1:]]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--minutes", type=float, default=30)
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--csv", type=pathlib.Path)
    options = parser.parse_args()
    print(f"seed {options.seed}")
    chance = random.Random(options.seed)

    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Feeds)
    server.daemon_threads = True
    threading.Thread(target=server.serve_forever, daemon=True).start()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        store = write_profile(folder, f"http://127.0.0.1:{server.server_port}")
        log = folder / "Documents" / "QoVelmorRSS" / "Logbook.txt"
        board = subprocess.Popen([options.build / "qovelmorboard", "--stdin", "--exit-with-parent",
                                  "--link", folder / "board"],
                                 stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        device = board.stdout.readline().strip()
        environment = dict(os.environ, HOME=name, XDG_CONFIG_HOME=str(folder / "config"),
                           QT_QPA_PLATFORM="offscreen", QOVELMORRSS_SERIAL_DEVICES=device,
                           DBUS_SESSION_BUS_ADDRESS=f"unix:path={name}/no-bus")
        for variable in ("http_proxy", "https_proxy", "all_proxy", "HTTP_PROXY", "ALL_PROXY"):
            environment.pop(variable, None)
        csv = open(options.csv, "w", encoding="ascii") if options.csv else None

        def report(values):
            if csv:
                print(*values, sep=",", file=csv, flush=True)

        program = subprocess.Popen([options.build / "qovelmorrss"], env=environment,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        samples, lines, wrong = watch(program, board, log, options.minutes, chance, report)
        if program.poll() is None:
            begin = time.monotonic()
            program.send_signal(signal.SIGTERM)
            try:
                if program.wait(10) != 0:
                    wrong.append(f"the program ended with status {program.returncode}")
                print(f"ended {time.monotonic() - begin:.1f} s after SIGTERM")
            except subprocess.TimeoutExpired:
                wrong.append("the program did not end within 10 s")
                program.kill()
        board.kill()
        if len(plistlib.loads(store.read_bytes())["RSSSiteAddresses"]) != len(KINDS):
            wrong.append("feeds are missing in the store")

    print("| | first | last | least | most | growth |\n|---|---:|---:|---:|---:|---:|")
    grown = growth(samples) if len(samples) >= 8 else [0, 0, 0]
    for i, what in enumerate(("memory, KiB", "descriptors", "threads")):
        values = [s[i] for s in samples]
        print(f"| {what} | {values[0]} | {values[-1]} | {min(values)} | {max(values)} | {grown[i]:+.0f} |")
    print(f"{Feeds.reads} documents served, {lines} lines in the log book, {len(samples)} samples")
    if grown[0] > MEMORY_GROWTH:
        wrong.append("memory grows")
    if grown[1] > 1 or grown[2] > 1:
        wrong.append("descriptors or threads grow")
    print("\n".join(wrong) if wrong else "nothing grew")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
