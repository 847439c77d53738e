#include "effects/fx/FxOnPicture.h"

#include "core/Numbers.h"
#include "core/Surface.h"

#include <algorithm>

namespace velunta {

namespace {

// A "Light" entry (intensity 255) lightens towards its colour, a "Dark" one (0) darkens.
const AmbientPreset kPresets[] = {
    {0, "&Black && White", nullptr, true, 0, 0},
    {2, "&Red Light", QT_TRANSLATE_NOOP("Effects", "Red Light"), false, RGB(255, 0, 0), 255},
    {3, "R&ed Dark", QT_TRANSLATE_NOOP("Effects", "Red Dark"), false, RGB(255, 0, 0), 0},
    {5, "&Green Light", QT_TRANSLATE_NOOP("Effects", "Green Light"), false, RGB(0, 255, 0), 255},
    {6, "Gr&een Dark", QT_TRANSLATE_NOOP("Effects", "Green Dark"), false, RGB(0, 255, 0), 0},
    {8, "B&lue Light", QT_TRANSLATE_NOOP("Effects", "Blue Light"), false, RGB(0, 0, 255), 255},
    {9, "Bl&ue Dark", QT_TRANSLATE_NOOP("Effects", "Blue Dark"), false, RGB(0, 0, 255), 0},
    {11, "&Yellow Light", QT_TRANSLATE_NOOP("Effects", "Yellow Light"), false, RGB(255, 255, 0), 255},
    {12, "Y&ellow Dark", QT_TRANSLATE_NOOP("Effects", "Yellow Dark"), false, RGB(255, 255, 0), 0},
    {14, "&Purple Light", QT_TRANSLATE_NOOP("Effects", "Purple Light"), false, RGB(255, 0, 255), 255},
    {15, "P&urple Dark", QT_TRANSLATE_NOOP("Effects", "Purple Dark"), false, RGB(255, 0, 255), 0},
    {17, "&Cyan Light", QT_TRANSLATE_NOOP("Effects", "Cyan Light"), false, RGB(0, 255, 255), 255},
    {18, "Cya&n Dark", QT_TRANSLATE_NOOP("Effects", "Cyan Dark"), false, RGB(0, 255, 255), 0},
    {20, "Gr&ayscale", QT_TRANSLATE_NOOP("Effects", "High Q Grayscale"), true, 0, 0},
    {22, "Bronze", QT_TRANSLATE_NOOP("Effects", "Bronze"), false, RGB(255, 210, 40), 30},
    {23, "Dusk Tone", QT_TRANSLATE_NOOP("Effects", "Dusk"), false, RGB(190, 140, 130), 75},
    {24, "City Night", QT_TRANSLATE_NOOP("Effects", "City Night"), false, RGB(120, 200, 230), 60},
};

} // namespace

bool FxOnPicture(Surface& target, int mode, Color color, int intensity, const ProgressFn& progress)
{
    const int m = I2(mode), level = I2(intensity);
    const FxRect whole = WholeOf(target);
    switch (m) {
    case 0:
        return fxGreyscale(target, whole, target, whole, progress);
    case 1:
        return fxBrightness(target, whole, target, whole, 10, progress);
    case 2:
        return fxBrightness(target, whole, target, whole, -10, progress);
    case 3:
        return fxAmbientLight(target, whole, target, whole, color, level, progress);
    default:
        return true;
    }
}

std::span<const AmbientPreset> AmbientPresets()
{
    return kPresets;
}

const AmbientPreset* AmbientPresetAt(int index)
{
    const auto it = std::find_if(std::begin(kPresets), std::end(kPresets),
                                 [index](const AmbientPreset& p) { return p.index == index; });
    return it == std::end(kPresets) ? nullptr : &*it;
}

bool ApplyAmbientPreset(Surface& target, const AmbientPreset& preset, const ProgressFn& progress)
{
    return preset.grey ? FxOnPicture(target, 0, 0, 0, progress)
                       : FxOnPicture(target, 3, preset.color, preset.intensity, progress);
}

bool PaintAmbientPreset(Surface& target, FxRect rect, const AmbientPreset& preset, const ProgressFn& progress)
{
    return preset.grey ? fxGreyscale(target, rect, target, rect, progress)
                       : fxAmbientLight(target, rect, target, rect, preset.color, preset.intensity, progress);
}

} // namespace velunta
