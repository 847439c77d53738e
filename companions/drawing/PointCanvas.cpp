#include "drawing/PointCanvas.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace velunta {

namespace {

// How near, in view pixels, a press must come to a point to take it.
constexpr double kGrabRadius = 10;
constexpr double kHandleRadius = 6;
// A small picture is shown up to this many times larger.
constexpr double kLargestScale = 8;

} // namespace

PointCanvas::PointCanvas(const QImage& picture, QWidget* parent) : QWidget(parent), m_picture(picture)
{
    setObjectName(QStringLiteral("PointCanvas"));
    setMouseTracking(true);
    setCursor(Qt::CrossCursor);
    setMinimumSize(320, 240);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

QSize PointCanvas::sizeHint() const
{
    return m_picture.size().expandedTo(QSize(480, 360));
}

QPointF PointCanvas::toView(QPointF point) const
{
    return m_origin + (point + QPointF(0.5, 0.5)) * m_scale;
}

QPointF PointCanvas::toPicture(QPointF point) const
{
    const QPointF p = (point - m_origin) / m_scale - QPointF(0.5, 0.5);
    return {std::round(p.x()), std::round(p.y())};
}

QPointF PointCanvas::clampToPicture(QPointF point) const
{
    return {std::clamp(point.x(), 0.0, double(std::max(0, m_picture.width() - 1))),
            std::clamp(point.y(), 0.0, double(std::max(0, m_picture.height() - 1)))};
}

void PointCanvas::layoutPicture()
{
    if (m_picture.isNull())
        return;
    m_scale =
        std::min({double(width()) / m_picture.width(), double(height()) / m_picture.height(), kLargestScale});
    const QSize shown(std::max(1, int(std::lround(m_picture.width() * m_scale))),
                      std::max(1, int(std::lround(m_picture.height() * m_scale))));
    m_origin = QPointF((width() - shown.width()) / 2.0, (height() - shown.height()) / 2.0);
    // Enlarged pixels stay square, so a child sees where each one lies; a reduced
    // photo is smoothed.
    m_scaled = QPixmap::fromImage(m_picture.scaled(
        shown, Qt::IgnoreAspectRatio, m_scale < 1 ? Qt::SmoothTransformation : Qt::FastTransformation));
}

void PointCanvas::resizeEvent(QResizeEvent*)
{
    layoutPicture();
}

void PointCanvas::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor(150, 170, 200));
    painter.drawPixmap(m_origin, m_scaled);

    painter.save();
    painter.setClipRect(QRectF(m_origin, m_scaled.size()));
    painter.translate(m_origin);
    painter.scale(m_scale, m_scale);
    painter.translate(0.5, 0.5);
    for (const Shape& shape : std::as_const(done))
        PaintShape(painter, shape);
    PaintShape(painter, current);
    painter.restore();

    painter.setRenderHint(QPainter::Antialiasing);
    const QVector<QPointF>& points = current.points;
    if (current.kind == ShapeKind::Bezier && points.size() > 2) {
        // The pull of the points between: a thin line through all of them, light on a
        // dark edge so it shows on any picture.
        QVector<QPointF> view;
        for (const QPointF& p : points)
            view << toView(p);
        painter.setPen(QPen(QColor(0, 0, 0, 150), 3));
        painter.drawPolyline(view.constData(), int(view.size()));
        painter.setPen(QPen(QColor(255, 255, 255), 1, Qt::DashLine));
        painter.drawPolyline(view.constData(), int(view.size()));
    }
    for (qsizetype i = 0; i < points.size(); ++i) {
        const QPointF v = toView(points[i]);
        const bool end = current.kind == ShapeKind::Bezier && (i == 0 || i == points.size() - 1);
        painter.setPen(QPen(QColor(40, 40, 40), 1.5));
        painter.setBrush(i == m_dragging ? QColor(255, 214, 120) : QColor(255, 255, 255));
        // The curve's ends are square, the points that only pull it are round.
        if (end)
            painter.drawRect(QRectF(v - QPointF(kHandleRadius, kHandleRadius),
                                    QSizeF(2 * kHandleRadius, 2 * kHandleRadius)));
        else
            painter.drawEllipse(v, kHandleRadius, kHandleRadius);
    }
}

int PointCanvas::pointAt(QPointF viewPoint) const
{
    int best = -1;
    double bestDistance = kGrabRadius;
    // The newest point wins where points lie on each other.
    for (qsizetype i = current.points.size() - 1; i >= 0; --i) {
        const QPointF d = toView(current.points[i]) - viewPoint;
        const double distance = std::hypot(d.x(), d.y());
        if (distance <= bestDistance) {
            bestDistance = distance;
            best = int(i);
        }
    }
    return best;
}

void PointCanvas::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::RightButton) {
        undoPoint();
        return;
    }
    if (event->button() != Qt::LeftButton)
        return;
    m_dragging = pointAt(event->position());
    if (m_dragging < 0) {
        current.points << clampToPicture(toPicture(event->position()));
        m_dragging = int(current.points.size() - 1);
    }
    refresh();
}

void PointCanvas::mouseMoveEvent(QMouseEvent* event)
{
    if (m_dragging >= 0 && m_dragging < current.points.size()) {
        const QPointF p = clampToPicture(toPicture(event->position()));
        if (p != current.points[m_dragging]) {
            current.points[m_dragging] = p;
            refresh();
        }
        return;
    }
    setCursor(pointAt(event->position()) >= 0 ? Qt::OpenHandCursor : Qt::CrossCursor);
}

void PointCanvas::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && m_dragging >= 0) {
        m_dragging = -1;
        refresh();
    }
}

void PointCanvas::undoPoint()
{
    m_dragging = -1;
    if (!current.points.isEmpty())
        current.points.removeLast();
    else if (!done.isEmpty())
        current = done.takeLast();
    refresh();
}

void PointCanvas::clearAll()
{
    m_dragging = -1;
    done.clear();
    current.points.clear();
    refresh();
}

void PointCanvas::newShape()
{
    m_dragging = -1;
    if (current.points.isEmpty())
        return;
    done << current;
    current.points.clear();
    refresh();
}

void PointCanvas::refresh()
{
    update();
    Q_EMIT changed();
}

} // namespace velunta
