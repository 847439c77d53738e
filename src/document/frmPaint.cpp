#include "document/frmPaint.h"

#include "core/Numbers.h"
#include "document/DocumentHost.h"
#include "document/PaintArea.h"

#include <QCloseEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QWheelEvent>

#include <algorithm>

namespace velunta {

namespace {

const char* const kScrollBarStyle =
    "QScrollBar { background: rgb(232,238,247); border: 1px solid rgb(190,200,215); }"
    "QScrollBar:horizontal { height: 16px; margin: 0 16px; }"
    "QScrollBar:vertical { width: 16px; margin: 16px 0; }"
    "QScrollBar::handle { background: rgb(120,150,200); border: 1px solid rgb(80,105,150); border-radius: "
    "3px; }"
    "QScrollBar::handle:hover { background: rgb(95,128,185); }"
    "QScrollBar::handle:horizontal { min-width: 20px; }"
    "QScrollBar::handle:vertical { min-height: 20px; }"
    "QScrollBar::add-line, QScrollBar::sub-line { background: rgb(214,225,240); border: 1px solid "
    "rgb(190,200,215); subcontrol-origin: margin; }"
    "QScrollBar::add-line:horizontal { width: 15px; subcontrol-position: right; }"
    "QScrollBar::sub-line:horizontal { width: 15px; subcontrol-position: left; }"
    "QScrollBar::add-line:vertical { height: 15px; subcontrol-position: bottom; }"
    "QScrollBar::sub-line:vertical { height: 15px; subcontrol-position: top; }"
    "QScrollBar::add-page, QScrollBar::sub-page { background: none; }"
    "QScrollBar:disabled { background: rgb(240,242,246); }";

} // namespace

frmPaint::frmPaint(DocumentHost& host, QWidget* parent) : QWidget(parent), m_host(host)
{
    setObjectName(QStringLiteral("frmPaint"));
    m_back = new QWidget(this);
    m_back->setObjectName(QStringLiteral("Back"));
    m_back->setAutoFillBackground(true);
    QPalette pal = m_back->palette();
    pal.setColor(QPalette::Window, QColor(171, 171, 171));
    m_back->setPalette(pal);
    m_paintArea = new PaintArea(*this, m_back);
    m_hScroll = new QScrollBar(Qt::Horizontal, this);
    m_hScroll->setObjectName(QStringLiteral("HScroll1"));
    m_vScroll = new QScrollBar(Qt::Vertical, this);
    m_vScroll->setObjectName(QStringLiteral("VScroll1"));
    m_hScroll->setFocusPolicy(Qt::NoFocus);
    m_vScroll->setFocusPolicy(Qt::NoFocus);
    // The thumb is the dark part of the bar, so nobody takes the track for it.
    for (QScrollBar* bar : {m_hScroll, m_vScroll})
        bar->setStyleSheet(QString::fromLatin1(kScrollBarStyle));
    connect(m_hScroll, &QScrollBar::valueChanged, this, &frmPaint::scrolled);
    connect(m_vScroll, &QScrollBar::valueChanged, this, &frmPaint::scrolled);
    // The text box lies on the view, so its text scrolls and zooms with the picture and
    // typing goes to it instead of to the tool keys.
    m_textInput = new QPlainTextEdit(m_paintArea);
    m_textInput->setObjectName(QStringLiteral("TextInput"));
    m_textInput->setFrameStyle(QFrame::Box | QFrame::Plain);
    m_textInput->setLineWidth(1);
    m_textInput->document()->setDocumentMargin(0);
    m_textInput->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_textInput->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_textInput->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_textInput->hide();
    connect(m_textInput, &QPlainTextEdit::textChanged, this, &frmPaint::TextInput_Change);
    m_lblTextInput = new QLabel(m_paintArea);
    m_lblTextInput->setObjectName(QStringLiteral("lblTextInput"));
    m_lblTextInput->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_lblTextInput->setTextFormat(Qt::PlainText);
    m_lblTextInput->setMargin(0);
    m_lblTextInput->setIndent(0);
    m_lblTextInput->hide();
    doc.viewWindow = this;
    setFocusProxy(m_paintArea);
}

frmPaint::~frmPaint()
{
    doc.viewWindow = nullptr;
}

void frmPaint::SizePaintArea()
{
    const double z = doc.ZoomFactor / 100.0;
    const int w = I4(doc.Buffer.ScaleWidth() * z) + 2;
    const int h = I4(doc.Buffer.ScaleHeight() * z) + 2;
    m_paintArea->resize(std::min(w, QWIDGETSIZE_MAX), std::min(h, QWIDGETSIZE_MAX));
    syncViewGeometry();
}

void frmPaint::syncViewGeometry()
{
    ViewGeometry& v = doc.view;
    v.paintLeft = m_paintArea->x();
    v.paintTop = m_paintArea->y();
    v.paintWidth = m_paintArea->width();
    v.paintHeight = m_paintArea->height();
    v.backWidth = m_back->width();
    v.backHeight = m_back->height();
    v.hValue = m_hScroll->value();
    v.vValue = m_vScroll->value();
    v.hMax = m_hScroll->maximum();
    v.vMax = m_vScroll->maximum();
}

void frmPaint::Form_Resize()
{
    if (m_inResize)
        return;
    m_inResize = true;
    m_host.SetImageSizeText(QString::number(doc.Buffer.ScaleWidth()) + QStringLiteral(" x ") +
                            QString::number(doc.Buffer.ScaleHeight()));
    const QSignalBlocker blockH(m_hScroll);
    const QSignalBlocker blockV(m_vScroll);
    const int bw = m_vScroll->sizeHint().width();
    const int bh = m_hScroll->sizeHint().height();
    m_hScroll->setGeometry(0, height() - bh, std::max(0, width() - bw), bh);
    m_vScroll->setGeometry(width() - bw, 0, bw, std::max(0, height() - bh));
    m_back->setGeometry(0, 0, std::max(0, width() - bw), std::max(0, height() - bh));

    const int backW = m_back->width(), backH = m_back->height();
    const int paintW = m_paintArea->width(), paintH = m_paintArea->height();
    // A view narrower than the viewport stands in its middle and its bar has nothing to
    // do. Otherwise the view stands at minus the bar's value, and an arrow steps by the
    // visible width.
    const auto layoutBar = [](QScrollBar* bar, int paint, int visible) {
        if (paint < visible) {
            bar->setRange(0, 0);
            bar->setPageStep(0);
            bar->setEnabled(false);
            return (visible - paint) / 2;
        }
        bar->setRange(1, std::max(1, paint - visible));
        bar->setPageStep(std::max(1, visible));
        bar->setSingleStep(std::max(1, visible));
        bar->setEnabled(bar->maximum() > bar->minimum());
        return -bar->value();
    };
    const int left = layoutBar(m_hScroll, paintW, backW);
    const int top = layoutBar(m_vScroll, paintH, backH);
    m_paintArea->move(left, top);
    syncViewGeometry();
    m_inResize = false;
}

void frmPaint::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    Form_Resize();
}

void frmPaint::scrolled()
{
    m_paintArea->setFocus();
    RealignZoom(-1, -1);
}

void frmPaint::PreDefZoom(double zoom)
{
    doc.ZoomFactor = zoom;
    SizePaintArea();
    doc.SetCaption(doc.CaptionName());
    // Ratios of 1 or more leave the bars where they are: a menu zoom keeps the bar values.
    RealignZoom(doc.PointerImageA + 1, doc.PointerImageB + 1);
    m_host.ZoomChanged(*this);
}

void frmPaint::RealignZoom(double ratioY, double ratioX)
{
    setUpdatesEnabled(false);
    Form_Resize();
    {
        const QSignalBlocker blockH(m_hScroll);
        const QSignalBlocker blockV(m_vScroll);
        // A value beyond a bar's range is refused and the bar keeps its value.
        if (ratioY >= 0) {
            const double v = m_vScroll->maximum() * ratioY;
            if (v >= m_vScroll->minimum() && v <= m_vScroll->maximum())
                m_vScroll->setValue(I4(v));
        }
        if (ratioX >= 0) {
            const double v = m_hScroll->maximum() * ratioX;
            if (v >= m_hScroll->minimum() && v <= m_hScroll->maximum())
                m_hScroll->setValue(I4(v));
        }
    }
    Form_Resize();
    const double z = doc.ZoomFactor / 100.0;
    const Surface& sel = doc.BufferSelected;
    if (doc.CropArea.Visible)
        doc.CropArea.Move(sel.Left * z, sel.Top * z, sel.Width() * z, sel.Height() * z);
    if (doc.SelectArea.Visible) {
        doc.SelectArea.Move(sel.Left * z, sel.Top * z, sel.Width() * z, sel.Height() * z);
        doc.LastSelectionLeft = I2(doc.SelectArea.Left / 100 * 100);
        doc.LastSelectionTop = I2(doc.SelectArea.Top / 100 * 100);
    }
    setUpdatesEnabled(true);
    m_paintArea->dropScaledPicture();
    m_paintArea->update();
}

void frmPaint::invalidateImageRect(const QRect& imageRect)
{
    m_paintArea->invalidateImage(imageRect);
}

void frmPaint::invalidateView()
{
    m_paintArea->update();
}

void frmPaint::invalidateViewRect(const QRect& viewRect)
{
    m_paintArea->update(viewRect.translated(1, 1));
}

bool frmPaint::pointerOverPicture() const
{
    return m_paintArea->underMouse();
}

void frmPaint::setPointerShape(int shape)
{
    m_pointerShape = shape;
    m_paintArea->setCursor(m_host.PointerCursor(shape));
}

void frmPaint::captionChanged()
{
    setWindowTitle(doc.Caption);
}

void frmPaint::textBoxChanged()
{
    const TextBoxState& box = doc.textBox;
    m_showingTextBox = true;
    const QFont font = TextBoxFont(box);
    const Qt::Alignment align = (box.Centred ? Qt::AlignHCenter : Qt::AlignLeft) | Qt::AlignTop;
    // The view's frame puts the picture one pixel in.
    const auto place = [](QWidget* w, const QRectF& r) {
        w->setGeometry(I4(r.left()) + 1, I4(r.top()) + 1, std::max(0, I4(r.width())),
                       std::max(0, I4(r.height())));
    };

    QString shown = box.Text;
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    if (m_textInput->toPlainText() != shown)
        m_textInput->setPlainText(shown);
    m_textInput->setFont(font);
    QPalette pal = m_textInput->palette();
    pal.setColor(QPalette::Base, ToQColor(box.BackColor));
    pal.setColor(QPalette::Text, ToQColor(box.ForeColor));
    m_textInput->setPalette(pal);
    QTextOption option = m_textInput->document()->defaultTextOption();
    option.setAlignment(align);
    m_textInput->document()->setDefaultTextOption(option);
    place(m_textInput, box.Input);
    m_textInput->setVisible(box.InputVisible);

    QString caption = box.LabelCaption;
    caption.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    m_lblTextInput->setText(caption);
    m_lblTextInput->setFont(font);
    QPalette labelPal = m_lblTextInput->palette();
    labelPal.setColor(QPalette::WindowText, ToQColor(box.ForeColor));
    m_lblTextInput->setPalette(labelPal);
    m_lblTextInput->setAlignment(align);
    place(m_lblTextInput, box.Label);
    m_lblTextInput->setVisible(box.LabelVisible);

    if (box.FocusWanted && box.InputVisible) {
        doc.textBox.FocusWanted = false;
        m_textInput->setFocus();
    } else if (!box.InputVisible && m_textInput->hasFocus()) {
        m_paintArea->setFocus();
    }
    m_showingTextBox = false;
}

void frmPaint::TextInput_Change()
{
    if (m_showingTextBox)
        return;
    doc.textBox.Text = m_textInput->toPlainText().replace(QStringLiteral("\n"), QStringLiteral("\r\n"));
    UpdateTextbox(doc);
}

void frmPaint::Form_Activate(bool guidelines, int guideColor, int guideStyle)
{
    m_paintArea->setFocus();
    doc.Line1.Y2 = m_paintArea->height();
    doc.Line2.X2 = m_paintArea->width();
    for (LineOverlay* line : {&doc.Line1, &doc.Line2}) {
        line->BorderColor = guideColor;
        line->BorderStyle = guideStyle;
        line->Visible = guidelines;
    }
    m_paintArea->update();
}

void frmPaint::closeWithoutQuestion()
{
    // The document's sub-window asks this widget whether it may close.
    m_closeWithoutQuestion = true;
    (parentWidget() ? parentWidget() : static_cast<QWidget*>(this))->close();
    m_closeWithoutQuestion = false;
}

void frmPaint::closeEvent(QCloseEvent* event)
{
    if (!m_closeWithoutQuestion && !m_host.FormQueryUnload(*this)) {
        event->ignore();
        return;
    }
    event->accept();
    m_host.FormTerminated(*this);
}

void frmPaint::wheelEvent(QWheelEvent* event)
{
    const int steps = event->angleDelta().y() / 120;
    if (event->modifiers() & Qt::ControlModifier) {
        // Ctrl and the wheel zoom by the zoom tool's steps, around the pointer.
        const QPointF p = m_paintArea->mapFrom(this, event->position()) - QPointF(1, 1);
        if (steps != 0)
            m_host.PaintAreaWheelZoom(*this, steps > 0, float(p.x()), float(p.y()));
        event->accept();
        return;
    }
    // A notch of the wheel moves three tenths of the visible part; an arrow a whole one.
    QScrollBar* bar = (event->modifiers() & Qt::ShiftModifier) ? m_hScroll : m_vScroll;
    bar->setValue(bar->value() - steps * 3 * std::max(1, bar->pageStep() / 10));
    event->accept();
}

} // namespace velunta
