// Where the qel tool finds the files it is shipped with.
#include "samples.h"

#include "cli.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#ifdef _WIN32
#  ifndef WIN32_LEAN_AND_MEAN
#    define WIN32_LEAN_AND_MEAN
#  endif
#  ifndef NOMINMAX
#    define NOMINMAX
#  endif
#  include <windows.h>
#endif

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

// The running program's directory (empty when it cannot be found): GetModuleFileNameW on Windows,
// /proc/self/exe elsewhere, as the library finds its font.
std::string executableDirectory() {
#ifdef _WIN32
    std::wstring self(32768, L'\0');
    const DWORD n = GetModuleFileNameW(nullptr, self.data(), static_cast<DWORD>(self.size()));
    if (n == 0 || n >= self.size()) return std::string();
    self.resize(n);
    try {
        return fs::path(self).parent_path().string();
    } catch (const std::exception&) {  // a name the narrow code page cannot hold
        return std::string();
    }
#else
    std::error_code ec;
    const fs::path self = fs::read_symlink("/proc/self/exe", ec);
    return ec ? std::string() : self.parent_path().string();
#endif
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
