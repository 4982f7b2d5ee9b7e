// Qel side by side with OpenCV on a 1920 × 1080 frame, one thread each, in one process.
//
// Each pair runs alternately (Qel, OpenCV, Qel, ...) so that both see the same machine load; a
// sample repeats the call until it has taken a few milliseconds, and the table shows the fastest of
// 25 samples per call and the ratio Qel time / OpenCV time (below 1.0: Qel is faster). The fastest
// sample is the one least disturbed by other processes: on a shared machine it moves far less from
// run to run than the median does. Point operations, whose cost is moving bytes, also show their
// bandwidth as a share of memcpy's: memcpy of half their bytes read plus written (so as many bytes
// moved) takes its turn in the same alternation. The last line names the worst ratio.
//
// Usage: qel_opencv_compare [filter]   (only pairs whose name contains filter)
#include "qel.h"

#include "bench_images.h"

#include <opencv2/core.hpp>
#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <new>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using bench::kHeight;
using bench::kWidth;

constexpr int kSamples = 25;
const char* const kCalibration = "memcpy / memcpy (calibration: the same call twice)";
constexpr double kSampleSeconds = 0.004;

struct Pair {
    std::string name;
    std::function<void()> qel;
    std::function<void()> cv;
    double bytes = 0;  // bytes read plus written by a point operation; 0 for the others
};

double seconds_of(const std::function<void()>& f, int repeats) {
    const auto start = Clock::now();
    for (int i = 0; i < repeats; ++i) f();
    return std::chrono::duration<double>(Clock::now() - start).count() / repeats;
}

// Repeats needed for one sample to last about kSampleSeconds (after a warm-up call).
int repeats_for(const std::function<void()>& f) {
    const double once = std::max(seconds_of(f, 1), 1e-7);
    return std::max(1, static_cast<int>(kSampleSeconds / once));
}

double fastest(const std::vector<double>& v) { return *std::min_element(v.begin(), v.end()); }

// Fastest seconds per call of each function, sampled in turn.
std::vector<double> time_alternating(const std::vector<std::function<void()>>& fs) {
    std::vector<int> repeats;
    for (const auto& f : fs) repeats.push_back(repeats_for(f));
    std::vector<std::vector<double>> times(fs.size());
    // Each sample follows one untimed call, which brings the function's buffers into the caches the
    // function before it used; and the order reverses every round, so no function always follows
    // the same one.
    for (int s = 0; s < kSamples; ++s)
        for (size_t k = 0; k < fs.size(); ++k) {
            const size_t i = s % 2 == 0 ? k : fs.size() - 1 - k;
            fs[i]();
            times[i].push_back(seconds_of(fs[i], repeats[i]));
        }
    std::vector<double> best;
    for (const auto& t : times) best.push_back(fastest(t));
    return best;
}

// Byte buffers on 64-byte boundaries, as OpenCV allocates its own images: both libraries read the
// same buffers and write to equally aligned ones.
template <class T>
struct Aligned64 {
    using value_type = T;
    Aligned64() = default;
    template <class U>
    Aligned64(const Aligned64<U>&) {}
    T* allocate(size_t n) { return static_cast<T*>(::operator new(n * sizeof(T), std::align_val_t{64})); }
    void deallocate(T* p, size_t) { ::operator delete(p, std::align_val_t{64}); }
    bool operator==(const Aligned64&) const { return true; }
    bool operator!=(const Aligned64&) const { return false; }
};
using Bytes = std::vector<unsigned char, Aligned64<unsigned char>>;

Bytes aligned(const std::vector<unsigned char>& v) { return Bytes(v.begin(), v.end()); }

cv::Mat wrap(Bytes& v, int rows, int cols, int type) {
    return cv::Mat(rows, cols, type, v.data());
}

}  // namespace

int main(int argc, char** argv) {
    const std::string filter = argc > 1 ? argv[1] : "";
    cv::setNumThreads(1);
    const int w = kWidth;
    const int h = kHeight;
    const size_t n = static_cast<size_t>(w) * h;

    Bytes grey = aligned(bench::frame(1));
    Bytes grey2 = aligned(bench::frame(1));
    std::reverse(grey2.begin(), grey2.end());
    Bytes bgr = aligned(bench::frame(3));
    Bytes binary = aligned(bench::discs(400, 5, 60, 7, 3));
    Bytes out(n * 4);
    Bytes out2(n * 4);
    Bytes work(n * 4);
    const Bytes copySource(n * 4, 1);

    // Camera frames made by Qel itself so both libraries read the same bytes.
    Bytes i420(n * 3 / 2);
    Bytes nv12(n * 3 / 2);
    Bytes uyvy(n * 2);
    QelRGB2YUV420P(bgr.data(), w, h, i420.data());
    QelRGB2YUV420SP(bgr.data(), w, h, nv12.data());
    QelRGB2CbYCrY(bgr.data(), w, h, uyvy.data());

    cv::Mat mGrey = wrap(grey, h, w, CV_8UC1);
    cv::Mat mGrey2 = wrap(grey2, h, w, CV_8UC1);
    cv::Mat mBgr = wrap(bgr, h, w, CV_8UC3);
    cv::Mat mBinary = wrap(binary, h, w, CV_8UC1);
    cv::Mat mI420 = wrap(i420, h * 3 / 2, w, CV_8UC1);
    cv::Mat mNv12 = wrap(nv12, h * 3 / 2, w, CV_8UC1);
    cv::Mat mUyvy = wrap(uyvy, h, w, CV_8UC2);
    cv::Mat cvOut;
    cv::Mat cvOut2;
    // OpenCV writes where Qel does: into `out`, through headers of the right shape (an OpenCV
    // function writes into the given Mat when its size and type already match).
    cv::Mat cvGrey = wrap(out, h, w, CV_8UC1);
    cv::Mat cvBgr = wrap(out, h, w, CV_8UC3);
    cv::Mat cvI420 = wrap(out, h * 3 / 2, w, CV_8UC1);
    cv::Mat cvLinear = wrap(out, 720, 1280, CV_8UC1);
    cv::Mat cvArea = wrap(out, h / 2, w / 2, CV_8UC1);
    cv::Mat cvTurned = wrap(out, w, h, CV_8UC1);
    cv::Mat cvTurnedBgr = wrap(out, w, h, CV_8UC3);
    cv::Mat cvZoom = wrap(out, 2 * h, 2 * w, CV_8UC1);
    cv::Mat cvQuarter = wrap(out, h / 4, w / 4, CV_8UC1);
    cv::Mat cvWork;
    unsigned char* o = out.data();
    unsigned char* o2 = out2.data();

    std::vector<Pair> pairs;
    const double g = static_cast<double>(n);
    // The same call on both sides: how far from 1.00 the machine's noise moves a ratio (not counted
    // in the worst ratio).
    pairs.push_back({kCalibration, [&] { std::memcpy(o, i420.data(), n); }, [&] { std::memcpy(o, i420.data(), n); },
                     2 * g});
    // Colour conversions.
    pairs.push_back({"RGB2Gry / BGR2GRAY", [&] { QelRGB2Gry(bgr.data(), w, h, o); },
                     [&] { cv::cvtColor(mBgr, cvGrey, cv::COLOR_BGR2GRAY); }, 4 * g});
    pairs.push_back({"RGB2YUV420P / BGR2YUV_I420", [&] { QelRGB2YUV420P(bgr.data(), w, h, o); },
                     [&] { cv::cvtColor(mBgr, cvI420, cv::COLOR_BGR2YUV_I420); }, 4.5 * g});
    pairs.push_back({"YUV420P2RGB / YUV2BGR_I420", [&] { QelYUV420P2RGB(i420.data(), w, h, o); },
                     [&] { cv::cvtColor(mI420, cvBgr, cv::COLOR_YUV2BGR_I420); }, 4.5 * g});
    pairs.push_back({"YUV420SP2RGB / YUV2BGR_NV12", [&] { QelYUV420SP2RGB(nv12.data(), w, h, o); },
                     [&] { cv::cvtColor(mNv12, cvBgr, cv::COLOR_YUV2BGR_NV12); }, 4.5 * g});
    pairs.push_back({"CbYCrY2RGB / YUV2BGR_UYVY", [&] { QelCbYCrY2RGB(uyvy.data(), w, h, o); },
                     [&] { cv::cvtColor(mUyvy, cvBgr, cv::COLOR_YUV2BGR_UYVY); }, 5 * g});
    pairs.push_back({"YUV420P2Gry / YUV2GRAY_I420", [&] { QelYUV420P2Gry(i420.data(), w, h, o); },
                     [&] { cv::cvtColor(mI420, cvGrey, cv::COLOR_YUV2GRAY_I420); }, 2 * g});
    pairs.push_back({"CbYCrY2Gry / YUV2GRAY_UYVY", [&] { QelCbYCrY2Gry(uyvy.data(), w, h, o); },
                     [&] { cv::cvtColor(mUyvy, cvGrey, cv::COLOR_YUV2GRAY_UYVY); }, 3 * g});
    // Channel planes: three grey planes to packed pixels (the same plane three times, so a grey image
    // to BGR) and one channel out.
    pairs.push_back({"Gry2RGBImg (three planes) / merge",
                     [&] { QelGry2RGBImg(grey.data(), grey2.data(), grey.data(), w, h, o); },
                     [&] {
                         const cv::Mat planes[3] = {mGrey, mGrey2, mGrey};
                         cv::merge(planes, 3, cvBgr);
                     },
                     6 * g});
    pairs.push_back({"ExtractOneChannelFromRGB / extractChannel",
                     [&] { QelExtractOneChannelFromRGB(bgr.data(), w, h, 1, o); },
                     [&] { cv::extractChannel(mBgr, cvGrey, 1); }, 4 * g});
    // Thresholds and histograms. Qel sets pixels >= T, OpenCV pixels > T.
    pairs.push_back({"Threshold / threshold", [&] { QelThreshold(grey.data(), w, h, 100, o); },
                     [&] { cv::threshold(mGrey, cvGrey, 99, 255, cv::THRESH_BINARY); }, 2 * g});
    std::vector<unsigned char> inversion(256);
    for (int v = 0; v < 256; ++v) inversion[static_cast<size_t>(v)] = static_cast<unsigned char>(255 - v);
    const cv::Mat mInversion(1, 256, CV_8UC1, inversion.data());
    pairs.push_back({"InvertGryValue (look-up table) / LUT", [&] { QelInvertGryValue(grey.data(), w, h, o); },
                     [&] { cv::LUT(mGrey, mInversion, cvGrey); }, 2 * g});
    pairs.push_back({"histogram+Otsu+threshold / THRESH_OTSU",
                     [&] {
                         int hist[256];
                         QelGetHistogram(grey.data(), w, h, hist);
                         QelThreshold(grey.data(), w, h, QelGetOtsuThreshold(hist, 256), o);
                     },
                     [&] { cv::threshold(mGrey, cvGrey, 0, 255, cv::THRESH_BINARY | cv::THRESH_OTSU); }});
    pairs.push_back({"GetHistogram / calcHist",
                     [&] {
                         int hist[256];
                         QelGetHistogram(grey.data(), w, h, hist);
                     },
                     [&] {
                         const int channels[] = {0};
                         const int size[] = {256};
                         const float range[] = {0, 256};
                         const float* ranges[] = {range};
                         cv::calcHist(&mGrey, 1, channels, cv::Mat(), cvOut, 1, size, ranges);
                     }});
    // Window filters.
    for (int half : {1, 2, 7}) {
        const int k = 2 * half + 1;
        const std::string size = std::to_string(k) + "x" + std::to_string(k);
        pairs.push_back({"GryAverageFilterFast / blur " + size,
                         [&, half] { QelGryAverageFilterFast(grey.data(), w, h, half, half, o); },
                         [&, k] { cv::blur(mGrey, cvGrey, cv::Size(k, k)); }});
    }
    for (int half : {1, 2}) {
        const int k = 2 * half + 1;
        const std::string size = std::to_string(k) + "x" + std::to_string(k);
        pairs.push_back({"GryImgMedianBoundary0 / medianBlur " + size,
                         [&, half] { QelGryImgMedianBoundary0(grey.data(), w, h, half, half, o); },
                         [&, k] { cv::medianBlur(mGrey, cvGrey, k); }});
    }
    const cv::Mat row3 = cv::getStructuringElement(cv::MORPH_RECT, cv::Size(3, 1));
    const cv::Mat col3 = cv::getStructuringElement(cv::MORPH_RECT, cv::Size(1, 3));
    const cv::Mat box3 = cv::getStructuringElement(cv::MORPH_RECT, cv::Size(3, 3));
    pairs.push_back({"GryImgMaxFilter3xInRow / dilate 3x1",
                     [&] { QelGryImgMaxFilter3xInRow(grey.data(), w, h, o); },
                     [&] { cv::dilate(mGrey, cvGrey, row3); }});
    pairs.push_back({"GryImgMinFilter3xInRow / erode 3x1",
                     [&] { QelGryImgMinFilter3xInRow(grey.data(), w, h, o); },
                     [&] { cv::erode(mGrey, cvGrey, row3); }});
    pairs.push_back({"GryImgMaxFilter3xInCol / dilate 1x3",
                     [&] { QelGryImgMaxFilter3xInCol(grey.data(), w, h, o); },
                     [&] { cv::dilate(mGrey, cvGrey, col3); }});
    pairs.push_back({"GryImgMinFilter3xInCol / erode 1x3",
                     [&] { QelGryImgMinFilter3xInCol(grey.data(), w, h, o); },
                     [&] { cv::erode(mGrey, cvGrey, col3); }});
    pairs.push_back({"BinImgMaxFilter3x3 / dilate 3x3", [&] { QelBinImgMaxFilter3x3(binary.data(), w, h, o); },
                     [&] { cv::dilate(mBinary, cvGrey, box3); }});
    pairs.push_back({"BinImgMinFilter3x3 / erode 3x3", [&] { QelBinImgMinFilter3x3(binary.data(), w, h, o); },
                     [&] { cv::erode(mBinary, cvGrey, box3); }});
    // Sobel magnitude: OpenCV needs both derivatives, their absolute values and a saturating sum.
    pairs.push_back({"GryImgSobel / Sobel |dx|+|dy|", [&] { QelGryImgSobel(grey.data(), w, h, o); },
                     [&] {
                         cv::Sobel(mGrey, cvOut, CV_16S, 1, 0);
                         cv::Sobel(mGrey, cvOut2, CV_16S, 0, 1);
                         cv::convertScaleAbs(cvOut, cvOut);
                         cv::convertScaleAbs(cvOut2, cvOut2);
                         cv::add(cvOut, cvOut2, cvGrey);
                     }});
    // Contours: both trace a fresh copy of the disc image and list every boundary.
    pairs.push_back({"GetContours / findContours",
                     [&] {
                         std::memcpy(o, binary.data(), n);
                         QelFreeContours(QelGetContours(o, work.data(), w, h, 0, 0, 0));
                     },
                     [&] {
                         std::memcpy(o2, binary.data(), n);
                         std::vector<std::vector<cv::Point>> contours;
                         cv::findContours(wrap(out2, h, w, CV_8UC1), contours, cv::RETR_LIST, cv::CHAIN_APPROX_NONE);
                     }});
    // Geometry.
    pairs.push_back({"GryImgBilinearInterpolattionFast / resize LINEAR 1280x720",
                     [&] { QelGryImgBilinearInterpolattionFast(grey.data(), w, h, o, 1280, 720); },
                     [&] { cv::resize(mGrey, cvLinear, cv::Size(1280, 720), 0, 0, cv::INTER_LINEAR); }});
    pairs.push_back({"ShrinkGryImg2x2ByAvr / resize AREA 960x540",
                     [&] { QelShrinkGryImg2x2ByAvr(grey.data(), w, h, o); },
                     [&] { cv::resize(mGrey, cvArea, cv::Size(w / 2, h / 2), 0, 0, cv::INTER_AREA); }});
    {
        int rw = 0;
        int rh = 0;
        delete[] QelRotateImgByCCS(grey.data(), w, h, 17.0, &rw, &rh);
        const cv::Mat m = cv::getRotationMatrix2D(cv::Point2f(0, 0), -17.0, 1.0);
        pairs.push_back({"RotateImgByCCS / warpAffine NEAREST 17 deg",
                         [&] {
                             int nw = 0;
                             int nh = 0;
                             delete[] QelRotateImgByCCS(grey.data(), w, h, 17.0, &nw, &nh);
                         },
                         [&, m, rw, rh] { cv::warpAffine(mGrey, cvOut, m, cv::Size(rw, rh), cv::INTER_NEAREST); }});
    }
    pairs.push_back({"FlipVertical / flip 0", [&] { QelFlipVertical(grey.data(), w, h, false, o); },
                     [&] { cv::flip(mGrey, cvGrey, 0); }, 2 * g});
    pairs.push_back({"FlipHorizontal (in place) / flip 1", [&] { QelFlipHorizontal(o, w, h); },
                     [&] { cv::flip(mGrey, cvGrey, 1); }, 2 * g});
    pairs.push_back({"ImgRotate90DegreeCS / rotate 90 CW", [&] { QelImgRotate90DegreeCS(grey.data(), w, h, false, o); },
                     [&] { cv::rotate(mGrey, cvTurned, cv::ROTATE_90_CLOCKWISE); }});
    pairs.push_back({"ImgRotate90DegreeCS RGB / rotate 90 CW",
                     [&] { QelImgRotate90DegreeCS(bgr.data(), w, h, true, o); },
                     [&] { cv::rotate(mBgr, cvTurnedBgr, cv::ROTATE_90_CLOCKWISE); }});
    // Hough lines over the same points: three lines of 600 points and 1000 scattered ones.
    std::vector<int> xs;
    std::vector<int> ys;
    {
        cv::Mat points = cv::Mat::zeros(h, w, CV_8UC1);
        std::mt19937 rng(5);
        for (int i = 0; i < 600; ++i) {
            const int px[3] = {300 + i, 1000, 200 + i * 2};
            const int py[3] = {200 + i / 2, 100 + i, 900 - i};
            for (int k = 0; k < 3; ++k) {
                xs.push_back(px[k]);
                ys.push_back(py[k]);
            }
        }
        for (int i = 0; i < 1000; ++i) {
            xs.push_back(static_cast<int>(rng() % w));
            ys.push_back(static_cast<int>(rng() % h));
        }
        for (size_t i = 0; i < xs.size(); ++i) points.at<unsigned char>(ys[i], xs[i]) = 255;
        QelHoughLines_Initialize(w, h);
        pairs.push_back({"HoughLines_HT + 2 GetNextLine / HoughLines",
                         [&] {
                             double a = 0, b = 0, c = 0;
                             int rho = 0, theta = 0;
                             QelHoughLines_HT(xs.data(), ys.data(), static_cast<int>(xs.size()), 0, 180, &a, &b, &c,
                                              &rho, &theta);
                             QelHoughLines_GetNextLine(10, 5, &a, &b, &c, &rho, &theta);
                             QelHoughLines_GetNextLine(10, 5, &a, &b, &c, &rho, &theta);
                         },
                         [&, points] {
                             std::vector<cv::Vec2f> lines;
                             cv::HoughLines(points, lines, 1, CV_PI / 180, 200);
                         }});
    }
    // Pixel-wise operations of two images (Qel's running maximum and minimum update their second
    // argument, as cv::max(acc, img, acc) does).
    const int ni = static_cast<int>(n);
    pairs.push_back({"Img1AndImg2ToRes / bitwise_and", [&] { QelImg1AndImg2ToRes(grey.data(), grey2.data(), ni, o); },
                     [&] { cv::bitwise_and(mGrey, mGrey2, cvGrey); }, 3 * g});
    pairs.push_back({"Img1OrImg2ToRes / bitwise_or", [&] { QelImg1OrImg2ToRes(grey.data(), grey2.data(), ni, o); },
                     [&] { cv::bitwise_or(mGrey, mGrey2, cvGrey); }, 3 * g});
    pairs.push_back({"Img1XorImg2ToRes / bitwise_xor", [&] { QelImg1XorImg2ToRes(grey.data(), grey2.data(), ni, o); },
                     [&] { cv::bitwise_xor(mGrey, mGrey2, cvGrey); }, 3 * g});
    pairs.push_back({"Img1SubstractImg2 / subtract",
                     [&] { QelImg1SubstractImg2(grey.data(), grey2.data(), w, h, false, o); },
                     [&] { cv::subtract(mGrey, mGrey2, cvGrey); }, 3 * g});
    pairs.push_back({"RemainMaxGry / max", [&] { QelRemainMaxGry(grey.data(), w, h, false, o); },
                     [&] { cv::max(cvGrey, mGrey, cvGrey); }, 3 * g});
    pairs.push_back({"RemainMinGry / min", [&] { QelRemainMinGry(grey.data(), w, h, false, o); },
                     [&] { cv::min(cvGrey, mGrey, cvGrey); }, 3 * g});
    pairs.push_back({"ReverseImg / flip -1", [&] { QelReverseImg(grey.data(), w, h, o); },
                     [&] { cv::flip(mGrey, cvGrey, -1); }, 2 * g});
    // Whole-image measures and remappings.
    pairs.push_back({"HistogramEqualizeFast (in place) / equalizeHist", [&] { QelHistogramEqualizeFast(o, w, h); },
                     [&] { cv::equalizeHist(mGrey, cvGrey); }});
    pairs.push_back({"GetImageAvrAndDev / meanStdDev",
                     [&] {
                         double mean = 0;
                         double dev = 0;
                         QelGetImageAvrAndDev(grey.data(), w, h, &mean, &dev);
                     },
                     [&] {
                         cv::Scalar mean;
                         cv::Scalar dev;
                         cv::meanStdDev(mGrey, mean, dev);
                     }});
    pairs.push_back({"GryMinMaxInRect (ratio 0) / minMaxLoc",
                     [&] {
                         int lo = 0;
                         int hi = 0;
                         QelGryMinMaxInRect(grey.data(), w, 0, w - 1, 0, h - 1, 0.0, &lo, &hi);
                     },
                     [&] {
                         double lo = 0;
                         double hi = 0;
                         cv::minMaxLoc(mGrey, &lo, &hi);
                     }});
    pairs.push_back({"GetWhitePixelsNum / countNonZero",
                     [&] { QelGetWhitePixelsNum(binary.data(), w, h, 0, w - 1, 0, h - 1); },
                     [&] { cv::countNonZero(mBinary); }});
    pairs.push_back({"DoSumGryImg / integral",
                     [&] { QelDoSumGryImg(grey.data(), w, h, reinterpret_cast<int*>(work.data())); },
                     [&] { cv::integral(mGrey, cvWork, CV_32S); }});
    // More filters and resizes.
    const cv::Mat row5 = cv::getStructuringElement(cv::MORPH_RECT, cv::Size(5, 1));
    const cv::Mat col5 = cv::getStructuringElement(cv::MORPH_RECT, cv::Size(1, 5));
    pairs.push_back({"GryImgMaxFilter5xInRow / dilate 5x1",
                     [&] { QelGryImgMaxFilter5xInRow(grey.data(), w, h, o); },
                     [&] { cv::dilate(mGrey, cvGrey, row5); }});
    pairs.push_back({"GryImgMinFilter5xInCol / erode 1x5",
                     [&] { QelGryImgMinFilter5xInCol(grey.data(), w, h, o); },
                     [&] { cv::erode(mGrey, cvGrey, col5); }});
    pairs.push_back({"BinImgMedFilter3x3 / medianBlur 3x3 (binary)",
                     [&] { QelBinImgMedFilter3x3(binary.data(), w, h, o); },
                     [&] { cv::medianBlur(mBinary, cvGrey, 3); }});
    pairs.push_back({"RGBAverageFilterFast / blur 3x3 (BGR)",
                     [&] { QelRGBAverageFilterFast(bgr.data(), w, h, 1, 1, o); },
                     [&] { cv::blur(mBgr, cvBgr, cv::Size(3, 3)); }});
    pairs.push_back({"GryImgSobel0 / Sobel |dy|",
                     [&] { QelGryImgSobel0(grey.data(), w, h, o); },
                     [&] {
                         cv::Sobel(mGrey, cvOut, CV_16S, 0, 1);
                         cv::convertScaleAbs(cvOut, cvGrey);
                     }});
    pairs.push_back({"ImgRotate90DegreeCCS / rotate 90 CCW",
                     [&] { QelImgRotate90DegreeCCS(grey.data(), w, h, false, o); },
                     [&] { cv::rotate(mGrey, cvTurned, cv::ROTATE_90_COUNTERCLOCKWISE); }});
    pairs.push_back({"ZoomGryImg2x2 / resize LINEAR 3840x2160",
                     [&] { QelZoomGryImg2x2(grey.data(), w, h, o); },
                     [&] { cv::resize(mGrey, cvZoom, cv::Size(2 * w, 2 * h), 0, 0, cv::INTER_LINEAR); }});
    pairs.push_back({"ShrinkGryImg2x2ByExtract / resize NEAREST 960x540",
                     [&] {
                         int dw = 0;
                         int dh = 0;
                         QelShrinkGryImg2x2ByExtract(grey.data(), w, h, o, &dw, &dh);
                     },
                     [&] { cv::resize(mGrey, cvArea, cv::Size(w / 2, h / 2), 0, 0, cv::INTER_NEAREST); }});
    pairs.push_back({"ShrinkGryImg4x4ByAvr / resize AREA 480x270",
                     [&] {
                         int dw = 0;
                         int dh = 0;
                         QelShrinkGryImg4x4ByAvr(grey.data(), w, h, o, &dw, &dh);
                     },
                     [&] { cv::resize(mGrey, cvQuarter, cv::Size(w / 4, h / 4), 0, 0, cv::INTER_AREA); }});
    pairs.push_back({"DifferenceImg12 / absdiff",
                     [&] { QelDifferenceImg12(grey.data(), grey2.data(), w, h, false, o); },
                     [&] { cv::absdiff(mGrey, mGrey2, cvGrey); }, 3 * g});

    std::printf("Qel / OpenCV %s on %dx%d, one thread, fastest of %d alternating samples\n", CV_VERSION, w, h,
                kSamples);
    std::printf("%% memcpy: bytes read + written per second against memcpy of as many bytes, timed in turn with both\n\n");
    std::printf("%-58s %10s %10s %7s %9s\n", "pair", "Qel ms", "OpenCV ms", "ratio", "% memcpy");
    double worst = 0;
    std::string worstName;
    for (const Pair& p : pairs) {
        if (p.name.find(filter) == std::string::npos) continue;
        // A point operation also alternates with memcpy of half its bytes (as many read as written).
        const size_t copyBytes = static_cast<size_t>(p.bytes / 2);
        const auto copy = [&] { std::memcpy(work.data(), copySource.data(), copyBytes); };
        std::vector<std::function<void()>> fs{p.qel, p.cv};
        if (p.bytes > 0) fs.push_back(copy);
        const std::vector<double> t = time_alternating(fs);
        const double tq = t[0];
        const double tc = t[1];
        const double ratio = tq / tc;
        if (ratio > worst && p.name != kCalibration) {
            worst = ratio;
            worstName = p.name;
        }
        char share[32] = "";
        if (p.bytes > 0) std::snprintf(share, sizeof share, "%.0f%%", 100.0 * t[2] / tq);
        std::printf("%-58s %10.3f %10.3f %7.2f %9s\n", p.name.c_str(), tq * 1e3, tc * 1e3, ratio, share);
        std::fflush(stdout);
    }
    std::printf("\nworst ratio: %.2f (%s)\n", worst, worstName.c_str());
    return 0;
}
