// qel diff: how two pictures of one size differ (common/compare.h): the mean and largest
// difference, the pixels that differ, and the difference image.
#include "common/cli.h"
#include "common/compare.h"
#include "common/image.h"
#include "common/json.h"

#include <cstdio>
#include <iostream>
#include <string>

namespace {

constexpr int kMeanDecimals = 3;
constexpr int kShareDecimals = 2;

std::string summary(const cli::Difference& d, int tolerance) {
    char mean[32];
    char share[32];
    std::snprintf(mean, sizeof mean, "%.*f", kMeanDecimals, d.mean);
    std::snprintf(share, sizeof share, "%.*f", kShareDecimals, 100.0 * static_cast<double>(d.differing) / d.pixels);
    std::string text = "mean difference " + std::string(mean) + ", largest " + std::to_string(d.largest) + ", " +
                       std::to_string(d.differing) + " of " + std::to_string(d.pixels) + " pixels differ";
    if (tolerance > 0) text += " by more than " + std::to_string(tolerance);
    return text + " (" + share + " %)";
}

void writeJson(const std::string& a, const std::string& b, const cli::Difference& d, bool colour, int tolerance,
               const std::string& out) {
    cli::JsonWriter json(std::cout);
    json.beginObject()
        .key("a").value(a)
        .key("b").value(b)
        .key("width").value(d.image.width)
        .key("height").value(d.image.height)
        .key("colour").value(colour)
        .key("tolerance").value(tolerance)
        .key("pixels").value(static_cast<int>(d.pixels))  // at most INT_MAX: pictures are read up to INT_MAX bytes
        .key("differing").value(static_cast<int>(d.differing))
        .key("largest").value(d.largest)
        .key("mean").value(d.mean);
    if (!out.empty()) json.key("output").value(out);
    json.endObject();
}

int runDiff(const cli::Args& args) {
    args.expectPositional(2);
    const int tolerance = args.integer("tolerance", 0);
    if (tolerance < 0 || tolerance > 255)
        throw cli::UsageError("--tolerance wants a grey-level difference between 0 and 255, got '" +
                              args.value("tolerance") + "'");
    const bool json = args.flag("json");
    const std::string a = args.positional()[0];
    const std::string b = args.positional()[1];
    const std::string out = args.value("output");
    if (!out.empty()) cli::checkOutputName(out);
    const cli::Image first = cli::loadImage(a);
    const cli::Image second = cli::loadImage(b);
    const cli::Difference d = cli::compare(first, second, tolerance, a, b);
    const bool colour = !first.isGrey() || !second.isGrey();
    if (!out.empty()) cli::saveImage(d.image, out);

    if (json)
        writeJson(a, b, d, colour, tolerance, out);
    else
        std::cout << a << " vs " << b << ": " << d.image.width << " x " << d.image.height
                  << (colour ? " colour, " : " grey, ") << summary(d, tolerance) << "\n";
    if (!out.empty())
        (json ? std::cerr : std::cout) << cli::confirmation(d.image, a + " vs " + b, out, "difference") << "\n";
    return 0;
}

const cli::Register diffCommand({"diff", "compare two pictures of one size: difference statistics and image",
    "usage: qel diff A B [-o OUT] [--tolerance T] [--json]\n"
    "\n"
    "Compares two pictures of the same size pixel by pixel and prints the mean difference, the\n"
    "largest one and how many pixels differ. A pixel's difference is |A - B| of its grey levels;\n"
    "when either picture is in colour, the largest of its three channels' differences (a grey\n"
    "picture counting as the same level in all three). Pictures of different sizes are refused.\n"
    "The exit status is 0 whether or not they differ.\n"
    "\n"
    "  -o OUT          also write the difference image (.png or .bmp, grey: 0 where the pictures\n"
    "                  agree, brighter the more they differ)\n"
    "  --tolerance T   pixels differing by T or less (0..255, default 0) count as equal\n"
    "  --json          print one JSON object (a, b, width, height, colour, tolerance, pixels,\n"
    "                  differing, largest, mean, output when written); the confirmation line then\n"
    "                  goes to stderr\n"
    "\n"
    "Examples:\n"
    "  qel diff before.png after.png -o changes.png\n"
    "  qel diff photo.bmp photo.jpg --tolerance 8 --json\n",
    {"output", "tolerance"}, runDiff, {"json"}});

}  // namespace
