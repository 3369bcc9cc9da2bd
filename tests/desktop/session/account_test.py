"""Signs in and out, registers and fails to, on the account page and by keys alone.

usage: account_test.py PROGRAM SERVICE [EDITOR]
"""

import re
import sys

from stage import (EMAIL, PASSWORD, Stage, accessible_texts, focused_name, run, wait_until,
                   xdotool)

NEW_EMAIL, NEW_PASSWORD = "ada@tavrin.example", "another long password"
DEPTH = 8  # From the window down to a label of a step.


def check(condition, *explanation):
    if not condition:
        sys.exit(" ".join(str(part) for part in explanation))


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
        for key in ("cloudAccessToken", "cloudRefreshToken", "cloudAccountEmail"):
            check(self._stage.preference(key) is None, key, "is still stored")

    def enter_invite(self):
        """Asks for a code with a new invite."""
        output = run(self._service, "--data", self._stage.folder("service"), "invite")
        self.tab_to("Invite code, for example TAV-7K2M-Q9XD")
        self.type(output.split()[-1])
        self.press("Return")


def mailed_code(stage):
    """The last code that was mailed."""
    mails = sorted((stage.folder("service") / "outbox").glob("*.txt"))
    return re.search(r"\b\d{6}\b", mails[-1].read_text()).group()


def test_sign_in(page, stage):
    page.enter_address("not an address")
    page.shows("Enter a valid email address.")
    page.enter_address(EMAIL)
    page.enter_password("a wrong password")
    page.shows("邮箱或密码不正确。")
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
        test_sign_out_offline(page, stage)
    finally:
        stage.close()


if __name__ == "__main__":
    main()
