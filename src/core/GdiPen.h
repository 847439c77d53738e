#pragma once
// The rows of the round pen's stroke, shared by the single line (GdiShapes.cpp) and
// the many lines of Lines (GdiLines.cpp) so that both paint the very same pixels.
//
// The round pen: every pixel whose centre lies within width / 2 of the segment
// between the pen centres of the two points (a tie counts as inside). An odd width
// centres the pen on the pixel's centre, an even width on its top-left corner, so a
// dot is exactly `width` pixels across (width 2 at x, y covers x - 1..x, y - 1..y).
// Each row is one span, the stadium being convex.
//
// Everything is decided in integers, in doubled coordinates where pixel centres and
// pen centres both fall on whole numbers, so no pixel depends on a rounding. A row
// costs a few additions: the band's limits move by a fixed amount from row to row
// and are kept as quotient and remainder instead of being divided anew. That keeps
// long wide lines (the gradient's strips run across the whole picture) cheap.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <utility>

namespace velunta::raster {

template <typename T> T floorDiv(T a, T b) // b > 0
{
    const T q = a / b;
    return (a % b != 0 && a < 0) ? q - 1 : q;
}

template <typename T> T isqrtFloor(T v)
{
    if (v <= 0)
        return 0;
    T s = T(std::sqrt(static_cast<long double>(v)));
    while (s > 0 && s * s > v)
        --s;
    while ((s + 1) * (s + 1) <= v)
        ++s;
    return s;
}

// floor(N / D) while N grows by S every row, D > 0.
template <typename T> struct SteppedQuotient {
    T q, r, d, sq, sr;
    SteppedQuotient(T n, T s, T divisor) : d(divisor)
    {
        q = floorDiv(n, d);
        r = n - q * d;
        sq = floorDiv(s, d);
        sr = s - sq * d;
    }
    void step()
    {
        q += sq;
        r += sr;
        const bool carry = r >= d;
        r -= carry ? d : 0;
        q += carry ? 1 : 0;
    }
};

// The columns t (counted from the first point) with c * t in lo..hi, where lo and hi
// move by `s` every row k (counted from the first row drawn). With c = 0 the limit
// leaves the columns free and allows only the rows k where lo <= 0 <= hi.
template <typename T> struct BandLimit {
    SteppedQuotient<T> first{0, 0, 1}, last{0, 0, 1};
    bool rowsOnly = false;
    T firstRow = 0, lastRow = 0; // allowed rows when rowsOnly (may be empty)

    BandLimit(T c, T lo, T hi, T s, T rows)
    {
        if (c < 0) {
            c = -c;
            std::swap(lo, hi);
            lo = -lo;
            hi = -hi;
            s = -s;
        }
        if (c != 0) {
            first = {lo + c - 1, s, c};
            last = {hi, s, c};
            return;
        }
        rowsOnly = true;
        // lo + s k <= 0 <= hi + s k
        if (s == 0) {
            firstRow = lo <= 0 && hi >= 0 ? 0 : rows;
            lastRow = rows;
        } else if (s > 0) {
            firstRow = -floorDiv<T>(hi, s);
            lastRow = floorDiv<T>(-lo, s);
        } else {
            firstRow = -floorDiv<T>(-lo, -s);
            lastRow = floorDiv<T>(hi, -s);
        }
    }
};

// The rows rowFrom..rowTo of the pen's stadium from (x1, y1) to (x2, y2): emit(row,
// first, last) with columns counted from x1 and clipped to tFrom..tTo, for each row
// that has any.
template <typename T, typename Emit>
void stadiumRows(int x1, int y1, int x2, int y2, int width, int rowFrom, int rowTo, T tFrom, T tTo, Emit emit)
{
    const T e = width % 2 ? 0 : 1; // doubled offset of a pixel centre from an even pen's centre
    const T w = width, w2 = w * w;
    const T dx = T(x2) - x1, dy = T(y2) - y1, len2 = dx * dx + dy * dy;
    // w * len is small even when its square is not; the square is formed in 128 bits.
    const T reach = T(isqrtFloor<__int128>(__int128(w2) * __int128(len2)));
    const T rows = T(rowTo) - rowFrom;
    const T v0 = 2 * (T(rowFrom) - y1) + e;
    // The band, per row of V (twice the row's offset from the first point): the
    // projection on the segment within 0..len2 and the distance from its line within
    // width / 2, both as limits on the column.
    BandLimit<T> along(2 * dx, -e * dx - v0 * dy, 2 * len2 - e * dx - v0 * dy, -2 * dy, rows);
    BandLimit<T> across(2 * dy, -reach - e * dy + v0 * dx, reach - e * dy + v0 * dx, 2 * dx, rows);
    T bandRowFrom = 0, bandRowTo = len2 > 0 ? rows : -1;
    for (const BandLimit<T>* limit : {&along, &across}) {
        if (limit->rowsOnly) {
            bandRowFrom = std::max(bandRowFrom, limit->firstRow);
            bandRowTo = std::min(bandRowTo, limit->lastRow);
        }
    }
    constexpr T kNone = std::numeric_limits<std::int64_t>::max();
    T v = v0;
    for (T k = 0; k <= rows; ++k, v += 2) {
        T lo = kNone, hi = -kNone;
        if (k >= bandRowFrom && k <= bandRowTo) {
            lo = along.rowsOnly    ? across.first.q
                 : across.rowsOnly ? along.first.q
                                   : std::max(along.first.q, across.first.q);
            hi = along.rowsOnly    ? across.last.q
                 : across.rowsOnly ? along.last.q
                                   : std::min(along.last.q, across.last.q);
        }
        along.first.step();
        along.last.step();
        across.first.step();
        across.last.step();
        // The two end discs: |U| <= sqrt(w^2 - V^2) with U = 2 t + e.
        for (const auto& [shiftT, vv] : {std::pair<T, T>{0, v}, std::pair<T, T>{dx, v - 2 * dy}}) {
            if (vv < -w || vv > w)
                continue;
            const T h = isqrtFloor<T>(w2 - vv * vv);
            const T discLo = shiftT - floorDiv<T>(h + e, 2), discHi = shiftT + floorDiv<T>(h - e, 2);
            // A row the band misses entirely takes the disc's span alone.
            if (lo > hi) {
                lo = discLo;
                hi = discHi;
            } else {
                lo = std::min(lo, discLo);
                hi = std::max(hi, discHi);
            }
        }
        lo = std::max(lo, tFrom);
        hi = std::min(hi, tTo);
        if (lo <= hi)
            emit(rowFrom + int(k), lo, hi);
    }
}

// The rows a pen's stroke can reach, clipped to 0..height-1 (first > last when none).
inline std::pair<int, int> penRows(int y1, int y2, int width, int height)
{
    const double shift = width % 2 ? 0.5 : 0.0;
    const double r = width / 2.0;
    const double ay = y1 + shift, by = y2 + shift;
    const double first = std::max(0.0, std::floor(std::min(ay, by) - r - 0.5));
    const double last = std::min(height - 1.0, std::ceil(std::max(ay, by) + r));
    return first > last ? std::pair{1, 0} : std::pair{int(first), int(last)};
}

// 64 bits hold every product while the coordinates stay below 2^20 and the pen below
// 2^10; beyond that (a line thrown far off the picture) the arithmetic runs in 128 bits.
inline bool fitsIn64(std::initializer_list<int> coordinates, int width)
{
    constexpr int kSmall = 1 << 20;
    return width < (1 << 10) && std::all_of(coordinates.begin(), coordinates.end(),
                                            [](int c) { return c > -kSmall && c < kSmall; });
}

} // namespace velunta::raster
