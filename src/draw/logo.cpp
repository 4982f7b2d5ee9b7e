// Qel's own mark: the letters "Qel" and a dot in a rounded frame, drawn as horizontal runs.
#include "qel/draw.h"

#include "draw/raster.h"

#include <array>
#include <cstdint>

namespace {

constexpr int kLogoRows = 20;
constexpr int kLogoCols = 35;
constexpr int kLogoRuns = 82;
constexpr int kLogoGrey = 250;  // the RGB form draws red 250 on blue 0, green 0

// The mark as it appears; its runs of 'X' are what gets drawn.
constexpr const char* kLogo[kLogoRows] = {
    ".XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX.",
    "XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX",
    "XX...............................XX",
    "XX...............................XX",
    "XX.....XXXXXX.............XXX....XX",
    "XX....XXXXXXXX............XXX....XX",
    "XX...XXX....XXX...........XXX....XX",
    "XX..XXX......XXX..XXXXX...XXX....XX",
    "XX..XXX......XXX.XXX.XXX..XXX....XX",
    "XX..XXX......XXX.XXX..XXX.XXX....XX",
    "XX..XXX......XXX.XXXXXXXX.XXX....XX",
    "XX..XXX...XX.XXX.XXX......XXX....XX",
    "XX...XXX...XXXX..XXX...XX.XXX....XX",
    "XX....XXXXXXXXX...XXXXXX..XXX.XX.XX",
    "XX.....XXXXX.XXX...XXXX...XXX.XX.XX",
    "XX............XXX..........XX....XX",
    "XX...............................XX",
    "XX...............................XX",
    "XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX",
    ".XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX.",
};

struct Run {
    int row, first, last;  // relative to the mark's top-left corner
};

constexpr bool starts_run(int r, int c) { return kLogo[r][c] == 'X' && (c == 0 || kLogo[r][c - 1] != 'X'); }

constexpr int count_runs() {
    int n = 0;
    for (int r = 0; r < kLogoRows; ++r)
        for (int c = 0; c < kLogoCols; ++c) n += starts_run(r, c) ? 1 : 0;
    return n;
}
static_assert(count_runs() == kLogoRuns, "the mark is drawn as exactly 82 runs");

constexpr std::array<Run, kLogoRuns> logo_runs() {
    std::array<Run, kLogoRuns> runs{};
    int n = 0;
    for (int r = 0; r < kLogoRows; ++r)
        for (int c = 0; c < kLogoCols; ++c) {
            if (!starts_run(r, c)) continue;
            int last = c;
            while (last + 1 < kLogoCols && kLogo[r][last + 1] == 'X') ++last;
            runs[n++] = {r, c, last};
        }
    return runs;
}
constexpr std::array<Run, kLogoRuns> kRuns = logo_runs();

template <class Pen>
void draw_logo(const Pen& pen, int width, int height, int x, int y) {
    for (const Run& run : kRuns) {
        const int64_t row = int64_t{y} + run.row;
        const int64_t first = int64_t{x} + run.first;
        const int64_t last = int64_t{x} + run.last;
        if (row < 0 || row >= height || first < 0 || last >= width) continue;  // whole runs only
        qel::draw::clipped_row(pen, width, height, row, first, last);
    }
}

}  // namespace

void QelSetPrivateLogo(unsigned char* img, int width, int height, bool isRGB, int x, int y) {
    if (isRGB)
        draw_logo(qel::draw::BgrPen(img, width, kLogoGrey, 0, 0), width, height, x, y);
    else
        draw_logo(qel::draw::GreyPen(img, width, kLogoGrey), width, height, x, y);
}
