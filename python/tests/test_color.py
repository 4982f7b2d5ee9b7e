"""qel.color against numpy references: grey formulas, camera frames, rectangles, channels, fields."""

import numpy as np
import pytest
from hypothesis import given, settings, strategies as st

import qel
from conftest import expect_image_argument_errors, random_bgr


def grey_of(bgr):
    b, g, r = (bgr[..., i].astype(np.int64) for i in range(3))
    return ((b * 468 + g * 2404 + r * 1225) >> 12).astype(np.uint8)


def luma_of(bgr):
    b, g, r = (bgr[..., i].astype(np.int64) for i in range(3))
    return ((r * 4898 + g * 9617 + b * 1867) >> 14).astype(np.uint8)


def test_grey_conversions_follow_their_formulas():
    image = random_bgr(9, 13)
    grey = qel.color.rgb2gry(image)
    np.testing.assert_array_equal(grey, grey_of(image))
    np.testing.assert_array_equal(qel.color.rgb2gry_invert(image), 255 - grey)
    np.testing.assert_array_equal(qel.color.rgbs_dif2gry(image), image.max(axis=2) - image.min(axis=2))
    np.testing.assert_array_equal(qel.color.extract_max_rgb2gry_img(image), image.max(axis=2))
    for channel in range(3):
        np.testing.assert_array_equal(qel.color.select_rgb2gry(image, channel), image[..., channel])
        np.testing.assert_array_equal(qel.color.extract_one_channel_from_rgb(image, channel), image[..., channel])
    with pytest.raises(ValueError, match="'channel' must lie in 0..2"):
        qel.color.select_rgb2gry(image, 3)
    expect_image_argument_errors(qel.color.rgb2gry, image, name="rgb")


@settings(max_examples=30, deadline=None)
@given(st.lists(st.integers(0, 255), min_size=1, max_size=40))
def test_grey_pixels_keep_their_level(levels):
    image = np.repeat(np.array(levels, np.uint8)[None, :, None], 3, axis=2)
    np.testing.assert_array_equal(qel.color.rgb2gry(image)[0], levels)


@pytest.mark.parametrize("encode, decode, grey", [
    (qel.color.rgb2yuv420p, qel.color.yuv420p2rgb, qel.color.yuv420p2gry),
    (qel.color.rgb2yuv420sp, qel.color.yuv420sp2rgb, qel.color.yuv420sp2gry),
    (qel.color.rgb2yuv422p, qel.color.yuv422p2rgb, qel.color.yuv422p2gry),
    (qel.color.rgb2cbycry, qel.color.cbycry2rgb, qel.color.cbycry2gry),
])
def test_camera_frames_carry_the_luma_and_decode_to_bgr(encode, decode, grey):
    image = random_bgr(6, 8, seed=3)
    frame = encode(image)
    assert frame.ndim == 1 and frame.dtype == np.uint8
    np.testing.assert_array_equal(grey(frame, 8, 6), luma_of(image))
    # A flat colour survives the chroma subsampling within the fixed-point rounding.
    flat = np.full((6, 8, 3), (40, 120, 200), np.uint8)
    assert np.abs(decode(encode(flat), 8, 6).astype(int) - flat).max() <= 3
    with pytest.raises(ValueError, match="'frame' holds"):
        grey(frame[:-1], 8, 6)


def test_camera_refusals_write_nothing():
    frame = qel.color.rgb2yuv420p(random_bgr(6, 8))
    out = np.full((6, 7, 3), 77, np.uint8)
    with pytest.raises(ValueError, match="refused: the width or the height is odd"):
        qel.color.yuv420p2rgb(frame, 7, 6, out=out)
    assert (out == 77).all()
    with pytest.raises(ValueError, match="refused"):
        qel.color.rgb2cbycry(random_bgr(4, 5))


def test_rectangle_copies_are_slices_of_the_whole_frame():
    image = random_bgr(12, 16, seed=5)
    frame = qel.color.rgb2yuv420p(image)
    whole = qel.color.yuv420p2rgb(frame, 16, 12)
    x1, x2, y1, y2 = 4, 11, 2, 9
    np.testing.assert_array_equal(qel.color.copy_yuv420p_rect2rgb(frame, 16, 12, x1, x2, y1, y2),
                                  whole[y1:y2 + 1, x1:x2 + 1])
    rgb, grey = qel.color.copy_yuv420p_rect(frame, 16, 12, x1, x2, y1, y2)
    np.testing.assert_array_equal(grey, luma_of(image)[y1:y2 + 1, x1:x2 + 1])
    assert qel.color.copy_yuv420p_rect2red_img_shrink2(frame, 16, 12, x1, x2, y1, y2).shape == (4, 4)
    assert qel.color.copy_yuv420p_scale4_rect(frame, 16, 12, x1, x2, y1, y2).shape == (2, 2, 3)
    np.testing.assert_array_equal(qel.color.copy_rgb_rect(image, x1, x2, y1, y2), image[y1:y2 + 1, x1:x2 + 1])
    np.testing.assert_array_equal(qel.color.copy_rgb_scale4_rect(image, 1, 14, 2, 7), image[2:8:4, 1:15:4])
    red, green, blue = qel.color.copy_rgb_rect2gry_planes(image, x1, x2, y1, y2)
    np.testing.assert_array_equal(np.stack([blue, green, red], axis=2), image[y1:y2 + 1, x1:x2 + 1])
    with pytest.raises(ValueError, match="must be non-empty and lie inside"):
        qel.color.copy_gry_rect(image[..., 0].copy(), 0, 16, 0, 3)
    with pytest.raises(ValueError, match="refused"):
        qel.color.copy_yuv420p_rect2rgb(frame, 16, 12, 1, 4, 0, 3)


def test_rectangle_grey_weighs_blue_with_306():
    image = random_bgr(5, 6, seed=8)
    b, g, r = (image[..., i].astype(np.int64) for i in range(3))
    expected = ((b * 306 + g * 601 + r * 116) >> 10).astype(np.uint8)
    rgb, grey = qel.color.copy_rgb_rect_with_gry(image, 0, 5, 0, 4)
    np.testing.assert_array_equal(grey, expected)
    np.testing.assert_array_equal(qel.color.copy_rgb_rect2gry(image, 0, 5, 0, 4), expected)


def test_channels_replace_or_and_interleave():
    image = random_bgr(4, 5, seed=2)
    plane = np.arange(20, dtype=np.uint8).reshape(4, 5)
    replaced = qel.color.replace_one_channel_in_rgb(image, 1, plane)
    np.testing.assert_array_equal(replaced[..., 1], plane)
    np.testing.assert_array_equal(replaced[..., [0, 2]], image[..., [0, 2]])
    np.testing.assert_array_equal(qel.color.or_one_channel_in_rgb(image, 2, plane)[..., 2], image[..., 2] | plane)
    red, green, blue = image[..., 2].copy(), image[..., 1].copy(), image[..., 0].copy()
    np.testing.assert_array_equal(qel.color.gry2rgb_img(red, green, blue), image)
    with pytest.raises(ValueError, match="'green' must be 4 x 5 like 'red'"):
        qel.color.gry2rgb_img(red, green[:3].copy(), blue)


@pytest.mark.parametrize("shape", [(7, 6), (8, 5, 3)])
def test_fields_split_and_merge(shape):
    frame = np.random.default_rng(4).integers(0, 256, shape, dtype=np.uint8)
    np.testing.assert_array_equal(qel.color.split_odd_even_field(frame),
                                  np.concatenate([frame[0::2], frame[1::2]]))
    even = qel.color.extract_one_field(frame, False)
    odd = qel.color.extract_one_field(frame, True)
    np.testing.assert_array_equal(even, frame[0::2])
    np.testing.assert_array_equal(odd, frame[1::2])
    merged = qel.color.merge_odd_even_field(odd, even, 0)
    if frame.ndim == 2:
        np.testing.assert_array_equal(merged, frame)
    else:
        # Intended quirk: with a BGR shift <= 0 an odd row lands `width` bytes after its even row.
        assert not np.array_equal(merged, frame)
        np.testing.assert_array_equal(qel.color.merge_odd_even_field(odd, even, 1)[1::2, 1:], frame[1::2, :-1])
