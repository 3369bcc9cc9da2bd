#!/usr/bin/env python3
"""Computes the digests that a sign-in computes, and nothing else: passwords.py SECONDS

As many at a time as the service does, by the same library. Prints how many a second.
"""

import ctypes
import ctypes.util
import os
import sys
import threading
import time

AT_A_TIME, DIGEST_BYTES, PASSWORD = 2, 128, b"a password for measuring"

sodium = ctypes.CDLL(ctypes.util.find_library("sodium"))
sodium.sodium_init()
sodium.crypto_pwhash_str.argtypes = [ctypes.c_char_p, ctypes.c_char_p, ctypes.c_ulonglong,
                                     ctypes.c_ulonglong, ctypes.c_size_t]
passes = sodium.crypto_pwhash_opslimit_interactive()
memory = sodium.crypto_pwhash_memlimit_interactive()
deadline = time.perf_counter() + float(sys.argv[1])
made = [0] * AT_A_TIME


def compute(worker):
    digest = ctypes.create_string_buffer(DIGEST_BYTES)
    while time.perf_counter() < deadline:
        if sodium.crypto_pwhash_str(digest, PASSWORD, len(PASSWORD), passes, memory) != 0:
            os._exit(1)  # Memory is out; the other thread need not go on.
        made[worker] += 1


started = time.perf_counter()
threads = [threading.Thread(target=compute, args=(worker,)) for worker in range(AT_A_TIME)]
for thread in threads:
    thread.start()
for thread in threads:
    thread.join()
print(f"{sum(made) / (time.perf_counter() - started):.1f} digests/s")
