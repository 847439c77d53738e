#pragma once
// The looks of the main window's bars and read-outs, painted by the widgets
// themselves. A style sheet would give every widget inside a bar a style of its own
// and restyle them all whenever the bar moves, which is most of what the window
// costs to open; these cost one paint each.

#include <QColor>
#include <QLabel>
#include <QWidget>

namespace velunta {

// The blue line around the read-outs, the colour panels and under the top bar.
inline const QColor kFrameBlue(116, 156, 218);

// An area in one colour, or a top-to-bottom gradient, with a 1-pixel line on chosen
// edges and, when `radius` is set, round corners. The lines take no room from the
// widgets inside; a panel whose widgets reach its edges gives itself margins.
class PanelFill : public QWidget {
public:
    explicit PanelFill(QWidget* parent = nullptr);
    // A second colour makes the fill a gradient from `top` to `bottom`.
    void setFill(const QColor& top, const QColor& bottom = QColor());
    void setBorder(const QColor& color, Qt::Edges edges, int radius = 0);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor m_top;
    QColor m_bottom;
    QColor m_border;
    Qt::Edges m_edges;
    int m_radius = 0;
};

// A label in a box: a background, a 1-pixel frame and room at the sides. Disabled, it
// shows on `disabledBackground` in grey.
class BoxLabel : public QLabel {
public:
    explicit BoxLabel(QWidget* parent = nullptr);
    void setBox(const QColor& background, const QColor& frame, int paddingX, int paddingY = 0);
    void setDisabledLook(const QColor& background, const QColor& text);
    // The text's colour.
    void setInk(const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void indentText();

    bool m_framed = false;
    QColor m_background = Qt::white;
    QColor m_disabledBackground;
    QColor m_frame;
};

// A caption: bold, in `color`.
void CaptionLook(QWidget* w, const QColor& color);
// The colour a label's text, or a line of a QFrame, is drawn in.
void InkLook(QWidget* w, const QColor& color);

} // namespace velunta
