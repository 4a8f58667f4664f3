"""The client library through ctypes: its structs and functions, as kobd_client.h declares them, and its errors."""

from __future__ import annotations

import ctypes
import os
from ctypes import POINTER, c_char_p, c_int, c_int32, c_int64, c_size_t, c_uint16, c_uint32, c_uint64, c_void_p
from typing import Any, Iterator, Optional, Union

from .errors import KobdError, Refused, error_class

VALUE_MAX = 2048
INVALID, SYSTEM_ERROR, TIMEOUT, BUFFER_LIMIT = 2, 4, 8, 11

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
    if "\0" in text:
        reason = "a text cannot hold a zero byte"
        raise Refused(INVALID, f"{name}: {reason}" if name else reason, name, text, reason)
    return text.encode("utf-8", "surrogateescape")


def texts(encoded: list[bytes]) -> ctypes.Array[c_char_p]:
    return (c_char_p * len(encoded))(*encoded)


def items_of(payload: Bytes) -> Iterator[Item]:
    """The items that the bytes hold. Each is valid until the next one."""
    item = Item()
    while (got := lib.kobd_bytes_next(ctypes.byref(payload), ctypes.byref(item))) == 1:
        yield item
    if got < 0:
        raise error_of(SYSTEM_ERROR)


def error_of(code: int, why: Any = None) -> KobdError:
    """The exception for a code, with the words of the explanation where there is one."""
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
    )


class Client:
    """A connection to the daemon."""

    def __init__(self) -> None:
        self._handle = c_void_p()
        if code := lib.kobd_client_open(ctypes.byref(self._handle)):
            raise error_of(code)

    @property
    def handle(self) -> c_void_p:
        if not self._handle:
            raise ValueError("the connection is closed")
        return self._handle

    def close(self) -> None:
        """Ends the connection. May be called again."""
        lib.kobd_client_close(self._handle)
        self._handle = c_void_p()

    __del__ = close

    def call(self, request: int, *items: tuple[int, Union[int, bytes]]) -> int:
        """Sends a request and returns its result."""
        sent = Items(*items)
        return int(lib.kobd_call(self.handle, request, sent.handle))

    def reply(self) -> Iterator[Item]:
        """The items of the reply to the last call. Each is valid until the next one."""
        item = Item()
        while lib.kobd_reply_next(self.handle, ctypes.byref(item)) == 1:
            yield item

    def check(self, code: int) -> None:
        """Raises what a call on this client that returned `code` was refused for."""
        if code:
            raise error_of(code, lib.kobd_explain(self.handle))


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
