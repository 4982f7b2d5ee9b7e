// Qel — binary images: morphology, thinning and run lengths.
#ifndef QEL_BINARY_H
#define QEL_BINARY_H

#include "qel/base.h"

// ==== Binary morphology and thinning ====
// Binary images are grey images whose pixels are 0 (background) or 255 (object); unless a function
// says otherwise any non-zero value counts as object. Neighbours are the eight pixels around a
// centre. Every function here is reentrant: the working tables are per call (results are the same
// as with one shared table), and only out / work buffers named in a signature are written.

/// Number of non-zero pixels; when it is not 0, their mean position Σx / n, Σy / n (truncated)
/// goes to x and y. An image without object pixels returns 0 and leaves x and y untouched.
QEL_API int QelBinImgCentroid(unsigned char* image, int width, int height, int* x, int* y);

/// Number of non-zero pixels in columns x1..x2 and rows y1..y2 (ends included), clipped to the image.
QEL_API int QelGetWhitePixelsNum(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2);

/// Share of zero pixels in columns x1..x2, rows y1..y2 (ends included) of a width-wide image. The
/// rectangle is not clipped: it must lie inside the image.
QEL_API double QelGetBlackRatioInBinaryImg(unsigned char* image, int width, int x1, int x2, int y1, int y2);

/// Number of pixels equal to value (compared as an int, so values outside 0..255 count nothing).
QEL_API int QelPixelsInGryImg(unsigned char* image, int width, int height, int value);

/// Centre column of wide objects: each row run of non-zero pixels [s, e] with e − s > 10 votes for
/// every column c in x1..x2, once when s < c and once when e > c; the result is the midpoint
/// (truncated) of the first and the last column with the most votes. Returns 0 when width > 4096
/// or x1 > x2. Columns outside the image may be searched; they simply collect the votes above.
QEL_API int QelBinImgSearchCenterX(unsigned char* image, int width, int height, int x1, int x2);

/// Size of the largest erosion an object survives: repeatedly measures each object pixel's
/// distance to the nearest run end along its row and column into result (values 1..254), adds the
/// median distance to the total and twice it to size, and erodes the object by that much, until
/// the largest distance is below 2; then adds that largest distance to both (an empty image ends
/// with size −1). Returns the total. work and result are caller buffers of the image's size; on
/// return result holds the last distance map. A round whose erosion changes nothing ends the loop.
QEL_API int QelGetMaxSizeofMinFilter(unsigned char* image, unsigned char* work, unsigned char* result, int width,
                                     int height, int* size);

/// In place: a non-zero pixel whose 8 neighbours are all 0 becomes 0. Pixels are visited in one
/// linear run over rows 1..height−2, so columns 0 and width−1 are visited too and their left and
/// right neighbours are the last or first pixel of the adjacent row (intended). Neighbours that
/// would lie before or after the buffer count as 0. Deletions are seen by later pixels.
QEL_API void QelBinImgDeleteIsolatedPoints(unsigned char* image, int width, int height);

/// In place, raster order over the interior: a pixel equal to value with fewer than n of its 8
/// neighbours equal to value becomes 255 − value. Earlier changes are seen by later pixels.
QEL_API void QelBinImgDeletePointsLessThanN(unsigned char* image, int width, int height, int value, int n);

/// As QelBinImgDeletePointsLessThanN, for pixels with more than n neighbours equal to value.
QEL_API void QelBinImgDeletePointsMoreThanN(unsigned char* image, int width, int height, int value, int n);

/// Box-count filter: out is 255 where the sum of raw pixel values in the (2·rx+1) × (2·ry+1)
/// window exceeds threshold (unsigned; k white pixels sum to 255·k), else 0. Columns 0..rx−1 and
/// width−rx..width−1 repeat the nearest computed value of their row; rows 0..ry−1 and
/// height−ry..height−1 are copies of rows ry and height−1−ry. columnSums (width entries) is
/// scratch. A window larger than the image (or a negative half size) leaves out untouched.
QEL_API void QelBinImgFilter(unsigned char* image, int width, int height, int rx, int ry, unsigned int* columnSums,
                             unsigned int threshold, unsigned char* out);

/// The same with its own column sums (any width). Always returns true.
QEL_API bool QelBinImgFilter(unsigned char* image, int width, int height, int rx, int ry, unsigned int threshold,
                             unsigned char* out);

/// Masked adaptive box filter: pixels are first masked (image AND NOT mask: mask 0 keeps a pixel,
/// 255 removes it); out is 255 where the mean of the window exceeds threshold, else 0. The window
/// is (2·rx+1) × (2·ry+1), shrunk at the borders so that it stays centred and inside the image.
/// The last pixel of every row is compared with a fixed mean of 126 instead (intended). Half
/// sizes are clamped to 0 .. (side−1)/2. Returns false, leaving out untouched, when width ≥ 4095.
QEL_API bool QelBinImgRemoveMskAndFilter(unsigned char* image, unsigned char* mask, int width, int height, int rx,
                                         int ry, int threshold, unsigned char* out);

/// As QelBinImgRemoveMskAndFilter, but a mask byte of 0..128 keeps the pixel and 129..255 removes it.
QEL_API bool QelBinImgRemoveMskAndFilterUseLUT(unsigned char* image, unsigned char* mask, int width, int height,
                                               int rx, int ry, int threshold, unsigned char* out);

/// Dilation: out is a copy of the image, then every non-zero interior pixel with at least one zero
/// neighbour sets its 8 neighbours in out to 255. Interior pixels are the only centres.
QEL_API void QelBinImgMaxFilter3x3(unsigned char* image, int width, int height, unsigned char* out);

/// Dilation limited to a rectangle: only x1..x2 × y1..y2 (clipped) is copied to out; centres are
/// x = max(x1,1) .. min(width−2, x2+1) and y = max(y1,1) .. min(width−2, y2+1) (the row bound comes
/// from the width, intended), and never beyond row height−2. Neighbours written by the centres
/// may lie outside the rectangle.
QEL_API void QelBinImgMaxFilter3x3(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2,
                                   unsigned char* out);

/// Erosion: out is a copy of the image, then every zero interior pixel with at least one zero
/// neighbour sets its 8 neighbours in out to 0. A lone zero pixel spreads nothing (intended: not
/// the mirror of the dilation).
QEL_API void QelBinImgMinFilter3x3(unsigned char* image, int width, int height, unsigned char* out);

/// Erosion limited to a rectangle, with the same bounds as the rectangle dilation.
QEL_API void QelBinImgMinFilter3x3(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2,
                                   unsigned char* out);

/// 3 × 3 majority: out's outer rows and columns are set to 0, and each interior pixel becomes 255
/// when at least 5 of its 8 neighbours (centre excluded) are non-zero, else 0.
QEL_API void QelBinImgMedFilter3x3(unsigned char* image, int width, int height, unsigned char* out);

/// The 3 × 3 majority for centres max(x1,1) .. min(width−2, x2) and max(y1,1) .. min(height−2, y2);
/// out is untouched elsewhere.
QEL_API void QelBinImgMedFilter3x3(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2,
                                   unsigned char* out);

/// In place: each 0 neighbour of an interior 255 pixel becomes 200, then every pixel equal to 200
/// (also one that held 200 before the call) becomes color (its low byte).
QEL_API void QelBinImgMaxFilter3x3ToColor(unsigned char* image, int width, int height, int color);

/// In place: each 255 neighbour of an interior 0 pixel becomes 200, then every 200 becomes color.
QEL_API void QelBinImgMinFilter3x3ToColor(unsigned char* image, int width, int height, int color);

/// Keeps small white details: out is cleared to 0; for each non-zero centre in rows and columns
/// 2..side−3 whose neighbours' values sum s: out = 255 when s ≥ 1020 (four white neighbours), and
/// when s < 2040 every zero neighbour whose own neighbours sum to ≥ 1020 also becomes 255.
QEL_API void QelBinImgLittleWhitePixelsMed3x3Filter(unsigned char* image, int width, int height, unsigned char* out);

/// Binarises at threshold (≥ threshold is object) and takes the 3 × 3 majority in one step: an
/// interior pixel below threshold gives 0, otherwise 255 when it and at least 4 neighbours reach
/// threshold. Columns 0 and width−1 of rows 1..height−2 become 0; rows 0 and height−1 are not
/// written. Returns the number of 255 outputs.
QEL_API int QelThresholdAndMedFilter3x3(unsigned char* image, int width, int height, int threshold,
                                        unsigned char* out);

/// Majority filter whose window grows down the image: row y uses half sizes
/// rx = round(rx0 × ((xScale − 1) × y / height + 1)) and ry likewise; out is 255 where the window's
/// mean exceeds 127, else 0. The window's rows are shifted (not shrunk) at the top and bottom; the
/// first and last rx columns use only row y with a window shifted right or left, read along the
/// buffer (so it may continue in the adjacent row; values past either end of the buffer count as
/// 0). Rows whose half sizes are both 0, negative, or too wide for the image are left unwritten.
QEL_API void QelBinImgMedFilter(unsigned char* image, int width, int height, int rx0, int ry0, double xScale,
                                double yScale, unsigned char* out);

/// Zhang–Suen thinning of the non-zero pixels into out (255 skeleton on 0), followed by a clean-up
/// that removes staircase corners. The outer rows and columns become 0; the image is not written;
/// work is a caller buffer of the image's size and ends holding the skeleton as 0/1 before the
/// clean-up. Returns the number of passes, the final deletion-free one included (an empty image
/// gives 1).
QEL_API int QelBinImgThin(unsigned char* image, unsigned char* work, int width, int height, unsigned char* out);

/// Fills holes from the nearest object pixel: out is 0 where mask is 0 and the image elsewhere; a
/// zero pixel inside the mask takes the first non-zero value found at distance d = 1 .. maxDistance,
/// looking right, left, down and up in that order. The look upward never reaches row 0, and the
/// look to the left continues along the buffer into the row above (both intended), stopping at the
/// buffer's start.
QEL_API void QelFillHolesByNearNeighbor(unsigned char* image, unsigned char* mask, int width, int height,
                                        int maxDistance, unsigned char* out);
// (end of Binary morphology and thinning)

// ==== Run-length operations ====
// A white run is a maximal sequence of non-zero pixels along a row (RLX) or a column (RLY); a
// black run one of zero pixels. Row runs are measured from their first pixel up to the pixel that
// ends them, so a row run reaching the right edge is one pixel short: its last pixel is neither
// counted nor changed by a deletion. Column runs are measured in full, also at the bottom edge.
// A pixel alone at the end of a row of its kind counts as a row run of length 0.
// Fill values given as `int` are stored as their low byte.

/// Row-run length histogram of white runs: histogram[min(length, cap)] += 1 for each run. The
/// caller clears `histogram` and sizes it to cap + 1; a negative cap counts nothing.
QEL_API void QelRLXWhiteCount(unsigned char* image, int width, int height, int* histogram, int cap);

/// The same for black row runs.
QEL_API void QelRLXBlackCount(unsigned char* image, int width, int height, int* histogram, int cap);

/// Column-run length histogram of white runs (full lengths), as QelRLXWhiteCount.
QEL_API void QelRLYWhiteCount(unsigned char* image, int width, int height, int* histogram, int cap);

/// Column-run length histogram of black runs (full lengths).
QEL_API void QelRLYBlackCount(unsigned char* image, int width, int height, int* histogram, int cap);

/// Bright row runs inside the rectangle x1..x2, y1..y2 (clipped to the image): a run starts at a
/// pixel >= 201 and continues while pixels are >= 200, up to x2; its length is measured in full.
/// Returns the number of runs; *total gets the sum of their lengths, *shortest the shortest
/// (width when there is none or none is shorter), *longest the longest (0 when none) and
/// *mostRuns the largest number of runs in one row.
QEL_API int QelRLXWhiteCount(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2,
                             int* total, int* shortest, int* longest, int* mostRuns);

/// Column twin of the statistics form: runs down the columns x1..x2 over rows y1..y2. *shortest
/// also starts at width (not height), and *mostRuns is the largest count in one column.
QEL_API int QelRLYWhiteCount(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2,
                             int* total, int* shortest, int* longest, int* mostRuns);

/// In place: white row runs with length < minLength are overwritten with `fill`.
QEL_API void QelRLXWhiteDeleteShort(unsigned char* image, int width, int height, int minLength, int fill);

/// In place: white row runs with length > maxLength are overwritten with `fill`.
QEL_API void QelRLXWhiteDeleteLong(unsigned char* image, int width, int height, int maxLength,
                                   unsigned char fill);

/// In place: black row runs with length < minLength are overwritten with `fill`. Runs are looked
/// for only from column 1 to width−2, and end at the first non-zero pixel or at column width−1.
QEL_API void QelRLXBlackDeleteShort(unsigned char* image, int width, int height, int minLength, int fill);

/// In place: white column runs with length < minLength are overwritten with `fill`. A minimum
/// below 2 calls QelRLYWhiteDeleteIsolated instead.
QEL_API void QelRLYWhiteDeleteShort(unsigned char* image, int width, int height, int minLength, int fill);

/// In place: white column runs with length > maxLength are overwritten with `fill`.
QEL_API void QelRLYWhiteDeleteLong(unsigned char* image, int width, int height, int maxLength, int fill);

/// In place: every non-zero pixel of rows 1..height−2 whose upper and lower neighbours are both 0
/// gets `fill`. Rows 0 and height−1 are never changed.
QEL_API void QelRLYWhiteDeleteIsolated(unsigned char* image, int width, int height, int fill);

/// Copies long white row runs to `out` as 255: on row y = 1..height−2 a run searched in columns
/// 1..width−2 (cut at column width−1) is copied when its length >= minTop + (minBottom − minTop)
/// × y / (height − 1). `out` is not cleared; rows 0 and height−1 are not looked at.
QEL_API void QelRLXWhiteLong(unsigned char* image, int width, int height, int minTop, int minBottom,
                             unsigned char* out);

/// Copies short bright column runs to `out` as 255: runs of grey >= threshold with length <=
/// maxLength. `out` is not cleared.
QEL_API void QelRLYWhiteShort(unsigned char* grey, int width, int height, int threshold, int maxLength,
                              unsigned char* out);

/// Keeps short white row runs only where they link, through runs overlapping row to row, to a
/// run of at least minLength within fewer than min(maxSteps, 250) rows; kept runs and long runs
/// become 255 in `out`, which must hold zeros on entry. The image's outer rows and columns are
/// set to 0 first (the image is modified).
QEL_API void QelRLXDeleteWhiteShort(unsigned char* image, int width, int height, int minLength, int maxSteps,
                                    unsigned char* out);

/// Column twin of QelRLXDeleteWhiteShort: runs along columns, linked column to column.
QEL_API void QelRLYDeleteWhiteShort(unsigned char* image, int width, int height, int minLength, int maxSteps,
                                    unsigned char* out);

/// Counts run starts in a sliding row window. For each row, flags[x] becomes 1 at every x >= 1
/// whose pixel is non-zero with a zero left neighbour; flags are never reset, so they accumulate
/// over the rows (the caller clears the width entries before the call). out's row then gets the
/// sum of flags[x−k .. x+k] with k = min(r, x, width−1−x), r = ((halfSize+1)/2·2+1)/2 (negative
/// r counts as 0), stored as its low byte.
QEL_API void QelBinImg01TimesByX(unsigned char* image, int* flags, int width, int height, int halfSize,
                                 unsigned char* out);

/// In place: each white pixel becomes min(row-run value, column count). The row value is the run's
/// length, or 255 for 256 and more (a run reaching the right edge keeps its last pixel); the
/// column count is one more than the column run's length (its ending zero is counted), or its
/// length alone at the bottom edge.
QEL_API void QelBinImgMarkMinOfRLXandRLY(unsigned char* image, int width, int height);

/// Marks horizontal structures made of short vertical runs. `work` (cleared first) receives every
/// vertical run of grey >= threshold with length <= maxVertical, in columns 0..width−2; a row
/// segment of consecutive such runs ending in column x−1 is written as 255 into `out` when its
/// length (counted back to column 1 at most) reaches minTop + (minBottom − minTop) × y / height.
/// `out` is not cleared. Allocates 5 × height ints when height >= 1024, and returns false,
/// touching nothing, when that fails; true otherwise.
QEL_API bool QelRLYWhiteShortAndRLXWhiteLong(unsigned char* grey, unsigned char* work, int width, int height,
                                             int threshold, int maxVertical, int minTop, int minBottom,
                                             unsigned char* out);
// (end of Run-length operations)

// ==== Run-length regions ====
// A white region described as a caller-owned array of run records, one per row (RLX) or one per
// column (RLY). Every function takes the array and its capacity, never writes more records than
// the capacity (0 or less writes none) and returns the number it wrote. Rows and columns outside
// the image are never read: search rectangles are clipped to it.

/// One row run of a region: row, first and last column (inclusive) and `extra`, the region
/// number, written only by QelRLXRegionsWithID.
struct RLX {
    int32_t row;
    int32_t xBegin;
    int32_t xEnd;
    int32_t extra;
};

/// One column run of a region: column, first and last row (inclusive) and `extra`, untouched by
/// every function here.
struct RLY {
    int32_t col;
    int32_t yBegin;
    int32_t yEnd;
    int32_t extra;
};

/// White row runs of rows y1..y2 near the columns x1..x2: on each row the search span starts at
/// x1 and moves left over white pixels (down to column 0), and ends at x2 moved right over white
/// pixels (up to column width−1), so a run crossing the rectangle's side is taken whole. Each run
/// [s, e] of the span gives {y, s, e}; `extra` is not written.
QEL_API int QelRLXRegionsGet(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2, RLX* out,
                             int capacity);

/// Follows a stripe downwards from startRow (the first row examined) while its width stays steady.
/// On each row the run through the centre c = (xb + xe) >> 1 of the previous bounds (at first
/// xBegin, xEnd) is measured from c: xb is the first black pixel to the left (or column 0), xe
/// the first black pixel to the right (or column width−1). Growth stops at a black centre, or when
/// w = xe − xb has 2·|w − previous| >= previous and w >= 3 (the first previous width is
/// xEnd − xBegin + 1). Each row writes {y, xb, xe − 1}: the record starts at the black pixel left
/// of the run and ends at its last pixel. A start row outside the image writes nothing.
QEL_API int QelRLXRegionsGrowByYInc(unsigned char* image, int width, int height, int startRow, int xBegin,
                                    int xEnd, RLX* out, int capacity);

/// QelRLXRegionsGrowByYInc upwards: rows startRow, startRow − 1, ... down to 1; row 0 is never
/// examined.
QEL_API int QelRLXRegionsGrowByYDec(unsigned char* image, int width, int height, int startRow, int xBegin,
                                    int xEnd, RLX* out, int capacity);

/// QelRLXRegionsGet, then each record found on row y2 (walking back from the last one, index 0
/// excluded) is grown downwards and each on row y1 (from the first one) upwards, appending behind
/// the records so far within the remaining capacity. The first grown record of each growth
/// repeats the row it started from. Returns the total number of records.
QEL_API int QelRLXReginsGetAndGrow(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2,
                                   RLX* out, int capacity);

/// Writes `value` (its low byte) over columns xBegin..xEnd of each record's row, clipped to the image.
QEL_API void QelDrawRLXRegions(unsigned char* image, int width, int height, RLX* records, int count, int value);

/// Column twin of QelRLXRegionsGet: white column runs of columns x1..x2 near the rows y1..y2.
QEL_API int QelRLYRegionsGet(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2, RLY* out,
                             int capacity);

/// Column twin of QelRLXRegionsGrowByYInc: follows a stripe rightwards from startCol.
QEL_API int QelRLYRegionsGrowByXInc(unsigned char* image, int width, int height, int startCol, int yBegin,
                                    int yEnd, RLY* out, int capacity);

/// Column twin of QelRLXRegionsGrowByYDec: leftwards down to column 1.
QEL_API int QelRLYRegionsGrowByXDec(unsigned char* image, int width, int height, int startCol, int yBegin,
                                    int yEnd, RLY* out, int capacity);

/// Column twin of QelRLXReginsGetAndGrow: records on column x2 grow rightwards, on x1 leftwards.
QEL_API int QelRLYReginsGetAndGrow(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2,
                                   RLY* out, int capacity);

/// Writes `value` (its low byte) over rows yBegin..yEnd of each record's column, clipped to the image.
QEL_API void QelDrawRLYRegions(unsigned char* image, int width, int height, RLY* records, int count, int value);

/// Labels white row runs into regions. On row y the runs shorter than
/// (minBottom − minTop) × y / (height − 1) + minTop are ignored; each kept run takes the number of
/// the first overlapping run of the previous row, merging every other overlapping number into it,
/// or else the smallest free number of 0..1023. Records {y, s, e, number} are written row by row.
/// At the end, or when the capacity is reached, the numbers are compacted to 0..n−1 and n, the
/// region count, is returned (1024 when all are in use); when no number is free the function
/// returns at once with the number of records written instead.
QEL_API int QelRLXRegionsWithID(unsigned char* image, int width, int height, int minTop, int minBottom, RLX* out,
                                int capacity);
// (end of Run-length regions)

#endif  // QEL_BINARY_H
