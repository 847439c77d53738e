// The button's pointer and key state machine: press, release and the click, the
// hover that follows the pointer, the keys, the access key and the default button.

#include "widgets/zolButton.h"

#include "core/InputCodes.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QTimer>

namespace velunta {

namespace {

bool IsArrow(int key)
{
    return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
}

} // namespace

// Clicks --------------------------------------------------------------------------

void zolButton::click()
{
    if (!isEnabled())
        return;
    m_lastButton = 1;
    runClick();
}

void zolButton::runClick()
{
    if (!isEnabled())
        return;
    if (m_lastButton == 1 && m_mode > 0) {
        // An option that is on stays on, and its click raises nothing.
        if (m_mode == 2 && isChecked())
            return;
        setValue(!isChecked());
    }
    QPointer<zolButton> guard(this);
    Q_EMIT Click();
    if (guard)
        Q_EMIT clicked(isChecked());
}

void zolButton::nextCheckState()
{
    // Reached through QAbstractButton::click() only: the same rules as a click here.
    m_lastButton = 1;
    if (m_mode == 2 && isChecked())
        return;
    if (m_mode > 0)
        setValue(!isChecked());
    Q_EMIT Click();
}

// Pointer -------------------------------------------------------------------------

bool zolButton::hitButton(const QPoint& pos) const
{
    if (!rect().contains(pos))
        return false;
    return m_shape < 4 || m_outer.contains(pos);
}

bool zolButton::pointerInside() const
{
    return QApplication::widgetAt(QCursor::pos()) == this;
}

void zolButton::startHover()
{
    // A disabled button takes no pointer.
    if (!isEnabled())
        return;
    m_stateFlags |= kInsideBit;
    m_hoverActive = true;
    m_delayFlag = false;
    if (QApplication::mouseButtons() & Qt::LeftButton)
        m_mouseHeld = true;
    m_hoverTimer->start();
    redraw();
    Q_EMIT MouseOnButton(true);
}

void zolButton::hoverTick()
{
    if (!m_hoverActive || pointerInside())
        return;
    endHover();
}

void zolButton::endHover()
{
    m_hoverTimer->stop();
    m_stateFlags &= ~kInsideBit;
    m_hoverActive = false;
    m_delayFlag = false;
    m_mouseHeld = false;
    redraw();
    Q_EMIT MouseOnButton(false);
}

void zolButton::pressCycle(const QPointF& pos, Qt::KeyboardModifiers mods)
{
    m_lastButton = 1;
    m_stateFlags |= kDownBit;
    m_mouseHeld = true;
    m_delayFlag = false;
    setDown(true);
    redraw();
    Q_EMIT MouseDown(1, ShiftCode(mods), float(pos.x()), float(pos.y()));
}

void zolButton::mousePressEvent(QMouseEvent* event)
{
    const int button = ButtonCode(event->button());
    const QPointF pos = event->position();
    if (!hitButton(pos.toPoint())) {
        event->ignore();
        return;
    }
    event->accept();
    if (event->button() == Qt::LeftButton) {
        pressCycle(pos, event->modifiers());
        return;
    }
    m_lastButton = button;
    Q_EMIT MouseDown(button, ShiftCode(event->modifiers()), float(pos.x()), float(pos.y()));
}

void zolButton::mouseReleaseEvent(QMouseEvent* event)
{
    const int button = ButtonCode(event->button());
    const QPointF pos = event->position();
    m_mouseHeld = false;
    bool clicks = false;
    if (event->button() == Qt::LeftButton) {
        clicks = (m_stateFlags & kDownBit) && hitButton(pos.toPoint());
        m_stateFlags &= ~kDownBit;
        m_delayFlag = false;
        setDown(false);
        // Always redrawn: a check or option button let go outside would keep its pressed look.
        redraw();
    }
    event->accept();
    QPointer<zolButton> guard(this);
    Q_EMIT MouseUp(button, ShiftCode(event->modifiers()), float(pos.x()), float(pos.y()));
    if (!guard)
        return;
    m_lastButton = button;
    if (clicks)
        runClick();
}

void zolButton::mouseMoveEvent(QMouseEvent* event)
{
    const QPointF pos = event->position();
    if (!m_hoverActive && hitButton(pos.toPoint()) &&
        QApplication::widgetAt(event->globalPosition().toPoint()) == this)
        startHover();
    event->accept();
    Q_EMIT MouseMove(ButtonsCode(event->buttons()), ShiftCode(event->modifiers()), float(pos.x()),
                     float(pos.y()));
}

void zolButton::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (!hitButton(event->position().toPoint())) {
        event->ignore();
        return;
    }
    event->accept();
    QPointer<zolButton> guard(this);
    Q_EMIT DoubleClick(m_lastButton);
    // The second press of a double click is a press too, so a quick double click on a
    // command runs it twice, as two single clicks would.
    if (guard && event->button() == Qt::LeftButton)
        pressCycle(event->position(), event->modifiers());
}

void zolButton::enterEvent(QEnterEvent* event)
{
    QAbstractButton::enterEvent(event);
    if (!m_hoverActive && hitButton(event->position().toPoint()))
        startHover();
}

void zolButton::leaveEvent(QEvent* event)
{
    QAbstractButton::leaveEvent(event);
    hoverTick();
}

// Keys ------------------------------------------------------------------------------

void zolButton::keyPressEvent(QKeyEvent* event)
{
    const int key = event->key();
    const int code = KeyCodeOf(*event);
    const int shift = ShiftCode(event->modifiers());
    if (event->isAutoRepeat() && key == Qt::Key_Space) {
        event->accept();
        return;
    }
    QPointer<zolButton> guard(this);
    Q_EMIT KeyDown(code, shift);
    if (!guard)
        return;
    if (IsArrow(key)) {
        event->accept();
        const bool forward = key == Qt::Key_Right || key == Qt::Key_Down;
        if (m_mode == 2 && m_inGroup) {
            // The choice moves to the next option; its key-up selects it.
            const QList<zolButton*> group = OptionGroup(m_groupContainer);
            const int at = group.indexOf(this);
            for (int step = 1; step < group.size(); ++step) {
                zolButton* next = group[(at + (forward ? step : group.size() - step)) % group.size()];
                if (next && next->isEnabled() && next->isVisible()) {
                    next->setFocus(Qt::TabFocusReason);
                    break;
                }
            }
        } else if (QWidget* container = parentWidget()) {
            QCoreApplication::postEvent(container, new QKeyEvent(QEvent::KeyPress, key, event->modifiers()));
        }
        return;
    }
    if (key == Qt::Key_Space) {
        event->accept();
        if (!(m_stateFlags & kDownBit)) {
            m_stateFlags |= kDownBit | kInsideBit;
            m_mouseHeld = true;
            setDown(true);
            redraw();
            if (!m_hoverTimer->isActive())
                m_stateFlags &= ~kInsideBit;
        }
        Q_EMIT KeyPress(32);
        return;
    }
    if ((key == Qt::Key_Return || key == Qt::Key_Enter) && m_mode == 0) {
        event->accept();
        Q_EMIT KeyPress(13);
        if (guard) {
            m_lastButton = 1;
            runClick();
        }
        return;
    }
    if (!event->text().isEmpty())
        Q_EMIT KeyPress(event->text().at(0).unicode());
    event->ignore();
}

void zolButton::keyReleaseEvent(QKeyEvent* event)
{
    const int key = event->key();
    if (event->isAutoRepeat()) {
        event->accept();
        return;
    }
    QPointer<zolButton> guard(this);
    Q_EMIT KeyUp(KeyCodeOf(*event), ShiftCode(event->modifiers()));
    if (!guard)
        return;
    if (key == Qt::Key_Space) {
        event->accept();
        if (m_stateFlags & kDownBit) {
            m_stateFlags &= ~kDownBit;
            m_mouseHeld = false;
            setDown(false);
            m_lastButton = 1;
            redraw();
            runClick();
        }
        return;
    }
    if (IsArrow(key)) {
        event->accept();
        if (m_mode == 2 && !isChecked()) {
            m_lastButton = 1;
            runClick();
        }
        return;
    }
    if (key == Qt::Key_Shift) {
        event->accept();
        return;
    }
    event->ignore();
}

void zolButton::focusInEvent(QFocusEvent* event)
{
    QWidget::focusInEvent(event);
    redraw();
}

void zolButton::focusOutEvent(QFocusEvent* event)
{
    QWidget::focusOutEvent(event);
    // A Space held while the focus goes elsewhere never comes up here.
    if ((m_stateFlags & kDownBit) && !(QApplication::mouseButtons() & Qt::LeftButton)) {
        m_stateFlags &= ~kDownBit;
        m_mouseHeld = false;
        setDown(false);
    }
    redraw();
}

// Events ----------------------------------------------------------------------------

bool zolButton::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::Shortcut:
        // The access key clicks at once, like a left click; check and option buttons
        // don't answer Enter or Escape.
        if (static_cast<QShortcutEvent*>(event)->isAmbiguous()) {
            setFocus(Qt::ShortcutFocusReason);
        } else {
            m_lastButton = 1;
            runClick();
        }
        return true;
    case QEvent::ToolTipChange:
        updateText();
        break;
    case QEvent::ParentAboutToChange:
        if (m_inGroup)
            leaveGroup();
        if (QWidget* w = window(); w && w != this)
            w->removeEventFilter(this);
        break;
    case QEvent::ParentChange:
        if (m_mode == 2)
            joinGroup();
        if (m_default)
            setDefault(true);
        redraw();
        break;
    default:
        break;
    }
    return QAbstractButton::event(event);
}

bool zolButton::eventFilter(QObject* watched, QEvent* event)
{
    // The default button's window: an Enter nobody took clicks it.
    if (watched == window() && event->type() == QEvent::KeyPress && m_default) {
        auto* key = static_cast<QKeyEvent*>(event);
        if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) && m_mode == 0 && isVisible() &&
            isEnabled()) {
            m_lastButton = 1;
            runClick();
            return true;
        }
    }
    return QAbstractButton::eventFilter(watched, event);
}

void zolButton::changeEvent(QEvent* event)
{
    switch (event->type()) {
    case QEvent::EnabledChange:
        if (!isEnabled()) {
            m_stateFlags &= ~(kDownBit | kInsideBit);
            m_hoverActive = false;
            m_mouseHeld = false;
            m_hoverTimer->stop();
            setDown(false);
        }
        redraw();
        break;
    case QEvent::PaletteChange:
    case QEvent::FontChange:
    case QEvent::StyleChange:
        // The container's colour is taken over where it shows.
        m_dirty = true;
        update();
        break;
    default:
        break;
    }
    QAbstractButton::changeEvent(event);
}

} // namespace velunta
