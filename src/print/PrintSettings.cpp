#include "print/PrintSettings.h"

#include "core/Numbers.h"
#include "core/SafeFile.h"

#include <QFile>
#include <QList>

#include <cmath>

namespace velunta {

PrintSettings PrintDefaults()
{
    return {};
}

const std::array<PaperRow, 5>& PaperTable()
{
    static const std::array<PaperRow, 5> table{{
        {"A3", 16200, 24200, QPageSize::A3},
        {"A4 ", 12100, 16200, QPageSize::A4},
        {"A5", 8100, 12100, QPageSize::A5},
        {"Letter (8,5\"x11\")", 12240, 15840, QPageSize::Letter},
        {"Legal (8,5\"x14\")", 12240, 20592, QPageSize::Legal},
    }};
    return table;
}

const std::array<int, 5>& ZoomList()
{
    static const std::array<int, 5> list{25, 35, 50, 75, 100};
    return list;
}

const std::array<int, 8>& ZoomMenuList()
{
    static const std::array<int, 8> list{15, 25, 35, 50, 75, 90, 100, 125};
    return list;
}

int QualityResolution(int quality)
{
    switch (quality) {
    case 0:
        return 150;
    case 2:
        return 600;
    default:
        return 300;
    }
}

namespace {

// One line of the file as a number: blanks around it are allowed, anything else
// makes the file unreadable. Fractions round half to even, as the record's integers
// take them.
bool numberOf(const QByteArray& line, double& value)
{
    bool ok = false;
    value = line.trimmed().toDouble(&ok);
    return ok && std::isfinite(value);
}

template <typename T> bool fieldOf(const QByteArray& line, T& field, int low, int high)
{
    double v = 0;
    if (!numberOf(line, v))
        return false;
    try {
        const auto n = sizeof(T) == 2 ? std::int32_t(I2(v)) : I4(v);
        if (n < low || n > high)
            return false;
        field = T(n);
    } catch (const OverflowError&) {
        return false;
    }
    return true;
}

QByteArray numberLine(std::int32_t n)
{
    // The sign stands where a positive number has its blank.
    return (n >= 0 ? QByteArray(" ") : QByteArray()) + QByteArray::number(n) + " \r\n";
}

} // namespace

bool ReadPrintSettings(const QString& path, PrintSettings& settings)
{
    QFile file(path);
    // A settings file is a few hundred bytes; a huge one is not ours.
    if (!file.open(QIODevice::ReadOnly) || file.size() > 64 * 1024)
        return false;
    QList<QByteArray> lines = file.readAll().split('\n');
    if (lines.size() < 13)
        return false;
    constexpr int kMin32 = INT32_MIN, kMax32 = INT32_MAX, kMax16 = INT16_MAX;
    PrintSettings s;
    const bool ok =
        fieldOf(lines[2], s.Quality, 0, 2) && fieldOf(lines[3], s.Paper, 0, int(PaperTable().size()) - 1) &&
        fieldOf(lines[4], s.ColorMode, 0, 1) && fieldOf(lines[5], s.Orientation, 0, 1) &&
        fieldOf(lines[6], s.MarginLeft, INT16_MIN, kMax16) &&
        fieldOf(lines[7], s.MarginTop, INT16_MIN, kMax16) &&
        fieldOf(lines[8], s.ZoomIndex, 0, int(ZoomList().size()) - 1) &&
        fieldOf(lines[9], s.WinLeft, kMin32, kMax32) && fieldOf(lines[10], s.WinTop, kMin32, kMax32) &&
        fieldOf(lines[11], s.WinWidth, kMin32, kMax32) && fieldOf(lines[12], s.WinHeight, kMin32, kMax32);
    if (ok)
        settings = s;
    return ok;
}

QByteArray PrintSettingsText(const PrintSettings& s, const QString& version)
{
    QByteArray text = ";Zolvane-Velunta v" + version.toLatin1() + "\r\n;Print Settings\r\n";
    for (std::int32_t n : {std::int32_t(s.Quality), std::int32_t(s.Paper), std::int32_t(s.ColorMode),
                           std::int32_t(s.Orientation), std::int32_t(s.MarginLeft), std::int32_t(s.MarginTop),
                           std::int32_t(s.ZoomIndex), s.WinLeft, s.WinTop, s.WinWidth, s.WinHeight})
        text += numberLine(n);
    return text;
}

bool WritePrintSettings(const QString& path, const PrintSettings& settings, const QString& version,
                        QString* reason)
{
    return WriteFileSafely(path, PrintSettingsText(settings, version), reason);
}

} // namespace velunta
