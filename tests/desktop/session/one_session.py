"""One session, to look at: what the program logs, types and keeps.

usage: one_session.py PROGRAM SERVICE [options], see --help
"""

import argparse
import json
import sys
import tempfile

from editors import EDITORS
from stage import LEFT_ALT, RIGHT_ALT, Stage, run

KEYS = {"dictation": RIGHT_ALT, "translation": LEFT_ALT, "chat": "ctrl+alt+space"}


def parse():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program")
    parser.add_argument("service")
    parser.add_argument("--editor", choices=sorted(EDITORS), default="mousepad")
    parser.add_argument("--operation", choices=KEYS, default="dictation")
    parser.add_argument("--say", metavar="SENTENCE", default="please send the report to the office before friday")
    parser.add_argument("--answer", metavar="TEXT", default="This is the answer.")
    parser.add_argument("--picture", metavar="FILE", help="of the desktop, at the end")
    return parser.parse_args()


def main():
    arguments = parse()
    with tempfile.TemporaryFile("w+") as log:
        stage = Stage(arguments.program, arguments.service, {}, use_model=arguments.operation != "dictation", log=log)
        try:
            stage.model.answer = arguments.answer
            editor = EDITORS[arguments.editor](stage)
            editor.bring_to_front()
            kept = stage.dictate(KEYS[arguments.operation], arguments.say)
            print("In the editor:", editor.text())
            print("Kept:", json.dumps(kept, ensure_ascii=False, indent=2))
        finally:
            if arguments.picture:
                run("import", "-window", "root", arguments.picture)
            stage.close()
            log.seek(0)
            sys.stdout.write(log.read())


if __name__ == "__main__":
    main()
