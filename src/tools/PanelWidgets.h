#pragma once
// The small controls the tool option panels are built from: style buttons with the
// pressed look of the tool strip, the read-outs, colour swatches, fill pattern
// swatches, and the pictures of the style buttons that have no art of their own.

#include "core/Color.h"
#include "widgets/PanelLooks.h"
#include "widgets/zolButton.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>

#include <functional>

namespace velunta {

// Logical sizes shared by every panel, so the rows line up from panel to panel.
inline constexpr int kPanelRowHeight = 24;
inline constexpr int kStyleButtonSize = 26;

// The look of the panels' small picture buttons: no frame on the strip until the
// pointer comes, sunk into a warm colour while chosen or open.
void PanelBarLook(zolButton* b);

// A picture button of a panel. Mode 2: one of a group of styles, the buttons of the
// box it stands in; it shows chosen when the draw state says so. Mode 1: a button that
// stays down while its slider or list is open.
class StyleButton : public zolButton {
    Q_OBJECT
public:
    StyleButton(const QString& name, const QIcon& icon, const QString& tip, QWidget* parent, int mode = 2);
};

// A picture drawn from its icon at paint time, so it is sharp at any pixel ratio.
class IconView : public QWidget {
    Q_OBJECT
public:
    IconView(const QString& name, const QIcon& icon, int size, QWidget* parent);

Q_SIGNALS:
    void clicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QIcon m_icon;
};

// A sunken read-out (selector values, zoom, angle, colour channels). A click on it
// is reported, so the bigger target opens a selector's slider too.
class ReadoutLabel : public BoxLabel {
    Q_OBJECT
public:
    ReadoutLabel(const QString& name, const QString& tip, int minimumWidth, QWidget* parent);

Q_SIGNALS:
    void clicked();

protected:
    void mousePressEvent(QMouseEvent* event) override;
};

// A colour sample. kNoColor shows a crossed box: nothing is chosen yet.
class ColorSwatch : public QFrame {
    Q_OBJECT
public:
    ColorSwatch(const QString& name, const QString& tip, QSize size, QWidget* parent);
    void setColor(Color c);
    Color color() const { return m_color; }
    // The armed look: a dashed frame while the next click on the picture picks for it.
    void setArmed(bool armed);
    bool armed() const { return m_armed; }

Q_SIGNALS:
    void clicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    Color m_color = kNoColor;
    bool m_armed = false;
};

// One OptFillStyle option: its picture is the pattern painted by the fill's own
// brush, in the foreground colour, over white; style 1 (transparent) shows a
// checkerboard.
class FillPatternButton : public zolButton {
    Q_OBJECT
public:
    FillPatternButton(int pattern, const QString& tip, QWidget* parent);
    void setInk(Color c);

private:
    int m_pattern;
    Color m_ink = kNoColor;
};

// A row of controls in `box`, edge to edge, `spacing` apart.
QHBoxLayout* RowLayout(QWidget* box, int spacing);

// The swatch of a fill pattern, w x h pixels: the fill tool's brush over white.
QImage FillPatternSwatch(int pattern, Color ink, int w, int h);

// An icon drawn by code at whatever size and pixel ratio it is shown.
QIcon PaintedIcon(std::function<void(QPainter&, const QRectF&)> paint);
// Cmd2(3..5): the picture of Cmd2(index - 3) faded, with a "same as last time" arrow:
// these styles draw the circle with the pen and fill left by the last shape.
QIcon LastPenCircleIcon(int index);
// Cmd5(4..5): a dashed outline; the 3D tool draws no edge in these styles.
QIcon NoEdgeIcon();
// The slider's step buttons: a minus (0) or a plus (1).
QIcon MinusPlusIcon(int k);

} // namespace velunta
