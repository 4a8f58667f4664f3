"""The router: its objects by name, and the doors to its tables, changes and simulator."""

from __future__ import annotations

import ctypes
import time
from types import TracebackType
from typing import Iterator, Mapping, Optional, Union

from . import dictionary
from ._library import BUFFER_LIMIT, GET, OBJECT_NAME, SET_SILENT, UPDATE, VALUE, VALUE_MAX
from ._library import Client, Explanation, decode, encode, error_of, lib, texts
from .dictionary import Description, TableDescription, Value
from .errors import KobdError
from .simulator import Simulator
from .table import Changes, Table
from .watching import Watch

_AT_ONCE = 100  # objects in a request; where they do not fit a message, halves of them do


class Router:
    """A connection to the daemon. Use it in one thread at a time; another thread or a child opens its own.

    `timeout` is the time in seconds that a call may take: 5 without it, 75 for a cellular table.
    """

    def __init__(self, timeout: Optional[float] = None) -> None:
        self._client = Client()
        if timeout is not None:
            lib.kobd_client_set_timeout(self._client.handle, int(timeout * 1000))

    def close(self) -> None:
        """Ends the connection, as the end of a `with` does. Calls on it then raise ValueError."""
        self._client.close()

    def __enter__(self) -> Router:
        return self

    def __exit__(
        self, kind: Optional[type[BaseException]], error: Optional[BaseException], trace: Optional[TracebackType]
    ) -> None:
        self.close()

    def __getitem__(self, name: str) -> Value:
        return self.get(name)

    def __setitem__(self, name: str, value: Value) -> None:
        self.set({name: value})

    def get(self, name: str) -> Value:
        """The value of an object. NotFound where there is none or it cannot be read."""
        described = dictionary.describe_object(name)
        room = ctypes.create_string_buffer(VALUE_MAX)
        self._client.check(lib.kobd_get(self._client.handle, encode(name), room, len(room)))
        return described.value(decode(room.value))

    def get_many(self, *names: str) -> dict[str, Value]:
        """The values of these objects, without those that cannot be read."""
        described = [dictionary.describe_object(name) for name in dict.fromkeys(names)]
        found: dict[str, Value] = {}
        for start in range(0, len(described), _AT_ONCE):
            self._read(described[start : start + _AT_ONCE], found)
        return found

    def _read(self, asked: list[Description], found: dict[str, Value]) -> None:
        code = self._client.call(GET, *((OBJECT_NAME, encode(one.name)) for one in asked))
        if code == BUFFER_LIMIT and len(asked) > 1:
            half = len(asked) // 2
            self._read(asked[:half], found)
            self._read(asked[half:], found)
            return
        self._client.check(code)
        words = [decode(item.text) for item in self._client.reply()]
        by_name = dict(zip(words[::2], words[1::2]))
        found.update({one.name: one.value(by_name[one.name]) for one in asked if one.name in by_name})

    def values(self, pattern: str = "*") -> dict[str, Value]:
        """The values of the readable objects whose names match; * ? and [] are as in a shell."""
        return self.get_many(*(one.name for one in dictionary.objects(pattern) if one.readable))

    def set(self, values: Mapping[str, Value], silent: bool = False) -> None:
        """Sets the objects, all or none: every value is checked before the first one is changed.

        `silent` neither announces the values nor makes them durable; commit() makes them durable.
        """
        pairs = [(encode(name), encode(dictionary.text_of(value), name)) for name, value in values.items()]
        if silent and pairs:
            items = [item for name, value in pairs for item in ((OBJECT_NAME, name), (VALUE, value))]
            self._client.check(self._client.call(SET_SILENT, *items))
        elif pairs:
            names, encoded = texts([name for name, _ in pairs]), texts([value for _, value in pairs])
            self._client.check(lib.kobd_set(self._client.handle, names, encoded, len(pairs)))

    def commit(self) -> None:
        """Makes durable what was set silently."""
        self._client.check(self._client.call(UPDATE))

    def not_saved(self) -> Optional[str]:
        """Why what was changed last was not saved: "No space left on device". A change raises nothing then. The empty text
        when all is saved; None where the daemon does not tell.
        """
        why: Optional[bytes] = lib.kobd_not_saved(self._client.handle)
        return None if why is None else decode(why)

    def check(self, name: str, value: Value) -> None:
        """Raises what the dictionary says against the value; the daemon may still refuse it. Changes nothing."""
        why = ctypes.POINTER(Explanation)()
        encoded = encode(dictionary.text_of(value), name)
        if code := lib.kobd_check(encode(name), encoded, ctypes.byref(why)):
            raise error_of(code, why)

    def describe(self, name: str) -> Union[Description, TableDescription]:
        """What the object or table of this name is. Asks no daemon."""
        return dictionary.describe(name)

    def objects(self, pattern: str = "*") -> Iterator[Description]:
        """The descriptions of the objects whose names match."""
        return dictionary.objects(pattern)

    def table(self, name: str) -> Table:
        return Table(self._client, dictionary.describe_table(name))

    def changes(self) -> Changes:
        """Rows to change together: `with router.changes() as changes: changes.set(TABLE, INDEX, {...})`."""
        return Changes(self._client)

    def watch(self, *patterns: str) -> Watch:
        """The changes that the daemon announces from now on, of all objects and tables or of those that match."""
        return Watch(patterns)

    @property
    def sim(self) -> Simulator:
        """The simulator of the imitated router. A real router does not answer it."""
        return Simulator(self._client)

    def wait(self, seconds: float = 5) -> None:
        """Returns when the daemon answers; raises what is in the way when it does not in time."""
        deadline = time.monotonic() + seconds
        while True:
            try:
                self.get_many("IMEI")
                return
            except KobdError:
                if time.monotonic() > deadline:
                    raise
                time.sleep(0.05)
