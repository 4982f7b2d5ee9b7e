// qel lines: straight lines of a picture, by the Hough transform of its Shen Jun edge points or by
// the chain-code segment finder (common/lines.h), printed and drawn.
#include "common/cli.h"
#include "common/image.h"
#include "common/json.h"
#include "common/lines.h"

#include <qel.h>

#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

namespace {

constexpr int kDefaultCount = 10;
constexpr int kDefaultMinLength = 20;
constexpr int kShortestPiece = 6;            // the chain finder's shortest piece
constexpr int kDefaultEdgeThreshold = 20;   // raw grey step that makes a Shen Jun edge
constexpr int kLineColour[3] = {255, 0, 0};
constexpr int kEquationDecimals = 4;

using cli::FoundLine;

void printLines(const std::vector<FoundLine>& lines, bool hough) {
    if (lines.empty()) return;
    std::printf("%4s %5s %5s %5s %5s  %-36s", "#", "x1", "y1", "x2", "y2", "a x + b y + c = 0");
    if (hough) std::printf("  %8s %4s %5s", "strength", "rho", "theta");
    std::printf("\n");
    int i = 0;
    for (const FoundLine& l : lines) {
        std::printf("%4d %5d %5d %5d %5d  %8.*f x %+8.*f y %+10.*f = 0", ++i, l.x1, l.y1, l.x2, l.y2, kEquationDecimals,
                    l.a, kEquationDecimals, l.b, kEquationDecimals - 2, l.c);
        if (hough) std::printf("  %8d %4d %5d", l.strength, l.rho, l.theta);
        std::printf("\n");
    }
    std::fflush(stdout);
}

void writeJson(const std::string& in, const std::string& out, const std::string& method,
               const std::vector<FoundLine>& lines, bool hough) {
    cli::JsonWriter json(std::cout);
    json.beginObject().key("file").value(in).key("method").value(method);
    if (!out.empty()) json.key("output").value(out);
    json.key("lines").beginArray();
    for (const FoundLine& l : lines) {
        json.beginObject()
            .key("x1").value(l.x1).key("y1").value(l.y1)
            .key("x2").value(l.x2).key("y2").value(l.y2)
            .key("a").value(l.a).key("b").value(l.b).key("c").value(l.c);
        if (hough) json.key("strength").value(l.strength).key("rho").value(l.rho).key("theta").value(l.theta);
        json.endObject();
    }
    json.endArray().endObject();
}

int runLines(const cli::Args& args) {
    args.expectPositional(1);
    const std::string method = args.oneOf({"hough", "chains"});
    const bool hough = method == "hough";
    if (hough && args.has("min-length")) throw cli::UsageError("--min-length goes with --chains");
    if (!hough && args.has("count")) throw cli::UsageError("--count goes with --hough");
    const int count = args.integer("count", kDefaultCount);
    if (count < 1 || count > cli::kMaxHoughLines)
        throw cli::UsageError("--count wants a number of lines between 1 and " +
                              std::to_string(cli::kMaxHoughLines) + ", got '" + args.value("count") + "'");
    const int minLength = args.integer("min-length", kDefaultMinLength);
    if (minLength < kShortestPiece)
        throw cli::UsageError("--min-length wants " + std::to_string(kShortestPiece) + " pixels or more, got '" +
                              args.value("min-length") + "'");
    const int threshold = args.integer("threshold", kDefaultEdgeThreshold);
    if (threshold < 1 || threshold > 255)
        throw cli::UsageError("--threshold wants a grey step between 1 and 255, got '" + args.value("threshold") + "'");
    const bool json = args.flag("json");

    const std::string in = args.positional()[0];
    const std::string out = args.value("output");
    if (!out.empty()) cli::checkOutputName(out);
    const cli::Image picture = cli::loadImage(in);
    const cli::Image grey = cli::toGrey(picture);
    if (grey.width < 3 || grey.height < 3)
        throw cli::UsageError("'" + in + "' is " + std::to_string(grey.width) + " x " + std::to_string(grey.height) +
                              "; finding lines needs at least 3 x 3 pixels");

    int edgePoints = 0;
    const std::vector<FoundLine> lines =
        hough ? cli::houghLines(grey, count, threshold, &edgePoints) : cli::chainLines(grey, minLength, threshold);
    std::string what = std::to_string(lines.size()) + (lines.size() == 1 ? " line" : " lines");
    what += hough ? " (Hough, " + std::to_string(edgePoints) + " edge points)" : " (edge chains)";

    cli::Image drawn = cli::toColour(picture);
    for (const FoundLine& l : lines)
        QelRGBLine(drawn.pixels.data(), drawn.width, drawn.height, l.x1, l.y1, l.x2, l.y2, kLineColour[0],
                   kLineColour[1], kLineColour[2]);
    if (!out.empty()) cli::saveImage(drawn, out);

    if (json) {
        writeJson(in, out, method, lines, hough);
    } else {
        std::cout << in << ": " << what << "\n";
        printLines(lines, hough);
    }
    if (!out.empty()) (json ? std::cerr : std::cout) << cli::confirmation(drawn, in, out, what + " drawn") << "\n";
    return 0;
}

const cli::Register linesCommand({"lines", "find straight lines (Hough transform or edge chains), print and draw them",
    "usage: qel lines IN [-o OUT] (--hough [--count N] | --chains [--min-length L]) [--threshold E] [--json]\n"
    "\n"
    "Finds straight lines in a picture (colour input is converted to grey) from its Shen Jun edges\n"
    "(smoothing weight 1/4; an edge needs a grey step of at least E to a neighbour, default 20), prints\n"
    "each line's end points and its equation a x + b y + c = 0 (scaled so that a^2 + b^2 = 1), and\n"
    "with -o OUT (.png or .bmp) writes the picture in colour with the lines drawn in red.\n"
    "\n"
    "  --hough          the strongest lines of a Hough transform of every edge point (1 degree by\n"
    "                   1 pixel cells); each line is drawn across the whole picture, its end points\n"
    "                   being where it meets the border; also prints the number of edge points on\n"
    "                   it (strength) and its x cos(theta) + y sin(theta) = rho form (theta 0..179\n"
    "                   degrees, 0 a vertical line)\n"
    "  --count N        how many lines --hough takes (default 10, at most 1024), strongest first,\n"
    "                   each at least 10 pixels of rho or 10 degrees away from those taken before;\n"
    "                   fewer when no more cells have 3 votes\n"
    "  --chains         straight pieces of the edge chains, each with a least-squares line; the end\n"
    "                   points are the piece's ends on that line\n"
    "  --min-length L   shortest piece --chains reports, in pixels (default 20, at least 6)\n"
    "  --threshold E    the grey step of an edge (1..255); with --chains, values below 8 select\n"
    "                   the finder's real-valued smoothing instead of its integer one\n"
    "  --json           print one JSON object (file, method, output when written, lines: [{x1, y1,\n"
    "                   x2, y2, a, b, c} and with --hough strength, rho, theta]); the confirmation\n"
    "                   line goes to stderr\n"
    "\n"
    "Examples:\n"
    "  qel lines photo.png -o lines.png --hough --count 5\n"
    "  qel lines photo.png -o pieces.png --chains --min-length 40 --json\n",
    {"output", "count", "min-length", "threshold"}, runLines, {"hough", "chains", "json"}});

}  // namespace
