#include "files/frmSaveGifs.h"

#include "core/Numbers.h"
#include "widgets/ButtonLooks.h"
#include "widgets/Icons.h"
#include "widgets/zolButton.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QTimer>
#include <QVBoxLayout>

namespace velunta {

frmSaveGifs::frmSaveGifs(std::function<Color()> currentColour, QWidget* parent)
    : QDialog(parent), m_currentColour(std::move(currentColour))
{
    setObjectName(QStringLiteral("frmSaveGifs"));
    setWindowTitle(tr("GIF Export Options"));
    auto* layout = new QVBoxLayout(this);
    m_options[0] = new QCheckBox(tr("Interlaced"), this);
    m_options[1] = new QCheckBox(tr("Use transparency color:"), this);
    for (int i = 0; i < 2; ++i) {
        m_options[i]->setObjectName(QStringLiteral("ChkSaveOptions(%1)").arg(i));
        layout->addWidget(m_options[i]);
    }
    // Interlacing is offered and read, and the writer never interlaces.
    auto* row = new QHBoxLayout;
    const char* const names[3] = {"R", "G", "B"};
    for (int i = 0; i < 3; ++i) {
        row->addWidget(new QLabel(QString::fromLatin1(names[i]) + QLatin1Char(':'), this));
        m_rgb[i] = new QLineEdit(QStringLiteral("0"), this);
        m_rgb[i]->setObjectName(QStringLiteral("txtrgbgifcolor(%1)").arg(i));
        m_rgb[i]->setMaximumWidth(44);
        row->addWidget(m_rgb[i]);
        connect(m_rgb[i], &QLineEdit::textChanged, this, [this] { txtrgbgifcolor_Change(); });
    }
    m_sample = new QLabel(this);
    m_sample->setObjectName(QStringLiteral("Label1"));
    m_sample->setFixedSize(36, 22);
    m_sample->setToolTip(
        tr("Transparency color (double click to use Eyedropper tool to select transparent color)"));
    m_sample->installEventFilter(this);
    row->addWidget(m_sample);
    m_eyedropper = new zolButton(tr("Pick"), this);
    m_eyedropper->setObjectName(QStringLiteral("Command3"));
    DialogLook(m_eyedropper);
    m_eyedropper->setPicture(NamedIcon(QStringLiteral("eyedropper-small")));
    m_eyedropper->setToolTip(tr("Use Eyedropper tool to select transparent color"));
    connect(m_eyedropper, &zolButton::clicked, this, &frmSaveGifs::startEyedropper);
    row->addWidget(m_eyedropper);
    row->addStretch(1);
    layout->addLayout(row);

    auto* buttons = new QDialogButtonBox(this);
    zolButton* save =
        AddDialogButton(buttons, tr("Save"), QDialogButtonBox::AcceptRole, QStringLiteral("Command1"));
    zolButton* cancel =
        AddDialogButton(buttons, tr("Cancel"), QDialogButtonBox::RejectRole, QStringLiteral("Command2"));
    layout->addWidget(buttons);
    connect(save, &zolButton::clicked, this, &frmSaveGifs::Command1_Click);
    connect(cancel, &zolButton::clicked, this, &QDialog::close);

    m_timer = new QTimer(this);
    m_timer->setInterval(200);
    connect(m_timer, &QTimer::timeout, this, &frmSaveGifs::ColorsUpdate);
    connect(m_options[1], &QCheckBox::toggled, this, [this] { ChkSaveOptions_Click(); });
    ColorsUpdate();
    ChkSaveOptions_Click();
}

void frmSaveGifs::ColorsUpdate()
{
    const Color c = m_currentColour ? m_currentColour() : 0;
    m_rgb[0]->setText(QString::number(ColorRed(c)));
    m_rgb[1]->setText(QString::number(ColorGreen(c)));
    m_rgb[2]->setText(QString::number(ColorBlue(c)));
}

Color frmSaveGifs::chosenColour() const
{
    auto channel = [&](int i) { return std::clamp(int(Val(m_rgb[i]->text())), 0, 255); };
    return RGB(channel(0), channel(1), channel(2));
}

void frmSaveGifs::txtrgbgifcolor_Change()
{
    for (QLineEdit* box : m_rgb) {
        if (Val(box->text()) > 255) {
            const QSignalBlocker block(box);
            box->setText(QStringLiteral("255"));
        }
    }
    m_sample->setStyleSheet(QStringLiteral("QLabel { background: %1; border: 1px solid black; }")
                                .arg(ToQColor(chosenColour()).name()));
}

void frmSaveGifs::ChkSaveOptions_Click()
{
    const bool on = m_options[1]->isChecked();
    for (QLineEdit* box : m_rgb)
        box->setEnabled(on);
    m_sample->setEnabled(on);
    m_eyedropper->setEnabled(on);
    if (!on)
        m_timer->stop();
}

void frmSaveGifs::startEyedropper()
{
    Q_EMIT pickRequested();
    m_timer->start();
}

bool frmSaveGifs::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_sample && event->type() == QEvent::MouseButtonDblClick && m_sample->isEnabled()) {
        startEyedropper();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void frmSaveGifs::Command1_Click()
{
    const Color colour = m_options[1]->isChecked() ? chosenColour() : kNoColor;
    m_timer->stop();
    close();
    Q_EMIT saveRequested(colour);
}

} // namespace velunta
