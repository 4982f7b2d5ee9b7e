#!/usr/bin/env python3
"""Writes the small BMP and PNG files the qel tool's tests read (standard library only).

Every readable file holds one of two reference pictures, 7 x 5 pixels (an odd width, so BMP rows
are padded): COLOUR, 12 colours, and GREY, 16 levels that are multiples of 17 (so that a 4-bit
grey PNG can hold them). colour.bmp and grey.bmp hold them in the forms the library reads
directly; every other readable file must load to the same pixels. The refused files are each
wrong in one way. The photo_* files are a 64 x 48 crop of samples/astronaut.bmp, the source of
the JPEG files (see README.md).

Run from anywhere: python3 tests/data/make_images.py
"""
import os
import random
import struct
import zlib

HERE = os.path.dirname(os.path.abspath(__file__))
W, H = 7, 5

# B, G, R. Two greys among them, so a colour picture may hold grey pixels.
COLOURS = [(0, 0, 255), (0, 255, 0), (255, 0, 0), (0, 255, 255), (255, 0, 255), (255, 255, 0),
           (30, 60, 90), (200, 100, 50), (10, 220, 130), (128, 128, 128), (0, 0, 0), (250, 240, 5)]


def colour_index(x, y):
    return (3 * x + 5 * y) % len(COLOURS)


def grey_level(x, y):
    return 17 * ((2 * x + 3 * y) % 16)


def rows(pixel):
    """Top row first, as lists of pixels."""
    return [[pixel(x, y) for x in range(W)] for y in range(H)]


def write(name, data):
    with open(os.path.join(HERE, name), "wb") as f:
        f.write(data)


# ---- BMP ------------------------------------------------------------------------------------

def bmp(bits, pixel_rows, palette=None, colours_used=0, compression=0, height=None, top_down=False, width=None):
    """A BMP file: pixel_rows are top row first, as raw byte strings of one row each."""
    palette = palette or []
    pal = b"".join(bytes([b, g, r, 0]) for (b, g, r) in palette)
    offset = 54 + len(pal)
    stored = list(reversed(pixel_rows)) if not top_down else pixel_rows
    body = b"".join(r + bytes(-len(r) % 4) for r in stored)
    h = height if height is not None else (-len(pixel_rows) if top_down else len(pixel_rows))
    width = width if width is not None else len(pixel_rows[0]) // (bits // 8)
    header = b"BM" + struct.pack("<IHHI", offset + len(body), 0, 0, offset)
    info = struct.pack("<IiiHHIIiiII", 40, width, h, 1, bits, compression, len(body), 2835, 2835, colours_used, 0)
    return header + info + pal + body


def bgr_rows(pixel):
    return [b"".join(bytes(p) for p in row) for row in rows(pixel)]


def index_rows(index):
    return [bytes(row) for row in rows(index)]


colour_pixel = lambda x, y: COLOURS[colour_index(x, y)]
grey_pixel = lambda x, y: grey_level(x, y)

write("colour.bmp", bmp(24, bgr_rows(colour_pixel)))
write("grey.bmp", bmp(8, index_rows(grey_pixel), palette=[(i, i, i) for i in range(256)]))

# 16 palette entries (the 12 colours and 4 unused), as colours_used says.
pal16 = COLOURS + [(1, 2, 3)] * 4
write("colour_pal16.bmp", bmp(8, index_rows(colour_index), palette=pal16, colours_used=16))

# 256 entries, the colours at scattered places among random others.
rng = random.Random(7)
pal256 = [(rng.randrange(256), rng.randrange(256), rng.randrange(256)) for _ in range(256)]
place = [(37 * k + 11) % 256 for k in range(len(COLOURS))]
for k, c in enumerate(COLOURS):
    pal256[place[k]] = c
write("colour_pal256.bmp", bmp(8, index_rows(lambda x, y: place[colour_index(x, y)]), palette=pal256))

# A palette of greys that is not a ramp: entry i is level 255 - i.
write("grey_pal_inverted.bmp", bmp(8, index_rows(lambda x, y: 255 - grey_level(x, y)),
                                   palette=[(255 - i,) * 3 for i in range(256)]))
# Rows stored top row first (negative height).
write("grey_topdown.bmp", bmp(8, index_rows(grey_pixel), palette=[(i, i, i) for i in range(256)], top_down=True))

# Refused: other depths, compression, a height that has no positive counterpart, a cut file.
write("depth1.bmp", bmp(1, [bytes([0b10101010]) for _ in range(H)], palette=[(0, 0, 0), (255, 255, 255)],
                        width=W))
write("depth4.bmp", bmp(4, [bytes([0x12, 0x34, 0x56, 0x70]) for _ in range(H)], palette=pal16, colours_used=16,
                        width=W))
write("depth32.bmp", bmp(32, [b"".join(bytes(p) + b"\xff" for p in row) for row in rows(colour_pixel)]))
write("bitfields32.bmp", bmp(32, [b"".join(bytes(p) + b"\xff" for p in row) for row in rows(colour_pixel)],
                             compression=3))
# RLE8: each row as one run of its first index, then end of line; end of bitmap.
rle = b"".join(bytes([W, colour_index(0, y), 0, 0]) for y in range(H)) + b"\x00\x01"
rle_file = bmp(8, [b""], palette=pal16, colours_used=16, compression=1, width=W, height=H)
write("rle8.bmp", rle_file[:54 + 64] + rle)
write("height_min.bmp", bmp(24, bgr_rows(colour_pixel), height=-2**31))
colour_bmp = bmp(24, bgr_rows(colour_pixel))
write("truncated.bmp", colour_bmp[:len(colour_bmp) - 30])


# Two-level masks, 16 x 12: a 0/128 square, and what binarising it and then dilating it must give.
MW, MH = 16, 12
in_square = lambda x, y, grow=0: 4 - grow <= x <= 9 + grow and 3 - grow <= y <= 8 + grow
ramp = [(i, i, i) for i in range(256)]
mask = lambda value, grow=0: [bytes(value if in_square(x, y, grow) else 0 for x in range(MW)) for y in range(MH)]
write("mask0_128.bmp", bmp(8, mask(128), palette=ramp))
write("mask0_255.bmp", bmp(8, mask(255), palette=ramp))
write("mask0_255_dilated.bmp", bmp(8, mask(255, grow=1), palette=ramp))


# ---- PNG ------------------------------------------------------------------------------------

def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data) & 0xFFFFFFFF)


def png(width, height, depth, colour_type, raw_rows, extra=b"", interlace=0):
    """raw_rows: the filtered scanlines' bytes without filter bytes; each gets filter type 0."""
    data = b"".join(b"\x00" + r for r in raw_rows)
    ihdr = struct.pack(">IIBBBBB", width, height, depth, colour_type, 0, 0, interlace)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", ihdr) + extra + chunk(b"IDAT", zlib.compress(data)) + chunk(b"IEND", b"")


def pack(values, depth):
    """Packs samples of `depth` bits into bytes, most significant first, padding the last byte."""
    out, acc, n = bytearray(), 0, 0
    for v in values:
        acc = (acc << depth) | v
        n += depth
        if n == 8:
            out.append(acc)
            acc, n = 0, 0
    if n:
        out.append(acc << (8 - n))
    return bytes(out)


rgb_of = lambda x, y: bytes(reversed(colour_pixel(x, y)))  # R, G, B
write("colour.png", png(W, H, 8, 2, [b"".join(rgb_of(x, y) for x in range(W)) for y in range(H)]))

# 16-bit RGBA: the low bytes and alpha are noise the reader must ignore.
rng = random.Random(11)
write("colour_rgba16.png", png(W, H, 16, 6, [b"".join(
    b"".join(bytes([c, rng.randrange(256)]) for c in rgb_of(x, y)) + bytes([rng.randrange(256), rng.randrange(256)])
    for x in range(W)) for y in range(H)]))

# 4-bit palette with transparency: indices shuffled against the colour order.
order = [5, 11, 0, 7, 2, 9, 4, 1, 10, 3, 8, 6]
plte = b"".join(bytes(reversed(COLOURS[order[i]])) for i in range(12))
trns = bytes([0, 128] + [255] * 10)
write("colour_palette.png", png(W, H, 4, 3, [pack([order.index(colour_index(x, y)) for x in range(W)], 4) for y in range(H)],
                                extra=chunk(b"PLTE", plte) + chunk(b"tRNS", trns)))

# Adam7 interlaced RGB.
ADAM7 = [(0, 0, 8, 8), (4, 0, 8, 8), (0, 4, 4, 8), (2, 0, 4, 4), (0, 2, 2, 4), (1, 0, 2, 2), (0, 1, 1, 2)]
passes = b""
for (x0, y0, dx, dy) in ADAM7:
    xs, ys = range(x0, W, dx), range(y0, H, dy)
    if len(xs) and len(ys):
        passes += b"".join(b"\x00" + b"".join(rgb_of(x, y) for x in xs) for y in ys)
ihdr = struct.pack(">IIBBBBB", W, H, 8, 2, 0, 0, 1)
write("colour_interlaced.png", b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", ihdr) + chunk(b"IDAT", zlib.compress(passes)) +
      chunk(b"IEND", b""))

write("grey.png", png(W, H, 8, 0, [bytes(grey_level(x, y) for x in range(W)) for y in range(H)]))
write("grey4.png", png(W, H, 4, 0, [pack([grey_level(x, y) // 17 for x in range(W)], 4) for y in range(H)]))
rng = random.Random(13)
write("grey16_alpha.png", png(W, H, 16, 4, [b"".join(
    bytes([grey_level(x, y), rng.randrange(256), rng.randrange(256), rng.randrange(256)]) for x in range(W))
    for y in range(H)]))
# A palette of greys, in an order of its own.
levels = sorted({grey_level(x, y) for x in range(W) for y in range(H)}, reverse=True)
write("grey_palette.png", png(W, H, 8, 3, [bytes(levels.index(grey_level(x, y)) for x in range(W)) for y in range(H)],
                              extra=chunk(b"PLTE", b"".join(bytes([v, v, v]) for v in levels))))

colour_png = png(W, H, 8, 2, [b"".join(rgb_of(x, y) for x in range(W)) for y in range(H)])
write("truncated.png", colour_png[:len(colour_png) - 25])

# ---- the JPEG files' source: a crop of the sample photograph ------------------------------------

with open(os.path.join(HERE, "..", "..", "samples", "astronaut.bmp"), "rb") as f:
    sample = f.read()
offset, = struct.unpack_from("<I", sample, 10)
sw, sh = struct.unpack_from("<ii", sample, 18)
CX, CY, CW, CH = 200, 100, 64, 48


def sample_bgr(x, y):  # top-row-first coordinates of the bottom-up 24-bit sample
    at = offset + (sh - 1 - y) * ((sw * 3 + 3) // 4 * 4) + 3 * x
    return sample[at:at + 3]


photo_rows = [b"".join(sample_bgr(CX + x, CY + y) for x in range(CW)) for y in range(CH)]
write("photo.bmp", bmp(24, photo_rows))
grey_rows = [bytes((p[0] * 468 + p[1] * 2404 + p[2] * 1225) >> 12 for p in
                   (row[i:i + 3] for i in range(0, len(row), 3))) for row in photo_rows]
write("photo_grey.bmp", bmp(8, grey_rows, palette=[(i, i, i) for i in range(256)]))
