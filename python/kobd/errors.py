"""What the package raises. Every exception says which value was refused, why, and what would be right."""

from __future__ import annotations

from typing import Any, Optional, Sequence


class KobdError(Exception):
    """A request failed. The daemon or the library answered `code`; str() is the line that kobctl prints.

    `name` is the object, table or column that it is about, `value` the refused value, `reason` what was wrong and
    `right` what would be right; `table` and `index` name a row. Each is None where it does not apply. `changed` has the
    objects that a set had changed before the router itself failed, where it tells that: they stay changed.
    """

    def __init__(
        self,
        code: int,
        text: str,
        name: Optional[str] = None,
        value: Optional[str] = None,
        reason: Optional[str] = None,
        right: Optional[str] = None,
        table: Optional[str] = None,
        index: Optional[int] = None,
        changed: Sequence[str] = (),
    ) -> None:
        super().__init__(text)
        self.code = code
        self.name = name
        self.value = value
        self.reason = reason if reason is not None else text
        self.right = right
        self.table = table
        self.index = index
        self.changed = tuple(changed)

    def __reduce__(self) -> tuple[Any, ...]:
        """For pickle and copy, and so for a pool of processes: the attributes travel too."""
        return type(self), (self.code, *self.args), self.__dict__


class Refused(KobdError):
    """The value or the operation is not accepted. Nothing was changed, unless the text says so."""


class NotFound(KobdError, LookupError):
    """There is no such object, table, column or row, or the object cannot be read."""


class NotRunning(KobdError):
    """No daemon runs on this message bus."""


class Timeout(KobdError):
    """No answer came in time. The daemon may have served the request, or serve it later."""


_KINDS = {1: NotFound, 12: NotFound, 13: NotFound, 3: NotRunning, 8: Timeout}
_BY_SYSTEM = (4, 5, 6, 7, 9)  # the message bus or the system failed, nobody refused anything


def error_class(code: int) -> type[KobdError]:
    """The class of the exception for a result code."""
    return _KINDS.get(code, KobdError if code in _BY_SYSTEM else Refused)
