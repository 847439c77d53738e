#include "imageops/frmSize.h"

#include "core/Numbers.h"
#include "widgets/ButtonLooks.h"
#include "widgets/Icons.h"
#include "widgets/zolButton.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include <cmath>

namespace velunta {

namespace {

const int kSizes[5][2] = {{320, 240}, {640, 480}, {800, 600}, {1024, 768}, {1280, 960}};

// Long enough for any size a picture can have, short enough that the value stays exact.
constexpr int kLongestValue = 12;

QString digitsOnly(const QString& text)
{
    QString digits;
    for (const QChar c : text)
        if (c >= u'0' && c <= u'9')
            digits += c;
    return digits;
}

// The other side of a kept proportion, as a whole number.
QString proportional(double value, double ratio)
{
    const double v = std::nearbyint(value * ratio);
    return QString::number(qint64(std::min(v, 999999999.0)));
}

} // namespace

frmSize::frmSize(int scaleWidth, int scaleHeight, QWidget* parent)
    : QDialog(parent), m_scaleWidth(std::max(1, scaleWidth)), m_scaleHeight(std::max(1, scaleHeight))
{
    setObjectName(QStringLiteral("frmSize"));
    setWindowTitle(tr("Image Size"));
    auto* layout = new QVBoxLayout(this);

    auto* sizeBox = new QGroupBox(tr("New size"), this);
    auto* grid = new QGridLayout(sizeBox);
    m_width = new QLineEdit(sizeBox);
    m_width->setObjectName(QStringLiteral("TxtWidth"));
    m_height = new QLineEdit(sizeBox);
    m_height->setObjectName(QStringLiteral("TxtHeight"));
    int row = 0;
    for (QLineEdit* e : {m_width, m_height}) {
        e->setMaxLength(kLongestValue);
        e->setMaximumWidth(90);
        grid->addWidget(new QLabel(row == 0 ? tr("Width:") : tr("Height:"), sizeBox), row, 0);
        grid->addWidget(e, row, 1);
        grid->addWidget(new QLabel(tr("pixels"), sizeBox), row, 2);
        ++row;
    }
    m_symbol = new QLabel(sizeBox);
    m_symbol->setObjectName(QStringLiteral("Constrain"));
    m_symbol->setPixmap(IconPixmap(QStringLiteral("constrain"), QSize(20, 44), devicePixelRatioF()));
    m_symbol->setToolTip(tr("Width and height keep their proportion"));
    grid->addWidget(m_symbol, 0, 3, 2, 1);
    grid->setColumnStretch(4, 1);
    m_constrain = new QCheckBox(tr("Constrain Proportions"), sizeBox);
    m_constrain->setObjectName(QStringLiteral("Check1"));
    grid->addWidget(m_constrain, 2, 0, 1, 5);
    auto* steps = new QHBoxLayout;
    m_double = new zolButton(sizeBox);
    m_double->setObjectName(QStringLiteral("Command3"));
    m_double->setCaption(tr("&Double"));
    m_half = new zolButton(sizeBox);
    m_half->setObjectName(QStringLiteral("Command2"));
    m_half->setCaption(tr("&Half"));
    for (zolButton* b : {m_double, m_half}) {
        DialogLook(b);
        b->setMinimumSize(80, 26);
        steps->addWidget(b);
    }
    steps->addStretch(1);
    grid->addLayout(steps, 3, 0, 1, 5);
    layout->addWidget(sizeBox);

    auto* offered = new QGroupBox(tr("Sizes"), this);
    auto* offeredGrid = new QGridLayout(offered);
    for (int i = 0; i < 5; ++i) {
        m_sizes[i] = new QRadioButton(QStringLiteral("%1 x %2").arg(kSizes[i][0]).arg(kSizes[i][1]), offered);
        m_sizes[i]->setObjectName(QStringLiteral("OptSizes(%1)").arg(i));
        m_sizes[i]->setAutoExclusive(false);
        offeredGrid->addWidget(m_sizes[i], i % 3, i / 3);
        connect(m_sizes[i], &QRadioButton::clicked, this, [this, i] { chooseSize(i); });
    }
    layout->addWidget(offered);

    auto* buttons = new QDialogButtonBox(this);
    AddDialogButton(buttons, tr("OK"), QDialogButtonBox::AcceptRole, QStringLiteral("Command1(1)"));
    AddDialogButton(buttons, tr("Cancel"), QDialogButtonBox::RejectRole, QStringLiteral("Command1(0)"));
    connect(buttons, &QDialogButtonBox::accepted, this, &frmSize::Command1_Click);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);

    m_width->setText(QString::number(scaleWidth));
    m_height->setText(QString::number(scaleHeight));
    m_constrain->setChecked(true);
    connect(m_width, &QLineEdit::textEdited, this, &frmSize::TxtWidth_Change);
    connect(m_height, &QLineEdit::textEdited, this, &frmSize::TxtHeight_Change);
    connect(m_constrain, &QCheckBox::toggled, this, &frmSize::Check1_Click);
    connect(m_double, &zolButton::Click, this, [this] { scale(true); });
    connect(m_half, &zolButton::Click, this, [this] { scale(false); });
    m_width->setFocus();
    m_width->selectAll();
}

void frmSize::TxtWidth_Change()
{
    fieldEdited(m_width, m_height, m_scaleHeight / m_scaleWidth);
}

void frmSize::TxtHeight_Change()
{
    fieldEdited(m_height, m_width, m_scaleWidth / m_scaleHeight);
}

void frmSize::fieldEdited(QLineEdit* field, QLineEdit* other, double ratio)
{
    // Anything but digits goes at once, typed or pasted; the cursor stays after what
    // was kept.
    const QString digits = digitsOnly(field->text());
    if (digits != field->text()) {
        const int cursor = digitsOnly(field->text().left(field->cursorPosition())).size();
        field->setText(digits);
        field->setCursorPosition(cursor);
    }
    clearSizes();
    if (m_constrain->isChecked())
        other->setText(proportional(Val(digits), ratio));
}

void frmSize::Check1_Click()
{
    m_symbol->setVisible(m_constrain->isChecked());
    if (m_constrain->isChecked() && !m_width->text().isEmpty())
        m_height->setText(proportional(Val(m_width->text()), m_scaleHeight / m_scaleWidth));
}

void frmSize::scale(bool twice)
{
    m_constrain->setChecked(false);
    const qint64 w = qint64(Val(m_width->text()));
    const qint64 h = qint64(Val(m_height->text()));
    if (w <= 0 || h <= 0)
        return;
    // Half is an integer division: half of 5 is 2.
    m_width->setText(QString::number(twice ? w + w : w / 2));
    m_height->setText(QString::number(twice ? h + h : h / 2));
}

void frmSize::chooseSize(int index)
{
    m_constrain->setChecked(false);
    for (int i = 0; i < 5; ++i)
        m_sizes[i]->setChecked(i == index);
    m_width->setText(QString::number(kSizes[index][0]));
    m_height->setText(QString::number(kSizes[index][1]));
}

void frmSize::clearSizes()
{
    for (QRadioButton* r : m_sizes)
        r->setChecked(false);
}

void frmSize::Command1_Click()
{
    const double w = Val(m_width->text());
    const double h = Val(m_height->text());
    if (w < 1 || h < 1) {
        reject();
        return;
    }
    m_chosenWidth = qint64(w);
    m_chosenHeight = qint64(h);
    accept();
}

} // namespace velunta
