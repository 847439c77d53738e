#include "imageops/TileTexture.h"

#include "core/Surface.h"
#include "files/read/BigBuffer.h"

#include <algorithm>
#include <cstring>

namespace velunta {

namespace {

bool Tile(QImage& out, const QImage& tile)
{
    const int w = out.width();
    const int h = out.height();
    const int tw = tile.width();
    const int th = tile.height();
    if (w <= 0 || h <= 0 || tw <= 0 || th <= 0)
        return false;
    // The first min(th, h) rows are built from the tile's rows: one tile row, then the
    // part already filled is doubled until the row is full, so even a one-pixel tile
    // costs a few copies per row. Every later row repeats the row th above it.
    const int built = std::min(th, h);
    for (int y = 0; y < built; ++y) {
        auto* row = reinterpret_cast<QRgb*>(out.scanLine(y));
        const auto* source = reinterpret_cast<const QRgb*>(tile.constScanLine(y));
        int filled = std::min(tw, w);
        std::memcpy(row, source, size_t(filled) * sizeof(QRgb));
        while (filled < w) {
            // Copies of whole tiles keep every pixel at x mod tw.
            const int n = std::min(filled / tw * tw, w - filled);
            std::memcpy(row + filled, row, size_t(n) * sizeof(QRgb));
            filled += n;
        }
    }
    const size_t rowBytes = size_t(w) * sizeof(QRgb);
    for (int y = built; y < h; ++y)
        std::memcpy(out.scanLine(y), out.constScanLine(y - th), rowBytes);
    return true;
}

} // namespace

bool TileTexture(Surface& target, const Surface& texture)
{
    if (!Tile(target.Image(), texture.Image()))
        return false;
    target.touchAll();
    return true;
}

bool FillWithTexture(Surface& target, const Surface& texture)
{
    const QImage& old = target.Image();
    QImage fresh = AllocateBigImage(old.width(), old.height(), QImage::Format_RGB32);
    if (fresh.isNull() || texture.Image().isNull())
        return TileTexture(target, texture); // in place after all; it says when it can't
    Tile(fresh, texture.Image());
    target.setImage(fresh);
    return true;
}

QStringList TextureFileFilters()
{
    return {QStringLiteral("*.bmp"), QStringLiteral("*.dib"),  QStringLiteral("*.rle"),
            QStringLiteral("*.jpg"), QStringLiteral("*.jpeg"), QStringLiteral("*.gif"),
            QStringLiteral("*.png"), QStringLiteral("*.ico")};
}

} // namespace velunta
