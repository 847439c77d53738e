// The fill and gradient tools on a 4000 x 3000 picture, through the tool engine and the
// view's refresh as a stroke runs them. The gradient is reported as a multiple of one
// full-picture copy timed in the same run (counter x_copy, CPU time of this thread, so
// that other work on the machine counts against neither); the fill against
// ImageMagick's fill of the same picture.

#include "BenchHost.h"
#include "ImageMagick.h"
#include "core/Gdi.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <vector>

using namespace velunta;
using namespace velunta::bench;

namespace {

constexpr int kWidth = 4000, kHeight = 3000;

double threadMillis()
{
    timespec ts;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return ts.tv_sec * 1e3 + ts.tv_nsec / 1e6;
}

// One full-picture BitBlt, the median of several.
double copyMillis()
{
    Surface src, dst;
    for (Surface* s : {&src, &dst}) {
        s->setScaleSize(kWidth, kHeight);
        s->Cls();
    }
    std::vector<double> times;
    for (int i = 0; i < 15; ++i) {
        const double t0 = threadMillis();
        BitBlt(dst, 0, 0, kWidth, kHeight, src, 0, 0, SRCCOPY);
        times.push_back(threadMillis() - t0);
    }
    std::nth_element(times.begin(), times.begin() + 7, times.end());
    return times[7];
}

// A stroke of the current tool from `from` to `to` (picture pixels) in `samples` moves.
void stroke(WindowBench& b, QPointF from, QPointF to, int samples, bool paint)
{
    Document& doc = b.form.doc;
    Surface& s = doc.Buffer;
    ++doc.StrokeSerial;
    s.CurrentX = from.x();
    s.CurrentY = from.y();
    double zoom = doc.ZoomFactor;
    bool drawing = true;
    for (int i = 0; i <= samples; ++i) {
        const QPointF p = from + (to - from) * (double(i) / std::max(1, samples));
        ToolDispatch(b.ctx, doc, s, int(p.x()), int(p.y()), zoom, drawing, 1, false);
        if (paint)
            b.paintView();
    }
    drawing = false;
    ToolDispatch(b.ctx, doc, s, int(to.x()), int(to.y()), zoom, drawing, 0, false);
    if (paint)
        b.paintView();
}

// Drags that cover the whole picture: strips laid level from the top, upright from the
// right edge, and at 45 degrees from the top right corner.
const QPointF kGradientDrags[][2] = {
    {{0, 0}, {3000, 0}}, {{3999, 0}, {3999, 4000}}, {{3999, 0}, {3999 + 3536, 3536}}};

void BM_GradientFullPicture(benchmark::State& state)
{
    WindowBench b(kWidth, kHeight);
    b.state.CurrentTool = 4;
    b.state.ForeColor = RGB(20, 40, 200);
    b.state.BackColor = RGB(250, 220, 120);
    const auto& drag = kGradientDrags[state.range(0)];
    const double copy = copyMillis();
    double spent = 0;
    for (auto _ : state) {
        const double t0 = threadMillis();
        stroke(b, drag[0], drag[1], 1, false);
        spent += threadMillis() - t0;
    }
    state.counters["x_copy"] = spent / state.iterations() / copy;
    state.counters["copy_ms"] = copy;
}
BENCHMARK(BM_GradientFullPicture)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

// The fill's press on a white picture: the whole picture fills.
void BM_FillToolPress(benchmark::State& state)
{
    WindowBench b(kWidth, kHeight);
    b.state.CurrentTool = 3;
    b.state.FillPattern = int(state.range(0));
    int i = 0;
    for (auto _ : state) {
        state.PauseTiming();
        b.form.doc.Buffer.Cls();
        b.state.ForeColor = (++i % 2) ? RGB(200, 0, 0) : RGB(0, 0, 200);
        state.ResumeTiming();
        stroke(b, {2000, 1500}, {2000, 1500}, 0, true);
    }
}
BENCHMARK(BM_FillToolPress)->Arg(0)->Arg(7)->Unit(benchmark::kMillisecond)->UseRealTime();

BENCHMARK(velunta::bench::BM_ImageMagickFloodFill4000x3000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(3);

// A fill drag of 200 samples over the area its press filled: after the press no sample
// finds anything to do, and none repaints the view.
void BM_FillToolDrag200(benchmark::State& state)
{
    WindowBench b(kWidth, kHeight);
    b.state.CurrentTool = 3;
    b.state.FillPattern = int(state.range(0));
    b.state.FloodFillBorder = state.range(1) != 0;
    int i = 0;
    for (auto _ : state) {
        state.PauseTiming();
        b.form.doc.Buffer.Cls();
        b.state.ForeColor = (++i % 2) ? RGB(200, 0, 0) : RGB(0, 0, 200);
        Document& doc = b.form.doc;
        ++doc.StrokeSerial;
        double zoom = 100;
        bool drawing = true;
        ToolDispatch(b.ctx, doc, doc.Buffer, 100, 100, zoom, drawing, 1, false); // the press fills it all
        state.ResumeTiming();
        Surface& s = doc.Buffer;
        for (int k = 1; k <= 200; ++k) {
            ToolDispatch(b.ctx, doc, s, 100 + 17 * k, 100 + 13 * k, zoom, drawing, 1, false);
            b.paintView();
        }
    }
    state.counters["samples/s"] = benchmark::Counter(200.0 * state.iterations(), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_FillToolDrag200)->Args({0, 0})->Args({7, 0})->Args({7, 1})->Unit(benchmark::kMillisecond);

} // namespace

VELUNTA_BENCHMARK_MAIN()
