"""Delivers a text into a long document, and reads from the kernel what the editor and the program use
while the program watches for a correction, and afterwards.

usage: watch.py PROGRAM SERVICE [EDITOR]…
"""

import os
import pathlib
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "tests/desktop/session"))
from editors import Editor, document  # noqa: E402
from stage import LEFT_ALT, Stage  # noqa: E402

SIZE = 2_000_000
POLL = 0.75  # Seconds between two looks.
WATCH = 45  # Seconds after which it ends by itself.
MEASURED = 20
MOST_EDITOR, MOST_PROGRAM = 20, 20  # Milliseconds of processor time a look.
LINE = "The quick brown fox jumps over the lazy dog. " * 40 + "\n"
TICK = 1000 / os.sysconf("SC_CLK_TCK")


def used(process):
    """Milliseconds of processor time so far."""
    fields = pathlib.Path(f"/proc/{process}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) * TICK


def measure(processes):
    before = [used(process) for process in processes]
    time.sleep(MEASURED)
    return [used(process) - start for process, start in zip(processes, before)]


def watch(stage, name):
    long = document(stage)
    long.write_text(LINE * (SIZE // len(LINE) + 1))
    editor = Editor(stage, [name, str(long)], name)
    editor.bring_to_front()
    time.sleep(4)  # Until it has laid out what it shows.
    record = stage.dictate(LEFT_ALT, "hello there")
    if record["delivery"] != "自动输入已完成":
        sys.exit(f"{name}: delivered as {record['delivery']}")
    processes = editor.process.pid, stage.program.pid
    time.sleep(3)
    watched = measure(processes)
    time.sleep(WATCH - MEASURED)
    rest = measure(processes)
    editor.process.terminate()
    return [(during - after) / (MEASURED / POLL) for during, after in zip(watched, rest)]


def main():
    stage = Stage(*sys.argv[1:3], {}, use_model=True)
    kept = True
    try:
        stage.model.answer = "We use open ai daily."
        print(f"A look at a document of {SIZE // 1_000_000} MB, processor time")
        for name in sys.argv[3:] or ["mousepad", "featherpad"]:
            for what, cost, most in zip((name, "Tavrin"), watch(stage, name), (MOST_EDITOR, MOST_PROGRAM)):
                verdict = "kept" if cost <= most else "MISSED"
                kept = kept and cost <= most
                print(f"  {what:<24}{cost:7.1f} ms   (at most {most} ms)   {verdict}", flush=True)
    finally:
        stage.close()
    sys.exit(0 if kept else 1)


if __name__ == "__main__":
    main()
