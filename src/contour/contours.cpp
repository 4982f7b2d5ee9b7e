// The contour list: every boundary of a binary image traced once, measured and kept in a list.
#include "qel/contour.h"
#include "qel/histogram.h"
#include "qel/io.h"

#include "contour/chain_record.h"
#include "contour/scan.h"
#include "contour/trace.h"

#include <cstddef>
#include <cstring>
#include <new>

static_assert(sizeof(bool) == 1, "isOuter is an 8-bit field");

namespace {

constexpr int kOuterOnly = 1;
constexpr int kHolesOnly = 2;

bool kind_wanted(int mode, bool outer) {
    if (mode == kOuterOnly) return outer;
    if (mode == kHolesOnly) return !outer;
    return true;
}

// A record with its own copy of the chain, or null when either allocation fails.
QEL_CONTOUR_STRUCT* new_record(bool outer, int x, int y, const unsigned char* chain, int n, int area, int perimeter) {
    unsigned char* codes = nullptr;
    QEL_CONTOUR_STRUCT* record = qel::new_record_with_chain<QEL_CONTOUR_STRUCT>(chain, n, &codes);
    if (record == nullptr) return nullptr;
    record->isOuter = outer;
    record->area = area;
    record->perimeter = perimeter;
    record->x = x;
    record->y = y;
    record->chainLen = n;
    record->chain = codes;
    record->next = nullptr;
    return record;
}

}  // namespace

QEL_CONTOUR_STRUCT* QelGetContours(unsigned char* image, unsigned char* chain, int width, int height, int minLength,
                                   int minArea, int mode) {
    if (width <= 0 || height <= 0) return nullptr;
    QelSetImageBoundary(image, width, height, 0);
    const int maxCodes = qel::whole_image_codes(width, height);
    QEL_CONTOUR_STRUCT* head = nullptr;
    QEL_CONTOUR_STRUCT** tail = &head;
    qel::scan_boundary_starts(
        image, width, qel::rows_below_first(width, height), qel::kContourStarts,
        [&](std::ptrdiff_t i, int x, int y, unsigned char, qel::Start start) {
            if (start == qel::Start::None) return;
            const bool outer = start == qel::Start::Outer;
            const int n = qel::trace_found(image, width, i, start, chain, maxCodes);
            if (n == 0 || n < minLength || !kind_wanted(mode, outer)) return;
            int area = 0;
            int perimeter = 0;
            QelRealAreaAndPerimeter(chain, n, &area, &perimeter);
            if (area < minArea || perimeter < minLength) return;
            QEL_CONTOUR_STRUCT* record = new_record(outer, outer ? x : x - 1, y, chain, n, area, perimeter);
            if (record == nullptr) return;
            *tail = record;
            tail = &record->next;
        });
    QelThreshold(image, width, height, qel::kUnmarkThreshold);
    return head;
}

void QelFreeContours(QEL_CONTOUR_STRUCT* contours) {
    while (contours != nullptr) {
        QEL_CONTOUR_STRUCT* next = contours->next;
        delete[] contours->chain;
        delete contours;
        contours = next;
    }
}
