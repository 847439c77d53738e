// Blends, reverse blends, frames and borders on a 4000 x 3000 picture through the
// command runner as the menus run them: the undo step, the copies the runner and the
// work take, the redraw of the view and the pending events of each progress step.
//
// Two yardsticks are timed in the same run: a copy of the picture into a picture that
// is already there (BM_Copy, a bare memory copy) and a new copy of the picture
// (BM_NewCopy: the memory taken, filled and given back, as the program's own copies
// are made). The runner alone, with a command that changes one pixel, is timed too
// (BM_RunnerOnePixel): that part every picture command pays. The summary prints each
// command in both kinds of copies, against a budget of 6 new copies. The Picture
// Frames dialog's preview is timed per change of a control, against 100 ms. The
// summary counts CPU time, which a machine busy with other work inflates less than
// the time on the clock; both are in the table above it.

#include "BenchHost.h"
#include "BenchPictures.h"
#include "document/CommandHost.h"
#include "document/ImageCommand.h"
#include "document/UndoRing.h"
#include "imageops/Blend.h"
#include "imageops/Borders.h"
#include "imageops/Frames.h"
#include "imageops/frmPictureFrames.h"
#include "tools/Selection.h"

#include <QComboBox>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <map>
#include <string>

using namespace velunta;
using namespace velunta::bench;

namespace {

constexpr int kWidth = 4000, kHeight = 3000;

const QImage& photo()
{
    static const QImage image = Photo(kWidth, kHeight);
    return image;
}

const QImage& otherPhoto()
{
    static const QImage image = Photo(kWidth, kHeight).mirrored(true, false);
    return image;
}

// The main window's part in a command, as frmMain plays it: the undo ring, the
// selection's backup, and a turn of the event loop at every progress step.
class BenchCommandHost : public CommandHost {
public:
    explicit BenchCommandHost(Document& doc) : m_doc(doc) {}
    Document* ActiveDocument() override { return &m_doc; }
    void PrepUndo() override { velunta::PrepUndo(m_undo, m_doc); }
    void SetSelBak() override { velunta::SetSelBak(m_doc); }
    void SaveUndoBitmap() override {}
    void ValidateMenus() override {}
    void PictureResized() override {}
    void BeginBusy(bool) override {}
    bool StepProgress(double) override
    {
        QCoreApplication::processEvents();
        return false;
    }
    void EndBusy() override {}

private:
    Document& m_doc;
    UndoState m_undo;
};

void restore(Surface& s, const QImage& picture)
{
    QImage& image = s.Image();
    std::memcpy(image.bits(), picture.constBits(), std::size_t(picture.sizeInBytes()));
}

// The yardstick: one plain copy of the whole picture into a picture of the same size.
void BM_Copy(benchmark::State& state)
{
    Surface s;
    s.setImage(photo().copy());
    for (auto _ : state) {
        restore(s, photo());
        benchmark::DoNotOptimize(s.Image().constBits());
    }
}

// The other yardstick: a new copy of the picture, made and given back.
void BM_NewCopy(benchmark::State& state)
{
    for (auto _ : state) {
        QImage copy = photo().copy();
        benchmark::DoNotOptimize(copy.constBits());
    }
}

using Work = std::function<bool(ImageCommand&)>;

// One command on the whole picture (or on a selection of all of it), the picture put
// back untimed between runs.
void runCommand(benchmark::State& state, bool onSelection, const Work& work)
{
    WindowBench b(kWidth, kHeight);
    Document& doc = b.form.doc;
    BenchCommandHost host(doc);
    for (auto _ : state) {
        state.PauseTiming();
        restore(doc.Buffer, photo());
        if (onSelection) {
            SelectAll(doc);
            SetSelBak(doc);
        }
        state.ResumeTiming();
        ImageCommand command(host, {.name = "bench", .progress = true});
        command.run(work);
        b.paintView();
    }
}

// The Picture Frames dialog on the picture: each iteration changes the thickness,
// which redraws the preview.
void BM_FramesControlChange(benchmark::State& state)
{
    FrameSettings settings;
    settings.transparency = state.range(0) != 0;
    frmPictureFrames dialog(settings, photo());
    QComboBox* list = settings.transparency ? dialog.cmbTransThick() : dialog.cmbThickness();
    int n = 0;
    for (auto _ : state) {
        list->setEditText(QString::number(20 + (n++ % 40)));
        benchmark::DoNotOptimize(dialog.previewImage().constBits());
    }
}

// Opening the dialog: the small copy of the picture is made once.
void BM_FramesPreviewCopy(benchmark::State& state)
{
    for (auto _ : state) {
        FramePreview preview(photo(), QSize(320, 240));
        benchmark::DoNotOptimize(preview.reduced().constBits());
    }
}

class SummaryReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            if (!run.error_occurred && run.iterations > 0 && run.run_type == Run::RT_Iteration)
                m_ms[run.benchmark_name()] = run.cpu_accumulated_time / double(run.iterations) * 1e3;
    }
    void Finalize() override
    {
        ConsoleReporter::Finalize();
        const auto copy = m_ms.find("BM_Copy/real_time");
        const auto fresh = m_ms.find("BM_NewCopy/real_time");
        if (copy == m_ms.end() || fresh == m_ms.end())
            return;
        std::printf("\nOn %d x %d: a copy into a picture %.2f ms, a new copy %.2f ms.\n", kWidth, kHeight,
                    copy->second, fresh->second);
        std::printf("%-40s %9s %8s %8s %14s\n", "command", "ms", "copies", "new", "budget");
        for (const auto& [name, ms] : m_ms) {
            if (name == copy->first || name == fresh->first)
                continue;
            const bool preview = name.rfind("BM_Frames", 0) == 0;
            const double copies = ms / copy->second, newCopies = ms / fresh->second;
            const char* verdict = preview ? (ms <= 100 ? "100 ms  ok" : "100 ms  OVER")
                                          : (newCopies <= 6 ? "6 new  ok" : "6 new  OVER");
            std::printf("%-40s %9.2f %8.2f %8.2f %14s\n", name.c_str(), ms, copies, newCopies, verdict);
        }
    }

private:
    std::map<std::string, double> m_ms;
};

void add(const char* name, bool onSelection, Work work)
{
    benchmark::RegisterBenchmark(
        name, [onSelection, work](benchmark::State& s) { runCommand(s, onSelection, work); })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::RegisterBenchmark("BM_Copy", BM_Copy)->Unit(benchmark::kMillisecond)->UseRealTime();
    benchmark::RegisterBenchmark("BM_NewCopy", BM_NewCopy)->Unit(benchmark::kMillisecond)->UseRealTime();
    add("BM_RunnerOnePixel", false, [](ImageCommand& c) {
        c.target().Image().setPixel(0, 0, 0);
        return true;
    });

    // Blend Selection at 50 %: the float over what lies under it, reflected as with the
    // selection tool; Blend Image From at 50 %, Scramble.
    add("BM_BlendSelection", true, [](ImageCommand& c) {
        Surface texture;
        texture.setImage(c.doc().SelectedBack.Image());
        return BlendThePicture(c.target(), texture, {127, kBlendHorizontal, kBlendNormal}, true,
                               c.progressFn());
    });
    add("BM_BlendImageFrom", true, [](ImageCommand& c) {
        Surface texture;
        texture.setImage(otherPhoto());
        return BlendThePicture(c.target(), texture, {127, kBlendFromFile, kBlendScramble}, false,
                               c.progressFn());
    });
    add("BM_ReverseBlendH_NormalMedium", false,
        [](ImageCommand& c) { return ReverseBlendPicture(c.target(), false, 1, c.progressFn()); });
    add("BM_ReverseBlendV_Invert", false,
        [](ImageCommand& c) { return ReverseBlendPicture(c.target(), true, 4, c.progressFn()); });
    add("BM_GradientFrame_100", false, [](ImageCommand& c) {
        DrawGradientFrame(c.target(), 100, RGB(96, 52, 24), RGB(240, 206, 140), kFrameRaised);
        return true;
    });
    add("BM_TransparencyFrame_100", false, [](ImageCommand& c) {
        DrawTransparencyFrame(c.target(), 100, 60, kFadeDarken);
        return true;
    });
    add("BM_Border_48_Combine", false, [](ImageCommand& c) {
        Surface brush;
        brush.setImage(Photo(48, 48));
        DrawBorder(c.target(), brush, kBorderAllSides, kBorderCombine, 0);
        return true;
    });
    add("BM_Border_1x1_Paint", false, [](ImageCommand& c) {
        Surface brush;
        brush.setImage(Photo(1, 1));
        DrawBorder(c.target(), brush, kBorderAllSides, kBorderPaint, 0);
        return true;
    });
    benchmark::RegisterBenchmark("BM_FramesPreviewCopy", BM_FramesPreviewCopy)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
    benchmark::RegisterBenchmark("BM_FramesControlChange", BM_FramesControlChange)
        ->Arg(0)
        ->Arg(1)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();

    SummaryReporter reporter;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
