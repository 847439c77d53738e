#include "imageops/Blend.h"

#include "core/Numbers.h"
#include "core/Surface.h"

#include <algorithm>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif
#include <cmath>

namespace velunta {

namespace {

constexpr ReverseBlend kReverseBlends[] = {
    {"Normal Soft", 30, kBlendNormal}, {"Normal Medium", 50, kBlendNormal},
    {"Normal Hard", 70, kBlendNormal}, {"Mirror", 100, kBlendNormal},
    {"Invert", 65, kBlendInverted},    {"Red", 65, kBlendRed},
    {"Green", 65, kBlendGreen},        {"Blue", 65, kBlendBlue},
};

// Two channels at once, each in the low byte of a 16-bit lane of a 32-bit word.
// The mix round((k / 255) * (s - d) + d) is (k s + (255 - k) d) / 255 rounded, and the
// numerator is never a half above a multiple of 255 (that would need 2 k (s - d) to be
// an odd multiple of 255), so it rounds the same whichever way halves go: adding 127
// and dividing by 255 gives it. The numerator stays below 65536, so the lanes never
// carry into each other, and x / 255 is (x + 1 + (x >> 8)) >> 8 in that range.
inline quint32 mixLanes(quint32 s, quint32 d, quint32 k, quint32 rest)
{
    const quint32 x = s * k + d * rest + 0x007F007Fu;
    return ((x + 0x00010001u + ((x >> 8) & 0x00FF00FFu)) >> 8) & 0x00FF00FFu;
}

inline QRgb mixPixel(QRgb s, QRgb d, quint32 k, quint32 rest)
{
    const quint32 redBlue = mixLanes(s & 0x00FF00FFu, d & 0x00FF00FFu, k, rest);
    const quint32 green = mixLanes((s >> 8) & 0xFFu, (d >> 8) & 0xFFu, k, rest);
    return 0xFF000000u | redBlue | (green << 8);
}

// The style table on a pixel as the surface keeps it (0xFFRRGGBB).
inline QRgb scramble(QRgb p)
{
    const quint32 r = (p >> 16) & 0xFFu, g = (p >> 8) & 0xFFu, b = p & 0xFFu;
    return 0xFF000000u | ((r | g) << 16) | ((g | b) << 8) | (r | b);
}

quint32 styleMask(int style)
{
    switch (style) {
    case kBlendInverted:
        return 0x00FFFFFFu;
    case kBlendRed:
        return 0x00FF0000u;
    case kBlendGreen:
        return 0x0000FF00u;
    case kBlendBlue:
        return 0x000000FFu;
    default:
        return 0;
    }
}

#if defined(__SSE2__)
// Four pixels at once, each channel in a 16-bit lane: the same arithmetic as
// mixLanes, whose sums stay below 65536.
inline __m128i mixHalf(__m128i s, __m128i d, __m128i k, __m128i rest)
{
    const __m128i x =
        _mm_add_epi16(_mm_add_epi16(_mm_mullo_epi16(s, k), _mm_mullo_epi16(d, rest)), _mm_set1_epi16(127));
    return _mm_srli_epi16(_mm_add_epi16(_mm_add_epi16(x, _mm_set1_epi16(1)), _mm_srli_epi16(x, 8)), 8);
}

inline __m128i mix4(__m128i s, __m128i d, __m128i k, __m128i rest)
{
    const __m128i zero = _mm_setzero_si128();
    return _mm_packus_epi16(mixHalf(_mm_unpacklo_epi8(s, zero), _mm_unpacklo_epi8(d, zero), k, rest),
                            mixHalf(_mm_unpackhi_epi8(s, zero), _mm_unpackhi_epi8(d, zero), k, rest));
}
#endif

// n pixels of a row: d[i] takes the mix of s[i * step] over it (step 1, or -1 for a
// row read backwards), then the style.
void mixRun(QRgb* d, const QRgb* s, int step, int n, quint32 k, int style)
{
    const quint32 rest = 255 - k;
    const quint32 flip = style == kBlendScramble ? 0 : styleMask(style);
    int i = 0;
#if defined(__SSE2__)
    const __m128i kk = _mm_set1_epi16(short(k)), rr = _mm_set1_epi16(short(rest));
    const __m128i opaque = _mm_set1_epi32(int(0xFF000000u)), flipped = _mm_set1_epi32(int(flip));
    for (; i + 4 <= n; i += 4) {
        __m128i src;
        if (step == 1) {
            src = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
        } else {
            // s[-i - 3] .. s[-i], turned round.
            src = _mm_shuffle_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(s - i - 3)), 0x1B);
        }
        auto* out = reinterpret_cast<__m128i*>(d + i);
        const __m128i mixed = mix4(src, _mm_loadu_si128(out), kk, rr);
        _mm_storeu_si128(out, _mm_xor_si128(_mm_or_si128(mixed, opaque), flipped));
    }
#endif
    for (; i < n; ++i)
        d[i] = mixPixel(s[i * step], d[i], k, rest) ^ flip;
    if (style == kBlendScramble)
        for (int j = 0; j < n; ++j)
            d[j] = scramble(d[j]);
}

// The columns of one band. A stop is heard between bands, and the strip moves band by
// band. Bands are wide because every row of a band starts a new run of memory reads:
// on a 4000-pixel picture four bands take about half again as long as one, and a
// hundred bands four times as long. At least 1024 columns and at most eight bands
// keep that cost small and still let Esc stop a large picture part way.
int bandWidth(int width)
{
    return std::max(1024, (width + 7) / 8);
}

} // namespace

int BlendChannel(int source, int destination, int ratio)
{
    const quint32 k = quint32(std::clamp(ratio, 0, 255));
    return int(mixLanes(quint32(source & 0xFF), quint32(destination & 0xFF), k, 255 - k));
}

Color BlendStyled(Color mixed, int style)
{
    const QRgb p = ToQRgb(mixed);
    if (style == kBlendScramble)
        return FromQRgb(scramble(p));
    return FromQRgb(p ^ styleMask(style));
}

int BlendRatioOfPercent(double percent)
{
    // percent * 255 / 100 is exact for whole percentages, where percent * 2.55 in
    // binary floating point falls just short of 255 at 100.
    return int(Int(percent * 255.0 / 100.0));
}

QString BlendPercentText(int ratio)
{
    for (int decimals = 0; decimals <= 2; ++decimals) {
        const double unit = std::pow(10.0, decimals);
        const double p = std::ceil(ratio / 2.55 * unit - 1e-9) / unit;
        if (BlendRatioOfPercent(p) == ratio)
            return NumberText(p);
    }
    return NumberText(ratio / 2.55);
}

bool BlendPictures(Surface& target, const Surface& source, int ratio, int style, BlendSource from,
                   const ProgressFn& progress)
{
    QImage& dst = target.Image();
    const QImage& src = source.Image();
    const int w = std::min(dst.width(), src.width());
    const int h = std::min(dst.height(), src.height());
    if (w <= 0 || h <= 0)
        return false;
    const quint32 k = quint32(std::clamp(ratio, 0, 255));
    const int band = bandWidth(w);
    const qsizetype dstStride = dst.bytesPerLine() / 4;
    const qsizetype srcStride = src.bytesPerLine() / 4;
    auto* dstBits = reinterpret_cast<QRgb*>(dst.bits());
    const auto* srcBits = reinterpret_cast<const QRgb*>(src.constBits());
    for (int x0 = 0; x0 < w; x0 += band) {
        const int n = std::min(band, w - x0);
        for (int y = 0; y < h; ++y) {
            QRgb* d = dstBits + y * dstStride + x0;
            switch (from) {
            case BlendSource::Same:
                mixRun(d, srcBits + y * srcStride + x0, 1, n, k, style);
                break;
            case BlendSource::MirrorH:
                mixRun(d, srcBits + y * srcStride + (src.width() - 1 - x0), -1, n, k, style);
                break;
            case BlendSource::MirrorV:
                mixRun(d, srcBits + (src.height() - 1 - y) * srcStride + x0, 1, n, k, style);
                break;
            }
        }
        target.touch(QRect(x0, 0, n, h));
        if (progress && progress(double(x0 + n) / (w + 1)))
            break;
    }
    return true;
}

bool BlendThePicture(Surface& target, const Surface& picTexture, const BlendState& blend, bool selectionTool,
                     const ProgressFn& progress)
{
    // With the selection tool the picture is reflected first: reading it at the
    // reflected place gives the same pixels without a reflected copy.
    BlendSource from = BlendSource::Same;
    if (selectionTool && blend.BlendMode == kBlendHorizontal)
        from = BlendSource::MirrorH;
    else if (selectionTool && blend.BlendMode == kBlendVertical)
        from = BlendSource::MirrorV;
    return BlendPictures(target, picTexture, blend.BlendRatio, blend.BlendStyle, from, progress);
}

std::span<const ReverseBlend> ReverseBlends()
{
    return kReverseBlends;
}

bool ReverseBlendPicture(Surface& target, bool vertical, int index, const ProgressFn& progress)
{
    if (index < 0 || index >= int(std::size(kReverseBlends)))
        return false;
    // The reflection is read from the picture as it was: the copy shares its pixels,
    // and the target's first write takes a copy of its own.
    Surface picTexture;
    picTexture.setImage(target.Image());
    const ReverseBlend& entry = kReverseBlends[index];
    return BlendPictures(target, picTexture, entry.ratio, entry.style,
                         vertical ? BlendSource::MirrorV : BlendSource::MirrorH, progress);
}

} // namespace velunta
