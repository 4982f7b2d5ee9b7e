// qel filter: box, median, minimum, maximum and edge-preserving smoothing of a grey image.
#include "common/cli.h"
#include "common/image.h"

#include <qel.h>

#include <iostream>
#include <string>
#include <vector>

namespace {

constexpr int kDefaultRadius = 1;
constexpr int kMaxMinMaxRadius = 2;     // the minimum and maximum filters are 3 or 5 wide
constexpr int kDefaultZedThreshold = 10;

enum class Operation { Box, Median, Min, Max, Zed };

struct OperationFlag {
    const char* flag;
    Operation op;
};
constexpr OperationFlag kOperations[] = {
    {"box", Operation::Box}, {"median", Operation::Median}, {"min", Operation::Min},
    {"max", Operation::Max}, {"zed", Operation::Zed},
};

Operation findOperation(const std::string& name) {
    for (const auto& o : kOperations)
        if (name == o.flag) return o.op;
    return Operation::Box;
}

using LineFilter = void (*)(unsigned char*, int, int, unsigned char*);

// 3- or 5-wide filter for a radius of 1 or 2; null for radius 0 (that direction is left alone).
LineFilter minMaxFilter(bool isMax, bool inRows, int radius) {
    if (radius == 0) return nullptr;
    if (inRows) {
        if (isMax) return radius == 1 ? QelGryImgMaxFilter3xInRow : QelGryImgMaxFilter5xInRow;
        return radius == 1 ? QelGryImgMinFilter3xInRow : QelGryImgMinFilter5xInRow;
    }
    if (isMax) return radius == 1 ? QelGryImgMaxFilter3xInCol : QelGryImgMaxFilter5xInCol;
    return radius == 1 ? QelGryImgMinFilter3xInCol : QelGryImgMinFilter5xInCol;
}

int runFilter(const cli::Args& args) {
    args.expectPositional(2);
    const std::string name = args.oneOf({"box", "median", "min", "max", "zed"});
    const Operation op = findOperation(name);
    if (op == Operation::Zed && args.has("radius"))
        throw cli::UsageError("--zed works on the 8 neighbours and takes no --radius");
    if (op != Operation::Zed && args.has("threshold")) throw cli::UsageError("--threshold goes with --zed only");

    int rx = kDefaultRadius;
    int ry = kDefaultRadius;
    if (args.has("radius")) {
        const std::vector<int> r = args.integers("radius", 2);
        rx = r[0];
        ry = r[1];
    }
    if (rx < 0 || ry < 0) throw cli::UsageError("--radius wants non-negative values, got '" + args.value("radius") + "'");
    if ((op == Operation::Min || op == Operation::Max) && (rx > kMaxMinMaxRadius || ry > kMaxMinMaxRadius))
        throw cli::UsageError("--min and --max take radii 0, 1 or 2 (windows 1, 3 or 5 wide), got '" +
                              args.value("radius") + "'");
    const int threshold = args.integer("threshold", kDefaultZedThreshold);
    if (threshold < 0) throw cli::UsageError("--threshold wants a non-negative grey-level difference");

    const std::string in = args.positional()[0];
    const std::string out = args.positional()[1];
    cli::checkOutputName(out);
    cli::Image img = cli::loadGrey(in);
    if (op != Operation::Zed && (rx > (img.width - 1) / 2 || ry > (img.height - 1) / 2))
        throw cli::UsageError("the " + std::to_string(2 * rx + 1) + " x " + std::to_string(2 * ry + 1) +
                              " window is larger than the " + std::to_string(img.width) + " x " +
                              std::to_string(img.height) + " image");

    cli::Image result = img;  // same size; the Zed filter leaves the outer ring as it was
    unsigned char* src = img.pixels.data();
    unsigned char* dst = result.pixels.data();
    switch (op) {
    case Operation::Box:
        QelGryAverageFilter(src, img.width, img.height, rx, ry, dst);
        break;
    case Operation::Median:
        QelGryFastMedianFilter(src, img.width, img.height, rx, ry, dst);
        break;
    case Operation::Min:
    case Operation::Max: {
        const bool isMax = op == Operation::Max;
        // Separable: along the rows into the result, then along the columns in place.
        if (LineFilter f = minMaxFilter(isMax, true, rx)) f(src, img.width, img.height, dst);
        if (LineFilter f = minMaxFilter(isMax, false, ry)) f(dst, img.width, img.height, dst);
        break;
    }
    case Operation::Zed:
        QelGryZedFilter(src, img.width, img.height, threshold, dst);
        break;
    }
    cli::saveAndConfirm(result, in, out,
                        "--" + name + (op == Operation::Zed ? " filter, threshold " + std::to_string(threshold)
                                                            : " filter, radius " + std::to_string(rx) + "," + std::to_string(ry)));
    return 0;
}

const cli::Register filter({"filter", "box, median, minimum, maximum or edge-preserving filter of a grey image",
    "usage: qel filter IN OUT --box|--median|--min|--max|--zed [--radius X,Y] [--threshold T]\n"
    "\n"
    "Filters IN with a (2X+1) x (2Y+1) window (default --radius 1,1) and writes OUT (.bmp or\n"
    ".png); colour input is converted to grey first. Give exactly one operation:\n"
    "  --box     mean of the window, which shrinks at the image edges\n"
    "  --median  median of the window; the X columns on the left and X+1 on the right hold the\n"
    "            window mean instead\n"
    "  --min     minimum of the window (radii 0, 1 or 2)\n"
    "  --max     maximum of the window (radii 0, 1 or 2)\n"
    "  --zed     pulls each pixel toward neighbours within T grey levels, fading out at 3T\n"
    "            (--threshold T, default 10; the outer ring of pixels is copied unchanged)\n"
    "The window must fit inside the image.\n",
    {"radius", "threshold"}, runFilter, {"box", "median", "min", "max", "zed"}});

}  // namespace
