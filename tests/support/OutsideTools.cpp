#include "support/OutsideTools.h"

#include <QProcess>

namespace velunta::test {

QByteArray RunTool(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        return {};
    QByteArray out = process.readAllStandardOutput();
    return out.isNull() ? QByteArray("") : out;
}

QImage DecodeWithMagick(const QString& path, int frame)
{
    const QByteArray ppm =
        RunTool(QStringLiteral("convert"),
                {QStringLiteral("%1[%2]").arg(path).arg(frame), QStringLiteral("-background"),
                 QStringLiteral("white"), QStringLiteral("-flatten"), QStringLiteral("-depth"),
                 QStringLiteral("8"), QStringLiteral("ppm:-")});
    if (ppm.isEmpty())
        return {};
    return QImage::fromData(ppm, "PPM").convertToFormat(QImage::Format_RGB32);
}

QImage FromRgbBytes(const QByteArray& rgb, int w, int h)
{
    if (w <= 0 || h <= 0 || rgb.size() != qsizetype(w) * h * 3)
        return {};
    QImage image(w, h, QImage::Format_RGB32);
    const auto* p = reinterpret_cast<const uchar*>(rgb.constData());
    for (int y = 0; y < h; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < w; ++x, p += 3)
            line[x] = qRgb(p[0], p[1], p[2]);
    }
    return image;
}

} // namespace velunta::test
