// qel segment: split-and-merge segmentation of a picture into nested regions (common/segment.h),
// listed and drawn.
#include "common/cli.h"
#include "common/image.h"
#include "common/json.h"
#include "common/segment.h"

#include <cmath>
#include <cstdio>
#include <iostream>
#include <string>

namespace {

constexpr int kMaxContrast = 254;  // 255 and more leave no level to sweep

cli::SegmentOptions readOptions(const cli::Args& args) {
    cli::SegmentOptions o;
    o.minArea = args.integer("min-area", o.minArea);
    if (o.minArea < 1)
        throw cli::UsageError("--min-area wants a pixel count of 1 or more, got '" + args.value("min-area") + "'");
    o.minContrast = args.integer("min-contrast", o.minContrast);
    if (o.minContrast < 0 || o.minContrast > kMaxContrast)
        throw cli::UsageError("--min-contrast wants a number of grey levels between 0 and " + std::to_string(kMaxContrast) +
                              ", got '" + args.value("min-contrast") + "'");
    o.splitRatio = args.real("split", o.splitRatio);
    if (!(std::isfinite(o.splitRatio) && o.splitRatio >= 0.0))
        throw cli::UsageError("--split wants a share of 0 or more (such as 0.5), got '" + args.value("split") + "'");
    o.bright = args.flag("bright");
    return o;
}

std::string regionCount(size_t n) { return std::to_string(n) + (n == 1 ? " region" : " regions"); }

void printTable(const std::string& in, const cli::Image& image, const cli::SegmentResult& r, const cli::SegmentOptions& o) {
    std::cout << in << ": " << image.width << " x " << image.height << (image.isGrey() ? " grey" : " colour") << ", "
              << regionCount(r.regions.size()) << " of at least " << o.minArea << " pixels, "
              << (o.bright ? "brighter" : "darker") << " than their surroundings\n";
    if (r.regions.empty()) return;
    const char* side = o.bright ? ">" : "<";
    std::printf("%5s %6s %5s %6s %8s %9s %5s %5s %5s %6s\n", "id", "parent", "depth", "grey", "area", "perimeter", "left",
                "right", "top", "bottom");
    for (const cli::Region& g : r.regions)
        std::printf("%5d %6d %5d %2s %3d %8d %9d %5d %5d %5d %6d\n", g.id, g.parent, g.depth, side, g.threshold, g.area,
                    g.perimeter, g.left, g.right, g.top, g.bottom);
    std::fflush(stdout);
}

void writeJson(const std::string& in, const std::string& out, const cli::Image& image, const cli::SegmentResult& r,
               const cli::SegmentOptions& o) {
    cli::JsonWriter json(std::cout);
    json.beginObject()
        .key("file").value(in)
        .key("width").value(image.width)
        .key("height").value(image.height)
        .key("bright").value(o.bright)
        .key("min_area").value(o.minArea)
        .key("min_contrast").value(o.minContrast)
        .key("split").value(o.splitRatio);
    if (!out.empty()) json.key("output").value(out);
    json.key("regions").beginArray();
    for (const cli::Region& g : r.regions) {
        json.beginObject()
            .key("id").value(g.id)
            .key("parent").value(g.parent)
            .key("enclosing").value(g.enclosing)
            .key("depth").value(g.depth)
            .key("threshold").value(g.threshold)
            .key("area").value(g.area)
            .key("perimeter").value(g.perimeter)
            .key("x").value(g.x)
            .key("y").value(g.y)
            .key("left").value(g.left)
            .key("right").value(g.right)
            .key("top").value(g.top)
            .key("bottom").value(g.bottom)
            .endObject();
    }
    json.endArray().endObject();
}

int runSegment(const cli::Args& args) {
    args.expectPositional(1);
    const cli::SegmentOptions options = readOptions(args);
    const bool json = args.flag("json");
    const std::string in = args.positional()[0];
    const std::string out = args.value("output");
    if (!out.empty()) cli::checkOutputName(out);
    const cli::Image picture = cli::loadImage(in);
    const cli::SegmentResult result = cli::segment(picture, options);
    if (!out.empty()) cli::saveImage(result.annotated, out);
    if (json)
        writeJson(in, out, picture, result, options);
    else
        printTable(in, picture, result, options);
    if (!out.empty())
        (json ? std::cerr : std::cout) << cli::confirmation(result.annotated, in, out,
                                                            regionCount(result.regions.size()) + " drawn")
                                       << "\n";
    return 0;
}

const cli::Register segmentCommand({"segment", "split-and-merge segmentation into nested regions, listed and drawn",
    "usage: qel segment IN [-o OUT] [--bright] [--min-area A] [--min-contrast C] [--split R] [--json]\n"
    "\n"
    "Cuts a picture (colour input is converted to grey) into nested regions by sweeping a grey\n"
    "level down from the brightest: at each level the connected parts darker than it (holes\n"
    "included) that enclose at least A pixels are regions, and each level's regions are merged into\n"
    "a tree. A region that breaks into several parts at a lower level keeps them as its children,\n"
    "or is replaced by them when together they hold more than R of it. Prints the regions,\n"
    "smallest first, and with -o OUT (.png or .bmp) writes the picture in colour with each region's\n"
    "contour drawn in the colour of its depth: red for the roots, then green, blue, yellow,\n"
    "magenta, cyan, repeating.\n"
    "\n"
    "  --bright          the regions are brighter than their surroundings: the sweep runs up\n"
    "                    from the darkest level and regions are the parts brighter than it\n"
    "  --min-area A      smallest region, in pixels enclosed by its contour (default 100)\n"
    "  --min-contrast C  the sweep stops at grey level C, or 255 - C with --bright (0..254,\n"
    "                    default 20)\n"
    "  --split R         the share of a region its parts must hold to replace it (default 0.5)\n"
    "  --json            print one JSON object (file, width, height, bright, min_area,\n"
    "                    min_contrast, split, output when written, regions: [{id, parent,\n"
    "                    enclosing, depth, threshold, area, perimeter, x, y, left, right, top,\n"
    "                    bottom}]); the confirmation line then goes to stderr\n"
    "\n"
    "In the table, grey < T (> T with --bright) is the level that made the region; parent is the id\n"
    "of the region it lies in (-1 for a root) and depth how many regions enclose it.\n"
    "\n"
    "Examples:\n"
    "  qel segment coins.bmp -o regions.png --bright\n"
    "  qel segment scan.png --min-area 400 --json > regions.json\n",
    {"output", "min-area", "min-contrast", "split"}, runSegment, {"bright", "json"}});

}  // namespace
