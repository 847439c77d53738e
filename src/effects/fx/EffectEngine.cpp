#include "effects/fx/EffectEngine.h"

#include "core/Gdi.h"
#include "core/Numbers.h"
#include "core/Surface.h"

#include <algorithm>
#include <cmath>

namespace velunta {

struct EffectRun {
    EffectState& st;
    Surface& PicSource;
    Surface& picDest;
    const Surface& picSrc;
    const ProgressFn& progress;
    FxRect D; // picDest, 0, 0, PictureWidth, PictureHeight; S is the same rectangle
    int V0, V1, V2;
};

namespace {

// MulDiv of the platform: a * b / c in 64 bits, rounded half away from zero.
int MulDiv(int a, int b, int c)
{
    if (c == 0)
        return -1;
    const std::int64_t p = std::int64_t(a) * b;
    const std::int64_t q = (std::abs(p) + std::abs(std::int64_t(c)) / 2) / std::abs(std::int64_t(c));
    return I4(double((p < 0) != (c < 0) ? -q : q));
}

QString oneLine(const QString& text)
{
    QString t = text;
    return t.remove(QStringLiteral("\r\n"));
}

// Where a text layer goes: the preview's pointer, less half the text box, less the
// layer's n and m, plus the position bars. The halves are exact (.5 for the height), so
// rounding half to even puts neighbouring layers two pixels or none apart.
int textX(const EffectRun& r, int n)
{
    return I4(r.st.PointerX - I2(r.st.TextBoxWidth) / 2.0 - n + I2(r.st.OffsetX));
}
int textY(const EffectRun& r, int m)
{
    return I4(r.st.PointerY - I2(r.st.TextBoxHeight) / 2.0 - m + I2(r.st.OffsetY));
}

bool transparentText(EffectRun& r)
{
    EffectState& st = r.st;
    const FxFont font = CreateFontObj(st);
    const QString text = oneLine(st.Text1);
    // Pure white would vanish as the transparent key of the picture; the change stays.
    if (st.EffectColor == 16777215)
        st.EffectColor = RGB(255, 255, 254);
    if (st.Text1.isEmpty())
        return true;
    const int boxWidth = I4(double(r.V0) * st.TwipsPerPixelX);
    const int boxHeight = I4(double(r.V0) * st.TwipsPerPixelY);
    const int t = st.HScroll1[3];
    const auto layer = [&](int n, int m, int transparency) {
        fxDrawText(r.picDest, {textX(r, n), textY(r, m), boxWidth, boxHeight}, text, st.EffectColor, font,
                   transparency);
    };
    if (st.chkText3d) {
        // Two near-opaque outer layers a pixel either side of a weaker middle one: a soft edge.
        const int outer = I4((t + 1) / 7.0 + 1), middle = I4((t + 1) * 0.87);
        layer(79, 54, outer);
        layer(80, 55, middle);
        layer(81, 56, outer);
    } else {
        layer(80, 55, t);
    }
    return true;
}

bool text(EffectRun& r)
{
    EffectState& st = r.st;
    Surface& dest = r.picDest;
    dest.FontSize = r.V0;
    dest.FontName = st.FontName;
    dest.FontBold = st.Check1;
    dest.FontItalic = st.Check2;
    dest.FontUnderline = st.Check3;
    const QString line = oneLine(st.Text1);
    if (line.isEmpty())
        return true;
    if (st.chkText3d)
        for (int i = 1; i <= 2; ++i) // the shadow: two copies one and two steps up-left
            fxText(dest, textX(r, i + 80), textY(r, i + 55), line, st.ShadowColor);
    fxText(dest, textX(r, 80), textY(r, 55), line, st.EffectColor);
    return true;
}

// The flips and mirrors walk i from 0 to size - 1 copying row (or column) i to size - i
// on the picture itself, so a later step reads what an earlier one wrote: the first
// half of the walk lays the reflection of the first half over the second, and the
// second half copies those back onto themselves. The result is a mirror, not a flip.
// Each column copy touches every row alike, so the column walk runs row by row.
void columnWalk(Surface& s, int width, int height)
{
    QImage& image = s.Image();
    const int rows = std::min(height, image.height()), w = image.width();
    for (int y = 0; y < rows; ++y) {
        QRgb* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int i = 0; i < width && i < w; ++i)
            if (width - i < w)
                line[width - i] = line[i];
    }
    s.touchAll();
}

void rowWalk(Surface& s, int width, int height, bool toBottom)
{
    for (int i = 0; i < height; ++i) {
        fxBitBlt(s, 0, height - i, width, 1, s, 0, i, SRCCOPY);
        if (toBottom) // the walk's second copy, to the row just below the picture
            fxBitBlt(s, 0, height, width, 1, s, 0, i, SRCCOPY);
    }
}

bool flipHorizontal(EffectRun& r)
{
    columnWalk(r.picDest, r.st.PictureWidth, r.st.PictureHeight);
    return true;
}
bool flipVertical(EffectRun& r)
{
    rowWalk(r.picDest, r.st.PictureWidth, r.st.PictureHeight, false);
    return true;
}
bool mirrorVertical(EffectRun& r)
{
    rowWalk(r.picDest, r.st.PictureWidth, r.st.PictureHeight, true);
    return true;
}
bool mirrorQuad(EffectRun& r)
{
    rowWalk(r.picDest, r.st.PictureWidth, r.st.PictureHeight, true);
    columnWalk(r.picDest, r.st.PictureWidth, r.st.PictureHeight);
    return true;
}

FxRect reliefTarget(const EffectRun& r)
{
    return {0, 0, r.D.width + 1, r.D.height + 1};
}
FxRect reliefSource(const EffectRun& r)
{
    return {0, 0, r.D.width - 1, r.D.height - 1};
}

using S = SliderRow;
constexpr S kReset{};
constexpr S set(const char* label, int min, int max, int value)
{
    return {S::Set, label, min, max, value};
}
constexpr S off(const char* label)
{
    return {S::Disabled, label};
}
constexpr S same(const char* label = nullptr)
{
    return {S::Unchanged, label};
}
constexpr S hidden(const char* label)
{
    return {S::Hidden, label};
}

// Each row: id, captions, extra controls, sliders HScroll1(0..5), and the call with its
// arguments. D and S are the whole picture on picDest unless the call says otherwise.
// clang-format off
const EffectRow kEffects[] = {
    {1000, QT_TRANSLATE_NOOP("Effects", "Alpha Blending"), QT_TRANSLATE_NOOP("Effects", "Alpha Blending"), 0,
     {set(QT_TRANSLATE_NOOP("EffectSliders", "Blending: 0"), 0, 255, 0)},
     [](EffectRun& r) { return fxAlphaBlend(r.picDest, r.D, r.picSrc, r.D, r.V0, 16777215, r.progress); }},
    {1010, QT_TRANSLATE_NOOP("Effects", "Ambient Light"), QT_TRANSLATE_NOOP("Effects", "Ambient Light"), ColourPanel | FirstUseColour,
     {set(QT_TRANSLATE_NOOP("EffectSliders", "Intensity: 0"), 0, 255, 0)},
     [](EffectRun& r) {
         return fxAmbientLight(r.picDest, r.D, r.picDest, r.D, r.st.EffectColor, r.V0, r.progress);
     }},
    {1020, QT_TRANSLATE_NOOP("Effects", "Blur"), QT_TRANSLATE_NOOP("Effects", "Blur"), 0,
     {off(QT_TRANSLATE_NOOP("EffectSliders", "N/A Blur"))},
     [](EffectRun& r) { return fxBlur(r.picDest, r.D, r.picDest, r.D, r.progress); }},
    {1030, QT_TRANSLATE_NOOP("Effects", "Brightness"), QT_TRANSLATE_NOOP("Effects", "Brightness"), 0,
     {set(QT_TRANSLATE_NOOP("EffectSliders", "Brightness: 0"), -255, 255, 0)},
     [](EffectRun& r) { return fxBrightness(r.picDest, r.D, r.picDest, r.D, r.V0, r.progress); }},
    {1040, QT_TRANSLATE_NOOP("Effects", "Transparent Text"), QT_TRANSLATE_NOOP("Effects", "TransSpecial Text"), ColourPanel | TextGroup | TransparentTextGroup,
     {set(QT_TRANSLATE_NOOP("EffectSliders", "Text size: 22"), 6, 255, 22), hidden(QT_TRANSLATE_NOOP("EffectSliders", "Font:")), hidden(QT_TRANSLATE_NOOP("EffectSliders", "Your Text:")),
      set(QT_TRANSLATE_NOOP("EffectSliders", "Transparency: 0"), 0, 255, 128), set(nullptr, 0, 255, 0), set(nullptr, -1800, 1800, 0)},
     transparentText},
    // Emboss and engrave write from one row above the picture and one pixel past it.
    {1050, QT_TRANSLATE_NOOP("Effects", "Emboss"), QT_TRANSLATE_NOOP("Effects", "Emboss"), 0,
     {set(QT_TRANSLATE_NOOP("EffectSliders", "Depth: 128"), 0, 255, 128)},
     [](EffectRun& r) {
         return fxEmboss(r.picDest, {0, -1, r.D.width + 1, r.D.height + 1}, r.picDest, r.D, r.V0 / 100.0,
                         r.progress);
     }},
    {1060, QT_TRANSLATE_NOOP("Effects", "Engrave"), QT_TRANSLATE_NOOP("Effects", "Engrave"), 0,
     {set(QT_TRANSLATE_NOOP("EffectSliders", "Height: 128"), 0, 255, 128)},
     [](EffectRun& r) {
         return fxEngrave(r.picDest, {0, -1, r.D.width + 1, r.D.height + 1}, r.picDest, r.D, r.V0 / 100.0,
                          r.progress);
     }},
    {1070, QT_TRANSLATE_NOOP("Effects", "Gamma"), QT_TRANSLATE_NOOP("Effects", "Gamma"), 0,
     {set(QT_TRANSLATE_NOOP("EffectSliders", "Gamma: 100"), 0, 255, 100)},
     [](EffectRun& r) { return fxGamma(r.picDest, r.D, r.picDest, r.D, r.V0 / 100.0, r.progress); }},
    {1080, QT_TRANSLATE_NOOP("Effects", "Grayscale"), QT_TRANSLATE_NOOP("Effects", "Grayscale"), 0,
     {off(QT_TRANSLATE_NOOP("EffectSliders", "N/A Grayscale"))},
     [](EffectRun& r) { return fxGreyscale(r.picDest, r.D, r.picDest, r.D, r.progress); }},
    {1090, QT_TRANSLATE_NOOP("Effects", "Gridelines"), QT_TRANSLATE_NOOP("Effects", "Gridlines"), ColourPanel,
     {set(QT_TRANSLATE_NOOP("EffectSliders", "Transparency: 128"), 0, 255, 128), set(QT_TRANSLATE_NOOP("EffectSliders", "Size: 4"), 0, 24, 4)},
     [](EffectRun& r) {
         return fxGridelines(r.picDest, r.D, r.picDest, r.D, r.st.EffectColor, r.V0, r.V1, r.progress);
     }},
    {1100, QT_TRANSLATE_NOOP("Effects", "Hue"), QT_TRANSLATE_NOOP("Effects", "Hue"), 0,
     {set(QT_TRANSLATE_NOOP("EffectSliders", "Hue: 0"), -100, 100, 0)},
     [](EffectRun& r) { return fxHue(r.picDest, r.D, r.picDest, r.D, r.V0 / 100.0, r.progress); }},
    {1110, QT_TRANSLATE_NOOP("Effects", "Inversion"), QT_TRANSLATE_NOOP("Effects", "Inversion"), 0,
     {set(QT_TRANSLATE_NOOP("EffectSliders", "Inversion: 64"), 0, 255, 64)},
     [](EffectRun& r) { return fxInversion(r.picDest, r.D, r.picDest, r.D, r.V0, r.progress); }},
    {1120, QT_TRANSLATE_NOOP("Effects", "Invert"), QT_TRANSLATE_NOOP("Effects", "Invert"), 0,
     {off(QT_TRANSLATE_NOOP("EffectSliders", "N/A Invert"))},
     [](EffectRun& r) { return fxInvert(r.picDest, r.D, r.picDest, r.D, r.progress); }},
    {1130, QT_TRANSLATE_NOOP("Effects", "Light (spot)"), QT_TRANSLATE_NOOP("Effects", "SpotLight"), ColourPanel | PositionBars | FirstUseColour,
     {set(QT_TRANSLATE_NOOP("EffectSliders", "Intensity: 128"), 0, 255, 128), set(QT_TRANSLATE_NOOP("EffectSliders", "Definition: "), 0, 255, 64), set(QT_TRANSLATE_NOOP("EffectSliders", "Aperture: 90"), 0, 255, 90)},
     [](EffectRun& r) {
         return fxLight(r.picDest, I4(double(I2(r.st.OffsetX)) + r.st.PointerX),
                        I4(double(I2(r.st.OffsetY)) + r.st.PointerY), r.st.EffectColor, r.V2, r.V0, r.V1, 1,
                        {}, r.progress);
     }},
    {1140, QT_TRANSLATE_NOOP("Effects", "Mosaic"), QT_TRANSLATE_NOOP("Effects", "Mosaic"), 0,
     {set(QT_TRANSLATE_NOOP("EffectSliders", "Size: 5"), 0, 128, 5)},
     [](EffectRun& r) { return fxMosaic(r.picDest, r.D, r.picDest, r.D, r.V0, r.progress); }},
    {1150, QT_TRANSLATE_NOOP("Effects", "Reduce Colors"), QT_TRANSLATE_NOOP("Effects", "Reduce Colors"), 0,
     {set(QT_TRANSLATE_NOOP("EffectSliders", "Level: 0"), 0, 255, 0)},
     [](EffectRun& r) { return fxReduceColors(r.picDest, r.D, r.picDest, r.D, r.V0, r.progress); }},
    // Relief writes one pixel past the picture and reads one pixel short of it.
    {1160, QT_TRANSLATE_NOOP("Effects", "Relief"), QT_TRANSLATE_NOOP("Effects", "Relief"), 0,
     {off(QT_TRANSLATE_NOOP("EffectSliders", "N/A Relief"))},
     [](EffectRun& r) {
         return fxRelief(r.picDest, reliefTarget(r), r.picDest, reliefSource(r), r.progress);
     }},
    {1170, QT_TRANSLATE_NOOP("Effects", "Render"), QT_TRANSLATE_NOOP("Effects", "Render"), TransparencyPick | RenderOffset,
     {set(QT_TRANSLATE_NOOP("EffectSliders", "Angle: 0"), -360, 360, 0), set(QT_TRANSLATE_NOOP("EffectSliders", "Zoom: 100"), 0, 400, 100), set(QT_TRANSLATE_NOOP("EffectSliders", "Blending: 128"), 0, 255, 128)},
     [](EffectRun& r) {
         const int h = r.st.HScroll2, v = r.st.VScroll2;
         return fxRender(r.picDest, r.st.PivotX, r.st.PivotY, r.PicSource, h, v, I4(double(r.D.width) + h),
                         I4(double(r.D.height) + v), r.V2, r.V0, r.V1 / 100.0, r.st.TransparentColor,
                         r.progress);
     }},
    // The slider keeps its value and range from the effect before.
    {1180, QT_TRANSLATE_NOOP("Effects", "Anti Aliasing"), QT_TRANSLATE_NOOP("Effects", "Ultra anti aliasing"), 0,
     {same(QT_TRANSLATE_NOOP("EffectSliders", "N/A"))},
     [](EffectRun& r) { return fxAntiAlias(r.picDest, r.D, r.picDest, r.D, r.V0, r.progress); }},
    // The new colour is always black.
    {1190, QT_TRANSLATE_NOOP("Effects", "Replace Colors"), QT_TRANSLATE_NOOP("Effects", "Replace color"), ColourPanel,
     {set(QT_TRANSLATE_NOOP("EffectSliders", "Similarity: 50"), 0, 255, 50)},
     [](EffectRun& r) {
         return fxReplaceColors(r.picDest, r.D, r.picDest, r.D, r.st.EffectColor, 0, r.V0, r.progress);
     }},
    {1200, QT_TRANSLATE_NOOP("Effects", "Rotate"), QT_TRANSLATE_NOOP("Effects", "Rotate"), TransparencyPick,
     {set(QT_TRANSLATE_NOOP("EffectSliders", "Angle: 0"), -360, 360, 0)},
     [](EffectRun& r) {
         return fxRotate(r.picDest, r.st.PivotX, r.st.PivotY, r.PicSource, r.D, r.V0, r.st.TransparentColor,
                         r.progress);
     }},
    {1210, QT_TRANSLATE_NOOP("Effects", "Saturation Color"), QT_TRANSLATE_NOOP("Effects", "Saturation"), 0,
     {set(QT_TRANSLATE_NOOP("EffectSliders", "Saturation: 255"), 0, 255, 255)},
     [](EffectRun& r) { return fxSaturation(r.picDest, r.D, r.picDest, r.D, r.V0, r.progress); }},
    // The label reads 0 until the slider's handler runs; the value is 128.
    {1220, QT_TRANSLATE_NOOP("Effects", "Scanlines"), QT_TRANSLATE_NOOP("Effects", "Scanlines"), ColourPanel,
     {set(QT_TRANSLATE_NOOP("EffectSliders", "Transparency: 0"), 0, 255, 128), set(QT_TRANSLATE_NOOP("EffectSliders", "Size: 1"), 0, 24, 1)},
     [](EffectRun& r) {
         return fxScanlines(r.picDest, r.D, r.picDest, r.D, r.st.EffectColor, r.V0, r.V1, -1, r.progress);
     }},
    // Scroll has no effect of its own: the run shows the applied picture.
    {1230, QT_TRANSLATE_NOOP("Effects", "Scroll"), QT_TRANSLATE_NOOP("Effects", "Scroll"), 0, {same()}, nullptr},
    {1240, QT_TRANSLATE_NOOP("Effects", "Text"), QT_TRANSLATE_NOOP("Effects", "Text"), ColourPanel | TextGroup,
     {set(QT_TRANSLATE_NOOP("EffectSliders", "Text size: 22"), 6, 100, 22), hidden(QT_TRANSLATE_NOOP("EffectSliders", "Font:")), hidden(QT_TRANSLATE_NOOP("EffectSliders", "Your Text:"))},
     text},
    {1250, QT_TRANSLATE_NOOP("Effects", "Tone"), QT_TRANSLATE_NOOP("Effects", "Tone"), ColourPanel,
     {set(QT_TRANSLATE_NOOP("EffectSliders", "Tone: 50"), 0, 255, 50)},
     [](EffectRun& r) { return fxTone(r.picDest, r.D, r.picDest, r.D, r.st.EffectColor, r.V0, r.progress); }},
    // Zoom's vertical pivot is the true middle of the picture, unlike Rotate's and Render's.
    {1260, QT_TRANSLATE_NOOP("Effects", "Zoom"), QT_TRANSLATE_NOOP("Effects", "Zoomlens"), TransparencyPick,
     {set(QT_TRANSLATE_NOOP("EffectSliders", "Zoom: 1"), 0, 400, 100)},
     [](EffectRun& r) {
         return fxZoom(r.picDest, r.st.PivotX, I4(r.D.height / 2.0), r.PicSource, r.D, r.V0 / 100.0,
                       r.st.TransparentColor, r.progress);
     }},
    // The picture merged with itself shifted by a pixel (NOT source OR destination) keeps
    // only the edges; grey makes it a drawing.
    {1270, QT_TRANSLATE_NOOP("Effects", "Pencil Art"), QT_TRANSLATE_NOOP("Effects", "Pencil Art"), 0,
     {same(QT_TRANSLATE_NOOP("EffectSliders", "N/A"))},
     [](EffectRun& r) {
         fxBitBlt(r.picDest, 1, 1, r.D.width, r.D.height, r.picDest, 0, 0, MERGEPAINT);
         return fxGreyscale(r.picDest, r.D, r.picDest, r.D, r.progress);
     }},
    {1280, QT_TRANSLATE_NOOP("Effects", "Brass Plate"), QT_TRANSLATE_NOOP("Effects", "Brass Plate"), 0,
     {same()},
     [](EffectRun& r) {
         return fxRelief(r.picDest, reliefTarget(r), r.picDest, reliefSource(r), r.progress) &&
                fxHue(r.picDest, r.D, r.picDest, r.D, -67 / 100.0, r.progress);
     }},
    {1300, nullptr, nullptr, 0, {same()}, flipHorizontal},
    {1310, nullptr, nullptr, 0, {same()}, flipVertical},
    // The second copy of each column is onto itself.
    {1320, nullptr, nullptr, 0, {same()}, flipHorizontal},
    {1330, nullptr, nullptr, 0, {same()}, mirrorVertical},
    {1340, nullptr, nullptr, 0, {same()}, mirrorQuad},
};
// clang-format on

} // namespace

void SetPointerFromView(EffectState& state, double imgDestLeft, double imgDestTop)
{
    state.PointerX = I4(252 - imgDestLeft);
    state.PointerY = I4(193 - imgDestTop);
}

void SetPictureSize(EffectState& state, const Surface& PicSource, const Surface& picDest)
{
    state.PictureWidth = PicSource.ScaleWidth();
    state.PictureHeight = PicSource.ScaleHeight();
    const double w = picDest.ScaleWidth(), h = picDest.ScaleHeight();
    state.PivotX = std::max(32, I4(w / 2));
    state.PivotY = h > 0 ? std::max(32, I4((h / 2) * (w / h))) : 32;
}

FxFont CreateFontObj(const EffectState& state)
{
    FxFont font;
    font.face = state.FontName;
    font.height = -MulDiv(state.HScroll1[0], state.ScreenDpiY, 72);
    font.width = state.HScroll1[4];
    font.escapement = state.HScroll1[5];
    font.weight = (state.Check1 ? 1 : 0) * 100 + 600;
    font.italic = state.Check2;
    font.underline = state.Check3;
    font.quality = (state.Check4 ? 1 : 0) * 1027 + 2;
    return font;
}

std::span<const EffectRow> EffectTable()
{
    return kEffects;
}

const EffectRow* FindEffect(std::int32_t id)
{
    const auto it = std::find_if(std::begin(kEffects), std::end(kEffects),
                                 [id](const EffectRow& r) { return r.id == id; });
    return it == std::end(kEffects) ? nullptr : &*it;
}

bool ApplyEffect(EffectState& state, Surface& PicSource, Surface& picDest, const Surface& picSrc,
                 const ProgressFn& progress)
{
    // Each run starts again from the applied picture, so a preview never builds on itself.
    picDest.Cls();
    const EffectRow* row = FindEffect(state.EffectId);
    if (!row || !row->call)
        return true;
    EffectRun run{state,
                  PicSource,
                  picDest,
                  picSrc,
                  progress,
                  {0, 0, state.PictureWidth, state.PictureHeight},
                  state.HScroll1[0],
                  state.HScroll1[1],
                  state.HScroll1[2]};
    return row->call(run);
}

} // namespace velunta
