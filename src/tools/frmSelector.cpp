#include "tools/frmSelector.h"

#include "core/Numbers.h"
#include "document/DrawState.h"
#include "tools/PanelWidgets.h"
#include "tools/frmControls.h"

#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolButton>
#include <QWheelEvent>

#include <algorithm>
#include <functional>

namespace velunta {

double SliderValue(double blockLeft, double barLeft, double barWidth, double blockWidth, int minimum,
                   int maximum)
{
    const double room = barWidth - blockWidth;
    if (room <= 0)
        return minimum;
    return (blockLeft - barLeft) / room * (maximum - minimum) + minimum;
}

double SliderLeft(double value, double barLeft, double barWidth, double blockWidth, int minimum, int maximum)
{
    if (maximum == minimum)
        return barLeft;
    return barLeft + (value - minimum) / (maximum - minimum) * (barWidth - blockWidth);
}

namespace {

// Geometry of the panel, in logical pixels.
constexpr int kMargin = 6;
constexpr int kStep = 24;
constexpr int kBarWidth = 180;
constexpr int kBarHeight = 10;
constexpr int kBlockWidth = 14;
constexpr int kBlockHeight = 24;
constexpr int kReadoutWidth = 78;
constexpr int kHeight = kBlockHeight + 2 * kMargin;

// The groove, filled from the left up to the thumb so the amount reads at a glance.
class Track : public QWidget {
public:
    Track(std::function<double()> filled, QWidget* parent) : QWidget(parent), m_filled(std::move(filled)) {}

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter p(this);
        p.setRenderHint(QPainter::Antialiasing);
        const QRectF groove = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
        const qreal radius = groove.height() / 2;
        p.setPen(QColor(116, 156, 218));
        p.setBrush(Qt::white);
        p.drawRoundedRect(groove, radius, radius);
        QRectF fill = groove;
        fill.setWidth(std::clamp(m_filled(), 0.0, groove.width()));
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(90, 140, 215));
        p.drawRoundedRect(fill, radius, radius);
    }

private:
    std::function<double()> m_filled;
};

class Thumb : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter p(this);
        p.setRenderHint(QPainter::Antialiasing);
        const QRectF knob = QRectF(rect()).adjusted(1, 1, -1, -1);
        QLinearGradient shade(knob.topLeft(), knob.bottomLeft());
        shade.setColorAt(0, QColor(255, 255, 255));
        shade.setColorAt(1, QColor(200, 220, 245));
        p.setPen(QPen(QColor(50, 90, 160), 1));
        p.setBrush(shade);
        p.drawRoundedRect(knob, 3, 3);
        p.setPen(QColor(50, 90, 160));
        const qreal cx = knob.center().x();
        for (int i = -1; i <= 1; ++i)
            p.drawLine(QPointF(cx + 3 * i, knob.top() + 7), QPointF(cx + 3 * i, knob.bottom() - 7));
    }
};

} // namespace

frmSelector::frmSelector(frmControls& controls, DrawState& state, QWidget* parent)
    : PopupPanel(QStringLiteral("frmSelector"), parent), m_controls(controls), m_state(state)
{
    const int barLeft = kMargin + kStep + 6;
    for (int k = 0; k < 2; ++k) {
        auto* b = new QToolButton(this);
        b->setObjectName(QStringLiteral("imgMinPlus(%1)").arg(k));
        b->setIcon(MinusPlusIcon(k));
        b->setIconSize(QSize(14, 14));
        b->setAutoRaise(true);
        b->setAutoRepeat(true);
        b->setToolTip(k ? tr("One more") : tr("One less"));
        b->setGeometry(k ? barLeft + kBarWidth + 6 : kMargin, kMargin, kStep, kStep);
        connect(b, &QToolButton::clicked, this, [this, k] { imgMinPlus_Click(k); });
        m_step[k] = b;
    }
    m_bar = new Track([this] { return m_thumbLeft + kBlockWidth / 2.0 - m_bar->x(); }, this);
    m_bar->setObjectName(QStringLiteral("ScrollBar"));
    m_bar->setGeometry(barLeft, kMargin + (kBlockHeight - kBarHeight) / 2, kBarWidth, kBarHeight);
    m_bar->installEventFilter(this);
    m_block = new Thumb(this);
    m_block->setObjectName(QStringLiteral("ScrollBlock"));
    m_block->setCursor(Qt::SizeHorCursor);
    m_block->installEventFilter(this);
    m_readout = new QLabel(this);
    m_readout->setObjectName(QStringLiteral("lblValue"));
    m_readout->setAlignment(Qt::AlignCenter);
    m_readout->setStyleSheet(QStringLiteral("QLabel { background: white; border: 1px solid rgb(116,156,218); "
                                            "font-weight: bold; }"));
    m_readout->setGeometry(barLeft + kBarWidth + 6 + kStep + 6, kMargin, kReadoutWidth, kStep);
    setFixedSize(m_readout->geometry().right() + 1 + kMargin, kHeight);
    setFocusPolicy(Qt::StrongFocus);
    m_thumbLeft = thumbMinimum();
    placeBlock();
}

double frmSelector::thumbMinimum() const
{
    return m_bar->x();
}

double frmSelector::thumbMaximum() const
{
    return m_bar->x() + m_bar->width() - kBlockWidth;
}

QString frmSelector::readout() const
{
    return m_readout->text();
}

void frmSelector::Open(int index, const QWidget* anchor)
{
    if (index < 0 || index > 15)
        return;
    m_index = index;
    m_dragging = false;
    const int lo = SelectorMinimum(index), hi = SelectorMaximum(index);
    const double value = ClampSelectorValue(index, m_state.SelectorValues[index].Value);
    m_thumbLeft = SliderLeft(value, m_bar->x(), m_bar->width(), kBlockWidth, lo, hi);
    placeBlock();
    m_readout->setText(m_state.SelectorValues[index].Caption);
    m_step[0]->setToolTip(tr("One less (smallest %1)").arg(lo));
    m_step[1]->setToolTip(tr("One more (largest %1)").arg(hi));
    if (anchor)
        popUpUnder(anchor);
    else
        show();
}

void frmSelector::placeBlock()
{
    m_block->setGeometry(I4(m_thumbLeft), kMargin, kBlockWidth, kBlockHeight);
    m_bar->update();
}

void frmSelector::CalcPos()
{
    const int i = m_index;
    const double v = SliderValue(m_thumbLeft, m_bar->x(), m_bar->width(), kBlockWidth, SelectorMinimum(i),
                                 SelectorMaximum(i));
    const QString caption = SelectorCaption(i, v);
    m_controls.SetSelectorCaption(i, caption);
    m_readout->setText(caption);
    m_state.SelectorValues[i].Value = v;
    if (i == 7)
        m_controls.ApplyTextSize();
}

void frmSelector::setThumbLeft(double left)
{
    m_thumbLeft = std::clamp(left, thumbMinimum(), thumbMaximum());
    placeBlock();
    CalcPos();
}

void frmSelector::imgMinPlus_Click(int k)
{
    const int lo = SelectorMinimum(m_index), hi = SelectorMaximum(m_index);
    // One whole value per step, from the value the caption shows.
    const int shown = I2(m_state.SelectorValues[m_index].Value);
    const int next = std::clamp(shown + (k == 1 ? 1 : -1), lo, hi);
    setThumbLeft(SliderLeft(next, m_bar->x(), m_bar->width(), kBlockWidth, lo, hi));
}

void frmSelector::ScrollBar_MouseDown(double x)
{
    setThumbLeft(x - kBlockWidth / 2.0);
}

bool frmSelector::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if ((watched != m_block && watched != m_bar) ||
        (type != QEvent::MouseButtonPress && type != QEvent::MouseMove && type != QEvent::MouseButtonRelease))
        return PopupPanel::eventFilter(watched, event);
    auto* e = static_cast<QMouseEvent*>(event);
    // The pointer in the panel's coordinates, where the thumb's left is kept.
    const double x = static_cast<QWidget*>(watched)->x() + e->position().x();
    switch (type) {
    case QEvent::MouseButtonPress:
        if (e->button() != Qt::LeftButton)
            return false;
        if (watched == m_bar) {
            ScrollBar_MouseDown(x);
            // The thumb follows on from where it jumped to.
            m_grip = kBlockWidth / 2.0;
        } else {
            m_grip = e->position().x();
        }
        m_dragging = true;
        return true;
    case QEvent::MouseMove:
        if (!m_dragging)
            return false;
        setThumbLeft(x - m_grip);
        return true;
    case QEvent::MouseButtonRelease:
        m_dragging = false;
        return true;
    default:
        return false;
    }
}

void frmSelector::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Down:
        imgMinPlus_Click(0);
        break;
    case Qt::Key_Right:
    case Qt::Key_Up:
        imgMinPlus_Click(1);
        break;
    case Qt::Key_Home:
        setThumbLeft(thumbMinimum());
        break;
    case Qt::Key_End:
        setThumbLeft(thumbMaximum());
        break;
    case Qt::Key_Escape:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        m_controls.UnClickButton();
        break;
    default:
        PopupPanel::keyPressEvent(event);
    }
}

void frmSelector::wheelEvent(QWheelEvent* event)
{
    const int dy = event->angleDelta().y();
    if (dy != 0)
        imgMinPlus_Click(dy > 0 ? 1 : 0);
    event->accept();
}

} // namespace velunta
