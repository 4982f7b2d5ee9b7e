// qel edges: gradient images (Sobel, Prewitt, Roberts) of a grey image.
#include "common/cli.h"
#include "common/image.h"

#include <qel.h>

#include <algorithm>
#include <iostream>
#include <string>

namespace {

constexpr int kPrewittHalf = 1;  // the four-direction Prewitt gradient over a 3 × 3 window

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

int runEdges(const cli::Args& args) {
    args.expectPositional(2);
    const std::string name = args.oneOf({"sobel", "sobel0", "sobel90", "prewitt", "roberts"});
    const GradientOperator op = findOperator(name);
    const std::string in = args.positional()[0];
    const std::string out = args.positional()[1];
    cli::checkOutputName(out);
    cli::Image img = cli::loadGrey(in);
    if (img.width < 3 || img.height < 3)
        throw cli::UsageError("'" + in + "' is " + std::to_string(img.width) + " x " + std::to_string(img.height) +
                              "; the gradient operators need at least 3 x 3 pixels");
    cli::Image result = img;
    std::fill(result.pixels.begin(), result.pixels.end(), 0);  // pixels an operator leaves alone read 0
    op(img.pixels.data(), img.width, img.height, result.pixels.data());
    cli::saveAndConfirm(result, in, out, "--" + name + " gradient");
    return 0;
}

const cli::Register edges({"edges", "gradient image (Sobel, Prewitt or Roberts) of a grey image",
    "usage: qel edges IN OUT (--sobel | --sobel0 | --sobel90 | --prewitt | --roberts)\n"
    "\n"
    "Writes the gradient magnitude of IN as an 8-bit grey image (.bmp or .png). Colour input is\n"
    "converted to grey first, and the tool says so. Give exactly one operator:\n"
    "  --sobel     3 x 3 Sobel, min(|gx| + |gy|, 255)\n"
    "  --sobel0    horizontal edges only, min(|gy|, 255)\n"
    "  --sobel90   vertical edges only, min(|gx|, 255)\n"
    "  --prewitt   mean of the 0, 45, 90 and 135 degree Prewitt box differences over 3 x 3\n"
    "  --roberts   central differences, max(|dx|, |dy|)\n"
    "The one-pixel frame of OUT is 0.\n",
    {}, runEdges, {"sobel", "sobel0", "sobel90", "prewitt", "roberts"}});

}  // namespace
