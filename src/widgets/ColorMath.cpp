#include "widgets/ColorMath.h"

#include "core/Numbers.h"
#include "core/SafeFile.h"

#include <QFile>
#include <QHash>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace velunta {

namespace {

constexpr Color Hex(unsigned rrggbb)
{
    return RGB(int(rrggbb >> 16), int((rrggbb >> 8) & 0xFF), int(rrggbb & 0xFF));
}

// By index; the blues 21..23 are the brighter sky blues rather than a second cyan.
constexpr Color kMSColors[kMSColorCount] = {
    Hex(0xFFFFFF), Hex(0xE0E0E0), Hex(0xC0C0C0), Hex(0x808080), Hex(0x404040), Hex(0x000000), Hex(0x004040),
    Hex(0xFFC0C0), Hex(0xFF8080), Hex(0xFF0000), Hex(0xC00000), Hex(0x800000), Hex(0x400000), Hex(0x008080),
    Hex(0xFFFFC0), Hex(0xFFFF80), Hex(0xFFFF00), Hex(0xC0C000), Hex(0x808000), Hex(0x404000), Hex(0x00C8C8),
    Hex(0x00FFFF), Hex(0x00C8FF), Hex(0x0078FF), Hex(0x0000FF), Hex(0x000080), Hex(0x000040), Hex(0x20F0F0),
    Hex(0xC0FFC0), Hex(0x80FF80), Hex(0x00FF00), Hex(0x00C000), Hex(0x008000), Hex(0x004000), Hex(0x80FFFF),
    Hex(0xFFC0FF), Hex(0xFF80FF), Hex(0xFF00FF), Hex(0xC000C0), Hex(0x800080), Hex(0x400040), Hex(0xC0FFFF)};

const char* const kGroups[6] = {"Grays", "Reds", "Yellows", "Blues", "Greens", "Purples"};

const char kUserColorsHeader[] = "[User Defined Colors]";

} // namespace

Color MSColorValue(int index)
{
    return index >= 0 && index < kMSColorCount ? kMSColors[index] : kNoColor;
}

QString MSColorGroup(int index)
{
    if (index < 0 || index >= kMSColorCount || index % 7 == 6)
        return {};
    return QString::fromLatin1(kGroups[index / 7]);
}

QPoint MSColorPlace(int index)
{
    if (index % 7 == 6)
        return {5 - index / 7, 6};
    return {index % 7, index / 7};
}

int MSColorAt(int row, int column)
{
    if (row < 0 || row > 6 || column < 0 || column > 5)
        return -1;
    return row == 6 ? 7 * (5 - column) + 6 : 7 * row + column;
}

std::array<Color, kUserColorCount> DefaultUserColors()
{
    // Colours a child misses among the fixed ones: skin tones, browns, oranges, pastels.
    return {Hex(0xFF8000), Hex(0xFFC080), Hex(0xFFE0C0), Hex(0xC08040), Hex(0x804000), Hex(0x603018),
            Hex(0xFF80C0), Hex(0xC080FF), Hex(0x80C0FF), Hex(0x80FFC0), Hex(0xFFD700), Hex(0x2E8B57)};
}

int ThumbLeftForValue(int value, int barLeft, int barWidth, int thumbWidth)
{
    return I4(value / 255.0 * barWidth + barLeft - thumbWidth / 2.0);
}

int SliderValue(int thumbLeft, int barLeft, int barWidth, int thumbWidth)
{
    const int d = thumbLeft - (barLeft - I4(thumbWidth / 2.0));
    if (d <= 0 || barWidth <= 0)
        return 0;
    return I4(double(d) / barWidth * 256.0);
}

QString ClampedBoxText(const QString& text)
{
    const double v = Val(text);
    if (v > 255)
        return QStringLiteral("255");
    if (v < 0)
        return QStringLiteral("0");
    return text;
}

int BoxValue(const QString& text)
{
    const double v = Val(text);
    return v <= 0 ? 0 : (v >= 255 ? 255 : int(v));
}

QVector<Color> SelectedGradient(Color color0, Color color1, int width)
{
    QVector<Color> columns;
    if (width <= 0)
        return columns;
    const double from[3] = {double(ColorRed(color0)), double(ColorGreen(color0)), double(ColorBlue(color0))};
    const double to[3] = {double(ColorRed(color1)), double(ColorGreen(color1)), double(ColorBlue(color1))};
    double step[3], value[3];
    for (int k = 0; k < 3; ++k) {
        step[k] = from[k] != to[k] ? (from[k] - to[k]) / width : 0.0;
        value[k] = from[k];
    }
    columns.reserve(width + 1);
    for (int i = 0; i <= width; ++i) {
        for (int k = 0; k < 3; ++k)
            value[k] = std::clamp(value[k] - step[k], 0.0, 255.0);
        columns.append(RGB(I4(value[0]), I4(value[1]), I4(value[2])));
    }
    return columns;
}

int ReadUserColors(const QString& path, std::array<Color, kUserColorCount>& cells)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return 0;
    file.readLine(); // the header
    static const QRegularExpression separators(QStringLiteral("[\\s,]+"));
    const QStringList numbers = QString::fromLatin1(file.readAll()).split(separators, Qt::SkipEmptyParts);
    int read = 0;
    for (const QString& text : numbers) {
        if (read == kUserColorCount)
            break;
        bool ok = false;
        const qlonglong v = text.toLongLong(&ok);
        if (!ok || v < 0 || v > 0xFFFFFF)
            break;
        cells[read++] = Color(v);
    }
    return read;
}

bool WriteUserColors(const QString& path, const std::array<Color, kUserColorCount>& cells, QString* reason)
{
    QByteArray text = QByteArray(kUserColorsHeader) + "\r\n";
    for (Color c : cells)
        text += ' ' + QByteArray::number(c) + " \r\n";
    // A failed write keeps the old colours.
    return WriteFileSafely(path, text, reason);
}

Color NearestColor(Color c, const QVector<Color>& palette)
{
    Color best = kNoColor;
    int bestDistance = 0x7FFFFFFF;
    const int r = ColorRed(c), g = ColorGreen(c), b = ColorBlue(c);
    for (Color p : palette) {
        const int dr = ColorRed(p) - r, dg = ColorGreen(p) - g, db = ColorBlue(p) - b;
        const int distance = dr * dr + dg * dg + db * db;
        if (distance < bestDistance) {
            bestDistance = distance;
            best = p;
        }
    }
    return best;
}

void ReduceToPalette(QImage& image, const QVector<Color>& palette)
{
    if (palette.isEmpty() || image.isNull())
        return;
    if (image.format() != QImage::Format_RGB32)
        image = image.convertToFormat(QImage::Format_RGB32);
    // Pictures repeat their colours a lot; each distinct colour is matched once.
    QHash<QRgb, QRgb> matched;
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = line[x] | 0xFF000000u;
            auto it = matched.constFind(pixel);
            if (it == matched.constEnd())
                it = matched.insert(pixel, ToQRgb(NearestColor(FromQRgb(pixel), palette)));
            line[x] = it.value();
        }
    }
}

Color ParseHTMLColor(const QString& text)
{
    QString t = text.trimmed();
    if (t.startsWith(u'#'))
        t.remove(0, 1);
    static const QRegularExpression sixHex(QStringLiteral("^[0-9A-Fa-f]{6}$"));
    if (!sixHex.match(t).hasMatch())
        return kNoColor;
    const unsigned rrggbb = t.toUInt(nullptr, 16);
    return Hex(rrggbb);
}

QImage HueChart(int width, int height, int greyColumns)
{
    QImage image(std::max(width, 1), std::max(height, 1), QImage::Format_RGB32);
    const int hues = std::max(image.width() - greyColumns, 1);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        const double t = image.height() > 1 ? double(y) / (image.height() - 1) : 0.0;
        for (int x = 0; x < image.width(); ++x) {
            double r = 1 - t, g = 1 - t, b = 1 - t; // the grey ramp
            if (x < hues) {
                const QColor hue = QColor::fromHsvF(double(x) / hues, 1.0, 1.0);
                r = hue.redF(), g = hue.greenF(), b = hue.blueF();
                if (t < 0.5) {
                    const double k = t * 2;
                    r = 1 - (1 - r) * k, g = 1 - (1 - g) * k, b = 1 - (1 - b) * k;
                } else {
                    const double k = (1 - t) * 2;
                    r *= k, g *= k, b *= k;
                }
            }
            line[x] = qRgb(int(r * 255 + 0.5), int(g * 255 + 0.5), int(b * 255 + 0.5));
        }
    }
    return image;
}

} // namespace velunta
