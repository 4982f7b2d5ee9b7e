"""qel.line: forms and their quirks, intersections, distances against numpy, sampling, fitting against
numpy's least squares, and the two line finders as locked classes."""

import threading

import numpy as np
import pytest
from hypothesis import given, settings, strategies as st

import qel

ln = qel.line


def test_forms_convert_both_ways_and_keep_their_quirks():
    flag, k, b = ln.abc_line2kb_line(1.0, -2.0, 4.0)  # y = x/2 + 2
    assert (flag, k, b) == (0, 0.5, 2.0)
    a2, b2, c2 = ln.kb_line2abc_line(flag, k, b)
    assert np.allclose(np.cross([a2, b2, c2], [1.0, -2.0, 4.0]), 0)
    assert ln.line_kb_equation(5, 0, 5, 10) == (1, 0.0, 5.0)
    # Two points to rho/theta with pi taken as 3.14: the diagonal gives 134, the vertical pair rho -5.
    assert ln.two_points2thro_theta(0, 0, 10, 10)[2] == 134
    assert ln.two_points2thro_theta(5, 0, 5, 10)[1:] == (-5, 0)
    assert ln.qel2p_line_angle_degree2axis_x(0, 0, 10, 10) == pytest.approx(45)
    assert ln.qel2p_line_angle_degree2axis_x(0, 10, 10, 0) == pytest.approx(135)


def test_intersections_or_none_for_parallel_lines():
    assert ln.point_of_intersection(1, 0, -5, 0, 1, -3) == (5.0, 3.0)
    assert ln.point_of_intersection(1, 0, -5, 2, 0, -3) is None
    assert ln.point_of_intersection_kb(0, 1.0, 0.0, 1, 0.0, 4.0) == (4.0, 4.0)
    assert ln.point_of_intersection_thro_theta(7, 0, 3, 90) == pytest.approx((7.0, 3.0))
    assert ln.point_of_intersection_thro_theta(7, 30, 3, 30) is None
    assert ln.get_hough_line_point_x(5, 90, 3) is None


@settings(max_examples=100, deadline=None)
@given(st.lists(st.integers(-1000, 1000), min_size=6, max_size=6))
def test_distances_agree_with_numpy(v):
    x1, y1, x2, y2, x3, y3 = v
    assert ln.dist_between_point12(x1, y1, x2, y2) == pytest.approx(np.hypot(x2 - x1, y2 - y1))
    if (x1, y1) != (x2, y2):
        expected = abs(np.cross([x2 - x1, y2 - y1], [x3 - x1, y3 - y1])) / np.hypot(x2 - x1, y2 - y1)
        assert ln.dist_from_point3to2p_line(x1, y1, x2, y2, x3, y3) == pytest.approx(expected, abs=1e-9)


def test_intervals_and_rectangles():
    assert ln.line_overlap_len(0, 5, 5, 9) == 1 and ln.line_overlap_len(0, 4, 5, 9) == 0
    assert ln.line_overlap_len_range(9, 0, 3, 12) == (7, 3, 9)
    assert ln.rect_overlap_area((0, 0, 9, 9), (5, 5, 20, 20)) == 25
    with pytest.raises(TypeError, match="'rect1' must be four ints"):
        ln.rect_overlap_area((0, 0, 9), (5, 5, 20, 20))


def test_clipping_to_the_image():
    assert ln.abc_line_img_boundary(20, 10, 0.0, 1.0, -4.0) == (0, 4, 19, 4)
    # The row scan never finds the last column.
    assert ln.abc_line_img_boundary(20, 10, 1.0, 0.0, -19.0) is None
    assert ln.kb_line_img_boundary(20, 10, 0, 0.0, 4.0) == (0, 4, 19, 4)
    xs, ys = ln.kb_line_rect_boundary(20, 10, 2, 50, 0, 9, 0, 1.0, 0.0)
    assert list(xs) == [2, 19] and list(ys) == [2, 9]


def test_sampling_along_lines():
    image = np.zeros((8, 8), np.uint8)
    image[np.arange(8), np.arange(8)] = 9
    # The left end's column is not visited on a slanted segment: (0, 0)-(3, 3) visits 6 pixels.
    assert ln.pixels_on2p_line(image, 0, 0, 3, 3, 9) == (3, 3)
    with pytest.raises(ValueError, match=r"\(x2, y2\) = \(8, 3\) must lie inside"):
        ln.pixels_on2p_line(image, 0, 0, 8, 3, 9)
    hist = ln.abc_line_histogram(image, 0.0, 1.0, -2.0)
    assert hist.dtype == np.int32 and hist[0] == 7 and hist[9] == 1
    assert ln.pixles_on_abc_line(image, 1.0, -1.0, 0.0) == (8, 0)
    assert ln.pixels_on_rect(image, 0, 7, 0, 7, 9) == 4  # corners count twice


def test_fits_agree_with_numpy_least_squares():
    rng = np.random.default_rng(3)
    xs = np.arange(40)
    ys = np.round(0.3 * xs + 5 + rng.normal(0, 0.5, 40)).astype(np.int32)
    flag, k, b, angle, mean_error, max_error = ln.fitting_line(xs, ys)
    slope, intercept = np.polyfit(xs, ys, 1)
    assert flag == 0 and (k, b) == pytest.approx((slope, intercept))
    assert angle == pytest.approx(np.degrees(np.arctan(slope)))
    assert max_error == pytest.approx(np.max(np.abs(k * xs - ys + b)) / np.sqrt(k * k + 1))
    chain = np.array([7] * 5 + [0], np.uint8)  # the last code closes a contour and is not applied
    assert ln.fitting_line_chain(2, 2, chain)[:4] == pytest.approx((1, 1.0, 0.0, 45.0))  # x = y, a tie
    mask = np.r_[np.ones(39, bool), False]
    assert ln.fitting_line_msk(xs, ys, mask)[1] == pytest.approx(np.polyfit(xs[:39], ys[:39], 1)[0])
    with pytest.raises(ValueError, match="fewer than 3 points"):
        ln.fitting_line_twice(xs[:2], ys[:2])
    with pytest.raises(ValueError, match="'ys' must hold 40 values"):
        ln.fitting_line(xs, ys[:39])


def cross_points():
    xs = np.r_[np.arange(10, 90), np.full(60, 30)]
    ys = np.r_[np.full(80, 20), np.arange(20, 80)]
    return xs, ys


def test_hough_finder_takes_lines_strongest_first():
    hough = ln.HoughLines(100, 100)
    lines = hough.find_lines(*cross_points(), max_lines=2)
    assert [(s, abs(rho), theta) for s, _, _, _, rho, theta in lines] == [(81, 20, 90), (62, 30, 0)]
    drawn = hough.debug(np.zeros((100, 100), np.uint8), 7)
    assert (drawn[:, 30] == 7).all()  # the last line returned, x = 30


def test_hough_finder_is_serialised_across_threads():
    ln.HoughLines(100, 100)
    results, errors = [], []

    def work():
        try:
            for _ in range(20):
                results.append(tuple(ln.HoughLines(100, 100).find_lines(*cross_points(), max_lines=3)))
        except Exception as e:  # pragma: no cover - reported below
            errors.append(e)

    threads = [threading.Thread(target=work) for _ in range(4)]
    for t in threads:
        t.start()
    for t in threads:
        t.join()
    assert not errors and len(set(results)) == 1 and len(results) == 80


def test_chain_line_finder_on_a_square():
    finder = ln.ImgChainLines(64, 64)
    assert finder.debug() is None
    square = np.zeros((64, 64), np.uint8)
    square[10:50, 10:50] = 255
    assert finder.run_binary(square) == 4
    segments = finder.lines()
    assert segments.dtype.names == ("x1", "y1", "x2", "y2", "a", "b", "c")
    for s in segments:
        assert {s["x1"], s["x2"], s["y1"], s["y2"]} <= set(range(10, 50))
    assert len(finder.pieces()) == 4 and finder.next_piece() is None
    panels = finder.debug()
    assert panels.shape == (6, 64, 64) and panels[0].max() == 250
    assert finder.run_binary(square, fit_lines=False) == 4 and finder.lines() is None
    assert finder.run_binary(np.zeros((80, 80), np.uint8)) == 0 and finder.debug() is None  # too large
