"""qel.geometry: quarter turns, flips, shifts and pastes against numpy, resizing against block
arithmetic, projections against sums, round trips and the documented quirks."""

import numpy as np
import pytest
from hypothesis import given, settings, strategies as st

import qel
from conftest import expect_image_argument_errors, random_bgr, random_grey

g = qel.geometry


@settings(max_examples=40, deadline=None)
@given(st.integers(1, 9), st.integers(1, 9), st.booleans(), st.integers(0, 1000))
def test_quarter_turns_are_numpys_and_undo_each_other(height, width, colour, seed):
    image = random_bgr(height, width, seed) if colour else random_grey(height, width, seed)
    ccs = g.img_rotate90degree_ccs(image)
    assert np.array_equal(ccs, np.rot90(image, 1))
    assert np.array_equal(g.img_rotate90degree_cs(ccs), image)
    assert np.array_equal(g.flip_vertical(image), image[::-1])
    if not colour:
        assert np.array_equal(g.reverse_img(image), image[::-1, ::-1])
        assert np.array_equal(g.flip_horizontal(image), image[:, ::-1])


def test_four_byte_turns_and_in_place_flips():
    image = np.arange(2 * 3 * 4, dtype=np.uint8).reshape(2, 3, 4)
    assert np.array_equal(g.rgb32rotate90degree(image, True), np.rot90(image, -1))
    assert np.array_equal(g.rgb32rotate90degree(image, False), np.rot90(image, 1))
    with pytest.raises(ValueError, match=r"\(H, W, 4\)"):
        g.rgb32rotate90degree(image[..., :3].copy(), True)
    grey = random_grey(5, 4)
    expected = grey[::-1].copy()
    assert g.flip_vertical_in_place(grey, out=grey) is grey and np.array_equal(grey, expected)


def test_rotation_by_fixed_point_factors_is_not_an_exact_quarter_turn():
    assert g.rotate_img_by_ccs(np.zeros((50, 100), np.uint8), 90).shape == (99, 50)
    assert np.array_equal(g.rotate_img_by_ccs(random_grey(6, 7), 0), random_grey(6, 7))


def test_shift_moves_rows_and_zeroes_what_it_vacates():
    image = random_grey(6, 8)
    shifted = g.image_shift(image, 2, 0)
    assert np.array_equal(shifted[:, 2:], image[:, :-2]) and not shifted[:, :2].any()
    down = g.image_shift(image, 0, 2, out=np.full_like(image, 7))
    assert np.array_equal(down[2:], image[:-2]) and (down[:2] == 7).all()  # vacated rows keep out's pixels
    diff, aligned, dx, dy = g.shift_img2based_img1(image, shifted, 3, 0, (0, 0, 7, 5))
    assert (diff, dx, dy) == (0, 2, 0) and np.array_equal(aligned[:, :6], image[:, :6])


def test_paste_clips_at_every_side():
    small = random_grey(3, 4, seed=1)
    big = np.zeros((5, 5), np.uint8)
    pasted = g.paste_gry_img2res_img(small, big, -1, 3)
    assert np.array_equal(pasted[3:5, 0:3], small[0:2, 1:4]) and pasted.sum() == small[0:2, 1:4].sum()
    colour = g.paste_gry_img2rgb_img(small, np.zeros((5, 5, 3), np.uint8), 0, 0)
    assert np.array_equal(colour[:3, :4], np.repeat(small[..., None], 3, axis=2))


def block_mean(image, step_y, step_x):
    h, w = image.shape[0] // step_y, image.shape[1] // step_x
    blocks = image[: h * step_y, : w * step_x].reshape(h, step_y, w, step_x, *image.shape[2:]).astype(np.int64)
    return blocks.sum(axis=(1, 3))


def test_reductions_against_block_arithmetic():
    image = random_grey(9, 11)
    assert np.array_equal(g.shrink_gry_img2x2by_avr(image), block_mean(image, 2, 2) >> 2)
    assert np.array_equal(g.shrink_gry_img4x4by_avr(image), block_mean(image, 4, 4) >> 4)
    assert np.array_equal(g.shrink_gry_img2x2by_extract(image), image[0:8:2, 0:10:2])
    assert np.array_equal(g.shrink_gry_img_by_extract(image, 3, 2), image[0:8:2, 0:9:3])
    colour = random_bgr(9, 11)
    assert np.array_equal(g.shrink_img_by_avr(colour, 3, 2), block_mean(colour, 2, 3) // 6)
    with pytest.raises(ValueError, match="'step_x' must be at least 1"):
        g.shrink_gry_img_by_extract(image, 0, 2)


def test_zoom_then_extract_is_the_identity_and_resizes_to_the_same_size_copy():
    image = random_grey(7, 5)
    assert np.array_equal(g.shrink_gry_img2x2by_extract(g.zoom_gry_img2x2(image)), image)
    assert np.array_equal(g.gry_img_bilinear_interpolattion_fast(image, 5, 7), image)
    assert np.array_equal(g.gry_img_bilinear_interpolattion_std(image, 5, 7), image)
    assert g.rgb_img_bilinear_interpolattion_fast(random_bgr(4, 4), 9, 3).shape == (3, 9, 3)
    assert g.copy_rect_from_rotate_ccs(image, 1, 2, 0.0, 3, 4).shape == (4, 3)
    filled, out = g.copy_rect_from_rotate_ccs_fill(image, 3, 5, 0.0, 9, 4, 4)
    assert filled and out[3, 3] == 9
    expect_image_argument_errors(g.zoom_gry_img2x2, image)


def test_projections_are_sums():
    image = random_grey(6, 7)
    prj_x, prj_y = g.gry_img_prj_xy(image)
    assert np.array_equal(prj_x, image.sum(axis=0)) and np.array_equal(prj_y, image.sum(axis=1))
    rect_x, _ = g.bin_img_prj_xy_in_rect(image, 1, 3, 2, 4)
    assert np.array_equal(rect_x[1:4], (image[2:5, 1:4] != 0).sum(axis=0)) and not rect_x[4:].any()
    colour = random_bgr(4, 5)
    r, gr, b = g.rgb_img_prj2x(colour)
    assert np.array_equal(r, colour[..., 2].sum(axis=0)) and np.array_equal(b, colour[..., 0].sum(axis=0))
    weighted = colour.astype(np.int64)
    expected = (weighted[..., 0].sum(0) + weighted[..., 1].sum(0) + 2 * weighted[..., 2].sum(0)) >> 2
    assert np.array_equal(g.rgb_img_prj2x_weighted(colour), expected)


def test_bar_charts():
    bars = g.draw_prj_x(np.zeros((10, 4), np.uint8), np.array([0, 1, 2, 8]), 255)
    heights = (bars == 255).sum(axis=0)
    assert heights[0] == 0 and list(heights) == sorted(heights) and heights[3] <= 9
    assert not g.draw_prj_y_min_v0(np.zeros((4, 10), np.uint8), np.array([0, 0, 0, 0]), 9)[:, -1].any()
    with pytest.raises(ValueError, match="range of indices of 'prj'"):
        g.draw_prj_x_range(np.zeros((10, 4), np.uint8), np.array([1, 2]), 0, 2, 255)


def test_rectangle_adjustment_to_a_multiple_of_four():
    # Width 18 becomes 16 around the centre 11 (left of the image's middle); height 18 >= 20 - 2 is cut.
    assert g.rect_resize_x4(100, 50, 20, 3, 20, 3, 20) == (4, 19, 2, 20)
