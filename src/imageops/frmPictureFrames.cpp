#include "imageops/frmPictureFrames.h"

#include "core/Numbers.h"
#include "imageops/DialogParts.h"
#include "widgets/Icons.h"
#include "widgets/zolButton.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include <algorithm>

namespace velunta {

namespace {

const QSize kPreviewBox(320, 240);

// A number list's value as the frame takes it: a whole number of at least 0.
int listValue(const QComboBox* list)
{
    return std::max(0, int(Val(list->currentText())));
}

} // namespace

frmPictureFrames::frmPictureFrames(FrameSettings& settings, const QImage& picture, QWidget* parent)
    : QDialog(parent), m_settings(settings), m_work(settings), m_picture2(picture, kPreviewBox)
{
    setObjectName(QStringLiteral("frmPictureFrames"));
    setWindowTitle(tr("Create Picture Frames"));
    auto* layout = new QHBoxLayout(this);
    auto* left = new QVBoxLayout;

    // optFrame(0): the gradient frame.
    auto* gradientBox = new QGroupBox(this);
    auto* gradient = new QGridLayout(gradientBox);
    m_optFrame[0] = new QRadioButton(tr("Use Frame Dissolve Colors"), gradientBox);
    m_optFrame[0]->setObjectName(QStringLiteral("optFrame(0)"));
    gradient->addWidget(m_optFrame[0], 0, 0, 1, 4);
    gradient->addWidget(new QLabel(tr("Thickness:"), gradientBox), 1, 0);
    m_cmbThickness =
        NumberList(gradientBox, QStringLiteral("cmbThickness"), tr("Thickness of the frame in pixels"),
                   {2, 4, 6, 8, 10, 12, 15, 20, 25, 30, 40, 50, 60, 80, 100});
    gradient->addWidget(m_cmbThickness, 1, 1);
    gradient->addWidget(new QLabel(tr("Colors:"), gradientBox), 2, 0);
    m_colors[0] = new ColorSampleLabel(QStringLiteral("Label2(0)"), tr("Picture Frame Gradient start color"),
                                       gradientBox);
    m_colors[1] = new ColorSampleLabel(QStringLiteral("Label2(1)"), tr("Picture Frame Gradient end color"),
                                       gradientBox);
    auto* colors = new QHBoxLayout;
    colors->addWidget(m_colors[0]);
    colors->addWidget(new QLabel(QStringLiteral("\u2192"), gradientBox));
    colors->addWidget(m_colors[1]);
    colors->addStretch(1);
    gradient->addLayout(colors, 2, 1, 1, 3);
    auto* styles = new QWidget(gradientBox);
    auto* styleRow = new QHBoxLayout(styles);
    styleRow->setContentsMargins(0, 0, 0, 0);
    const QString styleTips[kFrameLayoutCount] = {tr("Rings all around"), tr("Raised: light top and left"),
                                                  tr("Bands at the top and the bottom"),
                                                  tr("Bands at the left and the right")};
    for (int i = 0; i < kFrameLayoutCount; ++i) {
        m_styles[i] = OptionKey(styles, QStringLiteral("Line%1").arg(i + 1), QString(), styleTips[i]);
        m_styles[i]->setPicture(NamedIcon(QStringLiteral("frame-layout-%1").arg(i, 2, 10, QLatin1Char('0'))));
        m_styles[i]->setPictureSize(2);
        m_styles[i]->setFixedSize(46, 38);
        styleRow->addWidget(m_styles[i]);
        connect(m_styles[i], &zolButton::Click, this, [this] {
            m_optFrame[0]->setChecked(true);
            readControls();
        });
    }
    styleRow->addStretch(1);
    gradient->addWidget(new QLabel(tr("Style:"), gradientBox), 3, 0);
    gradient->addWidget(styles, 3, 1, 1, 3);
    left->addWidget(gradientBox);

    // optFrame(1): the transparency frame.
    auto* transBox = new QGroupBox(this);
    auto* trans = new QGridLayout(transBox);
    m_optFrame[1] = new QRadioButton(tr("Use Transparency Frame"), transBox);
    m_optFrame[1]->setObjectName(QStringLiteral("optFrame(1)"));
    trans->addWidget(m_optFrame[1], 0, 0, 1, 3);
    trans->addWidget(new QLabel(tr("Thickness Border"), transBox), 1, 0);
    m_cmbTransThick =
        NumberList(transBox, QStringLiteral("cmbTransThick"), tr("Thickness of the band in pixels"),
                   {5, 10, 15, 20, 25, 27, 28, 30, 40, 50, 60, 80, 100});
    trans->addWidget(m_cmbTransThick, 1, 1);
    trans->addWidget(new QLabel(tr("Transparency Level"), transBox), 2, 0);
    m_cmbTransLevel =
        NumberList(transBox, QStringLiteral("cmbTransLevel"), tr("How much lighter the band gets"),
                   {10, 20, 30, 40, 50, 60, 80, 100, 128, 160, 200}, 3);
    trans->addWidget(m_cmbTransLevel, 2, 1);
    m_chkTransFade = new QCheckBox(tr("Transparency Fade"), transBox);
    m_chkTransFade->setObjectName(QStringLiteral("chkTransFade"));
    m_chkTransFade->setToolTip(tr("Fade transparency level (disable for fixed level)"));
    trans->addWidget(m_chkTransFade, 3, 0);
    auto* fades = new QWidget(transBox);
    auto* fadeRow = new QHBoxLayout(fades);
    fadeRow->setContentsMargins(0, 0, 0, 0);
    m_optFade[0] = new QRadioButton(tr("Lighten fade"), fades);
    m_optFade[0]->setObjectName(QStringLiteral("optFade(0)"));
    m_optFade[1] = new QRadioButton(tr("Darken fade"), fades);
    m_optFade[1]->setObjectName(QStringLiteral("optFade(1)"));
    fadeRow->addWidget(m_optFade[0]);
    fadeRow->addWidget(m_optFade[1]);
    trans->addWidget(fades, 3, 1, 1, 2);
    left->addWidget(transBox);
    left->addStretch(1);
    // The two frame choices sit in boxes of their own, so only a group keeps one of them.
    auto* frameKinds = new QButtonGroup(this);
    for (QRadioButton* option : m_optFrame)
        frameKinds->addButton(option);
    layout->addLayout(left);

    auto* right = new QVBoxLayout;
    m_image1 = PictureBox(this, QStringLiteral("Image1"), kPreviewBox);
    right->addWidget(m_image1);
    auto* borders = CommandKey(this, QStringLiteral("Command3"), tr("Borders..."),
                               tr("Put a border of little pictures around the picture instead"));
    connect(borders, &zolButton::Click, this, &frmPictureFrames::Command3_Click);
    right->addWidget(borders, 0, Qt::AlignLeft);
    right->addStretch(1);
    auto* buttons = OkCancel(this);
    connect(buttons, &QDialogButtonBox::accepted, this, &frmPictureFrames::Command1_Click);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    right->addWidget(buttons);
    layout->addLayout(right);

    // The choices of the last OK.
    m_optFrame[m_work.transparency ? 1 : 0]->setChecked(true);
    m_cmbThickness->setEditText(QString::number(m_work.thickness));
    m_colors[0]->setColor(m_work.startColor);
    m_colors[1]->setColor(m_work.endColor);
    m_styles[std::clamp(m_work.style, 0, kFrameLayoutCount - 1)]->setValue(true);
    m_cmbTransThick->setEditText(QString::number(m_work.transThickness));
    m_cmbTransLevel->setEditText(QString::number(m_work.transLevel));
    m_chkTransFade->setChecked(m_work.fade);
    m_optFade[m_work.fadeKind == kFadeDarken ? 1 : 0]->setChecked(true);

    // Every control redraws the preview; the gradient's controls choose the gradient
    // frame, the transparency's the transparency frame.
    auto gradientChange = [this] {
        if (!m_loading)
            m_optFrame[0]->setChecked(true);
        readControls();
    };
    auto transChange = [this] {
        if (!m_loading)
            m_optFrame[1]->setChecked(true);
        readControls();
    };
    connect(m_cmbThickness, &QComboBox::editTextChanged, this, gradientChange);
    connect(m_colors[0], &ColorSampleLabel::changed, this, gradientChange);
    connect(m_colors[1], &ColorSampleLabel::changed, this, gradientChange);
    connect(m_cmbTransThick, &QComboBox::editTextChanged, this, transChange);
    connect(m_cmbTransLevel, &QComboBox::editTextChanged, this, transChange);
    connect(m_chkTransFade, &QCheckBox::toggled, this, transChange);
    connect(m_optFade[0], &QRadioButton::toggled, this, transChange);
    for (QRadioButton* option : m_optFrame)
        connect(option, &QRadioButton::toggled, this, [this] { readControls(); });
    m_loading = false;
    readControls();
}

void frmPictureFrames::readControls()
{
    if (m_loading)
        return;
    m_work.transparency = m_optFrame[1]->isChecked();
    m_work.thickness = listValue(m_cmbThickness);
    m_work.startColor = m_colors[0]->color();
    m_work.endColor = m_colors[1]->color();
    for (int i = 0; i < kFrameLayoutCount; ++i)
        if (m_styles[i]->Value())
            m_work.style = i;
    m_work.transThickness = listValue(m_cmbTransThick);
    m_work.transLevel = listValue(m_cmbTransLevel);
    m_work.fade = m_chkTransFade->isChecked();
    m_work.fadeKind = m_optFade[1]->isChecked() ? kFadeDarken : kFadeLighten;
    FramesUpdate();
}

void frmPictureFrames::FramesUpdate()
{
    QElapsedTimer timer;
    timer.start();
    m_preview = m_picture2.render(m_work);
    m_image1->setPixmap(QPixmap::fromImage(m_preview));
    m_lastUpdateMs = double(timer.nsecsElapsed()) / 1e6;
}

void frmPictureFrames::Command1_Click()
{
    m_settings = m_work;
    accept();
}

void frmPictureFrames::Command3_Click()
{
    m_wantsBorders = true;
    reject();
}

} // namespace velunta
