#!/usr/bin/env python3
"""Holds connections that say nothing, or a byte at a time, and measures polish beside them.

connections.py URL PROCESS; $TOKEN signs in. Ends with 1 when a call took too long.
"""

import http.client
import json
import os
import resource
import socket
import sys
import threading
import time

SILENT, DRIPPING, CALLS, LIMIT_MS = 2000, 200, 200, 50.0
MOST_KIB_EACH = 8.0  # Of memory, for a connection.
# No address may take the room of all, so they come from several.
SOURCES = [f"127.0.0.{last}" for last in range(2, 12)]
DRIP = b"POST /v1/text/polish HTTP/1.1\r\nX-Filling: " + b"a" * 4096

host, port = sys.argv[1].removeprefix("http://").split(":")
process = sys.argv[2]


def memory_kib():
    with open(f"/proc/{process}/smaps_rollup", encoding="ascii") as lines:
        return next(int(line.split()[1]) for line in lines if line.startswith("Rss:"))


def connect(number):
    return socket.create_connection((host, int(port)), timeout=10,
                                    source_address=(SOURCES[number % len(SOURCES)], 0))


def is_open(connection):
    connection.setblocking(False)
    try:
        return connection.recv(1) != b""
    except BlockingIOError:
        return True
    except OSError:
        return False


def drip(connections, ended):
    at = 0
    while not ended.wait(0.1):
        for connection in connections:
            try:
                connection.send(DRIP[at:at + 1])
            except OSError:
                pass
        at += 1


def polish(connection):
    body = json.dumps({"transcript": "um so the report is due on friday", "application": {}})
    started = time.perf_counter()
    connection.request("POST", "/v1/text/polish", body,
                       {"Content-Type": "application/json",
                        "Authorization": "Bearer " + os.environ["TOKEN"]})
    answer = connection.getresponse()
    answer.read()
    assert answer.status == 200, answer.status
    return (time.perf_counter() - started) * 1000


def times_ms():
    kept = http.client.HTTPConnection(host, int(port), timeout=30)
    taken = []
    for call in range(CALLS):
        # Every second one on a connection of its own, as after a pause.
        fresh = http.client.HTTPConnection(host, int(port), timeout=30)
        taken.append(polish(fresh if call % 2 else kept))
        fresh.close()
    return sorted(taken)


_, most = resource.getrlimit(resource.RLIMIT_NOFILE)
resource.setrlimit(resource.RLIMIT_NOFILE, (min(most, 4 * (SILENT + DRIPPING)), most))
alone = times_ms()
before = memory_kib()
silent = [connect(number) for number in range(SILENT)]
with_silent = memory_kib()
dripping = [connect(number) for number in range(DRIPPING)]
ended = threading.Event()
thread = threading.Thread(target=drip, args=(dripping, ended))
thread.start()
beside = times_ms()
still_open = sum(map(is_open, silent)), sum(map(is_open, dripping))
ended.set()
thread.join()

each = (with_silent - before) / SILENT
kept = beside[-1] <= LIMIT_MS and still_open == (SILENT, DRIPPING)
is_small = each <= MOST_KIB_EACH
for name, taken in (("alone", alone), ("beside them", beside)):
    print(f"polish {name}: p50 {taken[CALLS // 2]:.2f} ms, p99 {taken[CALLS * 99 // 100]:.2f} ms, "
          f"longest {taken[-1]:.2f} ms")
print(f"{still_open[0]} silent and {still_open[1]} dripping connections stayed open, "
      f"limit {LIMIT_MS:.0f} ms {'kept' if kept else 'NOT KEPT'}")
print(f"memory with {SILENT} silent connections: {with_silent / 1024:.0f} MiB, without "
      f"{before / 1024:.0f} MiB: {each:.1f} KiB each (at most {MOST_KIB_EACH:.0f}) "
      f"{'kept' if is_small else 'NOT KEPT'}")
sys.exit(0 if kept and is_small else 1)
