"""qel.binary: counts, morphology, thinning, run lengths and run-length region records."""

import numpy as np
import pytest

import qel
from conftest import blocks, random_binary

B = qel.binary


def test_counts_and_centre():
    image = blocks()
    assert B.bin_img_centroid(image) == (int((image > 0).sum()), *[int(v) for v in np.argwhere(image)[:, ::-1].mean(0)])
    assert B.bin_img_centroid(np.zeros((4, 4), np.uint8)) == (0, -1, -1)
    assert B.get_white_pixels_num(image, 0, 13, 0, 8) == 60
    assert B.get_white_pixels_num(image, -5, 100, -5, 100) == (image > 0).sum()  # clipped
    assert B.pixels_in_gry_img(image, 255) == (image == 255).sum()
    assert B.get_black_ratio_in_binary_img(image, 4, 13, 3, 8) == 0.0


def test_point_deletion_and_3x3_filters():
    image = blocks()
    cleaned = B.bin_img_delete_points_less_than_n(image, 255, 1)
    assert cleaned[21, 2] == 0 and (cleaned[3:9, 4:14] == 255).all()
    dilated = B.bin_img_max_filter3x3(image)
    expected = np.zeros_like(image)
    expected[2:10, 3:15] = 255
    np.testing.assert_array_equal(dilated[:11, :16], expected[:11, :16])
    eroded = B.bin_img_min_filter3x3(image)
    assert (eroded[4:8, 5:13] == 255).all() and eroded[3, 4] == 0
    count, majority = B.threshold_and_med_filter3x3(image, 128)
    assert count == (majority == 255).sum() and majority[21, 2] == 0


def test_thinning_keeps_a_subset():
    image = random_binary(30, 30, seed=3, density=0.7)
    passes, skeleton = B.bin_img_thin(image)
    assert passes >= 1
    assert set(np.unique(skeleton)) <= {0, 255}
    assert not (skeleton & ~image).any()


def test_run_length_histograms():
    image = np.zeros((3, 10), np.uint8)
    image[0, 1:4] = 255   # a run of 3
    image[1, 6:10] = 255  # reaches the right edge: one pixel short, 3
    counts = B.rlx_white_count(image, 8)
    assert counts.shape == (9,) and counts[3] == 2 and counts.sum() == 2
    assert B.rlx_white_count(image, 2)[2] == 2  # lengths above the cap land in the last bin
    assert B.rlx_white_count(image, -1).size == 0
    shortened = B.rlx_white_delete_short(image, 4, 0)
    # The run at the right edge keeps its last pixel: it is neither counted nor deleted.
    assert list(zip(*np.nonzero(shortened))) == [(1, 9)]


def test_region_records_round_trip_through_drawing():
    image = blocks()
    image[21, 2] = 0
    regions, records = B.rlx_regions_with_id(image, 0, 0)
    assert regions == 2 and records.dtype == B.RLX
    assert set(records["extra"]) == {0, 1}
    np.testing.assert_array_equal(B.draw_rlx_regions(np.zeros_like(image), records, 255), image)
    table = np.stack([records[f] for f in ("row", "x_begin", "x_end", "extra")], axis=1).astype(np.int32)
    np.testing.assert_array_equal(B.draw_rlx_regions(np.zeros_like(image), table, 255), image)
    found = B.rlx_regions_get(image, 6, 8, 4, 6)
    assert list(found["row"]) == [4, 5, 6] and set(found["x_begin"]) == {4} and set(found["x_end"]) == {13}
    assert len(B.rlx_regions_get(image, 6, 8, 4, 6, capacity=2)) == 2
    columns = B.rly_regions_get(image, 20, 21, 14, 15)
    assert columns.dtype == B.RLY and list(columns["col"]) == [20, 21] and set(columns["y_end"]) == {19}
    with pytest.raises(TypeError, match="'records' must be a record array"):
        B.draw_rlx_regions(image, np.zeros((2, 3), np.int32), 1)
