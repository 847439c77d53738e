// Speed of the effects library on a 4000 x 3000 picture, each operation in place as the
// one-click filters run it (the picture is restored between iterations, untimed), and
// the Effects Browser's preview path (ApplyEffect: the clear from the applied picture
// plus one effect) for every effect of the table. A plain full-picture copy is timed in
// the same run as the yardstick; the summary at the end prints every operation as a
// number of copies against its budget. bench/fx_vs_pillow.py sets these times against
// Pillow's nearest equivalents.

#include "core/Surface.h"
#include "effects/fx/EffectEngine.h"
#include "effects/fx/Fx.h"

#include <QGuiApplication>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <map>
#include <string>

using namespace velunta;

namespace {

constexpr int kWidth = 4000, kHeight = 3000;
constexpr Color kTint = RGB(255, 200, 40);

// Gradients with noise, so that no filter meets flat areas only.
const QImage& photo()
{
    static const QImage image = [] {
        QImage img(kWidth, kHeight, QImage::Format_RGB32);
        std::uint32_t seed = 12345;
        for (int y = 0; y < kHeight; ++y) {
            QRgb* line = reinterpret_cast<QRgb*>(img.scanLine(y));
            for (int x = 0; x < kWidth; ++x) {
                seed = seed * 1664525u + 1013904223u;
                const int noise = int(seed >> 27);
                line[x] = qRgb((x * 255 / kWidth + noise) & 255, (128 + noise * 3) & 255,
                               (y * 255 / kHeight) ^ noise);
            }
        }
        return img;
    }();
    return image;
}

Surface pictureSurface()
{
    Surface s;
    s.setImage(photo());
    s.setPicture(photo());
    return s;
}

void restore(Surface& s)
{
    std::memcpy(s.Image().bits(), photo().constBits(), std::size_t(photo().sizeInBytes()));
}

// The yardstick: one plain copy of the whole picture into a picture of the same size.
void BM_Copy(benchmark::State& state)
{
    Surface s = pictureSurface();
    for (auto _ : state) {
        restore(s);
        benchmark::DoNotOptimize(s.Image().constBits());
    }
}

using InPlace = std::function<void(Surface&, FxRect)>;

// An operation in place on the whole picture, the picture restored before each run.
void runInPlace(benchmark::State& state, const InPlace& op)
{
    Surface s = pictureSurface();
    const FxRect whole = WholeOf(s);
    for (auto _ : state) {
        state.PauseTiming();
        restore(s);
        state.ResumeTiming();
        op(s, whole);
    }
}

// An operation that draws PicSource onto the picture.
void runFromSource(benchmark::State& state, const std::function<void(Surface&, const Surface&)>& op)
{
    const Surface source = pictureSurface();
    Surface s = pictureSurface();
    for (auto _ : state) {
        state.PauseTiming();
        restore(s);
        state.ResumeTiming();
        op(s, source);
    }
}

void BM_ApplyEffect(benchmark::State& state)
{
    Surface PicSource = pictureSurface(), picDest = pictureSurface(), picSrc = pictureSurface();
    picSrc.Image().fill(0xFFF0F0F0u);
    EffectState st;
    SetPictureSize(st, PicSource, picDest);
    const EffectRow& row = *FindEffect(std::int32_t(state.range(0)));
    st.EffectId = row.id;
    for (int i = 0; i < 6; ++i)
        st.HScroll1[i] = row.sliders[i].kind == SliderRow::Set ? row.sliders[i].value : 0;
    st.EffectColor = kTint;
    st.Text1 = QStringLiteral("Velunta");
    for (auto _ : state)
        ApplyEffect(st, PicSource, picDest, picSrc);
}

// Budgets in copies: point operations 5, 3 x 3 filters 13, hue 20; 0 means the
// operation is measured against Pillow by the script instead.
struct Entry {
    const char* name;
    double budget;
    InPlace op;
};

const std::vector<Entry>& inPlaceOps()
{
    static const std::vector<Entry> ops = {
        {"brightness", 5, [](Surface& s, FxRect r) { fxBrightness(s, r, s, r, 40); }},
        {"gamma", 5, [](Surface& s, FxRect r) { fxGamma(s, r, s, r, 1.6); }},
        {"greyscale", 5, [](Surface& s, FxRect r) { fxGreyscale(s, r, s, r); }},
        {"invert", 5, [](Surface& s, FxRect r) { fxInvert(s, r, s, r); }},
        {"inversion", 5, [](Surface& s, FxRect r) { fxInversion(s, r, s, r, 64); }},
        {"saturation", 5, [](Surface& s, FxRect r) { fxSaturation(s, r, s, r, 90); }},
        {"tone", 5, [](Surface& s, FxRect r) { fxTone(s, r, s, r, kTint, 200); }},
        {"ambientlight", 5, [](Surface& s, FxRect r) { fxAmbientLight(s, r, s, r, kTint, 128); }},
        {"reducecolors", 5, [](Surface& s, FxRect r) { fxReduceColors(s, r, s, r, 128); }},
        {"replacecolors", 5, [](Surface& s, FxRect r) { fxReplaceColors(s, r, s, r, kTint, 0, 50); }},
        {"blur", 13, [](Surface& s, FxRect r) { fxBlur(s, r, s, r); }},
        {"emboss", 13,
         [](Surface& s, FxRect r) {
             fxEmboss(s, {0, -1, r.width + 1, r.height + 1}, s, r, 1.28);
         }},
        {"engrave", 13,
         [](Surface& s, FxRect r) {
             fxEngrave(s, {0, -1, r.width + 1, r.height + 1}, s, r, 1.28);
         }},
        {"relief", 13, [](Surface& s, FxRect r) { fxRelief(s, r, s, r); }},
        {"antialias", 13, [](Surface& s, FxRect r) { fxAntiAlias(s, r, s, r, 200); }},
        {"hue", 20, [](Surface& s, FxRect r) { fxHue(s, r, s, r, 0.33); }},
        {"mosaic", 0, [](Surface& s, FxRect r) { fxMosaic(s, r, s, r, 5); }},
        {"gridelines", 0, [](Surface& s, FxRect r) { fxGridelines(s, r, s, r, kTint, 128, 4); }},
        {"scanlines", 0, [](Surface& s, FxRect r) { fxScanlines(s, r, s, r, kTint, 128, 1, -1); }},
        {"light", 0, [](Surface& s, FxRect) { fxLight(s, 1800, 1200, kTint, 90, 128, 64, 1); }},
        {"alphablend", 0,
         [](Surface& s, FxRect r) {
             fxAlphaBlend(s, r, s, {0, 1, r.width, r.height}, 128, kNoColor);
         }},
    };
    return ops;
}

// Records every run's time per iteration, then prints the operations in copies.
class SummaryReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            if (!run.error_occurred && run.iterations > 0)
                m_seconds[run.benchmark_name()] = run.real_accumulated_time / double(run.iterations);
    }
    void Finalize() override
    {
        ConsoleReporter::Finalize();
        const auto copy = m_seconds.find("BM_Copy/real_time");
        if (copy == m_seconds.end())
            return;
        std::printf("\nOn %d x %d, against one plain copy of the picture (%.2f ms):\n", kWidth, kHeight,
                    copy->second * 1e3);
        std::printf("%-34s %9s %8s %8s\n", "operation", "ms", "copies", "budget");
        for (const auto& [name, seconds] : m_seconds) {
            if (name == copy->first)
                continue;
            const double copies = seconds / copy->second;
            const auto budget = m_budgets.find(name);
            std::string verdict = "";
            if (budget != m_budgets.end() && budget->second > 0)
                verdict =
                    std::to_string(int(budget->second)) + (copies <= budget->second ? "  ok" : "  OVER");
            std::printf("%-34s %9.2f %8.2f %8s\n", name.c_str(), seconds * 1e3, copies, verdict.c_str());
        }
    }
    std::map<std::string, double> m_budgets;

private:
    std::map<std::string, double> m_seconds;
};

} // namespace

int main(int argc, char** argv)
{
    // Text needs the fonts of a GUI application; the platform can be offscreen.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    SummaryReporter reporter;

    benchmark::RegisterBenchmark("BM_Copy", BM_Copy)->Unit(benchmark::kMillisecond)->UseRealTime();
    for (const Entry& e : inPlaceOps()) {
        const std::string name = std::string("BM_") + e.name;
        benchmark::RegisterBenchmark(name.c_str(), [op = e.op](benchmark::State& s) { runInPlace(s, op); })
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
        reporter.m_budgets[name + "/real_time"] = e.budget;
    }
    const std::pair<const char*, std::function<void(Surface&, const Surface&)>> geometry[] = {
        {"BM_rotate",
         [](Surface& d, const Surface& s) { fxRotate(d, 2000, 2000, s, WholeOf(s), 30, kNoColor); }},
        {"BM_zoom",
         [](Surface& d, const Surface& s) { fxZoom(d, 2000, 1500, s, WholeOf(s), 1.5, kNoColor); }},
        {"BM_render",
         [](Surface& d, const Surface& s) {
             fxRender(d, 2000, 2000, s, 0, 0, kWidth, kHeight, 128, 30, 1.2, kNoColor);
         }},
    };
    for (const auto& [name, op] : geometry)
        benchmark::RegisterBenchmark(name, [op = op](benchmark::State& s) { runFromSource(s, op); })
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
    auto* apply = benchmark::RegisterBenchmark("BM_ApplyEffect", BM_ApplyEffect);
    for (const EffectRow& row : EffectTable())
        apply->Arg(row.id);
    apply->Unit(benchmark::kMillisecond)->UseRealTime();

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
