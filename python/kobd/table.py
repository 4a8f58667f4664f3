"""The rows of a table: read, changed, added, deleted."""

from __future__ import annotations

from ctypes import byref, c_int32, c_void_p
from types import TracebackType
from typing import Iterator, Mapping, Optional

from . import dictionary
from ._library import COLUMN_NAME, INVALID, ROW_INDEX, TABLE_DUMP, TABLE_GET, TABLE_NAME, VALUE
from ._library import Answer, Bytes, Client, Items, encode, error_of, items_of, lib
from .dictionary import TableDescription, Value, text_of
from .errors import KobdError, Refused


class Row(dict[str, Value]):
    """The values of a row by column. A change of this dictionary does not reach the router."""

    def __init__(self, index: int, values: Mapping[str, Value]) -> None:
        super().__init__(values)
        self.index = index

    def __missing__(self, column: str) -> Value:
        raise dictionary.no_such("column", column)


class Table:
    """A table of the router. `table[3]` is the row with index 3; iterating gives all rows."""

    def __init__(self, client: Client, description: TableDescription) -> None:
        self._client = client
        self.description = description
        self.name = description.name

    def __iter__(self) -> Iterator[Row]:
        return iter(self.rows())

    def __len__(self) -> int:
        return len(self.rows())

    def __getitem__(self, index: int) -> Row:
        reply = self._client.call(TABLE_GET, (TABLE_NAME, encode(self.name)), (ROW_INDEX, _number(index)))
        return self._rows(reply)[0]

    def __delitem__(self, index: int) -> None:
        self._client.run(lib.kobd_row_del, encode(self.name), _number(index))

    def rows(self) -> list[Row]:
        """All rows, in the router's order."""
        content = Bytes()
        asked = Items((TABLE_NAME, encode(self.name)))
        reply = self._client.ask(
            lambda: items_of(content), lib.kobd_dump, TABLE_DUMP, asked.handle, byref(content)
        )
        return self._rows(reply)

    def _rows(self, items: list[Answer]) -> list[Row]:
        """Rows from their items: for each the table and the index, then columns and values by turns."""
        found: list[Row] = []
        column = ""
        for item in items:
            if item.tag == ROW_INDEX:
                found.append(Row(item.number, {}))
            elif item.tag == COLUMN_NAME:
                column = item.text
            elif item.tag == VALUE:
                found[-1][column] = self._value(column, item.text)
        return found

    def set(self, index: int, values: Mapping[str, Value], silent: bool = False) -> None:
        """Changes columns of a row. A refused value changes nothing."""
        with Changes(self._client, silent) as changes:
            changes.set(self.name, index, values)

    def add(self, values: Optional[Mapping[str, Value]] = None, parent: Optional[str] = None) -> int:
        """Adds a row, below the object `parent` where it is given, and returns its index.

        When a value is refused, the new row is deleted again.
        """
        encoded = [(encode(column), encode(text_of(value), column)) for column, value in (values or {}).items()]
        index = c_int32()
        below = None if parent is None else encode(parent)
        name = encode(self.name)
        self._client.run(lib.kobd_row_add, name, below, byref(index))
        if encoded:
            try:
                self.set(index.value, values or {})
            except KobdError:
                del self[index.value]
                raise
        return index.value

    def _value(self, column: str, text: str) -> Value:
        described = self.description.columns.get(column)
        return text if described is None else described.value(text)


class Changes:
    """Changes of rows of any tables, collected and then made together at the end of the `with`."""

    def __init__(self, client: Client, silent: bool = False) -> None:
        self._client = client
        self._silent = silent
        self._changes: list[tuple[bytes, int, bytes, bytes]] = []

    def set(self, table: str, index: int, values: Mapping[str, Value]) -> None:
        """Takes the values of columns of a row. A wrong value is found when all are made."""
        dictionary.describe_table(table)
        for column, value in values.items():
            change = (encode(table), _number(index), encode(column), encode(text_of(value), column))
            self._changes.append(change)

    def make(self) -> None:
        """Makes the changes. All are checked before the first row is written: a refused one changes nothing.

        Where the router itself fails at a row, those before it stay changed, and the exception names them.
        """
        if not self._changes:
            return
        handle = c_void_p(lib.kobd_changes_new())
        try:
            for change in self._changes:
                if code := lib.kobd_changes_add(handle, *change):
                    raise error_of(code)
            self._client.run(lib.kobd_changes_set, handle, self._silent)
        finally:
            lib.kobd_changes_free(handle)

    def __enter__(self) -> Changes:
        return self

    def __exit__(
        self, kind: Optional[type[BaseException]], error: Optional[BaseException], trace: Optional[TracebackType]
    ) -> None:
        if kind is None:
            self.make()


def _number(index: int) -> int:
    """The index, when it fits a row index of the daemon: ctypes would cut a larger one."""
    if not isinstance(index, int) or isinstance(index, bool):
        raise TypeError(f"a row index is an int, not {index!r}")
    if not 0 <= index < 2**31:
        reason = f"a row index is 0 to 2147483647, not {index}"
        raise Refused(INVALID, reason, None, str(index), reason)
    return index
