#pragma once
// The draw state every tool reads: the current tool, the style of each tool family,
// the values behind the size and pressure selectors, the two working colours and
// the options of the tool panels. The panels write it through their setters; tools
// never read widgets.

#include "core/Color.h"
#include "core/Numbers.h"
#include "document/Tool.h"

#include <QString>

#include <array>
#include <cstdint>

namespace velunta {

// One record behind lblSelector(i): the value and the caption the selector shows.
struct SelectorValue {
    std::int32_t Index = 0;
    double Value = 0;
    QString Caption;
};

// The 21 tool option values; the first 16 are the selectors' values.
inline constexpr std::array<std::int16_t, 21> kToolOptionDefaults = {50, 75, 6, 10, 2, 1, 1, 12, 6, 1, 10,
                                                                     75, 6,  3, 10, 6, 0, 0, 0,  0, 0};

struct DrawState {
    DrawState();

    int CurrentTool = kToolPencil;
    int LastTool = kToolPencil;
    int ShapeStyle = 0;
    int PencilStyle = 0;
    int BrightStyle = 0;
    int DissolveMode = 0;
    int ArrowStyle = 0;
    int EnhanceMode = 0;
    int FillPattern = 0;
    std::array<SelectorValue, 16> SelectorValues;
    std::array<std::int32_t, 3> ColorMixState{0, 0, 0};
    int LastBlurX = 0;
    int LastBlurY = 0;
    int SelectionBlend = 128;
    int NoUndoNextStroke = 0;
    bool SnapToGrid = false;
    bool ShowCrossLines = true;
    int GridX = 10;
    int GridY = 10;

    // The working colours: SelColor(0) the foreground, SelColor(1) the background,
    // and which of the two a left pick and the sliders edit.
    Color ForeColor = 0;
    Color BackColor = 0xFFFFFF;
    int SelIndex = 0;

    // Options of the tool panels that tools read.
    bool ScatterColors = false;                      // chkRan
    bool SmoothEdge = false;                         // chkSmoothEdge
    bool HardSpray = false;                          // chkAirOldSchool
    bool FloodFillBorder = false;                    // ChkFloodfill
    QString RoundCornersText = QStringLiteral("10"); // TxtRoundCorners
    QString ArrowSizeText = QStringLiteral("6");     // TxtArrowSize
    QString Size3DText = QStringLiteral("3");        // cmb3Dsize
    bool AddNoise = false;                           // OptNoise(1)
    bool DoubleStep = false;                         // OptStep(1)
    bool FilterBaseColor = false;                    // chkFilter
    bool SolidText = false;                          // chkSolidText
    bool TransparentText = false;                    // chkTransparentTXT
    bool CenterText = false;                         // OptCenterFont
    QString FontName = QStringLiteral("Arial");
    QString FontStyle = QStringLiteral("Normal");

    // The floating selection's panel (PicCursorCMD) shows.
    bool CursorPanelVisible = false;
    // chkblendit: the selection is blended over the picture under it at SelectionBlend.
    bool BlendSelection = false;
    // ChkTransparencyColor: pixels of TransparencyColor in the selection let the picture show.
    bool TransparentSelection = false;
    // The transparency colour of a floating selection (LblTransparencyColor) and its pick.
    Color TransparencyColor = 0xFFFFFF;
    bool TransparencyPickArmed = false;
    // The colour replacer's two swatches (LblReplaceCol).
    std::array<Color, 2> ReplaceColors{kNoColor, kNoColor};
    // The detail picker of the Detailed Editing window.
    bool DetailPickerArmed = false;

    Random random;
};

// The unit text each selector shows after its value.
QString SelectorUnit(int index);
// "100 pixel " style caption of a selector value.
QString SelectorCaption(int index, double value);

// The range the popup slider gives each selector, far left to far right.
int SelectorMinimum(int index);
int SelectorMaximum(int index);
// A value brought into its selector's range (stored settings may hold anything).
double ClampSelectorValue(int index, double value);

// The blend percentage shown for SelectionBlend (1..255): Int(SelectionBlend / 2.55),
// so 255 shows 100.
int BlendPercent(int selectionBlend);
// The smallest SelectionBlend that shows `percent` (0..100), never below 1: a typed
// value comes back unchanged in the text box.
int BlendFromPercent(int percent);

} // namespace velunta
