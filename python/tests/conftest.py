"""Shared helpers of the Python tests: random and drawn images, and a check of the argument errors
every image-taking function gives."""

import numpy as np
import pytest
from hypothesis import settings

# No example database: runs from any directory leave nothing behind.
settings.register_profile("qel", database=None)
settings.load_profile("qel")


def random_grey(height, width, seed=0):
    return np.random.default_rng(seed).integers(0, 256, size=(height, width), dtype=np.uint8)


def random_bgr(height, width, seed=0):
    return np.random.default_rng(seed).integers(0, 256, size=(height, width, 3), dtype=np.uint8)


def random_binary(height, width, seed=0, density=0.5):
    rng = np.random.default_rng(seed)
    return np.where(rng.random((height, width)) < density, 255, 0).astype(np.uint8)


def blocks(height=24, width=32):
    """A binary image of two filled rectangles and a lone pixel."""
    image = np.zeros((height, width), np.uint8)
    image[3:9, 4:14] = 255
    image[12:20, 18:28] = 255
    image[21, 2] = 255
    return image


def expect_image_argument_errors(function, image, *args, name="src", **kwargs):
    """The checks every image argument gets: dtype, shape, contiguity, plain lists."""
    with pytest.raises(TypeError, match=f"'{name}'.*uint8"):
        function(image.astype(np.float32), *args, **kwargs)
    with pytest.raises(TypeError, match=f"'{name}'"):
        function(image.tolist(), *args, **kwargs)
    with pytest.raises(ValueError, match=f"'{name}'.*C-contiguous"):
        function(np.asfortranarray(np.stack([image, image], axis=-1))[..., 0], *args, **kwargs)
    with pytest.raises(ValueError, match=f"'{name}'.*shape"):
        function(image[..., None] if image.ndim == 2 else image[..., 0], *args, **kwargs)
