// Speed of the drawing services on picture sizes the program meets, with
// ImageMagick's flood fill timed alongside as the yardstick for ours.

#include "ImageMagick.h"
#include "core/Gdi.h"
#include "core/Surface.h"

#include <benchmark/benchmark.h>

using namespace velunta;

namespace {

Surface whiteSurface(int w, int h)
{
    Surface s;
    s.BackColor = 0xFFFFFF;
    s.setScaleSize(w, h);
    s.Cls();
    return s;
}

// The fill alternates black and white, so every iteration fills all 12 million pixels.
void BM_FloodFill4000x3000(benchmark::State& state)
{
    Surface s = whiteSurface(4000, 3000);
    s.FillStyle = 0;
    Color current = 0xFFFFFF;
    for (auto _ : state) {
        const Color next = current == 0xFFFFFF ? 0 : 0xFFFFFF;
        s.FillColor = next;
        ExtFloodFill(s, 0, 0, current, FLOODFILLSURFACE);
        current = next;
    }
    state.SetItemsProcessed(state.iterations() * 4000 * 3000);
}
BENCHMARK(BM_FloodFill4000x3000)->Unit(benchmark::kMillisecond)->UseRealTime();

// What the ImageMagick command does in-process: make the white picture, then fill it.
void BM_FloodFillNewPicture4000x3000(benchmark::State& state)
{
    for (auto _ : state) {
        Surface s = whiteSurface(4000, 3000);
        s.FillStyle = 0;
        s.FillColor = 0;
        ExtFloodFill(s, 0, 0, 0xFFFFFF, FLOODFILLSURFACE);
        benchmark::DoNotOptimize(s.Image().constBits());
    }
}
BENCHMARK(BM_FloodFillNewPicture4000x3000)->Unit(benchmark::kMillisecond)->UseRealTime();

// A fill drag repeats the fill at every pointer sample over an area already filled.
void BM_FloodFillRepeated4000x3000(benchmark::State& state)
{
    Surface s = whiteSurface(4000, 3000);
    s.FillStyle = 0;
    s.FillColor = 0;
    ExtFloodFill(s, 0, 0, 0xFFFFFF, FLOODFILLSURFACE);
    for (auto _ : state)
        benchmark::DoNotOptimize(ExtFloodFill(s, 10, 10, GetPixel(s, 10, 10), FLOODFILLSURFACE));
}
BENCHMARK(BM_FloodFillRepeated4000x3000)->Unit(benchmark::kMicrosecond);

BENCHMARK(velunta::bench::BM_ImageMagickFloodFill4000x3000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(5);

void BM_BitBltCopy4000x3000(benchmark::State& state)
{
    const Surface src = whiteSurface(4000, 3000);
    Surface dst = whiteSurface(4000, 3000);
    for (auto _ : state)
        BitBlt(dst, 0, 0, 4000, 3000, src, 0, 0, SRCCOPY);
    state.SetBytesProcessed(state.iterations() * 4000 * 3000 * 4);
}
BENCHMARK(BM_BitBltCopy4000x3000)->Unit(benchmark::kMillisecond)->UseRealTime();

// A 200-pixel stroke, 8 wide: its cost must not depend on the picture's size.
void BM_WideLine(benchmark::State& state)
{
    Surface s = whiteSurface(int(state.range(0)), int(state.range(1)));
    s.DrawWidth = 8;
    for (auto _ : state)
        Line(s, 100, 100, 260, 220, 0);
}
BENCHMARK(BM_WideLine)->Args({600, 400})->Args({6000, 4000})->Unit(benchmark::kMicrosecond);

// The view at 500 %: a 1200 x 800 viewport from a 240 x 160 part of a large picture.
void BM_StretchBltViewport500(benchmark::State& state)
{
    const Surface src = whiteSurface(4000, 3000);
    Surface view = whiteSurface(1200, 800);
    for (auto _ : state)
        StretchBlt(view, 0, 0, 1200, 800, src, 1000, 1000, 240, 160, SRCCOPY);
}
BENCHMARK(BM_StretchBltViewport500)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
