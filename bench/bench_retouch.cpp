// A retouch dab costs in proportion to its area, not to the picture: each brush at
// size 50 on a small and a large picture, the view refresh included; and a blur drag
// that has to keep up with a 60 Hz pointer.

#include "BenchHost.h"
#include "tools/SimplePaints.h"

#include <benchmark/benchmark.h>

#include <cmath>

using namespace velunta;
using namespace velunta::bench;

namespace {

// Tool, its size selector, and the option that picks the variant.
struct Brush {
    int tool;
    int sizeSelector;
    bool option;
};
constexpr Brush kBrushes[] = {
    {6, 2, false},   // soft spray
    {6, 2, true},    // hard spray
    {11, 3, false},  // brighten
    {13, 8, false},  // blur
    {15, 10, false}, // darken
    {18, 12, false}, // dissolve, reds
    {18, 12, true},  // dissolve with noise
    {19, 15, false}, // enhance, reds
    {19, 15, true},  // enhance, filter only base colour, double step
};

void setUp(WindowBench& b, const Brush& brush, int size)
{
    b.state.CurrentTool = brush.tool;
    b.state.SelectorValues[brush.sizeSelector].Value = size;
    b.state.SelectorValues[0].Value = 60;
    b.state.SelectorValues[1].Value = 60;
    b.state.SelectorValues[11].Value = 60;
    b.state.SelectorValues[13].Caption = QStringLiteral("20 ");
    b.state.SelectorValues[14].Caption = QStringLiteral("10 ");
    b.state.HardSpray = b.state.AddNoise = b.state.FilterBaseColor = b.state.DoubleStep = brush.option;
    b.state.ForeColor = RGB(200, 40, 90);
    // Something to work on: a soft colour ramp around the view's middle.
    Surface& s = b.form.doc.Buffer;
    const QPoint mid = b.visibleMiddle();
    for (int y = std::max(0, mid.y() - 120); y < std::min(s.ScaleHeight(), mid.y() + 120); ++y) {
        QRgb* row = reinterpret_cast<QRgb*>(s.Image().scanLine(y));
        for (int x = std::max(0, mid.x() - 160); x < std::min(s.ScaleWidth(), mid.x() + 160); ++x)
            row[x] = qRgb(x & 255, y & 255, (x + y) & 255);
    }
}

void BM_RetouchDab(benchmark::State& state)
{
    const Brush& brush = kBrushes[state.range(2)];
    WindowBench b(int(state.range(0)), int(state.range(1)));
    setUp(b, brush, 50);
    const QPoint mid = b.visibleMiddle();
    Document& doc = b.form.doc;
    int n = 0;
    for (auto _ : state) {
        double zoom = 100;
        bool drawing = true;
        const int x = mid.x() + (n % 7) * 4 - 12, y = mid.y() + (n % 5) * 4 - 8;
        ToolDispatch(b.ctx, doc, doc.Buffer, x, y, zoom, drawing, 1, false);
        b.paintView();
        ++n;
    }
    state.counters["dabs/s"] = benchmark::Counter(double(state.iterations()), benchmark::Counter::kIsRate);
}

void BM_BlurDrag200(benchmark::State& state)
{
    WindowBench b(int(state.range(0)), int(state.range(1)));
    setUp(b, kBrushes[3], 30);
    const QPoint mid = b.visibleMiddle();
    Document& doc = b.form.doc;
    for (auto _ : state) {
        for (int i = 0; i < 200; ++i) {
            double zoom = 100;
            bool drawing = true;
            const int x = mid.x() + int(60 * std::sin(i / 20.0));
            const int y = mid.y() + int(40 * std::cos(i / 15.0));
            ToolDispatch(b.ctx, doc, doc.Buffer, x, y, zoom, drawing, 1, false);
            b.paintView();
        }
    }
    // Seconds per pointer sample; a 60 Hz pointer leaves 16 ms.
    state.counters["s/sample"] = benchmark::Counter(
        200.0 * double(state.iterations()), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void brushArgs(benchmark::internal::Benchmark* b)
{
    for (int k = 0; k < int(std::size(kBrushes)); ++k) {
        b->Args({600, 400, k});
        b->Args({6000, 4000, k});
    }
}

} // namespace

BENCHMARK(BM_RetouchDab)->Apply(brushArgs)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BlurDrag200)->Args({600, 400})->Args({6000, 4000})->Unit(benchmark::kMillisecond);

VELUNTA_BENCHMARK_MAIN()
