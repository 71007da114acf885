#!/usr/bin/env python3
"""Fails when a folder includes what stands above it.

Folders are layers; a file may include headers of its own folder and of lower ones. The four folders of
the middle row meet only through the interfaces in each other's needs/ folder. The include graph of all
headers must be free of circles.
"""
import pathlib
import re
import sys

LAYERS = [["platform"], ["render"], ["board"],
          ["feeds", "settings", "messages", "schedule"], ["app"]]
LEVEL = {folder: level for level, row in enumerate(LAYERS) for folder in row}
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"')


def includes(path):
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        found = INCLUDE.match(line)
        if found:
            yield number, found.group(1)


def complaint(path, target):
    """Why this include is wrong, or None."""
    here, there = path.parts[0], target.split("/")[0]
    if there not in LEVEL:
        return None
    if LEVEL[there] > LEVEL[here]:
        return f"{here}/ stands below {there}/"
    if LEVEL[there] == LEVEL[here] and there != here and target.split("/")[1] != "needs":
        return f"{here}/ and {there}/ meet only through {there}/needs/"
    if "/views/" in target and "/views/" not in str(path) and here != "app":
        return "models run without a window"
    return None


def circle(graph):
    """A list of headers that include each other in a ring, or None."""
    done, trail = set(), []

    def visit(node):
        if node in trail:
            return trail[trail.index(node):] + [node]
        if node in done:
            return None
        trail.append(node)
        for following in graph.get(node, []):
            ring = visit(following)
            if ring:
                return ring
        trail.pop()
        done.add(node)
        return None

    for node in sorted(graph):
        ring = visit(node)
        if ring:
            return ring
    return None


def main():
    root = pathlib.Path(__file__).resolve().parent.parent
    errors, graph = [], {}
    for folder in LEVEL:
        for path in sorted((root / folder).rglob("*")):
            if path.suffix not in (".h", ".cpp"):
                continue
            relative = path.relative_to(root)
            for number, target in includes(path):
                reason = complaint(relative, target)
                if reason:
                    errors.append(f"{relative}:{number}: includes {target}: {reason}")
                if path.suffix == ".h":
                    graph.setdefault(str(relative), []).append(target)
    ring = circle(graph)
    if ring:
        errors.append("headers include each other in a ring: " + " -> ".join(ring))
    print("\n".join(errors) if errors else "include directions: all arrows point down")
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main())
