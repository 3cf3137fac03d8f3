"""Edit decoded barcode scans with data-editing expressions.

An expression is literal text with commands between ``{`` and ``}``;
a profile runs it over each scan's bytes::

    >>> import nrvdataedit
    >>> profile = nrvdataedit.Profile("Code: {TruncateFromBeginning({DecodedData()},2)}")
    >>> profile.edit(b"AB1234")
    b'Code: 1234'

Scans and outputs are bytes (any bytes-like object goes in): zero bytes and
bytes from 0x80 up pass through whole. An expression that does not parse
raises :class:`ParseError`, an edit that fails :class:`EditError`.
:meth:`Profile.edit_many` edits a whole batch in one call into the library.
"""

from __future__ import annotations

import json
import os
from dataclasses import dataclass, field
from typing import Iterable, List, NamedTuple, Optional, Tuple, Union

from . import _native

__all__ = [
    "EditError",
    "Explanation",
    "Failure",
    "Node",
    "ParseError",
    "Profile",
    "Rule",
    "RuleSet",
    "code_name",
    "symbology",
]

__version__ = "%d.%d.%d" % _native.version()

BytesLike = Union[bytes, bytearray, memoryview]
Symbology = Union[str, int]

# The symbologies are numbered 0 (NotSpecified) to 47 (HanXin).
_SYMBOLOGY_COUNT = 48
_ERRORS = ("raise", "keep", "none")
# The command sets a profile may know besides the eighteen seed commands.
_COMMAND_SETS = {"GS1": _native.COMMAND_SET_GS1}


def code_name(code: int) -> Optional[str]:
    """The name of a result code ("NRV_ERR_OUT_OF_RANGE"), or None."""
    return _native.code_name(code)


_symbologies = {}


def symbology(name: Symbology) -> int:
    """A symbology's number, from its name in any case ("Code128",
    "qrcode") or its number; ValueError for anything else."""
    if isinstance(name, int) and not isinstance(name, bool):
        if 0 <= name < _SYMBOLOGY_COUNT:
            return name
        raise ValueError(f"unknown symbology {name} (numbers run from 0 to {_SYMBOLOGY_COUNT - 1})")
    if not isinstance(name, str):
        raise TypeError(f"a symbology is a name or a number, not {type(name).__name__}")
    number = _symbologies.get(name)
    if number is None:
        number = _native.symbology(name) if "\0" not in name else -1
        if number < 0:
            raise ValueError(f"unknown symbology {name!r}")
        _symbologies[name] = number
    return number


def _bytes_of(text: Union[str, BytesLike]) -> bytes:
    return text.encode("utf-8") if isinstance(text, str) else bytes(text)


class Rule(NamedTuple):
    """A rule of a :class:`RuleSet`: its place (from 0) and its name ("" when unnamed)."""

    index: int
    name: str


class ParseError(ValueError):
    """An expression or a rules file that does not read.

    For an expression, ``offset`` and ``length`` give the culprit's byte
    range in its UTF-8 text and ``command`` the command concerned (None when
    there is none); for a rules file, ``line`` and ``column`` give the first
    error's place (from 1) and ``errors`` how many there are. ``str()`` shows
    every error as nrv-edit does, with carets under the culprit.
    """

    def __init__(self, info: tuple, rules: bool = False) -> None:
        code, offset, length, command, message, _rule, line, column, errors, report = info
        super().__init__(report.rstrip("\n"))
        self.code: int = code
        self.name: Optional[str] = code_name(code)
        self.offset: Optional[int] = None if rules else offset
        self.length: Optional[int] = None if rules else length
        self.command: Optional[str] = command or None
        self.message: str = message
        self.line: Optional[int] = line or None
        self.column: Optional[int] = column or None
        self.errors: int = errors if rules else 1


class EditError(Exception):
    """An edit that failed: ``code`` and its ``name``, the ``command`` that
    failed first (None when none did), and ``message``, why. ``rule`` is the
    rule that took the scan, for a rule set; ``index`` the scan's place in
    the batch, for ``edit_many``; ``scan`` the scan itself."""

    def __init__(self, info: tuple, scan: bytes, rule: Optional[Rule] = None, index: Optional[int] = None) -> None:
        code, _offset, _length, command, message, _rule, _line, _column, _errors, report = info
        report = report.rstrip("\n")
        super().__init__(report if index is None else f"scans[{index}]: {report}")
        self.code: int = code
        self.name: Optional[str] = code_name(code)
        self.command: Optional[str] = command or None
        self.message: str = message
        self.rule = rule
        self.index = index
        self.scan = scan


@dataclass
class Failure:
    """Why an explained edit failed: the command and its place in the expression."""

    code: int
    name: Optional[str]
    offset: int
    length: int
    command: Optional[str]
    message: str


@dataclass
class Node:
    """One command or literal of an expression and what it gave for the scan.

    ``kind`` is "command", "text" or "integer"; ``name`` a command's name or
    a literal as written; ``offset`` and ``length`` its bytes in the
    expression. ``code`` is None when it did not run (a node before it
    failed); ``value`` is bytes for a text, int for an integer, None when it
    did not run or failed. A long text value holds only its first 256 bytes,
    and ``value_length`` then gives its whole length.
    """

    kind: str
    name: str
    offset: int
    length: int
    code: Optional[int]
    value: Union[bytes, int, None]
    value_length: Optional[int] = None
    params: List["Node"] = field(default_factory=list)


@dataclass
class Explanation:
    """What an expression did to one scan: the edit's ``code`` and ``output``
    (the scan itself when the edit failed or was not triggered), the nodes of
    the expression in order (none when not triggered), the ``failure`` of a
    failed edit and, for a rule set, the ``rule`` that took the scan."""

    code: int
    output: bytes
    nodes: List[Node]
    failure: Optional[Failure] = None
    rule: Optional[Rule] = None


def _latin1(text: str) -> bytes:
    # The library writes each byte as the character of its value.
    return text.encode("latin-1")


def _node(item: dict) -> Node:
    value = item["value"]
    name = _latin1(item["name"]).decode("utf-8", "surrogateescape")
    return Node(
        kind=item["kind"],
        name=name,
        offset=item["offset"],
        length=item["length"],
        code=item["code"],
        value=_latin1(value) if isinstance(value, str) else value,
        value_length=item.get("valueLength"),
        params=[_node(param) for param in item["params"]],
    )


def _explanation(text: str) -> Explanation:
    tree = json.loads(text)
    failure = tree.get("failure")
    rule = tree.get("rule")
    return Explanation(
        code=tree["code"],
        output=_latin1(tree["output"]),
        nodes=[_node(node) for node in tree["nodes"]],
        failure=None
        if failure is None
        else Failure(
            code=failure["code"],
            name=failure["name"],
            offset=failure["offset"],
            length=failure["length"],
            command=None if failure["command"] is None else _latin1(failure["command"]).decode("utf-8", "replace"),
            message=_latin1(failure["message"]).decode("utf-8", "replace"),
        ),
        rule=None if rule is None else Rule(rule["index"] - 1, _latin1(rule["name"]).decode("utf-8", "replace")),
    )


def _escaped(data: bytes) -> bytes:
    """Bytes as a trigger text the library reads back to the same bytes."""
    out = bytearray()
    for byte in data:
        if byte == 0x5C:
            out += b"\\\\"
        elif 0x20 <= byte < 0x7F:
            out.append(byte)
        else:
            out += b"\\x%02X" % byte
    return bytes(out)


def _size(value: int) -> bytes:
    if isinstance(value, bool) or not isinstance(value, int):
        raise TypeError(f"a size is an int, not {type(value).__name__}")
    return str(value).encode("ascii")


def _trigger_text(value: Union[str, BytesLike]) -> bytes:
    # bytes are the bytes themselves; a str is read through the escapes.
    return value.encode("utf-8") if isinstance(value, str) else _escaped(bytes(value))


def _mode(errors: str) -> bool:
    if errors not in _ERRORS:
        raise ValueError(f"errors must be one of {', '.join(_ERRORS)}, not {errors!r}")
    return errors != "none"


class Profile:
    """An expression with its triggers and limits.

    ``Profile(expression, *, command_sets, min_size, max_size, symbologies,
    contains, starts_with, ends_with, max_text, max_work)``: the expression
    knows the eighteen seed commands and those of the ``command_sets`` named
    (``["GS1"]`` for GS1Element and GS1HumanReadable). Every trigger given must
    hold for a scan to be edited; a scan that fails one comes back as it
    is. Sizes are inclusive byte counts (0: unset); ``symbologies`` names or
    numbers; a trigger text given as bytes is those bytes, given as str it
    is read through nrv-edit's escapes (``"\\\\x1D"``). ``max_text`` (the
    largest text an edit may build, default 16 MiB) and ``max_work`` (work
    per scan byte on top of 64 MiB, default 4096) bound each edit; 0 lifts
    them. A value no scan could meet raises ValueError.

    One thread at a time per profile: the package holds the GIL in every
    call, so that is kept for you.
    """

    def __init__(
        self,
        expression: Union[str, BytesLike],
        *,
        command_sets: Iterable[str] = (),
        min_size: Optional[int] = None,
        max_size: Optional[int] = None,
        symbologies: Iterable[Symbology] = (),
        contains: Union[str, BytesLike, None] = None,
        starts_with: Union[str, BytesLike, None] = None,
        ends_with: Union[str, BytesLike, None] = None,
        max_text: Optional[int] = None,
        max_work: Optional[int] = None,
    ) -> None:
        text = _bytes_of(expression)
        if b"\0" in text:
            raise ValueError("an expression cannot hold a zero byte")
        self._handle = _native.new_handle(False)
        sets = 0
        for name in (command_sets,) if isinstance(command_sets, str) else command_sets:
            if str(name).upper() not in _COMMAND_SETS:
                raise ValueError(f"unknown command set {name!r} (known: {', '.join(_COMMAND_SETS)})")
            sets |= _COMMAND_SETS[str(name).upper()]
        _native.enable_command_sets(self._handle, sets)
        info = _native.parse(self._handle, text)
        if info[0] < 0:
            raise ParseError(info)
        self.expression = expression
        names: List[bytes] = []
        values: List[bytes] = []
        for name, value, read in (
            (b"min_size", min_size, _size),
            (b"max_size", max_size, _size),
            (b"contains", contains, _trigger_text),
            (b"starts_with", starts_with, _trigger_text),
            (b"ends_with", ends_with, _trigger_text),
            (b"max_text", max_text, _size),
            (b"max_work", max_work, _size),
        ):
            if value is not None:
                names.append(name)
                values.append(read(value))
        if isinstance(symbologies, (str, int)):
            symbologies = (symbologies,)
        for item in symbologies:
            names.append(b"symbology")
            values.append(str(symbology(item)).encode("ascii"))
        info = _native.set_settings(self._handle, tuple(names), tuple(values))
        if info[0] < 0:
            raise ValueError(info[4])

    def __repr__(self) -> str:
        return f"Profile({self.expression!r})"

    def edit(self, scan: BytesLike, symbology: Symbology = 0) -> bytes:
        """The scan edited; the scan itself when a trigger does not hold.
        Raises EditError when the edit fails."""
        number = _symbology_number(symbology)
        output = _native.edit(self._handle, scan, number)
        if output.__class__ is int:
            raise EditError(_native.describe_failure(self._handle, scan, number), bytes(scan))
        return output

    def edit_many(
        self, scans: Iterable[BytesLike], symbology: Symbology = 0, *, errors: str = "raise"
    ) -> List[Optional[bytes]]:
        """Every scan edited, in order, in one call into the library.

        ``errors``: "raise" raises EditError for the first scan whose edit
        fails (its ``index`` says which); "keep" returns such a scan as it
        is, as nrv-edit prints it; "none" puts None in its place.
        """
        number = _symbology_number(symbology)
        outputs, failed, scan = _native.edit_many(self._handle, scans, number, _mode(errors), None)
        if failed >= 0 and errors == "raise":
            raise EditError(_native.describe_failure(self._handle, scan, number), bytes(scan), index=failed)
        return outputs

    def explain(self, scan: BytesLike, symbology: Symbology = 0) -> Explanation:
        """What every command and literal gave for the scan, as nrv-edit
        --explain --json tells it; a failed edit is explained, not raised."""
        return _explanation(_native.explain(self._handle, scan, _symbology_number(symbology)))


def _symbology_number(value: Symbology) -> int:
    if value.__class__ is int and 0 <= value < _SYMBOLOGY_COUNT:
        return value  # the common case, without a call
    return symbology(value)


class RuleSet:
    """Rules in order, each an expression with its own triggers, read from a
    rules file (TOML, as nrv-edit --rules reads it). The first rule whose
    triggers all hold edits a scan; when its edit fails, no later rule is
    tried. Make one with :meth:`from_file` or :meth:`from_text`."""

    def __init__(self) -> None:
        self._handle = _native.new_handle(True)
        self._rules: List[Rule] = []

    @classmethod
    def from_text(cls, text: Union[str, BytesLike], name: str = "rules") -> "RuleSet":
        """The rules of a text; ``name`` is what error messages call it.
        Raises ParseError with every error of the text."""
        rules = cls()
        info = _native.read_rules(rules._handle, _bytes_of(text), os.fsencode(name))
        if info[0] < 0:
            raise ParseError(info, rules=True)
        rules._rules = [Rule(index, rule) for index, rule in enumerate(_native.rule_names(rules._handle))]
        return rules

    @classmethod
    def from_file(cls, path: Union[str, "os.PathLike[str]"]) -> "RuleSet":
        """The rules of a file; OSError when it cannot be read, ParseError
        when it holds errors."""
        with open(path, "rb") as file:
            return cls.from_text(file.read(), os.fspath(path))

    @property
    def rules(self) -> List[Rule]:
        """The rules, in order."""
        return list(self._rules)

    def __len__(self) -> int:
        return len(self._rules)

    def __repr__(self) -> str:
        return f"<RuleSet of {len(self._rules)} rules>"

    def edit(self, scan: BytesLike, symbology: Symbology = 0) -> Tuple[bytes, Optional[Rule]]:
        """The scan edited by the first rule that takes it, and that rule;
        the scan itself and None when no rule takes it. Raises EditError
        when the rule's edit fails."""
        number = _symbology_number(symbology)
        output, rule = _native.edit(self._handle, scan, number)
        taken = None if rule is None else self._rules[rule]
        if output.__class__ is int:
            raise EditError(_native.describe_failure(self._handle, scan, number), bytes(scan), taken)
        return output, taken

    def edit_many(
        self, scans: Iterable[BytesLike], symbology: Symbology = 0, *, errors: str = "raise"
    ) -> List[Tuple[Optional[bytes], Optional[Rule]]]:
        """Every scan edited, in order, in one call into the library, each
        with the rule that took it; ``errors`` as for Profile.edit_many."""
        number = _symbology_number(symbology)
        outputs, failed, scan = _native.edit_many(self._handle, scans, number, _mode(errors), self._rules)
        if failed >= 0 and errors == "raise":
            info = _native.describe_failure(self._handle, scan, number)
            rule = None if info[5] is None else self._rules[info[5]]
            raise EditError(info, bytes(scan), rule, index=failed)
        return outputs

    def explain(self, scan: BytesLike, symbology: Symbology = 0) -> Explanation:
        """What the rule that takes the scan does to it, node by node."""
        return _explanation(_native.explain(self._handle, scan, _symbology_number(symbology)))
