#!/usr/bin/env python3
"""Checks that the sources keep to the layers of the program.

usage: check_layers.py ROOT QTCORE QTGUI QTWIDGETS

ROOT holds src/ and devcloud/; the others are the folders with the headers of these modules of Qt.
Prints one line for each violation and fails if there is any:

  - an include against the graph of the layers, or of the rooms inside one; of a file that is not
    there; or in a circle;
  - a system header, or a test for an operating system, in product code (src/ without src/platform/
    and its folders; the ports themselves are product code);
  - Qt beyond the values of QtCore in product code; QtGui and QtWidgets belong to the interface.
"""

import re
import sys
from pathlib import Path

SOURCES = {".h", ".cpp", ".mm", ".in"}
QT_MODULES = ("QtCore", "QtGui", "QtWidgets")

FEATURES = {"audio", "speech", "cloud", "delivery", "dictionary", "history"}
DESKTOPS = {"platform/linux", "platform/macos"}
PORTS = {"platform", "base"}

# What the files of a layer may include, beside files of their own layer.
GRAPH = {
    "base": set(),
    "platform": {"base"},
    "platform/qt": PORTS,
    **{desktop: PORTS for desktop in DESKTOPS},
    **{feature: PORTS for feature in FEATURES},
    "app": FEATURES | PORTS,
    "ui": {"app"} | FEATURES | PORTS,
    "devcloud": set(),
}
# What the files in the rooms of a layer may include: other rooms of it, and of the other layers those
# named here, beside the ports. What stands in no room puts the rooms together.
SHOWN = {"app/vocabulary", "app/settings", "app/windows"}
ROOMS = {
    "platform/audio": set(),
    "platform/keyboard": {"platform/programs"},
    "platform/preferences": set(),
    "platform/programs": set(),
    "platform/speech": set(),
    "app/vocabulary": set(),
    "app/settings": {"app/vocabulary"},
    "app/windows": {"app/vocabulary"},
    "app/shortcuts": SHOWN,
    "app/menu": SHOWN,
    "app/notices": SHOWN | {"cloud"},
    "app/account": SHOWN | {"cloud"},
    "app/health": SHOWN | {"app/shortcuts", "audio"},
    "app/pages": SHOWN | {"app/shortcuts", "app/menu"} | FEATURES,
    "app/pages/history": SHOWN | {"app/pages", "history"},
    "app/session": SHOWN | {"app/menu", "app/notices"} | FEATURES,
    "ui/style": set(),
    "ui/controls": {"ui/style"},
    "ui/alerts": {"ui/style", "ui/controls"},
    "ui/hud": SHOWN,
    "ui/pages": SHOWN | {"ui/style", "ui/controls", "app/account", "app/health", "app/menu",
                         "app/pages", "app/pages/history"},
    "ui/window": SHOWN | {"ui/style", "ui/controls", "app/pages"},
    "platform/linux/libraries": set(),
    "platform/linux/desktop": set(),
    "platform/linux/process": set(),
    "platform/linux/preferences": {"platform/linux/desktop"},
    "platform/linux/inputmethod": {"platform/linux/desktop", "platform/linux/process"},
    "platform/linux/x11": {"platform/linux/desktop", "platform/linux/process"},
    "platform/linux/x11/keyboard": {"platform/linux/x11"},
    "platform/linux/x11/typing": {"platform/linux/x11", "platform/linux/x11/keyboard", "platform/linux/desktop",
                                  "platform/linux/process", "platform/linux/inputmethod"},
    "platform/linux/atspi": {"platform/linux/libraries"},
    "platform/linux/audio": {"platform/linux/libraries"},
    "platform/linux/speech/engine": {"platform/linux/audio"},
    "platform/linux/speech/servers": {"platform/linux/speech/engine"},
    "platform/linux/speech/onnx": set(),
    "platform/linux/speech/protocol": {"platform/linux/speech/engine", "platform/linux/speech/onnx"},
    "platform/linux/speech/process": {"platform/linux/speech/engine", "platform/linux/speech/protocol"},
    "platform/linux/speech/sphinx": set(),
    "platform/linux/speech": {"platform/linux/speech/engine", "platform/linux/speech/process",
                              "platform/linux/speech/onnx", "platform/linux/speech/servers",
                              "platform/linux/speech/sphinx",
                              "platform/linux/audio", "platform/linux/desktop"},
    "platform/linux/recognizer/sphinx": {"platform/linux/speech/engine", "platform/linux/speech/sphinx"},
    "platform/linux/recognizer": {"platform/linux/speech/engine", "platform/linux/speech/protocol",
                                  "platform/linux/recognizer/sphinx",
                                  "platform/linux/recognizer/onnx"},
    "platform/linux/recognizer/onnx": {"platform/linux/speech/engine", "platform/linux/speech/onnx"},
    "devcloud/text": set(),
    "devcloud/api": set(),
    "devcloud/security": {"devcloud/text"},
    "devcloud/store": {"devcloud/security", "devcloud/text"},
    "devcloud/polish": {"devcloud/text"},
    "devcloud/model": {"devcloud/api", "devcloud/polish", "devcloud/security", "devcloud/text"},
    "devcloud/http": {"devcloud/api", "devcloud/text"},
    "devcloud/endpoints": {"devcloud/api", "devcloud/model", "devcloud/polish", "devcloud/security",
                           "devcloud/store", "devcloud/text"},
}
LAYERS_WITH_ROOMS = {"platform", "app", "ui", "platform/linux", "devcloud"}
# Puts the ports of one desktop together, those that Qt serves among them.
ASSEMBLY = re.compile(r"src/platform/(linux|macos)/\w+Platform\.(cpp|mm)")
MAIN = "src/main.cpp"

INCLUDE = re.compile(r'^\s*#\s*(?:include|import)\s*([<"])([^>"]+)[>"]')
PLATFORM_TEST = re.compile(
    r"^\s*#\s*(?:el)?if.*\b(Q_OS_\w+|__linux__|__unix__|__APPLE__|_WIN32|TARGET_OS_\w+)\b")
STANDARD_HEADER = re.compile(r"[a-z_]+|simdjson\.h|tl/expected\.hpp")
QT_HEADER = re.compile(r"(?:Qt\w+/)?(Q\w+|q\w+\.h)")
# Waiting, time and state that bypass the ports.
MACHINERY = {
    "QBasicTimer", "QCoreApplication", "QDeadlineTimer", "QElapsedTimer", "QEventLoop", "QMutex",
    "QProcess", "QReadWriteLock", "QSemaphore", "QSettings", "QThread", "QThreadPool", "QTimer",
    "QWaitCondition",
    "condition_variable", "future", "mutex", "semaphore", "shared_mutex", "stop_token", "thread",
}


def layer_of(path):
    """The layer of "src/ui/controls/Page.h" is "ui"; main has none."""
    parts = Path(path).parts
    if parts[0] == "devcloud":
        return "devcloud"
    if parts[0] != "src" or len(parts) < 3:
        return None
    folder = "/".join(parts[1:3])
    return folder if folder in GRAPH else parts[1]


def room_of(path):
    """The room of "src/app/menu/Item.h" is "app/menu"; what stands beside the rooms has none."""
    layer, folder = layer_of(path), Path(path).parent
    inside = folder.as_posix().removeprefix("src/")
    return inside if layer in LAYERS_WITH_ROOMS and inside != layer else None


def read_includes(text):
    """Yields (line number, True for quotes, name)."""
    for number, line in enumerate(text.splitlines(), 1):
        match = INCLUDE.match(line)
        if match:
            yield number, match.group(1) == '"', match.group(2)


class Checker:
    def __init__(self, root, qt_folders):
        self.root = root
        self.violations = []
        self.files = {
            path.relative_to(root).as_posix(): path.read_text(encoding="utf-8")
            for folder in ("src", "devcloud")
            for path in sorted((root / folder).rglob("*"))
            if path.suffix in SOURCES and path.is_file()
        }
        self.qt_modules = {
            module: {path.name for path in folder.iterdir()}
            for module, folder in zip(QT_MODULES, qt_folders, strict=True)
        }
        self.graph = {path: [] for path in self.files}

    def run(self):
        for path, text in self.files.items():
            if path.startswith("src/") and path != MAIN and layer_of(path) not in GRAPH:
                self.report(path, 0, "lies in no layer")
                continue
            if room_of(path) not in {None, *ROOMS}:
                self.report(path, 0, "lies in no room")
                continue
            for number, quoted, name in read_includes(text):
                self.check_include(path, number, quoted, name)
            self.check_conditions(path, text)
        self.check_circles()
        return self.violations

    def report(self, path, line, message):
        self.violations.append(f"{path}:{line}: {message}")

    def check_include(self, path, number, quoted, name):
        target = self.resolve(path, name)
        if target:
            self.graph[path].append(target)
            self.check_arrow(path, number, target)
        elif quoted and not name.endswith(".moc"):
            self.report(path, number, f'includes "{name}", which is not there')
        elif not quoted:
            self.check_library_header(path, number, name)

    def resolve(self, path, name):
        """The project's file that this include names; a generated header stands for its source."""
        for base in (Path("src"), Path("."), Path(path).parent):
            for candidate in (base / name, base / (name + ".in")):
                if candidate.as_posix() in self.files:
                    return candidate.as_posix()
        return None

    def check_arrow(self, path, number, target):
        if path == MAIN:
            return
        own, other = layer_of(path), layer_of(target)
        allowed = {own} | GRAPH[own]
        if ASSEMBLY.fullmatch(path):
            allowed |= {"platform/qt"}
        if other not in allowed:
            self.report(path, number, f"{own} includes {target}")
        elif room := room_of(path):
            self.check_room(path, number, room, target)

    def check_room(self, path, number, room, target):
        reached = layer_of(target)
        if reached in LAYERS_WITH_ROOMS and (reached not in PORTS or layer_of(path) == reached):
            reached = room_of(target) or reached
        if reached not in {room, "base"} | ROOMS[room] | (PORTS - {layer_of(path)}):
            self.report(path, number, f"{room} includes {target}")

    def check_library_header(self, path, number, name):
        layer = layer_of(path)
        is_main = path == MAIN
        qt = QT_HEADER.fullmatch(name)
        if layer == "platform/qt" or path.startswith("devcloud/"):
            return
        if layer in DESKTOPS:
            if qt and self.is_from(qt.group(1), "QtWidgets"):
                self.report(path, number, f"{layer} includes QtWidgets: {name}")
            return
        if not qt:
            if not STANDARD_HEADER.fullmatch(name):
                self.report(path, number, f"product code includes the system header {name}")
            elif not is_main and name in MACHINERY:
                self.report(path, number, f"product code includes {name}; use the ports")
            return
        header = qt.group(1)
        modules = QT_MODULES if is_main or layer == "ui" else QT_MODULES[:1]
        if not any(self.is_from(header, module) for module in modules):
            self.report(path, number, f"{layer} includes {name}, which is not in {', '.join(modules)}")
        elif not is_main and self.is_machinery(header):
            self.report(path, number, f"product code includes {name}; use the ports")

    def is_from(self, header, module):
        return header in self.qt_modules[module]

    @staticmethod
    def is_machinery(header):
        plain = header.removesuffix(".h").lower()
        return plain in {name.lower() for name in MACHINERY}

    def check_conditions(self, path, text):
        layer = layer_of(path)
        if path.startswith("devcloud/") or layer in DESKTOPS or layer == "platform/qt":
            return
        for number, line in enumerate(text.splitlines(), 1):
            match = PLATFORM_TEST.match(line)
            if match:
                self.report(path, number, f"product code asks for the platform: {match.group(1)}")

    def check_circles(self):
        """Reports each circle once, as the way around it."""
        finished = set()

        def visit(path, way):
            if path in way:
                circle = way[way.index(path):] + [path]
                self.report(path, 0, "includes itself: " + " -> ".join(circle))
                return
            if path in finished:
                return
            for target in self.graph[path]:
                visit(target, way + [path])
            finished.add(path)

        for path in self.graph:
            visit(path, [])


def main():
    if len(sys.argv) != 2 + len(QT_MODULES):
        sys.exit(__doc__)
    root, *qt_folders = map(Path, sys.argv[1:])
    checker = Checker(root, qt_folders)
    if not checker.files:
        sys.exit(f"no sources under {root}")
    violations = checker.run()
    print("\n".join(violations) or f"{len(checker.files)} files keep to their layers")
    sys.exit(bool(violations))


if __name__ == "__main__":
    main()
