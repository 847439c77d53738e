#include "imageops/frmBorders.h"

#include "core/Numbers.h"
#include "core/Prompt.h"
#include "core/Surface.h"
#include "files/read/PictureLoader.h"
#include "imageops/ChosenPicture.h"
#include "imageops/DialogParts.h"
#include "widgets/Icons.h"
#include "widgets/frmColor.h"
#include "widgets/zolButton.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QStandardPaths>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace velunta {

namespace {

const QSize kPreviewBox(300, 225);
constexpr int kBrushCell = 52;
constexpr int kImage2Box = 100;
const QStringList kPictureFilters = {
    QStringLiteral("*.bmp"),  QStringLiteral("*.dib"), QStringLiteral("*.jpg"),
    QStringLiteral("*.jpeg"), QStringLiteral("*.gif"), QStringLiteral("*.png"),
    QStringLiteral("*.ico"),  QStringLiteral("*.cur"), QStringLiteral("*.rle")};

enum FileRole { kPathRole = Qt::UserRole, kFolderRole };

QString startFolder()
{
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    return QDir(pictures).exists() ? pictures : QDir::homePath();
}

} // namespace

QVector<QImage> BuiltInBrushes(const QString& appFolder)
{
    QVector<QImage> brushes;
    const QDir folder(appFolder + QStringLiteral("borders"));
    for (const QString& name : folder.entryList({QStringLiteral("*.png")}, QDir::Files, QDir::Name)) {
        QImage art(folder.filePath(name));
        if (!art.isNull() && art.width() <= kMaxBrushSide && art.height() <= kMaxBrushSide)
            brushes.append(art.convertToFormat(QImage::Format_ARGB32_Premultiplied));
    }
    return brushes;
}

frmBorders::frmBorders(BorderSettings& settings, const QVector<QImage>& brushes, const QImage& picture,
                       Color drawingColor, Prompt& prompt, QWidget* parent)
    : QDialog(parent), m_settings(settings), m_work(settings), m_arts(brushes), m_drawingColor(drawingColor),
      m_prompt(prompt), m_pictureSize(picture.size())
{
    setObjectName(QStringLiteral("frmBorders"));
    setWindowTitle(tr("Borders"));
    // The preview draws on a small copy of the picture.
    if (!picture.isNull())
        m_picBuf =
            picture.scaled(kPreviewBox.boundedTo(picture.size()), Qt::KeepAspectRatio, Qt::FastTransformation)
                .convertToFormat(QImage::Format_RGB32);

    auto* layout = new QHBoxLayout(this);
    auto* left = new QVBoxLayout;

    // Picborderbrush: the program's own brushes.
    auto* brushBox = new QGroupBox(tr("Brushes"), this);
    auto* brushGrid = new QGridLayout(brushBox);
    brushGrid->setSpacing(4);
    for (int i = 0; i < m_arts.size(); ++i) {
        auto* cell = new QLabel(brushBox);
        cell->setObjectName(QStringLiteral("Picborderbrush(%1)").arg(i));
        cell->setFixedSize(kBrushCell, kBrushCell);
        cell->setAlignment(Qt::AlignCenter);
        cell->setToolTip(tr("double-click to change background color"));
        cell->setCursor(Qt::PointingHandCursor);
        cell->installEventFilter(this);
        brushGrid->addWidget(cell, i / 7, i % 7);
        m_brushLabels.append(cell);
    }
    left->addWidget(brushBox);

    // The file brush: a picture from any folder.
    auto* fileBox = new QGroupBox(tr("Brush from a picture file"), this);
    auto* fileLayout = new QVBoxLayout(fileBox);
    m_lblFolder = new QLabel(fileBox);
    m_lblFolder->setObjectName(QStringLiteral("Dir1"));
    m_lblFolder->setTextFormat(Qt::PlainText);
    fileLayout->addWidget(m_lblFolder);
    m_file1 = new QListWidget(fileBox);
    m_file1->setObjectName(QStringLiteral("File1"));
    m_file1->setToolTip(tr("Click a picture to use it as the brush; double-click a folder to open it"));
    m_file1->setMinimumHeight(120);
    connect(m_file1, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
        m_file1->setProperty("singleClick", true);
        fileActivated(item);
        m_file1->setProperty("singleClick", false);
    });
    connect(m_file1, &QListWidget::itemActivated, this, &frmBorders::fileActivated);
    fileLayout->addWidget(m_file1);
    left->addWidget(fileBox);
    layout->addLayout(left);

    auto* middle = new QVBoxLayout;
    // Image2: the active brush at its size.
    auto* activeBox = new QGroupBox(tr("Brush"), this);
    auto* activeGrid = new QGridLayout(activeBox);
    m_image2 = new QLabel(activeBox);
    m_image2->setObjectName(QStringLiteral("Image2"));
    m_image2->setFixedSize(kImage2Box + 4, kImage2Box + 4);
    m_image2->setAlignment(Qt::AlignCenter);
    m_image2->setFrameShape(QFrame::StyledPanel);
    activeGrid->addWidget(m_image2, 0, 0, 1, 4);
    m_lblSize = new QLabel(activeBox);
    m_lblSize->setObjectName(QStringLiteral("lblBrushSize"));
    m_lblSize->setToolTip(tr("The size of the brush's picture"));
    activeGrid->addWidget(m_lblSize, 1, 0, 1, 4);
    m_txtWidth = new QLineEdit(activeBox);
    m_txtWidth->setObjectName(QStringLiteral("TxtWidth"));
    m_txtHeight = new QLineEdit(activeBox);
    m_txtHeight->setObjectName(QStringLiteral("TxtHeight"));
    for (QLineEdit* e : {m_txtWidth, m_txtHeight}) {
        e->setMaximumWidth(48);
        e->setToolTip(tr("The brush's size in pixels, 1 to %1").arg(kMaxBrushSide));
        connect(e, &QLineEdit::returnPressed, this, &frmBorders::Command4_Click);
    }
    activeGrid->addWidget(new QLabel(tr("Width:"), activeBox), 2, 0);
    activeGrid->addWidget(m_txtWidth, 2, 1);
    activeGrid->addWidget(new QLabel(tr("Height:"), activeBox), 2, 2);
    activeGrid->addWidget(m_txtHeight, 2, 3);
    auto* apply = CommandKey(activeBox, QStringLiteral("Command4"), tr("Apply size and color"),
                             tr("Use the width and height above for the brush"));
    connect(apply, &zolButton::Click, this, &frmBorders::Command4_Click);
    activeGrid->addWidget(apply, 3, 0, 1, 4);
    m_picture1 = new QLabel(activeBox);
    m_picture1->setObjectName(QStringLiteral("Picture1"));
    m_picture1->setFixedSize(24, 24);
    m_picture1->setToolTip(tr("The background colour of the brushes"));
    activeGrid->addWidget(m_picture1, 4, 0);
    auto* background = CommandKey(activeBox, QStringLiteral("Command5"), tr("Background color..."),
                                  tr("Choose the colour behind the brushes' pictures"));
    connect(background, &zolButton::Click, this, &frmBorders::Command5_Click);
    activeGrid->addWidget(background, 4, 1, 1, 3);
    middle->addWidget(activeBox);

    // Optstyle: the layout of the tiles; optEffect: how they are put down.
    auto* styleBox = new QGroupBox(tr("Style"), this);
    auto* styleRow = new QHBoxLayout(styleBox);
    const QString styleTips[kBorderLayoutCount] = {
        tr("All around the picture"), tr("Along the top and the bottom"), tr("Along the left and the right"),
        tr("In the four corners")};
    for (int i = 0; i < kBorderLayoutCount; ++i) {
        m_styles[i] = OptionKey(styleBox, QStringLiteral("Optstyle(%1)").arg(i), QString(), styleTips[i]);
        m_styles[i]->setPicture(
            NamedIcon(QStringLiteral("border-layout-%1").arg(i, 2, 10, QLatin1Char('0'))));
        m_styles[i]->setPictureSize(2);
        m_styles[i]->setFixedSize(46, 38);
        connect(m_styles[i], &zolButton::Click, this, [this, i] {
            m_work.style = i;
            Command7_Click();
        });
        styleRow->addWidget(m_styles[i]);
    }
    middle->addWidget(styleBox);
    auto* effectBox = new QGroupBox(tr("Effect"), this);
    auto* effectGrid = new QGridLayout(effectBox);
    const QString effects[kBorderEffectCount] = {tr("Normal"), tr("Combine"), tr("Merge"), tr("Paint")};
    const QString effectTips[kBorderEffectCount] = {
        tr("The brush covers the picture"), tr("The picture shows through the brush's light parts"),
        tr("As Combine, tinted with the drawing colour"), tr("The brush and the picture in reverse colours")};
    for (int i = 0; i < kBorderEffectCount; ++i) {
        m_effects[i] =
            OptionKey(effectBox, QStringLiteral("optEffect(%1)").arg(i), effects[i], effectTips[i]);
        connect(m_effects[i], &zolButton::Click, this, [this, i] {
            m_work.effect = i;
            Command7_Click();
        });
        effectGrid->addWidget(m_effects[i], i / 2, i % 2);
    }
    middle->addWidget(effectBox);
    middle->addStretch(1);
    layout->addLayout(middle);

    auto* right = new QVBoxLayout;
    m_imgPreview = PictureBox(this, QStringLiteral("imgPreview"), kPreviewBox);
    right->addWidget(m_imgPreview);
    auto* preview =
        CommandKey(this, QStringLiteral("Command7"), tr("Preview"), tr("Show the border on the picture"));
    connect(preview, &zolButton::Click, this, &frmBorders::Command7_Click);
    right->addWidget(preview, 0, Qt::AlignLeft);
    right->addStretch(1);
    auto* buttons = OkCancel(this);
    connect(buttons, &QDialogButtonBox::accepted, this, &frmBorders::Command1_Click);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    right->addWidget(buttons);
    layout->addLayout(right);

    // The choices of the last time.
    m_work.style = std::clamp(m_work.style, 0, kBorderLayoutCount - 1);
    m_work.effect = std::clamp(m_work.effect, 0, kBorderEffectCount - 1);
    m_styles[m_work.style]->setValue(true);
    m_effects[m_work.effect]->setValue(true);
    if (m_work.brushIndex < 0 && !m_work.brushFile.isEmpty())
        m_fileArt = LoadPicture(m_work.brushFile);
    if (m_work.brushIndex < 0 && m_fileArt.isNull())
        m_work.brushIndex = 0;
    m_work.brushIndex = std::min(m_work.brushIndex, int(m_arts.size()) - 1);
    m_txtWidth->setText(QString::number(m_work.size.width()));
    m_txtHeight->setText(QString::number(m_work.size.height()));
    ShowFolder(m_work.brushFile.isEmpty() ? startFolder() : QFileInfo(m_work.brushFile).absolutePath());
    showBrushes();
}

const QImage& frmBorders::activeArt() const
{
    static const QImage none;
    if (m_work.brushIndex < 0)
        return m_fileArt;
    return m_work.brushIndex < m_arts.size() ? m_arts[m_work.brushIndex] : none;
}

QImage frmBorders::brush() const
{
    return BorderBrush(activeArt(), m_work.background, m_work.size);
}

void frmBorders::showBrushes()
{
    m_picture1->setStyleSheet(QStringLiteral("QLabel { background: %1; border: 1px solid rgb(60, 60, 60); }")
                                  .arg(ToQColor(m_work.background).name()));
    for (int i = 0; i < m_brushLabels.size(); ++i) {
        const QImage art = BorderBrush(m_arts[i], m_work.background, m_arts[i].size());
        m_brushLabels[i]->setPixmap(Thumbnail(art, QSize(kBrushCell - 6, kBrushCell - 6)));
        m_brushLabels[i]->setStyleSheet(
            i == m_work.brushIndex ? QStringLiteral("QLabel { border: 3px solid rgb(255, 170, 30); }")
                                   : QStringLiteral("QLabel { border: 1px solid rgb(150, 170, 200); }"));
    }
    showActiveBrush();
}

void frmBorders::showActiveBrush()
{
    const QImage shown = brush();
    m_image2->setPixmap(Thumbnail(shown, QSize(kImage2Box, kImage2Box)));
    const QImage& art = activeArt();
    m_lblSize->setText(art.isNull() ? QString()
                                    : QString::number(art.width()) + QStringLiteral(" x ") +
                                          QString::number(art.height()));
    Command7_Click();
}

void frmBorders::Picborderbrush_Click(int index)
{
    if (index < 0 || index >= m_arts.size())
        return;
    m_work.brushIndex = index;
    showBrushes();
}

bool frmBorders::LoadFileBrush(const QString& path)
{
    QImage art = LoadChosenPicture(path, m_prompt);
    if (art.isNull())
        return false;
    if (art.width() > kMaxBrushSide || art.height() > kMaxBrushSide) {
        m_prompt.MsgBox(tr("The picture is %1 x %2 pixels; a brush can be at most %3 x %3 pixels, so only "
                           "its top left part is used.")
                            .arg(art.width())
                            .arg(art.height())
                            .arg(kMaxBrushSide),
                        vbExclamation, tr("Image to big"));
        art = art.copy(0, 0, std::min(art.width(), kMaxBrushSide), std::min(art.height(), kMaxBrushSide));
    }
    m_fileArt = art;
    m_work.brushIndex = -1;
    m_work.brushFile = path;
    m_work.size = art.size();
    m_txtWidth->setText(QString::number(art.width()));
    m_txtHeight->setText(QString::number(art.height()));
    showBrushes();
    return true;
}

void frmBorders::ShowFolder(const QString& folder)
{
    QDir dir(folder);
    if (!dir.exists())
        return;
    m_folder = dir.absolutePath();
    m_lblFolder->setText(QDir::toNativeSeparators(m_folder));
    m_file1->clear();
    auto add = [this](const QString& text, const QString& path, bool isFolder) {
        auto* item = new QListWidgetItem(text, m_file1);
        item->setData(kPathRole, path);
        item->setData(kFolderRole, isFolder);
        if (isFolder)
            item->setIcon(style()->standardIcon(QStyle::SP_DirIcon));
    };
    if (dir.cdUp())
        add(QStringLiteral(".."), dir.absolutePath(), true);
    dir.setPath(m_folder);
    for (const QFileInfo& sub :
         dir.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase))
        add(sub.fileName(), sub.absoluteFilePath(), true);
    for (const QFileInfo& file :
         dir.entryInfoList(kPictureFilters, QDir::Files, QDir::Name | QDir::IgnoreCase))
        add(file.fileName(), file.absoluteFilePath(), false);
}

void frmBorders::fileActivated(QListWidgetItem* item)
{
    if (!item)
        return;
    const QString path = item->data(kPathRole).toString();
    if (item->data(kFolderRole).toBool()) {
        // A folder opens on a double click or Enter, so a stray click keeps the list.
        if (!m_file1->property("singleClick").toBool())
            ShowFolder(path);
        return;
    }
    if (m_work.brushIndex < 0 && m_work.brushFile == path)
        return;
    LoadFileBrush(path);
}

void frmBorders::Command4_Click()
{
    const double w = Val(m_txtWidth->text()), h = Val(m_txtHeight->text());
    bool okW = false, okH = false;
    m_txtWidth->text().trimmed().toDouble(&okW);
    m_txtHeight->text().trimmed().toDouble(&okH);
    if (!okW || !okH || w < 1 || h < 1)
        return;
    m_work.size = QSize(std::min(int(w), kMaxBrushSide), std::min(int(h), kMaxBrushSide));
    m_txtWidth->setText(QString::number(m_work.size.width()));
    m_txtHeight->setText(QString::number(m_work.size.height()));
    showActiveBrush();
}

void frmBorders::Command5_Click()
{
    const Color c = frmColor::pick(m_work.background, this);
    if (c >= 0)
        SetBackground(c);
}

void frmBorders::SetBackground(Color c)
{
    m_work.background = c;
    showBrushes();
}

void frmBorders::Command7_Click()
{
    if (m_picBuf.isNull() || m_pictureSize.isEmpty())
        return;
    // The brush shrinks with the copy, so the preview shows what the picture will get.
    const double f = double(m_picBuf.width()) / m_pictureSize.width();
    const QSize small(std::max(1, int(std::lround(m_work.size.width() * f))),
                      std::max(1, int(std::lround(m_work.size.height() * f))));
    Surface picBuf;
    picBuf.setImage(m_picBuf);
    Surface texture;
    texture.setImage(BorderBrush(activeArt(), m_work.background, small));
    DrawBorder(picBuf, texture, m_work.style, m_work.effect, m_drawingColor);
    m_imgPreview->setPixmap(QPixmap::fromImage(picBuf.Image()));
}

void frmBorders::Command1_Click()
{
    if (activeArt().isNull())
        return;
    m_settings = m_work;
    m_apply = true;
    accept();
}

bool frmBorders::eventFilter(QObject* watched, QEvent* event)
{
    const int index = m_brushLabels.indexOf(qobject_cast<QLabel*>(watched));
    if (index >= 0) {
        if (event->type() == QEvent::MouseButtonPress &&
            static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
            Picborderbrush_Click(index);
            return true;
        }
        if (event->type() == QEvent::MouseButtonDblClick) {
            Command5_Click();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace velunta
