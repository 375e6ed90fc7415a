"""Prints the pictures embedded in an audio file as python3-mutagen reads them, in their order:
one line per picture, "MIME WIDTHxHEIGHT", the size decoded from the picture's own header."""
import struct
import sys

import mutagen
from mutagen.mp4 import MP4Cover


def pixel_size(data):
    if data.startswith(b"\x89PNG\r\n\x1a\n"):
        return struct.unpack(">II", data[16:24])
    if data.startswith(b"\xff\xd8"):
        i = 2
        while i + 9 < len(data):
            if data[i] != 0xFF:
                i += 1
                continue
            marker = data[i + 1]
            if 0xC0 <= marker <= 0xCF and marker not in (0xC4, 0xC8, 0xCC):
                height, width = struct.unpack(">HH", data[i + 5:i + 9])
                return width, height
            i += 2 + struct.unpack(">H", data[i + 2:i + 4])[0]
    return 0, 0


def pictures(path):
    f = mutagen.File(path)
    if hasattr(f, "pictures"):  # FLAC
        return [(p.mime, p.data) for p in f.pictures]
    tags = f.tags or {}
    if hasattr(tags, "getall"):  # ID3
        return [(frame.mime, frame.data) for frame in tags.getall("APIC")]
    mime = {MP4Cover.FORMAT_JPEG: "image/jpeg", MP4Cover.FORMAT_PNG: "image/png"}
    return [(mime.get(cover.imageformat, "?"), bytes(cover)) for cover in tags.get("covr", [])]


for mime, data in pictures(sys.argv[1]):
    print("%s %dx%d" % ((mime,) + tuple(pixel_size(data))))
