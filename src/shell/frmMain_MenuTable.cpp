// The rows of the menu bar and of the command toolbar, in the order they show.

#include "shell/frmMain.h"

namespace velunta {

namespace {

using M = MenuId;
using R = MenuRule;
using F = frmMain;

constexpr MenuRow top(M id, const char* name, const char* caption, R rule)
{
    return {id, -1, M::None, name, caption, rule, {}, 0, QKeySequence::UnknownKey, MenuKind::Submenu};
}

constexpr MenuRow sub(M id, M menu, const char* name, const char* caption, std::uint8_t flags = 0)
{
    return {id, -1, menu, name, caption, R::Document, {}, flags, QKeySequence::UnknownKey, MenuKind::Submenu};
}

constexpr MenuRow sep(M id, M menu, const char* name, std::uint8_t flags = 0, int index = -1)
{
    return {
        id, index, menu, name, nullptr, R::Always, {}, flags, QKeySequence::UnknownKey, MenuKind::Separator};
}

// clang-format off
constexpr MenuRow kMenuRows[] = {
    top(M::File, "File", QT_TRANSLATE_NOOP("Menu", "&File"), R::Always),
    {M::NewImage, -1, M::File, "NewImage", QT_TRANSLATE_NOOP("Menu", "&New..."), R::Always, &F::NewImage_Click, 0, QKeySequence::New},
    {M::Open, -1, M::File, "Open", QT_TRANSLATE_NOOP("Menu", "&Open..."), R::Always, &F::Open_Click, 0, QKeySequence::Open},
    {M::OpenThumbnailview, -1, M::File, "OpenThumbnailview", QT_TRANSLATE_NOOP("Menu", "Open in thumbnail-view..."), R::Always, &F::OpenThumbnailview_Click},
    {M::Save, -1, M::File, "Save", QT_TRANSLATE_NOOP("Menu", "&Save"), R::Document, &F::Save_Click, 0, QKeySequence::Save},
    {M::SaveAs, -1, M::File, "SaveAs", QT_TRANSLATE_NOOP("Menu", "Save &As..."), R::Document, &F::SaveAs_Click},
    {M::mnuProperties, -1, M::File, "mnuProperties", QT_TRANSLATE_NOOP("Menu", "Properties"), R::Document, &F::mnuProperties_Click},
    sep(M::split021, M::File, "split021"),
    sub(M::mnuExport, M::File, "mnuExport", QT_TRANSLATE_NOOP("Menu", "Export"), kEasyHidden),
    {M::mnuExportJPG, -1, M::mnuExport, "mnuExportJPG", QT_TRANSLATE_NOOP("Menu", "Export to JPG..."), R::Document, &F::mnuExportJPG_Click},
    {M::mnuExportGif, -1, M::mnuExport, "mnuExportGif", QT_TRANSLATE_NOOP("Menu", "Export to GIF..."), R::Document, &F::mnuExportGif_Click},
    {M::mnuExportBMP, -1, M::mnuExport, "mnuExportBMP", QT_TRANSLATE_NOOP("Menu", "Export to BMP..."), R::Document, &F::mnuExportBMP_Click},
    {M::mnuExportBMPOptions, -1, M::mnuExport, "mnuExportBMPOptions", QT_TRANSLATE_NOOP("Menu", "Export to BMP Color Depth and Dither Options..."),
     R::Document, &F::mnuExportBMPOptions_Click},
    {M::mnuExportPNG, -1, M::mnuExport, "mnuExportPNG", QT_TRANSLATE_NOOP("Menu", "Export to PNG..."), R::Document, &F::mnuExportPNG_Click},
    // Import makes a new document, so it needs none open.
    {M::mnuImport, -1, M::File, "mnuImport", QT_TRANSLATE_NOOP("Menu", "Import"), R::Always, {}, kEasyHidden, QKeySequence::UnknownKey,
     MenuKind::Submenu},
    {M::Imports, 0, M::mnuImport, "Imports", QT_TRANSLATE_NOOP("Menu", "WMF"), R::Always, &F::Imports_Click},
    {M::Imports, 1, M::mnuImport, "Imports", QT_TRANSLATE_NOOP("Menu", "ICO"), R::Always, &F::Imports_Click},
    {M::Imports, 2, M::mnuImport, "Imports", QT_TRANSLATE_NOOP("Menu", "DIB"), R::Always, &F::Imports_Click},
    {M::Imports, 3, M::mnuImport, "Imports", QT_TRANSLATE_NOOP("Menu", "EMF"), R::Always, &F::Imports_Click},
    {M::Imports, 4, M::mnuImport, "Imports", QT_TRANSLATE_NOOP("Menu", "RLE"), R::Always, &F::Imports_Click},
    {M::Imports, 5, M::mnuImport, "Imports", QT_TRANSLATE_NOOP("Menu", "PNG"), R::Always, &F::Imports_Click},
    sep(M::split022, M::File, "split022", kEasyHidden),
    {M::mnuPrint, -1, M::File, "mnuPrint", QT_TRANSLATE_NOOP("Menu", "Print..."), R::Document, &F::mnuPrint_Click, 0, QKeySequence::Print},
    sep(M::split033, M::File, "split033", kEasyHidden),
    {M::mnuSelTwain, -1, M::File, "mnuSelTwain", QT_TRANSLATE_NOOP("Menu", "Select TWAIN Source..."), R::Always, &F::mnuSelTwain_Click,
     kEasyHidden},
    {M::mnuAcquire, -1, M::File, "mnuAcquire", QT_TRANSLATE_NOOP("Menu", "Acquire Image..."), R::Always, &F::mnuAcquire_Click, kEasyHidden},
    sep(M::split034, M::File, "split034"),
    {M::Close, -1, M::File, "Close", QT_TRANSLATE_NOOP("Menu", "&Close Image"), R::Document, &F::Close_Click},
    sep(M::niks025, M::File, "niks025", kHidden),
    {M::mnuMrud, 0, M::File, "mnuMrud", QT_TRANSLATE_NOOP("Menu", ""), R::RecentFile, &F::mnuMrud_Click, kHidden},
    {M::mnuMrud, 1, M::File, "mnuMrud", QT_TRANSLATE_NOOP("Menu", ""), R::RecentFile, &F::mnuMrud_Click, kHidden},
    {M::mnuMrud, 2, M::File, "mnuMrud", QT_TRANSLATE_NOOP("Menu", ""), R::RecentFile, &F::mnuMrud_Click, kHidden},
    {M::mnuMrud, 3, M::File, "mnuMrud", QT_TRANSLATE_NOOP("Menu", ""), R::RecentFile, &F::mnuMrud_Click, kHidden},
    sep(M::split035, M::File, "split035"),
    {M::Exit, -1, M::File, "Exit", QT_TRANSLATE_NOOP("Menu", "E&xit"), R::Always, &F::Exit_Click},

    top(M::Edit, "Edit", QT_TRANSLATE_NOOP("Menu", "&Edit"), R::Always),
    {M::Undo, -1, M::Edit, "Undo", QT_TRANSLATE_NOOP("Menu", "&Undo"), R::UndoRing, &F::Undo_Click, 0, QKeySequence::Undo},
    {M::Redo, -1, M::Edit, "Redo", QT_TRANSLATE_NOOP("Menu", "Re&do"), R::Document, &F::Redo_Click, kHidden, QKeySequence::Redo},
    {M::UndoResize, -1, M::Edit, "UndoResize", QT_TRANSLATE_NOOP("Menu", "Undo &Resize"), R::UndoFile, &F::UndoResize_Click},
    {M::mnuundorevert, -1, M::Edit, "mnuundorevert", QT_TRANSLATE_NOOP("Menu", "Undo to last saved image"), R::OwnCode, &F::mnuundorevert_Click},
    sep(M::split020, M::Edit, "split020"),
    {M::Cut, -1, M::Edit, "Cut", QT_TRANSLATE_NOOP("Menu", "&Cut"), R::Selection, &F::Cut_Click, 0, QKeySequence::Cut},
    {M::Copy, -1, M::Edit, "Copy", QT_TRANSLATE_NOOP("Menu", "C&opy"), R::Selection, &F::Copy_Click, 0, QKeySequence::Copy},
    {M::Paste, -1, M::Edit, "Paste", QT_TRANSLATE_NOOP("Menu", "&Paste"), R::Clipboard, &F::Paste_Click, 0, QKeySequence::Paste},
    sep(M::split023, M::Edit, "split023", kEasyHidden),
    {M::PasteSpecial, -1, M::Edit, "PasteSpecial", QT_TRANSLATE_NOOP("Menu", "Pa&ste as New Image"), R::Clipboard, &F::PasteSpecial_Click, kEasyHidden},
    sep(M::split024, M::Edit, "split024"),
    {M::SelectAll, -1, M::Edit, "SelectAll", QT_TRANSLATE_NOOP("Menu", "Select &All"), R::Document, &F::SelectAll_Click, 0, QKeySequence::SelectAll},
    {M::ClearSelection, -1, M::Edit, "ClearSelection", QT_TRANSLATE_NOOP("Menu", "C&lear Selection"), R::Selection, &F::ClearSelection_Click},
    sep(M::niks002, M::Edit, "niks002", kEasyHidden),
    {M::mnuCopyTo, -1, M::Edit, "mnuCopyTo", QT_TRANSLATE_NOOP("Menu", "Copy To..."), R::Selection, &F::mnuCopyTo_Click, kEasyHidden},
    {M::mnuPasteFrom, -1, M::Edit, "mnuPasteFrom", QT_TRANSLATE_NOOP("Menu", "Paste From..."), R::Document, &F::mnuPasteFrom_Click,
     kEasyHidden},
    {M::mnucopyIrfanview, -1, M::Edit, "mnucopyIrfanview", QT_TRANSLATE_NOOP("Menu", "Copy To IrfanView"), R::Document,
     &F::mnucopyIrfanview_Click, kHidden},

    top(M::Image, "Image", QT_TRANSLATE_NOOP("Menu", "&Image"), R::Document),
    {M::mnuImgUndo, -1, M::Image, "mnuImgUndo", QT_TRANSLATE_NOOP("Menu", "Undo"), R::UndoRing, &F::Undo_Click, kContextOnly},
    sep(M::split036, M::Image, "split036", kContextOnly),
    {M::mnuImgCut, -1, M::Image, "mnuImgCut", QT_TRANSLATE_NOOP("Menu", "Cut"), R::Selection, &F::Cut_Click, kContextOnly},
    {M::mnuImgCopy, -1, M::Image, "mnuImgCopy", QT_TRANSLATE_NOOP("Menu", "Copy"), R::Selection, &F::Copy_Click, kContextOnly},
    {M::mnuImgPaste, -1, M::Image, "mnuImgPaste", QT_TRANSLATE_NOOP("Menu", "Paste"), R::Clipboard, &F::Paste_Click, kContextOnly},
    {M::mnugrabmask, -1, M::Image, "mnugrabmask", QT_TRANSLATE_NOOP("Menu", "Grab Selection/mask"), R::Selection, &F::mnugrabmask_Click, kShowWithRule},
    sep(M::split038, M::Image, "split038", kContextOnly),
    {M::FlipHorizontal, -1, M::Image, "FlipHorizontal", QT_TRANSLATE_NOOP("Menu", "Flip &Horizontal"), R::Document, &F::FlipHorizontal_Click},
    {M::FlipVertical, -1, M::Image, "FlipVertical", QT_TRANSLATE_NOOP("Menu", "Flip &Vertical"), R::Document, &F::FlipVertical_Click},
    sub(M::mnurotate, M::Image, "mnurotate", QT_TRANSLATE_NOOP("Menu", "Rotate")),
    {M::mnurotates, 0, M::mnurotate, "mnurotates", QT_TRANSLATE_NOOP("Menu", "45 degrees"), R::Document, &F::mnurotates_Click},
    {M::mnurotates, 1, M::mnurotate, "mnurotates", QT_TRANSLATE_NOOP("Menu", "90 degrees"), R::Document, &F::mnurotates_Click},
    {M::mnurotates, 2, M::mnurotate, "mnurotates", QT_TRANSLATE_NOOP("Menu", "180 degrees"), R::Document, &F::mnurotates_Click},
    sep(M::mnurotates, M::mnurotate, "mnurotates", 0, 3),
    {M::mnurotates, 4, M::mnurotate, "mnurotates", QT_TRANSLATE_NOOP("Menu", "Define angle..."), R::Document, &F::mnurotates_Click},
    sep(M::split050, M::Image, "split050"),
    {M::mnuDoBright, -1, M::Image, "mnuDoBright", QT_TRANSLATE_NOOP("Menu", "Brighten by 10%"), R::Document, &F::mnuDoBright_Click},
    {M::mnuDoDark, -1, M::Image, "mnuDoDark", QT_TRANSLATE_NOOP("Menu", "Darken by 10%"), R::Document, &F::mnuDoDark_Click},
    {M::InvertImage, -1, M::Image, "InvertImage", QT_TRANSLATE_NOOP("Menu", "&Invert Image"), R::Document, &F::InvertImage_Click},
    {M::mnugrayscale, -1, M::Image, "mnugrayscale", QT_TRANSLATE_NOOP("Menu", "Convert to Grayscale"), R::Document, &F::mnugrayscale_Click},
    sep(M::split052, M::Image, "split052", kEasyHidden),
    {M::mnuBlendIt, -1, M::Image, "mnuBlendIt", QT_TRANSLATE_NOOP("Menu", "Blend Selection..."), R::Selection, &F::mnuBlendIt_Click, kEasyHidden},
    {M::mnuPasteBlend, -1, M::Image, "mnuPasteBlend", QT_TRANSLATE_NOOP("Menu", "Blend Image From..."), R::Document, &F::mnuPasteBlend_Click, kEasyHidden},
    sep(M::split003, M::Image, "split003", kEasyHidden),
    {M::mnuTexturefill, -1, M::Image, "mnuTexturefill", QT_TRANSLATE_NOOP("Menu", "Texture..."), R::Document, &F::mnuTexturefill_Click},
    {M::mnuPicFrames, -1, M::Image, "mnuPicFrames", QT_TRANSLATE_NOOP("Menu", "Picture Frames..."), R::Document, &F::mnuPicFrames_Click, kContextOnly},
    {M::mnuBorders, -1, M::Image, "mnuBorders", QT_TRANSLATE_NOOP("Menu", "Borders..."), R::Document, &F::mnuBorders_Click, kContextOnly},
    sep(M::split039, M::Image, "split039", kContextOnly),
    sub(M::mnuimageeffect, M::Image, "mnuimageeffect", QT_TRANSLATE_NOOP("Menu", "Brightness and Contrast"), kContextOnly),
    {M::mnuImgeffects, 0, M::mnuimageeffect, "mnuImgeffects", QT_TRANSLATE_NOOP("Menu", "Brightness"), R::Document, &F::mnuImgeffects_Click},
    {M::mnuImgeffects, 1, M::mnuimageeffect, "mnuImgeffects", QT_TRANSLATE_NOOP("Menu", "Contrast"), R::Document, &F::mnuImgeffects_Click},
    sep(M::split051, M::Image, "split051"),
    {M::ImageSize, -1, M::Image, "ImageSize", QT_TRANSLATE_NOOP("Menu", "&Resize..."), R::Document, &F::ImageSize_Click},
    sub(M::mnuEraseImage, M::Image, "mnuEraseImage", QT_TRANSLATE_NOOP("Menu", "Erase Image")),
    {M::EraseImage, 0, M::mnuEraseImage, "EraseImage", QT_TRANSLATE_NOOP("Menu", "White"), R::Document, &F::EraseImage_Click},
    {M::EraseImage, 1, M::mnuEraseImage, "EraseImage", QT_TRANSLATE_NOOP("Menu", "Black"), R::Document, &F::EraseImage_Click},
    {M::EraseImage, 2, M::mnuEraseImage, "EraseImage", QT_TRANSLATE_NOOP("Menu", "Current background color"), R::Document, &F::EraseImage_Click},

    top(M::mnuTools, "mnuTools", QT_TRANSLATE_NOOP("Menu", "&Tools"), R::Document),
    {M::mnuBezier, -1, M::mnuTools, "mnuBezier", QT_TRANSLATE_NOOP("Menu", "Advanced &Bezier Curves..."), R::Document, &F::mnuBezier_Click, kEasyHidden},
    {M::mnuPolygons, -1, M::mnuTools, "mnuPolygons", QT_TRANSLATE_NOOP("Menu", "Advanced &Polygons..."), R::Document, &F::mnuPolygons_Click, kEasyHidden},
    sep(M::niks052, M::mnuTools, "niks052", kEasyHidden),
    {M::mnudetailedit, -1, M::mnuTools, "mnudetailedit", QT_TRANSLATE_NOOP("Menu", "Detailed Editing"), R::Document, &F::PrepEditDetail},
    {M::mnucolordepth, -1, M::mnuTools, "mnucolordepth", QT_TRANSLATE_NOOP("Menu", "Color Depth and Dither Control..."), R::Document, &F::mnucolordepth_Click, kEasyHidden},
    {M::mnuBright, -1, M::mnuTools, "mnuBright", QT_TRANSLATE_NOOP("Menu", "Adjust Brightness..."), R::Document, &F::mnuBright_Click},
    {M::mnuDark, -1, M::mnuTools, "mnuDark", QT_TRANSLATE_NOOP("Menu", "Adjust Contrast..."), R::Document, &F::mnuDark_Click},
    sep(M::niks036, M::mnuTools, "niks036", kEasyHidden),
    {M::mnusymbols, 0, M::mnuTools, "mnusymbols", QT_TRANSLATE_NOOP("Menu", "Symbols && Stamps..."), R::Document, &F::mnusymbols_Click},
    sep(M::mnusymbols, M::mnuTools, "mnusymbols", 0, 1),
    {M::mnusymbols, 2, M::mnuTools, "mnusymbols", QT_TRANSLATE_NOOP("Menu", "Picture Frames..."), R::Document, &F::mnuPicFrames_Click},
    {M::mnusymbols, 3, M::mnuTools, "mnusymbols", QT_TRANSLATE_NOOP("Menu", "Borders..."), R::Document, &F::mnuBorders_Click},
    {M::mnusymbols, 4, M::mnuTools, "mnusymbols", QT_TRANSLATE_NOOP("Menu", "reserved"), R::Document, {}, kHidden},
    sep(M::niks037, M::mnuTools, "niks037"),
    {M::mnuwallpaper, -1, M::mnuTools, "mnuwallpaper", QT_TRANSLATE_NOOP("Menu", "Set as Wallpaper"), R::Document, &F::mnuwallpaper_Click},

    top(M::Filters, "Filters", QT_TRANSLATE_NOOP("Menu", "&Effects"), R::Document),
    {M::mnuEffectBrowser, -1, M::Filters, "mnuEffectBrowser", QT_TRANSLATE_NOOP("Menu", "Effects Browser..."), R::Document, &F::mnuEffectBrowser_Click},
    sub(M::GreyScalemenu, M::Filters, "GreyScalemenu", QT_TRANSLATE_NOOP("Menu", "&Ambient Light")),
    {M::Greyscale, 0, M::GreyScalemenu, "Greyscale", QT_TRANSLATE_NOOP("Menu", "&Black && White"), R::Document, &F::Greyscale_Click},
    sep(M::Greyscale, M::GreyScalemenu, "Greyscale", 0, 1),
    {M::Greyscale, 2, M::GreyScalemenu, "Greyscale", QT_TRANSLATE_NOOP("Menu", "&Red Light"), R::Document, &F::Greyscale_Click},
    {M::Greyscale, 3, M::GreyScalemenu, "Greyscale", QT_TRANSLATE_NOOP("Menu", "R&ed Dark"), R::Document, &F::Greyscale_Click},
    sep(M::Greyscale, M::GreyScalemenu, "Greyscale", 0, 4),
    {M::Greyscale, 5, M::GreyScalemenu, "Greyscale", QT_TRANSLATE_NOOP("Menu", "&Green Light"), R::Document, &F::Greyscale_Click},
    {M::Greyscale, 6, M::GreyScalemenu, "Greyscale", QT_TRANSLATE_NOOP("Menu", "Gr&een Dark"), R::Document, &F::Greyscale_Click},
    sep(M::Greyscale, M::GreyScalemenu, "Greyscale", 0, 7),
    {M::Greyscale, 8, M::GreyScalemenu, "Greyscale", QT_TRANSLATE_NOOP("Menu", "B&lue Light"), R::Document, &F::Greyscale_Click},
    {M::Greyscale, 9, M::GreyScalemenu, "Greyscale", QT_TRANSLATE_NOOP("Menu", "Bl&ue Dark"), R::Document, &F::Greyscale_Click},
    sep(M::Greyscale, M::GreyScalemenu, "Greyscale", 0, 10),
    {M::Greyscale, 11, M::GreyScalemenu, "Greyscale", QT_TRANSLATE_NOOP("Menu", "&Yellow Light"), R::Document, &F::Greyscale_Click},
    {M::Greyscale, 12, M::GreyScalemenu, "Greyscale", QT_TRANSLATE_NOOP("Menu", "Y&ellow Dark"), R::Document, &F::Greyscale_Click},
    sep(M::Greyscale, M::GreyScalemenu, "Greyscale", 0, 13),
    {M::Greyscale, 14, M::GreyScalemenu, "Greyscale", QT_TRANSLATE_NOOP("Menu", "&Purple Light"), R::Document, &F::Greyscale_Click},
    {M::Greyscale, 15, M::GreyScalemenu, "Greyscale", QT_TRANSLATE_NOOP("Menu", "P&urple Dark"), R::Document, &F::Greyscale_Click},
    sep(M::Greyscale, M::GreyScalemenu, "Greyscale", 0, 16),
    {M::Greyscale, 17, M::GreyScalemenu, "Greyscale", QT_TRANSLATE_NOOP("Menu", "&Cyan Light"), R::Document, &F::Greyscale_Click},
    {M::Greyscale, 18, M::GreyScalemenu, "Greyscale", QT_TRANSLATE_NOOP("Menu", "Cya&n Dark"), R::Document, &F::Greyscale_Click},
    sep(M::Greyscale, M::GreyScalemenu, "Greyscale", 0, 19),
    {M::Greyscale, 20, M::GreyScalemenu, "Greyscale", QT_TRANSLATE_NOOP("Menu", "Gr&ayscale"), R::Document, &F::Greyscale_Click},
    sep(M::Greyscale, M::GreyScalemenu, "Greyscale", 0, 21),
    {M::Greyscale, 22, M::GreyScalemenu, "Greyscale", QT_TRANSLATE_NOOP("Menu", "Bronze"), R::Document, &F::Greyscale_Click},
    {M::Greyscale, 23, M::GreyScalemenu, "Greyscale", QT_TRANSLATE_NOOP("Menu", "Dusk Tone"), R::Document, &F::Greyscale_Click},
    {M::Greyscale, 24, M::GreyScalemenu, "Greyscale", QT_TRANSLATE_NOOP("Menu", "City Night"), R::Document, &F::Greyscale_Click},
    sub(M::mnuReverseBlendH, M::Filters, "mnuReverseBlendH", QT_TRANSLATE_NOOP("Menu", "Reverse Horizontal Blend")),
    {M::mnuReverseBlendH1, 0, M::mnuReverseBlendH, "mnuReverseBlendH1", QT_TRANSLATE_NOOP("Menu", "Normal Soft"), R::Document, &F::mnuReverseBlendH1_Click},
    {M::mnuReverseBlendH1, 1, M::mnuReverseBlendH, "mnuReverseBlendH1", QT_TRANSLATE_NOOP("Menu", "Normal Medium"), R::Document, &F::mnuReverseBlendH1_Click},
    {M::mnuReverseBlendH1, 2, M::mnuReverseBlendH, "mnuReverseBlendH1", QT_TRANSLATE_NOOP("Menu", "Normal Hard"), R::Document, &F::mnuReverseBlendH1_Click},
    {M::mnuReverseBlendH1, 3, M::mnuReverseBlendH, "mnuReverseBlendH1", QT_TRANSLATE_NOOP("Menu", "Mirror"), R::Document, &F::mnuReverseBlendH1_Click},
    {M::mnuReverseBlendH1, 4, M::mnuReverseBlendH, "mnuReverseBlendH1", QT_TRANSLATE_NOOP("Menu", "Invert"), R::Document, &F::mnuReverseBlendH1_Click},
    {M::mnuReverseBlendH1, 5, M::mnuReverseBlendH, "mnuReverseBlendH1", QT_TRANSLATE_NOOP("Menu", "Red"), R::Document, &F::mnuReverseBlendH1_Click},
    {M::mnuReverseBlendH1, 6, M::mnuReverseBlendH, "mnuReverseBlendH1", QT_TRANSLATE_NOOP("Menu", "Green"), R::Document, &F::mnuReverseBlendH1_Click},
    {M::mnuReverseBlendH1, 7, M::mnuReverseBlendH, "mnuReverseBlendH1", QT_TRANSLATE_NOOP("Menu", "Blue"), R::Document, &F::mnuReverseBlendH1_Click},
    sub(M::mnuReverseBlendV, M::Filters, "mnuReverseBlendV", QT_TRANSLATE_NOOP("Menu", "Reverse Vertical Blend")),
    {M::mnuReverseBlendV1, 0, M::mnuReverseBlendV, "mnuReverseBlendV1", QT_TRANSLATE_NOOP("Menu", "Normal Soft"), R::Document, &F::mnuReverseBlendV1_Click},
    {M::mnuReverseBlendV1, 1, M::mnuReverseBlendV, "mnuReverseBlendV1", QT_TRANSLATE_NOOP("Menu", "Normal Medium"), R::Document, &F::mnuReverseBlendV1_Click},
    {M::mnuReverseBlendV1, 2, M::mnuReverseBlendV, "mnuReverseBlendV1", QT_TRANSLATE_NOOP("Menu", "Normal Hard"), R::Document, &F::mnuReverseBlendV1_Click},
    {M::mnuReverseBlendV1, 3, M::mnuReverseBlendV, "mnuReverseBlendV1", QT_TRANSLATE_NOOP("Menu", "Mirror"), R::Document, &F::mnuReverseBlendV1_Click},
    {M::mnuReverseBlendV1, 4, M::mnuReverseBlendV, "mnuReverseBlendV1", QT_TRANSLATE_NOOP("Menu", "Invert"), R::Document, &F::mnuReverseBlendV1_Click},
    {M::mnuReverseBlendV1, 5, M::mnuReverseBlendV, "mnuReverseBlendV1", QT_TRANSLATE_NOOP("Menu", "Red"), R::Document, &F::mnuReverseBlendV1_Click},
    {M::mnuReverseBlendV1, 6, M::mnuReverseBlendV, "mnuReverseBlendV1", QT_TRANSLATE_NOOP("Menu", "Green"), R::Document, &F::mnuReverseBlendV1_Click},
    {M::mnuReverseBlendV1, 7, M::mnuReverseBlendV, "mnuReverseBlendV1", QT_TRANSLATE_NOOP("Menu", "Blue"), R::Document, &F::mnuReverseBlendV1_Click},
    sep(M::split060, M::Filters, "split060"),

    top(M::mnuextra, "mnuextra", QT_TRANSLATE_NOOP("Menu", "E&xtra"), R::Always),
    {M::mnuextra1, -1, M::mnuextra, "mnuextra1", QT_TRANSLATE_NOOP("Menu", "Save Present Draw-Settings"), R::Document, &F::mnuextra1_Click, kEasyHidden},
    {M::mnuextra2, -1, M::mnuextra, "mnuextra2", QT_TRANSLATE_NOOP("Menu", "Load Last Draw-Settings now"), R::Document, &F::mnuextra2_Click, kEasyHidden},
    {M::mnuextra3, -1, M::mnuextra, "mnuextra3", QT_TRANSLATE_NOOP("Menu", "Restore all settings back to default"), R::Always, &F::RestoreDefaultSettings, kEasyHidden},
    sep(M::split070, M::mnuextra, "split070"),
    {M::mnuWindowAutoSizePosition, -1, M::mnuextra, "mnuWindowAutoSizePosition", QT_TRANSLATE_NOOP("Menu", "Remember Size && Position"), R::Always, &F::mnuWindowAutoSizePosition_Click, kCheckable | kEasyHidden},
    {M::mnuKidsMode, -1, M::mnuextra, "mnuKidsMode", QT_TRANSLATE_NOOP("Menu", "Easy Mode (Beginner)"), R::Always, &F::KidsMode, kCheckable},
    {M::mnuStepUndo, -1, M::mnuextra, "mnuStepUndo", QT_TRANSLATE_NOOP("Menu", "Step-by-step undo"), R::Always, &F::mnuStepUndo_Click, kCheckable},
    sub(M::mnuextraplugin, M::mnuextra, "mnuextraplugin", QT_TRANSLATE_NOOP("Menu", "Plugin")),
    {M::mnuextraplugins, 0, M::mnuextraplugin, "mnuextraplugins", QT_TRANSLATE_NOOP("Menu", ""), R::Document, {}, kHidden},
    {M::mnuextraplugins, 1, M::mnuextraplugin, "mnuextraplugins", QT_TRANSLATE_NOOP("Menu", ""), R::Document, {}, kHidden},
    {M::mnuextraplugins, 2, M::mnuextraplugin, "mnuextraplugins", QT_TRANSLATE_NOOP("Menu", ""), R::Document, {}, kHidden},
    {M::mnuextraplugins, 3, M::mnuextraplugin, "mnuextraplugins", QT_TRANSLATE_NOOP("Menu", ""), R::Document, {}, kHidden},
    {M::mnuextraplugins, 4, M::mnuextraplugin, "mnuextraplugins", QT_TRANSLATE_NOOP("Menu", ""), R::Document, &F::mnuextraplugins_Click, kHidden},

    top(M::mnuView, "mnuView", QT_TRANSLATE_NOOP("Menu", "&View"), R::Document),
    sub(M::mnuZoom, M::mnuView, "mnuZoom", QT_TRANSLATE_NOOP("Menu", "Zoom")),
    {M::mnuZooms, 10, M::mnuZoom, "mnuZooms", QT_TRANSLATE_NOOP("Menu", "10%"), R::Document, &F::mnuZooms_Click, kCheckable},
    {M::mnuZooms, 25, M::mnuZoom, "mnuZooms", QT_TRANSLATE_NOOP("Menu", "25%"), R::Document, &F::mnuZooms_Click, kCheckable},
    {M::mnuZooms, 50, M::mnuZoom, "mnuZooms", QT_TRANSLATE_NOOP("Menu", "50%"), R::Document, &F::mnuZooms_Click, kCheckable},
    {M::mnuZooms, 75, M::mnuZoom, "mnuZooms", QT_TRANSLATE_NOOP("Menu", "75%"), R::Document, &F::mnuZooms_Click, kCheckable},
    {M::mnuZooms, 100, M::mnuZoom, "mnuZooms", QT_TRANSLATE_NOOP("Menu", "100%"), R::Document, &F::mnuZooms_Click, kCheckable},
    {M::mnuZooms, 150, M::mnuZoom, "mnuZooms", QT_TRANSLATE_NOOP("Menu", "150%"), R::Document, &F::mnuZooms_Click, kCheckable},
    {M::mnuZooms, 200, M::mnuZoom, "mnuZooms", QT_TRANSLATE_NOOP("Menu", "200%"), R::Document, &F::mnuZooms_Click, kCheckable},
    sep(M::mnuZooms, M::mnuZoom, "mnuZooms", 0, 499),
    {M::mnuZooms, 500, M::mnuZoom, "mnuZooms", QT_TRANSLATE_NOOP("Menu", "Fit to Window"), R::Document, &F::mnuZooms_Click},
    sep(M::split080, M::mnuView, "split080"),
    {M::mnuShowGrid, -1, M::mnuView, "mnuShowGrid", QT_TRANSLATE_NOOP("Menu", "Show Grid"), R::Document, &F::mnuShowGrid_Click},
    {M::menuExGridSnap, -1, M::mnuView, "menuExGridSnap", QT_TRANSLATE_NOOP("Menu", "Snap to Grid"), R::Document, &F::menuExGridSnap_Click, kCheckable},
    {M::menuExGridSetup, -1, M::mnuView, "menuExGridSetup", QT_TRANSLATE_NOOP("Menu", "Grid Setup..."), R::Document, &F::menuExGridSetup_Click, kEasyHidden},
    sep(M::niks12, M::mnuView, "niks12", kEasyHidden),
    {M::mnuGuideLines, -1, M::mnuView, "mnuGuideLines", QT_TRANSLATE_NOOP("Menu", "Show Guidelines"), R::Document, &F::mnuGuideLines_Click, kCheckable},
    {M::mnuGuideLinecolor, -1, M::mnuView, "mnuGuideLinecolor", QT_TRANSLATE_NOOP("Menu", "Guideline Color..."), R::Document, &F::mnuGuideLinecolor_Click},
    sub(M::mnuGuideLineStyle, M::mnuView, "mnuGuideLineStyle", QT_TRANSLATE_NOOP("Menu", "Guideline Style")),
    {M::mnuGuideLineStyles, 1, M::mnuGuideLineStyle, "mnuGuideLineStyles", QT_TRANSLATE_NOOP("Menu", "Solid"), R::Document, &F::mnuGuideLineStyles_Click, kCheckable},
    {M::mnuGuideLineStyles, 2, M::mnuGuideLineStyle, "mnuGuideLineStyles", QT_TRANSLATE_NOOP("Menu", "Dash"), R::Document, &F::mnuGuideLineStyles_Click, kCheckable},
    {M::mnuGuideLineStyles, 3, M::mnuGuideLineStyle, "mnuGuideLineStyles", QT_TRANSLATE_NOOP("Menu", "Dot"), R::Document, &F::mnuGuideLineStyles_Click, kCheckable},
    {M::mnuGuideLineStyles, 4, M::mnuGuideLineStyle, "mnuGuideLineStyles", QT_TRANSLATE_NOOP("Menu", "Dash Dot"), R::Document, &F::mnuGuideLineStyles_Click, kCheckable},
    sep(M::niks7, M::mnuView, "niks7", kEasyHidden),
    {M::mnufitbigimages, -1, M::mnuView, "mnufitbigimages", QT_TRANSLATE_NOOP("Menu", "Fit Big Images on Open"), R::Document, &F::mnufitbigimages_Click, kCheckable | kEasyHidden},
    {M::mnumaximizeonopen, -1, M::mnuView, "mnumaximizeonopen", QT_TRANSLATE_NOOP("Menu", "Maximize window on Open"), R::Document, &F::mnumaximizeonopen_Click, kCheckable | kEasyHidden},
    {M::mnustartblankpage, -1, M::mnuView, "mnustartblankpage", QT_TRANSLATE_NOOP("Menu", "Start with blank Page"), R::Document, &F::mnustartblankpage_Click, kCheckable | kEasyHidden},
    sep(M::split081, M::mnuView, "split081"),
    {M::mnuHideToolbar, -1, M::mnuView, "mnuHideToolbar", QT_TRANSLATE_NOOP("Menu", "Hide Toolbar"), R::Always, &F::mnuHideToolbar_Click, kCheckable},

    top(M::Window, "Window", QT_TRANSLATE_NOOP("Menu", "&Window"), R::Always),
    {M::ArrHorizontal, -1, M::Window, "ArrHorizontal", QT_TRANSLATE_NOOP("Menu", "Tile &Horizontal"), R::AnyDocument, &F::ArrHorizontal_Click, kEasyHidden},
    {M::ArrVertival, -1, M::Window, "ArrVertival", QT_TRANSLATE_NOOP("Menu", "Tile &Vertical"), R::AnyDocument, &F::ArrVertival_Click, kEasyHidden},
    {M::Cascade, -1, M::Window, "Cascade", QT_TRANSLATE_NOOP("Menu", "&Cascade"), R::AnyDocument, &F::Cascade_Click, kEasyHidden},
    sep(M::split045, M::Window, "split045", kEasyHidden),
    {M::mnuClose, -1, M::Window, "mnuClose", QT_TRANSLATE_NOOP("Menu", "&Close"), R::Document, &F::Close_Click},
    sep(M::split046, M::Window, "split046"),

    top(M::Help, "Help", QT_TRANSLATE_NOOP("Menu", "&Help"), R::Always),
    {M::mnuhelp, 0, M::Help, "mnuhelp", QT_TRANSLATE_NOOP("Menu", "Manual"), R::Always, &F::mnuhelp_Click},
    {M::mnuhelp, 1, M::Help, "mnuhelp", QT_TRANSLATE_NOOP("Menu", "Mail Velunta..."), R::Always, &F::mnuhelp_Click},
    sep(M::mnuhelp, M::Help, "mnuhelp", 0, 2),
    {M::mnuhelp, 3, M::Help, "mnuhelp", QT_TRANSLATE_NOOP("Menu", "Check for Velunta free updates and effects..."), R::Always, &F::mnuhelp_Click},
    {M::mnuhelp, 4, M::Help, "mnuhelp", QT_TRANSLATE_NOOP("Menu", "Zolvane Discussion and Support group..."), R::Always, &F::mnuhelp_Click},
    sep(M::mnuhelp, M::Help, "mnuhelp", 0, 5),
    {M::mnuhelp, 7, M::Help, "mnuhelp", QT_TRANSLATE_NOOP("Menu", "Automatically Check for Updates"), R::Always, &F::mnuhelp_Click, kCheckable},
    sep(M::mnuhelp, M::Help, "mnuhelp", 0, 8),
    {M::mnuhelp, 9, M::Help, "mnuhelp", QT_TRANSLATE_NOOP("Menu", "&About Velunta..."), R::Always, &F::mnuhelp_Click},
};

// CmdCommands(0..22), by index.
constexpr ToolbarRow kToolbarRows[] = {
    {R::Always, &F::NewImage_Click},            // 0 "New image"
    {R::Always, &F::Open_Click},                // 1 "Open"
    {R::Document, &F::Save_Click},              // 2 "Save"
    {R::Selection, &F::Copy_Click},             // 3 "copy"
    {R::Selection, &F::Cut_Click},              // 4 the cut button
    {R::Document, &F::mnuPrint_Click},          // 5 "Print"
    {R::Clipboard, &F::Paste_Click},            // 6 "paste"
    {R::UndoRing, &F::Undo_Click},              // 7 "undo/redo"
    {R::Document, &F::mnuPicFrames_Click, true}, // 8 "picture frames"
    {R::Document, &F::mnuEffectBrowser_Click, true}, // 9 "Effects Browser"
    {R::Document, &F::mnugrayscale_Click, true}, // 10 "Gray scale image"
    {R::Document, &F::ImageSize_Click, true},   // 11 "Size image"
    {R::Document, &F::FlipHorizontal_Click, true}, // 12 "flip horizontal"
    {R::Document, &F::FlipVertical_Click, true}, // 13 "flip vertical"
    {R::Document, &F::mnuDoBright_Click, true}, // 14 "brighten image 10%"
    {R::Document, &F::mnuDoDark_Click, true},   // 15 "darken image 10%"
    {R::Document, &F::InvertImage_Click, true}, // 16 "Invert image"
    {R::Document, &F::RevertSavedAndRecord},    // 17 "undo to last saved"
    {R::Document, &F::mnuTexturefill_Click, true}, // 18 "Fill image or selection with textures"
    {R::Selection, &F::CmdBlend_Click, true},    // 19 "Blend"
    {R::Document, &F::mnuBorders_Click, true},  // 20 "Borders"
    {R::Document, &F::mnuBezier_Click, true},   // 21 "Draw Advanced Bezier Curves"
    {R::Document, &F::mnuPolygons_Click, true}, // 22 "Draw Advanced Polygons"
};
// clang-format on

} // namespace

std::span<const MenuRow> frmMain::MenuRows()
{
    return kMenuRows;
}

std::span<const ToolbarRow> frmMain::ToolbarRows()
{
    return kToolbarRows;
}

} // namespace velunta
