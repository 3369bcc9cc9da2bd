#!/usr/bin/env python3
"""Gives the runner small lists and a small project, and sees what it says of them."""

import json
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from run_mutations import Mutation, Test, check, read_lists, synchronise

RUNNER = Path(__file__).parent / "run_mutations.py"

PRESETS = {
    "version": 6,
    "configurePresets": [{"name": "dev", "generator": "Ninja",
                          "binaryDir": "${sourceDir}/build/${presetName}"}],
    "buildPresets": [{"name": "dev", "configurePreset": "dev"}],
    "testPresets": [{"name": "dev", "configurePreset": "dev"}],
}
# A product that is "compiled" from a text, and tests of it. The word broken does not compile.
PROJECT = """
cmake_minimum_required(VERSION 3.25)
project(small LANGUAGES NONE)
enable_testing()
add_custom_command(OUTPUT product DEPENDS ${PROJECT_SOURCE_DIR}/source
  COMMAND sh ${PROJECT_SOURCE_DIR}/compile ${PROJECT_SOURCE_DIR}/source product)
add_custom_target(all_of_it ALL DEPENDS product)
add_test(NAME SaysHello COMMAND grep -q hello ${PROJECT_BINARY_DIR}/product)
add_test(NAME SaysYouLast COMMAND grep -q you$ ${PROJECT_BINARY_DIR}/product)
add_test(NAME Fails COMMAND false)
add_test(NAME IsSkipped COMMAND sh -c "exit 4")
set_tests_properties(IsSkipped PROPERTIES SKIP_RETURN_CODE 4)
"""
COMPILER = "if grep -q broken $1; then exit 1; fi; cp $1 $2"


def mutation(name="some-edit", **changes):
    values = {"behaviour": "It greets.", "file": "source", "old": "hello", "new": "bye",
              "test": "SaysHello"}
    return {"name": name} | values | changes


class RunnerTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name).resolve() / "small"
        self.lists = self.root / "lists"
        self.lists.mkdir(parents=True)
        (self.root / "source").write_text("hello you\n", encoding="utf-8")

    def write_list(self, *entries, name="list.json"):
        (self.lists / name).write_text(json.dumps(list(entries)), encoding="utf-8")

    def faults(self, *entries):
        tests = [Test("SaysHello", frozenset(), frozenset())]
        return check([Mutation(**entry) for entry in entries], self.root, tests)

    def make_project(self):
        (self.root / "CMakeLists.txt").write_text(PROJECT, encoding="utf-8")
        (self.root / "compile").write_text(COMPILER, encoding="utf-8")
        (self.root / "CMakePresets.json").write_text(json.dumps(PRESETS), encoding="utf-8")
        for step in (["cmake", "--preset", "dev"], ["cmake", "--build", "--preset", "dev"]):
            subprocess.run(step, cwd=self.root, check=True, capture_output=True)

    def run_it(self, *names, task="run"):
        done = subprocess.run([sys.executable, "-B", RUNNER, "--list", self.lists, task, self.root,
                               *names], capture_output=True, text=True, check=False)
        self.assertEqual(done.stderr, "")
        return done.returncode, done.stdout

    def assert_said(self, output, *patterns):
        lines = output.splitlines()
        for pattern in patterns:
            self.assertTrue(any(re.fullmatch(pattern, line) for line in lines), output)


class ListTest(RunnerTest):
    def test_an_edit_that_applies_has_no_fault(self):
        self.assertEqual(self.faults(mutation()), [])

    def test_text_that_is_gone_or_stands_twice_is_a_fault(self):
        self.assertEqual(self.faults(mutation(old="farewell")),
                         ["some-edit: the text to replace stands 0 times in source"])
        self.assertEqual(self.faults(mutation(old="o")),
                         ["some-edit: the text to replace stands 2 times in source"])
        self.assertEqual(self.faults(mutation(old="")),
                         ["some-edit: the text to replace stands 0 times in source"])

    def test_an_edit_that_changes_nothing_is_a_fault(self):
        self.assertEqual(self.faults(mutation(new="hello")), ["some-edit: nothing is changed"])

    def test_the_file_stands_in_the_tree(self):
        (self.root.parent / "outside").write_text("hello", encoding="utf-8")
        for file in ("nowhere", "../outside", "lists", ""):
            self.assertEqual(self.faults(mutation(file=file)),
                             [f"some-edit: there is no file {file}"])

    def test_names_are_unique_and_in_kebab_case(self):
        self.assertEqual(self.faults(mutation(), mutation()),
                         ["some-edit: two edits have this name"])
        self.assertEqual(self.faults(mutation(name="Some edit")),
                         ["Some edit: the name is not in kebab case"])

    def test_the_behaviour_is_named(self):
        self.assertEqual(self.faults(mutation(behaviour="")),
                         ["some-edit: the behaviour is not named"])

    def test_the_expression_selects_a_test(self):
        self.assertEqual(self.faults(mutation(test="^Says")), [])
        self.assertEqual(self.faults(mutation(test="SaysBye")),
                         ["some-edit: no test is called SaysBye"])
        self.assertEqual(self.faults(mutation(test="")), ["some-edit: no test is called nothing"])
        self.assertEqual(len(self.faults(mutation(test="("))), 1)

    def test_every_list_of_the_folder_is_read(self):
        self.write_list(mutation("one"), name="a.json")
        self.write_list(mutation("two"), name="b.json")
        mutations, faults = read_lists(self.lists)
        self.assertEqual([entry.name for entry in mutations], ["one", "two"])
        self.assertEqual(faults, [])

    def test_what_is_no_list_of_edits_is_a_fault(self):
        self.assertEqual(len(read_lists(self.lists)[1]), 1)
        incomplete = mutation()
        del incomplete["behaviour"]
        for entry in (incomplete, mutation() | {"more": "x"}, mutation() | {"old": 3}, "text"):
            self.write_list(entry)
            self.assertEqual(len(read_lists(self.lists)[1]), 1, entry)
        for text in ("[", '{"name": "x"}'):
            (self.lists / "list.json").write_text(text, encoding="utf-8")
            self.assertEqual(len(read_lists(self.lists)[1]), 1, text)


class CopyTest(RunnerTest):
    def test_a_copy_is_brought_up_to_date_and_keeps_what_is_alike(self):
        (self.root / "folder").mkdir()
        (self.root / "folder/script").write_text("one", encoding="utf-8")
        (self.root / "folder/script").chmod(0o755)
        (self.root / "build").mkdir()
        target = self.root / "build/copy"
        synchronise(self.root, target)
        self.assertEqual((target / "folder/script").stat().st_mode & 0o777, 0o755)
        self.assertFalse((target / "build").exists())

        (target / "build").mkdir()
        before = (target / "source").stat().st_mtime_ns
        (self.root / "folder/script").write_text("two", encoding="utf-8")
        (target / "left-over").write_text("", encoding="utf-8")
        synchronise(self.root, target)
        self.assertEqual((target / "folder/script").read_text(encoding="utf-8"), "two")
        self.assertEqual((target / "source").stat().st_mtime_ns, before)
        self.assertFalse((target / "left-over").exists())
        self.assertTrue((target / "build").exists())


class RunTest(RunnerTest):
    def setUp(self):
        super().setUp()
        self.make_project()

    def test_edits_are_caught_or_survive(self):
        self.write_list(mutation("caught-by-its-test"),
                        mutation("seen-by-no-test", old="you", new="all"))
        status, output = self.run_it()
        self.assertEqual(status, 1)
        self.assert_said(output, r"caught .*caught-by-its-test: SaysHello",
                         r"SURVIVED .*seen-by-no-test: It greets\.", "1 caught, 1 survived")
        self.assertEqual((self.root / "source").read_text(encoding="utf-8"), "hello you\n")

    def test_one_test_of_those_selected_is_enough(self):
        self.write_list(mutation(old="you", new="you all", test="^Says"))
        status, output = self.run_it()
        self.assertEqual(status, 0)
        self.assert_said(output, r"caught .*: SaysYouLast", "1 caught, 0 survived")

    def test_names_select_edits(self):
        self.write_list(mutation("one"), mutation("two", old="you", new="all"))
        self.assert_said(self.run_it("one")[1], "1 caught, 0 survived")
        self.assertEqual(self.run_it("three"), (1, "three: no such edit\n"))

    def test_an_edit_that_does_not_build_is_not_caught(self):
        self.write_list(mutation(new="broken"))
        status, output = self.run_it()
        self.assertEqual(status, 1)
        self.assert_said(output, r"UNTRIED .*some-edit: it does not build",
                         "0 caught, 0 survived, 1 could not be tried")

    def test_a_test_that_fails_anyway_or_does_not_run_proves_nothing(self):
        self.write_list(mutation("fails", test="Fails"), mutation("skipped", test="IsSkipped"))
        status, output = self.run_it()
        self.assertEqual(status, 1)
        self.assert_said(output, r"UNTRIED .*fails: without the edit this fails: Fails",
                         r"UNTRIED .*skipped: not run: IsSkipped",
                         "0 caught, 0 survived, 2 could not be tried")

    def test_after_an_edit_the_copy_is_as_it_was(self):
        self.write_list(mutation("first"), mutation("second", old="hello you", new="hi you"))
        self.assert_said(self.run_it()[1], "2 caught, 0 survived")
        copy = self.root / "build/mutations/tree/source"
        self.assertEqual(copy.read_text(encoding="utf-8"), "hello you\n")

    def test_a_faulty_list_is_told_before_anything_is_tried(self):
        self.write_list(mutation(), mutation("gone", old="farewell"))
        for task in ("check", "run"):
            self.assertEqual(self.run_it(task=task), (
                1, "gone: the text to replace stands 0 times in source\n"))
        self.assertFalse((self.root / "build/mutations").exists())

    def test_a_list_without_a_fault_is_checked_without_trying_it(self):
        self.write_list(mutation())
        self.assertEqual(self.run_it(task="check"), (0, "1 edits apply\n"))
        self.assertFalse((self.root / "build/mutations").exists())


if __name__ == "__main__":
    unittest.main()
