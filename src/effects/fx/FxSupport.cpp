#include "effects/fx/FxSupport.h"

#include "core/Surface.h"

#include <cmath>
#include <exception>
#include <thread>

namespace velunta {

FxRect WholeOf(const Surface& s)
{
    return {0, 0, s.ScaleWidth(), s.ScaleHeight()};
}

namespace fxi {

namespace {

// Below this many pixels a second thread costs more than it saves.
constexpr std::int64_t kThreadedPixels = 1 << 17;
// With progress asked for, the rows go in this many groups at most.
constexpr int kProgressSteps = 16;

unsigned workers()
{
    static const unsigned n = std::max(1u, std::thread::hardware_concurrency());
    return n;
}

} // namespace

double clampArg(double v, double lo, double hi, double neutral)
{
    if (std::isnan(v))
        return neutral;
    return std::clamp(v, lo, hi);
}

const QRgb* Pixels::spanOf(const QRgb* line, int width, int x0, int n, int pad, std::vector<QRgb>& scratch)
{
    const std::int64_t first = std::int64_t(x0) - pad;
    const std::int64_t end = std::int64_t(x0) + n + pad;
    if (first >= 0 && end <= width)
        return line + x0;
    scratch.resize(std::size_t(n + 2 * pad));
    // Left of the picture repeats its first column, right of it the last one.
    const std::int64_t inFirst = std::clamp<std::int64_t>(first, 0, width);
    const std::int64_t inEnd = std::clamp<std::int64_t>(end, 0, width);
    QRgb* out = scratch.data();
    std::int64_t i = first;
    for (; i < std::min(inFirst, end); ++i)
        *out++ = line[0];
    if (inEnd > inFirst) {
        out = std::copy(line + inFirst, line + inEnd, out);
        i = inEnd;
    }
    for (; i < end; ++i)
        *out++ = line[width - 1];
    return scratch.data() + pad;
}

bool makePlan(Plan& plan, Surface& dst, FxRect d, const Surface& src, FxRect s, int reach, bool canSweep)
{
    if (d.width <= 0 || d.height <= 0 || s.width <= 0 || s.height <= 0)
        return false;
    QImage& out = dst.Image();
    const QImage& in = src.Image();
    if (out.width() <= 0 || out.height() <= 0 || in.width() <= 0 || in.height() <= 0)
        return false;
    const std::int64_t left = std::max<std::int64_t>(d.x, 0);
    const std::int64_t top = std::max<std::int64_t>(d.y, 0);
    const std::int64_t right = std::min<std::int64_t>(std::int64_t(d.x) + d.width, out.width());
    const std::int64_t bottom = std::min<std::int64_t>(std::int64_t(d.y) + d.height, out.height());
    if (left >= right || top >= bottom)
        return false;
    plan.area = QRect(int(left), int(top), int(right - left), int(bottom - top));

    // An offset that reaches past the source reads its edge either way; bounding it keeps
    // every sum of a position and the offset inside int.
    const auto offset = [reach](std::int64_t o, int inSize, int outSize) {
        const std::int64_t far = std::int64_t(inSize) + outSize + reach + 2;
        return int(std::clamp<std::int64_t>(o, -far, far));
    };
    plan.dx = offset(std::int64_t(s.x) - d.x, in.width(), out.width());
    plan.dy = offset(std::int64_t(s.y) - d.y, in.height(), out.height());

    plan.outBase = out.bits(); // detaches the destination from any shared copy first
    plan.outStride = out.bytesPerLine();
    const bool same = in.constBits() == plan.outBase;
    plan.sweep = same && canSweep && plan.dy >= 0;
    if (same && !plan.sweep && (reach > 0 || plan.dx != 0 || plan.dy != 0)) {
        // Writing row y would change what a later pixel reads: work from a copy of the
        // rows that will be read.
        const int r0 = std::clamp(plan.area.top() + plan.dy - reach, 0, in.height() - 1);
        const int r1 = std::clamp(plan.area.bottom() + plan.dy + reach, 0, in.height() - 1);
        plan.copy = in.copy(0, r0, in.width(), r1 - r0 + 1);
        if (plan.copy.isNull())
            throw std::bad_alloc();
        plan.in = {plan.copy.constBits(), plan.copy.bytesPerLine(), in.width(), in.height(), r0};
    } else {
        plan.in = {in.constBits(), in.bytesPerLine(), in.width(), in.height(), 0};
    }
    return true;
}

Bands planBands(int top, int bottom, std::int64_t pixelsPerRow, bool reportsProgress, int align)
{
    Bands bands;
    const int rows = bottom - top;
    if (rows <= 0)
        return bands;
    bands.top = top;
    bands.rows = rows;
    align = std::max(1, align);
    const int units = (rows + align - 1) / align;
    const auto rowOf = [&](std::int64_t unit) {
        return int(std::min<std::int64_t>(bottom, top + unit * align));
    };
    const bool twoThreads = workers() > 1 && units >= 2 && pixelsPerRow * rows >= kThreadedPixels;
    const int groups = reportsProgress ? std::clamp(units / 4, 1, kProgressSteps) : 1;
    for (int g = 0; g < groups; ++g) {
        const std::int64_t u0 = std::int64_t(units) * g / groups;
        const std::int64_t u1 = std::int64_t(units) * (g + 1) / groups;
        if (u1 <= u0)
            continue;
        if (twoThreads && u1 - u0 >= 2)
            bands.groups.push_back({{rowOf(u0), rowOf((u0 + u1) / 2)}, {rowOf((u0 + u1) / 2), rowOf(u1)}});
        else
            bands.groups.push_back({{rowOf(u0), rowOf(u1)}});
    }
    return bands;
}

bool runBands(const Bands& bands, const ProgressFn& progress, const std::function<void(int, int, int)>& work)
{
    int index = 0;
    for (std::size_t g = 0; g < bands.groups.size(); ++g) {
        const auto& group = bands.groups[g];
        if (group.size() == 2) {
            std::exception_ptr fault;
            std::thread helper([&] {
                try {
                    work(index + 1, group[1].first, group[1].second);
                } catch (...) {
                    fault = std::current_exception();
                }
            });
            try {
                work(index, group[0].first, group[0].second);
            } catch (...) {
                helper.join();
                throw;
            }
            helper.join();
            if (fault)
                std::rethrow_exception(fault);
        } else {
            work(index, group[0].first, group[0].second);
        }
        index += int(group.size());
        if (progress && progress(double(group.back().second - bands.top) / bands.rows))
            return g + 1 == bands.groups.size();
    }
    return true;
}

bool forRows(int top, int bottom, std::int64_t pixelsPerRow, const ProgressFn& progress,
             const std::function<void(int, int)>& work, int align)
{
    return runBands(planBands(top, bottom, pixelsPerRow, bool(progress), align), progress,
                    [&work](int, int y0, int y1) { work(y0, y1); });
}

bool runRows(Surface& dst, FxRect d, const Surface& src, FxRect s, const ProgressFn& progress,
             const RowFn& rowFn)
{
    Plan plan;
    if (!makePlan(plan, dst, d, src, s, 0))
        return true;
    const QRect a = plan.area;
    const bool done = forRows(a.top(), a.bottom() + 1, a.width(), progress, [&](int y0, int y1) {
        std::vector<QRgb> scratch;
        for (int y = y0; y < y1; ++y)
            rowFn(plan.in.span(y + plan.dy, a.left() + plan.dx, a.width(), 0, scratch),
                  plan.outRow(y) + a.left(), a.width(), a.left(), y);
    });
    dst.touch(a);
    return done;
}

bool runLut(Surface& dst, FxRect d, const Surface& src, FxRect s, const ProgressFn& progress,
            const ChannelLut& lut)
{
    return runRows(dst, d, src, s, progress,
                   [&lut](const QRgb* in, QRgb* out, int n, int, int) { lut.apply(in, out, n); });
}

FX_VECTORISED void ChannelLut::apply(const QRgb* in, QRgb* out, int n) const
{
    for (int i = 0; i < n; ++i) {
        const QRgb p = in[i];
        out[i] = r[(p >> 16) & 0xFF] | g[(p >> 8) & 0xFF] | b[p & 0xFF];
    }
}

} // namespace fxi
} // namespace velunta
