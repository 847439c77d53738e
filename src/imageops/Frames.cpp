#include "imageops/Frames.h"

#include "core/Numbers.h"
#include "core/Surface.h"

#include <algorithm>
#include <cmath>

namespace velunta {

namespace {

// Where a pixel stands in the frame: its ring, and whether that ring's side is the
// bottom or the right one (where the raised layout runs its colours the other way).
struct RingPlace {
    int ring;
    bool far;
};

// Sides take a corner in the order top, bottom, left, right.
inline RingPlace ringOf(int x, int y, int w, int h, int layout)
{
    const int top = y, bottom = h - 1 - y, left = x, right = w - 1 - x;
    switch (layout) {
    case kFrameTopBottom:
        return top <= bottom ? RingPlace{top, false} : RingPlace{bottom, true};
    case kFrameLeftRight:
        return left <= right ? RingPlace{left, false} : RingPlace{right, true};
    default: {
        const int ring = std::min(std::min(top, bottom), std::min(left, right));
        const bool far = top != ring && (bottom == ring || left != ring);
        return {ring, far};
    }
    }
}

// Calls fn(pixel, place) for every pixel of rings 0..thickness, row by row, visiting
// only the bands along the edges.
template <class Fn> void forFramePixels(QImage& image, int thickness, int layout, Fn&& fn)
{
    const int w = image.width(), h = image.height();
    if (thickness < 0 || w <= 0 || h <= 0)
        return;
    const bool rows = layout != kFrameLeftRight;
    const bool columns = layout != kFrameTopBottom;
    for (int y = 0; y < h; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        if (rows && std::min(y, h - 1 - y) <= thickness) {
            for (int x = 0; x < w; ++x) {
                const RingPlace place = ringOf(x, y, w, h, layout);
                if (place.ring <= thickness)
                    fn(line[x], place);
            }
        } else if (columns) {
            const int leftEnd = std::min(thickness, w - 1);
            for (int x = 0; x <= leftEnd; ++x)
                fn(line[x], ringOf(x, y, w, h, layout));
            for (int x = std::max(w - 1 - thickness, leftEnd + 1); x < w; ++x)
                fn(line[x], ringOf(x, y, w, h, layout));
        }
    }
}

// What a frame does to a pixel of each ring, worked out once per frame.
struct FrameRings {
    explicit FrameRings(const FrameSettings& s)
        : transparency(s.transparency), thickness(s.transparency ? s.transThickness : s.thickness),
          layout(s.transparency ? kFrameAllSides : s.style)
    {
        if (thickness < 0)
            return;
        near.resize(std::size_t(thickness) + 1);
        far.resize(near.size());
        for (int i = 0; i <= thickness; ++i) {
            if (transparency) {
                near[i] = far[i] =
                    QRgb(TransparencyAmount(i, thickness, s.transLevel, s.fade ? s.fadeKind : kFadeNone));
            } else {
                near[i] = ToQRgb(FrameColorAt(i, thickness, s.startColor, s.endColor));
                far[i] = layout == kFrameRaised
                             ? ToQRgb(FrameColorAt(thickness - i, thickness, s.startColor, s.endColor))
                             : near[i];
            }
        }
    }
    QRgb apply(QRgb p, RingPlace place) const
    {
        const QRgb v = (place.far ? far : near)[std::size_t(place.ring)];
        if (!transparency)
            return v;
        const int amount = int(v);
        return qRgb(std::min(255, qRed(p) + amount), std::min(255, qGreen(p) + amount),
                    std::min(255, qBlue(p) + amount));
    }
    bool transparency;
    int thickness;
    int layout;
    std::vector<QRgb> near, far; // a colour, or the transparency's amount
};

} // namespace

Color FrameColorAt(int i, int thickness, Color startColor, Color endColor)
{
    auto channel = [&](int start, int end) {
        if (thickness == 0)
            return start;
        const double v = start + double(end - start) * i / thickness;
        return Clamp255(int(std::nearbyint(std::clamp(v, -1.0, 256.0))));
    };
    return RGB(channel(ColorRed(startColor), ColorRed(endColor)),
               channel(ColorGreen(startColor), ColorGreen(endColor)),
               channel(ColorBlue(startColor), ColorBlue(endColor)));
}

int TransparencyAmount(int i, int thickness, int level, int fade)
{
    if (level < 1)
        level = 30;
    const int step = thickness < 28 ? 2 : 1;
    const int v = fade == kFadeLighten ? i : (fade == kFadeDarken ? -i : 0);
    return std::max(1, v * step + level);
}

void DrawFrame(Surface& target, const FrameSettings& settings)
{
    const FrameRings rings(settings);
    forFramePixels(target.Image(), rings.thickness, rings.layout,
                   [&](QRgb& p, RingPlace place) { p = rings.apply(p, place); });
    target.touchAll();
}

void DrawGradientFrame(Surface& target, int thickness, Color startColor, Color endColor, int style)
{
    FrameSettings s;
    s.transparency = false;
    s.thickness = thickness;
    s.startColor = startColor;
    s.endColor = endColor;
    s.style = std::clamp(style, 0, kFrameLayoutCount - 1);
    DrawFrame(target, s);
}

void DrawTransparencyFrame(Surface& target, int thickness, int level, int fade)
{
    FrameSettings s;
    s.transparency = true;
    s.transThickness = thickness;
    s.transLevel = level;
    s.fade = fade != kFadeNone;
    s.fadeKind = fade;
    DrawFrame(target, s);
}

FramePreview::FramePreview(const QImage& picture, QSize box) : m_full(picture.size())
{
    if (picture.isNull() || box.isEmpty())
        return;
    const double scale =
        std::min({1.0, double(box.width()) / picture.width(), double(box.height()) / picture.height()});
    const int w = std::max(1, int(std::lround(picture.width() * scale)));
    const int h = std::max(1, int(std::lround(picture.height() * scale)));
    // The nearest sample, as a stretched copy takes it.
    m_columns.resize(std::size_t(w));
    m_rows.resize(std::size_t(h));
    for (int i = 0; i < w; ++i)
        m_columns[i] = int((i + 0.5) * picture.width() / w);
    for (int j = 0; j < h; ++j)
        m_rows[j] = int((j + 0.5) * picture.height() / h);
    m_reduced = QImage(w, h, QImage::Format_RGB32);
    const QImage source = picture.convertToFormat(QImage::Format_RGB32);
    for (int j = 0; j < h; ++j) {
        const auto* in = reinterpret_cast<const QRgb*>(source.constScanLine(m_rows[j]));
        auto* out = reinterpret_cast<QRgb*>(m_reduced.scanLine(j));
        for (int i = 0; i < w; ++i)
            out[i] = in[m_columns[i]];
    }
}

QImage FramePreview::render(const FrameSettings& settings) const
{
    QImage out = m_reduced.copy();
    const FrameRings rings(settings);
    if (out.isNull() || rings.thickness < 0)
        return out;
    const int w = m_full.width(), h = m_full.height();
    for (int j = 0; j < out.height(); ++j) {
        auto* line = reinterpret_cast<QRgb*>(out.scanLine(j));
        for (int i = 0; i < out.width(); ++i) {
            const RingPlace place = ringOf(m_columns[i], m_rows[j], w, h, rings.layout);
            if (place.ring <= rings.thickness)
                line[i] = rings.apply(line[i], place);
        }
    }
    return out;
}

} // namespace velunta
