"""Signs in and out, registers and fails to, on the account page: by keys alone, and by the mouse alone.

usage: account_test.py PROGRAM SERVICE [EDITOR]
"""

import re
import sys
import time

from accessibility_test import PAGES, ScreenReader, check
from newcomer_test import Mouse
from stage import (EMAIL, PASSWORD, SERVICE, Stage, accessible_texts, focused_name, run, wait_until,
                   xdotool)
from stand_in import StandIn

NEW_EMAIL, NEW_PASSWORD = "ada@tavrin.example", "another long password"
MOUSE_EMAIL, MOUSE_PASSWORD = "grace@tavrin.example", "yet another long password"
WRONG = "邮箱或密码不正确。"
DEPTH = 8  # From the window down to a label of a step.
LONGEST = 500  # Units of a message that are told to a screen reader.


class Refusal(StandIn):
    """A service that refuses whatever is asked with a message of 100 KB, which takes its time to arrive."""

    BEGINNING = "<b>Closed</b> \N{RIGHT-TO-LEFT OVERRIDE}for "

    def __init__(self):
        self.requests = 0
        super().__init__(port=int(SERVICE.rsplit(":", 1)[1]))
        self.status = 500
        self.duration = 4

    def answer_to(self, body):
        self.requests += 1
        return {"error": {"message": self.BEGINNING + "ever\n" * 20_480}}


class AccountPage:
    def __init__(self, stage, service):
        self._stage = stage
        self._service = service

    def shows(self, text):
        wait_until(repr(text) + " on the page", lambda: any(
            text in shown for shown in accessible_texts(self._stage.program.pid, DEPTH)))

    @staticmethod
    def type(text):
        xdotool("type", "--delay", "20", text)

    @staticmethod
    def press(*keys):
        xdotool("key", *keys)

    def tab_to(self, name):
        """Presses Tab until the control of this name has the keyboard."""
        seen = []
        for _ in range(20):
            seen.append(focused_name(self._stage.program.pid, DEPTH))
            if seen[-1] == name:
                return
            self.press("Tab")
        check(False, "Tab does not lead to", name, "but to", seen)

    def enter_address(self, email, register=False):
        self.shows("Continue with email")
        self.tab_to("Email")
        self.press("ctrl+a")
        self.type(email)
        if register:
            self.tab_to("Sign in")
            self.press("Right")
            self.tab_to("Continue")
        self.press("Return")

    def enter_password(self, password):
        self.shows("Welcome back")
        self.tab_to("Password")
        self.press("ctrl+a")
        self.type(password)
        self.press("Return")

    def sign_out(self):
        self.tab_to("Sign out")
        self.press("Return")
        self.shows("Continue with email")
        check_signed_out(self._stage)

    def enter_invite(self):
        """Asks for a code with a new invite."""
        self.tab_to("Invite code, for example TAV-7K2M-Q9XD")
        self.type(new_invite(self._stage, self._service))
        self.press("Return")


def new_invite(stage, service):
    return run(service, "--data", stage.folder("service"), "invite").split()[-1]


def mailed_code(stage):
    """The last code that was mailed."""
    mails = sorted((stage.folder("service") / "outbox").glob("*.txt"))
    return re.search(r"\b\d{6}\b", mails[-1].read_text()).group()


def check_signed_out(stage):
    for key in ("cloudAccessToken", "cloudRefreshToken", "cloudAccountEmail"):
        check(stage.preference(key) is None, key, "is still stored")


def test_sign_in(page, stage):
    page.enter_address("not an address")
    page.shows("Enter a valid email address.")
    page.enter_address(EMAIL)
    page.enter_password("a wrong password")
    page.shows(WRONG)
    page.enter_password(PASSWORD)
    page.shows("Account connected")
    check(stage.preference("cloudAccountEmail") == EMAIL, stage.preference("cloudAccountEmail"))
    check(stage.preference("serviceMode") == "cloud", stage.preference("serviceMode"))
    page.sign_out()


def test_registration(page, stage):
    page.enter_address(NEW_EMAIL, register=True)
    page.shows("Activate beta account")
    page.enter_invite()
    page.shows("Enter code and create password")
    page.type(mailed_code(stage))
    page.press("Tab")
    page.type(NEW_PASSWORD)
    page.press("Tab")
    page.type(NEW_PASSWORD + "x")
    page.press("Return")
    page.shows("The passwords do not match.")
    page.press("BackSpace", "Return")
    page.shows("Account connected")
    check(stage.preference("cloudAccountEmail") == NEW_EMAIL, "somebody else is signed in")
    page.sign_out()

    page.enter_address(NEW_EMAIL, register=True)
    page.shows("Activate beta account")
    page.enter_invite()
    page.enter_password(NEW_PASSWORD)  # It is known already.
    page.shows("Account connected")


def test_session_that_ended(page, stage, service):
    """Somebody ends all sessions of the account while the program does not run."""
    stage.program.terminate()
    stage.program.wait()
    run(service, "--data", stage.folder("service"), "revoke", NEW_EMAIL)
    stage.start_program()
    page.enter_address(NEW_EMAIL)
    page.enter_password(NEW_PASSWORD)
    page.shows("Account connected")


def test_session_that_ends_in_sight(page, stage, service):
    """Somebody ends it while the page is open: what is stored decides what the page shows, and a sign-out
    that the service refuses is one all the same."""
    reader = ScreenReader(stage)

    def sees(text):
        wait_until(repr(text) + " in sight", lambda: any(text == node["name"] for node in reader.tree()))

    def buttons():
        return [node["name"] for node in reader.tree() if node["name"] in PAGES["en"]
                and node["role"] == "check box"]

    run(service, "--data", stage.folder("service"), "revoke", NEW_EMAIL)
    overview = "Speak your thoughts. Tavrin turns them into ready-to-use text."
    for title, shown in (("Overview", overview), ("Account", "Account connected")):
        check(reader.press(title), "no button", title)
        sees(shown)
    check(buttons() == PAGES["en"], "the sidebar has", buttons())
    check(reader.press("Sign out"), "no button to sign out")
    sees("Continue with email")
    check_signed_out(stage)
    check(buttons() == ["Account"], "the sidebar has", buttons())

    page.enter_address(NEW_EMAIL)
    page.enter_password(NEW_PASSWORD)
    page.shows("Account connected")
    page.sign_out()


def enter_by_mouse(mouse, texts):
    """Fills the fields with these names."""
    for name, text in texts.items():
        mouse.go(name)
        xdotool("click", "--repeat", "2", "--delay", "60", "1")  # With the first: all that it holds.
        mouse.type(text)


def test_by_mouse(stage, service):
    mouse = Mouse(stage)
    mouse.sees("Continue with email")
    enter_by_mouse(mouse, {"Email": EMAIL})
    mouse.press("Continue")
    mouse.sees("Welcome back")
    enter_by_mouse(mouse, {"Password": "a wrong password"})
    mouse.press("Sign in")
    mouse.sees(WRONG)
    enter_by_mouse(mouse, {"Password": PASSWORD})
    mouse.press("Sign in")
    mouse.sees("Account connected")
    mouse.press("Sign out")
    mouse.sees("Continue with email")
    check_signed_out(stage)

    enter_by_mouse(mouse, {"Email": MOUSE_EMAIL})
    mouse.press("Register")
    mouse.press("Continue")
    mouse.sees("Activate beta account")
    enter_by_mouse(mouse, {"Invite code, for example TAV-7K2M-Q9XD": new_invite(stage, service)})
    mouse.press("Send code")
    mouse.sees("Enter code and create password")
    enter_by_mouse(mouse, {"6-digit email code": mailed_code(stage),
                           "Password (at least 10 characters)": MOUSE_PASSWORD,
                           "Confirm password": MOUSE_PASSWORD})
    mouse.press("Activate & sign in")
    mouse.sees("Account connected")
    check(stage.preference("cloudAccountEmail") == MOUSE_EMAIL, "somebody else is signed in")
    mouse.press("Sign out")
    mouse.sees("Continue with email")
    check_signed_out(stage)


def test_endless_message(page, stage):
    """100 KB of it: one line that ends in an ellipsis, and a window that answers while it arrives."""
    refusal = Refusal()
    try:
        reader = ScreenReader(stage)
        page.enter_address(NEW_EMAIL)
        page.enter_password(NEW_PASSWORD)
        slowest, looks = 0, 0

        def message():
            nonlocal slowest, looks
            began = time.monotonic()
            found = [node for node in reader.tree() if node["name"].startswith("<b>Closed</b> for ever")]
            slowest, looks = max(slowest, time.monotonic() - began), looks + 1
            return found

        node, = wait_until("the message", message)
        check(refusal.requests == 1, refusal.requests, "requests were sent")
        check(looks >= 3 and slowest < 2, "the window answered", looks, "times, once after", slowest, "s")
        check(len(node["name"]) == LONGEST and node["name"].endswith("…"), "the message is", node["name"])
        check(node["place"][2:] == [470, 20], "the message takes", node["place"])
        check(focused_name(stage.program.pid, DEPTH) == "Password", "the field has lost the keyboard")
        page.press("Return")
        wait_until("another try", lambda: refusal.requests == 2)
    finally:
        refusal.close()


def test_sign_out_offline(page, stage):
    stage.service.terminate()
    stage.service.wait()
    page.sign_out()


def main():
    signed_out = {"cloudAccessToken": None, "cloudRefreshToken": None}
    stage = Stage(*sys.argv[1:3], signed_out, use_model=False)
    try:
        page = AccountPage(stage, sys.argv[2])
        test_sign_in(page, stage)
        test_registration(page, stage)
        test_session_that_ended(page, stage, sys.argv[2])
        test_session_that_ends_in_sight(page, stage, sys.argv[2])
        test_by_mouse(stage, sys.argv[2])
        page.enter_address(NEW_EMAIL)
        page.enter_password(NEW_PASSWORD)
        test_sign_out_offline(page, stage)
        test_endless_message(page, stage)
    finally:
        stage.close()


if __name__ == "__main__":
    main()
