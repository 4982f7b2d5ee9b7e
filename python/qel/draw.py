"""Drawing primitives, digits, font text and the mark (qel/draw.h).

The font-text functions read the 16 x 16 bitmap font hzk16.dat: from the file named by the
environment variable QEL_FONT_FILE, or else from an hzk16.dat placed in this package's directory
(set here when it exists, as the library itself would look beside the Python interpreter).
"""

import os

from ._qel import draw as _native

# Every function of the compiled submodule, under its own name.
__all__ = [name for name in dir(_native) if not name.startswith("_")]
globals().update((name, getattr(_native, name)) for name in __all__)

_PACKAGE_FONT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "hzk16.dat")
if not os.environ.get("QEL_FONT_FILE") and os.path.isfile(_PACKAGE_FONT):
    os.environ["QEL_FONT_FILE"] = _PACKAGE_FONT
