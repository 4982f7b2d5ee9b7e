"""qel.draw: copies or in-place drawing, colours stored B, G, R, outlines against numpy, the drawing
quirks callers rely on, digits and font text."""

import os
import subprocess
import sys
from pathlib import Path

import numpy as np
import pytest
from hypothesis import given, settings, strategies as st

import qel

d = qel.draw


def blank(height=20, width=30, colour=False):
    return np.zeros((height, width, 3) if colour else (height, width), np.uint8)


def test_drawing_returns_a_copy_unless_out_is_the_image():
    image = blank()
    drawn = d.gry_line(image, 0, 5, 29, 5, 200)
    assert not image.any() and (drawn[5] == 200).all() and drawn.sum() == 200 * 30
    assert d.gry_line(image, 0, 5, 29, 5, 200, out=image) is image and (image[5] == 200).all()


def test_slanted_lines_skip_the_left_ends_column():
    drawn = d.gry_line(blank(), 0, 0, 3, 3, 9)
    assert drawn[0, 0] == 0 and drawn[3, 3] == 9 and drawn[:, 0].sum() == 0


def test_colours_are_given_red_green_blue_and_stored_blue_green_red():
    drawn = d.rgb_line(blank(colour=True), 0, 1, 29, 1, 10, 20, 30)
    assert list(drawn[1, 4]) == [30, 20, 10]
    assert list(d.draw_rect(blank(colour=True), 1, 5, 1, 5, red=255)[1, 3]) == [0, 0, 255]
    assert d.draw_rect(blank(), 1, 5, 1, 5, red=255, grey=7)[1, 3] == 7


@settings(max_examples=60, deadline=None)
@given(st.integers(-5, 35), st.integers(-5, 35), st.integers(-5, 25), st.integers(-5, 25))
def test_rectangle_outlines_are_clamped_and_ordered(x1, x2, y1, y2):
    drawn = d.draw_gry_rect(blank(), x1, x2, y1, y2, 255)
    left, right = sorted(np.clip([x1, x2], 0, 29))
    top, bottom = sorted(np.clip([y1, y2], 0, 19))
    expected = blank()
    expected[[top, bottom], left:right + 1] = 255
    expected[top:bottom + 1, [left, right]] = 255
    assert np.array_equal(drawn, expected)


def test_fills_clip_but_do_not_reorder():
    assert not d.fill_gry_rect(blank(), 9, 2, 0, 5, 255).any()
    filled = d.fill_rgb_rect(blank(colour=True), -4, 2, 18, 40, 1, 2, 3)
    assert (filled[18:, :3] == [3, 2, 1]).all() and filled.sum() == 2 * 3 * 6
    changed = d.change_color_on_rect(np.full((6, 6), 5, np.uint8), 1, 4, 1, 4, 5, 8)
    assert (changed == 8).sum() == 12 and changed[2, 2] == 5


def test_rgb_cross_puts_its_horizontal_bar_on_row_x():
    drawn = d.draw_rgb_cross(blank(colour=True), 3, 10, 4, 255, 255, 255)
    assert drawn[3, 1:6].all() and not drawn[10, 0].any() and drawn[8:13, 3].all()


def test_circles_are_chords_mirrored_about_the_centre_row_and_polygons_closed():
    circle = d.draw_circle(blank(31, 31), 15, 15, 9, 6, 255)
    # Mirrored about the centre row; not about the centre column, since a chord skips its left end.
    assert np.array_equal(circle, circle[::-1])
    assert circle[15, 24] == 255 and circle[9, 15] == 255 and circle[21, 15] == 255 and circle[15, 15] == 0
    triangle = d.draw_polygon(blank(), np.array([2, 20, 2]), np.array([2, 2, 15]), grey=9)
    assert triangle[2, 5] == 9 and triangle[10, 2] == 9 and triangle[15, 2] == 9
    assert not d.draw_polygon(blank(), np.array([2]), np.array([2])).any()


def test_digits_move_the_pen_and_skip_other_characters():
    x, drawn = d.set_number_string2gry_img(blank(), 1, 2, 2, 255, "1a2")
    assert x == 1 + 2 * (8 + 2) and drawn[2:11].any() and not drawn[11:].any()
    x, doubled = d.set_number_string20x16gry_img(blank(40, 60), 0, 0, 0, 10, 200, "7")
    assert x == 16 and set(np.unique(doubled[:18, :16])) == {10, 200}
    _, colour = d.set_number_string2rgb_img(blank(colour=True), 0, 0, 0, 1, 2, 3, "8")
    assert {tuple(p) for p in colour[:9, :8].reshape(-1, 3)} == {(0, 0, 0), (1, 2, 3)}


def test_full_width_text_and_the_mark():
    assert d.char2wide("A0") == b"\xa3\xc1\xa3\xb0"
    logo = d.set_private_logo(blank(colour=True), 0, 0)
    assert set(np.unique(logo[..., 2])) == {0, 250} and not logo[..., :2].any()
    assert d.set_private_logo(blank(), 0, 0).max() == 250


def build_tree_font():
    """The font the build generates, when the package runs from a build tree."""
    return Path(qel.__file__).resolve().parents[2] / "font" / "hzk16.dat"


def test_font_text_draws_or_is_refused_without_touching_out(monkeypatch):
    font = build_tree_font()
    if not font.is_file():
        pytest.skip("no hzk16.dat in the build tree")
    monkeypatch.setenv("QEL_FONT_FILE", str(font))
    drawn = d.draw_chinese_string16x16(blank(), 0, 0, 0, 0, 255, "中")
    assert drawn[:16, :16].any() and not drawn[16:].any()
    assert np.array_equal(d.draw_chinese_string16x16(blank(), 0, 0, 0, 0, 255, "中".encode("gb2312")), drawn)
    image = blank()
    with pytest.raises(ValueError, match="refused"):
        d.draw_chinese_string16x16(image, 0, 5, 0, 0, 255, "中", out=image)
    assert not image.any()
    with pytest.raises(ValueError, match="GB2312"):
        d.draw_chinese_string32x32(blank(40, 40), 0, 0, 0, 0, 255, "\u20ac")


def test_the_package_carries_its_font():
    """pip copies the font beside the module; without QEL_FONT_FILE the package points the library at it."""
    if not build_tree_font().is_file():
        pytest.skip("no hzk16.dat in the build tree")
    packaged = Path(qel.__file__).resolve().parent / "hzk16.dat"
    assert packaged.read_bytes() == build_tree_font().read_bytes()
    env = {k: v for k, v in os.environ.items() if k != "QEL_FONT_FILE"}
    script = ("import os, numpy as np, qel.draw as d; "
              "print(os.environ['QEL_FONT_FILE']); "
              "print(int(d.draw_chinese_string16x16(np.zeros((32, 32), np.uint8), 0, 0, 0, 0, 255, '中').any()))")
    lines = subprocess.run([sys.executable, "-c", script], env=env, check=True,
                           capture_output=True, text=True).stdout.split()
    assert lines == [str(packaged), "1"]
