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
        {"QelGetWhitePixelsNum", [](Call& c) { c.value(QelGetWhitePixelsNum(c.binary(), c.w, c.h, 2, c.w + 3, -1, c.h / 2)); }},
        {"QelGetBlackRatioInBinaryImg",
         [](Call& c) { c.value(QelGetBlackRatioInBinaryImg(c.binary(), c.w, 1, c.w - 2, 1, c.h - 1)); }},
        {"QelPixelsInGryImg", [](Call& c) { c.value(QelPixelsInGryImg(c.grey(), c.w, c.h, 100)); }},
        {"QelBinImgSearchCenterX", [](Call& c) { c.value(QelBinImgSearchCenterX(c.binary(), c.w, c.h, 0, c.w - 1)); }},
        {"QelGetMaxSizeofMinFilter", [](Call& c) {
             int* size = c.out<int>(1);
             c.value(QelGetMaxSizeofMinFilter(c.binary(), c.out_image(), c.out_image(), c.w, c.h, size));
         }},
        {"QelBinImgDeleteIsolatedPoints", [](Call& c) { QelBinImgDeleteIsolatedPoints(c.inout_binary(), c.w, c.h); }},
        {"QelBinImgDeletePointsLessThanN",
         [](Call& c) { QelBinImgDeletePointsLessThanN(c.inout_binary(), c.w, c.h, 255, 3); }},
        {"QelBinImgDeletePointsMoreThanN",
         [](Call& c) { QelBinImgDeletePointsMoreThanN(c.inout_binary(), c.w, c.h, 0, 5); }},
        {"QelBinImgFilter", [](Call& c) {
             QelBinImgFilter(c.binary(), c.w, c.h, 2, 1, c.input<unsigned int>(size_t(c.w)), 255u * 6, c.out_image());
         }},
        {"QelBinImgFilter/own sums",
         [](Call& c) { c.value(QelBinImgFilter(c.binary(), c.w, c.h, 1, 2, 255u * 7, c.out_image())); }},
        {"QelBinImgRemoveMskAndFilter", [](Call& c) {
             c.value(QelBinImgRemoveMskAndFilter(c.grey(), c.binary(), c.w, c.h, 3, 2, 90, c.out_image()));
         }},
        {"QelBinImgRemoveMskAndFilterUseLUT", [](Call& c) {
             c.value(QelBinImgRemoveMskAndFilterUseLUT(c.grey(), c.grey(1), c.w, c.h, 2, 3, 80, c.out_image()));
         }},
        {"QelBinImgMaxFilter3x3", [](Call& c) { QelBinImgMaxFilter3x3(c.binary(), c.w, c.h, c.out_image()); }},
        {"QelBinImgMaxFilter3x3/rect", [](Call& c) {
             QelBinImgMaxFilter3x3(c.binary(), c.w, c.h, 2, c.w - 4, 1, c.h - 3, c.out_image());
         }},
        {"QelBinImgMinFilter3x3", [](Call& c) { QelBinImgMinFilter3x3(c.binary(), c.w, c.h, c.out_image()); }},
        {"QelBinImgMinFilter3x3/rect", [](Call& c) {
             QelBinImgMinFilter3x3(c.binary(), c.w, c.h, 3, c.w - 2, 2, c.h - 1, c.out_image());
         }},
        {"QelBinImgMedFilter3x3", [](Call& c) { QelBinImgMedFilter3x3(c.binary(), c.w, c.h, c.out_image()); }},
        {"QelBinImgMedFilter3x3/rect", [](Call& c) {
             QelBinImgMedFilter3x3(c.binary(), c.w, c.h, 0, c.w / 2, 2, c.h, c.out_image());
         }},
        {"QelBinImgMaxFilter3x3ToColor", [](Call& c) { QelBinImgMaxFilter3x3ToColor(c.inout_binary(), c.w, c.h, 128); }},
        {"QelBinImgMinFilter3x3ToColor", [](Call& c) { QelBinImgMinFilter3x3ToColor(c.inout_binary(), c.w, c.h, 77); }},
        {"QelBinImgLittleWhitePixelsMed3x3Filter",
         [](Call& c) { QelBinImgLittleWhitePixelsMed3x3Filter(c.binary(), c.w, c.h, c.out_image()); }},
        {"QelThresholdAndMedFilter3x3",
         [](Call& c) { c.value(QelThresholdAndMedFilter3x3(c.grey(), c.w, c.h, 120, c.out_image())); }},
        {"QelBinImgMedFilter",
         [](Call& c) { QelBinImgMedFilter(c.binary(), c.w, c.h, 2, 1, 1.5, 1.25, c.out_image()); }},
        {"QelBinImgThin", [](Call& c) { c.value(QelBinImgThin(c.binary(), c.out_image(), c.w, c.h, c.out_image())); }},
        {"QelFillHolesByNearNeighbor",
         [](Call& c) { QelFillHolesByNearNeighbor(c.grey(), c.binary(), c.w, c.h, 5, c.out_image()); }},
        {"QelRLXWhiteCount", [](Call& c) { QelRLXWhiteCount(c.binary(), c.w, c.h, c.out<int>(21), 20); }},
        {"QelRLXBlackCount", [](Call& c) { QelRLXBlackCount(c.binary(), c.w, c.h, c.out<int>(21), 20); }},
        {"QelRLYWhiteCount", [](Call& c) { QelRLYWhiteCount(c.binary(), c.w, c.h, c.out<int>(21), 20); }},
        {"QelRLYBlackCount", [](Call& c) { QelRLYBlackCount(c.binary(), c.w, c.h, c.out<int>(21), 20); }},
        {"QelRLXWhiteCount/statistics", [](Call& c) {
             int* s = c.out<int>(4);
             c.value(QelRLXWhiteCount(c.grey(), c.w, c.h, 1, c.w - 2, 0, c.h - 1, &s[0], &s[1], &s[2], &s[3]));
         }},
        {"QelRLYWhiteCount/statistics", [](Call& c) {
             int* s = c.out<int>(4);
             c.value(QelRLYWhiteCount(c.grey(), c.w, c.h, 0, c.w - 1, 2, c.h - 3, &s[0], &s[1], &s[2], &s[3]));
         }},
        {"QelRLXWhiteDeleteShort", [](Call& c) { QelRLXWhiteDeleteShort(c.inout_binary(), c.w, c.h, 6, 0); }},
        {"QelRLXWhiteDeleteLong", [](Call& c) { QelRLXWhiteDeleteLong(c.inout_binary(), c.w, c.h, 7, 100); }},
        {"QelRLXBlackDeleteShort", [](Call& c) { QelRLXBlackDeleteShort(c.inout_binary(), c.w, c.h, 5, 255); }},
        {"QelRLYWhiteDeleteShort", [](Call& c) { QelRLYWhiteDeleteShort(c.inout_binary(), c.w, c.h, 6, 0); }},
        {"QelRLYWhiteDeleteLong", [](Call& c) { QelRLYWhiteDeleteLong(c.inout_binary(), c.w, c.h, 7, 50); }},
        {"QelRLYWhiteDeleteIsolated", [](Call& c) { QelRLYWhiteDeleteIsolated(c.inout_binary(), c.w, c.h, 9); }},
        {"QelRLXWhiteLong", [](Call& c) { QelRLXWhiteLong(c.binary(), c.w, c.h, 4, 9, c.out_image()); }},
        {"QelRLYWhiteShort", [](Call& c) { QelRLYWhiteShort(c.grey(), c.w, c.h, 120, 6, c.out_image()); }},
        {"QelRLXDeleteWhiteShort",
         [](Call& c) { QelRLXDeleteWhiteShort(c.inout_binary(), c.w, c.h, 9, 6, c.out_image()); }},
        {"QelRLYDeleteWhiteShort",
         [](Call& c) { QelRLYDeleteWhiteShort(c.inout_binary(), c.w, c.h, 9, 6, c.out_image()); }},
        {"QelBinImg01TimesByX",
         [](Call& c) { QelBinImg01TimesByX(c.binary(), c.out<int>(size_t(c.w)), c.w, c.h, 3, c.out_image()); }},
        {"QelBinImgMarkMinOfRLXandRLY", [](Call& c) { QelBinImgMarkMinOfRLXandRLY(c.inout_binary(), c.w, c.h); }},
        {"QelRLYWhiteShortAndRLXWhiteLong", [](Call& c) {
             c.value(QelRLYWhiteShortAndRLXWhiteLong(c.grey(), c.out_image(), c.w, c.h, 110, 8, 3, 6, c.out_image()));
         }},
        {"QelRLXRegionsGet", [](Call& c) {
             c.value(QelRLXRegionsGet(c.binary(), c.w, c.h, c.w / 4, c.w / 2, 1, c.h - 2, c.out<RLX>(200), 200));
         }},
        {"QelRLXRegionsGrowByYInc", [](Call& c) {
             c.value(QelRLXRegionsGrowByYInc(c.binary(), c.w, c.h, c.h / 2, c.w / 4, c.w / 2, c.out<RLX>(100), 100));
         }},
        {"QelRLXRegionsGrowByYDec", [](Call& c) {
             c.value(QelRLXRegionsGrowByYDec(c.binary(), c.w, c.h, c.h / 2, c.w / 4, c.w / 2, c.out<RLX>(100), 100));
         }},
        {"QelRLXReginsGetAndGrow", [](Call& c) {
             c.value(QelRLXReginsGetAndGrow(c.binary(), c.w, c.h, c.w / 4, c.w / 2, c.h / 3, c.h / 2, c.out<RLX>(300),
                                            300));
         }},
        {"QelDrawRLXRegions", [](Call& c) {
             RLX* r = c.input<RLX>(3);
             r[0] = {0, 1, 5, 0};
             r[1] = {c.h / 2, -3, c.w + 2, 0};
             r[2] = {c.h + 1, 0, 3, 0};
             QelDrawRLXRegions(c.inout_grey(), c.w, c.h, r, 3, 300);
         }},
        {"QelRLYRegionsGet", [](Call& c) {
             c.value(QelRLYRegionsGet(c.binary(), c.w, c.h, 1, c.w - 2, c.h / 3, c.h / 2, c.out<RLY>(200), 200));
         }},
        {"QelRLYRegionsGrowByXInc", [](Call& c) {
             c.value(QelRLYRegionsGrowByXInc(c.binary(), c.w, c.h, c.w / 3, c.h / 3, c.h / 2, c.out<RLY>(100), 100));
         }},
        {"QelRLYRegionsGrowByXDec", [](Call& c) {
             c.value(QelRLYRegionsGrowByXDec(c.binary(), c.w, c.h, c.w / 3, c.h / 3, c.h / 2, c.out<RLY>(100), 100));
         }},
        {"QelRLYReginsGetAndGrow", [](Call& c) {
             c.value(QelRLYReginsGetAndGrow(c.binary(), c.w, c.h, c.w / 4, c.w / 2, c.h / 3, c.h / 2, c.out<RLY>(300),
                                            300));
         }},
        {"QelDrawRLYRegions", [](Call& c) {
             RLY* r = c.input<RLY>(2);
             r[0] = {1, 0, c.h, 0};
             r[1] = {c.w - 1, -2, 4, 0};
             QelDrawRLYRegions(c.inout_grey(), c.w, c.h, r, 2, 7);
         }},
        {"QelRLXRegionsWithID", [](Call& c) {
             c.value(QelRLXRegionsWithID(c.binary(), c.w, c.h, 2, 4, c.out<RLX>(size_t(c.area())), c.area()));
         }},
    });
}

}  // namespace golden

#endif  // QEL_TESTS_GOLDEN_ENTRIES_BINARY_H
