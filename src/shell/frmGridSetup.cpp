#include "shell/frmGridSetup.h"

#include "core/Numbers.h"
#include "core/Prompt.h"
#include "core/SettingsStore.h"
#include "widgets/ButtonLooks.h"
#include "widgets/frmColor.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QVBoxLayout>

namespace velunta {

frmGridSetup::frmGridSetup(const GridSettings& settings, Prompt& prompt, SettingsStore& store,
                           QWidget* parent)
    : QDialog(parent), m_prompt(prompt), m_store(store)
{
    setObjectName(QStringLiteral("frmGridSetup"));
    setWindowTitle(tr("Grid SetUp"));
    auto* layout = new QVBoxLayout(this);
    auto* grid = new QGridLayout;
    const QStringList captions = {tr("Width:"), tr("Height:")};
    const int steps[2] = {settings.GridX < 1 ? 10 : settings.GridX, settings.GridY < 1 ? 10 : settings.GridY};
    for (int i = 0; i < 2; ++i) {
        grid->addWidget(new QLabel(captions[i], this), i, 0);
        m_text[i] = new QLineEdit(QString::number(steps[i]), this);
        m_text[i]->setObjectName(QStringLiteral("txtGrid(%1)").arg(i));
        m_text[i]->setMaximumWidth(60);
        grid->addWidget(m_text[i], i, 1);
        // The spin half of the pair: its arrows step the number.
        m_bar[i] = new QSpinBox(this);
        m_bar[i]->setObjectName(QStringLiteral("VScroll1(%1)").arg(i));
        m_bar[i]->setRange(1, 500);
        m_bar[i]->setValue(steps[i]);
        m_bar[i]->setButtonSymbols(QSpinBox::UpDownArrows);
        m_bar[i]->setFixedWidth(22);
        m_bar[i]->setStyleSheet(QStringLiteral("QSpinBox { color: transparent; background: transparent; }"));
        grid->addWidget(m_bar[i], i, 2);
        grid->addWidget(new QLabel(tr("pixels"), this), i, 3);
        connect(m_text[i], &QLineEdit::textChanged, this, [this, i] { textChanged(i); });
        connect(m_bar[i], &QSpinBox::valueChanged, this, [this, i] { barChanged(i); });
    }
    layout->addLayout(grid);
    m_snap = new QCheckBox(tr("Snap On"), this);
    m_snap->setObjectName(QStringLiteral("chkSnap"));
    m_snap->setChecked(settings.SnapToGrid);
    layout->addWidget(m_snap);
    m_constrain = new QCheckBox(tr("Same Width and Height"), this);
    m_constrain->setObjectName(QStringLiteral("Constrain"));
    m_constrain->setChecked(settings.Constrain);
    connect(m_constrain, &QCheckBox::clicked, this, &frmGridSetup::constrainClicked);
    layout->addWidget(m_constrain);

    auto* colourRow = new QHBoxLayout;
    colourRow->addWidget(new QLabel(tr("Color:"), this));
    m_colour = new QLabel(this);
    m_colour->setObjectName(QStringLiteral("lblGridcolor"));
    m_colour->setFixedSize(40, 20);
    colourRow->addWidget(m_colour);
    auto* choose = new zolButton(tr("Choose..."), this);
    choose->setObjectName(QStringLiteral("Command3"));
    DialogLook(choose);
    connect(choose, &zolButton::Click, this, &frmGridSetup::ChooseColour);
    colourRow->addWidget(choose);
    colourRow->addStretch(1);
    layout->addLayout(colourRow);
    m_gridColour = settings.GridColor > 0 ? settings.GridColor : RGB(240, 240, 240);
    showColour();

    auto* buttons = new QHBoxLayout;
    const QStringList names = {tr("Apply"), tr("Cancel"), tr("Save Grid and Snap Settings")};
    for (int i = 0; i < 3; ++i) {
        auto* b = new zolButton(names[i], this);
        b->setObjectName(QStringLiteral("Command1(%1)").arg(i));
        DialogLook(b);
        buttons->addWidget(b);
        if (i == 0) {
            b->setDefault(true);
            connect(b, &zolButton::Click, this, &QDialog::accept);
        } else if (i == 1) {
            connect(b, &zolButton::Click, this, &QDialog::reject);
        } else {
            connect(b, &zolButton::Click, this, &frmGridSetup::SaveSettings);
        }
    }
    layout->addLayout(buttons);
    if (settings.Constrain)
        constrainClicked();
}

void frmGridSetup::textChanged(int i)
{
    if (m_syncing)
        return;
    // A number reaches its spin only when it is above 0.
    const double v = Val(m_text[i]->text());
    if (v > 0 && v <= m_bar[i]->maximum())
        m_bar[i]->setValue(int(v));
}

void frmGridSetup::barChanged(int i)
{
    m_syncing = true;
    const QString text = QString::number(m_bar[i]->value());
    m_text[i]->setText(text);
    if (m_constrain->isChecked()) {
        m_text[1 - i]->setText(text);
        m_bar[1 - i]->setValue(m_bar[i]->value());
    }
    m_syncing = false;
}

void frmGridSetup::constrainClicked()
{
    const bool on = m_constrain->isChecked();
    if (on)
        barChanged(0);
    m_text[1]->setEnabled(!on);
    m_bar[1]->setEnabled(!on);
}

void frmGridSetup::showColour()
{
    m_colour->setStyleSheet(QStringLiteral("QLabel { background: %1; border: 1px solid black; }")
                                .arg(ToQColor(m_gridColour).name()));
}

void frmGridSetup::ChooseColour()
{
    const Color c = frmColor::pick(m_gridColour, this);
    if (c >= 0) {
        m_gridColour = c;
        showColour();
        Q_EMIT gridColorChosen(c);
    }
}

GridSettings frmGridSetup::settings() const
{
    GridSettings s;
    s.GridX = m_bar[0]->value();
    s.GridY = m_bar[1]->value();
    s.SnapToGrid = m_snap->isChecked();
    s.GridColor = m_gridColour;
    s.Constrain = m_constrain->isChecked();
    return s;
}

void frmGridSetup::SaveSettings()
{
    const GridSettings s = settings();
    m_store.SaveSetting(QStringLiteral("GridX"), s.GridX);
    m_store.SaveSetting(QStringLiteral("GridY"), s.GridY);
    m_store.SaveSetting(QStringLiteral("SnapToGrid"),
                        s.SnapToGrid ? QStringLiteral("True") : QStringLiteral("False"));
    m_store.SaveSetting(QStringLiteral("GridColor"), s.GridColor);
    m_store.sync();
    m_prompt.MsgBox(tr("Grid/Snap settings stored. These settings will be used next time you run Velunta."),
                    vbInformation, tr("Save Grid Settings"));
}

} // namespace velunta
