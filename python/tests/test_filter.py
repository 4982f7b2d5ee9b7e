"""qel.filter against plain numpy references, error cases and concurrent use."""

import numpy as np
import pytest

import qel
from conftest import expect_image_argument_errors, random_grey


def test_average_filter_of_a_flat_image_is_flat_up_to_the_truncated_reciprocal():
    image = np.full((9, 11), 77, np.uint8)
    assert set(np.unique(qel.filter.gry_average_filter(image, 2, 1))) <= {76, 77}


def test_argument_errors_name_the_argument():
    image = random_grey(8, 8)
    expect_image_argument_errors(qel.filter.gry_average_filter, image, 1, 1)
    with pytest.raises(TypeError, match="'half_x'"):
        qel.filter.gry_average_filter(image, 1.5, 1)
    with pytest.raises(ValueError, match="'out' must not share memory"):
        qel.filter.gry_average_filter(image, 1, 1, out=image)
