"""The matrix of keyboard layouts: a paste, typing and the shortcuts in each of them.

usage: layouts.py KEYBOARD EDITOR [LAYOUT…]

Prints a table in Markdown; all layouts when none is named. Ends with 1 when something is not right.
"""

import pathlib
import sys

TOP = pathlib.Path(__file__).parents[2]
sys.path[:0] = [str(TOP / "tests/desktop/session")]

from layouts import ROWS, SHORTCUTS, Layouts  # noqa: E402


def print_row(*cells):
    print("| " + " | ".join(cells) + " |", flush=True)


def delivered(layouts, field):
    """The outcomes of a paste and of typing into that field."""
    field.bring_to_front()
    for what in ("paste", "type"):
        wrong = layouts.deliver(what, field)
        if wrong:
            print(wrong, file=sys.stderr)
        yield "DIFFERENT" if wrong else "equal"


def outcomes(layouts, row):
    """What the table says of a keyboard."""
    layouts.keyboard.use(row)
    for field in layouts.fields.values():
        yield from delivered(layouts, field)
    wrong = layouts.try_shortcuts(row)
    yield wrong or f"all {len(SHORTCUTS)}"
    yield "Alt, when it goes down" if layouts.right_option() else "AltGr, tapped alone"


def main():
    program, editor, *names = sys.argv[1:]
    right = True
    layouts = Layouts(program, editor)
    try:
        print_row("Layout", *(f"{toolkit}, {what}" for toolkit in layouts.fields
                              for what in ("paste", "typing")), "Shortcuts", "Right Option")
        print_row(*["---"] * (3 + 2 * len(layouts.fields)))
        for name in names or ROWS:
            cells = list(outcomes(layouts, ROWS[name]))
            print_row(name, *cells)
            right &= "DIFFERENT" not in cells and cells[-2].startswith("all ")
    finally:
        layouts.close()
    sys.exit(0 if right else 1)


if __name__ == "__main__":
    main()
