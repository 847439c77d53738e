// The colour replacer's commands: the exact swap of one colour for another in the
// picture or the floating selection, and forgetting the picked colours.

#include "shell/frmMain.h"

#include "document/ImageCommand.h"
#include "tools/ColorPicker.h"

namespace velunta {

void frmMain::Replacecolors()
{
    const Color from = m_state.ReplaceColors[0], to = m_state.ReplaceColors[1];
    // Nothing picked, or the same colour twice: the picture stays, and so does the ring.
    if (from < 0 || to < 0 || from == to)
        return;
    RunImageCommand(*this, {.name = "Replacecolors"},
                    [&](ImageCommand& c) { return ReplaceColor(c.target(), from, to) > 0; });
}

void frmMain::CancelReplace()
{
    for (int i = 0; i < 2; ++i) {
        m_state.ReplaceColors[i] = kNoColor;
        ShowReplaceColor(i, kNoColor);
    }
}

} // namespace velunta
