// Where the fuzz targets put an input for readers that take a file name, and how they complain.
#include "targets.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <system_error>

#if defined(_WIN32)
#  include <process.h>
#  define QEL_FUZZ_PID _getpid
#else
#  include <unistd.h>
#  define QEL_FUZZ_PID getpid
#endif

namespace qel_fuzz {
namespace {

// Memory-backed /dev/shm where there is one (Linux): writing and reopening a file there costs
// microseconds, on a disk a hundred times more. Elsewhere the temporary directory.
std::filesystem::path inputDirectory() {
    std::error_code ec;
    const std::filesystem::path shm = "/dev/shm";
    if (std::filesystem::is_directory(shm, ec)) {
        const std::filesystem::path probe = shm / ("qel_fuzz_probe_" + std::to_string(QEL_FUZZ_PID()));
        if (std::FILE* f = std::fopen(probe.string().c_str(), "wb")) {
            std::fclose(f);
            std::filesystem::remove(probe, ec);
            return shm;
        }
    }
    std::filesystem::path dir = std::filesystem::temp_directory_path(ec);
    return ec ? std::filesystem::path(".") : dir;
}

// The files of this process, removed when it ends. Several fuzzing jobs run as separate
// processes, so the process id keeps their files apart.
class InputFiles {
public:
    ~InputFiles() {
        std::error_code ec;
        for (const auto& f : paths_) std::filesystem::remove(f.second, ec);
    }
    const std::string& pathFor(const std::string& target) {
        auto it = paths_.find(target);
        if (it != paths_.end()) return it->second;
        const std::filesystem::path dir = inputDirectory();
        const std::string name = "qel_fuzz_" + std::to_string(QEL_FUZZ_PID()) + "_" + target;
        return paths_[target] = (dir / name).string();
    }

private:
    std::map<std::string, std::string> paths_;
};

}  // namespace

std::string inputFile(const char* target, const uint8_t* data, size_t size) {
    static InputFiles files;
    const std::string& path = files.pathFor(target);
    std::FILE* f = std::fopen(path.c_str(), "wb");
    const bool written = f != nullptr && (size == 0 || std::fwrite(data, 1, size, f) == size);
    const bool closed = f != nullptr && std::fclose(f) == 0;
    expect(written && closed, target, "cannot write the input file " + path);
    return path;
}

void expect(bool ok, const char* target, const std::string& what) {
    if (ok) return;
    std::fprintf(stderr, "%s: %s\n", target, what.c_str());
    std::fflush(stderr);
    std::abort();
}

}  // namespace qel_fuzz
