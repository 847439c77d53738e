// A view refresh paints only what is visible: the cost of UpdateView plus the paint
// of the view must not grow with the picture. Each run changes a small part of the
// visible picture, refreshes, and paints the visible view.

#include "BenchHost.h"
#include "core/Gdi.h"
#include "tools/SimplePaints.h"

#include <QApplication>
#include <QScrollBar>

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

// A full repaint of the visible view at a zoom, without any change to the picture.
void BM_FullRepaint(benchmark::State& state)
{
    WindowBench b(int(state.range(0)), int(state.range(1)), double(state.range(2)));
    for (auto _ : state) {
        b.paintView();
        benchmark::DoNotOptimize(b.screen.constBits());
    }
}

// One step of the scroll bar, then the paint of the view.
void BM_ScrollStep(benchmark::State& state)
{
    WindowBench b(int(state.range(0)), int(state.range(1)), double(state.range(2)));
    QScrollBar* bar = b.form.VScroll1();
    int direction = 1;
    for (auto _ : state) {
        if (bar->value() + bar->singleStep() > bar->maximum() ||
            bar->value() - bar->singleStep() < bar->minimum())
            direction = -direction;
        bar->setValue(bar->value() + direction * bar->singleStep());
        b.paintView();
        benchmark::DoNotOptimize(b.screen.constBits());
    }
}

} // namespace

BENCHMARK(BM_FullRepaint)
    ->Args({600, 400, 500})
    ->Args({6000, 4000, 500})
    ->Args({6000, 4000, 25})
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ScrollStep)->Args({600, 400, 500})->Args({6000, 4000, 500})->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_RefreshAndPaint)
    ->Args({400, 300, 100})
    ->Args({6000, 4000, 100})
    ->Args({400, 300, 500})
    ->Args({6000, 4000, 500})
    ->Unit(benchmark::kMicrosecond);

VELUNTA_BENCHMARK_MAIN()
