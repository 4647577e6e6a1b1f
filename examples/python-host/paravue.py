"""The C interface of the library (paravue.h) for Python, with ctypes and nothing else."""

import ctypes
from ctypes import (CFUNCTYPE, POINTER, byref, c_char_p, c_int32, c_size_t, c_uint16, c_uint32, c_void_p,
                    create_string_buffer)

API_VERSION = 0x00010000
OK = 0
BUFFER_TOO_SMALL = 26
START_WINDOWS = 1
PASSWORD_TYPED = 1
SAVE_ASKS_USER = 1
WINDOW_OFFERS_REFRESH = 0x0001
WINDOW_TRACKS_CHANGES = 0x0010

ProgressCallback = CFUNCTYPE(None, c_void_p, c_int32)
MessageCallback = CFUNCTYPE(None, c_void_p, c_void_p, c_size_t, c_void_p, c_size_t)
DoneCallback = CFUNCTYPE(None, c_void_p)
FinishedCallback = CFUNCTYPE(None, c_void_p, c_int32)


class Observer(ctypes.Structure):
    _fields_ = [("size", c_size_t), ("user", c_void_p), ("progress", ProgressCallback),
                ("message", MessageCallback), ("loaded", DoneCallback), ("saved", DoneCallback)]


class WindowOptions(ctypes.Structure):
    _fields_ = [("size", c_size_t), ("parent", c_size_t), ("features", c_uint32), ("x", c_int32), ("y", c_int32),
                ("width", c_int32), ("height", c_int32), ("user", c_void_p), ("finished", FinishedCallback)]


# A handle is c_void_p, a text that is given c_char_p and its length, and a buffer c_char_p, its room and the length.
_TEXT = [c_char_p, c_size_t]
_BUFFER = [c_char_p, c_size_t, POINTER(c_size_t)]
_FUNCTIONS = {
    "paravue_start": [c_uint32, c_uint32],
    "paravue_stop": [],
    "paravue_process_events": [c_uint32],
    "paravue_problem": _BUFFER,
    "paravue_address": _TEXT * 3 + [c_uint16, c_uint32] + _BUFFER,
    "paravue_store_create": _TEXT + [c_uint32, POINTER(c_void_p)],
    "paravue_store_destroy": [c_void_p],
    "paravue_store_set_observer": [c_void_p, POINTER(Observer)],
    "paravue_store_load": [c_void_p],
    "paravue_store_save": [c_void_p],
    "paravue_store_wait": [c_void_p],
    "paravue_store_wait_for_save": [c_void_p, c_uint32, c_uint32],
    "paravue_store_get_value": [c_void_p] + _TEXT + _BUFFER,
    "paravue_store_set_value": [c_void_p] + _TEXT * 2,
    "paravue_window_create": [c_void_p, POINTER(WindowOptions), POINTER(c_void_p)],
    "paravue_window_destroy": [c_void_p],
    "paravue_window_run": [c_void_p, POINTER(c_int32)],
    "paravue_window_close": [c_void_p],
}


class Failure(Exception):
    """A call that has not returned PARAVUE_OK."""

    def __init__(self, result, text):
        super().__init__(text)
        self.result = result


def _text(text):
    data = text.encode()
    return data, len(data)


class Library:
    """Started as long as the "with" block runs."""

    def __init__(self, path, has_windows=False):
        self._functions = ctypes.CDLL(path)
        for name, arguments in _FUNCTIONS.items():
            function = getattr(self._functions, name)
            function.argtypes = arguments
            function.restype = c_int32
        self._functions.paravue_result_text.argtypes = [c_int32]
        self._functions.paravue_result_text.restype = c_char_p
        self._flags = START_WINDOWS if has_windows else 0

    def __enter__(self):
        self.call("start", API_VERSION, self._flags)
        return self

    def __exit__(self, *_):
        self.call("stop")

    def call(self, name, *arguments):
        result = getattr(self._functions, "paravue_" + name)(*arguments)
        if result != OK:
            raise Failure(result, self._problem() or self._functions.paravue_result_text(result).decode())

    def _problem(self):
        try:
            return self.read("problem")
        except Failure:
            return ""

    def read(self, name, *arguments):
        """The text that a function with a buffer returns."""
        function = getattr(self._functions, "paravue_" + name)
        length = c_size_t()
        result = function(*arguments, None, 0, byref(length))
        if result == BUFFER_TOO_SMALL:
            buffer = create_string_buffer(length.value + 1)
            result = function(*arguments, buffer, len(buffer), byref(length))
            if result == OK:
                return buffer.raw[:length.value].decode()
        raise Failure(result, self._functions.paravue_result_text(result).decode())

    def address(self, login, password, host, port):
        return self.read("address", *_text(login), *_text(password), *_text(host), port, PASSWORD_TYPED)


class Store:
    """The settings of one recorder."""

    def __init__(self, library, address):
        self._library = library
        self.handle = c_void_p()
        library.call("store_create", *_text(address), 0, byref(self.handle))

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._library.call("store_destroy", self.handle)

    def load(self):
        self._library.call("store_load", self.handle)
        self._library.call("store_wait", self.handle)

    def save(self):
        self._library.call("store_save", self.handle)
        self.finish()

    def finish(self, asks_user=False):
        self._library.call("store_wait_for_save", self.handle, SAVE_ASKS_USER if asks_user else 0, 0)

    def __getitem__(self, path):
        return self._library.read("store_get_value", self.handle, *_text(path))

    def __setitem__(self, path, value):
        self._library.call("store_set_value", self.handle, *_text(path), *_text(value))

    def show(self, when_loaded=None):
        """Runs the setup window; true when it was closed with OK. when_loaded(close) is called with the files."""
        options = WindowOptions(size=ctypes.sizeof(WindowOptions),
                                features=WINDOW_OFFERS_REFRESH | WINDOW_TRACKS_CHANGES)
        window = c_void_p()
        self._library.call("window_create", self.handle, byref(options), byref(window))
        # The library calls it as long as the observer is set, so it must live as long.
        loaded = DoneCallback(lambda _: when_loaded(lambda: self._library.call("window_close", window)))
        observer = Observer(size=ctypes.sizeof(Observer))
        if when_loaded:
            observer.loaded = loaded
        try:
            self._library.call("store_set_observer", self.handle, byref(observer))
            is_accepted = c_int32()
            self._library.call("window_run", window, byref(is_accepted))
            return is_accepted.value == 1
        finally:
            self._library.call("store_set_observer", self.handle, None)
            self._library.call("window_destroy", window)
