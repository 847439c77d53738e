// How long a user waits for the Effects Browser's preview on a 4000 x 3000 photo: from
// a slider's change to the new picture painted in the dialog's view (the engine's run
// from the applied picture plus the paint of the view, fitted as the dialog shows a
// picture this big), for every effect. The budget is 150 ms; a plain copy of the
// picture is timed in the same run as the yardstick.
//
// Two times are printed: the wall time of this run, and the processor time of the
// whole process (both threads of the engine). The work never waits on anything but
// itself, so on an idle two-core machine the wall time is at most the processor time;
// on a machine busy with other work the wall time grows and the processor time does
// not, which makes it the figure to hold against the budget.

#include "BenchHost.h"
#include "BenchPictures.h"

#include "core/Prompt.h"
#include "core/SettingsStore.h"
#include "document/Document.h"
#include "document/ImageCommand.h"
#include "effects/EffectView.h"
#include "effects/frmEffectsBrowser.h"

#include <QApplication>
#include <QLineEdit>
#include <QSlider>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <string>

using namespace velunta;

namespace {

constexpr int kWidth = 4000, kHeight = 3000;
constexpr double kBudgetMs = 150;

// The main window as the browser's command sees it: one document, whose undo steps are
// recorded in the ring as the program does.
class OneDocumentHost : public bench::UndoToolHost {
public:
    explicit OneDocumentHost(Document& document) { doc = &document; }
};

class NoPrompt : public Prompt {
public:
    int MsgBox(const QString&, int, const QString&) override { return vbNo; }
};

// The browser open on the photo, as the user sees it.
struct Session {
    Session()
    {
        doc.CreatePicture(kWidth + 2, kHeight + 2, 0xFFFFFF);
        doc.Buffer.setImage(bench::Photo(kWidth, kHeight));
        command = std::make_unique<ImageCommand>(host, CommandOptions{.name = "bench"});
        dialog = std::make_unique<frmEffectsBrowser>(*command, settings, prompt, memory);
        dialog->setModal(false);
        dialog->resize(1120, 720);
        dialog->show();
        dialog->findChild<QLineEdit*>(QStringLiteral("Text1"))->setText(QStringLiteral("Velunta"));
        QApplication::processEvents();
    }
    Document doc;
    OneDocumentHost host{doc};
    SettingsStore settings;
    NoPrompt prompt;
    EffectsBrowserMemory memory;
    std::unique_ptr<ImageCommand> command;
    std::unique_ptr<frmEffectsBrowser> dialog;
};

// Made in main() once the application exists, and gone before it ends.
std::unique_ptr<Session> g_session;

Session& session()
{
    return *g_session;
}

void BM_Copy(benchmark::State& state)
{
    const QImage& from = session().doc.Buffer.Image();
    QImage to(from.size(), from.format());
    for (auto _ : state) {
        std::memcpy(to.bits(), from.constBits(), std::size_t(from.sizeInBytes()));
        benchmark::DoNotOptimize(to.constBits());
    }
}

// One preview: a slider moves (or, for an effect without one, the preview is asked
// for), the engine draws, the view paints.
void BM_Preview(benchmark::State& state)
{
    Session& s = session();
    frmEffectsBrowser& d = *s.dialog;
    d.mnuFx_Click(int(state.range(0)));
    QSlider* slider = d.findChild<QSlider*>(QStringLiteral("HScroll1(0)"));
    const bool moves = slider->isEnabled() && slider->isVisible();
    const int a = slider->value(), b = a == slider->maximum() ? a - 1 : a + 1;
    bool flip = false;
    for (auto _ : state) {
        if (moves)
            slider->setValue((flip = !flip) ? b : a);
        else
            d.ApplyEffect();
        d.RenderPreview();
        d.view()->viewport()->repaint();
    }
}

// The view's paint alone: what the preview adds to the engine's run.
void BM_ViewPaint(benchmark::State& state)
{
    Session& s = session();
    for (auto _ : state)
        s.dialog->view()->viewport()->repaint();
}

class SummaryReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            if (!run.error_occurred && run.iterations > 0) {
                m_seconds[run.benchmark_name()] = run.real_accumulated_time / double(run.iterations);
                m_cpu[run.benchmark_name()] = run.cpu_accumulated_time / double(run.iterations);
            }
    }
    void Finalize() override
    {
        ConsoleReporter::Finalize();
        const auto copy = m_seconds.find("BM_Copy/process_time/real_time");
        if (copy == m_seconds.end())
            return;
        std::printf("\nPreview on %d x %d, from the change to the painted view; budget %.0f ms, "
                    "one plain copy of the picture %.2f ms:\n",
                    kWidth, kHeight, kBudgetMs, copy->second * 1e3);
        std::printf("%-20s %9s %8s %9s %8s %8s\n", "effect", "wall ms", "/budget", "cpu ms", "/budget",
                    "copies");
        for (const auto& [name, seconds] : m_seconds) {
            if (name == copy->first)
                continue;
            const double ms = seconds * 1e3, cpu = m_cpu[name] * 1e3;
            std::printf("%-20s %9.1f %8.2f %9.1f %8.2f %8.2f%s\n", label(name).c_str(), ms, ms / kBudgetMs,
                        cpu, cpu / kBudgetMs, seconds / copy->second, cpu > kBudgetMs ? "  OVER" : "");
        }
    }

private:
    static std::string label(const std::string& name)
    {
        const auto slash = name.find('/');
        if (name.rfind("BM_Preview/", 0) == 0) {
            const int id = std::stoi(name.substr(slash + 1));
            if (const EffectRow* row = FindEffect(id))
                return row->menuCaption;
        }
        return name.substr(0, slash);
    }
    std::map<std::string, double> m_seconds;
    std::map<std::string, double> m_cpu;
};

} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // The browser reads and writes its settings; they go to a folder of their own.
    QTemporaryDir config;
    qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
    QApplication app(argc, argv);
    SummaryReporter reporter;

    const auto timed = [](benchmark::internal::Benchmark* b) {
        b->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();
    };
    timed(benchmark::RegisterBenchmark("BM_Copy", BM_Copy));
    timed(benchmark::RegisterBenchmark("BM_ViewPaint", BM_ViewPaint));
    auto* preview = benchmark::RegisterBenchmark("BM_Preview", BM_Preview);
    for (const EffectRow& row : EffectTable())
        if (row.menuCaption)
            preview->Arg(row.id);
    timed(preview);

    benchmark::Initialize(&argc, argv);
    g_session = std::make_unique<Session>();
    benchmark::RunSpecifiedBenchmarks(&reporter);
    g_session.reset();
    benchmark::Shutdown();
    return 0;
}
