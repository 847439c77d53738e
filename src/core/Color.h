#pragma once
// Colours stay in the system's packed form everywhere in the logic:
// R + 256 * G + 65536 * B, with -1 meaning "no colour". Conversion to Qt's
// QRgb happens only at the boundary, through the helpers here.

#include <QColor>
#include <QRgb>
#include <QString>

#include <cstdint>

namespace velunta {

using Color = std::int32_t;
inline constexpr Color kNoColor = -1;

constexpr Color RGB(int r, int g, int b)
{
    return r + 256 * g + 65536 * b;
}

// Channels by integer arithmetic: B = c \ 65536, G = (c - B * 65536) \ 256,
// R = c - B * 65536 - G * 256.
constexpr int ColorBlue(Color c)
{
    return c / 65536;
}
constexpr int ColorGreen(Color c)
{
    return (c - ColorBlue(c) * 65536) / 256;
}
constexpr int ColorRed(Color c)
{
    return c - ColorBlue(c) * 65536 - ColorGreen(c) * 256;
}

constexpr int Clamp255(int v)
{
    return v < 0 ? 0 : (v > 255 ? 255 : v);
}

// Pixels in a Format_RGB32 image are 0xFFRRGGBB.
constexpr QRgb ToQRgb(Color c)
{
    return 0xFF000000u | (quint32(c & 0xFF) << 16) | (quint32(c) & 0xFF00u) | ((quint32(c) >> 16) & 0xFFu);
}
constexpr Color FromQRgb(QRgb q)
{
    return Color(((q >> 16) & 0xFFu) | (q & 0xFF00u) | ((q & 0xFFu) << 16));
}
inline QColor ToQColor(Color c)
{
    return c < 0 ? QColor() : QColor::fromRgb(ToQRgb(c));
}
inline Color FromQColor(const QColor& q)
{
    return q.isValid() ? FromQRgb(q.rgb()) : kNoColor;
}

// "#RRGGBB": the value in upper-case hex, padded to six, read as BBGGRR.
QString ColorToHTML(Color c);

} // namespace velunta
