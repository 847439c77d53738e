#pragma once
// The project's addresses on the web, kept in one place so that a move of the site
// changes one line.

namespace velunta {

// Help > "More Effects..." of the Effects Browser: where further effects are offered.
inline constexpr char kMoreEffectsAddress[] = "https://www.zolvane.com/velunta/effects/";

} // namespace velunta
