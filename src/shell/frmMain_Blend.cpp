// Blending: the floating selection over what lies under it or over a picture from a
// file (Blend Selection..., Blend Image From..., the toolbar's Blend), and a picture
// blended with its own reflection (Effects > Reverse Horizontal / Vertical Blend).

#include "shell/frmMain.h"

#include "core/Numbers.h"
#include "document/ImageCommand.h"
#include "document/UpdateView.h"
#include "document/frmPaint.h"
#include "files/DialogAPI.h"
#include "imageops/ChosenPicture.h"
#include "imageops/Frmblend.h"
#include "shell/Services.h"
#include "tools/Selection.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>

namespace velunta {

namespace {

// A new selection of `size` at the view's visible top left, cut to the picture: the
// piece of the picture it covers floats, with the same pixels kept under it.
bool SelectForBlend(Document& doc, QSize size, Color background)
{
    const double z = doc.ZoomFactor;
    const int left = I4((doc.view.paintLeft < 0 ? -doc.view.paintLeft : 0) / z * 100);
    const int top = I4((doc.view.paintTop < 0 ? -doc.view.paintTop : 0) / z * 100);
    const Surface& buffer = doc.Buffer;
    const int w = std::min(size.width(), buffer.ScaleWidth() - left);
    const int h = std::min(size.height(), buffer.ScaleHeight() - top);
    if (w <= 0 || h <= 0)
        return false;
    for (Surface* s : {&doc.BufferSelected, &doc.SelectedBack}) {
        s->clearPicture();
        s->BackColor = background;
        s->Move(left, top, w, h);
        BitBlt(*s, 0, 0, w, h, buffer, left, top, SRCCOPY);
        s->CurrentX = buffer.CurrentX - left;
        s->CurrentY = buffer.CurrentY - top;
    }
    doc.SelectArea.Move(left * z / 100, top * z / 100, w * z / 100, h * z / 100);
    doc.SelectArea.Visible = true;
    doc.LastSelectionLeft = I2(doc.SelectArea.Left);
    doc.LastSelectionTop = I2(doc.SelectArea.Top);
    doc.SelectionLifted = true;
    doc.FloatOriginal = QImage();
    doc.invalidateView();
    return true;
}

// What imgtoblend shows for a selection: the picture under it once it floats.
QImage UnderSelection(const Document& doc)
{
    return doc.SelectionLifted ? doc.SelectedBack.Image() : doc.BufferSelected.Image();
}

void runReverseBlend(CommandHost& host, bool vertical, int index)
{
    RunImageCommand(host, {.name = vertical ? "mnuReverseBlendV1" : "mnuReverseBlendH1", .progress = true},
                    [&](ImageCommand& c) {
                        // The float's own pixels change: a preview of its options ends here.
                        c.doc().FloatOriginal = QImage();
                        return ReverseBlendPicture(c.target(), vertical, index, c.progressFn());
                    });
}

} // namespace

void frmMain::mnuBlendIt_Click()
{
    frmPaint* form = activeDocument();
    if (!form || !form->doc.SelectArea.Visible)
        return;
    Frmblend dialog(blendState, UnderSelection(form->doc), m_state.CurrentTool == kToolSelectArea,
                    m_services.prompt, m_services.dialogs, this);
    dialog.exec();
    if (blendState.BlendMode != kBlendCancelled)
        BlendThePic(dialog.blendPicture());
}

void frmMain::mnuPasteBlend_Click()
{
    frmPaint* form = activeDocument();
    if (!form)
        return;
    Document& doc = form->doc;
    const QString name = ShowOpenDialog(m_services.dialogs, tr("Open image to blend..."));
    if (name.isEmpty() || !QFileInfo::exists(name))
        return;
    const QImage picture = LoadChosenPicture(name, m_services.prompt);
    if (picture.isNull())
        return;
    // Without a selection the picture comes in as one, at its own size where the
    // picture has room.
    const bool made = !doc.SelectArea.Visible;
    if (made && !SelectForBlend(doc, picture.size(), m_state.BackColor))
        return;
    ValidateMenus();
    Frmblend dialog(blendState, UnderSelection(doc), m_state.CurrentTool == kToolSelectArea,
                    m_services.prompt, m_services.dialogs, this);
    dialog.setBlendPicture(picture);
    dialog.exec();
    if (blendState.BlendMode != kBlendCancelled) {
        BlendThePic(dialog.blendPicture());
    } else if (made) {
        // The selection made for the blend goes again; the picture never changed.
        RemoveSelection();
    }
    ValidateMenus();
}

void frmMain::BlendThePic(const QImage& picTexture)
{
    frmPaint* form = activeDocument();
    if (blendState.BlendMode == kBlendCancelled || !form || !form->doc.SelectArea.Visible)
        return;
    if (blendState.BlendMode == kBlendFromFile && picTexture.isNull())
        return;
    const bool selectionTool = m_state.CurrentTool == kToolSelectArea;
    const BlendState blend = blendState;
    RunImageCommand(*this, {.name = "BlendThePic", .progress = true}, [&](ImageCommand& c) {
        // PicTexture: the picture from the file, or what lies under the float (the undo
        // step has just made sure SelectedBack holds it).
        Surface texture;
        texture.setImage(blend.BlendMode == kBlendFromFile ? picTexture : c.doc().SelectedBack.Image());
        c.doc().FloatOriginal = QImage();
        return BlendThePicture(c.target(), texture, blend, selectionTool, c.progressFn());
    });
}

void frmMain::CmdBlend_Click()
{
    blendState.BlendMode = kBlendHorizontal;
    blendState.BlendRatio = 0x40;
    BlendThePic();
}

void frmMain::mnuReverseBlendH1_Click(int index)
{
    runReverseBlend(*this, false, index);
}

void frmMain::mnuReverseBlendV1_Click(int index)
{
    runReverseBlend(*this, true, index);
}

} // namespace velunta
