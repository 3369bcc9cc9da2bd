"""A paste, typing and the shortcuts, in every keyboard layout and with locked modifiers.

usage: layouts_test.py KEYBOARD EDITOR [CASE …]     CASE: LayoutsTest.test_…
"""

import sys
import unittest

from layouts import ROWS, Layouts


class LayoutsTest(unittest.TestCase):
    program = editor = ""

    @classmethod
    def setUpClass(cls):
        cls.layouts = Layouts(cls.program, cls.editor)
        cls.addClassCleanup(cls.layouts.close)

    def try_keyboard(self, row):
        layouts = self.layouts
        layouts.keyboard.use(row)
        for toolkit, field in layouts.fields.items():
            field.bring_to_front()
            for what in ("paste", "type"):
                self.assertEqual(layouts.deliver(what, field), "", f"{what} into {toolkit}")
        self.assertEqual(layouts.try_shortcuts(row), "")


def test_of(row):
    return lambda self: self.try_keyboard(row)


for number, (name, row) in enumerate(ROWS.items()):
    words = "".join(letter if letter.isalnum() else "_" for letter in name)
    setattr(LayoutsTest, f"test_{number:02}_{words}", test_of(row))

if __name__ == "__main__":
    LayoutsTest.program, LayoutsTest.editor = sys.argv[1:3]
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]], verbosity=2)
