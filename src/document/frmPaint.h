#pragma once
// The window of one document: the viewport Back holding the view PaintArea, and the
// two scroll bars. It owns the Document and lays out the view for its zoom.

#include "document/Document.h"
#include "document/DocumentView.h"

#include <QWidget>

class QLabel;
class QPlainTextEdit;
class QScrollBar;

namespace velunta {

class DocumentHost;
class PaintArea;

class frmPaint : public QWidget, public DocumentView {
    Q_OBJECT
public:
    frmPaint(DocumentHost& host, QWidget* parent = nullptr);
    ~frmPaint() override;

    Document doc;

    DocumentHost& host() { return m_host; }
    PaintArea* paintArea() const { return m_paintArea; }
    QWidget* back() const { return m_back; }
    QScrollBar* HScroll1() const { return m_hScroll; }
    QScrollBar* VScroll1() const { return m_vScroll; }
    // The text tool's box and the label that shows its text over the picture.
    QPlainTextEdit* TextInput() const { return m_textInput; }
    QLabel* lblTextInput() const { return m_lblTextInput; }

    // Sizes PaintArea from the picture and the zoom: picture x zoom / 100 plus the frame.
    void SizePaintArea();
    // Lays out bars, viewport and view (centres a view smaller than the viewport).
    void Form_Resize();
    // Form_Activate: focus to the view, guidelines to the view's size.
    void Form_Activate(bool guidelines, int guideColor, int guideStyle);
    // After the window's close was refused, or to close without questions.
    void closeWithoutQuestion();

    // DocumentView
    void invalidateImageRect(const QRect& imageRect) override;
    void invalidateView() override;
    void invalidateViewRect(const QRect& viewRect) override;
    void setPointerShape(int shape) override;
    int pointerShape() const override { return m_pointerShape; }
    bool pointerOverPicture() const override;
    void PreDefZoom(double zoom) override;
    void RealignZoom(double ratioY, double ratioX) override;
    void captionChanged() override;
    void textBoxChanged() override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void scrolled();
    // The typing in the text box goes to the document, which sizes the box.
    void TextInput_Change();
    void syncViewGeometry();

    DocumentHost& m_host;
    QWidget* m_back = nullptr;
    PaintArea* m_paintArea = nullptr;
    QScrollBar* m_hScroll = nullptr;
    QScrollBar* m_vScroll = nullptr;
    QPlainTextEdit* m_textInput = nullptr;
    QLabel* m_lblTextInput = nullptr;
    bool m_showingTextBox = false;
    int m_pointerShape = -1;
    bool m_closeWithoutQuestion = false;
    bool m_inResize = false;
};

} // namespace velunta
