// qel inspect: the objects of a picture found, measured and marked (threshold, specks removed,
// outer contours, box, centre, area, perimeter, mean grey), for one file, every picture of a
// directory, or the bundled coins photograph.
#include "common/cli.h"
#include "common/image.h"
#include "common/inspect.h"
#include "common/json.h"
#include "common/samples.h"

#include <cstdio>
#include <filesystem>
#include <iostream>
#include <map>
#include <string>
#include <system_error>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr const char* kSample = "coins.bmp";
// Annotated pictures are named after their input: NAME.EXT gives NAME_inspect.png.
constexpr const char* kResultSuffix = "_inspect";
constexpr const char* kResultExtension = ".png";
constexpr int kMeanDecimals = 2;

// One input and what became of it.
struct Report {
    std::string file;
    std::string output;
    std::string error;  // why the file could not be read; nothing else is set then
    cli::Image image;   // only its size and kind are kept (the pixels are dropped once written)
    cli::InspectResult result;
};

cli::InspectOptions readOptions(const cli::Args& args) {
    cli::InspectOptions options;
    if (args.has("threshold")) {
        options.threshold = args.integer("threshold", 0);
        if (options.threshold < 0 || options.threshold > 255)
            throw cli::UsageError("--threshold wants a grey level between 0 and 255, got '" + args.value("threshold") + "'");
    }
    options.dark = args.flag("dark");
    options.numbers = !args.flag("no-numbers");
    options.minArea = args.integer("min-area", options.minArea);
    if (options.minArea < 0)
        throw cli::UsageError("--min-area wants a pixel count of 0 or more, got '" + args.value("min-area") + "'");
    return options;
}

std::string resultName(const std::string& input) {
    return fs::path(input).stem().string() + kResultSuffix + kResultExtension;
}

// Result names of a directory's pictures: NAME_inspect.png, or NAME_EXT_inspect.png for pictures
// that share their NAME (a.bmp and a.png), so no result overwrites another.
std::vector<std::string> resultNames(const std::vector<std::string>& inputs) {
    std::map<std::string, int> uses;
    for (const std::string& f : inputs) ++uses[resultName(f)];
    std::vector<std::string> names;
    for (const std::string& f : inputs) {
        if (uses[resultName(f)] == 1) {
            names.push_back(resultName(f));
            continue;
        }
        const fs::path p(f);
        std::string ext = p.extension().string();
        if (!ext.empty()) ext[0] = '_';
        names.push_back(p.stem().string() + ext + kResultSuffix + kResultExtension);
    }
    return names;
}

// A picture an earlier run wrote: left out when a directory is inspected.
bool isResult(const std::string& path) {
    const std::string stem = fs::path(path).stem().string();
    const std::string suffix = kResultSuffix;
    return stem.size() > suffix.size() && stem.compare(stem.size() - suffix.size(), suffix.size(), suffix) == 0;
}

bool isDirectory(const std::string& path) {
    std::error_code ec;
    return fs::is_directory(path, ec);
}

// Inspects one file and writes its annotated picture; an unreadable file is reported, not thrown,
// when `keepGoing` (a directory run goes on with the next file).
Report inspectFile(const std::string& in, const std::string& out, const cli::InspectOptions& options, bool keepGoing) {
    Report report;
    report.file = in;
    try {
        report.image = cli::loadImage(in);
    } catch (const cli::UsageError& e) {
        if (!keepGoing) throw;
        report.error = e.what();
        return report;
    }
    report.result = cli::inspect(report.image, options);
    cli::saveImage(report.result.annotated, out);
    report.output = out;
    // A directory run keeps every report until the end: without their pixels.
    std::vector<unsigned char>().swap(report.image.pixels);
    std::vector<unsigned char>().swap(report.result.annotated.pixels);
    return report;
}

std::string objectCount(size_t n) { return std::to_string(n) + (n == 1 ? " object" : " objects"); }

std::string thresholdText(const Report& r) {
    return std::to_string(r.result.threshold) + " (" + r.result.thresholdReason + ")";
}

std::string confirm(const Report& r) {
    return cli::confirmation(r.result.annotated, r.file, r.output,
                             objectCount(r.result.objects.size()) + ", threshold " + thresholdText(r));
}

void printTable(const Report& r, const cli::InspectOptions& options) {
    std::cout << r.file << ": " << r.image.width << " x " << r.image.height << (r.image.isGrey() ? " grey" : " colour")
              << ", threshold " << thresholdText(r) << ", objects " << (options.dark ? "below" : "at or above")
              << " it\n"
              << objectCount(r.result.objects.size()) << " of at least " << options.minArea << " pixels\n";
    if (r.result.objects.empty()) return;
    std::printf("%4s %7s %9s %5s %5s %5s %6s %8s %8s %9s\n", "#", "area", "perimeter", "left", "right", "top", "bottom",
                "centre x", "centre y", "mean grey");
    int n = 0;
    for (const cli::InspectObject& o : r.result.objects)
        std::printf("%4d %7d %9d %5d %5d %5d %6d %8d %8d %9.*f\n", ++n, o.area, o.perimeter, o.left, o.right, o.top,
                    o.bottom, o.centreX, o.centreY, kMeanDecimals, o.meanGrey);
    std::fflush(stdout);
}

void writeJson(cli::JsonWriter& json, const Report& r, const cli::InspectOptions& options) {
    json.beginObject().key("file").value(r.file);
    if (!r.error.empty()) {
        json.key("error").value(r.error).endObject();
        return;
    }
    json.key("width").value(r.image.width)
        .key("height").value(r.image.height)
        .key("colour").value(!r.image.isGrey())
        .key("threshold").value(r.result.threshold)
        .key("threshold_rule").value(r.result.thresholdReason)
        .key("dark").value(options.dark)
        .key("min_area").value(options.minArea)
        .key("output").value(r.output)
        .key("objects").beginArray();
    for (const cli::InspectObject& o : r.result.objects) {
        json.beginObject()
            .key("area").value(o.area)
            .key("perimeter").value(o.perimeter)
            .key("left").value(o.left)
            .key("right").value(o.right)
            .key("top").value(o.top)
            .key("bottom").value(o.bottom)
            .key("centre_x").value(o.centreX)
            .key("centre_y").value(o.centreY)
            .key("mean_grey").value(o.meanGrey, kMeanDecimals)
            .endObject();
    }
    json.endArray().endObject();
}

// One picture: the table (or JSON) and its confirmation line, which goes to stderr with --json
// so that stdout holds the JSON alone.
int inspectOne(const std::string& in, const std::string& out, const cli::InspectOptions& options, bool json) {
    cli::checkOutputName(out);
    const Report r = inspectFile(in, out, options, false);
    if (json) {
        cli::JsonWriter writer(std::cout);
        writeJson(writer, r, options);
        std::cerr << confirm(r) << "\n";
    } else {
        printTable(r, options);
        std::cout << confirm(r) << "\n";
    }
    return 0;
}

// The directory a directory run writes into: -o DIR (made when missing, once the inputs are
// known to be fine) or the inputs' own.
std::string outputDirectory(const cli::Args& args, const std::string& inputs) {
    if (!args.has("output")) return inputs;
    const std::string dir = args.value("output");
    std::error_code ec;
    if (fs::exists(dir, ec) && !isDirectory(dir))
        throw cli::UsageError("'" + dir + "' is a file; with a directory of pictures, -o names a directory");
    if (!fs::exists(dir, ec) && cli::hasImageExtension(dir))
        throw cli::UsageError("'" + dir + "' names a picture; with a directory of pictures, -o names a directory");
    return dir;
}

int inspectDirectory(const std::string& dir, const cli::Args& args, const cli::InspectOptions& options, bool json) {
    const std::string outDir = outputDirectory(args, dir);
    std::vector<std::string> files;
    for (const std::string& f : cli::listImageFiles(dir))
        if (!isResult(f)) files.push_back(f);
    if (files.empty()) throw cli::UsageError("no BMP, PNG or JPEG pictures in '" + dir + "'");
    const std::vector<std::string> names = resultNames(files);
    std::error_code ec;
    if (!isDirectory(outDir) && (!fs::create_directories(outDir, ec) || ec))
        throw cli::Failure("cannot make the directory '" + outDir + "'");

    std::vector<Report> reports;
    bool anyUnreadable = false;
    const long total = static_cast<long>(files.size());
    cli::progress("inspect", 0, total);
    for (size_t i = 0; i < files.size(); ++i) {
        reports.push_back(inspectFile(files[i], (fs::path(outDir) / names[i]).string(), options, true));
        const Report& r = reports.back();
        cli::progress("inspect", static_cast<long>(i + 1), total);
        if (!r.error.empty()) {
            anyUnreadable = true;
            std::cerr << "qel inspect: " << r.error << "\n";
        } else {
            (json ? std::cerr : std::cout) << confirm(r) << "\n";
        }
    }
    if (json) {
        cli::JsonWriter writer(std::cout);
        writer.beginArray();
        for (const Report& r : reports) writeJson(writer, r, options);
        writer.endArray();
    }
    return anyUnreadable ? cli::kExitBadInput : 0;
}

int runInspect(const cli::Args& args) {
    const cli::InspectOptions options = readOptions(args);
    const bool json = args.flag("json");
    if (args.positional().size() > 1) throw cli::UsageError("unexpected argument '" + args.positional()[1] + "'");

    if (args.positional().empty()) {
        // The bundled sample is read where it is installed and its picture written here.
        const std::string sample = cli::bundledSample(kSample);
        const std::string out = args.value("output", resultName(sample));
        return inspectOne(sample, isDirectory(out) ? (fs::path(out) / resultName(sample)).string() : out, options, json);
    }
    const std::string in = args.positional()[0];
    if (isDirectory(in)) return inspectDirectory(in, args, options, json);
    cli::requireInputFile(in);
    std::string out = (fs::path(in).parent_path() / resultName(in)).string();
    if (args.has("output")) {
        out = args.value("output");
        if (isDirectory(out)) out = (fs::path(out) / resultName(in)).string();
    }
    return inspectOne(in, out, options, json);
}

const cli::Register inspectCommand({"inspect", "find, measure and mark the objects of a picture (or a directory)",
    "usage: qel inspect [IN | DIR] [-o OUT] [--threshold T] [--dark] [--min-area A] [--no-numbers] [--json]\n"
    "\n"
    "Finds the objects of a picture and measures them, the library's typical use end to end:\n"
    "grey (colour input is converted), histogram, threshold, binarisation, specks removed (object\n"
    "pixels with fewer than 2 object neighbours), outer contours; for each object its area (pixels\n"
    "enclosed, boundary and holes included), perimeter, bounding box, centre (mean of the boundary\n"
    "points) and the mean grey level of the pixels it encloses. Prints a table of the objects and\n"
    "writes the picture in colour with each object's box in red, a green cross on its centre and\n"
    "its number from the table in yellow on black just above the box (below it at the top edge).\n"
    "\n"
    "  IN            a BMP, PNG or JPEG picture; without it, the bundled photograph coins.bmp\n"
    "                (24 coins on a grey background)\n"
    "  DIR           a directory: every BMP, PNG and JPEG picture in it, in name order, except the\n"
    "                NAME_inspect.png pictures of an earlier run; one line per picture (a progress\n"
    "                line on stderr); unreadable pictures are reported and skipped (exit status 2).\n"
    "                Pictures sharing a NAME (a.bmp, a.png) give NAME_EXT_inspect.png (a_bmp_...)\n"
    "  -o OUT        where the annotated picture goes (.png or .bmp), or an existing directory to\n"
    "                put NAME_inspect.png in. By default NAME_inspect.png beside each input; for\n"
    "                the bundled sample, coins_inspect.png in the current directory. With DIR, the\n"
    "                directory the pictures go into, made when missing\n"
    "  --threshold T grey level 0..255 that separates objects from background; by default Otsu's\n"
    "                threshold, chosen as qel threshold chooses it (see qel threshold --help)\n"
    "  --dark        the objects are darker than the background: pixels below the threshold are\n"
    "                object (by default pixels at or above it)\n"
    "  --min-area A  objects enclosing fewer than A pixels are not listed (default 100)\n"
    "  --no-numbers  leave the objects' numbers out of the picture\n"
    "  --json        print JSON instead of the table: one object (file, width, height, colour,\n"
    "                threshold, threshold_rule, dark, min_area, output, objects: [{area, perimeter,\n"
    "                left, right, top, bottom, centre_x, centre_y, mean_grey}]), or for DIR an array\n"
    "                of them (an unreadable picture: {file, error}); the confirmation lines then go\n"
    "                to stderr\n"
    "\n"
    "Examples:\n"
    "  qel inspect                              # the coins; writes coins_inspect.png\n"
    "  qel inspect parts.png -o marked.png --min-area 50\n"
    "  qel inspect scans/ -o results/ --dark --json > results/objects.json\n",
    {"output", "threshold", "min-area"}, runInspect, {"dark", "no-numbers", "json"}});

}  // namespace
