#pragma once
// The picture of a drawing companion with the figures drawn so far and the one being
// placed: a click adds a point (hold and drag to place it exactly), a drag moves a
// point, the right button takes back the last one. The picture fills the view, larger
// or smaller, and the points are kept in picture pixels.

#include "drawing/Shapes.h"

#include <QImage>
#include <QPixmap>
#include <QWidget>

namespace velunta {

class PointCanvas : public QWidget {
    Q_OBJECT
public:
    explicit PointCanvas(const QImage& picture, QWidget* parent = nullptr);

    // The figures already finished, and the one whose points are being placed.
    QVector<Shape> done;
    Shape current;

    // Picture pixels to the view and back.
    QPointF toView(QPointF point) const;
    QPointF toPicture(QPointF point) const;
    double scale() const { return m_scale; }

    // Takes back the last point; with none left, the last finished figure opens again.
    void undoPoint();
    void clearAll();
    // The figure being placed is finished; the next click starts another like it.
    void newShape();
    // Something in `done` or `current` was changed from outside.
    void refresh();

    QSize sizeHint() const override;

Q_SIGNALS:
    void changed();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void layoutPicture();
    // The point of `current` under the view position, or -1.
    int pointAt(QPointF viewPoint) const;
    QPointF clampToPicture(QPointF point) const;

    QImage m_picture;
    QPixmap m_scaled; // the picture at the view's scale, made once per size
    QPointF m_origin;
    double m_scale = 1;
    int m_dragging = -1;
};

} // namespace velunta
