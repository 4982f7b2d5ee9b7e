// Golden table entries of qel/histogram.h, in header order.
#ifndef QEL_TESTS_GOLDEN_ENTRIES_HISTOGRAM_H
#define QEL_TESTS_GOLDEN_ENTRIES_HISTOGRAM_H

#include "golden/golden_table.h"
#include "qel/histogram.h"

namespace golden {

inline void add_histogram(std::vector<Entry>& t) {
    t.insert(t.end(), {
        {"QelGetHistogram", [](Call& c) { QelGetHistogram(c.grey(), c.w, c.h, c.out<int>(256)); }},
        {"QelGetHistogramInRect",
         [](Call& c) { const Rect rc = c.inside({1, c.w - 2, 2, c.h - 1}); QelGetHistogramInRect(c.grey(), c.w, rc.x1, rc.x2, rc.y1, rc.y2, c.out<int>(256)); }},
        {"QelGetHistogramByMasked",
         [](Call& c) { const Rect rc = c.inside({0, c.w - 1, 1, c.h - 2}); QelGetHistogramByMasked(c.grey(), c.binary(), c.w, rc.x1, rc.x2, rc.y1, rc.y2, c.out<int>(256)); }},
        {"QelGetHistogramByLimited", [](Call& c) {
             int* left = c.input<int>(size_t(c.h));
             int* right = c.input<int>(size_t(c.h));
             for (int y = 0; y < c.h; ++y) {
                 left[y] = y % c.w;
                 right[y] = c.w - (y % 3);
             }
             QelGetHistogramByLimited(c.grey(), c.w, c.py(1), c.py(c.h - 1), left, right, c.out<int>(256));
         }},
        {"QelGetImageAvrAndDev", [](Call& c) {
             double* r = c.out<double>(2);
             c.value(QelGetImageAvrAndDev(c.grey(), c.w, c.h, &r[0], &r[1]));
         }},
        {"QelGetImageAvrAndDev/histogram", [](Call& c) {
             double* r = c.out<double>(2);
             c.value(QelGetImageAvrAndDev(c.histogram(), &r[0], &r[1]));
         }},
        {"QelGetImageAvrAndDevAndDif", [](Call& c) {
             double* r = c.out<double>(3);
             c.value(QelGetImageAvrAndDevAndDif(c.histogram(), &r[0], &r[1], &r[2]));
         }},
        {"QelGetImageAvrAndDevFast", [](Call& c) {
             double* r = c.out<double>(2);
             c.value(QelGetImageAvrAndDevFast(c.histogram(), &r[0], &r[1]));
         }},
        {"QelGetImageAvrAndDif", [](Call& c) {
             int* r = c.out<int>(2);
             QelGetImageAvrAndDif(c.histogram(), &r[0], &r[1]);
         }},
        {"QelGetMaxValueInHistogram", [](Call& c) { c.value(QelGetMaxValueInHistogram(c.histogram(), 0.05)); }},
        {"QelGetMinValueInHistogram", [](Call& c) { c.value(QelGetMinValueInHistogram(c.histogram(), 0.1)); }},
        {"QelGetMedianInHistogram", [](Call& c) { c.value(QelGetMedianInHistogram(c.histogram())); }},
        {"QelGetMostInHistogram", [](Call& c) { c.value(QelGetMostInHistogram(c.histogram(), c.out<int>(1))); }},
        {"QelGetPeakInHistogram", [](Call& c) { c.value(QelGetPeakInHistogram(c.histogram())); }},
        {"QelHistogramOrder", [](Call& c) { c.value(QelHistogramOrder(c.histogram(), c.out<int>(256))); }},
        {"QelDrawHistogram2Img", [](Call& c) { QelDrawHistogram2Img(c.histogram(), c.pick(256, 0, 256), c.out_image(), c.w, c.h); }},
        {"QelGetOtsuThreshold", [](Call& c) { c.value(QelGetOtsuThreshold(c.histogram(), c.pick(256, 0, 256))); }},
        {"QelGetThresholdByRatio", [](Call& c) { c.value(QelGetThresholdByRatio(c.histogram(), 0.3)); }},
        {"QelGetThresholdLimit", [](Call& c) {
             int* r = c.out<int>(2);
             QelGetThresholdLimit(c.histogram(), 1.5, &r[0], &r[1]);
         }},
        {"QelGetDifImgThreshold", [](Call& c) { c.value(QelGetDifImgThreshold(c.histogram())); }},
        {"QelGetDifImgThreshold/valley",
         [](Call& c) { c.value(QelGetDifImgThreshold(c.histogram(), c.level(5), c.level(240), c.out<int>(1))); }},
        {"QelClusterHistogram", [](Call& c) { c.value(QelClusterHistogram(c.histogram(), 3, 0.5, c.out<double>(3))); }},
        {"QelThreshold", [](Call& c) { QelThreshold(c.grey(), c.w, c.h, c.level(128), c.out_image()); }},
        {"QelThreshold/in place", [](Call& c) { QelThreshold(c.inout_grey(), c.w, c.h, c.level(100)); }},
        {"QelThreshold2V1V2", [](Call& c) { QelThreshold2V1V2(c.inout_grey(), c.w, c.h, c.level(140), c.level(20), 300); }},
        {"QelThresholdInRect",
         [](Call& c) { const Rect rc = c.inside({1, c.w - 3, 2, c.h - 2}); QelThresholdInRect(c.grey(), c.w, rc.x1, rc.x2, rc.y1, rc.y2, c.level(90), c.out_image()); }},
        {"QelThresholdInRect/in place",
         [](Call& c) { const Rect rc = c.inside({0, c.w / 2, 0, c.h - 1}); QelThresholdInRect(c.inout_grey(), c.w, rc.x1, rc.x2, rc.y1, rc.y2, c.level(110)); }},
        {"QelThresholdByPercent", [](Call& c) { QelThresholdByPercent(c.inout_grey(), c.w, c.h, c.pick(30, 0, 100)); }},
        {"QelThresholdByRatio", [](Call& c) { c.value(QelThresholdByRatio(c.inout_grey(), c.w, c.h, 0.25)); }},
        {"QelThresholdByRatio/out",
         [](Call& c) { c.value(QelThresholdByRatio(c.grey(), c.w, c.h, 0.6, c.out_image())); }},
        {"QelThresholdByRatio/rect",
         [](Call& c) { const Rect rc = c.inside({2, c.w - 1, 1, c.h - 3}); c.value(QelThresholdByRatio(c.inout_grey(), c.w, rc.x1, rc.x2, rc.y1, rc.y2, 0.4)); }},
        {"QelThresholdByRatio/rect out", [](Call& c) { const Rect rc = c.inside({0, c.w - 2, 2, c.h - 1});
             c.value(QelThresholdByRatio(c.grey(), c.w, rc.x1, rc.x2, rc.y1, rc.y2, 0.2, c.level(150), c.out_image()));
         }},
        {"QelThresholdByRatioAndMiniT",
         [](Call& c) { c.value(QelThresholdByRatioAndMiniT(c.inout_grey(), c.w, c.h, 0.7, c.level(60))); }},
        {"QelThresholdAndShrink", [](Call& c) {
             const int step = 3;
             int* size = c.out<int>(2);
             const size_t n = size_t((c.w + step - 1) / step) * size_t((c.h + step - 1) / step);
             QelThresholdAndShrink(c.grey(), c.w, c.h, c.level(120), step, c.out(n), &size[0], &size[1]);
         }},
        {"QelHistogramEqualizeFast", [](Call& c) { QelHistogramEqualizeFast(c.inout_grey(), c.w, c.h); }},
        {"QelHistogramEqualizeStandard", [](Call& c) { QelHistogramEqualizeStandard(c.inout_grey(), c.w, c.h); }},
        {"QelHistogramNormalization", [](Call& c) {
             int* target = c.input<int>(256);
             for (int i = 0; i < 256; ++i) target[i] = c.area() / 256 + (i < c.area() % 256 ? 1 : 0);
             QelHistogramNormalization(c.inout_grey(), c.w, c.h, target);
         }},
        {"QelHistogramAverageSmooth", [](Call& c) { QelHistogramAverageSmooth(c.histogram(), 3, c.out<int>(256)); }},
        {"QelHistogramGaussianSmooth", [](Call& c) {
             c.value(QelHistogramGaussianSmooth(c.histogram(), 0, 2.5, 1.0, c.out<int>(256)));
         }},
        {"QelSetPeakTo100ValleyTo_100",
         [](Call& c) { QelSetPeakTo100ValleyTo_100(c.histogram(), c.pick(256, 0, 256), c.out<int>(256)); }},
        {"QelFindTwoPeaks", [](Call& c) {
             int* r = c.out<int>(2);
             QelFindTwoPeaks(c.histogram(), c.pick(20, 0, 255), &r[0], &r[1]);
         }},
        {"QelIsHighContrastImg", [](Call& c) {
             int* peaks = c.out<int>(2);
             c.value(QelIsHighContrastImg(c.histogram(), c.level(128), c.pick(5, 0, 255), c.pick(30, 0, 255), 0.2, &peaks[0], &peaks[1], c.out<double>(1)));
         }},
        {"QelInvertGryValue", [](Call& c) { QelInvertGryValue(c.grey(), c.w, c.h, c.out_image()); }},
        {"QelInvertGryValue/in place", [](Call& c) { QelInvertGryValue(c.inout_grey(), c.w, c.h); }},
        {"QelChange0and250PlusPixels", [](Call& c) { QelChange0and250PlusPixels(c.inout_grey(), c.w, c.h); }},
        {"QelSetOddPixelsTo255", [](Call& c) { QelSetOddPixelsTo255(c.inout_grey(), c.w, c.h); }},
        {"QelSetPixelsTo255", [](Call& c) { const Rect rc = c.inside({1, c.w - 2, 1, c.h - 2}); QelSetPixelsTo255(c.inout_binary(), c.w, rc.x1, rc.x2, rc.y1, rc.y2, c.level(255)); }},
        {"QelGryImg4Bit", [](Call& c) { QelGryImg4Bit(c.inout_grey(), c.w, c.h); }},
        {"QelGryImgNormalize", [](Call& c) { QelGryImgNormalize(c.inout_grey(), c.w, c.h, c.level(128), c.level(40)); }},
        {"QelCorrectPixelsGryValueByCol", [](Call& c) { QelCorrectPixelsGryValueByCol(c.inout_grey(), c.w, c.h, 1.3); }},
        {"QelCorrectPixelsGryValueByRow", [](Call& c) { QelCorrectPixelsGryValueByRow(c.inout_grey(), c.w, c.h, 1.2); }},
        {"QelLightCorretPerCol", [](Call& c) { c.value(QelLightCorretPerCol(c.inout_grey(), c.w, c.h)); }},
        {"QelLightCorretPerRow", [](Call& c) { c.value(QelLightCorretPerRow(c.inout_grey(), c.w, c.h)); }},
        // The noise generator is seeded once per process from QEL_NOISE_SEED, which the test sets
        // before the first call; its sequence then depends on the calls before it.
        {"Ostrum2008AddNoise", [](Call& c) {
             unsigned char* image = c.inout_grey();
             for (unsigned int type = 0; type < 5; ++type) Ostrum2008AddNoise(image, c.area(), 6.0, type);
         }},
    });
}

}  // namespace golden

#endif  // QEL_TESTS_GOLDEN_ENTRIES_HISTOGRAM_H
