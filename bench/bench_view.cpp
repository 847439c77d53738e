// A view refresh paints only what is visible: the cost of UpdateView plus the paint
// of the view must not grow with the picture. Each run changes a small part of the
// visible picture, refreshes, and paints the visible view.

#include "BenchHost.h"
#include "core/Gdi.h"
#include "tools/SimplePaints.h"

#include <QApplication>

#include <benchmark/benchmark.h>

using namespace velunta;
using namespace velunta::bench;

namespace {

void BM_RefreshAndPaint(benchmark::State& state)
{
    // The viewport (380 x 280) is smaller than both pictures, so each fills it.
    WindowBench b(int(state.range(0)), int(state.range(1)), double(state.range(2)));
    const QPoint mid = b.visibleMiddle();
    int i = 0;
    for (auto _ : state) {
        SetPixelV(b.form.doc.Buffer, mid.x() + (i & 7), mid.y(), RGB(i & 255, 0, 0));
        UpdateView(b.form.doc, b.form.doc.Buffer, mid.x(), mid.y(), b.form.doc.ZoomFactor);
        b.paintView();
        benchmark::DoNotOptimize(b.screen.constBits());
        ++i;
    }
}

} // namespace

BENCHMARK(BM_RefreshAndPaint)
    ->Args({400, 300, 100})
    ->Args({6000, 4000, 100})
    ->Args({400, 300, 500})
    ->Args({6000, 4000, 500})
    ->Unit(benchmark::kMicrosecond);

VELUNTA_BENCHMARK_MAIN()
