// qel_fontgen: writes the 16 x 16 bitmap font "hzk16.dat" that the font-text functions read, from
// GNU Unifont's hex file.
//
//   qel_fontgen <unifont.hex> <output file>
//
// The output holds one 32-byte record per GB2312 code in code order: lead bytes 0xA1..0xF7, 94
// codes each (second bytes 0xA1..0xFE). A record is 16 rows of 2 bytes, pixels 0..7 then 8..15,
// most significant bit leftmost. Each code is mapped to Unicode by iconv(3) ("GB2312" to
// "UCS-4LE"); the full-width forms U+FF01..U+FF5E take the glyphs of ASCII 0x21..0x7E, and
// 8-pixel-wide glyphs are centred in the 16-pixel cell. Codes that are not assigned, or whose
// character Unifont lacks, stay blank.
#include <iconv.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>
#include <unordered_map>

namespace {

constexpr int kFirstLead = 0xA1, kLastLead = 0xF7;
constexpr int kFirstTrail = 0xA1, kLastTrail = 0xFE;  // 94 codes a row
constexpr int kRows = 16;

constexpr char32_t kFullWidthFirst = 0xFF01, kFullWidthLast = 0xFF5E;
constexpr char32_t kFullWidthToAscii = 0xFF01 - 0x21;

using Glyph = std::array<uint16_t, kRows>;  // one row a value, bit 15 the leftmost pixel

int hex_value(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

// Glyph from a Unifont bitmap: 32 hex digits (8 x 16, centred) or 64 (16 x 16). Other lengths are
// not 16 x 16 cells and are passed over.
bool parse_bitmap(const std::string& hex, Glyph* glyph) {
    const size_t digitsPerRow = hex.size() / kRows;
    if (hex.size() % kRows != 0 || (digitsPerRow != 2 && digitsPerRow != 4)) return false;
    for (int r = 0; r < kRows; ++r) {
        unsigned value = 0;
        for (size_t d = 0; d < digitsPerRow; ++d) {
            const int v = hex_value(hex[r * digitsPerRow + d]);
            if (v < 0) return false;
            value = value << 4 | static_cast<unsigned>(v);
        }
        // An 8-pixel row lands in columns 4..11 of the cell.
        (*glyph)[r] = static_cast<uint16_t>(digitsPerRow == 2 ? value << 4 : value);
    }
    return true;
}

bool read_unifont(const char* path, std::unordered_map<char32_t, Glyph>* glyphs) {
    std::ifstream in(path);
    if (!in) return false;
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const size_t colon = line.find(':');
        if (colon == std::string::npos || colon == 0) continue;
        char32_t code = 0;
        bool ok = colon <= 6;
        for (size_t i = 0; ok && i < colon; ++i) {
            const int v = hex_value(line[i]);
            ok = v >= 0;
            code = code << 4 | static_cast<char32_t>(v);
        }
        Glyph glyph{};
        if (ok && parse_bitmap(line.substr(colon + 1), &glyph)) (*glyphs)[code] = glyph;
    }
    return true;
}

// The Unicode character of one two-byte GB2312 code; false for an unassigned code.
bool to_unicode(iconv_t converter, unsigned char lead, unsigned char trail, char32_t* code) {
    char in[2] = {static_cast<char>(lead), static_cast<char>(trail)};
    unsigned char out[8] = {};
    char* inPtr = in;
    char* outPtr = reinterpret_cast<char*>(out);
    size_t inLeft = sizeof in, outLeft = sizeof out;
    iconv(converter, nullptr, nullptr, nullptr, nullptr);  // back to the initial state
    if (iconv(converter, &inPtr, &inLeft, &outPtr, &outLeft) == static_cast<size_t>(-1) || inLeft != 0 ||
        sizeof out - outLeft != 4)
        return false;
    *code = static_cast<char32_t>(out[0]) | static_cast<char32_t>(out[1]) << 8 | static_cast<char32_t>(out[2]) << 16 |
            static_cast<char32_t>(out[3]) << 24;
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: qel_fontgen <unifont.hex> <output file>\n";
        return 2;
    }
    std::unordered_map<char32_t, Glyph> glyphs;
    if (!read_unifont(argv[1], &glyphs) || glyphs.empty()) {
        std::cerr << "qel_fontgen: '" << argv[1] << "' cannot be read as a Unifont hex file\n";
        return 1;
    }
    iconv_t converter = iconv_open("UCS-4LE", "GB2312");
    if (converter == reinterpret_cast<iconv_t>(-1)) {
        std::cerr << "qel_fontgen: this system's iconv cannot convert from GB2312: " << std::strerror(errno) << "\n";
        return 1;
    }

    // Written under a temporary name and renamed, so a failed run leaves no partial font behind.
    const std::string output = argv[2];
    const std::string partial = output + ".partial";
    std::ofstream out(partial, std::ios::binary | std::ios::trunc);
    int drawn = 0, blank = 0;
    for (int lead = kFirstLead; lead <= kLastLead; ++lead)
        for (int trail = kFirstTrail; trail <= kLastTrail; ++trail) {
            Glyph glyph{};
            char32_t code = 0;
            if (to_unicode(converter, static_cast<unsigned char>(lead), static_cast<unsigned char>(trail), &code)) {
                if (code >= kFullWidthFirst && code <= kFullWidthLast) code -= kFullWidthToAscii;
                const auto found = glyphs.find(code);
                if (found != glyphs.end()) glyph = found->second;
            }
            bool any = false;
            for (uint16_t row : glyph) {
                const char bytes[2] = {static_cast<char>(row >> 8), static_cast<char>(row & 0xFF)};
                out.write(bytes, 2);
                any = any || row != 0;
            }
            ++(any ? drawn : blank);
        }
    iconv_close(converter);
    out.close();
    if (!out) {
        std::cerr << "qel_fontgen: cannot write '" << partial << "'\n";
        std::remove(partial.c_str());
        return 1;
    }
    std::remove(output.c_str());  // rename does not replace an existing file everywhere
    if (std::rename(partial.c_str(), output.c_str()) != 0) {
        std::cerr << "qel_fontgen: cannot rename '" << partial << "' to '" << output << "'\n";
        std::remove(partial.c_str());
        return 1;
    }
    std::cout << "qel_fontgen: " << output << ": " << drawn << " glyphs, " << blank << " blank codes\n";
    return 0;
}
