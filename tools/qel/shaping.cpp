// qel noise / qel equalize: deliberate degradation and histogram equalisation of BMP images.
#include "common/cli.h"
#include "common/image.h"

#include <qel.h>

#include <climits>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

namespace {

void setEnvironment(const char* name, const std::string& value) {
#if defined(_WIN32)
    _putenv_s(name, value.c_str());
#else
    setenv(name, value.c_str(), 1);
#endif
}

struct NoiseName {
    const char* name;
    unsigned int type;
};
constexpr NoiseName kNoiseTypes[] = {
    {"gaussian", 0}, {"uniform", 1}, {"salt-and-pepper", 2}, {"poisson", 3}, {"rayleigh", 4},
};

unsigned int parseNoiseType(const std::string& text) {
    for (const auto& t : kNoiseTypes)
        if (text == t.name || text == std::to_string(t.type)) return t.type;
    throw cli::UsageError("unknown noise type '" + text +
                          "' (use gaussian, uniform, salt-and-pepper, poisson or rayleigh, or 0..4)");
}

const char* noiseName(unsigned int type) {
    for (const auto& t : kNoiseTypes)
        if (t.type == type) return t.name;
    return "?";
}

// ---- qel noise ------------------------------------------------------------------------------
int runNoise(const cli::Args& args) {
    args.expectPositional(2);
    if (!args.has("type")) throw cli::UsageError("--type is required (gaussian, uniform, salt-and-pepper, poisson, rayleigh)");
    if (!args.has("amount")) throw cli::UsageError("--amount is required");
    const unsigned int type = parseNoiseType(args.value("type"));
    const double amount = args.real("amount", 0.0);
    if (amount != amount) throw cli::UsageError("--amount must be a number");
    const int seed = args.integer("seed", 0);
    if (seed < 0) throw cli::UsageError("--seed wants a non-negative integer, got '" + args.value("seed") + "'");

    cli::checkOutputName(args.positional()[1]);
    cli::Image img = cli::loadImage(args.positional()[0]);
    if (img.pixels.size() > static_cast<size_t>(INT_MAX)) throw cli::UsageError("image too large");
    // The library seeds its noise generator on its first call, from QEL_NOISE_SEED when set.
    if (args.has("seed")) setEnvironment("QEL_NOISE_SEED", std::to_string(seed));
    // Colour images are degraded byte by byte, with the range taken over all three channels.
    Ostrum2008AddNoise(img.pixels.data(), static_cast<int>(img.pixels.size()), amount, type);
    std::ostringstream what;
    what << noiseName(type) << " noise, amount " << amount;
    if (args.has("seed")) what << ", seed " << seed;
    cli::saveAndConfirm(img, args.positional()[0], args.positional()[1], what.str());
    return 0;
}

// ---- qel equalize ---------------------------------------------------------------------------
int runEqualize(const cli::Args& args) {
    args.expectPositional(2);
    const std::string method = args.value("method", "fast");
    if (method != "fast" && method != "standard")
        throw cli::UsageError("unknown method '" + method + "' (use fast or standard)");
    cli::checkOutputName(args.positional()[1]);
    cli::Image img = cli::loadGrey(args.positional()[0]);
    if (method == "fast") QelHistogramEqualizeFast(img.pixels.data(), img.width, img.height);
    else QelHistogramEqualizeStandard(img.pixels.data(), img.width, img.height);
    cli::saveAndConfirm(img, args.positional()[0], args.positional()[1], "equalised (" + method + ")");
    return 0;
}

const cli::Register noise({"noise", "add Gaussian, uniform, salt-and-pepper, Poisson or Rayleigh noise",
    "usage: qel noise IN OUT --type T --amount A [--seed N]\n\n"
    "Adds noise to every pixel of IN (every byte of a colour image) and writes OUT (.bmp or\n"
    ".png, grey or colour as IN is).\n"
    "Types (name or number):\n"
    "  gaussian (0)         pixel + normal draw x A\n"
    "  uniform (1)          pixel + uniform draw in -A..A\n"
    "  salt-and-pepper (2)  A percent of the pixels go to the darkest or brightest level\n"
    "                       (black or white on a flat image)\n"
    "  poisson (3)          Poisson draw around each pixel; A is not used (but 0 adds nothing);\n"
    "                       results above 255 wrap\n"
    "  rayleigh (4)         length of two normal draws x A around the pixel\n"
    "Gaussian, uniform and Rayleigh results stay within the image's own darkest..brightest\n"
    "levels. A negative A means -A percent of that range. A = 0 leaves the image unchanged.\n\n"
    "  --seed N    seeds the generator (N >= 0), so that runs with the same seed give the same\n"
    "              noise; without it the generator is seeded from the clock and two runs differ.\n",
    {"type", "amount", "seed"}, runNoise});

const cli::Register equalize({"equalize", "equalise the histogram of a grey image",
    "usage: qel equalize IN OUT [--method fast|standard]\n\n"
    "Equalises the grey levels of IN (colour input is converted to grey first, and the tool\n"
    "says so). fast (default): level g becomes 255 x (pixels at or below g) / pixels.\n"
    "standard: matches a flat histogram over as many bins as IN has levels, keeping level\n"
    "order; the result stays below 255.\n",
    {"method"}, runEqualize});

}  // namespace
