"""qel.misc: image arithmetic and rectangle statistics against numpy, split-and-merge regions as
objects, one-dimensional utilities against plain references and their refusals."""

import numpy as np
import pytest
from hypothesis import given, settings, strategies as st

import qel
from conftest import expect_image_argument_errors, random_bgr, random_grey

m = qel.misc


@pytest.mark.parametrize("make", [random_grey, random_bgr])
def test_logic_and_differences_are_numpys(make):
    a, b = make(5, 7, seed=1), make(5, 7, seed=2)
    assert np.array_equal(m.img1_and_img2_to1(a, b), a & b)
    assert np.array_equal(m.img1_or_img2_to_res(a, b), a | b)
    assert np.array_equal(m.img1_xor_img2_to_res(a, b, out=a), a) and np.array_equal(a, make(5, 7, 1) ^ b)
    a = make(5, 7, seed=1)
    wide_a, wide_b = a.astype(int), b.astype(int)
    assert np.array_equal(m.img1_substract_img2(a, b), np.maximum(wide_a - wide_b, 0))
    largest = np.abs(wide_a - wide_b) if a.ndim == 2 else np.abs(wide_a - wide_b).max(axis=2)
    res, hist = m.difference_img12_histogram(a, b)
    assert np.array_equal(res, largest) and np.array_equal(hist, np.bincount(largest.ravel(), minlength=256))
    acc_max, acc_min = m.remain_max_min_gry(a, b, b)
    assert np.array_equal(acc_max, np.maximum(a, b)) and np.array_equal(acc_min, np.minimum(a, b))


def test_in_place_differences_write_the_image_the_library_names():
    a, b = random_grey(4, 4, seed=1), random_grey(4, 4, seed=2)
    wide_a, wide_b = a.astype(int), b.astype(int)
    assert np.array_equal(m.img1_difference2to1(a, b), np.abs(wide_a - wide_b))
    assert np.array_equal(m.img1_substract2to1(a, b), np.maximum(wide_a - wide_b, 0))
    assert np.array_equal(m.img1_substract2to2(a, b, out=b), np.maximum(wide_a - wide_b, 0))
    assert np.array_equal(b, np.maximum(wide_a - wide_b, 0))
    with pytest.raises(ValueError, match="'b' must be 4 x 4"):
        m.img1_and_img2_to1(a, random_grey(4, 5))


def test_integral_image_and_rectangle_means():
    image = random_grey(6, 9)
    assert np.array_equal(m.do_sum_gry_img(image), image.astype(np.int64).cumsum(0).cumsum(1))
    assert m.gry_rect_avr(image, 2, 5, 1, 3) == image[1:4, 2:6].sum() // 12
    assert m.gry_min_max_in_rect(image, 0, 8, 0, 5) == (image.min(), image.max())
    inner, ring = image[2:4, 3:6].astype(int), image[1:5, 2:7].astype(int)
    expected = inner.sum() // inner.size - (ring.sum() - inner.sum()) // (ring.size - inner.size)
    assert m.center_block_mean_dif(image, 3, 5, 2, 3, 1) == expected
    with pytest.raises(ValueError, match="must be non-empty and lie inside the 9 x 6 image"):
        m.gry_rect_avr(image, 2, 9, 1, 3)
    expect_image_argument_errors(m.gry_rect_avr, image, 0, 1, 0, 1, name="img")


def test_rectangle_difference_leaves_out_the_last_row_and_column():
    a, b = random_grey(6, 8, seed=1), random_grey(6, 8, seed=2)
    diff = np.abs(a[1:4, 2:7].astype(int) - b[0:3, 1:6].astype(int))
    assert m.img_difference_in_rect(a, b, (2, 1, 7, 4), (1, 0, 6, 3)) == diff.sum() // diff.size
    assert m.img_difference_in_rect(a, b, (2, 1, 2, 4), (1, 0, 6, 3)) == 0
    with pytest.raises(ValueError, match="'r2'"):
        m.img_difference_in_rect(a, b, (2, 1, 7, 4), (4, 0, 9, 3))


def test_masked_colour_mean_and_point_box():
    rgb = np.zeros((2, 4, 3), np.uint8)
    rgb[0, 0] = (30, 20, 10)  # B, G, R
    mask = np.array([[0, 0, 255, 0], [0, 0, 0, 0]], np.uint8)
    # The one counted pixel takes its colour from the first pixel of the rectangle's row.
    assert m.rgb_rect_avr(rgb, mask, 0, 3, 0, 1) == (10, 20, 30)
    assert m.points_rect(np.array([3, -1, 4]), np.array([1, 5, 9])) == (-1, 4, 1, 9)


def test_split_and_merge_lists_regions_and_leaves_the_argument_alone():
    image = np.full((40, 40), 255, np.uint8)
    image[5:35, 5:35] = 155
    image[12:28, 12:28] = 55
    before = image.copy()
    regions = m.merge_split(image, 20, 10, 0.5)
    assert np.array_equal(image, before) and regions
    areas = [r.area for r in regions]
    assert areas == sorted(areas)
    for r in regions:
        assert r.chain.dtype == np.uint8 and qel.contour.area_and_perimeter(r.chain) == (r.area, r.perimeter)
    assert m.merge_split(np.full((8, 8), 9, np.uint8), 4, 10, 0.5) == []


@settings(max_examples=80, deadline=None)
@given(st.lists(st.integers(-1000, 1000), max_size=30), st.integers(-4, 4))
def test_moving_mean_against_a_plain_window(data, half):
    values = np.array(data, np.int64)
    out = m.qel1d_average_filter(values, half)
    size = 2 * abs(half) + 1
    if len(values) < size:
        assert not out.any()
        return
    full = [int(np.trunc(values[i:i + size].sum() / size)) for i in range(len(values) - size + 1)]
    h = abs(half)
    assert list(out) == [full[0]] * h + full + [full[-1]] * h


def test_one_dimensional_statistics():
    data = np.array([3, 9, 1, 9, 4])
    assert m.data_avr_and_dev_and_return_max(data) == (9, pytest.approx(5.2), pytest.approx(np.std(data)))
    assert m.data_avr_and_dev_and_return_sum(data)[0] == 26
    assert m.data_avr_and_dif(data) == pytest.approx((5.2, np.abs(data - 5.2).mean()))
    assert (m.data_max_data_pos(data), m.data_max_data_value(data)) == (1, 9)
    assert m.data_max_data_pos(np.array([], np.int32)) == 0
    assert m.bin1d_median_filter(np.array([0, 1, 1, 0, 1, 0, 0]), 1).tolist() == [1, 1, 1, 1, 0, 0, 0]
    assert m.data_max_avr_and_pos_in_moving_window(data, 2) == (6.5, 4)  # window 3..4, pos = 3 + 2 // 2
    assert m.data_max_dif_and_pos_in_moving_window(data.astype(float), 2) == (8.0, 2)  # the first of two
    with pytest.raises(ValueError, match="refused: no window"):
        m.data_max_dev_and_pos_in_moving_window(data.astype(float), 6)


def test_resampling_peaks_and_deletion_by_weight():
    out = m.data_linear_interpolattion(np.array([0, 10, 20]), 5)
    assert out.tolist() == [0, 5, 10, 15, 20]
    with pytest.raises(ValueError, match="at least 2"):
        m.data_linear_interpolattion(np.array([1]), 5)
    values, positions = m.data_find_peaks(np.array([0, 1, 5, 1, 0, 3, 0.0]), 1, 3)
    assert values.tolist() == [5.0, 3.0, 0.0] and positions.tolist() == [2, 5, 0]
    with pytest.raises(ValueError, match="4096"):
        m.data_find_peaks(np.zeros(4097), 1, 1)
    count, kept, weights = m.p_data_delete_by_weight_return_num(np.arange(5), np.array([1, 5, 2, 7, 3]), 2, 5)
    assert count == 3 and kept.tolist() == [1, 2, 4, 0, 0] and weights.tolist() == [5, 2, 3, 0, 0]
