// The main window as the host of picture commands: the active document, the
// selection's backup before its pixels change, the view after a change of size, and
// the busy state (wait cursor, progress strip) that every command keeps in pairs.

#include "shell/frmMain.h"

#include "document/frmPaint.h"
#include "shell/ProgressStrip.h"
#include "tools/Selection.h"

#include <QApplication>

namespace velunta {

Document* frmMain::ActiveDocument()
{
    frmPaint* form = activeDocument();
    return form ? &form->doc : nullptr;
}

void frmMain::SetSelBak()
{
    m_undo.CancelRequested = false;
    if (frmPaint* form = activeDocument())
        velunta::SetSelBak(form->doc);
}

void frmMain::PictureResized()
{
    frmPaint* form = activeDocument();
    if (!form)
        return;
    form->SizePaintArea();
    form->RealignZoom(-1, -1);
    form->invalidateView();
    SetImageSizeText(QString::number(form->doc.Buffer.ScaleWidth()) + QStringLiteral(" x ") +
                     QString::number(form->doc.Buffer.ScaleHeight()));
}

void frmMain::BeginBusy(bool progress)
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    ++m_busyDepth;
    // A command inside a long one reports through the strip already showing.
    if (progress && m_progressDepth == 0) {
        m_progressDepth = m_busyDepth;
        m_undo.CancelRequested = false;
        m_progress->begin();
    }
}

bool frmMain::StepProgress(double fraction)
{
    if (m_progressDepth == 0)
        return false;
    return m_progress->step(fraction);
}

void frmMain::EndBusy()
{
    if (m_busyDepth == 0)
        return;
    if (m_progressDepth == m_busyDepth) {
        m_progressDepth = 0;
        m_progress->end();
    }
    --m_busyDepth;
    QApplication::restoreOverrideCursor();
}

} // namespace velunta
