"""Line geometry, fitting, sampling and the line finders (qel/line.h)."""

import threading

from ._qel import line as _native

# Every function of the compiled submodule, under its own name.
__all__ = [name for name in dir(_native) if not name.startswith("_")] + ["HoughLines", "ImgChainLines"]
globals().update((name, getattr(_native, name)) for name in dir(_native) if not name.startswith("_"))


class _SharedFinder:
    """A handle on one of the library's process-wide line finders. Every object of a class shares
    the one finder and one lock: each call holds the lock, and ``with finder:`` holds it across a
    sequence of calls (a transform and the lines taken from it) so that no other thread runs the
    finder in between."""

    _lock = None  # set per subclass

    def __enter__(self):
        self._lock.acquire()
        return self

    def __exit__(self, *exc):
        self._lock.release()
        return False


class HoughLines(_SharedFinder):
    """The library's Hough line finder (QelHoughLines_*).

    ``HoughLines(width, height)`` sizes it for images up to that size (QelHoughLines_Initialize; the
    accumulator grows and never shrinks) and forgets the lines taken. A transform (``transform``,
    ``transform_per_point``, ``transform_thetas``) votes with a point set and returns the strongest
    line as ``(strength, a, b, c, rho, theta)``, strength 0 when none reaches 3 votes;
    ``next_line`` then takes further lines away from those taken. ``find_lines`` does both under one
    hold of the lock.
    """

    _lock = threading.RLock()

    def __init__(self, width, height):
        self.initialize(width, height)

    def initialize(self, width, height):
        """QelHoughLines_Initialize; ValueError when the accumulator cannot be allocated."""
        with self._lock:
            _native.hough_lines_initialize(width, height)

    def transform(self, xs, ys, theta_from=0, theta_to=180):
        """Every point votes for thetas theta_from .. theta_to - 1 (QelHoughLines_HT)."""
        with self._lock:
            return _native.hough_lines_ht_range(xs, ys, theta_from, theta_to)

    def transform_per_point(self, xs, ys, thetas, excluded, theta_tolerance):
        """Point i, unless excluded[i], votes for thetas[i] -/+ theta_tolerance (QelHoughLines_HT)."""
        with self._lock:
            return _native.hough_lines_ht(xs, ys, thetas, excluded, theta_tolerance)

    def transform_thetas(self, xs, ys, theta_used):
        """Every point votes for each t with theta_used[t] (181 entries) but the highest such t
        (QelHoughLines_HT)."""
        with self._lock:
            return _native.hough_lines_ht_used(xs, ys, theta_used)

    def next_line(self, min_rho_distance, min_theta_distance):
        """The strongest line of the last transform not near one taken (QelHoughLines_GetNextLine)."""
        with self._lock:
            return _native.hough_lines_get_next_line(min_rho_distance, min_theta_distance)

    def debug(self, image, colour=255, out=None):
        """Copy of a grey image with the last line returned drawn in it (QelHoughLines_Debug)."""
        with self._lock:
            return _native.hough_lines_debug(image, colour, out=out)

    def find_lines(self, xs, ys, max_lines, min_rho_distance=10, min_theta_distance=10, theta_from=0,
                   theta_to=180):
        """Up to max_lines lines, strongest first, as a list of (strength, a, b, c, rho, theta): one
        transform, then next_line until it finds none."""
        with self._lock:
            lines = []
            line = self.transform(xs, ys, theta_from, theta_to)
            while line[0] > 0 and len(lines) < max_lines:
                lines.append(line)
                if len(lines) < max_lines:
                    line = self.next_line(min_rho_distance, min_theta_distance)
            return lines


class ImgChainLines(_SharedFinder):
    """The library's chain-line segment finder (QelImgChainLines_*).

    ``ImgChainLines(width, height, ...)`` prepares it (QelImgChainLines_Initialize). A run
    (``run_binary`` or ``run_grey``) finds the straight pieces of the image's edge chains and
    returns their number; ``lines`` gives the fitted segments of the last run as a structured array
    (x1, y1, x2, y2, a, b, c), ``pieces`` the points of each piece, ``debug`` the six debug panels.
    The finder keeps a copy of the last run's image for its panels.
    """

    _lock = threading.RLock()

    def __init__(self, width, height, straightness_ratio=0.9, second_tolerance=1.5, min_chain_length=6,
                 edge_parameter=20, max_lines=4096):
        self.initialize(width, height, straightness_ratio, second_tolerance, min_chain_length, edge_parameter,
                        max_lines)

    def initialize(self, width, height, straightness_ratio=0.9, second_tolerance=1.5, min_chain_length=6,
                   edge_parameter=20, max_lines=4096):
        """QelImgChainLines_Initialize; ValueError when a buffer cannot be allocated."""
        with self._lock:
            _native.img_chain_lines_initialize(width, height, straightness_ratio, second_tolerance,
                                               min_chain_length, edge_parameter, max_lines)

    def run_binary(self, image, fit_lines=True):
        """Pieces of the boundaries of a binary image (QelImgChainLines_DoBinImg)."""
        with self._lock:
            return _native.img_chain_lines_do_bin_img(image, fit_lines)

    def run_grey(self, image, fit_lines=True):
        """Pieces of the Shen Jun edges of a grey image (QelImgChainLines_DoGryImg)."""
        with self._lock:
            return _native.img_chain_lines_do_gry_img(image, fit_lines)

    def lines(self):
        """Segments of the last run, or None when it did not fit lines (QelImgChainLines_GetLines)."""
        with self._lock:
            return _native.img_chain_lines_get_lines()

    def next_piece(self):
        """(xs, ys) of the next piece not yet handed out, or None (QelImgChainLines_GetNxtCodeLine)."""
        with self._lock:
            return _native.img_chain_lines_get_nxt_code_line()

    def pieces(self):
        """Every piece not yet handed out, as a list of (xs, ys)."""
        with self._lock:
            result = []
            piece = self.next_piece()
            while piece is not None:
                result.append(piece)
                piece = self.next_piece()
            return result

    def debug(self):
        """The (6, H, W) debug panels of the last run, or None without one (QelImgChainLines_Debug)."""
        with self._lock:
            return _native.img_chain_lines_debug()
