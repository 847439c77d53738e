// The memory a document holds, read from the process's resident set (VmRSS): a photo of
// 12 and of 24 megapixels is opened (its pixels become the picture, as File > Open does),
// then four pencil strokes each record their undo steps at the press and the release,
// as the program does, so the ring holds four steps. The counter `pictures` is the
// document's resident memory in pictures' worth (one picture = width x height x 4 bytes);
// it should stay at or below 2.5.

#include "BenchHost.h"
#include "document/Tool.h"
#include "tools/PointerPipeline.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <string>

using namespace velunta;
using namespace velunta::bench;

namespace {

double residentMB()
{
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind("VmRSS:", 0) == 0)
            return std::stod(line.substr(6)) / 1024.0;
    return 0;
}

// A photo-like picture: smooth colour with fine detail, so no page is left untouched.
QImage photo(int w, int h)
{
    QImage image(w, h, QImage::Format_RGB32);
    for (int y = 0; y < h; ++y) {
        QRgb* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < w; ++x)
            row[x] = qRgb((x / 16 + y) & 255, (x * 3 + y / 8) & 255, (x ^ y) & 255);
    }
    return image;
}

void BM_DocumentMemoryFourStrokes(benchmark::State& state)
{
    const int w = int(state.range(0)), h = int(state.range(1));
    const double pictureMB = double(w) * h * 4 / (1024.0 * 1024.0);
    double pictures = 0, ringPictures = 0;
    for (auto _ : state) {
        const double before = residentMB();
        auto b = std::make_unique<WindowBench>(64, 64, 100, QSize(1280, 800));
        b->form.doc.Buffer.setSize(w + 2, h + 2);
        b->form.doc.Buffer.setPicture(photo(w, h));
        b->form.SizePaintArea();
        b->form.Form_Resize();
        b->tools.undo.SkipNextPrepUndo = true;
        b->tools.PrepUndo(); // File > Open's own step, skipped as the program skips it
        b->state.CurrentTool = kToolPencil;
        b->state.SelectorValues[4].Value = 8;
        for (int i = 0; i < 4; ++i) {
            const float x = 200.0f + 300 * i, y = 300;
            PaintArea_MouseDown(b->ctx, b->form.doc, 1, 0, x, y);
            PaintArea_MouseMove(b->ctx, b->form.doc, 1, 0, x + 150, y + 90);
            PaintArea_MouseUp(b->ctx, b->form.doc, 1, 0, x + 150, y + 90);
            b->paintView();
        }
        const double after = residentMB();
        pictures = (after - before) / pictureMB;
        std::vector<UndoSnapshotPtr> held(b->form.doc.UndoSlots.begin(), b->form.doc.UndoSlots.end());
        ringPictures = double(UndoStore::heldBytes(held, b->form.doc.Buffer)) / (1024.0 * 1024.0) / pictureMB;
        state.PauseTiming();
        b.reset();
        state.ResumeTiming();
    }
    state.counters["picture_MB"] = pictureMB;
    state.counters["pictures"] = pictures;
    state.counters["ring_beyond_picture"] = ringPictures;
    std::printf("%d x %d: document resident %.2f pictures (limit 2.5); ring beyond the picture and its layer "
                "%.3f pictures\n",
                w, h, pictures, ringPictures);
}

} // namespace

BENCHMARK(BM_DocumentMemoryFourStrokes)
    ->Args({4000, 3000})
    ->Args({6000, 4000})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

VELUNTA_BENCHMARK_MAIN()
