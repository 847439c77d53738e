// The Edit menu's undo commands.

#include "shell/frmMain.h"

#include "core/Gdi.h"
#include "document/frmPaint.h"

#include <QToolButton>

namespace velunta {

void frmMain::wireEditMenu()
{
    wire(QStringLiteral("Undo"), [this] { Undo_Click(); });
    wire(QStringLiteral("mnuImgUndo"), [this] { Undo_Click(); });
    wireCommand(7, [this] { Undo_Click(); });
}

void frmMain::Undo_Click()
{
    m_undo.UndoSuppressed = true;
    frmPaint* form = activeDocument();
    if (!form)
        return;
    Document& doc = form->doc;
    doc.SelectArea.Visible = false;
    // Slots come back in the fixed order 1, 2, 3, 4 and round, whatever was written last.
    const int filled = FilledUndoSlots(doc);
    m_undo.UndoCursor = m_undo.UndoCursor + 1;
    if (m_undo.UndoCursor > filled) {
        m_undo.UndoCursor = 1;
    }
    const Surface& slot = doc.UndoSlots[m_undo.UndoCursor - 1];
    // The copy has Buffer's size: a slot of another size shows clipped, or old pixels at the rim.
    BitBlt(doc.Buffer, 0, 0, doc.Buffer.ScaleWidth(), doc.Buffer.ScaleHeight(), slot, 0, 0, SRCCOPY);
    UpdateView(doc, doc.Buffer, 0, 0, doc.GetZoomFactor());
    form->invalidateView();
}

} // namespace velunta
