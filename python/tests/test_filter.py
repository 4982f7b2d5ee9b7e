"""qel.filter against plain numpy references, the refusals, and concurrent use from threads."""

import threading

import numpy as np
import pytest

import qel
from conftest import expect_image_argument_errors, random_bgr, random_grey

F = qel.filter


def window_reduce(image, reduce, dx, dy):
    """reduce over columns x-dx..x+dx and rows y-dy..y+dy, clipped at the borders."""
    h, w = image.shape
    out = np.empty_like(image)
    for y in range(h):
        for x in range(w):
            out[y, x] = reduce(image[max(y - dy, 0):y + dy + 1, max(x - dx, 0):x + dx + 1])
    return out


@pytest.mark.parametrize("function, reduce, dx, dy", [
    (F.gry_img_max_filter3x_in_row, np.max, 1, 0), (F.gry_img_min_filter3x_in_row, np.min, 1, 0),
    (F.gry_img_max_filter5x_in_row, np.max, 2, 0), (F.gry_img_min_filter5x_in_row, np.min, 2, 0),
    (F.gry_img_max_filter3x_in_col, np.max, 0, 1), (F.gry_img_min_filter3x_in_col, np.min, 0, 1),
    (F.gry_img_max_filter5x_in_col, np.max, 0, 2), (F.gry_img_min_filter5x_in_col, np.min, 0, 2),
])
def test_rank_filters_match_a_clipped_window(function, reduce, dx, dy):
    image = random_grey(11, 13, seed=dx * 10 + dy)
    expected = window_reduce(image, reduce, dx, dy)
    np.testing.assert_array_equal(function(image), expected)
    function(image, out=image)  # these may work in place
    np.testing.assert_array_equal(image, expected)


def test_median_boundary0_is_the_window_median_inside():
    image = random_grey(12, 14, seed=1)
    out = F.gry_img_median_boundary0(image, 1, 2)
    expected = window_reduce(image, lambda w: int(np.median(w)), 1, 2)
    np.testing.assert_array_equal(out[2:-2, 1:-1], expected[2:-2, 1:-1])
    assert out[:2].sum() == 0 and out[:, 0].sum() == 0


def test_average_filters():
    image = random_grey(16, 18, seed=2)
    plain = F.gry_average_filter(image, 2, 1)
    assert plain[0, 0] == image[0, 0]  # a corner keeps its value
    exact = image[4:7, 3:8].astype(int).sum()
    assert plain[5, 5] in (exact // 15, exact // 15 - 1)
    np.testing.assert_array_equal(F.gry_average_filter_fast(image, 2, 1), plain)
    colour = random_bgr(8, 9, seed=3)
    by_channel = np.stack([F.gry_average_filter(colour[..., c].copy(), 1, 1) for c in range(3)], axis=2)
    np.testing.assert_array_equal(F.rgb_average_filter(colour, 1, 1), by_channel)
    flat = np.full((9, 11), 77, np.uint8)
    assert set(np.unique(F.gry_average_filter_by_x(flat, 2))) <= {76, 77}


def test_average_refusals_raise_and_write_nothing():
    out = np.full((3, 3), 5, np.uint8)
    with pytest.raises(ValueError, match="refused: the width is above 4096 or the window area"):
        F.gry_average_filter_fast(random_grey(3, 3), 64, 63, out=out)
    assert (out == 5).all()
    with pytest.raises(ValueError, match="refused: the width is above 4096"):
        F.gry_average_filter_fast_non_boundary(random_grey(1, 4097), 1, 1)


def test_deviation_rows_and_columns():
    image = random_grey(10, 12, seed=4)
    cols = F.gry_img_col_dev100(image, 2, 8, 1, 7)
    expected = (image[1:8, 2:9].astype(float).std(axis=0) * 100).astype(int)
    assert np.abs(cols[2:9] - expected).max() <= 1 and cols[:2].sum() == 0 and cols[9:].sum() == 0
    rows = F.gry_img_row_dev_dev(image, 0, 11, 0, 9)
    block = image.astype(np.int64)
    np.testing.assert_array_equal(rows, 12 * (block ** 2).sum(axis=1) - block.sum(axis=1) ** 2)
    delta, noise = F.estimate_noise_delta(np.full((6, 6), 40, np.uint8))
    assert delta == 0.0 and noise.max() == 0


def test_argument_errors_name_the_argument():
    image = random_grey(8, 8)
    expect_image_argument_errors(F.gry_average_filter, image, 1, 1)
    with pytest.raises(TypeError, match="'half_x' must be an int, got float"):
        F.gry_average_filter(image, 1.5, 1)
    with pytest.raises(TypeError, match="missing required argument 'half_y'"):
        F.gry_average_filter(image, 1)
    with pytest.raises(TypeError, match="unexpected keyword argument 'radius'"):
        F.gry_average_filter(image, 1, 1, radius=2)
    with pytest.raises(ValueError, match="'out' must not share memory with 'src'"):
        F.gry_average_filter(image, 1, 1, out=image)
    with pytest.raises(ValueError, match="'out' must have shape"):
        F.gry_average_filter(image, 1, 1, out=np.empty((8, 9), np.uint8))
    with pytest.raises(ValueError, match="writable"):
        frozen = np.empty((8, 8), np.uint8)
        frozen.flags.writeable = False
        F.gry_average_filter(image, 1, 1, out=frozen)
    assert "C++: QelGryAverageFilter" in F.gry_average_filter.__doc__


def test_four_threads_filter_at_once():
    images = [random_grey(300, 400, seed=s) for s in range(4)]
    expected = [(F.gry_fast_median_filter(i, 3, 3), F.gry_average_filter(i, 5, 5)) for i in images]
    results = [None] * 4

    def work(k):
        for _ in range(5):
            results[k] = (F.gry_fast_median_filter(images[k], 3, 3), F.gry_average_filter(images[k], 5, 5))

    threads = [threading.Thread(target=work, args=(k,)) for k in range(4)]
    for t in threads:
        t.start()
    for t in threads:
        t.join()
    for got, want in zip(results, expected):
        np.testing.assert_array_equal(got[0], want[0])
        np.testing.assert_array_equal(got[1], want[1])
