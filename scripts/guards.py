#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Takes each guard of the program away, one at a time, and asks its test to notice.

A test that stays green without the lines it is meant to watch over proves nothing. The tables in
tests/guards/ name such lines: the promise they keep, the text that stands there, what stands there
without the guard, and the CTest test that must then fail in the function named.

All happens in a copy of the sources (build-guards/), so the tree that is worked in is never broken, and
as the superuser behind a fence, so that the system is not either.
What has been found with the same sources is kept there and not done again.
"""
import argparse
import dataclasses
import hashlib
import json
import os
import re
import resource
import shutil
import signal
import subprocess
import sys
import time
import tomllib
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
TABLES = ROOT / "tests" / "guards"
WORK = ROOT / "build-guards"
COPY = WORK / "source"
BUILD = COPY / "build"
RESULTS = WORK / "results"

DEFAULT_LIMIT = 180  # seconds for one test
MEMORY_LIMIT = 6 << 30  # without a bound on sizes a test may ask for all there is

# A program without a guard may do what the guard forbids, such as save its settings over /dev/zero,
# to which a test has laid a link. Whoever may write there sees / and /dev read-only while such a test
# runs; other file systems, such as that of /dev/shm, stay as they are, for tests work in them.
FENCE = """
for folder in /tmp "$0"; do mount --bind "$folder" "$folder" || exit 125; done
for folder in / /dev; do mount -o remount,bind,ro "$folder" || exit 125; done
exec "$@"
"""
NO_FENCE = 125

# What the removed lines used is then unused; that is no finding.
UNUSED = "".join(
    f'#pragma GCC diagnostic ignored "-Wunused-{kind}"\n'
    for kind in ("function", "variable", "parameter", "but-set-variable", "const-variable", "label")
) + "#line 1\n"

CAUGHT = "caught"
WHOLE = "passes with all guards in place"


@dataclasses.dataclass(frozen=True)
class Edit:
    file: str
    old: str
    new: str


@dataclasses.dataclass(frozen=True)
class Guard:
    name: str
    group: str
    promise: str
    edits: tuple[Edit, ...]
    test: str
    fails: str  # test function that must fail
    says: str  # or what must stand in the test's output
    hangs: bool  # the guard is a bound on time: running into the limit is the failure meant
    limit: int

    def key(self):
        return hashlib.sha256(repr(self).encode()).hexdigest()[:16]


def fail(text):
    sys.exit(f"guards: {text}")


def read_guard(entry, group):
    entry = dict(entry)
    name = entry.pop("name", "?")
    try:
        edits = [Edit(entry.pop("file"), entry.pop("old"), entry.pop("new", ""))]
        edits += [Edit(e["file"], e["old"], e.get("new", "")) for e in entry.pop("also", [])]
        guard = Guard(name, group, entry.pop("promise"), tuple(edits), entry.pop("test"),
                      entry.pop("fails", ""), entry.pop("says", ""), entry.pop("hangs", False),
                      entry.pop("limit", DEFAULT_LIMIT))
    except KeyError as missing:
        fail(f"{group}: {name}: {missing} is missing")
    if entry:
        fail(f"{group}: {name}: nobody knows {', '.join(entry)}")
    if not (guard.fails or guard.says or guard.hangs):
        fail(f"{group}: {name}: no failure is named")
    return guard


def read_tables():
    guards = []
    for table in sorted(TABLES.glob("*.toml")):
        content = tomllib.loads(table.read_text(encoding="utf-8"))
        guards += [read_guard(entry, table.stem) for entry in content["guard"]]
    names = [guard.name for guard in guards]
    for name in {name for name in names if names.count(name) > 1}:
        fail(f"two guards are called {name}")
    return guards


def mutated(edit, text):
    """The text without the guard, or None when the guard does not stand there exactly once."""
    if not edit.old.strip() or text.count(edit.old) != 1 or edit.old == edit.new:
        return None
    return text.replace(edit.old, edit.new)


def mutations(guard, root):
    """The files without the guard; None when a place is not found."""
    texts = {}
    for edit in guard.edits:
        path = root / edit.file
        if edit.file not in texts:
            if not path.is_file():
                return None
            texts[edit.file] = path.read_text(encoding="utf-8")
        changed = mutated(edit, texts[edit.file])
        if changed is None:
            return None
        texts[edit.file] = changed
    return texts


def listed_tests():
    """The words of all lines that name tests, one by one or in a loop."""
    words = set()
    for path in ROOT.glob("tests/**/CMakeLists.txt"):
        for call in re.findall(r"^\s*(?:qovelmor_test|add_test|foreach)\((.*)", path.read_text(),
                               re.MULTILINE):
            words.update(re.findall(r"\w+", call))
    return words


def check(guards):
    """Whether each guard still stands where its table says; nothing is built."""
    lost = [guard for guard in guards if mutations(guard, ROOT) is None]
    for guard in lost:
        print(f"{guard.group}.toml: {guard.name}: its lines do not stand exactly once in "
              f"{', '.join(edit.file for edit in guard.edits)}")
    known = listed_tests()
    unknown = [guard for guard in guards if guard.test not in known]
    for guard in unknown:
        print(f"{guard.group}.toml: {guard.name}: there is no test {guard.test}")
    print(f"{len(guards)} guards, {len(lost) + len(unknown)} of them lost")
    return not lost and not unknown


def source_files():
    listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard", "-z"], cwd=ROOT,
                            check=True, capture_output=True).stdout.decode().split("\0")
    return sorted(name for name in listed if name and (ROOT / name).is_file())


def copy_sources():
    """Brings the copy up to date, touching only what differs; gives what the sources are."""
    digest = hashlib.sha256()
    present = source_files()
    for name in present:
        content = (ROOT / name).read_bytes()
        if not name.startswith(("docs/", "tests/guards/")) and not name.endswith(".md"):
            digest.update(name.encode() + b"\0" + content)
        target = COPY / name
        if not target.is_file() or target.read_bytes() != content:
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(ROOT / name, target)
            shutil.copymode(ROOT / name, target)
    kept = {COPY / name for name in present}
    for path in list(COPY.rglob("*")):
        if path.is_file() and BUILD not in path.parents and path not in kept:
            path.unlink()
    return digest.hexdigest()[:16]


def build_environment():
    environment = dict(os.environ, CCACHE_NOHASHDIR="1")
    environment.setdefault("CCACHE_BASEDIR", str(ROOT))
    if shutil.which("ccache"):
        for language in ("C", "CXX"):
            environment.setdefault(f"CMAKE_{language}_COMPILER_LAUNCHER", "ccache")
    return environment


def run_quietly(command, log):
    with log.open("ab") as out:
        return subprocess.run(command, cwd=COPY, env=build_environment(), stdout=out,
                              stderr=subprocess.STDOUT).returncode == 0


def build(target, log):
    return run_quietly(["nice", "ninja", "-C", str(BUILD), "-j2", target], log)


def bound_memory():
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


@dataclasses.dataclass
class Run:
    passed: bool
    hung: bool
    output: str


def fenced(command):
    if os.geteuid() != 0:
        return command
    return ["unshare", "--mount", "--propagation", "private", "sh", "-c", FENCE, str(COPY), *command]


def fail_without_fence():
    fail("the superuser runs no program without its guards unless / and /dev are read-only to it "
         "(unshare --mount, mount -o remount,bind,ro)")


def run_test(name, limit):
    """One test through CTest, with everything it started ended after the limit."""
    command = ["ctest", "--test-dir", str(BUILD), "-R", f"^{name}$", "--no-tests=error", "-V"]
    process = subprocess.Popen(fenced(command), cwd=COPY, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, start_new_session=True,
                               preexec_fn=bound_memory)
    try:
        output, _ = process.communicate(timeout=limit)
        hung = b"***Timeout" in output
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        output, _ = process.communicate()
        hung = True
    if process.returncode == NO_FENCE:
        fail_without_fence()
    return Run(process.returncode == 0, hung, output.decode(errors="replace"))


def failed_functions(output):
    return re.findall(r"^(?:\d+: )?FAIL!  : (?:\w+::)*(\w+\(.*?\))", output, re.MULTILINE)


def verdict(guard, run):
    if run.passed:
        return "UNNOTICED"
    if run.hung:
        return CAUGHT if guard.hangs else "hangs"
    functions = failed_functions(run.output)
    if guard.says and guard.says in run.output:
        return CAUGHT
    if guard.fails and any(f == guard.fails or f.startswith(guard.fails + "(") for f in functions):
        return CAUGHT
    return "fails otherwise: " + (", ".join(functions[:4]) or "no function named")


def try_guard(guard, log):
    texts = mutations(guard, COPY)
    if texts is None:
        return "does not apply"
    whole = {name: (COPY / name).read_bytes() for name in texts}
    try:
        for name, text in texts.items():
            (COPY / name).write_text(UNUSED + text, encoding="utf-8")
        if not build(guard.test, log):
            return "does not build"
        run = run_test(guard.test, guard.limit)
        with log.open("a", encoding="utf-8") as out:
            out.write(run.output)
        return verdict(guard, run)
    finally:
        for name, content in whole.items():
            (COPY / name).write_bytes(content)


class Memory:
    """What was found with these very sources, or with earlier ones too."""

    def __init__(self, state, with_earlier):
        self.path = RESULTS / f"{state}.json"
        self.found = {}
        earlier = sorted(RESULTS.glob("*.json"), key=lambda path: path.stat().st_mtime)
        for path in earlier if with_earlier else [self.path]:
            if path.exists():
                self.found |= json.loads(path.read_text())

    def keep(self, key, result):
        self.found[key] = result
        RESULTS.mkdir(parents=True, exist_ok=True)
        temporary = self.path.with_suffix(".new")
        temporary.write_text(json.dumps(self.found, indent=1))
        temporary.replace(self.path)


def passes_whole(test, limit, memory):
    """A test that fails with all guards in place would seem to notice everything."""
    key = f"whole {test}"
    if memory.found.get(key) != WHOLE:
        log = WORK / f"{test}.log"
        log.unlink(missing_ok=True)
        whole = build(test, log) and run_test(test, max(limit, DEFAULT_LIMIT)).passed
        memory.keep(key, WHOLE if whole else "fails")
    return memory.found[key] == WHOLE


def prepare(with_earlier):
    WORK.mkdir(exist_ok=True)
    state = copy_sources()
    # In a container the superuser may be refused a name space of its own.
    if subprocess.run(fenced(["true"]), check=False).returncode != 0:
        fail_without_fence()
    log = WORK / "configure.log"
    if not (BUILD / "build.ninja").exists() and not run_quietly(
            ["cmake", "--preset", "release"], log):
        fail(f"the copy cannot be configured, see {log}")
    return Memory(state, with_earlier)


def prove(guards, with_earlier):
    memory = prepare(with_earlier)
    missed = 0
    print(f"{'guard':<44} {'test':<26} {'s':>5}  result", flush=True)
    # Neighbours share a test and a file: little has to be built between them.
    for guard in sorted(guards, key=lambda g: (g.group, g.test, g.edits[0].file)):
        start = time.monotonic()
        result = memory.found.get(guard.key())
        if result != CAUGHT:
            log = WORK / f"{guard.name}.log"
            log.unlink(missing_ok=True)
            if passes_whole(guard.test, guard.limit, memory):
                result = try_guard(guard, log)
            else:
                result = "its test fails with the guard, too"
            memory.keep(guard.key(), result)
        missed += result != CAUGHT
        spent = time.monotonic() - start
        print(f"{guard.name:<44} {guard.test:<26} {spent:5.0f}  {result}", flush=True)
    print(f"{len(guards)} guards taken away, {len(guards) - missed} noticed, {missed} not")
    return missed == 0


def show(guards):
    for guard in guards:
        print(f"{guard.group:<10} {guard.name:<44} {guard.test:<26} {guard.promise}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--list", action="store_true", help="the guards and their promises")
    parser.add_argument("--check", action="store_true",
                        help="only whether each guard still stands where its table says")
    parser.add_argument("--only", metavar="NAME", action="append", help="this guard (repeatable)")
    parser.add_argument("--group", metavar="TABLE", help="the guards of tests/guards/TABLE.toml")
    parser.add_argument("--earlier", action="store_true",
                        help="count what was found with earlier sources, too")
    options = parser.parse_args()

    guards = read_tables()
    if options.group:
        guards = [guard for guard in guards if guard.group == options.group]
    if options.only:
        guards = [guard for guard in guards if guard.name in options.only]
    if not guards:
        fail("there is no such guard")
    if options.list:
        show(guards)
        return 0
    return 0 if (check(guards) if options.check else prove(guards, options.earlier)) else 1


if __name__ == "__main__":
    sys.exit(main())
