// Edge post-processing, cleaning: joining gaps between edge ends, removing crossings, short
// fragments and edge pixels on weak gradients.
#include "qel/contour.h"
#include "qel/edge.h"
#include "qel/io.h"

#include "core/directions.h"
#include "core/lut.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

namespace qel {
namespace {

constexpr unsigned char kEndPoint = 200;   // an edge end found by QelConnectEdge
constexpr unsigned char kBridge = 100;     // a gap pixel QelConnectEdge adds
constexpr unsigned char kCrossMark = 128;  // a crossing waiting to be removed
constexpr int kMaxEndPoints = 1000;        // end points a gap window holds
constexpr int kPaintWhite = -1;            // the chain painter's colour for 255

// Number of non-zero 8-neighbours of pixel i (at least one pixel inside the image).
inline int nonzero_neighbours(const unsigned char* image, std::ptrdiff_t i, const long off[8]) {
    int n = 0;
    for (int k = 0; k < 8; ++k) n += image[i + off[k]] != 0;
    return n;
}

void neighbour_offsets(int width, long off[8]) {
    for (int k = 0; k < 8; ++k) off[k] = neighbour_offset(k, width);
}

// Where v lies against the centre c on one axis: 0 before, 1 level, 2 after.
inline int side(int v, int c) { return v < c ? 0 : (v == c ? 1 : 2); }

// Two end points bracket the centre on one axis unless both lie strictly on the same side.
inline bool bracket(int sideA, int sideB) { return sideA != sideB || sideA == 1; }

// The end points of a gap window, kept as counts per position class (side in x, side in y) around
// the centre: whether some pair brackets the centre depends only on the classes of the pair, so
// testing every pair of points equals testing every pair of classes present. The 1000-point cap
// is kept by letting each point past it replace the one in the last slot.
class EndPointWindow {
public:
    void add(int sx, int sy) {
        const int cls = sx * 3 + sy;
        if (count_ == kMaxEndPoints) {
            --perClass_[lastSlot_];
        } else {
            ++count_;
        }
        ++perClass_[cls];
        lastSlot_ = cls;
    }

    bool has_bracketing_pair() const {
        if (count_ < 2) return false;
        for (int a = 0; a < 9; ++a) {
            if (perClass_[a] == 0) continue;
            for (int b = a; b < 9; ++b) {
                const int needed = a == b ? 2 : 1;
                if (perClass_[b] >= needed && bracket(a / 3, b / 3) && bracket(a % 3, b % 3)) return true;
            }
        }
        return false;
    }

private:
    int perClass_[9] = {};
    int count_ = 0;
    int lastSlot_ = 0;
};

}  // namespace
}  // namespace qel

void QelConnectEdge(unsigned char* edge, unsigned char* candidates, int width, int height, int gap) {
    if (width < 3 || height < 3) return;
    long off[8];
    qel::neighbour_offsets(width, off);
    for (int y = 1; y < height - 1; ++y)
        for (int x = 1; x < width - 1; ++x) {
            const std::ptrdiff_t i = static_cast<std::ptrdiff_t>(y) * width + x;
            if (edge[i] != 0 && qel::nonzero_neighbours(edge, i, off) < 2) edge[i] = qel::kEndPoint;
        }
    // New bridge pixels are 100, never 200, so they change no later window: the scan order
    // does not matter.
    const int r = gap / 2 + 1;
    for (int y = r; y < height - r; ++y)
        for (int x = r; x < width - r; ++x) {
            const std::ptrdiff_t i = static_cast<std::ptrdiff_t>(y) * width + x;
            if (candidates[i] == 0 || edge[i] != 0) continue;
            qel::EndPointWindow window;
            // The window stops one row short below and one column short on the right; kept so.
            for (int v = y - r; v < y + r; ++v) {
                const unsigned char* row = edge + static_cast<std::ptrdiff_t>(v) * width;
                for (int u = x - r; u < x + r; ++u)
                    if (row[u] == qel::kEndPoint) window.add(qel::side(u, x), qel::side(v, y));
            }
            if (window.has_bracketing_pair()) edge[i] = qel::kBridge;
        }
}

void QelEdgeDeleteNoiseAndCrossPoints(unsigned char* edge, int width, int height, int maxNeighbours) {
    if (width <= 0 || height <= 0) return;
    QelSetImageBoundary(edge, width, height, 0);
    long off[8];
    qel::neighbour_offsets(width, off);
    for (int y = 1; y < height - 1; ++y)
        for (int x = 1; x < width - 1; ++x) {
            const std::ptrdiff_t i = static_cast<std::ptrdiff_t>(y) * width + x;
            if (edge[i] != 0 && qel::nonzero_neighbours(edge, i, off) > maxNeighbours) edge[i] = qel::kCrossMark;
        }
    unsigned char unmark[256];
    for (int v = 0; v < 256; ++v) unmark[v] = static_cast<unsigned char>(v);
    unmark[qel::kCrossMark] = 0;
    qel::apply_lut(edge, static_cast<size_t>(width) * static_cast<size_t>(height), unmark, edge);
}

void QelEdgeDeleteNoiseByLength(unsigned char* edge, int width, int height, int minLength, unsigned char* dst) {
    if (width <= 0 || height <= 0) return;
    // dst is the tracer's chain scratch first, then the output.
    QEL_CONTOUR_STRUCT* kept = QelGetContours(edge, dst, width, height, minLength, 0, 1);
    std::fill(dst, dst + static_cast<size_t>(width) * static_cast<size_t>(height), static_cast<unsigned char>(0));
    for (QEL_CONTOUR_STRUCT* c = kept; c != nullptr; c = c->next)
        QelMarkChainByColor(dst, width, c->x, c->y, c->chain, c->chainLen, qel::kPaintWhite);
    QelFreeContours(kept);
}

void QelRemoveEdgePointsByGrd(unsigned char* grey, unsigned char* edge, int width, int height, int minGradient) {
    for (int y = 1; y < height - 1; ++y)
        for (int x = 1; x < width - 1; ++x) {
            const std::ptrdiff_t i = static_cast<std::ptrdiff_t>(y) * width + x;
            if (edge[i] == 0) continue;
            const int g = std::abs(grey[i + 1] - grey[i - 1]) + std::abs(grey[i + width] - grey[i - width]);
            if (g < minGradient) edge[i] = 0;
        }
}
