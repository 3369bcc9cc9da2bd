"""What the program logs when it is started with --verbose."""

from stage import wait_until


class Log:
    def __init__(self, path):
        self._path = path
        self.file = path.open("w", encoding="utf-8")
        self._sessions = 0

    def close(self):
        self.file.close()

    def _found(self, mark):
        """What stands behind the mark, in every line that has it."""
        lines = self._path.read_text(encoding="utf-8").splitlines()
        return [line.split(mark, 1)[1] for line in lines if mark in line]

    def next_stages(self):
        """Stage → milliseconds, of the session that ends next."""
        self._sessions += 1
        wait_until("the end of the session",
                   lambda: len(self._found(" stages: ")) >= self._sessions)
        parts = self._found(" stages: ")[self._sessions - 1].split(", ")
        stages = (part.split() for part in parts)
        return {name: float(duration) for name, duration, _ in stages}

    def means(self):
        """By what the last text was brought."""
        return self._found(" delivered by ")[-1]
