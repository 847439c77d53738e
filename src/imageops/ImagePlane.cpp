#include "imageops/ImagePlane.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace velunta {

ImagePlane::ImagePlane(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setCursor(Qt::OpenHandCursor);
}

void ImagePlane::setPicture(const QImage* picture)
{
    m_picture = picture;
    Move(m_left, m_top);
    update();
}

void ImagePlane::Move(int left, int top)
{
    const int w = m_picture ? m_picture->width() : 0;
    const int h = m_picture ? m_picture->height() : 0;
    m_left = std::clamp(left, std::min(0, width() - w), 0);
    m_top = std::clamp(top, std::min(0, height() - h), 0);
    update();
}

QRect ImagePlane::visibleArea() const
{
    if (!m_picture)
        return {};
    return QRect(-m_left, -m_top, width(), height()) & m_picture->rect();
}

void ImagePlane::paintEvent(QPaintEvent* event)
{
    QPainter p(this);
    p.fillRect(event->rect(), QColor(128, 128, 128));
    if (!m_picture || m_picture->isNull())
        return;
    // Only what the viewport shows is drawn, whatever the picture's size.
    const QRect shown =
        QRect(event->rect().topLeft() - QPoint(m_left, m_top), event->rect().size()) & m_picture->rect();
    if (!shown.isEmpty())
        p.drawImage(shown.topLeft() + QPoint(m_left, m_top), *m_picture, shown);
}

void ImagePlane::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_dragging = true;
    m_grab = event->position().toPoint();
    setCursor(Qt::ClosedHandCursor);
}

void ImagePlane::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_dragging)
        return;
    const QPoint at = event->position().toPoint();
    const int oldLeft = m_left, oldTop = m_top;
    Move(m_left + at.x() - m_grab.x(), m_top + at.y() - m_grab.y());
    m_grab = at;
    if (m_left != oldLeft || m_top != oldTop)
        Q_EMIT dragged(m_left - oldLeft, m_top - oldTop);
}

void ImagePlane::mouseReleaseEvent(QMouseEvent*)
{
    m_dragging = false;
    setCursor(Qt::OpenHandCursor);
}

void ImagePlane::resizeEvent(QResizeEvent*)
{
    Move(m_left, m_top);
}

} // namespace velunta
