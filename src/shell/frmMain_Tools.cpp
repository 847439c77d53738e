// Tool selection, and the main window as the host of documents and tools: pointer
// and key events of the views go through here into the tool engine, each inside the
// guard that keeps a fault from ending the program.

#include "shell/frmMain.h"

#include "core/Faults.h"
#include "core/Numbers.h"
#include "document/frmPaint.h"
#include "tools/PointerPipeline.h"
#include "tools/Selection.h"
#include "tools/frmControls.h"

#include <QCheckBox>
#include <QCursor>
#include <QLabel>
#include <QMenu>
#include <QTimer>
#include <QToolButton>

namespace velunta {

void frmMain::SelectTool(int tool)
{
    if (tool < 0 || tool >= kToolCount)
        return;
    m_state.LastTool = m_state.CurrentTool;
    m_controls->ShowPanel(tool);
    m_tools[m_state.CurrentTool]->setChecked(false);
    m_state.CurrentTool = tool;
    m_tools[tool]->setChecked(true);
    if (frmPaint* form = activeDocument()) {
        form->setPointerShape(tool == kToolPointer ? kPointerArrow : tool);
        if (tool != kToolText)
            ClearTextState(form->doc); // text not applied is dropped with the tool
    }
}

void frmMain::Cmd_Click(int index)
{
    frmPaint* form = activeDocument();
    // Choosing Select Area with a selection up sets the float down where it stands: its
    // marquee is the anchor of the next drag, and what it covers is taken anew.
    if (index == kToolSelectArea && form && form->doc.SelectArea.Visible) {
        form->doc.SelectionLifted = false;
        form->doc.LastSelectionLeft = I2(form->doc.SelectArea.Left);
        form->doc.LastSelectionTop = I2(form->doc.SelectArea.Top);
    }
    if (index == kToolText)
        m_controls->ShowFontPreview();
    // Leaving the text tool with the pointer button applies the text.
    if (index == kToolPointer && m_state.CurrentTool == kToolText && form)
        ApplyText();
    if (index == kToolZoom && form)
        m_controls->SetZoomOption(form->doc.ZoomFactor);
    bool cursorPanel = false;
    if (index == kToolPointer && form && form->doc.SelectArea.Visible) {
        SetBlendText(m_state.SelectionBlend >= 1 && m_state.SelectionBlend <= 255
                         ? QString::number(qint64(Int(m_state.SelectionBlend / 2.55)))
                         : QStringLiteral("50"));
        cursorPanel = true;
    }
    ShowCursorPanel(cursorPanel);
    SelectTool(index);
    m_state.NoUndoNextStroke = 0;
    if (index == kToolPointer && m_state.TransparentSelection && m_state.TransparencyColor != m_previewKey)
        refreshSelectionPreview();
    // A tool change ends the time of a paste, in which strokes record no undo steps.
    m_undo.UndoDisabled = false;
}

void frmMain::Cmd_DblClick(int index)
{
    frmPaint* form = activeDocument();
    if (index == kToolPointer && form && form->doc.SelectArea.Visible) {
        DropSelection(form->doc);
        ShowCursorPanel(false);
        ValidateMenus();
    }
}

void frmMain::ShowImageContextMenu(Document& doc)
{
    auto showContextEntries = [this](bool visible) {
        const std::span<const MenuRow> rows = MenuRows();
        for (size_t i = 0; i < rows.size(); ++i)
            if (rows[i].flags & kContextOnly)
                m_rowActions[i]->setVisible(visible);
    };
    showContextEntries(true);
    ValidateMenus();
    menu(MenuId::Image)->exec(QCursor::pos());
    showContextEntries(false);
}

void frmMain::PrepUndo()
{
    if (frmPaint* form = activeDocument())
        velunta::PrepUndo(m_undo, form->doc);
    // The first picture in the ring gives Undo somewhere to go.
    SetUndoEnabled(m_undoEnabled);
}

void frmMain::SetCoordsText(const QString& text)
{
    m_lblCoords->setText(text);
}
void frmMain::SetAreaText(const QString& text)
{
    m_lblArea->setText(text);
}
void frmMain::SetZoomText(const QString& text)
{
    m_controls->SetZoomText(text);
}
void frmMain::ClearZoomOptions()
{
    m_controls->SetZoomOption(-1);
}
void frmMain::ShowCursorPanel(bool visible)
{
    m_state.CursorPanelVisible = visible;
    m_controls->ShowCursorPanel(visible);
}
void frmMain::SetBlendText(const QString& text)
{
    m_controls->SetBlendText(text);
}

bool frmMain::ToggleSnapGrid()
{
    m_chkSnapGrid->click();
    return m_chkSnapGrid->isChecked();
}

void frmMain::ShowPickedColor(Color c)
{
    m_controls->ShowPickedColor(c);
}

void frmMain::ShowTransparencyColor(Color c)
{
    m_controls->SetTransparencySwatch(c);
}

void frmMain::ShowReplaceColor(int index, Color c)
{
    m_controls->SetReplaceSwatch(index, c);
}

void frmMain::SetAngleText(const QString& text, int alignment)
{
    m_controls->SetAngleText(text, alignment);
}

void frmMain::PaintAreaMouseDown(frmPaint& form, int button, int shift, float x, float y)
{
    guarded("PaintArea_MouseDown", [&] { PaintArea_MouseDown(m_ctx, form.doc, button, shift, x, y); });
}

void frmMain::PaintAreaMouseMove(frmPaint& form, int button, int shift, float x, float y)
{
    guarded("PaintArea_MouseMove", [&] { PaintArea_MouseMove(m_ctx, form.doc, button, shift, x, y); });
}

void frmMain::PaintAreaMouseUp(frmPaint& form, int button, int shift, float x, float y)
{
    // A fault in the middle of a stroke still ends the stroke.
    if (!Guarded("PaintArea_MouseUp", [&] { PaintArea_MouseUp(m_ctx, form.doc, button, shift, x, y); }))
        form.doc.Drawing = false;
}

void frmMain::FormKeyDown(frmPaint& form, int keyCode, int shift)
{
    guarded("Form_KeyDown", [&] { Form_KeyDown(m_ctx, form.doc, keyCode, shift); });
}

void frmMain::FormKeyUp(frmPaint& form, int keyCode, int shift)
{
    guarded("Form_KeyUp", [&] { Form_KeyUp(m_ctx, form.doc, keyCode, shift); });
}

void frmMain::FormTerminated(frmPaint& form)
{
    if (QWidget* sw = form.parentWidget())
        sw->setProperty("closing", true);
    // The menus fall back once the window has gone.
    QTimer::singleShot(0, this, [this] { ValidateMenus(); });
}

void frmMain::SetImageSizeText(const QString& text)
{
    m_lblImgSize->setText(text);
}

void frmMain::ZoomChanged(frmPaint& form)
{
    m_controls->SetZoomText(NumberText(form.doc.ZoomFactor) + QStringLiteral("%"));
}

void frmMain::documentActivated(QMdiSubWindow*)
{
    frmPaint* form = activeDocument();
    if (!form)
        return;
    m_controls->SetZoomOption(-1);
    form->Form_Activate(m_state.ShowCrossLines, GuideLinesColor, GuideLineStyle);
    form->setPointerShape(m_state.CurrentTool == kToolPointer ? kPointerArrow : m_state.CurrentTool);
    SetImageSizeText(QString::number(form->doc.Buffer.ScaleWidth()) + QStringLiteral(" x ") +
                     QString::number(form->doc.Buffer.ScaleHeight()));
    ZoomChanged(*form);
    ValidateMenus();
}

} // namespace velunta
