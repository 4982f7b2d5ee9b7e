// The qel tool's split-and-merge segmentation: the library's region tree (QelMergeSplit) as a list
// of measured regions and a picture with their contours drawn.
#ifndef QEL_TOOL_SEGMENT_H
#define QEL_TOOL_SEGMENT_H

#include "image.h"

#include <vector>

namespace cli {

struct SegmentOptions {
    int minArea = 100;        // regions enclosing fewer pixels are not made
    int minContrast = 20;     // the sweep ends at this grey level (at 255 − it for bright regions)
    double splitRatio = 0.5;  // a region whose parts hold more than this share of it is replaced by them
    bool bright = false;      // regions are brighter than their surroundings (the picture is inverted first)
};

struct Region {
    int id = 0;            // the library's running number
    int parent = -1;       // id of the region containing it at an earlier level, -1 for a root
    int enclosing = -1;    // id of the smallest region of its own level containing it, -1 if none
    int depth = 0;         // parents above it
    int threshold = 0;     // the region's pixels are darker than this (brighter with `bright`)
    int area = 0;          // pixels enclosed by its contour, the contour included
    int perimeter = 0;
    int x = 0, y = 0;      // where its contour starts
    int left = 0, right = 0, top = 0, bottom = 0;  // bounding box, ends included
};

struct SegmentResult {
    std::vector<Region> regions;  // as the library lists them: ascending area
    Image annotated;              // the picture in colour with each region's contour drawn
};

// Colours of the contours, red, green, blue, taken by depth (roots the first) and repeating.
constexpr int kDepthColours[][3] = {{255, 0, 0}, {0, 255, 0}, {0, 128, 255}, {255, 255, 0}, {255, 0, 255}, {0, 255, 255}};

// Segments a grey or colour picture (colour converted to grey with the library's weights).
// Pictures narrower or lower than 3 pixels have no interior and give no regions.
SegmentResult segment(const Image& image, const SegmentOptions& options);

}  // namespace cli

#endif
