#include "effects/EffectView.h"

#include "widgets/Icons.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

namespace velunta {

namespace {

// The area around the picture: a dark grey, so that a white picture's edge shows.
const QColor kAreaColor(96, 96, 104);

} // namespace

EffectView::EffectView(QWidget* parent) : QAbstractScrollArea(parent)
{
    setObjectName(QStringLiteral("Picture2"));
    viewport()->setObjectName(QStringLiteral("ImgDest"));
    setFrameShape(QFrame::StyledPanel);
    setFrameShadow(QFrame::Sunken);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    updateCursor();
}

QSize EffectView::sizeHint() const
{
    return {560, 420};
}

void EffectView::setImage(const QImage* image)
{
    m_image = image;
    m_shrunk = QImage();
    updateScrollBars();
    viewport()->update();
}

void EffectView::refresh()
{
    m_shrunk = QImage();
    updateScrollBars();
    viewport()->update();
}

void EffectView::setActualSize(bool actual)
{
    m_actual = actual;
    if (!actual)
        m_left = m_top = 0; // fitted, the picture goes back to the corner
    updateScrollBars();
    updateCursor();
    viewport()->update();
}

void EffectView::Move(double left, double top)
{
    m_left = left;
    m_top = top;
    updateScrollBars();
    viewport()->update();
}

void EffectView::setPicking(bool on)
{
    m_picking = on;
    updateCursor();
}

double EffectView::scale() const
{
    if (m_actual || !m_image || m_image->isNull())
        return 1.0;
    const QSize area = viewport()->size();
    return std::max(
        1e-6, std::min(double(area.width()) / m_image->width(), double(area.height()) / m_image->height()));
}

QPointF EffectView::origin() const
{
    const double s = scale();
    QPointF centre(0, 0);
    if (!m_actual && m_image && !m_image->isNull()) {
        // Fitted, the picture sits in the middle of the spare room.
        const QSize area = viewport()->size();
        centre = {(area.width() - m_image->width() * s) / 2, (area.height() - m_image->height() * s) / 2};
    }
    return centre + QPointF(m_left, m_top) * s;
}

QPointF EffectView::toPicture(const QPointF& viewPoint) const
{
    return (viewPoint - origin()) / scale();
}

const QImage& EffectView::shrunk(double scale)
{
    const qreal ratio = devicePixelRatioF();
    const QSize size(std::max(1, int(std::lround(m_image->width() * scale * ratio))),
                     std::max(1, int(std::lround(m_image->height() * scale * ratio))));
    if (m_shrunk.size() != size) {
        m_shrunk = m_image->scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        m_shrunk.setDevicePixelRatio(ratio);
    }
    return m_shrunk;
}

void EffectView::paintEvent(QPaintEvent*)
{
    QPainter painter(viewport());
    const QRectF area(viewport()->rect());
    painter.fillRect(area, kAreaColor);
    if (!m_image || m_image->isNull())
        return;
    const double s = scale();
    const QPointF corner = origin();
    if (s < 1.0) {
        painter.drawImage(corner, shrunk(s));
        return;
    }
    if (s == 1.0) {
        // Actual size: only the part in the area.
        const QRectF where = QRectF(corner, QSizeF(m_image->size())).intersected(area);
        if (!where.isEmpty())
            painter.drawImage(where.topLeft(), *m_image, where.translated(-corner));
        return;
    }
    // A small picture fitted to the area: its pixels grow as sharp squares.
    const QRectF target(corner, QSizeF(m_image->width() * s, m_image->height() * s));
    const QRectF visible = target.intersected(area);
    if (visible.isEmpty())
        return;
    const QRectF source((visible.left() - corner.x()) / s, (visible.top() - corner.y()) / s,
                        visible.width() / s, visible.height() / s);
    painter.drawImage(visible, *m_image, source);
}

void EffectView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    updateScrollBars();
}

void EffectView::updateScrollBars()
{
    m_syncing = true;
    const QSize area = viewport()->size();
    const int w = m_actual && m_image ? m_image->width() : 0;
    const int h = m_actual && m_image ? m_image->height() : 0;
    QScrollBar* hb = horizontalScrollBar();
    QScrollBar* vb = verticalScrollBar();
    hb->setRange(0, std::max(0, w - area.width()));
    hb->setPageStep(std::max(1, area.width()));
    hb->setSingleStep(16);
    vb->setRange(0, std::max(0, h - area.height()));
    vb->setPageStep(std::max(1, area.height()));
    vb->setSingleStep(16);
    hb->setValue(int(std::lround(std::clamp(-m_left, 0.0, double(hb->maximum())))));
    vb->setValue(int(std::lround(std::clamp(-m_top, 0.0, double(vb->maximum())))));
    m_syncing = false;
}

void EffectView::scrollContentsBy(int, int)
{
    if (m_syncing)
        return;
    // Scrolling moves the picture under the area, as a drag does.
    m_left = -horizontalScrollBar()->value();
    m_top = -verticalScrollBar()->value();
    viewport()->update();
    Q_EMIT scrolled();
}

void EffectView::updateCursor()
{
    if (m_picking)
        viewport()->setCursor(ToolCursor(8)); // the colour picker's pointer
    else if (m_dragging)
        viewport()->setCursor(Qt::ClosedHandCursor);
    else if (m_actual)
        viewport()->setCursor(Qt::OpenHandCursor);
    else
        viewport()->setCursor(Qt::ArrowCursor);
}

void EffectView::mousePressEvent(QMouseEvent* event)
{
    if (m_picking) {
        Q_EMIT picked(toPicture(event->position()), event->button());
        return;
    }
    if (event->button() != Qt::LeftButton)
        return;
    m_dragging = true;
    m_grab = event->position() - origin();
    updateCursor();
}

void EffectView::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_dragging)
        return;
    const double s = scale();
    // The new corner is the pointer less the grab point; Left and Top follow it.
    const QPointF corner = event->position() - m_grab;
    const QPointF shift = (corner - origin()) / s;
    Move(m_left + shift.x(), m_top + shift.y());
}

void EffectView::mouseReleaseEvent(QMouseEvent* event)
{
    if (!m_dragging || event->button() != Qt::LeftButton)
        return;
    m_dragging = false;
    updateCursor();
    Q_EMIT dragged();
}

} // namespace velunta
