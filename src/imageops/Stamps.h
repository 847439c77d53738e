#pragma once
// The stamps of Symbols & Stamps: small pictures with an alpha channel, listed with
// their group in stamps/stamps.txt under the program's folder. One-colour stamps
// (arrows, hearts, signs) are ink of one colour whose coverage is the alpha channel,
// so they take any colour; the others keep their own colours.

#include "core/Color.h"

#include <QImage>
#include <QString>
#include <QVector>

namespace velunta {

struct Stamp {
    QString group; // "Birthday", "Weather", ...
    QString name;  // what it shows, for its tooltip
    bool oneColour = false;
    QImage picture; // Format_ARGB32, cut to the drawing; the longer side at most kLargestStamp
};

// The stamp sizes a user can choose (the longer side, in pixels).
inline constexpr int kStampSizes[3] = {64, 96, 128};
inline constexpr int kLargestStamp = 128;

// Reads the list and the pictures in `folder` (with a trailing "/"). A line whose
// picture is missing or unreadable is left out; `problem` says why the list is
// empty when it is.
QVector<Stamp> LoadStamps(const QString& folder, QString* problem = nullptr);

// ColorsUpdate's work on one stamp: every pixel takes the colour and keeps its alpha.
void RecolorStamp(QImage& picture, Color colour);

// The stamp at the size `side` (one of kStampSizes: the stamp's square, which its
// longer side fills or nearly), with its transparency.
QImage StampAtSize(const QImage& picture, int side);
// The stamp at that size laid on a ground of `paper`: how it crosses the clipboard,
// whose pictures have no transparency.
QImage StampPicture(const QImage& picture, int side, Color paper);

} // namespace velunta
