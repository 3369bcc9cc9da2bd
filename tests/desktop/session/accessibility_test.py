"""Walks every page over the accessibility bus, in each language, as a screen reader does: presses the
sidebar's buttons there, and finds every control named, with a role, in the language of the page.

usage: accessibility_test.py PROGRAM SERVICE [EDITOR]
"""

import json
import pathlib
import re
import subprocess
import sys
import time

from stage import Stage, wait_until

TREE = pathlib.Path(__file__).parent / "accessible_tree.py"
PAGES = {
    "en": ["Overview", "History", "Dictionary", "General", "Input & Output", "Permissions", "Account"],
    "zh-Hans": ["概览", "历史记录", "词典", "通用", "输入与输出", "权限与健康", "账户"],
    "zh-Hant": ["概覽", "歷史記錄", "詞典", "一般", "輸入與輸出", "權限與健康", "帳戶"],
}
# What a screen reader says of a control; "panel" or "filler" says nothing.
ROLES = {"button", "push button", "toggle button", "check box", "radio button", "text", "password text",
         "combo box", "list item", "table cell", "list", "table", "scroll bar"}
# How many controls the page has besides the sidebar, at least.
FEWEST = {"History": 9, "Dictionary": 9, "General": 5, "Input & Output": 8, "Account": 1}
RECORDS = [{"id": f"R{i}", "timestamp": time.time() - 60 * i, "mode": "dictation", "transcript": f"record {i}",
            "finalText": f"Record {i}.", "inputCharacters": 9} for i in range(3)]
TERMS = [{"id": f"T{i}", "term": f"Term{i}", "source": "manual", "enabled": True, "hits": 1} for i in range(3)]
IDEOGRAPH = re.compile("[\u4e00-\u9fff]")


def check(condition, *explanation):
    if not condition:
        sys.exit(" ".join(str(part) for part in explanation))


class ScreenReader:
    def __init__(self, stage):
        self._process = stage.start(TREE, str(stage.program.pid), stdin=subprocess.PIPE,
                                    stdout=subprocess.PIPE, text=True)

    def _tell(self, order):
        self._process.stdin.write(order + "\n")
        self._process.stdin.flush()
        return json.loads(self._process.stdout.readline())

    def tree(self):
        return self._tell("tree")

    def press(self, name):
        return self._tell(f"press {name}")


def controls(tree):
    return [node for node in tree if "focusable" in node["states"]]


def is_open(tree, page):
    """Its button in the sidebar is the one that is checked."""
    return [node["name"] for node in tree if "checked" in node["states"]
            and node["role"] == "check box"][:1] == [page]


def walk(reader, language):
    for page, english in zip(PAGES[language], PAGES["en"]):
        check(reader.press(page), "no button", page)
        wait_until(f"the page {page}", lambda: is_open(reader.tree(), page))
        tree = reader.tree()
        found = controls(tree)
        unnamed = [node for node in found if not node["name"].strip()]
        check(not unnamed, page, "has controls without a name:", unnamed)
        strange = [node for node in found if node["role"] not in ROLES]
        check(not strange, page, "has controls of no kind:", strange)
        # Of a combo box the name is what is chosen.
        silent = [node for node in found if node["role"] == "combo box" and not node["description"]]
        check(not silent, page, "does not say what is chosen by", silent)
        names = [node["name"] for node in found]
        check(set(PAGES[language]) <= set(names), "the sidebar has", names)
        more = [name for name in names if name not in PAGES[language]]
        check(len(more) >= FEWEST.get(english, 0), page, "has only", more)
        if language == "en":
            foreign = [name for name in names if IDEOGRAPH.search(name) and name not in ("简体中文", "繁體中文")]
            check(not foreign, page, "is not English:", foreign)
        else:
            check(not more or any(IDEOGRAPH.search(name) for name in more), page, "is not Chinese:", more)
        print(f"{language}: {page}, {len(more)} controls", flush=True)


def main():
    for language in PAGES:
        stage = Stage(*sys.argv[1:3], {"interfaceLanguage": language,
                                       "personalDictionaryEntries": TERMS}, use_model=False)
        try:
            stage.history_file.parent.mkdir(parents=True, exist_ok=True)
            stage.history_file.write_text(json.dumps(RECORDS))
            walk(ScreenReader(stage), language)
        finally:
            stage.close()


if __name__ == "__main__":
    main()
