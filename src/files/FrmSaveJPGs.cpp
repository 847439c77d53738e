#include "files/FrmSaveJPGs.h"

#include "core/Numbers.h"
#include "core/Prompt.h"
#include "widgets/ButtonLooks.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace velunta {

FrmSaveJPGs::FrmSaveJPGs(int lastQuality, Prompt& prompt, QWidget* parent) : QDialog(parent), m_prompt(prompt)
{
    setObjectName(QStringLiteral("FrmSaveJPGs"));
    setWindowTitle(tr("Export as JPG"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(tr("JPG Quality                     100%=best, 80%=normal, 50%=low"), this));
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(tr("JPG Quality:"), this));
    m_text = new QLineEdit(QString::number(lastQuality > 0 ? lastQuality : 90), this);
    m_text->setObjectName(QStringLiteral("TxtJPGQuality"));
    m_text->setMaximumWidth(60);
    row->addWidget(m_text);
    row->addWidget(new QLabel(QStringLiteral("%"), this));
    row->addStretch(1);
    layout->addLayout(row);
    auto* buttons = new QDialogButtonBox(this);
    AddDialogButton(buttons, tr("OK"), QDialogButtonBox::AcceptRole, QStringLiteral("CmdOK"));
    AddDialogButton(buttons, tr("Cancel"), QDialogButtonBox::RejectRole, QStringLiteral("CmdCancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &FrmSaveJPGs::CmdOK_Click);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

void FrmSaveJPGs::CmdOK_Click()
{
    const double value = Val(m_text->text());
    // 0 passes on purpose, in spite of the message's words: the writer takes it as 90.
    if (value < 0 || value > 100) {
        m_prompt.MsgBox(tr("Invalid JPG Quality factor (valid are 1...100)."), vbExclamation,
                        tr("JPG Quality"));
        m_text->setFocus();
        return;
    }
    m_quality = I2(Val(Trim(m_text->text())));
    accept();
}

} // namespace velunta
