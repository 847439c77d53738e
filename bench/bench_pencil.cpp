// A pencil stroke costs in proportion to the stroke, not the picture, the view refresh
// included; an undo point copies only the tiles written since the one before.

#include "BenchHost.h"
#include "core/Gdi.h"
#include "document/UndoRing.h"
#include "tools/Pencil.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <cmath>

using namespace velunta;
using namespace velunta::bench;

namespace {

// Inverts the destination (the ROP3 that reads neither source nor brush).
constexpr std::uint32_t kInvert = 0x00550009;

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
    int i = 0;
    for (auto _ : state) {
        // A dab's worth of change between two steps, as a stroke makes.
        BitBlt(doc.Buffer, 3000 + (i & 63), 2000, 8, 8, doc.Buffer, 0, 0, kInvert);
        ++i;
        PrepUndo(undo, doc);
    }
    state.counters["rebases"] = doc.UndoKeep.rebases();
}

} // namespace

BENCHMARK(BM_PencilStroke200)
    ->Args({600, 400, 0})
    ->Args({6000, 4000, 0})
    ->Args({600, 400, 1})
    ->Args({6000, 4000, 1})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PrepUndo)->Args({600, 400})->Args({6000, 4000})->Unit(benchmark::kMicrosecond);

VELUNTA_BENCHMARK_MAIN()
