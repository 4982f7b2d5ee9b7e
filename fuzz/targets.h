// The fuzz targets: each feeds one input to one of the file readers of the library or the qel
// tool and checks what comes back against the documented behaviour. libFuzzer's entry point
// (libfuzzer_main.cpp) and the ordinary corpus test (tests/tool/fuzz_inputs_test.cpp) both call
// these bodies, so every committed corpus and regression file runs in every test build.
#ifndef QEL_FUZZ_TARGETS_H
#define QEL_FUZZ_TARGETS_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace qel_fuzz {

// Runs one input; returns 0 (libFuzzer's convention). A broken expectation prints what broke and
// aborts, which libFuzzer reports as a crash and saves the input.
using Entry = int (*)(const uint8_t* data, size_t size);

int bmp8(const uint8_t* data, size_t size);          // QelRead8BitBmpFile2Img on the input as a file
int bmp24(const uint8_t* data, size_t size);         // QelRead24BitBmpFile2Img on the input as a file
int list_file(const uint8_t* data, size_t size);     // the list-file reader: every line, then past the end
int camera_frame(const uint8_t* data, size_t size);  // the tool's raw-frame reading, sizes from the input
int options(const uint8_t* data, size_t size);       // the tool's option parsing, argv split from the input
int image_loader(const uint8_t* data, size_t size);  // the tool's image loader (BMP, PNG, JPEG)

struct Target {
    const char* name;  // also the directory of its corpus and regressions
    Entry entry;
};
constexpr Target kTargets[] = {
    {"bmp8", bmp8},         {"bmp24", bmp24},     {"list_file", list_file},
    {"camera_frame", camera_frame}, {"options", options}, {"image_loader", image_loader},
};

// The library's readers take a file name: the input is written to a file of this process, one per
// target, rewritten for every input and removed when the process ends: in memory-backed /dev/shm
// where it exists, else in the temporary directory. Returns its path.
std::string inputFile(const char* target, const uint8_t* data, size_t size);

// Prints "<target>: <what>" to stderr and aborts unless `ok`.
void expect(bool ok, const char* target, const std::string& what);

}  // namespace qel_fuzz

#endif
