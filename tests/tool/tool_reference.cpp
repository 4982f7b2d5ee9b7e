// Recomputes what a qel subcommand should have written and compares it with the file it wrote,
// pixel by pixel:
//
//   qel_tool_reference OUTPUT CASE ARGUMENTS...
//
// CASE names an entry of the table below; its arguments are the subcommand's input files and the
// options the test gave it. Each entry computes the expected picture with the library call the
// subcommand wraps (or, for the annotating subcommands, with the tool module that draws the
// picture). Exit status 0 when the pictures are equal; otherwise the first difference is printed
// and the status is 1.
#include "common/binarise.h"
#include "common/cli.h"
#include "common/compare.h"
#include "common/geometry.h"
#include "common/image.h"
#include "common/inspect.h"
#include "common/lines.h"
#include "common/segment.h"
#include "common/text.h"

#include <qel.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

namespace {

using cli::Image;
using Args = std::vector<std::string>;

int number(const std::string& text) { return std::stoi(text); }

Image blankLike(const Image& image, int channels) { return cli::blankImage(image.width, image.height, channels); }

// The tool's rule for a grey picture without a given threshold, applied with QelThreshold.
void binariseAsTheToolDoes(Image& grey) {
    int hist[cli::kGreyLevels];
    QelGetHistogram(grey.pixels.data(), grey.width, grey.height, hist);
    QelThreshold(grey.pixels.data(), grey.width, grey.height, cli::chooseThreshold(hist).level);
}

// ---- convert ------------------------------------------------------------------------------------

Image greyOf(const Args& a) {  // IN
    Image in = cli::loadImage(a[0]);
    if (in.isGrey()) return in;
    Image grey = blankLike(in, 1);
    QelRGB2Gry(in.pixels.data(), in.width, in.height, grey.pixels.data());
    return grey;
}

Image copyOf(const Args& a) { return cli::loadImage(a[0]); }  // IN

Image cropOf(const Args& a) {  // IN X1 X2 Y1 Y2
    const Image in = cli::loadImage(a[0]);
    const int x1 = number(a[1]), x2 = number(a[2]), y1 = number(a[3]), y2 = number(a[4]);
    Image out = cli::blankImage(x2 - x1 + 1, y2 - y1 + 1, in.channels);
    for (int y = y1; y <= y2; ++y)
        for (int x = x1; x <= x2; ++x)
            for (int c = 0; c < in.channels; ++c)
                out.pixels[static_cast<size_t>(((y - y1) * out.width + x - x1) * in.channels + c)] =
                    in.pixels[static_cast<size_t>((y * in.width + x) * in.channels + c)];
    return out;
}

Image fromYuv420p(const Args& a) {  // FRAME WIDTH HEIGHT
    std::vector<unsigned char> frame = cli::readFile(a[0]);
    Image out = cli::blankImage(number(a[1]), number(a[2]), 3);
    if (!QelYUV420P2RGB(frame.data(), out.width, out.height, out.pixels.data())) throw std::runtime_error("refused");
    return out;
}

// ---- threshold, histogram, equalize, noise --------------------------------------------------------

Image thresholdOf(const Args& a) {  // IN [LEVEL]
    Image grey = greyOf(a);
    if (a.size() > 1)
        QelThreshold(grey.pixels.data(), grey.width, grey.height, number(a[1]));
    else
        binariseAsTheToolDoes(grey);
    return grey;
}

Image histogramPlot(const Args& a) {  // IN WIDTH HEIGHT
    Image grey = greyOf(a);
    int hist[cli::kGreyLevels];
    QelGetHistogram(grey.pixels.data(), grey.width, grey.height, hist);
    Image plot = cli::blankImage(number(a[1]), number(a[2]), 1);
    QelDrawHistogram2Img(hist, cli::kGreyLevels, plot.pixels.data(), plot.width, plot.height);
    return plot;
}

Image equalised(const Args& a) {  // IN fast|standard
    Image grey = greyOf(a);
    (a[1] == "fast" ? QelHistogramEqualizeFast : QelHistogramEqualizeStandard)(grey.pixels.data(), grey.width,
                                                                                 grey.height);
    return grey;
}

Image noisy(const Args& a) {  // IN TYPE AMOUNT SEED: the first call of the process seeds the generator
    Image in = cli::loadImage(a[0]);
#if defined(_WIN32)
    _putenv_s("QEL_NOISE_SEED", a[3].c_str());
#else
    setenv("QEL_NOISE_SEED", a[3].c_str(), 1);
#endif
    Ostrum2008AddNoise(in.pixels.data(), static_cast<int>(in.pixels.size()), std::stod(a[2]),
                       static_cast<unsigned>(number(a[1])));
    return in;
}

// ---- filter, edges, morph -------------------------------------------------------------------------

Image filtered(const Args& a) {  // IN box|median|min|max|zed RX RY THRESHOLD
    Image src = greyOf(a);
    Image dst = src;
    const std::string& op = a[1];
    const int rx = number(a[2]), ry = number(a[3]), w = src.width, h = src.height;
    if (op == "box") QelGryAverageFilter(src.pixels.data(), w, h, rx, ry, dst.pixels.data());
    if (op == "median") QelGryFastMedianFilter(src.pixels.data(), w, h, rx, ry, dst.pixels.data());
    if (op == "zed") QelGryZedFilter(src.pixels.data(), w, h, number(a[4]), dst.pixels.data());
    if (op == "min" || op == "max") {  // radius 1 in both directions: rows, then columns in place
        const bool isMax = op == "max";
        (isMax ? QelGryImgMaxFilter3xInRow : QelGryImgMinFilter3xInRow)(src.pixels.data(), w, h, dst.pixels.data());
        (isMax ? QelGryImgMaxFilter3xInCol : QelGryImgMinFilter3xInCol)(dst.pixels.data(), w, h, dst.pixels.data());
    }
    return dst;
}

Image edgesOf(const Args& a) {  // IN sobel|sobel0|sobel90|prewitt|roberts|shen [SHIFT THRESHOLD]
    Image src = greyOf(a);
    Image dst = blankLike(src, 1);
    unsigned char* s = src.pixels.data();
    unsigned char* d = dst.pixels.data();
    const std::string& op = a[1];
    if (op == "sobel") QelGryImgSobel(s, src.width, src.height, d);
    if (op == "sobel0") QelGryImgSobel0(s, src.width, src.height, d);
    if (op == "sobel90") QelGryImgSobel90(s, src.width, src.height, d);
    if (op == "prewitt") QelGradientByPrewitt(s, src.width, src.height, 1, 1, d);
    if (op == "roberts") QelRobert(s, src.width, src.height, d);
    if (op == "shen") {
        dst = src;  // the frame the edge finder leaves alone keeps the grey picture
        std::vector<unsigned char> smooth(src.pixels.size());
        QelShenJunEdgeFast(s, smooth.data(), src.width, src.height, number(a[2]), number(a[3]), dst.pixels.data());
    }
    return dst;
}

Image morphed(const Args& a) {  // IN dilate|erode|median|thin|clean [N]
    Image src = greyOf(a);
    if (!std::all_of(src.pixels.begin(), src.pixels.end(), [](unsigned char p) { return p == 0 || p == 255; }))
        binariseAsTheToolDoes(src);
    Image dst = a[1] == "clean" ? src : blankLike(src, 1);  // clean works in place, the others into zeros
    unsigned char* s = src.pixels.data();
    const int w = src.width, h = src.height;
    const std::string& op = a[1];
    if (op == "dilate") QelBinImgMaxFilter3x3(s, w, h, dst.pixels.data());
    if (op == "erode") QelBinImgMinFilter3x3(s, w, h, dst.pixels.data());
    if (op == "median") QelBinImgMedFilter3x3(s, w, h, dst.pixels.data());
    if (op == "thin") {
        std::vector<unsigned char> work(src.pixels.size());
        QelBinImgThin(s, work.data(), w, h, dst.pixels.data());
    }
    if (op == "clean") QelBinImgDeletePointsLessThanN(dst.pixels.data(), w, h, 255, number(a[2]));
    return dst;
}

// ---- rotate, flip, resize, project, diff ------------------------------------------------------------

Image rotated(const Args& a) {  // IN DEGREES [CX CY]
    const Image in = cli::loadImage(a[0]);
    const double degrees = std::stod(a[1]);
    if (a.size() > 2) return cli::rotateAbout(in, degrees, number(a[2]), number(a[3]));
    if (degrees != 90 && degrees != -90) return cli::rotateImage(in, degrees);
    Image out = cli::blankImage(in.height, in.width, in.channels);  // exact quarter turns
    (degrees > 0 ? QelImgRotate90DegreeCS : QelImgRotate90DegreeCCS)(const_cast<unsigned char*>(in.pixels.data()),
                                                                     in.width, in.height, !in.isGrey(), out.pixels.data());
    return out;
}

Image flipped(const Args& a) {  // IN horizontal|vertical
    Image in = cli::loadImage(a[0]);
    if (a[1] == "vertical") {
        QelFlipVertical(in.pixels.data(), in.width, in.height, !in.isGrey());
        return in;
    }
    return cli::eachChannel(in, [](Image plane) {
        QelFlipHorizontal(plane.pixels.data(), plane.width, plane.height);
        return plane;
    });
}

Image resized(const Args& a) {  // IN WIDTH HEIGHT METHOD
    const Image in = cli::loadImage(a[0]);
    const int w = number(a[1]), h = number(a[2]);
    if (a[3] != "bilinear") return cli::resizeImage(in, w, h, cli::resizeMethodNamed(a[3]));
    Image out = cli::blankImage(w, h, in.channels);
    (in.isGrey() ? QelGryImgBilinearInterpolattionFast : QelRgbImgBilinearInterpolattionFast)(
        const_cast<unsigned char*>(in.pixels.data()), in.width, in.height, out.pixels.data(), w, h);
    return out;
}

Image profilePlot(const Args& a) {  // IN cols|rows SIZE
    Image grey = greyOf(a);
    std::vector<int> prjX(static_cast<size_t>(grey.width)), prjY(static_cast<size_t>(grey.height));
    QelGryImgPrjXY(grey.pixels.data(), grey.width, grey.height, prjX.data(), prjY.data());
    const int size = number(a[2]);
    if (a[1] == "cols") {
        Image plot = cli::blankImage(grey.width, size, 1);
        QelDrawPrjX(plot.pixels.data(), plot.width, plot.height, prjX.data(), grey.width, 255);
        return plot;
    }
    Image plot = cli::blankImage(size, grey.height, 1);
    QelDrawPrjY(plot.pixels.data(), plot.width, plot.height, prjY.data(), grey.height, 255);
    return plot;
}

Image difference(const Args& a) {  // A B: the largest channel difference of each pixel
    const Image x = cli::toColour(cli::loadImage(a[0]));
    const Image y = cli::toColour(cli::loadImage(a[1]));
    Image out = blankLike(x, 1);
    for (size_t i = 0; i < out.pixels.size(); ++i)
        for (size_t c = 0; c < 3; ++c)
            out.pixels[i] = static_cast<unsigned char>(std::max<int>(
                out.pixels[i], std::abs(x.pixels[3 * i + c] - y.pixels[3 * i + c])));
    return out;
}

// ---- the annotating subcommands: their modules' pictures ------------------------------------------

Image inspected(const Args& a) {  // IN THRESHOLD MIN_AREA dark|bright numbers|plain
    cli::InspectOptions options;
    options.threshold = number(a[1]);
    options.minArea = number(a[2]);
    options.dark = a[3] == "dark";
    options.numbers = a[4] == "numbers";
    return cli::inspect(cli::loadImage(a[0]), options).annotated;
}

Image linesDrawn(const Args& a) {  // IN hough COUNT THRESHOLD | IN chains MIN_LENGTH THRESHOLD
    const Image in = cli::loadImage(a[0]);
    int points = 0;
    const std::vector<cli::FoundLine> lines = a[1] == "hough"
                                                  ? cli::houghLines(cli::toGrey(in), number(a[2]), number(a[3]), &points)
                                                  : cli::chainLines(cli::toGrey(in), number(a[2]), number(a[3]));
    Image out = cli::toColour(in);
    for (const cli::FoundLine& l : lines)
        QelRGBLine(out.pixels.data(), out.width, out.height, l.x1, l.y1, l.x2, l.y2, 255, 0, 0);
    return out;
}

Image segmented(const Args& a) {  // IN MIN_AREA bright|dark
    cli::SegmentOptions options;
    options.minArea = number(a[1]);
    options.bright = a[2] == "bright";
    return cli::segment(cli::loadImage(a[0]), options).annotated;
}

Image withText(const Args& a) {  // IN X Y SIZE GREY TEXT
    cli::TextStyle style;
    style.size = number(a[3]);
    std::fill(style.foreground, style.foreground + 3, number(a[4]));
    return cli::drawText(cli::loadImage(a[0]), number(a[1]), number(a[2]), cli::fontText(a[5], false), style);
}

struct Case {
    const char* name;
    size_t arguments;  // at least this many
    Image (*expected)(const Args&);
};

constexpr Case kCases[] = {
    {"grey", 1, greyOf},           {"copy", 1, copyOf},          {"crop", 5, cropOf},
    {"yuv420p", 3, fromYuv420p},   {"threshold", 1, thresholdOf}, {"histogram", 3, histogramPlot},
    {"equalize", 2, equalised},    {"noise", 4, noisy},          {"filter", 5, filtered},
    {"edges", 2, edgesOf},         {"morph", 2, morphed},        {"rotate", 2, rotated},
    {"flip", 2, flipped},          {"resize", 4, resized},       {"project", 3, profilePlot},
    {"diff", 2, difference},       {"inspect", 5, inspected},    {"lines", 4, linesDrawn},
    {"segment", 3, segmented},     {"text", 6, withText},
};

// The first pixel at which the pictures differ, or "" when they are equal.
std::string firstDifference(const Image& got, const Image& want) {
    if (got.width != want.width || got.height != want.height || got.channels != want.channels)
        return "written " + std::to_string(got.width) + " x " + std::to_string(got.height) + " x " +
               std::to_string(got.channels) + ", expected " + std::to_string(want.width) + " x " +
               std::to_string(want.height) + " x " + std::to_string(want.channels);
    const auto at = std::mismatch(got.pixels.begin(), got.pixels.end(), want.pixels.begin());
    if (at.first == got.pixels.end()) return "";
    const long i = static_cast<long>(at.first - got.pixels.begin()) / got.channels;
    long differing = 0;
    for (size_t k = 0; k < got.pixels.size(); ++k) differing += got.pixels[k] != want.pixels[k];
    return "pixel " + std::to_string(i % got.width) + "," + std::to_string(i / got.width) + " is " +
           std::to_string(*at.first) + ", expected " + std::to_string(*at.second) + " (" + std::to_string(differing) +
           " bytes differ)";
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::cerr << "usage: qel_tool_reference OUTPUT CASE ARGUMENTS...\n";
        return 2;
    }
    const std::string output = argv[1];
    const std::string name = argv[2];
    const Args args(argv + 3, argv + argc);
    for (const Case& c : kCases) {
        if (name != c.name) continue;
        if (args.size() < c.arguments) {
            std::cerr << name << ": wants " << c.arguments << " arguments\n";
            return 2;
        }
        try {
            const std::string difference = firstDifference(cli::loadImage(output), c.expected(args));
            if (difference.empty()) return 0;
            std::cerr << output << " (" << name << "): " << difference << "\n";
        } catch (const std::exception& e) {
            std::cerr << output << " (" << name << "): " << e.what() << "\n";
        }
        return 1;
    }
    std::cerr << "unknown case '" << name << "'\n";
    return 2;
}
