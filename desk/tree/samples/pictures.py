"""The receiver's pictures, as bytes by path."""

import random
import struct
import zlib

# Colours, as 0xRRGGBB.
GREY = 0x808890
AMBER = 0xF0A020
RED = 0xC02020
GREEN = 0x20A020


def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def disc(size, colour):
    """Returns a PNG picture of `size` by `size` pixels: a disc of the colour, and nothing around it."""
    radius = size // 2
    span = range(-radius, size - radius)
    inside, outside = struct.pack(">I", colour << 8 | 0xFF), bytes(4)
    lines = (b"".join(inside if x * x + y * y < radius * radius else outside for x in span) for y in span)
    pixels = b"".join(b"\0" + line for line in lines)  # each line begins with its filter: none
    eight_bit_rgba = b"\x08\x06\x00\x00\x00"
    # Stored, not compressed: the pictures in docs/gallery hold these, and are not to change with the version of zlib.
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">II", size, size) + eight_bit_rgba) +
            chunk(b"IDAT", zlib.compress(pixels, 0)) + chunk(b"IEND", b""))


def colour_of(path):
    """Returns the colour that the name of a button's picture says, any for other pictures."""
    for name, colour in ("button_red.png", RED), ("button_green.png", GREEN):
        if path.endswith(name):
            return colour
    colour = 0
    for byte in path.encode():
        colour = colour * 31 + byte & 0xFFFFFF
    return colour


def spinner(pictures, colour):
    """The pictures shown while the receiver is busy."""
    return {"usr/share/enigma2/skin_default/spinner/wait%d.png" % i: disc(8 + 2 * i, colour)
            for i in range(1, pictures + 1)}


def stills(seed):
    """The still pictures of the radio and of the start, as video data: noise that no compression shrinks."""
    noise = random.Random(seed)
    sizes = {"usr/share/enigma2/radio.mvi": 9000,
             "usr/share/vuplus-bootlogo/bootlogo.mvi": 12000,
             "usr/share/vuplus-bootlogo/backdrop.mvi": 7000}
    return {path: b"\0\0\1\xb3" + noise.randbytes(size) for path, size in sizes.items()}
