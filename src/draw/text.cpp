// Font text: two-byte GB2312 codes drawn from the 16 x 16 bitmap font file beside the program, at
// natural size or doubled, and the converter from ASCII to the full-width codes the font holds.
#include "qel/draw.h"

#include "core/platform.h"
#include "draw/glyph.h"
#include "draw/raster.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#if defined(_WIN32)
#  ifndef WIN32_LEAN_AND_MEAN
#    define WIN32_LEAN_AND_MEAN
#  endif
#  include <windows.h>
#endif

namespace {

using qel::draw::BgrPen;
using qel::draw::GreyPen;

constexpr char kFontFileName[] = "hzk16.dat";
constexpr char kFontOverride[] = "QEL_FONT_FILE";  // names another font file, for tests and installs

// Record layout: 16 rows of 2 bytes (pixels 0..7, then 8..15, most significant bit leftmost), one
// record per code, 94 codes a row of the code table from lead byte 0xA1.
constexpr int kGlyphSize = 16;
constexpr int kRecordBytes = 32;
constexpr int kCodesPerRow = 94;
constexpr int kFirstCodeByte = 0xA1;

// The 0xA3 row of the code table holds the full-width forms of ASCII 0x21..0x7E at byte + 128.
constexpr unsigned char kFullWidthLead = 0xA3;

std::string font_path() {
    if (const char* over = std::getenv(kFontOverride); over != nullptr && *over != '\0') return over;
    const std::string dir = qel::executable_directory();
    return dir.empty() ? std::string() : dir + kFontFileName;
}

// The path comes as UTF-8 from the platform layer; Windows opens it through its wide form so that
// any directory name works.
std::FILE* open_font(const std::string& path) {
    if (path.empty()) return nullptr;
#if defined(_WIN32)
    const int n = MultiByteToWideChar(CP_UTF8, 0, path.c_str(), -1, nullptr, 0);
    if (n <= 0) return nullptr;
    std::wstring wide(static_cast<size_t>(n), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, path.c_str(), -1, &wide[0], n);
    return _wfopen(wide.c_str(), L"rb");
#else
    return std::fopen(path.c_str(), "rb");
#endif
}

// The record of code (hi, lo). A code whose record would start before the file draws blank; a
// record cut short by the end of the file keeps clear bits where nothing was read.
void read_record(std::FILE* font, unsigned char hi, unsigned char lo, unsigned char record[kRecordBytes]) {
    std::memset(record, 0, kRecordBytes);
    const long offset = (static_cast<long>(hi - kFirstCodeByte) * kCodesPerRow + (lo - kFirstCodeByte)) * kRecordBytes;
    if (offset < 0 || std::fseek(font, offset, SEEK_SET) != 0) return;
    if (std::fread(record, 1, kRecordBytes, font) < kRecordBytes) std::clearerr(font);
}

// How one of the four font functions places its text.
struct TextLayout {
    int scale;          // 1 for 16 x 16 glyphs, 2 for 32 x 32
    int refusedMargin;  // refused when y >= height - refusedMargin
};

template <class Pen>
bool draw_text(int width, int height, int x, int y, int spacing, const TextLayout& layout, const Pen& paper,
               const Pen& ink, const char* text) {
    if (int64_t{y} >= int64_t{height} - layout.refusedMargin) return false;
    std::FILE* font = open_font(font_path());
    if (font == nullptr) return false;
    const int cell = kGlyphSize * layout.scale;
    const size_t length = text == nullptr ? 0 : std::strlen(text);
    // Two bytes at a time; an odd last byte is paired with the terminating zero.
    for (size_t i = 0; i < length; i += 2) {
        unsigned char record[kRecordBytes];
        read_record(font, static_cast<unsigned char>(text[i]), static_cast<unsigned char>(text[i + 1]), record);
        qel::draw::draw_glyph(ink, &paper, width, height, x, y, kGlyphSize, kGlyphSize, layout.scale,
                              [&record](int r, int c) { return ((record[2 * r + c / 8] >> (7 - c % 8)) & 1) != 0; });
        x = qel::draw::narrow_coordinate(int64_t{x} + cell + spacing);
        if (int64_t{x} > int64_t{width} - cell - 1) {
            x = 0;
            // The next line may reach below the image; its rows there are skipped.
            if (int64_t{y} + cell >= height) break;
            y += cell;
        }
    }
    std::fclose(font);
    return true;
}

constexpr TextLayout kGrey16{1, 16};
constexpr TextLayout kRGB16{1, 20};  // deliberately four rows more than the grey form
constexpr TextLayout kDoubled{2, 32};

}  // namespace

bool QelDrawChineseString16x16(unsigned char* img, int width, int height, int x, int y, int spacing,
                               int background, int foreground, char* text) {
    return draw_text(width, height, x, y, spacing, kGrey16, GreyPen(img, width, background),
                     GreyPen(img, width, foreground), text);
}

bool QelDrawChineseString16x16(unsigned char* img, int width, int height, int x, int y, int spacing,
                               int backgroundR, int backgroundG, int backgroundB, int foregroundR, int foregroundG,
                               int foregroundB, char* text) {
    return draw_text(width, height, x, y, spacing, kRGB16, BgrPen(img, width, backgroundR, backgroundG, backgroundB),
                     BgrPen(img, width, foregroundR, foregroundG, foregroundB), text);
}

bool QelDrawChineseString32x32(unsigned char* img, int width, int height, int x, int y, int spacing,
                               int background, int foreground, char* text) {
    return draw_text(width, height, x, y, spacing, kDoubled, GreyPen(img, width, background),
                     GreyPen(img, width, foreground), text);
}

bool QelDrawChineseString32x32(unsigned char* img, int width, int height, int x, int y, int spacing,
                               int backgroundR, int backgroundG, int backgroundB, int foregroundR, int foregroundG,
                               int foregroundB, char* text) {
    return draw_text(width, height, x, y, spacing, kDoubled, BgrPen(img, width, backgroundR, backgroundG, backgroundB),
                     BgrPen(img, width, foregroundR, foregroundG, foregroundB), text);
}

void QelChar2Wide(char* in, char* out) {
    size_t o = 0;
    for (const char* c = in; c != nullptr && *c != '\0'; ++c) {
        const auto byte = static_cast<unsigned char>(*c);
        if (byte < 128) {
            out[o++] = static_cast<char>(kFullWidthLead);
            out[o++] = static_cast<char>(byte + 128);
        } else {
            out[o++] = *c;
        }
    }
    out[o] = '\0';
}
