#!/usr/bin/env python3
"""Breaks the program on purpose, one behaviour at a time, and expects a test to notice.

usage: run_mutations.py [--list FOLDER] check ROOT
       run_mutations.py [--list FOLDER] run ROOT [NAME...]

The edits stand in *.json beside this file, or in FOLDER: lists of objects with

  name       short-kebab-case, unique
  behaviour  what is broken, in a sentence
  file       the file that is edited, relative to ROOT
  old, new   what is replaced: text that stands there exactly once, and what comes in its place
  test       an expression for ctest -R; at least one of the tests it selects must fail

check sees that every edit still applies and selects a test; the whole of the preset dev must have
been built. run also makes each edit, or each that is named, in a copy of the project below
build/mutations, builds what the tests need, and runs them. The tests must pass before the edit; a
tree that does not build, or a test that does not run, is a fault of the list and no proof.
Tests labelled desktop get a virtual desktop.
"""

import argparse
import contextlib
import filecmp
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import xml.etree.ElementTree as ElementTree
from dataclasses import dataclass
from pathlib import Path

FIELDS = ("name", "behaviour", "file", "old", "new", "test")
NAME = re.compile(r"[a-z0-9]+(-[a-z0-9]+)*")
BUILD = Path("build/dev")  # Of the preset.
COPY = Path("build/mutations")
NOT_COPIED = {"build", ".git", "__pycache__"}


class Untried(Exception):
    """Why an edit could not be tried: something other than the behaviour it breaks is wrong."""


@dataclass(frozen=True)
class Mutation:
    name: str
    behaviour: str
    file: str
    old: str
    new: str
    test: str


@dataclass(frozen=True)
class Test:
    name: str
    labels: frozenset
    products: frozenset  # What it needs of the build, relative to the folder of the build.


def read_list(path):
    """The edits of one file, and what is wrong with its form."""
    try:
        entries = json.loads(path.read_text(encoding="utf-8"))
    except ValueError as error:
        return [], [f"{path.name}: {error}"]
    mutations, faults = [], []
    if not isinstance(entries, list):
        return [], [f"{path.name}: not a list"]
    for number, entry in enumerate(entries, 1):
        if not isinstance(entry, dict) or sorted(entry) != sorted(FIELDS) \
                or not all(isinstance(value, str) for value in entry.values()):
            faults.append(f"{path.name}: entry {number} has not exactly the texts {', '.join(FIELDS)}")
        else:
            mutations.append(Mutation(**entry))
    return mutations, faults


def read_lists(folder):
    mutations, faults = [], []
    for path in sorted(Path(folder).glob("*.json")):
        found, wrong = read_list(path)
        mutations += found
        faults += wrong
    if not mutations and not faults:
        faults.append(f"{folder}: no edits")
    return mutations, faults


def faults_of(mutation, root):
    """What keeps the edit from being made in the tree."""
    if not NAME.fullmatch(mutation.name):
        yield "the name is not in kebab case"
    if not mutation.behaviour:
        yield "the behaviour is not named"
    path = (root / mutation.file).resolve()
    if not mutation.file or not path.is_relative_to(root.resolve()) or not path.is_file():
        yield f"there is no file {mutation.file}"
        return
    times = path.read_text(encoding="utf-8").count(mutation.old) if mutation.old else 0
    if times != 1:
        yield f"the text to replace stands {times} times in {mutation.file}"
    if mutation.old == mutation.new:
        yield "nothing is changed"


def selected(expression, tests):
    return [test for test in tests if re.search(expression, test.name)]


def check(mutations, root, tests):
    """Lines that tell what is wrong with the list."""
    faults = []
    for mutation in mutations:
        faults += [f"{mutation.name}: {fault}" for fault in faults_of(mutation, root)]
        try:
            if not mutation.test or not selected(mutation.test, tests):
                faults.append(f"{mutation.name}: no test is called {mutation.test or 'nothing'}")
        except re.error as error:
            faults.append(f"{mutation.name}: {mutation.test}: {error}")
    names = [mutation.name for mutation in mutations]
    faults += [f"{name}: two edits have this name"
               for name in sorted(set(names)) if names.count(name) > 1]
    return faults


def tests_of(root):
    """The tests that ctest knows in the tree's build."""
    folder = (root / BUILD).resolve()
    answer = subprocess.run(["ctest", "--show-only=json-v1"], cwd=folder, check=True,
                            capture_output=True, text=True).stdout
    tests = []
    for test in json.loads(answer)["tests"]:
        labels = [prop["value"] for prop in test.get("properties", []) if prop["name"] == "LABELS"]
        products = [os.path.relpath(word, folder) for word in test.get("command", [])
                    if Path(word).is_relative_to(folder) and Path(word).is_file()]
        tests.append(Test(test["name"], frozenset(*labels), frozenset(products)))
    return tests


def synchronise(source, target):
    """Makes the target a copy of the source; what is alike keeps its time, and so what was built."""
    target.mkdir(parents=True, exist_ok=True)
    wanted = {entry.name: entry for entry in os.scandir(source) if entry.name not in NOT_COPIED}
    for entry in list(os.scandir(target)):
        other = wanted.get(entry.name)
        if entry.name in NOT_COPIED or (other and other.is_dir() == entry.is_dir()):
            continue
        shutil.rmtree(entry.path) if entry.is_dir() else os.unlink(entry.path)
    for name, entry in wanted.items():
        place = target / name
        if entry.is_dir():
            synchronise(Path(entry.path), place)
        elif not place.exists() or not filecmp.cmp(entry.path, place, shallow=False):
            shutil.copyfile(entry.path, place)
            shutil.copymode(entry.path, place)


class Desktop:
    """A virtual desktop, started when a test first needs it."""

    def __init__(self, root, scratch):
        self.script = root / "scripts/virtual-desktop"
        self.folder = scratch / "desktop"
        self.values = None

    def environment(self):
        if self.values is None:
            subprocess.run([self.script, "start", self.folder], check=True, stdin=subprocess.DEVNULL)
            output = subprocess.run(["bash", "-c", '. "$1/env" && env -0', "-", self.folder],
                                    check=True, capture_output=True, text=True).stdout
            self.values = dict(pair.split("=", 1) for pair in output.split("\0") if pair)
        return self.values

    def stop(self):
        if self.folder.exists():
            subprocess.run([self.script, "stop", self.folder], check=False)
        self.values = None


class Runner:
    """Tries edits in a copy of the tree."""

    def __init__(self, root, tests, scratch):
        self.root = root
        self.copy = root / COPY / "tree"
        self.tests = tests
        self.scratch = scratch
        self.desktop = Desktop(root, scratch)
        self.proven = set()
        self.last_output = ""  # Of the tests that ran last.
        # Alike below the project and below its copy: what one of them compiled serves the other.
        os.environ.setdefault("CCACHE_BASEDIR", str(root))
        os.environ.setdefault("CCACHE_NOHASHDIR", "1")

    def command(self, *words):
        """Runs a command in the copy; its status and what it printed."""
        done = subprocess.run([str(word) for word in words], cwd=self.copy, check=False,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, errors="replace")
        return done.returncode, done.stdout

    def prepare(self):
        synchronise(self.root, self.copy)
        status, output = self.command("cmake", "--preset", "dev")
        if status != 0:
            raise SystemExit(f"{output}\nThe copy could not be configured.")

    def build(self, tests):
        products = sorted(set().union(*(test.products for test in tests)))
        if not products:
            return
        status, output = self.command("cmake", "--build", "--preset", "dev", "--target", *products)
        if status != 0:
            raise Untried("it does not build\n" + "\n".join(output.splitlines()[-25:]))

    def environment(self, tests):
        if any("desktop" in label for test in tests for label in test.labels):
            return self.desktop.environment()
        home = self.scratch / "home"
        home.mkdir(exist_ok=True)
        return {name: value for name, value in os.environ.items()
                if not re.fullmatch(r"XDG_(CONFIG|DATA|CACHE|STATE)_HOME", name)} | {"HOME": str(home)}

    def failures(self, expression, tests):
        """The names of the tests that failed, the run ending with the first."""
        report = self.scratch / "report.xml"
        report.unlink(missing_ok=True)
        done = subprocess.run(
            ["ctest", "--preset", "dev", "-R", expression, "--stop-on-failure", "--no-tests=error",
             "--output-junit", str(report)], cwd=self.copy, env=self.environment(tests),
            check=False, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
            text=True, errors="replace")
        self.last_output = "\n".join(done.stdout.splitlines()[-25:])
        if not report.exists():
            raise Untried("no test ran\n" + self.last_output)
        cases = list(ElementTree.parse(report).iter("testcase"))
        failed = [case.get("name") for case in cases if case.get("status") == "fail"]
        not_run = [case.get("name") for case in cases if case.get("status") not in ("run", "fail")]
        if not failed and (not_run or not cases):
            raise Untried("not run: " + (", ".join(not_run) or "every test"))
        return failed

    def prove(self, expression, tests):
        """Once per selection: without an edit its tests pass."""
        names = frozenset(test.name for test in tests)
        if names in self.proven:
            return
        self.build(tests)
        if failed := self.failures(expression, tests):
            self.desktop.stop()  # It may be for what an earlier test left there.
            raise Untried("without the edit this fails: " + ", ".join(failed) + "\n" + self.last_output)
        self.proven.add(names)

    @contextlib.contextmanager
    def edited(self, mutation):
        path = self.copy / mutation.file
        whole = path.read_bytes()
        text = whole.decode().replace(mutation.old, mutation.new)
        path.write_bytes(text.encode())
        try:
            yield
        finally:
            path.write_bytes(whole)

    def attempt(self, mutation):
        """The names of the tests that caught it."""
        tests = selected(mutation.test, self.tests)
        self.prove(mutation.test, tests)
        with self.edited(mutation):
            self.build(tests)
            try:
                return self.failures(mutation.test, tests)
            finally:
                self.desktop.stop()  # A broken program may leave keys down, or the sound muted.


def run(mutations, root, tests):
    """Tries the edits, tells of each, and says whether all were caught."""
    counts = {"caught": 0, "SURVIVED": 0, "UNTRIED": 0}
    with tempfile.TemporaryDirectory(prefix="tavrin-mutations.") as folder:
        runner = Runner(root, tests, Path(folder))
        try:
            runner.prepare()
            for mutation in sorted(mutations, key=lambda one: (one.test, one.file)):
                started = time.monotonic()
                try:
                    failed = runner.attempt(mutation)
                    verdict = "caught" if failed else "SURVIVED"
                    why = ", ".join(failed) or mutation.behaviour
                except Untried as reason:
                    verdict, why = "UNTRIED", str(reason)
                counts[verdict] += 1
                print(f"{verdict:8} {time.monotonic() - started:4.0f} s  {mutation.name}: {why}",
                      flush=True)
        finally:
            runner.desktop.stop()
    print(f"{counts['caught']} caught, {counts['SURVIVED']} survived"
          + (f", {counts['UNTRIED']} could not be tried" if counts["UNTRIED"] else ""))
    return counts["caught"] == len(mutations)


def main():
    parser = argparse.ArgumentParser(usage=__doc__.split("\n\n")[1].replace("usage: ", ""))
    parser.add_argument("--list", type=Path, default=Path(__file__).parent)
    parser.add_argument("task", choices=("check", "run"))
    parser.add_argument("root", type=lambda text: Path(text).resolve())
    parser.add_argument("names", nargs="*")
    arguments = parser.parse_args()

    mutations, faults = read_lists(arguments.list)
    tests = tests_of(arguments.root)
    faults += check(mutations, arguments.root, tests)
    unknown = set(arguments.names) - {mutation.name for mutation in mutations}
    faults += [f"{name}: no such edit" for name in sorted(unknown)]
    if faults:
        print("\n".join(faults))
        return 1
    if arguments.task == "check":
        print(f"{len(mutations)} edits apply")
        return 0
    chosen = [mutation for mutation in mutations
              if not arguments.names or mutation.name in arguments.names]
    return 0 if run(chosen, arguments.root, tests) else 1


if __name__ == "__main__":
    sys.exit(main())
