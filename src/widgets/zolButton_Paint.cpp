// The button's outline and drawing: the regions of the nine shapes, the cut-out of a
// bitmap, the eight looks, the gradients, the picture and the caption. A redraw
// renders the whole button into an image at the screen's pixel ratio, so hovering
// and pressing repaint this button alone.

#include "widgets/zolButton.h"

#include <QApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <vector>

namespace velunta {

namespace {

// One ring of the frame: the light colour on the top and left edges, the dark one on
// the bottom and right; an invalid colour leaves that part out.
struct Ring {
    QColor light, dark;
};

// A look: up to three rings from the outside in, and extras of some styles.
struct Look {
    Ring ring[3];
    bool shine = false;  // a shine over the upper half
    bool darker = false; // the fill darkens
    bool tinted = false; // the fill is lighter: a button that is on
    bool noFill = false; // the container shows through
};

QColor Mix(const QColor& a, const QColor& b, qreal t)
{
    return QColor::fromRgbF(a.redF() + (b.redF() - a.redF()) * t, a.greenF() + (b.greenF() - a.greenF()) * t,
                            a.blueF() + (b.blueF() - a.blueF()) * t,
                            a.alphaF() + (b.alphaF() - a.alphaF()) * t);
}

Look LookOf(int style, bool pressed, bool hover, bool on, const QPalette& pal)
{
    const QColor light = pal.color(QPalette::Light), mid = pal.color(QPalette::Midlight),
                 dark = pal.color(QPalette::Dark), shadow = pal.color(QPalette::Shadow),
                 high = pal.color(QPalette::Highlight);
    Look k;
    switch (style) {
    case 0: // standard 3D
        k.ring[0] = pressed ? Ring{shadow, light} : Ring{light, shadow};
        k.ring[1] = pressed ? Ring{dark, mid} : Ring{mid, dark};
        break;
    case 1: // flat
        k.ring[0] = hover || pressed ? Ring{shadow, shadow} : Ring{dark, dark};
        if (pressed)
            k.ring[1] = Ring{dark, QColor()};
        break;
    case 2: // Java
        k.ring[0] = Ring{dark, dark};
        k.ring[1] = pressed ? Ring{QColor(), QColor()} : Ring{light, QColor()};
        k.darker = pressed;
        break;
    case 3: // hot track
        if (pressed)
            k.ring[0] = Ring{dark, light};
        else if (hover)
            k.ring[0] = Ring{light, dark};
        k.tinted = on;
        break;
    case 4: // Office
        if (pressed || hover)
            k.ring[0] = Ring{high, high};
        k.darker = pressed;
        k.tinted = on;
        break;
    case 5: // transparent
        if (pressed)
            k.ring[0] = Ring{dark, light};
        else if (hover)
            k.ring[0] = Ring{Mix(high, light, 0.3), Mix(high, light, 0.3)};
        k.noFill = !hover && !pressed;
        break;
    case 6: // etched
        k.ring[0] = pressed ? Ring{light, dark} : Ring{dark, light};
        k.ring[1] = pressed ? Ring{dark, light} : Ring{light, dark};
        break;
    default: // plastic
        k.ring[0] = Ring{Mix(dark, shadow, 0.4), Mix(dark, shadow, 0.4)};
        k.ring[1] = pressed ? Ring{Mix(dark, light, 0.5), QColor()} : Ring{light, QColor()};
        k.shine = true;
        k.darker = pressed;
        break;
    }
    return k;
}

// The polygon shapes: each point is a fraction of the size plus a number of units,
// the unit being the depth of the cut corners (5) or of the point (6).
struct PolyPoint {
    qreal fx, ux, fy, uy;
};
const PolyPoint kOctagon[] = {{0, 1, 0, 0},  {1, -1, 0, 0}, {1, 0, 0, 1},  {1, 0, 1, -1},
                              {1, -1, 1, 0}, {0, 1, 1, 0},  {0, 0, 1, -1}, {0, 0, 0, 1}};
const PolyPoint kArrow[] = {{0, 0, 0, 0}, {1, -1, 0, 0}, {1, 0, 0.5, 0}, {1, -1, 1, 0}, {0, 0, 1, 0}};

qreal PolygonUnit(int shape, const QSizeF& s)
{
    return shape == 5 ? std::min(s.width(), s.height()) * 0.3 : std::min(s.height() / 2, s.width() / 3);
}

QPolygonF ShapePolygon(int shape, const QRectF& r)
{
    const qreal u = PolygonUnit(shape, r.size());
    QPolygonF poly;
    auto add = [&](const PolyPoint& pt) {
        poly << QPointF(r.left() + pt.fx * r.width() + pt.ux * u, r.top() + pt.fy * r.height() + pt.uy * u);
    };
    if (shape == 5)
        std::for_each(std::begin(kOctagon), std::end(kOctagon), add);
    else
        std::for_each(std::begin(kArrow), std::end(kArrow), add);
    return poly;
}

QPainterPath ShapePath(int shape, const QRectF& r)
{
    QPainterPath path;
    if (shape == 4)
        path.addEllipse(r);
    else if (shape == 5 || shape == 6)
        path.addPolygon(ShapePolygon(shape, r)), path.closeSubpath();
    else
        path.addRect(r);
    return path;
}

// The region one pixel in from every side of r, and from every corner.
QRegion Erode(const QRegion& r)
{
    QRegion out = r;
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx)
            if (dx || dy)
                out &= r.translated(dx, dy);
    return out;
}

// The pixels of a bitmap that aren't its transparent colour (the colour of the top
// left pixel), by logical pixel; and the face to draw, in which the transparent
// pixels next to the picture take its neighbouring colour three pixels deep, so a
// pressed picture that moves by a pixel shows no transparent colour at its edge.
struct CutOut {
    QRegion region;
    QImage face;
    QSize logical;
};

CutOut CutFromBitmap(const QImage& bitmap)
{
    CutOut cut;
    QImage img = bitmap.convertToFormat(QImage::Format_ARGB32);
    const int w = img.width(), h = img.height();
    if (w == 0 || h == 0)
        return cut;
    const int scale = std::max(1, int(std::lround(bitmap.devicePixelRatio())));
    const QRgb key = reinterpret_cast<const QRgb*>(img.constScanLine(0))[0];
    // A clear top left pixel makes every clear pixel transparent, whatever its colour.
    const bool keyClear = qAlpha(key) == 0;
    std::vector<quint8> opaque(size_t(w) * h);
    for (int y = 0; y < h; ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(img.constScanLine(y));
        quint8* out = &opaque[size_t(y) * w];
        for (int x = 0; x < w; ++x)
            out[x] = !(line[x] == key || (keyClear && qAlpha(line[x]) == 0));
    }

    cut.logical = QSize((w + scale - 1) / scale, (h + scale - 1) / scale);
    QVector<QRect> runs;
    std::vector<quint8> row(cut.logical.width());
    for (int ly = 0; ly < cut.logical.height(); ++ly) {
        // A logical pixel stays when any of its device pixels is part of the picture.
        std::fill(row.begin(), row.end(), 0);
        for (int y = ly * scale; y < std::min(h, (ly + 1) * scale); ++y)
            for (int x = 0; x < w; ++x)
                row[x / scale] |= opaque[size_t(y) * w + x];
        for (int x = 0; x < cut.logical.width();) {
            if (!row[x]) {
                ++x;
                continue;
            }
            const int start = x;
            while (x < cut.logical.width() && row[x])
                ++x;
            runs.append(QRect(start, ly, x - start, 1));
        }
    }
    if (!runs.isEmpty())
        cut.region.setRects(runs.constData(), int(runs.size()));

    for (int pass = 0; pass < 3; ++pass) {
        std::vector<quint8> next = opaque;
        for (int y = 0; y < h; ++y) {
            auto* line = reinterpret_cast<QRgb*>(img.scanLine(y));
            for (int x = 0; x < w; ++x) {
                if (opaque[size_t(y) * w + x])
                    continue;
                const int nx[4] = {x - 1, x + 1, x, x};
                const int ny[4] = {y, y, y - 1, y + 1};
                for (int k = 0; k < 4; ++k) {
                    if (nx[k] < 0 || ny[k] < 0 || nx[k] >= w || ny[k] >= h ||
                        !opaque[size_t(ny[k]) * w + nx[k]])
                        continue;
                    line[x] = reinterpret_cast<const QRgb*>(img.constScanLine(ny[k]))[nx[k]];
                    next[size_t(y) * w + x] = 1;
                    break;
                }
            }
        }
        opaque.swap(next);
    }
    cut.face = img.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    cut.face.setDevicePixelRatio(scale);
    return cut;
}

// A greyed copy for a disabled button.
QImage Greyed(const QImage& src)
{
    QImage img = src.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < img.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(img.scanLine(y));
        for (int x = 0; x < img.width(); ++x) {
            const int grey = 110 + qGray(line[x]) / 2;
            line[x] = qRgba(grey, grey, grey, qAlpha(line[x]) * 2 / 3);
        }
    }
    img.setDevicePixelRatio(src.devicePixelRatio());
    return img;
}

// Paints the rings of a region frame: light where the pixel has no neighbour above
// or to the left inside the region, dark elsewhere on the ring.
void FillRegion(QPainter& p, const QRegion& region, const QColor& c)
{
    if (!c.isValid())
        return;
    for (const QRect& r : region)
        p.fillRect(r, c);
}

void PaintRegionRing(QPainter& p, const QRegion& outer, const QRegion& inner, const Ring& ring)
{
    const QRegion band = outer - inner;
    const QRegion lit = band & (outer - outer.translated(1, 1));
    FillRegion(p, lit, ring.light);
    FillRegion(p, band - lit, ring.dark);
}

void PaintRectRing(QPainter& p, const QRect& r, const Ring& ring)
{
    if (r.width() <= 0 || r.height() <= 0)
        return;
    if (ring.light.isValid()) {
        p.fillRect(QRect(r.left(), r.top(), r.width(), 1), ring.light);
        p.fillRect(QRect(r.left(), r.top(), 1, r.height()), ring.light);
    }
    if (ring.dark.isValid()) {
        p.fillRect(QRect(r.left() + 1, r.bottom(), r.width() - 1, 1), ring.dark);
        p.fillRect(QRect(r.right(), r.top() + 1, 1, r.height() - 1), ring.dark);
    }
}

// Rings of the ellipse and polygons, smooth at any pixel ratio: the light colour
// on the upper left half, the dark one on the lower right.
void PaintPathRing(QPainter& p, int shape, const QRectF& r, const Ring& ring)
{
    if (!ring.light.isValid() && !ring.dark.isValid())
        return;
    QLinearGradient g(r.topLeft(), r.bottomRight());
    const QColor none(0, 0, 0, 0);
    g.setColorAt(0, ring.light.isValid() ? ring.light : none);
    g.setColorAt(0.49, ring.light.isValid() ? ring.light : none);
    g.setColorAt(0.51, ring.dark.isValid() ? ring.dark : none);
    g.setColorAt(1, ring.dark.isValid() ? ring.dark : none);
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(QBrush(g), 1));
    p.setBrush(Qt::NoBrush);
    p.drawPath(ShapePath(shape, r));
    p.restore();
}

// The caption's lines ("||" breaks a line); each keeps its "&" marks for drawing.
QStringList CaptionLines(const QString& caption)
{
    return caption.isEmpty() ? QStringList() : caption.split(QLatin1String("||"));
}

QSize CaptionSize(const QFontMetrics& fm, const QStringList& lines)
{
    int w = 0;
    for (const QString& line : lines)
        w = std::max(w, fm.size(Qt::TextShowMnemonic, line).width());
    return {w, int(lines.size()) * fm.height()};
}

} // namespace

QColor zolButton::color(Color c) const
{
    return ResolveColor(c, palette());
}

bool zolButton::pressedLook() const
{
    return (m_stateFlags & kDownBit) || (m_mode > 0 && isChecked());
}

bool zolButton::focusShown() const
{
    if (!m_showFocusRect)
        return false;
    if (hasFocus())
        return true;
    // The default button shows it while no other button has the focus.
    if (!(m_stateFlags & kDefaultBit))
        return false;
    const QWidget* f = QApplication::focusWidget();
    return !(f && f != this && f->window() == window() && qobject_cast<const QAbstractButton*>(f));
}

void zolButton::rebuildShape()
{
    m_shapedFace = QImage();
    if (m_shape >= 7 && !m_bitmap.isNull()) {
        const CutOut cut = CutFromBitmap(m_bitmap);
        m_outer = cut.region;
        m_shapedFace = cut.face;
        if (!m_sizedByPicture) {
            m_savedMinimum = minimumSize();
            m_savedMaximum = maximumSize();
            m_sizedByPicture = true;
        }
        setFixedSize(cut.logical);
    } else {
        if (m_sizedByPicture) {
            m_sizedByPicture = false;
            setMinimumSize(m_savedMinimum);
            setMaximumSize(m_savedMaximum);
        }
        const QRect r = rect();
        if (m_shape == 4)
            m_outer = QRegion(r, QRegion::Ellipse);
        else if (m_shape == 5 || m_shape == 6)
            m_outer = QRegion(ShapePolygon(m_shape, QRectF(r)).toPolygon(), Qt::WindingFill);
        else
            m_outer = QRegion(r);
    }
    m_middle = Erode(m_outer);
    m_inner = Erode(m_middle);
    // An outline cut from a picture that is all transparent leaves nothing to see or click.
    const bool nothing = m_shape >= 7 && m_outer.isEmpty();
    setAttribute(Qt::WA_TransparentForMouseEvents, nothing);
    if (m_shape < 4 || nothing)
        clearMask();
    else
        setMask(m_outer);
    m_dirty = true;
}

void zolButton::resizeEvent(QResizeEvent* event)
{
    QAbstractButton::resizeEvent(event);
    if (m_shape < 7)
        rebuildShape();
}

QRect zolButton::contentRect() const
{
    const QRect r = rect();
    switch (m_shape) {
    case 4:
        return r.adjusted(int(r.width() * 0.146) + 1, int(r.height() * 0.146) + 1,
                          -int(r.width() * 0.146) - 1, -int(r.height() * 0.146) - 1);
    case 5: {
        const int u = int(PolygonUnit(5, r.size()) / 2) + 2;
        return r.adjusted(u, 3, -u, -3);
    }
    case 6:
        return r.adjusted(4, 3, -int(PolygonUnit(6, r.size())) - 1, -3);
    case 7:
    case 8:
        return r.adjusted(2, 2, -2, -2);
    default:
        return r.adjusted(4, 3, -4, -3);
    }
}

void zolButton::paintEvent(QPaintEvent*)
{
    const qreal dpr = devicePixelRatioF();
    const QSize device(int(std::lround(width() * dpr)), int(std::lround(height() * dpr)));
    // A delayed button shows what it drew last, unless its size has changed since.
    if (m_dirty || m_drawn.size() != device || m_drawn.devicePixelRatio() != dpr) {
        render(m_drawn);
        m_dirty = false;
    }
    QPainter p(this);
    p.drawImage(QPoint(0, 0), m_drawn);
}

void zolButton::render(QImage& target) const
{
    const qreal dpr = devicePixelRatioF();
    target = QImage(int(std::lround(width() * dpr)), int(std::lround(height() * dpr)),
                    QImage::Format_ARGB32_Premultiplied);
    target.setDevicePixelRatio(dpr);
    target.fill(Qt::transparent);
    if (m_shape >= 7 && m_outer.isEmpty())
        return;
    QPainter p(&target);
    paintFace(p);
    paintContent(p);
    paintFrame(p);
    paintFocus(p);
}

void zolButton::paintFace(QPainter& p) const
{
    const bool hover = m_stateFlags & kInsideBit;
    const bool pressed = pressedLook();
    const Look look = LookOf(m_style, pressed, hover, m_mode > 0 && isChecked(), palette());
    const QColor hoverBack = color(HoverBackColor());
    QColor back = color(hover && !(m_hoverLocks & 1) ? HoverBackColor() : BackColor());

    if (m_shape >= 7) {
        p.save();
        p.setClipRegion(m_outer);
        const bool shift = pressed && m_customClick != 1;
        const QImage face = isEnabled() ? m_shapedFace : Greyed(m_shapedFace);
        p.drawImage(QPointF(0, shift ? 1 : 0), face);
        if (pressed && m_customClick != 0)
            FillRegion(p, m_outer, QColor(0, 0, 0, 70));
        if (hover && !pressed) {
            // The hover colour lies over the picture like a glaze.
            QColor glaze = HoverBackColor() != BackColor() ? hoverBack : QColor(Qt::white);
            glaze.setAlpha(HoverBackColor() != BackColor() ? 110 : 60);
            FillRegion(p, m_outer, glaze);
        }
        p.restore();
        return;
    }

    if (look.noFill)
        return;
    if (look.tinted)
        back = Mix(back, palette().color(QPalette::Light), 0.55);
    if (look.darker)
        back = back.darker(112);
    QBrush brush(back);
    const QRectF r(rect());
    if (m_gradientMode > 0 && m_style != 5) {
        const QColor other = color(m_gradientColor);
        QLinearGradient g;
        switch (m_gradientMode) {
        case 1:
            g = QLinearGradient(r.topLeft(), r.topRight());
            break;
        case 2:
            g = QLinearGradient(r.topLeft(), r.bottomLeft());
            break;
        case 3:
            g = QLinearGradient(r.topLeft(), r.bottomRight());
            break;
        default:
            g = QLinearGradient(r.topLeft(), r.bottomLeft());
            g.setColorAt(0.5, other);
            break;
        }
        g.setColorAt(0, back);
        g.setColorAt(1, m_gradientMode == 4 ? back : other);
        brush = QBrush(g);
    }
    if (m_shape < 4) {
        p.fillRect(r, brush);
    } else {
        p.save();
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(Qt::NoPen);
        p.setBrush(brush);
        p.drawPath(ShapePath(m_shape, r));
        p.restore();
    }
    if (look.shine) {
        // A soft light over the upper half, as on a rounded plastic key.
        QLinearGradient g(r.topLeft(), QPointF(r.left(), r.center().y()));
        g.setColorAt(0, QColor(255, 255, 255, pressed ? 70 : 170));
        g.setColorAt(1, QColor(255, 255, 255, pressed ? 10 : 40));
        p.save();
        p.setRenderHint(QPainter::Antialiasing);
        p.setClipPath(ShapePath(m_shape, r));
        p.fillRect(QRectF(r.left(), r.top(), r.width(), r.height() / 2), g);
        p.restore();
    }
}

void zolButton::paintFrame(QPainter& p) const
{
    if (m_shape == 8)
        return;
    const Look look =
        LookOf(m_style, pressedLook(), m_stateFlags & kInsideBit, m_mode > 0 && isChecked(), palette());
    if (m_shape >= 7) {
        const QRegion rings[4] = {m_outer, m_middle, m_inner, Erode(m_inner)};
        for (int k = 0; k < 3; ++k)
            PaintRegionRing(p, rings[k], rings[k + 1], look.ring[k]);
        return;
    }
    for (int k = 0; k < 3; ++k) {
        if (m_shape < 4)
            PaintRectRing(p, rect().adjusted(k, k, -k, -k), look.ring[k]);
        else
            PaintPathRing(p, m_shape, QRectF(rect()).adjusted(k + 0.5, k + 0.5, -k - 0.5, -k - 0.5),
                          look.ring[k]);
    }
}

void zolButton::paintContent(QPainter& p) const
{
    const bool pressed = pressedLook();
    // The pressed face moves one pixel down, and one right for the rectangles.
    const QPoint shift = pressed && m_shape < 7 ? QPoint(m_shape < 4 ? 1 : 0, 1) : QPoint();
    const QRect content = contentRect();
    const QStringList lines = CaptionLines(m_caption);
    const QSize text = CaptionSize(fontMetrics(), lines);
    const bool picture = hasPicture() && m_shape < 7;
    const int size = picture ? picturePixels() : 0;
    constexpr int gap = 4;
    QRect textArea = content;

    if (picture && m_shape >= 1 && m_shape <= 3) {
        // The picture stands in a box of its own at its side, a third of its size around it.
        const int side = size + 2 * std::max(2, size / 3);
        const QRect inside = rect().adjusted(2, 2, -2, -2);
        QRect box;
        switch (m_pictureAlign) {
        case 1:
            box = QRect(inside.right() - side + 1, inside.top(), side, inside.height());
            textArea.setRight(box.left() - gap);
            break;
        case 2:
            box = QRect(inside.left(), inside.top(), inside.width(), side);
            textArea.setTop(box.bottom() + gap);
            break;
        case 3:
            box = QRect(inside.left(), inside.bottom() - side + 1, inside.width(), side);
            textArea.setBottom(box.top() - gap);
            break;
        default:
            box = QRect(inside.left(), inside.top(), side, inside.height());
            textArea.setLeft(box.right() + gap);
            break;
        }
        const QPalette& pal = palette();
        if (m_shape == 1) {
            PaintRectRing(p, box, Ring{pal.color(QPalette::Light), pal.color(QPalette::Dark)});
        } else if (m_shape == 2) {
            p.fillRect(box.adjusted(1, 1, -1, -1), pal.color(QPalette::Base));
            PaintRectRing(p, box, Ring{pal.color(QPalette::Dark), pal.color(QPalette::Light)});
        } else {
            const QColor line = pal.color(QPalette::Dark);
            if (m_pictureAlign == 2 || m_pictureAlign == 3)
                p.fillRect(
                    QRect(box.left() + 2, m_pictureAlign == 2 ? box.bottom() : box.top(), box.width() - 4, 1),
                    line);
            else
                p.fillRect(
                    QRect(m_pictureAlign == 1 ? box.left() : box.right(), box.top() + 2, 1, box.height() - 4),
                    line);
        }
        const QPoint c = box.center() + QPoint(1, 1);
        paintPicture(p, QRect(c.x() - size / 2, c.y() - size / 2, size, size).translated(shift));
        paintCaption(p, textArea.translated(shift));
        return;
    }

    if (picture) {
        QRect box(0, 0, size, size);
        const bool withText = !lines.isEmpty();
        switch (withText ? m_pictureAlign : 4) {
        case 0:
            box.moveTo(content.left(), content.center().y() - size / 2 + 1);
            textArea.setLeft(box.right() + 1 + gap);
            break;
        case 1:
            box.moveTo(content.right() - size + 1, content.center().y() - size / 2 + 1);
            textArea.setRight(box.left() - 1 - gap);
            break;
        case 2:
        case 3: {
            const int block = size + gap + text.height();
            const int top = content.top() + (content.height() - block) / 2;
            const bool above = m_pictureAlign == 2;
            box.moveTo(content.center().x() - size / 2 + 1, above ? top : top + text.height() + gap);
            textArea = QRect(content.left(), above ? top + size + gap : top, content.width(), text.height());
            break;
        }
        default:
            box.moveCenter(content.center());
            box.translate(content.width() % 2 ? 0 : 1, content.height() % 2 ? 0 : 1);
            break;
        }
        paintPicture(p, box.translated(shift));
    }
    paintCaption(p, textArea.translated(shift));
}

void zolButton::paintPicture(QPainter& p, const QRect& box) const
{
    if (!m_icon.isNull()) {
        m_icon.paint(&p, box, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
        return;
    }
    if (m_bitmap.isNull())
        return;
    const QSizeF own = m_bitmap.deviceIndependentSize();
    // A small bitmap keeps its size; a large one is fitted into the box.
    QSizeF shown = own.width() <= box.width() && own.height() <= box.height()
                       ? own
                       : own.scaled(QSizeF(box.size()), Qt::KeepAspectRatio);
    const QRectF target(box.left() + (box.width() - shown.width()) / 2,
                        box.top() + (box.height() - shown.height()) / 2, shown.width(), shown.height());
    // Whole multiples of the bitmap's pixels are drawn without smoothing, so pixel art stays sharp.
    const qreal factor = shown.width() * p.device()->devicePixelRatioF() / m_bitmap.width();
    p.save();
    p.setRenderHint(QPainter::SmoothPixmapTransform, std::abs(factor - std::round(factor)) > 0.01);
    p.drawImage(target, isEnabled() ? m_bitmap : Greyed(m_bitmap));
    p.restore();
}

void zolButton::paintCaption(QPainter& p, const QRect& area) const
{
    const QStringList lines = CaptionLines(m_caption);
    if (lines.isEmpty())
        return;
    const QFontMetrics fm = fontMetrics();
    const int lineHeight = fm.height();
    const int alignment = m_pictureAlign == 2 || m_pictureAlign == 3 || m_captionAlign == 2 ? Qt::AlignHCenter
                          : m_captionAlign == 1                                             ? Qt::AlignRight
                                                                                            : Qt::AlignLeft;
    const int flags = alignment | Qt::AlignVCenter | Qt::TextShowMnemonic;
    const int top = area.top() + (area.height() - lineHeight * int(lines.size())) / 2;
    const bool hover = m_stateFlags & kInsideBit;
    const QPalette& pal = palette();
    const QColor fore = color(hover && !(m_hoverLocks & 2) ? m_hoverForeColor : m_foreColor);
    p.setFont(font());
    for (int i = 0; i < lines.size(); ++i) {
        const QRect line(area.left(), top + i * lineHeight, area.width(), lineHeight);
        auto draw = [&](QPoint offset, const QColor& c) {
            p.setPen(c);
            p.drawText(line.translated(offset), flags, lines[i]);
        };
        if (!isEnabled()) {
            // Disabled: embossed, a light copy under a grey one.
            draw({1, 1}, pal.color(QPalette::Light));
            draw({0, 0}, pal.color(QPalette::Dark));
            continue;
        }
        switch (m_captionStyle) {
        case 1:
            draw({1, 1}, pal.color(QPalette::Light));
            break;
        case 2:
            draw({-1, -1}, pal.color(QPalette::Light));
            break;
        case 3:
            draw({1, 1}, QColor(0, 0, 0, 90));
            break;
        default:
            break;
        }
        draw({0, 0}, fore);
    }
}

void zolButton::paintFocus(QPainter& p) const
{
    if (!focusShown())
        return;
    QRect r = m_shape < 4 ? rect().adjusted(3, 3, -4, -4) : contentRect().adjusted(-1, -1, 0, 0);
    QPen pen(color(m_foreColor), 1, Qt::DotLine);
    pen.setCosmetic(true);
    p.save();
    p.setPen(pen);
    p.setBrush(Qt::NoBrush);
    p.drawRect(QRectF(r).adjusted(0.5, 0.5, 0.5, 0.5));
    p.restore();
}

QSize zolButton::sizeHint() const
{
    if (m_shape >= 7 && !m_bitmap.isNull())
        return m_bitmap.deviceIndependentSize().toSize();
    const QSize text = CaptionSize(fontMetrics(), CaptionLines(m_caption));
    const bool picture = hasPicture();
    int side = picture ? picturePixels() : 0;
    if (picture && m_shape >= 1 && m_shape <= 3)
        side += 2 * std::max(2, side / 3);
    const int gap = picture && !text.isEmpty() ? 4 : 0;
    QSize content;
    if (m_pictureAlign == 2 || m_pictureAlign == 3)
        content = QSize(std::max(side, text.width()), side + gap + text.height());
    else if (m_pictureAlign == 4 && !(m_shape >= 1 && m_shape <= 3))
        content = QSize(std::max(side, text.width()), std::max(side, text.height()));
    else
        content = QSize(side + gap + text.width(), std::max(side, text.height()));
    // Room for the frame, and some air beside a caption.
    QSize s = content + QSize(text.isEmpty() ? 8 : 20, 8);
    if (m_shape == 4)
        s = QSize(int(s.width() * 1.42), int(s.height() * 1.42));
    else if (m_shape == 5)
        s += QSize(int(s.height() * 0.4), 4);
    else if (m_shape == 6)
        s += QSize(s.height() / 2, 0);
    return s.expandedTo(QSize(16, 16));
}

QSize zolButton::minimumSizeHint() const
{
    return sizeHint();
}

} // namespace velunta
