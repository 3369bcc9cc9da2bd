"""Input methods as a Chinese user runs them, and the driver that brings text into his editors."""

import json
import os
import subprocess
import time

from stage import run, wait_until

COMPOSED, SPELT = "你好", "nihao"


class InputMethod:
    """Runs while the stage does; programs started after it use it."""

    def __init__(self, stage, module):
        # Nothing of it stays in the home of the desktop.
        self.environment = {"XDG_CONFIG_HOME": str(stage.folder("config")), "GTK_IM_MODULE": module,
                            "QT_IM_MODULE": module, "XMODIFIERS": f"@im={module}"}
        os.environ.update(self.environment)

    # Whether it can be set aside; where it cannot, what would be typed is written.
    LETS_GO = True

    def is_on(self):
        return self.engine() == self.ENGINE

    def switch_on(self):
        """In the field that has the keyboard."""
        def switched():
            self.activate()
            return self.is_on()
        wait_until(f"{self.ENGINE} of {self.NAME}", switched)


def answer(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False).stdout.strip()


class IBus(InputMethod):
    NAME, ENGINE = "ibus", "libpinyin"

    def __init__(self, stage):
        super().__init__(stage, "ibus")
        stage.start("ibus-daemon", "--xim", "--panel", "disable", stdout=subprocess.DEVNULL,
                    stderr=subprocess.DEVNULL)
        wait_until("ibus", lambda: answer("ibus", "address") not in ("", "(null)"))
        # For a browser with a configuration of its own.
        os.environ["IBUS_ADDRESS"] = answer("ibus", "address")
        self.switch_on()

    def engine(self):
        return answer("ibus", "engine")

    def activate(self):
        answer("ibus", "engine", self.ENGINE)


class Fcitx5(InputMethod):
    NAME, ENGINE = "fcitx5", "pinyin"
    PROFILE = """[Groups/0]
Name=Default
Default Layout=us
DefaultIM=pinyin

[Groups/0/Items/0]
Name=keyboard-us
Layout=

[Groups/0/Items/1]
Name=pinyin
Layout=

[GroupOrder]
0=Default
"""

    def __init__(self, stage):
        super().__init__(stage, "fcitx")
        folder = stage.folder("config") / "fcitx5"
        folder.mkdir()
        (folder / "profile").write_text(self.PROFILE)
        stage.start("fcitx5", stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        # Asked before it is there, the bus would start another one with settings of its own.
        run("gdbus", "wait", "--session", "--timeout", "20", "org.fcitx.Fcitx5")
        wait_until("fcitx5", lambda: answer("fcitx5-remote") in ("0", "1", "2"))

    def engine(self):
        return answer("fcitx5-remote", "-n")

    def activate(self):
        run("fcitx5-remote", "-o")


class Fcitx5Alone(Fcitx5):
    """Without a keyboard layout in its list of engines, so that one makes Chinese at all times."""

    LETS_GO = False
    PROFILE = Fcitx5.PROFILE.replace("""[Groups/0/Items/0]
Name=keyboard-us
Layout=

[Groups/0/Items/1]""", "[Groups/0/Items/0]")


class Typist:
    """The program's own hands: its keyboard, its pasteboard, its eyes."""

    def __init__(self, stage, program):
        # It shall find an input method as the program does, by the file it leaves.
        self.process = stage.start(program, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                   text=True, environment={"IBUS_ADDRESS": ""})

    def tell(self, **order):
        self.process.stdin.write(json.dumps(order) + "\n")
        self.process.stdin.flush()
        return json.loads(self.process.stdout.readline())

    def read(self):
        return self.tell(read=True)["text"].rstrip("\n")

    def reads(self, text, patience):
        """Whether it reads exactly that before it has lost its patience."""
        end = time.monotonic() + patience
        while self.read() != text:
            if time.monotonic() > end:
                return False
            time.sleep(0.05)
        return True
