"""Qel machine-vision image processing on numpy arrays.

Grey and binary images are ``(H, W) uint8`` arrays, BGR images ``(H, W, 3) uint8``, histograms
``int32`` arrays of 256. Functions return new arrays (``out=`` writes into an array of yours
instead); a wrong dtype or shape raises ``TypeError`` or ``ValueError`` naming the argument, and a
refusal of the library raises ``ValueError``. Each function's docstring names the C++ function it
calls: ``qel.color.rgb_to_grey`` is ``QelRGB2Gry``.

Submodules follow the C++ headers: io, color, histogram, filter, edge, binary, contour, line,
geometry, draw, misc.
"""

from . import binary, color, contour, draw, edge, filter, geometry, histogram, io, line, misc

__all__ = ["io", "color", "histogram", "filter", "edge", "binary", "contour", "line", "geometry", "draw",
           "misc"]
__version__ = "0.1.0"
