// What a user waits for at the press of a tool: the pointer pipeline's press, a short
// move and the release, each followed by the paint of the view (the shown window's
// event loop paints what the refresh invalidated), with the undo steps the program
// records at the press and the release. The same click runs on a 600 x 400 and a
// 6000 x 4000 picture in turn, in a 600 x 400 and a 1280 x 800 window; the counters
// give the median of each and their ratio (large / small), which should stay near 1: a
// click costs what it changes, not the picture's size.
//
// BM_FirstPressAfterCommand times the first click after a whole-picture command
// (Invert, through the command runner as the menu runs it), whose undo step must take a
// new base: (1) the pointer comes over the picture after the command, as from the menu
// (a move without a button, then 150 ms for the hand, untimed); (2) the pointer rests
// over the picture through the command, as with a keyboard shortcut, and the press comes
// 150 ms later; (0) the press comes at once with the pointer never over the picture,
// which pays the copy of the picture at the press.
//
// The fill clicks inside one cell of line art: cells of 240 x 160 between black lines,
// each with two closed rings (holes the fill goes round), so that both pictures give the
// fill the same region.

#include "BenchHost.h"
#include "core/Gdi.h"
#include "document/ImageCommand.h"
#include "document/Tool.h"
#include "imageops/CanvasOps.h"
#include "tools/PointerPipeline.h"

#include <QThread>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
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

// Counts the paints of the view, to show that a refresh really paints.
struct PaintCounter : QObject {
    bool eventFilter(QObject*, QEvent* e) override
    {
        if (e->type() == QEvent::Paint)
            ++paints;
        return false;
    }
    int paints = 0;
};

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
        b.showWindow();
        b.form.paintArea()->installEventFilter(&counter);
        // The pointer comes over the new picture before the first click, as a user's does;
        // the first click after a command is BM_FirstPressAfterCommand's.
        approach();
        b.form.doc.UndoKeep.settle(b.form.doc.Buffer);
    }
    double clickMillis()
    {
        b.state.ForeColor = (++count % 2) ? RGB(200, 0, 0) : RGB(0, 0, 200);
        Document& doc = b.form.doc;
        const auto t0 = std::chrono::steady_clock::now();
        PaintArea_MouseDown(b.ctx, doc, 1, 0, float(at.x()), float(at.y()));
        b.refreshView();
        PaintArea_MouseMove(b.ctx, doc, 1, 0, float(at.x() + 20), float(at.y() + 10));
        b.refreshView();
        PaintArea_MouseUp(b.ctx, doc, 1, 0, float(at.x() + 20), float(at.y() + 10));
        b.refreshView();
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - t0).count();
    }
    // Edit > Invert, as the menu runs it: the runner with its undo step, then the refresh.
    // `resting`: the pointer rests over the picture meanwhile.
    void invert(bool resting)
    {
        b.form.paintArea()->setAttribute(Qt::WA_UnderMouse, resting);
        RunImageCommand(b.tools, {.name = "InvertImage"},
                        [](ImageCommand& c) { c.target().setImage(Inverted(c.target().Image())); });
        b.refreshView();
    }
    // The pointer comes over the picture, with no button held.
    void approach()
    {
        PaintArea_MouseMove(b.ctx, b.form.doc, 0, 0, float(at.x() - 30), float(at.y() - 20));
        b.refreshView();
    }
    WindowBench b;
    PaintCounter counter;
    QPoint at;
    int count = 0;
};

double median(std::vector<double> v)
{
    std::nth_element(v.begin(), v.begin() + v.size() / 2, v.end());
    return v[v.size() / 2];
}

// The medians of the small and the large clicks and their ratio, as counters and printed.
void report(benchmark::State& state, const std::vector<double>& a, const std::vector<double>& b,
            const std::string& label)
{
    const double ms = median(a), ml = median(b);
    state.counters["small_ms"] = ms;
    state.counters["large_ms"] = ml;
    state.counters["ratio"] = ml / ms;
    std::printf("%s: 600x400 %.3f ms  6000x4000 %.3f ms  ratio %.2f\n", label.c_str(), ms, ml, ml / ms);
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
    state.counters["rebases"] = large.b.form.doc.UndoKeep.rebases();
    state.counters["paints"] = double(large.counter.paints) / double(b.size());
    static const char* names[] = {"", "pencil", "", "fill", "", "",     "airbrush", "",
                                  "", "",       "", "",     "", "blur", "line"};
    char label[64];
    std::snprintf(label, sizeof label, "%-9s %dx%d window", names[tool], view.width(), view.height());
    report(state, a, b, label);
}

void BM_FirstPressAfterCommand(benchmark::State& state)
{
    const int way = int(state.range(0));
    const QSize view(1280, 800);
    Clicker small(600, 400, kToolPencil, view), large(6000, 4000, kToolPencil, view);
    std::vector<double> a, b;
    for (auto _ : state) {
        small.invert(way == 2);
        large.invert(way == 2);
        if (way == 1) {
            small.approach();
            large.approach();
        }
        if (way != 0)
            QThread::msleep(150);
        a.push_back(small.clickMillis());
        b.push_back(large.clickMillis());
        state.SetIterationTime(b.back() / 1e3);
    }
    report(state, a, b,
           std::string("first press after Invert, ") +
               (way == 1   ? "the pointer came over the picture"
                : way == 2 ? "the pointer rested over the picture"
                           : "pressed at once, the pointer never over the picture"));
}

} // namespace

BENCHMARK(BM_ClickLargeOverSmall)
    ->ArgsProduct({{kToolPencil, kToolAirbrush, kToolLine, kToolBlur, kToolFill}, {600}, {400}})
    ->ArgsProduct({{kToolPencil, kToolAirbrush, kToolLine, kToolBlur, kToolFill}, {1280}, {800}})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FirstPressAfterCommand)
    ->Arg(1)
    ->Arg(2)
    ->Arg(0)
    ->Iterations(15)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

VELUNTA_BENCHMARK_MAIN()
