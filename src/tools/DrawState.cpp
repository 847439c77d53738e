#include "tools/DrawState.h"

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

} // namespace velunta
