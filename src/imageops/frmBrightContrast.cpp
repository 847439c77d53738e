#include "imageops/frmBrightContrast.h"

#include "core/Surface.h"
#include "imageops/ImagePlane.h"
#include "widgets/ButtonLooks.h"
#include "widgets/Icons.h"
#include "widgets/zolButton.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>
#include <QVBoxLayout>

#include <algorithm>
#include <cstring>

namespace velunta {

namespace {

constexpr QSize kViewport(320, 240);
// The progress shows and the result is repainted at most this often while a preview runs.
constexpr int kProgressMs = 40;

zolButton* commandButton(QWidget* parent, const QString& caption, const QString& name)
{
    auto* b = new zolButton(parent);
    b->setObjectName(name);
    b->setCaption(caption);
    DialogLook(b);
    b->setMinimumSize(86, 26);
    return b;
}

// Copies the pixels of `area` from one picture to another of the same size.
void copyArea(const QImage& from, QImage& to, const QRect& area)
{
    const QRect box = area & from.rect() & to.rect();
    if (box.isEmpty())
        return;
    const size_t bytes = size_t(box.width()) * 4;
    for (int y = box.top(); y <= box.bottom(); ++y)
        std::memcpy(to.scanLine(y) + box.left() * 4, from.constScanLine(y) + box.left() * 4, bytes);
}

QLabel* modeSymbol(QWidget* parent, const QString& name, const QString& icon, qreal ratio)
{
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setPixmap(IconPixmap(icon, 28, ratio));
    return label;
}

} // namespace

frmBrightContrast::frmBrightContrast(const QImage& picture, bool brightnessMode, QWidget* parent)
    : QDialog(parent), m_brightness(brightnessMode), m_picture2(picture), m_picture1(picture.copy())
{
    if (m_picture1.isNull() && !picture.isNull())
        throw AllocationError("not enough memory for the working copy of the picture");
    setObjectName(QStringLiteral("frmBrightContrast"));
    auto* layout = new QVBoxLayout(this);

    auto* planes = new QHBoxLayout;
    auto plane = [&](const QString& caption, const QString& name, const QImage* shows) {
        auto* column = new QVBoxLayout;
        column->addWidget(new QLabel(caption, this));
        auto* p = new ImagePlane(this);
        p->setObjectName(name);
        p->setFixedSize(kViewport);
        p->setPicture(shows);
        p->setToolTip(tr("Drag the picture to see another part of it"));
        column->addWidget(p);
        planes->addLayout(column);
        return p;
    };
    m_left = plane(tr("Original"), QStringLiteral("picLeft"), &m_picture2);
    m_right = plane(tr("Result"), QStringLiteral("picRight"), &m_picture1);
    layout->addLayout(planes);

    auto* sliderRow = new QHBoxLayout;
    m_image1 = modeSymbol(this, QStringLiteral("Image1"), QStringLiteral("brightness"), devicePixelRatioF());
    m_image2 = modeSymbol(this, QStringLiteral("Image2"), QStringLiteral("contrast"), devicePixelRatioF());
    sliderRow->addWidget(m_image1);
    sliderRow->addWidget(m_image2);
    m_slider = new QSlider(Qt::Horizontal, this);
    m_slider->setObjectName(QStringLiteral("HScroll1"));
    m_slider->setRange(kAdjustMinimum, kAdjustMaximum);
    m_slider->setValue(0);
    m_slider->setSingleStep(1);
    m_slider->setPageStep(16);
    m_slider->setTickPosition(QSlider::TicksBelow);
    m_slider->setTickInterval(32);
    sliderRow->addWidget(m_slider, 1);
    m_value = new QLabel(QStringLiteral("0"), this);
    m_value->setObjectName(QStringLiteral("lblVal"));
    m_value->setMinimumWidth(36);
    m_value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    sliderRow->addWidget(m_value);
    layout->addLayout(sliderRow);

    auto* checks = new QHBoxLayout;
    m_lock = new QCheckBox(tr("Lock both image planes when moving"), this);
    m_lock->setObjectName(QStringLiteral("Check1"));
    m_lock->setChecked(true);
    m_visibleOnly = new QCheckBox(tr("Update visible area only"), this);
    m_visibleOnly->setObjectName(QStringLiteral("Check2"));
    checks->addWidget(m_lock);
    checks->addSpacing(16);
    checks->addWidget(m_visibleOnly);
    checks->addStretch(1);
    layout->addLayout(checks);

    auto* progressRow = new QHBoxLayout;
    m_progressB = new QLabel(tr("Processing..."), this);
    m_progressB->setObjectName(QStringLiteral("lblProgressB"));
    m_progressTrack = new QWidget(this);
    m_progressTrack->setFixedHeight(10);
    m_progressTrack->setStyleSheet(QStringLiteral("background: white; border: 1px solid rgb(116,156,218);"));
    m_progress = new QWidget(m_progressTrack);
    m_progress->setObjectName(QStringLiteral("lblProgress"));
    m_progress->setStyleSheet(QStringLiteral("background: rgb(70,130,220); border: none;"));
    m_progress->setGeometry(0, 0, 0, 10);
    for (QWidget* w : {static_cast<QWidget*>(m_progressB), m_progressTrack}) {
        QSizePolicy keep = w->sizePolicy();
        keep.setRetainSizeWhenHidden(true);
        w->setSizePolicy(keep);
        w->hide();
    }
    progressRow->addWidget(m_progressB);
    progressRow->addWidget(m_progressTrack, 1);
    layout->addLayout(progressRow);

    auto* buttons = new QHBoxLayout;
    m_previewContrast = commandButton(this, tr("Preview"), QStringLiteral("Command1"));
    m_previewBrightness = commandButton(this, tr("Preview"), QStringLiteral("Command2"));
    m_reset = commandButton(this, tr("Reset"), QStringLiteral("Command4"));
    m_reset->setToolTip(tr("Reset back to original image"));
    buttons->addWidget(m_previewContrast);
    buttons->addWidget(m_previewBrightness);
    buttons->addWidget(m_reset);
    buttons->addStretch(1);
    auto* box = new QDialogButtonBox(this);
    m_ok = AddDialogButton(box, tr("OK"), QDialogButtonBox::AcceptRole, QStringLiteral("cmdOk"));
    m_cancel = AddDialogButton(box, tr("Cancel"), QDialogButtonBox::RejectRole, QStringLiteral("Command3"));
    buttons->addWidget(box);
    layout->addLayout(buttons);

    connect(m_slider, &QSlider::valueChanged, this, &frmBrightContrast::HScroll1_Change);
    connect(m_previewContrast, &zolButton::Click, this, &frmBrightContrast::Command1_Click);
    connect(m_previewBrightness, &zolButton::Click, this, &frmBrightContrast::Command2_Click);
    connect(m_reset, &zolButton::Click, this, &frmBrightContrast::Command4_Click);
    connect(box, &QDialogButtonBox::accepted, this, &frmBrightContrast::cmdOk_Click);
    connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_left, &ImagePlane::dragged, this, [this](int dx, int dy) { planeDragged(m_left, dx, dy); });
    connect(m_right, &ImagePlane::dragged, this, [this](int dx, int dy) { planeDragged(m_right, dx, dy); });

    // A picture larger than the view both ways opens at its middle.
    if (picture.width() > kViewport.width() && picture.height() > kViewport.height())
        for (ImagePlane* p : {m_left, m_right})
            p->Move(-picture.width() / 4, -picture.height() / 4);
    if (m_brightness) {
        setWindowTitle(tr("Adjust Brightness"));
        m_previewContrast->hide();
        m_image2->hide();
    } else {
        setWindowTitle(tr("Adjust Contrast"));
        m_previewBrightness->hide();
        m_image1->hide();
    }
    preview(false);
    m_visibleOnly->setChecked(false);
}

void frmBrightContrast::HScroll1_Change()
{
    m_value->setText(QString::number(m_slider->value()));
    m_previewContrast->setEnabled(true);
    m_previewBrightness->setEnabled(true);
    m_fullPreviewCurrent = false;
}

void frmBrightContrast::Command1_Click()
{
    preview(m_visibleOnly->isChecked());
}

void frmBrightContrast::Command2_Click()
{
    preview(m_visibleOnly->isChecked());
}

void frmBrightContrast::Command4_Click()
{
    copyArea(m_picture2, m_picture1, m_changed);
    m_changed = QRect();
    m_right->update();
}

void frmBrightContrast::cmdOk_Click()
{
    // The result is always complete: a partial preview, or a value no preview has shown
    // yet, is followed by the preview of the whole picture.
    if (m_visibleOnly->isChecked() || !m_fullPreviewCurrent) {
        m_visibleOnly->setChecked(false);
        preview(false);
    }
    accept();
}

void frmBrightContrast::preview(bool partial)
{
    zolButton* button = m_brightness ? m_previewBrightness : m_previewContrast;
    const bool hadFocus = button->hasFocus();
    button->setCaption(tr("Processing"));
    button->setEnabled(false);
    m_progress->resize(0, m_progress->height());
    m_progressB->show();
    m_progressTrack->show();
    // Paints only: no click may reach the dialog while its picture is half done.
    if (isVisible())
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    QApplication::setOverrideCursor(Qt::WaitCursor);

    const QRect area = partial ? m_right->visibleArea() : m_picture2.rect();
    const ChannelTable table =
        m_brightness ? BrightnessTable(m_slider->value()) : ContrastTable(m_slider->value());
    // Every preview starts again from Picture2, so repeated previews don't add up.
    restoreOutside(area);
    if (IsIdentity(table)) {
        copyArea(m_picture2, m_picture1, m_changed);
        m_changed = QRect();
    } else {
        m_sinceProgress.start();
        MapChannels(m_picture2, m_picture1, area, table, [this](double f) { return showProgress(f); });
        m_changed = area;
    }

    QApplication::restoreOverrideCursor();
    m_right->update();
    button->setCaption(tr("Preview"));
    button->setEnabled(true);
    // Disabled while it worked, the button gave the focus to its neighbour; it takes it back.
    if (hadFocus)
        button->setFocus();
    m_progressB->hide();
    m_progressTrack->hide();
    m_previewPartial = partial;
    m_fullPreviewCurrent = !partial;
}

void frmBrightContrast::restoreOutside(const QRect& keep)
{
    const QRect r = m_changed;
    if (r.isEmpty() || keep.contains(r))
        return;
    auto span = [this](int x0, int x1, int y) {
        if (x0 <= x1)
            copyArea(m_picture2, m_picture1, QRect(x0, y, x1 - x0 + 1, 1));
    };
    for (int y = r.top(); y <= r.bottom(); ++y) {
        if (keep.isEmpty() || y < keep.top() || y > keep.bottom()) {
            span(r.left(), r.right(), y);
        } else {
            span(r.left(), std::min(r.right(), keep.left() - 1), y);
            span(std::max(r.left(), keep.right() + 1), r.right(), y);
        }
    }
    m_changed = r & keep;
}

bool frmBrightContrast::showProgress(double fraction)
{
    if (m_sinceProgress.elapsed() < kProgressMs)
        return false;
    m_progress->resize(int(m_progressTrack->width() * fraction), m_progress->height());
    m_right->update();
    if (isVisible())
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    m_sinceProgress.restart();
    return false;
}

void frmBrightContrast::planeDragged(ImagePlane* plane, int dx, int dy)
{
    if (!m_lock->isChecked())
        return;
    ImagePlane* other = plane == m_left ? m_right : m_left;
    other->Move(other->Left() + dx, other->Top() + dy);
}

} // namespace velunta
