"""The matrix of editors: a text of every kind of character, delivered into each of them.

usage: matrix.py PROGRAM SERVICE [EDITOR…]

Prints a table in Markdown; all editors when none is named. Ends with 1 when a text is not right.
"""

import os
import pathlib
import sys

TOP = pathlib.Path(__file__).parents[2]
sys.path[:0] = [str(TOP / "tests/desktop/session"), str(TOP / "bench/session")]

from editors import EDITORS  # noqa: E402
from log import Log  # noqa: E402
from session_test import LEFT_ALT, MIXED, SENTENCE  # noqa: E402
from stage import Stage  # noqa: E402

STAGES = ("start", "stop", "recogniser", "service", "delivery", "closing")


def deliver(program, service, name):
    """By what the text was brought, whether the editor holds it, and the time of every stage."""
    log = Log(pathlib.Path(os.environ["XDG_RUNTIME_DIR"]) / f"{name}.log")
    stage = Stage(program, service, {}, use_model=True, log=log.file)
    try:
        stage.model.answer = MIXED
        editor = EDITORS[name](stage)
        editor.bring_to_front()
        stage.dictate(LEFT_ALT, SENTENCE)
        stages = log.next_stages()
        return log.means(), editor.text() == MIXED, stages
    finally:
        stage.close()
        log.close()


def print_row(*cells):
    print("| " + " | ".join(cells) + " |", flush=True)


def main():
    program, service, *names = sys.argv[1:]
    print_row("Editor", "Delivered by", "Text", *(f"{stage} (ms)" for stage in STAGES))
    print_row("---", "---", "---", *("---:" for _ in STAGES))
    right = True
    for name in names or EDITORS:
        means, equal, stages = deliver(program, service, name)
        print_row(name, means, "equal" if equal else "DIFFERENT",
                  *(f"{stages[stage]:.1f}" for stage in STAGES))
        right &= equal
    sys.exit(0 if right else 1)


if __name__ == "__main__":
    main()
