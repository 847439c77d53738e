// What keeping an unsaved 12 MP picture against a crash costs the user: the longest
// time the event loop is held by a round of the recovery writer (the copy in slices on
// the event loop's thread, the write and flush on the worker), against the anchor of
// writing the same file on the event loop's thread, which is what a plain autosave
// would make the user wait. The ratio is the writer's pause over the anchor's.

#include "BenchPictures.h"
#include "document/Document.h"
#include "files/RecoveryFile.h"
#include "files/RecoveryStore.h"
#include "files/RecoveryWriter.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>

using namespace velunta;

namespace {

constexpr int kWidth = 4000;
constexpr int kHeight = 3000;

// The event loop thread's own CPU time: on a busy machine a turn's wall time also holds
// the time other programs had the processor.
double threadCpuMs()
{
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return t.tv_sec * 1e3 + t.tv_nsec / 1e6;
}

// One round per iteration over a picture that changed, with the event loop turning as
// it does in the program; the longest turn is what the user may feel.
void BM_RecoveryRound(benchmark::State& state)
{
    QTemporaryDir dir;
    RecoveryStore store(dir.path());
    store.open();
    Document doc;
    doc.Buffer.setImage(bench::Photo(kWidth, kHeight));
    RecoveryWriter writer(store, [&] {
        return QList<RecoverySource>{{1, &doc.Buffer.Image(), true, QStringLiteral("photo.bmp"), QString()}};
    });
    double longestTurn = 0;
    double longestTurnCpu = 0;
    double anchor = 0;
    int turns = 0;
    for (auto _ : state) {
        doc.Buffer.Image().setPixel(1, 1, 0xFF000000u | quint32(turns)); // a change to keep
        bool done = false;
        auto connection = QObject::connect(&writer, &RecoveryWriter::roundFinished, [&] { done = true; });
        writer.writeChanged();
        while (!done) {
            QElapsedTimer turn;
            turn.start();
            const double cpu = threadCpuMs();
            QCoreApplication::processEvents(QEventLoop::AllEvents);
            longestTurn = std::max(longestTurn, turn.nsecsElapsed() / 1e6);
            longestTurnCpu = std::max(longestTurnCpu, threadCpuMs() - cpu);
            ++turns;
        }
        QObject::disconnect(connection);

        state.PauseTiming();
        QElapsedTimer blocking;
        blocking.start();
        WriteRecoveryFile(
            dir.filePath(QStringLiteral("anchor.vrec")),
            {QStringLiteral("photo.bmp"), QString(), QDateTime::currentDateTime(), {kWidth, kHeight}},
            doc.Buffer.Image());
        anchor = std::max(anchor, blocking.nsecsElapsed() / 1e6);
        state.ResumeTiming();
    }
    state.counters["longest_pause_ms"] = longestTurn;
    state.counters["longest_pause_cpu_ms"] = longestTurnCpu;
    state.counters["longest_slice_ms"] = writer.longestSliceMs();
    state.counters["anchor_blocking_write_ms"] = anchor;
    state.counters["pause_over_anchor"] = anchor > 0 ? longestTurn / anchor : 0;
}

BENCHMARK(BM_RecoveryRound)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
