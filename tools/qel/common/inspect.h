// The qel tool's object inspection: the library's typical use end to end, as one function that
// `qel inspect` and its benchmark both call.
//
//   grey (QelRGB2Gry) -> histogram -> threshold (the tool's rule or a given level) -> binary
//   (QelThreshold, inverted for dark objects) -> specks removed (QelBinImgDeletePointsLessThanN)
//   -> outer contours (QelGetContours) -> per object: box, centre, area, perimeter and the mean
//   grey of the pixels its boundary encloses -> boxes, centres and numbers drawn into a colour copy.
#ifndef QEL_TOOL_INSPECT_H
#define QEL_TOOL_INSPECT_H

#include "image.h"

#include <string>
#include <vector>

namespace cli {

struct InspectOptions {
    int threshold = -1;  // grey level 0..255 that starts the objects; -1 chooses one (chooseThreshold)
    bool dark = false;   // objects darker than the background: pixels below the threshold are object
    int minArea = 100;   // objects enclosing fewer pixels (boundary and holes included) are not listed
    bool numbers = true; // each object's number (1, 2, ... as listed) drawn beside its box
};

struct InspectObject {
    int area = 0;       // pixels enclosed by the outer boundary, boundary and holes included
    int perimeter = 0;  // even steps + sqrt(2) x odd steps of the boundary, rounded
    int left = 0;       // bounding box, ends included
    int right = 0;
    int top = 0;
    int bottom = 0;
    int centreX = 0;    // mean of the boundary points, rounded
    int centreY = 0;
    double meanGrey = 0.0;  // mean grey level of the enclosed pixels
};

struct InspectResult {
    int threshold = 0;
    std::string thresholdReason;  // "given", "Otsu", or why the tool took another level
    std::vector<InspectObject> objects;  // in scan order of their boundaries' first pixels
    Image annotated;                     // the input in colour with boxes, centres and numbers drawn
};

// Colours of the annotation, red, green, blue.
constexpr int kBoxColour[3] = {255, 0, 0};
constexpr int kCentreColour[3] = {0, 255, 0};
constexpr int kNumberColour[3] = {255, 255, 0};  // on a black cell

// Runs the whole inspection on a grey or colour image. Images narrower or lower than 3 pixels have
// no interior and give no objects.
InspectResult inspect(const Image& image, const InspectOptions& options);

}  // namespace cli

#endif
