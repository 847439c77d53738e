#include "document/PaintArea.h"

#include "core/Color.h"
#include "core/InputCodes.h"
#include "document/DocumentHost.h"
#include "document/frmPaint.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QRegion>

#include <algorithm>
#include <cmath>
#include <vector>

namespace velunta {

PaintArea::PaintArea(frmPaint& form, QWidget* parent) : QWidget(parent), m_form(form)
{
    setObjectName(QStringLiteral("PaintArea"));
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
}

QRect PaintArea::viewRectForImage(const QRect& r) const
{
    const double z = m_form.doc.ZoomFactor / 100.0;
    const int x0 = int(std::floor(r.left() * z));
    const int y0 = int(std::floor(r.top() * z));
    const int x1 = int(std::ceil((r.right() + 1) * z));
    const int y1 = int(std::ceil((r.bottom() + 1) * z));
    // One pixel of slack on each side for the rounding of nearest sampling; +1 for the frame.
    return QRect(x0, y0, x1 - x0 + 3, y1 - y0 + 3);
}

void PaintArea::paintEvent(QPaintEvent* event)
{
    QPainter p(this);
    const Document& doc = m_form.doc;
    const QImage& image = doc.Buffer.Image();
    const QRect client(1, 1, width() - 2, height() - 2);
    const QRect exposed = event->rect();

    // Only what the picture leaves uncovered gets the background: the picture itself is
    // drawn once, over nothing.
    const double zf = doc.ZoomFactor / 100.0;
    const QRect shown =
        image.isNull()
            ? QRect()
            : QRect(1, 1, int(std::ceil(image.width() * zf)), int(std::ceil(image.height() * zf))) & client;
    for (const QRect& r : QRegion(exposed).subtracted(QRegion(shown)))
        p.fillRect(r, palette().color(QPalette::Dark));
    p.setPen(QColor(120, 140, 170));
    p.drawRect(0, 0, width() - 1, height() - 1);

    const QRect area = exposed & client;
    if (!area.isEmpty() && !image.isNull()) {
        const double z = zf;
        if (doc.ZoomFactor == 100.0) {
            p.drawImage(area.topLeft(), image, area.translated(-1, -1));
        } else if (doc.ZoomFactor < 100.0) {
            ensureScaled();
            p.drawImage(area.topLeft(), m_scaled, area.translated(-1, -1));
        } else {
            // Only the exposed part is sampled: view pixel v shows picture pixel v / z.
            const int sx0 = std::clamp(int(std::floor((area.left() - 1) / z)), 0, image.width() - 1);
            const int sy0 = std::clamp(int(std::floor((area.top() - 1) / z)), 0, image.height() - 1);
            const int sx1 = std::clamp(int(std::floor((area.right() - 1) / z)), 0, image.width() - 1);
            const int sy1 = std::clamp(int(std::floor((area.bottom() - 1) / z)), 0, image.height() - 1);
            const QRectF target(1 + sx0 * z, 1 + sy0 * z, (sx1 - sx0 + 1) * z, (sy1 - sy0 + 1) * z);
            p.setClipRect(area);
            p.drawImage(target, image, QRectF(sx0, sy0, sx1 - sx0 + 1, sy1 - sy0 + 1));
            p.setClipping(false);
        }
    }
    p.translate(1, 1);
    paintOverlays(p);

    const bool ants = doc.SelectArea.Visible || doc.CropArea.Visible;
    if (ants && !m_antsTimer)
        m_antsTimer = startTimer(150);
    else if (!ants && m_antsTimer) {
        killTimer(m_antsTimer);
        m_antsTimer = 0;
    }
}

void PaintArea::ensureScaled()
{
    const QSize size(std::max(0, width() - 2), std::max(0, height() - 2));
    if (m_scaled.size() == size && !m_scaled.isNull())
        return;
    m_scaled = QImage(size, QImage::Format_RGB32);
    if (m_scaled.isNull())
        return;
    rescale(m_scaled.rect());
}

void PaintArea::rescale(const QRect& viewRect)
{
    const QImage& image = m_form.doc.Buffer.Image();
    const QRect r = viewRect & m_scaled.rect();
    if (r.isEmpty() || image.isNull())
        return;
    // Nearest sampling: view pixel v shows picture pixel v / z.
    const double k = 100.0 / m_form.doc.ZoomFactor;
    std::vector<int> columns(size_t(r.width()));
    for (int i = 0; i < r.width(); ++i)
        columns[size_t(i)] = std::min(image.width() - 1, int((r.left() + i) * k));
    for (int vy = r.top(); vy <= r.bottom(); ++vy) {
        const auto* src =
            reinterpret_cast<const QRgb*>(image.constScanLine(std::min(image.height() - 1, int(vy * k))));
        auto* dst = reinterpret_cast<QRgb*>(m_scaled.scanLine(vy)) + r.left();
        for (int i = 0; i < r.width(); ++i)
            dst[i] = src[columns[size_t(i)]];
    }
}

void PaintArea::invalidateImage(const QRect& imageRect)
{
    const QRect view = viewRectForImage(imageRect);
    if (m_form.doc.ZoomFactor < 100.0 && !m_scaled.isNull())
        rescale(view.translated(-1, -1));
    update(view);
}

void PaintArea::paintOverlays(QPainter& p)
{
    const Document& doc = m_form.doc;
    auto styleOf = [](int style) {
        switch (style) {
        case 2:
            return Qt::DashLine;
        case 3:
            return Qt::DotLine;
        case 4:
            return Qt::DashDotLine;
        default:
            return Qt::SolidLine;
        }
    };
    // Grid lines in view pixels.
    if (doc.GridIsShown) {
        p.setPen(QPen(ToQColor(doc.GridColor > 0 ? doc.GridColor : RGB(240, 240, 240)), 0));
        for (int x : doc.GridColumns)
            p.drawLine(QPointF(x, 0), QPointF(x, height() - 2));
        for (int y : doc.GridRows)
            p.drawLine(QPointF(0, y), QPointF(width() - 2, y));
    }
    for (const LineOverlay* line : {&doc.Line1, &doc.Line2}) {
        if (!line->Visible)
            continue;
        QPen pen(ToQColor(line->BorderColor), 0, styleOf(line->BorderStyle));
        p.setPen(pen);
        p.drawLine(QPointF(line->X1 + 0.5, line->Y1 + 0.5), QPointF(line->X2 + 0.5, line->Y2 + 0.5));
    }
    auto antsRect = [&](const RectOverlay& r, const QColor& light) {
        const QRectF box(r.Left, r.Top, std::max(0.0, r.Width - 1), std::max(0.0, r.Height - 1));
        p.setPen(QPen(light, 0));
        p.drawRect(box.translated(0.5, 0.5));
        QPen dash(Qt::black, 0, Qt::CustomDashLine);
        dash.setDashPattern({4, 4});
        dash.setDashOffset(m_antsOffset);
        p.setPen(dash);
        p.drawRect(box.translated(0.5, 0.5));
    };
    if (doc.SelectArea.Visible)
        antsRect(doc.SelectArea, Qt::white);
    if (doc.CropArea.Visible)
        antsRect(doc.CropArea, QColor(255, 220, 120));
    QPen band(QColor(40, 40, 40), 0, Qt::DotLine);
    p.setPen(band);
    p.setBrush(Qt::NoBrush);
    if (doc.DrawBox.Visible)
        p.drawRect(
            QRectF(doc.DrawBox.Left + 0.5, doc.DrawBox.Top + 0.5, doc.DrawBox.Width, doc.DrawBox.Height));
    if (doc.DrawCircle.Visible)
        p.drawEllipse(QRectF(doc.DrawCircle.Left + 0.5, doc.DrawCircle.Top + 0.5, doc.DrawCircle.Width,
                             doc.DrawCircle.Height));
    for (const LineOverlay* line : {&doc.FollowLine, &doc.Temp, &doc.Temp2}) {
        if (line->Visible)
            p.drawLine(QPointF(line->X1 + 0.5, line->Y1 + 0.5), QPointF(line->X2 + 0.5, line->Y2 + 0.5));
    }
}

void PaintArea::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_antsTimer)
        return QWidget::timerEvent(event);
    m_antsOffset = (m_antsOffset + 1) % 8;
    update();
}

namespace {
float viewX(const QMouseEvent* e)
{
    return float(std::floor(e->position().x()) - 1);
}
float viewY(const QMouseEvent* e)
{
    return float(std::floor(e->position().y()) - 1);
}
} // namespace

void PaintArea::mousePressEvent(QMouseEvent* event)
{
    setFocus(Qt::MouseFocusReason);
    m_form.host().PaintAreaMouseDown(m_form, ButtonCode(event->button()), ShiftCode(event->modifiers()),
                                     viewX(event), viewY(event));
}

void PaintArea::mouseDoubleClickEvent(QMouseEvent* event)
{
    mousePressEvent(event);
}

void PaintArea::mouseMoveEvent(QMouseEvent* event)
{
    m_form.host().PaintAreaMouseMove(m_form, ButtonsCode(event->buttons()), ShiftCode(event->modifiers()),
                                     viewX(event), viewY(event));
}

void PaintArea::mouseReleaseEvent(QMouseEvent* event)
{
    m_form.host().PaintAreaMouseUp(m_form, ButtonCode(event->button()), ShiftCode(event->modifiers()),
                                   viewX(event), viewY(event));
}

void PaintArea::keyPressEvent(QKeyEvent* event)
{
    const int code = KeyCodeOf(*event);
    if (code)
        m_form.host().FormKeyDown(m_form, code, ShiftCode(event->modifiers()));
    else
        QWidget::keyPressEvent(event);
}

void PaintArea::keyReleaseEvent(QKeyEvent* event)
{
    const int code = KeyCodeOf(*event);
    if (code && !event->isAutoRepeat())
        m_form.host().FormKeyUp(m_form, code, ShiftCode(event->modifiers()));
    else
        QWidget::keyReleaseEvent(event);
}

void PaintArea::focusInEvent(QFocusEvent* event)
{
    QWidget::focusInEvent(event);
    m_form.host().ZoomChanged(m_form);
}

} // namespace velunta
