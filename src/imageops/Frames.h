#pragma once
// Picture frames drawn along the edges of a picture: a gradient frame of nested
// rings from a start colour at the edge to an end colour inside, and a transparency
// frame that lightens a band along the edges.
//
// Ring i is the set of pixels i pixels from the nearest edge (of those the layout
// uses), so the rings 0..thickness nest like the outlines of shrinking rectangles
// and every pixel belongs to one ring only.

#include "core/Color.h"

#include <QImage>
#include <QSize>

#include <vector>

namespace velunta {

class Surface;

// The ring layouts of the gradient frame.
enum FrameLayout : int {
    kFrameAllSides = 0,  // all four sides in the ring's colour
    kFrameRaised = 1,    // top and left run from start to end, bottom and right the other way
    kFrameTopBottom = 2, // bands along the top and the bottom only
    kFrameLeftRight = 3, // bands along the left and the right only
};
inline constexpr int kFrameLayoutCount = 4;

// Fade of the transparency frame.
enum FrameFade : int {
    kFadeNone = 0,    // the same lightening all across the band
    kFadeLighten = 1, // more inwards
    kFadeDarken = 2,  // less inwards, never less than 1
};

// The colour of ring i of `thickness`: each channel from start to end in proportion
// to i / thickness, rounded half to even and kept within 0..255. A thickness of 0
// gives the start colour.
Color FrameColorAt(int i, int thickness, Color startColor, Color endColor);

// What the transparency frame adds to each channel of ring i: a level below 1 counts
// as 30; the fade moves by 2 a ring for frames thinner than 28 and by 1 from 28 on;
// never below 1.
int TransparencyAmount(int i, int thickness, int level, int fade);

// Rings 0..thickness of the gradient frame, each in FrameColorAt's colour.
void DrawGradientFrame(Surface& target, int thickness, Color startColor, Color endColor, int style);
// Rings 0..thickness lightened by TransparencyAmount, each channel at most 255.
void DrawTransparencyFrame(Surface& target, int thickness, int level, int fade);

// The settings of the Picture Frames dialog; they last while the program runs.
struct FrameSettings {
    bool transparency = false; // optFrame(1): the transparency frame, else the gradient frame
    int thickness = 20;        // cmbThickness
    Color startColor = RGB(96, 52, 24);
    Color endColor = RGB(240, 206, 140);
    int style = kFrameAllSides;
    int transThickness = 20;     // cmbTransThick
    int transLevel = 60;         // cmbTransLevel
    bool fade = false;           // chkTransFade
    int fadeKind = kFadeLighten; // optFade(0) lighten, optFade(1) darken
};

// The frame the settings describe, on the whole target.
void DrawFrame(Surface& target, const FrameSettings& settings);

// The preview of a frame. It keeps a reduced copy of the picture (each of its pixels
// the nearest sample of the picture) and draws the frame on it as the full-size frame
// would look there: every preview pixel shows what the framed picture has at its
// sample, so the preview costs the preview's pixels, whatever the picture's size.
class FramePreview {
public:
    FramePreview() = default;
    // A copy of `picture` that fits `box`, never larger than the picture.
    FramePreview(const QImage& picture, QSize box);
    QImage render(const FrameSettings& settings) const;
    QSize pictureSize() const { return m_full; }
    const QImage& reduced() const { return m_reduced; }

private:
    QImage m_reduced;
    QSize m_full;
    std::vector<int> m_columns; // the picture's column of each preview column
    std::vector<int> m_rows;
};

} // namespace velunta
