#include "files/RecoveryFile.h"

#include "files/SaveTarget.h"

#include <QCoreApplication>
#include <QFile>
#include <QtEndian>

namespace velunta {

namespace {

// magic, width, height, time, the two names' lengths; then the names, padded so the
// rows start on a 16-byte boundary and can be used where they lie.
constexpr char kMagic[8] = {'V', 'L', 'N', 'T', 'R', 'E', 'C', '1'};
constexpr qint64 kFixedSize = 32;
constexpr int kLargestSide = 1 << 16;

qint64 paddedHeaderSize(qint64 nameBytes, qint64 pathBytes)
{
    return (kFixedSize + nameBytes + pathBytes + 15) / 16 * 16;
}

struct Layout {
    RecoveryHeader header;
    qint64 pixelsAt = 0;
};

// Reads and checks the header: the sizes must add up to the file's length exactly.
bool readLayout(QFile& file, Layout* layout)
{
    uchar fixed[kFixedSize];
    if (file.read(reinterpret_cast<char*>(fixed), kFixedSize) != kFixedSize ||
        memcmp(fixed, kMagic, sizeof kMagic) != 0)
        return false;
    const qint32 width = qFromLittleEndian<qint32>(fixed + 8);
    const qint32 height = qFromLittleEndian<qint32>(fixed + 12);
    const qint64 time = qFromLittleEndian<qint64>(fixed + 16);
    const quint32 nameBytes = qFromLittleEndian<quint32>(fixed + 24);
    const quint32 pathBytes = qFromLittleEndian<quint32>(fixed + 28);
    if (width < 1 || height < 1 || width > kLargestSide || height > kLargestSide || nameBytes > 65536 ||
        pathBytes > 65536)
        return false;
    const qint64 pixelsAt = paddedHeaderSize(nameBytes, pathBytes);
    if (file.size() != pixelsAt + qint64(width) * height * 4)
        return false;
    const QByteArray name = file.read(nameBytes);
    const QByteArray path = file.read(pathBytes);
    if (name.size() != qsizetype(nameBytes) || path.size() != qsizetype(pathBytes))
        return false;
    layout->header.name = QString::fromUtf8(name);
    layout->header.path = QString::fromUtf8(path);
    layout->header.written = QDateTime::fromMSecsSinceEpoch(time, Qt::UTC).toLocalTime();
    layout->header.size = QSize(width, height);
    layout->pixelsAt = pixelsAt;
    return true;
}

} // namespace

bool WriteRecoveryFile(const QString& file, const RecoveryHeader& header, const QImage& pixels,
                       QString* reason)
{
    SaveTarget target(file);
    // Only the system's words are passed on: no box is ever shown for a recovery file.
    auto finish = [&] {
        if (reason)
            *reason = target.reason();
        return !target.failed();
    };
    if (pixels.isNull() || pixels.format() != QImage::Format_RGB32) {
        target.fail(QCoreApplication::translate("PictureFiles", "The picture is empty"));
        return finish();
    }
    const QByteArray name = header.name.toUtf8().left(65536);
    const QByteArray path = header.path.toUtf8().left(65536);
    QByteArray head(paddedHeaderSize(name.size(), path.size()), '\0');
    auto* at = reinterpret_cast<uchar*>(head.data());
    memcpy(at, kMagic, sizeof kMagic);
    qToLittleEndian<qint32>(pixels.width(), at + 8);
    qToLittleEndian<qint32>(pixels.height(), at + 12);
    qToLittleEndian<qint64>(header.written.toMSecsSinceEpoch(), at + 16);
    qToLittleEndian<quint32>(name.size(), at + 24);
    qToLittleEndian<quint32>(path.size(), at + 28);
    memcpy(at + kFixedSize, name.constData(), name.size());
    memcpy(at + kFixedSize + name.size(), path.constData(), path.size());
    if (!target.open())
        return finish();
    target.write(head.constData(), head.size());
    const qsizetype row = qsizetype(pixels.width()) * 4;
    if (pixels.bytesPerLine() == row) {
        target.write(pixels.constBits(), row * pixels.height());
    } else {
        for (int y = 0; y < pixels.height() && !target.failed(); ++y)
            target.write(pixels.constScanLine(y), row);
    }
    if (!target.failed())
        target.commit();
    return finish();
}

bool ReadRecoveryHeader(const QString& file, RecoveryHeader* header)
{
    QFile in(file);
    Layout layout;
    if (!in.open(QIODevice::ReadOnly) || !readLayout(in, &layout))
        return false;
    if (header)
        *header = layout.header;
    return true;
}

QImage ReadRecoveryPicture(const QString& file, RecoveryHeader* header)
{
    QFile in(file);
    Layout layout;
    if (!in.open(QIODevice::ReadOnly) || !readLayout(in, &layout))
        return QImage();
    QImage picture(layout.header.size, QImage::Format_RGB32);
    if (picture.isNull() || !in.seek(layout.pixelsAt))
        return QImage();
    const qsizetype row = qsizetype(picture.width()) * 4;
    for (int y = 0; y < picture.height(); ++y) {
        if (in.read(reinterpret_cast<char*>(picture.scanLine(y)), row) != row)
            return QImage();
    }
    if (header)
        *header = layout.header;
    return picture;
}

QImage RecoveryThumbnail(const QString& file, int side)
{
    QFile in(file);
    Layout layout;
    if (!in.open(QIODevice::ReadOnly) || !readLayout(in, &layout))
        return QImage();
    const QSize size = layout.header.size;
    uchar* mapped = in.map(layout.pixelsAt, qint64(size.width()) * size.height() * 4);
    if (!mapped)
        return QImage();
    const QImage view(mapped, size.width(), size.height(), size.width() * 4, QImage::Format_RGB32);
    // A nearest-sample step first: a smooth scale of a whole photo would take long.
    QImage thumbnail = view;
    if (size.width() > 4 * side || size.height() > 4 * side)
        thumbnail = view.scaled(4 * side, 4 * side, Qt::KeepAspectRatio, Qt::FastTransformation);
    thumbnail = thumbnail.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    if (thumbnail.constBits() == view.constBits())
        thumbnail = thumbnail.copy(); // the map goes with the file
    return thumbnail;
}

} // namespace velunta
