"""What `tavrin --health` prints and answers: on a desktop where all is well as the page Permissions shows
it, in each language; and where one thing is missing, of that alone.

usage: health_test.py PROGRAM SERVICE [EDITOR]
"""

import os
import subprocess
import sys

from accessibility_test import PAGES, ScreenReader, check, is_open
from microphone_test import microphones, plug_in, unplug_all
from stage import Stage, wait_until

PAGE = 5  # Of PAGES.
ROWS = ["Accessibility", "Microphone", "Speech Recognition", "Tavrin Cloud", "Cursor delivery", "Recogniser"]
WELL = {
    "Accessibility": "✓ Allowed — can insert at the current cursor",
    "Microphone": "✓ Allowed — listens only when triggered",
    "Speech Recognition": "✓ Allowed — ready to transcribe",
    "Tavrin Cloud": "✓ Signed in to Tavrin Cloud",
    "Cursor delivery": "— Checked after your first input",
    "Recogniser": "✓ Built-in speech recognition, language: English",
}
PATIENCE = 30


def health(stage, **environment):
    """The status that --health ends with, and its verdicts by their titles."""
    done = subprocess.run(
        [sys.argv[1], "--health"], capture_output=True, text=True, timeout=PATIENCE, check=False,
        env={**os.environ, "XDG_CONFIG_HOME": str(stage.folder("config")),
             "XDG_DATA_HOME": str(stage.folder("data")), **environment})
    lines = done.stdout.splitlines()
    check(all(": " in line for line in lines), "no verdicts:", lines, done.stderr)
    return done.returncode, dict(line.split(": ", 1) for line in lines)


def test_as_the_page_shows_it(stage, language):
    status, verdicts = health(stage)
    check(status == 0 and len(verdicts) == len(WELL), "of a healthy desktop:", status, verdicts)
    if language == "en":
        check(verdicts == WELL, "of a healthy desktop:", verdicts)
    reader = ScreenReader(stage)
    page = PAGES[language][PAGE]
    check(reader.press(page), "no button", page)
    wait_until(f"the page {page}", lambda: is_open(reader.tree(), page))

    def missing():
        shown = "\n".join(f"{node['name']}\n{node['description']}" for node in reader.tree())
        return [text for line in verdicts.items() for text in line if text not in shown]

    wait_until("the verdicts on the page", lambda: not missing())


def check_problems(stage, expected, **environment):
    """All is as well as before but for what is expected."""
    status, verdicts = health(stage, **environment)
    check(status == 1, "in spite of a problem the status is", status, verdicts)
    check(list(verdicts) == ROWS, "the rows are", list(verdicts))
    check(verdicts == {**WELL, **expected}, "expected", expected, "of", verdicts)


def test_without_accessibility(stage):
    check_problems(stage, {"Accessibility": "⚠ Disabled — needed to insert at the current cursor"},
                   DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent")


def test_without_a_microphone(stage):
    plugged = microphones()
    unplug_all()
    try:
        check_problems(stage, {"Microphone": "⚠ No microphone — cannot capture audio"})
    finally:
        plug_in(plugged)


def test_without_a_recogniser(stage):
    check_problems(stage, {
        "Speech Recognition": "⚠ No recogniser — cannot transcribe",
        "Recogniser": "⚠ No speech model is installed. Install the package pocketsphinx-en-us, or name "
                      "the folder of a Sphinx model."})


def with_stage(settings, *tests):
    stage = Stage(*sys.argv[1:3], settings, use_model=False)
    try:
        for test in tests:
            test(stage)
    finally:
        stage.close()


def main():
    for language in PAGES:
        with_stage({"interfaceLanguage": language},
                   lambda stage, language=language: test_as_the_page_shows_it(stage, language))
    with_stage({}, test_without_accessibility, test_without_a_microphone)
    with_stage({"linuxSpeechSphinxModel": "/nonexistent"}, test_without_a_recogniser)


if __name__ == "__main__":
    main()
