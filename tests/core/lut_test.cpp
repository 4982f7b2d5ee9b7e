// The shared look-up-table loop, through two public point operations that use it.
#include <gtest/gtest.h>

#include <qel.h>

#include "support/test_images.h"

namespace {

using qel_test::Bytes;

// Widths 1..140 give every tail of the 64-pixel steps; one and two rows. The inversion reads the
// table's low and high halves alike, the odd-pixel table is not monotonic; into another buffer
// (with a guard byte after the image) and in place.
TEST(LookUpTables, EveryWidthGivesTheTableValues) {
    for (int w = 1; w <= 140; ++w)
        for (int h : {1, 2}) {
            SCOPED_TRACE(testing::Message() << w << " x " << h);
            const size_t n = static_cast<size_t>(w) * h;
            const Bytes img = qel_test::random_bytes(n, static_cast<unsigned>(w * 3 + h));
            Bytes inverted(n + 1, 77);
            Bytes src = img;
            QelInvertGryValue(src.data(), w, h, inverted.data());
            ASSERT_EQ(src, img);
            ASSERT_EQ(inverted.back(), 77);
            Bytes odd = img;
            QelSetOddPixelsTo255(odd.data(), w, h);
            for (size_t i = 0; i < n; ++i) {
                ASSERT_EQ(inverted[i], 255 - img[i]) << i;
                ASSERT_EQ(odd[i], img[i] % 2 != 0 ? 255 : img[i]) << i;
            }
        }
}

// The wide steps start where the output reaches a 64-byte boundary: every offset of the image.
TEST(LookUpTables, EveryOutputAlignment) {
    Bytes img = qel_test::random_bytes(400, 9);
    for (int offset = 0; offset < 64; ++offset)
        for (int n : {1, 63, 64, 65, 127, 128, 129, 300}) {
            Bytes out(400, 7);
            QelInvertGryValue(img.data() + offset, n, 1, out.data() + offset);
            for (int i = 0; i < n; ++i) ASSERT_EQ(out[offset + i], 255 - img[offset + i]) << offset << " " << n;
            ASSERT_EQ(out[offset + n], 7) << offset << " " << n;
        }
}

}  // namespace
