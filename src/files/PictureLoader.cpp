#include "files/PictureLoader.h"

#include "files/BigBuffer.h"
#include "files/Decoders.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QtEndian>

namespace velunta {

namespace {

// No picture within the limits needs a larger file (a 32-bit BMP at the pixel limit is 1.6 GB).
constexpr qint64 kMaxFileBytes = qint64(2) << 30;

QString limitText()
{
    return QStringLiteral("the limit is %1 x %1 pixels and %2 megapixels")
        .arg(kMaxPictureSide)
        .arg(kMaxPicturePixels / 1'000'000);
}

enum class Kind { Unknown, Bmp, Jpeg, Gif, Png, Ico };

Kind kindOf(QByteArrayView d)
{
    const auto starts = [&](QByteArrayView magic) { return d.startsWith(magic); };
    if (starts("BM"))
        return Kind::Bmp;
    if (starts("\xFF\xD8\xFF"))
        return Kind::Jpeg;
    if (starts("GIF8"))
        return Kind::Gif;
    if (starts("\x89PNG\r\n\x1A\n"))
        return Kind::Png;
    // An icon or a cursor: the same directory of pictures, told apart by its type word.
    if (starts(QByteArrayView("\0\0\1\0", 4)) || starts(QByteArrayView("\0\0\2\0", 4)))
        return Kind::Ico;
    return Kind::Unknown;
}

// Transparent pixels over white: documents have no alpha.
QImage onWhite(QImage image)
{
    if (!image.hasAlphaChannel())
        return image.format() == QImage::Format_RGB32 ? image : image.convertToFormat(QImage::Format_RGB32);
    if (image.format() != QImage::Format_ARGB32)
        image = image.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const QRgb p = line[x];
            const int a = qAlpha(p);
            if (a == 255)
                continue;
            const auto mix = [a](int c) { return (c * a + 255 * (255 - a) + 127) / 255; };
            line[x] = qRgb(mix(qRed(p)), mix(qGreen(p)), mix(qBlue(p)));
        }
    }
    image.reinterpretAsFormat(QImage::Format_RGB32);
    return image;
}

// The icon of the directory with the most pixels, the deeper one on a tie; -1 when
// the directory is damaged or points past the end of the file.
int largestIcon(QByteArrayView d, LoadFailure& failure)
{
    const auto* b = reinterpret_cast<const uchar*>(d.data());
    const int count = d.size() >= 6 ? qFromLittleEndian<quint16>(b + 4) : 0;
    if (count == 0 || d.size() < 6 + 16 * qint64(count)) {
        failure.cutShort();
        return -1;
    }
    int best = -1;
    qint64 bestArea = -1;
    int bestBits = -1;
    for (int i = 0; i < count; ++i) {
        const uchar* e = b + 6 + 16 * i;
        const qint64 size = qFromLittleEndian<quint32>(e + 8);
        const qint64 offset = qFromLittleEndian<quint32>(e + 12);
        if (offset + size > d.size()) {
            failure.cutShort();
            return -1;
        }
        const qint64 area = qint64(e[0] ? e[0] : 256) * (e[1] ? e[1] : 256);
        const int bits = qFromLittleEndian<quint16>(e + 6);
        if (area > bestArea || (area == bestArea && bits > bestBits)) {
            best = i;
            bestArea = area;
            bestBits = bits;
        }
    }
    return best;
}

// PNG and ICO go through Qt's readers, which refuse damaged files themselves.
QImage readWithQt(QByteArrayView bytes, Kind kind, LoadFailure& failure)
{
    QBuffer buffer;
    buffer.setData(QByteArray::fromRawData(bytes.data(), bytes.size()));
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, kind == Kind::Png ? "png" : "ico");
    reader.setAllocationLimit(int(kMaxPicturePixels * 4 / (1024 * 1024)) + 1);
    if (kind == Kind::Ico) {
        const int index = largestIcon(bytes, failure);
        if (index < 0)
            return {};
        if (index > 0 && !reader.jumpToImage(index)) {
            failure.invalid(reader.errorString());
            return {};
        }
    }
    const QSize size = reader.size();
    if (size.isValid() && !WithinLimits(size.width(), size.height(), failure))
        return {};
    QImage image = reader.read();
    if (image.isNull()) {
        failure.invalid(reader.errorString());
        return {};
    }
    return image;
}

QImage decode(QByteArrayView bytes, LoadFailure& failure)
{
    switch (const Kind kind = kindOf(bytes)) {
    case Kind::Bmp:
        return DecodeBMP(bytes, failure);
    case Kind::Jpeg:
        return DecodeJPEG(bytes, failure);
    case Kind::Gif:
        return DecodeGIF(bytes, failure);
    case Kind::Png:
    case Kind::Ico:
        return readWithQt(bytes, kind, failure);
    case Kind::Unknown:
        break;
    }
    failure.invalid(bytes.isEmpty() ? QStringLiteral("the file is empty")
                                    : QStringLiteral("unknown file format"));
    return {};
}

} // namespace

void LoadFailure::invalid(const QString& detail)
{
    set(ErrInvalidPicture, QStringLiteral("Invalid picture: ") + detail);
}

bool WithinLimits(qint64 width, qint64 height, LoadFailure& failure)
{
    if (width <= kMaxPictureSide && height <= kMaxPictureSide && width * height <= kMaxPicturePixels)
        return true;
    failure.set(
        ErrOutOfMemory,
        QStringLiteral("Picture too large: %1 x %2 pixels (%3)").arg(width).arg(height).arg(limitText()));
    return false;
}

QImage NewPicture(qint64 width, qint64 height, QImage::Format format, LoadFailure& failure)
{
    if (width <= 0 || height <= 0) {
        failure.invalid(QStringLiteral("the picture has no pixels"));
        return {};
    }
    if (!WithinLimits(width, height, failure))
        return {};
    QImage image = AllocateBigImage(int(width), int(height), format);
    if (image.isNull())
        failure.set(ErrOutOfMemory, QStringLiteral("Out of memory"));
    return image;
}

QImage LoadPicture(const QString& path, QString* error, int* errorNumber)
{
    LoadFailure failure;
    QImage image;
    const QFileInfo info(path);
    QFile file(path);
    if (path.isEmpty() || !info.exists()) {
        failure.set(ErrFileNotFound, QStringLiteral("File not found"));
    } else if (!info.isFile()) {
        failure.set(ErrFileAccess, QStringLiteral("Path/File access error: not a file"));
    } else if (info.size() > kMaxFileBytes) {
        failure.set(ErrOutOfMemory,
                    QStringLiteral("Picture too large: the file is over 2 GB (%1)").arg(limitText()));
    } else if (!file.open(QIODevice::ReadOnly)) {
        failure.set(ErrFileAccess, QStringLiteral("Path/File access error: ") + file.errorString());
    } else {
        // The whole file at once, in memory that can take huge pages.
        const qint64 size = qMin(file.size(), kMaxFileBytes);
        const BigBuffer buffer = AllocateBig(size_t(size));
        const qint64 got = buffer ? file.read(reinterpret_cast<char*>(buffer.get()), size) : -1;
        const auto bytes = QByteArrayView(buffer.get(), qMax<qint64>(got, 0));
        if (!buffer)
            failure.set(ErrOutOfMemory, QStringLiteral("Out of memory"));
        else if (got < 0)
            failure.set(ErrFileAccess, QStringLiteral("Path/File access error: ") + file.errorString());
        else
            image = decode(bytes, failure);
        if (!image.isNull() && !WithinLimits(image.width(), image.height(), failure))
            image = QImage();
        if (!image.isNull())
            image = onWhite(std::move(image));
        if (image.isNull() && !failure.failed())
            failure.set(ErrOutOfMemory, QStringLiteral("Out of memory"));
    }
    if (error)
        *error = failure.text;
    if (errorNumber)
        *errorNumber = failure.number;
    return failure.failed() ? QImage() : image;
}

} // namespace velunta
