#include "imageops/CanvasOps.h"

#include "core/Gdi.h"
#include "core/Surface.h"
#include "files/read/BigBuffer.h"

#include <QFile>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <mutex>
#include <utility>

namespace velunta {

namespace {

QRgb* rowOf(QImage& image, int y)
{
    return reinterpret_cast<QRgb*>(image.scanLine(y));
}
const QRgb* rowOf(const QImage& image, int y)
{
    return reinterpret_cast<const QRgb*>(image.constScanLine(y));
}

// Four pixels at a time where the processor can (the compiler's vector types, plain
// code elsewhere); the loads and stores need no alignment.
using Pixels4 = std::uint32_t __attribute__((vector_size(16)));
inline Pixels4 load(const QRgb* p)
{
    Pixels4 v;
    std::memcpy(&v, p, sizeof v);
    return v;
}
inline void store(QRgb* p, Pixels4 v)
{
    std::memcpy(p, &v, sizeof v);
}

constexpr QRgb kColourBits = 0x00FFFFFFu;

// The progress is asked about this many times over a whole run: often enough for Esc
// and a moving bar, rarely enough that the events it lets through cost nothing.
constexpr int kProgressSteps = 64;

} // namespace

namespace {

// The memory of the last picture made here that went away, kept for the next one of the
// same size: a command makes its result while the old picture is still kept for a
// rollback, and the old one goes right after. Fresh memory has to be cleared by the
// system first, which costs half a copy of the picture; this way a command on a
// picture of a size it had before gets it for nothing. One picture's memory at most
// is kept.
struct SparePicture {
    std::mutex lock;
    uchar* pixels = nullptr;
    size_t bytes = 0;

    uchar* take(size_t wanted)
    {
        const std::lock_guard<std::mutex> hold(lock);
        uchar* p = nullptr;
        if (pixels && bytes == wanted)
            p = std::exchange(pixels, nullptr);
        return p;
    }
    void give(uchar* p, size_t size)
    {
        const std::lock_guard<std::mutex> hold(lock);
        std::swap(p, pixels);
        bytes = size;
        std::free(p); // the one kept before, if any
    }
};

SparePicture& spare()
{
    // Never destroyed: a picture may go after the statics do.
    static auto* s = new SparePicture;
    return *s;
}

struct Pixels {
    uchar* data;
    size_t bytes;
};

} // namespace

QImage NewPicture(int width, int height)
{
    if (width <= 0 || height <= 0)
        return {};
    const qsizetype bytesPerLine = qsizetype(width) * 4;
    const size_t bytes = size_t(bytesPerLine) * size_t(height);
    uchar* data = spare().take(bytes);
    // Whole pictures take huge pages where the system has them: a fresh 48 MB costs
    // 12,000 page faults in small pages, which take longer than filling it.
    if (!data)
        data = AllocateBig(bytes).release();
    if (!data)
        return {};
    auto* owner = new Pixels{data, bytes};
    QImage image(
        data, width, height, bytesPerLine, QImage::Format_RGB32,
        [](void* info) {
            auto* pixels = static_cast<Pixels*>(info);
            spare().give(pixels->data, pixels->bytes);
            delete pixels;
        },
        owner);
    if (image.isNull()) {
        std::free(data);
        delete owner;
    }
    return image;
}

QImage CopyPicture(const QImage& image)
{
    QImage out = NewPicture(image.width(), image.height());
    if (out.isNull())
        return out;
    const size_t bytes = size_t(image.width()) * 4;
    for (int y = 0; y < image.height(); ++y)
        std::memcpy(out.scanLine(y), image.constScanLine(y), bytes);
    return out;
}

bool PictureFitsInMemory(qint64 width, qint64 height)
{
    // A picture's row must fit the 32-bit byte count of its scan line.
    constexpr qint64 kLongestSide = qint64(1) << 28;
    if (width <= 0 || height <= 0 || width > kLongestSide || height > kLongestSide)
        return false;
    const qint64 bytes = width * height * 4;
    QFile meminfo(QStringLiteral("/proc/meminfo"));
    if (!meminfo.open(QIODevice::ReadOnly))
        return true; // nothing to go by: the allocation itself decides
    // The file reports no size, so it is read whole rather than up to its "end".
    for (const QByteArray& line : meminfo.readAll().split('\n')) {
        if (line.startsWith("MemAvailable:")) {
            const qint64 available = line.mid(13).trimmed().split(' ').value(0).toLongLong() * 1024;
            // The picture, and as much again for its undo copy and the view.
            return available <= 0 || bytes <= available / 2;
        }
    }
    return true;
}

QImage FlippedVertically(const QImage& image)
{
    QImage out = NewPicture(image.width(), image.height());
    if (out.isNull())
        return out;
    const int h = image.height();
    const size_t bytes = size_t(image.width()) * 4;
    for (int y = 0; y < h; ++y)
        std::memcpy(out.scanLine(h - 1 - y), image.constScanLine(y), bytes);
    return out;
}

QImage FlippedHorizontally(const QImage& image)
{
    QImage out = NewPicture(image.width(), image.height());
    if (out.isNull())
        return out;
    const int w = image.width();
    for (int y = 0; y < image.height(); ++y) {
        const QRgb* from = rowOf(image, y) + w - 1; // read backwards
        QRgb* to = rowOf(out, y);
        int x = 0;
        for (; x + 4 <= w; x += 4)
            store(to + x, __builtin_shufflevector(load(from - x - 3), load(from - x - 3), 3, 2, 1, 0));
        for (; x < w; ++x)
            to[x] = from[-x];
    }
    return out;
}

QImage Inverted(const QImage& image)
{
    QImage out = NewPicture(image.width(), image.height());
    if (out.isNull())
        return out;
    const int w = image.width();
    const Pixels4 colourBits = {kColourBits, kColourBits, kColourBits, kColourBits};
    for (int y = 0; y < image.height(); ++y) {
        const QRgb* from = rowOf(image, y);
        QRgb* to = rowOf(out, y);
        int x = 0;
        for (; x + 4 <= w; x += 4)
            store(to + x, load(from + x) ^ colourBits);
        for (; x < w; ++x)
            to[x] = from[x] ^ kColourBits;
    }
    return out;
}

void StretchPicture(const QImage& source, QImage& target)
{
    Surface to;
    to.setImage(target); // shares the pixels: the stretch lands in `target` itself
    Surface from;
    from.setImage(source);
    target = QImage(); // so that writing to `to` detaches nothing
    StretchBlt(to, 0, 0, to.ScaleWidth(), to.ScaleHeight(), from, 0, 0, from.ScaleWidth(),
               from.ScaleHeight());
    target = to.Image();
}

float MenuRotationAngle(int index)
{
    switch (index) {
    case 0:
        return float(3.14 / 4);
    case 1:
        return float(3.14 / 2);
    default:
        return float(3.14);
    }
}

float DivisorAngle(int divisor)
{
    return float(3.14 / divisor);
}

int RotateDivisorOf(double value)
{
    if (!(value >= 1 && value <= 360))
        return -1;
    return int(std::nearbyint((360 / value) / 2));
}

namespace {

// The offsets of the source point for x, y, exactly as the mapping defines them: the
// angle of x, y from the horizontal (a right angle, written 3.14159265359 / 2, on the
// column x = 0), the distance rounded half to even, and the point at that distance and
// the angle plus the turn, rounded half to even. The angle is measured from the axis
// that the cosine gives back: from the other one, each quarter of the picture would
// come out mirrored in its own way instead of turned.
inline void exactOffsets(int x, int y, double angle, int& xs, int& ys)
{
    const double a = x == 0 ? 3.14159265359 / 2 : std::atan(double(y) / double(x));
    const double r = std::nearbyint(std::sqrt(double(x) * x + double(y) * y));
    xs = int(std::nearbyint(r * std::cos(a + angle)));
    ys = int(std::nearbyint(r * std::sin(a + angle)));
}

// Rounding is decided only by where a value falls between two whole numbers; the two
// ways of computing it below differ by far less than this.
constexpr double kNearHalf = 1e-6;
// Offsets stay far below this; shifted by it a value is positive, so that truncation
// is its floor, and keeps its fraction to 4e-9.
constexpr double kShift = 16777216.0;

// v rounded to the nearest whole number, unless it lies within kNearHalf of a half
// (false then). Without instructions of its own for rounding, a call of the library
// for each value would cost more than the rest of the loop.
inline bool roundAwayFromHalf(double v, int& rounded)
{
    const double t = v + kShift;
    const auto whole = static_cast<long long>(t);
    const double fraction = t - double(whole);
    if (std::abs(fraction - 0.5) < kNearHalf)
        return false;
    rounded = int(whole - static_cast<long long>(kShift)) + (fraction > 0.5 ? 1 : 0);
    return true;
}

} // namespace

bool RotatePicture(QImage& target, const QImage& picOrig, float angle, const ProgressFn& progress)
{
    const int dw = target.width(), dh = target.height();
    const int sw = picOrig.width(), sh = picOrig.height();
    const int dcx = dw / 2, dcy = dh / 2;
    const int ocx = sw / 2, ocy = sh / 2;
    const int limit = std::max(dcx, dcy) - 1;
    if (limit < 0 || target.isNull() || picOrig.isNull())
        return true;

    // Row access once; reads outside the source give nothing, writes outside the
    // target are dropped, as the pixel services of the platform do.
    const uchar* src = picOrig.constBits();
    const qsizetype srcStride = picOrig.bytesPerLine();
    uchar* dst = target.bits();
    const qsizetype dstStride = target.bytesPerLine();
    auto read = [&](int x, int y, QRgb& out) {
        if (unsigned(x) >= unsigned(sw) || unsigned(y) >= unsigned(sh))
            return false;
        out = reinterpret_cast<const QRgb*>(src + y * srcStride)[x];
        return true;
    };
    auto write = [&](int x, int y, QRgb c) {
        if (unsigned(x) < unsigned(dw) && unsigned(y) < unsigned(dh))
            reinterpret_cast<QRgb*>(dst + y * dstStride)[x] = c;
    };
    auto place = [&](int x, int y, int xs, int ys) {
        QRgb p;
        if (read(ocx + xs, ocy + ys, p))
            write(dcx + x, dcy + y, p);
        if (read(ocx - xs, ocy - ys, p))
            write(dcx - x, dcy - y, p);
        if (read(ocx + ys, ocy - xs, p))
            write(dcx + y, dcy - x, p);
        if (read(ocx - ys, ocy + xs, p))
            write(dcx - y, dcy + x, p);
    };

    // The exact offsets cost an arc tangent, a sine and a cosine each. By the sum
    // formula with cos a = x / d and sin a = y / d they come from one square root and
    // a few products, a value that differs from the exact one in the last bits only;
    // where that could change the rounding (a value within kNearHalf of a half) the
    // exact way decides. The pixels come out the same either way.
    const double turn = angle;
    const double ct = std::cos(turn), st = std::sin(turn);
    const int stepRows = std::max(1, (limit + 1) / kProgressSteps);
    for (int y = 0; y <= limit; ++y) {
        const double yCos = y * ct, ySin = y * st;
        int xs, ys;
        exactOffsets(0, y, turn, xs, ys);
        place(0, y, xs, ys);
        for (int x = 1; x <= limit; ++x) {
            const double d = std::sqrt(double(x) * x + double(y) * y);
            // The root of a whole number is never a whole number and a half, so
            // rounding half up is rounding half to even here.
            const double k = double(static_cast<long long>(d + 0.5)) / d;
            if (!roundAwayFromHalf(k * (x * ct - ySin), xs) || !roundAwayFromHalf(k * (yCos + x * st), ys))
                exactOffsets(x, y, turn, xs, ys);
            place(x, y, xs, ys);
        }
        if ((y + 1) % stepRows == 0 && y < limit && progress(double(y + 1) / (limit + 1)))
            return false;
    }
    return true;
}

ColorTriple SplitColor(Color c)
{
    // Mod keeps the sign of the colour, as the program's integer arithmetic does.
    return {std::int16_t(c % 256), std::int16_t((c / 256) % 256), std::int16_t(c / 65536)};
}

Color JoinColor(const ColorTriple& t)
{
    return t.red + 256 * t.green + 65536 * t.blue;
}

int Clip255(int value)
{
    return value >= 256 ? 255 : value;
}

int Clip0(int value)
{
    return value < 0 ? 0 : value;
}

ColorTriple AdjustContrast(ColorTriple t, int amount)
{
    auto channel = [amount](std::int16_t& c) {
        // 128 itself counts as bright.
        c = std::int16_t(c >= 128 ? Clip255(c - amount) : Clip0(c + amount));
    };
    channel(t.blue);
    channel(t.red);
    channel(t.green);
    return t;
}

Color BrightenColor(Color c, int level)
{
    const double blue = std::floor(c / 65536.0);
    const double green = std::floor((c - blue * 65536) / 256);
    const double red = c - blue * 65536 - green * 256;
    auto step = [level](double v) { return std::clamp(int(v) + level, 0, 255); };
    return RGB(step(red), step(green), step(blue));
}

ChannelTable ContrastTable(int value)
{
    value = std::clamp(value, kAdjustMinimum, kAdjustMaximum);
    ChannelTable table{};
    for (int c = 0; c < 256; ++c)
        table[c] = std::uint8_t(AdjustContrast({std::int16_t(c), 0, 0}, -value).red);
    return table;
}

ChannelTable BrightnessTable(int level)
{
    ChannelTable table{};
    for (int c = 0; c < 256; ++c)
        table[c] = std::uint8_t(std::clamp(c + level, 0, 255));
    return table;
}

bool IsIdentity(const ChannelTable& table)
{
    for (int c = 0; c < 256; ++c)
        if (table[c] != c)
            return false;
    return true;
}

bool MapChannels(const QImage& source, QImage& dest, const QRect& area, const ChannelTable& table,
                 const ProgressFn& progress)
{
    const QRect box = area & source.rect() & dest.rect();
    if (box.isEmpty())
        return true;
    const int band = std::max(1, box.height() / kProgressSteps);
    for (int y = box.top(); y <= box.bottom(); ++y) {
        const QRgb* from = rowOf(source, y) + box.left();
        QRgb* to = rowOf(dest, y) + box.left();
        for (int x = 0; x < box.width(); ++x) {
            const QRgb p = from[x];
            to[x] = 0xFF000000u | (QRgb(table[(p >> 16) & 0xFF]) << 16) |
                    (QRgb(table[(p >> 8) & 0xFF]) << 8) | table[p & 0xFF];
        }
        const int done = y - box.top() + 1;
        if (done % band == 0 && y < box.bottom() && progress(double(done) / box.height()))
            return false;
    }
    return true;
}

} // namespace velunta
