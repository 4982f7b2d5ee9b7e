// The qel tool's geometric transforms: rotating a picture whole or about a centre, flipping it and
// resizing it, on grey and colour pictures, with every request checked before any work is done.
#ifndef QEL_TOOL_GEOMETRY_H
#define QEL_TOOL_GEOMETRY_H

#include "image.h"

#include <string>

namespace cli {

// ---- rotation ------------------------------------------------------------------------------------
// Angles are in degrees; a positive angle turns the picture clockwise as displayed.

// The whole picture turned into the box of its rotated corners, black where nothing lands. Whole
// multiples of 90 degrees are exact quarter or half turns (the library's quarter-turn functions:
// QelRotateImgByCCS works in 1024ths and would make 90 degrees a slightly short turn, a 100 x 50
// picture becoming 50 x 99). Other angles go through QelRotateImgByCCS: nearest pixels, about the
// top-left pixel, each channel of a colour picture separately. UsageError when the angle is not a
// finite number or the result would be larger than kMaxNewPixels.
Image rotateImage(const Image& image, double degrees);

// The picture turned about the pixel (cx, cy), which must lie inside it, into a picture of the same
// size: bilinear samples from QelCopyRectFromRotateCCS (QelRgbCopyRectFromRotateCCS for colour)
// in its fill form, so pixels whose source lies outside the picture are black (the sampler is
// given the picture with its last column and row repeated, so that the samples of the picture's
// own last column and row are kept). The library takes the source of the top-left output pixel as
// whole pixels, so the centre stays put to within half a pixel. `filled`, when given, tells
// whether any pixel was left black. UsageError when the picture has more than kMaxNewPixels.
Image rotateAbout(const Image& image, double degrees, int cx, int cy, bool* filled = nullptr);

// ---- flips ---------------------------------------------------------------------------------------
enum class FlipAxis {
    Horizontal,  // left and right swapped (QelFlipHorizontal, each channel of a colour picture)
    Vertical,    // top and bottom swapped (QelFlipVertical)
};
Image flipImage(const Image& image, FlipAxis axis);

// ---- resizing ------------------------------------------------------------------------------------
enum class ResizeMethod { Bilinear, Average, Pick, Median };

struct ResizeMethodInfo {
    const char* name;  // as --method takes it
    ResizeMethod method;
    bool enlarges;     // may make the picture larger; the others only shrink
    bool colour;       // takes colour pictures; the others grey only
    bool wholeSteps;   // shrinks by whole steps only: N columns give N/1, N/2, N/3, ...
};
// The methods in the order --help lists them.
extern const ResizeMethodInfo kResizeMethods[4];
// UsageError naming the methods when `name` is none of them.
const ResizeMethodInfo& resizeMethodNamed(const std::string& name);

// The size `scale` makes of the picture: for the whole-step methods the scale must be 1/k for a
// whole k (to within half a percent) and the size is (width / k) x (height / k); for the others
// each side is rounded to the nearest pixel. UsageError for a scale that is not a positive finite
// number, that a whole-step method cannot take, or that gives an empty or too large picture.
void sizeForScale(const Image& image, double scale, const ResizeMethodInfo& method, int* width, int* height);

// UsageError unless `method` can make a width x height picture of `image`: a size between 1 x 1 and
// kMaxNewPixels, not larger than the picture for the methods that only shrink, reachable by whole
// steps for the whole-step methods (the message names the nearest sizes that are), grey for the
// grey-only methods, and for --median no block lying wholly outside the picture (the library
// would give such a block 0, a black last column or row).
void checkResize(const Image& image, int width, int height, const ResizeMethodInfo& method);

// The picture resized after checkResize: bilinear in 16.16 fixed point (QelGryImgBilinearInterpolattionFast,
// QelRgbImgBilinearInterpolattionFast), the truncated mean of each block (QelShrinkImgByAvr), the
// top-left pixel of each block (QelShrinkGryImgByExtract) or the median of each block
// (QelShrinkGryImgByMedian). The whole-step methods use the largest step that gives the size.
Image resizeImage(const Image& image, int width, int height, const ResizeMethodInfo& method);

}  // namespace cli

#endif
