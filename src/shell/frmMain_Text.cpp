// The text tool's panel operations: apply the typed text to the picture, or drop it.

#include "shell/frmMain.h"

#include "document/frmPaint.h"
#include "tools/Text.h"

namespace velunta {

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
