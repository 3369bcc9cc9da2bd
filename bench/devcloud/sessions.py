#!/usr/bin/env python3
"""Adds sessions to a database of the service, as if so many had signed in: sessions.py FILE COUNT."""

import secrets
import sqlite3
import sys
import time

database = sqlite3.connect(sys.argv[1])
account, = database.execute("SELECT id FROM accounts").fetchone()
now = int(time.time())
for _ in range(int(sys.argv[2])):
    family = database.execute(
        "INSERT INTO families(account, device_id, device_name, client_version, created)"
        " VALUES(?, ?, 'A desk', '0.8.0', ?)", (account, secrets.token_hex(18), now)).lastrowid
    pair = secrets.token_hex(32)
    database.execute("INSERT INTO access_tokens(hash, family, expires, pair) VALUES(?, ?, ?, ?)",
                     (secrets.token_hex(32), family, now + 3600, pair))
    database.execute("INSERT INTO refresh_tokens(hash, family, expires) VALUES(?, ?, ?)",
                     (pair, family, now + 30 * 24 * 3600))
database.commit()
