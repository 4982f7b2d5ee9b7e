"""Image arithmetic, rectangle statistics, split-and-merge segmentation and one-dimensional data
utilities (qel/misc.h)."""

from ._qel import misc as _native

# Every function of the compiled submodule, under its own name.
__all__ = [name for name in dir(_native) if not name.startswith("_")]
globals().update((name, getattr(_native, name)) for name in __all__)


def do_sum_gry_img(img):
    """do_sum_gry_img(img)

    Integral image of a grey image as an (H, W) int32 array: sum[y, x] is the total of the pixels
    with column <= x and row <= y. 32-bit sums: images whose total passes 2**31 - 1 wrap around.

    C++: QelDoSumGryImg
    """
    return _native.do_sum_gry_img(img).reshape(img.shape)
