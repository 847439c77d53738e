#include "widgets/StripParts.h"

#include "core/InputCodes.h"

#include <QApplication>
#include <QCursor>
#include <QDrag>
#include <QHelpEvent>
#include <QLinearGradient>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QToolTip>

#include <algorithm>

namespace velunta {

namespace {

const QColor kFrameDark(60, 60, 60);
const QColor kBevel(116, 156, 218);
const QColor kHoverFrame(20, 50, 130);

// A colour handed over as text: a whole number that is a colour, or -1.
Color DroppedColor(const QMimeData* data)
{
    if (!data || !data->hasText())
        return kNoColor;
    bool ok = false;
    const qlonglong v = data->text().trimmed().toLongLong(&ok);
    return ok && v >= 0 && v <= 0xFFFFFF ? Color(v) : kNoColor;
}

// The button held during a move, as a press would give it: the left one first.
int HeldButtonCode(Qt::MouseButtons b)
{
    const int held = ButtonsCode(b);
    return held & 1 ? 1 : (held & 2 ? 2 : 0);
}

} // namespace

// --- ColorSample

ColorSample::ColorSample(QWidget* parent) : QWidget(parent) {}

void ColorSample::setColor(Color c)
{
    if (c != m_color) {
        m_color = c;
        update();
    }
}

void ColorSample::setMarked(bool on)
{
    if (on != m_marked) {
        m_marked = on;
        update();
    }
}

void ColorSample::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    const QRect r = rect();
    p.fillRect(r, m_marked ? kHoverFrame : kFrameDark);
    const int frame = m_marked ? 2 : 1;
    p.fillRect(r.adjusted(frame, frame, -frame, -frame), Qt::white);
    p.fillRect(r.adjusted(frame + 1, frame + 1, -frame - 1, -frame - 1), ToQColor(std::max(m_color, 0)));
}

void ColorSample::mousePressEvent(QMouseEvent* e)
{
    m_pressPos = e->position().toPoint();
    Q_EMIT pressed(ButtonCode(e->button()));
}

void ColorSample::mouseMoveEvent(QMouseEvent* e)
{
    if (!m_dragSource || !(e->buttons() & Qt::LeftButton))
        return;
    if ((e->position().toPoint() - m_pressPos).manhattanLength() < QApplication::startDragDistance())
        return;
    auto* data = new QMimeData;
    data->setText(QString::number(m_color));
    QPixmap face(18, 18);
    face.fill(ToQColor(std::max(m_color, 0)));
    QPainter(&face).drawRect(0, 0, 17, 17);
    auto* drag = new QDrag(this);
    drag->setMimeData(data);
    drag->setPixmap(face);
    drag->setHotSpot(QPoint(9, 9));
    drag->exec(Qt::CopyAction);
}

// --- SwatchGrid

SwatchGrid::SwatchGrid(const QVector<QPoint>& places, QSize cell, int gap, QWidget* parent)
    : QWidget(parent), m_places(places), m_colors(places.size(), 0), m_tips(places.size()), m_cell(cell),
      m_gap(gap)
{
    int columns = 0, rows = 0;
    for (const QPoint& p : places) {
        columns = std::max(columns, p.x() + 1);
        rows = std::max(rows, p.y() + 1);
    }
    // Two pixels around the cells leave room for the hover frame.
    setFixedSize(columns * cell.width() + (columns - 1) * gap + 4,
                 rows * cell.height() + (rows - 1) * gap + 4);
    setMouseTracking(true);
    m_tmrColorBrd = new QTimer(this);
    m_tmrColorBrd->setInterval(150);
    connect(m_tmrColorBrd, &QTimer::timeout, this, [this] {
        if (!rect().contains(mapFromGlobal(QCursor::pos())))
            hideHoverFrame();
    });
}

void SwatchGrid::setColor(int index, Color c)
{
    if (index >= 0 && index < count() && m_colors[index] != c) {
        m_colors[index] = c;
        update(cellRect(index).adjusted(-2, -2, 2, 2));
    }
}

QRect SwatchGrid::cellRect(int index) const
{
    const QPoint place = m_places.value(index, QPoint(-10, -10));
    return QRect(2 + place.x() * (m_cell.width() + m_gap), 2 + place.y() * (m_cell.height() + m_gap),
                 m_cell.width(), m_cell.height());
}

int SwatchGrid::indexAt(const QPoint& pos) const
{
    for (int i = 0; i < count(); ++i)
        if (cellRect(i).contains(pos))
            return i;
    return -1;
}

void SwatchGrid::setHover(int index)
{
    if (index == m_hover)
        return;
    if (m_hover >= 0)
        update(cellRect(m_hover).adjusted(-2, -2, 2, 2));
    m_hover = index;
    if (m_hover >= 0) {
        update(cellRect(m_hover).adjusted(-2, -2, 2, 2));
        m_tmrColorBrd->start();
    } else {
        m_tmrColorBrd->stop();
    }
}

void SwatchGrid::hideHoverFrame()
{
    setHover(-1);
}

bool SwatchGrid::event(QEvent* e)
{
    if (e->type() == QEvent::ToolTip) {
        auto* help = static_cast<QHelpEvent*>(e);
        const int index = indexAt(help->pos());
        const QString tip = m_tips.value(index);
        if (tip.isEmpty())
            QToolTip::hideText();
        else
            QToolTip::showText(help->globalPos(), tip, this, cellRect(index));
        return true;
    }
    return QWidget::event(e);
}

void SwatchGrid::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    for (int i = 0; i < count(); ++i) {
        const QRect r = cellRect(i);
        p.fillRect(r, kFrameDark);
        p.fillRect(r.adjusted(1, 1, -1, -1), ToQColor(std::max(m_colors[i], 0)));
    }
    if (m_hover >= 0) {
        // lblClrBorder / lblUsrBorder: a frame just outside the cell.
        p.setPen(QPen(kHoverFrame, 2));
        p.setBrush(Qt::NoBrush);
        p.drawRect(QRectF(cellRect(m_hover)).adjusted(-1, -1, 1, 1));
    }
}

void SwatchGrid::mousePressEvent(QMouseEvent* e)
{
    m_ignoreRelease = false;
    m_pressed = indexAt(e->position().toPoint());
    if (m_pressed >= 0)
        Q_EMIT cellPressed(m_pressed, ButtonCode(e->button()));
}

void SwatchGrid::mouseReleaseEvent(QMouseEvent* e)
{
    const int index = m_pressed;
    m_pressed = -1;
    // The release that ends a double click is not a new choice: the double click has
    // already decided what the cell does.
    if (m_ignoreRelease) {
        m_ignoreRelease = false;
        return;
    }
    if (index >= 0) {
        hideHoverFrame();
        Q_EMIT cellReleased(index, ButtonCode(e->button()));
    }
}

void SwatchGrid::mouseDoubleClickEvent(QMouseEvent* e)
{
    // Only the left button double clicks; a quick second right click is a click.
    if (e->button() != Qt::LeftButton) {
        mousePressEvent(e);
        return;
    }
    const int index = indexAt(e->position().toPoint());
    m_pressed = -1;
    m_ignoreRelease = true;
    if (index >= 0)
        Q_EMIT cellDoubleClicked(index, ButtonCode(e->button()));
}

void SwatchGrid::mouseMoveEvent(QMouseEvent* e)
{
    setHover(indexAt(e->position().toPoint()));
}

void SwatchGrid::leaveEvent(QEvent*)
{
    hideHoverFrame();
}

void SwatchGrid::dragEnterEvent(QDragEnterEvent* e)
{
    if (DroppedColor(e->mimeData()) >= 0)
        e->acceptProposedAction();
}

void SwatchGrid::dragMoveEvent(QDragMoveEvent* e)
{
    const int index = indexAt(e->position().toPoint());
    setHover(index);
    if (index >= 0 && DroppedColor(e->mimeData()) >= 0)
        e->acceptProposedAction();
    else
        e->ignore();
}

void SwatchGrid::dropEvent(QDropEvent* e)
{
    const int index = indexAt(e->position().toPoint());
    const Color c = DroppedColor(e->mimeData());
    hideHoverFrame();
    if (index < 0 || c < 0)
        return;
    e->acceptProposedAction();
    Q_EMIT colorDropped(index, c);
}

// --- PickStrip

PickStrip::PickStrip(QWidget* parent) : QWidget(parent) {}

void PickStrip::setPicture(const QImage& picture)
{
    m_picture = picture.convertToFormat(QImage::Format_RGB32);
    update();
}

Color PickStrip::colorAt(const QPoint& widgetPos) const
{
    if (m_picture.isNull())
        return kNoColor;
    const int x = std::clamp(widgetPos.x() - 1, 0, m_picture.width() - 1);
    const int y = std::clamp(widgetPos.y() - 1, 0, m_picture.height() - 1);
    return FromQRgb(reinterpret_cast<const QRgb*>(m_picture.constScanLine(y))[x]);
}

void PickStrip::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.setPen(kBevel);
    p.drawRect(rect().adjusted(0, 0, -1, -1));
    p.drawImage(QPoint(1, 1), m_picture);
}

void PickStrip::mousePressEvent(QMouseEvent* e)
{
    const int button = ButtonCode(e->button());
    if (m_picks && (button == 1 || button == 2))
        Q_EMIT picked(colorAt(e->position().toPoint()), button);
}

void PickStrip::mouseMoveEvent(QMouseEvent* e)
{
    const int button = HeldButtonCode(e->buttons());
    if (m_picks && button)
        Q_EMIT picked(colorAt(e->position().toPoint()), button);
}

void PickStrip::mouseDoubleClickEvent(QMouseEvent* e)
{
    if (e->button() == Qt::LeftButton)
        Q_EMIT doubleClicked();
}

// --- ColorSlider

ColorSlider::ColorSlider(QWidget* parent) : QWidget(parent)
{
    setFixedHeight(18);
    setCursor(Qt::PointingHandCursor);
}

void ColorSlider::setThumbLeft(int left)
{
    if (left != m_thumbLeft) {
        m_thumbLeft = left;
        update();
    }
}

void ColorSlider::setRamp(Color from, Color to)
{
    if (from != m_from || to != m_to) {
        m_from = from;
        m_to = to;
        update();
    }
}

void ColorSlider::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    const QRect track(barLeft(), 4, barWidth(), height() - 8);
    QLinearGradient ramp(track.topLeft(), track.topRight());
    ramp.setColorAt(0, ToQColor(m_from));
    ramp.setColorAt(1, ToQColor(m_to));
    p.fillRect(track, ramp);
    p.setPen(kBevel);
    p.drawRect(track.adjusted(0, 0, -1, -1));
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF thumb(m_thumbLeft + 0.5, 0.5, kThumbWidth - 1, height() - 1);
    p.setPen(QPen(QColor(40, 60, 110), 1));
    p.setBrush(m_dragging ? QColor(220, 245, 255) : QColor(250, 252, 255));
    p.drawRoundedRect(thumb, 2, 2);
    p.drawLine(QPointF(thumb.center().x(), 4), QPointF(thumb.center().x(), height() - 4));
}

void ColorSlider::moveThumbTo(int pointerX)
{
    const int low = barLeft() - kThumbWidth / 2;
    const int high = barLeft() + barWidth() - kThumbWidth / 2;
    setThumbLeft(std::clamp(pointerX - m_grabX, low, high));
}

void ColorSlider::mousePressEvent(QMouseEvent* e)
{
    if (e->button() != Qt::LeftButton)
        return;
    const int x = e->position().toPoint().x();
    const bool onThumb = x >= m_thumbLeft && x < m_thumbLeft + kThumbWidth;
    m_grabX = onThumb ? x - m_thumbLeft : kThumbWidth / 2;
    m_dragging = true;
    Q_EMIT dragStarted();
    // A press on the track beside the thumb brings the thumb's middle there at once.
    if (!onThumb) {
        moveThumbTo(x);
        Q_EMIT dragged();
    }
    update();
}

void ColorSlider::mouseMoveEvent(QMouseEvent* e)
{
    if (!m_dragging)
        return;
    moveThumbTo(e->position().toPoint().x());
    Q_EMIT dragged();
}

void ColorSlider::mouseReleaseEvent(QMouseEvent* e)
{
    if (!m_dragging || e->button() != Qt::LeftButton)
        return;
    m_dragging = false;
    update();
    Q_EMIT dragEnded();
}

} // namespace velunta
