// Saving and opening a 4000 x 3000 photo through the main window's own handlers (Save
// and Open, with their copies, conversions, undo step and first showing), to files on a
// RAM disk, against the tools that do the same job. Each round times our operation and
// then its anchor, so both see the same machine; the counters give the best time of
// each and their ratio, on the wall clock and on the processor (user and system time
// of the process, which says more than the wall clock on a machine shared with other
// work):
//   JPEG q90 save  - cjpeg -quality 90 of the same pixels (from a PPM file)
//   JPEG open      - djpeg of the same file
//   BMP save, open - Pillow's save(), Image.open().load() (bench/pillow_anchor.py)
//   GIF save       - Pillow's quantize() and save()
// bench/compare_files.py runs this and prints the table.

#include "BenchPictures.h"
#include "core/Prompt.h"
#include "core/SettingsStore.h"
#include "document/frmPaint.h"
#include "shell/Services.h"
#include "shell/frmMain.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <sys/resource.h>
#include <vector>

using namespace velunta;

namespace {

constexpr int kWidth = 4000;
constexpr int kHeight = 3000;

struct Times {
    double wall;
    double cpu;
};

class SilentPrompt : public Prompt {
public:
    int MsgBox(const QString& text, int, const QString&) override
    {
        qWarning("message: %s", qPrintable(text));
        return vbOK;
    }
};

class NoDialogs : public FileDialogs {
public:
    QString getOpenFileName(const QString&, const QString&, const QString&) override { return {}; }
    QString getSaveFileName(const QString&, const QString&, const QString&, int&) override { return {}; }
};

// Pillow in a process of its own for the whole run, answering one timed operation at a time.
class Pillow {
public:
    Pillow()
    {
        m_process.start(QStringLiteral("/usr/bin/python3"),
                        {QStringLiteral(VELUNTA_BENCH_DIR "/pillow_anchor.py")});
        m_process.waitForStarted();
    }
    ~Pillow()
    {
        m_process.closeWriteChannel();
        m_process.waitForFinished();
    }
    // Milliseconds of the operation, or -1 when Pillow isn't there.
    Times run(const char* operation, const QString& path)
    {
        if (m_process.state() != QProcess::Running)
            return {-1, -1};
        m_process.write(QByteArray(operation) + ' ' + path.toLocal8Bit() + '\n');
        while (!m_process.canReadLine())
            if (!m_process.waitForReadyRead(60000))
                return {-1, -1};
        const QList<QByteArray> answer = m_process.readLine().trimmed().split(' ');
        return {answer.value(0).toDouble(), answer.value(1).toDouble()};
    }

private:
    QProcess m_process;
};

// The main window as the program makes it, over a folder of its own on the RAM disk.
struct Session {
    QTemporaryDir dir{QStringLiteral("/dev/shm/velunta-bench-XXXXXX")};
    QTemporaryDir home;
    SilentPrompt prompt;
    NoDialogs dialogs;
    std::unique_ptr<SettingsStore> settings;
    std::unique_ptr<Services> services;
    std::unique_ptr<frmMain> main;
    Pillow pillow;

    Session()
    {
        qputenv("XDG_CONFIG_HOME", home.path().toLocal8Bit());
        QDir().mkpath(home.path() + QStringLiteral("/app/temp"));
        settings = std::make_unique<SettingsStore>();
        services = std::make_unique<Services>(
            Services{prompt, dialogs, *settings, home.path() + QStringLiteral("/app/"), false, nullptr});
        main = std::make_unique<frmMain>(*services);
        main->resize(1280, 800);
        main->show();
        main->Load(QString());
        settle();
        // The picture every operation works on, written by other programs than ours.
        bench::Photo(kWidth, kHeight).save(path("photo.ppm"), "PPM");
        QProcess::execute(QStringLiteral("cjpeg"),
                          {QStringLiteral("-quality"), QStringLiteral("90"), QStringLiteral("-outfile"),
                           path("photo.jpg"), path("photo.ppm")});
        pillow.run("picture", path("photo.ppm"));
        pillow.run("save_bmp", path("photo.bmp"));
    }
    ~Session()
    {
        closeAll();
        main.reset();
    }
    QString path(const char* name) const { return dir.filePath(QString::fromLatin1(name)); }
    static void settle()
    {
        for (int i = 0; i < 3; ++i)
            QCoreApplication::processEvents();
    }
    void closeAll()
    {
        for (frmPaint* f : main->documents())
            f->closeWithoutQuestion();
        settle();
        // A closed window goes when the event loop next runs; the benchmark has none, so
        // the deletion is done here, as a user's next event would do it.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    // Open as the menu does it, until the window has shown the picture.
    frmPaint* open(const QString& file)
    {
        main->FileToOpen = file;
        main->Open_Click();
        settle();
        return main->activeDocument();
    }
};

std::unique_ptr<Session> g_session;

double cpuMs(int who)
{
    rusage usage{};
    getrusage(who, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1000 +
           double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1000;
}

// Wall and processor milliseconds of one operation of ours.
Times timed(const std::function<void()>& operation)
{
    const double cpu = cpuMs(RUSAGE_SELF);
    QElapsedTimer timer;
    timer.start();
    operation();
    return {double(timer.nsecsElapsed()) / 1e6, cpuMs(RUSAGE_SELF) - cpu};
}

Times runTool(const char* tool, const QStringList& arguments)
{
    if (QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty())
        return {-1, -1};
    const double cpu = cpuMs(RUSAGE_CHILDREN);
    QElapsedTimer timer;
    timer.start();
    QProcess::execute(QString::fromLatin1(tool), arguments);
    return {double(timer.nsecsElapsed()) / 1e6, cpuMs(RUSAGE_CHILDREN) - cpu};
}

// Rounds of our operation, then its anchor. The benchmark's time is ours; the counters
// hold the best of each and the ratios of the two.
void interleave(benchmark::State& state, const std::function<Times()>& ours,
                const std::function<Times()>& anchor)
{
    std::vector<Times> own, other;
    for (auto _ : state) {
        const Times t = ours();
        state.SetIterationTime(t.wall / 1000);
        own.push_back(t);
        state.PauseTiming();
        other.push_back(anchor());
        state.ResumeTiming();
    }
    const auto best = [](const std::vector<Times>& v, double Times::*field) {
        double b = v.front().*field;
        for (const Times& t : v)
            b = std::min(b, t.*field);
        return b;
    };
    const double wall = best(own, &Times::wall), cpu = best(own, &Times::cpu);
    const double anchorWall = best(other, &Times::wall), anchorCpu = best(other, &Times::cpu);
    state.counters["ours_ms"] = wall;
    state.counters["ours_cpu_ms"] = cpu;
    if (anchorWall < 0) {
        state.SetLabel("anchor not installed");
        return;
    }
    state.counters["anchor_ms"] = anchorWall;
    state.counters["anchor_cpu_ms"] = anchorCpu;
    state.counters["ratio"] = wall / anchorWall;
    state.counters["cpu_ratio"] = anchorCpu > 0 ? cpu / anchorCpu : 0;
}

// The picture opened from a BMP (the exact pixels of the anchors' PPM), saved through
// Save under `name`, which picks the format.
void saveRounds(benchmark::State& state, const char* name, const std::function<Times()>& anchor)
{
    Session& s = *g_session;
    s.closeAll();
    frmPaint* form = s.open(s.path("photo.bmp"));
    if (!form) {
        state.SkipWithError("the picture didn't open");
        return;
    }
    const QString target = s.path(name);
    interleave(
        state,
        [&] {
            form->doc.Buffer.Tag = target;
            return timed([&] { s.main->Save_Click(); });
        },
        anchor);
}

void openRounds(benchmark::State& state, const char* name, const std::function<Times()>& anchor)
{
    Session& s = *g_session;
    s.closeAll();
    const QString file = s.path(name);
    interleave(
        state,
        [&] {
            const Times t = timed([&] { s.open(file); });
            s.closeAll();
            return t;
        },
        anchor);
}

void BM_SaveJpeg(benchmark::State& state)
{
    saveRounds(state, "saved.jpg", [] {
        Session& s = *g_session;
        return runTool("cjpeg", {QStringLiteral("-quality"), QStringLiteral("90"), QStringLiteral("-outfile"),
                                 s.path("cjpeg.jpg"), s.path("photo.ppm")});
    });
}

void BM_OpenJpeg(benchmark::State& state)
{
    openRounds(state, "photo.jpg", [] {
        return runTool(
            "djpeg", {QStringLiteral("-outfile"), QStringLiteral("/dev/null"), g_session->path("photo.jpg")});
    });
}

void BM_SaveBmp(benchmark::State& state)
{
    saveRounds(state, "saved.bmp",
               [] { return g_session->pillow.run("save_bmp", g_session->path("pil.bmp")); });
}

void BM_OpenBmp(benchmark::State& state)
{
    openRounds(state, "photo.bmp",
               [] { return g_session->pillow.run("open_bmp", g_session->path("photo.bmp")); });
}

void BM_SaveGif(benchmark::State& state)
{
    saveRounds(state, "saved.gif", [] { return g_session->pillow.run("gif", g_session->path("pil.gif")); });
}

} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    using Run = void (*)(benchmark::State&);
    const std::pair<const char*, Run> runs[] = {{"BM_SaveJpeg", BM_SaveJpeg},
                                                {"BM_OpenJpeg", BM_OpenJpeg},
                                                {"BM_SaveBmp", BM_SaveBmp},
                                                {"BM_OpenBmp", BM_OpenBmp},
                                                {"BM_SaveGif", BM_SaveGif}};
    for (const auto& [name, run] : runs)
        benchmark::RegisterBenchmark(name, run)
            ->Unit(benchmark::kMillisecond)
            ->UseManualTime()
            ->Iterations(12);
    benchmark::Initialize(&argc, argv);
    g_session = std::make_unique<Session>();
    benchmark::RunSpecifiedBenchmarks();
    g_session.reset();
    benchmark::Shutdown();
    return 0;
}
