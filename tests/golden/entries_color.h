// Golden table entries of qel/color.h, in header order. Frames that a function refuses (odd sizes)
// still run: the refusal and the untouched output are part of the digest.
#ifndef QEL_TESTS_GOLDEN_ENTRIES_COLOR_H
#define QEL_TESTS_GOLDEN_ENTRIES_COLOR_H

#include "golden/golden_table.h"
#include "qel/color.h"

#include <type_traits>

namespace golden {

// Camera frame sizes in bytes, rounded as the layouts round.
inline size_t cbycry_bytes(const Call& c) { return size_t(c.area()) * 2; }
inline size_t yuv420_bytes(const Call& c) { return size_t(c.area()) + 2 * size_t(c.w / 2) * size_t(c.h / 2); }
inline size_t yuv422_bytes(const Call& c) { return size_t(c.area()) + 2 * size_t(c.w / 2) * size_t(c.h); }

// The rectangle the rectangle copies take: columns 2..w-3 and rows 2..h-3 (even sides for even
// sizes); in the sweep any rectangle inside the frame.
inline Rect inner(Call& c) { return c.inside({2, c.w - 3, 2, c.h - 3}); }

// One rectangle copy of a camera frame with a single output of `bytes(rect)` bytes.
#define QEL_GOLDEN_FRAME_RECT(fn, frameBytes, outBytes)                                      \
    {#fn, [](Call& c) {                                                                      \
         const Rect r = inner(c);                                                            \
         unsigned char* frame = c.bytes(frameBytes(c));                                      \
         unsigned char* out = c.out(outBytes);                                               \
         keep(c, [&] { return fn(frame, c.w, c.h, r.x1, r.x2, r.y1, r.y2, out); });         \
     }}

// Calls f and records what it returns, if anything.
template <class F>
inline void keep(Call& c, F f) {
    if constexpr (std::is_void_v<decltype(f())>) {
        f();
    } else {
        c.value(f());
    }
}

// A channel number (0 blue, 1 green, 2 red) and a flag, fixed outside the sweep.
inline int channel(Call& c, int fixed) { return c.pick(fixed, 0, 2); }
inline bool flag(Call& c, bool fixed) { return c.pick(fixed ? 1 : 0, 0, 1) != 0; }

inline void add_color(std::vector<Entry>& t) {
    t.insert(t.end(), {
        {"QelRGB2Gry", [](Call& c) { QelRGB2Gry(c.bgr(), c.w, c.h, c.out_image()); }},
        {"QelRGB2GryInvert", [](Call& c) { QelRGB2GryInvert(c.bgr(), c.w, c.h, c.out_image()); }},
        {"QelRGBsDif2Gry", [](Call& c) { QelRGBsDif2Gry(c.bgr(), c.w, c.h, c.out_image()); }},
        {"QelSelectRGB2Gry", [](Call& c) { QelSelectRGB2Gry(c.bgr(), c.w, c.h, channel(c, 2), c.out_image()); }},
        {"QelCbYCrY2Gry", [](Call& c) { QelCbYCrY2Gry(c.bytes(cbycry_bytes(c)), c.w, c.h, c.out_image()); }},
        {"QelYUV420P2Gry", [](Call& c) { QelYUV420P2Gry(c.bytes(yuv420_bytes(c)), c.w, c.h, c.out_image()); }},
        {"QelYUV420SP2Gry", [](Call& c) { QelYUV420SP2Gry(c.bytes(yuv420_bytes(c)), c.w, c.h, c.out_image()); }},
        {"QelYUV422P2Gry", [](Call& c) { QelYUV422P2Gry(c.bytes(yuv422_bytes(c)), c.w, c.h, c.out_image()); }},
        {"QelCbYCrY2RGB",
         [](Call& c) { c.value(QelCbYCrY2RGB(c.bytes(cbycry_bytes(c)), c.w, c.h, c.out_image(3))); }},
        {"QelYUV420P2RGB",
         [](Call& c) { c.value(QelYUV420P2RGB(c.bytes(yuv420_bytes(c)), c.w, c.h, c.out_image(3))); }},
        {"QelYUV420SP2RGB",
         [](Call& c) { c.value(QelYUV420SP2RGB(c.bytes(yuv420_bytes(c)), c.w, c.h, c.out_image(3))); }},
        {"QelYUV422P2RGB",
         [](Call& c) { c.value(QelYUV422P2RGB(c.bytes(yuv422_bytes(c)), c.w, c.h, c.out_image(3))); }},
        {"QelRGB2CbYCrY", [](Call& c) { c.value(QelRGB2CbYCrY(c.bgr(), c.w, c.h, c.out(cbycry_bytes(c)))); }},
        {"QelRGB2YUV420P", [](Call& c) { c.value(QelRGB2YUV420P(c.bgr(), c.w, c.h, c.out(yuv420_bytes(c)))); }},
        {"QelRGB2YUV420SP", [](Call& c) { c.value(QelRGB2YUV420SP(c.bgr(), c.w, c.h, c.out(yuv420_bytes(c)))); }},
        {"QelRGB2YUV422P", [](Call& c) { c.value(QelRGB2YUV422P(c.bgr(), c.w, c.h, c.out(yuv422_bytes(c)))); }},
        QEL_GOLDEN_FRAME_RECT(QelCopyYUV420PRect2Gry, yuv420_bytes, r.area()),
        QEL_GOLDEN_FRAME_RECT(QelCopyYUV420PRect2RGB, yuv420_bytes, r.area() * 3),
        QEL_GOLDEN_FRAME_RECT(QelCopyYUV420PRect2RedImg, yuv420_bytes, r.area()),
        QEL_GOLDEN_FRAME_RECT(QelCopyYUV420PRect2RedImgShrink2, yuv420_bytes, (r.w() / 2) * (r.h() / 2)),
        QEL_GOLDEN_FRAME_RECT(QelCopyYUV420PScale4Rect, yuv420_bytes, r.quarter() * 3),
        {"QelCopyYUV420PRect", [](Call& c) {
             const Rect r = inner(c);
             c.value(QelCopyYUV420PRect(c.bytes(yuv420_bytes(c)), c.w, c.h, r.x1, r.x2, r.y1, r.y2,
                                        c.out(r.area() * 3), c.out(r.area())));
         }},
        QEL_GOLDEN_FRAME_RECT(QelCopyYUV420SPRect2Gry, yuv420_bytes, r.area()),
        QEL_GOLDEN_FRAME_RECT(QelCopyYUV420SPRect2RGB, yuv420_bytes, r.area() * 3),
        QEL_GOLDEN_FRAME_RECT(QelCopyYUV420SPRect2RedImg, yuv420_bytes, r.area()),
        QEL_GOLDEN_FRAME_RECT(QelCopyYUV420SPRect2RedImgShrink2, yuv420_bytes, (r.w() / 2) * (r.h() / 2)),
        QEL_GOLDEN_FRAME_RECT(QelCopyYUV420SPScale4Rect, yuv420_bytes, r.quarter() * 3),
        {"QelCopyYUV420SPRect", [](Call& c) {
             const Rect r = inner(c);
             c.value(QelCopyYUV420SPRect(c.bytes(yuv420_bytes(c)), c.w, c.h, r.x1, r.x2, r.y1, r.y2,
                                         c.out(r.area() * 3), c.out(r.area())));
         }},
        {"QelCopyYUV420SPRect/sub-frame", [](Call& c) {
             const Rect r = inner(c);
             c.value(QelCopyYUV420SPRect(c.bytes(yuv420_bytes(c)), c.w, c.h, r.x1, r.x2, r.y1, r.y2,
                                         c.out(r.area() * 3 / 2)));
         }},
        QEL_GOLDEN_FRAME_RECT(QelCopyYUV422PRect2Gry, yuv422_bytes, r.area()),
        QEL_GOLDEN_FRAME_RECT(QelCopyYUV422PRect2RGB, yuv422_bytes, r.area() * 3),
        QEL_GOLDEN_FRAME_RECT(QelCopyYUV422PRect2RedImg, yuv422_bytes, r.area()),
        QEL_GOLDEN_FRAME_RECT(QelCopyYUV422PRect2RedImgShrink2, yuv422_bytes, (r.w() / 2) * (r.h() / 2)),
        {"QelCopyYUV422PRect", [](Call& c) {
             const Rect r = inner(c);
             c.value(QelCopyYUV422PRect(c.bytes(yuv422_bytes(c)), c.w, c.h, r.x1, r.x2, r.y1, r.y2,
                                        c.out(r.area() * 3), c.out(r.area())));
         }},
        {"QelCopyYUV422PScale4Rect", [](Call& c) {
             // Sides that are multiples of 4 where the size allows.
             const Rect r = c.inside({2, 2 + ((c.w - 4) / 4) * 4 - 1, 1, 1 + ((c.h - 2) / 4) * 4 - 1});
             c.value(QelCopyYUV422PScale4Rect(c.bytes(yuv422_bytes(c)), c.w, c.h, r.x1, r.x2, r.y1, r.y2,
                                              c.out(r.quarter() * 3)));
         }},
        QEL_GOLDEN_FRAME_RECT(QelCopyCbYCrYRect, cbycry_bytes, r.area() * 2),
        QEL_GOLDEN_FRAME_RECT(QelCopyCbYCrYRect2Gry, cbycry_bytes, r.area()),
        QEL_GOLDEN_FRAME_RECT(QelCopyCbYCrYRect2RGB, cbycry_bytes, r.area() * 3),
        {"QelCopyCbYCrYRect/rgb and grey", [](Call& c) {
             const Rect r = inner(c);
             c.value(QelCopyCbYCrYRect(c.bytes(cbycry_bytes(c)), c.w, c.h, r.x1, r.x2, r.y1, r.y2,
                                       c.out(r.area() * 3), c.out(r.area())));
         }},
        QEL_GOLDEN_FRAME_RECT(QelCopyCbYCrYRect2RedImg, cbycry_bytes, r.area()),
        QEL_GOLDEN_FRAME_RECT(QelCopyCbYCrYRect2RedImgShrink2, cbycry_bytes, (r.w() / 2) * (r.h() / 2)),
        QEL_GOLDEN_FRAME_RECT(QelCopyCbYCrYScale4Rect, cbycry_bytes, r.quarter() * 3),
        {"QelCopyGryRect", [](Call& c) {
             const Rect r = c.inside({1, c.w - 4, 3, c.h - 1});
             QelCopyGryRect(c.grey(), c.w, c.h, r.x1, r.x2, r.y1, r.y2, c.out(r.area()));
         }},
        {"QelCopyRGBRect", [](Call& c) {
             const Rect r = c.inside({3, c.w - 1, 0, c.h - 2});
             QelCopyRGBRect(c.bgr(), c.w, c.h, r.x1, r.x2, r.y1, r.y2, c.out(r.area() * 3));
         }},
        {"QelCopyRGBRect/rgb and grey", [](Call& c) {
             const Rect r = inner(c);
             QelCopyRGBRect(c.bgr(), c.w, c.h, r.x1, r.x2, r.y1, r.y2, c.out(r.area() * 3), c.out(r.area()));
         }},
        {"QelCopyRGBRect2Gry", [](Call& c) {
             const Rect r = inner(c);
             QelCopyRGBRect2Gry(c.bgr(), c.w, c.h, r.x1, r.x2, r.y1, r.y2, c.out(r.area()));
         }},
        {"QelCopyRGBRect2Gry/planes", [](Call& c) {
             const Rect r = c.inside({0, c.w - 1, 1, c.h - 1});
             QelCopyRGBRect2Gry(c.bgr(), c.w, c.h, r.x1, r.x2, r.y1, r.y2, c.out(r.area()), c.out(r.area()),
                                c.out(r.area()));
         }},
        {"QelCopyRGBScale4Rect", [](Call& c) {
             const Rect r = c.inside({1, c.w - 2, 2, c.h - 1});
             QelCopyRGBScale4Rect(c.bgr(), c.w, c.h, r.x1, r.x2, r.y1, r.y2, c.out(r.quarter() * 3));
         }},
        {"QelSelectRGBRect2Gry", [](Call& c) {
             const Rect r = inner(c);
             QelSelectRGBRect2Gry(c.bgr(), c.w, c.h, r.x1, r.x2, r.y1, r.y2, channel(c, 1), c.out(r.area()));
         }},
        {"QelCopyRGB2GryBinImg", [](Call& c) {
             const Rect r = inner(c);
             int* size = c.out<int>(2);
             QelCopyRGB2GryBinImg(c.bgr(), c.w, c.h, r.x1, r.x2, r.y1, r.y2, flag(c, true), c.out(r.area()), c.out(r.area()),
                                  &size[0], &size[1]);
         }},
        {"QelExtractMaxRGB2GryImg", [](Call& c) { QelExtractMaxRGB2GryImg(c.bgr(), c.w, c.h, c.out_image()); }},
        {"QelExtractOneChannelFromRGB",
         [](Call& c) { QelExtractOneChannelFromRGB(c.bgr(), c.w, c.h, channel(c, 1), c.out_image()); }},
        {"QelReplaceOneChannelInRGB", [](Call& c) { QelReplaceOneChannelInRGB(c.inout_bgr(), c.w, c.h, channel(c, 0), c.grey()); }},
        {"QelOROneChannelInRGB", [](Call& c) { QelOROneChannelInRGB(c.inout_bgr(), c.w, c.h, channel(c, 2), c.grey()); }},
        {"QelGry2RGBImg", [](Call& c) { QelGry2RGBImg(c.grey(), c.grey(1), c.binary(), c.w, c.h, c.out_image(3)); }},
        {"QelExtractOneField", [](Call& c) {
             // The even field of an odd height has one row more than half.
             const bool rgb = flag(c, true), odd = flag(c, false);
             const size_t rows = size_t(odd ? c.h / 2 : (c.h + 1) / 2);
             QelExtractOneField(c.bgr(), c.w, c.h, rgb, odd, c.out(rows * size_t(c.w) * (rgb ? 3 : 1)), c.out<int>(1));
         }},
        {"QelSplitOddEvenField", [](Call& c) {
             const bool rgb = flag(c, false);
             QelSplitOddEvenField(rgb ? c.bgr() : c.grey(), c.w, c.h, rgb, c.out_image(rgb ? 3 : 1));
         }},
        {"QelMergeOddEvenField", [](Call& c) {
             // Fields of any row counts (one more than the other either way, or far apart).
             const int rowsA = c.pick(c.h / 2, 0, c.h), rowsB = c.pick(c.h - c.h / 2, 0, c.h);
             const bool rgb = flag(c, false);
             const size_t row = size_t(c.w) * (rgb ? 3 : 1);
             unsigned char* a = c.bytes(size_t(rowsA) * row);
             unsigned char* b = c.bytes(size_t(rowsB) * row, 1);
             QelMergeOddEvenField(a, b, rowsA, rowsB, c.w, rgb, c.pick(2, -c.w - 2, c.w + 2),
                                  c.out(size_t(rowsA + rowsB) * row), c.out<int>(1));
         }},
    });
}

#undef QEL_GOLDEN_FRAME_RECT

}  // namespace golden

#endif  // QEL_TESTS_GOLDEN_ENTRIES_COLOR_H
