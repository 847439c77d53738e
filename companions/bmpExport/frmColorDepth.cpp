#include "bmpExport/frmColorDepth.h"

#include "widgets/ButtonLooks.h"
#include "widgets/zolButton.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QRadioButton>
#include <QVBoxLayout>

namespace velunta {

namespace {

constexpr std::array<int, 4> kBits = {1, 4, 8, 24};
// The preview is reduced at the size it shows; a small picture shows whole.
constexpr QSize kPreviewSize(480, 360);

QString sizeText(qint64 bytes)
{
    if (bytes < 10 * 1024)
        return frmColorDepth::tr("%1 bytes").arg(bytes);
    if (bytes < 10 * 1024 * 1024)
        return frmColorDepth::tr("%1 KB").arg((bytes + 512) / 1024);
    return frmColorDepth::tr("%1 MB").arg((bytes + (1 << 19)) >> 20);
}

} // namespace

frmColorDepth::frmColorDepth(const QImage& picture, const QString& path, const DepthChoice& initial,
                             QWidget* parent)
    : QDialog(parent), m_picture(picture), m_path(path)
{
    setObjectName(QStringLiteral("frmColorDepth"));
    setWindowTitle(tr("Color Depth and Dither"));
    m_small = picture.width() > kPreviewSize.width() || picture.height() > kPreviewSize.height()
                  ? picture.scaled(kPreviewSize, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                  : picture;

    auto* layout = new QVBoxLayout(this);
    auto* top = new QHBoxLayout;
    m_view = new QLabel(this);
    m_view->setObjectName(QStringLiteral("Preview"));
    m_view->setAlignment(Qt::AlignCenter);
    m_view->setMinimumSize(m_small.size().expandedTo(QSize(240, 180)));
    m_view->setStyleSheet(QStringLiteral("QLabel { background: rgb(150,170,200); }"));
    top->addWidget(m_view, 1);

    auto* options = new QVBoxLayout;
    auto* depthBox = new QGroupBox(tr("Colors"), this);
    auto* depthLayout = new QVBoxLayout(depthBox);
    const QStringList depthNames = {tr("2 colors (1 bit, black and white)"), tr("16 colors (4 bit)"),
                                    tr("256 colors (8 bit)"), tr("True color (24 bit)")};
    for (size_t i = 0; i < m_depths.size(); ++i) {
        m_depths[i] = new QRadioButton(depthNames[int(i)], depthBox);
        m_depths[i]->setObjectName(QStringLiteral("OptDepth(%1)").arg(kBits[i]));
        depthLayout->addWidget(m_depths[i]);
        connect(m_depths[i], &QRadioButton::toggled, this, [this](bool on) {
            if (on)
                refresh();
        });
    }
    options->addWidget(depthBox);
    auto* ditherBox = new QGroupBox(tr("Dithering"), this);
    auto* ditherLayout = new QVBoxLayout(ditherBox);
    const QStringList ditherNames = {tr("None"), tr("Floyd-Steinberg (smooth)"), tr("Ordered (pattern)")};
    for (size_t i = 0; i < m_dithers.size(); ++i) {
        m_dithers[i] = new QRadioButton(ditherNames[int(i)], ditherBox);
        m_dithers[i]->setObjectName(QStringLiteral("OptDither(%1)").arg(i));
        ditherLayout->addWidget(m_dithers[i]);
        connect(m_dithers[i], &QRadioButton::toggled, this, [this](bool on) {
            if (on)
                refresh();
        });
    }
    options->addWidget(ditherBox);
    m_info = new QLabel(this);
    m_info->setObjectName(QStringLiteral("lblInfo"));
    m_info->setWordWrap(true);
    options->addWidget(m_info);
    options->addStretch(1);
    top->addLayout(options);
    layout->addLayout(top, 1);

    layout->addWidget(OkCancelButtons(this));

    setChoice(initial);
}

DepthChoice frmColorDepth::choice() const
{
    DepthChoice c;
    for (size_t i = 0; i < m_depths.size(); ++i)
        if (m_depths[i]->isChecked())
            c.bits = kBits[i];
    for (size_t i = 0; i < m_dithers.size(); ++i)
        if (m_dithers[i]->isChecked())
            c.dither = Dither(i);
    return c;
}

void frmColorDepth::setChoice(const DepthChoice& choice)
{
    for (size_t i = 0; i < m_depths.size(); ++i)
        if (kBits[i] == choice.bits)
            m_depths[i]->setChecked(true);
    m_dithers[size_t(choice.dither)]->setChecked(true);
    refresh();
}

void frmColorDepth::refresh()
{
    const DepthChoice c = choice();
    // True colour keeps every colour: there is nothing to dither.
    for (QRadioButton* b : m_dithers)
        b->setEnabled(c.bits < 24);
    m_preview = ReduceColors(m_small, c).convertToFormat(QImage::Format_RGB32);
    m_view->setPixmap(QPixmap::fromImage(m_preview));
    const qint64 stride = ((qint64(m_picture.width()) * c.bits + 31) / 32) * 4;
    const qint64 bytes = 54 + (c.bits < 24 ? 4LL << c.bits : 0) + stride * m_picture.height();
    m_info->setText(tr("%1 x %2 pixels\nThe file will take about %3.")
                        .arg(m_picture.width())
                        .arg(m_picture.height())
                        .arg(sizeText(bytes)));
}

void frmColorDepth::accept()
{
    const DepthChoice c = choice();
    QString error;
    if (!WriteBMPVariant(m_picture, c, m_path, &error)) {
        QMessageBox::warning(this, windowTitle(),
                             tr("The picture could not be written to %1:\n%2").arg(m_path, error));
        return;
    }
    RememberChoice(c);
    QDialog::accept();
}

} // namespace velunta
