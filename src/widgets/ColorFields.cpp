#include "widgets/ColorFields.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace velunta {

namespace {

const QColor kBevel(116, 156, 218);

int Channel(double x)
{
    return int(std::lround(std::clamp(x, 0.0, 1.0) * 255.0));
}

// A step of the arrow keys: one hundredth, ten with Shift.
double KeyStep(const QKeyEvent* e)
{
    return e->modifiers() & Qt::ShiftModifier ? 0.1 : 0.01;
}

} // namespace

QRgb HsvToRgb(double h, double s, double v)
{
    h = std::fmod(h, 360.0);
    if (h < 0)
        h += 360.0;
    const double c = v * s;
    const double hh = h / 60.0;
    const double x = c * (1.0 - std::fabs(std::fmod(hh, 2.0) - 1.0));
    double r = 0, g = 0, b = 0;
    switch (int(hh)) {
    case 0:
        r = c, g = x;
        break;
    case 1:
        r = x, g = c;
        break;
    case 2:
        g = c, b = x;
        break;
    case 3:
        g = x, b = c;
        break;
    case 4:
        r = x, b = c;
        break;
    default:
        r = c, b = x;
        break;
    }
    const double m = v - c;
    return qRgb(Channel(r + m), Channel(g + m), Channel(b + m));
}

// --- PointerField

void PointerField::mousePressEvent(QMouseEvent* e)
{
    if (e->button() == Qt::LeftButton)
        pointTo(e->position().toPoint());
}

void PointerField::mouseMoveEvent(QMouseEvent* e)
{
    if (e->buttons() & Qt::LeftButton)
        pointTo(e->position().toPoint());
}

// --- SatValField

SatValField::SatValField(QWidget* parent) : PointerField(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::CrossCursor);
    setToolTip(tr("Click or drag: to the right more colourful, upwards brighter"));
}

void SatValField::setHue(double h)
{
    if (h != m_h) {
        m_h = h;
        render();
        update();
    }
}

void SatValField::setSatVal(double s, double v)
{
    m_s = std::clamp(s, 0.0, 1.0);
    m_v = std::clamp(v, 0.0, 1.0);
    update();
}

void SatValField::resizeEvent(QResizeEvent*)
{
    render();
}

void SatValField::render()
{
    const QRect f = field();
    if (f.isEmpty())
        return;
    m_picture = QImage(f.size(), QImage::Format_RGB32);
    const int w = f.width(), h = f.height();
    for (int y = 0; y < h; ++y) {
        auto* line = reinterpret_cast<QRgb*>(m_picture.scanLine(y));
        const double v = h > 1 ? 1.0 - double(y) / (h - 1) : 1.0;
        for (int x = 0; x < w; ++x)
            line[x] = HsvToRgb(m_h, w > 1 ? double(x) / (w - 1) : 1.0, v);
    }
}

void SatValField::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.setPen(hasFocus() ? QColor(20, 50, 130) : kBevel);
    p.drawRect(rect().adjusted(0, 0, -1, -1));
    const QRect f = field();
    p.drawImage(f.topLeft(), m_picture);
    const QPointF at(f.left() + m_s * (f.width() - 1), f.top() + (1.0 - m_v) * (f.height() - 1));
    p.setRenderHint(QPainter::Antialiasing);
    p.setClipRect(f);
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(Qt::black, 3));
    p.drawEllipse(at, 6, 6);
    p.setPen(QPen(Qt::white, 1.5));
    p.drawEllipse(at, 6, 6);
}

void SatValField::pointTo(const QPoint& pos)
{
    const QRect f = field();
    const double s = std::clamp(double(pos.x() - f.left()) / std::max(1, f.width() - 1), 0.0, 1.0);
    const double v = 1.0 - std::clamp(double(pos.y() - f.top()) / std::max(1, f.height() - 1), 0.0, 1.0);
    setSatVal(s, v);
    Q_EMIT changed(m_s, m_v);
}

void SatValField::keyPressEvent(QKeyEvent* e)
{
    double s = m_s, v = m_v;
    switch (e->key()) {
    case Qt::Key_Left:
        s -= KeyStep(e);
        break;
    case Qt::Key_Right:
        s += KeyStep(e);
        break;
    case Qt::Key_Up:
        v += KeyStep(e);
        break;
    case Qt::Key_Down:
        v -= KeyStep(e);
        break;
    default:
        QWidget::keyPressEvent(e);
        return;
    }
    setSatVal(s, v);
    Q_EMIT changed(m_s, m_v);
}

// --- HueStrip

HueStrip::HueStrip(QWidget* parent) : PointerField(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setFixedWidth(26);
    setToolTip(tr("Click or drag to choose the colour's hue"));
}

void HueStrip::setHue(double h)
{
    m_h = std::clamp(h, 0.0, 360.0);
    update();
}

void HueStrip::resizeEvent(QResizeEvent*)
{
    const QRect s = strip();
    if (s.isEmpty())
        return;
    m_picture = QImage(s.size(), QImage::Format_RGB32);
    for (int y = 0; y < s.height(); ++y) {
        const QRgb c = HsvToRgb(s.height() > 1 ? 360.0 * y / (s.height() - 1) : 0.0, 1.0, 1.0);
        auto* line = reinterpret_cast<QRgb*>(m_picture.scanLine(y));
        std::fill(line, line + s.width(), c);
    }
}

void HueStrip::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    const QRect s = strip();
    p.drawImage(s.topLeft(), m_picture);
    p.setPen(hasFocus() ? QColor(20, 50, 130) : kBevel);
    p.drawRect(s.adjusted(-1, -1, 0, 0));
    // A pair of arrows points at the hue from both sides.
    const double y = s.top() + m_h / 360.0 * (s.height() - 1);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(QColor(30, 30, 30), 1));
    p.setBrush(QColor(30, 30, 30));
    const QPointF left[3] = {{0, y - 4}, {0, y + 4}, {4.5, y}};
    const QPointF right[3] = {{double(width()), y - 4}, {double(width()), y + 4}, {width() - 4.5, y}};
    p.drawPolygon(left, 3);
    p.drawPolygon(right, 3);
}

void HueStrip::pointTo(const QPoint& pos)
{
    const QRect s = strip();
    setHue(360.0 * std::clamp(double(pos.y() - s.top()) / std::max(1, s.height() - 1), 0.0, 1.0));
    Q_EMIT changed(m_h);
}

void HueStrip::keyPressEvent(QKeyEvent* e)
{
    const double step = e->modifiers() & Qt::ShiftModifier ? 10.0 : 1.0;
    if (e->key() == Qt::Key_Up)
        setHue(m_h - step);
    else if (e->key() == Qt::Key_Down)
        setHue(m_h + step);
    else {
        QWidget::keyPressEvent(e);
        return;
    }
    Q_EMIT changed(m_h);
}

} // namespace velunta
