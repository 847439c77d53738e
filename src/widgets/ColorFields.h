#pragma once
// The two picking fields of the True Color Palette: the saturation/value square of
// one hue and the hue strip beside it. Both are driven by the mouse and the arrow keys.

#include <QImage>
#include <QWidget>

namespace velunta {

// h in degrees [0, 360), s and v in [0, 1], as an opaque QRgb.
QRgb HsvToRgb(double h, double s, double v);

// A picture the user points into: a press or a drag with the left button chooses.
class PointerField : public QWidget {
public:
    using QWidget::QWidget;

protected:
    virtual void pointTo(const QPoint& pos) = 0;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;

    QImage m_picture;
};

// Saturation grows to the right, value upwards.
class SatValField : public PointerField {
    Q_OBJECT
public:
    explicit SatValField(QWidget* parent = nullptr);
    void setHue(double h);
    void setSatVal(double s, double v);
    double saturation() const { return m_s; }
    double value() const { return m_v; }

Q_SIGNALS:
    void changed(double s, double v);

protected:
    void paintEvent(QPaintEvent*) override;
    void resizeEvent(QResizeEvent*) override;
    void keyPressEvent(QKeyEvent* e) override;
    void pointTo(const QPoint& pos) override;

private:
    void render();
    QRect field() const { return rect().adjusted(1, 1, -1, -1); }

    double m_h = 0, m_s = 0, m_v = 0;
};

// Hue from the top (0 degrees) to the bottom (360).
class HueStrip : public PointerField {
    Q_OBJECT
public:
    explicit HueStrip(QWidget* parent = nullptr);
    void setHue(double h);
    double hue() const { return m_h; }

Q_SIGNALS:
    void changed(double h);

protected:
    void paintEvent(QPaintEvent*) override;
    void resizeEvent(QResizeEvent*) override;
    void keyPressEvent(QKeyEvent* e) override;
    void pointTo(const QPoint& pos) override;

private:
    QRect strip() const { return rect().adjusted(5, 1, -5, -1); }

    double m_h = 0;
};

} // namespace velunta
