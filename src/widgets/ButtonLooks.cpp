#include "widgets/ButtonLooks.h"

#include "widgets/zolButton.h"

#include <QDialog>

namespace velunta {

namespace {

constexpr Color kKeyBlue = RGB(206, 225, 251);
constexpr Color kKeyWarm = RGB(255, 228, 160);
constexpr Color kKeyOn = RGB(255, 214, 120);

} // namespace

void DialogLook(zolButton* b)
{
    b->setButtonStyle(7);
    b->setBackColor(kKeyBlue);
    b->setHoverBackColor(kKeyWarm);
    b->setFocusPolicy(Qt::StrongFocus);
}

void OptionLook(zolButton* b)
{
    DialogLook(b);
    // The key that is on takes the warm colour, as a chosen tool does.
    QObject::connect(b, &zolButton::toggled, b, [b](bool on) {
        b->setBackColor(on ? kKeyOn : kKeyBlue);
        b->setHoverBackColor(on ? kKeyOn : kKeyWarm);
    });
}

void BarLook(zolButton* b, int style, Color back, Color hover)
{
    b->setButtonStyle(style);
    b->setBackColor(back);
    b->setHoverBackColor(hover);
    b->setFocusPolicy(Qt::TabFocus);
}

zolButton* AddDialogButton(QDialogButtonBox* box, const QString& caption, QDialogButtonBox::ButtonRole role,
                           const QString& name)
{
    auto* b = new zolButton(caption, box);
    b->setObjectName(name);
    DialogLook(b);
    b->setMinimumWidth(80);
    box->addButton(b, role);
    if (role == QDialogButtonBox::AcceptRole)
        b->setDefault(true);
    return b;
}

QDialogButtonBox* OkCancelButtons(QDialog* dialog)
{
    auto* box = new QDialogButtonBox(dialog);
    AddDialogButton(box, QDialog::tr("OK"), QDialogButtonBox::AcceptRole, QStringLiteral("cmdOK"));
    AddDialogButton(box, QDialog::tr("Cancel"), QDialogButtonBox::RejectRole, QStringLiteral("cmdCancel"));
    QObject::connect(box, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    QObject::connect(box, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    return box;
}

} // namespace velunta
