"""Reads 64-bit PE files, as far as pe_check.py asks."""

import struct
import uuid

EXPORT, IMPORT, RESOURCE, DEBUG, LOAD_CONFIG = 0, 1, 2, 6, 10  # data directories
DELAY_IMPORT = 13
RT_VERSION = 16
CODEVIEW = 2  # type of a debug entry
ORDINAL_FLAG = 1 << 63


class PeFile:
    def __init__(self, data):
        self.data = data
        if data[:2] != b"MZ":
            raise ValueError("no MZ signature")
        header, = struct.unpack_from("<I", data, 0x3C)
        if data[header:header + 4] != b"PE\0\0":
            raise ValueError("no PE signature")
        self.machine, sections, _, _, _, optional_size, _ = struct.unpack_from("<HHIIIHH", data, header + 4)
        optional = header + 24
        if struct.unpack_from("<H", data, optional) != (0x20B,):
            raise ValueError("not a 64-bit image")
        self.dll_characteristics, = struct.unpack_from("<H", data, optional + 70)
        directories, = struct.unpack_from("<I", data, optional + 108)
        self.directories = [struct.unpack_from("<II", data, optional + 112 + 8 * i)
                            for i in range(directories)]
        first = optional + optional_size
        self.image_base, = struct.unpack_from("<Q", data, optional + 24)
        # Virtual size, virtual address, raw size, raw offset.
        self.sections = [struct.unpack_from("<IIII", data, first + 40 * i + 8) for i in range(sections)]
        # Name and characteristics of each.
        self.section_flags = [(data[first + 40 * i:first + 40 * i + 8].rstrip(b"\0").decode(),
                               struct.unpack_from("<I", data, first + 40 * i + 36)[0]) for i in range(sections)]

    def offset(self, rva):
        for _, address, raw_size, raw_offset in self.sections:
            if address <= rva < address + raw_size:
                return raw_offset + rva - address
        raise ValueError(f"address {rva:#x} is not in the file")

    def text(self, rva):
        start = self.offset(rva)
        return self.data[start:self.data.index(b"\0", start)].decode("ascii")

    def directory(self, index):
        """Address and size; (0, 0) for one that is not there."""
        return self.directories[index] if index < len(self.directories) else (0, 0)

    def exports(self):
        """Ordinals by name, and the ordinals that have none."""
        rva, _ = self.directory(EXPORT)
        if rva == 0:
            return {}, []
        base, functions, names, function_table, name_table, ordinal_table = struct.unpack_from(
            "<IIIIII", self.data, self.offset(rva) + 16)
        found = {}
        for i in range(names):
            name, = struct.unpack_from("<I", self.data, self.offset(name_table) + 4 * i)
            ordinal, = struct.unpack_from("<H", self.data, self.offset(ordinal_table) + 2 * i)
            found[self.text(name)] = base + ordinal
        used = {base + i for i in range(functions)
                if struct.unpack_from("<I", self.data, self.offset(function_table) + 4 * i) != (0,)}
        return found, sorted(used - set(found.values()))

    def _thunks(self, rva):
        offset = self.offset(rva)
        while (entry := struct.unpack_from("<Q", self.data, offset)[0]) != 0:
            yield f"#{entry & 0xFFFF}" if entry & ORDINAL_FLAG else self.text((entry & 0x7FFFFFFF) + 2)
            offset += 8

    def imports(self):
        """Names of functions by name of DLL, the delayed ones included."""
        found = {}
        for index, record, name_at, thunks_at in ((IMPORT, 20, 12, 0), (DELAY_IMPORT, 32, 4, 16)):
            rva, _ = self.directory(index)
            if rva == 0:
                continue
            offset = self.offset(rva)
            while (name := struct.unpack_from("<I", self.data, offset + name_at)[0]) != 0:
                thunks, = struct.unpack_from("<I", self.data, offset + thunks_at)
                found.setdefault(self.text(name), []).extend(self._thunks(thunks))
                offset += record
        return found

    def _resource_entries(self, root, offset):
        named, numbered = struct.unpack_from("<HH", self.data, root + offset + 12)
        first = root + offset + 16
        return [struct.unpack_from("<II", self.data, first + 8 * i) for i in range(named + numbered)]

    def version_info(self):
        """What VS_FIXEDFILEINFO says; None without one."""
        rva, _ = self.directory(RESOURCE)
        if rva == 0:
            return None
        root = self.offset(rva)
        entry = next((where for kind, where in self._resource_entries(root, 0) if kind == RT_VERSION), None)
        if entry is None:
            return None
        while entry & 0x80000000:
            entry = self._resource_entries(root, entry & 0x7FFFFFFF)[0][1]
        address, size = struct.unpack_from("<II", self.data, root + entry)
        block = self.data[self.offset(address):self.offset(address) + size]
        # Length, length of the value, type, then the key and padding to 4 bytes.
        key = "VS_VERSION_INFO\0".encode("utf-16-le")
        fixed = (6 + len(key) + 3) // 4 * 4
        if block[6:6 + len(key)] != key or struct.unpack_from("<I", block, fixed) != (0xFEEF04BD,):
            return None
        high, low = struct.unpack_from("<II", block, fixed + 8)
        file_type, = struct.unpack_from("<I", block, fixed + 36)
        return {"file_version": (high >> 16, high & 0xFFFF, low >> 16, low & 0xFFFF), "file_type": file_type}

    def load_config(self):
        """Flags for imported libraries, and address and first value of the security cookie; None without them."""
        rva, _ = self.directory(LOAD_CONFIG)
        if rva == 0 or struct.unpack_from("<I", self.data, self.offset(rva))[0] < 0x60:
            return None
        flags, = struct.unpack_from("<H", self.data, self.offset(rva) + 0x4E)
        cookie, = struct.unpack_from("<Q", self.data, self.offset(rva) + 0x58)
        cookie -= self.image_base
        value, = struct.unpack_from("<Q", self.data, self.offset(cookie))
        return {"load_flags": flags, "cookie": cookie, "value": value}

    def stack_checks(self):
        """How many places call the function that ends the process with fast-fail code 2."""
        _, base, size, raw = self.sections[0]
        code = self.data[raw:raw + size]
        if self.machine == 0xAA64:
            words = struct.unpack(f"<{size // 4}I", code)
            ends = {4 * i for i in range(len(words) - 1) if words[i:i + 2] == (0x52800040, 0xD43E0060)}
            calls = (4 * i + ((word & 0x3FFFFFF ^ 0x2000000) - 0x2000000) * 4 for i, word in enumerate(words)
                     if word >> 26 == 0x25)
        else:
            ends, at = set(), -1
            while (at := code.find(bytes.fromhex("B902000000CD29"), at + 1)) >= 0:
                ends.add(at)
            calls = (i + 5 + struct.unpack_from("<i", code, i + 1)[0] for i in range(size - 4) if code[i] == 0xE8)
        starts = {end - back for end in ends for back in range(17)}
        return sum(call in starts for call in calls)

    def codeview(self):
        """GUID and file name of the PDB; None without them."""
        rva, size = self.directory(DEBUG)
        for i in range(size // 28):
            kind, length, _, raw = struct.unpack_from("<IIII", self.data, self.offset(rva) + 28 * i + 12)
            record = self.data[raw:raw + length]
            if kind == CODEVIEW and record[:4] == b"RSDS":
                return {"guid": uuid.UUID(bytes_le=record[4:20]), "pdb": record[24:].split(b"\0")[0].decode()}
        return None


def pdb_identity(path):
    """GUID of a PDB; None when the file is none. Stream 1 begins with version, signature, age and GUID."""
    data = path.read_bytes()
    if not data.startswith(b"Microsoft C/C++ MSF 7.00\r\n\x1aDS\0\0\0"):
        return None
    block_size, _, _, directory_size, _, directory_map = struct.unpack_from("<6I", data, 32)
    blocks = -(-directory_size // block_size)
    numbers = struct.unpack_from(f"<{blocks}I", data, directory_map * block_size)
    directory = b"".join(data[n * block_size:(n + 1) * block_size] for n in numbers)
    count, = struct.unpack_from("<I", directory)
    sizes = struct.unpack_from(f"<{count}I", directory, 4)
    stream_0_blocks = 0 if sizes[0] == 0xFFFFFFFF else -(-sizes[0] // block_size)
    block, = struct.unpack_from("<I", directory, 4 + 4 * (count + stream_0_blocks))
    return uuid.UUID(bytes_le=data[block * block_size + 12:block * block_size + 28])
