#pragma once
// A picture surface: the drawing layer `Image` that every operation reads and
// writes, the persistent layer `Picture` that `Cls` restores, the pen fields the
// drawing operations use, and where the surface is placed.
//
// Sizes: `Width` and `Height` are the outer size, which includes a frame of
// `border` pixels on each side (the image surfaces of a document carry a one-pixel
// frame, so a new 640 x 480 picture is a surface of 642 x 482). `ScaleWidth` and
// `ScaleHeight` are the drawable size, which is the size of `Image`.

#include "core/Color.h"

#include <QImage>
#include <QRect>
#include <QString>

#include <cstdint>
#include <vector>

namespace velunta {

// Thrown when a surface cannot get the memory for its size.
class AllocationError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class Surface {
public:
    explicit Surface(int border = 0);

    int border() const { return m_border; }

    int Width() const { return m_image.width() + 2 * m_border; }
    int Height() const { return m_image.height() + 2 * m_border; }
    int ScaleWidth() const { return m_image.width(); }
    int ScaleHeight() const { return m_image.height(); }

    // Outer size. The pixels that stay inside keep their place at the top left; new
    // area takes BackColor. Sizes at or below the frame give an empty image.
    // Throws AllocationError when the memory can't be had.
    void setSize(int width, int height);
    void setScaleSize(int width, int height);
    // Left, Top and the outer size at once, like the Move statement.
    void Move(double left, double top);
    void Move(double left, double top, int width, int height);

    // The drawing layer, always Format_RGB32 and ScaleWidth x ScaleHeight.
    QImage& Image() { return m_image; }
    const QImage& Image() const { return m_image; }

    // The persistent layer; null when the surface has no picture.
    const QImage& Picture() const { return m_picture; }
    // Sets the persistent layer and shows it: the drawing layer is cleared to it.
    void setPicture(const QImage& picture);
    // The persistent layer takes a copy of the drawing layer (AutoRedraw's Image to Picture).
    void keepImageAsPicture() { m_picture = m_image; }
    void clearPicture() { m_picture = QImage(); }

    // Restores the drawing layer: BackColor everywhere, the picture at 0, 0 over it.
    void Cls();

    // Replaces the drawing layer with `image` converted to RGB32; the surface takes its size.
    void setImage(const QImage& image);

    // Placement (image coordinates for a floating selection, say).
    double Left = 0;
    double Top = 0;

    // Pen and brush fields.
    double CurrentX = 0;
    double CurrentY = 0;
    int DrawWidth = 1;
    Color ForeColor = 0;
    Color FillColor = 0;
    int FillStyle = 1; // 0 solid, 1 transparent, 2..7 hatches
    Color BackColor = 0xFFFFFF;

    QString FontName = QStringLiteral("Arial");
    double FontSize = 12;
    bool FontBold = false;
    bool FontItalic = false;
    bool FontUnderline = false;
    bool FontTransparent = true;

    QString Tag;

    // The rectangle of Image touched since the last takeTouched(); the view asks for
    // it so that a refresh repaints only what changed. Every write to Image reports
    // itself here after the pixels are written.
    void touch(const QRect& r)
    {
        m_touched |= r.intersected(m_image.rect());
        if (m_tile > 0)
            markChanged(r);
    }
    void touchAll()
    {
        m_touched = m_image.rect();
        m_changedAll = true;
    }
    QRect takeTouched()
    {
        const QRect r = m_touched;
        m_touched = QRect();
        return r;
    }
    const QRect& touched() const { return m_touched; }

    // Change tracking, by square tiles of `tileSize` pixels (the document's picture
    // turns it on for its undo store). takeChanges() reports the tiles written since
    // the previous call, by index row by row, each once and in no order; `all` is set
    // when the size changed or a write went to Image without reporting itself through
    // touch(). Both cost what was written, not the picture's size.
    struct Changes {
        bool all = true;
        int columns = 0;
        int rows = 0;
        std::vector<int> tiles;
    };
    void trackChanges(int tileSize);
    int changeTile() const { return m_tile; }
    Changes takeChanges();

    // Gives the drawing layer `copy`, which holds the same pixels, as its own, so that
    // the next write needn't copy pixels it shares with the persistent layer or an undo
    // step. `key` is the layer's cacheKey() when the copy was taken; if the layer has
    // been written since, nothing happens and false comes back.
    bool adoptCopy(QImage copy, qint64 key);

private:
    static QImage allocate(int w, int h);
    void markChanged(const QRect& r);

    int m_border = 0;
    QImage m_image;
    QImage m_picture;
    QRect m_touched;

    int m_tile = 0;
    int m_columns = 0;
    int m_rows = 0;
    bool m_changedAll = true;
    qint64 m_reportedKey = 0;            // Image's cache key after the last reported write
    std::vector<std::uint8_t> m_changed; // per tile, set when listed in m_changedList
    std::vector<int> m_changedList;
};

} // namespace velunta
