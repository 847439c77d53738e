// The canvas commands through the main window's real path (the runner, the undo step,
// the redraw) on a 4000 x 3000 picture, against one plain copy of that picture:
// flips within 3 copies, invert and erase within 2, the brightness and contrast
// previews of the whole picture within 5. The visible-area preview costs what the view
// shows (6000 x 4000 against 600 x 400 under 1.5). A resize to 8000 x 6000 and back
// takes under a second with a peak within 4 pictures of the larger size. The rotation's
// time is compared with Pillow's by bench/fx_vs_pillow.py.

#include "BenchPictures.h"
#include "core/SettingsStore.h"
#include "document/frmPaint.h"
#include "imageops/frmBrightContrast.h"
#include "shell/QtServices.h"
#include "shell/Services.h"
#include "shell/frmMain.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QSlider>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <memory>

using namespace velunta;

namespace {

constexpr int kWidth = 4000;
constexpr int kHeight = 3000;

const QImage& photo(int w = kWidth, int h = kHeight)
{
    static std::map<std::pair<int, int>, QImage> photos;
    QImage& image = photos[{w, h}];
    if (image.isNull())
        image = bench::Photo(w, h);
    return image;
}

// The main window of the program in a folder of its own, with one picture open.
class Program {
public:
    Program()
    {
        QDir().mkpath(m_home.path() + QStringLiteral("/app/temp"));
        m_services = std::make_unique<Services>(
            Services{m_prompt, m_dialogs, m_settings, m_home.path() + QStringLiteral("/app/"), false});
        main = std::make_unique<frmMain>(*m_services);
        main->resize(1000, 700);
        main->show();
        main->Load(QString());
        form = main->createDocument();
        form->doc.CreatePicture(kWidth + 2, kHeight + 2, 0xFFFFFF);
        form->doc.Name = QStringLiteral("Photo");
        form->doc.SetCaption(form->doc.Name);
        main->showDocument(form, false);
        restore();
        QCoreApplication::processEvents();
    }
    // The photo again, as the picture's own pixels.
    void restore()
    {
        form->doc.Buffer.setImage(photo().copy());
        main->PictureResized();
    }

    std::unique_ptr<frmMain> main;
    frmPaint* form = nullptr;

private:
    QTemporaryDir m_home;
    SettingsStore m_settings;
    QtPrompt m_prompt;
    QtFileDialogs m_dialogs;
    std::unique_ptr<Services> m_services;
};

// Made on first use, and gone before the application is.
std::unique_ptr<Program> g_program;

Program& program()
{
    if (!g_program)
        g_program = std::make_unique<Program>();
    return *g_program;
}

// The yardstick: one plain copy of the whole picture into a picture of the same size.
void BM_Copy(benchmark::State& state)
{
    QImage to(kWidth, kHeight, QImage::Format_RGB32);
    for (auto _ : state) {
        std::memcpy(to.bits(), photo().constBits(), size_t(photo().sizeInBytes()));
        benchmark::DoNotOptimize(to.constBits());
    }
}

// A copy into fresh memory, as a picture that is copied for keeps costs.
void BM_FreshCopy(benchmark::State& state)
{
    for (auto _ : state) {
        QImage copy = photo().copy();
        benchmark::DoNotOptimize(copy.constBits());
    }
}

void runCommand(benchmark::State& state, const std::function<void(frmMain&)>& command, bool restore)
{
    Program& p = program();
    p.restore();
    // The four slots of the undo ring get their memory on their first use; a picture
    // that is being worked on has them already.
    for (int i = 0; i < 4; ++i)
        p.main->PrepUndo();
    for (auto _ : state) {
        if (restore) {
            state.PauseTiming();
            p.restore();
            state.ResumeTiming();
        }
        command(*p.main);
    }
}

// The preview of the dialog, whole or of what the result's viewport shows, with the
// value changing from run to run.
void runPreview(benchmark::State& state, int w, int h, bool brightness, bool visibleOnly)
{
    frmBrightContrast dialog(photo(w, h), brightness);
    dialog.Check2()->setChecked(visibleOnly);
    int value = 20;
    for (auto _ : state) {
        dialog.HScroll1()->setValue(value);
        value = value == 20 ? -20 : 20;
        if (brightness)
            dialog.Command2_Click();
        else
            dialog.Command1_Click();
    }
}

long statusKb(const char* key)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith(key))
            return line.mid(int(std::strlen(key))).trimmed().split(' ').value(0).toLong();
    return -1;
}

// Resize to 8000 x 6000 and back, each with its undo file. The peak of memory above
// what the program held before is reported as a counter, in pictures of the larger size.
void BM_ResizeUpAndBack(benchmark::State& state)
{
    Program& p = program();
    p.restore();
    long peakKb = 0;
    for (auto _ : state) {
        state.PauseTiming();
        QFile clear(QStringLiteral("/proc/self/clear_refs"));
        const bool peakReset = clear.open(QIODevice::WriteOnly) && clear.write("5") == 1;
        clear.close();
        const long before = statusKb("VmRSS:");
        state.ResumeTiming();
        p.main->ResizeImage(2 * kWidth, 2 * kHeight);
        p.main->ResizeImage(kWidth, kHeight);
        state.PauseTiming();
        if (peakReset)
            peakKb = std::max(peakKb, statusKb("VmHWM:") - before);
        state.ResumeTiming();
    }
    const double larger = 2.0 * kWidth * 2 * kHeight * 4 / 1024;
    state.counters["peak_pictures"] = double(peakKb) / larger;
}

// Records every run's time, then prints the operations in copies with their budgets.
class SummaryReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.error_occurred || run.iterations == 0)
                continue;
            const std::string name = run.benchmark_name().substr(0, run.benchmark_name().find("/real_time"));
            m_seconds[name] = run.real_accumulated_time / double(run.iterations);
            for (const auto& [counter, value] : run.counters)
                m_counters[name + " " + counter] = value;
        }
    }
    void Finalize() override
    {
        ConsoleReporter::Finalize();
        const auto copy = m_seconds.find("BM_Copy");
        if (copy == m_seconds.end())
            return;
        std::printf("\nOn %d x %d through the commands, against one plain copy (%.2f ms):\n", kWidth, kHeight,
                    copy->second * 1e3);
        std::printf("%-34s %9s %8s %8s\n", "command", "ms", "copies", "budget");
        for (const auto& [name, seconds] : m_seconds) {
            const auto budget = m_budgets.find(name);
            const double copies = seconds / copy->second;
            std::string verdict;
            if (budget != m_budgets.end())
                verdict =
                    std::to_string(int(budget->second)) + (copies <= budget->second ? "  ok" : "  OVER");
            std::printf("%-34s %9.2f %8.2f %8s\n", name.c_str(), seconds * 1e3, copies, verdict.c_str());
        }
        for (const char* mode : {"Brightness", "Contrast"}) {
            const auto large = m_seconds.find(std::string("BM_") + mode + "VisiblePreview6000x4000");
            const auto small = m_seconds.find(std::string("BM_") + mode + "VisiblePreview600x400");
            if (large != m_seconds.end() && small != m_seconds.end()) {
                const double ratio = large->second / small->second;
                std::printf("%s visible-area preview, 6000 x 4000 against 600 x 400: %.2f (under 1.5: %s)\n",
                            mode, ratio, ratio < 1.5 ? "ok" : "OVER");
            }
        }
        const auto resize = m_seconds.find("BM_ResizeUpAndBack");
        if (resize != m_seconds.end()) {
            const double peak = m_counters["BM_ResizeUpAndBack peak_pictures"];
            std::printf("Resize to 8000 x 6000 and back: %.0f ms (under 1000: %s), peak %.2f pictures of "
                        "8000 x 6000 (within 4: %s)\n",
                        resize->second * 1e3, resize->second < 1 ? "ok" : "OVER", peak,
                        peak <= 4 ? "ok" : "OVER");
        }
    }
    std::map<std::string, double> m_budgets;

private:
    std::map<std::string, double> m_seconds;
    std::map<std::string, double> m_counters;
};

} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // The program's settings go to a folder of the run, not the user's.
    QTemporaryDir config;
    qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
    qputenv("XDG_DATA_HOME", config.path().toLocal8Bit());
    qputenv("VELUNTA_NO_SPLASH_WAIT", "1");
    QApplication app(argc, argv);
    SummaryReporter reporter;
    auto add = [&](const char* name, double budget, auto fn) {
        auto* b = benchmark::RegisterBenchmark(name, fn)->Unit(benchmark::kMillisecond)->UseRealTime();
        if (budget > 0)
            reporter.m_budgets[name] = budget;
        return b;
    };
    add("BM_Copy", 0, BM_Copy);
    add("BM_FreshCopy", 0, BM_FreshCopy);
    add("BM_FlipHorizontal", 3,
        [](benchmark::State& s) { runCommand(s, &frmMain::FlipHorizontal_Click, false); });
    add("BM_FlipVertical", 3,
        [](benchmark::State& s) { runCommand(s, &frmMain::FlipVertical_Click, false); });
    add("BM_InvertImage", 2, [](benchmark::State& s) { runCommand(s, &frmMain::InvertImage_Click, false); });
    add("BM_EraseImage", 2, [](benchmark::State& s) {
        runCommand(
            s, [](frmMain& m) { m.EraseImage_Click(0); }, false);
    });
    for (int index : {0, 1, 2}) {
        static const char* names[] = {"BM_Rotate45", "BM_Rotate90", "BM_Rotate180"};
        add(names[index], 0, [index](benchmark::State& s) {
            runCommand(
                s, [index](frmMain& m) { m.mnurotates_Click(index); }, true);
        });
    }
    add("BM_BrightnessPreview", 5, [](benchmark::State& s) { runPreview(s, kWidth, kHeight, true, false); });
    add("BM_ContrastPreview", 5, [](benchmark::State& s) { runPreview(s, kWidth, kHeight, false, false); });
    for (bool brightness : {true, false}) {
        add(brightness ? "BM_BrightnessVisiblePreview6000x4000" : "BM_ContrastVisiblePreview6000x4000", 0,
            [brightness](benchmark::State& s) { runPreview(s, 6000, 4000, brightness, true); })
            ->Unit(benchmark::kMicrosecond);
        add(brightness ? "BM_BrightnessVisiblePreview600x400" : "BM_ContrastVisiblePreview600x400", 0,
            [brightness](benchmark::State& s) { runPreview(s, 600, 400, brightness, true); })
            ->Unit(benchmark::kMicrosecond);
    }
    add("BM_ResizeUpAndBack", 0, BM_ResizeUpAndBack)->Iterations(3);

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    g_program.reset();
    return 0;
}
