// What the colour strip does when it is used: picking, the sliders and text boxes,
// the user colours and the colour dialog.

#include "widgets/ColorStrip.h"

#include "widgets/StripParts.h"
#include "widgets/frmColor.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

namespace velunta {

namespace {

// The working colour a button writes: the left one the foreground, any other the background.
int IndexOfButton(int button)
{
    return button == 1 ? 0 : 1;
}

} // namespace

void ColorStrip::SetColorBars()
{
    if (!SliderDrag) {
        const Color c = SelColor(m_selIndex);
        const std::array<int, 3> v = {Clamp255(ColorRed(c)), Clamp255(ColorGreen(c)), Clamp255(ColorBlue(c))};
        for (int k = 0; k < 3; ++k)
            m_box[k]->setText(QString::number(v[k]));
        placeThumbs(v);
    } else {
        // The change rule of the box cuts the 256 of the far right to 255.
        for (int k = 0; k < 3; ++k)
            m_box[k]->setText(QString::number(SliderValue(m_bar[k]->thumbLeft(), m_bar[k]->barLeft(),
                                                          m_bar[k]->barWidth(), m_bar[k]->thumbWidth())));
    }
    setSel(m_selIndex,
           RGB(BoxValue(m_box[0]->text()), BoxValue(m_box[1]->text()), BoxValue(m_box[2]->text())));
    showSwatches();
    showReadouts();
    Q_EMIT colorsChanged();
}

void ColorStrip::placeThumbs(const std::array<int, 3>& values)
{
    for (int k = 0; k < 3; ++k)
        m_bar[k]->setThumbLeft(
            ThumbLeftForValue(values[k], m_bar[k]->barLeft(), m_bar[k]->barWidth(), m_bar[k]->thumbWidth()));
}

void ColorStrip::showSwatches()
{
    for (int i = 0; i < 2; ++i) {
        m_selColor[i]->setColor(SelColor(i));
        m_selColor[i]->setMarked(i == m_selIndex);
        m_colorBlend[i]->setColor(SelColor(i));
    }
}

void ColorStrip::showReadouts()
{
    // The read-outs show the foreground, whichever colour the sliders edit.
    m_value->setText(QString::number(m_fore));
    m_html->setText(ColorToHTML(m_fore));
}

void ColorStrip::refresh()
{
    SetColorBars();
    DrawSelectedGradient();
}

void ColorStrip::DrawSelectedGradient()
{
    const QSize size = m_gradient->pictureSize();
    if (size.isEmpty())
        return;
    // Columns 0..W: the last one falls just outside the picture.
    const QVector<Color> columns = SelectedGradient(m_fore, m_back, size.width());
    QImage picture(size, QImage::Format_RGB32);
    auto* first = reinterpret_cast<QRgb*>(picture.scanLine(0));
    for (int x = 0; x < size.width(); ++x)
        first[x] = ToQRgb(columns[x]);
    for (int y = 1; y < size.height(); ++y)
        std::copy(first, first + size.width(), reinterpret_cast<QRgb*>(picture.scanLine(y)));
    m_gradient->setPicture(picture);
}

void ColorStrip::chosen()
{
    DrawSelectedGradient();
    SetColorBars();
}

void ColorStrip::RestoreColors_Click()
{
    m_fore = 0;
    m_back = RGB(255, 255, 255);
    m_selIndex = 0;
    SetColorBars();
    DrawSelectedGradient();
}

void ColorStrip::ShiftColors_Click()
{
    std::swap(m_fore, m_back);
    SetColorBars();
    DrawSelectedGradient();
}

void ColorStrip::SelColor_MouseDown(int index, int button)
{
    if (index < 0 || index > 1)
        return;
    ColorDialogTarget = index;
    if (button == 2) {
        ColorDialogResult = kNoColor;
        openModeless();
        return;
    }
    m_selIndex = index;
    // The sliders and boxes now show the colour they edit.
    SetColorBars();
}

void ColorStrip::ImgStrip_MouseDown(Color c, int button)
{
    if (button == 1 || button == 2)
        choose(IndexOfButton(button), c);
}

void ColorStrip::choose(int selIndex, Color c)
{
    if (c < 0)
        return;
    m_selIndex = selIndex;
    setSel(m_selIndex, c);
    chosen();
}

void ColorStrip::ImgGrays_DblClick()
{
    ColorDialogTarget = 0;
    ColorDialogResult = kNoColor;
    openModeless();
}

void ColorStrip::Image2_Click(int index)
{
    ColorDialogResult = kNoColor;
    // Image2(0) marks its target with a true flag (-1), which stands for the background.
    ColorDialogTarget = index == 1 ? 0 : -1;
    openModeless();
}

void ColorStrip::MSColors_MouseUp(int index, int button)
{
    choose(IndexOfButton(button), m_msColors->color(index));
}

void ColorStrip::PicUserColors_MouseDown(int index, int button)
{
    // Kept for a double click, whose first click replaces the colour this button writes.
    SavedColor = SelColor(IndexOfButton(button));
}

void ColorStrip::PicUserColors_MouseUp(int index, int button)
{
    choose(IndexOfButton(button), m_userColors->color(index));
}

void ColorStrip::PicUserColors_DblClick(int index)
{
    if (index < 0 || index >= kUserColorCount)
        return;
    setSel(m_selIndex, SavedColor);
    chosen();
    ColorDialogResult = m_userColors->color(index);
    ColorDialogResult = frmColor::pick(ColorDialogResult, window());
    if (ColorDialogResult < 0) {
        ColorDialogResult = kNoColor;
        return;
    }
    m_userColors->setColor(index, ColorDialogResult);
    if (!m_userColorsFile.isEmpty()) {
        std::array<Color, kUserColorCount> cells;
        for (int i = 0; i < kUserColorCount; ++i)
            cells[i] = m_userColors->color(i);
        // The colours stay for this run; the owner tells the user they won't last.
        QString reason;
        if (!WriteUserColors(m_userColorsFile, cells, &reason))
            Q_EMIT userColorsNotSaved(m_userColorsFile, reason);
    }
    ColorDialogResult = kNoColor;
}

void ColorStrip::PicUserColors_Drop(int index, Color c)
{
    // Not written to the file: a dropped colour lasts to the end of the run unless a
    // later edit of a cell writes them all.
    m_userColors->setColor(index, c);
}

void ColorStrip::LoadUserColors()
{
    std::array<Color, kUserColorCount> cells;
    for (int i = 0; i < kUserColorCount; ++i)
        cells[i] = m_userColors->color(i);
    ReadUserColors(m_userColorsFile, cells);
    for (int i = 0; i < kUserColorCount; ++i)
        m_userColors->setColor(i, cells[i]);
}

void ColorStrip::openModeless()
{
    if (m_dialog) {
        m_dialog->raise();
        m_dialog->activateWindow();
        return;
    }
    const int target = ColorDialogTarget == 0 ? 0 : 1;
    m_dialog = new frmColor(window());
    m_dialog->setAttribute(Qt::WA_DeleteOnClose);
    m_dialog->setColor(SelColor(target));
    // The main window takes no input while the dialog is open, yet the dialog is
    // modeless to the code: its answer arrives through finished().
    m_dialog->setWindowModality(Qt::WindowModal);
    connect(m_dialog, &QDialog::finished, this, &ColorStrip::dialogFinished);
    m_dialog->show();
}

void ColorStrip::dialogFinished(int result)
{
    const int target = ColorDialogTarget == 0 ? 0 : 1;
    ColorDialogResult = result == QDialog::Accepted && m_dialog ? m_dialog->color() : kNoColor;
    m_dialog = nullptr;
    if (ColorDialogResult >= 0) {
        setSel(target, ColorDialogResult);
        chosen();
    }
    ColorDialogResult = kNoColor;
}

void ColorStrip::lblcolorvalue_DblClick(QLabel* label)
{
    QGuiApplication::clipboard()->setText(label->text());
}

void ColorStrip::lblcolor_Change()
{
    if (m_inChange)
        return;
    m_inChange = true;
    for (QLineEdit* box : m_box) {
        const QString text = ClampedBoxText(box->text());
        if (text != box->text())
            box->setText(text);
    }
    m_inChange = false;
    showReadouts();
}

void ColorStrip::lblcolor_KeyUp()
{
    bool emptied = false;
    for (QLineEdit* box : m_box) {
        if (box->text().isEmpty()) {
            box->setText(QStringLiteral("0"));
            emptied = true;
        }
    }
    if (emptied)
        return;
    const std::array<int, 3> v = {BoxValue(m_box[0]->text()), BoxValue(m_box[1]->text()),
                                  BoxValue(m_box[2]->text())};
    placeThumbs(v);
    setSel(m_selIndex, RGB(v[0], v[1], v[2]));
    showSwatches();
    showReadouts();
    DrawSelectedGradient();
    Q_EMIT colorsChanged();
}

bool ColorStrip::eventFilter(QObject* watched, QEvent* event)
{
    if ((watched == m_value || watched == m_html) && event->type() == QEvent::MouseButtonDblClick) {
        lblcolorvalue_DblClick(static_cast<QLabel*>(watched));
        return true;
    }
    for (int k = 0; k < 3; ++k) {
        if (watched != m_box[k] || (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease))
            continue;
        auto* key = static_cast<QKeyEvent*>(event); // only key events may be read as one
        if (event->type() == QEvent::KeyPress &&
            (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter)) {
            if (k < 2) {
                m_box[k + 1]->setFocus();
                m_box[k + 1]->selectAll();
            }
            return true;
        }
        if (event->type() == QEvent::KeyRelease && !key->isAutoRepeat())
            lblcolor_KeyUp();
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace velunta
