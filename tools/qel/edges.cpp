// qel edges: gradient images (Sobel, Prewitt, Roberts) and the Shen Jun edge map of a grey image.
#include "common/cli.h"
#include "common/image.h"

#include <qel.h>

#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

namespace {

constexpr int kPrewittHalf = 1;  // the four-direction Prewitt gradient over a 3 × 3 window
// Shen Jun: the new sample's weight is 2^-shift (1..3); an edge needs this grey step to a neighbour.
constexpr int kDefaultShenShift = 2;
constexpr int kMinShenShift = 1;
constexpr int kMaxShenShift = 3;
constexpr int kDefaultShenThreshold = 20;

using GradientOperator = void (*)(unsigned char*, int, int, unsigned char*);

void prewitt3x3(unsigned char* src, int width, int height, unsigned char* dst) {
    QelGradientByPrewitt(src, width, height, kPrewittHalf, kPrewittHalf, dst);
}

struct OperatorFlag {
    const char* flag;
    GradientOperator run;
};
constexpr OperatorFlag kOperators[] = {
    {"sobel", QelGryImgSobel}, {"sobel0", QelGryImgSobel0}, {"sobel90", QelGryImgSobel90},
    {"prewitt", prewitt3x3},   {"roberts", QelRobert},
};

GradientOperator findOperator(const std::string& name) {
    for (const auto& o : kOperators)
        if (name == o.flag) return o.run;
    return nullptr;
}

// The Shen Jun edge map: 255 on the brighter side of each grey step of at least `threshold`.
cli::Image shenJunEdges(cli::Image& grey, int shift, int threshold) {
    cli::Image result = grey;
    std::vector<unsigned char> smooth(grey.pixels.size());
    QelShenJunEdgeFast(grey.pixels.data(), smooth.data(), grey.width, grey.height, shift, threshold,
                       result.pixels.data());
    return result;
}

int runEdges(const cli::Args& args) {
    args.expectPositional(2);
    const std::string name = args.oneOf({"sobel", "sobel0", "sobel90", "prewitt", "roberts", "shen"});
    const bool shen = name == "shen";
    if (!shen && (args.has("shift") || args.has("threshold")))
        throw cli::UsageError("--shift and --threshold go with --shen");
    const int shift = args.integer("shift", kDefaultShenShift);
    if (shift < kMinShenShift || shift > kMaxShenShift)
        throw cli::UsageError("--shift wants 1, 2 or 3, got '" + args.value("shift") + "'");
    const int threshold = args.integer("threshold", kDefaultShenThreshold);
    if (threshold < 0 || threshold > 255)
        throw cli::UsageError("--threshold wants a grey step between 0 and 255, got '" + args.value("threshold") + "'");

    const std::string in = args.positional()[0];
    const std::string out = args.positional()[1];
    cli::checkOutputName(out);
    cli::Image img = cli::loadGrey(in);
    if (img.width < 3 || img.height < 3)
        throw cli::UsageError("'" + in + "' is " + std::to_string(img.width) + " x " + std::to_string(img.height) +
                              "; the edge operators need at least 3 x 3 pixels");
    if (shen) {
        const cli::Image edges = shenJunEdges(img, shift, threshold);
        const long count = static_cast<long>(std::count(edges.pixels.begin(), edges.pixels.end(), 255));
        cli::saveAndConfirm(edges, in, out, "--shen edges, shift " + std::to_string(shift) + ", threshold " +
                                                std::to_string(threshold) + ", " + std::to_string(count) + " edge pixels");
        return 0;
    }
    const GradientOperator op = findOperator(name);
    cli::Image result = img;
    std::fill(result.pixels.begin(), result.pixels.end(), 0);  // pixels an operator leaves alone read 0
    op(img.pixels.data(), img.width, img.height, result.pixels.data());
    cli::saveAndConfirm(result, in, out, "--" + name + " gradient");
    return 0;
}

const cli::Register edges({"edges", "gradient image (Sobel, Prewitt, Roberts) or Shen Jun edge map of a grey image",
    "usage: qel edges IN OUT (--sobel | --sobel0 | --sobel90 | --prewitt | --roberts |\n"
    "                         --shen [--shift S] [--threshold T])\n"
    "\n"
    "Writes the gradient magnitude of IN, or its Shen Jun edge map, as an 8-bit grey image (.bmp or\n"
    ".png). Colour input is converted to grey first, and the tool says so. Give exactly one operator:\n"
    "  --sobel     3 x 3 Sobel, min(|gx| + |gy|, 255)\n"
    "  --sobel0    horizontal edges only, min(|gy|, 255)\n"
    "  --sobel90   vertical edges only, min(|gx|, 255)\n"
    "  --prewitt   mean of the 0, 45, 90 and 135 degree Prewitt box differences over 3 x 3\n"
    "  --roberts   central differences, max(|dx|, |dy|)\n"
    "  --shen      Shen Jun edges: 255 on one-pixel-wide contours, 0 elsewhere. The picture is\n"
    "              smoothed by a recursive exponential filter along rows and columns; an edge pixel\n"
    "              lies above the smoothed picture while a neighbour lies below it, and differs\n"
    "              from some neighbour by at least T grey levels (only the brighter side of each\n"
    "              step is marked; prints the number of edge pixels)\n"
    "  --shift S   --shen smoothing: each new sample weighs 1/2^S (1, 2 or 3; default 2, larger\n"
    "              smooths more)\n"
    "  --threshold T  --shen: the grey step of an edge (0..255, default 20)\n"
    "The one-pixel frame of OUT is 0.\n",
    {"shift", "threshold"}, runEdges, {"sobel", "sobel0", "sobel90", "prewitt", "roberts", "shen"}});

}  // namespace
