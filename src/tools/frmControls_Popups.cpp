// The pop-ups of the option strip: the slider under a selector's drop-down and the
// two font lists under the text panel's buttons. They float in the main window as
// its children; a press anywhere else or Esc closes them.

#include "document/DrawState.h"
#include "tools/frmControls.h"
#include "tools/frmFontStyle.h"
#include "tools/frmFonts.h"
#include "tools/frmSelector.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>

namespace velunta {

QWidget* frmControls::popupHost()
{
    return m_popupHost ? m_popupHost.data() : window();
}

frmSelector* frmControls::selector()
{
    if (!m_selector)
        m_selector = new frmSelector(*this, m_state, popupHost());
    return m_selector;
}

template <class List>
List* frmControls::pickList(QPointer<List>& list, void (frmControls::*apply)(const QString&))
{
    if (!list) {
        list = new List(popupHost());
        connect(list, &PickList::picked, this, [this, apply](const QString& text) {
            (this->*apply)(text);
            closePopups();
        });
    }
    return list;
}

frmFonts* frmControls::fonts()
{
    return pickList(m_fonts, &frmControls::SetFontName);
}

frmFontStyle* frmControls::fontStyles()
{
    return pickList(m_fontStyles, &frmControls::SetFontStyle);
}

int frmControls::droppedDown() const
{
    return m_dropped;
}

void frmControls::DrawButton(int index, bool pressed)
{
    if (index >= 0 && index < 16 && m_dropDown[index])
        m_dropDown[index]->setChecked(pressed);
}

void frmControls::ClickDropDown(int index)
{
    if (index < 0 || index > 15)
        return;
    // A selector of a panel not made yet (a key for another tool's size).
    if (!m_lblSelector[index])
        buildAll();
    if (m_dropped == index) {
        // The same drop-down again closes its slider.
        UnClickButton();
        return;
    }
    closePopups();
    m_dropped = index;
    for (int i = 0; i < 16; ++i)
        DrawButton(i, i == index);
    selector()->Open(index, m_lblSelector[index]);
    watchOutsideClicks();
}

void frmControls::UnClickButton()
{
    m_dropped = -1;
    for (int i = 0; i < 16; ++i)
        DrawButton(i, false);
    if (m_selector)
        m_selector->hide();
}

void frmControls::toggleList(PickList* list, QAbstractButton* opener, const QString& current)
{
    const bool open = list->isVisible();
    closePopups();
    if (open)
        return;
    list->setCurrentText(current);
    list->popUpUnder(opener);
    opener->setChecked(true);
    watchOutsideClicks();
}

void frmControls::ShowHideFonts()
{
    ensurePanel(12);
    toggleList(fonts(), m_cmdFont, m_state.FontName);
}

void frmControls::ShowHideFontStyle()
{
    ensurePanel(12);
    toggleList(fontStyles(), m_cmdFontStyle, m_state.FontStyle);
}

void frmControls::closePopups()
{
    UnClickButton();
    if (m_fonts)
        m_fonts->hide();
    if (m_fontStyles)
        m_fontStyles->hide();
    if (m_cmdFont) {
        m_cmdFont->setChecked(false);
        m_cmdFontStyle->setChecked(false);
    }
    if (m_watching) {
        qApp->removeEventFilter(this);
        m_watching = false;
    }
}

void frmControls::watchOutsideClicks()
{
    if (!m_watching) {
        qApp->installEventFilter(this);
        m_watching = true;
    }
}

bool frmControls::eventFilter(QObject* watched, QEvent* event)
{
    if (!m_watching)
        return QWidget::eventFilter(watched, event);
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        closePopups();
        return true;
    }
    if (event->type() != QEvent::MouseButtonPress)
        return QWidget::eventFilter(watched, event);
    auto* w = qobject_cast<QWidget*>(watched);
    if (!w)
        return false;
    auto inside = [w](const QWidget* popup) {
        return popup && popup->isVisible() && (popup == w || popup->isAncestorOf(w));
    };
    if (inside(m_selector) || inside(m_fonts) || inside(m_fontStyles))
        return false;
    // The control that opened a pop-up closes it itself, on its own click.
    const bool opener =
        (m_dropped >= 0 && (w == m_dropDown[m_dropped] || w == m_lblSelector[m_dropped])) ||
        ((m_fonts && m_fonts->isVisible()) && (w == m_cmdFont || w == m_lblFont)) ||
        ((m_fontStyles && m_fontStyles->isVisible()) && (w == m_cmdFontStyle || w == m_lblFontStyle));
    if (!opener)
        closePopups();
    return false;
}

} // namespace velunta
