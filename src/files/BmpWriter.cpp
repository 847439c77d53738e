#include "files/BmpWriter.h"

#include "files/PixelRows.h"
#include "files/SaveTarget.h"

#include <QCoreApplication>
#include <QtEndian>

#include <vector>

namespace velunta {

namespace {

constexpr int kFileHeaderSize = 14;
constexpr int kInfoHeaderSize = 40;

template <class T> uchar* put(uchar* at, T value)
{
    qToLittleEndian(value, at);
    return at + sizeof(T);
}

} // namespace

bool SaveBMP(const QImage& image, const QString& path, WriteFailure* failure)
{
    SaveTarget target(path);
    if (image.isNull()) {
        target.fail(QCoreApplication::translate("PictureFiles", "The picture is empty"));
        return target.report(failure);
    }
    const int width = image.width();
    const int height = image.height();
    const qint64 stride = DibStride24(width);
    const qint64 imageBytes = stride * height;
    const qint64 fileBytes = kFileHeaderSize + kInfoHeaderSize + imageBytes;
    if (fileBytes > 0xFFFFFFFFll) {
        target.fail(QCoreApplication::translate("PictureFiles", "The picture is too large for a BMP file"));
        return target.report(failure);
    }
    if (!target.open())
        return target.report(failure);

    uchar header[kFileHeaderSize + kInfoHeaderSize];
    uchar* at = header;
    *at++ = 'B';
    *at++ = 'M';
    at = put<quint32>(at, quint32(fileBytes));
    at = put<quint32>(at, 0); // two reserved words
    at = put<quint32>(at, kFileHeaderSize + kInfoHeaderSize);
    at = put<quint32>(at, kInfoHeaderSize);
    at = put<qint32>(at, width);
    at = put<qint32>(at, height); // positive: the bottom row comes first
    at = put<quint16>(at, 1);
    at = put<quint16>(at, 24);
    at = put<quint32>(at, 0); // BI_RGB
    at = put<quint32>(at, quint32(imageBytes));
    at = put<qint32>(at, image.dotsPerMeterX() > 0 ? image.dotsPerMeterX() : 0);
    at = put<qint32>(at, image.dotsPerMeterY() > 0 ? image.dotsPerMeterY() : 0);
    at = put<quint32>(at, 0);
    put<quint32>(at, 0);
    target.write(header, sizeof header);

    const QImage pixels = Rgb32Pixels(image);
    // Rows are gathered a batch at a time, so the file gets few large writes.
    const int rowsPerBatch = int(qMax<qint64>(1, (1 << 20) / stride));
    std::vector<uchar> batch(size_t(stride * rowsPerBatch), 0);
    for (int y = height - 1; y >= 0 && !target.failed();) {
        int n = 0;
        for (; n < rowsPerBatch && y >= 0; ++n, --y)
            PackBGR(reinterpret_cast<const QRgb*>(pixels.constScanLine(y)), width, batch.data() + n * stride);
        target.write(batch.data(), n * stride);
    }
    if (!target.failed())
        target.commit();
    return target.report(failure);
}

} // namespace velunta
