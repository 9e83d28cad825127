#!/usr/bin/env python3
"""Gives a linked image and its PDB an identity made from the image alone.

usage: stamp_image.py IMAGE PDB

The linker makes both files' identity and the image's time stamp from the PDB, which names the folder of the build. With
them made from the code, one commit gives the same image in every folder. Doing it again changes nothing.
"""

import hashlib
import pathlib
import struct
import sys

CODEVIEW, DEBUG_DIRECTORY, DEBUG_ENTRY = 2, 6, 28


def places(image):
    """Offsets of the time stamps, and of the PDB's GUID."""
    header = struct.unpack_from("<I", image, 0x3C)[0]
    sections, optional_size = struct.unpack_from("<H", image, header + 6)[0], struct.unpack_from("<H", image, header + 20)[0]
    optional = header + 24
    debug, size = struct.unpack_from("<II", image, optional + 112 + 8 * DEBUG_DIRECTORY)
    for i in range(sections):
        _, address, length, raw = struct.unpack_from("<4I", image, optional + optional_size + 40 * i + 8)
        if address <= debug < address + length:
            entries = range(debug - address + raw, debug - address + raw + size, DEBUG_ENTRY)
            break
    else:
        sys.exit("no debug directory")
    guids = [raw + 4 for kind, _, _, raw in (struct.unpack_from("<4I", image, entry + 12) for entry in entries) if kind == CODEVIEW]
    if len(guids) != 1 or image[guids[0] - 4:guids[0]] != b"RSDS":
        sys.exit("no PDB is named")
    return [header + 8, *(entry + 4 for entry in entries)], guids[0]


def main():
    image_path, pdb_path = map(pathlib.Path, sys.argv[1:])
    image, pdb = bytearray(image_path.read_bytes()), pdb_path.read_bytes()
    stamps, guid = places(image)
    old = bytes(image[guid:guid + 16])
    if pdb.count(old) != 1:
        sys.exit(f"{pdb_path} is not the PDB of {image_path}")
    image[guid:guid + 16] = bytes(16)
    for stamp in stamps:
        image[stamp:stamp + 4] = bytes(4)
    identity = hashlib.sha256(image).digest()
    image[guid:guid + 16] = identity[:16]
    for stamp in stamps:
        image[stamp:stamp + 4] = identity[16:20]
    pdb_path.write_bytes(pdb.replace(old, identity[:16]))
    image_path.write_bytes(image)


if __name__ == "__main__":
    main()
