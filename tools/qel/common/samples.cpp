// Where the qel tool finds the files it is shipped with.
#include "samples.h"

#include "cli.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

// Set by the build: the samples directory relative to the installed executable's directory, and
// the source tree's samples directory.
#ifndef QEL_SAMPLES_FROM_BIN
#  define QEL_SAMPLES_FROM_BIN "../share/qel/samples"
#endif
#ifndef QEL_SAMPLES_SOURCE_DIR
#  define QEL_SAMPLES_SOURCE_DIR ""
#endif

namespace cli {

namespace {
namespace fs = std::filesystem;

constexpr const char* kFontName = "hzk16.dat";
constexpr const char* kFontVariable = "QEL_FONT_FILE";  // the library reads the same variable
}  // namespace

std::string executableDirectory() {
    std::error_code ec;
    const fs::path self = fs::read_symlink("/proc/self/exe", ec);
    return ec ? std::string() : self.parent_path().string();
}

std::string fontFile() {
    const char* named = std::getenv(kFontVariable);
    if (named != nullptr && *named != '\0') return named;
    const std::string bin = executableDirectory();
    return bin.empty() ? std::string() : (fs::path(bin) / kFontName).string();
}

std::vector<std::string> sampleDirectories() {
    std::vector<std::string> dirs;
    const std::string bin = executableDirectory();
    if (!bin.empty()) dirs.push_back((fs::path(bin) / QEL_SAMPLES_FROM_BIN).lexically_normal().string());
    if (std::string(QEL_SAMPLES_SOURCE_DIR).size() > 0) dirs.push_back(QEL_SAMPLES_SOURCE_DIR);
    return dirs;
}

std::string bundledSample(const std::string& name) {
    std::string lookedIn;
    for (const std::string& dir : sampleDirectories()) {
        const fs::path candidate = fs::path(dir) / name;
        std::error_code ec;
        if (fs::is_regular_file(candidate, ec)) return candidate.string();
        lookedIn += (lookedIn.empty() ? "" : ", ") + dir;
    }
    throw UsageError("the bundled sample " + name + " is not installed (looked in " +
                     (lookedIn.empty() ? std::string("no place known") : lookedIn) + "); name an image file");
}

}  // namespace cli
