"""qel.edge: gradients against numpy, Shen Jun edges and point lists, edge post-processing."""

import numpy as np
import pytest

import qel
from conftest import blocks, random_bgr, random_grey

E = qel.edge


def sobel_parts(image):
    p = image.astype(int)
    tl, t, tr = p[:-2, :-2], p[:-2, 1:-1], p[:-2, 2:]
    left, right = p[1:-1, :-2], p[1:-1, 2:]
    bl, b, br = p[2:, :-2], p[2:, 1:-1], p[2:, 2:]
    gy = (tl + 2 * t + tr) - (bl + 2 * b + br)
    gx = (tl + 2 * left + bl) - (tr + 2 * right + br)
    return gx, gy


def framed(inner):
    out = np.zeros((inner.shape[0] + 2, inner.shape[1] + 2), np.uint8)
    out[1:-1, 1:-1] = inner
    return out


def test_sobel_family_matches_the_masks():
    image = random_grey(12, 15, seed=1)
    gx, gy = sobel_parts(image)
    np.testing.assert_array_equal(E.gry_img_sobel(image), framed(np.minimum(abs(gx) + abs(gy), 255)))
    np.testing.assert_array_equal(E.gry_img_sobel0(image), framed(np.minimum(abs(gy), 255)))
    np.testing.assert_array_equal(E.gry_img_sobel90_just(image), framed(np.where(abs(gx) > abs(gy), np.minimum(abs(gx), 255), 0)))
    profile = E.gry_img_sobel90_just_to_prj_x(image)
    inner = np.where(abs(gx) > abs(gy), abs(gx) + abs(gy), 0).sum(axis=0)
    np.testing.assert_array_equal(profile[1:-1], inner)
    assert profile[0] == profile[1] and profile[-1] == profile[-2] and profile.dtype == np.int32


def test_roberts():
    image = random_grey(9, 10, seed=2)
    p = image.astype(int)
    dx = p[1:-1, 2:] - p[1:-1, :-2]
    dy = p[2:, 1:-1] - p[:-2, 1:-1]
    np.testing.assert_array_equal(E.robert(image), framed(np.maximum(abs(dx), abs(dy))))
    everywhere = E.robert_by_mask(image, None)
    np.testing.assert_array_equal(everywhere, framed(np.minimum(abs(dx) + abs(dy), 255)))
    np.testing.assert_array_equal(E.robert_by_mask(image, np.ones_like(image)), everywhere)
    colour = random_bgr(9, 10, seed=3)
    per_channel = [E.robert_by_mask(colour[..., c].copy(), None) for c in range(3)]
    np.testing.assert_array_equal(E.robert_rgb_image2gry_robert(colour), np.maximum.reduce(per_channel))


@pytest.mark.parametrize("shift", [1, 2, 3])
def test_shen_jun_integer_and_real_weights_agree(shift):
    image = random_grey(40, 50, seed=shift)
    image[10:30, 15:35] //= 4
    edges = E.shen_jun_edge_fast(image, shift, 12)
    assert set(np.unique(edges)) <= {0, 255} and edges.any()
    np.testing.assert_array_equal(E.shen_jun_edge_std(image, 2.0 ** -shift, 12), edges)
    xs, ys, again = E.shen_jun_edge_fast_points_and_edges(image, shift, 12, 10 ** 6)
    np.testing.assert_array_equal(again, edges)
    rows, cols = np.nonzero(edges)  # scan order: rows from the top, each from the left
    np.testing.assert_array_equal(ys, rows)
    np.testing.assert_array_equal(xs, cols)


def test_shen_jun_point_limits():
    image = blocks() // 2 + 60
    xs, ys = E.shen_jun_edge_fast_points(image, 2, 20, 3)
    assert len(xs) == len(ys) == 3
    assert len(E.shen_jun_edge_fast_points(image, 2, 20, 0)[0]) == 1  # one point even for max_count 0
    assert len(E.shen_jun_edge_fast_points_and_edges(image, 2, 20, 0)[0]) == 0


def test_edge_post_processing():
    image = blocks()
    edges = E.shen_jun_edge_fast(image // 2 + 60, 2, 20)
    before = edges.copy()
    kept = E.edge_delete_noise_by_length(edges, 10)
    np.testing.assert_array_equal(edges, before)  # the library traced a copy
    assert set(np.unique(kept)) <= {0, 255} and kept.any()
    assert not E.edge_delete_noise_by_length(edges, 10 ** 6).any()
    cleaned = E.edge_delete_noise_and_cross_points(edges, 8)
    assert not cleaned[0].any() and not cleaned[:, 0].any()
    rng, hist = E.edge_tripe_detection(random_grey(20, 30, seed=5), 2, 2)
    assert hist.sum() == 600 and hist.dtype == np.int32
    flat_range, _ = E.edge_tripe_detection(np.full((10, 12), 9, np.uint8), 1, 1)
    assert not flat_range.any()
    with pytest.raises(ValueError, match="refused"):
        E.edge_tripe_detection(random_grey(1, 4097), 1, 1)


def test_strongest_points_per_row_and_column():
    grd = np.zeros((8, 30), np.uint8)
    grd[3, 2], grd[3, 20] = 50, 40
    row_first, row_second, col_first, col_second = E.extract_edge_point_in_rect(grd, 0, 0, 29, 7)
    assert (row_first[3], row_second[3]) == (2, 20)
    assert row_first[0] == -1 and col_first[2] == 3
    with pytest.raises(ValueError, match="'y1' reaches below the last row"):
        E.extract_edge_point_in_rect(grd, 0, 0, 29, 8)
    with pytest.raises(ValueError, match="cy \\+ ry"):
        E.extract_edge_point_in_circle(grd, 10, 5, 4, 3)
