// File > Print... and the toolbar's print button: the print preview of the active
// picture, from which it prints.

#include "shell/frmMain.h"

#include "document/Document.h"
#include "print/frmPrint.h"
#include "shell/Services.h"

namespace velunta {

void frmMain::mnuPrint_Click()
{
    Document* doc = ActiveDocument();
    if (!doc)
        return;
    frmPrint dialog(doc->Buffer.Image(), m_services.AppFolder, m_services.prompt, m_services.dialogs, this);
    dialog.exec();
}

} // namespace velunta
