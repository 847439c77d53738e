#pragma once
// The sheet of the print preview (picOffset): white paper with a shadow, and on it the
// picture as it will print (picZoom), scaled to the preview's zoom.

#include <QImage>
#include <QWidget>

namespace velunta {

class SheetView : public QWidget {
    Q_OBJECT
public:
    explicit SheetView(QWidget* parent = nullptr);
    // The paper's size in screen pixels, and the picture's place on it.
    void setSheet(QSize paper, QRect picture, const QImage& full);
    QSize paper() const { return m_paper; }
    QRect picZoom() const { return m_picture; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QSize m_paper;
    QRect m_picture;
    QImage m_full;   // picPrint
    QImage m_scaled; // picZoom's pixels, made again only when the size changes
};

} // namespace velunta
