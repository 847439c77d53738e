#pragma once
// The one-click filters of the main window: grey, brighter, darker and the coloured
// ambient lights of the Effects menu, as pixel work on a whole surface. The command
// around them (selection or picture, undo step, progress with Esc, redraw) is the
// image-command runner's.

#include "core/Color.h"
#include "core/Progress.h"
#include "effects/fx/Fx.h"

#include <span>

namespace velunta {

class Surface;

// Mode 0 grey (fxGreyscale), 1 brighter by 10 and 2 darker by 10 (fxBrightness), 3 the
// ambient light of `color` at `intensity` (fxAmbientLight), on the whole drawing layer
// of `target`. Another mode does nothing. Mode and intensity are 16-bit: a value
// outside that throws OverflowError before any pixel changes. False when `progress`
// stopped it.
bool FxOnPicture(Surface& target, int mode, Color color, int intensity, const ProgressFn& progress = {});

// An entry of Effects > Ambient Light (`Greyscale`), and of the Effects Browser's
// Ambient Light menu (`mnuAmbients`) where it has a caption there. Indexes without an
// entry are separators.
struct AmbientPreset {
    int index;
    const char* caption;        // Greyscale(index)
    const char* browserCaption; // mnuAmbients(index); null where the browser has none
    bool grey;                  // grey (mode 0) rather than a coloured light (mode 3)
    Color color;
    int intensity;
};

std::span<const AmbientPreset> AmbientPresets();
// The preset at a menu index; null for a separator or an index past the list.
const AmbientPreset* AmbientPresetAt(int index);

// Greyscale_Click's work: FxOnPicture with the preset's mode, colour and intensity.
bool ApplyAmbientPreset(Surface& target, const AmbientPreset& preset, const ProgressFn& progress = {});
// mnuAmbients_Click's work in the Effects Browser, on a rectangle of its work surface.
bool PaintAmbientPreset(Surface& target, FxRect rect, const AmbientPreset& preset,
                        const ProgressFn& progress = {});

} // namespace velunta
