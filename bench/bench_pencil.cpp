// A pencil stroke costs in proportion to the stroke, not the picture, the view refresh
// included; an undo point is one copy of the picture.

#include "BenchHost.h"
#include "document/UndoRing.h"
#include "tools/Pencil.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <cmath>

using namespace velunta;
using namespace velunta::bench;

namespace {

void BM_PencilStroke200(benchmark::State& state)
{
    WindowBench b(int(state.range(0)), int(state.range(1)));
    b.state.SelectorValues[4].Value = 8;
    b.state.SmoothEdge = state.range(2) != 0;
    const QPoint mid = b.visibleMiddle();
    Surface& s = b.form.doc.Buffer;
    for (auto _ : state) {
        s.CurrentX = mid.x();
        s.CurrentY = mid.y();
        for (int i = 0; i < 200; ++i) {
            const int x = mid.x() + int(60 * std::sin(i / 20.0));
            const int y = mid.y() + int(40 * std::cos(i / 15.0));
            PencilStroke(b.ctx, b.form.doc, s, x, y, 100, true, 1);
            b.paintView();
        }
    }
    state.counters["samples/s"] = benchmark::Counter(200.0 * state.iterations(), benchmark::Counter::kIsRate);
}

void BM_PrepUndo(benchmark::State& state)
{
    const int w = int(state.range(0)), h = int(state.range(1));
    Document doc;
    doc.CreatePicture(w + 2, h + 2, 0xFFFFFF);
    UndoState undo;
    for (auto _ : state)
        PrepUndo(undo, doc);
    state.counters["MP/s"] =
        benchmark::Counter(double(w) * h * state.iterations() / 1e6, benchmark::Counter::kIsRate);
}

} // namespace

BENCHMARK(BM_PencilStroke200)
    ->Args({600, 400, 0})
    ->Args({6000, 4000, 0})
    ->Args({600, 400, 1})
    ->Args({6000, 4000, 1})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PrepUndo)->Args({6000, 4000})->Unit(benchmark::kMillisecond);

VELUNTA_BENCHMARK_MAIN()
