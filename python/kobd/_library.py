"""The client library through ctypes: its structs and functions, as kobd_client.h declares them, and its errors."""

from __future__ import annotations

import ctypes
import os
import threading
from contextlib import contextmanager
from ctypes import POINTER, c_char_p, c_int, c_int32, c_int64, c_size_t, c_uint16, c_uint32, c_uint64, c_void_p
from typing import Any, Callable, Iterator, NamedTuple, Optional, Sequence, TypeVar, Union

from .errors import KobdError, Refused, error_class

VALUE_MAX = 2048
INVALID, SYSTEM_ERROR, TIMEOUT, NOT_OURS, BUFFER_LIMIT, UNAVAILABLE = 2, 4, 8, 9, 11, 16

# Requests, and the tags of their items.
GET, SET_SILENT, UPDATE, TABLE_GET, TABLE_DUMP = 2, 3, 4, 9, 12
OBJECT_NAME, VALUE, TABLE_NAME, ROW_INDEX, COLUMN_NAME = 1, 2, 3, 4, 5


class Description(ctypes.Structure):
    _fields_ = [
        ("name", c_char_p),
        ("type", c_char_p),
        ("is_number", c_int),
        ("is_flag", c_int),
        ("readable", c_int),
        ("writable", c_int),
        ("secret", c_int),
        ("has_range", c_int),
        ("least", c_int64),
        ("most", c_int64),
        ("choices", POINTER(c_char_p)),
        ("choice_count", c_size_t),
        ("check", c_char_p),
        ("accepts", c_char_p),
        ("meaning", c_char_p),
        ("unit", c_char_p),
        ("is_action", c_int),
        ("alias_of", c_char_p),
    ]


class TableDescription(ctypes.Structure):
    _fields_ = [
        ("name", c_char_p),
        ("meaning", c_char_p),
        ("column_count", c_size_t),
        ("columns", POINTER(POINTER(Description))),
        ("can_add", c_int),
        ("can_delete", c_int),
        ("can_get", c_int),
        ("can_set", c_int),
        ("can_add_below", c_int),
        ("can_list", c_int),
        ("max_rows", c_int),
        ("check", c_char_p),
        ("accepts", c_char_p),
        ("same_rows_as", c_char_p),
    ]


class Explanation(ctypes.Structure):
    _fields_ = [
        ("code", c_int),
        ("object", c_char_p),
        ("table", c_char_p),
        ("index", c_int32),
        ("column", c_char_p),
        ("value", c_char_p),
        ("reason", c_char_p),
        ("right", c_char_p),
        ("text", c_char_p),
        ("changed", c_size_t),
    ]


class Item(ctypes.Structure):
    _fields_ = [
        ("tag", c_uint16),
        ("length", c_uint16),
        ("value", c_void_p),
        ("text", c_char_p),
        ("number", c_int32),
    ]


class Bytes(ctypes.Structure):
    _fields_ = [("next", c_void_p), ("left", c_size_t)]


class Tapped(ctypes.Structure):
    _fields_ = [
        ("kind", c_int),
        ("missed", c_uint32),
        ("time_us", c_int64),
        ("took_ns", c_uint64),
        ("process", c_uint32),
        ("program", c_char_p),
        ("module", c_uint32),
        ("message_class", c_uint16),
        ("id", c_uint16),
        ("payload", Bytes),
        ("message", Bytes),
    ]


_TEXTS = POINTER(c_char_p)
_Read = TypeVar("_Read")

# Each function that is called: what it returns, and what it takes. None takes a function of ours: ctypes would swallow
# a KeyboardInterrupt in it.
_FUNCTIONS: dict[str, tuple[Any, list[Any]]] = {
    "kobd_result_text": (c_char_p, [c_int]),
    "kobd_client_open": (c_int, [POINTER(c_void_p)]),
    "kobd_client_close": (None, [c_void_p]),
    "kobd_client_set_timeout": (None, [c_void_p, c_int]),
    "kobd_items_new": (c_void_p, []),
    "kobd_items_free": (None, [c_void_p]),
    "kobd_items_add_text": (c_int, [c_void_p, c_uint16, c_char_p]),
    "kobd_items_add_number": (c_int, [c_void_p, c_uint16, c_int32]),
    "kobd_call": (c_int, [c_void_p, c_int, c_void_p]),
    "kobd_host_call": (c_int, [c_void_p, c_int, c_void_p]),
    "kobd_not_saved": (c_char_p, [c_void_p]),
    "kobd_reply_next": (c_int, [c_void_p, POINTER(Item)]),
    "kobd_get": (c_int, [c_void_p, c_char_p, c_char_p, c_size_t]),
    "kobd_set": (c_int, [c_void_p, _TEXTS, _TEXTS, c_size_t]),
    "kobd_explain": (POINTER(Explanation), [c_void_p]),
    "kobd_dump": (c_int, [c_void_p, c_int, c_void_p, POINTER(Bytes)]),
    "kobd_row_add": (c_int, [c_void_p, c_char_p, c_char_p, POINTER(c_int32)]),
    "kobd_row_del": (c_int, [c_void_p, c_char_p, c_int32]),
    "kobd_changes_new": (c_void_p, []),
    "kobd_changes_free": (None, [c_void_p]),
    "kobd_changes_add": (c_int, [c_void_p, c_char_p, c_int32, c_char_p, c_char_p]),
    "kobd_changes_set": (c_int, [c_void_p, c_void_p, c_int]),
    "kobd_describe": (POINTER(Description), [c_char_p]),
    "kobd_describe_table": (POINTER(TableDescription), [c_char_p]),
    "kobd_object_at": (POINTER(Description), [c_size_t]),
    "kobd_table_at": (POINTER(TableDescription), [c_size_t]),
    "kobd_did_you_mean": (c_char_p, [c_char_p]),
    "kobd_check": (c_int, [c_char_p, c_char_p, POINTER(POINTER(Explanation))]),
    "kobd_watch_open": (c_int, [POINTER(c_void_p), c_uint32]),
    "kobd_watch_close": (None, [c_void_p]),
    "kobd_watch_next": (c_int, [c_void_p, c_int, POINTER(c_uint16)]),
    "kobd_watch_payload": (Bytes, [c_void_p]),
    "kobd_watch_descriptor": (c_int, [c_void_p]),
    "kobd_bytes_next": (c_int, [POINTER(Bytes), POINTER(Item)]),
    "kobd_tap_open": (c_int, [c_void_p, POINTER(c_void_p)]),
    "kobd_tap_close": (None, [c_void_p]),
    "kobd_tap_next": (c_int, [c_void_p, c_int, POINTER(Tapped)]),
    "kobd_tap_descriptor": (c_int, [c_void_p]),
}


def _load() -> ctypes.CDLL:
    path = os.environ.get("KOBD_CLIENT_LIBRARY") or "libkobd_client.so.0"
    try:
        library = ctypes.CDLL(path)
        for name, (result, arguments) in _FUNCTIONS.items():
            function = getattr(library, name)
            function.restype = result
            function.argtypes = arguments
    except (OSError, AttributeError) as error:
        advice = "install a later kobd, or let KOBD_CLIENT_LIBRARY name its libkobd_client.so.0"
        raise ImportError(f"kobd: the client library cannot be used: {error}; {advice}") from error
    return library


lib = _load()


def decode(text: Optional[bytes]) -> str:
    """The text of the daemon. Bytes that are no UTF-8 come back as the same bytes from encode."""
    return (text or b"").decode("utf-8", "surrogateescape")


def decode_or_none(text: Optional[bytes]) -> Optional[str]:
    return None if text is None else decode(text)


def encode(text: str, name: Optional[str] = None) -> bytes:
    """The bytes of a text. A zero byte would end it early, so that it is refused here."""
    if not isinstance(text, str):
        raise TypeError(f"a name is a str, not {text!r}")
    if "\0" in text:
        reason = "a text cannot hold a zero byte"
        raise Refused(INVALID, f"{name}: {reason}" if name else reason, name, text, reason)
    return text.encode("utf-8", "surrogateescape")


def texts(encoded: list[bytes]) -> ctypes.Array[c_char_p]:
    return (c_char_p * len(encoded))(*encoded)


def items_of(payload: Bytes) -> list[Answer]:
    """The items that the bytes hold."""
    item, found = Item(), []
    while (got := lib.kobd_bytes_next(ctypes.byref(payload), ctypes.byref(item))) == 1:
        found.append(Answer(item.tag, decode(item.text), item.number))
    if got < 0:
        raise error_of(SYSTEM_ERROR)
    return found


def error_of(code: int, why: Any = None, names: Sequence[str] = ()) -> KobdError:
    """The exception for a code, with the words of the explanation where there is one.

    `names` are those of the objects that were to be set.
    """
    if not why:
        return error_class(code)(code, f"{decode(lib.kobd_result_text(code))} ({code})")
    explanation = why.contents
    subject = explanation.column or explanation.object or explanation.table
    return error_class(code)(
        code,
        decode(explanation.text),
        decode_or_none(subject),
        decode_or_none(explanation.value),
        decode(explanation.reason),
        decode_or_none(explanation.right),
        decode_or_none(explanation.table),
        explanation.index if explanation.index >= 0 else None,
        names[: explanation.changed],
    )


class Shared:
    """What the library lets one thread at a time use, in the process that opened it: a connection, or a watch.

    A subclass uses its handles inside a turn, and frees them in _free().
    """

    _kind = ""  # the class by the name that the user of the package knows

    def __init__(self) -> None:
        self._process = os.getpid()
        self._lock = threading.RLock()
        self._busy = False
        self._closed = False

    @contextmanager
    def _turn(self, even_closed: bool = False) -> Iterator[None]:
        """Waits for other threads. Inside the turn nothing is freed, and no other thread makes a call."""
        if os.getpid() != self._process:  # before the lock, which a thread that the child does not have may hold
            reason = f"this {self._kind} belongs to the process that opened it; a child opens a {self._kind} of its own"
            raise error_class(NOT_OURS)(NOT_OURS, reason)
        with self._lock:
            if self._busy:
                raise RuntimeError(f"a signal interrupted a call of this {self._kind}: its handler opens another one")
            if not even_closed:
                self._require_open()
            self._busy = True
            try:
                yield
            finally:
                self._busy = False
                if self._closed:
                    self._free()

    def _require_open(self) -> None:
        if self._closed:
            raise ValueError(f"the {self._kind} is closed")

    def close(self) -> None:
        """Waits for the call in progress and ends. May be called again, and from any thread or signal handler."""
        if os.getpid() != self._process:
            self._closed = True
            self._free()
            return
        with self._lock:
            self._closed = True
            if not self._busy:  # else a signal handler has interrupted this thread's turn, whose end does it
                self._free()

    def _free(self) -> None:
        raise NotImplementedError


class Answer(NamedTuple):
    """An item of a reply."""

    tag: int
    text: str
    number: int


class Client(Shared):
    """A connection to the daemon. Every request and the reading of its reply are one turn."""

    _kind = "Router"

    def __init__(self, timeout_ms: Optional[int] = None) -> None:
        super().__init__()
        self._handle = c_void_p()
        if code := lib.kobd_client_open(ctypes.byref(self._handle)):
            raise error_of(code)
        if timeout_ms is not None:
            lib.kobd_client_set_timeout(self._handle, timeout_ms)

    def _free(self) -> None:
        handle, self._handle = self._handle, c_void_p()
        lib.kobd_client_close(handle)

    __del__ = Shared.close

    def ask(
        self, read: Callable[[], _Read], function: Callable[..., int], *arguments: Any, names: Sequence[str] = ()
    ) -> _Read:
        """Calls a function of the library with this client, and then `read`, before another thread has its turn.

        Returns what `read` returns. Raises what the call was refused for; `names` are those of the objects to set.
        """
        with self._turn():
            if code := function(self._handle, *arguments):
                raise error_of(code, lib.kobd_explain(self._handle), names)
            return read()

    def run(self, function: Callable[..., int], *arguments: Any, names: Sequence[str] = ()) -> None:
        """The same for a call without a reply to read."""
        self.ask(lambda: None, function, *arguments, names=names)

    def call(self, request: int, *items: tuple[int, Union[int, bytes]]) -> list[Answer]:
        """Sends a request and returns the items of its reply."""
        sent = Items(*items)
        return self.ask(self._reply, lib.kobd_call, request, sent.handle)

    def _reply(self) -> list[Answer]:
        item, found = Item(), []
        while lib.kobd_reply_next(self._handle, ctypes.byref(item)) == 1:
            found.append(Answer(item.tag, decode(item.text), item.number))
        return found

    def not_saved(self) -> Optional[str]:
        """As kobd_not_saved."""
        with self._turn():
            return decode_or_none(lib.kobd_not_saved(self._handle))


class Items:
    """A list of items to send: pairs of a tag, and a text or a 32-bit number."""

    def __init__(self, *pairs: tuple[int, Union[int, bytes]]) -> None:
        self.handle = c_void_p(lib.kobd_items_new())
        for tag, value in pairs:
            if isinstance(value, int) and not -(2**31) <= value < 2**31:
                raise OverflowError(f"{value} does not fit 32 bits")
            add = lib.kobd_items_add_number if isinstance(value, int) else lib.kobd_items_add_text
            if code := add(self.handle, tag, value):
                raise error_of(code)

    def __del__(self) -> None:
        lib.kobd_items_free(self.handle)
