"""Looks at the X server and at the programs on it from outside."""

import ctypes
import ctypes.util
import select
import threading
import time

_x = ctypes.CDLL(ctypes.util.find_library("X11"))
_x.XOpenDisplay.restype = ctypes.c_void_p
_x.XDefaultRootWindow.restype = ctypes.c_ulong
_x.XInternAtom.restype = ctypes.c_ulong
_x.XGetKeyboardMapping.restype = ctypes.POINTER(ctypes.c_ulong)

CLIENT_MESSAGE = 33
SUBSTRUCTURE_AND_STRUCTURE_NOTIFY = (1 << 19) | (1 << 17)


class _ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("sent", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong),
                ("message", ctypes.c_ulong), ("format", ctypes.c_int),
                ("data", ctypes.c_long * 5), ("rest_of_a_union", ctypes.c_long * 24)]


class Display:
    def __init__(self):
        self.handle = ctypes.c_void_p(_x.XOpenDisplay(None))
        if not self.handle:
            raise OSError("there is no X display")
        self.root = ctypes.c_ulong(_x.XDefaultRootWindow(self.handle))

    def close(self):
        _x.XCloseDisplay(self.handle)

    def pressed_keys(self):
        """The key codes that the server takes for pressed."""
        state = (ctypes.c_ubyte * 32)()
        _x.XQueryKeymap(self.handle, state)
        return [code for code in range(256) if state[code // 8] >> code % 8 & 1]

    def keyboard_map(self):
        """The symbols of every key code."""
        first, last, per_code = ctypes.c_int(), ctypes.c_int(), ctypes.c_int()
        _x.XDisplayKeycodes(self.handle, ctypes.byref(first), ctypes.byref(last))
        count = last.value - first.value + 1
        symbols = _x.XGetKeyboardMapping(self.handle, ctypes.c_ubyte(first.value), count,
                                         ctypes.byref(per_code))
        width = per_code.value
        rows = {first.value + row: tuple(symbols[row * width:(row + 1) * width])
                for row in range(count)}
        _x.XFree(symbols)
        # How many columns the server sends depends on what was mapped before; empty ones say nothing.
        return {code: tuple(filter(None, row)) for code, row in rows.items()}

    def atom(self, name):
        return _x.XInternAtom(self.handle, name.encode(), 0)


class Heartbeat:
    """Pings a window every 20 ms and notes how long its program's main thread takes to answer."""

    INTERVAL = 0.02

    def __init__(self, window):
        self._window = int(window)
        self._display = Display()
        self._lock = threading.Lock()
        self._waiting = {}  # When each ping was sent that has not been answered.
        self._longest = 0.0
        self._ends = threading.Event()
        self._thread = threading.Thread(target=self._run)
        self._thread.start()

    def close(self):
        self._ends.set()
        self._thread.join()
        self._display.close()

    def longest(self):
        """The longest wait for an answer since this was asked last, in seconds."""
        now = time.monotonic()
        with self._lock:
            longest = max([self._longest, *(now - sent for sent in self._waiting.values())])
            self._longest = 0.0
        return longest

    def _run(self):
        display = self._display
        _x.XSelectInput(display.handle, display.root,
                        ctypes.c_long(SUBSTRUCTURE_AND_STRUCTURE_NOTIFY))
        self._protocols = display.atom("WM_PROTOCOLS")
        self._ping = display.atom("_NET_WM_PING")
        number = 0
        while not self._ends.is_set():
            number += 1
            self._send(number)
            end = time.monotonic() + self.INTERVAL
            while (rest := end - time.monotonic()) > 0:
                self._receive()
                select.select([_x.XConnectionNumber(display.handle)], [], [], rest)

    def _send(self, number):
        # Numbers of its own range: others ping windows too.
        message = _ClientMessage(type=CLIENT_MESSAGE, window=self._window, message=self._protocols,
                                 format=32)
        message.data[0], message.data[1], message.data[2] = self._ping, -number, self._window
        with self._lock:
            self._waiting[-number] = time.monotonic()
        _x.XSendEvent(self._display.handle, ctypes.c_ulong(self._window), 0, ctypes.c_long(0),
                      ctypes.byref(message))
        _x.XFlush(self._display.handle)

    def _receive(self):
        event = _ClientMessage()
        while _x.XPending(self._display.handle):
            _x.XNextEvent(self._display.handle, ctypes.byref(event))
            if event.type != CLIENT_MESSAGE or event.message != self._protocols:
                continue
            if event.data[0] != self._ping or event.data[2] != self._window:
                continue
            with self._lock:
                sent = self._waiting.pop(event.data[1], None)
                if sent is not None:
                    self._longest = max(self._longest, time.monotonic() - sent)
