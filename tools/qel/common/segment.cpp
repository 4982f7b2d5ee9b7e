// The qel tool's split-and-merge segmentation: the region tree, its measures and its drawing.
#include "segment.h"

#include <qel.h>

#include <map>
#include <memory>

namespace cli {

namespace {

constexpr int kMaxGrey = 255;
constexpr size_t kColourCount = sizeof kDepthColours / sizeof kDepthColours[0];

using RegionList = std::unique_ptr<RegionStruct, void (*)(RegionStruct*)>;

// Depth of each region: how many parents lie above it. A parent that is not in the list (none
// should be missing) ends the walk, and so does a walk longer than the list.
void setDepths(std::vector<Region>& regions) {
    std::map<int, const Region*> byId;
    for (const Region& r : regions) byId[r.id] = &r;
    for (Region& r : regions) {
        int depth = 0;
        for (auto it = byId.find(r.parent); it != byId.end() && depth < static_cast<int>(regions.size());
             it = byId.find(it->second->parent))
            ++depth;
        r.depth = depth;
    }
}

// The contour's pixels in the colour of its depth (a chain without codes: its start pixel).
void drawContour(Image& colour, const RegionStruct& r, int depth) {
    const size_t points = r.chainLength > 0 ? static_cast<size_t>(r.chainLength) : 1;
    std::vector<int> xs(points, r.x);
    std::vector<int> ys(points, r.y);
    QelChain2Points(r.x, r.y, r.chain, r.chainLength, xs.data(), ys.data());
    const int* rgb = kDepthColours[static_cast<size_t>(depth) % kColourCount];
    for (size_t i = 0; i < points; ++i) {
        if (xs[i] < 0 || xs[i] >= colour.width || ys[i] < 0 || ys[i] >= colour.height) continue;
        unsigned char* p = &colour.pixels[3 * (static_cast<size_t>(ys[i]) * static_cast<size_t>(colour.width) +
                                               static_cast<size_t>(xs[i]))];
        p[0] = static_cast<unsigned char>(rgb[2]);
        p[1] = static_cast<unsigned char>(rgb[1]);
        p[2] = static_cast<unsigned char>(rgb[0]);
    }
}

}  // namespace

SegmentResult segment(const Image& image, const SegmentOptions& options) {
    SegmentResult result;
    result.annotated = toColour(image);
    Image grey = toGrey(image);  // a copy: the library inverts it in place
    if (grey.width < 3 || grey.height < 3) return result;
    if (options.bright)
        for (unsigned char& p : grey.pixels) p = static_cast<unsigned char>(kMaxGrey - p);
    // The binary image of each level, then the chain codes of its contours.
    std::vector<unsigned char> work(2 * grey.pixels.size());
    RegionList list(QelMergeSplit(grey.pixels.data(), work.data(), grey.width, grey.height, options.minArea,
                                  options.minContrast, options.splitRatio),
                    QelFreeRegionStruct);

    for (const RegionStruct* r = list.get(); r != nullptr; r = r->next) {
        Region region;
        region.id = r->id;
        region.parent = r->parentId;
        region.enclosing = r->enclosingId;
        // The library's level is 255 − the threshold of its inverted sweep: the region's pixels
        // lie below it on the grey scale the library was given.
        region.threshold = options.bright ? kMaxGrey - r->level : r->level;
        region.area = r->area;
        region.perimeter = r->perimeter;
        region.x = r->x;
        region.y = r->y;
        QelContourRect(r->x, r->y, r->chain, r->chainLength, &region.left, &region.right, &region.top, &region.bottom);
        result.regions.push_back(region);
    }
    setDepths(result.regions);
    size_t i = 0;
    for (const RegionStruct* r = list.get(); r != nullptr; r = r->next) drawContour(result.annotated, *r, result.regions[i++].depth);
    return result;
}

}  // namespace cli
