// Texture Fill on a 4000 x 3000 picture, through the command runner as the menu runs
// it: the undo step (a copy of the picture into the undo ring), the tiling, the
// refresh. A 256 x 256 texture as the program ships them, and a 1 x 1 one, the worst
// case for the tiling's rows. Two yardsticks are timed in the same run: a plain copy
// of the picture into one that is already there (a bare memory copy), and a new copy
// of the picture (memory taken, filled and given back, as the program's own copies of
// a picture are made). The summary prints each fill in both; the budget of 6 counts
// new copies.

#include "core/Surface.h"
#include "document/CommandHost.h"
#include "document/Document.h"
#include "document/ImageCommand.h"
#include "document/UndoRing.h"
#include "imageops/TileTexture.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <string>

using namespace velunta;

namespace {

constexpr int kWidth = 4000, kHeight = 3000;
constexpr double kBudget = 6;

// The main window's part in a command, with the real undo ring.
class RingHost : public CommandHost {
public:
    RingHost() { doc.CreatePicture(kWidth + 2, kHeight + 2, 0xFFFFFF); }
    Document* ActiveDocument() override { return &doc; }
    void PrepUndo() override { velunta::PrepUndo(undo, doc); }
    void SetSelBak() override {}
    void SaveUndoBitmap() override {}
    void ValidateMenus() override {}
    void PictureResized() override {}
    void BeginBusy(bool) override {}
    bool StepProgress(double) override { return false; }
    void EndBusy() override {}

    Document doc;
    UndoState undo;
};

Surface Texture(int side)
{
    QImage picture(side, side, QImage::Format_RGB32);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            picture.setPixel(x, y, qRgb(x & 255, y & 255, (x ^ y) & 255));
    Surface s;
    s.setImage(picture);
    return s;
}

// The yardstick: one plain copy of the whole picture into a picture of the same size.
void BM_Copy(benchmark::State& state)
{
    const QImage from(kWidth, kHeight, QImage::Format_RGB32);
    QImage to(kWidth, kHeight, QImage::Format_RGB32);
    for (auto _ : state) {
        std::memcpy(to.bits(), from.constBits(), std::size_t(from.sizeInBytes()));
        benchmark::DoNotOptimize(to.constBits());
    }
}

// The program's kind of copy: a new picture each time, whose pages the copy faults in.
void BM_NewCopy(benchmark::State& state)
{
    QImage from(kWidth, kHeight, QImage::Format_RGB32);
    from.fill(0x336699);
    for (auto _ : state) {
        QImage to = from.copy();
        benchmark::DoNotOptimize(to.constBits());
    }
}

void BM_TextureFill(benchmark::State& state)
{
    RingHost host;
    const Surface texture = Texture(int(state.range(0)));
    for (auto _ : state) {
        RunImageCommand(host, {.name = "mnuTexturefill"},
                        [&](ImageCommand& c) { return FillWithTexture(c.target(), texture); });
        benchmark::DoNotOptimize(host.doc.Buffer.Image().constBits());
    }
}

// Keeps the fastest repetition of each benchmark, in wall-clock and in processor time
// (which counts the page faults too, and is steadier on a busy machine), then prints
// the fills in copies.
class SummaryReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.error_occurred || run.iterations == 0 || run.run_type != Run::RT_Iteration)
                continue;
            const double real = run.real_accumulated_time / double(run.iterations);
            const double cpu = run.cpu_accumulated_time / double(run.iterations);
            std::string name = run.run_name.function_name;
            if (!run.run_name.args.empty())
                name += "/" + run.run_name.args;
            auto [it, fresh] = m_best.try_emplace(name, real, cpu);
            if (!fresh)
                it->second = {std::min(it->second.first, real), std::min(it->second.second, cpu)};
        }
    }
    void Finalize() override
    {
        ConsoleReporter::Finalize();
        const auto copy = m_best.find("BM_Copy");
        const auto newCopy = m_best.find("BM_NewCopy");
        if (copy == m_best.end() || newCopy == m_best.end())
            return;
        const auto [copyReal, copyCpu] = copy->second;
        const auto [newReal, newCpu] = newCopy->second;
        std::printf(
            "\nOn %d x %d: a plain copy %.2f ms (%.2f ms of processor), a new copy %.2f ms (%.2f ms):\n",
            kWidth, kHeight, copyReal * 1e3, copyCpu * 1e3, newReal * 1e3, newCpu * 1e3);
        std::printf("%-32s %9s %8s %10s %8s %10s %8s\n", "", "ms", "copies", "cpu copies", "new", "cpu new",
                    "budget");
        for (const auto& [name, best] : m_best) {
            if (name == copy->first || name == newCopy->first)
                continue;
            const double news = std::min(best.first / newReal, best.second / newCpu);
            std::printf("%-32s %9.2f %8.2f %10.2f %8.2f %10.2f %6.0f new%s\n", name.c_str(), best.first * 1e3,
                        best.first / copyReal, best.second / copyCpu, best.first / newReal,
                        best.second / newCpu, kBudget, news <= kBudget ? "  ok" : "  OVER");
        }
    }

private:
    std::map<std::string, std::pair<double, double>> m_best;
};

} // namespace

BENCHMARK(BM_Copy)->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(5);
BENCHMARK(BM_NewCopy)->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(5);
BENCHMARK(BM_TextureFill)->Arg(256)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(5);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv); // the runner's wait cursor needs one
    benchmark::Initialize(&argc, argv);
    SummaryReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
