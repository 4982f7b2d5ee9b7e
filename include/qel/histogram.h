// Qel — histograms, thresholds, histogram shaping and grey corrections.
#ifndef QEL_HISTOGRAM_H
#define QEL_HISTOGRAM_H

#include "qel/base.h"

// ==== Histogram statistics ====
// A histogram is a caller-owned array of 256 int counts indexed by grey level. The builders clear
// all 256 entries and then count; nothing here allocates.

/// Histogram of every pixel of a width × height grey image into hist (256 entries, cleared first).
QEL_API void QelGetHistogram(unsigned char* image, int width, int height, int* hist);

/// Histogram of the rectangle x1..x2, y1..y2 (both ends included) of a width-wide grey image.
/// hist (256 entries) is cleared first; the rectangle must lie inside the image.
QEL_API void QelGetHistogramInRect(unsigned char* image, int width, int x1, int x2, int y1, int y2, int* hist);

/// Histogram of the pixels of the rectangle x1..x2, y1..y2 (ends included) whose byte in mask
/// (an image of the same size) is not 0. hist (256 entries) is cleared first.
QEL_API void QelGetHistogramByMasked(unsigned char* image, unsigned char* mask, int width, int x1, int x2, int y1,
                                     int y2, int* hist);

/// Histogram of a region given row by row: for each row y in y1..y2 (included) the pixels
/// left[y] .. right[y] − 1. The right end is excluded, so left[y] = right[y] counts nothing; left
/// and right are indexed by row number. hist (256 entries) is cleared first.
QEL_API void QelGetHistogramByLimited(unsigned char* image, int width, int y1, int y2, int* left, int* right,
                                      int* hist);

/// Mean and population deviation (divided by n) of a grey image's levels, through its histogram.
/// Returns the pixel count; an empty image writes 0.0 to both outputs.
QEL_API int QelGetImageAvrAndDev(unsigned char* image, int width, int height, double* mean, double* deviation);

/// Mean and population deviation (divided by n) of the grey levels counted in hist. Returns the
/// total count; an empty histogram writes 0.0 to both outputs and returns 0.
QEL_API int QelGetImageAvrAndDev(int* hist, double* mean, double* deviation);

/// Mean, population deviation and mean absolute difference from the mean of the levels counted
/// in hist. Returns the total count; an empty histogram returns 0 and writes none of the outputs.
QEL_API int QelGetImageAvrAndDevAndDif(int* hist, double* mean, double* deviation, double* dif);

/// One-pass mean and deviation (sqrt(Σi²h/n − mean²)) of the levels counted in hist. The sums are
/// 32-bit: counts above 33,025 in bin 255 overflow them. Returns the total count; an empty histogram
/// writes 0 to the deviation and leaves the mean unwritten.
QEL_API int QelGetImageAvrAndDevFast(int* hist, double* mean, double* deviation);

/// Whole-number mean (Σ i·h[i] / n, truncated) and mean absolute difference from that mean
/// (truncated) of the levels counted in hist. The histogram must not be empty.
QEL_API void QelGetImageAvrAndDif(int* hist, int* mean, int* dif);

/// Walking down from bin 255, the first grey level at which more than n × ratio (truncated)
/// pixels have been passed: ratio 0.01 gives the level below which all but the brightest 1 % lie.
/// Ratio 0 gives the highest non-empty bin; returns −1 when the walk never gets there.
QEL_API int QelGetMaxValueInHistogram(int* hist, double ratio);

/// Walking up from bin 0, the first grey level at which more than n × ratio (truncated) pixels
/// have been passed. Returns 256 when the walk never gets there.
QEL_API int QelGetMinValueInHistogram(int* hist, double ratio);

/// Median grey level of hist, choosing between the bin reached and the one before it by the
/// counts on either side. The correction subtracts the count of the bin after the last one
/// added, so a single pixel in bin 10 gives 11 while two or more give 10.
QEL_API int QelGetMedianInHistogram(int* hist);

/// The first grey level with the largest count; the count goes to largestCount. An all-zero
/// histogram gives bin 0 and a count of 0.
QEL_API int QelGetMostInHistogram(int* hist, int* largestCount);

/// Centre of the first plateau of the largest count, rounded upward: (p + e) / 2 + 0.5 where e is
/// the bin after the plateau. An isolated peak at p therefore returns p + 1.
QEL_API int QelGetPeakInHistogram(int* hist);

/// Grey levels ordered by falling count into order (256 entries), by an exchange sort whose
/// order among equal counts is part of the result. Returns the number of non-empty bins.
QEL_API int QelHistogramOrder(int* hist, int* order);

/// Draws the first binCount bins of hist as bars into a width × height grey image (cleared to 0
/// first): bars are 255 and hang from the top row downwards, scaled so the largest count nearly
/// fills the height.
QEL_API void QelDrawHistogram2Img(int* hist, int binCount, unsigned char* image, int width, int height);
// (end of Histogram statistics)

// ==== Threshold selection and binarisation ====
// Binarising rule: a pixel becomes 255 when its grey level is greater than or equal to the
// threshold T, else 0. T of 0 or less makes every pixel 255, T = 256 makes every pixel 0; T above
// 256 is a caller error (treated as 256).

/// Otsu's threshold over bins 0 .. binCount − 1 of hist: the last grey level of the dark class
/// maximising the between-class variance. The last non-empty bin is deliberately left out of the
/// totals and of the search, so two populated levels give 0. Apply the result as T directly.
/// An empty histogram gives 0.
QEL_API int QelGetOtsuThreshold(int* hist, int binCount);

/// Walking down from bin 255, the first grey level at which at least n × ratio (truncated)
/// pixels have been passed; ratio 0 gives 255. Returns −1 when the walk never gets there.
QEL_API int QelGetThresholdByRatio(int* hist, double ratio);

/// Band mean ± k deviations of the levels counted in hist, truncated and kept within 0..255,
/// written to low and high.
QEL_API void QelGetThresholdLimit(int* hist, double k, int* low, int* high);

/// Noise threshold for an image of absolute differences: three times the interpolated median of
/// hist divided by 0.67, rounded.
QEL_API int QelGetDifImgThreshold(int* hist);

/// Valley threshold: the first non-empty bin t in 1 .. highBound (highBound lowered to 250) whose
/// nearest non-empty neighbours below and above are not lower, written to threshold (0 when none).
/// lowBound is accepted but not used: the search always starts at bin 1. When the bin right after
/// a candidate is empty, its upper neighbour is the nearest non-empty bin above (none: the
/// candidate is passed over). Returns true when threshold ≥ 1.
QEL_API bool QelGetDifImgThreshold(int* hist, int lowBound, int highBound, int* threshold);

/// One-dimensional k-means of the grey levels counted in hist, weighted by count; centres (k
/// entries) receive the cluster centres as grey levels, in seed order. With fewer non-empty
/// levels than k, only that many centres are written and the rest are left untouched. Cluster
/// totals accumulate over all passes. Returns false, writing nothing, when k < 2.
QEL_API bool QelClusterHistogram(int* hist, int k, double tolerance, double* centres);

/// Binarises a width × height grey image into out: 255 where the pixel is ≥ threshold, else 0.
/// out may be the image itself.
QEL_API void QelThreshold(unsigned char* image, int width, int height, int threshold, unsigned char* out);

/// Binarises a width × height grey image in place: 255 where the pixel is ≥ threshold, else 0.
QEL_API void QelThreshold(unsigned char* image, int width, int height, int threshold);

/// In place: pixels below threshold become lowValue, the others highValue (the low byte of each).
QEL_API void QelThreshold2V1V2(unsigned char* image, int width, int height, int threshold, int lowValue,
                               int highValue);

/// Binarises the rectangle x1..x2, y1..y2 (ends included) of a width-wide grey image into the
/// same positions of out; out outside the rectangle is not touched.
QEL_API void QelThresholdInRect(unsigned char* image, int width, int x1, int x2, int y1, int y2, int threshold,
                                unsigned char* out);

/// Binarises the rectangle x1..x2, y1..y2 (ends included) in place; pixels outside are not touched.
QEL_API void QelThresholdInRect(unsigned char* image, int width, int x1, int x2, int y1, int y2, int threshold);

/// In place: T is the grey level where, walking down from 255, more than width × height ×
/// percent / 100 (integer arithmetic) pixels have been passed; a T of 0 becomes 1 when percent < 50.
QEL_API void QelThresholdByPercent(unsigned char* image, int width, int height, int percent);

/// In place: T is the grey level where, walking down from 255, more than area × ratio (ratio
/// clamped to 0..1, product truncated) pixels have been passed, −1 when never (every pixel
/// becomes 255); a T of 0 becomes 1 when ratio < 0.5. Returns T.
QEL_API int QelThresholdByRatio(unsigned char* image, int width, int height, double ratio);

/// As the in-place form, writing the binary image to out. Returns T.
QEL_API int QelThresholdByRatio(unsigned char* image, int width, int height, double ratio, unsigned char* out);

/// As the in-place form, with T taken from and applied to the rectangle x1..x2, y1..y2 (ends
/// included) only. Returns T.
QEL_API int QelThresholdByRatio(unsigned char* image, int width, int x1, int x2, int y1, int y2, double ratio);

/// T from the rectangle x1..x2, y1..y2 (ends included) as in the other forms but without the
/// zero rule; the applied value is raised to minThreshold and the rectangle is written to the same
/// positions of out. Returns T as found, before raising.
QEL_API int QelThresholdByRatio(unsigned char* image, int width, int x1, int x2, int y1, int y2, double ratio,
                                int minThreshold, unsigned char* out);

/// In place: T as in QelThresholdByRatio without the zero rule, raised to minThreshold. Returns
/// the raised value (unlike the rectangle form, which returns T before raising).
QEL_API int QelThresholdByRatioAndMiniT(unsigned char* image, int width, int height, double ratio, int minThreshold);

/// Binarises every step-th pixel of every step-th row into out, rows written consecutively.
/// outWidth and outHeight receive width / step and height / step (truncated), but each output row
/// holds ⌈width / step⌉ bytes: out must hold ⌈width / step⌉ × ⌈height / step⌉ bytes. A step
/// below 2 gives a full-size binarised copy.
QEL_API void QelThresholdAndShrink(unsigned char* image, int width, int height, int threshold, int step,
                                   unsigned char* out, int* outWidth, int* outHeight);
// (end of Threshold selection and binarisation)

// ==== Histogram shaping and peak finding ====
// Reshaping grey images through their histograms, smoothing 256-bin histograms and marking their
// peaks and valleys. Images are changed in place; every table lives in the call.

/// Equalises a grey image in place through its cumulative histogram: level g becomes
/// c(g) × 255 / (width × height) in integers, c(g) the count of pixels at or below g.
QEL_API void QelHistogramEqualizeFast(unsigned char* image, int width, int height);

/// Equalises a grey image in place by matching it to a flat histogram over m bins (m = the number
/// of levels present, each bin holding width × height / m): each level moves to the middle of the
/// target interval it fills, scaled by 255 / m and truncated. A one-level image becomes all 0.
QEL_API void QelHistogramEqualizeStandard(unsigned char* image, int width, int height);

/// Matches a grey image in place to a target histogram (256 counts): each level present moves to
/// the middle (integer) of the interval of target levels it fills. The target should hold as many
/// pixels as the image; otherwise the walk stops when either side runs out and the levels it never
/// reached go to the last non-empty target level. An empty image or target changes nothing.
QEL_API void QelHistogramNormalization(unsigned char* image, int width, int height, int* targetHist);

/// Box smoothing of a 256-bin histogram: smoothed[j] = the integer mean of hist over the bins
/// within radius of j, the window (and its divisor) clipped at 0 and 255. A radius below 0 counts
/// as 0. hist and smoothed must not overlap.
QEL_API void QelHistogramAverageSmooth(int* hist, int radius, int* smoothed);

/// Gaussian smoothing (weights scaled by 1024, stopping below smallestWeight) of the bins from
/// K before the first non-empty bin to K after the last (K = the number of weights); bins outside
/// are copied. Inner bins divide by 1024 plus the weights of one side only, so they come out
/// larger than the mass around them: callers rely on that scaling. Edge bins are properly
/// normalised. Returns last − first non-empty bin; an empty histogram is copied and gives 0.
/// `reserved` is not used. hist and smoothed must not overlap.
QEL_API int QelHistogramGaussianSmooth(int* hist, int reserved, double sigma, double smallestWeight,
                                       int* smoothed);

/// Marks the count bins of hist into marks: 100 at peaks, −100 at valleys, elsewhere the slope
/// sign against the previous bin (1, 0, −1). Bin 0 is compared with bin 1. A peak after a
/// plateau sits at the middle of the last rise and the plateau's end; valleys likewise.
QEL_API void QelSetPeakTo100ValleyTo_100(int* hist, int count, int* marks);

/// The two main peaks of a 256-bin histogram: first = the marked peak of largest count (the
/// first of equals); second = the largest of the peaks at least minDistance away from it, or the
/// first peak again when there is none. With no peak of count above 0 nothing is written.
QEL_API void QelFindTwoPeaks(int* hist, int minDistance, int* firstPeak, int* secondPeak);

/// Two-peak contrast test on a 256-bin histogram smoothed by an odd box window: the darkest
/// peak at or below splitLevel (bin 0 excluded) and the brightest at or above it, then
/// depth = (chord area − mass between them) / mass. True when the peaks are at least
/// minPeakDistance apart and depth ≥ minDepth. Outputs start at 0; depth stays 0 when the peaks
/// are too close or when there is no mass between them (then false). splitLevel is clamped to
/// 0..255 and a window below 0 counts as 0.
QEL_API bool QelIsHighContrastImg(int* hist, int splitLevel, int window, int minPeakDistance, double minDepth,
                                  int* darkPeak, int* brightPeak, double* depth);
// (end of Histogram shaping and peak finding)

// ==== Grey-value corrections ====
// Point operations on grey images through look-up tables (one per image, row or column), and a
// noise generator. Grey levels 251..255 are kept free for coloured marks: the corrections that
// may brighten an image stop at 250.

/// Writes 255 − pixel for every pixel of a width × height grey image into out (may be image).
QEL_API void QelInvertGryValue(unsigned char* image, int width, int height, unsigned char* out);

/// Inverts a grey image in place: pixel becomes 255 − pixel.
QEL_API void QelInvertGryValue(unsigned char* image, int width, int height);

/// Frees 0 and the mark levels: 0 becomes 1 and 251..255 become 250; 1..250 stay.
QEL_API void QelChange0and250PlusPixels(unsigned char* image, int width, int height);

/// Keeps even grey levels and turns every odd level into 255.
QEL_API void QelSetOddPixelsTo255(unsigned char* image, int width, int height);

/// Inside the rectangle x1..x2, y1..y2 (both ends included) pixels equal to value become 255 and
/// all others 0; pixels outside the rectangle are not touched. The rectangle must lie inside the
/// width-wide image.
QEL_API void QelSetPixelsTo255(unsigned char* image, int width, int x1, int x2, int y1, int y2,
                               unsigned char value);

/// Stretches a grey image to the 16 levels 0..15 between its 10 % points lo and hi (counted from
/// either end): below lo → 0, lo..hi → (g − lo) × 15 / (hi − lo), above hi → 15. When lo = hi
/// (a flat or nearly flat image) levels below lo become 0 and the rest 15.
QEL_API void QelGryImg4Bit(unsigned char* image, int width, int height);

/// Maps a grey image to the wanted mean and deviation: (g − mean) × wantedDeviation / dev +
/// wantedMean, with mean and dev measured in integers and the result clamped to 0..255. A
/// deviation that truncates to 0 counts as 1, so a flat image becomes the wanted mean.
QEL_API void QelGryImgNormalize(unsigned char* image, int width, int height, int wantedMean,
                                int wantedDeviation);

/// Scales each column by a gain rising linearly from 1 at the centre column (width / 2) to
/// edgeGain at the side edges; products above 255 become 255, a negative product is truncated
/// and stored as its low byte.
QEL_API void QelCorrectPixelsGryValueByCol(unsigned char* image, int width, int height, double edgeGain);

/// Scales each row y by (y − height / 2) × (edgeGain − 1) / (height / 2) + 1: a signed ramp, so
/// for edgeGain > 1 rows above the centre darken (row 0 by 0) and rows below brighten. Products
/// above 255 become 255, negative ones are stored as their low byte. Images less than 2 rows high
/// are left unchanged.
QEL_API void QelCorrectPixelsGryValueByRow(unsigned char* image, int width, int height, double edgeGain);

/// Evens out column brightness: each column is scaled (1/1024 fixed point) so that its sum
/// approaches the mean column sum; results of 251 or more become 250. Returns the image's integer
/// mean grey level. Refuses (returns 0, image unchanged) when width > 4096; an empty image also
/// gives 0. An all-black column is left as it is.
QEL_API int QelLightCorretPerCol(unsigned char* image, int width, int height);

/// Evens out row brightness, as QelLightCorretPerCol does for columns. Refuses (returns 0, image
/// unchanged) when height > 4096; an all-black row is left as it is.
QEL_API int QelLightCorretPerRow(unsigned char* image, int width, int height);

/// Adds noise in place to pixelCount bytes: type 0 Gaussian, 1 uniform, 2 salt and pepper
/// (amount = percent of pixels hit), 3 Poisson (amount unused), 4 Rayleigh-like; other types
/// change nothing, and so does an amount of 0 (or NaN). A negative amount means −amount percent
/// of the image's grey range. Types 0, 1 and 4 clamp to the image's own darkest..brightest
/// levels; salt and pepper uses those levels (0 and 255 for a flat image); Poisson results are
/// stored as their low byte. The first call seeds the library's 15-bit generator from the clock,
/// or from the decimal number in the environment variable QEL_NOISE_SEED when that is set, so that
/// a run can repeat its noise; not reentrant.
QEL_API void Ostrum2008AddNoise(unsigned char* image, int pixelCount, double amount, unsigned int noiseType);
// (end of Grey-value corrections)

#endif  // QEL_HISTOGRAM_H
