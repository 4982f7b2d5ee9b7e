// Golden table entries of qel/line.h, in header order. The line finders keep state between calls;
// each entry initialises them first, so its result does not depend on the entries before it.
#ifndef QEL_TESTS_GOLDEN_ENTRIES_LINE_H
#define QEL_TESTS_GOLDEN_ENTRIES_LINE_H

#include "golden/golden_table.h"
#include "qel/line.h"

namespace golden {

// Edge points along two straight strokes across the image, with a little jitter.
struct Points {
    int n = 0;
    int* x = nullptr;
    int* y = nullptr;
};
inline Points stroke_points(Call& c) {
    Points p;
    p.n = c.w + c.h;
    p.x = c.input<int>(size_t(p.n));
    p.y = c.input<int>(size_t(p.n));
    for (int i = 0; i < c.w; ++i) {
        p.x[i] = i;
        p.y[i] = std::min(c.h / 4 + (i * (c.h / 2)) / c.w + c.gen().below(2), c.h - 1);  // inside at 1 row
    }
    for (int j = 0; j < c.h; ++j) {
        p.x[c.w + j] = std::min(c.w / 3 + c.gen().below(2), c.w - 1);
        p.y[c.w + j] = j;
    }
    return p;
}

// The strokes drawn as 255 on 0 (two pixels thick).
inline unsigned char* stroke_image(Call& c) {
    const Points p = stroke_points(c);
    unsigned char* image = c.input<unsigned char>(size_t(c.area()));
    for (int i = 0; i < p.n; ++i)
        for (int d = 0; d < 2; ++d)
            if (p.x[i] + d < c.w) image[p.y[i] * c.w + p.x[i] + d] = 255;
    return image;
}

inline void record_line(Call& c, const double* abc, const int* rhoTheta) {
    for (int i = 0; i < 3; ++i) c.value(abc[i]);
    c.value(rhoTheta[0]);
    c.value(rhoTheta[1]);
}

inline void add_line(std::vector<Entry>& t) {
    t.insert(t.end(), {
        {"QelABCLine2KBLine", [](Call& c) {
             double* kb = c.out<double>(2);
             QelABCLine2KBLine(3.0, -7.5, 12.25, c.out<int>(1), &kb[0], &kb[1]);
         }},
        {"QelKBLine2ABCLine", [](Call& c) {
             double* abc = c.out<double>(3);
             QelKBLine2ABCLine(1, 0.375, double(c.w), &abc[0], &abc[1], &abc[2]);
         }},
        {"QelLineKBEquation", [](Call& c) {
             double* kb = c.out<double>(2);
             QelLineKBEquation(2, 3, c.w - 1, c.h - 5, c.out<int>(1), &kb[0], &kb[1]);
         }},
        {"QelLineKBEquation/angle", [](Call& c) {
             double* kb = c.out<double>(3);
             QelLineKBEquation(c.w, 1, 4, c.h, c.out<int>(1), &kb[0], &kb[1], &kb[2]);
         }},
        {"QelGetLineB", [](Call& c) { c.value(QelGetLineB(0, -0.6, c.w, c.h)); }},
        {"QelTwoPoints2ThroTheta", [](Call& c) {
             int* r = c.out<int>(2);
             c.value(QelTwoPoints2ThroTheta(1.5, 2.0, c.w - 0.5, c.h * 0.75, &r[0], &r[1]));
         }},
        {"QelABC2ThroTheta", [](Call& c) {
             int* r = c.out<int>(2);
             QelABC2ThroTheta(1.0, 2.5, -double(c.w), &r[0], &r[1]);
         }},
        {"QelThroTheta2ABC", [](Call& c) {
             double* abc = c.out<double>(9);
             QelThroTheta2ABC(c.w / 2, c.h / 2, 20, 37, &abc[0], &abc[1], &abc[2]);
             QelThroTheta2ABC(0, 0, c.w / 3, 90, &abc[3], &abc[4], &abc[5]);
             QelThroTheta2ABC(3, 4, c.h / 3, 0, &abc[6], &abc[7], &abc[8]);
         }},
        {"Qel2PLineAngleDegree2AxisX", [](Call& c) {
             c.value(Qel2PLineAngleDegree2AxisX(0, 0, c.w, c.h));
             c.value(Qel2PLineAngleDegree2AxisX(0, c.h, c.w, 0));
         }},
        {"QelABCLineAngleDegree2AxisX", [](Call& c) { c.value(QelABCLineAngleDegree2AxisX(c.h, -c.w, 5.0)); }},
        {"QelABCLineIntersectAngleDegree",
         [](Call& c) { c.value(QelABCLineIntersectAngleDegree(1.0, 2.0, 3.0, c.w, -c.h, 1.0)); }},
        {"QelPointOfIntersection", [](Call& c) {
             double* xy = c.out<double>(2);
             c.value(QelPointOfIntersection(1.0, -1.0, 0.0, 2.0, 1.0, -double(c.w), &xy[0], &xy[1]));
         }},
        {"QelPointOfIntersection/KB", [](Call& c) {
             double* xy = c.out<double>(2);
             c.value(QelPointOfIntersection(0, 0.25, 3.0, 1, -0.5, double(c.h), &xy[0], &xy[1]));
         }},
        {"QelPointOfIntersection/ThroTheta", [](Call& c) {
             double* xy = c.out<double>(2);
             c.value(QelPointOfIntersection(c.w / 2, 30, c.h / 2, 100, &xy[0], &xy[1]));
         }},
        {"QelGetHoughLinePointX", [](Call& c) { c.value(QelGetHoughLinePointX(c.w / 2, 20, c.h / 3, c.out<double>(1))); }},
        {"QelDistBetweenPoint12", [](Call& c) { c.value(QelDistBetweenPoint12(1.25, 2.5, c.w, c.h)); }},
        {"QelDistFromPoint2KBLine", [](Call& c) { c.value(QelDistFromPoint2KBLine(c.w, c.h, 1, 0.7, -3.0)); }},
        {"QelDistFromPoint3To2PLine", [](Call& c) { c.value(QelDistFromPoint3To2PLine(0, 1, c.w, c.h, c.w / 2, 2)); }},
        {"QelWhichSideIsPoint3ToLine", [](Call& c) {
             for (int y = 0; y < c.h; y += 7) c.value(QelWhichSideIsPoint3ToLine(0, 0, c.w, c.h, c.w / 2, y));
             c.value(QelWhichSideIsPoint3ToLine(5, 0, 5, c.h, 2, 3));
         }},
        {"QelLineOverlapLen", [](Call& c) { c.value(QelLineOverlapLen(0, c.w, c.w / 2, c.w + 9)); }},
        {"QelLineOverlapLen/ends", [](Call& c) {
             int* r = c.out<int>(2);
             c.value(QelLineOverlapLen(3, c.h, -2, c.h / 2, &r[0], &r[1]));
         }},
        {"QelRectOverlapArea", [](Call& c) {
             tagRECT a{}, b{};
             a.left = 0; a.top = 0; a.right = c.w / 2; a.bottom = c.h / 2;
             b.left = c.w / 4; b.top = 3; b.right = c.w; b.bottom = c.h;
             c.value(QelRectOverlapArea(a, b));
         }},
        {"QelABCLineImgBoundary", [](Call& c) {
             int* r = c.out<int>(4);
             c.value(QelABCLineImgBoundary(c.w, c.h, 1.0, -2.0, 4.0, &r[0], &r[1], &r[2], &r[3]));
         }},
        {"QelKBLineImgBoundary", [](Call& c) {
             int* r = c.out<int>(4);
             c.value(QelKBLineImgBoundary(c.w, c.h, 0, 0.4, 2.0, &r[0], &r[1], &r[2], &r[3]));
         }},
        {"QelKBLineRectBoundary", [](Call& c) {
             c.value(QelKBLineRectBoundary(c.w, c.h, 2, c.w - 3, 1, c.h - 2, 1, -0.3, double(c.w / 2), c.out<int>(2),
                                           c.out<int>(2)));
         }},
        {"QelKBLineBeginEndPoint", [](Call& c) {
             int* r = c.out<int>(4);
             QelKBLineBeginEndPoint(c.w, c.h, 0, c.w - 1, 0, c.h - 1, 0, 0.8, -5.0, &r[0], &r[1], &r[2], &r[3]);
         }},
        {"QelHoughLineImgBoundary", [](Call& c) {
             c.value(QelHoughLineImgBoundary(c.w, c.h, c.w / 3, 60, c.out<int>(2), c.out<int>(2)));
         }},
        {"QelPixelsOn2PLine", [](Call& c) {
             int* r = c.out<int>(2);
             const int x1 = c.px(1), y1 = c.py(c.h - 2), x2 = c.px(c.w - 2), y2 = c.py(3);
             QelPixelsOn2PLine(c.binary(), c.w, x1, y1, x2, y2, c.level(255), &r[0], &r[1]);
         }},
        {"QelPixlesOnABCLine", [](Call& c) {
             int* r = c.out<int>(2);
             QelPixlesOnABCLine(c.binary(), c.w, c.h, 1.0, -1.5, 2.0, &r[0], &r[1]);
         }},
        {"QelABCLineHistogram",
         [](Call& c) { QelABCLineHistogram(c.grey(), c.w, c.h, 2.0, 1.0, -double(c.w), c.out<int>(256)); }},
        {"QelPixelsOnRect", [](Call& c) { c.value(QelPixelsOnRect(c.binary(), c.w, c.h, -2, c.w + 1, 3, c.h - 4, 255)); }},
        {"QelFittingLine", [](Call& c) {
             const Points p = stroke_points(c);
             double* r = c.out<double>(5);
             QelFittingLine(p.x, p.y, c.w, c.out<int>(1), &r[0], &r[1], &r[2], &r[3], &r[4]);
         }},
        {"QelFittingLine/chain", [](Call& c) {
             unsigned char* codes = c.input<unsigned char>(size_t(c.w));
             for (int i = 0; i < c.w; ++i) codes[i] = (i % 3 == 0) ? 1 : 0;
             double* r = c.out<double>(5);
             QelFittingLine(0, c.h - 1, codes, c.w, c.out<int>(1), &r[0], &r[1], &r[2], &r[3], &r[4]);
         }},
        {"QelFittingLineMsk", [](Call& c) {
             const Points p = stroke_points(c);
             bool* mask = c.input<bool>(size_t(p.n));
             for (int i = 0; i < p.n; ++i) mask[i] = i >= c.w;
             double* r = c.out<double>(3);
             QelFittingLineMsk(p.x, p.y, mask, p.n, c.out<int>(1), &r[0], &r[1], &r[2]);
         }},
        {"QelFittingLineTwice", [](Call& c) {
             const Points p = stroke_points(c);
             double* r = c.out<double>(3);
             c.value(QelFittingLineTwice(p.x, p.y, c.out<int>(size_t(p.n)), p.n, c.out<int>(1), &r[0], &r[1], &r[2]));
         }},
        {"QelFittingLineTwiceByMean", [](Call& c) {
             const Points p = stroke_points(c);
             double* r = c.out<double>(3);
             c.value(QelFittingLineTwiceByMean(p.x, p.y, c.out<int>(size_t(p.n)), p.n, c.out<int>(1), &r[0], &r[1],
                                               &r[2]));
         }},
        {"QelHoughLines_Initialize", [](Call& c) { c.value(QelHoughLines_Initialize(c.w, c.h)); }},
        {"QelHoughLines_HT", [](Call& c) {
             QelHoughLines_Initialize(c.w, c.h);
             const Points p = stroke_points(c);
             int* theta = c.input<int>(size_t(p.n));
             bool* excluded = c.input<bool>(size_t(p.n));
             for (int i = 0; i < p.n; ++i) {
                 theta[i] = i < c.w ? 110 : 0;
                 excluded[i] = i % 5 == 4;
             }
             double* abc = c.out<double>(3);
             int* rt = c.out<int>(2);
             c.value(QelHoughLines_HT(p.x, p.y, theta, excluded, p.n, 10, &abc[0], &abc[1], &abc[2], &rt[0], &rt[1]));
         }},
        {"QelHoughLines_HT/range", [](Call& c) {
             QelHoughLines_Initialize(c.w, c.h);
             const Points p = stroke_points(c);
             double* abc = c.out<double>(3);
             int* rt = c.out<int>(2);
             c.value(QelHoughLines_HT(p.x, p.y, p.n, 0, 180, &abc[0], &abc[1], &abc[2], &rt[0], &rt[1]));
         }},
        {"QelHoughLines_HT/thetas", [](Call& c) {
             QelHoughLines_Initialize(c.w, c.h);
             const Points p = stroke_points(c);
             bool* used = c.input<bool>(181);
             for (int theta = 0; theta <= 180; ++theta) used[theta] = theta % 2 == 0;
             double* abc = c.out<double>(3);
             int* rt = c.out<int>(2);
             c.value(QelHoughLines_HT(p.x, p.y, p.n, used, &abc[0], &abc[1], &abc[2], &rt[0], &rt[1]));
         }},
        {"QelHoughLines_GetNextLine", [](Call& c) {
             QelHoughLines_Initialize(c.w, c.h);
             const Points p = stroke_points(c);
             double* abc = c.out<double>(3);
             int* rt = c.out<int>(2);
             c.value(QelHoughLines_HT(p.x, p.y, p.n, 0, 180, &abc[0], &abc[1], &abc[2], &rt[0], &rt[1]));
             for (int i = 0; i < 3; ++i) {
                 c.value(QelHoughLines_GetNextLine(5, 10, &abc[0], &abc[1], &abc[2], &rt[0], &rt[1]));
                 record_line(c, abc, rt);
             }
         }},
        {"QelHoughLines_Debug", [](Call& c) {
             QelHoughLines_Initialize(c.w, c.h);
             const Points p = stroke_points(c);
             double abc[3];
             int rt[2];
             QelHoughLines_HT(p.x, p.y, p.n, 0, 180, &abc[0], &abc[1], &abc[2], &rt[0], &rt[1]);
             QelHoughLines_Debug(c.out_image(), c.w, c.h, 200);
         }},
        {"QelImgChainLines_Initialize",
         [](Call& c) { c.value(QelImgChainLines_Initialize(c.w, c.h, 0.9, 2.0, 8, 12, 64)); }},
        {"QelImgChainLines_DoBinImg", [](Call& c) {
             QelImgChainLines_Initialize(c.w, c.h, 0.9, 2.0, 8, 12, 64);
             c.value(QelImgChainLines_DoBinImg(stroke_image(c), c.w, c.h, false));
         }},
        {"QelImgChainLines_DoGryImg", [](Call& c) {
             QelImgChainLines_Initialize(c.w, c.h, 0.9, 2.0, 8, 12, 64);
             c.value(QelImgChainLines_DoGryImg(c.grey(), c.w, c.h, false));
         }},
        {"QelImgChainLines_GetLines", [](Call& c) {
             QelImgChainLines_Initialize(c.w, c.h, 0.9, 2.0, 8, 12, 64);
             const int n = QelImgChainLines_DoBinImg(stroke_image(c), c.w, c.h, true);
             c.value(n);
             const OVLA_LINE_SEGMENT* lines = QelImgChainLines_GetLines();
             for (int i = 0; lines && i < n; ++i) {
                 const int ends[] = {lines[i].x1, lines[i].y1, lines[i].x2, lines[i].y2};
                 for (int e : ends) c.value(e);
                 c.value(lines[i].a);
                 c.value(lines[i].b);
                 c.value(lines[i].c);
             }
         }},
        {"QelImgChainLines_GetNxtCodeLine", [](Call& c) {
             QelImgChainLines_Initialize(c.w, c.h, 0.9, 2.0, 8, 12, 64);
             c.value(QelImgChainLines_DoBinImg(stroke_image(c), c.w, c.h, false));
             int* xs = nullptr;
             int* ys = nullptr;
             int count = 0;
             for (int piece = 0; piece < 64 && QelImgChainLines_GetNxtCodeLine(&xs, &ys, &count); ++piece) {
                 c.value(count);
                 for (int i = 0; i < count; ++i) {
                     c.value(xs[i]);
                     c.value(ys[i]);
                 }
             }
         }},
        {"QelImgChainLines_Debug", [](Call& c) {
             QelImgChainLines_Initialize(c.w, c.h, 0.9, 2.0, 8, 12, 64);
             unsigned char* image = stroke_image(c);
             QelImgChainLines_DoBinImg(image, c.w, c.h, true);
             c.value(QelImgChainLines_Debug(c.out(size_t(c.area()) * 6)));
         }},
    });
}

}  // namespace golden

#endif  // QEL_TESTS_GOLDEN_ENTRIES_LINE_H
