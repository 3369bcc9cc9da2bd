"""Servers on this machine that stand in for what the program or its text service asks."""

import http.server
import json
import threading
import time


class StandIn:
    """Answers every POST with `status` and, as JSON, with what answer_to() makes of the request's body.
    An answer takes `duration` seconds to arrive, piece by piece."""

    def __init__(self, port=0):
        self.status = 200
        self.duration = 0
        stand_in = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_POST(self):
                body = self.rfile.read(int(self.headers["Content-Length"] or 0))
                answer = json.dumps(stand_in.answer_to(body)).encode()
                self.send_response(stand_in.status)
                self.send_header("Content-Type", "application/json")
                self.send_header("Content-Length", str(len(answer)))
                self.end_headers()
                pieces = 20 if stand_in.duration else 1
                for i in range(pieces):
                    self.wfile.write(answer[len(answer) * i // pieces:len(answer) * (i + 1) // pieces])
                    time.sleep(stand_in.duration / pieces)

            def log_message(self, *arguments):
                pass

        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", port), Handler)
        threading.Thread(target=self._server.serve_forever, daemon=True).start()
        self.url = f"http://127.0.0.1:{self._server.server_port}"

    def answer_to(self, body):
        raise NotImplementedError

    def close(self):
        self._server.shutdown()
        self._server.server_close()


class Model(StandIn):
    """A language model: answers every request with `answer`, after it has called `before_answer`."""

    def __init__(self):
        self.answer = ""
        self.before_answer = lambda: None
        self.requests = []
        super().__init__()

    def answer_to(self, body):
        self.requests.append(json.loads(body))
        self.before_answer()
        return {"choices": [{"message": {"role": "assistant", "content": self.answer}}]}
