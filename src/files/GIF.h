#pragma once
// The GIF writer. It is deliberately simple: no palette is computed from the
// picture (8-bit indexed pictures keep their own table, everything else goes
// through a fixed 125-colour cube), codes are always 9 bits wide, and the LZW
// dictionary lives for one row, so every row starts with a clear code.

#include "core/Color.h"
#include "core/Progress.h"
#include "files/WriteError.h"

#include <QImage>
#include <QString>

#include <array>
#include <vector>

namespace velunta {

class SaveTarget;

class GIF {
public:
    // Writes `image` as a one-picture GIF: GIF89a with a transparent palette entry
    // when `useTransparency` is set (the entry that equals `transparentColor`
    // exactly, else entry 0), GIF87a otherwise. `progress` hears every tenth row
    // and stops the save by returning true (WriteError::Cancelled); the target file is
    // then left alone.
    bool SaveGIF(const QImage& image, const QString& fileName, bool useTransparency, Color transparentColor,
                 WriteFailure* failure = nullptr, const ProgressFn& progress = NoProgress);

    // The entry of the fixed cube nearest to `rgb`: blue runs slowest, then green,
    // red fastest, each through the levels 0, 64, 128, 192, 255. The cube is
    // separable, so the nearest entry in RGB space takes the nearest level of each
    // channel on its own; a value exactly half way (32, 96, 160) goes to the
    // brighter level.
    static int CubeIndex(QRgb rgb);
    // Packed colour of cube entry `index`; entries 125..255 are black.
    static Color CubeColor(int index);

private:
    bool writeHeader(int width, int height, bool useTransparency, int transparentIndex);
    bool encodeRows(const QImage& image, bool indexed, const ProgressFn& progress);
    void WriteBits(quint32 value, int bitCount);
    void putDataByte(uchar byte);
    void ResetTable();

    bool Busy = false;
    std::array<uchar, 768> Palette{};
    SaveTarget* m_target = nullptr;
    // Sub-block being filled: byte 0 is the count, bytes 1..255 the data.
    std::array<uchar, 256> Block{};
    quint64 m_bitBuffer = 0;
    int m_bitCount = 0;
    // The row's dictionary: Codes[prefixCode * 256 + pixel] is the code of that
    // string, 0 when absent. m_usedKeys lists the slots to empty at the next reset.
    std::vector<quint16> Codes;
    std::vector<int> m_usedKeys;
    int m_entries = 0;
};

} // namespace velunta
