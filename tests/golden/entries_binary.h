// Golden table entries of qel/binary.h, in header order.
#ifndef QEL_TESTS_GOLDEN_ENTRIES_BINARY_H
#define QEL_TESTS_GOLDEN_ENTRIES_BINARY_H

#include "golden/golden_table.h"
#include "qel/binary.h"

namespace golden {

inline void add_binary(std::vector<Entry>& t) {
    t.insert(t.end(), {
        {"QelBinImgCentroid", [](Call& c) {
             int* xy = c.out<int>(2);
             c.value(QelBinImgCentroid(c.binary(), c.w, c.h, &xy[0], &xy[1]));
         }},
        {"QelGetWhitePixelsNum", [](Call& c) { const Rect rc = c.across({2, c.w + 3, -1, c.h / 2}); c.value(QelGetWhitePixelsNum(c.binary(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2)); }},
        {"QelGetBlackRatioInBinaryImg",
         [](Call& c) { const Rect rc = c.inside({1, c.w - 2, 1, c.h - 1}); c.value(QelGetBlackRatioInBinaryImg(c.binary(), c.w, rc.x1, rc.x2, rc.y1, rc.y2)); }},
        {"QelPixelsInGryImg", [](Call& c) { c.value(QelPixelsInGryImg(c.grey(), c.w, c.h, c.level(100))); }},
        {"QelBinImgSearchCenterX", [](Call& c) { c.value(QelBinImgSearchCenterX(c.binary(), c.w, c.h, c.col(0), c.col(c.w - 1))); }},
        {"QelGetMaxSizeofMinFilter", [](Call& c) {
             int* size = c.out<int>(1);
             c.value(QelGetMaxSizeofMinFilter(c.binary(), c.out_image(), c.out_image(), c.w, c.h, size));
         }},
        {"QelBinImgDeleteIsolatedPoints", [](Call& c) { QelBinImgDeleteIsolatedPoints(c.inout_binary(), c.w, c.h); }},
        {"QelBinImgDeletePointsLessThanN",
         [](Call& c) { QelBinImgDeletePointsLessThanN(c.inout_binary(), c.w, c.h, c.level(255), c.count(3, c.area() + 2)); }},
        {"QelBinImgDeletePointsMoreThanN",
         [](Call& c) { QelBinImgDeletePointsMoreThanN(c.inout_binary(), c.w, c.h, c.level(0), c.count(5, c.area() + 2)); }},
        {"QelBinImgFilter", [](Call& c) {
             QelBinImgFilter(c.binary(), c.w, c.h, c.pick(2, -2, std::max(c.w, c.h) + 2), c.pick(1, -2, std::max(c.w, c.h) + 2), c.input<unsigned int>(size_t(c.w)), 255u * 6, c.out_image());
         }},
        {"QelBinImgFilter/own sums",
         [](Call& c) { c.value(QelBinImgFilter(c.binary(), c.w, c.h, c.pick(1, -2, std::max(c.w, c.h) + 2), c.pick(2, -2, std::max(c.w, c.h) + 2), 255u * 7, c.out_image())); }},
        {"QelBinImgRemoveMskAndFilter", [](Call& c) {
             c.value(QelBinImgRemoveMskAndFilter(c.grey(), c.binary(), c.w, c.h, c.pick(3, -2, std::max(c.w, c.h) + 2), c.pick(2, -2, std::max(c.w, c.h) + 2), c.count(90, c.area() + 2), c.out_image()));
         }},
        {"QelBinImgRemoveMskAndFilterUseLUT", [](Call& c) {
             c.value(QelBinImgRemoveMskAndFilterUseLUT(c.grey(), c.grey(1), c.w, c.h, c.pick(2, -2, std::max(c.w, c.h) + 2), c.pick(3, -2, std::max(c.w, c.h) + 2), c.count(80, c.area() + 2), c.out_image()));
         }},
        {"QelBinImgMaxFilter3x3", [](Call& c) { QelBinImgMaxFilter3x3(c.binary(), c.w, c.h, c.out_image()); }},
        {"QelBinImgMaxFilter3x3/rect", [](Call& c) { const Rect rc = c.across({2, c.w - 4, 1, c.h - 3});
             QelBinImgMaxFilter3x3(c.binary(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, c.out_image());
         }},
        {"QelBinImgMinFilter3x3", [](Call& c) { QelBinImgMinFilter3x3(c.binary(), c.w, c.h, c.out_image()); }},
        {"QelBinImgMinFilter3x3/rect", [](Call& c) { const Rect rc = c.across({3, c.w - 2, 2, c.h - 1});
             QelBinImgMinFilter3x3(c.binary(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, c.out_image());
         }},
        {"QelBinImgMedFilter3x3", [](Call& c) { QelBinImgMedFilter3x3(c.binary(), c.w, c.h, c.out_image()); }},
        {"QelBinImgMedFilter3x3/rect", [](Call& c) { const Rect rc = c.across({0, c.w / 2, 2, c.h});
             QelBinImgMedFilter3x3(c.binary(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, c.out_image());
         }},
        {"QelBinImgMaxFilter3x3ToColor", [](Call& c) { QelBinImgMaxFilter3x3ToColor(c.inout_binary(), c.w, c.h, c.level(128)); }},
        {"QelBinImgMinFilter3x3ToColor", [](Call& c) { QelBinImgMinFilter3x3ToColor(c.inout_binary(), c.w, c.h, c.level(77)); }},
        {"QelBinImgLittleWhitePixelsMed3x3Filter",
         [](Call& c) { QelBinImgLittleWhitePixelsMed3x3Filter(c.binary(), c.w, c.h, c.out_image()); }},
        {"QelThresholdAndMedFilter3x3",
         [](Call& c) { c.value(QelThresholdAndMedFilter3x3(c.grey(), c.w, c.h, c.level(120), c.out_image())); }},
        {"QelBinImgMedFilter",
         [](Call& c) { QelBinImgMedFilter(c.binary(), c.w, c.h, c.pick(2, -2, std::max(c.w, c.h) + 2), c.pick(1, -2, std::max(c.w, c.h) + 2), 1.5, 1.25, c.out_image()); }},
        {"QelBinImgThin", [](Call& c) { c.value(QelBinImgThin(c.binary(), c.out_image(), c.w, c.h, c.out_image())); }},
        {"QelFillHolesByNearNeighbor",
         [](Call& c) { QelFillHolesByNearNeighbor(c.grey(), c.binary(), c.w, c.h, c.count(5, std::max(c.w, c.h) + 2), c.out_image()); }},
        {"QelRLXWhiteCount", [](Call& c) { QelRLXWhiteCount(c.binary(), c.w, c.h, c.out<int>(21), 20); }},
        {"QelRLXBlackCount", [](Call& c) { QelRLXBlackCount(c.binary(), c.w, c.h, c.out<int>(21), 20); }},
        {"QelRLYWhiteCount", [](Call& c) { QelRLYWhiteCount(c.binary(), c.w, c.h, c.out<int>(21), 20); }},
        {"QelRLYBlackCount", [](Call& c) { QelRLYBlackCount(c.binary(), c.w, c.h, c.out<int>(21), 20); }},
        {"QelRLXWhiteCount/statistics", [](Call& c) { const Rect rc = c.across({1, c.w - 2, 0, c.h - 1});
             int* s = c.out<int>(4);
             c.value(QelRLXWhiteCount(c.grey(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, &s[0], &s[1], &s[2], &s[3]));
         }},
        {"QelRLYWhiteCount/statistics", [](Call& c) { const Rect rc = c.across({0, c.w - 1, 2, c.h - 3});
             int* s = c.out<int>(4);
             c.value(QelRLYWhiteCount(c.grey(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, &s[0], &s[1], &s[2], &s[3]));
         }},
        {"QelRLXWhiteDeleteShort", [](Call& c) { QelRLXWhiteDeleteShort(c.inout_binary(), c.w, c.h, c.count(6, std::max(c.w, c.h) + 2), c.level(0)); }},
        {"QelRLXWhiteDeleteLong", [](Call& c) { QelRLXWhiteDeleteLong(c.inout_binary(), c.w, c.h, c.count(7, std::max(c.w, c.h) + 2), c.level(100)); }},
        {"QelRLXBlackDeleteShort", [](Call& c) { QelRLXBlackDeleteShort(c.inout_binary(), c.w, c.h, c.count(5, std::max(c.w, c.h) + 2), c.level(255)); }},
        {"QelRLYWhiteDeleteShort", [](Call& c) { QelRLYWhiteDeleteShort(c.inout_binary(), c.w, c.h, c.count(6, std::max(c.w, c.h) + 2), c.level(0)); }},
        {"QelRLYWhiteDeleteLong", [](Call& c) { QelRLYWhiteDeleteLong(c.inout_binary(), c.w, c.h, c.count(7, std::max(c.w, c.h) + 2), c.level(50)); }},
        {"QelRLYWhiteDeleteIsolated", [](Call& c) { QelRLYWhiteDeleteIsolated(c.inout_binary(), c.w, c.h, c.count(9, std::max(c.w, c.h) + 2)); }},
        {"QelRLXWhiteLong", [](Call& c) { QelRLXWhiteLong(c.binary(), c.w, c.h, c.count(4, std::max(c.w, c.h) + 2), c.count(9, std::max(c.w, c.h) + 2), c.out_image()); }},
        {"QelRLYWhiteShort", [](Call& c) { QelRLYWhiteShort(c.grey(), c.w, c.h, c.level(120), c.count(6, std::max(c.w, c.h) + 2), c.out_image()); }},
        {"QelRLXDeleteWhiteShort",
         [](Call& c) { QelRLXDeleteWhiteShort(c.inout_binary(), c.w, c.h, c.count(9, std::max(c.w, c.h) + 2), c.count(6, std::max(c.w, c.h) + 2), c.out_image()); }},
        {"QelRLYDeleteWhiteShort",
         [](Call& c) { QelRLYDeleteWhiteShort(c.inout_binary(), c.w, c.h, c.count(9, std::max(c.w, c.h) + 2), c.count(6, std::max(c.w, c.h) + 2), c.out_image()); }},
        {"QelBinImg01TimesByX",
         [](Call& c) { QelBinImg01TimesByX(c.binary(), c.out<int>(size_t(c.w)), c.w, c.h, c.pick(3, -2, std::max(c.w, c.h) + 2), c.out_image()); }},
        {"QelBinImgMarkMinOfRLXandRLY", [](Call& c) { QelBinImgMarkMinOfRLXandRLY(c.inout_binary(), c.w, c.h); }},
        {"QelRLYWhiteShortAndRLXWhiteLong", [](Call& c) {
             c.value(QelRLYWhiteShortAndRLXWhiteLong(c.grey(), c.out_image(), c.w, c.h, c.level(110), c.count(8, std::max(c.w, c.h) + 2), c.count(3, std::max(c.w, c.h) + 2), c.count(6, std::max(c.w, c.h) + 2), c.out_image()));
         }},
        {"QelRLXRegionsGet", [](Call& c) { const Rect rc = c.across({c.w / 4, c.w / 2, 1, c.h - 2});
             c.value(QelRLXRegionsGet(c.binary(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, c.out<RLX>(200), c.pick(200, -2, 200)));
         }},
        {"QelRLXRegionsGrowByYInc", [](Call& c) {
             c.value(QelRLXRegionsGrowByYInc(c.binary(), c.w, c.h, c.row(c.h / 2), c.col(c.w / 4), c.col(c.w / 2), c.out<RLX>(100), c.pick(100, -2, 100)));
         }},
        {"QelRLXRegionsGrowByYDec", [](Call& c) {
             c.value(QelRLXRegionsGrowByYDec(c.binary(), c.w, c.h, c.row(c.h / 2), c.col(c.w / 4), c.col(c.w / 2), c.out<RLX>(100), c.pick(100, -2, 100)));
         }},
        {"QelRLXReginsGetAndGrow", [](Call& c) { const Rect rc = c.across({c.w / 4, c.w / 2, c.h / 3, c.h / 2});
             c.value(QelRLXReginsGetAndGrow(c.binary(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, c.out<RLX>(300), c.pick(300, -2, 300)));
         }},
        {"QelDrawRLXRegions", [](Call& c) {
             RLX* r = c.input<RLX>(3);
             r[0] = {0, 1, 5, 0};
             r[1] = {c.h / 2, -3, c.w + 2, 0};
             r[2] = {c.h + 1, 0, 3, 0};
             QelDrawRLXRegions(c.inout_grey(), c.w, c.h, r, c.pick(3, -2, 3), 300);
         }},
        {"QelRLYRegionsGet", [](Call& c) { const Rect rc = c.across({1, c.w - 2, c.h / 3, c.h / 2});
             c.value(QelRLYRegionsGet(c.binary(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, c.out<RLY>(200), c.pick(200, -2, 200)));
         }},
        {"QelRLYRegionsGrowByXInc", [](Call& c) {
             c.value(QelRLYRegionsGrowByXInc(c.binary(), c.w, c.h, c.col(c.w / 3), c.row(c.h / 3), c.row(c.h / 2), c.out<RLY>(100), c.pick(100, -2, 100)));
         }},
        {"QelRLYRegionsGrowByXDec", [](Call& c) {
             c.value(QelRLYRegionsGrowByXDec(c.binary(), c.w, c.h, c.col(c.w / 3), c.row(c.h / 3), c.row(c.h / 2), c.out<RLY>(100), c.pick(100, -2, 100)));
         }},
        {"QelRLYReginsGetAndGrow", [](Call& c) { const Rect rc = c.across({c.w / 4, c.w / 2, c.h / 3, c.h / 2});
             c.value(QelRLYReginsGetAndGrow(c.binary(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, c.out<RLY>(300), c.pick(300, -2, 300)));
         }},
        {"QelDrawRLYRegions", [](Call& c) {
             RLY* r = c.input<RLY>(2);
             r[0] = {1, 0, c.h, 0};
             r[1] = {c.w - 1, -2, 4, 0};
             QelDrawRLYRegions(c.inout_grey(), c.w, c.h, r, c.pick(2, -2, 2), 7);
         }},
        {"QelRLXRegionsWithID", [](Call& c) {
             c.value(QelRLXRegionsWithID(c.binary(), c.w, c.h, 2, 4, c.out<RLX>(size_t(c.area())), c.pick(c.area(), -2, c.area())));
         }},
    });
}

}  // namespace golden

#endif  // QEL_TESTS_GOLDEN_ENTRIES_BINARY_H
