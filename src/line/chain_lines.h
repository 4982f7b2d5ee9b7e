// The chain-line finder: edge map, chain tracing, cutting chains into nearly straight pieces and
// fitting a segment to each piece. The library holds one finder for its whole life; the
// QelImgChainLines_* functions act on it.
#ifndef QEL_SRC_LINE_CHAIN_LINES_H
#define QEL_SRC_LINE_CHAIN_LINES_H

#include "qel/line.h"

#include <memory>

namespace qel {

// A nearly straight run of a chain: its start point, the point after its last code, the number of
// codes and the index of its first point within the chain.
struct ChainPiece {
    int startX;
    int startY;
    int endX;
    int endY;
    int codes;
    int first;
};
static_assert(sizeof(ChainPiece) == 24, "a piece is six ints");

// The points of one reported piece in the finder's point lists.
struct ChainEntry {
    int count;
    int first;
};
static_assert(sizeof(ChainEntry) == 8, "an entry is two ints");

// How the cutter judges a window of chain codes (see cut_chain).
struct StraightnessTest {
    double ratio;      // the chord must exceed this fraction of the arc length
    double tolerance;  // no window point farther than this many pixels from the chord
    long long minArc;  // arc length, in 1/1024 pixel, from which a straight window opens a piece
};

// Cuts the chain of n codes whose n points are xs, ys into nearly straight pieces; writes at most
// capacity of them and returns how many. Only codes 0..n − 2 are walked (the last code closes the
// contour), so every piece ends at a listed point.
int cut_chain(const unsigned char* codes, int n, const int* xs, const int* ys, const StraightnessTest& test,
              ChainPiece* pieces, int capacity);

class QelImgChainLines {
public:
    QelImgChainLines() = default;
    QelImgChainLines(const QelImgChainLines&) = delete;
    QelImgChainLines& operator=(const QelImgChainLines&) = delete;
    virtual ~QelImgChainLines() = default;

    bool Initialize(int width, int height, double straightnessRatio, double secondTolerance, int minChainLength,
                    int edgeParameter, int maxLines);
    int DoBinImg(unsigned char* image, int width, int height, bool fitLines);
    int DoGryImg(unsigned char* image, int width, int height, bool fitLines);
    OVLA_LINE_SEGMENT* GetLines();
    bool GetNxtCodeLine(int** xs, int** ys, int* count);
    int Debug(unsigned char* out);

private:
    // Drops the previous results and stores the run's image; false when the run is refused.
    bool begin_run(unsigned char* image, int width, int height, bool fitLines);
    bool grow_image_buffers(int pixels);
    bool grow_line_arrays(int lines);
    void binary_edges();
    // The Shen Jun edges of the run's image into dst, with the work buffer as the smoothed image.
    void shen_jun_edges(unsigned char* dst);
    int extract_chains();
    void process_chain(int x0, int y0, int n);
    void fit_piece(const ChainPiece& piece, int* xs, int* ys);
    void add_entry(int first, int count);

    bool ready_ = false;
    double straightnessRatio_ = 0;
    double secondTolerance_ = 0;
    int minChainLength_ = 6;
    int maxLines_ = 0;
    int edgeParameter_ = 1;
    bool fastEdges_ = false;
    bool fitLines_ = false;
    bool runValid_ = false;  // a run was accepted since the last initialisation

    int width_ = 0;
    int height_ = 0;
    int pixels_ = 0;
    int capacityPixels_ = 0;
    unsigned char* source_ = nullptr;  // the last run's image, not owned

    std::unique_ptr<unsigned char[]> edges_;  // pixels bytes
    std::unique_ptr<double[]> work_;          // pixels doubles: the edge operator's smoothed image
    std::unique_ptr<unsigned char[]> codes_;  // 2 · pixels chain codes
    std::unique_ptr<int[]> xs_;               // 2 · pixels points of every chain kept, one after another
    std::unique_ptr<int[]> ys_;
    std::unique_ptr<int[]> weights_;          // 2 · pixels: the line fit's per-point weights

    int lineCapacity_ = 0;
    std::unique_ptr<ChainPiece[]> pieces_;
    std::unique_ptr<ChainEntry[]> entries_;
    std::unique_ptr<OVLA_LINE_SEGMENT[]> segments_;
    int lineCount_ = 0;  // entries made, and segments with fitLines
    int cursor_ = 0;     // next entry handed out
    int fillOffset_ = 0;  // where the current chain's points start; then the next chain's
};

}  // namespace qel

#endif
