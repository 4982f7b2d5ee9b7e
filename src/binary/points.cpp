// Deleting points in place: isolated object pixels, and pixels of a value with too few or too many
// neighbours of the same value.
#include "qel/binary.h"

#include "binary/neighbourhood.h"

#include <cstddef>

namespace qel {
namespace {

// The like-neighbour rule shared by the "less than n" and "more than n" deleters: a pixel equal to
// value whose count of like neighbours satisfies doomed(count) becomes 255 − value. Raster order
// over the interior, in place, so earlier changes are counted.
template <class Doomed>
void delete_points_by_like_neighbours(unsigned char* image, int width, int height, int value, Doomed doomed) {
    const NeighbourOffsets off(width);
    const unsigned char flipped = static_cast<unsigned char>(kObject - value);
    for_each_interior(image, width, height, [&](unsigned char* p, int, int) {
        if (*p != value) return;
        const int like = count_neighbours(p, off, [value](unsigned char v) { return v == value; });
        if (doomed(like)) *p = flipped;
    });
}

}  // namespace
}  // namespace qel

void QelBinImgDeleteIsolatedPoints(unsigned char* image, int width, int height) {
    if (width <= 0 || height < 3) return;
    const qel::NeighbourOffsets off(width);
    const std::ptrdiff_t total = static_cast<std::ptrdiff_t>(width) * height;
    // One linear run over rows 1..height-2, border columns included: the left neighbour of column 0
    // is the last pixel of the row above, the right neighbour of column width-1 the first pixel of
    // the row below. This wrap is intended.
    const std::ptrdiff_t first = width;
    const std::ptrdiff_t last = total - width - 1;
    // Only the first pixel's upper-left and the last pixel's lower-right neighbours can fall
    // outside the buffer; they count as background.
    auto aloneAtBufferEnd = [&](std::ptrdiff_t i) {
        for (int k = 0; k < qel::kNeighbours; ++k) {
            const std::ptrdiff_t j = i + off[k];
            if (j >= 0 && j < total && image[j] != 0) return false;
        }
        return true;
    };
    for (std::ptrdiff_t i = first; i <= last; ++i) {
        unsigned char* p = image + i;
        if (*p == 0) continue;
        const bool alone = (i == first || i == last) ? aloneAtBufferEnd(i) : qel::count_nonzero_neighbours(p, off) == 0;
        if (alone) *p = qel::kBackground;
    }
}

void QelBinImgDeletePointsLessThanN(unsigned char* image, int width, int height, int value, int n) {
    qel::delete_points_by_like_neighbours(image, width, height, value, [n](int like) { return like < n; });
}

void QelBinImgDeletePointsMoreThanN(unsigned char* image, int width, int height, int value, int n) {
    qel::delete_points_by_like_neighbours(image, width, height, value, [n](int like) { return like > n; });
}
