// The tool option strip and the main window: the strip reaches the active document
// through here, asks for the commands its buttons stand for by name, and sets the
// zoom and the selection of the document.

#include "shell/frmMain.h"

#include "document/frmPaint.h"
#include "shell/Services.h"
#include "tools/frmControls.h"

#include <QAction>

#include <algorithm>

namespace velunta {

void frmMain::registerOperation(const QString& name, const std::function<void()>& handler)
{
    m_operations.insert(name, handler);
    m_controls->setOperationAvailable(name, true);
}

void frmMain::wireControls()
{
    frmControls& c = *m_controls;
    c.setPrompt(&m_services.prompt);
    c.setDocumentSource([this]() -> Document* {
        frmPaint* form = activeDocument();
        return form ? &form->doc : nullptr;
    });

    // The buttons that open a command of the menus work once that command is built.
    for (const QString& name : c.operationNames())
        if (m_actions.contains(name))
            c.setOperationAvailable(name, isBuilt(name));
    connect(&c, &frmControls::operationRequested, this, [this](const QString& name) {
        guarded("frmControls operation", [&] {
            if (m_operations.contains(name))
                m_operations.value(name)();
            else if (m_actions.contains(name) && isBuilt(name))
                action(name)->trigger();
        });
    });
    registerOperation(op::Replacecolors, [this] { Replacecolors(); });
    registerOperation(op::CancelReplace, [this] { CancelReplace(); });
    registerOperation(op::ApplyText, [this] { ApplyText(); });
    registerOperation(op::CancelText, [this] { CancelText(); });

    // The zoom options show the zoom in force afterwards, or none without a document.
    auto zoomTo = [this](frmPaint* form, double zoom) {
        if (form && zoom > 0)
            form->PreDefZoom(zoom);
        m_controls->SetZoomOption(form ? form->doc.ZoomFactor : -1);
    };
    connect(&c, &frmControls::zoomRequested, this, [this, zoomTo](double zoom) {
        guarded("optZoomss_Click", [&] { zoomTo(activeDocument(), zoom); });
    });

    connect(&c, &frmControls::fitWindowRequested, this, [this, zoomTo] {
        guarded("cmdFitWindow_Click", [&] {
            frmPaint* form = activeDocument();
            if (!form || form->doc.Buffer.ScaleWidth() <= 0)
                return;
            // The picture's width fills the window's width; a tiny picture stops at the
            // zoom tool's largest step.
            zoomTo(form, std::min<double>(form->doc.ZoomLimit,
                                          double(form->width()) / form->doc.Buffer.ScaleWidth() * 100));
        });
    });

    connect(&c, &frmControls::removeAreaRequested, this,
            [this] { guarded("cmdRemoveArea_Click", [&] { RemoveSelection(); }); });
    // A click on the panel's tool icon chooses its tool again, as its button does.
    connect(&c, &frmControls::toolIconClicked, this,
            [this](int tool) { guarded("ToolIcon_Click", [&] { Cmd_Click(tool); }); });
}

} // namespace velunta
