#!/usr/bin/env python3
"""Tries what docs/self-hosting.md says: its commands, its unit, its nginx.

The blocks are taken out of the page itself. Only what must differ here is replaced: the folders of the
system by folders of the test, the built program by the one to be tested, its user by who runs the test,
the names of hosts by this machine, and each port by a free one.
"""

import http.client
import http.server
import json
import os
import re
import resource
import shlex
import socket
import ssl
import stat
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from pathlib import Path

PROGRAM = Path(sys.argv[1]).resolve()
TOP = Path(__file__).resolve().parents[2]
PAGE = (TOP / "docs/self-hosting.md").read_text(encoding="utf-8")
PASSWORD = "correct horse"
# Makes the system read-only but for one folder, and starts a program without rights:
# sh CONFINE FOLDER WRITABLE PROGRAM...
CONFINE = """set -e
mount --bind "$1" "$1"
mount --bind "$2" "$2"
mount -o remount,bind,ro "$1"
mount -o remount,bind,ro /
! touch "$1/written" /etc/written 2>/dev/null
shift 2
umask 0077
ulimit -n 8192
exec setpriv --bounding-set=-all --inh-caps=-all --no-new-privs "$@"
"""
PATIENCE = 30  # Seconds until something that should happen has not happened.

# What changes the machine or takes minutes, tried by nobody but the reader. The page says so.
UNTRIED = [r"scripts/install-dependencies build", r"cmake --preset (local|release)( -D\w+=\S+)*",
           r"cmake --build --preset (local|release)( --target tavrin-devcloud)?",
           r"apt-get install .*", r"useradd .*", r"systemctl .*"]
TRIED = [r"install .*", r"sqlite3 .*", r"nginx -t", r"tavrin-devcloud .*",
         r"runuser -u tavrin-devcloud -- tavrin-devcloud .*"]


def blocks(kind):
    return re.findall(rf"^```{kind}\n(.*?)^```$", PAGE, re.M | re.S)


def commands():
    return [line for block in blocks("sh") for line in block.splitlines()]


def command_with(word):
    found = [line for line in commands() if f" {word}" in line]
    assert found, f"no command of the page has {word}"
    return found[0]


def free_port():
    with socket.socket() as free:
        free.bind(("127.0.0.1", 0))
        return free.getsockname()[1]


def wait_for(what, condition):
    deadline = time.monotonic() + PATIENCE
    while time.monotonic() < deadline:
        if condition():
            return
        time.sleep(0.02)
    raise AssertionError(f"{what} did not come")


def answers(port):
    with socket.socket() as probe:
        return probe.connect_ex(("127.0.0.1", port)) == 0


class Model(http.server.BaseHTTPRequestHandler):
    """A model that answers with what it was called and by what key."""

    def do_POST(self):
        asked = json.loads(self.rfile.read(int(self.headers["Content-Length"])))
        said = f"{asked['model']} {self.headers['Authorization']} {self.path}"
        body = json.dumps({"choices": [{"message": {"content": said}}]}).encode()
        self.send_response(200)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


class SelfHostingTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="tavrin-hosting-")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.data = self.folder / "var/lib/tavrin-devcloud"
        for made in ("var/lib", "var/backups", "etc", "usr/local/bin"):
            (self.folder / made).mkdir(parents=True)
        self.ports = {}
        for line in commands():
            if line.startswith("install ") and "/var/backups" not in line:
                self.run_tool(line)
        self.program = self.folder / "usr/local/bin/tavrin-devcloud"

    def port(self, of_page):
        return self.ports.setdefault(of_page, free_port())

    def here(self, text):
        """The text of the page for this machine."""
        text = text.replace("build/local/devcloud/tavrin-devcloud", str(PROGRAM))
        text = re.sub(r"(?<![\w/])/(var/lib|var/backups|etc|usr/local/bin)/",
                      rf"{self.folder}/\1/", text)
        text = re.sub(r"-o tavrin-devcloud -g tavrin-devcloud",
                      f"-o {os.getuid()} -g {os.getgid()}", text)
        text = text.replace("0.0.0.0:", "127.0.0.1:")
        return re.sub(r"\b(8787|8443|8080)\b", lambda port: str(self.port(port[0])), text)

    def words(self, line):
        """A command of the page as a list; without the change of the user, who is missing here."""
        words = shlex.split(self.here(line))
        if words[:2] == ["runuser", "-u"]:
            words = words[words.index("--") + 1:]
        self.assertEqual(words[0], "tavrin-devcloud", line)
        return [str(self.program)] + words[1:]

    def run_tool(self, line):
        subprocess.run(shlex.split(self.here(line)), check=True, timeout=PATIENCE)

    def run_line(self, line, typed=""):
        done = subprocess.run(self.words(line), input=typed, text=True, capture_output=True,
                              timeout=PATIENCE)
        self.assertEqual(done.returncode, 0, line + "\n" + done.stderr)
        return done.stdout

    def start(self, arguments, port, prepare=None):
        arguments = [str(argument) for argument in arguments]
        with open(self.folder / f"log-{port}", "wb") as log:
            process = subprocess.Popen(arguments, stdout=log, stderr=log, preexec_fn=prepare)
        self.addCleanup(process.wait)
        self.addCleanup(process.terminate)
        wait_for(arguments[0], lambda: answers(port) or process.poll() is not None)
        self.assertIsNone(process.poll(), (self.folder / f"log-{port}").read_text())

    def start_unit(self, confined_by=()):
        """The service as its unit starts it, and an account."""
        line = re.search(r"^ExecStart=(.*)$", blocks("ini")[0], re.M)[1]
        self.start([*confined_by, *shlex.split(self.here(line)),
                    "--listen", f"127.0.0.1:{self.port('8787')}"], self.port("8787"))
        self.assertEqual(self.make_account(), "account made: ada@example.org\n")

    def make_account(self):
        return self.run_line(command_with("account"), PASSWORD + "\n")

    def make_certificate(self, certificate, key):
        for file in (certificate, key):
            file.parent.mkdir(parents=True, exist_ok=True)
        template = self.folder / "template"
        template.write_text("cn = localhost\ndns_name = localhost\nip_address = 127.0.0.1\n"
                            "tls_www_server\nsigning_key\nexpiration_days = 2\n",
                            encoding="utf-8")
        for arguments in (["--generate-privkey", "--key-type", "ecdsa", "--outfile", key],
                          ["--generate-self-signed", "--load-privkey", key, "--template", template,
                           "--outfile", certificate]):
            subprocess.run(["certtool", "--no-text"] + arguments, check=True, capture_output=True,
                           timeout=PATIENCE)
        return ssl.create_default_context(cafile=certificate)

    def connect(self, kind, *arguments, **options):
        connection = kind(*arguments, timeout=PATIENCE, **options)
        self.addCleanup(connection.close)
        return connection

    def post(self, connection, path, body, headers=None):
        connection.request("POST", path, json.dumps(body),
                           {"Content-Type": "application/json", **(headers or {})})
        answer = connection.getresponse()
        return answer.status, json.loads(answer.read())

    def sign_in(self, connection, password=PASSWORD, email="ada@example.org", headers=None):
        return self.post(connection, "/v1/auth/login", {"email": email, "password": password},
                         headers)

    def test_every_command_is_tried_or_known_to_be_untried(self):
        for line in commands():
            kinds = [any(re.fullmatch(pattern, line) for pattern in patterns)
                     for patterns in (TRIED, UNTRIED)]
            self.assertEqual(sorted(kinds), [False, True], line)

    def test_the_packages_of_the_page_are_those_of_the_tests(self):
        known = (TOP / "scripts/dependencies").read_text(encoding="utf-8").splitlines()
        packages = command_with("install nginx").split()[2:]
        self.assertEqual(len(packages), 2)
        for package in packages:
            self.assertIn(package, known)

    def test_the_program_and_its_data_get_their_places(self):
        self.assertTrue(self.data.is_dir())
        self.assertEqual(stat.S_IMODE(self.data.stat().st_mode), 0o700)
        self.assertEqual(stat.S_IMODE(self.program.stat().st_mode), 0o755)
        self.assertEqual(self.program.read_bytes(), PROGRAM.read_bytes())

    def test_a_copy_made_while_the_service_runs_is_whole_and_private(self):
        self.start_unit()
        connection = self.connect(http.client.HTTPConnection, "127.0.0.1", self.port("8787"))
        token = self.sign_in(connection)[1]["accessToken"]
        lines = [line for line in commands() if "/var/backups" in line]
        self.assertEqual(len(lines), 2)
        for line in lines:
            self.run_tool(line)
        copy = self.folder / "var/backups/devcloud.sqlite"
        self.assertEqual(stat.S_IMODE(copy.stat().st_mode), 0o600)

        restored = self.folder / "restored"
        restored.mkdir()
        copy.rename(restored / copy.name)
        port = free_port()
        self.start([self.program, "--data", restored, "--listen", f"127.0.0.1:{port}"], port)
        connection = self.connect(http.client.HTTPConnection, "127.0.0.1", port)
        self.assertEqual(self.sign_in(connection)[0], 200)
        connection.request("GET", "/v1/auth/me", headers={"Authorization": f"Bearer {token}"})
        self.assertEqual(connection.getresponse().status, 200)

    def test_the_address_of_the_client_is_one(self):
        deployment = TOP / "cmake/TavrinDeployment.cmake"
        options = re.findall(r"-D\w+=\S+", command_with("--preset release"))
        self.assertEqual({option[2:].split("=")[0] for option in options},
                         set(re.findall(r"^set\((\w+) ", deployment.read_text("utf-8"), re.M)))

        def accepted(given):
            done = subprocess.run(["cmake", *given, "-P", deployment], capture_output=True,
                                  text=True, timeout=PATIENCE)
            return done.returncode == 0
        self.assertTrue(accepted(options))
        for option in options:
            wrong = [other for other in options if other != option] + [option + "?"]
            self.assertFalse(accepted(wrong), option)

    def test_the_unit_is_one(self):
        unit = self.folder / "tavrin-devcloud.service"
        unit.write_text(self.here(blocks("ini")[0]), encoding="utf-8")
        done = subprocess.run(["systemd-analyze", "verify", "--man=no", "--recursive-errors=no",
                               unit], text=True, capture_output=True, timeout=PATIENCE)
        self.assertEqual((done.returncode, done.stderr), (0, ""))

    def test_the_program_needs_no_more_than_its_unit_leaves(self):
        unit = blocks("ini")[0].splitlines()
        for line in ("ProtectSystem=strict", "ReadWritePaths=/var/lib/tavrin-devcloud",
                     "CapabilityBoundingSet=", "NoNewPrivileges=yes", "UMask=0077",
                     "LimitNOFILE=8192"):
            self.assertIn(line, unit)
        # Mounts of its own are for root; anybody else is root in a user namespace of its own.
        alone = ["unshare", "--mount"] + (["--map-root-user"] if os.geteuid() else [])
        self.start_unit([*alone, "sh", "-c", CONFINE, "confine",
                         self.folder, self.data])
        connection = self.connect(http.client.HTTPConnection, "127.0.0.1", self.port("8787"))
        self.assertEqual(self.sign_in(connection)[0], 200)
        code = {"email": "grace@example.org", "inviteCode": self.run_line(
            command_with("invite")).strip()}
        self.assertEqual(self.post(connection, "/v1/auth/registration/start", code)[0], 200)
        self.assertEqual(len(list((self.data / "outbox").iterdir())), 1)

    def test_people_are_invited_listed_and_sent_away(self):
        self.assertRegex(self.run_line(command_with("invite")), r"^TAV-\w{4}-\w{4}\n$")
        self.start_unit()
        connection = self.connect(http.client.HTTPConnection, "127.0.0.1", self.port("8787"))
        for _ in range(3):
            self.assertEqual(self.sign_in(connection)[0], 200)
        self.assertEqual(self.run_line(command_with("sessions")).count("signed in"), 3)
        revoke = [line for line in commands() if " revoke " in line]
        self.assertEqual([self.run_line(line) for line in (revoke[1], revoke[0], revoke[2])],
                         ["1 session ended\n", "2 sessions ended\n", "0 sessions ended\n"])

    def test_where_few_files_may_be_open_the_newest_connections_are_served(self):
        port = free_port()
        self.start([str(self.program), "--data", str(self.data), "--listen", f"127.0.0.1:{port}"], port,
                   lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (100, 100)))
        silent = [socket.create_connection(("127.0.0.1", port), PATIENCE) for _ in range(400)]
        for connection in silent:
            self.addCleanup(connection.close)
        connection = self.connect(http.client.HTTPConnection, "127.0.0.1", port)
        connection.request("GET", "/v1/client/update")
        self.assertEqual(connection.getresponse().status, 200)

    def test_behind_nginx_guesses_of_one_user_close_sign_in_to_nobody_else(self):
        self.start_unit()
        port = free_port()
        config = self.here(blocks("nginx")[0]).replace("listen 443", f"listen 127.0.0.1:{port}")
        live = self.folder / "etc/letsencrypt/live/speech.example.org"
        trust = self.make_certificate(live / "fullchain.pem", live / "privkey.pem")
        whole = self.folder / "nginx.conf"
        paths = "".join(f"{kind}_temp_path {self.folder}/{kind};\n" for kind in (
            "client_body", "proxy", "fastcgi", "uwsgi", "scgi"))
        whole.write_text(f"daemon off;\npid {self.folder}/pid;\nevents {{}}\nhttp {{\n"
                         f"access_log off;\n{paths}{config}}}\n", encoding="utf-8")
        nginx = ["/usr/sbin/nginx", "-e", "stderr", "-p", str(self.folder), "-c", str(whole)]
        tested = subprocess.run(nginx + ["-t"], text=True, capture_output=True, timeout=PATIENCE)
        self.assertEqual(tested.returncode, 0, tested.stderr)
        self.start(nginx, port)

        def user(address):
            return self.connect(http.client.HTTPSConnection, "localhost", port, context=trust,
                                source_address=(address, 0))
        guesser, owner = user("127.0.0.2"), user("127.0.0.3")
        for guess in range(10):
            # A lie in the header moves the guesser nowhere.
            lie = {"X-Forwarded-For": f"192.0.2.{guess}"}
            self.assertEqual(self.sign_in(guesser, "a wrong guess", headers=lie)[0], 401)
        self.assertEqual(self.sign_in(guesser)[0], 429)
        self.assertEqual(self.sign_in(owner)[0], 200)

        for guess in range(60):
            self.sign_in(guesser, "a wrong guess", f"{guess}@example.org")
        self.assertEqual(self.sign_in(guesser, "a wrong guess", "new@example.org")[0], 429)
        self.assertEqual(self.sign_in(owner)[0], 200)

    def test_the_service_holds_the_certificate_itself(self):
        etc = self.folder / "etc/tavrin-devcloud"
        trust = self.make_certificate(etc / "certificate.pem", etc / "key.pem")
        self.start(self.words(command_with("--tls-certificate")), self.port("8443"))
        self.make_account()
        connection = self.connect(http.client.HTTPSConnection, "localhost", self.port("8443"),
                                  context=trust)
        self.assertEqual(self.sign_in(connection)[0], 200)

    def test_a_language_model_answers(self):
        model = http.server.ThreadingHTTPServer(("127.0.0.1", self.port("8080")), Model)
        threading.Thread(target=model.serve_forever, daemon=True).start()
        self.addCleanup(model.server_close)
        self.addCleanup(model.shutdown)
        key = self.folder / "etc/tavrin-devcloud/model-key"
        key.parent.mkdir(parents=True)
        key.write_text("the key\n", encoding="utf-8")
        self.start(self.words(command_with("--llm-url")) +
                   ["--listen", f"127.0.0.1:{self.port('8787')}"], self.port("8787"))
        self.make_account()
        connection = self.connect(http.client.HTTPConnection, "127.0.0.1", self.port("8787"))
        token = self.sign_in(connection)[1]["accessToken"]
        self.assertEqual(
            self.post(connection, "/v1/text/chat", {"transcript": "why"},
                      {"Authorization": f"Bearer {token}"}),
            (200, {"text": "your-model Bearer the key /v1/chat/completions"}))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
