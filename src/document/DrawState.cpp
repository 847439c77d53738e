#include "document/DrawState.h"

#include <algorithm>
#include <cmath>

namespace velunta {

DrawState::DrawState()
{
    for (int i = 0; i < 16; ++i) {
        SelectorValues[i].Index = i;
        SelectorValues[i].Value = kToolOptionDefaults[i];
        SelectorValues[i].Caption = SelectorCaption(i, kToolOptionDefaults[i]);
    }
}

QString SelectorUnit(int index)
{
    switch (index) {
    case 0:  // airbrush pressure
    case 1:  // brighten pressure
    case 11: // darken pressure
        return QStringLiteral(" % ");
    case 7: // text size
        return QStringLiteral(" pt ");
    case 13: // dissolve intensity
    case 14: // enhance intensity
        return QStringLiteral(" ");
    default:
        return QStringLiteral(" pixel ");
    }
}

QString SelectorCaption(int index, double value)
{
    return QString::number(I2(value)) + SelectorUnit(index);
}

namespace {

// The slider's range per selector, by what the value means to its tool:
//   pressures (0, 1, 11)                1..100: a percentage of strength
//   brush sizes (2, 3, 8, 10, 12, 15)   1..100: the retouch ring walk squares the
//                                       radius in 16 bits and overflows above 181,
//                                       so the sizes stop well below
//   pen widths (4 pencil, 5 and 6 borders, 9 line)  1..50
//   text size (7)                       6..200 points
//   intensities (13 dissolve, 14 enhance)  0..255: a channel step
struct SelectorRange {
    int minimum;
    int maximum;
};
constexpr std::array<SelectorRange, 16> kSelectorRanges = {{
    {1, 100}, // 0 airbrush pressure
    {1, 100}, // 1 brighten pressure
    {1, 100}, // 2 airbrush size
    {1, 100}, // 3 brighten size
    {1, 50},  // 4 pencil size
    {1, 50},  // 5 rectangle border
    {1, 50},  // 6 circle border
    {6, 200}, // 7 text size
    {1, 100}, // 8 blur size
    {1, 50},  // 9 line width
    {1, 100}, // 10 darken size
    {1, 100}, // 11 darken pressure
    {1, 100}, // 12 dissolve size
    {0, 255}, // 13 dissolve intensity
    {0, 255}, // 14 enhance intensity
    {1, 100}, // 15 enhance size
}};

} // namespace

int SelectorMinimum(int index)
{
    return index >= 0 && index < 16 ? kSelectorRanges[index].minimum : 0;
}

int SelectorMaximum(int index)
{
    return index >= 0 && index < 16 ? kSelectorRanges[index].maximum : 0;
}

double ClampSelectorValue(int index, double value)
{
    return std::clamp(value, double(SelectorMinimum(index)), double(SelectorMaximum(index)));
}

int BlendPercent(int selectionBlend)
{
    return int(Int(selectionBlend / 2.55));
}

int BlendFromPercent(int percent)
{
    percent = std::clamp(percent, 0, 100);
    int blend = std::max(1, int(std::ceil(percent * 2.55 - 1e-9)));
    // 2.55 has no exact binary form: step up until the shown percentage is reached.
    while (blend < 255 && BlendPercent(blend) < percent)
        ++blend;
    return blend;
}

} // namespace velunta
