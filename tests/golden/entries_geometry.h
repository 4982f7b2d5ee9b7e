// Golden table entries of qel/geometry.h, in header order.
#ifndef QEL_TESTS_GOLDEN_ENTRIES_GEOMETRY_H
#define QEL_TESTS_GOLDEN_ENTRIES_GEOMETRY_H

#include "golden/golden_table.h"
#include "qel/geometry.h"

namespace golden {

inline void add_geometry(std::vector<Entry>& t) {
    t.insert(t.end(), {
        {"QelRotateImgByCCS", [](Call& c) {
             int* size = c.out<int>(2);
             unsigned char* rotated = QelRotateImgByCCS(c.grey(), c.w, c.h, c.pick(27.5, -400.0, 400.0), &size[0], &size[1]);
             c.adopt(rotated, size_t(size[0]) * size_t(size[1]));
         }},
        {"QelCopyRectFromRotateCCS", [](Call& c) {
             QelCopyRectFromRotateCCS(c.grey(), c.w, c.h, c.col(c.w / 3), c.row(2), c.pick(20.0, -400.0, 400.0), c.out(size_t(c.w / 2) * size_t(c.h / 2)), c.w / 2, c.h / 2);
         }},
        {"QelCopyRectFromRotateCCS/fill", [](Call& c) {
             c.value(QelCopyRectFromRotateCCS(c.grey(), c.w, c.h, c.col(c.w / 2), c.row(c.h / 4), c.pick(35.0, -400.0, 400.0), c.level(7), c.out(size_t(c.w / 2) * size_t(c.h / 2)), c.w / 2, c.h / 2));
         }},
        {"QelRgbCopyRectFromRotateCCS", [](Call& c) {
             QelRgbCopyRectFromRotateCCS(c.bgr(), c.w, c.h, c.col(c.w / 3), c.row(2), c.pick(20.0, -400.0, 400.0), c.out(size_t(c.w / 2) * size_t(c.h / 2) * 3), c.w / 2, c.h / 2);
         }},
        {"QelRgbCopyRectFromRotateCCS/fill", [](Call& c) {
             c.value(QelRgbCopyRectFromRotateCCS(c.bgr(), c.w, c.h, c.col(c.w / 2), c.row(c.h / 4), c.pick(-35.0, -400.0, 400.0), c.level(9), c.out(size_t(c.w / 2) * size_t(c.h / 2) * 3), c.w / 2, c.h / 2));
         }},
        {"QelCopyRectFromRotateAndShiftFast", [](Call& c) {
             QelCopyRectFromRotateAndShiftFast(c.grey(), c.w, c.h, c.col(c.w / 4), c.row(c.h / 4), c.pick(15.0, -400.0, 400.0), c.pick(100.0, -200.0, 200.0), c.out(size_t(c.w / 2) * size_t(c.h / 2)), c.w / 2, c.h / 2);
         }},
        {"QelImgRotate90DegreeCCS", [](Call& c) { QelImgRotate90DegreeCCS(c.bgr(), c.w, c.h, true, c.out_image(3)); }},
        {"QelImgRotate90DegreeCS", [](Call& c) { QelImgRotate90DegreeCS(c.grey(), c.w, c.h, false, c.out_image()); }},
        {"QelRGB32Rotate90Degree", [](Call& c) {
             QelRGB32Rotate90Degree(c.bytes(size_t(c.area()) * 4), c.w, c.h, true, c.out_image(4));
         }},
        {"QelFlipHorizontal", [](Call& c) { QelFlipHorizontal(c.inout_grey(), c.w, c.h); }},
        {"QelFlipVertical", [](Call& c) { QelFlipVertical(c.bgr(), c.w, c.h, true, c.out_image(3)); }},
        {"QelFlipVertical/in place", [](Call& c) { QelFlipVertical(c.inout_grey(), c.w, c.h, false); }},
        {"QelReverseImg", [](Call& c) { QelReverseImg(c.grey(), c.w, c.h, c.out_image()); }},
        {"QelImageShift", [](Call& c) { QelImageShift(c.bgr(), c.w, c.h, true, c.pick(3, -c.w - 2, c.w + 2), c.pick(-2, -c.h - 2, c.h + 2), c.out_image(3)); }},
        {"QelShiftXPerRowFast", [](Call& c) { QelShiftXPerRowFast(c.grey(), c.w, c.h, c.pick(0.21, -3.0, 3.0), c.out_image()); }},
        {"QelShiftXPerRowFine", [](Call& c) { QelShiftXPerRowFine(c.grey(), c.w, c.h, c.pick(-0.17, -3.0, 3.0), c.out_image()); }},
        {"QelShiftImg2BasedImg1", [](Call& c) {
             unsigned char* a = c.grey();
             unsigned char* b = c.input<unsigned char>(size_t(c.area()));
             QelImageShift(a, c.w, c.h, false, 2, 1, b);
             int* best = c.out<int>(2);
             tagRECT rect{};
             rect.left = 0;
             rect.top = 0;
             rect.right = c.w - 1;
             rect.bottom = c.h - 1;
             c.value(QelShiftImg2BasedImg1(a, b, c.out_image(), c.w, c.h, false, c.pick(3, -2, c.w + 2), c.pick(2, -2, c.h + 2), rect, &best[0], &best[1]));
         }},
        {"QelPasteGryImg2ResImg",
         [](Call& c) { QelPasteGryImg2ResImg(c.binary(), c.w, c.h, c.inout_grey(), c.w, c.h, c.pick(c.w / 2, -c.w - 2, c.w + 2), c.pick(-3, -c.h - 2, c.h + 2)); }},
        {"QelPasteGryImg2RGBImg",
         [](Call& c) { QelPasteGryImg2RGBImg(c.binary(), c.w, c.h, c.inout_bgr(), c.w, c.h, c.pick(-4, -c.w - 2, c.w + 2), c.pick(c.h / 3, -c.h - 2, c.h + 2)); }},
        {"QelPasteRGBImg2ResImg",
         [](Call& c) { QelPasteRGBImg2ResImg(c.bgr(), c.w, c.h, c.inout_bgr(1), c.w, c.h, c.pick(5, -c.w - 2, c.w + 2), c.pick(6, -c.h - 2, c.h + 2)); }},
        {"QelGryImgBilinearInterpolattionFast", [](Call& c) {
             QelGryImgBilinearInterpolattionFast(c.grey(), c.w, c.h, c.out(size_t(c.w * 3 / 2) * size_t(c.h / 2)),
                                                 c.w * 3 / 2, c.h / 2);
         }},
        {"QelGryImgBilinearInterpolattionStd", [](Call& c) {
             QelGryImgBilinearInterpolattionStd(c.grey(), c.w, c.h, c.out(size_t(c.w / 2) * size_t(c.h * 3 / 2)),
                                                c.w / 2, c.h * 3 / 2);
         }},
        {"QelRgbImgBilinearInterpolattionFast", [](Call& c) {
             const int w = c.pick(c.w + 7, 1, 2 * c.w + 3), h = c.pick(c.h - 5, 1, 2 * c.h + 3);
             QelRgbImgBilinearInterpolattionFast(c.bgr(), c.w, c.h, c.out(size_t(w) * size_t(h) * 3), w, h);
         }},
        {"QelShrinkGryImg2x2ByAvr",
         [](Call& c) { QelShrinkGryImg2x2ByAvr(c.grey(), c.w, c.h, c.out(size_t(c.w / 2) * size_t(c.h / 2))); }},
        {"QelShrinkGryImg2x2ByExtract", [](Call& c) {
             int* size = c.out<int>(2);
             QelShrinkGryImg2x2ByExtract(c.grey(), c.w, c.h, c.out(size_t(c.w / 2) * size_t(c.h / 2)), &size[0],
                                         &size[1]);
         }},
        {"QelShrinkGryImg4x4ByAvr", [](Call& c) {
             int* size = c.out<int>(2);
             QelShrinkGryImg4x4ByAvr(c.grey(), c.w, c.h, c.out(size_t(c.w / 4) * size_t(c.h / 4)), &size[0],
                                     &size[1]);
         }},
        {"QelShrinkGryImg4x4ByExtract", [](Call& c) {
             int* size = c.out<int>(2);
             QelShrinkGryImg4x4ByExtract(c.grey(), c.w, c.h, c.out(size_t(c.w / 4) * size_t(c.h / 4)), &size[0],
                                         &size[1]);
         }},
        {"QelShrinkGryImgByExtract",
         [](Call& c) { QelShrinkGryImgByExtract(c.grey(), c.w, c.h, 3, 2, c.out(size_t(c.w / 3) * size_t(c.h / 2))); }},
        {"QelShrinkGryImgByMedian", [](Call& c) {
             QelShrinkGryImgByMedian(c.grey(), c.w, c.h, c.out(size_t(c.w / 3) * size_t(c.h / 4)), c.w / 3, c.h / 4);
         }},
        {"QelShrinkImgByAvr", [](Call& c) {
             QelShrinkImgByAvr(c.bgr(), true, c.w, c.h, 2, 3, c.out(size_t(c.w / 2) * size_t(c.h / 3) * 3));
         }},
        {"QelZoomGryImg2x2", [](Call& c) { QelZoomGryImg2x2(c.grey(), c.w, c.h, c.out(size_t(c.area()) * 4)); }},
        {"QelZoomRGBImg2x2", [](Call& c) { QelZoomRGBImg2x2(c.bgr(), c.w, c.h, c.out(size_t(c.area()) * 12)); }},
        {"QelRectResizeX4", [](Call& c) {
             int* r = c.out<int>(4);
             r[0] = 3;
             r[1] = c.w - 2;
             r[2] = 1;
             r[3] = c.h - 1;
             QelRectResizeX4(c.w, 0, c.w / 2, c.h / 2, &r[0], &r[1], &r[2], &r[3]);
         }},
        {"QelGryImgPrjXY",
         [](Call& c) { QelGryImgPrjXY(c.grey(), c.w, c.h, c.out<int>(size_t(c.w)), c.out<int>(size_t(c.h))); }},
        {"QelGryImgPrjXYInRect", [](Call& c) { const Rect rc = c.inside({2, c.w - 3, 1, c.h - 2});
             QelGryImgPrjXYInRect(c.grey(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, c.out<int>(size_t(c.w)), c.out<int>(size_t(c.h)));
         }},
        {"QelBinImgPrjXYInRect", [](Call& c) { const Rect rc = c.inside({1, c.w - 1, 0, c.h - 3});
             QelBinImgPrjXYInRect(c.binary(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, c.out<int>(size_t(c.w)), c.out<int>(size_t(c.h)));
         }},
        {"QelRGBImgPrj2X", [](Call& c) {
             QelRGBImgPrj2X(c.bgr(), c.w, c.h, c.out<int>(size_t(c.w)), c.out<int>(size_t(c.w)), c.out<int>(size_t(c.w)));
         }},
        {"QelRGBImgPrj2X/weighted", [](Call& c) { QelRGBImgPrj2X(c.bgr(), c.w, c.h, c.out<int>(size_t(c.w))); }},
        {"QelDrawPrjX", [](Call& c) {
             int* prj = c.input<int>(size_t(c.w));
             QelGryImgPrjXY(c.grey(), c.w, c.h, prj, c.input<int>(size_t(c.h)));
             QelDrawPrjX(c.out_image(), c.w, c.h, prj, c.w, 200);
         }},
        {"QelDrawPrjX/columns", [](Call& c) {
             int* prj = c.input<int>(size_t(c.w));
             QelGryImgPrjXY(c.grey(), c.w, c.h, prj, c.input<int>(size_t(c.h)));
             QelDrawPrjX(c.out_image(), c.w, c.h, prj, 2, c.w - 5, 150);
         }},
        {"QelDrawPrjXMinV0", [](Call& c) {
             int* prj = c.input<int>(size_t(c.w));
             QelGryImgPrjXY(c.grey(), c.w, c.h, prj, c.input<int>(size_t(c.h)));
             QelDrawPrjXMinV0(c.out_image(), c.w, c.h, prj, c.w, 255);
         }},
        {"QelDrawPrjY", [](Call& c) {
             int* prj = c.input<int>(size_t(c.h));
             QelGryImgPrjXY(c.grey(), c.w, c.h, c.input<int>(size_t(c.w)), prj);
             QelDrawPrjY(c.out_image(), c.w, c.h, prj, c.h, 90);
         }},
        {"QelDrawPrjYMinV0", [](Call& c) {
             int* prj = c.input<int>(size_t(c.h));
             QelGryImgPrjXY(c.grey(), c.w, c.h, c.input<int>(size_t(c.w)), prj);
             QelDrawPrjYMinV0(c.out_image(), c.w, c.h, prj, c.h, 300);
         }},
    });
}

}  // namespace golden

#endif  // QEL_TESTS_GOLDEN_ENTRIES_GEOMETRY_H
