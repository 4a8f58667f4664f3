"""What the router's objects and tables are: types, ranges, meanings. It needs no daemon."""

from __future__ import annotations

import fnmatch
from dataclasses import dataclass
from typing import Any, Iterator, Mapping, Optional, Union

from ._library import decode, decode_or_none, encode, lib
from .errors import NotFound

Value = Union[int, bool, str]
"""An integer, a flag, or the text of anything else."""


@dataclass(frozen=True)
class Description:
    """An object, or a column of a table."""

    name: str
    type: str
    is_number: bool
    is_flag: bool
    readable: bool
    writable: bool
    secret: bool
    is_action: bool
    least: Optional[int]  # of the number, or of a text's bytes
    most: Optional[int]
    choices: tuple[str, ...]
    check: Optional[str]
    accepts: str
    meaning: Optional[str]
    unit: Optional[str]

    def value(self, text: str) -> Value:
        """The daemon's text as an int, a bool or a str. A text that is no number stays one."""
        if self.is_flag and text in ("0", "1"):
            return text == "1"
        digits = text[1:] if text.startswith("-") else text
        return int(text) if self.is_number and digits.isascii() and digits.isdigit() else text

    def text(self, value: Value) -> bytes:
        """The value as the daemon takes it."""
        return encode(text_of(value), self.name)


@dataclass(frozen=True)
class TableDescription:
    """A table: its columns, and what can be done with its rows."""

    name: str
    meaning: Optional[str]
    columns: dict[str, Description]
    can_add: bool
    can_delete: bool
    can_get: bool
    can_set: bool
    can_add_below: bool
    can_list: bool  # all rows can be read together
    max_rows: int
    accepts: Optional[str]


def text_of(value: Value) -> str:
    """True and False are "1" and "0". What is no int, bool or str raises TypeError."""
    if isinstance(value, bool):
        return "1" if value else "0"
    if not isinstance(value, (int, str)):
        raise TypeError(f"a value is an int, a bool or a str, not {value!r}")
    return str(value)


def encode_values(values: Mapping[str, Value]) -> list[tuple[bytes, bytes]]:
    """Names of objects and their values, as the daemon takes them. TypeError for a bool where it stands for nothing."""
    for name, value in values.items():
        found = lib.kobd_describe(encode(name))
        if isinstance(value, bool) and found and not found.contents.is_flag:
            raise TypeError(f"{name} is no flag: it takes {decode(found.contents.accepts)}, not {value}")
    return [(encode(name), encode(text_of(value), name)) for name, value in values.items()]


def has_object(name: str) -> bool:
    return "\0" not in name and bool(lib.kobd_describe(encode(name)))


def describe(name: str) -> Union[Description, TableDescription]:
    """The object or table of this name."""
    encoded = encode(name)
    if found := lib.kobd_describe(encoded):
        return _description(found.contents)
    if found := lib.kobd_describe_table(encoded):
        return _table_description(found.contents)
    raise no_such("object or table", name)


def describe_object(name: str) -> Description:
    found = lib.kobd_describe(encode(name))
    if not found:
        raise no_such("object", name)
    return _description(found.contents)


def describe_table(name: str) -> TableDescription:
    found = lib.kobd_describe_table(encode(name))
    if not found:
        raise no_such("table", name)
    return _table_description(found.contents)


def objects(pattern: str = "*") -> Iterator[Description]:
    """The objects whose names match, each once, in the dictionary's order. NotFound for a plain name that none has."""
    if not has_wildcards(pattern):
        describe_object(pattern)
    return matching_objects(pattern)


def has_wildcards(pattern: str) -> bool:
    return any(sign in pattern for sign in "*?[")


def matching_objects(pattern: str) -> Iterator[Description]:
    seen: set[str] = set()
    position = 0
    while found := lib.kobd_object_at(position):
        position += 1
        name = decode(found.contents.name)
        if name not in seen and fnmatch.fnmatchcase(name, pattern):
            seen.add(name)
            yield _description(found.contents)


def tables(pattern: str = "*") -> Iterator[TableDescription]:
    position = 0
    while found := lib.kobd_table_at(position):
        position += 1
        if fnmatch.fnmatchcase(decode(found.contents.name), pattern):
            yield _table_description(found.contents)


def no_such(kind: str, name: str) -> NotFound:
    """The error for a name that is unknown, or is of the other kind."""
    near = decode_or_none(lib.kobd_did_you_mean(encode(name)))
    reason = f"there is no {kind} {name}" + (f", did you mean {near}?" if near else "")
    if kind == "object" and lib.kobd_describe_table(encode(name)):
        reason, near = f'{name} is a table, which router.table("{name}") reads', None
    elif kind == "table" and lib.kobd_describe(encode(name)):
        reason, near = f'{name} is an object, which router["{name}"] reads', None
    return NotFound(1, reason, name, None, reason, near)


def _description(found: Any) -> Description:
    return Description(
        name=decode(found.name),
        type=decode(found.type),
        is_number=bool(found.is_number),
        is_flag=bool(found.is_flag),
        readable=bool(found.readable),
        writable=bool(found.writable),
        secret=bool(found.secret),
        is_action=bool(found.is_action),
        least=found.least if found.has_range else None,
        most=found.most if found.has_range else None,
        choices=tuple(decode(found.choices[i]) for i in range(found.choice_count)),
        check=decode_or_none(found.check),
        accepts=decode(found.accepts),
        meaning=decode_or_none(found.meaning),
        unit=decode_or_none(found.unit),
    )


def _table_description(found: Any) -> TableDescription:
    columns = (_description(found.columns[i].contents) for i in range(found.column_count))
    return TableDescription(
        name=decode(found.name),
        meaning=decode_or_none(found.meaning),
        columns={column.name: column for column in columns},
        can_add=bool(found.can_add),
        can_delete=bool(found.can_delete),
        can_get=bool(found.can_get),
        can_set=bool(found.can_set),
        can_add_below=bool(found.can_add_below),
        can_list=bool(found.can_list),
        max_rows=found.max_rows,
        accepts=decode_or_none(found.accepts),
    )
