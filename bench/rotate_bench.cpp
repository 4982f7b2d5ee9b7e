// Rotation by 17 degrees of the 1920 x 1080 frame: the whole-image rotation into a new buffer, the
// rectangle extractors (grey and RGB, with and without fill, and the sheared nearest form), and for
// scale the exact quarter turn and the per-row shear.
#include <qel.h>

#include "bench_images.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

constexpr double kDegrees = 17.0;

void BM_RotateImgByCCS(benchmark::State& state) {
    std::vector<unsigned char> src = bench::frame();
    int w = 0, h = 0;
    for (auto _ : state) {
        unsigned char* out = QelRotateImgByCCS(src.data(), bench::kWidth, bench::kHeight, kDegrees, &w, &h);
        benchmark::DoNotOptimize(out);
        delete[] out;
    }
    bench::set_pixels_processed(state);
    state.counters["out_w"] = w;
    state.counters["out_h"] = h;
}
BENCHMARK(BM_RotateImgByCCS)->Unit(benchmark::kMillisecond);

// A rectangle of the frame's size taken about the frame's centre, so that its corners fall
// outside and the fill form fills them.
template <int Channels, bool WithFill>
void BM_CopyRectFromRotate(benchmark::State& state) {
    std::vector<unsigned char> src = bench::frame(Channels);
    std::vector<unsigned char> dst(src.size());
    const int x0 = 200, y0 = -257;  // output centre (960, 540) samples the source centre
    for (auto _ : state) {
        if (Channels == 1 && WithFill)
            benchmark::DoNotOptimize(QelCopyRectFromRotateCCS(src.data(), bench::kWidth, bench::kHeight, x0, y0,
                                                              kDegrees, 0, dst.data(), bench::kWidth, bench::kHeight));
        else if (Channels == 1)
            QelCopyRectFromRotateCCS(src.data(), bench::kWidth, bench::kHeight, x0, y0, kDegrees, dst.data(),
                                     bench::kWidth, bench::kHeight);
        else if (WithFill)
            benchmark::DoNotOptimize(QelRgbCopyRectFromRotateCCS(src.data(), bench::kWidth, bench::kHeight, x0, y0,
                                                                 kDegrees, 0, dst.data(), bench::kWidth,
                                                                 bench::kHeight));
        else
            QelRgbCopyRectFromRotateCCS(src.data(), bench::kWidth, bench::kHeight, x0, y0, kDegrees, dst.data(),
                                        bench::kWidth, bench::kHeight);
        benchmark::DoNotOptimize(dst.data());
    }
    bench::set_pixels_processed(state);
}
BENCHMARK(BM_CopyRectFromRotate<1, false>)->Name("CopyRectFromRotateCCS")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CopyRectFromRotate<1, true>)->Name("CopyRectFromRotateCCS/fill")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CopyRectFromRotate<3, false>)->Name("RgbCopyRectFromRotateCCS")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CopyRectFromRotate<3, true>)->Name("RgbCopyRectFromRotateCCS/fill")->Unit(benchmark::kMillisecond);

void BM_CopyRectFromRotateAndShiftFast(benchmark::State& state) {
    std::vector<unsigned char> src = bench::frame();
    std::vector<unsigned char> dst(src.size());
    for (auto _ : state) {
        // shear = degrees + 95: five degrees of shear on top of the rotation.
        QelCopyRectFromRotateAndShiftFast(src.data(), bench::kWidth, bench::kHeight, 200, -257, kDegrees, kDegrees + 95,
                                          dst.data(), bench::kWidth, bench::kHeight);
        benchmark::DoNotOptimize(dst.data());
    }
    bench::set_pixels_processed(state);
}
BENCHMARK(BM_CopyRectFromRotateAndShiftFast)->Unit(benchmark::kMillisecond);

void BM_ImgRotate90DegreeCS(benchmark::State& state) {
    std::vector<unsigned char> src = bench::frame();
    std::vector<unsigned char> dst(src.size());
    for (auto _ : state) {
        QelImgRotate90DegreeCS(src.data(), bench::kWidth, bench::kHeight, false, dst.data());
        benchmark::DoNotOptimize(dst.data());
    }
    bench::set_pixels_processed(state);
}
BENCHMARK(BM_ImgRotate90DegreeCS)->Unit(benchmark::kMillisecond);

void BM_ShiftXPerRowFine(benchmark::State& state) {
    std::vector<unsigned char> src = bench::frame();
    std::vector<unsigned char> dst(src.size());
    for (auto _ : state) {
        QelShiftXPerRowFine(src.data(), bench::kWidth, bench::kHeight, 0.3, dst.data());
        benchmark::DoNotOptimize(dst.data());
    }
    bench::set_pixels_processed(state);
}
BENCHMARK(BM_ShiftXPerRowFine)->Unit(benchmark::kMillisecond);

}  // namespace
