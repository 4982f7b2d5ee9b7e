// qel morph: dilation, erosion, 3 × 3 majority, thinning and speck removal on binary images.
#include "common/binarise.h"
#include "common/cli.h"
#include "common/image.h"

#include <qel.h>

#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

namespace {

constexpr int kNeighbours = 8;
constexpr unsigned char kObject = 255;

enum class Operation { Dilate, Erode, Median, Thin, Clean };

struct OperationName {
    const char* name;
    Operation op;
};
constexpr OperationName kOperations[] = {
    {"dilate", Operation::Dilate}, {"erode", Operation::Erode}, {"median", Operation::Median},
    {"thin", Operation::Thin},     {"clean", Operation::Clean},
};

Operation findOperation(const std::string& name) {
    for (const auto& o : kOperations)
        if (name == o.name) return o.op;
    return Operation::Dilate;
}

bool isBinary(const std::vector<unsigned char>& pixels) {
    return std::all_of(pixels.begin(), pixels.end(), [](unsigned char p) { return p == 0 || p == kObject; });
}

int runMorph(const cli::Args& args) {
    args.expectPositional(2);
    const std::string name = args.oneOf({"dilate", "erode", "median", "thin", "clean"});
    const Operation op = findOperation(name);
    int n = 0;
    if (op == Operation::Clean) {
        n = args.integer("clean", 0);
        if (n < 1 || n > kNeighbours)
            throw cli::UsageError("--clean wants a neighbour count between 1 and 8, got '" + args.value("clean") + "'");
    }

    const std::string in = args.positional()[0];
    const std::string out = args.positional()[1];
    cli::checkOutputName(out);
    cli::Image img = cli::loadGrey(in);
    const int w = img.width;
    const int h = img.height;
    if (!isBinary(img.pixels)) {
        int hist[cli::kGreyLevels];
        QelGetHistogram(img.pixels.data(), w, h, hist);
        const cli::ChosenThreshold chosen = cli::chooseThreshold(hist);
        QelThreshold(img.pixels.data(), w, h, chosen.level);
        std::cerr << "qel morph: " << in << " is not binary (0/255); binarised at threshold " << chosen.level << " ("
                  << chosen.reason << "): levels >= " << chosen.level << " become 255\n";
    }

    std::vector<unsigned char> result(img.pixels.size());
    switch (op) {
        case Operation::Dilate: QelBinImgMaxFilter3x3(img.pixels.data(), w, h, result.data()); break;
        case Operation::Erode: QelBinImgMinFilter3x3(img.pixels.data(), w, h, result.data()); break;
        case Operation::Median: QelBinImgMedFilter3x3(img.pixels.data(), w, h, result.data()); break;
        case Operation::Thin: {
            std::vector<unsigned char> work(img.pixels.size());
            const int passes = QelBinImgThin(img.pixels.data(), work.data(), w, h, result.data());
            std::cout << "thinned in " << passes << " pass" << (passes == 1 ? "" : "es") << "\n";
            break;
        }
        case Operation::Clean: {
            result = img.pixels;
            QelBinImgDeletePointsLessThanN(result.data(), w, h, kObject, n);
            break;
        }
    }
    const long before = static_cast<long>(std::count(img.pixels.begin(), img.pixels.end(), kObject));
    const long after = static_cast<long>(std::count(result.begin(), result.end(), kObject));
    img.pixels.swap(result);
    cli::saveAndConfirm(img, in, out, "--" + name + ", object pixels " + std::to_string(before) + " -> " + std::to_string(after));
    return 0;
}

const cli::Register morph({"morph", "dilate, erode, majority-filter, thin or clean a binary image",
    "usage: qel morph IN OUT --dilate|--erode|--median|--thin|--clean N\n"
    "\n"
    "Works on binary images (0 background, 255 object) and writes OUT (.bmp or .png). A grey or\n"
    "colour input that holds other levels is converted to grey and binarised first, at the\n"
    "threshold qel threshold would choose (a 0/128 mask: 128 is object), said on stderr.\n"
    "Give exactly one operation:\n"
    "  --dilate   3 x 3 dilation: object pixels next to background set their 8 neighbours to 255\n"
    "  --erode    3 x 3 erosion: background pixels next to background set their 8 neighbours to 0\n"
    "             (a lone background pixel spreads nothing)\n"
    "  --median   3 x 3 majority: 255 where at least 5 of the 8 neighbours are object; the outer\n"
    "             rows and columns become 0\n"
    "  --thin     thinning to a one-pixel skeleton (prints the number of passes); the outer rows\n"
    "             and columns become 0\n"
    "  --clean N  removes object pixels with fewer than N (1..8) object neighbours, in raster\n"
    "             order, so removals are seen by later pixels; the outer rows and columns are kept\n"
    "The outer row and column are never centres of the 3 x 3 operations.\n"
    "Examples:\n"
    "  qel morph mask.bmp grown.bmp --dilate\n"
    "  qel morph photo.bmp skeleton.bmp --thin\n"
    "  qel morph mask.bmp clean.bmp --clean 2\n",
    {"clean"}, runMorph, {"dilate", "erode", "median", "thin"}});

}  // namespace
