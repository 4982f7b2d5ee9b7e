"""qel.io: BMP round trips and refusals, frame setters, base names, the list reader, the debug log."""

import os
import pathlib

import numpy as np
import pytest

import qel
from conftest import random_bgr, random_grey


@pytest.mark.parametrize("width", [1, 2, 3, 4, 5, 7])  # every row padding 0..3
def test_bmp_round_trips(tmp_path, width):
    colour = random_bgr(5, width, seed=width)
    grey = random_grey(5, width, seed=width)
    qel.io.write_24bit_img2bmp_file(colour, tmp_path / "c.bmp")
    qel.io.write_8bit_img2bmp_file(grey, str(tmp_path / "g.bmp"))
    qel.io.write_8bit_img2bmp_file_mark_color(grey, tmp_path / "m.bmp")
    back = qel.io.read_24bit_bmp_file2img(tmp_path / "c.bmp")
    assert back.shape == (5, width, 3) and back.dtype == np.uint8
    np.testing.assert_array_equal(back, colour)
    np.testing.assert_array_equal(qel.io.read_8bit_bmp_file2img(tmp_path / "g.bmp"), grey)
    # The marking palette changes colours, not the stored indices.
    np.testing.assert_array_equal(qel.io.read_8bit_bmp_file2img(tmp_path / "m.bmp"), grey)
    assert os.path.getsize(tmp_path / "g.bmp") == 1078 + 5 * ((width + 3) // 4 * 4)


def test_bmp_refusals_raise_value_error(tmp_path):
    with pytest.raises(ValueError, match="refused"):
        qel.io.read_24bit_bmp_file2img(tmp_path / "missing.bmp")
    qel.io.write_24bit_img2bmp_file(random_bgr(6, 6), tmp_path / "c.bmp")
    (tmp_path / "short.bmp").write_bytes((tmp_path / "c.bmp").read_bytes()[:80])
    with pytest.raises(ValueError, match="truncated"):
        qel.io.read_24bit_bmp_file2img(tmp_path / "short.bmp")
    with pytest.raises(ValueError, match="refused: the file could not be created"):
        qel.io.write_8bit_img2bmp_file(random_grey(2, 2), tmp_path / "no" / "such" / "dir.bmp")
    with pytest.raises(TypeError, match="'file_name'"):
        qel.io.write_8bit_img2bmp_file(random_grey(2, 2), 42)
    with pytest.raises(ValueError, match="'image'.*shape"):
        qel.io.write_24bit_img2bmp_file(random_grey(2, 2), tmp_path / "x.bmp")


def test_frame_setters_return_copies_and_keep_the_partial_rgb_frame():
    grey = np.full((4, 5), 9, np.uint8)
    framed = qel.io.set_image_boundary(grey, 200)
    assert (grey == 9).all()  # the argument is left alone
    expected = np.full((4, 5), 200, np.uint8)
    expected[1:-1, 1:-1] = 9
    np.testing.assert_array_equal(framed, expected)
    qel.io.set_image_boundary(grey, 1, out=grey)  # in place
    assert grey[0, 0] == 1 and grey[1, 1] == 9

    colour = np.full((3, 4, 3), 9, np.uint8)
    flat = qel.io.set_rgb_image_boundary(colour, 0).reshape(3, 12)
    # Rows 0 and 2: only the first width (4) bytes; every row: bytes 0 and width - 1 (= 3).
    assert (flat[0, :4] == 0).all() and (flat[0, 4:] == 9).all()
    assert flat[1, 0] == 0 and flat[1, 3] == 0 and flat[1, 11] == 9


def test_file_base_names_split_at_backslashes_only():
    assert qel.io.get_file_nake_name("c:\\images\\part.7.bmp") == "part"
    assert qel.io.get_file_nake_name("dir/sub/name.bmp") == "dir/sub/name"
    assert qel.io.get_file_nake_name(pathlib.PurePosixPath("plain")) == "plain"


def test_list_reader_reads_crlf_lines_and_shares_one_reader(tmp_path):
    listing = tmp_path / "list.txt"
    listing.write_bytes(b"first.bmp  \r\nsecond.bmp\r\nlf-only.bmp\nlast-without-end")
    reader = qel.io.SequenceFiles(listing)
    assert reader.get_file_name(1) == "second.bmp"
    assert reader.get_file_name(5) is None
    assert list(reader) == ["first.bmp", "second.bmp"]
    assert reader.get_next_file_name() is None
    short = qel.io.SequenceFiles(listing, buffer_size=5)  # re-initialises the one reader
    assert short.get_file_name(0) is None  # does not fit with its terminator
    with pytest.raises(ValueError, match="refused"):
        reader.initialize(tmp_path / "missing.txt")
    assert reader.get_file_name(0) == "first.bmp"  # the previous list stays


def test_debug_log_appends_records(tmp_path):
    log = os.environ.get("QEL_DEBUG_LOG")
    if not log:
        pytest.skip("QEL_DEBUG_LOG is set by the CTest run only")
    qel.io.debug_info("python", 7)
    qel.io.debug_info("again", -1)
    assert pathlib.Path(log).read_text().endswith("\npython,7\nagain,-1")
