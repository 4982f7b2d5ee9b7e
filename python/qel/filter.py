"""Average, median, minimum, maximum and deviation filters (qel/filter.h)."""

from ._qel import filter as _native

# Every function of the compiled submodule, under its own name.
__all__ = [name for name in dir(_native) if not name.startswith("_")]
globals().update((name, getattr(_native, name)) for name in __all__)
