#pragma once
// The loader's own decoders. Each takes the whole file and returns Format_RGB32,
// or Format_ARGB32 when the file carries transparency, which the loader then puts
// over white. They check every offset against the data, check the picture size
// against the limits before they take memory, and refuse data that ends early.

#include <QByteArrayView>
#include <QImage>
#include <QString>

namespace velunta {

struct LoadFailure {
    int number = 0;
    QString text;

    bool failed() const { return number != 0; }
    // Keeps the first failure.
    void set(int errorNumber, const QString& errorText)
    {
        if (!number) {
            number = errorNumber;
            text = errorText;
        }
    }
    void invalid(const QString& detail);
    void cutShort() { invalid(QStringLiteral("the file is cut short")); }
};

// True when a picture of this size may be loaded; otherwise sets the failure,
// whose text names the limits.
bool WithinLimits(qint64 width, qint64 height, LoadFailure& failure);
// A picture of the size when it is within the limits and memory can be had, else a
// null image with the failure set.
QImage NewPicture(qint64 width, qint64 height, QImage::Format format, LoadFailure& failure);

QImage DecodeBMP(QByteArrayView data, LoadFailure& failure);
QImage DecodeGIF(QByteArrayView data, LoadFailure& failure);
QImage DecodeJPEG(QByteArrayView data, LoadFailure& failure);

} // namespace velunta
