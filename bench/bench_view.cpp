// A view refresh paints only what is visible: the cost of UpdateView plus the paint
// of the view must not grow with the picture. Each run changes a small part of the
// visible picture, refreshes, and paints the visible view.

#include "BenchHost.h"
#include "core/Gdi.h"
#include "tools/SimplePaints.h"

#include <QApplication>
#include <QScrollBar>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <initializer_list>
#include <vector>

#include <benchmark/benchmark.h>

using namespace velunta;
using namespace velunta::bench;

namespace {

// The window's size: a real one (1280 x 800) and a small one (600 x 400).
QSize window(const benchmark::State& state)
{
    return QSize(int(state.range(3)), int(state.range(4)));
}

// Each case in both windows.
void windows(benchmark::internal::Benchmark* b, std::initializer_list<std::array<int, 3>> cases)
{
    for (const QSize view : {QSize(1280, 800), QSize(600, 400)})
        for (const auto& c : cases)
            b->Args({c[0], c[1], c[2], view.width(), view.height()});
}

void BM_RefreshAndPaint(benchmark::State& state)
{
    WindowBench b(int(state.range(0)), int(state.range(1)), double(state.range(2)), window(state));
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
    WindowBench b(int(state.range(0)), int(state.range(1)), double(state.range(2)), window(state));
    for (auto _ : state) {
        b.paintView();
        benchmark::DoNotOptimize(b.screen.constBits());
    }
}

// One step of the scroll bar, then the paint of the view.
void BM_ScrollStep(benchmark::State& state)
{
    WindowBench b(int(state.range(0)), int(state.range(1)), double(state.range(2)), window(state));
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

// The refresh on a 6000 x 4000 picture against the same on a 400 x 300 one, in turn,
// in the window's size: medians and their ratio.
void BM_RefreshLargeOverSmall(benchmark::State& state)
{
    const QSize view = window(state);
    const double zoom = double(state.range(2));
    WindowBench small(400, 300, zoom, view), large(6000, 4000, zoom, view);
    std::vector<double> a, b;
    int i = 0;
    auto refresh = [&](WindowBench& w) {
        const QPoint mid = w.visibleMiddle();
        const auto t0 = std::chrono::steady_clock::now();
        SetPixelV(w.form.doc.Buffer, mid.x() + (i & 7), mid.y(), RGB(i & 255, 0, 0));
        UpdateView(w.form.doc, w.form.doc.Buffer, mid.x(), mid.y(), w.form.doc.ZoomFactor);
        w.paintView();
        benchmark::DoNotOptimize(w.screen.constBits());
        return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - t0).count();
    };
    for (auto _ : state) {
        ++i;
        a.push_back(refresh(small));
        b.push_back(refresh(large));
        state.SetIterationTime(b.back() / 1e6);
    }
    auto median = [](std::vector<double> v) {
        std::nth_element(v.begin(), v.begin() + v.size() / 2, v.end());
        return v[v.size() / 2];
    };
    const double ms = median(a), ml = median(b);
    state.counters["small_us"] = ms;
    state.counters["large_us"] = ml;
    state.counters["ratio"] = ml / ms;
    std::printf("refresh %dx%d window, zoom %g%%: 400x300 %.1f us  6000x4000 %.1f us  ratio %.2f\n",
                view.width(), view.height(), zoom, ms, ml, ml / ms);
}

} // namespace

BENCHMARK(BM_RefreshLargeOverSmall)
    ->Args({0, 0, 100, 1280, 800})
    ->Args({0, 0, 100, 600, 400})
    ->Args({0, 0, 500, 1280, 800})
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_FullRepaint)
    ->Apply([](benchmark::internal::Benchmark* b) {
        windows(b, {{600, 400, 500}, {6000, 4000, 500}, {6000, 4000, 25}});
    })
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ScrollStep)
    ->Apply([](benchmark::internal::Benchmark* b) {
        windows(b, {{600, 400, 500}, {6000, 4000, 500}});
    })
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_RefreshAndPaint)
    ->Apply([](benchmark::internal::Benchmark* b) {
        windows(b, {{400, 300, 100}, {6000, 4000, 100}, {400, 300, 500}, {6000, 4000, 500}});
    })
    ->Unit(benchmark::kMicrosecond);

VELUNTA_BENCHMARK_MAIN()
