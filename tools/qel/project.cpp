// qel project: the column or row profile of a grey picture (the sums of its columns or rows),
// printed, as JSON, and plotted as bars.
#include "common/cli.h"
#include "common/image.h"
#include "common/json.h"

#include <qel.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

namespace {

constexpr int kDefaultPlotSize = 128;
constexpr int kMinPlotSize = 3;  // a bar never reaches the plot's far edge: room for at least one pixel
constexpr int kMaxPlotSize = 8192;
constexpr int kBarLevel = 255;   // white bars on black
constexpr int kMeanDecimals = 2;
constexpr int kMaxGrey = 255;

struct Profile {
    bool columns = true;
    std::vector<int> sums;  // one per column (x) or per row (y)
    int pixelsPerSum = 0;   // the picture's height for columns, its width for rows
};

Profile profileOf(const cli::Image& grey, bool columns) {
    // A column sums up to 255 x height and a row 255 x width; both are formed together.
    if (std::max(grey.width, grey.height) > INT_MAX / kMaxGrey)
        throw cli::UsageError("the picture is " + std::to_string(grey.width) + " x " + std::to_string(grey.height) +
                              "; its profiles are made for sides of at most " + std::to_string(INT_MAX / kMaxGrey) +
                              " pixels");
    std::vector<int> prjX(static_cast<size_t>(grey.width));
    std::vector<int> prjY(static_cast<size_t>(grey.height));
    QelGryImgPrjXY(const_cast<unsigned char*>(grey.pixels.data()), grey.width, grey.height, prjX.data(), prjY.data());
    Profile p;
    p.columns = columns;
    p.sums = columns ? prjX : prjY;
    p.pixelsPerSum = columns ? grey.height : grey.width;
    return p;
}

// Bars of the profile: one white column per picture column rising from the bottom, or one row per
// picture row growing from the left, `size` pixels long at most (QelDrawPrjX, QelDrawPrjY: the
// smallest sum gives no bar).
cli::Image plotOf(Profile& p, int size) {
    const int n = static_cast<int>(p.sums.size());
    cli::Image plot = p.columns ? cli::blankImage(n, size, 1) : cli::blankImage(size, n, 1);
    if (p.columns)
        QelDrawPrjX(plot.pixels.data(), plot.width, plot.height, p.sums.data(), n, kBarLevel);
    else
        QelDrawPrjY(plot.pixels.data(), plot.width, plot.height, p.sums.data(), n, kBarLevel);
    return plot;
}

void printProfile(const std::string& in, const cli::Image& grey, const Profile& p) {
    const char* axis = p.columns ? "x" : "y";
    const auto lowest = std::min_element(p.sums.begin(), p.sums.end());
    const auto highest = std::max_element(p.sums.begin(), p.sums.end());
    std::cout << in << ": " << grey.width << " x " << grey.height << ", " << p.sums.size() << (p.columns ? " column" : " row")
              << " sums of " << p.pixelsPerSum << " pixels each; lowest " << *lowest << " at " << axis << " "
              << lowest - p.sums.begin() << ", highest " << *highest << " at " << axis << " " << highest - p.sums.begin()
              << "\n";
    std::printf("%6s %10s %9s\n", axis, "sum", "mean grey");
    for (size_t i = 0; i < p.sums.size(); ++i)
        std::printf("%6zu %10d %9.*f\n", i, p.sums[i], kMeanDecimals, static_cast<double>(p.sums[i]) / p.pixelsPerSum);
    std::fflush(stdout);
}

void writeJson(const std::string& in, const cli::Image& grey, const Profile& p, const std::string& plot) {
    cli::JsonWriter json(std::cout);
    json.beginObject()
        .key("file").value(in)
        .key("width").value(grey.width)
        .key("height").value(grey.height)
        .key("profile").value(p.columns ? "columns" : "rows")
        .key("pixels_per_sum").value(p.pixelsPerSum);
    if (!plot.empty()) json.key("plot").value(plot);
    json.key("sums").beginArray();
    for (int s : p.sums) json.value(s);
    json.endArray().endObject();
}

int runProject(const cli::Args& args) {
    args.expectPositional(1);
    const bool columns = args.oneOf({"cols", "rows"}) == "cols";
    const std::string plot = args.value("plot");
    if (plot.empty() && args.has("plot-size")) throw cli::UsageError("--plot-size goes with --plot OUT");
    const int size = args.integer("plot-size", kDefaultPlotSize);
    if (size < kMinPlotSize || size > kMaxPlotSize)
        throw cli::UsageError("--plot-size wants a bar length of " + std::to_string(kMinPlotSize) + " to " +
                              std::to_string(kMaxPlotSize) + " pixels, got '" + args.value("plot-size") + "'");
    const bool json = args.flag("json");

    const std::string in = args.positional()[0];
    if (!plot.empty()) cli::checkOutputName(plot);
    const cli::Image grey = cli::loadGrey(in);
    Profile p = profileOf(grey, columns);
    cli::Image chart;
    if (!plot.empty()) {
        if (columns)
            cli::checkNewSize(grey.width, size, "the plot");
        else
            cli::checkNewSize(size, grey.height, "the plot");
        chart = plotOf(p, size);
        cli::saveImage(chart, plot);
    }
    if (json)
        writeJson(in, grey, p, plot);
    else
        printProfile(in, grey, p);
    if (!plot.empty())
        (json ? std::cerr : std::cout) << cli::confirmation(chart, in, plot, columns ? "column profile" : "row profile")
                                       << "\n";
    return 0;
}

const cli::Register projectCommand({"project", "column or row profile of a grey picture, printed and plotted",
    "usage: qel project IN --cols|--rows [--plot OUT [--plot-size S]] [--json]\n"
    "\n"
    "Sums the grey levels of each column (--cols) or each row (--rows) of a picture (colour input\n"
    "is converted to grey) and prints one line per column or row: its index, the sum and the mean\n"
    "grey level (the sum over the picture's height for columns, its width for rows).\n"
    "\n"
    "  --cols          one sum per column, x = 0 at the left\n"
    "  --rows          one sum per row, y = 0 at the top\n"
    "  --plot OUT      also draw the profile (.png or .bmp, grey) as white bars on black: for\n"
    "                  --cols one bar per column rising from the bottom, W x S pixels; for --rows\n"
    "                  one bar per row growing from the left, S x H pixels. Bars are scaled from\n"
    "                  the smallest sum (no bar) to the largest (a pixel or two short of S)\n"
    "  --plot-size S   the bars' longest possible length, 3..8192 pixels (default 128)\n"
    "  --json          print one JSON object (file, width, height, profile: \"columns\" or \"rows\",\n"
    "                  pixels_per_sum, plot when drawn, sums: [...]); the confirmation line of the\n"
    "                  plot goes to stderr\n"
    "\n"
    "Examples:\n"
    "  qel project scan.png --rows --plot rows.png\n"
    "  qel project photo.jpg --cols --json > columns.json\n",
    {"plot", "plot-size"}, runProject, {"cols", "rows", "json"}});

}  // namespace
