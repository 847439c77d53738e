// Block transfers, single pixels, flood fill, 3D edges, inversion and text. The
// line and shape drawing lives in GdiShapes.cpp.

#include "core/Gdi.h"

#include "core/GdiRaster.h"
#include "core/Numbers.h"
#include "core/Surface.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <utility>
#include <vector>

namespace velunta {

using namespace raster;

namespace {

// ---- Raster operations ----------------------------------------------------------
//
// A ROP3 index is the truth table of a function of P, S and D: bit (p*4 + s*2 + d)
// gives the result for those input bits. Splitting it by P, then S, then D turns it
// into a few word-wide logic operations that the compiler folds per index, so every
// one of the 256 operations runs as fast as a hand-written one and all 24 colour bits
// are done at once.

template <unsigned Table> // 2 entries over D: bit 0 for D = 0, bit 1 for D = 1
inline QRgb overD(QRgb d)
{
    if constexpr (Table == 0)
        return 0;
    else if constexpr (Table == 1)
        return ~d;
    else if constexpr (Table == 2)
        return d;
    else
        return ~QRgb(0);
}

template <unsigned Table> // 4 entries over S, D
inline QRgb overSD(QRgb s, QRgb d)
{
    constexpr unsigned whenS0 = Table & 3u, whenS1 = Table >> 2;
    if constexpr (whenS0 == whenS1)
        return overD<whenS0>(d);
    else
        return (s & overD<whenS1>(d)) | (~s & overD<whenS0>(d));
}

template <unsigned Index> inline QRgb rop3(QRgb p, QRgb s, QRgb d)
{
    constexpr unsigned whenP0 = Index & 15u, whenP1 = Index >> 4;
    QRgb r;
    if constexpr (whenP0 == whenP1)
        r = overSD<whenP0>(s, d);
    else
        r = (p & overSD<whenP1>(s, d)) | (~p & overSD<whenP0>(s, d));
    return kOpaque | (r & kRgbBits);
}

constexpr bool ropUsesSource(unsigned index)
{
    return ((index >> 2) & 0x33u) != (index & 0x33u);
}

// One row: dst[i] = rop(P, src[i], dst[i]). src may be null when the operation
// doesn't read the source.
using RopRow = void (*)(QRgb* dst, const QRgb* src, int n, QRgb brush);

template <unsigned Index> void ropRow(QRgb* dst, const QRgb* src, int n, QRgb brush)
{
    if constexpr (Index == (SRCCOPY >> 16)) {
        // The pixels of an RGB32 picture are opaque already: the plain copy is the
        // library's block move, the fastest there is for every undo step.
        std::memmove(dst, src, size_t(n) * sizeof(QRgb));
        return;
    }
    for (int i = 0; i < n; ++i) {
        if constexpr (ropUsesSource(Index))
            dst[i] = rop3<Index>(brush, src[i], dst[i]);
        else
            dst[i] = rop3<Index>(brush, 0, dst[i]);
    }
}

constexpr auto kRopRows = []<unsigned... I>(std::integer_sequence<unsigned, I...>)
{
    return std::array<RopRow, sizeof...(I)>{&ropRow<I>...};
}
(std::make_integer_sequence<unsigned, 256>{});

unsigned ropIndex(std::uint32_t rop)
{
    return (rop >> 16) & 0xFFu;
}

// The pixels a transfer reads. When source and destination are the same image and
// the areas meet, the source area is copied first, so the result is that of reading
// an untouched picture. `origin` is where the returned image's 0, 0 lies in src.
const QImage& sourcePixels(QImage& dst, const QRect& written, const QImage& src, const QRect& read,
                           QImage& holder, QPoint& origin)
{
    dst.detach(); // before comparing buffers: a shared copy must not count as "the same"
    origin = QPoint(0, 0);
    if (src.constBits() != dst.constBits() || !written.intersects(read))
        return src;
    holder = src.copy(read);
    origin = read.topLeft();
    return holder;
}

// ---- Stretched copies --------------------------------------------------------------

// One axis of a stretched copy: the destination pixels from `first` on that lie in
// both pictures, and the source pixel each of them samples.
struct StretchAxis {
    int first = 0;
    std::vector<int> source;
};

StretchAxis stretchAxis(int d, int dn, int s, int sn, int dstSize, int srcSize)
{
    // A negative extent counts leftwards (upwards) from its origin, so it covers
    // origin + extent .. origin - 1 and its first pixel is origin - 1.
    const std::int64_t dCount = std::llabs(dn), sCount = std::llabs(sn);
    const std::int64_t dLow = dn < 0 ? std::int64_t(d) + dn : d;
    const std::int64_t sLow = sn < 0 ? std::int64_t(s) + sn : s;
    const std::int64_t from = std::max<std::int64_t>(dLow, 0);
    const std::int64_t to = std::min<std::int64_t>(dLow + dCount, dstSize);
    StretchAxis axis;
    for (std::int64_t pos = from; pos < to; ++pos) {
        const std::int64_t i = dn < 0 ? dLow + dCount - 1 - pos : pos - dLow;
        const std::int64_t k = (2 * i + 1) * sCount / (2 * dCount); // floor((i + 0.5) * sw / w)
        const std::int64_t at = sn < 0 ? sLow + sCount - 1 - k : sLow + k;
        if (at < 0 || at >= srcSize)
            continue; // samples outside the source leave the destination as it is
        if (axis.source.empty())
            axis.first = int(pos);
        axis.source.push_back(int(at));
    }
    return axis;
}

// ---- Flood fill -------------------------------------------------------------------

struct Span {
    int y, x0, x1;
};

// One bit per pixel, a row allocated when the search first reaches it, so a small
// region on a large picture costs little.
class RowBits {
public:
    RowBits(int width, int height) : m_words((width + 63) / 64), m_rows(height) {}

    bool test(int x, int y) const
    {
        const std::vector<std::uint64_t>& row = m_rows[y];
        return !row.empty() && ((row[x >> 6] >> (x & 63)) & 1u);
    }
    void set(int y, int x0, int x1)
    {
        std::vector<std::uint64_t>& row = m_rows[y];
        if (row.empty())
            row.assign(m_words, 0);
        for (int x = x0; x <= x1;) {
            if ((x & 63) == 0 && x + 63 <= x1) {
                row[x >> 6] = ~std::uint64_t(0);
                x += 64;
            } else {
                row[x >> 6] |= std::uint64_t(1) << (x & 63);
                ++x;
            }
        }
    }

private:
    std::size_t m_words;
    std::vector<std::vector<std::uint64_t>> m_rows;
};

// The 4-connected region around x, y as maximal runs per row. With MatchKey the
// region is the pixels equal to `key`, otherwise the pixels that differ from it.
// Every run is found once, extended to its full length and marked, so the work is
// proportional to the region and its rim.
template <bool MatchKey> std::vector<Span> findRegion(const QImage& image, int x, int y, QRgb key)
{
    const int width = image.width(), height = image.height();
    const auto inside = [key](QRgb px) { return (((px ^ key) & kRgbBits) == 0) == MatchKey; };
    RowBits seen(width, height);
    std::vector<Span> spans;
    std::vector<std::size_t> pending;

    const auto discover = [&](int px, int py) {
        const QRgb* line = rowOf(image, py);
        int a = px, b = px;
        while (a > 0 && inside(line[a - 1]))
            --a;
        while (b + 1 < width && inside(line[b + 1]))
            ++b;
        seen.set(py, a, b);
        spans.push_back({py, a, b});
        pending.push_back(spans.size() - 1);
        return b;
    };
    const auto scan = [&](int py, int l, int r) {
        const QRgb* line = rowOf(image, py);
        for (int px = l; px <= r; ++px) {
            if (!inside(line[px]))
                continue;
            if (seen.test(px, py)) {
                while (px < r && inside(line[px + 1]))
                    ++px;
            } else {
                px = discover(px, py);
            }
        }
    };

    discover(x, y);
    while (!pending.empty()) {
        const Span span = spans[pending.back()];
        pending.pop_back();
        if (span.y > 0)
            scan(span.y - 1, span.x0, span.x1);
        if (span.y + 1 < height)
            scan(span.y + 1, span.x0, span.x1);
    }
    return spans;
}

// ---- Text ---------------------------------------------------------------------------

QFont fontOf(const Surface& s)
{
    QFont font(s.FontName);
    // Sizes are points on a 96 dpi device.
    font.setPixelSize(std::max(1, I4(s.FontSize * 96.0 / 72.0)));
    font.setBold(s.FontBold);
    font.setItalic(s.FontItalic);
    font.setUnderline(s.FontUnderline);
    return font;
}

QStringList linesOf(const QString& text)
{
    QString t = text;
    t.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    return t.split(u'\n');
}

} // namespace

// ---- Transfers ------------------------------------------------------------------------

bool BitBlt(Surface& dst, int x, int y, int w, int h, const Surface& src, int sx, int sy, std::uint32_t rop)
{
    if (w <= 0 || h <= 0)
        return false;
    const unsigned index = ropIndex(rop);
    const bool readsSource = ropUsesSource(index);
    QImage& image = dst.Image();
    QRect target = clippedBox(image, x, y, std::int64_t(x) + w, std::int64_t(y) + h);
    if (readsSource) // only where the source has pixels
        target &= clippedBox(src.Image(), sx, sy, std::int64_t(sx) + w, std::int64_t(sy) + h)
                      .translated(x - sx, y - sy);
    if (target.isEmpty())
        return true;

    const QPoint shift(sx - x, sy - y);
    QImage holder;
    QPoint origin;
    const QImage& source =
        readsSource ? sourcePixels(image, target, src.Image(), target.translated(shift), holder, origin)
                    : src.Image();
    const RopRow apply = kRopRows[index];
    const QRgb brush = ToQRgb(dst.FillColor);
    for (int row = target.top(); row <= target.bottom(); ++row) {
        const QRgb* from = readsSource ? rowOf(source, row + shift.y() - origin.y()) +
                                             (target.left() + shift.x() - origin.x())
                                       : nullptr;
        apply(rowOf(image, row) + target.left(), from, target.width(), brush);
    }
    dst.touch(target);
    return true;
}

bool StretchBlt(Surface& dst, int x, int y, int w, int h, const Surface& src, int sx, int sy, int sw, int sh,
                std::uint32_t rop)
{
    if (w == 0 || h == 0 || sw == 0 || sh == 0)
        return false;
    QImage& image = dst.Image();
    const StretchAxis cols = stretchAxis(x, w, sx, sw, image.width(), src.Image().width());
    const StretchAxis rows = stretchAxis(y, h, sy, sh, image.height(), src.Image().height());
    if (cols.source.empty() || rows.source.empty())
        return true;

    const QRect target(cols.first, rows.first, int(cols.source.size()), int(rows.source.size()));
    const auto [colLow, colHigh] = std::minmax_element(cols.source.begin(), cols.source.end());
    const auto [rowLow, rowHigh] = std::minmax_element(rows.source.begin(), rows.source.end());
    const QRect read(QPoint(*colLow, *rowLow), QPoint(*colHigh, *rowHigh));
    QImage holder;
    QPoint origin;
    const QImage& source = sourcePixels(image, target, src.Image(), read, holder, origin);

    const RopRow apply = kRopRows[ropIndex(rop)];
    const QRgb brush = ToQRgb(dst.FillColor);
    std::vector<QRgb> samples(cols.source.size());
    int sampledRow = -1;
    for (std::size_t j = 0; j < rows.source.size(); ++j) {
        // Enlarging repeats source rows; their samples are gathered once.
        if (rows.source[j] != sampledRow) {
            sampledRow = rows.source[j];
            const QRgb* line = rowOf(source, sampledRow - origin.y());
            for (std::size_t i = 0; i < samples.size(); ++i)
                samples[i] = line[cols.source[i] - origin.x()];
        }
        apply(rowOf(image, rows.first + int(j)) + cols.first, samples.data(), target.width(), brush);
    }
    dst.touch(target);
    return true;
}

// ---- Pixels ---------------------------------------------------------------------------

Color GetPixel(const Surface& s, int x, int y)
{
    const QImage& image = s.Image();
    if (!image.valid(x, y))
        return kNoColor;
    return FromQRgb(rowOf(image, y)[x]);
}

bool SetPixelV(Surface& s, int x, int y, Color c)
{
    QImage& image = s.Image();
    if (!image.valid(x, y))
        return false;
    rowOf(image, y)[x] = ToQRgb(c);
    s.touch(QRect(x, y, 1, 1));
    return true;
}

// ---- Flood fill ---------------------------------------------------------------------

namespace {

// The fill, and the region it found when `region` asks for it.
bool fill(Surface& s, int x, int y, Color color, FloodFillType type, FillRegion* region)
{
    QImage& image = s.Image();
    if (!image.valid(x, y))
        return false;
    const QRgb key = ToQRgb(color);
    const bool startIsKey = ((rowOf(image, y)[x] ^ key) & kRgbBits) == 0;
    const bool sameColour = type == FLOODFILLSURFACE;
    if (startIsKey != sameColour)
        return false;
    const Brush brush = Brush::of(s);
    if (!brush.paints())
        return true;
    // A fill drag repeats the fill at every pointer sample; once the surface has the
    // fill colour there is nothing left to do.
    if (sameColour && brush.style == 0 && ((key ^ brush.colour) & kRgbBits) == 0)
        return true;

    // The region is complete before anything is painted, so hatch lines never change
    // what the search sees.
    const std::vector<Span> spans =
        sameColour ? findRegion<true>(image, x, y, key) : findRegion<false>(image, x, y, key);
    if (region) {
        for (const Span& span : spans)
            region->add(span.y, span.x0, span.x1);
        region->seal();
    }
    QRect touched;
    for (const Span& span : spans) {
        if (brush.style == 0) {
            // Runs that already have the colour are left alone and don't count as touched.
            const QRgb* line = rowOf(std::as_const(image), span.y);
            if (std::all_of(line + span.x0, line + span.x1 + 1,
                            [&](QRgb px) { return ((px ^ brush.colour) & kRgbBits) == 0; }))
                continue;
        }
        paintSpan(image, span.y, span.x0, span.x1, brush);
        touched |= QRect(span.x0, span.y, span.x1 - span.x0 + 1, 1);
    }
    s.touch(touched);
    return true;
}

} // namespace

void FillRegion::add(int y, int x0, int x1)
{
    if (y < 0)
        return;
    if (std::size_t(y) >= m_rows.size())
        m_rows.resize(std::size_t(y) + 1);
    m_rows[std::size_t(y)].push_back({x0, x1});
}

void FillRegion::seal()
{
    for (auto& runs : m_rows)
        std::sort(runs.begin(), runs.end());
}

bool FillRegion::contains(int x, int y) const
{
    if (y < 0 || std::size_t(y) >= m_rows.size())
        return false;
    const auto& runs = m_rows[std::size_t(y)];
    auto after = std::upper_bound(runs.begin(), runs.end(), std::pair{x, std::numeric_limits<int>::max()});
    return after != runs.begin() && std::prev(after)->second >= x;
}

bool ExtFloodFill(Surface& s, int x, int y, Color color, FloodFillType type)
{
    return fill(s, x, y, color, type, nullptr);
}

bool ExtFloodFill(Surface& s, int x, int y, Color color, FloodFillType type, FillRegion& region)
{
    return fill(s, x, y, color, type, &region);
}

// ---- Edges and inversion -------------------------------------------------------------

bool DrawEdge(Surface& s, int left, int top, int right, int bottom, unsigned edge, unsigned flags)
{
    if (right <= left || bottom <= top)
        return false;
    QImage& image = s.Image();
    struct Ring {
        bool drawn;
        Color topLeft, bottomRight;
    };
    const Ring outer = (edge & BDR_RAISEDOUTER)   ? Ring{true, kColor3DLight, kColor3DDarkShadow}
                       : (edge & BDR_SUNKENOUTER) ? Ring{true, kColor3DShadow, kColor3DHighlight}
                                                  : Ring{false, 0, 0};
    const Ring inner = (edge & BDR_RAISEDINNER)   ? Ring{true, kColor3DHighlight, kColor3DShadow}
                       : (edge & BDR_SUNKENINNER) ? Ring{true, kColor3DDarkShadow, kColor3DLight}
                                                  : Ring{false, 0, 0};
    // l..r-1 by t..b-1, in 64 bits: the inner ring may step past a one-pixel box.
    const auto drawRing = [&](const Ring& ring, std::int64_t l, std::int64_t t, std::int64_t r,
                              std::int64_t b) {
        if (!ring.drawn || r <= l || b <= t)
            return;
        const QRgb light = ToQRgb(ring.topLeft), dark = ToQRgb(ring.bottomRight);
        if (flags & BF_TOP)
            fillBox(image, clippedBox(image, l, t, r, t + 1), light);
        if (flags & BF_LEFT)
            fillBox(image, clippedBox(image, l, t, l + 1, b), light);
        if (flags & BF_BOTTOM)
            fillBox(image, clippedBox(image, l, b - 1, r, b), dark);
        if (flags & BF_RIGHT)
            fillBox(image, clippedBox(image, r - 1, t, r, b), dark);
    };
    drawRing(outer, left, top, right, bottom);
    // The inner ring steps in only on the sides that have an outer line.
    drawRing(inner, std::int64_t(left) + ((flags & BF_LEFT) ? 1 : 0),
             std::int64_t(top) + ((flags & BF_TOP) ? 1 : 0),
             std::int64_t(right) - ((flags & BF_RIGHT) ? 1 : 0),
             std::int64_t(bottom) - ((flags & BF_BOTTOM) ? 1 : 0));
    s.touch(clippedBox(image, left, top, right, bottom));
    return true;
}

bool InvertRect(Surface& s, int left, int top, int right, int bottom)
{
    if (right <= left || bottom <= top)
        return false;
    QImage& image = s.Image();
    const QRect box = clippedBox(image, left, top, right, bottom);
    for (int y = box.top(); y <= box.bottom(); ++y) {
        QRgb* line = rowOf(image, y);
        for (int x = box.left(); x <= box.right(); ++x)
            line[x] ^= kRgbBits;
    }
    s.touch(box);
    return true;
}

// ---- Text ---------------------------------------------------------------------------

void DrawText(Surface& s, double x, double y, const QString& text, bool opaque, bool centred)
{
    const int left = I4(x), top = I4(y);
    const QFont font = fontOf(s);
    const QFontMetrics metrics(font);
    const QStringList lines = linesOf(text);
    std::vector<int> widths;
    for (const QString& line : lines)
        widths.push_back(metrics.horizontalAdvance(line));
    const int widest = *std::max_element(widths.begin(), widths.end());
    const int lineHeight = metrics.height();

    QImage& image = s.Image();
    if (!image.isNull()) {
        QRect touched;
        QPainter painter(&image);
        painter.setFont(font);
        painter.setPen(ToQColor(s.ForeColor));
        for (int i = 0; i < lines.size(); ++i) {
            const int lineLeft = left + (centred ? (widest - widths[i]) / 2 : 0);
            const QRect cell(lineLeft, top + i * lineHeight, widths[i], lineHeight);
            if (opaque)
                painter.fillRect(cell, ToQColor(s.BackColor));
            const QPoint baseline(lineLeft, cell.top() + metrics.ascent());
            painter.drawText(baseline, lines[i]);
            // Antialiased edges, italics and overhangs may leave the cell.
            touched |= cell | metrics.boundingRect(lines[i]).translated(baseline).adjusted(-1, -1, 1, 1);
        }
        painter.end();
        s.touch(touched);
    }
    s.CurrentX = x;
    s.CurrentY = y + double(lines.size()) * lineHeight;
}

QSize TextExtent(const Surface& s, const QString& text)
{
    const QFontMetrics metrics(fontOf(s));
    const QStringList lines = linesOf(text);
    int widest = 0;
    for (const QString& line : lines)
        widest = std::max(widest, metrics.horizontalAdvance(line));
    return QSize(widest, int(lines.size()) * metrics.height());
}

} // namespace velunta
