// The list-file reader and the three functions that act on the library's one instance.
#include "io/sequence_files.h"

#include "qel/io.h"

#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <new>

namespace qel {

namespace {

constexpr char kCarriageReturn = '\r';
constexpr char kLineFeed = '\n';
constexpr int kLineEndBytes = 2;

// Created when the library is loaded, destroyed (and its text released) when it is unloaded.
QelSequenceFiles g_sequenceFiles;

// Length of an open file, or -1 when it cannot be told or does not fit an int.
long long list_file_length(std::FILE* f) {
    if (std::fseek(f, 0, SEEK_END) != 0) return -1;
    const long long length = std::ftell(f);
    return length > INT_MAX ? -1 : length;
}

}  // namespace

QelSequenceFiles& sequence_files() { return g_sequenceFiles; }

QelSequenceFiles::~QelSequenceFiles() { release(); }

void QelSequenceFiles::release() {
    delete[] text_;
    text_ = nullptr;
    std::memset(listFileName_, 0, sizeof listFileName_);
    initialised_ = false;
    capacity_ = 0;
}

bool QelSequenceFiles::Initialize(const char* listFileName) {
    initialised_ = false;
    cursor_ = 0;
    std::memset(listFileName_, 0, sizeof listFileName_);
    std::strncpy(listFileName_, listFileName, kNameCapacity - 1);

    std::FILE* f = std::fopen(listFileName, "rb");
    if (f == nullptr) return false;
    const long long length = list_file_length(f);
    if (length < 0) {
        std::fclose(f);
        return false;
    }
    size_ = static_cast<int>(length);
    if (size_ > capacity_) {
        // Growing the buffer goes through release(), which also clears the stored name: intended.
        release();
        text_ = new (std::nothrow) char[static_cast<size_t>(size_)];
        if (text_ != nullptr) capacity_ = size_;
    }
    if (text_ == nullptr) {
        // No buffer (an empty first list, or a failed allocation): nothing to read lines from.
        size_ = 0;
        std::fclose(f);
        return false;
    }
    std::rewind(f);
    // Only bytes actually read count as text, so a short read never exposes stale buffer contents.
    size_ = static_cast<int>(std::fread(text_, 1, static_cast<size_t>(size_), f));
    std::fclose(f);
    initialised_ = true;
    return true;
}

int QelSequenceFiles::find_line_end(int from) const {
    for (int i = from; i <= size_ - kLineEndBytes; ++i)
        if (text_[i] == kCarriageReturn && text_[i + 1] == kLineFeed) return i;
    return -1;
}

void QelSequenceFiles::copy_line(int start, int end, char* buffer) const {
    int length = end - start;
    std::memcpy(buffer, text_ + start, static_cast<size_t>(length));
    // Trailing blanks (the space character only) become terminators; leading ones stay.
    while (length > 0 && buffer[length - 1] == ' ') buffer[--length] = '\0';
}

bool QelSequenceFiles::GetFileName(int index, char* buffer, int n) const {
    if (n > 0) std::memset(buffer, 0, static_cast<size_t>(n));
    int start = 0;
    int end = -1;
    for (int line = 0;; ++line) {
        end = find_line_end(start);
        if (end < 0) return false;  // fewer lines than index + 1 (a last line without CR LF is no line)
        if (line == index) break;
        start = end + kLineEndBytes;
    }
    if (end - start >= n) return false;  // room for the terminator is required
    copy_line(start, end, buffer);
    return true;
}

bool QelSequenceFiles::GetNextFileName(char* buffer, int n) {
    if (n > 0) std::memset(buffer, 0, static_cast<size_t>(n));
    const int end = find_line_end(cursor_);
    if (end < 0) return false;
    const int start = cursor_;
    cursor_ = end + kLineEndBytes;
    if (end - start >= n) return false;  // the line is skipped: the next call returns the following one
    copy_line(start, end, buffer);
    return true;
}

}  // namespace qel

bool QelSequenceFiles_Initialize(char* listFileName) { return qel::sequence_files().Initialize(listFileName); }

bool QelSequenceFiles_GetFileName(int index, char* buffer, int bufferSize) {
    return qel::sequence_files().GetFileName(index, buffer, bufferSize);
}

bool QelSequenceFiles_GetNextFileName(char* buffer, int bufferSize) {
    return qel::sequence_files().GetNextFileName(buffer, bufferSize);
}
