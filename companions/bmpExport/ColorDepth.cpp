#include "bmpExport/ColorDepth.h"

#include "core/SafeFile.h"
#include "core/SettingsStore.h"
#include "files/BmpWriter.h"

#include <QHash>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace velunta {

namespace {

QImage rgb32(const QImage& picture)
{
    return picture.format() == QImage::Format_RGB32 ? picture : picture.convertToFormat(QImage::Format_RGB32);
}

// The histogram's cells: 5 bits of each channel.
constexpr int kCellBits = 5;
constexpr int kCells = 1 << (3 * kCellBits);

inline int cellOf(int r, int g, int b)
{
    return ((r >> 3) << 10) | ((g >> 3) << 5) | (b >> 3);
}

struct Cell {
    std::int64_t count = 0, r = 0, g = 0, b = 0;
};

int channelOfCell(int cell, int axis)
{
    return (cell >> (kCellBits * (2 - axis))) & ((1 << kCellBits) - 1);
}

// A box of the median cut: a range of cells along each channel.
struct Box {
    std::array<int, 3> lo{}, hi{};
    std::int64_t count = 0;
    int longest() const
    {
        int axis = 0;
        for (int a = 1; a < 3; ++a)
            if (hi[size_t(a)] - lo[size_t(a)] > hi[size_t(axis)] - lo[size_t(axis)])
                axis = a;
        return axis;
    }
    int span() const { return hi[size_t(longest())] - lo[size_t(longest())]; }
    bool holds(int cell) const
    {
        for (int a = 0; a < 3; ++a) {
            const int c = channelOfCell(cell, a);
            if (c < lo[size_t(a)] || c > hi[size_t(a)])
                return false;
        }
        return true;
    }
};

// The box's cells shrunk to those in use, and its population.
void shrink(Box& box, const std::vector<Cell>& cells, const std::vector<int>& used)
{
    std::array<int, 3> lo{31, 31, 31}, hi{0, 0, 0};
    box.count = 0;
    for (int cell : used) {
        if (!box.holds(cell))
            continue;
        box.count += cells[size_t(cell)].count;
        for (int a = 0; a < 3; ++a) {
            const int c = channelOfCell(cell, a);
            lo[size_t(a)] = std::min(lo[size_t(a)], c);
            hi[size_t(a)] = std::max(hi[size_t(a)], c);
        }
    }
    if (box.count > 0) {
        box.lo = lo;
        box.hi = hi;
    }
}

// Weighted distance: the eye tells greens apart best and blues least.
inline int distance(int r, int g, int b, QRgb p)
{
    const int dr = r - qRed(p), dg = g - qGreen(p), db = b - qBlue(p);
    return 2 * dr * dr + 4 * dg * dg + 3 * db * db;
}

// Nearest palette entry for any colour, remembered per cell of 6 bits a channel.
class Nearest {
public:
    explicit Nearest(const QVector<QRgb>& palette) : m_palette(palette), m_cache(1 << 18, -1)
    {
        for (int i = 0; i < palette.size(); ++i)
            m_exact.insert(palette[i] & 0xFFFFFF, i);
    }
    int operator()(int r, int g, int b)
    {
        r = std::clamp(r, 0, 255);
        g = std::clamp(g, 0, 255);
        b = std::clamp(b, 0, 255);
        const auto exact = m_exact.constFind(QRgb((r << 16) | (g << 8) | b));
        if (exact != m_exact.constEnd())
            return exact.value();
        const int key = ((r >> 2) << 12) | ((g >> 2) << 6) | (b >> 2);
        std::int16_t& cached = m_cache[size_t(key)];
        if (cached < 0) {
            // The middle of the cell decides for all of it.
            const int cr = (r & ~3) | 2, cg = (g & ~3) | 2, cb = (b & ~3) | 2;
            int best = 0, bestDistance = INT32_MAX;
            for (int i = 0; i < m_palette.size(); ++i) {
                const int d = distance(cr, cg, cb, m_palette[i]);
                if (d < bestDistance) {
                    bestDistance = d;
                    best = i;
                }
            }
            cached = std::int16_t(best);
        }
        return cached;
    }

private:
    const QVector<QRgb>& m_palette;
    std::vector<std::int16_t> m_cache;
    QHash<QRgb, int> m_exact;
};

// Bayer's 8 x 8 threshold pattern.
constexpr std::array<std::array<int, 8>, 8> kBayer = {{
    {0, 32, 8, 40, 2, 34, 10, 42},
    {48, 16, 56, 24, 50, 18, 58, 26},
    {12, 44, 4, 36, 14, 46, 6, 38},
    {60, 28, 52, 20, 62, 30, 54, 22},
    {3, 35, 11, 43, 1, 33, 9, 41},
    {51, 19, 59, 27, 49, 17, 57, 25},
    {15, 47, 7, 39, 13, 45, 5, 37},
    {63, 31, 55, 23, 61, 29, 53, 21},
}};

void put16(QByteArray& b, int at, int v)
{
    qToLittleEndian<quint16>(quint16(v), b.data() + at);
}
void put32(QByteArray& b, int at, qint64 v)
{
    qToLittleEndian<quint32>(quint32(v), b.data() + at);
}

} // namespace

QVector<QRgb> MakePalette(const QImage& source, int colours)
{
    const QImage picture = rgb32(source);
    const int w = picture.width(), h = picture.height();
    // A picture with few colours keeps them exactly.
    QVector<QRgb> own;
    QHash<QRgb, bool> seen;
    for (int y = 0; y < h && own.size() <= colours; ++y) {
        const QRgb* p = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        for (int x = 0; x < w && own.size() <= colours; ++x) {
            const QRgb c = p[x] | 0xFF000000u;
            if (!seen.contains(c)) {
                seen.insert(c, true);
                own << c;
            }
        }
    }
    if (own.size() <= colours) {
        std::sort(own.begin(), own.end());
        return own;
    }

    std::vector<Cell> cells(kCells);
    for (int y = 0; y < h; ++y) {
        const QRgb* p = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        for (int x = 0; x < w; ++x) {
            Cell& c = cells[size_t(cellOf(qRed(p[x]), qGreen(p[x]), qBlue(p[x])))];
            ++c.count;
            c.r += qRed(p[x]);
            c.g += qGreen(p[x]);
            c.b += qBlue(p[x]);
        }
    }
    std::vector<int> used;
    for (int i = 0; i < kCells; ++i)
        if (cells[size_t(i)].count)
            used.push_back(i);

    std::vector<Box> boxes(1);
    boxes[0].hi = {31, 31, 31};
    shrink(boxes[0], cells, used);
    while (int(boxes.size()) < colours) {
        // Split the box whose colours spread widest, weighted by how many pixels it holds.
        int pick = -1;
        double pickScore = 0;
        for (int i = 0; i < int(boxes.size()); ++i) {
            const Box& b = boxes[size_t(i)];
            if (b.span() == 0)
                continue;
            const double score = double(b.span()) * std::sqrt(double(b.count));
            if (score > pickScore) {
                pickScore = score;
                pick = i;
            }
        }
        if (pick < 0)
            break;
        Box& box = boxes[size_t(pick)];
        const int axis = box.longest();
        // The median of the population along that axis.
        std::vector<std::int64_t> slice(32, 0);
        for (int cell : used) {
            if (box.holds(cell))
                slice[size_t(channelOfCell(cell, axis))] += cells[size_t(cell)].count;
        }
        std::int64_t sum = 0;
        int cut = box.lo[size_t(axis)];
        for (int c = box.lo[size_t(axis)]; c < box.hi[size_t(axis)]; ++c) {
            sum += slice[size_t(c)];
            cut = c;
            if (sum * 2 >= box.count)
                break;
        }
        Box upper = box;
        box.hi[size_t(axis)] = cut;
        upper.lo[size_t(axis)] = cut + 1;
        shrink(box, cells, used);
        shrink(upper, cells, used);
        boxes.push_back(upper);
    }

    QVector<QRgb> palette;
    for (const Box& box : boxes) {
        Cell total;
        for (int cell : used) {
            if (!box.holds(cell))
                continue;
            const Cell& c = cells[size_t(cell)];
            total.count += c.count;
            total.r += c.r;
            total.g += c.g;
            total.b += c.b;
        }
        if (total.count)
            palette << qRgb(int((total.r + total.count / 2) / total.count),
                            int((total.g + total.count / 2) / total.count),
                            int((total.b + total.count / 2) / total.count));
    }
    return palette;
}

QImage ReduceColors(const QImage& source, const DepthChoice& choice)
{
    const QImage picture = rgb32(source);
    if (choice.bits >= 24 || picture.isNull())
        return picture;
    const QVector<QRgb> palette = choice.bits == 1 ? QVector<QRgb>{qRgb(0, 0, 0), qRgb(255, 255, 255)}
                                                   : MakePalette(picture, 1 << choice.bits);
    const int w = picture.width(), h = picture.height();
    QImage out(w, h, QImage::Format_Indexed8);
    if (out.isNull())
        return out;
    out.setColorTable(palette);
    Nearest nearest(palette);

    if (choice.dither == Dither::FloydSteinberg) {
        // Errors in sixteenths, for this row and the next, with a pixel of room each side.
        std::vector<int> now(size_t(w + 2) * 3, 0), next(size_t(w + 2) * 3, 0);
        for (int y = 0; y < h; ++y) {
            const QRgb* p = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
            uchar* o = out.scanLine(y);
            std::fill(next.begin(), next.end(), 0);
            // Every other row runs right to left, so the errors don't all lean one way.
            const bool back = y & 1;
            for (int i = 0; i < w; ++i) {
                const int x = back ? w - 1 - i : i;
                const int step = back ? -1 : 1;
                int* e = &now[size_t(x + 1) * 3];
                const int r = qRed(p[x]) + e[0] / 16, g = qGreen(p[x]) + e[1] / 16,
                          b = qBlue(p[x]) + e[2] / 16;
                const int index = nearest(r, g, b);
                o[x] = uchar(index);
                const QRgb q = palette[index];
                const int err[3] = {std::clamp(r, 0, 255) - qRed(q), std::clamp(g, 0, 255) - qGreen(q),
                                    std::clamp(b, 0, 255) - qBlue(q)};
                for (int c = 0; c < 3; ++c) {
                    now[size_t(x + 1 + step) * 3 + c] += err[c] * 7;
                    next[size_t(x + 1 - step) * 3 + c] += err[c] * 3;
                    next[size_t(x + 1) * 3 + c] += err[c] * 5;
                    next[size_t(x + 1 + step) * 3 + c] += err[c];
                }
            }
            now.swap(next);
        }
        return out;
    }

    // The ordered pattern moves every channel by the same amount, so the hue holds; its
    // reach is about the distance between neighbouring palette colours.
    const double reach = choice.dither == Dither::Ordered ? 255.0 / std::cbrt(double(palette.size())) : 0;
    std::array<std::array<int, 8>, 8> offset{};
    for (int j = 0; j < 8; ++j)
        for (int i = 0; i < 8; ++i)
            offset[size_t(j)][size_t(i)] =
                int(std::lround(((kBayer[size_t(j)][size_t(i)] + 0.5) / 64.0 - 0.5) * reach));
    for (int y = 0; y < h; ++y) {
        const QRgb* p = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        uchar* o = out.scanLine(y);
        const auto& rowOffset = offset[size_t(y & 7)];
        for (int x = 0; x < w; ++x) {
            const int d = rowOffset[size_t(x & 7)];
            o[x] = uchar(nearest(qRed(p[x]) + d, qGreen(p[x]) + d, qBlue(p[x]) + d));
        }
    }
    return out;
}

QByteArray EncodeBMP(const QImage& reduced, int bits)
{
    const int w = reduced.width(), h = reduced.height();
    const QVector<QRgb> palette = reduced.colorTable();
    const int colours = bits <= 8 ? int(palette.size()) : 0;
    const qint64 stride = ((qint64(w) * bits + 31) / 32) * 4;
    const qint64 offset = 14 + 40 + 4 * colours;
    const qint64 size = offset + stride * h;
    if (size > 0x7FFFFFFF)
        return {};
    QByteArray bytes(size, '\0');
    bytes[0] = 'B';
    bytes[1] = 'M';
    put32(bytes, 2, size);
    put32(bytes, 10, offset);
    put32(bytes, 14, 40);
    put32(bytes, 18, w);
    put32(bytes, 22, h); // positive: the rows run from the bottom up
    put16(bytes, 26, 1);
    put16(bytes, 28, bits);
    put32(bytes, 34, stride * h);
    put32(bytes, 38, 2835); // 72 dots per inch
    put32(bytes, 42, 2835);
    put32(bytes, 46, colours);
    for (int i = 0; i < colours; ++i) {
        uchar* e = reinterpret_cast<uchar*>(bytes.data()) + 54 + 4 * i;
        e[0] = uchar(qBlue(palette[i]));
        e[1] = uchar(qGreen(palette[i]));
        e[2] = uchar(qRed(palette[i]));
    }
    for (int y = 0; y < h; ++y) {
        uchar* d = reinterpret_cast<uchar*>(bytes.data()) + offset + stride * (h - 1 - y);
        const uchar* s = reduced.constScanLine(y);
        if (bits == 24) {
            const QRgb* p = reinterpret_cast<const QRgb*>(s);
            for (int x = 0; x < w; ++x) {
                d[3 * x] = uchar(qBlue(p[x]));
                d[3 * x + 1] = uchar(qGreen(p[x]));
                d[3 * x + 2] = uchar(qRed(p[x]));
            }
        } else if (bits == 8) {
            std::copy(s, s + w, d);
        } else if (bits == 4) {
            for (int x = 0; x < w; ++x)
                d[x / 2] |= uchar((s[x] & 0x0F) << (x & 1 ? 0 : 4));
        } else {
            for (int x = 0; x < w; ++x)
                d[x / 8] |= uchar((s[x] & 1) << (7 - (x & 7)));
        }
    }
    return bytes;
}

bool WriteBMPVariant(const QImage& picture, const DepthChoice& choice, const QString& path, QString* error)
{
    if (choice.bits >= 24) {
        WriteFailure failure;
        if (SaveBMP(picture, path, &failure))
            return true;
        if (error)
            *error = failure.reason;
        return false;
    }
    const QImage reduced = ReduceColors(picture, choice);
    const QByteArray bytes = reduced.isNull() ? QByteArray() : EncodeBMP(reduced, choice.bits);
    if (bytes.isEmpty()) {
        if (error)
            *error = QStringLiteral("The picture is too large for a BMP file.");
        return false;
    }
    return WriteFileSafely(path, bytes, error);
}

DepthChoice RememberedChoice()
{
    const SettingsStore store;
    DepthChoice choice;
    const int bits = store.GetSetting(QStringLiteral("BmpExportBits"), QStringLiteral("24")).toInt();
    if (bits == 1 || bits == 4 || bits == 8 || bits == 24)
        choice.bits = bits;
    const int dither = store.GetSetting(QStringLiteral("BmpExportDither"), QStringLiteral("0")).toInt();
    if (dither >= 0 && dither <= 2)
        choice.dither = Dither(dither);
    return choice;
}

void RememberChoice(const DepthChoice& choice)
{
    SettingsStore store;
    store.SaveSetting(QStringLiteral("BmpExportBits"), choice.bits);
    store.SaveSetting(QStringLiteral("BmpExportDither"), int(choice.dither));
    store.sync();
}

} // namespace velunta
