// Region selection built on the tracer: contours chosen by area or perimeter, regions removed or
// kept by size, the largest region in a rectangle, short contours deleted and the largest hole.
#include "qel/contour.h"
#include "qel/draw.h"
#include "qel/histogram.h"
#include "qel/io.h"

#include "contour/chain_paint.h"
#include "contour/fill.h"
#include "contour/scan.h"
#include "contour/trace.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>

namespace {

using qel::Start;

// Region functions write this into contour pixels before filling a binary image, so the fill
// stops at the contour (a binary image holds no 128 of its own).
constexpr int kFillBoundary = 128;

std::size_t pixel_count(int width, int height) {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
}

// Zeroes the image's frame and, when out is given, copies the image into it.
void clear_frame(unsigned char* image, int width, int height, unsigned char* out = nullptr) {
    QelSetImageBoundary(image, width, height, 0);
    if (out != nullptr) std::memcpy(out, image, pixel_count(width, height));
}

// The scan of the selection functions: rows 1, 1 + step, … and columns 1..width − 1.
qel::ScanArea selection_area(int width, int height, int rowStep) { return {1, height - 1, rowStep, 1, width - 1}; }

// Where the selection functions draw the chain they judged: from the pixel left of the current one
// when the current pixel was below 255 (a hole's start), else from the current pixel.
int drawing_column(int x, unsigned char c) { return c < 255 ? x - 1 : x; }

// Traces every boundary the scan of the whole image finds, filling with fill_contour those of the
// wanted kind whose enclosed pixel count lies in [minPixels, maxPixels]; returns how many.
int fill_regions_by_size(unsigned char* image, unsigned char* chain, int width, int height, int minPixels,
                         int maxPixels, unsigned char* out, Start wanted, bool includeContour, int fillValue) {
    if (width <= 0 || height <= 0) return 0;
    clear_frame(image, width, height, out);
    const int maxCodes = qel::whole_image_codes(width, height);
    const std::ptrdiff_t size = static_cast<std::ptrdiff_t>(pixel_count(width, height));
    int count = 0;
    qel::scan_boundary_starts(image, width, qel::rows_below_first(width, height), qel::kContourStarts,
                              [&](std::ptrdiff_t i, int x, int y, unsigned char, Start start) {
                                  if (start == Start::None) return;
                                  const int n = qel::trace_found(image, width, i, start, chain, maxCodes);
                                  if (start != wanted) return;  // traced only to mark it
                                  const int enclosed = QelRealPixelsEnclosed(chain, n);
                                  if (enclosed < minPixels || enclosed > maxPixels) return;
                                  const int startX = start == Start::Outer ? x : x - 1;
                                  qel::fill_contour_in_buffer(out, width, size, startX, y, chain, n, includeContour,
                                                              kFillBoundary, fillValue);
                                  ++count;
                              });
    QelThreshold(image, width, height, qel::kUnmarkThreshold);
    return count;
}

enum class Measure { Area, Perimeter };

// Qel255RectWithMaxArea and Qel255RectWithMaxPerimeter.
int largest_in_rect(Measure measure, unsigned char* image, unsigned char* chain, int width, int height, int x1,
                    int x2, int y1, int y2, int rowStep, tagRECT* rect, int* centerX, int* centerY) {
    if (width <= 0 || height <= 0) return 0;
    // A frame of background one pixel outside the rectangle keeps every boundary inside it.
    const int left = std::max(x1 - 1, 0);
    const int right = std::min(width - 1, x2 + 1);
    const int top = std::max(y1 - 1, 0);
    const int bottom = std::min(height - 1, y2 + 1);
    QelDrawGryRect(image, width, height, left, right, top, bottom, 0);

    const int maxCodes = qel::whole_image_codes(width, height);
    int best = 0;
    const qel::ScanArea inside{top + 1, bottom - 1, rowStep, left + 1, right - 1};
    qel::scan_boundary_starts(image, width, inside, qel::kContourStarts,
                              [&](std::ptrdiff_t i, int x, int y, unsigned char, Start start) {
                                  if (start == Start::None) return;
                                  const int n = qel::trace_found(image, width, i, start, chain, maxCodes);
                                  if (start != Start::Outer || n == 0) return;
                                  int area = 0;
                                  int perimeter = 0;
                                  QelRealAreaAndPerimeter(chain, n, &area, &perimeter);
                                  const int value = measure == Measure::Area ? area : perimeter;
                                  if (value <= best) return;  // the first of equal contours wins
                                  best = value;
                                  int l = 0, r = 0, t = 0, b = 0;
                                  QelContourRect(x, y, chain, n, &l, &r, &t, &b);
                                  rect->left = l;
                                  rect->top = t;
                                  rect->right = r;
                                  rect->bottom = b;
                                  QelContourCenter(x, y, chain, n, centerX, centerY);
                              });
    // Only the caller's rectangle is binarised: the frame around it stays 0, with any marks on it.
    QelThresholdInRect(image, width, std::max(x1, 0), std::min(x2, width - 1), std::max(y1, 0),
                       std::min(y2, height - 1), qel::kUnmarkThreshold);
    return best;
}

}  // namespace

int QelSelectContoursByArea(unsigned char* image, unsigned char* chain, int width, int height, int rowStep,
                            int minArea, int maxArea, unsigned char* out) {
    if (width <= 0 || height <= 0) return 0;
    clear_frame(image, width, height);
    const int maxCodes = qel::whole_image_codes(width, height);
    // The chain is drawn where the scan stands, not where it was traced, so it may reach past the
    // image; pixels beyond out's ends are skipped.
    const qel::InsideBuffer outBounds{static_cast<std::ptrdiff_t>(pixel_count(width, height))};
    int n = 0;  // the last chain's length, kept from pixel to pixel
    int count = 0;
    qel::scan_boundary_starts(image, width, selection_area(width, height, rowStep), qel::kSelectionStarts,
                              [&](std::ptrdiff_t i, int x, int y, unsigned char c, Start start) {
                                  if (start != Start::None) n = qel::trace_found(image, width, i, start, chain, maxCodes);
                                  // Every changing pixel judges the last chain again, so one contour
                                  // may be counted and drawn many times.
                                  int area = 0;
                                  int perimeter = 0;
                                  QelAreaAndPerimeter(chain, n, &area, &perimeter);
                                  if (area < minArea || area > maxArea) return;
                                  ++count;
                                  qel::paint_chain(out, width, drawing_column(x, c), y, chain, n, 255, outBounds);
                              });
    QelThreshold(image, width, height, qel::kUnmarkThreshold);
    return count;
}

int QelSelectContoursByPerimeter(unsigned char* image, unsigned char* chain, int width, int height, int rowStep,
                                 int minPerimeter, int maxPerimeter, unsigned char* out) {
    if (width <= 0 || height <= 0) return 0;
    clear_frame(image, width, height);
    const int maxCodes = qel::whole_image_codes(width, height);
    const int minCodes = std::max(minPerimeter / 2, 2);
    int count = 0;
    qel::scan_boundary_starts(image, width, selection_area(width, height, rowStep), qel::kSelectionStarts,
                              [&](std::ptrdiff_t i, int x, int y, unsigned char c, Start start) {
                                  if (start == Start::None) return;
                                  const int n = qel::trace_found(image, width, i, start, chain, maxCodes);
                                  if (n < minCodes) return;
                                  int area = 0;
                                  int perimeter = 0;
                                  QelAreaAndPerimeter(chain, n, &area, &perimeter);
                                  if (perimeter < minPerimeter || perimeter > maxPerimeter) return;
                                  ++count;
                                  qel::paint_chain(out, width, drawing_column(x, c), y, chain, n, 255,
                                                   qel::AnywhereInImage{});
                              });
    QelThreshold(image, width, height, qel::kUnmarkThreshold);
    return count;
}

int QelRemoveWhiteRegionsByArea(unsigned char* image, unsigned char* chain, int width, int height, int minPixels,
                                int maxPixels, unsigned char* out) {
    return fill_regions_by_size(image, chain, width, height, minPixels, maxPixels, out, Start::Outer, true, 0);
}

int QelRemoveBlackRegionsByArea(unsigned char* image, unsigned char* chain, int width, int height, int minPixels,
                                int maxPixels, unsigned char* out) {
    return fill_regions_by_size(image, chain, width, height, minPixels, maxPixels, out, Start::Hole, false, 255);
}

int Qel255NRegionsWithMaxArea(unsigned char* image, int width, int height, int n, int minLength, unsigned char* out) {
    if (width <= 0 || height <= 0) return 0;
    const std::size_t size = pixel_count(width, height);
    std::unique_ptr<unsigned char[]> chain(new (std::nothrow) unsigned char[size]);
    // The n largest areas so far, 0 until filled: a region is painted when its area exceeds the
    // smallest of them.
    constexpr int kStackAreas = 2048;
    int stackAreas[kStackAreas];
    std::unique_ptr<int[]> heapAreas;
    int* areas = stackAreas;
    if (n >= kStackAreas) {
        heapAreas.reset(new (std::nothrow) int[static_cast<std::size_t>(n)]);
        areas = heapAreas.get();
    }
    if (!chain || areas == nullptr) {
        std::memset(out, 0, size);
        return 0;
    }
    QEL_CONTOUR_STRUCT* contours = QelGetContours(image, chain.get(), width, height, minLength, 0, 1);

    const int held = std::max(n, 0);
    std::fill(areas, areas + held, 0);
    int filled = 0;
    for (QEL_CONTOUR_STRUCT* c = contours; c != nullptr; c = c->next) {
        int area = 0;
        int perimeter = 0;
        QelAreaAndPerimeter(c->chain, c->chainLen, &area, &perimeter);
        c->area = area;
        c->perimeter = perimeter;
        if (filled < held) {
            areas[filled++] = area;
        } else if (held > 0) {
            int* smallest = std::min_element(areas, areas + held);
            if (area > *smallest) *smallest = area;
        }
    }
    // Strictly larger than the smallest held area: with n or more regions the n-th largest is not
    // painted, and n = 1 paints nothing. With n < 1 nothing is held and nothing painted.
    const int threshold = held > 0 ? *std::min_element(areas, areas + held) : INT_MAX;

    std::memset(out, 0, size);
    int painted = 0;
    for (QEL_CONTOUR_STRUCT* c = contours; c != nullptr; c = c->next) {
        if (c->area <= threshold) continue;
        QelPastePixels2ResImg(image, width, c->x, c->y, c->chain, c->chainLen, kFillBoundary, 255, out, -1);
        ++painted;
    }
    QelFreeContours(contours);
    return painted;
}

int Qel255RectWithMaxArea(unsigned char* image, unsigned char* chain, int width, int height, int x1, int x2, int y1,
                          int y2, int rowStep, tagRECT* rect, int* centerX, int* centerY) {
    return largest_in_rect(Measure::Area, image, chain, width, height, x1, x2, y1, y2, rowStep, rect, centerX,
                           centerY);
}

int Qel255RectWithMaxPerimeter(unsigned char* image, unsigned char* chain, int width, int height, int x1, int x2,
                               int y1, int y2, int rowStep, tagRECT* rect, int* centerX, int* centerY) {
    return largest_in_rect(Measure::Perimeter, image, chain, width, height, x1, x2, y1, y2, rowStep, rect, centerX,
                           centerY);
}

void QelDeleteShortContour(unsigned char* image, unsigned char* chain, int width, int height, int maxLength,
                           unsigned char* out) {
    if (width <= 0 || height <= 0) return;
    clear_frame(image, width, height, out);
    const int maxCodes = qel::whole_image_codes(width, height);
    // This scan stops a row early: the bottom row is the zero frame anyway.
    const qel::ScanArea area{1, height - 2, 1, 1, width - 1};
    qel::scan_boundary_starts(image, width, area, qel::kContourStarts,
                              [&](std::ptrdiff_t i, int x, int y, unsigned char, Start start) {
                                  if (start == Start::None) return;
                                  const int n = qel::trace_found(image, width, i, start, chain, maxCodes);
                                  // Only outer boundaries are removed; the interior stays.
                                  if (start == Start::Outer && n <= maxLength)
                                      qel::paint_chain(out, width, x, y, chain, n, 0, qel::AnywhereInImage{});
                              });
    QelThreshold(image, width, height, qel::kUnmarkThreshold);
}

int QelMarkMaxAreaHoleContour(unsigned char* image, unsigned char* chain, int width, int height, int colour) {
    if (width <= 0 || height <= 0) return 0;
    // No zero frame here: objects may touch the image's edges, so the tracer treats pixels beyond
    // the buffer as background. The image keeps its trace marks.
    const qel::InsideBuffer bounds{static_cast<std::ptrdiff_t>(pixel_count(width, height))};
    const int maxCodes = qel::whole_image_codes(width, height);
    unsigned char* spare = chain;  // every chain is kept, each behind the one before
    int best = 0;
    const unsigned char* bestChain = nullptr;
    int bestN = 0;
    int bestX = 0;
    int bestY = 0;
    qel::scan_boundary_starts(image, width, qel::rows_below_first(width, height), qel::kContourStarts,
                              [&](std::ptrdiff_t i, int x, int y, unsigned char, Start start) {
                                  if (start == Start::None) return;
                                  unsigned char* codes = spare;
                                  const int n = qel::trace_found(image, width, i, start, codes, maxCodes, bounds);
                                  spare += n;
                                  if (start != Start::Hole || n == 0) return;
                                  int area = 0;
                                  int perimeter = 0;
                                  QelRealAreaAndPerimeter(codes, n, &area, &perimeter);
                                  if (area <= best) return;
                                  best = area;
                                  bestChain = codes;
                                  bestN = n;
                                  bestX = x - 1;
                                  bestY = y;
                              });
    // With no hole there is nothing to draw.
    if (bestChain != nullptr) qel::paint_chain(image, width, bestX, bestY, bestChain, bestN, colour, bounds);
    return best;
}
