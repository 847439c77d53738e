#pragma once
// The loader's own decoders. Each takes the whole file and returns Format_RGB32,
// or Format_ARGB32 when the file carries transparency, which the loader then puts
// over white. They check every offset against the data and the picture size
// against the limits, and take memory only for pixels the data can fill: a file
// of N bytes may make them hold at most 16 N + 64 MB before its pixels are
// proven, by decoding first or by taking the rows as they are decoded.

#include <QByteArrayView>
#include <QImage>
#include <QString>
#include <QtEndian>

namespace velunta {

struct LoadFailure {
    int number = 0;
    QString text;    // a sentence for the user
    QString warning; // what a picture that did open had wrong with it

    bool failed() const { return number != 0; }
    // Keeps the first failure.
    void set(int errorNumber, const QString& sentence)
    {
        if (!number) {
            number = errorNumber;
            text = sentence;
        }
    }
    void invalid(const QString& sentence);
    void cutShort();
    void outOfMemory();
};

// A whole file in memory, read little-endian with every offset checked first.
class FileBytes {
public:
    FileBytes(QByteArrayView data, LoadFailure& failure)
        : m_d(reinterpret_cast<const uchar*>(data.data())), m_size(data.size()), m_failure(failure)
    {
    }
    bool has(qint64 at, qint64 bytes) const { return at >= 0 && bytes >= 0 && at <= m_size - bytes; }
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

// Memory a file of this size may make the decoders take before its pixels are proven.
// Fuzzing builds allow less, so that mutated headers don't spend the fuzzer's time
// filling large blank pictures.
#ifdef FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION
inline constexpr qint64 kUnprovenBase = qint64(1) << 20;
#else
inline constexpr qint64 kUnprovenBase = qint64(64) << 20;
#endif
inline constexpr qint64 UnprovenAllowance(qint64 fileBytes)
{
    return 16 * fileBytes + kUnprovenBase;
}

// True when a picture of this size may be loaded; otherwise sets the failure,
// whose text names the limits.
bool WithinLimits(qint64 width, qint64 height, LoadFailure& failure);
// True when the pixels that the data does not fill (the whole picture but
// `provenPixels`) stay within the allowance of a file of `fileBytes`.
inline constexpr bool WithinAllowance(qint64 width, qint64 height, qint64 provenPixels, qint64 fileBytes)
{
    return (width * height - provenPixels) * 4 <= UnprovenAllowance(fileBytes);
}
// WithinLimits() and WithinAllowance(); otherwise the failure says the file is too
// small for its stated size.
bool DataCanFill(qint64 width, qint64 height, qint64 provenPixels, qint64 fileBytes, LoadFailure& failure);
// A picture of the size when it is within the limits and memory can be had, else a
// null image with the failure set. Only for pixels already proven.
QImage NewPicture(qint64 width, qint64 height, QImage::Format format, LoadFailure& failure);

QImage DecodeBMP(QByteArrayView data, LoadFailure& failure);
// A BITMAPINFOHEADER and its pixels with no file header before them.
QImage DecodeDIB(QByteArrayView data, LoadFailure& failure);
// A picture of an icon or cursor: a DIB twice as high as the picture, its colour
// rows followed by a one-bit transparency mask.
QImage DecodeIconDIB(QByteArrayView data, LoadFailure& failure);
QImage DecodeGIF(QByteArrayView data, LoadFailure& failure);
QImage DecodeJPEG(QByteArrayView data, LoadFailure& failure);
QImage DecodePNG(QByteArrayView data, LoadFailure& failure);
// ICO and CUR: the picture with the most pixels, the deepest one on a tie.
QImage DecodeICO(QByteArrayView data, LoadFailure& failure);

} // namespace velunta
