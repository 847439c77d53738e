#include "imageops/frmRotate.h"

#include "core/Numbers.h"
#include "core/Prompt.h"
#include "imageops/CanvasOps.h"
#include "widgets/ButtonLooks.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace velunta {

frmRotate::frmRotate(int lastDivisor, Prompt& prompt, QWidget* parent) : QDialog(parent), m_prompt(prompt)
{
    setObjectName(QStringLiteral("frmRotate"));
    setWindowTitle(tr("Rotate"));
    setMinimumWidth(320);
    auto* layout = new QVBoxLayout(this);
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(tr("Angle:"), this));
    m_angle = new QLineEdit(this);
    m_angle->setObjectName(QStringLiteral("TxtAngle"));
    m_angle->setMaximumWidth(80);
    row->addWidget(m_angle);
    row->addWidget(new QLabel(tr("degrees (1 to 360)"), this));
    row->addStretch(1);
    layout->addLayout(row);

    auto* buttons = new QDialogButtonBox(this);
    AddDialogButton(buttons, tr("OK"), QDialogButtonBox::AcceptRole, QStringLiteral("Command1"));
    AddDialogButton(buttons, tr("Cancel"), QDialogButtonBox::RejectRole, QStringLiteral("Command2"));
    connect(buttons, &QDialogButtonBox::accepted, this, &frmRotate::Command1_Click);
    connect(buttons, &QDialogButtonBox::rejected, this, [this] {
        m_divisor = -1;
        reject();
    });
    layout->addWidget(buttons);

    if (lastDivisor > 0)
        m_angle->setText(NumberText(360.0 / (2 * lastDivisor)));
    m_angle->selectAll();
}

void frmRotate::Command1_Click()
{
    const int divisor = RotateDivisorOf(Val(m_angle->text()));
    if (divisor < 0) {
        m_prompt.MsgBox(tr("invallid angle"), vbOKOnly, tr("Rotate"));
        m_angle->setFocus();
        return;
    }
    m_divisor = divisor;
    accept();
}

} // namespace velunta
