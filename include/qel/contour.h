// Qel — contours: chain codes, the boundary tracer and the contour list; measures and point tests
// on chains; filling contours and selecting regions.
#ifndef QEL_CONTOUR_H
#define QEL_CONTOUR_H

#include "qel/base.h"

// ==== Contour tracing and chain codes ====
// A contour is its start pixel (x, y) plus one direction code per step; code k moves by
// dx = 1, 1, 0, −1, −1, −1, 0, 1 and dy = 0, −1, −1, −1, 0, 1, 1, 1 (0 east, 2 up, counter-clockwise
// on screen, y growing downwards). Chain bytes are read modulo 8.
// Tracing writes marks into the binary image: a contour pixel becomes 254 and every background
// pixel examined becomes 1; object pixels not yet traced stay 255. Any value of 2 or more counts
// as object while tracing. The scanning functions set the image's outer frame to 0 first, so no
// boundary reaches the edge; the tracer itself does not know the image height, so a caller who
// traces directly must keep the contour off the outer frame (every contour pixel one pixel in).

/// One contour of a contour list. Records and their chain blocks are made by QelGetContours and
/// released only by QelFreeContours.
struct QEL_CONTOUR_STRUCT {
    bool isOuter;            ///< true for the outer boundary of an object, false for a hole's boundary
    int32_t area;            ///< pixels enclosed, boundary included (QelRealAreaAndPerimeter)
    int32_t perimeter;       ///< perimeter from QelRealAreaAndPerimeter
    int32_t x;               ///< start column
    int32_t y;               ///< start row
    int32_t chainLen;        ///< number of codes in chain
    unsigned char* chain;    ///< chainLen codes, owned by the record
    int32_t reserved[6];     ///< zero when made, never used by the library
    QEL_CONTOUR_STRUCT* next;  ///< next record, null at the end
};

/// Traces one boundary from (x, y) and writes its codes to chain; returns the number written. For
/// an outer boundary (outer true) the start is an object pixel whose left neighbour is background,
/// walked counter-clockwise on screen, down the left side first; for a hole it is the object pixel
/// just left of the hole. At most maxCodes − 1 codes are stored: a longer walk goes on to the end
/// and the further codes are dropped. A lone pixel gives 0. The image is marked (254 on the
/// boundary, 1 on examined background, and the start's left, or for a hole right, neighbour is set
/// to 1). Every pixel of the boundary must lie at least one pixel inside the image.
QEL_API int QelTraceContour(unsigned char* image, int width, int x, int y, unsigned char* chain, int maxCodes,
                            bool outer);

/// QelTraceContour without storing codes: only the marks are written.
QEL_API void QelMarkContour(unsigned char* image, int width, int x, int y, bool outer);

/// out = 255 on every boundary pixel of image (outer and hole boundaries), 0 elsewhere. image is
/// only read; out, of the same size, is the working copy that is traced. Any value of 2 or more
/// counts as object, but only 255 starts an outer boundary.
QEL_API void QelMarkContours(unsigned char* image, int width, int height, unsigned char* out);

/// Traces every boundary of a binary image and lists those kept, in scan order of their start
/// pixels (rows from the top, each row from the left). A boundary is kept when it has at least one
/// code and at least minLength codes, its kind is wanted (mode 1: outer only; 2: holes only; any
/// other value: both), and QelRealAreaAndPerimeter gives area ≥ minArea and perimeter ≥ minLength.
/// A hole's record starts at the object pixel left of the hole. The image's outer frame is set to 0
/// first and the image is binarised at 50 at the end, so the caller gets its binary image back with
/// a zero frame. chain is scratch of width × height bytes and holds the last traced chain after the
/// call. Returns the head of a new list (null when none is kept), to be released with
/// QelFreeContours; a contour whose record or chain block cannot be allocated is left out.
QEL_API QEL_CONTOUR_STRUCT* QelGetContours(unsigned char* image, unsigned char* chain, int width, int height,
                                           int minLength, int minArea, int mode);

/// Releases a list from QelGetContours: every record's chain block, then the record. Accepts null.
QEL_API void QelFreeContours(QEL_CONTOUR_STRUCT* contours);

/// The n points of a closed chain: point 0 is (x0, y0) and point i + 1 is point i moved by code i,
/// for i = 0..n−2 (the last code, which returns to the start, is not applied). n ≤ 0 writes nothing.
QEL_API void QelChain2Points(int x0, int y0, unsigned char* chain, int n, int* xs, int* ys);

/// QelChain2Points that also gives the largest x and y over the points, counting from (x0, y0)
/// (also when n ≤ 0).
QEL_API void QelChain2Points(int x0, int y0, unsigned char* chain, int n, int* xs, int* ys, int* maxX, int* maxY);

/// Sets the start pixel and the pixel reached after each of the n codes to colour (its low byte,
/// so −1 paints 255). The pixels must lie inside the image.
QEL_API void QelMarkChainByColor(unsigned char* image, int width, int x, int y, unsigned char* chain, int n,
                                 int colour);

/// Dashed QelMarkChainByColor: the start pixel, then the pixel after code i only when (i / 5) is
/// even, giving 5 marked and 5 unmarked steps. The last argument is not used.
QEL_API void QelMarkChainByColor(unsigned char* image, int width, int x, int y, unsigned char* chain, int n,
                                 int colour, int unused);

/// Adds 1 to the start pixel (wrapping 255 to 0) and then to each pixel reached after a code while
/// that pixel is below 255, so a pixel passed several times counts the passes up to 255.
QEL_API void QelMarkChainByInc(unsigned char* image, int width, int x, int y, unsigned char* chain, int n);

// ==== Chain-code measures and tests ====
// Measures and point tests on a chain: a start pixel (x0, y0) plus n direction codes, code i
// leading from point i to point i + 1 (the last code of a closed contour returns to the start).
// Only the chain is read, except by the functions that take an image, which read the pixels the
// chain passes over; those pixels must lie inside the image. Chain bytes are taken modulo 8. All
// functions are reentrant.

/// Trapezoid area and perimeter of a closed chain. Perimeter = even codes + √2 × odd codes,
/// rounded; area = |trapezoid sum| + 0.5 + perimeter / 2 (integer half), truncated, so it counts
/// the boundary pixels only half (a 2 × 2 square gives 3). An empty chain gives 0 and 0.
QEL_API void QelAreaAndPerimeter(unsigned char* chain, int n, int* area, int* perimeter);

/// Bounding box of a chain from its corners: the start point and every point after code i
/// (i = 0..n−2) where code i differs from code i + 1. Outputs left, right, top, bottom.
QEL_API void QelContourRect(int x0, int y0, unsigned char* chain, int n, int* left, int* right, int* top,
                            int* bottom);

/// Mean of the n points start, after code 0, …, after code n−2, each coordinate rounded (+0.5 and
/// truncation). With n ≤ 1 the start point.
QEL_API void QelContourCenter(int x0, int y0, unsigned char* chain, int n, int* centerX, int* centerY);

/// Number of points after codes 0..n−2 that lie on the row; the start point is not counted.
QEL_API int QelContourPosPoints(int x0, int y0, unsigned char* chain, int n, int row);

/// True when a point reached after one of the n codes is (x, y); the start point counts only as
/// the point after the closing code.
QEL_API bool QelIsPointOnContour(int x0, int y0, unsigned char* chain, int n, int x, int y);

/// True when a point reached after one of the n codes lies on the row.
QEL_API bool QelIsHorizontalLineIntersectContour(int y0, unsigned char* chain, int n, int row);

/// True when a point reached after one of the n codes lies on the column.
QEL_API bool QelIsVerticalLineIntersectContour(int x0, unsigned char* chain, int n, int column);

/// True when a point (x, y) reached after one of the n codes has columnPerRow[y] == x.
/// columnPerRow must have an entry for every row the chain visits.
QEL_API bool QelIsVerticalLineIntersectContour(int x0, int y0, unsigned char* chain, int n, int* columnPerRow);

/// Number of non-zero pixels among the n pixels reached after each code; the start pixel itself
/// is not counted (compare QelPixelsPassedByChain).
QEL_API int QelWhitePixlePassedByChain(unsigned char* image, int width, int x0, int y0, unsigned char* chain, int n);

/// True when the start pixel or a pixel reached after one of the n codes equals value.
QEL_API bool QelHasPixelsOnChain(unsigned char* image, int width, int x0, int y0, unsigned char* chain, int n,
                                 int value);

/// Pixel-exact area of a closed chain: the number of pixels enclosed, boundary included (a 2 × 2
/// square gives 4, a 2 × 1 segment 2), and the perimeter as in QelAreaAndPerimeter. An empty
/// chain gives 0 and 0.
QEL_API void QelRealAreaAndPerimeter(unsigned char* chain, int n, int* area, int* perimeter);

/// The area of QelRealAreaAndPerimeter alone: pixels enclosed by the closed chain, boundary included.
QEL_API int QelRealPixelsEnclosed(unsigned char* chain, int n);

/// Extent of the chain in axes turned by angle degrees, in 10-bit fixed point: with c and s the
/// cosine and sine times 1024, truncated toward zero, u = (x·c − y·s) >> 10 and
/// v = (x·s + y·c) >> 10 over the start point and the points after codes 0..n−2. At 90 degrees
/// s is 1023, not 1024, so results shrink slightly; callers rely on it.
QEL_API void QelContourRotatedRect(int x0, int y0, unsigned char* chain, int n, double angle, int* minU, int* maxU,
                                   int* minV, int* maxV);

/// Sum of the grey values of the start pixel and of the pixel after each of the n codes, divided
/// by n (so a closed chain counts its start pixel twice). With n ≤ 0 the start pixel's value.
QEL_API double QelContourGryAvr(unsigned char* image, int width, int x0, int y0, unsigned char* chain, int n);

/// True when (x, y) lies inside the closed chain or on it, by a signed count of the chain's
/// crossings of the ray from (x, y) to the right, corrected at the point itself.
QEL_API bool QelIsPointIncludedByChain(int x, int y, int x0, int y0, unsigned char* chain, int n);

/// Number of pixels equal to value among the start pixel and the n pixels reached after each
/// code; unlike QelWhitePixlePassedByChain the start pixel is counted.
QEL_API int QelPixelsPassedByChain(unsigned char* image, int width, int x0, int y0, unsigned char* chain, int n,
                                   int value);

/// How well a region of this area and perimeter fits a bar w wide and perimeter / 2 − w long, for
/// w = minWidth..maxWidth (stopping once the length falls below 1): the smallest
/// |area − w·L| / min(area, w·L), with that width and the rounded length in the outputs. Returns
/// 10000.0 with bestWidth 10000 and bestLength untouched when no width was tried.
QEL_API double QelLineSimilarity(int area, int perimeter, int minWidth, int maxWidth, int* bestWidth,
                                 int* bestLength);

/// QelLineSimilarity for the area and perimeter QelAreaAndPerimeter gives the chain; x0 and y0
/// are not used.
QEL_API double QelLineSimilarity(int x0, int y0, unsigned char* chain, int n, int minWidth, int maxWidth,
                                 int* bestWidth, int* bestLength);

// ==== Contour filling and region selection ====
// Filling works on one contour traced by QelTraceContour (start pixel and chain). The region
// functions scan a binary image for boundaries as QelGetContours does (outer frame set to 0 first,
// then rows from the top), trace each one, and most return the image binarised at 50 at the end.
// Their chain buffers are scratch of width × height bytes unless said otherwise.

/// Fills the inside of a closed contour and returns its orientation, the sum of its turns / 8: +1
/// for a contour turning counter-clockwise on screen (an outer boundary), −1 for clockwise (a
/// hole's); 0 when the chain has no codes or does not turn, and then no inside is filled (with
/// includeContour the contour points still are). From each contour point where the contour goes
/// down, the row is filled with fillValue towards the inside (rightwards for +1, leftwards for −1)
/// up to the next point where it goes up, such points having been given boundaryValue. With
/// includeContour the contour points end as fillValue, otherwise they get their values back (not
/// when a chain of more than 4096 codes finds no memory to save them in: they then keep the values
/// the fill left). The inside must not hold boundaryValue, or the fill stops there; binary images
/// use 128. Both values are taken as bytes. The contour must be one the tracer gave for this image.
QEL_API int QelFillingContour(unsigned char* image, int width, int x, int y, unsigned char* chain, int n,
                              bool includeContour, int boundaryValue, int fillValue);

/// Paints the pixels enclosed by a closed contour, boundary included, into out: each becomes the
/// pixel of image at the same place when value is negative, else value (its low byte). The region
/// is the one QelFillingContour fills with includeContour, boundaryValue and fillValue (which must
/// differ), found in a scratch copy of the contour's bounding box, so neither image nor out is
/// changed elsewhere and out may hold anything. Returns the number of pixels painted: 0 for a chain
/// without codes, or when the scratch box cannot be allocated.
QEL_API int QelPastePixels2ResImg(unsigned char* image, int width, int x, int y, unsigned char* chain, int n,
                                  int boundaryValue, int fillValue, unsigned char* out, int value);

/// Scans rows 1, 1 + rowStep, … (rowStep below 1 counts as 1) and columns 1..width − 1; an outer
/// boundary starts at 255 after a pixel below 2, a hole at 0 after a pixel above 250. At EVERY
/// pixel that differs from its left neighbour the last traced chain is judged again: when its area
/// (QelAreaAndPerimeter) lies in [minArea, maxArea] the count goes up and the chain is drawn with
/// 255 into out from the current pixel, or from its left neighbour when the pixel was below 255.
/// So one contour is usually counted and drawn several times, in several places (intended); pixels
/// that would fall outside out are skipped. out is not cleared. Returns the count.
QEL_API int QelSelectContoursByArea(unsigned char* image, unsigned char* chain, int width, int height, int rowStep,
                                    int minArea, int maxArea, unsigned char* out);

/// The scan of QelSelectContoursByArea, judging each contour once: a chain of at least
/// max(minPerimeter / 2, 2) codes whose perimeter (QelAreaAndPerimeter) lies in
/// [minPerimeter, maxPerimeter] is drawn with 255 into out from its start and counted.
QEL_API int QelSelectContoursByPerimeter(unsigned char* image, unsigned char* chain, int width, int height,
                                         int rowStep, int minPerimeter, int maxPerimeter, unsigned char* out);

/// out = the image with its frame zeroed, then every object whose outer boundary encloses between
/// minPixels and maxPixels pixels (QelRealPixelsEnclosed, boundary and holes included) is filled
/// with 0, boundary included. Returns the number of objects removed.
QEL_API int QelRemoveWhiteRegionsByArea(unsigned char* image, unsigned char* chain, int width, int height,
                                        int minPixels, int maxPixels, unsigned char* out);

/// As QelRemoveWhiteRegionsByArea for holes: every hole of between minPixels and maxPixels pixels
/// (QelRealPixelsEnclosed of its chain, which turns clockwise and so counts the hole's own pixels)
/// is filled with 255, together with anything inside it. Returns the number of holes filled.
QEL_API int QelRemoveBlackRegionsByArea(unsigned char* image, unsigned char* chain, int width, int height,
                                        int minPixels, int maxPixels, unsigned char* out);

/// Keeps the largest objects: the objects of QelGetContours(image, …, minLength, 0, outer only)
/// whose area (QelAreaAndPerimeter) is strictly larger than the smallest of the n largest areas
/// (0 while fewer than n objects were seen) are pasted from image into out, which is cleared
/// first. So n = 1 paints nothing and, with n or more objects, the n-th largest is not painted
/// (intended); n < 1 paints nothing. Returns the number painted. The image is left as
/// QelGetContours leaves it.
QEL_API int Qel255NRegionsWithMaxArea(unsigned char* image, int width, int height, int n, int minLength,
                                      unsigned char* out);

/// The object of largest area (QelRealAreaAndPerimeter) inside columns x1..x2, rows y1..y2: first
/// a frame of 0 is drawn one pixel outside the rectangle (clipped to the image) and stays; then
/// rows from the one below the frame's top, every rowStep (below 1 counts as 1), up to the one
/// above the frame's bottom are scanned inside the frame. For
/// the first object of the largest area, its corner box (QelContourRect) goes to rect and its
/// centre (QelContourCenter) to centerX, centerY; they are untouched when no object is found.
/// Finally only x1..x2, y1..y2 (clipped to the image) is binarised at 50. Returns the area, 0 if
/// none.
QEL_API int Qel255RectWithMaxArea(unsigned char* image, unsigned char* chain, int width, int height, int x1, int x2,
                                  int y1, int y2, int rowStep, tagRECT* rect, int* centerX, int* centerY);

/// Qel255RectWithMaxArea with the perimeter as the measure and the result.
QEL_API int Qel255RectWithMaxPerimeter(unsigned char* image, unsigned char* chain, int width, int height, int x1,
                                       int x2, int y1, int y2, int rowStep, tagRECT* rect, int* centerX,
                                       int* centerY);

/// out = the image with its frame zeroed, then the boundary pixels of every object whose outer
/// boundary has at most maxLength codes are set to 0 (the interior stays, holes are kept). Rows
/// 1..height − 2 are scanned.
QEL_API void QelDeleteShortContour(unsigned char* image, unsigned char* chain, int width, int height, int maxLength,
                                   unsigned char* out);

/// Draws the boundary of the hole of largest area (QelRealAreaAndPerimeter of its chain: the
/// hole's own pixels; the first of equal holes) into the image with colour and returns that area,
/// 0 when there is no hole (nothing is drawn then). The frame is not zeroed, so background after an
/// object anywhere in rows 1..height − 1 starts a hole, and the image keeps its trace marks; objects
/// may touch the image's edges, pixels beyond the buffer counting as background. Every chain (outer
/// ones too, each of at most width × height − 1 codes) is stored behind the one before in chain,
/// which must hold all of them together.
QEL_API int QelMarkMaxAreaHoleContour(unsigned char* image, unsigned char* chain, int width, int height, int colour);

#endif  // QEL_CONTOUR_H
