// Picture frames and borders around the picture, or around the floating selection
// while one shows.

#include "shell/frmMain.h"

#include "document/ImageCommand.h"
#include "imageops/frmBorders.h"
#include "imageops/frmPictureFrames.h"
#include "shell/Services.h"

namespace velunta {

void frmMain::mnuPicFrames_Click()
{
    ImageCommand command(*this, {.name = "mnuPicFrames"});
    if (!command)
        return;
    frmPictureFrames dialog(frameSettings, command.target().Image(), this);
    const bool ok = dialog.exec() == QDialog::Accepted;
    if (dialog.wantsBorders()) {
        mnuBorders_Click();
        return;
    }
    if (!ok)
        return;
    const FrameSettings frame = frameSettings;
    command.run([&](ImageCommand& c) { DrawFrame(c.target(), frame); });
}

void frmMain::mnuBorders_Click()
{
    ImageCommand command(*this, {.name = "mnuBorders"});
    if (!command)
        return;
    frmBorders dialog(borderSettings, BuiltInBrushes(m_services.AppFolder), command.target().Image(),
                      m_state.ForeColor, m_services.prompt, this);
    dialog.exec();
    if (!dialog.BorderApply())
        return;
    Surface texture;
    texture.setImage(dialog.brush());
    const BorderSettings border = borderSettings;
    const Color drawing = m_state.ForeColor;
    command.run(
        [&](ImageCommand& c) { DrawBorder(c.target(), texture, border.style, border.effect, drawing); });
}

} // namespace velunta
