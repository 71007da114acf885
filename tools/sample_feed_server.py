#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Serves the sample feeds on this machine, for trying the program and for its tests.

Prints one line, the address it listens on ("http://127.0.0.1:43210"), and serves until it gets SIGTERM
or SIGINT, until its parent ends, or until its standard input is closed. It writes no file.

  /town.rdf      RSS 1.0, UTF-8
  /shop.rss      RSS 2.0, Shift_JIS
  /station.atom  Atom, UTF-8
  anything an item links to: a small page
"""
import argparse
import collections
import datetime
import email.utils
import html
import http.server
import os
import pathlib
import re
import select
import signal
import sys
import threading
import xml.etree.ElementTree

TEMPLATES = pathlib.Path(__file__).resolve().parent.parent / "resources" / "sample-feeds"
JAPAN = datetime.timezone(datetime.timedelta(hours=9))
FIELD = re.compile(r"\{\{(\w+):([^}]+)\}\}")

Feed = collections.namedtuple("Feed", "template content_type encoding")
FEEDS = {
    "/town.rdf": Feed("town.rdf.xml", "application/rdf+xml; charset=utf-8", "utf-8"),
    "/shop.rss": Feed("shop.rss.xml", "application/rss+xml; charset=Shift_JIS", "cp932"),
    "/station.atom": Feed("station.atom.xml", "application/atom+xml; charset=utf-8", "utf-8"),
}

PAGE = """<!DOCTYPE html>
<html lang="ja">
<head><meta charset="utf-8"><title>{title}</title>
<style>body {{ max-width: 38em; margin: 3em auto; padding: 0 1em; font-family: sans-serif; line-height: 1.8 }}
h1 {{ font-size: 1.4em }} p.site {{ color: #666 }}</style></head>
<body><p class="site">{site}</p><h1>{title}</h1><p>{text}</p></body>
</html>
"""


def filled(template, address, now):
    """The template's text with its fields filled in."""

    def value(match):
        kind, argument = match.groups()
        if kind == "page":
            return f"{address}/{argument}"
        moment = now - datetime.timedelta(minutes=int(argument))
        if kind == "rfc822":
            return email.utils.format_datetime(moment)
        if kind == "iso":
            return moment.isoformat(timespec="seconds")
        if kind == "isoz":
            return moment.astimezone(datetime.timezone.utc).strftime("%Y-%m-%dT%H:%M:%SZ")
        raise ValueError(f"unknown field {kind}")

    return FIELD.sub(value, template)


def feed_bytes(feed, address, now):
    text = filled((TEMPLATES / feed.template).read_text(encoding="utf-8"), address, now)
    if feed.encoding == "cp932":  # which holds the full-width tilde in the place of the wave dash
        text = text.replace("\u301c", "\uff5e")
    return text.encode(feed.encoding)


def without_marks(text):
    return html.unescape(re.sub(r"<[^>]*>", " ", text or ""))


def pages():
    """What the items link to: path -> (site name, title, text)."""
    found = {}
    for feed in FEEDS.values():
        text = (TEMPLATES / feed.template).read_text(encoding="utf-8")
        # The declared encoding is that of the wire; here the text is already decoded.
        root = xml.etree.ElementTree.fromstring(re.sub(r"^<\?xml[^>]*\?>", "", text))
        site = ""
        for node in root.iter():
            kind = node.tag.rpartition("}")[2]
            parts = {child.tag.rpartition("}")[2]: child for child in node}
            if "title" not in parts or "link" not in parts:
                continue
            title = parts["title"].text
            link = parts["link"].get("href") or parts["link"].text
            if kind in ("channel", "feed"):
                site = title
            summary = parts.get("description", parts.get("summary"))
            body = without_marks(summary.text if summary is not None else "")
            found["/" + FIELD.match(link).group(2)] = (site, title, body)
    return found


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    timeout = 10  # a client that says nothing more is let go
    server_version = "SampleFeeds"

    def do_GET(self):
        path = self.path.partition("?")[0]
        if path in FEEDS:
            feed = FEEDS[path]
            now = datetime.datetime.now(JAPAN).replace(microsecond=0)
            self.answer(200, feed.content_type, feed_bytes(feed, self.server.address, now))
        elif path in self.server.pages:
            site, title, text = (html.escape(part) for part in self.server.pages[path])
            page = PAGE.format(site=site, title=title, text=text)
            self.answer(200, "text/html; charset=utf-8", page.encode("utf-8"))
        else:
            self.answer(404, "text/plain; charset=utf-8", "ありません\n".encode("utf-8"))

    do_HEAD = do_GET

    def answer(self, status, content_type, body):
        self.send_response(status)
        self.send_header("Content-Type", content_type)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        if self.command != "HEAD":
            self.wfile.write(body)

    def log_message(self, *arguments):
        if self.server.verbose:
            super().log_message(*arguments)


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def __init__(self, port, verbose):
        super().__init__(("127.0.0.1", port), Handler)
        self.address = f"http://127.0.0.1:{self.server_address[1]}"
        self.pages = pages()
        self.verbose = verbose

    def handle_error(self, request, client_address):
        if self.verbose:  # a client that hangs up is nothing to tell
            super().handle_error(request, client_address)


def wait_for_end(watch_input, parent, asked):
    """Returns when the server is no longer wanted."""
    inputs = [sys.stdin.fileno()] if watch_input else []
    while not asked.is_set() and os.getppid() == parent:
        readable, _, _ = select.select(inputs, [], [], 0.3)
        if readable and not os.read(sys.stdin.fileno(), 4096):
            return


def main():
    parser = argparse.ArgumentParser(description="Serves the sample feeds on 127.0.0.1.")
    parser.add_argument("--port", type=int, default=0, help="0 takes a free one")
    parser.add_argument("--ignore-input", action="store_true",
                        help="do not end when standard input is closed")
    parser.add_argument("--verbose", action="store_true", help="one line on standard error for each request")
    options = parser.parse_args()

    parent = os.getppid()
    asked = threading.Event()
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        signal.signal(number, lambda *_: asked.set())
    try:
        server = Server(options.port, options.verbose)
    except OSError as error:
        sys.exit(f"sample_feed_server: port {options.port}: {error.strerror}")
    threading.Thread(target=server.serve_forever, args=(0.1,), daemon=True).start()
    try:
        sys.stdout.write(server.address + "\n")  # in one piece
        sys.stdout.flush()
        wait_for_end(not options.ignore_input, parent, asked)
    except BrokenPipeError:
        pass  # whoever started us is gone
    server.shutdown()
    server.server_close()


if __name__ == "__main__":
    main()
