// The chain-line finder and the QelImgChainLines_* functions that drive the library's one instance.
#include "line/chain_lines.h"

#include "qel/contour.h"
#include "qel/draw.h"
#include "qel/edge.h"
#include "qel/line.h"

#include "contour/chain_walk.h"
#include "contour/scan.h"
#include "core/directions.h"
#include "line/line_math.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

namespace qel {

namespace {

// Arc length of one code in 1/1024 pixel: truncate(1000·1.024 + 0.5) for the axis codes and
// truncate(1414·1.024 + 0.5) for the diagonal ones.
constexpr int kAxisCodeLength = 1024;
constexpr int kDiagonalCodeLength = 1448;
constexpr int kArcUnitShift = 10;
// A window is first judged once its arc reaches six pixels.
constexpr long long kJudgedArc = 6LL << kArcUnitShift;

// The edge operator: the integer Shen Jun variant with shift 2 from this edge parameter on, else
// the real one with a = 0.25; the edge parameter is the operator's threshold.
constexpr int kFastEdgeParameter = 8;
constexpr int kFastEdgeShift = 2;
constexpr double kFineEdgeWeight = 0.25;
constexpr int kMinChainLength = 6;
constexpr int kMinImageSide = 3;  // the smallest image with an interior

// Marks in the edge map: edge pixels are 255; pixels of handled chains are painted 1.
constexpr unsigned char kEdge = 255;
constexpr int kUsed = 1;
// Debug panels: grey values are kept below the marks, pieces are shown as 254, segments as 255.
constexpr unsigned char kHighestGrey = 250;
constexpr unsigned char kPieceMark = 254;
constexpr int kSegmentMark = 255;
constexpr int kDebugPanels = 6;

// Created when the library is loaded, destroyed (and its buffers released) when it is unloaded.
QelImgChainLines g_chainLines;

int code_length(int k) { return (k & 1) != 0 ? kDiagonalCodeLength : kAxisCodeLength; }

// Codes [first, end) of a chain, with their arc length and chord.
struct Window {
    int first = 0;
    int end = 0;
    long long arc = 0;
    int dx = 0;
    int dy = 0;

    void restart(int at) {
        first = end = at;
        arc = 0;
        dx = dy = 0;
    }
    void push(int k) {
        arc += code_length(k);
        dx += kDx[k];
        dy += kDy[k];
        ++end;
    }
    void drop_first(int k) {
        arc -= code_length(k);
        dx -= kDx[k];
        dy -= kDy[k];
        ++first;
    }
};

// The window is straight when chord² > (arc in whole pixels)² × ratio² and no point of the window
// lies farther than the tolerance from its chord. The distance of point p from the chord through
// the window's first point q with direction (dx, dy) is |cross| / |chord|, cross being the integer
// (p − q) × (dx, dy); so the second test compares the largest cross² with chord² × tolerance².
bool is_straight(const Window& w, const int* xs, const int* ys, const StraightnessTest& test) {
    const double chord2 = static_cast<double>(w.dx) * w.dx + static_cast<double>(w.dy) * w.dy;
    const double arcPixels = static_cast<double>(w.arc >> kArcUnitShift);
    if (!(chord2 > arcPixels * arcPixels * (test.ratio * test.ratio))) return false;
    // No point is farther from the first than the arc between them, and arc / 1000 overstates every
    // code's length: a tolerance that large passes without looking at the points.
    if (test.tolerance >= static_cast<double>(w.arc) / 1000) return true;
    const long long x0 = xs[w.first];
    const long long y0 = ys[w.first];
    long long worst = 0;
    for (int i = w.first + 1; i < w.end; ++i) {
        const long long cross = (xs[i] - x0) * w.dy - (ys[i] - y0) * w.dx;
        worst = std::max(worst, cross < 0 ? -cross : cross);
    }
    return static_cast<double>(worst) * static_cast<double>(worst) <=
           chord2 * (test.tolerance * test.tolerance);
}

// Codes to step back from a piece's end, and to trim from each end of a piece before fitting:
// max(2, truncate(count · (1 − ratio) / 2)).
int margin_codes(int count, double ratio) { return std::max(2, truncate_to_int(count * (1 - ratio) / 2)); }

// New[] that gives null, not an exception, also when n elements cannot be addressed.
template <class T>
std::unique_ptr<T[]> allocate(long long n) {
    if (n < 0 || static_cast<unsigned long long>(n) > std::numeric_limits<std::size_t>::max() / sizeof(T))
        return nullptr;
    return std::unique_ptr<T[]>(new (std::nothrow) T[static_cast<std::size_t>(n)]);
}

}  // namespace

int cut_chain(const unsigned char* codes, int n, const int* xs, const int* ys, const StraightnessTest& test,
              ChainPiece* pieces, int capacity) {
    const int lastCode = n - 2;
    int count = 0;
    bool open = false;
    int pieceFirst = 0;
    int pieceLast = 0;
    auto record = [&](int last) {
        pieces[count++] = {xs[pieceFirst], ys[pieceFirst], xs[last + 1], ys[last + 1], last - pieceFirst + 1,
                           pieceFirst};
    };
    Window w;
    while (w.end <= lastCode && count < capacity) {
        w.push(codes[w.end] & 7);
        if (w.arc < kJudgedArc) continue;
        if (is_straight(w, xs, ys, test)) {
            // A straight window grows until it is as long as a chain must be, then holds a piece.
            if (w.arc >= test.minArc) {
                if (!open) pieceFirst = w.first;
                open = true;
                pieceLast = w.end - 1;
            }
        } else if (open) {
            record(pieceLast);
            open = false;
            // The next window starts a little before the piece's end, so a corner cut at the end of
            // one piece can begin the next; it always starts after the piece's own start.
            const int restart = pieceLast + 1 - margin_codes(pieceLast - pieceFirst + 1, test.ratio);
            w.restart(std::max(restart, pieceFirst + 1));
        } else {
            w.drop_first(codes[w.first] & 7);
        }
    }
    if (open && count < capacity) record(lastCode);
    return count;
}

bool QelImgChainLines::grow_image_buffers(int pixels) {
    const long long chainRoom = 2LL * pixels;
    auto edges = allocate<unsigned char>(pixels);
    auto work = allocate<double>(pixels);
    auto codes = allocate<unsigned char>(chainRoom);
    auto xs = allocate<int>(chainRoom);
    auto ys = allocate<int>(chainRoom);
    auto weights = allocate<int>(chainRoom);
    if (!edges || !work || !codes || !xs || !ys || !weights) return false;  // the old buffers stay
    edges_ = std::move(edges);
    work_ = std::move(work);
    codes_ = std::move(codes);
    xs_ = std::move(xs);
    ys_ = std::move(ys);
    weights_ = std::move(weights);
    capacityPixels_ = pixels;
    return true;
}

bool QelImgChainLines::grow_line_arrays(int lines) {
    auto pieces = allocate<ChainPiece>(lines);
    auto entries = allocate<ChainEntry>(lines);
    auto segments = allocate<OVLA_LINE_SEGMENT>(lines);
    if (!pieces || !entries || !segments) return false;  // the old arrays stay
    pieces_ = std::move(pieces);
    entries_ = std::move(entries);
    segments_ = std::move(segments);
    lineCapacity_ = lines;
    return true;
}

bool QelImgChainLines::Initialize(int width, int height, double straightnessRatio, double secondTolerance,
                                  int minChainLength, int edgeParameter, int maxLines) {
    straightnessRatio_ = straightnessRatio;
    secondTolerance_ = secondTolerance;
    minChainLength_ = std::max(minChainLength, kMinChainLength);
    edgeParameter_ = std::max(edgeParameter, 1);
    fastEdges_ = edgeParameter_ >= kFastEdgeParameter;
    maxLines_ = std::max(maxLines, 0);
    // Results of earlier runs point into buffers that may be replaced: they are dropped.
    lineCount_ = cursor_ = fillOffset_ = 0;
    fitLines_ = runValid_ = false;

    bool grown = true;
    // Chains of up to 2 × pixels codes are indexed by int.
    const long long pixels = width > 0 && height > 0 ? static_cast<long long>(width) * height : 0;
    if (2 * pixels > INT_MAX) {
        grown = false;
    } else if (pixels > capacityPixels_) {
        grown = grow_image_buffers(static_cast<int>(pixels));
    }
    if (maxLines_ > lineCapacity_ && !grow_line_arrays(maxLines_)) {
        maxLines_ = lineCapacity_;
        grown = false;
    }
    ready_ = capacityPixels_ > 0;
    return grown && ready_;
}

bool QelImgChainLines::begin_run(unsigned char* image, int width, int height, bool fitLines) {
    source_ = image;
    width_ = width;
    height_ = height;
    lineCount_ = cursor_ = fillOffset_ = 0;
    fitLines_ = runValid_ = false;
    if (!ready_ || width < kMinImageSide || height < kMinImageSide) return false;
    if (static_cast<long long>(width) * height > capacityPixels_) return false;
    pixels_ = width * height;
    fitLines_ = fitLines;
    runValid_ = true;
    return true;
}

void QelImgChainLines::binary_edges() {
    unsigned char* edges = edges_.get();
    std::memset(edges, 0, static_cast<std::size_t>(pixels_));
    std::ptrdiff_t offset[8];
    for (int k = 0; k < 8; ++k) offset[k] = neighbour_offset(k, width_);
    for (int y = 1; y < height_ - 1; ++y) {
        for (int x = 1; x < width_ - 1; ++x) {
            const std::ptrdiff_t i = static_cast<std::ptrdiff_t>(y) * width_ + x;
            if (source_[i] == 0) continue;
            for (int k = 0; k < 8; ++k) {
                if (source_[i + offset[k]] == 0) {
                    edges[i] = kEdge;
                    break;
                }
            }
        }
    }
}

void QelImgChainLines::shen_jun_edges(unsigned char* dst) {
    if (fastEdges_) {
        // The integer operator smooths into bytes; the work buffer has room for them.
        QelShenJunEdgeFast(source_, reinterpret_cast<unsigned char*>(work_.get()), width_, height_, kFastEdgeShift,
                           edgeParameter_, dst);
    } else {
        QelShenJunEdgeFine(source_, work_.get(), width_, height_, kFineEdgeWeight, edgeParameter_, dst);
    }
}

int QelImgChainLines::DoBinImg(unsigned char* image, int width, int height, bool fitLines) {
    if (!begin_run(image, width, height, fitLines)) return 0;
    binary_edges();
    return extract_chains();
}

int QelImgChainLines::DoGryImg(unsigned char* image, int width, int height, bool fitLines) {
    if (!begin_run(image, width, height, fitLines)) return 0;
    shen_jun_edges(edges_.get());
    return extract_chains();
}

int QelImgChainLines::extract_chains() {
    lineCount_ = cursor_ = fillOffset_ = 0;
    unsigned char* edges = edges_.get();
    const int maxCodes = 2 * pixels_;
    // The edge map's frame is 0, so every chain lies one pixel inside the image.
    const ScanArea area{1, height_ - 2, 1, 1, width_ - 1};
    scan_boundary_starts(edges, width_, area, kContourStarts,
                         [&](std::ptrdiff_t, int x, int y, unsigned char, Start start) {
                             if (start == Start::None) return;
                             const bool outer = start == Start::Outer;
                             const int x0 = outer ? x : x - 1;  // a hole is traced from the pixel left of it
                             const int n = QelTraceContour(edges, width_, x0, y, codes_.get(), maxCodes, outer);
                             process_chain(x0, y, n);
                         });
    return lineCount_;
}

void QelImgChainLines::process_chain(int x0, int y0, int n) {
    if (n < minChainLength_) return;
    // Chains can pass pixels more than once; one that would overrun the point lists is left out.
    if (static_cast<long long>(fillOffset_) + n + 1 > 2LL * capacityPixels_) return;
    unsigned char* edges = edges_.get();
    unsigned char* codes = codes_.get();
    int* xs = xs_.get() + fillOffset_;
    int* ys = ys_.get() + fillOffset_;
    QelChain2Points(x0, y0, codes, n, xs, ys);

    const StraightnessTest test{straightnessRatio_, secondTolerance_,
                                static_cast<long long>(minChainLength_) << kArcUnitShift};
    const int pieces = cut_chain(codes, n, xs, ys, test, pieces_.get(), maxLines_);
    for (int p = 0; p < pieces; ++p) {
        const ChainPiece& piece = pieces_[p];
        unsigned char* pieceCodes = codes + piece.first;
        bool mostlyUsed = false;
        if (p > 0) {
            // Over 80% of the piece already passed by an earlier piece: the far side of a thin edge.
            const long long used =
                QelPixelsPassedByChain(edges, width_, piece.startX, piece.startY, pieceCodes, piece.codes, kUsed);
            mostlyUsed = 10 * used > 8LL * piece.codes;
        }
        if (!mostlyUsed) {
            if (fitLines_) {
                fit_piece(piece, xs, ys);
            } else if (lineCount_ < maxLines_) {
                add_entry(fillOffset_ + piece.first, piece.codes + 1);
            }
        }
        if (p < pieces - 1)
            QelMarkChainByColor(edges, width_, piece.startX, piece.startY, pieceCodes, piece.codes, kUsed);
    }
    QelMarkChainByColor(edges, width_, x0, y0, codes, n, kUsed);
    fillOffset_ += n + 1;
}

void QelImgChainLines::fit_piece(const ChainPiece& piece, int* xs, int* ys) {
    const int points = piece.codes + 1;
    int trim = margin_codes(points, straightnessRatio_);
    if (points - 2 * trim < 3 && trim >= 1) --trim;
    const int fitted = points - 2 * trim;
    if (fitted < 3) return;  // too few points for the fit, which refuses them
    int flag = 0;
    double k = 0;
    double b = 0;
    double angle = 0;
    const int from = piece.first + trim;
    if (!QelFittingLineTwiceByMean(xs + from, ys + from, weights_.get(), fitted,
                                   &flag, &k, &b, &angle))
        return;
    if (lineCount_ >= maxLines_) return;

    OVLA_LINE_SEGMENT& segment = segments_[lineCount_];
    QelKBLine2ABCLine(flag, k, b, &segment.a, &segment.b, &segment.c);
    const double la = segment.a;
    const double lb = segment.b;
    const double lc = segment.c;
    const double norm = std::sqrt(la * la + lb * lb);
    // Within two thirds of a pixel of the line.
    auto near = [&](int i) { return 3 * std::fabs(la * xs[i] + lb * ys[i] + lc) < 2 * norm; };
    // The start moves back along the chain, from two points into the piece, while the points keep
    // close to the line; the end is pulled back, by at most trim points, while it is not.
    int first = piece.first + 2;
    while (first > 0 && near(first - 1)) --first;
    int last = piece.first + points - 1;
    for (int steps = 0; steps < trim && !near(last); ++steps) --last;

    // Bounding box of the points first..last, except the one at position trim from the first: the
    // box scan skips it, and the segment's ends depend on that.
    int left = INT_MAX;
    int right = INT_MIN;
    int top = INT_MAX;
    int bottom = INT_MIN;
    for (int i = first; i <= last; ++i) {
        if (i == first + trim) continue;
        left = std::min(left, xs[i]);
        right = std::max(right, xs[i]);
        top = std::min(top, ys[i]);
        bottom = std::max(bottom, ys[i]);
    }
    int kbFlag = 0;
    double kbK = 0;
    double kbB = 0;
    QelABCLine2KBLine(la, lb, lc, &kbFlag, &kbK, &kbB);
    QelKBLineBeginEndPoint(width_, height_, left, right, top, bottom, kbFlag, kbK, kbB, &segment.x1, &segment.y1,
                           &segment.x2, &segment.y2);
    add_entry(fillOffset_ + first, last - first + 1);
}

void QelImgChainLines::add_entry(int first, int count) {
    entries_[lineCount_] = {count, first};
    ++lineCount_;
}

OVLA_LINE_SEGMENT* QelImgChainLines::GetLines() { return fitLines_ ? segments_.get() : nullptr; }

bool QelImgChainLines::GetNxtCodeLine(int** xs, int** ys, int* count) {
    if (cursor_ >= lineCount_) return false;
    const ChainEntry& entry = entries_[cursor_++];
    *xs = xs_.get() + entry.first;
    *ys = ys_.get() + entry.first;
    *count = entry.count;
    return true;
}

int QelImgChainLines::Debug(unsigned char* out) {
    if (!runValid_) return 0;
    const std::size_t size = static_cast<std::size_t>(pixels_);
    unsigned char* panel[kDebugPanels];
    for (int p = 0; p < kDebugPanels; ++p) panel[p] = out + p * size;

    for (std::size_t i = 0; i < size; ++i) panel[0][i] = std::min(source_[i], kHighestGrey);
    shen_jun_edges(panel[1]);
    std::memset(panel[2], 0, size);
    int* xs = nullptr;
    int* ys = nullptr;
    int count = 0;
    while (GetNxtCodeLine(&xs, &ys, &count))
        for (int i = 0; i < count; ++i) panel[2][pixel_index(xs[i], ys[i], width_)] = kPieceMark;
    cursor_ = 0;
    for (std::size_t i = 0; i < size; ++i) panel[3][i] = panel[2][i] != 0 ? 0 : panel[1][i];

    std::memset(panel[4], 0, size);
    std::memcpy(panel[5], panel[0], size);
    if (fitLines_) {
        for (int s = 0; s < lineCount_; ++s) {
            const OVLA_LINE_SEGMENT& l = segments_[s];
            QelGryLine(panel[4], width_, height_, l.x1, l.y1, l.x2, l.y2, kSegmentMark);
            QelGryLine(panel[5], width_, height_, l.x1, l.y1, l.x2, l.y2, kSegmentMark);
        }
    } else {
        for (std::size_t i = 0; i < size; ++i)
            if (panel[2][i] != 0) panel[5][i] = kSegmentMark;
    }
    return lineCount_;
}

}  // namespace qel

bool QelImgChainLines_Initialize(int width, int height, double straightnessRatio, double secondTolerance,
                                 int minChainLength, int edgeParameter, int maxLines) {
    return qel::g_chainLines.Initialize(width, height, straightnessRatio, secondTolerance, minChainLength,
                                        edgeParameter, maxLines);
}

int QelImgChainLines_DoBinImg(unsigned char* image, int width, int height, bool fitLines) {
    return qel::g_chainLines.DoBinImg(image, width, height, fitLines);
}

int QelImgChainLines_DoGryImg(unsigned char* image, int width, int height, bool fitLines) {
    return qel::g_chainLines.DoGryImg(image, width, height, fitLines);
}

OVLA_LINE_SEGMENT* QelImgChainLines_GetLines() { return qel::g_chainLines.GetLines(); }

bool QelImgChainLines_GetNxtCodeLine(int** xs, int** ys, int* count) {
    return qel::g_chainLines.GetNxtCodeLine(xs, ys, count);
}

int QelImgChainLines_Debug(unsigned char* out) { return qel::g_chainLines.Debug(out); }
