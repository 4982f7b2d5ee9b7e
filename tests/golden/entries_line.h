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

// Initialises the chain-line finder for the Call's size; the sweep draws its tolerances, minimum
// chain length, edge threshold (both operators) and line count.
inline bool init_chain_lines(Call& c) {
    const double ratio = c.pick(0.9, -1.0, 2.0), tolerance = c.pick(2.0, -1.0, 8.0);
    const int minLength = c.count(8, 40), edge = c.pick(12, -2, 20), maxLines = c.count(64, 200);
    return QelImgChainLines_Initialize(c.w, c.h, ratio, tolerance, minLength, edge, maxLines);
}

inline void add_line(std::vector<Entry>& t) {
    t.insert(t.end(), {
        {"QelABCLine2KBLine", [](Call& c) {
             double* kb = c.out<double>(2);
             QelABCLine2KBLine(c.pick(3.0, -8.0, 8.0), c.pick(-7.5, -8.0, 8.0), c.pick(12.25, -100.0, 100.0), c.out<int>(1), &kb[0], &kb[1]);
         }},
        {"QelKBLine2ABCLine", [](Call& c) {
             double* abc = c.out<double>(3);
             QelKBLine2ABCLine(c.pick(1, -1, 2), c.pick(0.375, -4.0, 4.0), c.pick(double(c.w), -100.0, 100.0), &abc[0], &abc[1], &abc[2]);
         }},
        {"QelLineKBEquation", [](Call& c) {
             double* kb = c.out<double>(2);
             QelLineKBEquation(c.col(2), c.row(3), c.col(c.w - 1), c.row(c.h - 5), c.out<int>(1), &kb[0], &kb[1]);
         }},
        {"QelLineKBEquation/angle", [](Call& c) {
             double* kb = c.out<double>(3);
             QelLineKBEquation(c.col(c.w), c.row(1), c.col(4), c.row(c.h), c.out<int>(1), &kb[0], &kb[1], &kb[2]);
         }},
        {"QelGetLineB", [](Call& c) { c.value(QelGetLineB(c.pick(0, -1, 2), c.pick(-0.6, -4.0, 4.0), c.col(c.w), c.row(c.h))); }},
        {"QelTwoPoints2ThroTheta", [](Call& c) {
             int* r = c.out<int>(2);
             c.value(QelTwoPoints2ThroTheta(c.pick(1.5, -4.0, 80.0), c.pick(2.0, -4.0, 50.0), c.pick(c.w - 0.5, -4.0, 80.0), c.pick(c.h * 0.75, -4.0, 50.0), &r[0], &r[1]));
         }},
        {"QelABC2ThroTheta", [](Call& c) {
             int* r = c.out<int>(2);
             QelABC2ThroTheta(c.pick(1.0, -4.0, 4.0), c.pick(2.5, -4.0, 4.0), c.pick(-double(c.w), -100.0, 100.0), &r[0], &r[1]);
         }},
        {"QelThroTheta2ABC", [](Call& c) {
             double* abc = c.out<double>(9);
             QelThroTheta2ABC(c.col(c.w / 2), c.row(c.h / 2), c.pick(20, -100, 100), c.pick(37, -200, 400), &abc[0], &abc[1], &abc[2]);
             QelThroTheta2ABC(c.col(0), c.row(0), c.pick(c.w / 3, -100, 100), c.pick(90, 89, 91), &abc[3], &abc[4], &abc[5]);
             QelThroTheta2ABC(c.col(3), c.row(4), c.pick(c.h / 3, -100, 100), c.pick(0, -1, 1), &abc[6], &abc[7], &abc[8]);
         }},
        {"Qel2PLineAngleDegree2AxisX", [](Call& c) {
             c.value(Qel2PLineAngleDegree2AxisX(c.col(0), c.row(0), c.col(c.w), c.row(c.h)));
             c.value(Qel2PLineAngleDegree2AxisX(c.col(0), c.row(c.h), c.col(c.w), c.row(0)));
         }},
        {"QelABCLineAngleDegree2AxisX", [](Call& c) { c.value(QelABCLineAngleDegree2AxisX(c.pick(double(c.h), -50.0, 50.0), c.pick(-double(c.w), -80.0, 80.0), c.pick(5.0, -100.0, 100.0))); }},
        {"QelABCLineIntersectAngleDegree",
         [](Call& c) { c.value(QelABCLineIntersectAngleDegree(c.pick(1.0, -4.0, 4.0), c.pick(2.0, -4.0, 4.0), c.pick(3.0, -9.0, 9.0), c.pick(double(c.w), -80.0, 80.0), c.pick(-double(c.h), -50.0, 50.0), c.pick(1.0, -9.0, 9.0))); }},
        {"QelPointOfIntersection", [](Call& c) {
             double* xy = c.out<double>(2);
             c.value(QelPointOfIntersection(c.pick(1.0, -4.0, 4.0), c.pick(-1.0, -4.0, 4.0), c.pick(0.0, -9.0, 9.0), c.pick(2.0, -4.0, 4.0), c.pick(1.0, -4.0, 4.0), c.pick(-double(c.w), -80.0, 80.0), &xy[0], &xy[1]));
         }},
        {"QelPointOfIntersection/KB", [](Call& c) {
             double* xy = c.out<double>(2);
             c.value(QelPointOfIntersection(c.pick(0, -1, 2), c.pick(0.25, -4.0, 4.0), c.pick(3.0, -50.0, 50.0), c.pick(1, -1, 2), c.pick(-0.5, -4.0, 4.0), c.pick(double(c.h), -50.0, 50.0), &xy[0], &xy[1]));
         }},
        {"QelPointOfIntersection/ThroTheta", [](Call& c) {
             double* xy = c.out<double>(2);
             c.value(QelPointOfIntersection(c.pick(c.w / 2, -100, 100), c.pick(30, -200, 400), c.pick(c.h / 2, -100, 100), c.pick(100, -200, 400), &xy[0], &xy[1]));
         }},
        {"QelGetHoughLinePointX", [](Call& c) { c.value(QelGetHoughLinePointX(c.pick(c.w / 2, -100, 100), c.pick(20, -200, 400), c.row(c.h / 3), c.out<double>(1))); }},
        {"QelDistBetweenPoint12", [](Call& c) { c.value(QelDistBetweenPoint12(c.pick(1.25, -9.0, 80.0), c.pick(2.5, -9.0, 50.0), c.col(c.w), c.row(c.h))); }},
        {"QelDistFromPoint2KBLine", [](Call& c) { c.value(QelDistFromPoint2KBLine(c.col(c.w), c.row(c.h), c.pick(1, -1, 2), c.pick(0.7, -4.0, 4.0), c.pick(-3.0, -50.0, 50.0))); }},
        {"QelDistFromPoint3To2PLine", [](Call& c) { c.value(QelDistFromPoint3To2PLine(c.col(0), c.row(1), c.col(c.w), c.row(c.h), c.col(c.w / 2), c.row(2))); }},
        {"QelWhichSideIsPoint3ToLine", [](Call& c) {
             for (int y = 0; y < c.h; y += 7) c.value(QelWhichSideIsPoint3ToLine(c.col(0), c.row(0), c.col(c.w), c.row(c.h), c.col(c.w / 2), y));
             c.value(QelWhichSideIsPoint3ToLine(c.col(5), c.row(0), c.col(5), c.row(c.h), c.col(2), c.row(3)));
         }},
        {"QelLineOverlapLen", [](Call& c) { c.value(QelLineOverlapLen(c.col(0), c.col(c.w), c.col(c.w / 2), c.pick(c.w + 9, -3, c.w + 12))); }},
        {"QelLineOverlapLen/ends", [](Call& c) {
             int* r = c.out<int>(2);
             c.value(QelLineOverlapLen(c.row(3), c.row(c.h), c.row(-2), c.row(c.h / 2), &r[0], &r[1]));
         }},
        {"QelRectOverlapArea", [](Call& c) {
             const Rect ra = c.across({0, c.w / 2, 0, c.h / 2}), rb = c.across({c.w / 4, c.w, 3, c.h});
             tagRECT a{}, b{};
             a.left = ra.x1; a.top = ra.y1; a.right = ra.x2; a.bottom = ra.y2;
             b.left = rb.x1; b.top = rb.y1; b.right = rb.x2; b.bottom = rb.y2;
             c.value(QelRectOverlapArea(a, b));
         }},
        {"QelABCLineImgBoundary", [](Call& c) {
             int* r = c.out<int>(4);
             c.value(QelABCLineImgBoundary(c.w, c.h, c.pick(1.0, -4.0, 4.0), c.pick(-2.0, -4.0, 4.0), c.pick(4.0, -100.0, 100.0), &r[0], &r[1], &r[2], &r[3]));
         }},
        {"QelKBLineImgBoundary", [](Call& c) {
             int* r = c.out<int>(4);
             c.value(QelKBLineImgBoundary(c.w, c.h, c.pick(0, -1, 2), c.pick(0.4, -4.0, 4.0), c.pick(2.0, -50.0, 50.0), &r[0], &r[1], &r[2], &r[3]));
         }},
        {"QelKBLineRectBoundary", [](Call& c) {
             const Rect rc = c.across({2, c.w - 3, 1, c.h - 2});
             c.value(QelKBLineRectBoundary(c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, c.pick(1, -1, 2), c.pick(-0.3, -4.0, 4.0),
                                           c.pick(double(c.w / 2), -50.0, 50.0), c.out<int>(2), c.out<int>(2)));
         }},
        {"QelKBLineBeginEndPoint", [](Call& c) {
             int* r = c.out<int>(4);
             const Rect rc = c.across({0, c.w - 1, 0, c.h - 1});
             QelKBLineBeginEndPoint(c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, c.pick(0, -1, 2), c.pick(0.8, -4.0, 4.0),
                                    c.pick(-5.0, -50.0, 50.0), &r[0], &r[1], &r[2], &r[3]);
         }},
        {"QelHoughLineImgBoundary", [](Call& c) {
             c.value(QelHoughLineImgBoundary(c.w, c.h, c.pick(c.w / 3, -100, 100), c.pick(60, -200, 400), c.out<int>(2), c.out<int>(2)));
         }},
        {"QelPixelsOn2PLine", [](Call& c) {
             int* r = c.out<int>(2);
             const int x1 = c.px(1), y1 = c.py(c.h - 2), x2 = c.px(c.w - 2), y2 = c.py(3);
             QelPixelsOn2PLine(c.binary(), c.w, x1, y1, x2, y2, c.level(255), &r[0], &r[1]);
         }},
        {"QelPixlesOnABCLine", [](Call& c) {
             int* r = c.out<int>(2);
             QelPixlesOnABCLine(c.binary(), c.w, c.h, c.pick(1.0, -4.0, 4.0), c.pick(-1.5, -4.0, 4.0), c.pick(2.0, -100.0, 100.0), &r[0], &r[1]);
         }},
        {"QelABCLineHistogram",
         [](Call& c) { QelABCLineHistogram(c.grey(), c.w, c.h, c.pick(2.0, -4.0, 4.0), c.pick(1.0, -4.0, 4.0), c.pick(-double(c.w), -100.0, 100.0), c.out<int>(256)); }},
        {"QelPixelsOnRect", [](Call& c) {
             const Rect rc = c.across({-2, c.w + 1, 3, c.h - 4});
             c.value(QelPixelsOnRect(c.binary(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, c.level(255)));
         }},
        {"QelFittingLine", [](Call& c) {
             const Points p = stroke_points(c);
             double* r = c.out<double>(5);
             QelFittingLine(p.x, p.y, c.count(c.w, p.n), c.out<int>(1), &r[0], &r[1], &r[2], &r[3], &r[4]);
         }},
        {"QelFittingLine/chain", [](Call& c) {
             unsigned char* codes = c.input<unsigned char>(size_t(c.w));
             for (int i = 0; i < c.w; ++i) codes[i] = (i % 3 == 0) ? 1 : 0;
             if (c.sweeping()) codes = c.bytes(size_t(c.w));  // any byte: codes are read modulo 8
             double* r = c.out<double>(5);
             QelFittingLine(c.col(0), c.row(c.h - 1), codes, c.count(c.w, c.w), c.out<int>(1), &r[0], &r[1], &r[2], &r[3], &r[4]);
         }},
        {"QelFittingLineMsk", [](Call& c) {
             const Points p = stroke_points(c);
             bool* mask = c.input<bool>(size_t(p.n));
             for (int i = 0; i < p.n; ++i) mask[i] = i >= c.w;
             double* r = c.out<double>(3);
             QelFittingLineMsk(p.x, p.y, mask, c.count(p.n, p.n), c.out<int>(1), &r[0], &r[1], &r[2]);
         }},
        {"QelFittingLineTwice", [](Call& c) {
             const Points p = stroke_points(c);
             double* r = c.out<double>(3);
             c.value(QelFittingLineTwice(p.x, p.y, c.out<int>(size_t(p.n)), c.count(p.n, p.n), c.out<int>(1), &r[0], &r[1], &r[2]));
         }},
        {"QelFittingLineTwiceByMean", [](Call& c) {
             const Points p = stroke_points(c);
             double* r = c.out<double>(3);
             c.value(QelFittingLineTwiceByMean(p.x, p.y, c.out<int>(size_t(p.n)), c.count(p.n, p.n), c.out<int>(1), &r[0], &r[1],
                                               &r[2]));
         }},
        {"QelHoughLines_Initialize", [](Call& c) { c.value(QelHoughLines_Initialize(c.w, c.h)); }},
        {"QelHoughLines_HT", [](Call& c) {
             QelHoughLines_Initialize(c.w, c.h);
             const Points p = stroke_points(c);
             int* theta = c.input<int>(size_t(p.n));
             bool* excluded = c.input<bool>(size_t(p.n));
             for (int i = 0; i < p.n; ++i) {
                 theta[i] = c.pick(i < c.w ? 110 : 0, -20, 200);
                 excluded[i] = i % 5 == 4;
             }
             double* abc = c.out<double>(3);
             int* rt = c.out<int>(2);
             c.value(QelHoughLines_HT(p.x, p.y, theta, excluded, c.count(p.n, p.n), c.pick(10, -2, 200), &abc[0], &abc[1], &abc[2], &rt[0], &rt[1]));
         }},
        {"QelHoughLines_HT/range", [](Call& c) {
             QelHoughLines_Initialize(c.w, c.h);
             const Points p = stroke_points(c);
             double* abc = c.out<double>(3);
             int* rt = c.out<int>(2);
             const int from = c.pick(0, -10, 190), to = c.pick(180, -10, 190);
             c.value(QelHoughLines_HT(p.x, p.y, c.count(p.n, p.n), from, to, &abc[0], &abc[1], &abc[2], &rt[0], &rt[1]));
         }},
        {"QelHoughLines_HT/thetas", [](Call& c) {
             QelHoughLines_Initialize(c.w, c.h);
             const Points p = stroke_points(c);
             bool* used = c.input<bool>(181);
             for (int theta = 0; theta <= 180; ++theta) used[theta] = c.pick(theta % 2 == 0 ? 1 : 0, 0, 1) != 0;
             double* abc = c.out<double>(3);
             int* rt = c.out<int>(2);
             c.value(QelHoughLines_HT(p.x, p.y, c.count(p.n, p.n), used, &abc[0], &abc[1], &abc[2], &rt[0], &rt[1]));
         }},
        {"QelHoughLines_GetNextLine", [](Call& c) {
             QelHoughLines_Initialize(c.w, c.h);
             const Points p = stroke_points(c);
             double* abc = c.out<double>(3);
             int* rt = c.out<int>(2);
             c.value(QelHoughLines_HT(p.x, p.y, p.n, 0, 180, &abc[0], &abc[1], &abc[2], &rt[0], &rt[1]));
             for (int i = 0; i < 3; ++i) {
                 c.value(QelHoughLines_GetNextLine(c.pick(5, -2, c.w + c.h), c.pick(10, -2, 200), &abc[0], &abc[1], &abc[2], &rt[0], &rt[1]));
                 record_line(c, abc, rt);
             }
         }},
        {"QelHoughLines_Debug", [](Call& c) {
             QelHoughLines_Initialize(c.w, c.h);
             const Points p = stroke_points(c);
             double abc[3];
             int rt[2];
             QelHoughLines_HT(p.x, p.y, p.n, 0, 180, &abc[0], &abc[1], &abc[2], &rt[0], &rt[1]);
             QelHoughLines_Debug(c.out_image(), c.w, c.h, c.level(200));
         }},
        {"QelImgChainLines_Initialize",
         [](Call& c) { c.value(init_chain_lines(c)); }},
        {"QelImgChainLines_DoBinImg", [](Call& c) {
             init_chain_lines(c);
             c.value(QelImgChainLines_DoBinImg(stroke_image(c), c.w, c.h, false));
         }},
        {"QelImgChainLines_DoGryImg", [](Call& c) {
             init_chain_lines(c);
             c.value(QelImgChainLines_DoGryImg(c.grey(), c.w, c.h, false));
         }},
        {"QelImgChainLines_GetLines", [](Call& c) {
             init_chain_lines(c);
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
             init_chain_lines(c);
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
             init_chain_lines(c);
             unsigned char* image = stroke_image(c);
             QelImgChainLines_DoBinImg(image, c.w, c.h, true);
             c.value(QelImgChainLines_Debug(c.out(size_t(c.area()) * 6)));
         }},
    });
}

}  // namespace golden

#endif  // QEL_TESTS_GOLDEN_ENTRIES_LINE_H
