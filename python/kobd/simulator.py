"""The simulator of the imitated router: what it shows, refuses and delays, for tests of a client."""

from __future__ import annotations

import subprocess
from typing import Mapping, Union

from . import dictionary
from ._library import OBJECT_NAME, TABLE_NAME, UNAVAILABLE, VALUE, Client, Items, encode, lib
from .dictionary import Description, Value
from .errors import Refused

_SET, _SET_ANNOUNCED, _FAIL, _SLOW, _CLEAR = 3, 4, 8, 9, 11
_INVOKE_FAILED = 17

Tagged = tuple[int, Union[int, bytes]]


class Simulator:
    """What is simulated ends with clear() or the daemon. `times` is how often something happens, 0 without end."""

    def __init__(self, client: Client) -> None:
        self._client = client

    def set(self, values: Mapping[str, Value], announce: bool = False) -> None:
        """Lets objects show these values, read-only ones too; `announce` tells other modules of them."""
        pairs = dictionary.encode_values(values)
        items = [item for name, value in pairs for item in ((OBJECT_NAME, name), (VALUE, value))]
        self._send(_SET_ANNOUNCED if announce else _SET, *items)

    def fail(self, name: str, operation: str, code: int = _INVOKE_FAILED, times: int = 0) -> None:
        """Lets get or set of an object, or an operation of a table, fail with this result code.

        The name "" with the operation "commit" lets nothing become durable.
        """
        subject = [_subject(name)] if name else []
        has = _operations(name)
        if operation not in has:
            right = ", ".join(has) or "none"
            reason = f"""{name or 'the name ""'} has no operation {operation}, it has {right}"""
            raise Refused(UNAVAILABLE, reason, name, operation, reason, right)
        self._send(_FAIL, *subject, (VALUE, encode(operation)), (VALUE, code), (VALUE, times))

    def slow(self, name: str, milliseconds: int, times: int = 0) -> None:
        """Lets the operations of an object or table take so long, up to a minute."""
        self._send(_SLOW, _subject(name), (VALUE, milliseconds), (VALUE, times))

    def clear(self) -> None:
        """Ends all that is simulated."""
        self._send(_CLEAR)

    def run(self, scenario: str, speed: int = 1) -> None:
        """Plays a scenario to its end: a file, or the name of one that came with kobctl, which plays it."""
        with self.start(scenario, speed) as process:
            errors = process.communicate()[1]
        if process.returncode != 0:
            raise RuntimeError(errors.strip() or f"kobctl ended with status {process.returncode}")

    def start(self, scenario: str, speed: int = 1) -> subprocess.Popen[str]:
        """The same without waiting: returns the process of kobctl, which terminate() ends early."""
        command = ["kobctl", "sim", "run", "--speed", str(speed), "--", scenario]
        return subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)

    def _send(self, control: int, *pairs: Tagged) -> None:
        items = Items(*pairs)
        self._client.run(lib.kobd_host_call, control, items.handle)


def _subject(name: str) -> Tagged:
    is_object = isinstance(dictionary.describe(name), Description)
    return (OBJECT_NAME if is_object else TABLE_NAME), encode(name)


def _operations(name: str) -> list[str]:
    """What can fail of an object, of a table, or without a name."""
    if not name:
        return ["commit"]
    of = dictionary.describe(name)
    if isinstance(of, Description):
        can = {"get": of.readable, "set": of.writable}
    else:
        can = {"get": of.can_get, "set": of.can_set, "add": of.can_add, "del": of.can_delete, "next": of.can_list}
    return [operation for operation, has in can.items() if has]
