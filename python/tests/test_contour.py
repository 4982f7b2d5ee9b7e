"""qel.contour: contour lists as objects, chain measures against numpy, filling, selection, the checks
that keep chains inside their images."""

import numpy as np
import pytest
from hypothesis import given, settings, strategies as st

import qel
from conftest import blocks, expect_image_argument_errors, random_binary

c = qel.contour


def framed_random_binary(seed, height=20, width=24):
    image = random_binary(height, width, seed=seed, density=0.6)
    return qel.io.set_image_boundary(image, 0)


def test_contour_list_gives_objects_measured_like_numpy_and_leaves_the_argument_alone():
    image = blocks()
    before = image.copy()
    contours = c.get_contours(image)
    assert np.array_equal(image, before)
    # The lone pixel has no codes and is not listed.
    assert [(k.x, k.y, k.is_outer, k.area) for k in contours] == [(4, 3, True, 60), (18, 12, True, 80)]
    for k, (rows, cols) in zip(contours, [(slice(3, 9), slice(4, 14)), (slice(12, 20), slice(18, 28))]):
        assert k.chain.dtype == np.uint8 and len(k.chain) == k.perimeter
        assert c.real_area_and_perimeter(k.chain) == (k.area, k.perimeter)
        assert c.contour_rect(k.x, k.y, k.chain) == (cols.start, cols.stop - 1, rows.start, rows.stop - 1)
        xs, ys = c.chain2points(k.x, k.y, k.chain)
        assert set(zip(xs, ys)) == {(x, y) for y in range(rows.start, rows.stop) for x in range(cols.start, cols.stop)
                                    if y in (rows.start, rows.stop - 1) or x in (cols.start, cols.stop - 1)}
    assert c.get_contours(image, mode=2) == []


def test_hole_boundaries_start_left_of_the_hole_and_count_its_pixels():
    image = blocks()
    image[14:17, 20:24] = 0
    holes = c.get_contours(image, mode=2)
    assert [(k.x, k.y, k.is_outer, k.area) for k in holes] == [(19, 14, False, 12)]


def test_trapezoid_area_counts_the_boundary_half():
    square = np.array([6, 0, 2, 4], np.uint8)  # a 2 x 2 square as the tracer walks it
    assert c.area_and_perimeter(square) == (3, 4)
    assert c.real_area_and_perimeter(square) == (4, 4)
    assert c.area_and_perimeter(np.array([], np.uint8)) == (0, 0)


def test_trace_marks_the_boundary_and_refuses_starts_it_cannot_trace_safely():
    image = blocks()
    marked, chain = c.trace_contour(image, 4, 3)
    assert np.array_equal(chain, c.get_contours(image)[0].chain)
    assert (marked[3:9, 4:14] == 254).sum() == 28 and marked[5, 6] == 255
    with pytest.raises(ValueError, match="one pixel inside"):
        c.trace_contour(image, 0, 3)
    framed = image.copy()
    framed[0, 5] = 255
    with pytest.raises(ValueError, match="background frame"):
        c.mark_contour(framed, 4, 3)


def test_fill_paints_the_inside_and_reports_the_turn():
    k = c.get_contours(blocks())[0]
    turn, filled = c.filling_contour(np.zeros((24, 32), np.uint8), k.x, k.y, k.chain, fill_value=77)
    expected = np.zeros((24, 32), np.uint8)
    expected[3:9, 4:14] = 77
    assert turn == 1 and np.array_equal(filled, expected)
    count, pasted = c.paste_pixels2res_img(blocks() // 5, k.x, k.y, k.chain)
    assert count == 60 and np.array_equal(pasted, np.where(expected > 0, 51, 0))
    with pytest.raises(ValueError, match="must differ"):
        c.paste_pixels2res_img(blocks(), k.x, k.y, k.chain, boundary_value=3, fill_value=259)


@settings(max_examples=40, deadline=None)
@given(st.integers(0, 10_000))
def test_every_outer_contour_pastes_exactly_the_pixels_it_encloses(seed):
    image = framed_random_binary(seed)
    for k in c.get_contours(image, mode=1):
        count, out = c.paste_pixels2res_img(image, k.x, k.y, k.chain, value=255)
        assert count == k.area == c.real_pixels_enclosed(k.chain) == (out == 255).sum()
        assert c.is_point_included_by_chain(k.x, k.y, k.x, k.y, k.chain)


@settings(max_examples=60, deadline=None)
@given(st.lists(st.integers(0, 7), max_size=12), st.integers(0, 15), st.integers(0, 15))
def test_any_chain_inside_the_image_is_filled_or_refused_without_harm(codes, x, y):
    image = np.zeros((16, 16), np.uint8)
    chain = np.array(codes, np.uint8)
    try:
        _, filled = c.filling_contour(image, x, y, chain)
    except ValueError as e:
        assert "leaves the 16 x 16 image" in str(e)
    else:
        assert filled.shape == image.shape


def test_chains_that_leave_their_image_are_refused():
    image = blocks()
    away = np.array([4, 4], np.uint8)
    for function in (c.mark_chain_by_color, c.pixels_passed_by_chain, c.has_pixels_on_chain):
        with pytest.raises(ValueError, match=r"leaves the 32 x 24 image at \(-1, 0\)"):
            function(image, 1, 0, away, 0)
    with pytest.raises(ValueError, match="outside 'column_per_row'"):
        c.is_vertical_line_intersect_contour_per_row(0, 0, np.array([6, 6], np.uint8), np.zeros(2, np.int32))
    with pytest.raises(TypeError, match="'chain'"):
        c.contour_center(0, 0, np.array([0.5]))
    expect_image_argument_errors(c.get_contours, image, name="image")


def test_chain_walks_over_images():
    image = blocks()
    k = c.get_contours(image)[0]
    dashed = c.mark_chain_by_color_dashed(np.zeros_like(image), k.x, k.y, k.chain, 9)
    assert (dashed == 9).sum() == 1 + 15  # the start, then steps 0-4, 10-14, 20-24
    assert c.pixels_passed_by_chain(image, k.x, k.y, k.chain, 255) == 29  # start counted twice
    assert c.white_pixle_passed_by_chain(image, k.x, k.y, k.chain) == 28
    assert c.contour_gry_avr(image, k.x, k.y, k.chain) == pytest.approx(255 * 29 / 28)
    assert c.mark_chain_by_inc(image, 1, 1, np.array([0, 4], np.uint8))[1, 1] == 2


def test_region_selection():
    image = blocks()
    removed, out = c.remove_white_regions_by_area(image, 0, 70)
    assert removed == 2 and out[3:9, 4:14].max() == 0 and out[12:20, 18:28].min() == 255
    assert c.qel255_rect_with_max_area(image, 0, 31, 0, 23) == (80, (18, 12, 27, 19), 23, 16)
    # n = 1 paints nothing: only regions larger than the smallest of the n largest are painted.
    assert c.qel255_n_regions_with_max_area(image, 1)[0] == 0
    count, big = c.qel255_n_regions_with_max_area(image, 2)
    assert count == 1 and np.array_equal(big > 0, np.pad(np.ones((8, 10), bool), ((12, 4), (18, 4))))
    selected, drawn = c.select_contours_by_perimeter(image, 1, 30, 40)
    assert selected == 1 and set(np.unique(drawn)) == {0, 255}
    hole = image.copy()
    hole[14:17, 20:24] = 0
    area, marked = c.mark_max_area_hole_contour(hole, 100)
    assert area == 12 and (marked == 100).sum() == 14
