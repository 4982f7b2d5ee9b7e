// Golden table entries of qel/misc.h, in header order.
#ifndef QEL_TESTS_GOLDEN_ENTRIES_MISC_H
#define QEL_TESTS_GOLDEN_ENTRIES_MISC_H

#include "golden/golden_table.h"
#include "qel/misc.h"

namespace golden {

inline tagRECT rect_of(int left, int top, int right, int bottom) {
    tagRECT r{};
    r.left = left;
    r.top = top;
    r.right = right;
    r.bottom = bottom;
    return r;
}

// The records of a split-and-merge list, every field but the pointers, and their chains.
inline void record_regions(Call& c, const RegionStruct* list) {
    for (const RegionStruct* r = list; r; r = r->next) {
        const int fields[] = {r->x, r->y, r->chainLength, r->area, r->perimeter, r->level,
                              r->enclosingId, r->id, r->parentId, r->childArea};
        for (int f : fields) c.value(f);
        for (int i = 0; i < r->chainLength; ++i) c.value(int(r->chain[i]));
    }
}

inline void add_misc(std::vector<Entry>& t) {
    t.insert(t.end(), {
        {"QelImgDifferenceInRect", [](Call& c) {
             c.value(QelImgDifferenceInRect(c.bgr(), c.bgr(1), true, c.w, rect_of(1, 2, c.w - 2, c.h - 1),
                                            rect_of(0, 0, c.w / 2, c.h / 2)));
         }},
        {"QelImg1AndImg2To1", [](Call& c) { QelImg1AndImg2To1(c.inout_grey(), c.binary(), c.pick(c.area(), -2, c.area())); }},
        {"QelImg1OrImg2To1", [](Call& c) { QelImg1OrImg2To1(c.inout_grey(), c.binary(), c.pick(c.area(), -2, c.area())); }},
        {"QelImg1XorImg2To1", [](Call& c) { QelImg1XorImg2To1(c.inout_grey(), c.grey(1), c.pick(c.area(), -2, c.area())); }},
        {"QelImg1AndImg2ToRes", [](Call& c) { QelImg1AndImg2ToRes(c.grey(), c.binary(), c.pick(c.area(), -2, c.area()), c.out_image()); }},
        {"QelImg1OrImg2ToRes", [](Call& c) { QelImg1OrImg2ToRes(c.grey(), c.binary(), c.pick(c.area(), -2, c.area()), c.out_image()); }},
        {"QelImg1XorImg2ToRes", [](Call& c) { QelImg1XorImg2ToRes(c.grey(), c.grey(1), c.pick(c.area(), -2, c.area()), c.out_image()); }},
        {"QelImg1Difference2To1", [](Call& c) { QelImg1Difference2To1(c.inout_grey(), c.grey(1), c.w, c.h); }},
        {"QelImg1Substract2To1", [](Call& c) { QelImg1Substract2To1(c.inout_grey(), c.grey(1), c.w, c.h); }},
        {"QelImg1Substract2To2", [](Call& c) { QelImg1Substract2To2(c.grey(), c.inout_grey(1), c.w, c.h); }},
        {"QelImg1SubstractImg2",
         [](Call& c) { QelImg1SubstractImg2(c.bgr(), c.bgr(1), c.w, c.h, true, c.out_image(3)); }},
        {"QelDifferenceImg12", [](Call& c) { QelDifferenceImg12(c.bgr(), c.bgr(1), c.w, c.h, true, c.out_image()); }},
        {"QelDifferenceImg12/histogram", [](Call& c) {
             QelDifferenceImg12(c.grey(), c.grey(1), c.w, c.h, false, c.out_image(), c.out<int>(256));
         }},
        {"QelRemainMaxGry", [](Call& c) { QelRemainMaxGry(c.bgr(), c.w, c.h, true, c.inout_bgr(1)); }},
        {"QelRemainMinGry", [](Call& c) { QelRemainMinGry(c.grey(), c.w, c.h, false, c.inout_grey(1)); }},
        {"QelRemainMaxMinGry",
         [](Call& c) { QelRemainMaxMinGry(c.grey(), c.w, c.h, false, c.inout_grey(1), c.inout_grey(2)); }},
        {"QelDoSumGryImg", [](Call& c) { QelDoSumGryImg(c.grey(), c.w, c.h, c.out<int>(size_t(c.area()))); }},
        {"QelCenterBlockMeanDif",
         [](Call& c) { const Rect rc = c.inside({c.w / 3, c.w / 2, c.h / 3, c.h / 2}); c.value(QelCenterBlockMeanDif(c.grey(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, c.pick(4, -2, std::max(c.w, c.h) + 2))); }},
        {"QelGryRectAvr", [](Call& c) { const Rect rc = c.inside({1, c.w - 2, 3, c.h - 1}); c.value(QelGryRectAvr(c.grey(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2)); }},
        {"QelGryMinMaxInRect", [](Call& c) { const Rect rc = c.inside({0, c.w - 1, 1, c.h - 2});
             int* r = c.out<int>(2);
             QelGryMinMaxInRect(c.grey(), c.w, rc.x1, rc.x2, rc.y1, rc.y2, c.pick(0.05, 0.0, 1.0), &r[0], &r[1]);
         }},
        {"QelMaxBrightRect", [](Call& c) {
             int* r = c.out<int>(2);
             c.value(QelMaxBrightRect(c.grey(), c.w, c.h, c.pick(7, -2, std::max(c.w, c.h) + 2), c.pick(5, -2, std::max(c.w, c.h) + 2), &r[0], &r[1]));
         }},
        {"QelEstimateImgStdev", [](Call& c) { c.value(QelEstimateImgStdev(c.grey(), c.binary(), c.w, c.h, c.pick(8, -2, std::max(c.w, c.h) + 2), c.pick(6, -2, std::max(c.w, c.h) + 2))); }},
        {"QelPointsRect", [](Call& c) {
             int* r = c.out<int>(4);
             QelPointsRect(c.ints(20, -5, c.w), c.ints(20, 0, c.h + 4, 1), c.pick(20, -2, 20), &r[0], &r[1], &r[2], &r[3]);
         }},
        {"QelRGBRectAvr", [](Call& c) { const Rect rc = c.inside({2, c.w - 3, 1, c.h - 2});
             int* r = c.out<int>(3);
             QelRGBRectAvr(c.bgr(), c.binary(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, &r[0], &r[1], &r[2]);
         }},
        {"QelGetRGBRectAvr", [](Call& c) { const Rect rc = c.inside({0, c.w / 2, 0, c.h - 1});
             int* r = c.out<int>(3);
             QelGetRGBRectAvr(c.bgr(), c.binary(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, &r[0], &r[1], &r[2]);
         }},
        {"QelMergeSplit", [](Call& c) {
             unsigned char* grey = c.inout_grey();
             RegionStruct* list = QelMergeSplit(grey, c.out(size_t(c.area()) * 2), c.w, c.h, 20, 10, 0.5);
             record_regions(c, list);
             QelFreeRegionStruct(list);
         }},
        {"QelFreeRegionStruct", [](Call& c) {
             QelFreeRegionStruct(nullptr);
             RegionStruct* list = QelMergeSplit(c.binary(), c.input<unsigned char>(size_t(c.area()) * 2), c.w, c.h,
                                                9, 0, 0.8);
             record_regions(c, list);
             QelFreeRegionStruct(list);
         }},
        {"Qel1DAverageFilter", [](Call& c) { Qel1DAverageFilter(c.ints(size_t(c.w), 0, 255), c.w, c.pick(3, -c.w - 2, c.w + 2), c.out<int>(size_t(c.w))); }},
        {"QelBin1DMedianFilter", [](Call& c) { QelBin1DMedianFilter(c.ints(size_t(c.w), 0, 1), c.w, c.pick(2, -c.w - 2, c.w + 2), c.out<int>(size_t(c.w))); }},
        {"QelDataAvrAndDevAndReturnMax", [](Call& c) {
             double* r = c.out<double>(2);
             c.value(QelDataAvrAndDevAndReturnMax(c.ints(size_t(c.h), -50, 300), c.h, &r[0], &r[1]));
         }},
        {"QelDataAvrAndDevAndReturnSum", [](Call& c) {
             double* r = c.out<double>(2);
             c.value(QelDataAvrAndDevAndReturnSum(c.ints(size_t(c.h), 0, 1000), c.h, &r[0], &r[1]));
         }},
        {"QelDataAvrAndDif", [](Call& c) {
             double* r = c.out<double>(2);
             QelDataAvrAndDif(c.ints(size_t(c.w), -100, 100), c.w, &r[0], &r[1]);
         }},
        {"QelDataMaxDataPos", [](Call& c) { c.value(QelDataMaxDataPos(c.ints(size_t(c.w), 0, 20), c.w)); }},
        {"QelDataMaxDataValue", [](Call& c) { c.value(QelDataMaxDataValue(c.ints(size_t(c.w), -9, 99), c.w)); }},
        {"QelDataMaxAvrAndPosInMovingWindow", [](Call& c) {
             c.value(QelDataMaxAvrAndPosInMovingWindow(c.ints(size_t(c.w), 0, 9), c.w, c.pick(5, -1, c.w + 2), c.out<double>(1), c.out<int>(1)));
         }},
        {"QelDataMaxDevAndPosInMovingWindow", [](Call& c) {
             c.value(QelDataMaxDevAndPosInMovingWindow(c.doubles(size_t(c.w), 0, 50), c.w, c.pick(6, -1, c.w + 2), c.out<double>(1), c.out<int>(1)));
         }},
        {"QelDataMaxDifAndPosInMovingWindow", [](Call& c) {
             c.value(QelDataMaxDifAndPosInMovingWindow(c.doubles(size_t(c.w), -10, 10), c.w, c.pick(4, -1, c.w + 2), c.out<double>(1), c.out<int>(1)));
         }},
        {"QelDataLinearInterpolattion", [](Call& c) {
             // Exactly nIn values: the element the formula would take past the end is never read.
             c.value(QelDataLinearInterpolattion(c.ints(size_t(c.w), 0, 255), c.w, c.out<int>(size_t(c.h)), c.h));
         }},
        {"QelDataFindPeaks", [](Call& c) {
             c.value(QelDataFindPeaks(c.doubles(size_t(c.w), 0, 30), c.w, c.pick(3, -c.w - 2, c.w + 2), c.out<double>(5), c.out<int>(5), c.pick(5, -1, 5)));
         }},
        {"QelpDataDeleteByWeightReturnNum", [](Call& c) {
             int* values = c.result(c.ints(size_t(c.w), 0, 500), size_t(c.w));
             int* weights = c.result(c.ints(size_t(c.w), 0, 10, 1), size_t(c.w));
             c.value(QelpDataDeleteByWeightReturnNum(values, weights, c.w, 3, 7));
         }},
    });
}

}  // namespace golden

#endif  // QEL_TESTS_GOLDEN_ENTRIES_MISC_H
