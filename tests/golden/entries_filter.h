// Golden table entries of qel/filter.h, in header order.
#ifndef QEL_TESTS_GOLDEN_ENTRIES_FILTER_H
#define QEL_TESTS_GOLDEN_ENTRIES_FILTER_H

#include "golden/golden_table.h"
#include "qel/filter.h"

namespace golden {

inline void add_filter(std::vector<Entry>& t) {
    t.insert(t.end(), {
        {"QelGryAverageFilter", [](Call& c) { QelGryAverageFilter(c.grey(), c.w, c.h, c.pick(3, -2, std::max(c.w, c.h) + 2), c.pick(2, -2, std::max(c.w, c.h) + 2), c.out_image()); }},
        {"QelGryAverageFilterFast",
         [](Call& c) { c.value(QelGryAverageFilterFast(c.grey(), c.w, c.h, c.pick(2, -2, std::max(c.w, c.h) + 2), c.pick(3, -2, std::max(c.w, c.h) + 2), c.out_image())); }},
        {"QelGryAverageFilterFastNonBoundary",
         [](Call& c) { c.value(QelGryAverageFilterFastNonBoundary(c.grey(), c.w, c.h, c.pick(4, -2, std::max(c.w, c.h) + 2), c.pick(1, -2, std::max(c.w, c.h) + 2), c.out_image())); }},
        {"QelGryAverageFilterByX", [](Call& c) { QelGryAverageFilterByX(c.grey(), c.w, c.h, c.pick(3, -2, std::max(c.w, c.h) + 2), c.out_image()); }},
        {"QelGryAverageFilterByY", [](Call& c) { QelGryAverageFilterByY(c.grey(), c.w, c.h, c.pick(2, -2, std::max(c.w, c.h) + 2), c.out_image()); }},
        {"QelRGBAverageFilter", [](Call& c) { QelRGBAverageFilter(c.bgr(), c.w, c.h, c.pick(1, -2, std::max(c.w, c.h) + 2), c.pick(2, -2, std::max(c.w, c.h) + 2), c.out_image(3)); }},
        {"QelRGBAverageFilterFast",
         [](Call& c) { c.value(QelRGBAverageFilterFast(c.bgr(), c.w, c.h, c.pick(2, -2, std::max(c.w, c.h) + 2), c.pick(2, -2, std::max(c.w, c.h) + 2), c.out_image(3))); }},
        {"QelRGBAverageFilterFastNonBoundary",
         [](Call& c) { c.value(QelRGBAverageFilterFastNonBoundary(c.bgr(), c.w, c.h, c.pick(3, -2, std::max(c.w, c.h) + 2), c.pick(2, -2, std::max(c.w, c.h) + 2), c.out_image(3))); }},
        {"QelGryFastMedianFilter", [](Call& c) { QelGryFastMedianFilter(c.grey(), c.w, c.h, c.pick(2, -2, std::max(c.w, c.h) + 2), c.pick(2, -2, std::max(c.w, c.h) + 2), c.out_image()); }},
        {"QelGryImgMedianBoundary0", [](Call& c) { QelGryImgMedianBoundary0(c.grey(), c.w, c.h, c.pick(1, -2, std::max(c.w, c.h) + 2), c.pick(2, -2, std::max(c.w, c.h) + 2), c.out_image()); }},
        {"QelGryImgMaxFilter3xInRow", [](Call& c) { QelGryImgMaxFilter3xInRow(c.grey(), c.w, c.h, c.out_image()); }},
        {"QelGryImgMinFilter3xInRow", [](Call& c) { QelGryImgMinFilter3xInRow(c.grey(), c.w, c.h, c.out_image()); }},
        {"QelGryImgMaxFilter5xInRow", [](Call& c) { QelGryImgMaxFilter5xInRow(c.grey(), c.w, c.h, c.out_image()); }},
        {"QelGryImgMinFilter5xInRow", [](Call& c) { QelGryImgMinFilter5xInRow(c.grey(), c.w, c.h, c.out_image()); }},
        {"QelGryImgMaxFilter3xInCol", [](Call& c) { QelGryImgMaxFilter3xInCol(c.grey(), c.w, c.h, c.out_image()); }},
        {"QelGryImgMinFilter3xInCol", [](Call& c) { QelGryImgMinFilter3xInCol(c.grey(), c.w, c.h, c.out_image()); }},
        {"QelGryImgMaxFilter5xInCol", [](Call& c) { QelGryImgMaxFilter5xInCol(c.grey(), c.w, c.h, c.out_image()); }},
        {"QelGryImgMinFilter5xInCol", [](Call& c) { QelGryImgMinFilter5xInCol(c.grey(), c.w, c.h, c.out_image()); }},
        {"QelGryZedFilter", [](Call& c) { QelGryZedFilter(c.grey(), c.w, c.h, c.pick(6, -5, 255), c.out_image()); }},
        {"QelEstimateNoiseDelta", [](Call& c) { c.value(QelEstimateNoiseDelta(c.grey(), c.w, c.h, c.out_image())); }},
        {"QelGryImgColDev100",
         [](Call& c) { const Rect rc = c.across({1, c.w - 2, 2, c.h - 1}); QelGryImgColDev100(c.grey(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, c.out<int>(size_t(c.w))); }},
        {"QelGryImgColDevDev",
         [](Call& c) { const Rect rc = c.across({0, c.w - 1, 1, c.h - 2}); QelGryImgColDevDev(c.grey(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, c.out<int>(size_t(c.w))); }},
        {"QelGryImgRowDev100",
         [](Call& c) { const Rect rc = c.across({2, c.w - 3, 0, c.h - 1}); QelGryImgRowDev100(c.grey(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, c.out<int>(size_t(c.h))); }},
        {"QelGryImgRowDevDev",
         [](Call& c) { const Rect rc = c.across({0, c.w / 2, 1, c.h - 1}); QelGryImgRowDevDev(c.grey(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, c.out<int>(size_t(c.h))); }},
        {"QelGryImgColsDev100", [](Call& c) { QelGryImgColsDev100(c.grey(), c.w, c.h, c.pick(5, -2, c.w + 2), c.out<int>(size_t(c.w))); }},
    });
}

}  // namespace golden

#endif  // QEL_TESTS_GOLDEN_ENTRIES_FILTER_H
