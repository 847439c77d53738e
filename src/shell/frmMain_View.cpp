// The View menu: zoom, the grid, snapping, the guidelines, and the options of how
// pictures open.

#include "shell/frmMain.h"

#include "core/SettingsStore.h"
#include "document/frmPaint.h"
#include "shell/Services.h"
#include "shell/frmGridSetup.h"
#include "tools/PointerPipeline.h"
#include "widgets/frmColor.h"

#include <QCheckBox>
#include <QMenu>

#include <cmath>

namespace velunta {

namespace {

const int kZoomEntries[] = {10, 25, 50, 75, 100, 150, 200};

} // namespace

void frmMain::mnustartblankpage_Click()
{
    StartBlankPage = action(MenuId::mnustartblankpage)->isChecked();
}

void frmMain::mnumaximizeonopen_Click()
{
    MaximizeOnOpen = action(MenuId::mnumaximizeonopen)->isChecked();
}

void frmMain::mnufitbigimages_Click()
{
    FitBigImages = action(MenuId::mnufitbigimages)->isChecked();
}

void frmMain::mnuShowGrid_Click()
{
    if (frmPaint* form = activeDocument())
        form->doc.DrawGrid(m_state.GridX, m_state.GridY, GridColor);
}

void frmMain::menuExGridSnap_Click()
{
    // The mark, the flag and the check box move together.
    m_state.SnapToGrid = action(MenuId::menuExGridSnap)->isChecked();
    m_chkSnapGrid->setChecked(m_state.SnapToGrid);
}

void frmMain::mnuGuideLines_Click()
{
    m_state.ShowCrossLines = action(MenuId::mnuGuideLines)->isChecked();
    applyGuideLines();
}

void frmMain::mnuGuideLinecolor_Click()
{
    const Color c = frmColor::pick(GuideLinesColor, this);
    if (c >= 0) {
        GuideLinesColor = c;
        applyGuideLines();
    }
}

void frmMain::mnuZooms_Click(int index)
{
    frmPaint* form = activeDocument();
    if (!form)
        return;
    if (index == 500) {
        // Fit to Window: only the width counts.
        const int width = form->doc.Buffer.ScaleWidth();
        if (width <= 0)
            return;
        form->PreDefZoom(double(form->width()) / width * 100);
    } else {
        form->PreDefZoom(index);
    }
}

void frmMain::mnuView_Click()
{
    frmPaint* form = activeDocument();
    // Only an entry whose percent is the zoom's whole part carries the mark.
    const int whole = form ? int(std::floor(form->doc.ZoomFactor)) : -1;
    for (int z : kZoomEntries)
        action(MenuId::mnuZooms, z)->setChecked(z == whole);
    for (int i = 1; i <= 4; ++i)
        action(MenuId::mnuGuideLineStyles, i)->setChecked(i == GuideLineStyle);
    action(MenuId::mnuGuideLines)->setChecked(m_state.ShowCrossLines);
    action(MenuId::menuExGridSnap)->setChecked(m_state.SnapToGrid);
}

void frmMain::mnuGuideLineStyles_Click(int index)
{
    GuideLineStyle = index;
    for (int i = 1; i <= 4; ++i)
        action(MenuId::mnuGuideLineStyles, i)->setChecked(i == index);
    // The style is kept at once, not only when the program closes.
    m_services.settings.SaveSetting(QStringLiteral("GuideLineStyle"), index);
    m_services.settings.sync();
    applyGuideLines();
}

void frmMain::applyGuideLines()
{
    if (frmPaint* form = activeDocument())
        form->Form_Activate(m_state.ShowCrossLines, GuideLinesColor, GuideLineStyle);
}

void frmMain::menuExGridSetup_Click()
{
    GridSettings before;
    before.GridX = m_state.GridX;
    before.GridY = m_state.GridY;
    before.SnapToGrid = m_state.SnapToGrid;
    before.GridColor = GridColor;
    before.Constrain = GridConstrain;
    frmGridSetup dialog(before, m_services.prompt, m_services.settings, this);
    connect(&dialog, &frmGridSetup::gridColorChosen, this, [this](Color c) { GridColor = c; });
    if (dialog.exec() != QDialog::Accepted)
        return;
    ApplyGridSettings(dialog.settings());
}

void frmMain::ApplyGridSettings(const GridSettings& after)
{
    // A shown grid is laid anew when a step or the snap changed; a colour alone waits
    // for the grid's next showing.
    const bool changed = after.GridX != m_state.GridX || after.GridY != m_state.GridY ||
                         after.SnapToGrid != m_state.SnapToGrid;
    m_state.GridX = after.GridX;
    m_state.GridY = after.GridY;
    m_state.SnapToGrid = after.SnapToGrid;
    m_chkSnapGrid->setChecked(after.SnapToGrid);
    action(MenuId::menuExGridSnap)->setChecked(after.SnapToGrid);
    GridColor = after.GridColor;
    GridConstrain = after.Constrain;
    // A shown grid is drawn again with the new steps: the first call removes the old lines.
    frmPaint* form = activeDocument();
    if (changed && form && form->doc.GridIsShown) {
        form->doc.DrawGrid(m_state.GridX, m_state.GridY, GridColor);
        form->doc.DrawGrid(m_state.GridX, m_state.GridY, GridColor);
    }
}

void frmMain::PaintAreaWheelZoom(frmPaint& form, bool in, float x, float y)
{
    guarded("Zoom by wheel", [&] { ZoomToolStep(m_ctx, form.doc, in, x, y); });
}

} // namespace velunta
