// Lines, boxes, dots and rounded rectangles, rasterised directly into scan lines so
// that the work follows the pixels drawn, not the size of the picture.

#include "core/Gdi.h"

#include "core/GdiPen.h"
#include "core/GdiRaster.h"
#include "core/Numbers.h"
#include "core/Surface.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>
#include <vector>

namespace velunta {

using namespace raster;

namespace {

// The rectangle around everything painted, collected while drawing.
struct Bounds {
    int left = std::numeric_limits<int>::max(), top = std::numeric_limits<int>::max();
    int right = std::numeric_limits<int>::min(), bottom = std::numeric_limits<int>::min();

    void add(int x0, int x1, int y)
    {
        left = std::min(left, x0);
        right = std::max(right, x1);
        top = std::min(top, y);
        bottom = std::max(bottom, y);
    }
    QRect rect() const { return left > right ? QRect() : QRect(QPoint(left, top), QPoint(right, bottom)); }
};

int penWidth(const Surface& s)
{
    return std::max(1, s.DrawWidth);
}

// The cosmetic line: one pixel per step along the longer axis, from the first point
// up to but not including the last. The shorter axis follows the exact slope rounded
// to the nearest pixel, halves going to the first point's side; the rounding is
// carried as an integer remainder, as in Bresenham's algorithm, so nothing drifts.
void cosmeticLine(QImage& image, int x1, int y1, int x2, int y2, QRgb colour, Bounds& bounds)
{
    const std::int64_t dx = std::int64_t(x2) - x1, dy = std::int64_t(y2) - y1;
    const bool xMajor = std::llabs(dx) >= std::llabs(dy);
    const std::int64_t major = xMajor ? std::llabs(dx) : std::llabs(dy);
    const std::int64_t minor = xMajor ? std::llabs(dy) : std::llabs(dx);
    const int majorStep = (xMajor ? dx : dy) < 0 ? -1 : 1;
    const int minorStep = (xMajor ? dy : dx) < 0 ? -1 : 1;
    const std::int64_t majorStart = xMajor ? x1 : y1, minorStart = xMajor ? y1 : x1;
    const std::int64_t majorLimit = xMajor ? image.width() : image.height();
    const std::int64_t minorLimit = xMajor ? image.height() : image.width();

    // Only the steps whose major coordinate lies in the picture are walked.
    std::int64_t first = 0, last = major - 1;
    if (majorStep > 0) {
        first = std::max(first, -majorStart);
        last = std::min(last, majorLimit - 1 - majorStart);
    } else {
        first = std::max(first, majorStart - (majorLimit - 1));
        last = std::min(last, majorStart);
    }
    if (first > last)
        return;

    // Minor offset at step i: floor((2 i minor + major - 1) / (2 major)).
    const std::int64_t denominator = 2 * major;
    const __int128 numerator = __int128(2) * first * minor + major - 1;
    std::int64_t offset = std::int64_t(numerator / denominator);
    std::int64_t remainder = std::int64_t(numerator % denominator);
    for (std::int64_t i = first; i <= last; ++i) {
        const std::int64_t m = majorStart + majorStep * i;
        const std::int64_t n = minorStart + minorStep * offset;
        if (n >= 0 && n < minorLimit) {
            const int px = int(xMajor ? m : n), py = int(xMajor ? n : m);
            rowOf(image, py)[px] = colour;
            bounds.add(px, px, py);
        }
        remainder += 2 * minor;
        if (remainder >= denominator) {
            remainder -= denominator;
            ++offset;
        }
    }
}

// The round pen (see GdiPen.h) into the picture.
void roundPen(QImage& image, int x1, int y1, int x2, int y2, int width, QRgb colour, Bounds& bounds)
{
    width = std::min(width, 32767); // the program's pen widths are 16-bit values
    const auto [rowFrom, rowTo] = penRows(y1, y2, width, image.height());
    if (rowFrom > rowTo)
        return;
    uchar* const bits = image.bits();
    const qsizetype stride = image.bytesPerLine();
    const auto paint = [&](int py, auto lo, auto hi) {
        const int from = x1 + int(lo), to = x1 + int(hi);
        QRgb* line = reinterpret_cast<QRgb*>(bits + py * stride);
        for (int px = from; px <= to; ++px)
            line[px] = colour;
        bounds.add(from, to, py);
    };
    const std::int64_t left = -std::int64_t(x1), right = std::int64_t(image.width()) - 1 - x1;
    if (fitsIn64({x1, y1, x2, y2}, width))
        stadiumRows<std::int64_t>(x1, y1, x2, y2, width, rowFrom, rowTo, left, right, paint);
    else
        stadiumRows<__int128>(x1, y1, x2, y2, width, rowFrom, rowTo, left, right, paint);
}

void dot(QImage& image, int x, int y, int width, QRgb colour, Bounds& bounds)
{
    if (width > 1) {
        roundPen(image, x, y, x, y, width, colour, bounds);
    } else if (image.valid(x, y)) {
        rowOf(image, y)[x] = colour;
        bounds.add(x, x, y);
    }
}

// Columns of row j of a rounded rectangle `width` x `height` with corner ellipses
// cw x ch, counted from its left; empty (first > last) outside it. A pixel belongs
// to the shape when its centre lies inside, and every row and column keeps its
// middle pixels, so even a thin ellipse touches all four sides of its box.
struct Interval {
    std::int64_t first = 1, last = 0;
    bool empty() const { return first > last; }
};

Interval roundRectRow(std::int64_t j, std::int64_t width, std::int64_t height, std::int64_t cw,
                      std::int64_t ch)
{
    if (j < 0 || j >= height)
        return {};
    std::int64_t inset = 0;
    if (cw > 0 && ch > 0) {
        const double a = cw / 2.0, b = ch / 2.0;
        const double depth = b - (double(std::min(j, height - 1 - j)) + 0.5); // into the corner zone
        if (depth > 0) {
            const double t = depth / b;
            const double half = a * std::sqrt(std::max(0.0, 1.0 - t * t));
            inset = std::int64_t(std::ceil(a - half - 0.5 - 1e-9));
            inset = std::clamp<std::int64_t>(inset, 0, (width - 1) / 2);
        }
        if (j == (height - 1) / 2 || j == height / 2)
            inset = 0;
    }
    return {inset, width - 1 - inset};
}

Interval intersect(Interval a, Interval b)
{
    return {std::max(a.first, b.first), std::min(a.last, b.last)};
}

// The box statements' corners, rounded and put in order; the pen moves to the second one.
struct Corners {
    int left, top, right, bottom;
};

Corners boxCorners(Surface& s, double x1, double y1, double x2, double y2)
{
    const int ix1 = I4(x1), iy1 = I4(y1), ix2 = I4(x2), iy2 = I4(y2);
    s.CurrentX = x2;
    s.CurrentY = y2;
    return {std::min(ix1, ix2), std::min(iy1, iy2), std::max(ix1, ix2), std::max(iy1, iy2)};
}

} // namespace

void Line(Surface& s, double x1, double y1, double x2, double y2, Color color)
{
    const int ix1 = I4(x1), iy1 = I4(y1), ix2 = I4(x2), iy2 = I4(y2);
    s.CurrentX = x2;
    s.CurrentY = y2;
    if (ix1 == ix2 && iy1 == iy2)
        return;
    Bounds bounds;
    if (penWidth(s) > 1)
        roundPen(s.Image(), ix1, iy1, ix2, iy2, penWidth(s), ToQRgb(color), bounds);
    else
        cosmeticLine(s.Image(), ix1, iy1, ix2, iy2, ToQRgb(color), bounds);
    s.touch(bounds.rect());
}

void LineTo(Surface& s, double x2, double y2, Color color)
{
    Line(s, s.CurrentX, s.CurrentY, x2, y2, color);
}

void LineBox(Surface& s, double x1, double y1, double x2, double y2, Color color)
{
    const auto [l, t, r, b] = boxCorners(s, x1, y1, x2, y2);
    QImage& image = s.Image();
    const std::int64_t r1 = std::int64_t(r) + 1, b1 = std::int64_t(b) + 1;

    const Brush brush = Brush::of(s);
    const QRect interior = clippedBox(image, std::int64_t(l) + 1, std::int64_t(t) + 1, r, b);
    if (brush.paints())
        fillBox(image, interior, brush);

    const QRgb pen = ToQRgb(color);
    const int width = penWidth(s);
    if (width == 1) {
        fillBox(image, clippedBox(image, l, t, r1, std::int64_t(t) + 1), pen);
        fillBox(image, clippedBox(image, l, b, r1, b1), pen);
        fillBox(image, clippedBox(image, l, t, std::int64_t(l) + 1, b1), pen);
        fillBox(image, clippedBox(image, r, t, r1, b1), pen);
        s.touch(clippedBox(image, l, t, r1, b1));
        return;
    }
    // A wide outline is the pen run along the four sides, so its corners come out round.
    Bounds bounds;
    roundPen(image, l, t, r, t, width, pen, bounds);
    roundPen(image, r, t, r, b, width, pen, bounds);
    roundPen(image, r, b, l, b, width, pen, bounds);
    roundPen(image, l, b, l, t, width, pen, bounds);
    s.touch(bounds.rect() | (brush.paints() ? interior : QRect()));
}

void LineBoxFilled(Surface& s, double x1, double y1, double x2, double y2, Color color)
{
    const auto [l, t, r, b] = boxCorners(s, x1, y1, x2, y2);
    const QRect box = clippedBox(s.Image(), l, t, std::int64_t(r) + 1, std::int64_t(b) + 1);
    fillBox(s.Image(), box, ToQRgb(color));
    s.touch(box);
}

void PSet(Surface& s, double x, double y, Color color)
{
    const int px = I4(x), py = I4(y);
    s.CurrentX = x;
    s.CurrentY = y;
    Bounds bounds;
    dot(s.Image(), px, py, penWidth(s), ToQRgb(color), bounds);
    s.touch(bounds.rect());
}

bool RoundRect(Surface& s, int left, int top, int right, int bottom, int w, int h)
{
    if (left > right)
        std::swap(left, right);
    if (top > bottom)
        std::swap(top, bottom);
    const std::int64_t width = std::int64_t(right) - left, height = std::int64_t(bottom) - top;
    if (width <= 0 || height <= 0)
        return false;
    const std::int64_t cw = std::clamp<std::int64_t>(w, 0, width);
    const std::int64_t ch = std::clamp<std::int64_t>(h, 0, height);

    // The pen runs along the shape's outline, centred on it as on the sides of a Line
    // box: `outside` pixels beyond the shape and `inside` pixels (the outline's own row
    // included) within it, so a rounded rectangle or an ellipse with a wide border is
    // exactly as large as a square box with the same border. Beyond the shape a pixel is
    // in the outline when the disc of radius `outside` around it reaches the shape;
    // within it, when the disc of radius `inside` around it leaves the shape.
    // discInside[d] and discOutside[d] are those discs' half widths d rows from their centres.
    const int pen = penWidth(s);
    const int outside = pen / 2, inside = pen - outside;
    const auto disc = [](int radius) {
        std::vector<std::int64_t> reach(radius + 1);
        for (int d = 0; d <= radius; ++d)
            reach[d] = std::int64_t(std::floor(std::sqrt(double(radius) * radius - double(d) * d) + 1e-9));
        return reach;
    };
    const std::vector<std::int64_t> reachIn = disc(inside), reachOut = disc(outside);

    QImage& image = s.Image();
    const QRect visible = clippedBox(image, std::int64_t(left) - outside, std::int64_t(top) - outside,
                                     std::int64_t(right) + outside, std::int64_t(bottom) + outside);
    if (visible.isEmpty())
        return true;
    const int reach = std::max(inside, outside);
    const std::int64_t firstRow = std::int64_t(visible.top()) - top - reach;
    std::vector<Interval> rows;
    for (std::int64_t j = firstRow; j <= std::int64_t(visible.bottom()) - top + reach; ++j)
        rows.push_back(roundRectRow(j, width, height, cw, ch));

    const Brush brush = Brush::of(s);
    const QRgb outline = ToQRgb(s.ForeColor);
    for (int y = visible.top(); y <= visible.bottom(); ++y) {
        const std::size_t at = std::size_t(std::int64_t(y) - top - firstRow);
        // The shape grown by the outer disc: one run, as the shape is convex.
        Interval outer;
        for (int d = -outside; d <= outside; ++d) {
            const Interval other = rows[at + d];
            if (other.empty())
                continue;
            const std::int64_t k = reachOut[std::abs(d)];
            outer = outer.empty() ? Interval{other.first - k, other.last + k}
                                  : Interval{std::min(outer.first, other.first - k),
                                             std::max(outer.last, other.last + k)};
        }
        if (outer.empty())
            continue;
        // The shape shrunk by the inner disc is what the brush paints.
        Interval inner = rows[at];
        for (int d = -inside; d <= inside && !inner.empty(); ++d) {
            const Interval other = rows[at + d];
            const std::int64_t k = reachIn[std::abs(d)];
            inner = other.empty() ? Interval{} : intersect(inner, {other.first + k, other.last - k});
        }
        // Shape columns as picture columns, clipped.
        const auto paint = [&](std::int64_t from, std::int64_t to, const auto& with) {
            from = std::max<std::int64_t>(from + left, visible.left());
            to = std::min<std::int64_t>(to + left, visible.right());
            if (from <= to)
                paintSpan(image, y, int(from), int(to), with);
        };
        if (inner.empty()) {
            paint(outer.first, outer.last, outline);
            continue;
        }
        paint(outer.first, inner.first - 1, outline);
        paint(inner.last + 1, outer.last, outline);
        paint(inner.first, inner.last, brush);
    }
    s.touch(visible);
    return true;
}

} // namespace velunta
