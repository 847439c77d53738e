#include "files/read/PictureLoader.h"

#include "files/read/BigBuffer.h"
#include "files/read/Decoders.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>
#include <initializer_list>

namespace velunta {

namespace {

// No picture within the limits needs a larger file (a 32-bit BMP at the pixel limit is 1.6 GB).
constexpr qint64 kMaxFileBytes = qint64(2) << 30;

QString limitText()
{
    return QStringLiteral("the limit is %1 pixels a side and %2 megapixels")
        .arg(kMaxPictureSide)
        .arg(kMaxPicturePixels / 1'000'000);
}

quint32 u32At(QByteArrayView d, qsizetype at)
{
    return at + 4 <= d.size() ? qFromLittleEndian<quint32>(d.data() + at) : 0;
}

quint16 u16At(QByteArrayView d, qsizetype at)
{
    return at + 2 <= d.size() ? qFromLittleEndian<quint16>(d.data() + at) : 0;
}

bool oneOf(int value, std::initializer_list<int> set)
{
    return std::find(set.begin(), set.end(), value) != set.end();
}

// A BITMAPINFOHEADER (or an OS/2 one) at the start, as the clipboard stores a picture.
bool looksLikeDib(QByteArrayView d)
{
    const quint32 size = u32At(d, 0);
    if (size == 12)
        return u16At(d, 4) && u16At(d, 6) && u16At(d, 8) == 1 && oneOf(u16At(d, 10), {1, 4, 8, 24});
    const bool knownSize = (size >= 16 && size <= 64 && size % 4 == 0) || size == 108 || size == 124;
    return knownSize && d.size() >= 20 && u32At(d, 4) && u32At(d, 8) && u16At(d, 12) == 1 &&
           oneOf(u16At(d, 14), {1, 2, 4, 8, 16, 24, 32}) && (size < 20 || u32At(d, 16) <= 6);
}

PictureFormat detect(QByteArrayView d)
{
    // A file shorter than its kind's mark is taken for that kind when it starts
    // like it, so that it is refused as cut short rather than as unknown.
    const auto starts = [&](QByteArrayView magic) {
        return d.startsWith(magic) || (!d.isEmpty() && d.size() < magic.size() && magic.startsWith(d));
    };
    if (starts("BM"))
        return PictureFormat::Bmp;
    if (starts("\xFF\xD8\xFF"))
        return PictureFormat::Jpeg;
    if (starts("GIF8"))
        return PictureFormat::Gif;
    if (starts("\x89PNG\r\n\x1A\n"))
        return PictureFormat::Png;
    if (starts(QByteArrayView("\0\0\1\0", 4)))
        return PictureFormat::Ico;
    if (d.startsWith(QByteArrayView("\0\0\2\0", 4)))
        return PictureFormat::Cur;
    // A placeable metafile starts with its key; a plain one with its type, header
    // size in words (9) and version.
    if (starts("\xD7\xCD\xC6\x9A"))
        return PictureFormat::Wmf;
    if ((u16At(d, 0) == 1 || u16At(d, 0) == 2) && u16At(d, 2) == 9 &&
        (u16At(d, 4) == 0x100 || u16At(d, 4) == 0x300))
        return PictureFormat::Wmf;
    // An enhanced metafile starts with its header record, which carries " EMF".
    if (u32At(d, 0) == 1 && d.size() >= 44 && d.sliced(40, 4) == " EMF")
        return PictureFormat::Emf;
    if (looksLikeDib(d))
        return PictureFormat::Dib;
    return PictureFormat::Unknown;
}

// Pictures of kinds the program doesn't read, named so that the user knows what they have.
QString otherKind(QByteArrayView d)
{
    const auto starts = [&](QByteArrayView magic) { return d.startsWith(magic); };
    if (starts("II*\0") || starts(QByteArrayView("MM\0*", 4)))
        return QStringLiteral("a TIFF picture");
    if (starts("RIFF") && d.size() >= 12 && d.sliced(8, 4) == "WEBP")
        return QStringLiteral("a WebP picture");
    if (d.size() >= 12 && d.sliced(4, 4) == "ftyp" &&
        (d.sliced(8, 4) == "heic" || d.sliced(8, 4) == "mif1" || d.sliced(8, 4) == "avif"))
        return QStringLiteral("a HEIF or AVIF picture");
    if (starts("8BPS"))
        return QStringLiteral("a Photoshop picture");
    if (starts("%PDF"))
        return QStringLiteral("a PDF document");
    if (d.first(qMin<qsizetype>(d.size(), 1024)).indexOf("<svg") >= 0)
        return QStringLiteral("an SVG drawing");
    return {};
}

QString refusal(QByteArrayView bytes, PictureFormat format)
{
    if (bytes.isEmpty())
        return QCoreApplication::translate("PictureFiles", "The file is empty.");
    if (format == PictureFormat::Wmf)
        return QCoreApplication::translate(
            "PictureFiles", "This is a Windows Metafile (WMF) drawing, which can't be opened as a picture.");
    if (format == PictureFormat::Emf)
        return QCoreApplication::translate(
            "PictureFiles",
            "This is an Enhanced Metafile (EMF) drawing, which can't be opened as a picture.");
    const QString kind = otherKind(bytes);
    if (!kind.isEmpty())
        return QCoreApplication::translate(
                   "PictureFiles", "This is %1; Velunta opens BMP, JPEG, GIF, PNG, ICO and CUR pictures.")
            .arg(kind);
    return QCoreApplication::translate(
        "PictureFiles",
        "This is not a picture file (Velunta opens BMP, JPEG, GIF, PNG, ICO and CUR pictures).");
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

QImage decode(QByteArrayView bytes, PictureFormat format, LoadFailure& failure)
{
    switch (format) {
    case PictureFormat::Bmp:
        return DecodeBMP(bytes, failure);
    case PictureFormat::Dib:
        return DecodeDIB(bytes, failure);
    case PictureFormat::Jpeg:
        return DecodeJPEG(bytes, failure);
    case PictureFormat::Gif:
        return DecodeGIF(bytes, failure);
    case PictureFormat::Png:
        return DecodePNG(bytes, failure);
    case PictureFormat::Ico:
    case PictureFormat::Cur:
        return DecodeICO(bytes, failure);
    case PictureFormat::Wmf:
    case PictureFormat::Emf:
    case PictureFormat::Unknown:
        break;
    }
    failure.invalid(refusal(bytes, format));
    return {};
}

LoadedPicture result(QImage image, const LoadFailure& failure, PictureFormat format)
{
    LoadedPicture loaded;
    loaded.format = format;
    loaded.errorNumber = failure.number;
    loaded.error = failure.text;
    loaded.warning = failure.warning;
    if (!failure.failed())
        loaded.image = std::move(image);
    return loaded;
}

} // namespace

void LoadFailure::invalid(const QString& sentence)
{
    set(ErrInvalidPicture, sentence);
}

void LoadFailure::cutShort()
{
    invalid(QCoreApplication::translate(
        "PictureFiles", "The file is cut short: the picture's data ends before the picture does."));
}

void LoadFailure::outOfMemory()
{
    set(ErrOutOfMemory,
        QCoreApplication::translate("PictureFiles", "There is not enough memory for this picture."));
}

bool WithinLimits(qint64 width, qint64 height, LoadFailure& failure)
{
    if (width <= kMaxPictureSide && height <= kMaxPictureSide && width * height <= kMaxPicturePixels)
        return true;
    failure.set(ErrOutOfMemory,
                QCoreApplication::translate("PictureFiles", "The picture is too large: %1 x %2 pixels, %3.")
                    .arg(width)
                    .arg(height)
                    .arg(limitText()));
    return false;
}

bool DataCanFill(qint64 width, qint64 height, qint64 provenPixels, qint64 fileBytes, LoadFailure& failure)
{
    if (!WithinLimits(width, height, failure))
        return false;
    if (WithinAllowance(width, height, provenPixels, fileBytes))
        return true;
    failure.invalid(QCoreApplication::translate(
                        "PictureFiles", "The file is too small for its picture: it says %1 x %2 pixels, "
                                        "but holds the data of far fewer.")
                        .arg(width)
                        .arg(height));
    return false;
}

QImage NewPicture(qint64 width, qint64 height, QImage::Format format, LoadFailure& failure)
{
    if (width <= 0 || height <= 0) {
        failure.invalid(QCoreApplication::translate("PictureFiles", "The picture has no pixels."));
        return {};
    }
    if (!WithinLimits(width, height, failure))
        return {};
    QImage image = AllocateBigImage(int(width), int(height), format);
    if (image.isNull())
        failure.outOfMemory();
    return image;
}

PictureFormat DetectPictureFormat(QByteArrayView bytes)
{
    return detect(bytes);
}

LoadedPicture DecodePicture(QByteArrayView bytes)
{
    LoadFailure failure;
    const PictureFormat format = detect(bytes);
    QImage image = decode(bytes, format, failure);
    if (!image.isNull() && !WithinLimits(image.width(), image.height(), failure))
        image = QImage();
    if (!image.isNull())
        image = onWhite(std::move(image));
    if (image.isNull())
        failure.outOfMemory(); // kept only when no decoder said why
    return result(std::move(image), failure, format);
}

LoadedPicture ReadPicture(const QString& path)
{
    LoadFailure failure;
    const QFileInfo info(path);
    QFile file(path);
    if (path.isEmpty() || !info.exists()) {
        failure.set(ErrFileNotFound, QCoreApplication::translate("PictureFiles", "The file was not found."));
    } else if (!info.isFile()) {
        failure.set(ErrFileAccess,
                    QCoreApplication::translate("PictureFiles", "This is a folder or a device, not a file."));
    } else if (info.size() > kMaxFileBytes) {
        failure.set(ErrOutOfMemory,
                    QCoreApplication::translate("PictureFiles",
                                                "The file is too large: it is over 2 GB, and no picture "
                                                "within the limits needs that much (%1).")
                        .arg(limitText()));
    } else if (!file.open(QIODevice::ReadOnly)) {
        failure.set(ErrFileAccess, QCoreApplication::translate("PictureFiles", "The file can't be read: %1.")
                                       .arg(file.errorString()));
    } else {
        // The whole file at once, in memory that can take huge pages.
        const qint64 size = qMin(file.size(), kMaxFileBytes);
        const BigBuffer buffer = AllocateBig(size_t(size));
        const qint64 got = buffer ? file.read(reinterpret_cast<char*>(buffer.get()), size) : -1;
        if (!buffer)
            failure.outOfMemory();
        else if (got < 0)
            failure.set(ErrFileAccess,
                        QCoreApplication::translate("PictureFiles", "The file can't be read: %1.")
                            .arg(file.errorString()));
        else
            return DecodePicture(QByteArrayView(buffer.get(), got));
    }
    return result({}, failure, PictureFormat::Unknown);
}

QImage LoadPicture(const QString& path, QString* error, int* errorNumber)
{
    LoadedPicture loaded = ReadPicture(path);
    if (!loaded.warning.isEmpty())
        qWarning("%s: %s", qPrintable(path), qPrintable(loaded.warning));
    if (error)
        *error = loaded.error;
    if (errorNumber)
        *errorNumber = loaded.errorNumber;
    return std::move(loaded.image);
}

} // namespace velunta
