// The text tool's panel operations: apply the typed text to the picture, or drop it.

#include "shell/frmMain.h"

#include "document/TextBox.h"
#include "document/frmPaint.h"
#include "tools/Text.h"
#include "tools/frmControls.h"

namespace velunta {

void frmMain::wireText()
{
    // The panel's font, style and size reach an open text box at once.
    connect(m_controls, &frmControls::textFontChanged, this, [this] {
        guarded("text font", [&] {
            frmPaint* form = activeDocument();
            if (!form)
                return;
            Document& doc = form->doc;
            TextBoxState& box = doc.textBox;
            box.FontName = m_state.FontName;
            box.Bold = m_state.FontStyle.contains(QLatin1String("Bold"));
            box.Italic = m_state.FontStyle.contains(QLatin1String("Italic"));
            box.FontSize = m_state.SelectorValues[7].Value * doc.GetZoomFactor() / 100;
            UpdateTextbox(doc);
            if (doc.viewWindow)
                doc.viewWindow->textBoxChanged();
        });
    });
}

void frmMain::ApplyText()
{
    if (frmPaint* form = activeDocument())
        guarded("ApplyText", [&] { velunta::ApplyText(m_ctx, form->doc); });
}

void frmMain::CancelText()
{
    if (frmPaint* form = activeDocument())
        guarded("CancelText", [&] { velunta::CancelText(form->doc); });
}

} // namespace velunta
