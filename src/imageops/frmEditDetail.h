#pragma once
// Detailed Editing: a small area of the picture, up to 64 x 64 pixels, magnified into
// a grid of big cells to be edited pixel by pixel. The left button paints the
// foreground colour and the right button the background colour (a drag paints a
// line of cells); the picker takes a cell's colour into the colour of the button that
// clicks it. The window keeps its own undo, shows the area at its real size beside the
// grid, and gives the edited area back only on OK.

#include "core/Color.h"

#include <QDialog>
#include <QImage>

#include <vector>

class QLabel;

namespace velunta {

class zolButton;

// The area Detailed Editing takes from a picture of `pictureSize` around `centre`:
// at most 64 x 64, moved inside the picture where the centre lies near an edge.
QRect DetailArea(QSize pictureSize, QPoint centre);
inline constexpr int kDetailSide = 64;

// The magnified grid. Emits edited() after every change of its pixels, picked() when
// the picker took a colour.
class DetailGrid : public QWidget {
    Q_OBJECT
public:
    explicit DetailGrid(QWidget* parent = nullptr);

    void setImage(const QImage& image);
    const QImage& image() const { return m_image; }
    void setColors(Color fore, Color back);
    Color foreColor() const { return m_fore; }
    Color backColor() const { return m_back; }
    // The next click picks a colour instead of painting.
    void setPicking(bool on) { m_picking = on; }
    bool picking() const { return m_picking; }

    bool canUndo() const { return !m_undo.empty(); }
    void undo();

    // The side of a cell in pixels and the cell under a point of the widget (-1, -1 outside).
    int cellSize() const;
    QPoint cellAt(QPoint pos) const;
    QPoint cellCentre(QPoint cell) const;

    QSize sizeHint() const override;

Q_SIGNALS:
    void edited();
    void picked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QPoint origin() const;
    void paintLine(QPoint from, QPoint to);

    QImage m_image;
    std::vector<QImage> m_undo;
    Color m_fore = 0;
    Color m_back = 0xFFFFFF;
    QRgb m_strokeColor = 0;
    bool m_picking = false;
    bool m_stroking = false;
    QPoint m_lastCell;
};

class frmEditDetail : public QDialog {
    Q_OBJECT
public:
    frmEditDetail(const QImage& area, Color fore, Color back, QWidget* parent = nullptr);

    // The area as edited.
    const QImage& result() const { return m_grid->image(); }
    // The colours as the picker left them.
    Color foreColor() const { return m_grid->foreColor(); }
    Color backColor() const { return m_grid->backColor(); }

    DetailGrid* grid() const { return m_grid; }
    zolButton* cmdPicker() const { return m_picker; }
    zolButton* cmdUndo() const { return m_undo; }
    QLabel* picPreview() const { return m_preview; }

private:
    void refresh();

    DetailGrid* m_grid = nullptr;
    QLabel* m_preview = nullptr;
    QLabel* m_foreSwatch = nullptr;
    QLabel* m_backSwatch = nullptr;
    zolButton* m_picker = nullptr;
    zolButton* m_undo = nullptr;
};

} // namespace velunta
