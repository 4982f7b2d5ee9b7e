// Qel — line geometry: line forms, intersections, distances, clipping and sampling along lines.
#ifndef QEL_LINE_H
#define QEL_LINE_H

#include "qel/base.h"

// Conventions shared by every line function
// -----------------------------------------
// Coordinates: x is the column (0 at the left), y the row (0 at the top, growing downwards).
// Angles are in degrees. Lines come in four forms:
//   ABC        three doubles a, b, c: the points with a·x + b·y + c = 0.
//   KB         int flag, double k, double b: flag 0 is y = k·x + b (closer to horizontal), flag 1
//              is x = k·y + b (closer to vertical); any non-zero flag is taken as 1. Producers
//              pick the flag so that |k| ≤ 1; vertical lines are flag 1 with k = 0.
//   ThroTheta  int rho, int theta: the points with x·cos(theta) + y·sin(theta) = rho, theta in
//              whole degrees (0: the vertical line x = rho, 90: the horizontal line y = rho);
//              rho may be negative. The origin is (0, 0) unless a function takes one.
//   two-point  (x1, y1) and (x2, y2): the line through both.
// Every conversion of a real value to an int truncates toward zero, and rounding is written as
// adding 0.5 and truncating, so negative values round toward zero (−2.7 becomes −2). A value
// outside the int range (or NaN) converts to INT_MIN, which every range test rejects. pi is
// 3.1415926, except in QelTwoPoints2ThroTheta (and so QelABC2ThroTheta), which uses 3.14.
// Inputs are not checked: degenerate lines (two equal points, a = b = 0) divide by zero and give
// infinite or NaN results. All functions are pure and reentrant.

// ==== Line forms and conversions ====

/// ABC line to KB form: if |a| > |b|, flag 1, k = −b/a, b' = −c/a; otherwise flag 0, k = −a/b,
/// b' = −c/b. So |k| ≤ 1.
QEL_API void QelABCLine2KBLine(double a, double b, double c, int* flag, double* k, double* bOut);

/// KB line to ABC form (not normalised): flag 1 gives (1, −k, −b), flag 0 gives (k, −1, b).
QEL_API void QelKBLine2ABCLine(int flag, double k, double b, double* a, double* bOut, double* c);

/// KB line through two points. With dx = x2 − x1, dy = y2 − y1: if |dx| > |dy| strictly, flag 0,
/// k = dy/dx, b = y1 − k·x1; otherwise flag 1, k = dx/dy, b = x1 − k·y1 (two equal points give
/// k = NaN).
QEL_API void QelLineKBEquation(int x1, int y1, int x2, int y2, int* flag, double* k, double* b);

/// As above, plus the angle of the line to the x axis in [0, 180): flag 0: atan(k)·180/pi, plus
/// 180 when negative; flag 1: 90 − atan(k)·180/pi.
QEL_API void QelLineKBEquation(int x1, int y1, int x2, int y2, int* flag, double* k, double* b, double* angle);

/// The b of the KB line with slope k through (x, y): flag 1: x − y·k; flag 0: y − x·k.
QEL_API double QelGetLineB(int flag, double k, int x, int y);

/// ThroTheta form of the line through two points; returns the distance L between them. With
/// dx = x2 − x1, dy = y2 − y1 and cross = x2·y1 − x1·y2: rho = ±|cross| / L truncated, positive
/// only when dx·cross > 0 (so the vertical pair (5, 0), (5, 10) gives rho −5). theta is truncated
/// from degrees converted with pi = 3.14, not 3.1415926: when |dx| > |dy|,
/// atan(dy/dx)·180/3.14 + 90; otherwise 180 − atan(dx/dy)·180/3.14 when dx·dy > 0, and
/// −atan(dx/dy)·180/3.14 when dx·dy ≤ 0. A horizontal pair gives 90, a vertical pair 0, and the
/// diagonal (0, 0), (10, 10) gives 134 (not 135).
QEL_API double QelTwoPoints2ThroTheta(double x1, double y1, double x2, double y2, int* rho, int* theta);

/// ThroTheta form of an ABC line, through QelTwoPoints2ThroTheta (pi = 3.14) on two of its
/// points: if |b| > |a| those at x = −10 and x = 10, otherwise those at y = −10 and y = 10.
QEL_API void QelABC2ThroTheta(double a, double b, double c, int* rho, int* theta);

/// ABC form (not normalised) of a ThroTheta line whose x and y are measured from the origin
/// (x0, y0). Two points of the line are taken: theta 0 or 180: (rho/cos, 10) and (rho/cos, 20);
/// theta 90: (10, rho) and (20, rho); otherwise (10, (rho − 10·cos)/sin) and
/// ((rho − 10·sin)/cos, 10). Both are shifted by (x0, y0) to (X1, Y1), (X2, Y2), and
/// a = Y2 − Y1, b = X1 − X2, c = X2·Y1 − X1·Y2.
QEL_API void QelThroTheta2ABC(int x0, int y0, int rho, int theta, double* a, double* b, double* c);

// ==== Angles ====

/// Angle in [0, 180) of the line through two points: with dx = x1 − x2, dy = y1 − y2, if
/// |dx| > |dy|: atan(dy/dx)·180/pi, plus 180 when negative; otherwise 90 − atan(dx/dy)·180/pi,
/// the quotient taken as 0 when dy is 0 (two equal points give 90). As y grows downwards, a line
/// falling to the right on screen, such as (0, 0), (10, 10), has an angle of about 45 and one
/// rising to the right, such as (0, 10), (10, 0), about 135.
QEL_API double Qel2PLineAngleDegree2AxisX(double x1, double y1, double x2, double y2);

/// Angle in [0, 180) of an ABC line (c is not used): if |b| > |a|: atan(−a/b)·180/pi, plus 180
/// when negative; otherwise 90 − atan(−b/a)·180/pi. A result of 180 (or more) has 180 subtracted,
/// so a nearly horizontal line just below 180 degrees gives 0. a = b = 0 gives NaN.
QEL_API double QelABCLineAngleDegree2AxisX(double a, double b, double c);

/// Acute angle in [0, 90] between two ABC lines: 0 when |a1·b2 − a2·b1| < 1e-5 (parallel);
/// otherwise d = |angle1 − angle2| of their QelABCLineAngleDegree2AxisX, and the result is d when
/// 180 − d > d, else 180 − d.
QEL_API double QelABCLineIntersectAngleDegree(double a1, double b1, double c1, double a2, double b2, double c2);

// ==== Intersections ====
// Each returns false when the lines are parallel and then leaves x and y untouched. Note that a
// call with eight integer arguments picks the KB overload, not the ABC one.

/// Intersection of two ABC lines: D = a1·b2 − a2·b1, false when |D| < 1e-5; otherwise
/// y = −(a1·c2 − a2·c1)/D and x = −(b2·c1 − b1·c2)/D.
QEL_API bool QelPointOfIntersection(double a1, double b1, double c1, double a2, double b2, double c2, double* x,
                                    double* y);

/// Intersection of two KB lines. Parallel (false) means exactly equal k for equal flags, or
/// k1·k2 exactly 1 for different flags. The coordinate along each line's own axis is computed
/// from the formulas: both flag 1: y = (b2 − b1)/(k1 − k2), x = k2·y + b2; flag1 1, flag2 0:
/// y = (k2·b1 + b2)/(1 − k1·k2), x = k1·y + b1; flag1 0, flag2 1: y = (k1·b2 + b1)/(1 − k1·k2),
/// x = k2·y + b2; both flag 0: x = (b1 − b2)/(k2 − k1), y = k1·x + b1.
QEL_API bool QelPointOfIntersection(int flag1, double k1, double b1, int flag2, double k2, double b2, double* x,
                                    double* y);

/// Intersection of two ThroTheta lines about the origin (0, 0). False only when theta1 = theta2:
/// 0 and 180 are not recognised as parallel and divide by a near-zero determinant. With c, s the
/// cosines and sines: if |c1| > 1e-6, y = (rho2·c1 − rho1·c2)/(s2·c1 − s1·c2) and
/// x = (rho1 − y·s1)/c1; otherwise x = (rho2·s1 − rho1·s2)/(c2·s1 − c1·s2) and
/// y = (rho1 − x·c1)/s1.
QEL_API bool QelPointOfIntersection(int rho1, int theta1, int rho2, int theta2, double* x, double* y);

/// x of the ThroTheta line (origin (0, 0)) on row y: (rho − y·sin)/cos. False, x untouched, when
/// |cos(theta)| ≤ 1e-5.
QEL_API bool QelGetHoughLinePointX(int rho, int theta, int y, double* x);

// ==== Distances and sides ====

/// Euclidean distance between two points.
QEL_API double QelDistBetweenPoint12(double x1, double y1, double x2, double y2);

/// Distance from (x, y) to a KB line: flag 1: |x − k·y − b| / sqrt(k² + 1); flag 0:
/// |k·x − y + b| / sqrt(k² + 1).
QEL_API double QelDistFromPoint2KBLine(int x, int y, int flag, double k, double b);

/// Distance from (x3, y3) to the line through (x1, y1) and (x2, y2):
/// |x3·(y2 − y1) − y3·(x2 − x1) + x2·y1 − x1·y2| / sqrt((y2 − y1)² + (x2 − x1)²). The products
/// x2·y1 and x1·y2 are 32-bit integer products and wrap when they overflow; the rest is in double.
/// Two equal points give NaN or infinity.
QEL_API double QelDistFromPoint3To2PLine(int x1, int y1, int x2, int y2, int x3, int y3);

/// Side of (x3, y3) relative to the line through (x1, y1) and (x2, y2): the sign (+1, −1 or 0) of
/// d = y3 − (k·x3 + b) with the line's real slope k and intercept b, so +1 means below the line in
/// image rows; when x1 = x2, of d = x3 − x2 (+1 means to the right).
QEL_API int QelWhichSideIsPoint3ToLine(int x1, int y1, int x2, int y2, int x3, int y3);

// ==== Intervals and rectangles ====
// Interval and rectangle bounds are inclusive; each pair may come in either order.

/// Length of the overlap of [a1, a2] and [b1, b2] as lenA + lenB − len(union hull), or 0 when
/// that is below 1: [0, 5] and [5, 9] overlap by 1, [0, 4] and [5, 9] by 0.
QEL_API int QelLineOverlapLen(int a1, int a2, int b1, int b2);

/// As above, also giving the overlap [start, end] (both 0 when the intervals do not meet).
QEL_API int QelLineOverlapLen(int a1, int a2, int b1, int b2, int* start, int* end);

/// Overlap area of two rectangles whose right and bottom are inside them (a rectangle whose left
/// equals its right is one pixel wide): the overlap of the column ranges times that of the rows.
QEL_API int QelRectOverlapArea(tagRECT rect1, tagRECT rect2);

// ==== Clipping to the image or a rectangle ====

/// Ends of an ABC line inside a width × height image, found by scanning. If |b| > |a|: for
/// x = 0 upward, y = truncate(−(a·x + c)/b + 0.5), the first x with 0 ≤ y < height is (x1, y1);
/// the same scan from x = width − 1 downward gives (x2, y2). Otherwise, by rows: for y = 0 upward,
/// x = truncate(−(b·y + c)/a) without rounding, and the first y with 0 ≤ x < width − 1 gives
/// (x1, y1); from y = height − 1 downward (x2, y2). The last column is never found on the row
/// scan, so the vertical line x = width − 1 returns false. True only when both ends were found; a
/// search that finds nothing leaves its outputs as they were.
QEL_API bool QelABCLineImgBoundary(int width, int height, double a, double b, double c, int* x1, int* y1, int* x2,
                                   int* y2);

/// Two crossings of a KB line with the border of a width × height image. The line is intersected,
/// by the KB QelPointOfIntersection, with the top row y = 0, the bottom row y = height − 1, the left
/// column x = 0 and the right column x = width − 1, in that order; each crossing lies exactly on
/// its border line (a row is passed as the first line, a column as the second). The crossings with
/// 0 ≤ x < width and 0 ≤ y < height (real coordinates, before truncation) are kept. Fewer than two:
/// false, outputs untouched. Otherwise the kept crossings are ordered by x (stable for equal x) and
/// the first two are output, truncated; a line through a corner may give that corner twice.
QEL_API bool QelKBLineImgBoundary(int width, int height, int flag, double k, double b, int* x1, int* y1, int* x2,
                                  int* y2);

/// Ends of a KB line on a rectangle, clamped to the image. Flag 0: the points of the line at
/// x = left and x = right; flag 1: at y = top and y = bottom. Each coordinate is rounded (+0.5,
/// truncation) and clamped, x to [0, width − 1] and y to [0, height − 1], so a line outside the
/// rectangle still gives two points on the image border. xs and ys have 2 entries; entry 0 comes
/// from left (top). Always returns true.
QEL_API bool QelKBLineRectBoundary(int width, int height, int left, int right, int top, int bottom, int flag,
                                   double k, double b, int* xs, int* ys);

/// QelKBLineRectBoundary with the two points as (x1, y1) and (x2, y2).
QEL_API void QelKBLineBeginEndPoint(int width, int height, int left, int right, int top, int bottom, int flag,
                                    double k, double b, int* x1, int* y1, int* x2, int* y2);

/// Two border points of a ThroTheta line (origin (0, 0)) in a width × height image, in xs[0..1]
/// and ys[0..1], which are first set to 0. theta 90 gives (0, rho), (width − 1, rho) and theta 0
/// gives (rho, 0), (rho, height − 1), both true without checking rho. Otherwise the crossings,
/// each truncated, are tried in the order left column, right column, top row, bottom row: a side
/// crossing is kept when its row is inside the image, filling the next free slot. The top
/// crossing is taken only when no point is kept yet or ys[1] is non-zero — since unfilled slots
/// hold 0, a single side crossing followed by a top crossing is not taken. The bottom crossing
/// must lie inside and, when a point is kept, ys[1] must differ from height − 1. Returns whether
/// two points were found; on false the slots hold what was found so far.
QEL_API bool QelHoughLineImgBoundary(int width, int height, int rho, int theta, int* xs, int* ys);

// ==== Sampling along lines ====

/// Counts the pixels visited along the segment (x1, y1)–(x2, y2) of a width-wide grey image that
/// equal value (equal) or not (other); both counts start at 0. A vertical or horizontal segment
/// visits all its pixels, both ends included. Otherwise, in single precision with
/// k = (y2 − y1)/(x2 − x1) and b = y2 − x2·k, the walk starts at the end with the smaller x and
/// visits, in each following column x up to the other end, the rows from the previous column's y
/// to y = truncate(x·k + b), both included. The starting column is never visited: (0, 0)–(3, 3)
/// visits 6 pixels and not (0, 0). Nothing is clipped: both ends must lie inside the image.
QEL_API void QelPixelsOn2PLine(unsigned char* image, int width, int x1, int y1, int x2, int y2, int value,
                               int* equalCount, int* otherCount);

/// Counts the non-zero and the zero pixels on an ABC line, sampled once per column when |b| > |a|
/// (y = truncate(−(x·a + c)/b + 0.5)) and once per row otherwise (x = truncate(−(y·b + c)/a + 0.5));
/// samples outside the image are skipped. Both counts start at 0.
QEL_API void QelPixlesOnABCLine(unsigned char* image, int width, int height, double a, double b, double c,
                                int* nonZeroCount, int* zeroCount);

/// Histogram (256 bins, cleared first) of the grey values sampled as by QelPixlesOnABCLine.
QEL_API void QelABCLineHistogram(unsigned char* image, int width, int height, double a, double b, double c,
                                 int* histogram);

/// Number of outline samples of the rectangle x1..x2, y1..y2 equal to value. x1 and y1 below 0
/// become 0, x2 and y2 beyond the image become width − 1 and height − 1 (no other clipping; outline
/// pixels still outside the image are not read and count nothing). Rows y1 and y2 are sampled for
/// x = x1..x2, then columns x1 and x2 for y = y1..y2, so corners count twice, and a one-row or
/// one-column rectangle counts each pixel of that pass twice.
QEL_API int QelPixelsOnRect(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2, int value);

// ==== Line fitting ====
// Least-squares lines through integer points. Every fit gives a KB line and its angle to the x
// axis in [0, 180). With the means mx, my of the participating points and Sxx = Σ(x − mx)²,
// Syy = Σ(y − my)², Sxy = Σ(x − mx)(y − my): if Sxx > Syy strictly, flag 0 (y = k·x + b) with
// k = Sxy/Sxx, b = my − k·mx, angle = atan(k)·180/pi plus 180 when negative; otherwise flag 1
// (x = k·y + b) with k = Sxy/Syy, b = mx − k·my, angle = 90 − atan(k)·180/pi. Ties take flag 1:
// a vertical set gives k = 0, b = x, angle 90; the diagonal y = x gives k = 1, angle 45; a single
// point gives k = 0/0 (NaN). The single-pass fits do not check n: no points give NaN outputs.
// The caller owns every array.

/// Fit to the n points (x[i], y[i]), with the fit errors. Each point's residual r is
/// |k·x − y + b| (flag 0) or |x − k·y − b| (flag 1); meanError = sqrt(Σr² / (n·sqrt(k² + 1))) —
/// the square root of k² + 1 in the divisor, not k² + 1 — and maxError = max r / sqrt(k² + 1).
QEL_API void QelFittingLine(int* x, int* y, int n, int* flag, double* k, double* b, double* angle,
                            double* meanError, double* maxError);

/// As above, over the n pixels of a chain code: the start (x0, y0), then the pixel reached after
/// each of the first n − 1 codes (the last code, which closes a contour, is not applied). Codes are
/// read modulo 8.
QEL_API void QelFittingLine(int x0, int y0, unsigned char* codes, int n, int* flag, double* k, double* b,
                            double* angle, double* meanError, double* maxError);

/// Fit to the points whose mask entry is true (no error outputs).
QEL_API void QelFittingLineMsk(int* x, int* y, bool* mask, int n, int* flag, double* k, double* b, double* angle);

/// Fit, mark, fit again. False, outputs untouched, when n < 3. Otherwise the outputs get the fit
/// over all points and each mark is set: 1 when sqrt(k² + 1) > r or sqrt(k² + 1) > −r with
/// r = x − k·y − b (the flag-1 form whatever the flag), else 100. As sqrt(k² + 1) ≥ 1, every point
/// of a real fit is marked 1 and the result is true with the first fit; only a NaN fit (all points
/// equal) marks 100 everywhere and returns false. With m points marked 1: false when 2m < n; true
/// with the first fit when 3m > 2n + 2; otherwise true after a refit over the marks below 2.
QEL_API bool QelFittingLineTwice(int* x, int* y, int* marks, int n, int* flag, double* k, double* b, double* angle);

/// Fit, reject the points farther than the mean, fit again. False, outputs untouched, when n < 3.
/// Otherwise the outputs get the fit over all points; weights[i] = truncate(r·100) with r the
/// residual as in QelFittingLine, and the points with weights[i] ≤ (Σ weights) / n (integer
/// division) are kept. Fewer than 2 kept: false with the first fit in the outputs; otherwise true
/// with the fit over the kept points.
QEL_API bool QelFittingLineTwiceByMean(int* x, int* y, int* weights, int n, int* flag, double* k, double* b,
                                       double* angle);

// ==== Hough lines ====
// One library-wide Hough line finder, built when the library is loaded. Call
// QelHoughLines_Initialize with the image size (again whenever a larger one is needed), then for
// each point set one QelHoughLines_HT, then any number of QelHoughLines_GetNextLine. A transform
// measures the points from the centre of their bounding box and votes in cells of 1 degree by 1
// pixel: rho = (x·cos + y·sin) >> 10 with the cosines and sines scaled by 1024 and truncated, +2 to
// the cell and +1 to each of its rho neighbours. Line strengths are a cell's votes / 2, the number
// of points that voted for it at its centre; a cell with fewer than 3 votes is no line. Lines are
// reported in the ABC form and as rho and theta about the image origin (through QelABC2ThroTheta).
// The caller's point arrays are never written. Not thread-safe.

/// Sizes the finder's accumulator for a width × height image: it grows when (width + 5)·(height + 5)
/// exceeds the area of the last growth, and never shrinks. Forgets every line taken. Returns
/// whether an accumulator exists (false when it could not be allocated).
QEL_API bool QelHoughLines_Initialize(int width, int height);

/// Transform in which each point i whose excluded[i] is false votes for the thetas
/// theta[i] − thetaTolerance .. theta[i] + thetaTolerance within 0..179. The bounding box is taken
/// over the voting points and the first point, which seeds it even when excluded. Returns the
/// strength of the strongest line and writes its five outputs; 0, outputs untouched, when n < 2,
/// when no cell reaches 3 votes, or when the points span more than the initialised image (the
/// accumulator is too small: also every transform before QelHoughLines_Initialize).
QEL_API int QelHoughLines_HT(int* x, int* y, int* theta, bool* excluded, int n, int thetaTolerance, double* a,
                             double* b, double* c, int* rho, int* lineTheta);

/// Transform in which every point votes for the thetas thetaFrom .. thetaTo − 1: thetaTo has an
/// accumulator row but gets no votes, so thetaFrom = thetaTo finds nothing. Thetas outside 0..180
/// get no votes. Results as above.
QEL_API int QelHoughLines_HT(int* x, int* y, int n, int thetaFrom, int thetaTo, double* a, double* b, double* c,
                             int* rho, int* lineTheta);

/// Transform in which every point votes for each theta t (degrees 0..180, 181 entries) with
/// thetaUsed[t] true, except the highest such t, which has an accumulator row but gets no votes.
/// Results as above.
QEL_API int QelHoughLines_HT(int* x, int* y, int n, bool* thetaUsed, double* a, double* b, double* c, int* rho,
                             int* lineTheta);

/// The strongest cell of the last transform's accumulator not near a line already taken: a cell
/// is passed over when, for some line taken since that transform, its rho column and theta row
/// differ by less than minRhoDistance and less than minThetaDistance. Returns its strength and
/// writes its outputs; returns 0 with the outputs zeroed when no cell reaches 3 votes, and 0 with
/// the outputs untouched when the last transform found no line or 1024 lines have been taken.
QEL_API int QelHoughLines_GetNextLine(int minRhoDistance, int minThetaDistance, double* a, double* b, double* c,
                                      int* rho, int* lineTheta);

/// Draws the last line returned (by a transform or QelHoughLines_GetNextLine) into a grey image with
/// QelDrawABCLineByColor; draws nothing before any line has been returned.
QEL_API void QelHoughLines_Debug(unsigned char* image, int width, int height, int colour);

// ==== Image chain lines ====
// A line-segment finder on edge chains. A run turns the image into a one-pixel edge map (the
// boundary pixels of a binary image, or the Shen Jun edges of a grey image), traces every edge
// chain with QelTraceContour, cuts each chain of at least the minimum length into nearly straight
// pieces and, when asked, fits a line to each piece (QelFittingLineTwiceByMean) and reports it as a
// segment. A piece whose pixels were mostly (over 80%) passed by earlier pieces is skipped, so the
// two sides of a one-pixel-wide edge give one piece, not two.
// The library holds one finder for its whole life; these functions act on it, one caller at a time.
// QelImgChainLines_Initialize must come first: before it every call returns its failure value.
// Buffers grow on initialisation and never shrink; a run on an image of more pixels than ever
// initialised is refused. Segments and piece points handed out stay valid until the next
// initialisation or run.
// Straightness: a window sliding along the chain, once six pixels long, is straight when its chord
// exceeds straightnessRatio times its arc length in whole pixels (codes 0, 2, 4, 6 count 1, odd
// codes 1.414) and no point of the window lies farther than secondTolerance pixels from the chord.

/// One segment found by the finder: its two end points and the fitted line a·x + b·y + c = 0 (the
/// ABC form of QelKBLine2ABCLine, not normalised). 40 bytes.
struct OVLA_LINE_SEGMENT {
    int x1;    ///< first end point
    int y1;
    int x2;    ///< second end point
    int y2;
    double a;  ///< the fitted line
    double b;
    double c;
};
static_assert(sizeof(OVLA_LINE_SEGMENT) == 40, "OVLA_LINE_SEGMENT is four ints and three doubles, unpadded");

/// Prepares the finder for images of up to width × height pixels and up to maxLines pieces a run.
/// minChainLength below 6 counts as 6, edgeParameter below 1 as 1; edgeParameter is the Shen Jun
/// threshold and 8 or more selects the integer operator (shift 2) over the real one (a = 0.25).
/// Image buffers are reallocated only for more pixels than before, the per-line arrays only for
/// more lines; the previous results are dropped. Returns true when every buffer exists; false, with
/// the earlier buffers kept, when an allocation fails or 2 × width × height does not fit an int.
QEL_API bool QelImgChainLines_Initialize(int width, int height, double straightnessRatio, double secondTolerance,
                                         int minChainLength, int edgeParameter, int maxLines);

/// Finds the pieces of the boundaries of a binary image (any non-zero pixel is object): the edge
/// map holds every interior object pixel with a background pixel among its 8 neighbours. With
/// fitLines, a line is fitted to each piece and only pieces with a line are counted. Returns the
/// number of pieces; 0 before initialisation, for an image of more pixels than initialised, or one
/// narrower or lower than 3. The image must stay alive for QelImgChainLines_Debug.
QEL_API int QelImgChainLines_DoBinImg(unsigned char* image, int width, int height, bool fitLines);

/// QelImgChainLines_DoBinImg on the Shen Jun edges of a grey image.
QEL_API int QelImgChainLines_DoGryImg(unsigned char* image, int width, int height, bool fitLines);

/// The segments of the last run, one per piece counted, when it had fitLines set; otherwise null.
QEL_API OVLA_LINE_SEGMENT* QelImgChainLines_GetLines();

/// Hands out the points of the next piece of the last run: xs and ys point into the finder's point
/// lists, count is the number of points. With fitLines these are the points the segment covers.
/// Returns false when every piece was handed out; a run and QelImgChainLines_Debug start again at
/// the first piece.
QEL_API bool QelImgChainLines_GetNxtCodeLine(int** xs, int** ys, int* count);

/// Six panels of width × height bytes (of the last run's image) into out: 0 the image with values
/// above 250 set to 250; 1 its Shen Jun edges, computed again as a grey run computes them (also
/// after a binary run); 2 the points of the pieces not yet handed out by
/// QelImgChainLines_GetNxtCodeLine (all of them straight after a run) as 254 on 0; 3 panel 1 less
/// the pixels of panel 2; 4 with fitLines the segments drawn by QelGryLine in 255 on 0, else all 0;
/// 5 panel 0 with the segments (without fitLines the pixels of panel 2) in 255. Returns the number
/// of pieces; without a valid run it writes nothing and returns 0.
QEL_API int QelImgChainLines_Debug(unsigned char* out);

#endif  // QEL_LINE_H
