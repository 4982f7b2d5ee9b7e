// qel threshold / qel histogram: binarising a grey image and the statistics of its histogram.
#include "common/binarise.h"
#include "common/cli.h"
#include "common/image.h"

#include <qel.h>

#include <cmath>
#include <iomanip>
#include <iostream>

namespace {

using cli::kGreyLevels;
constexpr int kDefaultPlotWidth = 256;
constexpr int kDefaultPlotHeight = 128;
constexpr int kMaxPlotSide = 8192;

// ---- qel threshold ----------------------------------------------------------------------------
int runThreshold(const cli::Args& args) {
    args.expectPositional(2);
    const bool ratioGiven = args.has("ratio");
    const bool valueGiven = args.has("value");
    const bool otsuGiven = args.flag("otsu");
    if (static_cast<int>(ratioGiven) + static_cast<int>(valueGiven) + static_cast<int>(otsuGiven) > 1)
        throw cli::UsageError("choose one of --otsu, --ratio R and --value T");
    double ratio = 0.0;
    int value = 0;
    if (ratioGiven) {
        ratio = args.real("ratio", 0.0);
        if (!(ratio >= 0.0 && ratio <= 1.0))
            throw cli::UsageError("--ratio wants a fraction between 0 and 1, got '" + args.value("ratio") + "'");
    }
    if (valueGiven) {
        value = args.integer("value", 0);
        if (value < 0 || value > 255)
            throw cli::UsageError("--value wants a grey level between 0 and 255, got '" + args.value("value") + "'");
    }

    const std::string in = args.positional()[0];
    const std::string out = args.positional()[1];
    cli::checkOutputName(out);
    cli::Image img = cli::loadGrey(in);

    int threshold = 0;
    if (ratioGiven) {
        threshold = QelThresholdByRatio(img.pixels.data(), img.width, img.height, ratio);
        std::cout << "threshold " << threshold << " (brightest " << ratio * 100.0 << " % of pixels";
        if (threshold < 0) std::cout << "; none found, every pixel set";
        std::cout << ")\n";
    } else {
        if (valueGiven) {
            threshold = value;
            std::cout << "threshold " << threshold << " (given)\n";
        } else {
            int hist[kGreyLevels];
            QelGetHistogram(img.pixels.data(), img.width, img.height, hist);
            const cli::ChosenThreshold chosen = cli::chooseThreshold(hist);
            threshold = chosen.level;
            std::cout << "threshold " << threshold << " (" << chosen.reason << ")\n";
        }
        QelThreshold(img.pixels.data(), img.width, img.height, threshold);
    }
    cli::saveAndConfirm(img, in, out, "binarised at " + std::to_string(threshold));
    return 0;
}

// ---- qel histogram ----------------------------------------------------------------------------
int runHistogram(const cli::Args& args) {
    args.expectPositional(1);
    const bool plot = args.has("plot");
    if (!plot && (args.has("plot-width") || args.has("plot-height")))
        throw cli::UsageError("--plot-width and --plot-height need --plot OUT");
    const int plotWidth = args.integer("plot-width", kDefaultPlotWidth);
    const int plotHeight = args.integer("plot-height", kDefaultPlotHeight);
    if (plotWidth < 1 || plotWidth > kMaxPlotSide || plotHeight < 1 || plotHeight > kMaxPlotSide)
        throw cli::UsageError("--plot-width and --plot-height must be between 1 and " + std::to_string(kMaxPlotSide));

    const std::string in = args.positional()[0];
    if (plot) cli::checkOutputName(args.value("plot"));
    cli::Image img = cli::loadGrey(in);

    int hist[kGreyLevels];
    QelGetHistogram(img.pixels.data(), img.width, img.height, hist);
    double mean = 0.0;
    double deviation = 0.0;
    const int pixels = QelGetImageAvrAndDev(hist, &mean, &deviation);
    int largest = 0;
    const int most = QelGetMostInHistogram(hist, &largest);
    int lowest = 0;
    while (lowest < kGreyLevels - 1 && hist[lowest] == 0) ++lowest;
    int highest = kGreyLevels - 1;
    while (highest > 0 && hist[highest] == 0) --highest;

    std::cout << std::fixed << std::setprecision(3)
              << "pixels      " << pixels << " (" << img.width << " x " << img.height << ")\n"
              << "range       " << lowest << " .. " << highest << "\n"
              << "mean        " << mean << "\n"
              << "deviation   " << deviation << "\n"
              << "median      " << QelGetMedianInHistogram(hist) << "\n"
              << "most        " << most << " (" << largest << " pixels)\n"
              << "otsu        " << QelGetOtsuThreshold(hist, kGreyLevels) << "\n";
    const cli::ChosenThreshold chosen = cli::chooseThreshold(hist);
    std::cout << "threshold   " << chosen.level << " (" << chosen.reason << "; used by qel threshold and qel morph)\n";

    if (plot) {
        cli::Image chart;
        chart.width = plotWidth;
        chart.height = plotHeight;
        chart.channels = 1;
        chart.pixels.resize(static_cast<size_t>(plotWidth) * static_cast<size_t>(plotHeight));
        QelDrawHistogram2Img(hist, kGreyLevels, chart.pixels.data(), plotWidth, plotHeight);
        cli::saveImage(chart, args.value("plot"));
        std::cout << "plot        " << args.value("plot") << " (" << plotWidth << " x " << plotHeight << ")\n";
    }
    return 0;
}

const cli::Register threshold({"threshold", "binarise a grey image (Otsu, bright ratio or fixed value)",
                               "usage: qel threshold IN OUT [--otsu | --ratio R | --value T]\n\n"
                               "Writes OUT (.bmp or .png) as an 8-bit image whose pixels are 255 where the grey\n"
                               "level of IN is greater than or equal to the threshold, else 0, and prints the\n"
                               "threshold and why it was chosen. Colour input is converted to grey first.\n\n"
                               "  --otsu       Otsu's between-class variance threshold (the default). Where it\n"
                               "               would make every pixel object (an image of two grey levels, such\n"
                               "               as a 0/128 mask, or few levels), the darkest level alone is\n"
                               "               background and the next level present is the threshold; an\n"
                               "               image of one level is all object from level 128 up\n"
                               "  --ratio R    threshold that keeps about the brightest fraction R (0..1) of the\n"
                               "               pixels; a result of -1 means none was found and every pixel is set\n"
                               "  --value T    a fixed grey level T (0..255)\n\n"
                               "Examples:\n"
                               "  qel threshold photo.jpg mask.png\n"
                               "  qel threshold photo.bmp bright.bmp --ratio 0.05\n"
                               "  qel threshold photo.bmp mask.bmp --value 128\n",
                               {"ratio", "value"}, runThreshold, {"otsu"}});

const cli::Register histogram({"histogram", "grey-level statistics of an image, optionally plotted",
                               "usage: qel histogram IN [--plot OUT [--plot-width W] [--plot-height H]]\n\n"
                               "Prints the pixel count, the range of grey levels present, the mean, the population\n"
                               "deviation, the median, the most frequent level, the library's Otsu threshold and\n"
                               "the threshold qel threshold and qel morph binarise with (see qel threshold --help).\n"
                               "Colour input is converted to grey first.\n\n"
                               "  --plot OUT        also draw the histogram (.bmp or .png) as white bars on black,\n"
                               "                    hanging from the top edge, scaled to the largest count\n"
                               "  --plot-width W    width of the plot (default 256)\n"
                               "  --plot-height H   height of the plot (default 128)\n",
                               {"plot", "plot-width", "plot-height"}, runHistogram});

}  // namespace
