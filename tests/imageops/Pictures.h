#pragma once
// Pictures for the tests of the picture operations: noise that no operation meets by
// chance, and a picture as an operation leaves it.

#include "support/TestImages.h"

#include <functional>
#include <random>

namespace velunta::test {

inline QImage NoisePicture(int w, int h, unsigned seed)
{
    std::mt19937 random(seed);
    return MakeImage(w, h, [&](int, int) { return Color(random() & 0xFFFFFF); });
}

inline Surface SurfaceOf(const QImage& picture)
{
    Surface s;
    s.setImage(picture);
    return s;
}

// The picture after `change`, worked on a copy.
inline QImage Changed(const QImage& picture, const std::function<void(Surface&)>& change)
{
    Surface s = SurfaceOf(picture);
    change(s);
    return s.Image();
}

} // namespace velunta::test
