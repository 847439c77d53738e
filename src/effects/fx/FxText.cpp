// Text laid over the picture: a semi-transparent line in a font of its own, and text in
// the surface's font. Both paint with Qt on the picture itself (a GUI application must
// exist for its fonts, which the program always has).

#include "effects/fx/FxSupport.h"

#include "core/Gdi.h"
#include "core/Surface.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>

#include <cmath>

namespace velunta {

namespace {

QFont qtFont(const FxFont& f)
{
    QFont font(f.face);
    // A negative height is the character height itself; a positive one the whole cell,
    // of which the character takes the font's own share.
    const int pixels = f.height == 0 ? 16 : std::clamp(std::abs(f.height), 1, 4000);
    font.setPixelSize(pixels);
    if (f.height > 0) {
        const int cell = QFontMetrics(font).height();
        if (cell > 0)
            font.setPixelSize(std::max(1, pixels * pixels / cell));
    }
    font.setWeight(QFont::Weight(std::clamp(f.weight == 0 ? 400 : f.weight, 1, 1000)));
    font.setItalic(f.italic);
    font.setUnderline(f.underline);
    const int quality = f.quality & 0xFF;
    font.setStyleStrategy(quality >= 4 && quality <= 6 ? QFont::PreferAntialias : QFont::NoAntialias);
    if (f.width > 0) {
        const int average = QFontMetrics(font).averageCharWidth();
        if (average > 0)
            font.setStretch(std::clamp(int(std::lround(100.0 * f.width / average)), 1, 4000));
    }
    return font;
}

} // namespace

bool fxDrawText(Surface& dst, FxRect box, const QString& text, Color color, const FxFont& font,
                int transparency)
{
    QImage& image = dst.Image();
    if (text.isEmpty() || color < 0 || box.width <= 0 || box.height <= 0 || image.isNull())
        return true;
    const std::int64_t left = std::max<std::int64_t>(box.x, 0), top = std::max<std::int64_t>(box.y, 0);
    const std::int64_t right = std::min<std::int64_t>(std::int64_t(box.x) + box.width, image.width());
    const std::int64_t bottom = std::min<std::int64_t>(std::int64_t(box.y) + box.height, image.height());
    if (left >= right || top >= bottom)
        return true;
    const QRect area(int(left), int(top), int(right - left), int(bottom - top));
    const int t = fxi::clampArg(transparency, 0, 255);
    if (t == 255)
        return true;
    const QFont qfont = qtFont(font);
    QPainter painter(&image);
    painter.setClipRect(area);
    painter.setOpacity((255 - t) / 255.0);
    painter.setFont(qfont);
    painter.setPen(ToQColor(color));
    painter.translate(box.x, box.y);
    // Escapement turns counter-clockwise; the painter's angles turn clockwise.
    painter.rotate(-std::clamp(font.escapement, -3600, 3600) / 10.0);
    painter.drawText(QPointF(0, QFontMetrics(qfont).ascent()), text);
    painter.end();
    dst.touch(area);
    return true;
}

bool fxText(Surface& dst, int x, int y, const QString& text, Color color)
{
    if (text.isEmpty() || color < 0 || dst.Image().isNull())
        return true;
    const Color pen = dst.ForeColor;
    const double penX = dst.CurrentX, penY = dst.CurrentY;
    dst.ForeColor = color;
    DrawText(dst, x, y, text, false);
    dst.ForeColor = pen;
    dst.CurrentX = penX;
    dst.CurrentY = penY;
    return true;
}

} // namespace velunta
