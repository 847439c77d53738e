#pragma once
// The small controls the colour strip is made of: a colour sample (the working
// swatches and their draggable mirrors), a grid of swatch cells with a hover frame,
// a picture strip a colour is read from, and a channel slider.

#include "core/Color.h"

#include <QImage>
#include <QVector>
#include <QWidget>

class QTimer;

namespace velunta {

// A plain colour sample. As a drag source it hands its colour over as decimal text.
class ColorSample : public QWidget {
    Q_OBJECT
public:
    explicit ColorSample(QWidget* parent = nullptr);
    void setColor(Color c);
    Color color() const { return m_color; }
    void setDragSource(bool on) { m_dragSource = on; }
    // A thicker frame marks the working colour the sliders edit.
    void setMarked(bool on);

Q_SIGNALS:
    void pressed(int button);

protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;

private:
    Color m_color = 0;
    bool m_dragSource = false;
    bool m_marked = false;
    QPoint m_pressPos;
};

// Cells of colour in a grid. Index i stands at places[i] (x column, y row).
class SwatchGrid : public QWidget {
    Q_OBJECT
public:
    SwatchGrid(const QVector<QPoint>& places, QSize cell, int gap, QWidget* parent = nullptr);

    int count() const { return int(m_colors.size()); }
    void setColor(int index, Color c);
    Color color(int index) const { return m_colors.value(index, kNoColor); }
    void setCellToolTip(int index, const QString& tip) { m_tips[index] = tip; }
    // Cells take a colour dropped on them as text.
    void setAcceptsColorDrops(bool on) { setAcceptDrops(on); }

    QRect cellRect(int index) const;
    int indexAt(const QPoint& pos) const;
    // The cell with the hover frame around it, -1 when none shows.
    int hoverIndex() const { return m_hover; }
    void hideHoverFrame();

Q_SIGNALS:
    void cellPressed(int index, int button);
    void cellReleased(int index, int button);
    void cellDoubleClicked(int index, int button);
    void colorDropped(int index, Color c);

protected:
    bool event(QEvent* e) override;
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void leaveEvent(QEvent*) override;
    void dragEnterEvent(QDragEnterEvent* e) override;
    void dragMoveEvent(QDragMoveEvent* e) override;
    void dropEvent(QDropEvent* e) override;

private:
    void setHover(int index);

    QVector<QPoint> m_places;
    QVector<Color> m_colors;
    QVector<QString> m_tips;
    QSize m_cell;
    int m_gap;
    int m_hover = -1;
    int m_pressed = -1;
    bool m_ignoreRelease = false;
    // tmrColorBrd: a leave event can be lost under a popup or a drag, so while a
    // frame shows the pointer is polled as well.
    QTimer* m_tmrColorBrd = nullptr;
};

// A picture inside a one-pixel frame; pressing or dragging with a button reads the
// colour under the pointer (held to the picture at its edges).
class PickStrip : public QWidget {
    Q_OBJECT
public:
    explicit PickStrip(QWidget* parent = nullptr);
    void setPicture(const QImage& picture);
    const QImage& picture() const { return m_picture; }
    // The size of the picture inside the frame.
    QSize pictureSize() const { return size() - QSize(2, 2); }
    Color colorAt(const QPoint& widgetPos) const;
    void setPicks(bool on) { m_picks = on; }

Q_SIGNALS:
    void picked(Color c, int button);
    void doubleClicked();

protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;

private:
    QImage m_picture;
    bool m_picks = true;
};

// ColorBar with its thumb ColorScroll: a track showing the ramp of one channel and a
// thumb the user drags. The owner maps positions to values.
class ColorSlider : public QWidget {
    Q_OBJECT
public:
    explicit ColorSlider(QWidget* parent = nullptr);

    static constexpr int kThumbWidth = 10;
    int barLeft() const { return kThumbWidth / 2; }
    int barWidth() const { return width() - kThumbWidth; }
    int thumbWidth() const { return kThumbWidth; }
    int thumbLeft() const { return m_thumbLeft; }
    void setThumbLeft(int left);
    // The track runs from `from` to `to`.
    void setRamp(Color from, Color to);

Q_SIGNALS:
    void dragStarted();
    void dragged();
    void dragEnded();

protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;

private:
    void moveThumbTo(int pointerX);

    int m_thumbLeft = 0;
    Color m_from = 0;
    Color m_to = 0xFF;
    bool m_dragging = false;
    int m_grabX = 0; // SliderGrabX: where inside the thumb it was taken
};

} // namespace velunta
