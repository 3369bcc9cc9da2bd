"""The test editor as the target of sessions."""

import json
import signal
import subprocess
import time

from stage import Stage, wait_until, xdotool


class Target:
    """One window of the test editor; `options` are its bad habits."""

    def __init__(self, editor, title, *options):
        self.process = subprocess.Popen([editor, "--window-title", title, *options],
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.process.stdout.readline()  # "ready"
        self.window = wait_until(f"the window {title}",
                                 lambda: Stage.window_of(self.process.pid, title))

    def close(self):
        self.process.kill()
        self.process.wait()
        self.process.stdin.close()
        self.process.stdout.close()

    def bring_to_front(self):
        xdotool("windowactivate", "--sync", self.window)

    def bring_to_front_and_settle(self):
        self.bring_to_front()
        time.sleep(0.3)  # Until it has told accessibility of its focus.

    def stop(self):
        self.process.send_signal(signal.SIGSTOP)

    def resume(self):
        self.process.send_signal(signal.SIGCONT)

    def state(self):
        self.process.stdin.write("\n")
        self.process.stdin.flush()
        return json.loads(self.process.stdout.readline())

    def text(self):
        return self.state()["text"]
