// The list-file reader on any bytes: every line by index and by cursor, with a buffer that holds
// everything and with a small one, then reads past the end. Held against a reference split of the
// same bytes at CR LF.
#include "targets.h"

#include <qel.h>

#include <climits>
#include <string>
#include <vector>

namespace qel_fuzz {
namespace {

constexpr const char* kTarget = "list_file";
constexpr int kSmallBuffer = 8;

// The lines of a list: each ended by the first CR LF after its start; bytes after the last CR LF
// are no line.
std::vector<std::string> referenceLines(const uint8_t* d, size_t n) {
    std::vector<std::string> lines;
    size_t start = 0;
    for (size_t i = 0; i + 1 < n; ++i) {
        if (d[i] == '\r' && d[i + 1] == '\n') {
            lines.emplace_back(reinterpret_cast<const char*>(d) + start, i - start);
            start = i + 2;
            ++i;
        }
    }
    return lines;
}

// The `n` bytes a getter leaves in its buffer for `line`: the line with its trailing spaces turned
// into terminators, zeros after it; all zeros when the line does not fit with a terminator.
std::vector<char> expectedBuffer(const std::string& line, int n) {
    std::vector<char> b(static_cast<size_t>(n), '\0');
    if (static_cast<int>(line.size()) >= n) return b;
    std::copy(line.begin(), line.end(), b.begin());
    for (size_t k = line.size(); k > 0 && b[k - 1] == ' '; --k) b[k - 1] = '\0';
    return b;
}

void expectBuffer(const std::vector<char>& got, const std::vector<char>& want, const std::string& what) {
    expect(got == want, kTarget, what + ": buffer differs");
}

}  // namespace

int list_file(const uint8_t* data, size_t size) {
    std::string path = inputFile(kTarget, data, size);
    // An empty list read before any buffer was made has nothing to read into and gives false.
    expect(QelSequenceFiles_Initialize(&path[0]) || size == 0, kTarget, "Initialize failed on a readable file");
    const std::vector<std::string> lines = referenceLines(data, size);
    const int count = static_cast<int>(lines.size());
    const int whole = static_cast<int>(size) + 1;

    // Every line by index, whole; then indices with no line, which leave the buffer zeroed.
    for (int i = 0; i < count; ++i) {
        std::vector<char> b(static_cast<size_t>(whole), 'x');
        expect(QelSequenceFiles_GetFileName(i, b.data(), whole), kTarget, "line " + std::to_string(i) + " missing");
        expectBuffer(b, expectedBuffer(lines[static_cast<size_t>(i)], whole), "line " + std::to_string(i));
    }
    for (int index : {count, count + 1, count + 7, INT_MAX, -1, INT_MIN}) {
        std::vector<char> b(static_cast<size_t>(whole), 'x');
        expect(!QelSequenceFiles_GetFileName(index, b.data(), whole), kTarget, "index " + std::to_string(index) + " found");
        expectBuffer(b, std::vector<char>(static_cast<size_t>(whole), '\0'), "index " + std::to_string(index));
    }

    // By cursor with a small buffer: a line too long is skipped with false; the end stays the end.
    for (int i = 0; i < count; ++i) {
        std::vector<char> b(kSmallBuffer, 'x');
        const bool fits = static_cast<int>(lines[static_cast<size_t>(i)].size()) < kSmallBuffer;
        expect(QelSequenceFiles_GetNextFileName(b.data(), kSmallBuffer) == fits, kTarget,
               "next line " + std::to_string(i) + (fits ? " refused" : " accepted"));
        expectBuffer(b, expectedBuffer(lines[static_cast<size_t>(i)], kSmallBuffer), "next line " + std::to_string(i));
    }
    for (int k = 0; k < 2; ++k) {
        std::vector<char> b(kSmallBuffer, 'x');
        expect(!QelSequenceFiles_GetNextFileName(b.data(), kSmallBuffer), kTarget, "a line after the last");
    }

    // Again from the start, whole lines by cursor, and a zero-sized buffer fits nothing.
    expect(QelSequenceFiles_Initialize(&path[0]) || size == 0, kTarget, "second Initialize failed");
    if (count > 0) {
        char none = 'x';
        expect(!QelSequenceFiles_GetFileName(0, &none, 0) && none == 'x', kTarget, "a line fitted no buffer");
    }
    for (int i = 0; i < count; ++i) {
        std::vector<char> b(static_cast<size_t>(whole), 'x');
        expect(QelSequenceFiles_GetNextFileName(b.data(), whole), kTarget, "next line " + std::to_string(i) + " missing");
        expectBuffer(b, expectedBuffer(lines[static_cast<size_t>(i)], whole), "next line " + std::to_string(i));
    }
    return 0;
}

}  // namespace qel_fuzz
