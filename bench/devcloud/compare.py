#!/usr/bin/env python3
"""Compares the rounds of the service with those of an older one: compare.py ROUNDS

Prints a line for each kind of request that both were asked. Ends with 1 when more was lost than noise
makes, or when a request failed.
"""

import re
import sys

LEAST_REQUESTS, MOST_P99 = 0.9, 1.25
ROUND = re.compile(r"(?P<what>[\w-]+), \d+ connections(?P<older>, older)?: (?P<requests>\d+) requests/s, "
                   r"p50 [\d.]+ ms, p99 (?P<p99>[\d.]+) ms, (?P<failures>\d+) failures")

with open(sys.argv[1], encoding="utf-8") as lines:
    rounds = [ROUND.fullmatch(line.strip()) for line in lines]
good = bool(rounds) and all(rounds)
for each in filter(None, rounds):
    good = good and each["failures"] == "0"


def best(what, older):
    """The most requests a second and the shortest p99 of all rounds."""
    own = [each for each in rounds if each and each["what"] == what and bool(each["older"]) == older]
    return max(float(each["requests"]) for each in own), min(float(each["p99"]) for each in own)


for what in dict.fromkeys(each["what"] for each in rounds if each and each["older"]):
    requests, p99 = (ours / theirs for ours, theirs in zip(best(what, False), best(what, True)))
    kept = requests >= LEAST_REQUESTS and p99 <= MOST_P99
    good = good and kept
    print(f"{what} beside the older: {requests:.2f} x requests/s (at least {LEAST_REQUESTS} x), "
          f"p99 {p99:.2f} x (at most {MOST_P99} x) {'kept' if kept else 'NOT KEPT'}")
sys.exit(0 if good else 1)
