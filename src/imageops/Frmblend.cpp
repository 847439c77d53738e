#include "imageops/Frmblend.h"

#include "core/Numbers.h"
#include "core/Prompt.h"
#include "files/DialogAPI.h"
#include "imageops/ChosenPicture.h"
#include "imageops/DialogParts.h"
#include "widgets/zolButton.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace velunta {

namespace {

const QSize kPictureBox(180, 135);

} // namespace

Frmblend::Frmblend(BlendState& state, const QImage& shown, bool directionVisible, Prompt& prompt,
                   FileDialogs& dialogs, QWidget* parent)
    : QDialog(parent), m_state(state), m_prompt(prompt), m_dialogs(dialogs)
{
    setObjectName(QStringLiteral("Frmblend"));
    setWindowTitle(tr("Blend"));
    auto* layout = new QHBoxLayout(this);

    // The picture that gets blended in, and its size.
    auto* left = new QVBoxLayout;
    m_imgtoblend = PictureBox(this, QStringLiteral("imgtoblend"), kPictureBox);
    m_imgtoblend->setToolTip(tr("The picture that is blended in"));
    left->addWidget(m_imgtoblend);
    m_label2 = new QLabel(this);
    m_label2->setObjectName(QStringLiteral("Label2"));
    left->addWidget(m_label2);
    m_cmdOpen =
        CommandKey(this, QStringLiteral("cmdOpen"), tr("open image to blend"), tr("Open image to blend"));
    connect(m_cmdOpen, &zolButton::Click, this, &Frmblend::cmdOpen_Click);
    left->addWidget(m_cmdOpen);
    left->addStretch(1);
    layout->addLayout(left);

    auto* right = new QVBoxLayout;
    auto* styleBox = new QGroupBox(tr("Style"), this);
    auto* styleGrid = new QGridLayout(styleBox);
    const QString captions[kBlendStyleCount] = {tr("Normal"), tr("Inverted"), tr("Red"),
                                                tr("Green"),  tr("Blue"),     tr("Scramble")};
    const QString tips[kBlendStyleCount] = {
        tr("Mix the two pictures"),          tr("Mix, then turn every colour into its opposite"),
        tr("Mix, then turn the red round"),  tr("Mix, then turn the green round"),
        tr("Mix, then turn the blue round"), tr("Mix, then stir the colours together")};
    for (int i = 0; i < kBlendStyleCount; ++i) {
        m_styles[i] = OptionKey(styleBox, QStringLiteral("Option1(%1)").arg(i), captions[i], tips[i]);
        m_styles[i]->setMinimumWidth(84);
        styleGrid->addWidget(m_styles[i], i / 3, i % 3);
    }
    right->addWidget(styleBox);

    auto* amount = new QHBoxLayout;
    amount->addWidget(new QLabel(tr("Blend:"), this));
    m_cmbBlend =
        NumberList(this, QStringLiteral("cmbBlend"), tr("How much of the picture is blended in, in percent"),
                   {10, 20, 25, 30, 40, 50, 60, 70, 75, 80, 90, 100}, 3);
    // Typed values may have decimals (the dialog shows 25.1 for the toolbar's blend).
    m_cmbBlend->setValidator(nullptr);
    connect(m_cmbBlend->lineEdit(), &QLineEdit::returnPressed, this, &Frmblend::Command1_Click);
    amount->addWidget(m_cmbBlend);
    amount->addWidget(new QLabel(QStringLiteral("%"), this));
    amount->addStretch(1);
    right->addLayout(amount);

    m_chkDirection = new QCheckBox(tr("Vertical"), this);
    m_chkDirection->setObjectName(QStringLiteral("chkDirection"));
    m_chkDirection->setToolTip(tr("Enable to use vertical blend instead of horizontal"));
    m_chkDirection->setVisible(directionVisible);
    right->addWidget(m_chkDirection);
    right->addStretch(1);

    auto* buttons = OkCancel(this);
    connect(buttons, &QDialogButtonBox::accepted, this, &Frmblend::Command1_Click);
    connect(buttons, &QDialogButtonBox::rejected, this, &Frmblend::Command2_Click);
    right->addWidget(buttons);
    layout->addLayout(right);

    m_styles[kBlendNormal]->setValue(true);
    const int ratio = m_state.BlendRatio;
    m_cmbBlend->setEditText(ratio >= 1 && ratio <= 255 ? BlendPercentText(ratio) : QStringLiteral("50"));
    m_state.BlendMode = kBlendCancelled;
    showPicture(shown);
    m_cmbBlend->setFocus();
    m_cmbBlend->lineEdit()->selectAll();
}

void Frmblend::showPicture(const QImage& picture)
{
    m_imgtoblend->setPixmap(Thumbnail(picture, kPictureBox));
    m_label2->setText(picture.isNull() ? QString()
                                       : tr("Blending image size: ") + QString::number(picture.width()) +
                                             QStringLiteral("x") + QString::number(picture.height()));
}

void Frmblend::setBlendPicture(const QImage& picture)
{
    if (picture.isNull())
        return;
    m_picTexture = picture;
    showPicture(picture);
    m_chkDirection->setEnabled(false);
}

void Frmblend::cmdOpen_Click()
{
    const QString name = ShowOpenDialog(m_dialogs, tr("Open image to blend..."));
    if (name.isEmpty()) {
        m_state.BlendMode = kBlendCancelled;
        return;
    }
    if (!QFileInfo::exists(name))
        return;
    setBlendPicture(LoadChosenPicture(name, m_prompt));
}

void Frmblend::Command1_Click()
{
    for (int i = 0; i < kBlendStyleCount; ++i)
        if (m_styles[i]->Value())
            m_state.BlendStyle = i;
    const double value = Val(m_cmbBlend->currentText());
    // A percentage outside 1..100 closes the dialog with nothing to do.
    if (value > 0 && value <= 100) {
        m_state.BlendRatio = BlendRatioOfPercent(value);
        m_state.BlendMode = m_chkDirection->isChecked() ? kBlendVertical : kBlendHorizontal;
        if (!m_picTexture.isNull())
            m_state.BlendMode = kBlendFromFile;
    }
    accept();
}

void Frmblend::Command2_Click()
{
    m_state.BlendMode = kBlendCancelled;
    reject();
}

} // namespace velunta
