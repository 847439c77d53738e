#pragma once
// The effect engine behind the Effects Browser: its state (which effect, the slider
// positions, the colours, the text and font controls) and `ApplyEffect`, which clears
// the work surface `picDest` back to the applied picture and runs exactly one effect
// on it. Nothing here touches a window: the dialog owns the controls and copies their
// values into the state before each run.
//
// How the dialog drives it, for every change of a control, an effect or a flip:
//   1. With "Auto Preview" (ChkPreview) off, do nothing: the engine must not run.
//   2. SetPointerFromView(state, ImgDest's left, ImgDest's top) — the position of the
//      draggable preview gives PointerX, PointerY (spot light and text follow it).
//   3. Process pending events once (nested runs may start there and finish first).
//   4. ApplyEffect(state, PicSource, picDest, picSrc).
//   5. Refresh picDest and copy picDest.Image() into ImgDest.
// On opening (and after Undo All) SetPictureSize fills PictureWidth, PictureHeight and
// the pivots. Apply Effect copies picDest.Image() into PicSource and makes it the
// persistent layer of both PicSource and picDest (picDest.setPicture), which is what
// stacks effects: the next run starts from there.

#include "core/Color.h"
#include "core/Progress.h"
#include "effects/fx/Fx.h"

#include <QString>

#include <cstdint>
#include <span>

namespace velunta {

class Surface;

struct EffectState {
    std::int32_t EffectId = 1000;
    std::int32_t PictureWidth = 0; // size of PicSource; every whole-picture call uses it
    std::int32_t PictureHeight = 0;
    std::int32_t PivotX = 32; // pivot of Render, Rotate and Zoom (SetPictureSize)
    std::int32_t PivotY = 32;
    std::int32_t PointerX = 252; // from the preview's position (SetPointerFromView)
    std::int32_t PointerY = 193;
    int TextBoxWidth = 320; // text placement constants, 16-bit
    int TextBoxHeight = 255;
    int OffsetX = 0; // HScrollT, VScrollT: text and light position, 16-bit
    int OffsetY = 0;
    Color EffectColor = 0; // the colour panel; Transparent Text may change it
    Color ShadowColor = RGB(128, 128, 255);
    Color TransparentColor = kNoColor; // left out by Render, Rotate and Zoom

    int HScroll1[6] = {}; // the sliders; V0, V1, V2 are the first three
    int HScroll2 = 0;     // Render's source offset
    int VScroll2 = 0;

    QString Text1;                                // the text of Text and Transparent Text
    QString FontName = QStringLiteral("Verdana"); // Combo1
    bool Check1 = false;                          // bold
    bool Check2 = false;                          // italic
    bool Check3 = false;                          // underline
    bool Check4 = false;                          // "Outline": smooth edges for Transparent Text
    bool chkText3d = false;                       // "3D-Shadow" for Text, "Soften" for Transparent Text

    int ScreenDpiY = 96;     // vertical pixels per inch of the screen
    int TwipsPerPixelX = 15; // dialog units per screen pixel
    int TwipsPerPixelY = 15;
};

// PointerX = round(252 - left), PointerY = round(193 - top), with the preview image's
// position in pixels (the dialog's units divided by 15).
void SetPointerFromView(EffectState& state, double imgDestLeft, double imgDestTop);

// PictureWidth and PictureHeight from PicSource; PivotX = round(width / 2) and PivotY =
// round((height / 2) * (width / height)) of picDest, which comes to half the width, not
// half the height (Zoom alone uses the true middle); each at least 32.
void SetPictureSize(EffectState& state, const Surface& PicSource, const Surface& picDest);

// The font of Transparent Text, made anew for each run from the controls: height
// -MulDiv(V0, ScreenDpiY, 72), width HScroll1(4), escapement HScroll1(5), weight
// 600 or 700 with Check1, italic, underline, quality 2 or 1029 with Check4.
FxFont CreateFontObj(const EffectState& state);

// Clears picDest to its persistent layer and runs the effect of state.EffectId (an id
// with no row only clears). Returns false when `progress` stopped the effect. A value
// that overflows its 16- or 32-bit argument throws OverflowError before anything is
// drawn after the clear.
bool ApplyEffect(EffectState& state, Surface& PicSource, Surface& picDest, const Surface& picSrc,
                 const ProgressFn& progress = {});

// ---- The effect table ---------------------------------------------------------------

// How an effect sets up one of the sliders HScroll1(0..5) when it is chosen.
struct SliderRow {
    enum Kind : std::uint8_t {
        Reset,     // value 0, disabled, label "N/A" (sliders 1 and 2 of every effect first)
        Set,       // label, range and value as given, enabled
        Disabled,  // slider 0 disabled, label as given
        Unchanged, // slider 0 left as it stood (label as given, if any)
        Hidden,    // hidden, label as given
    };
    Kind kind = Reset;
    const char* label = nullptr;
    int min = 0;
    int max = 0;
    int value = 0;
};

// Controls an effect shows besides the sliders.
enum EffectExtras : unsigned {
    ColourPanel = 1,          // frmColorEff
    TextGroup = 2,            // Text1, Combo1, Check1..3, chkText3d, HScrollT, VScrollT
    TransparentTextGroup = 4, // picTrnsText with HScroll1(3..5)
    PositionBars = 8,         // HScrollT, VScrollT
    TransparencyPick = 16,    // the transparency colour group
    RenderOffset = 32,        // HScroll2, VScroll2 at 0
    FirstUseColour = 64,      // the first-use colour rule of Ambient Light and Light
};

struct EffectRun;
using EffectCall = bool (*)(EffectRun&);

struct EffectRow {
    std::int32_t id;
    const char* menuCaption;   // mnuFx; null for the flips and mirrors of the Image menu
    const char* buttonCaption; // cmdEffect
    unsigned extras;
    SliderRow sliders[6];
    EffectCall call; // null: the run only clears (Scroll)
};

// Every effect of the engine in id order: 1000 to 1280 in steps of 10, then the flips
// and mirrors 1300 to 1340.
std::span<const EffectRow> EffectTable();
// The row of an id, or null.
const EffectRow* FindEffect(std::int32_t id);

} // namespace velunta
