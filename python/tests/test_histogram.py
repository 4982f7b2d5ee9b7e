"""qel.histogram: histograms and statistics against numpy, thresholds, shaping, corrections."""

import numpy as np
import pytest
from hypothesis import given, settings, strategies as st
from hypothesis.extra import numpy as hnp

import qel
from conftest import expect_image_argument_errors, random_grey

H = qel.histogram


def test_histograms_count_like_numpy():
    image = random_grey(15, 17)
    np.testing.assert_array_equal(H.get_histogram(image), np.bincount(image.ravel(), minlength=256))
    assert H.get_histogram(image).dtype == np.int32
    np.testing.assert_array_equal(H.get_histogram_in_rect(image, 2, 9, 3, 11),
                                  np.bincount(image[3:12, 2:10].ravel(), minlength=256))
    mask = (random_grey(15, 17, seed=9) > 100).astype(np.uint8)
    np.testing.assert_array_equal(H.get_histogram_by_masked(image, mask, 0, 16, 0, 14),
                                  np.bincount(image[mask > 0], minlength=256))
    left = np.arange(15) % 5
    right = left + 7
    expected = np.bincount(np.concatenate([image[y, left[y]:right[y]] for y in range(4, 10)]), minlength=256)
    np.testing.assert_array_equal(H.get_histogram_by_limited(image, 4, 9, left, right), expected)
    with pytest.raises(ValueError, match="'left' and 'right' must hold columns"):
        H.get_histogram_by_limited(image, 4, 9, left, right + 20)
    expect_image_argument_errors(H.get_histogram, image, name="image")


def test_statistics_agree_with_numpy():
    image = random_grey(20, 20, seed=1)
    count, mean, deviation = H.get_image_avr_and_dev(image)
    assert count == 400 and mean == pytest.approx(image.mean()) and deviation == pytest.approx(image.std())
    hist = H.get_histogram(image)
    assert H.get_image_avr_and_dev_from_hist(hist) == pytest.approx((400, image.mean(), image.std()))
    assert H.get_most_in_histogram(hist) == (int(np.argmax(hist)), int(hist.max()))
    # An isolated peak at p gives p + 1; a single pixel in bin 10 has median 11.
    single = np.zeros(256, np.int64)
    single[10] = 1
    assert H.get_peak_in_histogram(single) == 11 and H.get_median_in_histogram(single) == 11
    with pytest.raises(ValueError, match="'hist' must not be empty"):
        H.get_image_avr_and_dif(np.zeros(256, np.int32))
    with pytest.raises(ValueError, match="256 values"):
        H.get_median_in_histogram(np.ones(255, np.int32))
    with pytest.raises(TypeError, match="integer"):
        H.get_median_in_histogram(np.ones(256))


def test_otsu_leaves_out_the_last_populated_level():
    two = np.zeros(256, np.int32)
    two[[50, 200]] = 100
    assert H.get_otsu_threshold(two) == 0
    three = np.zeros(256, np.int32)
    three[[30, 40, 200]] = [100, 100, 50]
    assert H.get_otsu_threshold(three) == 30
    with pytest.raises(ValueError, match="'bin_count' must lie in 0..256"):
        H.get_otsu_threshold(three, 300)


@settings(max_examples=25, deadline=None)
@given(hnp.arrays(np.uint8, st.tuples(st.integers(1, 12), st.integers(1, 12))), st.integers(-5, 300))
def test_threshold_is_the_comparison(image, t):
    expected = np.where(image.astype(int) >= min(t, 256), 255, 0)
    np.testing.assert_array_equal(H.threshold(image, t), expected)
    assert H.get_histogram(image).sum() == image.size


def test_threshold_variants():
    image = random_grey(16, 20, seed=2)
    copy = image.copy()
    H.threshold(copy, 128, out=copy)  # out may be the image
    np.testing.assert_array_equal(copy, H.threshold(image, 128))
    t, binary = H.threshold_by_ratio(image, 0.25)
    np.testing.assert_array_equal(binary, H.threshold(image, t))
    assert abs((binary > 0).mean() - 0.25) < 0.05
    in_rect = H.threshold_in_rect(image, 2, 5, 3, 4, 100)
    assert (in_rect[3:5, 2:6] == H.threshold(image, 100)[3:5, 2:6]).all() and in_rect.sum() == in_rect[3:5, 2:6].sum()
    small = H.threshold_and_shrink(image, 90, 3)
    assert small.shape == (6, 7)
    np.testing.assert_array_equal(small, H.threshold(image[::3, ::3].copy(), 90))
    np.testing.assert_array_equal(H.threshold2v1v2(image, 100, 7, 9), np.where(image < 100, 7, 9))
    # The in-place overloads give what the out= forms give.
    np.testing.assert_array_equal(H.threshold_in_place(image, 128), H.threshold(image, 128))
    np.testing.assert_array_equal(H.threshold_in_rect_in_place(image, 2, 5, 3, 4, 100)[3:5, 2:6], in_rect[3:5, 2:6])
    assert H.threshold_in_rect_in_place(image, 2, 5, 3, 4, 100)[0, 0] == image[0, 0]
    t2, binary2 = H.threshold_by_ratio_in_place(image, 0.25)
    assert t2 == t and np.array_equal(binary2, binary)
    inverted = image.copy()
    H.invert_gry_value_in_place(inverted, out=inverted)
    np.testing.assert_array_equal(inverted, H.invert_gry_value(image))


def test_in_place_copies_leave_the_argument_alone():
    image = random_grey(10, 10, seed=3)
    before = image.copy()
    equalised = H.histogram_equalize_fast(image)
    np.testing.assert_array_equal(image, before)
    assert equalised.max() == 255 and not np.array_equal(equalised, image)
    target = np.empty_like(image)
    assert H.histogram_equalize_fast(image, out=target) is target
    np.testing.assert_array_equal(target, equalised)
    H.histogram_equalize_fast(image, out=image)
    np.testing.assert_array_equal(image, equalised)
    with pytest.raises(ValueError, match="'out' must have the shape of 'image'"):
        H.histogram_equalize_fast(before, out=np.empty((3, 3), np.uint8))


def test_corrections():
    image = random_grey(9, 11, seed=4)
    np.testing.assert_array_equal(H.invert_gry_value(image), 255 - image)
    freed = H.change0and250_plus_pixels(np.array([[0, 1, 250, 251, 255]], np.uint8))
    np.testing.assert_array_equal(freed, [[1, 1, 250, 250, 250]])
    marked = H.set_pixels_to255(np.array([[5, 6, 5], [5, 5, 6]], np.uint8), 1, 2, 0, 1, 5)
    np.testing.assert_array_equal(marked, [[5, 0, 255], [5, 255, 0]])
    assert set(np.unique(H.gry_img4_bit(image))) <= set(range(16))
    mean, evened = H.light_corret_per_col(image)
    assert mean == int(image.mean()) and evened.max() <= 250
    np.testing.assert_array_equal(H.ostrum2008_add_noise(image, 0.0, 0), image)


def test_shaping_and_peaks():
    hist = np.zeros(256, np.int32)
    hist[[60, 61, 62]] = [10, 30, 10]
    hist[[180, 181]] = [5, 20]
    assert H.find_two_peaks(hist, 50) == (61, 181)
    assert H.find_two_peaks(np.zeros(256, np.int32), 10) == (-1, -1)
    smooth = H.histogram_average_smooth(hist, 1)
    assert smooth[61] == (10 + 30 + 10) // 3
    centres = H.cluster_histogram(hist, 2, 0.1)
    assert sorted(np.round(centres)) == [61, 181]
    with pytest.raises(ValueError, match="refused: k is below 2"):
        H.cluster_histogram(hist, 1, 0.1)
    n, order = H.histogram_order(hist)
    assert n == 5 and order[0] == 61
    marks = H.set_peak_to100_valley_to_100(np.array([1, 5, 2, 7, 1]))
    np.testing.assert_array_equal(marks, [-100, 100, -100, 100, -100])
