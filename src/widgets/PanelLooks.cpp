#include "widgets/PanelLooks.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>

namespace velunta {

PanelFill::PanelFill(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void PanelFill::setFill(const QColor& top, const QColor& bottom)
{
    m_top = top;
    m_bottom = bottom;
    update();
}

void PanelFill::setBorder(const QColor& color, Qt::Edges edges, int radius)
{
    m_border = color;
    m_edges = edges;
    m_radius = radius;
    // Round corners show the parent's background beside them.
    setAttribute(Qt::WA_OpaquePaintEvent, radius == 0);
    update();
}

void PanelFill::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    QBrush fill(m_top);
    if (m_bottom.isValid()) {
        QLinearGradient g(0, 0, 0, height());
        g.setColorAt(0, m_top);
        g.setColorAt(1, m_bottom);
        fill = QBrush(g);
    }
    if (m_radius > 0) {
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(m_border.isValid() ? QPen(m_border) : QPen(Qt::NoPen));
        p.setBrush(fill);
        p.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), m_radius, m_radius);
        return;
    }
    p.fillRect(rect(), fill);
    if (!m_border.isValid())
        return;
    const QRect r = rect();
    if (m_edges & Qt::TopEdge)
        p.fillRect(r.left(), r.top(), r.width(), 1, m_border);
    if (m_edges & Qt::BottomEdge)
        p.fillRect(r.left(), r.bottom(), r.width(), 1, m_border);
    if (m_edges & Qt::LeftEdge)
        p.fillRect(r.left(), r.top(), 1, r.height(), m_border);
    if (m_edges & Qt::RightEdge)
        p.fillRect(r.right(), r.top(), 1, r.height(), m_border);
}

BoxLabel::BoxLabel(QWidget* parent) : QLabel(parent) {}

void BoxLabel::setBox(const QColor& background, const QColor& frame, int paddingX, int paddingY)
{
    m_background = background;
    m_frame = frame;
    const int f = frame.isValid() ? 1 : 0;
    setContentsMargins(f + paddingX, f + paddingY, f + paddingX, f + paddingY);
    m_framed = f != 0;
    indentText();
    update();
}

void BoxLabel::indentText()
{
    // As a framed label sets its text in: half an "x" of the program's font inside the
    // frame. Measured in that font, which is loaded already: a label's own face
    // (the monospace read-outs) is loaded when it is first drawn, after the window shows.
    static const int halfX = QFontMetrics(QGuiApplication::font()).horizontalAdvance(u'x') / 2;
    setIndent(m_framed ? halfX : 0);
}

void BoxLabel::setDisabledLook(const QColor& background, const QColor& text)
{
    m_disabledBackground = background;
    QPalette pal = palette();
    pal.setColor(QPalette::Disabled, QPalette::WindowText, text);
    setPalette(pal);
}

void BoxLabel::setInk(const QColor& color)
{
    QPalette pal = palette();
    pal.setColor(QPalette::Active, QPalette::WindowText, color);
    pal.setColor(QPalette::Inactive, QPalette::WindowText, color);
    setPalette(pal);
}

void BoxLabel::paintEvent(QPaintEvent* event)
{
    {
        QPainter p(this);
        const QColor back =
            !isEnabled() && m_disabledBackground.isValid() ? m_disabledBackground : m_background;
        p.fillRect(rect(), back);
        if (m_frame.isValid()) {
            p.setPen(m_frame);
            p.drawRect(rect().adjusted(0, 0, -1, -1));
        }
    }
    QLabel::paintEvent(event);
}

void CaptionLook(QWidget* w, const QColor& color)
{
    QFont f = w->font();
    f.setBold(true);
    w->setFont(f);
    InkLook(w, color);
}

void InkLook(QWidget* w, const QColor& color)
{
    QPalette pal = w->palette();
    pal.setColor(QPalette::WindowText, color);
    w->setPalette(pal);
}

} // namespace velunta
