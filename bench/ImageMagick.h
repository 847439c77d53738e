#pragma once
// ImageMagick's flood fill, the yardstick for ours: the whole command, process start
// included. The system's copy is preferred to anything else called "convert" on PATH.

#include <QByteArray>
#include <QStandardPaths>
#include <QString>

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace velunta::bench {

inline void BM_ImageMagickFloodFill4000x3000(benchmark::State& state)
{
    QString convert = QStandardPaths::findExecutable(QStringLiteral("convert"), {QStringLiteral("/usr/bin")});
    if (convert.isEmpty())
        convert = QStandardPaths::findExecutable(QStringLiteral("convert"));
    if (convert.isEmpty()) {
        state.SkipWithError("ImageMagick's convert is not installed");
        return;
    }
    const QByteArray command =
        convert.toLocal8Bit() + " -size 4000x3000 xc:white -fill black -draw \"color 0,0 floodfill\" null:";
    for (auto _ : state) {
        if (std::system(command.constData()) != 0) {
            state.SkipWithError("convert failed");
            break;
        }
    }
}

} // namespace velunta::bench
