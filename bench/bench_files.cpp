// The file layer against the tools and the plain byte copy it should come close to,
// on a 4000 x 3000 picture.

#include "BenchPictures.h"
#include "files/BmpWriter.h"
#include "files/GIF.h"
#include "files/JpegWriter.h"
#include "files/read/PictureLoader.h"

#include <QFile>
#include <QImage>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

using namespace velunta;

namespace {

constexpr int kWidth = 4000;
constexpr int kHeight = 3000;

struct Files {
    QTemporaryDir dir;
    QImage picture = bench::Photo(kWidth, kHeight);
    QString path(const char* name) const { return dir.filePath(QString::fromLatin1(name)); }
    Files()
    {
        cDIBSection dib;
        dib.CreateFromPicture(picture);
        SaveJPG(dib, path("photo.jpg"), 90);
        SaveBMP(picture, path("photo.bmp"));
        picture.save(path("photo.ppm"), "PPM");
    }
};

Files& files()
{
    static Files f;
    return f;
}

bool runTool(benchmark::State& state, const char* tool, const QString& arguments)
{
    if (QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty()) {
        state.SkipWithError("tool not installed");
        return false;
    }
    const QByteArray command = QByteArray(tool) + ' ' + arguments.toLocal8Bit();
    return std::system(command.constData()) == 0;
}

double childCpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// A tool's own CPU time per run, comparable to the CPU column of our benchmarks on a
// busy machine, where the wall clock says more about the neighbours.
void benchmarkTool(benchmark::State& state, const char* tool, const QString& arguments)
{
    const double before = childCpuSeconds();
    for (auto _ : state)
        if (!runTool(state, tool, arguments))
            return;
    state.counters["tool_cpu_ms"] = (childCpuSeconds() - before) * 1000 / double(state.iterations());
}

void setPixelRate(benchmark::State& state)
{
    state.counters["MP/s"] =
        benchmark::Counter(kWidth * kHeight / 1e6, benchmark::Counter::kIsIterationInvariantRate);
}

void BM_OpenJpeg(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(LoadPicture(files().path("photo.jpg")));
    setPixelRate(state);
}

void BM_Djpeg(benchmark::State& state)
{
    benchmarkTool(state, "djpeg", QStringLiteral("-outfile /dev/null ") + files().path("photo.jpg"));
    setPixelRate(state);
}

void BM_SaveJpeg(benchmark::State& state)
{
    for (auto _ : state) {
        cDIBSection dib;
        dib.CreateFromPicture(files().picture);
        SaveJPG(dib, files().path("out.jpg"), 90);
    }
    setPixelRate(state);
}

void BM_Cjpeg(benchmark::State& state)
{
    benchmarkTool(state, "cjpeg",
                  QStringLiteral("-quality 90 -outfile %1 %2")
                      .arg(files().path("cjpeg.jpg"), files().path("photo.ppm")));
    setPixelRate(state);
}

void BM_SaveGif(benchmark::State& state)
{
    for (auto _ : state)
        GIF().SaveGIF(files().picture, files().path("out.gif"), false, -1);
    setPixelRate(state);
}

void BM_SaveBmp(benchmark::State& state)
{
    for (auto _ : state)
        SaveBMP(files().picture, files().path("out.bmp"));
    setPixelRate(state);
}

void BM_OpenBmp(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(LoadPicture(files().path("photo.bmp")));
    setPixelRate(state);
}

// Reads the BMP's bytes and writes them to another file, a megabyte at a time; with
// the argument 1 the copy is also flushed to the disk, as every save is.
void BM_CopyBmpBytes(benchmark::State& state)
{
    const QByteArray from = files().path("photo.bmp").toLocal8Bit();
    const QByteArray to = files().path("copy.bmp").toLocal8Bit();
    std::vector<char> buffer(1 << 20);
    for (auto _ : state) {
        std::FILE* in = std::fopen(from.constData(), "rb");
        std::FILE* out = std::fopen(to.constData(), "wb");
        size_t n = 0;
        while ((n = std::fread(buffer.data(), 1, buffer.size(), in)) > 0)
            std::fwrite(buffer.data(), 1, n, out);
        if (state.range(0)) {
            std::fflush(out);
            fdatasync(fileno(out));
        }
        std::fclose(in);
        std::fclose(out);
    }
    state.SetBytesProcessed(state.iterations() * QFile(QString::fromLocal8Bit(from)).size());
}

BENCHMARK(BM_OpenJpeg)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Djpeg)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_SaveJpeg)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Cjpeg)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_SaveGif)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_SaveBmp)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_OpenBmp)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_CopyBmpBytes)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
