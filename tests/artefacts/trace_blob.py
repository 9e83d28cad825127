"""Decodes TraceLogging metadata as a decoder does that knows only the file.

A header ("ETW0", 16-bit size of the header, version, flags, 64-bit magic) leads byte-packed blobs. Each
begins with its type: 4 is a provider (GUID, 16-bit size of what follows with these two bytes, name), 6 an
event (channel, level, opcode, 64-bit keyword, 16-bit size likewise, tag bytes up to one without its high bit,
name, fields), 1 the end. A field is its name and its type byte.
"""

import struct
import uuid

HEADER = b"ETW0" + struct.pack("<HBBQ", 16, 0, 1, 0xBB8A052B88040E86)
END, PROVIDER, EVENT = 1, 4, 6
IN_TYPE_MASK, MORE = 0x7F, 0x80


def _text(data):
    """A terminated text and what follows it."""
    end = data.index(b"\0")
    return data[:end].decode("utf-8"), data[end + 1:]


def _tail(data, offset):
    """The part of a blob that begins with its size."""
    size, = struct.unpack_from("<H", data, offset)
    if size < 3 or offset + size > len(data):
        raise ValueError(f"a blob of {size} bytes at {offset:#x}")
    return size, data[offset + 2:offset + size]


def _event(data, offset):
    channel, level, opcode, keyword = struct.unpack_from("<BBBQ", data, offset)
    size, rest = _tail(data, offset + 11)
    tag = 0
    while True:
        byte, rest = rest[0], rest[1:]
        tag = tag << 7 | byte & 0x7F
        if not byte & MORE:
            break
    name, rest = _text(rest)
    fields = []
    while rest:
        field, rest = _text(rest)
        in_type, rest = rest[0], rest[1:]
        if in_type & MORE:
            raise ValueError(f"field {field} has attributes")
        fields.append((field, in_type & IN_TYPE_MASK))
    return offset + 11 + size, {"channel": channel, "level": level, "opcode": opcode, "keyword": keyword,
                                "size": size, "tag": tag, "name": name, "fields": fields}


def _provider(data, offset):
    size, rest = _tail(data, offset + 16)
    name, rest = _text(rest)
    if rest:
        raise ValueError(f"traits behind the name of {name}")
    return offset + 16 + size, {"guid": uuid.UUID(bytes_le=bytes(data[offset:offset + 16])), "size": size,
                                "name": name}


def read_trace_blobs(data):
    """All providers and all events of a file; ValueError without exactly one well-formed section."""
    if data.count(HEADER) != 1:
        raise ValueError(f"{data.count(HEADER)} headers")
    offset = data.index(HEADER) + len(HEADER)
    providers, events = [], []
    while data[offset] != END:
        kind, offset = data[offset], offset + 1
        if kind == PROVIDER:
            offset, provider = _provider(data, offset)
            providers.append(provider)
        elif kind == EVENT:
            offset, event = _event(data, offset)
            events.append(event)
        else:
            raise ValueError(f"blob of type {kind} at {offset - 1:#x}")
    return providers, events
