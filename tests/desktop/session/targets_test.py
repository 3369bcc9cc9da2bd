"""Whole sessions into difficult targets: the text stands in the right field or on the clipboard,
never in another window, and the program is ready for the next session.

usage: targets_test.py PROGRAM SERVICE EDITOR [CASE …]     CASE: TargetsTest.test_…
"""

import sys
import threading
import time
import unittest

from display import Display, Heartbeat
from editors import clipboard
from stage import LEFT_ALT, Stage, run, wait_until, xdotool
from target import Target

SENTENCE = "hello there"
DELIVERED = "自动输入已完成"

# The program's main thread may wait so long for others, and the machine may be busy besides.
LONGEST_SILENCE = 0.5
LOAD = 0.25


class TargetsTest(unittest.TestCase):
    program = service = editor = ""

    @classmethod
    def setUpClass(cls):
        cls.stage = Stage(cls.program, cls.service, {}, use_model=True)
        cls.addClassCleanup(cls.stage.close)
        cls.bystander = Target(cls.editor, "Bystander", "--text", "untouched")
        cls.addClassCleanup(cls.bystander.close)
        cls.heartbeat = Heartbeat(Stage.window_of(cls.stage.program.pid, "^Tavrin$"))
        cls.addClassCleanup(cls.heartbeat.close)
        cls.display = Display()
        cls.addClassCleanup(cls.display.close)

    def setUp(self):
        self.addCleanup(setattr, self.stage.model, "before_answer", lambda: None)
        self.answer = f"Bring 3 copies to Zoë, 谢谢 ({self._testMethodName})"

    def open(self, *options):
        target = Target(self.editor, "Target", *options)
        self.addCleanup(target.close)
        target.bring_to_front_and_settle()
        return target

    def session(self, processing=lambda: None):
        """A session into whatever is in front; `processing` happens while the text is made. What it
        must leave behind in every case is checked here. The record of it."""
        stage = self.stage
        stage.model.answer = self.answer
        stage.model.before_answer = processing
        before = len(stage.history())
        elsewhere = self.bystander.text()
        self.heartbeat.longest()
        started = time.monotonic()
        stage.start_recording(LEFT_ALT)
        stage.speak_and_finish(LEFT_ALT, SENTENCE, breath=0.2)
        wait_until("the result", lambda: len(stage.history()) > before)
        silence = self.heartbeat.longest()
        print(f"{time.monotonic() - started:.2f} s, longest silence {silence * 1000:.0f} ms",
              end=" … ", flush=True)

        record = stage.history()[0]
        self.assertEqual(record["finalText"], self.answer)
        wait_until("the end of the recording", lambda: not list(stage.recordings.glob("tavrin-*")))
        self.assertEqual(clipboard(), self.answer)
        self.assertEqual(self.bystander.text(), elsewhere)
        self.assertEqual(self.display.pressed_keys(), [])
        self.assertLess(silence, LONGEST_SILENCE + LOAD)
        return record

    def deceive(self, lie, *options):
        """A session into a field that deceives accessibility. The field."""
        target = self.open("--lie", lie, *options)
        self.deliver()
        self.assertGreater(target.state()["reads"], 0, "nobody has asked it")
        return target

    def deliver(self, processing=lambda: None):
        """A session that must count as delivered."""
        record = self.session(processing)
        self.assertEqual(record["delivery"], DELIVERED)
        self.assertIs(self.stage.preference("lastDeliveryVerified"), True)
        self.assertEqual(self.stage.preference("lastDeliveryReason"), "")

    def fall_back(self, reason, processing=lambda: None):
        """A session whose text stays on the clipboard, for that reason."""
        record = self.session(processing)
        self.assertEqual(record["delivery"], f"保存在剪贴板 · {reason}")
        self.assertIs(self.stage.preference("lastDeliveryVerified"), False)
        self.assertEqual(self.stage.preference("lastDeliveryReason"), reason)
        self.assertTrue(self.stage.panel_shows(reason), "the panel does not say why")

    # Fields with habits of their own.

    def test_a_selection_is_replaced(self):
        target = self.open("--text", "Dear Anna, hello", "--anchor", "5", "--caret", "9")
        self.deliver()
        self.assertEqual(target.text(), f"Dear {self.answer}, hello")

    def test_line_ends_and_quotes_may_change_on_the_way_in(self):
        target = self.open("--tidy-paste")
        self.answer = 'She said \r\n"yes"\r\nand left.'
        self.deliver()
        self.assertEqual(target.text(), "She said\n“yes”\nand left.")

    def test_a_swallowed_paste_is_typed(self):
        target = self.open("--swallow-paste", "--text", "Note: ", "--anchor", "6", "--caret", "6")
        self.answer = "会议改到 10:00 🎉 “Zoë” — fine"
        self.deliver()
        self.assertEqual(target.text(), f"Note: {self.answer}")

    def test_without_paste_and_keys_the_text_is_written(self):
        target = self.open("--ignore-keys", "--text", "Note: ", "--anchor", "6", "--caret", "6")
        self.deliver()
        wait_until("the text", lambda: target.text() == f"Note: {self.answer}", 10)

    def test_the_last_means_counts_as_delivery_even_where_the_field_takes_nothing(self):
        # Nobody can tell such a field from one that hides its text, and the clipboard has it.
        target = self.deceive("read-only", "--ignore-keys", "--text", "fixed")
        self.assertEqual(target.text(), "fixed")

    def test_nearly_a_megabyte_with_marks_of_every_direction(self):
        target = self.open()
        marked = "שלום \u200f(world)\u200e 你好 👩‍💻 a\u0301 \u2066x\u2069 \ufeff end\n"
        self.answer = marked * 100 + ("x" * 99 + "\n") * 9_000 + "end"
        self.deliver()
        wait_until("the text", lambda: target.text() == self.answer, 30)

    def test_a_field_that_exposes_nothing(self):
        target = self.open("--bare")
        self.deliver()
        self.assertEqual(target.text(), self.answer)

    def test_nothing_is_read_of_a_password(self):
        target = self.open("--lie", "secret", "--text", "secret", "--anchor", "6", "--caret", "6")
        self.deliver()
        self.assertEqual(target.state(), {"text": f"secret{self.answer}", "reads": 0})

    # Fields that do not tell the truth.

    def test_a_field_that_reports_stale_values_has_the_text_all_the_same(self):
        target = self.deceive("stale", "--text", "old")
        self.assertEqual(target.text(), f"{self.answer}old")

    def test_negative_ranges_and_counts(self):
        target = self.deceive("negative")
        self.assertEqual(target.text(), self.answer)

    def test_counts_beyond_the_text(self):
        target = self.deceive("counts")
        self.assertEqual(target.text(), self.answer)

    def test_a_value_of_fifty_million_characters(self):
        target = self.deceive("huge")
        self.assertEqual(target.text(), self.answer)

    def test_a_document_of_two_megabytes(self):
        target = self.open("--lines", "20000")
        began = []
        self.deliver(lambda: began.append(time.monotonic()))
        self.assertEqual(target.text()[:len(self.answer) + 1], self.answer + "x")
        # 0.78 s are the waits that every delivery has.
        self.assertLess(time.monotonic() - began[0], 3)

    # Targets that hang, end or lose the keyboard.

    def test_a_target_that_hangs_while_the_text_is_made(self):
        target = self.open()
        self.addCleanup(target.resume)
        self.deliver(target.stop)
        target.resume()
        wait_until("the late text", lambda: target.text() == self.answer, 10)

    def test_a_target_that_hangs_from_before_the_start(self):
        target = self.open()
        self.addCleanup(target.resume)
        target.stop()
        self.deliver()
        target.resume()
        wait_until("the late text", lambda: target.text() == self.answer, 10)

    def test_a_target_that_hangs_after_the_paste(self):
        target = self.open()
        self.addCleanup(target.resume)
        self.deliver(lambda: threading.Timer(0.6, target.stop).start())
        target.resume()
        wait_until("the text", lambda: target.text() == self.answer, 10)

    def test_a_target_that_closes_while_the_text_is_made(self):
        target = self.open()
        self.fall_back("无法重新激活目标应用", target.close)

    def test_another_window_in_front_while_the_text_is_made(self):
        target = self.open()
        self.deliver(self.bystander.bring_to_front)
        self.assertEqual(target.text(), self.answer)

    def test_another_window_in_front_just_before_the_paste(self):
        target = self.open()

        def take_over():
            wait_until("the target", lambda: xdotool("getactivewindow").strip() == target.window, 10)
            self.bystander.bring_to_front()

        def processing():
            self.bystander.bring_to_front()
            threading.Thread(target=take_over).start()

        record = self.session(processing)
        # Who is first is up to the machine; what is said must be what has happened.
        arrived = self.answer if record["delivery"] == DELIVERED else ""
        self.assertEqual(target.text(), arrived)

    def test_another_window_in_front_while_it_is_typed(self):
        target = self.open("--swallow-paste")
        self.answer = "x" * 400

        def take_over():
            wait_until("the first character", target.text, 10)
            self.bystander.bring_to_front()

        self.fall_back("逐字输入被打断，文字不完整",
                       lambda: threading.Thread(target=take_over).start())
        self.assertTrue(self.answer.startswith(target.text()))

    def test_without_a_window_in_front_there_is_no_target(self):
        self.addCleanup(run, "wmctrl", "-k", "off")
        run("wmctrl", "-k", "on")  # The bare desktop.
        wait_until("the bare desktop", lambda: not Stage.window_of(self.stage.program.pid), 10)
        self.fall_back("没有记录到目标应用")

    def test_the_programs_own_window_is_no_target(self):
        xdotool("windowactivate", "--sync", Stage.window_of(self.stage.program.pid, "^Tavrin$"))
        self.fall_back("开始录音时焦点仍在 Tavrin")


if __name__ == "__main__":
    TargetsTest.program, TargetsTest.service, TargetsTest.editor = sys.argv[1:4]
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]], verbosity=2)
