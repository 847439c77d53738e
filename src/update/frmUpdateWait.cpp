#include "update/frmUpdateWait.h"

#include "widgets/ButtonLooks.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

namespace velunta {

frmUpdateWait::frmUpdateWait(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmUpdateWait"));
    setWindowTitle(tr("Updates"));
    // It waits beside the program, which stays usable: painting goes on meanwhile.
    setModal(false);
    auto* layout = new QVBoxLayout(this);
    auto* label = new QLabel(tr("Checking For Updates...Please Wait..."), this);
    label->setObjectName(QStringLiteral("Label1"));
    label->setMargin(12);
    layout->addWidget(label);
    auto* buttons = new QDialogButtonBox(this);
    AddDialogButton(buttons, tr("Cancel"), QDialogButtonBox::RejectRole, QStringLiteral("cmdCancel"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    setFixedSize(sizeHint());
}

} // namespace velunta
