#!/usr/bin/env python3
"""Plants violations in small trees and sees that the checker finds them, and nothing else."""

import tempfile
import unittest
from pathlib import Path

from check_layers import Checker

QT_HEADERS = {
    "QtCore": ["QString", "qstring.h", "QTimer", "qtimer.h", "QSettings", "QProcess", "QThread"],
    "QtGui": ["QImage"],
    "QtWidgets": ["QWidget", "QSystemTrayIcon"],
}
FEATURES = ["audio", "speech", "cloud", "delivery", "dictionary", "history"]


class LayersTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.write("tree/devcloud/Server.cpp", "")
        for module, headers in QT_HEADERS.items():
            for header in headers:
                self.write(f"qt/{module}/{header}", "")
        for layer in ["base", "platform", "platform/qt", "platform/linux/x11", "platform/macos",
                      "app", "ui", *FEATURES]:
            self.write(f"tree/src/{layer}/Thing.h", "#pragma once\n")

    def write(self, path, text):
        file = self.folder / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")

    def violations(self, files):
        for path, text in files.items():
            self.write(f"tree/{path}", text)
        qt_folders = [self.folder / "qt" / module for module in QT_HEADERS]
        return Checker(self.folder / "tree", qt_folders).run()

    def assert_allowed(self, path, *lines):
        self.assertEqual(self.violations({path: "\n".join(lines)}), [])

    def assert_refused(self, path, line, message):
        found = self.violations({path: f"// First line.\n{line}\n"})
        self.assertEqual(len(found), 1, found)
        self.assertTrue(found[0].startswith(f"{path}:"), found)
        self.assertIn(message, found[0])

    def test_every_arrow_of_the_graph_is_allowed(self):
        ports = ['#include "platform/Thing.h"', '#include "base/Thing.h"']
        features = [f'#include "{feature}/Thing.h"' for feature in FEATURES]
        self.assert_allowed("src/platform/New.h", '#include "base/Thing.h"')
        for layer in ["platform/qt", "platform/linux/atspi", "platform/macos", *FEATURES]:
            self.assert_allowed(f"src/{layer}/New.cpp", *ports)
        self.assert_allowed("src/app/New.cpp", *features, *ports)
        self.assert_allowed("src/ui/New.cpp", '#include "app/Thing.h"', *features, *ports)
        self.assert_allowed("src/main.cpp", '#include "ui/Thing.h"', '#include "app/Thing.h"',
                            '#include "platform/linux/x11/Thing.h"', *features, *ports)

    def test_files_of_one_layer_or_room_may_include_each_other(self):
        self.assert_allowed("src/ui/New.cpp", '#include "ui/Thing.h"')
        self.assert_allowed("src/platform/linux/x11/New.cpp", '#include "platform/linux/x11/Thing.h"')

    def test_every_other_arrow_is_refused(self):
        for layer, target in [
                ("base", "platform"), ("platform", "app"), ("platform", "platform/qt"),
                ("platform/qt", "app"), ("platform/qt", "platform/macos"),
                ("platform/linux/x11", "platform/qt"), ("platform/linux/x11", "platform/macos"),
                ("platform/macos", "app"), ("platform/macos", "audio"), ("app", "ui"),
                ("app", "platform/qt"), ("app", "platform/linux/x11"), ("ui", "platform/qt"),
                *((feature, "app") for feature in FEATURES),
                *((feature, "platform/qt") for feature in FEATURES),
                *((a, b) for a in FEATURES for b in FEATURES if a != b)]:
            with self.subTest(layer=layer, target=target):
                path = f"src/{layer}/Bad.cpp"
                self.assert_refused(path, f'#include "{target}/Thing.h"', "includes src/")
                (self.folder / "tree" / path).unlink()

    def test_the_rooms_of_a_layer_see_only_those_below(self):
        rooms = ["app/vocabulary", "app/settings", "app/windows", "app/menu", "app/notices", "app/session",
                 "ui/style", "ui/controls", "ui/pages", "ui/hud", "platform/keyboard", "platform/programs",
                 "platform/linux/audio", "platform/linux/x11", "platform/linux/x11/keyboard",
                 "platform/linux/speech", "platform/linux/speech/engine",
                 "platform/linux/speech/servers", "platform/linux/speech/sphinx",
                 "platform/linux/recognizer/sphinx"]
        for room in rooms:
            self.write(f"tree/src/{room}/Thing.h", "#pragma once\n")
        self.assert_allowed("src/app/session/New.cpp", '#include "app/menu/Thing.h"',
                            '#include "app/settings/Thing.h"', '#include "delivery/Thing.h"')
        self.assert_allowed("src/app/New.cpp", '#include "app/session/Thing.h"')
        self.assert_allowed("src/ui/New.cpp", '#include "app/menu/Thing.h"')
        self.assert_allowed("src/ui/pages/New.cpp", '#include "ui/controls/Thing.h"',
                            '#include "app/settings/Thing.h"', '#include "platform/keyboard/Thing.h"')
        self.assert_allowed("src/platform/keyboard/New.h", '#include "platform/programs/Thing.h"')
        self.assert_allowed("src/platform/New.h", '#include "platform/keyboard/Thing.h"')
        self.assert_allowed("src/platform/linux/x11/keyboard/New.cpp",
                            '#include "platform/linux/x11/Thing.h"')
        self.assert_allowed("src/platform/linux/speech/New.cpp",
                            '#include "platform/linux/audio/Thing.h"',
                            '#include "platform/linux/speech/sphinx/Thing.h"')
        for room, target in [("app/settings", "app/menu"), ("app/menu", "app/session"),
                             ("app/menu", "delivery"), ("app/windows", "app"),
                             ("ui/controls", "ui/pages"), ("ui/style", "ui/controls"),
                             ("ui/hud", "ui/pages"), ("ui/pages", "ui/hud"), ("ui/pages", "ui"),
                             ("ui/pages", "app/session"), ("platform/programs", "platform/keyboard"),
                             ("platform/keyboard", "platform"),
                             ("platform/linux/x11", "platform/linux/x11/keyboard"),
                             ("platform/linux/speech/sphinx", "platform/linux/speech/servers"),
                             ("platform/linux/speech/engine", "platform/linux/speech"),
                             ("platform/linux/speech", "platform/linux/recognizer/sphinx"),
                             ("platform/linux/audio", "platform/linux/speech"),
                             ("platform/linux/audio", "platform/linux")]:
            with self.subTest(room=room, target=target):
                self.write("tree/src/platform/linux/Thing.h", "#pragma once\n")
                path = f"src/{room}/Bad.cpp"
                self.assert_refused(path, f'#include "{target}/Thing.h"', f"{room} includes src/")
                (self.folder / "tree" / path).unlink()

    def test_the_rooms_of_the_service_see_only_those_below(self):
        for room in ["text", "store", "polish", "http", "endpoints"]:
            self.write(f"tree/devcloud/{room}/Thing.h", "#pragma once\n")
        self.assert_allowed("devcloud/endpoints/New.cpp", '#include "devcloud/store/Thing.h"',
                            '#include "devcloud/polish/Thing.h"', '#include "devcloud/text/Thing.h"')
        for room, target in [("polish", "store"), ("store", "endpoints"), ("http", "endpoints"),
                             ("endpoints", "http"), ("text", "polish")]:
            with self.subTest(room=room, target=target):
                path = f"devcloud/{room}/Bad.cpp"
                self.assert_refused(path, f'#include "devcloud/{target}/Thing.h"',
                                    f"devcloud/{room} includes devcloud/{target}")
                (self.folder / "tree" / path).unlink()

    def test_a_folder_that_is_no_room_is_reported(self):
        for folder in ["src/app/things", "src/ui/things", "src/platform/things", "devcloud/things"]:
            with self.subTest(folder=folder):
                self.assert_refused(f"{folder}/Bad.h", "", "lies in no room")
                (self.folder / f"tree/{folder}/Bad.h").unlink()

    def test_only_the_assembly_of_a_desktop_joins_it_with_qt(self):
        self.assert_allowed("src/platform/linux/LinuxPlatform.cpp",
                            '#include "platform/qt/Thing.h"')
        self.assert_refused("src/platform/linux/Bad.cpp", '#include "platform/qt/Thing.h"',
                            "platform/linux includes src/platform/qt/Thing.h")

    def test_angle_brackets_hide_nothing(self):
        self.assert_refused("src/cloud/Bad.cpp", "#include <app/Thing.h>",
                            "cloud includes src/app/Thing.h")

    def test_paths_relative_to_the_file_hide_nothing(self):
        self.write("tree/src/cloud/Near.h", '#include "Thing.h"\n')
        self.assertEqual(self.violations({}), [])

    def test_a_file_that_is_not_there_is_reported(self):
        self.assert_refused("src/app/Bad.cpp", '#include "app/Missing.h"', "which is not there")

    def test_generated_headers_belong_to_the_layer_of_their_source(self):
        self.write("tree/src/cloud/Deployment.h.in", "")
        self.assert_allowed("src/app/New.cpp", '#include "cloud/Deployment.h"')
        self.assert_refused("src/audio/Bad.cpp", '#include "cloud/Deployment.h"',
                            "audio includes src/cloud/Deployment.h.in")

    def test_a_folder_that_is_no_layer_is_reported(self):
        self.assert_refused("src/utils/Bad.h", "", "lies in no layer")

    def test_the_development_service_stands_alone(self):
        self.write("tree/devcloud/store/Table.h", "#pragma once\n")
        self.assert_allowed("devcloud/New.cpp", '#include "devcloud/store/Table.h"',
                            "#include <sys/socket.h>", "#include <QTimer>")
        self.assert_refused("src/app/Bad.cpp", '#include "devcloud/store/Table.h"', "app includes")
        (self.folder / "tree/src/app/Bad.cpp").unlink()
        self.assert_refused("devcloud/Bad.cpp", '#include "base/Thing.h"', "devcloud includes")
        self.assert_refused("devcloud/Bad.cpp", '#include "src/base/Thing.h"', "devcloud includes")

    def test_system_headers_stay_in_the_platform(self):
        for header in ["X11/Xlib.h", "pulse/pulseaudio.h", "unistd.h", "sys/types.h", "signal.h",
                       "CoreAudio/CoreAudio.h", "windows.h"]:
            for layer in ["base", "platform", "cloud", "app", "ui"]:
                with self.subTest(header=header, layer=layer):
                    path = f"src/{layer}/Bad.h"
                    self.assert_refused(path, f"#include <{header}>", "system header")
                    (self.folder / "tree" / path).unlink()
            self.assert_allowed("src/platform/linux/x11/New.cpp", f"#include <{header}>")
        self.assert_refused("src/main.cpp", "#include <unistd.h>", "system header")

    def test_the_standard_library_and_values_of_qt_are_for_everyone(self):
        self.assert_allowed("src/base/New.h", "#include <string_view>", "#include <tl/expected.hpp>",
                            "#include <QString>", "#include <QtCore/QString>")

    def test_machinery_is_refused(self):
        for header in ["QTimer", "QSettings", "QProcess", "QThread", "qtimer.h", "QtCore/QTimer",
                       "thread", "future", "mutex"]:
            for layer in ["app", "ui", "history"]:
                with self.subTest(header=header, layer=layer):
                    path = f"src/{layer}/Bad.h"
                    self.assert_refused(path, f"#include <{header}>", "use the ports")
                    (self.folder / "tree" / path).unlink()
            self.assert_allowed("src/platform/qt/New.h", f"#include <{header}>")

    def test_pictures_and_widgets_belong_to_the_interface(self):
        for layer in ["ui", "platform/qt"]:
            self.assert_allowed(f"src/{layer}/New.h", "#include <QWidget>", "#include <QImage>")
        self.assert_allowed("src/main.cpp", "#include <QtWidgets/QWidget>")
        self.assert_refused("src/app/Bad.h", "#include <QImage>", "which is not in")
        (self.folder / "tree/src/app/Bad.h").unlink()
        self.assert_refused("src/base/Bad.h", "#include <QtWidgets/QWidget>", "which is not in")
        (self.folder / "tree/src/base/Bad.h").unlink()
        self.assert_refused("src/platform/linux/x11/Bad.h", "#include <QSystemTrayIcon>",
                            "includes QtWidgets")

    def test_modules_of_qt_that_nobody_named_are_refused(self):
        self.assert_refused("src/cloud/Bad.h", "#include <QNetworkAccessManager>",
                            "which is not in")

    def test_questions_for_the_platform_are_refused(self):
        for line in ["#ifdef Q_OS_LINUX", "#if defined(__APPLE__)", "#elif Q_OS_MACOS",
                     "#  ifndef _WIN32"]:
            with self.subTest(line=line):
                self.assert_refused("src/app/Bad.cpp", line, "asks for the platform")
        (self.folder / "tree/src/app/Bad.cpp").unlink()
        self.assert_allowed("src/platform/qt/New.cpp", "#ifdef Q_OS_LINUX", "#endif")

    def test_circles_are_reported_as_the_way_around(self):
        found = self.violations({
            "src/app/A.h": '#include "app/B.h"\n',
            "src/app/B.h": '#include "app/C.h"\n',
            "src/app/C.h": '#include "app/A.h"\n',
        })
        self.assertEqual(found, [
            "src/app/A.h:0: includes itself: "
            "src/app/A.h -> src/app/B.h -> src/app/C.h -> src/app/A.h"])

    def test_a_file_that_includes_itself_is_a_circle(self):
        self.assert_refused("src/app/A.h", '#include "app/A.h"', "includes itself")

    def test_meeting_again_without_a_circle_is_allowed(self):
        self.write("tree/src/app/A.h", '#include "app/Thing.h"\n')
        self.write("tree/src/app/B.h", '#include "app/Thing.h"\n')
        self.assert_allowed("src/app/C.h", '#include "app/A.h"', '#include "app/B.h"')


if __name__ == "__main__":
    unittest.main()
