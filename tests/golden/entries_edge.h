// Golden table entries of qel/edge.h, in header order.
#ifndef QEL_TESTS_GOLDEN_ENTRIES_EDGE_H
#define QEL_TESTS_GOLDEN_ENTRIES_EDGE_H

#include "golden/golden_table.h"
#include "qel/edge.h"

namespace golden {

inline void add_edge(std::vector<Entry>& t) {
    t.insert(t.end(), {
        {"QelGryImgSobel", [](Call& c) { QelGryImgSobel(c.grey(), c.w, c.h, c.out_image()); }},
        {"QelGryImgSobel0", [](Call& c) { QelGryImgSobel0(c.grey(), c.w, c.h, c.out_image()); }},
        {"QelGryImgSobel90", [](Call& c) { QelGryImgSobel90(c.grey(), c.w, c.h, c.out_image()); }},
        {"QelGryImgSobel0Just", [](Call& c) { QelGryImgSobel0Just(c.grey(), c.w, c.h, c.out_image()); }},
        {"QelGryImgSobel90Just", [](Call& c) { QelGryImgSobel90Just(c.grey(), c.w, c.h, c.out_image()); }},
        {"QelGryImgSobel90JustToPrjX",
         [](Call& c) { QelGryImgSobel90JustToPrjX(c.grey(), c.w, c.h, c.out<int>(size_t(c.w))); }},
        {"QelGryImgSobel90JustToPrjY",
         [](Call& c) { QelGryImgSobel90JustToPrjY(c.grey(), c.w, c.h, c.out<int>(size_t(c.h))); }},
        {"QelPrewitt90", [](Call& c) { QelPrewitt90(c.grey(), c.w, c.h, c.out_image()); }},
        {"QelPrewitt90/rect", [](Call& c) { const Rect rc = c.across({0, c.w / 2, 3, c.h}); QelPrewitt90(c.grey(), c.w, c.h, rc.x1, rc.x2, rc.y1, rc.y2, c.out_image()); }},
        {"QelGradient0ByPrewitt5x5", [](Call& c) { QelGradient0ByPrewitt5x5(c.grey(), c.w, c.h, c.out_image()); }},
        {"QelGradient5x5ByPrewitt0_90", [](Call& c) { QelGradient5x5ByPrewitt0_90(c.grey(), c.w, c.h, c.out_image()); }},
        {"QelGradientByPrewitt0", [](Call& c) { QelGradientByPrewitt0(c.grey(), c.w, c.h, c.pick(2, -2, std::max(c.w, c.h) + 2), c.pick(3, -2, std::max(c.w, c.h) + 2), c.out_image()); }},
        {"QelGradientByPrewitt90", [](Call& c) { QelGradientByPrewitt90(c.grey(), c.w, c.h, c.pick(3, -2, std::max(c.w, c.h) + 2), c.pick(2, -2, std::max(c.w, c.h) + 2), c.out_image()); }},
        {"QelGradientByPrewitt", [](Call& c) { QelGradientByPrewitt(c.grey(), c.w, c.h, c.pick(2, -2, std::max(c.w, c.h) + 2), c.pick(2, -2, std::max(c.w, c.h) + 2), c.out_image()); }},
        {"QelRobert", [](Call& c) { QelRobert(c.grey(), c.w, c.h, c.out_image()); }},
        {"QelRobertByMask", [](Call& c) { QelRobertByMask(c.grey(), c.binary(), c.w, c.h, c.out_image()); }},
        {"QelRobertRGBImage2GryRobert", [](Call& c) { QelRobertRGBImage2GryRobert(c.bgr(), c.w, c.h, c.out_image()); }},
        {"QelRobertRGBImage2RGBRobert",
         [](Call& c) { QelRobertRGBImage2RGBRobert(c.bgr(), c.w, c.h, c.out_image(3)); }},
        {"QelShenJunEdgeFast",
         [](Call& c) { QelShenJunEdgeFast(c.grey(), c.out_image(), c.w, c.h, 2, c.level(12), c.out_image()); }},
        {"QelShenJunEdgeFast/points", [](Call& c) {
             // Room for one point more than a maximum of 0 or less: this form stores before it compares.
             const int most = c.count(c.area() / 8, c.area() + 2);
             const size_t room = size_t(std::max(most, 1));
             c.value(QelShenJunEdgeFast(c.grey(), c.out_image(), c.w, c.h, 1, c.level(10), c.out<int>(room),
                                        c.out<int>(room), most));
         }},
        {"QelShenJunEdgeFast/points and image", [](Call& c) {
             const int most = c.pick(c.area() / 16, 0, c.area() + 2);
             c.value(QelShenJunEdgeFast(c.grey(), c.out_image(), c.w, c.h, 3, c.level(14), c.out<int>(size_t(most)),
                                        c.out<int>(size_t(most)), most, c.out_image()));
         }},
        {"QelShenJunEdgeStd",
         [](Call& c) { QelShenJunEdgeStd(c.grey(), c.out_image(), c.w, c.h, c.pick(0.35, 0.0, 1.0), c.level(12), c.out_image()); }},
        {"QelShenJunEdgeFine", [](Call& c) {
             QelShenJunEdgeFine(c.grey(), c.out<double>(size_t(c.area())), c.w, c.h, c.pick(0.4, 0.0, 1.0), c.level(12), c.out_image());
         }},
        {"QelConnectEdge", [](Call& c) {
             unsigned char* edge = c.out_image();
             QelShenJunEdgeFast(c.grey(), c.input<unsigned char>(size_t(c.area())), c.w, c.h, 2, 12, edge);
             QelConnectEdge(edge, c.binary(), c.w, c.h, c.pick(4, -3, std::max(c.w, c.h) + 2));
         }},
        {"QelEdgeDeleteNoiseAndCrossPoints",
         [](Call& c) { QelEdgeDeleteNoiseAndCrossPoints(c.inout_binary(), c.w, c.h, c.count(4, c.area() + 2)); }},
        {"QelEdgeDeleteNoiseByLength",
         [](Call& c) { QelEdgeDeleteNoiseByLength(c.inout_binary(), c.w, c.h, c.count(12, c.area() + 2), c.out_image()); }},
        {"QelRemoveEdgePointsByGrd", [](Call& c) { QelRemoveEdgePointsByGrd(c.grey(), c.inout_binary(), c.w, c.h, c.level(20)); }},
        {"QelGetThresholdByEdge", [](Call& c) { const Rect rc = c.across_above({0, c.w - 1, 0, c.h - 1});
             unsigned char* grey = c.grey();
             for (int mode = 0; mode < 3; ++mode)
                 c.value(QelGetThresholdByEdge(grey, c.binary(), c.w, rc.x1, rc.x2, rc.y1, rc.y2, mode));
         }},
        {"QelExtractTwoEdgePointPerCol", [](Call& c) { const Rect rc = c.across_above({1, c.w - 2, 0, c.h - 1});
             QelExtractTwoEdgePointPerCol(c.grey(), c.w, c.level(5), rc.x1, rc.x2, rc.y1, rc.y2, c.out<int>(size_t(c.w)), c.out<int>(size_t(c.w)));
         }},
        {"QelExtractEdgePointInRect", [](Call& c) {
             QelExtractEdgePointInRect(c.grey(), c.w, 1, 2, c.w - 2, c.h - 3, c.out<int>(size_t(c.h)),
                                       c.out<int>(size_t(c.h)), c.out<int>(size_t(c.w)), c.out<int>(size_t(c.w)));
         }},
        {"QelExtractEdgePointInCircle", [](Call& c) {
             const int rx = c.w / 3, ry = c.h / 3;
             QelExtractEdgePointInCircle(c.grey(), c.w, c.w / 2, c.h / 2, rx, ry, c.out<int>(size_t(c.h)),
                                         c.out<int>(size_t(c.h)), c.out<int>(size_t(c.w)), c.out<int>(size_t(c.w)));
         }},
        {"QelEdgeTripeDetection",
         [](Call& c) { c.value(QelEdgeTripeDetection(c.grey(), c.w, c.h, c.pick(2, -2, std::max(c.w, c.h) + 2), c.pick(1, -2, std::max(c.w, c.h) + 2), c.out_image(), c.out<int>(256))); }},
    });
}

}  // namespace golden

#endif  // QEL_TESTS_GOLDEN_ENTRIES_EDGE_H
