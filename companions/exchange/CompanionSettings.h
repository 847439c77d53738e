#pragma once
// What Velunta leaves in its settings store for the programs it starts: the two
// working colours and the thicknesses of its shape tools. The store is the same file
// Velunta keeps its own settings in (vendor Zolvane, section Velunta); a program only
// reads it.

#include "core/Color.h"

namespace velunta {

struct CompanionSettings {
    Color SelectedColor = 0;            // the foreground colour
    Color SelectedBackColor = 0xFFFFFF; // the background colour
    int CircleThickness = 1;            // pixels, 1..kMaxThickness
    int LineThickness = 1;
};

inline constexpr int kMaxThickness = 100;

// The values as Velunta last wrote them; a missing or odd value gives its default.
CompanionSettings ReadCompanionSettings();

} // namespace velunta
