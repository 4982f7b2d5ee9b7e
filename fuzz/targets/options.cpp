// The qel tool's option parsing with argv split from the input at newlines, against a union of the
// subcommands' options. Every accessor either answers as documented or throws a UsageError.
#include "targets.h"

#include "common/cli.h"

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace qel_fuzz {
namespace {

constexpr const char* kTarget = "options";

const std::vector<std::string> kValueOptions = {"from",  "to",     "width", "height", "rect",    "angle",     "center",
                                                "scale", "size",   "method", "output", "threshold", "amount", "seed",
                                                "min-area", "colour", "at",  "plot",   "plot-size", "tolerance"};
const std::vector<std::string> kFlags = {"sobel", "roberts", "json", "horizontal", "vertical", "dark", "no-numbers",
                                         "hough", "chains", "cols", "rows"};

std::vector<std::string> splitWords(const uint8_t* data, size_t size) {
    std::vector<std::string> words(1);
    for (size_t i = 0; i < size; ++i) {
        if (data[i] == '\n') words.emplace_back();
        else words.back().push_back(static_cast<char>(data[i]));
    }
    return words;
}

// Runs `f`; a UsageError is an answer, anything else escapes and is a crash.
template <class F>
void tryOption(F f) {
    try {
        f();
    } catch (const cli::UsageError&) {
    }
}

// An integer the parser accepted must be the decimal number its text says.
void expectSameNumber(const std::string& text, int v) {
    errno = 0;
    char* end = nullptr;
    const long long parsed = std::strtoll(text.c_str(), &end, 10);
    expect(!text.empty() && *end == '\0' && errno == 0 && parsed == v, kTarget, "integer '" + text + "' read as " + std::to_string(v));
}

}  // namespace

int options(const uint8_t* data, size_t size) {
    const std::vector<std::string> words = splitWords(data, size);
    std::unique_ptr<cli::Args> parsed;
    try {
        parsed = std::make_unique<cli::Args>(words, kValueOptions, kFlags);
    } catch (const cli::UsageError&) {
        return 0;
    }
    const cli::Args& args = *parsed;
    for (const std::string& w : args.positional())
        expect(!(w.size() > 2 && w.compare(0, 2, "--") == 0) && w != "-o", kTarget, "option '" + w + "' taken as positional");
    tryOption([&] { args.expectPositional(2); });
    tryOption([&] { args.expectAtLeast(1); });
    tryOption([&] {
        const int v = args.integer("width", 7);
        if (args.has("width")) expectSameNumber(args.value("width"), v);
        else expect(v == 7, kTarget, "integer fallback not returned");
    });
    tryOption([&] { (void)args.real("angle", 0.0); });
    tryOption([&] {
        const std::vector<int> r = args.integers("rect", 4);
        expect(r.size() == 4, kTarget, "--rect gave " + std::to_string(r.size()) + " integers");
    });
    tryOption([&] { expect(args.integers("center", 2).size() == 2, kTarget, "--center gave the wrong count"); });
    tryOption([&] {
        const std::string one = args.oneOf({"sobel", "roberts", "threshold"});
        expect(args.flag(one) || args.has(one), kTarget, "oneOf chose an option not given");
    });
    (void)args.value("method", "bilinear");
    return 0;
}

}  // namespace qel_fuzz
