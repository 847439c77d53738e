#pragma once
// The loader's own decoders. Each takes the whole file and returns Format_RGB32,
// or Format_ARGB32 when the file carries transparency, which the loader then puts
// over white. They check every offset against the data, check the picture size
// against the limits before they take memory, and refuse data that ends early.

#include <QByteArrayView>
#include <QImage>
#include <QString>
#include <QtEndian>

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

// A whole file in memory, read little-endian with every offset checked first.
class FileBytes {
public:
    FileBytes(QByteArrayView data, LoadFailure& failure)
        : m_d(reinterpret_cast<const uchar*>(data.data())), m_size(data.size()), m_failure(failure)
    {
    }
    bool has(qint64 at, qint64 bytes) const { return at >= 0 && bytes >= 0 && at + bytes <= m_size; }
    // has(), and when the bytes aren't there the failure says the file is cut short.
    bool need(qint64 at, qint64 bytes)
    {
        if (has(at, bytes))
            return true;
        m_failure.cutShort();
        return false;
    }
    quint16 u16(qint64 at) const { return qFromLittleEndian<quint16>(m_d + at); }
    quint32 u32(qint64 at) const { return qFromLittleEndian<quint32>(m_d + at); }

protected:
    const uchar* m_d;
    qint64 m_size;
    LoadFailure& m_failure;
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
