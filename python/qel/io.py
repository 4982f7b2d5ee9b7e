"""BMP files, frame setters, file base names, the list-file reader and the debug log (qel/io.h)."""

import threading

from ._qel import io as _native

# Every function of the compiled submodule, under its own name.
__all__ = [name for name in dir(_native) if not name.startswith("_")] + ["SequenceFiles"]
globals().update((name, getattr(_native, name)) for name in dir(_native) if not name.startswith("_"))

# The library has one list reader for the whole process; every SequenceFiles shares it.
_reader_lock = threading.RLock()


class SequenceFiles:
    """The library's list-file reader (QelSequenceFiles_*): a text file of CR LF lines.

    The library keeps one reader for the whole process, so every SequenceFiles object is a handle on
    that one reader: creating one (or calling initialize) loads a new list for all of them. Calls
    are serialised by a lock; iterate while holding the object (``with reader:``) to keep another
    thread from moving the cursor in between. A last line without CR LF, and lines ending in LF
    alone, are never returned.
    """

    def __init__(self, list_file_name=None, buffer_size=4096):
        self.buffer_size = buffer_size
        if list_file_name is not None:
            self.initialize(list_file_name)

    def initialize(self, list_file_name):
        """Loads a list file and rewinds the cursor (QelSequenceFiles_Initialize); ValueError when
        the file cannot be opened (the previous list then stays readable)."""
        with _reader_lock:
            _native.sequence_files_initialize(list_file_name)

    def get_file_name(self, index):
        """Line `index` from 0, trailing spaces removed, or None when there is no such line or it is
        longer than buffer_size - 1 bytes (QelSequenceFiles_GetFileName). The cursor stays."""
        with _reader_lock:
            return _native.sequence_files_get_file_name(index, buffer_size=self.buffer_size)

    def get_next_file_name(self):
        """The line at the cursor, moving the cursor on; None at the end of the list, or for a line
        longer than buffer_size - 1 bytes, which is then skipped (QelSequenceFiles_GetNextFileName)."""
        with _reader_lock:
            return _native.sequence_files_get_next_file_name(buffer_size=self.buffer_size)

    def __iter__(self):
        """The lines from the cursor on, until get_next_file_name gives None."""
        while True:
            name = self.get_next_file_name()
            if name is None:
                return
            yield name

    def __enter__(self):
        _reader_lock.acquire()
        return self

    def __exit__(self, *exc):
        _reader_lock.release()
        return False
