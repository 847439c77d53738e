#pragma once
// The project's addresses on the web, kept in one place so that a move of the site
// changes one line.

namespace velunta {

// Help > "More Effects..." of the Effects Browser: where further effects are offered.
inline constexpr char kMoreEffectsAddress[] = "https://www.zolvane.com/velunta/effects/";

// The version file that the update check reads: the newest version as three digits on
// its first line (301 is 3.0.1), the title of the message on its second. The setting
// UpdateURL and the environment variable VELUNTA_UPDATE_URL override it.
inline constexpr char kUpdateAddress[] = "https://www.zolvane.com/velunta/velunta.ver";

// The page a new version is downloaded from, with the free effects beside it.
inline constexpr char kDownloadAddress[] = "https://www.zolvane.com/velunta/download/";

// Help > "Mail Velunta...": a new mail to the makers in the desktop's mail program.
inline constexpr char kMailAddress[] = "mailto:velunta@zolvane.com?subject=Velunta";

// Help > "Zolvane Discussion and Support group...": where users help each other.
inline constexpr char kSupportGroupAddress[] = "https://www.zolvane.com/velunta/forum/";

} // namespace velunta
