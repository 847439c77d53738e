#pragma once
// Blending mixes two pictures pixel by pixel: the floating selection with what lies
// under it or with a picture from a file (BlendThePic), or a picture with its own
// reflection (the reverse blends of the Effects menu).
//
// The mix of a source channel s over a destination channel d with the ratio k
// (0..255) is round((k / 255) * (s - d) + d), rounded half to even, so k = 0 leaves
// the destination and k = 255 gives the source. The style table then works on the
// mixed triple. Everything here runs on scan lines, column band by column band, so
// a stop leaves whole columns done and the rest untouched.

#include "core/Color.h"
#include "core/Progress.h"

#include <QString>

#include <span>

namespace velunta {

class Surface;

// BlendStyle, the index of the dialog's Option1.
enum BlendStyleIndex : int {
    kBlendNormal = 0,
    kBlendInverted = 1,
    kBlendRed = 2,
    kBlendGreen = 3,
    kBlendBlue = 4,
    kBlendScramble = 5,
};
inline constexpr int kBlendStyleCount = 6;

// BlendMode: what the dialog was closed with.
enum BlendModeValue : int {
    kBlendCancelled = 0,
    kBlendHorizontal = -1, // the selection over what lies under it (reflected left to right
                           // with the selection tool)
    kBlendVertical = 2,    // the same, reflected top to bottom with the selection tool
    kBlendFromFile = 3,    // the picture opened in the dialog over the selection
};

// What the Blend dialog leaves behind; it lasts while the program runs, so the
// dialog reopens at the last percentage and style.
struct BlendState {
    int BlendRatio = 0; // 0..255
    int BlendMode = kBlendCancelled;
    int BlendStyle = kBlendNormal;
};

// One channel of the mix.
int BlendChannel(int source, int destination, int ratio);
// The style table on a mixed triple (1 Inverted, 2 Red, 3 Green, 4 Blue, 5 Scramble;
// anything else leaves it).
Color BlendStyled(Color mixed, int style);

// The ratio of a percentage as the dialog takes it: Int(percent * 2.55), worked in
// exact decimals so that 100 gives 255 and 50 gives 127.
int BlendRatioOfPercent(double percent);
// The shortest percentage (whole, or with one or two decimals) that gives `ratio`
// back, so a reopened dialog shows what brings the same mix.
QString BlendPercentText(int ratio);

// Where the source pixel of (x, y) is read.
enum class BlendSource {
    Same,    // (x, y)
    MirrorH, // (width - 1 - x, y)
    MirrorV, // (x, height - 1 - y)
};

// Mixes `source` into `target` over the area both cover: each pixel of the target
// takes the mix of the source pixel (read as `from` says, with the source's own
// width and height) with the target pixel, through `style`. Works column band by
// column band and reports the fraction of columns done after each band; when
// `progress` asks to stop, the columns done so far stay and the rest is untouched.
// `source` may not share pixels with `target`. Returns false when the common area
// is empty.
bool BlendPictures(Surface& target, const Surface& source, int ratio, int style, BlendSource from,
                   const ProgressFn& progress);

// BlendThePic's pixel work: `picTexture` (what lies under the float, or the picture
// from a file) over the float in `target`. With the selection tool the picture is
// reflected first: left to right for kBlendHorizontal, top to bottom for
// kBlendVertical; a picture from a file stands as it is.
bool BlendThePicture(Surface& target, const Surface& picTexture, const BlendState& blend, bool selectionTool,
                     const ProgressFn& progress);

// The entries of the reverse blend menus, by index: caption, ratio and style.
struct ReverseBlend {
    const char* caption;
    int ratio;
    int style;
};
std::span<const ReverseBlend> ReverseBlends();

// A picture blended with its own reflection, left to right (horizontal) or top to
// bottom, as entry `index` of the menus gives it. False for an index outside the menu.
bool ReverseBlendPicture(Surface& target, bool vertical, int index, const ProgressFn& progress);

} // namespace velunta
