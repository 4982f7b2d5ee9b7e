// The qel tool's object inspection: threshold, speck removal, contours, measures and annotation.
#include "inspect.h"

#include "binarise.h"
#include "text.h"

#include <qel.h>

#include <cstddef>
#include <memory>

namespace cli {

namespace {

constexpr unsigned char kObject = 255;
// Object pixels with fewer object neighbours than this are specks: lone pixels and one-pixel spurs
// go before tracing, so they neither become objects of their own nor roughen the boundaries.
constexpr int kSpeckNeighbours = 2;
// QelGetContours: outer boundaries only, of at least one step.
constexpr int kOuterOnly = 1;
constexpr int kMinChainLength = 1;
// Values of the library's region fill: a boundary mark and a fill level, neither of them 0 nor
// kObject, the values of the mask the region is painted into.
constexpr int kFillBoundary = 128;
constexpr int kFillValue = 200;
// Half length of the arms of the cross marking a centre.
constexpr int kCrossHalf = 4;

size_t pixelCount(int width, int height) { return static_cast<size_t>(width) * static_cast<size_t>(height); }

// The object pixels of the grey image: at or above the threshold, or below it for dark objects.
std::vector<unsigned char> binarise(const Image& grey, int threshold, bool dark) {
    std::vector<unsigned char> binary(grey.pixels.size());
    QelThreshold(const_cast<unsigned char*>(grey.pixels.data()), grey.width, grey.height, threshold, binary.data());
    if (dark)
        for (unsigned char& p : binary) p = static_cast<unsigned char>(kObject - p);
    return binary;
}

// Mean grey level of the pixels the contour encloses. The region is painted into `mask` (all 0
// outside the contour's box) and cleared again afterwards, so the mask is reused from object to
// object.
double meanGreyInside(const Image& grey, const QEL_CONTOUR_STRUCT& c, const InspectObject& o,
                      std::vector<unsigned char>& mask) {
    unsigned char* greyPixels = const_cast<unsigned char*>(grey.pixels.data());
    const int painted = QelPastePixels2ResImg(greyPixels, grey.width, c.x, c.y, c.chain, c.chainLen, kFillBoundary,
                                              kFillValue, mask.data(), kObject);
    long long sum = 0;
    for (int y = o.top; y <= o.bottom; ++y) {
        const size_t row = static_cast<size_t>(y) * static_cast<size_t>(grey.width);
        for (int x = o.left; x <= o.right; ++x) {
            const size_t i = row + static_cast<size_t>(x);
            if (mask[i] == kObject) sum += grey.pixels[i];
            mask[i] = 0;
        }
    }
    return painted > 0 ? static_cast<double>(sum) / painted : 0.0;
}

void drawObject(Image& colour, const InspectObject& o) {
    unsigned char* p = colour.pixels.data();
    const int w = colour.width;
    const int h = colour.height;
    QelDrawRGBRect(p, w, h, o.left, o.right, o.top, o.bottom, kBoxColour[0], kBoxColour[1], kBoxColour[2]);
    // Two lines rather than QelDrawRGBCross, whose horizontal bar lies on row x, not row y.
    QelRGBLine(p, w, h, o.centreX - kCrossHalf, o.centreY, o.centreX + kCrossHalf, o.centreY, kCentreColour[0],
               kCentreColour[1], kCentreColour[2]);
    QelRGBLine(p, w, h, o.centreX, o.centreY - kCrossHalf, o.centreX, o.centreY + kCrossHalf, kCentreColour[0],
               kCentreColour[1], kCentreColour[2]);
}

// The object's number in the library's digit glyphs, just above its box, or below it when there
// is no room above; moved inside the picture where it would leave it.
void drawObjectNumber(Image& colour, const InspectObject& o, int number) {
    const int above = o.top - kDigitHeight - 1;
    drawNumber(colour, number, o.left, above >= 0 ? above : o.bottom + 2, kNumberColour);
}

using ContourList = std::unique_ptr<QEL_CONTOUR_STRUCT, void (*)(QEL_CONTOUR_STRUCT*)>;

}  // namespace

InspectResult inspect(const Image& image, const InspectOptions& options) {
    InspectResult result;
    const Image grey = toGrey(image);
    const int w = grey.width;
    const int h = grey.height;

    if (options.threshold >= 0) {
        result.threshold = options.threshold;
        result.thresholdReason = "given";
    } else {
        int hist[kGreyLevels];
        QelGetHistogram(const_cast<unsigned char*>(grey.pixels.data()), w, h, hist);
        const ChosenThreshold chosen = chooseThreshold(hist);
        result.threshold = chosen.level;
        result.thresholdReason = chosen.reason;
    }
    result.annotated = toColour(image);
    if (w < 3 || h < 3) return result;

    std::vector<unsigned char> binary = binarise(grey, result.threshold, options.dark);
    QelBinImgDeletePointsLessThanN(binary.data(), w, h, kObject, kSpeckNeighbours);

    std::vector<unsigned char> chain(pixelCount(w, h));
    ContourList contours(QelGetContours(binary.data(), chain.data(), w, h, kMinChainLength, options.minArea, kOuterOnly),
                         QelFreeContours);
    std::vector<unsigned char> mask(pixelCount(w, h), 0);
    for (const QEL_CONTOUR_STRUCT* c = contours.get(); c != nullptr; c = c->next) {
        InspectObject o;
        o.area = c->area;
        o.perimeter = c->perimeter;
        QelContourRect(c->x, c->y, c->chain, c->chainLen, &o.left, &o.right, &o.top, &o.bottom);
        QelContourCenter(c->x, c->y, c->chain, c->chainLen, &o.centreX, &o.centreY);
        o.meanGrey = meanGreyInside(grey, *c, o, mask);
        result.objects.push_back(o);
    }
    for (const InspectObject& o : result.objects) drawObject(result.annotated, o);
    // Numbers last, so that no box or cross is drawn over one.
    if (options.numbers)
        for (size_t i = 0; i < result.objects.size(); ++i)
            drawObjectNumber(result.annotated, result.objects[i], static_cast<int>(i) + 1);
    return result;
}

}  // namespace cli
