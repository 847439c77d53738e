// Which commands are available, and Easy Mode.

#include "shell/frmMain.h"

#include "document/StepHistory.h"
#include "document/frmPaint.h"
#include "shell/Services.h"
#include "tools/frmControls.h"
#include "widgets/ColorStrip.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QToolButton>

namespace velunta {

namespace {

// What the rules of the menus and the toolbar look at, taken once per validation.
struct RuleState {
    bool document = false;
    bool selection = false;
    bool clipboard = false;
    bool undoRing = false;
    bool undoFile = false;
    bool anyDocument = false;
};

// `current` is the entry's state now, which the rules of entries that are enabled by
// their own commands keep.
bool ruleHolds(MenuRule rule, const RuleState& s, bool current)
{
    switch (rule) {
    case MenuRule::Always:
        return true;
    case MenuRule::Document:
        return s.document;
    case MenuRule::Selection:
        return s.selection;
    case MenuRule::Clipboard:
        return s.clipboard;
    case MenuRule::UndoRing:
        return s.undoRing;
    case MenuRule::UndoFile:
        return s.undoFile;
    case MenuRule::AnyDocument:
        return s.anyDocument;
    case MenuRule::OwnCode:
        return s.document && current;
    case MenuRule::RecentFile:
        return current;
    }
    return false;
}

// Undo has somewhere to go: a slot of the ring holds a picture, or Undo Resize is
// pending (Undo takes it first).
bool somethingToUndo(const Document& doc, bool resizePending)
{
    return resizePending || FilledUndoSlots(doc) > 0;
}

} // namespace

void frmMain::ValidateMenus()
{
    frmPaint* form = activeDocument();
    RuleState state;
    if (form) {
        const QMimeData* clip = QApplication::clipboard()->mimeData();
        state.document = true;
        state.selection = form->doc.SelectArea.Visible;
        state.clipboard = clip && clip->hasImage();
        state.undoFile = UndoFilePending();
        state.undoRing = m_undoEnabled && undoAvailable(*form, state.undoFile);
    }
    state.anyDocument = !documents().isEmpty();
    const std::span<const MenuRow> rows = MenuRows();
    for (size_t i = 0; i < rows.size(); ++i) {
        const MenuRow& row = rows[i];
        if (row.kind == MenuKind::Separator)
            continue;
        const bool on = ruleHolds(row.rule, state, m_rowActions[i]->isEnabled());
        enableRow(i, on);
        if (row.flags & kShowWithRule)
            m_rowActions[i]->setVisible(on);
    }
    const std::span<const ToolbarRow> buttons = ToolbarRows();
    for (int i = 0; i < int(buttons.size()); ++i)
        enableCommand(i, ruleHolds(buttons[i].rule, state, false));
    if (!form) {
        m_undoEnabled = false;
        m_undo.reset();
    }
    if (m_colorStrip)
        m_colorStrip->setPaletteEnabled(form != nullptr);
    enableExternalEffects(form != nullptr);
    validateOutsideTools();
}

void frmMain::SetUndoEnabled(bool enabled)
{
    m_undoEnabled = enabled;
    frmPaint* form = activeDocument();
    const bool on = enabled && form && undoAvailable(*form, action(MenuId::UndoResize)->isEnabled());
    enable(MenuId::Undo, on);
    enable(MenuId::mnuImgUndo, on);
    enableCommand(7, on);
}

bool frmMain::undoAvailable(frmPaint& form, bool resizePending)
{
    // Step by step, the history holds the steps; the ring's slots stay empty.
    if (StepUndoOn())
        return resizePending || stepHistory(form).states() > 0;
    return somethingToUndo(form.doc, resizePending);
}

bool frmMain::UndoEnabled() const
{
    return action(MenuId::Undo)->isEnabled();
}

void frmMain::KidsMode()
{
    const bool kids = action(MenuId::mnuKidsMode)->isChecked();
    const std::span<const ToolbarRow> buttons = ToolbarRows();
    for (int i = 0; i < int(buttons.size()); ++i)
        if (buttons[i].easyHidden)
            m_commands[i]->setVisible(!kids);
    m_separators[3]->setVisible(!kids);
    for (int i = 5; i <= 11; ++i)
        m_separators[i]->setVisible(!kids);
    const std::span<const MenuRow> rows = MenuRows();
    for (size_t i = 0; i < rows.size(); ++i)
        if (rows[i].flags & kEasyHidden)
            m_rowActions[i]->setVisible(!kids);
    placeToolButtons();
    m_chkDetailEdit->setVisible(!kids);
    m_chkSnapGrid->setVisible(!kids);
    if (m_colorStrip)
        m_colorStrip->setKidsMode(kids);
    action(MenuId::menuExGridSnap)->setChecked(m_state.SnapToGrid);
}

void frmMain::mnuHideToolbar_Click()
{
    QAction* mark = action(MenuId::mnuHideToolbar);
    // The entry's own toggle has already flipped the mark.
    m_picbuttons->setVisible(!mark->isChecked());
}

} // namespace velunta
