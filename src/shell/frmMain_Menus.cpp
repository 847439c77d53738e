// The menu bar: every entry with its name and caption. Entries start disabled; the
// file of each menu wires the commands that are built, and only those can be enabled.

#include "shell/frmMain.h"

#include "core/Faults.h"

#include <QMenu>
#include <QMenuBar>

namespace velunta {

QAction* frmMain::addAction(QMenu* menu, const QString& name, const QString& caption, bool checkable)
{
    QAction* a = menu->addAction(caption);
    a->setObjectName(name);
    a->setCheckable(checkable);
    a->setEnabled(false);
    m_actions.insert(name, a);
    return a;
}

void frmMain::addSeparator(QMenu* menu, const QString& name)
{
    QAction* a = menu->addSeparator();
    a->setObjectName(name);
    m_actions.insert(name, a);
}

QMenu* frmMain::addSubmenu(QMenu* menu, const QString& name, const QString& caption)
{
    QMenu* sub = menu->addMenu(caption);
    sub->setObjectName(name);
    sub->menuAction()->setObjectName(name);
    sub->menuAction()->setEnabled(false);
    m_menus.insert(name, sub);
    m_actions.insert(name, sub->menuAction());
    return sub;
}

QAction* frmMain::action(const QString& name) const
{
    return m_actions.value(name);
}
QMenu* frmMain::menu(const QString& name) const
{
    return m_menus.value(name);
}

bool frmMain::isBuilt(const QString& name) const
{
    const QAction* a = m_actions.value(name);
    return a && a->property("built").toBool();
}

void frmMain::wire(const QString& name, const std::function<void()>& handler)
{
    QAction* a = m_actions.value(name);
    Q_ASSERT_X(a, "wire", qPrintable(name));
    if (!a)
        return;
    a->setProperty("built", true);
    connect(a, &QAction::triggered, this, [this, handler, name] { guarded(qPrintable(name), handler); });
}

void frmMain::enable(const QString& name, bool on)
{
    if (QAction* a = m_actions.value(name))
        a->setEnabled(on && (a->property("built").toBool() || a->menu()));
}

void frmMain::showEntry(const QString& name, bool visible)
{
    if (QAction* a = m_actions.value(name))
        a->setVisible(visible);
}

void frmMain::guarded(const char* step, const std::function<void()>& fn)
{
    Guarded(step, fn);
}

void frmMain::buildMenus()
{
    QMenuBar* bar = menuBar();
    auto top = [&](const QString& name, const QString& caption) {
        QMenu* m = bar->addMenu(caption);
        m->setObjectName(name);
        m->menuAction()->setObjectName(name);
        m_menus.insert(name, m);
        m_actions.insert(name, m->menuAction());
        return m;
    };

    QMenu* file = top(QStringLiteral("File"), QStringLiteral("&File"));
    addAction(file, QStringLiteral("NewImage"), QStringLiteral("&New..."))->setShortcut(QKeySequence::New);
    addAction(file, QStringLiteral("Open"), QStringLiteral("&Open..."))->setShortcut(QKeySequence::Open);
    addAction(file, QStringLiteral("OpenThumbnailview"), QStringLiteral("Open in thumbnail-view..."));
    addAction(file, QStringLiteral("Save"), QStringLiteral("&Save"))->setShortcut(QKeySequence::Save);
    addAction(file, QStringLiteral("SaveAs"), QStringLiteral("Save &As..."));
    addAction(file, QStringLiteral("mnuProperties"), QStringLiteral("Properties"));
    addSeparator(file, QStringLiteral("split021"));
    QMenu* exp = addSubmenu(file, QStringLiteral("mnuExport"), QStringLiteral("Export"));
    addAction(exp, QStringLiteral("mnuExportJPG"), QStringLiteral("Export to JPG..."));
    addAction(exp, QStringLiteral("mnuExportGif"), QStringLiteral("Export to GIF..."));
    addAction(exp, QStringLiteral("mnuExportBMP"), QStringLiteral("Export to BMP..."));
    addAction(exp, QStringLiteral("mnuExportBMPOptions"),
              QStringLiteral("Export to BMP Color Depth and Dither Options..."));
    addAction(exp, QStringLiteral("mnuExportPNG"), QStringLiteral("Export to PNG..."));
    QMenu* imp = addSubmenu(file, QStringLiteral("mnuImport"), QStringLiteral("Import"));
    const QStringList imports = {QStringLiteral("WMF"), QStringLiteral("ICO"), QStringLiteral("DIB"),
                                 QStringLiteral("EMF"), QStringLiteral("RLE"), QStringLiteral("PNG")};
    for (int i = 0; i < imports.size(); ++i)
        addAction(imp, QStringLiteral("Imports(%1)").arg(i), imports[i]);
    addSeparator(file, QStringLiteral("split022"));
    addAction(file, QStringLiteral("mnuPrint"), QStringLiteral("Print..."))->setShortcut(QKeySequence::Print);
    addSeparator(file, QStringLiteral("split033"));
    addAction(file, QStringLiteral("mnuSelTwain"), QStringLiteral("Select TWAIN Source..."));
    addAction(file, QStringLiteral("mnuAcquire"), QStringLiteral("Acquire Image..."));
    addSeparator(file, QStringLiteral("split034"));
    addAction(file, QStringLiteral("Close"), QStringLiteral("&Close Image"));
    addSeparator(file, QStringLiteral("niks025"));
    for (int i = 0; i < 4; ++i) {
        QAction* a = addAction(file, QStringLiteral("mnuMrud(%1)").arg(i), QString());
        a->setVisible(false);
    }
    action(QStringLiteral("niks025"))->setVisible(false);
    addSeparator(file, QStringLiteral("split035"));
    addAction(file, QStringLiteral("Exit"), QStringLiteral("E&xit"));

    QMenu* edit = top(QStringLiteral("Edit"), QStringLiteral("&Edit"));
    addAction(edit, QStringLiteral("Undo"), QStringLiteral("&Undo"))->setShortcut(QKeySequence::Undo);
    addAction(edit, QStringLiteral("UndoResize"), QStringLiteral("Undo &Resize"));
    addAction(edit, QStringLiteral("mnuundorevert"), QStringLiteral("Undo to last saved image"));
    addSeparator(edit, QStringLiteral("split020"));
    addAction(edit, QStringLiteral("Cut"), QStringLiteral("&Cut"))->setShortcut(QKeySequence::Cut);
    addAction(edit, QStringLiteral("Copy"), QStringLiteral("C&opy"))->setShortcut(QKeySequence::Copy);
    addAction(edit, QStringLiteral("Paste"), QStringLiteral("&Paste"))->setShortcut(QKeySequence::Paste);
    addSeparator(edit, QStringLiteral("split023"));
    addAction(edit, QStringLiteral("PasteSpecial"), QStringLiteral("Pa&ste as New Image"));
    addSeparator(edit, QStringLiteral("split024"));
    addAction(edit, QStringLiteral("SelectAll"), QStringLiteral("Select &All"))
        ->setShortcut(QKeySequence::SelectAll);
    addAction(edit, QStringLiteral("ClearSelection"), QStringLiteral("C&lear Selection"));
    addSeparator(edit, QStringLiteral("niks002"));
    addAction(edit, QStringLiteral("mnuCopyTo"), QStringLiteral("Copy To..."));
    addAction(edit, QStringLiteral("mnuPasteFrom"), QStringLiteral("Paste From..."));
    addAction(edit, QStringLiteral("mnucopyIrfanview"), QStringLiteral("Copy To IrfanView"))
        ->setVisible(false);

    // The entries marked for the context menu show only when the menu pops up over a picture.
    QMenu* image = top(QStringLiteral("Image"), QStringLiteral("&Image"));
    addAction(image, QStringLiteral("mnuImgUndo"), QStringLiteral("Undo"));
    addSeparator(image, QStringLiteral("split036"));
    addAction(image, QStringLiteral("mnuImgCut"), QStringLiteral("Cut"));
    addAction(image, QStringLiteral("mnuImgCopy"), QStringLiteral("Copy"));
    addAction(image, QStringLiteral("mnuImgPaste"), QStringLiteral("Paste"));
    addAction(image, QStringLiteral("mnugrabmask"), QStringLiteral("Grab Selection/mask"))->setVisible(false);
    addSeparator(image, QStringLiteral("split038"));
    addAction(image, QStringLiteral("FlipHorizontal"), QStringLiteral("Flip &Horizontal"));
    addAction(image, QStringLiteral("FlipVertical"), QStringLiteral("Flip &Vertical"));
    QMenu* rotate = addSubmenu(image, QStringLiteral("mnurotate"), QStringLiteral("Rotate"));
    addAction(rotate, QStringLiteral("mnurotates(0)"), QStringLiteral("45 degrees"));
    addAction(rotate, QStringLiteral("mnurotates(1)"), QStringLiteral("90 degrees"));
    addAction(rotate, QStringLiteral("mnurotates(2)"), QStringLiteral("180 degrees"));
    addSeparator(rotate, QStringLiteral("mnurotates(3)"));
    addAction(rotate, QStringLiteral("mnurotates(4)"), QStringLiteral("Define angle..."));
    addSeparator(image, QStringLiteral("split050"));
    addAction(image, QStringLiteral("mnuDoBright"), QStringLiteral("Brighten by 10%"));
    addAction(image, QStringLiteral("mnuDoDark"), QStringLiteral("Darken by 10%"));
    addAction(image, QStringLiteral("InvertImage"), QStringLiteral("&Invert Image"));
    addAction(image, QStringLiteral("mnugrayscale"), QStringLiteral("Convert to Grayscale"));
    addSeparator(image, QStringLiteral("split052"));
    addAction(image, QStringLiteral("mnuBlendIt"), QStringLiteral("Blend Selection..."));
    addAction(image, QStringLiteral("mnuPasteBlend"), QStringLiteral("Blend Image From..."));
    addSeparator(image, QStringLiteral("split003"));
    addAction(image, QStringLiteral("mnuTexturefill"), QStringLiteral("Texture..."));
    addAction(image, QStringLiteral("mnuPicFrames"), QStringLiteral("Picture Frames..."));
    addAction(image, QStringLiteral("mnuBorders"), QStringLiteral("Borders..."));
    addSeparator(image, QStringLiteral("split039"));
    QMenu* bc =
        addSubmenu(image, QStringLiteral("mnuimageeffect"), QStringLiteral("Brightness and Contrast"));
    addAction(bc, QStringLiteral("mnuImgeffects(0)"), QStringLiteral("Brightness"));
    addAction(bc, QStringLiteral("mnuImgeffects(1)"), QStringLiteral("Contrast"));
    addSeparator(image, QStringLiteral("split051"));
    addAction(image, QStringLiteral("ImageSize"), QStringLiteral("&Resize..."));
    QMenu* erase = addSubmenu(image, QStringLiteral("mnuEraseImage"), QStringLiteral("Erase Image"));
    addAction(erase, QStringLiteral("EraseImage(0)"), QStringLiteral("White"));
    addAction(erase, QStringLiteral("EraseImage(1)"), QStringLiteral("Black"));
    addAction(erase, QStringLiteral("EraseImage(2)"), QStringLiteral("Current background color"));
    m_contextOnly = {QStringLiteral("mnuimageeffect"), QStringLiteral("split036"),
                     QStringLiteral("mnuImgCopy"),     QStringLiteral("mnuImgCut"),
                     QStringLiteral("mnuImgPaste"),    QStringLiteral("split038"),
                     QStringLiteral("split039"),       QStringLiteral("mnuImgUndo"),
                     QStringLiteral("mnuBorders"),     QStringLiteral("mnuPicFrames")};
    for (const QString& name : m_contextOnly)
        showEntry(name, false);

    QMenu* tools = top(QStringLiteral("mnuTools"), QStringLiteral("&Tools"));
    addAction(tools, QStringLiteral("mnuBezier"), QStringLiteral("Advanced &Bezier Curves..."));
    addAction(tools, QStringLiteral("mnuPolygons"), QStringLiteral("Advanced &Polygons..."));
    addSeparator(tools, QStringLiteral("niks052"));
    addAction(tools, QStringLiteral("mnudetailedit"), QStringLiteral("Detailed Editing"));
    addAction(tools, QStringLiteral("mnucolordepth"), QStringLiteral("Color Depth and Dither Control..."));
    addAction(tools, QStringLiteral("mnuBright"), QStringLiteral("Adjust Brightness..."));
    addAction(tools, QStringLiteral("mnuDark"), QStringLiteral("Adjust Contrast..."));
    addSeparator(tools, QStringLiteral("niks036"));
    addAction(tools, QStringLiteral("mnusymbols(0)"), QStringLiteral("Symbols && Stamps..."));
    addSeparator(tools, QStringLiteral("mnusymbols(1)"));
    addAction(tools, QStringLiteral("mnusymbols(2)"), QStringLiteral("Picture Frames..."));
    addAction(tools, QStringLiteral("mnusymbols(3)"), QStringLiteral("Borders..."));
    addAction(tools, QStringLiteral("mnusymbols(4)"), QStringLiteral("reserved"))->setVisible(false);
    addSeparator(tools, QStringLiteral("niks037"));
    addAction(tools, QStringLiteral("mnuwallpaper"), QStringLiteral("Set as Wallpaper"));

    QMenu* filters = top(QStringLiteral("Filters"), QStringLiteral("&Effects"));
    addAction(filters, QStringLiteral("mnuEffectBrowser"), QStringLiteral("Effects Browser..."));
    QMenu* ambient = addSubmenu(filters, QStringLiteral("GreyScalemenu"), QStringLiteral("&Ambient Light"));
    const QHash<int, QString> presets = {
        {0, QStringLiteral("&Black && White")}, {2, QStringLiteral("&Red Light")},
        {3, QStringLiteral("R&ed Dark")},       {5, QStringLiteral("&Green Light")},
        {6, QStringLiteral("Gr&een Dark")},     {8, QStringLiteral("B&lue Light")},
        {9, QStringLiteral("Bl&ue Dark")},      {11, QStringLiteral("&Yellow Light")},
        {12, QStringLiteral("Y&ellow Dark")},   {14, QStringLiteral("&Purple Light")},
        {15, QStringLiteral("P&urple Dark")},   {17, QStringLiteral("&Cyan Light")},
        {18, QStringLiteral("Cya&n Dark")},     {20, QStringLiteral("Gr&ayscale")},
        {22, QStringLiteral("Bronze")},         {23, QStringLiteral("Dusk Tone")},
        {24, QStringLiteral("City Night")}};
    for (int i = 0; i <= 24; ++i) {
        if (presets.contains(i))
            addAction(ambient, QStringLiteral("Greyscale(%1)").arg(i), presets.value(i));
        else
            addSeparator(ambient, QStringLiteral("Greyscale(%1)").arg(i));
    }
    const QStringList reverse = {QStringLiteral("Normal Soft"), QStringLiteral("Normal Medium"),
                                 QStringLiteral("Normal Hard"), QStringLiteral("Mirror"),
                                 QStringLiteral("Invert"),      QStringLiteral("Red"),
                                 QStringLiteral("Green"),       QStringLiteral("Blue")};
    QMenu* revH =
        addSubmenu(filters, QStringLiteral("mnuReverseBlendH"), QStringLiteral("Reverse Horizontal Blend"));
    QMenu* revV =
        addSubmenu(filters, QStringLiteral("mnuReverseBlendV"), QStringLiteral("Reverse Vertical Blend"));
    for (int i = 0; i < reverse.size(); ++i) {
        addAction(revH, QStringLiteral("mnuReverseBlendH1(%1)").arg(i), reverse[i]);
        addAction(revV, QStringLiteral("mnuReverseBlendV1(%1)").arg(i), reverse[i]);
    }
    addSeparator(filters, QStringLiteral("split060"));

    QMenu* extra = top(QStringLiteral("mnuextra"), QStringLiteral("E&xtra"));
    addAction(extra, QStringLiteral("mnuextra1"), QStringLiteral("Save Present Draw-Settings"));
    addAction(extra, QStringLiteral("mnuextra2"), QStringLiteral("Load Last Draw-Settings now"));
    addAction(extra, QStringLiteral("mnuextra3"), QStringLiteral("Restore all settings back to default"));
    addSeparator(extra, QStringLiteral("split070"));
    addAction(extra, QStringLiteral("mnuWindowAutoSizePosition"), QStringLiteral("Remember Size && Position"),
              true);
    addAction(extra, QStringLiteral("mnuKidsMode"), QStringLiteral("Easy Mode (Beginner)"), true);
    QMenu* plugin = addSubmenu(extra, QStringLiteral("mnuextraplugin"), QStringLiteral("Plugin"));
    for (int i = 0; i < 5; ++i)
        addAction(plugin, QStringLiteral("mnuextraplugins(%1)").arg(i), QString())->setVisible(false);

    QMenu* view = top(QStringLiteral("mnuView"), QStringLiteral("&View"));
    QMenu* zoom = addSubmenu(view, QStringLiteral("mnuZoom"), QStringLiteral("Zoom"));
    for (int z : {10, 25, 50, 75, 100, 150, 200})
        addAction(zoom, QStringLiteral("mnuZooms(%1)").arg(z), QStringLiteral("%1%").arg(z), true);
    addSeparator(zoom, QStringLiteral("mnuZooms(499)"));
    addAction(zoom, QStringLiteral("mnuZooms(500)"), QStringLiteral("Fit to Window"));
    addSeparator(view, QStringLiteral("split080"));
    addAction(view, QStringLiteral("mnuShowGrid"), QStringLiteral("Show Grid"));
    addAction(view, QStringLiteral("menuExGridSnap"), QStringLiteral("Snap to Grid"), true);
    addAction(view, QStringLiteral("menuExGridSetup"), QStringLiteral("Grid Setup..."));
    addSeparator(view, QStringLiteral("niks12"));
    addAction(view, QStringLiteral("mnuGuideLines"), QStringLiteral("Show Guidelines"), true);
    addAction(view, QStringLiteral("mnuGuideLinecolor"), QStringLiteral("Guideline Color..."));
    QMenu* styles = addSubmenu(view, QStringLiteral("mnuGuideLineStyle"), QStringLiteral("Guideline Style"));
    const QStringList styleNames = {QStringLiteral("Solid"), QStringLiteral("Dash"), QStringLiteral("Dot"),
                                    QStringLiteral("Dash Dot")};
    for (int i = 1; i <= 4; ++i)
        addAction(styles, QStringLiteral("mnuGuideLineStyles(%1)").arg(i), styleNames[i - 1], true);
    addSeparator(view, QStringLiteral("niks7"));
    addAction(view, QStringLiteral("mnufitbigimages"), QStringLiteral("Fit Big Images on Open"), true);
    addAction(view, QStringLiteral("mnumaximizeonopen"), QStringLiteral("Maximize window on Open"), true);
    addAction(view, QStringLiteral("mnustartblankpage"), QStringLiteral("Start with blank Page"), true);
    addSeparator(view, QStringLiteral("split081"));
    addAction(view, QStringLiteral("mnuHideToolbar"), QStringLiteral("Hide Toolbar"), true);

    QMenu* window = top(QStringLiteral("Window"), QStringLiteral("&Window"));
    addAction(window, QStringLiteral("ArrHorizontal"), QStringLiteral("Tile &Horizontal"));
    addAction(window, QStringLiteral("ArrVertival"), QStringLiteral("Tile &Vertical"));
    addAction(window, QStringLiteral("Cascade"), QStringLiteral("&Cascade"));
    addSeparator(window, QStringLiteral("split045"));
    addAction(window, QStringLiteral("mnuClose"), QStringLiteral("&Close"));
    addSeparator(window, QStringLiteral("split046"));

    QMenu* help = top(QStringLiteral("Help"), QStringLiteral("&Help"));
    addAction(help, QStringLiteral("mnuhelp(0)"), QStringLiteral("Manual"));
    addAction(help, QStringLiteral("mnuhelp(1)"), QStringLiteral("Mail Velunta..."));
    addSeparator(help, QStringLiteral("mnuhelp(2)"));
    addAction(help, QStringLiteral("mnuhelp(3)"),
              QStringLiteral("Check for Velunta free updates and effects..."));
    addAction(help, QStringLiteral("mnuhelp(4)"), QStringLiteral("Zolvane Discussion and Support group..."));
    addSeparator(help, QStringLiteral("mnuhelp(5)"));
    addAction(help, QStringLiteral("mnuhelp(7)"), QStringLiteral("Automatically Check for Updates"), true);
    addSeparator(help, QStringLiteral("mnuhelp(8)"));
    addAction(help, QStringLiteral("mnuhelp(9)"), QStringLiteral("&About Velunta..."));
}

} // namespace velunta
