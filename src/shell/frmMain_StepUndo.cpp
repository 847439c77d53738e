// Step-by-step undo: a linear history of each document's pictures with Undo and Redo,
// instead of the four-slot ring. Off by default; Extra > "Step-by-step undo" turns it
// on and the choice is remembered.

#include "shell/frmMain.h"

#include "core/SettingsStore.h"
#include "document/StepHistory.h"
#include "document/UpdateView.h"
#include "document/frmPaint.h"
#include "shell/Services.h"
#include "tools/Selection.h"

#include <QAction>

#include <memory>
#include <vector>

namespace velunta {

// A document's memory budget for the steps it keeps beyond the picture.
constexpr std::size_t kStepBudget = std::size_t(256) << 20;

struct StepHistories {
    struct Entry {
        QPointer<frmPaint> form; // goes null when the window closes
        StepHistory history{kStepBudget};
    };
    std::vector<std::unique_ptr<Entry>> entries;

    StepHistory& of(frmPaint* form)
    {
        std::erase_if(entries, [](const std::unique_ptr<Entry>& e) { return e->form.isNull(); });
        for (const auto& e : entries)
            if (e->form == form)
                return e->history;
        entries.push_back(std::make_unique<Entry>());
        entries.back()->form = form;
        return entries.back()->history;
    }
};

StepHistory& frmMain::stepHistory(frmPaint& form)
{
    if (!m_stepHistories)
        m_stepHistories = std::make_shared<StepHistories>();
    return m_stepHistories->of(&form);
}

bool frmMain::StepUndoOn() const
{
    return action(MenuId::mnuStepUndo)->isChecked();
}

void frmMain::mnuStepUndo_Click()
{
    const bool on = StepUndoOn();
    // Either way starts afresh: the ring and the history don't share their steps.
    m_stepHistories.reset();
    action(MenuId::Redo)->setVisible(on);
    m_services.settings.SaveSetting(QStringLiteral("StepUndo"),
                                    on ? QStringLiteral("True") : QStringLiteral("False"));
    if (on)
        PrepUndo(); // the picture as it stands is the first step
}

void frmMain::Redo_Click()
{
    frmPaint* form = activeDocument();
    if (!form || !StepUndoOn())
        return;
    Document& doc = form->doc;
    DropSelection(doc);
    const QSize size(doc.Buffer.Width(), doc.Buffer.Height());
    if (!stepHistory(*form).redo(doc))
        return;
    if (size != QSize(doc.Buffer.Width(), doc.Buffer.Height()))
        PictureResized();
    UpdateView(doc, doc.Buffer, 0, 0, doc.GetZoomFactor());
    form->invalidateView();
}

} // namespace velunta
