// The qel tool's geometric transforms: rotation, flips and resizing around the library's calls.
#include "geometry.h"

#include "cli.h"

#include <qel.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>

namespace cli {

namespace {

constexpr double kDegreesPerQuarter = 90.0;
// The approximations of pi the library turns its angles with: QelRotateImgByCCS, and the bilinear
// rectangle extractors.
constexpr double kPi = 3.1415926;
constexpr double kExtractorPi = 3.1415;
constexpr double kRotationScale = 1024.0;  // QelRotateImgByCCS's fixed-point factor
constexpr int kBlack = 0;

unsigned char* data(const Image& image) { return const_cast<unsigned char*>(image.pixels.data()); }

// One clockwise quarter turn, exact.
Image quarterTurn(const Image& image) {
    Image turned = blankImage(image.height, image.width, image.channels);
    QelImgRotate90DegreeCS(data(image), image.width, image.height, !image.isGrey(), turned.pixels.data());
    return turned;
}

// An upper bound of the box QelRotateImgByCCS makes: its corners move by the truncated factors,
// each floored, so each side spans at most the rotated extent plus two pixels.
void rotatedBoxBound(const Image& image, double degrees, double* width, double* height) {
    const double theta = degrees * kPi / 180.0;
    const double c = std::fabs(std::trunc(std::cos(theta) * kRotationScale)) / kRotationScale;
    const double s = std::fabs(std::trunc(std::sin(theta) * kRotationScale)) / kRotationScale;
    const double w = image.width - 1.0;
    const double h = image.height - 1.0;
    *width = w * c + h * s + 2.0;
    *height = w * s + h * c + 2.0;
}

// QelRotateImgByCCS on one grey plane; its new[] buffer is released with delete[].
Image rotatePlane(const Image& plane, double degrees) {
    int width = 0;
    int height = 0;
    std::unique_ptr<unsigned char[]> rotated(QelRotateImgByCCS(data(plane), plane.width, plane.height, degrees, &width, &height));
    if (!rotated) {
        if (width <= 0 || height <= 0) throw UsageError("the rotated picture would be too large to make");
        throw std::bad_alloc();
    }
    Image out;
    out.width = width;
    out.height = height;
    out.channels = 1;
    out.pixels.assign(rotated.get(), rotated.get() + static_cast<size_t>(width) * static_cast<size_t>(height));
    return out;
}

// The picture with its last column and row repeated once more. The fill form of the bilinear
// extractor fills every sample whose right or lower neighbour lies outside, even with a weight of
// 0; with the extra column and row, a sample is filled only when its source lies outside the
// picture itself (x or y below 0, or at width or height and beyond).
Image withRepeatedEdge(const Image& image) {
    const size_t bpp = static_cast<size_t>(image.channels);
    const size_t row = static_cast<size_t>(image.width) * bpp;
    Image padded = blankImage(image.width + 1, image.height + 1, image.channels);
    for (int y = 0; y <= image.height; ++y) {
        const unsigned char* from = &image.pixels[static_cast<size_t>(y < image.height ? y : y - 1) * row];
        unsigned char* to = &padded.pixels[static_cast<size_t>(y) * (row + bpp)];
        std::copy(from, from + row, to);
        std::copy(from + row - bpp, from + row, to + row);
    }
    return padded;
}

// ---- resizing ----

// The largest whole step that shrinks `from` pixels to `to`; 0 when no whole step does.
int wholeStep(int from, int to) {
    const int step = from / to;
    return step >= 1 && from / step == to ? step : 0;
}

// Sides of a block of QelShrinkGryImgByMedian: from / to, widened once to from / (to − 1) when the
// first does not cover the picture.
int medianBlock(int from, int to) {
    const int block = from / to;
    return block * to < from ? from / (to - 1) : block;
}

bool medianLeavesAnEmptyBlock(int from, int to) {
    return to > 1 && static_cast<long long>(to - 1) * medianBlock(from, to) >= from;
}

std::string side(bool columns) { return columns ? "columns" : "rows"; }

void checkWholeSteps(int from, int to, bool columns, const ResizeMethodInfo& method) {
    if (wholeStep(from, to) != 0) return;
    const int step = from / to;  // from / step > to > from / (step + 1)
    throw UsageError(std::string("--method ") + method.name + " shrinks by whole steps: " + std::to_string(from) + " " +
                     side(columns) + " give " + std::to_string(from / step) + " (step " + std::to_string(step) + ") or " +
                     std::to_string(from / (step + 1)) + " (step " + std::to_string(step + 1) + "), not " +
                     std::to_string(to));
}

void checkMedianBlocks(int from, int to, bool columns) {
    if (!medianLeavesAnEmptyBlock(from, to)) return;
    std::string nearest;
    for (int d = 1; d < from && nearest.empty(); ++d) {
        for (const int candidate : {to - d, to + d})
            if (candidate >= 1 && candidate <= from && !medianLeavesAnEmptyBlock(from, candidate)) {
                nearest += (nearest.empty() ? "" : " or ") + std::to_string(candidate);
            }
    }
    throw UsageError("--method median cannot make " + std::to_string(to) + " " + side(columns) + " of " +
                     std::to_string(from) + ": its last block would lie outside the picture and come out black; try " +
                     nearest);
}

}  // namespace

// ---- rotation ------------------------------------------------------------------------------------

Image rotateImage(const Image& image, double degrees) {
    if (!std::isfinite(degrees)) throw UsageError("the angle must be a finite number of degrees");
    const double turn = std::fmod(degrees, 360.0);  // exact
    if (std::fmod(turn, kDegreesPerQuarter) == 0.0) {
        const int quarters = (static_cast<int>(turn / kDegreesPerQuarter) + 4) % 4;
        Image out = image;
        for (int i = 0; i < quarters; ++i) out = quarterTurn(out);
        return out;
    }
    double width = 0.0;
    double height = 0.0;
    rotatedBoxBound(image, degrees, &width, &height);
    checkNewSize(width, height, "the rotated picture");
    return eachChannel(image, [degrees](const Image& plane) { return rotatePlane(plane, degrees); });
}

Image rotateAbout(const Image& image, double degrees, int cx, int cy, bool* filled) {
    if (!std::isfinite(degrees)) throw UsageError("the angle must be a finite number of degrees");
    if (cx < 0 || cx >= image.width || cy < 0 || cy >= image.height)
        throw UsageError("the centre " + std::to_string(cx) + "," + std::to_string(cy) + " lies outside the " +
                         std::to_string(image.width) + " x " + std::to_string(image.height) + " picture");
    checkNewSize(image.width + 1.0, image.height + 1.0, "the rotated picture's source");
    // The extractor samples the source at origin + (i·cos − j·sin, i·sin + j·cos): turning the
    // picture clockwise by `degrees` samples along the angle −degrees, and the origin is the
    // source point that puts the centre onto itself.
    const double sourceAngle = -degrees;
    const double theta = sourceAngle * kExtractorPi / 180.0;
    const double c = std::cos(theta);
    const double s = std::sin(theta);
    const int x0 = static_cast<int>(std::lround(cx - (cx * c - cy * s)));
    const int y0 = static_cast<int>(std::lround(cy - (cx * s + cy * c)));
    const Image source = withRepeatedEdge(image);
    Image out = blankImage(image.width, image.height, image.channels);
    const bool anyFilled =
        image.isGrey() ? QelCopyRectFromRotateCCS(data(source), source.width, source.height, x0, y0, sourceAngle, kBlack,
                                                  out.pixels.data(), out.width, out.height)
                       : QelRgbCopyRectFromRotateCCS(data(source), source.width, source.height, x0, y0, sourceAngle,
                                                     kBlack, out.pixels.data(), out.width, out.height);
    if (filled != nullptr) *filled = anyFilled;
    return out;
}

// ---- flips ---------------------------------------------------------------------------------------

Image flipImage(const Image& image, FlipAxis axis) {
    if (axis == FlipAxis::Horizontal) {
        return eachChannel(image, [](const Image& plane) {
            Image mirrored = plane;  // QelFlipHorizontal works in place
            QelFlipHorizontal(mirrored.pixels.data(), mirrored.width, mirrored.height);
            return mirrored;
        });
    }
    Image out = blankImage(image.width, image.height, image.channels);
    QelFlipVertical(data(image), image.width, image.height, !image.isGrey(), out.pixels.data());
    return out;
}

// ---- resizing ------------------------------------------------------------------------------------

const ResizeMethodInfo kResizeMethods[4] = {
    {"bilinear", ResizeMethod::Bilinear, true, true, false},
    {"average", ResizeMethod::Average, false, true, true},
    {"pick", ResizeMethod::Pick, false, true, true},
    {"median", ResizeMethod::Median, false, false, false},
};

const ResizeMethodInfo& resizeMethodNamed(const std::string& name) {
    for (const ResizeMethodInfo& m : kResizeMethods)
        if (name == m.name) return m;
    throw UsageError("--method wants bilinear, average, pick or median, got '" + name + "'");
}

void sizeForScale(const Image& image, double scale, const ResizeMethodInfo& method, int* width, int* height) {
    if (!(std::isfinite(scale) && scale > 0.0)) throw UsageError("--scale wants a positive number");
    if (!method.enlarges && scale > 1.0)
        throw UsageError(std::string("--method ") + method.name + " only shrinks; --scale " + shortNumber(scale) +
                         " enlarges (bilinear does)");
    double w = 0.0;
    double h = 0.0;
    if (method.wholeSteps) {
        // 0.5, 0.333 and 0.25 name the steps 2, 3 and 4; anything else is no whole step.
        constexpr double kTolerance = 0.005;
        const double step = std::round(1.0 / scale);
        if (!(step >= 1.0 && std::fabs(step * scale - 1.0) <= kTolerance))
            throw UsageError(std::string("--method ") + method.name + " shrinks by whole steps: --scale wants 1/k " +
                             "(1, 0.5, 0.333, 0.25, ...), got " + shortNumber(scale));
        if (step > image.width || step > image.height)
            throw UsageError("--scale " + shortNumber(scale) + " leaves nothing of the " + std::to_string(image.width) +
                             " x " + std::to_string(image.height) + " picture");
        w = static_cast<double>(image.width / static_cast<int>(step));
        h = static_cast<double>(image.height / static_cast<int>(step));
    } else {
        w = std::round(image.width * scale);
        h = std::round(image.height * scale);
    }
    checkNewSize(w, h, "the resized picture");
    *width = static_cast<int>(w);
    *height = static_cast<int>(h);
}

void checkResize(const Image& image, int width, int height, const ResizeMethodInfo& method) {
    checkNewSize(width, height, "the resized picture");
    if (!method.colour && !image.isGrey())
        throw UsageError(std::string("--method ") + method.name + " works on grey pictures only (a median of colours " +
                         "is no colour of the picture); convert with qel convert --to grey, or use bilinear or average");
    if (!method.enlarges && (width > image.width || height > image.height))
        throw UsageError(std::string("--method ") + method.name + " only shrinks; " + std::to_string(width) + " x " +
                         std::to_string(height) + " is larger than the " + std::to_string(image.width) + " x " +
                         std::to_string(image.height) + " picture (bilinear enlarges)");
    if (method.wholeSteps) {
        checkWholeSteps(image.width, width, true, method);
        checkWholeSteps(image.height, height, false, method);
    }
    if (method.method == ResizeMethod::Median) {
        checkMedianBlocks(image.width, width, true);
        checkMedianBlocks(image.height, height, false);
    }
}

Image resizeImage(const Image& image, int width, int height, const ResizeMethodInfo& method) {
    checkResize(image, width, height, method);
    Image out = blankImage(width, height, image.channels);
    unsigned char* src = data(image);
    switch (method.method) {
    case ResizeMethod::Bilinear:
        if (image.isGrey())
            QelGryImgBilinearInterpolattionFast(src, image.width, image.height, out.pixels.data(), width, height);
        else
            QelRgbImgBilinearInterpolattionFast(src, image.width, image.height, out.pixels.data(), width, height);
        return out;
    case ResizeMethod::Average:
        QelShrinkImgByAvr(src, !image.isGrey(), image.width, image.height, wholeStep(image.width, width),
                          wholeStep(image.height, height), out.pixels.data());
        return out;
    case ResizeMethod::Pick: {
        const int stepX = wholeStep(image.width, width);
        const int stepY = wholeStep(image.height, height);
        return eachChannel(image, [&](const Image& plane) {
            Image picked = blankImage(width, height, 1);
            QelShrinkGryImgByExtract(data(plane), plane.width, plane.height, stepX, stepY, picked.pixels.data());
            return picked;
        });
    }
    case ResizeMethod::Median:
        QelShrinkGryImgByMedian(src, image.width, image.height, out.pixels.data(), width, height);
        return out;
    }
    return out;
}

}  // namespace cli
