#pragma once
// The view of a document: paints the picture at the zoom for the exposed part only,
// then the overlays (marquees, rubber bands, guidelines, grid) on top. It owns no
// pixels. Pointer events go to the window in client (view) pixels.

#include <QWidget>

namespace velunta {

class frmPaint;

class PaintArea : public QWidget {
    Q_OBJECT
public:
    explicit PaintArea(frmPaint& form, QWidget* parent);

    // The view rectangle (widget coordinates) that shows a rectangle of the picture.
    QRect viewRectForImage(const QRect& imageRect) const;
    // Repaints the part that shows a changed rectangle of the picture.
    void invalidateImage(const QRect& imageRect);
    // Below 100 % the view keeps the whole picture scaled once; a realign drops it.
    void dropScaledPicture() { m_scaled = QImage(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void paintOverlays(QPainter& p);
    void ensureScaled();
    void rescale(const QRect& viewRect);
    QImage m_scaled;
    int m_antsTimer = 0;
    int m_antsOffset = 0;
    frmPaint& m_form;
};

} // namespace velunta
