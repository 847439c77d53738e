// What a user waits for at the press of a tool: the pointer pipeline's press, a short
// move and the release, each followed by the paint of the view, with the undo steps the
// program records at the press and the release. The same click runs on a 600 x 400 and a
// 6000 x 4000 picture in turn, in a 1280 x 800 window; the counters give the median of
// each and their ratio (large / small), which should stay near 1: a click costs what it
// changes, not the picture's size.
//
// The fill clicks inside one cell of line art: cells of 240 x 160 between black lines,
// each with two closed rings (holes the fill goes round), so that both pictures give the
// fill the same region.

#include "BenchHost.h"
#include "core/Gdi.h"
#include "document/Tool.h"
#include "tools/PointerPipeline.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

using namespace velunta;
using namespace velunta::bench;

namespace {

void drawLineArt(Surface& s)
{
    QImage& image = s.Image();
    for (int y = 0; y < image.height(); ++y) {
        QRgb* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int cx = x % 240, cy = y % 160;
            const bool line = cx == 0 || cy == 0;
            // Two rings in each cell: holes in the region a fill finds.
            const int d1 = (cx - 70) * (cx - 70) + (cy - 80) * (cy - 80);
            const int d2 = (cx - 170) * (cx - 170) + (cy - 60) * (cy - 60);
            const bool ring = (d1 >= 20 * 20 && d1 <= 23 * 23) || (d2 >= 15 * 15 && d2 <= 18 * 18);
            row[x] = line || ring ? 0xFF000000 : 0xFFFFFFFF;
        }
    }
    s.touchAll();
}

struct Clicker {
    Clicker(int w, int h, int tool, QSize view) : b(w, h, 100, view)
    {
        b.state.CurrentTool = tool;
        b.state.SelectorValues[4].Value = 8;
        if (tool == kToolFill)
            drawLineArt(b.form.doc.Buffer);
        const QPoint mid = b.visibleMiddle();
        // Into the middle of the cell around the view's middle, away from its rings.
        at = QPoint(mid.x() - mid.x() % 240 + 120, mid.y() - mid.y() % 160 + 130);
        b.paintView();
    }
    double clickMillis()
    {
        b.state.ForeColor = (++count % 2) ? RGB(200, 0, 0) : RGB(0, 0, 200);
        Document& doc = b.form.doc;
        const auto t0 = std::chrono::steady_clock::now();
        PaintArea_MouseDown(b.ctx, doc, 1, 0, float(at.x()), float(at.y()));
        b.paintView();
        PaintArea_MouseMove(b.ctx, doc, 1, 0, float(at.x() + 20), float(at.y() + 10));
        b.paintView();
        PaintArea_MouseUp(b.ctx, doc, 1, 0, float(at.x() + 20), float(at.y() + 10));
        b.paintView();
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - t0).count();
    }
    WindowBench b;
    QPoint at;
    int count = 0;
};

double median(std::vector<double> v)
{
    std::nth_element(v.begin(), v.begin() + v.size() / 2, v.end());
    return v[v.size() / 2];
}

void BM_ClickLargeOverSmall(benchmark::State& state)
{
    const int tool = int(state.range(0));
    const QSize view(int(state.range(1)), int(state.range(2)));
    Clicker small(600, 400, tool, view), large(6000, 4000, tool, view);
    std::vector<double> a, b;
    for (auto _ : state) {
        a.push_back(small.clickMillis());
        b.push_back(large.clickMillis());
        state.SetIterationTime(b.back() / 1e3);
    }
    const double ms = median(a), ml = median(b);
    state.counters["small_ms"] = ms;
    state.counters["large_ms"] = ml;
    state.counters["ratio"] = ml / ms;
    state.counters["rebases"] = large.b.form.doc.UndoKeep.rebases();
    static const char* names[] = {"", "pencil", "", "fill", "", "",     "airbrush", "",
                                  "", "",       "", "",     "", "blur", "line"};
    std::printf("%-9s %dx%d window: 600x400 %.3f ms  6000x4000 %.3f ms  ratio %.2f\n", names[tool],
                view.width(), view.height(), ms, ml, ml / ms);
}

} // namespace

BENCHMARK(BM_ClickLargeOverSmall)
    ->ArgsProduct({{kToolPencil, kToolAirbrush, kToolLine, kToolBlur, kToolFill}, {600}, {400}})
    ->ArgsProduct({{kToolPencil, kToolFill}, {1280}, {800}})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

VELUNTA_BENCHMARK_MAIN()
