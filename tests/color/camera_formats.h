// The four camera formats with their whole-frame conversions and rectangle copies, so that one
// check can run over every format.
#ifndef QEL_TESTS_COLOR_CAMERA_FORMATS_H
#define QEL_TESTS_COLOR_CAMERA_FORMATS_H

#include <qel.h>

#include <cstddef>

namespace qel_test {

enum class Layout { CbYCrY, Yuv420P, Yuv420SP, Yuv422P };

using FrameFn = bool (*)(unsigned char*, int, int, unsigned char*);
using FrameGreyFn = void (*)(unsigned char*, int, int, unsigned char*);
using RectGreyFn = void (*)(unsigned char*, int, int, int, int, int, int, unsigned char*);
using RectFn = bool (*)(unsigned char*, int, int, int, int, int, int, unsigned char*);
using RectTwoFn = bool (*)(unsigned char*, int, int, int, int, int, int, unsigned char*, unsigned char*);

struct CameraFormat {
    const char* name;
    Layout layout;
    bool sharesRows;  // 4:2:0: a 2 x 2 block shares U and V; otherwise a horizontal pair does
    FrameFn toRgb;
    FrameFn fromRgb;
    FrameGreyFn toGrey;
    RectGreyFn rectGrey;
    RectFn rectRgb;
    RectFn rectRed;
    RectTwoFn rectRgbAndGrey;
    RectFn rectRedHalf;
    RectFn rectQuarter;
};

inline size_t frame_bytes(const CameraFormat& f, int width, int height) {
    const size_t pixels = static_cast<size_t>(width) * static_cast<size_t>(height);
    return f.sharesRows ? pixels * 3 / 2 : pixels * 2;
}

// The CbYCrY red images refuse nothing and return void.
inline bool cbycry_red(unsigned char* f, int w, int h, int x1, int x2, int y1, int y2, unsigned char* o) {
    QelCopyCbYCrYRect2RedImg(f, w, h, x1, x2, y1, y2, o);
    return true;
}
inline bool cbycry_red_half(unsigned char* f, int w, int h, int x1, int x2, int y1, int y2, unsigned char* o) {
    QelCopyCbYCrYRect2RedImgShrink2(f, w, h, x1, x2, y1, y2, o);
    return true;
}

inline const CameraFormat kYuv420P{"YUV420P", Layout::Yuv420P, true, QelYUV420P2RGB, QelRGB2YUV420P,
                                   QelYUV420P2Gry, QelCopyYUV420PRect2Gry, QelCopyYUV420PRect2RGB,
                                   QelCopyYUV420PRect2RedImg, QelCopyYUV420PRect, QelCopyYUV420PRect2RedImgShrink2,
                                   QelCopyYUV420PScale4Rect};
inline const CameraFormat kYuv420SP{"YUV420SP", Layout::Yuv420SP, true, QelYUV420SP2RGB, QelRGB2YUV420SP,
                                    QelYUV420SP2Gry, QelCopyYUV420SPRect2Gry, QelCopyYUV420SPRect2RGB,
                                    QelCopyYUV420SPRect2RedImg, QelCopyYUV420SPRect,
                                    QelCopyYUV420SPRect2RedImgShrink2, QelCopyYUV420SPScale4Rect};
inline const CameraFormat kYuv422P{"YUV422P", Layout::Yuv422P, false, QelYUV422P2RGB, QelRGB2YUV422P,
                                   QelYUV422P2Gry, QelCopyYUV422PRect2Gry, QelCopyYUV422PRect2RGB,
                                   QelCopyYUV422PRect2RedImg, QelCopyYUV422PRect, QelCopyYUV422PRect2RedImgShrink2,
                                   QelCopyYUV422PScale4Rect};
inline const CameraFormat kCbYCrY{"CbYCrY", Layout::CbYCrY, false, QelCbYCrY2RGB, QelRGB2CbYCrY, QelCbYCrY2Gry,
                                  QelCopyCbYCrYRect2Gry, QelCopyCbYCrYRect2RGB, cbycry_red, QelCopyCbYCrYRect,
                                  cbycry_red_half, QelCopyCbYCrYScale4Rect};
inline const CameraFormat* const kCameraFormats[] = {&kYuv420P, &kYuv420SP, &kYuv422P, &kCbYCrY};

}  // namespace qel_test

#endif
