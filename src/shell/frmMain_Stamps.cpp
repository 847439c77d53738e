// Texture Fill and Symbols & Stamps: a picture or a selection tiled with a texture,
// and the palette of stamps that land on the picture as floating selections.

#include "shell/frmMain.h"

#include "core/Numbers.h"
#include "core/SettingsStore.h"
#include "core/Surface.h"
#include "document/ImageCommand.h"
#include "document/frmPaint.h"
#include "imageops/FrmSymbols.h"
#include "imageops/FrmTextures.h"
#include "imageops/TileTexture.h"
#include "shell/Services.h"
#include "widgets/ColorStrip.h"

namespace velunta {

void frmMain::mnuTexturefill_Click()
{
    if (!activeDocument())
        return;
    const QString key = QStringLiteral("UserTextures0");
    FrmTextures dialog(m_services.AppFolder + QStringLiteral("textures/"),
                       m_services.settings.GetSetting(key), m_services.prompt, this);
    if (dialog.exec() != QDialog::Accepted || !dialog.TextureChosen)
        return;
    if (dialog.TextureFromFile)
        m_services.settings.SaveSetting(key, dialog.userTexture());
    // Lives for the command only, so the texture's memory goes with it.
    Surface PicTexture;
    PicTexture.setImage(dialog.texture());
    RunImageCommand(*this, {.name = "mnuTexturefill"},
                    [&](ImageCommand& c) { return FillWithTexture(c.target(), PicTexture); });
}

void frmMain::mnusymbols_Click(int index)
{
    if (index != 0)
        return;
    if (!m_symbols) {
        m_symbols = new FrmSymbols(m_services.AppFolder + QStringLiteral("stamps/"), m_state.ForeColor,
                                   m_state.BackColor, this);
        // The stamp floats with the pointer tool in hand, so the next drag moves it
        // into place rather than drawing on it.
        connect(m_symbols, &FrmSymbols::pasteRequested, this, [this] {
            guarded("PicFigures_DblClick", [this] {
                if (!activeDocument())
                    return;
                Cmd_Click(kToolPointer);
                // The stamp crosses the clipboard on the paper colour; it lands with the
                // picture showing round it, unless something else took the clipboard.
                const QImage pasted = clipboardPicture();
                PastePicture(pasted,
                             pasted == m_symbols->lastStampOnPaper() ? m_symbols->lastStamp() : QImage());
            });
        });
        // The stamps show on the paper colour, which the colour strip may change.
        if (m_colorStrip)
            connect(m_colorStrip, &ColorStrip::colorsChanged, m_symbols, &FrmSymbols::PaperChanged);
    }
    m_symbols->Open();
}

FrmSymbols* frmMain::symbols() const
{
    return m_symbols;
}

} // namespace velunta
