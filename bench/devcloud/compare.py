#!/usr/bin/env python3
"""Compares the rounds of the service with those of its peers: compare.py ROUNDS

The rounds are what bench/devcloud/run writes: of the service, of an older one, and of the digests that
sign-ins wait for. Prints the better rounds of each kind of request, and a line for each comparison.
Ends with 1 when less was kept than each of them demands, or when a request failed.
"""

import re
import sys

# Of the better rounds. Noise makes a tenth of the requests and a quarter of p99.
OLDER_REQUESTS, OLDER_P99 = 0.9, 1.25
# Polishing beside an answer that takes no work, and signing in beside its digests alone. The machine
# decides about all of them alike; beside other work p50 is what changes least.
WORK_P50, WORK_P99, DIGESTS = 10.0, 40.0, 0.6
ROUND = re.compile(r"(?P<what>[\w-]+), (?P<connections>\d+) connections(?P<older>, older)?: "
                   r"(?P<requests>\d+(?:\.\d+)?) requests/s, "
                   r"p50 (?P<p50>[\d.]+) ms, p99 (?P<p99>[\d.]+) ms, (?P<failures>\d+) failures")
ALONE = re.compile(r"(?P<digests>[\d.]+) digests/s")

with open(sys.argv[1], encoding="utf-8") as lines:
    texts = [line.strip() for line in lines]
rounds = [found for text in texts if (found := ROUND.fullmatch(text))]
digests = [float(found["digests"]) for text in texts if (found := ALONE.fullmatch(text))]
good = bool(rounds) and len(rounds) + len(digests) == len(texts)
good = good and all(each["failures"] == "0" for each in rounds)


def of(what, older=False):
    return [each for each in rounds if each["what"] == what and bool(each["older"]) == older]


def best(what, older=False):
    """The most requests a second, and the shortest p50 and p99, of all rounds."""
    own = of(what, older)
    return (max(float(each["requests"]) for each in own), min(float(each["p50"]) for each in own),
            min(float(each["p99"]) for each in own))


def demand(text, kept):
    global good
    good = good and kept
    print(f"  {text} {'kept' if kept else 'NOT KEPT'}")


def beside_update(own, peer):
    p50, p99 = own[1] / peer[1], own[2] / peer[2]
    demand(f"beside update: p50 {p50:.2f} x (at most {WORK_P50} x), "
           f"p99 {p99:.2f} x (at most {WORK_P99} x)", p50 <= WORK_P50 and p99 <= WORK_P99)


def beside_older(own, peer):
    requests, p99 = own[0] / peer[0], own[2] / peer[2]
    demand(f"beside the older: {requests:.2f} x requests/s (at least {OLDER_REQUESTS} x), "
           f"p99 {p99:.2f} x (at most {OLDER_P99} x)",
           requests >= OLDER_REQUESTS and p99 <= OLDER_P99)


for what in dict.fromkeys(each["what"] for each in rounds):
    requests, p50, p99 = best(what)
    failures = sum(int(each["failures"]) for each in of(what))
    print(f"{what}, {of(what)[0]['connections']} connections: {requests:.0f} requests/s, "
          f"p50 {p50:.2f} ms, p99 {p99:.2f} ms, {failures} failures")
    if what == "polish":
        beside_update(best(what), best("update"))
    if what == "sign-in":
        share = requests / max(digests)
        demand(f"beside {max(digests):.1f} digests/s alone: {share:.2f} x (at least {DIGESTS} x)",
               share >= DIGESTS)
    if of(what, older=True):
        beside_older(best(what), best(what, older=True))
sys.exit(0 if good else 1)
