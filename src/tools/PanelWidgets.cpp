#include "tools/PanelWidgets.h"

#include "core/Gdi.h"
#include "core/Surface.h"
#include "widgets/ButtonLooks.h"
#include "widgets/Icons.h"

#include <QIconEngine>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

namespace velunta {

void PanelBarLook(zolButton* b)
{
    BarLook(b, 5, RGB(255, 232, 166), RGB(220, 245, 255));
}

StyleButton::StyleButton(const QString& name, const QIcon& icon, const QString& tip, QWidget* parent,
                         int mode)
    : zolButton(parent)
{
    setObjectName(name);
    PanelBarLook(this);
    setPicture(icon);
    setPictureAlign(4);
    setFixedSize(kStyleButtonSize, kStyleButtonSize);
    setToolTip(tip);
    setMode(mode);
}

IconView::IconView(const QString& name, const QIcon& icon, int size, QWidget* parent)
    : QWidget(parent), m_icon(icon)
{
    setObjectName(name);
    setFixedSize(size, size);
}

void IconView::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    m_icon.paint(&p, rect());
}

void IconView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        Q_EMIT clicked();
}

ReadoutLabel::ReadoutLabel(const QString& name, const QString& tip, int minimumWidth, QWidget* parent)
    : BoxLabel(parent)
{
    setObjectName(name);
    setBox(Qt::white, kFrameBlue, 4);
    setDisabledLook(QColor(235, 240, 248), QColor(130, 130, 130));
    setToolTip(tip);
    setMinimumWidth(minimumWidth);
    setFixedHeight(kPanelRowHeight - 2);
    setAlignment(Qt::AlignVCenter | Qt::AlignLeft);
}

void ReadoutLabel::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        BoxLabel::mousePressEvent(event);
        return;
    }
    // Taken here, so the press doesn't travel on to the panel and count as a press outside.
    event->accept();
    Q_EMIT clicked();
}

ColorSwatch::ColorSwatch(const QString& name, const QString& tip, QSize size, QWidget* parent)
    : QFrame(parent)
{
    setObjectName(name);
    setToolTip(tip);
    setFixedSize(size);
}

void ColorSwatch::setColor(Color c)
{
    if (c == m_color)
        return;
    m_color = c;
    update();
}

void ColorSwatch::setArmed(bool armed)
{
    if (armed == m_armed)
        return;
    m_armed = armed;
    update();
}

void ColorSwatch::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    const QRectF box = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    if (m_color == kNoColor) {
        p.fillRect(rect(), Qt::white);
        p.setPen(QColor(170, 170, 170));
        p.drawLine(box.topLeft(), box.bottomRight());
        p.drawLine(box.bottomLeft(), box.topRight());
    } else {
        p.fillRect(rect(), ToQColor(m_color));
    }
    QPen frame(isEnabled() ? QColor(60, 60, 60) : QColor(150, 150, 150));
    if (m_armed) {
        frame.setColor(QColor(200, 30, 30));
        frame.setStyle(Qt::DashLine);
    }
    p.setPen(frame);
    p.drawRect(box);
}

void ColorSwatch::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        QFrame::mousePressEvent(event);
        return;
    }
    event->accept();
    Q_EMIT clicked();
}

QHBoxLayout* RowLayout(QWidget* box, int spacing)
{
    auto* row = new QHBoxLayout(box);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    return row;
}

QImage FillPatternSwatch(int pattern, Color ink, int w, int h)
{
    Surface s;
    s.setScaleSize(w, h);
    s.BackColor = RGB(255, 255, 255);
    s.Cls();
    s.FillColor = ink;
    s.FillStyle = pattern;
    // The same flood fill the tool runs, over a blank swatch.
    ExtFloodFill(s, 0, 0, s.BackColor, FLOODFILLSURFACE);
    return s.Image();
}

FillPatternButton::FillPatternButton(int pattern, const QString& tip, QWidget* parent)
    : zolButton(parent), m_pattern(pattern)
{
    setObjectName(QStringLiteral("OptFillStyle(%1)").arg(pattern));
    setToolTip(tip);
    PanelBarLook(this);
    setPictureAlign(4);
    setFixedSize(kStyleButtonSize, kStyleButtonSize);
    setMode(2);
    setInk(0);
}

void FillPatternButton::setInk(Color c)
{
    if (c == m_ink)
        return;
    m_ink = c;
    // The swatch in a dark frame, one swatch pixel per screen pixel at 100 %; larger
    // scales show it in whole blocks, so it stays sharp.
    const int side = 16;
    QImage img(side, side, QImage::Format_RGB32);
    img.fill(QColor(60, 60, 60));
    QPainter p(&img);
    const QRect well(1, 1, side - 2, side - 2);
    if (m_pattern == 1) {
        // Transparent: the fill paints nothing, shown as the usual see-through checkerboard.
        const int cell = 4;
        for (int y = 0; y < well.height(); y += cell)
            for (int x = 0; x < well.width(); x += cell)
                p.fillRect(QRect(well.left() + x, well.top() + y, cell, cell) & well,
                           ((x + y) / cell) % 2 ? QColor(204, 204, 204) : Qt::white);
    } else {
        p.drawImage(well.topLeft(), FillPatternSwatch(m_pattern, m_ink, well.width(), well.height()));
    }
    p.end();
    setPicture(img);
}

namespace {

class PaintedIconEngine : public QIconEngine {
public:
    explicit PaintedIconEngine(std::function<void(QPainter&, const QRectF&)> paint)
        : m_paint(std::move(paint))
    {
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (mode == QIcon::Disabled)
            painter->setOpacity(0.4);
        m_paint(*painter, QRectF(rect));
        painter->restore();
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pm(size);
        pm.fill(Qt::transparent);
        QPainter p(&pm);
        paint(&p, QRect(QPoint(0, 0), size), mode, state);
        return pm;
    }
    QIconEngine* clone() const override { return new PaintedIconEngine(m_paint); }

private:
    std::function<void(QPainter&, const QRectF&)> m_paint;
};

} // namespace

QIcon PaintedIcon(std::function<void(QPainter&, const QRectF&)> paint)
{
    return QIcon(new PaintedIconEngine(std::move(paint)));
}

QIcon LastPenCircleIcon(int index)
{
    const QIcon base = StyleIcon(QStringLiteral("circle-style"), index - 3);
    return PaintedIcon([base](QPainter& p, const QRectF& r) {
        p.setOpacity(0.45);
        base.paint(&p, r.toAlignedRect());
        p.setOpacity(1);
        // A round "again" arrow in the lower right corner.
        const qreal d = r.width() * 0.5;
        const QRectF badge(r.right() - d, r.bottom() - d, d, d);
        p.setPen(Qt::NoPen);
        p.setBrush(Qt::white);
        p.drawEllipse(badge);
        const QRectF arc = badge.adjusted(d * 0.2, d * 0.2, -d * 0.2, -d * 0.2);
        QPen pen(QColor(30, 80, 170), std::max<qreal>(1.2, d * 0.14));
        pen.setCapStyle(Qt::RoundCap);
        p.setPen(pen);
        p.setBrush(Qt::NoBrush);
        p.drawArc(arc, 90 * 16, 270 * 16);
        const QPointF tip(arc.center().x(), arc.top());
        const qreal a = d * 0.2;
        QPainterPath head;
        head.moveTo(tip + QPointF(a, 0));
        head.lineTo(tip + QPointF(-a * 0.3, -a));
        head.lineTo(tip + QPointF(-a * 0.3, a));
        head.closeSubpath();
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(30, 80, 170));
        p.drawPath(head);
    });
}

QIcon NoEdgeIcon()
{
    return PaintedIcon([](QPainter& p, const QRectF& r) {
        QPen pen(QColor(120, 120, 120), std::max<qreal>(1.0, r.width() / 16));
        pen.setStyle(Qt::DashLine);
        p.setPen(pen);
        p.setBrush(Qt::NoBrush);
        p.drawRect(r.adjusted(r.width() * 0.15, r.height() * 0.2, -r.width() * 0.15, -r.height() * 0.2));
    });
}

QIcon MinusPlusIcon(int k)
{
    return PaintedIcon([k](QPainter& p, const QRectF& r) {
        QPen pen(QColor(30, 60, 120), std::max<qreal>(2.0, r.width() / 7));
        pen.setCapStyle(Qt::RoundCap);
        p.setPen(pen);
        const QPointF c = r.center();
        const qreal a = r.width() * 0.3;
        p.drawLine(c - QPointF(a, 0), c + QPointF(a, 0));
        if (k == 1)
            p.drawLine(c - QPointF(0, a), c + QPointF(0, a));
    });
}

} // namespace velunta
