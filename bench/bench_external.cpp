// What a user waits for when an effect program runs on a 4000 x 3000 photo: the
// exchange Velunta itself adds (the picture written to temp/effect.bmp and the result
// read back), and the work of each effect that ships and of the colour depth
// converter. The exchange is the anchor: every row prints its processor time as a
// multiple of the exchange's ("x_exchange"), measured in the same run. Processor time,
// because on a shared machine the wall clock mostly measures the neighbours; the
// exchange's wait for the disk (each write is flushed) is left out of it.

#include "BenchPictures.h"
#include "bmpExport/ColorDepth.h"
#include "effects/SampleEffects.h"
#include "files/BmpWriter.h"
#include "files/read/PictureLoader.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <functional>

using namespace velunta;

namespace {

constexpr int kWidth = 4000;
constexpr int kHeight = 3000;

double cpuSeconds()
{
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) / 1e9;
}

struct Bench {
    QTemporaryDir dir;
    QImage picture = bench::Photo(kWidth, kHeight);
    QString exchange = dir.filePath(QStringLiteral("effect.bmp"));
    double exchangeSeconds = 0;

    void roundTrip() const
    {
        SaveBMP(picture, exchange);
        benchmark::DoNotOptimize(LoadPicture(exchange));
    }
    Bench()
    {
        // The anchor: the quickest of three round trips.
        std::array<double, 3> runs{};
        for (double& run : runs) {
            const double start = cpuSeconds();
            roundTrip();
            run = cpuSeconds() - start;
        }
        exchangeSeconds = *std::min_element(runs.begin(), runs.end());
    }
};

Bench& bench()
{
    static Bench b;
    return b;
}

void measure(benchmark::State& state, const std::function<void()>& work)
{
    double seconds = 0;
    for (auto _ : state) {
        const double start = cpuSeconds();
        work();
        seconds += cpuSeconds() - start;
    }
    state.counters["x_exchange"] = seconds / double(state.iterations()) / bench().exchangeSeconds;
}

void BM_Exchange(benchmark::State& state)
{
    measure(state, [] { bench().roundTrip(); });
}

void BM_Effect(benchmark::State& state, void (*effect)(QImage&))
{
    measure(state, [effect] {
        QImage picture = bench().picture.copy();
        effect(picture);
        benchmark::DoNotOptimize(picture);
    });
}

void sepia(QImage& p)
{
    Sepia(p);
}
void oilPaint(QImage& p)
{
    OilPaint(p);
}
void pencil(QImage& p)
{
    PencilSketch(p);
}
void posterize(QImage& p)
{
    Posterize(p);
}
void vignette(QImage& p)
{
    Vignette(p);
}
void oldPhoto(QImage& p)
{
    OldPhoto(p);
}

void BM_ColorDepth(benchmark::State& state)
{
    const DepthChoice choice{int(state.range(0)), Dither(state.range(1))};
    measure(state, [&] { benchmark::DoNotOptimize(ReduceColors(bench().picture, choice)); });
}

BENCHMARK(BM_Exchange)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Effect, Sepia, sepia)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Effect, OilPaint, oilPaint)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Effect, PencilSketch, pencil)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Effect, Posterize, posterize)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Effect, Vignette, vignette)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Effect, OldPhoto, oldPhoto)->Unit(benchmark::kMillisecond);
// bits, dither (0 none, 1 Floyd-Steinberg, 2 ordered)
BENCHMARK(BM_ColorDepth)
    ->Args({1, 1})
    ->Args({4, 0})
    ->Args({4, 1})
    ->Args({8, 1})
    ->Args({8, 2})
    ->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
