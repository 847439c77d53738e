// The one-click filters: grey, brighter and darker on the Image menu and the toolbar,
// the coloured ambient lights of Effects > Ambient Light, and the Effects menu's
// enabling. Each runs on the floating selection while one shows, else on the picture,
// as one undo step that Esc can stop.

#include "shell/frmMain.h"

#include "core/SettingsStore.h"
#include "document/ImageCommand.h"
#include "effects/frmEffectsBrowser.h"
#include "effects/fx/FxOnPicture.h"
#include "shell/Services.h"

namespace velunta {

namespace {

// FxOnPicture's modes as the Image menu uses them.
constexpr int kGrey = 0, kBrighter = 1, kDarker = 2;

void runFxOnPicture(CommandHost& host, const char* name, int mode)
{
    // Stopped half way, the picture keeps what is done: a change all the same.
    RunImageCommand(host, {.name = name, .progress = true},
                    [mode](ImageCommand& c) { FxOnPicture(c.target(), mode, 0, 0, c.progressFn()); });
}

} // namespace

void frmMain::Greyscale_Click(int index)
{
    const AmbientPreset* preset = AmbientPresetAt(index);
    if (!preset)
        return; // a separator
    RunImageCommand(*this, {.name = "Greyscale", .progress = true},
                    [preset](ImageCommand& c) { ApplyAmbientPreset(c.target(), *preset, c.progressFn()); });
}

void frmMain::mnugrayscale_Click()
{
    runFxOnPicture(*this, "mnugrayscale", kGrey);
}

void frmMain::mnuDoBright_Click()
{
    runFxOnPicture(*this, "mnuDoBright", kBrighter);
}

void frmMain::mnuDoDark_Click()
{
    runFxOnPicture(*this, "mnuDoDark", kDarker);
}

void frmMain::Filters_Click()
{
    // As the menu opens: its commands, and the brightness and contrast dialogs of the
    // Tools menu, need a picture.
    const bool document = activeDocument() != nullptr;
    const std::span<const MenuRow> rows = MenuRows();
    for (size_t i = 0; i < rows.size(); ++i)
        if (rows[i].menu == MenuId::Filters && rows[i].kind == MenuKind::Command)
            enableRow(i, document);
    enable(MenuId::mnuBright, document);
    enable(MenuId::mnuDark, document);
}

void frmMain::mnuEffectBrowser_Click()
{
    // The browser works on copies; the command takes its one undo step only when the
    // result is written back.
    ImageCommand command(*this, {.name = "mnuEffectBrowser"});
    if (!command)
        return;
    if (!m_effectsBrowser)
        m_effectsBrowser = std::make_shared<EffectsBrowserMemory>();
    frmEffectsBrowser dialog(command, m_services.settings, m_services.prompt, *m_effectsBrowser, this);
    dialog.exec();
}

} // namespace velunta
