#!/usr/bin/env python3
"""Writes the fuzzers' seed corpora under fuzz/corpus/<target>/: small valid inputs of every kind
each target reads (odd widths, padded rows, top-down BMPs, list files with CR LF, LF, no line end
and empty lines, every camera layout, typical command lines, small BMP, PNG and JPEG files).
Run it from anywhere; it replaces the files it writes and leaves others alone."""
import os
import shutil
import struct

HERE = os.path.dirname(os.path.abspath(__file__))
DATA = os.path.join(HERE, "..", "tests", "data")


def write(target, name, data):
    d = os.path.join(HERE, "corpus", target)
    os.makedirs(d, exist_ok=True)
    with open(os.path.join(d, name), "wb") as f:
        f.write(data)


def pixels(n, seed):
    return bytes((seed * 31 + i * 7) & 0xFF for i in range(n))


def bmp(width, height, bytes_per_pixel, top_down=False, cut=0, offset=None):
    """A BMP of the given depth, rows bottom-up (or top-down) and padded to 4 bytes; `cut` bytes
    are removed from the end."""
    palette = b"".join(bytes((i, i, i, 0)) for i in range(256)) if bytes_per_pixel == 1 else b""
    data_offset = 54 + len(palette) if offset is None else offset
    row = width * bytes_per_pixel
    pad = (row + 3) // 4 * 4 - row
    body = b"".join(pixels(row, y) + b"\0" * pad for y in range(height))
    header = struct.pack("<2sIHHI", b"BM", data_offset + len(body), 0, 0, data_offset)
    info = struct.pack("<IiiHHIIiiII", 40, width, -height if top_down else height, 1, 8 * bytes_per_pixel,
                       0, len(body), 2835, 2835, 0, 0)
    gap = b"\0" * max(0, data_offset - 54 - len(palette))
    data = header + info + palette + gap + body
    return data[:len(data) - cut] if cut else data


def bmp_corpus():
    for target, bpp in (("bmp8", 1), ("bmp24", 3)):
        write(target, "w1_h1.bmp", bmp(1, 1, bpp))
        write(target, "w3_h2_padded.bmp", bmp(3, 2, bpp))
        write(target, "w4_h3.bmp", bmp(4, 3, bpp))
        write(target, "w5_h4_top_down.bmp", bmp(5, 4, bpp, top_down=True))
        write(target, "w7_h3_last_pad_missing.bmp", bmp(7, 3, bpp, cut=(7 * bpp) % 4 and 4 - (7 * bpp) % 4))
        write(target, "w2_h2_offset_gap.bmp", bmp(2, 2, bpp, offset=54 + (1024 if bpp == 1 else 0) + 6))
        write(target, "offset_53.bmp", bmp(2, 2, bpp, offset=53))
        write(target, "short_row.bmp", bmp(6, 5, bpp, cut=9))


def list_corpus():
    write("list_file", "crlf.txt", b"a.bmp\r\nb.bmp\r\ndir\\c.bmp\r\n")
    write("list_file", "no_last_line_end.txt", b"a.bmp\r\nb.bmp")
    write("list_file", "lf_only.txt", b"a.bmp\nb.bmp\n")
    write("list_file", "cr_only.txt", b"a.bmp\rb.bmp\r")
    write("list_file", "empty_lines.txt", b"\r\n\r\na.bmp\r\n\r\n")
    write("list_file", "trailing_spaces.txt", b"  lead.bmp   \r\nlong_name_of_a_picture.bmp\r\n \r\n")
    write("list_file", "nul_bytes.txt", b"a\0b.bmp\r\n\0\r\n")
    write("list_file", "cr_cr_lf.txt", b"a.bmp\r\r\nb\r\n\n")
    write("list_file", "empty.txt", b"")


def frame(mode, width, height, body, rect=None):
    head = bytes((mode,)) + struct.pack("<hh", width, height)
    if rect is not None:
        head += struct.pack("<hhhh", *rect)
    return head + body


def frame_corpus():
    names = ("yuv420p", "yuv420sp", "yuv422p", "cbycry")
    for layout, name in enumerate(names):
        w, h = 6, 4
        size = w * h * 3 // 2 if layout < 2 else w * h * 2
        write("camera_frame", name + "_colour.raw", frame(layout, w, h, pixels(size, layout)))
        write("camera_frame", name + "_grey.raw", frame(layout | 4, w, h, pixels(size, layout + 4)))
        write("camera_frame", name + "_rect.raw", frame(layout | 8, w, h, pixels(size, layout + 8), (2, 5, 0, 1)))
        write("camera_frame", name + "_padded.raw", frame(layout | 16 | 4 | 8, 8, 6, b"", (1, 6, 1, 4)))
    write("camera_frame", "yuv422p_odd_height.raw", frame(2, 4, 3, pixels(24, 9)))
    write("camera_frame", "cbycry_odd_width.raw", frame(3, 3, 2, pixels(12, 10)))


def options_corpus():
    lines = {
        "convert.txt": ["in.yuv420p", "out.bmp", "--width", "640", "--height=480", "--rect", "0,9,0,9"],
        "flags.txt": ["in.png", "-o", "out.png", "--sobel", "--json"],
        "two_of.txt": ["a.bmp", "--sobel", "--roberts"],
        "numbers.txt": ["a", "b", "--angle", "-12.5e1", "--center=3,4", "--width", "-2147483648"],
        "bad.txt": ["--width", "12x", "--rect", "1,,2,3", "--json=1"],
        "missing_value.txt": ["a.bmp", "--threshold"],
    }
    for name, words in lines.items():
        write("options", name, "\n".join(words).encode())


def loader_corpus():
    for name in ("colour.png", "grey.png", "colour_palette.png", "photo_grey.jpg", "colour_pal16.bmp",
                 "grey_topdown.bmp", "colour.bmp", "truncated.png"):
        shutil.copyfile(os.path.join(DATA, name), os.path.join(HERE, "corpus", "image_loader", name))


if __name__ == "__main__":
    os.makedirs(os.path.join(HERE, "corpus", "image_loader"), exist_ok=True)
    bmp_corpus()
    list_corpus()
    frame_corpus()
    options_corpus()
    loader_corpus()
