#pragma once
// The effect programs that ship with Velunta, as pure functions over a Format_RGB32
// picture, so the menu is never empty on a fresh install. Each program is one of these
// over the exchange file (effect_main.cpp).

#include <QImage>

namespace velunta {

// Warm brown tones, as old prints fade to.
void Sepia(QImage& picture);
// Each spot takes the average colour of the brightness most common around it: flat
// dabs of paint with the edges kept.
void OilPaint(QImage& picture);
// Grey pencil lines where the picture has edges, on white paper.
void PencilSketch(QImage& picture);
// `levels` steps per channel (2..255): flat poster colours.
void Posterize(QImage& picture, int levels = 4);
// The corners darken softly, leading the eye to the middle.
void Vignette(QImage& picture, double strength = 0.7);
// Faded sepia with film grain and dark corners.
void OldPhoto(QImage& picture);

} // namespace velunta
