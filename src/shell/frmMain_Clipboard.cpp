// The Edit menu's selection and clipboard commands, their copies on the Image menu
// and the toolbar, and the floating selection's transparent and blend options.

#include "shell/frmMain.h"

#include "document/ImageCommand.h"
#include "document/frmPaint.h"
#include "tools/Selection.h"
#include "tools/frmControls.h"

#include <QApplication>
#include <QClipboard>
#include <QMdiSubWindow>
#include <QMimeData>
#include <QTimer>

namespace velunta {

QImage frmMain::clipboardPicture() const
{
    const QMimeData* data = QApplication::clipboard()->mimeData();
    if (!data || !data->hasImage())
        return QImage();
    return qvariant_cast<QImage>(data->imageData()).convertToFormat(QImage::Format_RGB32);
}

void frmMain::Copy_Click()
{
    frmPaint* form = activeDocument();
    if (!form || !form->doc.SelectArea.Visible)
        return;
    // The picture only: the marquee is no part of it.
    QApplication::clipboard()->setImage(form->doc.BufferSelected.Image().copy());
    ValidateMenus();
}

void frmMain::Cut_Click()
{
    frmPaint* form = activeDocument();
    if (!form || !form->doc.SelectArea.Visible)
        return;
    RunImageCommand(*this, {.name = "Cut"}, [&](ImageCommand& c) {
        c.doc().SelectionLifted = false;
        QApplication::clipboard()->setImage(c.target().Image().copy());
        FillSelection(c.doc(), m_state.BackColor);
        DropSelection(c.doc());
    });
    ShowCursorPanel(false);
    ValidateMenus();
}

void frmMain::ClearSelection_Click()
{
    frmPaint* form = activeDocument();
    if (!form || !form->doc.SelectArea.Visible)
        return;
    RunImageCommand(*this, {.name = "ClearSelection"}, [&](ImageCommand& c) {
        FillSelection(c.doc(), m_state.BackColor);
        c.doc().SelectArea.Visible = false;
        c.doc().FloatOriginal = QImage();
        c.doc().invalidateView();
    });
    ShowCursorPanel(false);
    ValidateMenus();
}

void frmMain::Paste_Click()
{
    PastePicture(clipboardPicture());
}

void frmMain::PastePicture(const QImage& picture, const QImage& stamp)
{
    if (!activeDocument() || picture.isNull())
        return;
    // A float still up lands where it stands first; the new one replaces it.
    RunImageCommand(*this, {.name = "Paste", .wholePicture = true}, [&](ImageCommand& c) {
        PlaceFloat(c.doc(), picture);
        if (!stamp.isNull())
            LetStampShowThrough(c.doc(), stamp);
    });
    // Strokes on the pasted float record no undo steps until the next tool change.
    m_undo.UndoDisabled = true;
    ValidateMenus();
}

void frmMain::PasteSpecial_Click()
{
    const QImage picture = clipboardPicture();
    if (picture.isNull())
        return;
    frmPaint* form = createDocument();
    try {
        form->doc.CreatePicture(picture.width() + 2, picture.height() + 2, 0xFFFFFF);
        form->doc.Buffer.setImage(picture);
    } catch (const AllocationError&) {
        form->closeWithoutQuestion();
        throw;
    }
    form->doc.Name = QStringLiteral("Untitled");
    form->doc.SetCaption(QStringLiteral("Untitled"));
    showDocument(form, false);
}

void frmMain::mnugrabmask_Click()
{
    Cmd_Click(kToolPointer);
}

void frmMain::SelectAll_Click()
{
    frmPaint* form = activeDocument();
    if (!form)
        return;
    SelectAll(form->doc);
    ValidateMenus();
}

bool frmMain::PreviewSelectionOptions(bool transparent, Color key, bool blend, int ratio)
{
    frmPaint* form = activeDocument();
    if (!form || !form->doc.SelectArea.Visible)
        return false;
    // The preview keeps the float's own pixels to come back to: no undo step of its own.
    bool done = false;
    RunImageCommand(*this, {.name = "selection options", .progress = true, .undo = false},
                    [&](ImageCommand& c) {
                        done = PreviewFloat(c.doc(), transparent, key, blend, ratio, c.progressFn());
                        return done;
                    });
    return done;
}

void frmMain::ApplyToSelection()
{
    if (frmPaint* form = activeDocument())
        KeepFloatPreview(form->doc);
}

void frmMain::CancelSelectionOptions()
{
    if (frmPaint* form = activeDocument())
        CancelFloatPreview(form->doc);
}

void frmMain::wireSelectionOptions()
{
    frmControls& c = *m_controls;
    // The float's options preview at once; Apply keeps the preview, Cancel drops it.
    auto uncheck = [&c] { c.ClearSelectionOptions(); };
    // Both end with the area read-out at "0 x 0".
    registerOperation(op::ApplySelection, [this, uncheck] {
        ApplyToSelection();
        uncheck();
        SetAreaText(QStringLiteral("0 x 0"));
    });
    registerOperation(op::CancelSelection, [this, uncheck] {
        CancelSelectionOptions();
        uncheck();
        SetAreaText(QStringLiteral("0 x 0"));
    });
    // The check boxes run the preview themselves, on and off alike (below).
    c.setOperationAvailable(op::BlendThePic, true);
    c.setOperationAvailable(op::DoTransparent, true);
    connect(&c, &frmControls::selectionOptionsChanged, this,
            [this] { guarded("selection option", [&] { refreshSelectionPreview(); }); });
    connect(&c, &frmControls::selectionBlendChanged, this, [this] {
        if (m_state.BlendSelection)
            guarded("selection blend", [&] { refreshSelectionPreview(); });
    });
    // Picking the key colour goes through the colour picker.
    connect(&c, &frmControls::transparencyPickRequested, this, [this] {
        QTimer::singleShot(0, this, [this] { guarded("Cmd_Click", [&] { Cmd_Click(kToolColorPicker); }); });
    });
}

void frmMain::refreshSelectionPreview()
{
    frmPaint* form = activeDocument();
    if (!form || !form->doc.SelectArea.Visible)
        return;
    m_previewKey = m_state.TransparencyColor;
    if (!m_state.BlendSelection && !m_state.TransparentSelection) {
        CancelSelectionOptions();
        return;
    }
    PreviewSelectionOptions(m_state.TransparentSelection, m_state.TransparencyColor, m_state.BlendSelection,
                            m_state.SelectionBlend);
}

void frmMain::RemoveSelection()
{
    frmPaint* form = activeDocument();
    if (!form)
        return;
    DropSelection(form->doc);
    ShowCursorPanel(false);
    SetAreaText(QStringLiteral("0 x 0"));
    ValidateMenus();
}

} // namespace velunta
