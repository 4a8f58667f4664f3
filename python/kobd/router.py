"""The router: its objects by name, and the doors to its tables, changes and simulator."""

from __future__ import annotations

import ctypes
import math
import time
from types import TracebackType
from typing import Iterator, Mapping, Optional, Union

from . import dictionary
from ._library import BUFFER_LIMIT, GET, OBJECT_NAME, SET_SILENT, UPDATE, VALUE, VALUE_MAX
from ._library import Client, Explanation, Items, decode, encode, error_of, lib, texts
from .dictionary import Description, TableDescription, Value
from .errors import KobdError
from .simulator import Simulator
from .table import Changes, Table
from .watching import Watch

_LONGEST = 2147483  # seconds, whose milliseconds fit an int
_AT_ONCE = 100  # objects in a request; where they do not fit a message, halves of them do


class Router:
    """A connection to the daemon. Any thread may use it: one request is made after another. A child opens its own.

    `timeout` is the time in seconds that a request may take: 5 without it, 75 for a cellular table.
    """

    def __init__(self, timeout: Optional[float] = None) -> None:
        self._client = Client(None if timeout is None else _milliseconds(timeout))

    def close(self) -> None:
        """Ends the connection, as the end of a `with` does. Calls on it then raise ValueError.

        A request that another thread has begun is finished before.
        """
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

    def __contains__(self, name: object) -> bool:
        """Whether there is an object of this name."""
        return isinstance(name, str) and dictionary.has_object(name)

    def __iter__(self) -> Iterator[str]:
        """The names of the objects that can be read."""
        return (one.name for one in dictionary.objects() if one.readable)

    def get(self, name: str) -> Value:
        """The value of an object. NotFound where there is none or it cannot be read."""
        described = dictionary.describe_object(name)
        room = ctypes.create_string_buffer(VALUE_MAX)
        self._client.run(lib.kobd_get, encode(name), room, len(room))
        return described.value(decode(room.value))

    def get_many(self, *names: str) -> dict[str, Value]:
        """The values of these objects, without those that cannot be read."""
        described = [dictionary.describe_object(name) for name in dict.fromkeys(names)]
        found: dict[str, Value] = {}
        for start in range(0, len(described), _AT_ONCE):
            self._read(described[start : start + _AT_ONCE], found)
        return found

    def _read(self, asked: list[Description], found: dict[str, Value]) -> None:
        try:
            reply = self._client.call(GET, *((OBJECT_NAME, encode(one.name)) for one in asked))
        except KobdError as error:
            if error.code != BUFFER_LIMIT or len(asked) == 1:
                raise
            half = len(asked) // 2
            self._read(asked[:half], found)
            self._read(asked[half:], found)
            return
        words = [item.text for item in reply]
        by_name = dict(zip(words[::2], words[1::2]))
        found.update({one.name: one.value(by_name[one.name]) for one in asked if one.name in by_name})

    def values(self, pattern: str = "*") -> dict[str, Value]:
        """The values of the readable objects whose names match; * ? and [] are as in a shell.

        NotFound for a name without them that no object has.
        """
        return self.get_many(*(one.name for one in dictionary.objects(pattern) if one.readable))

    def set(self, values: Mapping[str, Value], silent: bool = False) -> None:
        """Sets the objects. Every value is checked before the first one is changed: a refused one changes nothing.

        Where the router itself fails at an object, those before it stay set; `changed` of the exception has them.
        `silent` neither announces the values nor makes them durable; commit() makes them durable.
        """
        pairs = dictionary.encode_values(values)
        if silent and pairs:
            items = Items(*(item for name, value in pairs for item in ((OBJECT_NAME, name), (VALUE, value))))
            self._client.run(lib.kobd_call, SET_SILENT, items.handle, names=tuple(values))
        elif pairs:
            names, encoded = texts([name for name, _ in pairs]), texts([value for _, value in pairs])
            self._client.run(lib.kobd_set, names, encoded, len(pairs), names=tuple(values))

    def commit(self) -> None:
        """Makes durable what was set silently."""
        self._client.call(UPDATE)

    def not_saved(self) -> Optional[str]:
        """Why what was changed last was not saved: "No space left on device". A change raises nothing then. The empty text
        when all is saved; None where the daemon does not tell.
        """
        return self._client.not_saved()

    def check(self, name: str, value: Value) -> None:
        """Raises what the dictionary says against the value; the daemon may still refuse it. Changes nothing."""
        why = ctypes.POINTER(Explanation)()
        [(encoded_name, encoded)] = dictionary.encode_values({name: value})
        if code := lib.kobd_check(encoded_name, encoded, ctypes.byref(why)):
            raise error_of(code, why)

    def describe(self, name: str) -> Union[Description, TableDescription]:
        """What the object or table of this name is. Asks no daemon."""
        return dictionary.describe(name)

    def objects(self, pattern: str = "*") -> Iterator[Description]:
        """The descriptions of the objects whose names match. NotFound as of values()."""
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


def _milliseconds(seconds: float) -> int:
    """The timeout as the library takes it, which has an int and takes 0 for no time at all."""
    if not 0 < seconds <= _LONGEST:
        raise ValueError(f"a timeout is more than 0 and at most {_LONGEST} seconds, not {seconds}")
    return math.ceil(seconds * 1000)
