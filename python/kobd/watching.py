"""What the daemon announces: objects and rows that changed."""

from __future__ import annotations

import fnmatch
import time
from ctypes import byref, c_uint16, c_void_p
from dataclasses import dataclass, replace
from types import TracebackType
from typing import Iterator, Optional

from . import dictionary
from ._library import COLUMN_NAME, ROW_INDEX, TABLE_NAME, TIMEOUT
from ._library import Bytes, Client, Shared, Tapped, decode, error_of, items_of, lib
from .dictionary import Value
from .errors import NotFound, Refused, Timeout

_NOTIFY = 0x5A510003  # the module that announcements go to
_SENT = 3  # a tapped message to a module
_TAP_WAIT_MS = 1000  # a router has no taps and gives no answer
_SLICE_MS = 200  # Python handles Ctrl-C between the waits
_OBJECT, _ROWS, _ADDED, _DELETED, _ADDED_BELOW = 2, 3, 799, 800, 801
_SECRET = "(secret)"


@dataclass(frozen=True)
class Change:
    """An object, a column of a row, or a row itself that changed."""

    kind: str
    """"object", "column", "added" or "deleted"."""
    name: str
    """Of the object or table."""
    index: Optional[int] = None
    column: Optional[str] = None
    old: Optional[Value] = None
    """Of an object that can be read: its value before. Nothing for a column."""
    new: Optional[Value] = None
    """The value when the announcement was read. "(secret)" stands for a password, key or PIN."""
    process: Optional[int] = None
    """That asked for the change; only the imitated router tells it."""
    program: Optional[str] = None


class Watch(Shared):
    """An iterator over changes. It waits for the next one without end; next_change takes a time.

    The imitated router shows them to any number of programs. On a router one program at a time can listen, and
    another one gets a KobdError with code 9. NotRunning is raised when the daemon ends. `missed` counts the messages
    that were lost because this program took too long; only the imitated router tells it.
    Any thread may use it; each change goes to one of them.
    """

    _kind = "Watch"

    def __init__(self, patterns: tuple[str, ...] = ()) -> None:
        from .router import Router  # which imports this module

        super().__init__()
        for pattern in patterns:
            if not dictionary.has_wildcards(pattern):
                dictionary.describe(pattern)
        self.missed = 0
        self._patterns = patterns or ("*",)
        self._stopped = False
        self._waiting: list[Change] = []
        self._tap, self._joined = c_void_p(), c_void_p()
        self._router = Router()
        self._open()
        matching = (one for pattern in self._patterns for one in dictionary.matching_objects(pattern))
        readable = [one.name for one in matching if one.readable and not one.secret]
        self._known = self._router.get_many(*dict.fromkeys(readable)) if self._tap else {}

    def _open(self) -> None:
        client = Client(_TAP_WAIT_MS)
        try:
            client.run(lib.kobd_tap_open, byref(self._tap))
        except Timeout:
            if code := lib.kobd_watch_open(byref(self._joined), _NOTIFY):
                raise error_of(code) from None
        finally:
            client.close()

    def fileno(self) -> int:
        """A descriptor for select, poll or asyncio: readable when a message is there, of whatever kind."""
        with self._turn():
            if self._tap:
                return int(lib.kobd_tap_descriptor(self._tap))
            return int(lib.kobd_watch_descriptor(self._joined))

    def stop(self) -> None:
        """Ends the iteration within a moment. May be called from any thread or signal handler."""
        self._stopped = True

    def close(self) -> None:
        """Stops listening, and ends the iteration of another thread. Other calls then raise ValueError."""
        self._stopped = True
        super().close()

    def _free(self) -> None:
        if hasattr(self, "_router"):  # it is missing where no connection could be opened
            tap, joined = self._tap, self._joined
            self._tap, self._joined = c_void_p(), c_void_p()
            lib.kobd_tap_close(tap)
            lib.kobd_watch_close(joined)
            self._router.close()

    __del__ = close

    def __enter__(self) -> Watch:
        return self

    def __exit__(
        self, kind: Optional[type[BaseException]], error: Optional[BaseException], trace: Optional[TracebackType]
    ) -> None:
        self.close()

    def __iter__(self) -> Iterator[Change]:
        self._require_open()
        return self

    def __next__(self) -> Change:
        change = self._wait(None)
        if change is None:
            raise StopIteration
        return change

    def next_change(self, seconds: Optional[float] = None) -> Optional[Change]:
        """The next change; None after that many seconds, or when stop() or close() ends the waiting."""
        self._require_open()
        return self._wait(seconds)

    def _wait(self, seconds: Optional[float]) -> Optional[Change]:
        deadline = None if seconds is None else time.monotonic() + seconds
        while True:
            with self._turn(even_closed=True):
                if self._waiting and not self._closed:
                    return self._waiting.pop(0)
                if self._stopped:
                    return None
                left = _SLICE_MS if deadline is None else max(0.0, deadline - time.monotonic()) * 1000
                came = self._receive(int(min(left, _SLICE_MS)))
            if not came and deadline is not None and time.monotonic() >= deadline:
                return None

    def _receive(self, milliseconds: int) -> bool:
        """Waits for a message and takes its changes. False when none came."""
        message, tapped = c_uint16(), Tapped()
        if self._tap:
            code = lib.kobd_tap_next(self._tap, milliseconds, byref(tapped))
        else:
            code = lib.kobd_watch_next(self._joined, milliseconds, byref(message))
        if code == TIMEOUT:
            return False
        if code:
            raise error_of(code)
        self.missed += tapped.missed
        if self._joined:
            self._take(message.value, lib.kobd_watch_payload(self._joined), None, None)
        elif tapped.kind == _SENT and tapped.module == _NOTIFY:
            self._take(tapped.id, tapped.payload, tapped.process, decode(tapped.program))
        return True

    def _take(self, message: int, payload: Bytes, process: Optional[int], program: Optional[str]) -> None:
        """Takes the changes that an announcement names."""
        if message == _OBJECT:
            found = self._objects(payload)
        elif message == _ROWS:
            found = self._columns(payload)
        elif message in (_ADDED, _DELETED, _ADDED_BELOW):
            found = self._row(payload, "deleted" if message == _DELETED else "added")
        else:
            return
        for change in found:
            if any(fnmatch.fnmatchcase(change.name, pattern) for pattern in self._patterns):
                self._waiting.append(replace(change, process=process, program=program))

    def _objects(self, payload: Bytes) -> list[Change]:
        found = []
        for item in items_of(payload):
            name = item.text
            new = self._read(name)
            found.append(Change("object", name, old=self._known.get(name), new=new))
            if new is not None:
                self._known[name] = new
        return found

    def _read(self, name: str) -> Optional[Value]:
        if dictionary.describe_object(name).secret:
            return _SECRET
        return self._router.get_many(name).get(name)

    def _columns(self, payload: Bytes) -> list[Change]:
        found, table, index = [], "", 0
        rows: dict[tuple[str, int], dict[str, Value]] = {}
        for item in items_of(payload):
            if item.tag == TABLE_NAME:
                table = item.text
            elif item.tag == ROW_INDEX:
                index = item.number
            elif item.tag == COLUMN_NAME:
                column = item.text
                if (table, index) not in rows:
                    rows[table, index] = self._read_row(table, index)
                found.append(Change("column", table, index, column, new=rows[table, index].get(column)))
        return found

    def _read_row(self, name: str, index: int) -> dict[str, Value]:
        """The row, with its secrets covered; empty when it is gone or cannot be read."""
        table = self._router.table(name)
        try:
            row: dict[str, Value] = table[index]
        except NotFound:
            return {}
        except Refused:  # a table may offer its rows only all together
            row = next((one for one in table if one.index == index), {})
        return {c: _SECRET if table.description.columns[c].secret else value for c, value in row.items()}

    def _row(self, payload: Bytes, kind: str) -> list[Change]:
        table, index = "", None
        for item in items_of(payload):
            table = item.text if item.tag == TABLE_NAME else table
            index = int(item.number) if item.tag == ROW_INDEX else index
        return [Change(kind, table, index)]
