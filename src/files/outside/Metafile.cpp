#include "files/outside/Metafile.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <QtEndian>

#include <cmath>

namespace velunta {

namespace {

// Converters that write more than this are not drawing anything a picture can hold.
constexpr qint64 kMaxSvgBytes = 128 << 20;
// The header is all the size needs; a plain WMF's window extent comes within its first records.
constexpr qint64 kHeadBytes = 1 << 20;

int u16(QByteArrayView d, qsizetype at)
{
    return at + 2 <= d.size() ? qFromLittleEndian<quint16>(d.data() + at) : -1;
}

int s16(QByteArrayView d, qsizetype at)
{
    return at + 2 <= d.size() ? qFromLittleEndian<qint16>(d.data() + at) : 0;
}

qint64 u32(QByteArrayView d, qsizetype at)
{
    return at + 4 <= d.size() ? qFromLittleEndian<quint32>(d.data() + at) : -1;
}

qint64 s32(QByteArrayView d, qsizetype at)
{
    return at + 4 <= d.size() ? qFromLittleEndian<qint32>(d.data() + at) : 0;
}

constexpr quint32 kPlaceableKey = 0x9AC6CDD7;
constexpr int kPlaceableHeader = 22;
constexpr int kSetWindowExt = 0x020C;

QSize validSize(double w, double h)
{
    const int iw = int(std::lround(std::abs(w)));
    const int ih = int(std::lround(std::abs(h)));
    if (iw < 1 || ih < 1 || iw > 65535 || ih > 65535)
        return {};
    return {iw, ih};
}

// A plain WMF states no size of its own; drawings made for the screen set their window
// extent in pixels, so that is the size.
QSize windowExtent(QByteArrayView d, qsizetype records)
{
    qsizetype at = records;
    for (int n = 0; n < 10000 && at + 6 <= d.size(); ++n) {
        const qint64 words = u32(d, at);
        const int function = u16(d, at + 4);
        if (words < 3 || function == 0)
            break;
        if (function == kSetWindowExt)
            return validSize(s16(d, at + 8), s16(d, at + 6)); // y comes first
        at += words * 2;
    }
    return {};
}

QString converterMessage(const OutsideRun& run)
{
    const QString said = run.firstErrorLine();
    return said.isEmpty() ? QString() : QStringLiteral(" (") + said + u')';
}

} // namespace

QSize MetafileSize(QByteArrayView d, PictureFormat kind)
{
    if (kind == PictureFormat::Wmf) {
        if (u32(d, 0) != kPlaceableKey)
            return windowExtent(d, 18);
        const int inch = u16(d, 14);
        if (inch > 0) {
            const QSize framed = validSize(double(s16(d, 10) - s16(d, 6)) * 96 / inch,
                                           double(s16(d, 12) - s16(d, 8)) * 96 / inch);
            if (framed.isValid())
                return framed;
        }
        return windowExtent(d, kPlaceableHeader + 18);
    }
    if (kind == PictureFormat::Emf) {
        // The frame is in hundredths of a millimetre; the bounds, in device pixels, include both edges.
        const QSize framed = validSize(double(s32(d, 32) - s32(d, 24)) * 96 / 2540,
                                       double(s32(d, 36) - s32(d, 28)) * 96 / 2540);
        if (framed.isValid())
            return framed;
        const qint64 w = s32(d, 16) - s32(d, 8) + 1;
        const qint64 h = s32(d, 20) - s32(d, 12) + 1;
        if (w > 0 && h > 0)
            return validSize(double(w), double(h));
    }
    return {};
}

QSize RenderSize(QSize stated, QSize converted)
{
    QSize size = stated.isValid() && !stated.isEmpty()         ? stated
                 : converted.isValid() && !converted.isEmpty() ? converted
                                                               : QSize(640, 480);
    const int longest = std::max(size.width(), size.height());
    if (longest > kMaxMetafileSide) {
        const double scale = double(kMaxMetafileSide) / longest;
        size = QSize(std::max(1, int(std::lround(size.width() * scale))),
                     std::max(1, int(std::lround(size.height() * scale))));
    }
    return size;
}

QString MetafileConverter(PictureFormat kind)
{
    return kind == PictureFormat::Emf ? QStringLiteral("emf2svg-conv") : QStringLiteral("wmf2svg");
}

QString MetafileConverterPackage(PictureFormat kind)
{
    return kind == PictureFormat::Emf ? QStringLiteral("emf2svg") : QStringLiteral("libwmf-bin");
}

MetafilePicture ConvertMetafile(const QString& path, const std::function<bool(double)>& keepWaiting,
                                int timeLimitMs)
{
    MetafilePicture result;
    const auto fail = [&](MetafilePicture::Failure failure, const QString& error) {
        result.failure = failure;
        result.error = error;
        return result;
    };
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return fail(MetafilePicture::Damaged, file.errorString());
    const QByteArray head = file.read(kHeadBytes);
    file.close();
    const PictureFormat kind = DetectPictureFormat(head);
    const QString what = kind == PictureFormat::Emf
                             ? QCoreApplication::translate("PictureFiles", "Enhanced Metafile (EMF)")
                             : QCoreApplication::translate("PictureFiles", "Windows Metafile (WMF)");
    if (!IsMetafile(kind))
        return fail(MetafilePicture::Damaged,
                    QCoreApplication::translate("PictureFiles", "This is not a Windows Metafile."));

    const QString converter = FindOutsideProgram(MetafileConverter(kind));
    if (converter.isEmpty())
        return fail(MetafilePicture::ConverterMissing,
                    QCoreApplication::translate(
                        "PictureFiles",
                        "This is a %1 drawing. Velunta opens it with the program %2, which is "
                        "not installed: please install the package \"%3\".")
                        .arg(what, MetafileConverter(kind), MetafileConverterPackage(kind)));

    QTemporaryDir work;
    if (!work.isValid())
        return fail(MetafilePicture::Damaged, work.errorString());
    const QString svgPath = work.filePath(QStringLiteral("drawing.svg"));
    // An absolute path, so that a name starting with "-" can't pass for an option.
    const QString source = QFileInfo(path).absoluteFilePath();
    const QStringList arguments =
        kind == PictureFormat::Emf
            ? QStringList{QStringLiteral("-i"), source, QStringLiteral("-o"), svgPath}
            // Bitmaps inside the drawing go into the SVG, not into files beside it.
            : QStringList{QStringLiteral("--inline"), QStringLiteral("-o"), svgPath, source};
    OutsideOptions options;
    options.timeLimitMs = timeLimitMs;
    options.keepWaiting = keepWaiting;
    const OutsideRun run = RunOutsideProgram(converter, arguments, options);
    switch (run.outcome) {
    case OutsideRun::NotStarted:
        return fail(
            MetafilePicture::ConverterMissing,
            QCoreApplication::translate(
                "PictureFiles", "The converter %1 could not be started; please reinstall the package \"%2\".")
                .arg(converter, MetafileConverterPackage(kind)));
    case OutsideRun::TimedOut:
        return fail(MetafilePicture::TimedOut,
                    QCoreApplication::translate(
                        "PictureFiles",
                        "The %1 drawing could not be converted within %2 seconds; the file may be "
                        "damaged.")
                        .arg(what)
                        .arg(timeLimitMs / 1000));
    case OutsideRun::Stopped:
        return fail(
            MetafilePicture::Stopped,
            QCoreApplication::translate("PictureFiles", "The conversion of the drawing was stopped."));
    case OutsideRun::Crashed:
    case OutsideRun::Finished:
        break;
    }
    const QFileInfo svgInfo(svgPath);
    if (!run.ok() || !svgInfo.isFile() || svgInfo.size() == 0)
        return fail(
            MetafilePicture::Damaged,
            QCoreApplication::translate("PictureFiles", "The %1 drawing is damaged: %2 could not read it%3.")
                .arg(what, MetafileConverter(kind), converterMessage(run)));
    if (svgInfo.size() > kMaxSvgBytes)
        return fail(
            MetafilePicture::Damaged,
            QCoreApplication::translate("PictureFiles", "The %1 drawing is too complex to open.").arg(what));

    QSvgRenderer renderer(svgPath);
    if (!renderer.isValid())
        return fail(MetafilePicture::Damaged,
                    QCoreApplication::translate(
                        "PictureFiles", "The %1 drawing is damaged: %2 made nothing that can be drawn of it.")
                        .arg(what, MetafileConverter(kind)));
    const QSize size = RenderSize(MetafileSize(head, kind), renderer.defaultSize());
    QImage picture(size, QImage::Format_RGB32);
    if (picture.isNull())
        return fail(
            MetafilePicture::Damaged,
            QCoreApplication::translate("PictureFiles", "There is not enough memory for this drawing."));
    // Metafiles draw on a white page, as they would on paper.
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, QRectF(QPointF(0, 0), QSizeF(size)));
    painter.end();
    result.image = picture;
    return result;
}

} // namespace velunta
