// Golden table entries of qel/contour.h, in header order.
#ifndef QEL_TESTS_GOLDEN_ENTRIES_CONTOUR_H
#define QEL_TESTS_GOLDEN_ENTRIES_CONTOUR_H

#include "golden/golden_table.h"
#include "qel/contour.h"

namespace golden {

// The outer boundary of the first object of Call::blobs (the small square at (2, 2) when the
// image is large enough): its start pixel and its codes.
struct Chain {
    int x0 = 0, y0 = 0, n = 0;
    unsigned char* codes = nullptr;
};

// The first object pixel in scan order of a blobs image: its left neighbour is background.
inline void first_object(const Call& c, const unsigned char* image, int& x0, int& y0) {
    for (int i = 0; i < c.area(); ++i)
        if (image[i] == 255) {
            x0 = i % c.w;
            y0 = i / c.w;
            return;
        }
}

// The outer boundary of the ellipse (the second object in scan order after the square).
inline Chain ellipse_chain(Call& c) {
    Chain ch;
    unsigned char* image = c.blobs();
    for (int y = 0; y < c.h; ++y)  // clear the small square so the ellipse comes first
        for (int x = 0; x < 6 && x < c.w; ++x) image[y * c.w + x] = 0;
    first_object(c, image, ch.x0, ch.y0);
    ch.codes = c.input<unsigned char>(size_t(c.area()));
    ch.n = QelTraceContour(image, c.w, ch.x0, ch.y0, ch.codes, c.area(), true);
    return ch;
}

// Every record of a contour list (all fields but the pointers, and the chains).
inline void record_contours(Call& c, const QEL_CONTOUR_STRUCT* list) {
    for (const QEL_CONTOUR_STRUCT* r = list; r; r = r->next) {
        const int fields[] = {int(r->isOuter), r->area, r->perimeter, r->x, r->y, r->chainLen};
        for (int f : fields) c.value(f);
        for (int i = 0; i < r->chainLen; ++i) c.value(int(r->chain[i]));
    }
}

inline void add_contour(std::vector<Entry>& t) {
    t.insert(t.end(), {
        {"QelTraceContour", [](Call& c) {
             unsigned char* image = c.result(c.blobs(), size_t(c.area()));
             int x0 = 0, y0 = 0;
             first_object(c, image, x0, y0);
             c.value(QelTraceContour(image, c.w, x0, y0, c.out(size_t(c.area())), c.count(c.area(), c.area()), true));
         }, kFramedObject},
        {"QelMarkContour", [](Call& c) {
             unsigned char* image = c.result(c.blobs(), size_t(c.area()));
             int x0 = 0, y0 = 0;
             first_object(c, image, x0, y0);
             QelMarkContour(image, c.w, x0, y0, true);
         }, kFramedObject},
        {"QelMarkContours", [](Call& c) { QelMarkContours(c.binary(), c.w, c.h, c.out_image()); }},
        {"QelGetContours", [](Call& c) {
             QEL_CONTOUR_STRUCT* list = QelGetContours(c.inout_binary(), c.out_image(), c.w, c.h, c.count(4, c.area() + 2), c.count(2, c.area() + 2), c.pick(0, -1, 3));
             record_contours(c, list);
             QelFreeContours(list);
         }},
        {"QelFreeContours", [](Call& c) {
             QelFreeContours(nullptr);
             QEL_CONTOUR_STRUCT* list = QelGetContours(c.blobs(), c.input<unsigned char>(size_t(c.area())), c.w, c.h,
                                                       c.count(1, c.area() + 2), c.count(0, c.area() + 2), c.pick(2, -1, 3));
             record_contours(c, list);
             QelFreeContours(list);
         }},
        {"QelChain2Points", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             QelChain2Points(ch.x0, ch.y0, ch.codes, ch.n, c.out<int>(size_t(ch.n)), c.out<int>(size_t(ch.n)));
         }, kFramedObject},
        {"QelChain2Points/extent", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             int* extent = c.out<int>(2);
             QelChain2Points(ch.x0, ch.y0, ch.codes, ch.n, c.out<int>(size_t(ch.n)), c.out<int>(size_t(ch.n)),
                             &extent[0], &extent[1]);
         }, kFramedObject},
        {"QelMarkChainByColor", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             QelMarkChainByColor(c.inout_grey(), c.w, ch.x0, ch.y0, ch.codes, ch.n, c.pick(-1, -300, 300));
         }, kFramedObject},
        {"QelMarkChainByColor/dashed", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             QelMarkChainByColor(c.inout_grey(), c.w, ch.x0, ch.y0, ch.codes, ch.n, c.pick(99, -300, 300), c.pick(0, -9, 9));
         }, kFramedObject},
        {"QelMarkChainByInc", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             QelMarkChainByInc(c.inout_grey(), c.w, ch.x0, ch.y0, ch.codes, ch.n);
         }, kFramedObject},
        {"QelAreaAndPerimeter", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             int* r = c.out<int>(2);
             QelAreaAndPerimeter(ch.codes, ch.n, &r[0], &r[1]);
         }, kFramedObject},
        {"QelContourRect", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             int* r = c.out<int>(4);
             QelContourRect(ch.x0, ch.y0, ch.codes, ch.n, &r[0], &r[1], &r[2], &r[3]);
         }, kFramedObject},
        {"QelContourCenter", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             int* r = c.out<int>(2);
             QelContourCenter(ch.x0, ch.y0, ch.codes, ch.n, &r[0], &r[1]);
         }, kFramedObject},
        {"QelContourPosPoints", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             c.value(QelContourPosPoints(ch.x0, ch.y0, ch.codes, ch.n, c.row(c.h / 2)));
         }, kFramedObject},
        {"QelIsPointOnContour", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             c.value(QelIsPointOnContour(ch.x0, ch.y0, ch.codes, ch.n, ch.x0, ch.y0));
             c.value(QelIsPointOnContour(ch.x0, ch.y0, ch.codes, ch.n, c.col(c.w / 2), c.row(c.h / 2)));
         }, kFramedObject},
        {"QelIsHorizontalLineIntersectContour", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             for (int row = 0; row < c.h; row += 3) c.value(QelIsHorizontalLineIntersectContour(ch.y0, ch.codes, ch.n, c.row(row)));
         }, kFramedObject},
        {"QelIsVerticalLineIntersectContour", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             for (int col = 0; col < c.w; col += 3) c.value(QelIsVerticalLineIntersectContour(ch.x0, ch.codes, ch.n, c.col(col)));
         }, kFramedObject},
        {"QelIsVerticalLineIntersectContour/per row", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             int* columns = c.input<int>(size_t(c.h));
             for (int y = 0; y < c.h; ++y) columns[y] = c.col(c.w / 2 - c.w / 3 + (y % 3));
             c.value(QelIsVerticalLineIntersectContour(ch.x0, ch.y0, ch.codes, ch.n, columns));
         }, kFramedObject},
        {"QelWhitePixlePassedByChain", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             c.value(QelWhitePixlePassedByChain(c.binary(), c.w, ch.x0, ch.y0, ch.codes, ch.n));
         }, kFramedObject},
        {"QelHasPixelsOnChain", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             unsigned char* grey = c.grey();
             for (int v = 100; v < 200; v += 10) c.value(QelHasPixelsOnChain(grey, c.w, ch.x0, ch.y0, ch.codes, ch.n, c.level(v)));
         }, kFramedObject},
        {"QelRealAreaAndPerimeter", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             int* r = c.out<int>(2);
             QelRealAreaAndPerimeter(ch.codes, ch.n, &r[0], &r[1]);
         }, kFramedObject},
        {"QelRealPixelsEnclosed", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             c.value(QelRealPixelsEnclosed(ch.codes, ch.n));
         }, kFramedObject},
        {"QelContourRotatedRect", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             int* r = c.out<int>(4);
             QelContourRotatedRect(ch.x0, ch.y0, ch.codes, ch.n, c.pick(33.0, -400.0, 400.0), &r[0], &r[1], &r[2], &r[3]);
         }, kFramedObject},
        {"QelContourGryAvr", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             c.value(QelContourGryAvr(c.grey(), c.w, ch.x0, ch.y0, ch.codes, ch.n));
         }, kFramedObject},
        {"QelIsPointIncludedByChain", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             for (int y = 0; y < c.h; y += 4)
                 for (int x = 0; x < c.w; x += 4) c.value(QelIsPointIncludedByChain(c.col(x), c.row(y), ch.x0, ch.y0, ch.codes, ch.n));
         }, kFramedObject},
        {"QelPixelsPassedByChain", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             c.value(QelPixelsPassedByChain(c.binary(), c.w, ch.x0, ch.y0, ch.codes, ch.n, c.level(255)));
         }, kFramedObject},
        {"QelLineSimilarity", [](Call& c) {
             int* r = c.out<int>(2);
             c.value(QelLineSimilarity(c.count(c.area() / 5, c.area() + 2), c.count(c.w + c.h, 2 * (c.w + c.h)), c.count(1, c.w + 2), c.count(9, c.w + c.h), &r[0], &r[1]));
         }},
        {"QelLineSimilarity/chain", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             int* r = c.out<int>(2);
             c.value(QelLineSimilarity(ch.x0, ch.y0, ch.codes, ch.n, c.count(2, c.w + 2), c.count(12, c.w + c.h), &r[0], &r[1]));
         }, kFramedObject},
        {"QelFillingContour", [](Call& c) {
             unsigned char* image = c.result(c.blobs(), size_t(c.area()));
             for (int y = 0; y < c.h; ++y)
                 for (int x = 0; x < 6 && x < c.w; ++x) image[y * c.w + x] = 0;
             int x0 = 0, y0 = 0;
             first_object(c, image, x0, y0);
             unsigned char* traced = c.input<unsigned char>(size_t(c.area()));
             std::memcpy(traced, image, size_t(c.area()));
             unsigned char* codes = c.input<unsigned char>(size_t(c.area()));
             const int n = QelTraceContour(traced, c.w, x0, y0, codes, c.area(), true);
             c.value(QelFillingContour(image, c.w, x0, y0, codes, n, c.pick(1, 0, 1) != 0, c.pick(128, 1, 254), c.pick(60, -300, 300)));
         }, kFramedObject},
        {"QelPastePixels2ResImg", [](Call& c) {
             const Chain ch = ellipse_chain(c);
             c.value(QelPastePixels2ResImg(c.grey(), c.w, ch.x0, ch.y0, ch.codes, ch.n, c.pick(128, 1, 254), c.pick(60, -300, 300), c.out_image(), c.pick(-1, -3, 255)));
         }, kFramedObject},
        {"QelSelectContoursByArea", [](Call& c) {
             c.value(QelSelectContoursByArea(c.inout_binary(), c.out_image(), c.w, c.h, c.pick(2, -2, c.h + 2), c.count(4, c.area() + 2), c.count(400, c.area() + 2), c.out_image()));
         }},
        {"QelSelectContoursByPerimeter", [](Call& c) {
             c.value(QelSelectContoursByPerimeter(c.inout_binary(), c.out_image(), c.w, c.h, c.pick(1, -2, c.h + 2), c.count(6, 2 * c.area() + 2), c.count(200, 2 * c.area() + 2), c.out_image()));
         }},
        {"QelRemoveWhiteRegionsByArea", [](Call& c) {
             c.value(QelRemoveWhiteRegionsByArea(c.inout_binary(), c.out_image(), c.w, c.h, c.count(1, c.area() + 2), c.count(40, c.area() + 2), c.out_image()));
         }},
        {"QelRemoveBlackRegionsByArea", [](Call& c) {
             c.value(QelRemoveBlackRegionsByArea(c.inout_binary(), c.out_image(), c.w, c.h, c.count(1, c.area() + 2), c.count(30, c.area() + 2), c.out_image()));
         }},
        {"Qel255NRegionsWithMaxArea",
         [](Call& c) { c.value(Qel255NRegionsWithMaxArea(c.inout_binary(), c.w, c.h, c.count(3, 40), c.count(4, c.area() + 2), c.out_image())); }},
        {"Qel255RectWithMaxArea", [](Call& c) {
             tagRECT* rect = c.out<tagRECT>(1);
             int* centre = c.out<int>(2);
             const Rect rc = c.across({2, c.w - 3, 2, c.h - 3});
             c.value(Qel255RectWithMaxArea(c.inout_binary(), c.out_image(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2,
                                           c.pick(1, -2, c.h + 2), rect, &centre[0], &centre[1]));
         }},
        {"Qel255RectWithMaxPerimeter", [](Call& c) {
             tagRECT* rect = c.out<tagRECT>(1);
             int* centre = c.out<int>(2);
             const Rect rc = c.across({1, c.w - 2, 3, c.h - 2});
             c.value(Qel255RectWithMaxPerimeter(c.inout_binary(), c.out_image(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2,
                                                c.pick(2, -2, c.h + 2), rect, &centre[0], &centre[1]));
         }},
        {"QelDeleteShortContour",
         [](Call& c) { QelDeleteShortContour(c.inout_binary(), c.out_image(), c.w, c.h, c.count(12, c.area() + 2), c.out_image()); }},
        {"QelMarkMaxAreaHoleContour", [](Call& c) {
             // Every chain is stored behind the one before: room for a few boundaries of the blobs.
             unsigned char* image = c.result(c.blobs(), size_t(c.area()));
             c.value(QelMarkMaxAreaHoleContour(image, c.out(size_t(c.area()) * 4), c.w, c.h, c.pick(77, -300, 300)));
         }},
    });
}

}  // namespace golden

#endif  // QEL_TESTS_GOLDEN_ENTRIES_CONTOUR_H
