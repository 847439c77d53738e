#include "imageops/frmNew.h"

#include "core/Numbers.h"
#include "core/Prompt.h"
#include "widgets/ButtonLooks.h"
#include "widgets/ColorMath.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QRadioButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace velunta {

namespace {

const int kSizes[7][2] = {{320, 240},  {640, 480},   {800, 600}, {1024, 768},
                          {1280, 960}, {1600, 1200}, {512, 384}};

} // namespace

frmNew::frmNew(int lastWidth, int lastHeight, Prompt& prompt, QWidget* parent, int defaultWidth,
               int defaultHeight)
    : QDialog(parent), m_prompt(prompt)
{
    setObjectName(QStringLiteral("frmNew"));
    setWindowTitle(tr("New Image"));
    auto* layout = new QVBoxLayout(this);

    auto* form = new QFormLayout;
    m_name = new QLineEdit(QStringLiteral("Untitled"), this);
    m_name->setObjectName(QStringLiteral("txtName"));
    form->addRow(tr("Name:"), m_name);
    layout->addLayout(form);

    auto* sizeBox = new QGroupBox(tr("Size"), this);
    auto* sizeGrid = new QGridLayout(sizeBox);
    for (int i = 0; i < 7; ++i) {
        m_sizes[i] = new QRadioButton(QStringLiteral("%1 x %2").arg(kSizes[i][0]).arg(kSizes[i][1]), sizeBox);
        m_sizes[i]->setObjectName(QStringLiteral("OptSizes(%1)").arg(i));
        m_sizes[i]->setAutoExclusive(false);
        sizeGrid->addWidget(m_sizes[i], i % 4, i / 4);
        connect(m_sizes[i], &QRadioButton::clicked, this, [this, i] { chooseSize(i); });
    }
    auto* fields = new QHBoxLayout;
    m_width = new QLineEdit(sizeBox);
    m_width->setObjectName(QStringLiteral("TxtWidth"));
    m_height = new QLineEdit(sizeBox);
    m_height->setObjectName(QStringLiteral("TxtHeight"));
    for (QLineEdit* e : {m_width, m_height}) {
        e->setMaximumWidth(80);
        e->installEventFilter(this);
    }
    fields->addWidget(new QLabel(tr("Width:"), sizeBox));
    fields->addWidget(m_width);
    fields->addSpacing(12);
    fields->addWidget(new QLabel(tr("Height:"), sizeBox));
    fields->addWidget(m_height);
    fields->addWidget(new QLabel(tr("pixels"), sizeBox));
    fields->addStretch(1);
    sizeGrid->addLayout(fields, 4, 0, 1, 2);
    layout->addWidget(sizeBox);

    auto* backBox = new QGroupBox(tr("Background"), this);
    auto* backLayout = new QGridLayout(backBox);
    const QStringList names = {tr("White"), tr("Black"), tr("Color:")};
    for (int i = 0; i < 3; ++i) {
        m_backgrounds[i] = new QRadioButton(names[i], backBox);
        m_backgrounds[i]->setObjectName(QStringLiteral("Option1(%1)").arg(i));
        backLayout->addWidget(m_backgrounds[i], 0, i);
        connect(m_backgrounds[i], &QRadioButton::toggled, this, [this] {
            // The colour strip shows only for the third choice.
            m_strip->setVisible(m_backgrounds[2]->isChecked());
        });
    }
    m_sample = new QLabel(backBox);
    m_sample->setObjectName(QStringLiteral("Label2"));
    m_sample->setFixedSize(48, 22);
    m_sample->setToolTip(tr("The colour of the background"));
    backLayout->addWidget(m_sample, 0, 3);
    m_strip = new QLabel(backBox);
    m_strip->setObjectName(QStringLiteral("Picselcol"));
    m_stripImage = HueChart(300, 48, 12); // a grey ramp at the right end
    m_strip->setPixmap(QPixmap::fromImage(m_stripImage));
    m_strip->setFixedSize(m_stripImage.size());
    m_strip->setCursor(Qt::CrossCursor);
    m_strip->setToolTip(tr("Click or drag to choose the background colour"));
    m_strip->installEventFilter(this);
    m_strip->hide();
    backLayout->addWidget(m_strip, 1, 0, 1, 4);
    layout->addWidget(backBox);
    setSampleColor(RGB(255, 255, 128));

    auto* buttons = new QDialogButtonBox(this);
    AddDialogButton(buttons, tr("OK"), QDialogButtonBox::AcceptRole, QStringLiteral("Command1(1)"));
    AddDialogButton(buttons, tr("Cancel"), QDialogButtonBox::RejectRole, QStringLiteral("Command1(0)"));
    connect(buttons, &QDialogButtonBox::accepted, this, &frmNew::Command1_Click);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);

    m_backgrounds[0]->setChecked(true);
    m_width->setText(QString::number(lastWidth >= 2 ? lastWidth : defaultWidth));
    m_height->setText(QString::number(lastHeight >= 2 ? lastHeight : defaultHeight));
    for (int i = 0; i < 7; ++i)
        m_sizes[i]->setChecked(Val(m_width->text()) == kSizes[i][0] && Val(m_height->text()) == kSizes[i][1]);
}

void frmNew::chooseSize(int index)
{
    for (int i = 0; i < 7; ++i)
        m_sizes[i]->setChecked(i == index);
    m_width->setText(QString::number(kSizes[index][0]));
    m_height->setText(QString::number(kSizes[index][1]));
}

void frmNew::setSampleColor(Color c)
{
    m_sampleColor = c;
    m_sample->setStyleSheet(
        QStringLiteral("QLabel { background: %1; border: 1px solid black; }").arg(ToQColor(c).name()));
}

bool frmNew::eventFilter(QObject* watched, QEvent* event)
{
    if ((watched == m_width || watched == m_height) && event->type() == QEvent::FocusIn) {
        // Typing a size of one's own clears the offered sizes; the last one keeps its mark.
        for (int i = 0; i <= 5; ++i)
            m_sizes[i]->setChecked(false);
    }
    if (watched == m_strip &&
        (event->type() == QEvent::MouseButtonPress ||
         (event->type() == QEvent::MouseMove && static_cast<QMouseEvent*>(event)->buttons()))) {
        const QPoint p = static_cast<QMouseEvent*>(event)->position().toPoint();
        if (m_stripImage.rect().contains(p))
            setSampleColor(FromQRgb(m_stripImage.pixel(p)));
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void frmNew::Command1_Click()
{
    const double w = Val(m_width->text());
    const double h = Val(m_height->text());
    if (w < 2 || h < 2) {
        m_prompt.MsgBox(tr("Invalid size"), vbOKOnly, tr("New Image"));
        m_width->setFocus();
        return;
    }
    // Sizes beyond any memory are left to the allocation, which refuses them with a message.
    auto toSize = [](double v) { return v > 1e9 ? 1000000000 : int(std::nearbyint(v)); };
    m_choice.width = toSize(w);
    m_choice.height = toSize(h);
    m_choice.name = m_name->text();
    m_choice.background =
        m_backgrounds[1]->isChecked() ? 0 : (m_backgrounds[2]->isChecked() ? m_sampleColor : 0xFFFFFF);
    accept();
}

} // namespace velunta
