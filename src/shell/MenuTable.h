#pragma once
// The menus and the command toolbar as tables. Each menu entry is one row: its
// object name, caption, shortcut, handler, the rule that enables it, and whether Easy
// Mode hides it or it shows only in the picture's context menu. The menu builder,
// ValidateMenus and KidsMode all read these rows, so an entry is described once.
//
// Code names an entry by MenuId (and its index in a control array such as
// Greyscale(3)), so a wrong name fails to compile. A row without a handler is a
// command not built yet: it stands in its menu, disabled. To build one, write the
// handler on frmMain and put it in the row:
//
//     {MenuId::FlipHorizontal, -1, MenuId::Image, "FlipHorizontal", "Flip &Horizontal", MenuRule::Document,
//      &frmMain::FlipHorizontal_Click},
//
// The rows are in frmMain_MenuTable.cpp.

#include <QKeySequence>

#include <cstdint>
#include <span>

namespace velunta {

class frmMain;

// clang-format off
enum class MenuId : std::uint16_t {
    None, // the menu bar itself, as the parent of the top menus
    // File
    File, NewImage, Open, OpenThumbnailview, Save, SaveAs, mnuProperties, split021, mnuExport, mnuExportJPG,
    mnuExportGif, mnuExportBMP, mnuExportBMPOptions, mnuExportPNG, mnuImport, Imports, split022, mnuPrint,
    split033, mnuSelTwain, mnuAcquire, split034, Close, niks025, mnuMrud, split035, Exit,
    // Edit
    Edit, Undo, UndoResize, mnuundorevert, split020, Cut, Copy, Paste, split023, PasteSpecial, split024,
    SelectAll, ClearSelection, niks002, mnuCopyTo, mnuPasteFrom, mnucopyIrfanview, Redo,
    // Image
    Image, mnuImgUndo, split036, mnuImgCut, mnuImgCopy, mnuImgPaste, mnugrabmask, split038, FlipHorizontal,
    FlipVertical, mnurotate, mnurotates, split050, mnuDoBright, mnuDoDark, InvertImage, mnugrayscale, split052,
    mnuBlendIt, mnuPasteBlend, split003, mnuTexturefill, mnuPicFrames, mnuBorders, split039, mnuimageeffect,
    mnuImgeffects, split051, ImageSize, mnuEraseImage, EraseImage,
    // Tools
    mnuTools, mnuBezier, mnuPolygons, niks052, mnudetailedit, mnucolordepth, mnuBright, mnuDark, niks036,
    mnusymbols, niks037, mnuwallpaper,
    // Effects
    Filters, mnuEffectBrowser, GreyScalemenu, Greyscale, mnuReverseBlendH, mnuReverseBlendH1, mnuReverseBlendV,
    mnuReverseBlendV1, split060,
    // Extra
    mnuextra, mnuextra1, mnuextra2, mnuextra3, split070, mnuWindowAutoSizePosition, mnuKidsMode,
    mnuextraplugin, mnuextraplugins, mnuStepUndo,
    // View
    mnuView, mnuZoom, mnuZooms, split080, mnuShowGrid, menuExGridSnap, menuExGridSetup, niks12, mnuGuideLines,
    mnuGuideLinecolor, mnuGuideLineStyle, mnuGuideLineStyles, niks7, mnufitbigimages, mnumaximizeonopen,
    mnustartblankpage, split081, mnuHideToolbar,
    // Window
    Window, ArrHorizontal, ArrVertival, Cascade, split045, mnuClose, split046,
    // Help
    Help, mnuhelp,
};
// clang-format on

// When an entry (or a toolbar button) is enabled, besides being built.
enum class MenuRule : std::uint8_t {
    Always,      // whenever built
    Document,    // a picture is open and active
    Selection,   // ... and its selection shows
    Clipboard,   // ... and the clipboard holds a picture
    UndoRing,    // ... and a stroke has started (Edit > Undo)
    UndoFile,    // ... and temp/undo.bmp exists (Undo Resize)
    AnyDocument, // any picture is open (the Window menu's arrangements)
    OwnCode,     // its command enables it (after a load or a save); off without a picture
    RecentFile,  // the recent-file list shows the entries that hold a path
};

enum MenuFlag : std::uint8_t {
    kCheckable = 1,     // toggles its own mark
    kEasyHidden = 2,    // hidden in Easy Mode
    kContextOnly = 4,   // shows only in the picture's context menu
    kHidden = 8,        // hidden until its command shows it
    kShowWithRule = 16, // shown only while its rule holds (Grab Selection/mask)
};

// A command on frmMain: plain, or given the entry's index in its control array.
struct MenuHandler {
    using Plain = void (frmMain::*)();
    using Indexed = void (frmMain::*)(int);
    constexpr MenuHandler() = default;
    constexpr MenuHandler(Plain f) : plain(f) {}
    constexpr MenuHandler(Indexed f) : indexed(f) {}
    constexpr explicit operator bool() const { return plain || indexed; }
    Plain plain = nullptr;
    Indexed indexed = nullptr;
};

enum class MenuKind : std::uint8_t { Command, Separator, Submenu };

struct MenuRow {
    MenuId id;
    int index;           // the index in a control array (Greyscale(3)), -1 for a single entry
    MenuId menu;         // the menu it stands in
    const char* name;    // the object name without the index
    const char* caption; // as the menu shows it; nullptr for a separator
    MenuRule rule = MenuRule::Document;
    MenuHandler handler = {};
    std::uint8_t flags = 0;
    QKeySequence::StandardKey shortcut = QKeySequence::UnknownKey;
    MenuKind kind = MenuKind::Command;
};

// One button of the command toolbar, CmdCommands(index).
struct ToolbarRow {
    MenuRule rule;
    MenuHandler handler = {};
    bool easyHidden = false;
};

} // namespace velunta
