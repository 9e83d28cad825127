"""What the checks ask of PE images and PDBs beyond what pefile tells."""

import struct
import uuid


def imports(image):
    """Names of functions by name of DLL, the delayed ones included; one without a name is "#" and its number."""
    found = {}
    for table in ("DIRECTORY_ENTRY_IMPORT", "DIRECTORY_ENTRY_DELAY_IMPORT"):
        for entry in getattr(image, table, []):
            found.setdefault(entry.dll.decode(), []).extend(
                function.name.decode() if function.name else f"#{function.ordinal}" for function in entry.imports)
    return found


def codeview(image):
    """GUID and file name of the PDB; None without them."""
    for debug in getattr(image, "DIRECTORY_ENTRY_DEBUG", []):
        if debug.entry is not None and debug.entry.CvSignature == b"RSDS":
            guid = image.__data__[debug.struct.PointerToRawData + 4:][:16]
            return {"guid": uuid.UUID(bytes_le=bytes(guid)), "pdb": debug.entry.PdbFileName.rstrip(b"\0").decode()}
    return None


def stack_checks(image):
    """How many places call the function that ends the process with fast-fail code 2."""
    code = image.sections[0].get_data()
    if image.FILE_HEADER.Machine == 0xAA64:
        words = struct.unpack(f"<{len(code) // 4}I", code)
        ends = {4 * i for i in range(len(words) - 1) if words[i:i + 2] == (0x52800040, 0xD43E0060)}
        calls = (4 * i + ((word & 0x3FFFFFF ^ 0x2000000) - 0x2000000) * 4 for i, word in enumerate(words)
                 if word >> 26 == 0x25)
    else:
        ends, at = set(), -1
        while (at := code.find(bytes.fromhex("B902000000CD29"), at + 1)) >= 0:
            ends.add(at)
        calls = (i + 5 + struct.unpack_from("<i", code, i + 1)[0] for i in range(len(code) - 4) if code[i] == 0xE8)
    starts = {end - back for end in ends for back in range(17)}
    return sum(call in starts for call in calls)


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
