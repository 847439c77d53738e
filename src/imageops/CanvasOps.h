#pragma once
// The pixel work of the canvas commands: flips, inversion, the stretch of a resize,
// the rotation by inverse mapping, and the channel arithmetic of brightness and
// contrast. Pure functions over pictures (Format_RGB32); the commands around them
// take the undo step, choose the picture or the selection and redraw.
//
// The functions that return a new picture allocate it whole first; they return a
// null picture when the memory can't be had and leave their input alone.

#include "core/Color.h"
#include "core/Progress.h"

#include <QImage>
#include <QRect>

#include <array>
#include <cstdint>

namespace velunta {

// A new picture of w x h with its pixels undefined, null when the memory can't be had.
QImage NewPicture(int width, int height);

// A copy of the picture in such memory, null when the memory can't be had.
QImage CopyPicture(const QImage& image);

// Whether a w x h picture fits in the memory the system has free now, with room to spare
// for the copy that the undo of a resize keeps. Sizes that would only be refused after
// the system started to swap, or that the kernel would meet by killing the program, are
// refused here, with a message, before anything is touched.
bool PictureFitsInMemory(qint64 width, qint64 height);

// The rows in reverse order (Flip Vertical) and the pixels of every row in reverse
// order (Flip Horizontal): true reversals, so that two flips give the picture back.
QImage FlippedVertically(const QImage& image);
QImage FlippedHorizontally(const QImage& image);

// Every colour bit inverted, as InvertRect over the whole picture does.
QImage Inverted(const QImage& image);

// `source` stretched over the whole of `target` by nearest samples, as the block
// transfer in COLORONCOLOR mode does it: target column i of w takes source column
// floor((i + 0.5) * sw / w), and the rows alike. The target is allocated by the caller,
// so that a size the memory refuses is known before anything changes.
void StretchPicture(const QImage& source, QImage& target);

// The angle of the rotation menu's entries 0..2 (45, 90 and 180 degrees), and of a
// typed angle once frmRotate has made a divisor of it. Both divide 3.14, not pi: the
// picture turns a little short of the angle, and at 180 degrees a thin line of
// unturned pixels stays at the edges. The angle goes on as a 32-bit float.
float MenuRotationAngle(int index);
float DivisorAngle(int divisor);

// frmRotate's reading of the typed angle: 1 to 360, else -1 ("invallid angle"). The
// divisor is round((360 / value) / 2), half to even, so the angle snaps to 180 degrees
// divided by a whole number; 181 to 360 give 1 or 0, and 0 turns nothing.
int RotateDivisorOf(double value);

// The rotation of `target` about its middle by `angle` radians, reading from
// `picOrig` (a copy of the target as it was). It walks one square quadrant, x and y
// from 0 to the larger half-size minus 1, and for each x, y reads four pixels of the
// source at the point turned by the angle (and the three quarter turns of it: the
// distance and angle of x, y found once serve all four) and writes the ones
// that lie inside the source to the four mirrored places of the target, in the order
// of those four, one y after the other. Pixels whose source lies outside keep what
// they had, so the corners stay untouched; the target is not cleared first.
// Stops after a row when `progress` says so; false then.
bool RotatePicture(QImage& target, const QImage& picOrig, float angle,
                   const ProgressFn& progress = NoProgress);

// Brightness and contrast work on three channels of 16-bit integers.
struct ColorTriple {
    std::int16_t red = 0;
    std::int16_t green = 0;
    std::int16_t blue = 0;
};
// red = colour mod 256, green = (colour \ 256) mod 256, blue = colour \ 65536.
ColorTriple SplitColor(Color c);
Color JoinColor(const ColorTriple& t);
// 255 for 256 and above, the value otherwise; 0 below 0, the value otherwise.
int Clip255(int value);
int Clip0(int value);

// Each channel, blue, red and green in turn: 128 and above is bright and goes to
// Clip255(c - amount); below 128 it goes to Clip0(c + amount). The dialog passes the
// negative of its slider, so a positive value spreads the channels away from 128.
ColorTriple AdjustContrast(ColorTriple t, int amount);
// One pixel of AdjustBrightness: the channels split by arithmetic, level added to
// each, each kept within 0 to 255.
Color BrightenColor(Color c, int level);

// The range of the dialog's slider. Within it no channel of AdjustContrast leaves 0 to
// 255, so a channel never spills into its neighbour when the colour is joined again.
inline constexpr int kAdjustMinimum = -128;
inline constexpr int kAdjustMaximum = 128;

// What a slider value does to one channel, as a table for all 256 values.
using ChannelTable = std::array<std::uint8_t, 256>;
ChannelTable ContrastTable(int value);
ChannelTable BrightnessTable(int level);
bool IsIdentity(const ChannelTable& table);

// `dest` takes the pixels of `source` inside `area` (clipped to both) with each channel
// through the table; the rest of `dest` is left as it is. The two have the same size.
// Reports the rows done; stops after a band of rows when `progress` says so (false then).
bool MapChannels(const QImage& source, QImage& dest, const QRect& area, const ChannelTable& table,
                 const ProgressFn& progress = NoProgress);

} // namespace velunta
