// qel threshold / qel histogram: binarising a grey image and the statistics of its histogram.
#include "cli.h"

#include <qel.h>

#include <cmath>
#include <iomanip>
#include <iostream>

namespace {

constexpr int kLevels = 256;
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
    cli::Image img = cli::loadGreyBmp(in);

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
            int hist[kLevels];
            QelGetHistogram(img.pixels.data(), img.width, img.height, hist);
            threshold = QelGetOtsuThreshold(hist, kLevels);
            std::cout << "threshold " << threshold << " (Otsu)\n";
        }
        QelThreshold(img.pixels.data(), img.width, img.height, threshold);
    }
    cli::saveBmp(img, out);
    return 0;
}

// ---- qel histogram ----------------------------------------------------------------------------
int runHistogram(const cli::Args& args) {
    args.expectPositional(1);
    const bool plot = args.has("plot");
    if (!plot && (args.has("plot-width") || args.has("plot-height")))
        throw cli::UsageError("--plot-width and --plot-height need --plot OUT.bmp");
    const int plotWidth = args.integer("plot-width", kDefaultPlotWidth);
    const int plotHeight = args.integer("plot-height", kDefaultPlotHeight);
    if (plotWidth < 1 || plotWidth > kMaxPlotSide || plotHeight < 1 || plotHeight > kMaxPlotSide)
        throw cli::UsageError("--plot-width and --plot-height must be between 1 and " + std::to_string(kMaxPlotSide));

    const std::string in = args.positional()[0];
    cli::Image img = cli::loadGreyBmp(in);

    int hist[kLevels];
    QelGetHistogram(img.pixels.data(), img.width, img.height, hist);
    double mean = 0.0;
    double deviation = 0.0;
    const int pixels = QelGetImageAvrAndDev(hist, &mean, &deviation);
    int largest = 0;
    const int most = QelGetMostInHistogram(hist, &largest);
    int lowest = 0;
    while (lowest < kLevels - 1 && hist[lowest] == 0) ++lowest;
    int highest = kLevels - 1;
    while (highest > 0 && hist[highest] == 0) --highest;

    std::cout << std::fixed << std::setprecision(3)
              << "pixels      " << pixels << " (" << img.width << " x " << img.height << ")\n"
              << "range       " << lowest << " .. " << highest << "\n"
              << "mean        " << mean << "\n"
              << "deviation   " << deviation << "\n"
              << "median      " << QelGetMedianInHistogram(hist) << "\n"
              << "most        " << most << " (" << largest << " pixels)\n"
              << "otsu        " << QelGetOtsuThreshold(hist, kLevels) << "\n";

    if (plot) {
        cli::Image chart;
        chart.width = plotWidth;
        chart.height = plotHeight;
        chart.channels = 1;
        chart.pixels.resize(static_cast<size_t>(plotWidth) * static_cast<size_t>(plotHeight));
        QelDrawHistogram2Img(hist, kLevels, chart.pixels.data(), plotWidth, plotHeight);
        cli::saveBmp(chart, args.value("plot"));
        std::cout << "plot        " << args.value("plot") << " (" << plotWidth << " x " << plotHeight << ")\n";
    }
    return 0;
}

const cli::Register threshold({"threshold", "binarise a grey image (Otsu, bright ratio or fixed value)",
                               "usage: qel threshold IN.bmp OUT.bmp [--otsu | --ratio R | --value T]\n\n"
                               "Writes OUT as an 8-bit image whose pixels are 255 where the grey level of IN is\n"
                               "greater than or equal to the threshold, else 0, and prints the threshold chosen.\n"
                               "Colour input is converted to grey first.\n\n"
                               "  --otsu       Otsu's between-class variance threshold (the default)\n"
                               "  --ratio R    threshold that keeps about the brightest fraction R (0..1) of the\n"
                               "               pixels; a result of -1 means none was found and every pixel is set\n"
                               "  --value T    a fixed grey level T (0..255)\n\n"
                               "Examples:\n"
                               "  qel threshold photo.bmp mask.bmp\n"
                               "  qel threshold photo.bmp bright.bmp --ratio 0.05\n"
                               "  qel threshold photo.bmp mask.bmp --value 128\n",
                               {"ratio", "value"}, runThreshold, {"otsu"}});

const cli::Register histogram({"histogram", "grey-level statistics of an image, optionally plotted",
                               "usage: qel histogram IN.bmp [--plot OUT.bmp [--plot-width W] [--plot-height H]]\n\n"
                               "Prints the pixel count, the range of grey levels present, the mean, the population\n"
                               "deviation, the median, the most frequent level and the Otsu threshold of IN.\n"
                               "Colour input is converted to grey first.\n\n"
                               "  --plot OUT.bmp    also draw the histogram as white bars on black, hanging from\n"
                               "                    the top edge, scaled to the largest count\n"
                               "  --plot-width W    width of the plot (default 256)\n"
                               "  --plot-height H   height of the plot (default 128)\n",
                               {"plot", "plot-width", "plot-height"}, runHistogram});

}  // namespace
