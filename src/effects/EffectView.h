#pragma once
// The Effects Browser's viewing area (`Picture2`) with the preview image `ImgDest` in
// it. The image is shown either at actual size, where it scrolls and can be dragged
// about with the mouse, or fitted into the area. Its position (`Left`, `Top`, in
// picture pixels) is what places the spot light and the text of the effects: they
// stay at one place of the area while the picture moves under them.
//
// The view shows the work surface's drawing layer itself rather than a copy of it: a
// preview is drawn on the interface thread between two paints, so there is never a
// half-drawn picture to show, and a 12-megapixel picture costs no copy per preview.

#include <QAbstractScrollArea>
#include <QImage>
#include <QPointF>

namespace velunta {

class EffectView : public QAbstractScrollArea {
    Q_OBJECT
public:
    explicit EffectView(QWidget* parent = nullptr);

    // The picture to show; the view keeps the pointer, so the image must outlive it.
    void setImage(const QImage* image);
    // The picture changed: repaint it (the "copy into ImgDest" of each preview).
    void refresh();

    // Actual size (Chkzoom ticked) or fitted into the area, at the top left.
    bool actualSize() const { return m_actual; }
    void setActualSize(bool actual);

    // ImgDest's position in the area, in picture pixels.
    double Left() const { return m_left; }
    double Top() const { return m_top; }
    void Move(double left, double top);

    // The picking pointer: the next press reports the picture point under it.
    bool picking() const { return m_picking; }
    void setPicking(bool on);

    // Picture pixels per view pixel and where the picture's corner lies in the area.
    double scale() const;
    QPointF origin() const;
    // The picture point under a point of the area (may lie outside the picture).
    QPointF toPicture(const QPointF& viewPoint) const;

    QSize sizeHint() const override;

Q_SIGNALS:
    // A press with the picking pointer on, at this picture point.
    void picked(QPointF picturePoint, Qt::MouseButton button);
    // The mouse button came up after a drag of the picture.
    void dragged();
    // Scrolling moved the picture.
    void scrolled();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void updateScrollBars();
    void updateCursor();
    // The picture shrunk to the size it shows at, averaged over the pixels each screen
    // pixel covers: fine lines (scan lines, a grid) would beat into false stripes if
    // every screen pixel just took the nearest few.
    const QImage& shrunk(double scale);

    const QImage* m_image = nullptr;
    bool m_actual = true;
    double m_left = 0;
    double m_top = 0;
    bool m_picking = false;
    // The drag: the grab point, relative to the picture's corner, in view pixels.
    bool m_dragging = false;
    QPointF m_grab;
    bool m_syncing = false;
    QImage m_shrunk; // null when the picture or the fit changed since it was made
};

} // namespace velunta
