"""Reading of one section of a configuration file, by the rules of docs/configuration.md."""
from __future__ import annotations

import re

BLANKS = b" \t\v\f\x1a"


def _lines(data: bytes) -> list[bytes]:
    return re.split(rb"[\r\n]+", data.removeprefix(b"\xef\xbb\xbf"))


def _head(line: bytes) -> bytes | None:
    """The section's name if the line begins one. It extends to the last bracket."""
    line = line.strip(BLANKS)
    if b"\0" in line or not line.startswith(b"[") or b"]" not in line:
        return None
    return line[1:line.rindex(b"]")].strip(BLANKS)


def sections(data: bytes) -> list[bytes]:
    return [head for head in map(_head, _lines(data)) if head is not None]


def section_text(data: bytes, section: bytes) -> bytes | None:
    """A file of the first section of that name, under the library's name for a default; None without such a section."""
    name: bytes | None = b""  # of the lines before the first section
    kept = None if section else [b"[Geodesy]"]
    for line in _lines(data):
        head = _head(line)
        if head is not None:
            if kept is not None:
                break
            name = head
            if name.lower() == section.lower():  # of bytes: the letters of ASCII
                kept = [b"[Geodesy]"]
        elif kept is not None and b"\0" not in line:
            kept.append(line)
    return None if kept is None else b"\n".join(kept) + b"\n"


def has_value(text: bytes, key: bytes) -> bool:
    """Whether a key of the section has a value."""
    for line in _lines(text):
        name, equals, value = line.strip(BLANKS).partition(b"=")
        if equals and not name.startswith(b";") and name.strip(BLANKS).lower() == key.lower():
            return value.strip(BLANKS) not in (b"", b'""', b"''")
    return False
