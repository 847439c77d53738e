#include "imageops/Borders.h"

#include "core/Gdi.h"
#include "core/Surface.h"

#include <QPainter>

#include <algorithm>

namespace velunta {

namespace {

constexpr std::uint32_t kBorderRops[] = {SRCCOPY, SRCAND, kRopMaskedBrush, NOTSRCERASE, NOTSRCCOPY};

// One tile with its top left at (x, y), only where it falls inside `clip`.
void tile(Surface& target, const Surface& brush, int x, int y, const QRect& clip, std::uint32_t rop)
{
    const QRect r = QRect(x, y, brush.ScaleWidth(), brush.ScaleHeight()) & clip;
    if (!r.isEmpty())
        BitBlt(target, r.x(), r.y(), r.width(), r.height(), brush, r.x() - x, r.y() - y, rop);
}

} // namespace

std::uint32_t BorderRasterOp(int effect)
{
    return effect >= 0 && effect < int(std::size(kBorderRops)) ? kBorderRops[effect] : SRCCOPY;
}

QImage BorderBrush(const QImage& art, Color background, QSize size)
{
    if (art.isNull() || size.isEmpty())
        return QImage();
    QImage brush(size, QImage::Format_RGB32);
    brush.fill(ToQRgb(background));
    QPainter p(&brush);
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    p.drawImage(QRect(QPoint(0, 0), size), art);
    return brush;
}

void DrawBorder(Surface& target, const Surface& brush, int style, int effect, Color drawingColor)
{
    const int w = target.ScaleWidth(), h = target.ScaleHeight();
    const int bw = brush.ScaleWidth(), bh = brush.ScaleHeight();
    if (w <= 0 || h <= 0 || bw <= 0 || bh <= 0)
        return;
    const std::uint32_t rop = BorderRasterOp(effect);
    // The Merge effect's pattern is the target's brush.
    const Color keptFill = target.FillColor;
    target.FillColor = drawingColor;

    // The bands a tile may cover, so that no pixel takes two tiles: the bottom band
    // starts below the top one, the sides run between them, the right side right of
    // the left one.
    const int topEnd = std::min(bh, h);
    const int bottomStart = std::max(h - bh, topEnd);
    const int leftEnd = std::min(bw, w);
    const int rightStart = std::max(w - bw, leftEnd);
    auto row = [&](int y, int bandTop, int bandBottom) {
        for (int x = 0; x < w; x += bw)
            tile(target, brush, x, y, QRect(0, bandTop, w, bandBottom - bandTop), rop);
    };
    auto column = [&](int x, int bandLeft, int bandRight, int from, int to) {
        for (int y = from; y < to; y += bh)
            tile(target, brush, x, y, QRect(bandLeft, from, bandRight - bandLeft, to - from), rop);
    };

    switch (style) {
    case kBorderTopBottom:
        row(0, 0, topEnd);
        row(h - bh, bottomStart, h);
        break;
    case kBorderLeftRight:
        column(0, 0, leftEnd, 0, h);
        column(w - bw, rightStart, w, 0, h);
        break;
    case kBorderCorners:
        tile(target, brush, 0, 0, QRect(0, 0, leftEnd, topEnd), rop);
        tile(target, brush, w - bw, 0, QRect(rightStart, 0, w - rightStart, topEnd), rop);
        tile(target, brush, 0, h - bh, QRect(0, bottomStart, leftEnd, h - bottomStart), rop);
        tile(target, brush, w - bw, h - bh, QRect(rightStart, bottomStart, w - rightStart, h - bottomStart),
             rop);
        break;
    default:
        row(0, 0, topEnd);
        row(h - bh, bottomStart, h);
        column(0, 0, leftEnd, topEnd, bottomStart);
        column(w - bw, rightStart, w, topEnd, bottomStart);
        break;
    }
    target.FillColor = keptFill;
}

} // namespace velunta
