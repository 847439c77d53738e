// The colour strip in the main window: the working colours reach the documents and
// the tool panels from here, and the strip's palette can be laid on the picture.

#include "shell/frmMain.h"

#include "core/Prompt.h"
#include "document/ImageCommand.h"
#include "document/TextBox.h"
#include "document/frmPaint.h"
#include "shell/Services.h"
#include "tools/frmControls.h"
#include "widgets/ColorMath.h"
#include "widgets/ColorStrip.h"

#include <QApplication>
#include <QDir>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

namespace velunta {

void frmMain::wireColors()
{
    auto* layout = new QVBoxLayout(m_rightBar);
    layout->setContentsMargins(0, 0, 0, 0);
    // A short window scrolls the strip rather than squeezing it.
    auto* scroll = new QScrollArea(m_rightBar);
    scroll->setObjectName(QStringLiteral("ColorsBg"));
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_colorStrip = new ColorStrip(m_state.ForeColor, m_state.BackColor, m_state.SelIndex);
    scroll->setWidget(m_colorStrip);
    // On the bar's colour.
    scroll->viewport()->setAutoFillBackground(false);
    m_colorStrip->setAutoFillBackground(false);
    scroll->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    scroll->setFixedWidth(m_colorStrip->sizeHint().width() + scroll->verticalScrollBar()->sizeHint().width());
    layout->addWidget(scroll);

    m_colorStrip->setUserColorsFile(m_services.AppFolder + QStringLiteral("UserColors.ini"));
    m_colorStrip->LoadUserColors();
    connect(m_colorStrip, &ColorStrip::colorsChanged, this, [this] {
        ApplyColors();
        if (m_controls)
            m_controls->ColorsChanged();
    });
    connect(m_colorStrip, &ColorStrip::reduceToPaletteRequested, this,
            [this] { guarded("ChangePalette", [this] { ChangePalette(); }); });
    connect(m_colorStrip, &ColorStrip::userColorsNotSaved, this,
            [this](const QString& path, const QString& why) {
                m_services.prompt.MsgBox(tr("Your colours could not be saved in\n%1\n\n%2\n\n"
                                            "They stay until Velunta is closed.")
                                             .arg(QDir::toNativeSeparators(path), why),
                                         vbExclamation, QStringLiteral("Velunta"));
            });
    ApplyColors();
}

void frmMain::ColorsChanged()
{
    // Someone else (the colour picker, say) changed the draw state: the strip shows it,
    // and its signal brings the documents and panels along.
    if (m_colorStrip)
        m_colorStrip->refresh();
    else if (m_controls)
        m_controls->ColorsChanged();
    // A new key colour picked for a transparent float shows at once; while the picker is
    // still down on the picture it waits, so the pick doesn't read its own preview.
    if (m_state.TransparentSelection && m_state.TransparencyColor != m_previewKey &&
        m_state.CurrentTool != kToolColorPicker)
        guarded("selection transparency", [&] { refreshSelectionPreview(); });
}

void frmMain::ApplyColors()
{
    if (frmPaint* form = activeDocument()) {
        form->doc.Buffer.ForeColor = m_state.ForeColor;
        // An open text box shows the new colours at once, before its text is applied.
        SetTextBoxColors(form->doc, m_state.ForeColor, m_state.BackColor);
    }
}

void frmMain::SetColorBars()
{
    m_colorStrip->SetColorBars();
}

void frmMain::SelColor_MouseDown(int index, int button)
{
    m_colorStrip->SelColor_MouseDown(index, button);
}

int frmMain::GetSelectedColor() const
{
    return m_colorStrip->GetSelectedColor();
}

void frmMain::ChangePalette()
{
    // Only the undo ring keeps the old colours: the resize undo file is left alone, so
    // "Undo Resize" still brings back the picture before the resize.
    RunImageCommand(*this, {.name = "ChangePalette"},
                    [&](ImageCommand& c) { ReduceToPalette(c.target().Image(), m_colorStrip->palette()); });
}

} // namespace velunta
