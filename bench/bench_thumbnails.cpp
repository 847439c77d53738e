// The thumbnail view: one thumbnail of a 12 MP photo against opening the photo (the
// anchor), and the time until the first screen of a folder of 1,000 such photos shows
// while the loader works through the rest. The ratio is printed at the end.

#include "BenchPictures.h"
#include "files/JpegWriter.h"
#include "files/ThumbnailLoader.h"
#include "files/cDIBSection.h"
#include "files/read/PictureLoader.h"
#include "files/read/Thumbnail.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>

using namespace velunta;

namespace {

constexpr int kFolderSize = 1000;
// What the dialog shows at its first size: five columns of three rows, and a row more.
constexpr int kFirstScreen = 20;

struct Folder {
    QTemporaryDir dir;
    QString photo = dir.filePath(QStringLiteral("photo.jpg"));
    QStringList files;
    Folder()
    {
        cDIBSection dib;
        dib.CreateFromPicture(bench::Photo(4000, 3000));
        SaveJPG(dib, photo, 90);
        // The same photo under 1,000 names: each is decoded, the cache keys by name.
        for (int i = 0; i < kFolderSize; ++i) {
            const QString name = dir.filePath(QStringLiteral("p%1.jpg").arg(i, 4, 10, QLatin1Char('0')));
            QFile::link(photo, name);
            files << name;
        }
    }
};

Folder& folder()
{
    static Folder f;
    return f;
}

void BM_OpenPhoto(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(ReadPicture(folder().photo));
}

void BM_Thumbnail(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(ReadThumbnail(folder().photo, 128));
}

// What the user waits for: a fresh session's loader on the folder, until the first
// screen of thumbnails has arrived; the rest are dropped when it goes.
void firstScreen()
{
    ThumbnailLoader::clearCache();
    ThumbnailLoader loader(128);
    int shown = 0;
    QObject::connect(&loader, &ThumbnailLoader::ready, [&](const QString&, const Thumbnail&) { ++shown; });
    loader.load(folder().files);
    while (shown < kFirstScreen)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void BM_FirstScreenOfFolder(benchmark::State& state)
{
    for (auto _ : state)
        firstScreen();
}

// Wall time of one call, in milliseconds, for the summary.
template <class F> double wallMs(F&& f, int runs)
{
    QElapsedTimer t;
    t.start();
    for (int i = 0; i < runs; ++i)
        f();
    return double(t.nsecsElapsed()) / 1e6 / runs;
}

} // namespace

BENCHMARK(BM_OpenPhoto)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Thumbnail)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_FirstScreenOfFolder)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    const double open = wallMs([] { benchmark::DoNotOptimize(ReadPicture(folder().photo)); }, 3);
    const double thumb = wallMs([] { benchmark::DoNotOptimize(ReadThumbnail(folder().photo, 128)); }, 3);
    const double screen = wallMs(firstScreen, 1);
    std::printf(
        "open 12 MP photo %.1f ms, its thumbnail %.1f ms (%.1fx faster); first screen (%d) of %d photos "
        "%.0f ms against a budget of 1000 ms\n",
        open, thumb, open / thumb, kFirstScreen, kFolderSize, screen);
    benchmark::Shutdown();
    return 0;
}
