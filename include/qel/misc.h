// Qel — miscellaneous analysis: image arithmetic and rectangle statistics, split-and-merge
// segmentation, one-dimensional data utilities.
#ifndef QEL_MISC_H
#define QEL_MISC_H

#include "qel/base.h"

// ==== Image arithmetic and rectangle statistics ====
// Images are grey (one byte a pixel) or BGR (three); functions taking isRGB work on width × height
// × 3 bytes when it is true. Rectangles given as x0, x1, y0, y1 include both ends.

/// Mean absolute difference per byte between rectangle r1 of img1 and rectangle r2 of img2, two
/// images of the same width (grey, or BGR when isRGB), as an integer division of the sum by the
/// number of bytes compared. A rectangle spans right − left columns and bottom − top rows from its
/// top-left corner: its last column and row are not compared. When the two differ in size, r2 is
/// sampled at (left + trunc(i · (cols2 / cols1)), top + trunc(j · (rows2 / rows1))) in doubles. A first
/// rectangle with no columns or rows returns 0.
QEL_API int QelImgDifferenceInRect(unsigned char* img1, unsigned char* img2, bool isRGB, int width, tagRECT r1,
                                   tagRECT r2);

/// Byte-by-byte logic of two buffers of n bytes into the first: a := a AND b (OR b, XOR b).
QEL_API void QelImg1AndImg2To1(unsigned char* a, unsigned char* b, int n);
QEL_API void QelImg1OrImg2To1(unsigned char* a, unsigned char* b, int n);
QEL_API void QelImg1XorImg2To1(unsigned char* a, unsigned char* b, int n);

/// Byte-by-byte logic of two buffers of n bytes into res: res := a AND b (OR b, XOR b). res may be
/// a or b.
QEL_API void QelImg1AndImg2ToRes(unsigned char* a, unsigned char* b, int n, unsigned char* res);
QEL_API void QelImg1OrImg2ToRes(unsigned char* a, unsigned char* b, int n, unsigned char* res);
QEL_API void QelImg1XorImg2ToRes(unsigned char* a, unsigned char* b, int n, unsigned char* res);

/// In place on the first grey image: a := |a − b|.
QEL_API void QelImg1Difference2To1(unsigned char* a, unsigned char* b, int w, int h);

/// In place on the first grey image: a := a − b where a > b, else 0.
QEL_API void QelImg1Substract2To1(unsigned char* a, unsigned char* b, int w, int h);

/// In place on the SECOND grey image: b := a − b where a > b, else 0. a is not written.
QEL_API void QelImg1Substract2To2(unsigned char* a, unsigned char* b, int w, int h);

/// res := max(a − b, 0) for every byte of two grey (or BGR when isRGB) images.
QEL_API void QelImg1SubstractImg2(unsigned char* a, unsigned char* b, int w, int h, bool isRGB, unsigned char* res);

/// Absolute difference image. Grey: res := |a − b|. BGR (isRGB): res is a w × h GREY image holding,
/// per pixel, the largest of the three channel differences.
QEL_API void QelDifferenceImg12(unsigned char* a, unsigned char* b, int w, int h, bool isRGB, unsigned char* res);

/// As above; histogram (256 entries, cleared first) counts the w × h values written to res.
QEL_API void QelDifferenceImg12(unsigned char* a, unsigned char* b, int w, int h, bool isRGB, unsigned char* res,
                                int* histogram);

/// Running maximum over a sequence of images: accMax := max(accMax, img) per byte (grey, or BGR
/// when isRGB).
QEL_API void QelRemainMaxGry(unsigned char* img, int w, int h, bool isRGB, unsigned char* accMax);

/// Running minimum: accMin := min(accMin, img) per byte.
QEL_API void QelRemainMinGry(unsigned char* img, int w, int h, bool isRGB, unsigned char* accMin);

/// Both running extremes in one pass.
QEL_API void QelRemainMaxMinGry(unsigned char* img, int w, int h, bool isRGB, unsigned char* accMax,
                                unsigned char* accMin);

/// Integral image into sum (w × h ints): sum(x, y) = total of the pixels with column ≤ x and row
/// ≤ y. 32-bit sums: images whose total passes 2^31 − 1 wrap around.
QEL_API void QelDoSumGryImg(unsigned char* img, int w, int h, int* sum);

/// Mean of the rectangle x0..x1, y0..y1 minus the mean of the ring around it, both truncated
/// integer means. The ring's outer box is the rectangle grown by margin on every side; each of
/// its bounds is capped at width − 1 or height − 1 and becomes 0 when the result is below 1 (so
/// a bound that lands on 1 stays 1 while 0 and below give 0). The rectangle must lie inside the
/// image. When the ring is empty only the rectangle's mean is returned.
QEL_API int QelCenterBlockMeanDif(unsigned char* img, int width, int height, int x0, int x1, int y0, int y1,
                                  int margin);

/// Truncated mean of the rectangle x0..x1, y0..y1 (ends included), which must lie inside the
/// image; an empty rectangle gives 0.
QEL_API int QelGryRectAvr(unsigned char* img, int width, int height, int x0, int x1, int y0, int y1);

/// Robust extremes of the rectangle x0..x1, y0..y1 of a width-wide grey image: with k = trunc(area
/// · ratio), lo is the first level walking up from 0 at which more than k pixels have been passed
/// (256 if never) and hi the first walking down from 255 (0 if never). Ratio 0 gives the true
/// minimum and maximum.
QEL_API void QelGryMinMaxInRect(unsigned char* img, int width, int x0, int x1, int y0, int y1, double ratio, int* lo,
                                int* hi);

/// Mean grey level of the brightest blockW × blockH block; its centre goes to cx, cy. Block tops
/// run over rows 0 .. height − blockH − 1 and lefts over columns 0 .. width − blockW − 1 (except
/// that column 0 is always tried): the last possible row and column are never tried. A block
/// wins only when strictly brighter, so ties keep the first found. cx, cy start at the image
/// centre and stay there when no block is brighter than 0 or none fits; such calls return 0.
QEL_API double QelMaxBrightRect(unsigned char* img, int width, int height, int blockW, int blockH, int* cx, int* cy);

/// Typical local standard deviation of the pixels where mask is not 0: over blocks of
/// (blockW + 1) × (blockH + 1) pixels (clipped to the image) starting every blockW / 2 columns and
/// blockH / 2 rows, each block with more than a third of blockW · blockH masked pixels votes
/// 4 · cnt / (blockW · blockH) for its rounded deviation; the result is the median vote.
QEL_API int QelEstimateImgStdev(unsigned char* img, unsigned char* mask, int width, int height, int blockW,
                                int blockH);

/// Bounding box of the n points (xs[i], ys[i]). n below 1 writes nothing.
QEL_API void QelPointsRect(int* xs, int* ys, int n, int* minX, int* maxX, int* minY, int* maxY);

/// Masked mean colour of the rectangle x0..x1, y0..y1 of a BGR image: pixels whose mask byte (a
/// w × h image) is 255 are counted, but the k-th counted pixel of a row takes its colour from the
/// k-th pixel of the rectangle's row, not from the masked position. r, g, b get the truncated
/// means of bytes 2, 1, 0; all 0 when no mask byte is 255.
QEL_API void QelRGBRectAvr(unsigned char* rgb, unsigned char* mask, int width, int height, int x0, int x1, int y0,
                           int y1, int* r, int* g, int* b);

/// The same as QelRGBRectAvr.
QEL_API void QelGetRGBRectAvr(unsigned char* rgb, unsigned char* mask, int width, int height, int x0, int x1,
                              int y0, int y1, int* r, int* g, int* b);

// ==== Split-and-merge segmentation ====
// A threshold swept over the grey levels cuts the image into nested regions: each level's outer
// contours that are large enough become records, and the records of successive levels are merged
// into one tree, a region being split when it breaks into several parts that together keep enough
// of its area. The tree is a singly linked list of records in ascending order of area, each naming
// its parent by id.

/// One region of a split-and-merge tree: twelve 32-bit fields (on 32-bit platforms) in this order.
struct RegionStruct {
    int x;                 ///< start column of the region's outer contour
    int y;                 ///< start row of the region's outer contour
    int chainLength;       ///< number of codes in chain
    unsigned char* chain;  ///< the contour's chain codes, owned by the record
    int area;              ///< area of the region (QelAreaAndPerimeter); the list's order key
    int perimeter;         ///< perimeter (QelAreaAndPerimeter)
    int level;             ///< 255 − the threshold that found it, on the caller's grey scale
    int enclosingId;       ///< id of the smallest region of the same level containing it, −1 if none
    int id;                ///< running number from 0, unique within one call
    int parentId;          ///< id of the region of an earlier level containing it, −1 for a root
    int childArea;         ///< the area, replaced by its only child's area while it has exactly one
    RegionStruct* next;    ///< next record, null at the end
};

/// Split-and-merge segmentation of a grey image. The image is inverted in place (v := 255 − v)
/// and its frame set to 0, and stays so on return. With s = trunc(sqrt(minArea)), levels t run
/// from the first t ≥ 1 at which the inverted image's levels 1..t (frame included) hold more than
/// s pixels, up to 255 − minContrast. At each level the pixels above t form a binary image whose
/// outer contours of more than s codes and area ≥ minArea become records of level 255 − t. The
/// first level with records becomes the tree; each later level is merged into it: a tree region
/// that holds exactly one of the new regions keeps its record and takes that region's area as its
/// childArea; one that holds several gets them all as new records, and is removed (its children
/// passing to its parent) when their total area over its childArea exceeds splitRatio; new regions
/// outside every tree region, or inside a region of their own level within the same tree region,
/// are added too. work holds width × height bytes of binary image followed by width × height
/// bytes of chain codes. Returns the head of a new list, to be released with
/// QelFreeRegionStruct; null when no region is found (a uniform image, minContrast ≥ 255, width
/// or height ≤ 0). A region whose record or chain cannot be allocated is left out.
QEL_API RegionStruct* QelMergeSplit(unsigned char* grey, unsigned char* work, int width, int height, int minArea,
                                    int minContrast, double splitRatio);

/// Releases a list from QelMergeSplit: every record's chain, then the record. Accepts null.
QEL_API void QelFreeRegionStruct(RegionStruct* list);

// ==== One-dimensional data utilities ====
// Small functions over caller-owned arrays of n int or double values (profiles, projections,
// histograms). Nothing is allocated and nothing is kept between calls.

/// Moving mean over windows of m = 2·|half| + 1 samples, divided as integers: out[i] = the sum of
/// in[i − half .. i + half] / m where the window fits; out[0..half] repeat the first full window's
/// mean and the outputs after the last full window repeat its mean. half = 0 copies in. n < m
/// writes nothing.
QEL_API void Qel1DAverageFilter(int* in, int n, int half, int* out);

/// Moving majority of a 0/1 sequence over the windows of Qel1DAverageFilter: out[i] = 1 when more
/// than half of the window's samples are 1 (2·sum > m), else 0; the ends repeat the first and last
/// full windows. n < m writes nothing.
QEL_API void QelBin1DMedianFilter(int* in, int n, int half, int* out);

/// Returns the largest value; mean from a sum in doubles, dev = sqrt(Σ(v − mean)² / n). n ≤ 0
/// returns 0 with mean and dev 0.
QEL_API int QelDataAvrAndDevAndReturnMax(int* data, int n, double* mean, double* dev);

/// Returns the integer sum (wrapping past 32 bits); mean = sum / n (in doubles, from the exact
/// sum), dev = sqrt(Σ(v − mean)² / n). n ≤ 0 returns 0 with mean and dev 0.
QEL_API int QelDataAvrAndDevAndReturnSum(int* data, int n, double* mean, double* dev);

/// Mean and mean absolute deviation Σ|v − mean| / n. n ≤ 0 gives 0 and 0.
QEL_API void QelDataAvrAndDif(int* data, int n, double* mean, double* meanAbsDev);

/// Index of the first largest value; 0 when n ≤ 0.
QEL_API int QelDataMaxDataPos(int* data, int n);

/// The largest value; 0 when n ≤ 0.
QEL_API int QelDataMaxDataValue(int* data, int n);

/// The window of w samples with the largest sum: maxMean = sum / w, pos = its start + w / 2 +
/// ties / 2, ties counting every later window of the same sum (adjacent or not), so a run of
/// equal windows reports its middle. false with outputs 0 when n is 0, n < w or w < 1.
QEL_API bool QelDataMaxAvrAndPosInMovingWindow(int* data, int n, int w, double* maxMean, int* pos);

/// The window of w samples with the largest sum of squared deviations from its own mean (the
/// first of equals): maxDev = sqrt(that sum / w), pos = its start + w / 2. false with outputs 0
/// when n is 0, n < w or w < 1.
QEL_API bool QelDataMaxDevAndPosInMovingWindow(double* data, int n, int w, double* maxDev, int* pos);

/// The window of w samples with the largest max − min (the first of equals; a window must exceed
/// 0 to win, else start 0 stands): maxRange is that range, pos = its start + w / 2. false with
/// outputs 0 when n is 0, n < w or w < 1.
QEL_API bool QelDataMaxDifAndPosInMovingWindow(double* data, int n, int w, double* maxRange, int* pos);

/// Resamples nIn values to nOut by linear interpolation at t = i · (nIn − 1) / (nOut − 1):
/// out[i] = trunc(in[j + 1] · f + (1 − f) · in[j]) with j = trunc(t), f = t − j. The last output
/// reads in[nIn] (with weight 0 when t lands exactly on nIn − 1), so in must have nIn + 1
/// readable elements. false, writing nothing, unless nIn ≥ 2 and nOut ≥ 2.
QEL_API bool QelDataLinearInterpolattion(int* in, int nIn, int* out, int nOut);

/// Up to maxPeaks peaks, highest first: each is the largest sample not yet excluded, widened to
/// the run of equal, not excluded neighbours on both sides and placed at the run's middle; the
/// samples within half of that place are then excluded. The first maxPeaks entries of both
/// outputs are zeroed first and stay 0 once every sample is excluded. n > 4096 returns false
/// (after the zeroing).
QEL_API bool QelDataFindPeaks(double* data, int n, int half, double* peakValues, int* peakPos, int maxPeaks);

/// Keeps, in order and in place, the (value, weight) pairs with minWeight ≤ weight ≤ maxWeight,
/// zeroes both arrays from the new count to n − 1 and returns the count.
QEL_API int QelpDataDeleteByWeightReturnNum(int* values, int* weights, int n, int minWeight, int maxWeight);

#endif  // QEL_MISC_H
