// Lines: many wide segments with the pixels of one Line after another, in about one
// pass over the rows they cross. The strips of a gradient are thousands of parallel
// segments across the whole picture, each over the last; drawn one by one, every
// pixel would be written several times and every row visited once per strip.
//
// How: segments of one direction share their spans, moved with their first point
// (one table per direction). The picture is walked in bands of rows; within a band
// the segments go from the last to the first, and each paints only what no later
// one has painted, so every pixel is written once, by the segment that would have
// been last over it. Consecutive segments of one colour may go in any order among
// themselves, so such a run paints the union of its spans in one go.

#include "core/Gdi.h"

#include "core/GdiPen.h"
#include "core/Surface.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <tuple>
#include <vector>

namespace velunta {

using namespace raster;

namespace {

constexpr int kBand = 32; // rows: small enough for the band's pixels to stay in the cache

// Four rows' worth of columns, worked on at once.
using Rows4 = int __attribute__((vector_size(16)));

// Pixels a..b of a row in one colour, four at a time.
void fillRun(QRgb* line, int a, int b, QRgb colour)
{
    using Pixels4 = QRgb __attribute__((vector_size(16)));
    const Pixels4 four = Pixels4{} + colour;
    int x = a;
    for (; x + 3 <= b; x += 4)
        std::memcpy(line + x, &four, sizeof four);
    for (; x <= b; ++x)
        line[x] = colour;
}

// The painted parts of the rows of a band: one run per row as a rule, in two plain
// arrays so that the common case stays a few compares; a row whose runs stay apart
// keeps a sorted list from then on.
class PaintedRows {
public:
    void clear()
    {
        m_first.fill(1);
        m_last.fill(0);
        for (int r = 0; r < kBand; ++r)
            if ((m_listed >> r) & 1u)
                m_lists[std::size_t(r)].clear();
        m_listed = 0;
    }

    // Paints the pixels of from..to on row r that are not painted yet.
    Q_ALWAYS_INLINE void paint(int r, int from, int to, QRgb* line, QRgb colour)
    {
        const auto fill = [line, colour](int a, int b) { fillRun(line, a, b, colour); };
        std::vector<std::pair<int, int>>& runs = m_lists[std::size_t(r)];
        const std::uint64_t bit = std::uint64_t(1) << r;
        if (m_listed & bit) {
            paintApart(runs, from, to, fill);
            return;
        }
        int& first = m_first[std::size_t(r)];
        int& last = m_last[std::size_t(r)];
        if (first > last) { // the row's first paint
            fill(from, to);
            first = from;
            last = to;
        } else if (to + 1 >= first && from <= last + 1) { // meets or touches the row's run
            if (from < first)
                fill(from, std::min(to, first - 1));
            if (to > last)
                fill(std::max(from, last + 1), to);
            first = std::min(first, from);
            last = std::max(last, to);
        } else { // apart from it
            m_listed |= bit;
            runs.push_back({first, last});
            paintApart(runs, from, to, fill);
        }
    }

private:
    template <typename Fill>
    static void paintApart(std::vector<std::pair<int, int>>& runs, int from, int to, Fill fill)
    {
        // The runs that meet or touch from..to merge with it into one.
        auto at = std::lower_bound(runs.begin(), runs.end(), from,
                                   [](const std::pair<int, int>& run, int x) { return run.second + 1 < x; });
        int cursor = from, mergedFrom = from, mergedTo = to;
        auto end = at;
        for (; end != runs.end() && end->first <= to + 1; ++end) {
            if (end->first > cursor)
                fill(cursor, std::min(to, end->first - 1));
            cursor = std::max(cursor, end->second + 1);
            mergedFrom = std::min(mergedFrom, end->first);
            mergedTo = std::max(mergedTo, end->second);
        }
        if (cursor <= to)
            fill(cursor, to);
        if (at == end) {
            runs.insert(at, {from, to});
        } else {
            *at = {mergedFrom, mergedTo};
            runs.erase(at + 1, end);
        }
    }

    static_assert(kBand <= 64);
    std::array<int, kBand> m_first{}, m_last{};
    std::uint64_t m_listed = 0; // rows whose runs are in m_lists
    std::array<std::vector<std::pair<int, int>>, kBand> m_lists;
};

class LinePainter {
public:
    LinePainter(QImage& image, const std::vector<LineSegment>& segments, int width)
        : m_image(image), m_segments(segments), m_width(width)
    {
        placeSegments();
        makeTables();
        makeRuns();
    }

    // Paints everything; returns the rectangle touched.
    QRect paint();

private:
    // The spans of one direction per row, from the first point's row, with a band's
    // worth of empty rows on either side so that a band can always be read whole.
    struct Table {
        int dx, dy;
        int offsetFrom, offsetTo;
        std::vector<int> first, last; // columns from the first point; first > last: none
    };
    // A segment's rows in the picture and its table (-1: it paints nothing).
    struct Placed {
        int first, last, table;
    };
    // Segments of one run that share a direction and the row of their first point
    // differ only by a move across: in a row their union is one span from the leftmost
    // to the rightmost, unless two neighbours lie further apart than the span is wide.
    struct Class {
        int table, y1, first, last;
        int leftX, rightX, widestGap;
    };
    // A run of segments of one colour, and its classes.
    struct Run {
        std::size_t segmentsFrom, segmentsTo;
        std::size_t classesFrom, classesTo;
    };

    void placeSegments();
    void makeTables();
    void makeRuns();
    void paintRun(const Run& run, int band, int bandLast);

    QImage& m_image;
    const std::vector<LineSegment>& m_segments;
    const int m_width;
    std::vector<Table> m_tables;
    std::vector<Placed> m_placed;
    std::vector<Class> m_classes;
    std::vector<Run> m_runs;
    PaintedRows m_painted;
    QRect m_touched;
};

void LinePainter::placeSegments()
{
    m_placed.assign(m_segments.size(), Placed{1, 0, -1});
    for (std::size_t i = 0; i < m_segments.size(); ++i) {
        const LineSegment& g = m_segments[i];
        const int dx = g.x2 - g.x1, dy = g.y2 - g.y1;
        if (dx == 0 && dy == 0)
            continue; // a line of zero length draws nothing
        const auto [first, last] = penRows(g.y1, g.y2, m_width, m_image.height());
        if (first > last)
            continue;
        auto table = std::find_if(m_tables.begin(), m_tables.end(),
                                  [&](const Table& t) { return t.dx == dx && t.dy == dy; });
        if (table == m_tables.end())
            table = m_tables.insert(m_tables.end(), Table{dx, dy, first - g.y1, last - g.y1, {}, {}});
        table->offsetFrom = std::min(table->offsetFrom, first - g.y1);
        table->offsetTo = std::max(table->offsetTo, last - g.y1);
        m_placed[i] = {first, last, int(table - m_tables.begin())};
    }
}

void LinePainter::makeTables()
{
    constexpr std::int64_t kWide = std::int64_t(1) << 40; // no clipping of columns in the tables
    for (Table& t : m_tables) {
        const int from = t.offsetFrom, to = t.offsetTo;
        t.offsetFrom -= kBand;
        t.offsetTo += kBand;
        t.first.assign(std::size_t(t.offsetTo - t.offsetFrom + 1), 1);
        t.last.assign(t.first.size(), 0);
        stadiumRows<std::int64_t>(0, 0, t.dx, t.dy, m_width, from, to, -kWide, kWide,
                                  [&](int row, auto lo, auto hi) {
                                      t.first[std::size_t(row - t.offsetFrom)] = int(lo);
                                      t.last[std::size_t(row - t.offsetFrom)] = int(hi);
                                  });
    }
}

void LinePainter::makeRuns()
{
    std::vector<std::size_t> members;
    for (std::size_t i = 0; i < m_segments.size();) {
        std::size_t end = i + 1;
        while (end < m_segments.size() && m_segments[end].color == m_segments[i].color)
            ++end;
        members.clear();
        for (std::size_t j = i; j < end; ++j)
            if (m_placed[j].table >= 0)
                members.push_back(j);
        std::sort(members.begin(), members.end(), [&](std::size_t a, std::size_t b) {
            return std::tie(m_placed[a].table, m_segments[a].y1, m_segments[a].x1) <
                   std::tie(m_placed[b].table, m_segments[b].y1, m_segments[b].x1);
        });
        const std::size_t classesFrom = m_classes.size();
        for (std::size_t k = 0; k < members.size(); ++k) {
            const Placed& p = m_placed[members[k]];
            const LineSegment& g = m_segments[members[k]];
            if (k > 0 && p.table == m_classes.back().table && g.y1 == m_classes.back().y1) {
                Class& c = m_classes.back();
                c.widestGap = std::max(c.widestGap, g.x1 - c.rightX);
                c.rightX = g.x1;
            } else {
                m_classes.push_back({p.table, g.y1, p.first, p.last, g.x1, g.x1, 0});
            }
        }
        m_runs.push_back({i, end, classesFrom, m_classes.size()});
        i = end;
    }
}

QRect LinePainter::paint()
{
    for (int band = 0; band < m_image.height(); band += kBand) {
        const int bandLast = std::min(band + kBand - 1, m_image.height() - 1);
        m_painted.clear();
        for (auto run = m_runs.rbegin(); run != m_runs.rend(); ++run)
            paintRun(*run, band, bandLast);
    }
    return m_touched;
}

void LinePainter::paintRun(const Run& run, int band, int bandLast)
{
    // Four rows at a time: the union's ends so far and whether spans may have left a
    // gap, per row.
    std::array<Rows4, kBand / 4> unionFirst, unionLast, apart;
    unionFirst.fill(Rows4{} + std::numeric_limits<int>::max());
    unionLast.fill(Rows4{} + std::numeric_limits<int>::min());
    apart.fill(Rows4{});
    for (std::size_t c = run.classesFrom; c < run.classesTo; ++c) {
        const Class& cl = m_classes[c];
        if (cl.first > bandLast || cl.last < band)
            continue;
        const Table& t = m_tables[std::size_t(cl.table)];
        const std::size_t at = std::size_t(band - cl.y1 - t.offsetFrom);
        // Without branches: rows a class doesn't reach read empty.
        const int kFrom = (std::max(cl.first, band) - band) / 4;
        const int kTo = (std::min(cl.last, bandLast) - band) / 4;
        for (int k = kFrom; k <= kTo; ++k) {
            Rows4 lo, hi;
            std::memcpy(&lo, t.first.data() + at + 4 * k, sizeof lo);
            std::memcpy(&hi, t.last.data() + at + 4 * k, sizeof hi);
            const Rows4 a = lo + cl.leftX, b = hi + cl.rightX;
            const Rows4 f = unionFirst[std::size_t(k)], l = unionLast[std::size_t(k)];
            const Rows4 span = lo <= hi;
            // Neighbours in the class further apart than a span is wide, or a class that
            // neither meets nor touches the union so far, may leave a gap.
            apart[std::size_t(k)] |=
                span & ((hi - lo + 1 < cl.widestGap) | ((f <= l) & ((b + 1 < f) | (a > l + 1))));
            unionFirst[std::size_t(k)] = (span & (a < f)) ? a : f;
            unionLast[std::size_t(k)] = (span & (b > l)) ? b : l;
        }
    }

    // Clipped to the picture, then row by row.
    const int lastColumn = m_image.width() - 1;
    std::array<int, kBand> from, to, gap;
    for (int k = 0; k < kBand / 4; ++k) {
        const Rows4 f = unionFirst[std::size_t(k)], l = unionLast[std::size_t(k)];
        const Rows4 clippedFrom = f < 0 ? Rows4{} : f;
        const Rows4 clippedTo = l > lastColumn ? Rows4{} + lastColumn : l;
        std::memcpy(from.data() + 4 * k, &clippedFrom, sizeof clippedFrom);
        std::memcpy(to.data() + 4 * k, &clippedTo, sizeof clippedTo);
        std::memcpy(gap.data() + 4 * k, &apart[std::size_t(k)], sizeof(Rows4));
    }
    uchar* const bits = m_image.bits();
    const qsizetype stride = m_image.bytesPerLine();
    const QRgb colour = ToQRgb(m_segments[run.segmentsFrom].color);
    int touchedTop = -1, touchedBottom = -1, touchedLeft = std::numeric_limits<int>::max(), touchedRight = -1;
    for (int r = 0; r <= bandLast - band; ++r) {
        const std::size_t row = std::size_t(r);
        if (from[row] > to[row])
            continue;
        const int py = band + r;
        QRgb* line = reinterpret_cast<QRgb*>(bits + py * stride);
        touchedTop = touchedTop < 0 ? py : touchedTop;
        touchedBottom = py;
        touchedLeft = std::min(touchedLeft, from[row]);
        touchedRight = std::max(touchedRight, to[row]);
        if (!gap[row]) {
            m_painted.paint(r, from[row], to[row], line, colour);
            continue;
        }
        // Spans apart: one by one, the last first.
        for (std::size_t i = run.segmentsTo; i-- > run.segmentsFrom;) {
            const Placed& p = m_placed[i];
            if (p.table < 0 || py < p.first || py > p.last)
                continue;
            const Table& t = m_tables[std::size_t(p.table)];
            const std::size_t at = std::size_t(py - m_segments[i].y1 - t.offsetFrom);
            const int a = std::max(m_segments[i].x1 + t.first[at], 0);
            const int b = std::min(m_segments[i].x1 + t.last[at], lastColumn);
            if (t.first[at] <= t.last[at] && a <= b)
                m_painted.paint(r, a, b, line, colour);
        }
    }
    if (touchedTop >= 0)
        m_touched |= QRect(QPoint(touchedLeft, touchedTop), QPoint(touchedRight, touchedBottom));
}

} // namespace

void Lines(Surface& s, const std::vector<LineSegment>& segments)
{
    if (segments.empty())
        return;
    const int width = std::min(std::max(1, s.DrawWidth), 32767);
    // Far-off coordinates would leave the 32-bit spans of the tables; one Line each is
    // right there too, and so it is for the cosmetic pen.
    constexpr int kNear = 1 << 28;
    const bool near = std::all_of(segments.begin(), segments.end(), [](const LineSegment& g) {
        return std::max({std::abs(std::int64_t(g.x1)), std::abs(std::int64_t(g.y1)),
                         std::abs(std::int64_t(g.x2)), std::abs(std::int64_t(g.y2))}) < kNear;
    });
    if (width == 1 || !near) {
        for (const LineSegment& g : segments)
            Line(s, g.x1, g.y1, g.x2, g.y2, g.color);
        return;
    }
    s.CurrentX = segments.back().x2;
    s.CurrentY = segments.back().y2;
    if (s.Image().isNull())
        return;
    s.touch(LinePainter(s.Image(), segments, width).paint());
}

} // namespace velunta
