#pragma once
// One picture plane of the brightness and contrast dialog: a viewport that shows a
// picture at its true size, placed by Left and Top, and that the user drags with the
// mouse. The picture is not owned: the plane shows it as it stands at each paint, and
// paints only the part the viewport shows.

#include <QImage>
#include <QWidget>

namespace velunta {

class ImagePlane : public QWidget {
    Q_OBJECT
public:
    explicit ImagePlane(QWidget* parent = nullptr);

    void setPicture(const QImage* picture);
    // Where the picture's top left stands in the viewport: 0 or less when it is larger
    // than the viewport, 0 when it fits.
    int Left() const { return m_left; }
    int Top() const { return m_top; }
    // Places the picture, kept so that it always covers as much of the viewport as it can.
    void Move(int left, int top);
    // The part of the picture the viewport shows.
    QRect visibleArea() const;

Q_SIGNALS:
    // The user dragged the picture by dx, dy.
    void dragged(int dx, int dy);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    const QImage* m_picture = nullptr;
    int m_left = 0;
    int m_top = 0;
    bool m_dragging = false;
    QPoint m_grab;
};

} // namespace velunta
