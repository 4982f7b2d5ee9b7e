// The fixed-point colour formulas every colour family shares: grey from B, G, R; Y, U, V of one
// pixel; and B, G, R back from Y, U, V. U and V are handled as stored, offset by 128.
//
// All products are signed 32-bit and all shifts arithmetic (they round towards minus infinity).
// Only the three YUV -> B, G, R results are clamped to 0..255; grey, Y, U and V stay within 0..255
// by construction (the grey weights add up to 4097 and the Y weights to 16382, so white gives grey
// 255 but Y 254).
#ifndef QEL_SRC_COLOR_YUV_H
#define QEL_SRC_COLOR_YUV_H

#include <cstdint>

namespace qel {

// Grey weights, scale 2^12.
constexpr int32_t kGreyWeightBlue = 468;
constexpr int32_t kGreyWeightGreen = 2404;
constexpr int32_t kGreyWeightRed = 1225;
constexpr int kGreyShift = 12;

// RGB -> YUV weights, scale 2^14.
constexpr int kYuvShift = 14;
constexpr int32_t kYuvOne = 1 << kYuvShift;  // 16384
constexpr int32_t kLumaWeightRed = 4898;
constexpr int32_t kLumaWeightGreen = 9617;
constexpr int32_t kLumaWeightBlue = 1867;
constexpr int32_t kUWeightBlue = 8192;
constexpr int32_t kUWeightRed = 2763;
constexpr int32_t kUWeightGreen = 5428;
constexpr int32_t kVWeightRed = 8192;
constexpr int32_t kVWeightGreen = 6859;
constexpr int32_t kVWeightBlue = 1332;
constexpr int32_t kChromaOffset = 128;

// YUV -> RGB weights, scale 2^14.
constexpr int32_t kBlueFromU = 29032;
constexpr int32_t kGreenFromU = 5638;
constexpr int32_t kGreenFromV = 11700;
constexpr int32_t kRedFromV = 22970;

// (B*468 + G*2404 + R*1225) >> 12.
inline int grey_from_bgr(int32_t b, int32_t g, int32_t r) {
    return (b * kGreyWeightBlue + g * kGreyWeightGreen + r * kGreyWeightRed) >> kGreyShift;
}

// (R*4898 + G*9617 + B*1867) >> 14.
inline int luma_from_bgr(int32_t b, int32_t g, int32_t r) {
    return (r * kLumaWeightRed + g * kLumaWeightGreen + b * kLumaWeightBlue) >> kYuvShift;
}

// Stored U of one pixel: ((B*8192 - R*2763 - G*5428) >> 14) + 128.
inline int u_from_bgr(int32_t b, int32_t g, int32_t r) {
    return ((b * kUWeightBlue - r * kUWeightRed - g * kUWeightGreen) >> kYuvShift) + kChromaOffset;
}

// Stored V of one pixel: ((R*8192 - G*6859 - B*1332) >> 14) + 128.
inline int v_from_bgr(int32_t b, int32_t g, int32_t r) {
    return ((r * kVWeightRed - g * kVWeightGreen - b * kVWeightBlue) >> kYuvShift) + kChromaOffset;
}

// 256 or more becomes 255, a negative value 0.
inline int clamp_to_byte(int v) { return v < 0 ? 0 : (v > 255 ? 255 : v); }

// (Y*16384 + (U-128)*29032) >> 14, clamped to 0..255. `u` is the stored (offset) value.
inline int blue_from_yuv(int32_t y, int32_t u) {
    return clamp_to_byte((y * kYuvOne + (u - kChromaOffset) * kBlueFromU) >> kYuvShift);
}

// (Y*16384 - (U-128)*5638 - (V-128)*11700) >> 14, clamped to 0..255.
inline int green_from_yuv(int32_t y, int32_t u, int32_t v) {
    return clamp_to_byte((y * kYuvOne - (u - kChromaOffset) * kGreenFromU - (v - kChromaOffset) * kGreenFromV) >>
                         kYuvShift);
}

// (Y*16384 + (V-128)*22970) >> 14, clamped to 0..255.
inline int red_from_yuv(int32_t y, int32_t v) {
    return clamp_to_byte((y * kYuvOne + (v - kChromaOffset) * kRedFromV) >> kYuvShift);
}

// Stores the clamped B, G, R of (Y, U, V) at bgr[0..2].
inline void store_bgr_from_yuv(int32_t y, int32_t u, int32_t v, unsigned char* bgr) {
    bgr[0] = static_cast<unsigned char>(blue_from_yuv(y, u));
    bgr[1] = static_cast<unsigned char>(green_from_yuv(y, u, v));
    bgr[2] = static_cast<unsigned char>(red_from_yuv(y, v));
}

// The chroma parts of the three formulas above, taken once for all pixels that share U and V.
struct ChromaTerms {
    int32_t blue;   // (U-128)*29032
    int32_t green;  // -(U-128)*5638 - (V-128)*11700
    int32_t red;    // (V-128)*22970
};

inline ChromaTerms chroma_terms(int32_t u, int32_t v) {
    const int32_t cu = u - kChromaOffset;
    const int32_t cv = v - kChromaOffset;
    return {cu * kBlueFromU, -cu * kGreenFromU - cv * kGreenFromV, cv * kRedFromV};
}

// Same result as store_bgr_from_yuv(y, u, v, bgr) for the U, V the terms were taken from.
inline void store_bgr_from_terms(int32_t y, const ChromaTerms& c, unsigned char* bgr) {
    const int32_t y16 = y * kYuvOne;
    bgr[0] = static_cast<unsigned char>(clamp_to_byte((y16 + c.blue) >> kYuvShift));
    bgr[1] = static_cast<unsigned char>(clamp_to_byte((y16 + c.green) >> kYuvShift));
    bgr[2] = static_cast<unsigned char>(clamp_to_byte((y16 + c.red) >> kYuvShift));
}

}  // namespace qel

#endif
