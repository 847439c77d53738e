// Building the colour strip: its panels, the pictures of the rainbow and grey strips,
// and the wiring of every part to its handler.

#include "widgets/ColorStrip.h"

#include "widgets/Icons.h"
#include "widgets/PanelLooks.h"
#include "widgets/StripParts.h"
#include "widgets/frmColor.h"

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QToolButton>
#include <QVBoxLayout>

namespace velunta {

namespace {

// The width every row of the strip lines up to.
constexpr int kContentWidth = 169;
constexpr QSize kCell(25, 17);
constexpr int kCellGap = 3;

// Hue along the strip; light at the top, the pure colour in the middle, dark below.
QImage RainbowPicture(QSize size)
{
    QImage img(size, QImage::Format_RGB32);
    const int w = size.width(), h = size.height();
    for (int y = 0; y < h; ++y) {
        auto* line = reinterpret_cast<QRgb*>(img.scanLine(y));
        const double lightness = 0.9 - 0.75 * (h > 1 ? double(y) / (h - 1) : 0.5);
        for (int x = 0; x < w; ++x)
            line[x] = QColor::fromHslF(float(w > 1 ? double(x) / w : 0.0), 1.0f, float(lightness)).rgb();
    }
    return img;
}

// White at the left to black at the right.
QImage GraysPicture(QSize size)
{
    QImage img(size, QImage::Format_RGB32);
    const int w = size.width();
    QVector<QRgb> row(w);
    for (int x = 0; x < w; ++x) {
        const int v = 255 - (w > 1 ? (x * 255 + (w - 1) / 2) / (w - 1) : 0);
        row[x] = qRgb(v, v, v);
    }
    for (int y = 0; y < size.height(); ++y)
        std::copy(row.cbegin(), row.cend(), reinterpret_cast<QRgb*>(img.scanLine(y)));
    return img;
}

QWidget* Panel(QWidget* parent)
{
    auto* panel = new PanelFill(parent);
    panel->setObjectName(QStringLiteral("ColorPanel"));
    panel->setFill(QColor(220, 245, 255));
    panel->setBorder(kFrameBlue, Qt::LeftEdge | Qt::TopEdge | Qt::RightEdge | Qt::BottomEdge, 3);
    panel->setContentsMargins(1, 1, 1, 1);
    return panel;
}

QLabel* Caption(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    CaptionLook(label, QColor(20, 50, 110));
    return label;
}

QLabel* Readout(const QString& name, QWidget* parent)
{
    auto* label = new BoxLabel(parent);
    label->setObjectName(name);
    label->setFixedHeight(20);
    label->setTextInteractionFlags(Qt::NoTextInteraction);
    label->setBox(Qt::white, kFrameBlue, 4);
    QFont mono = label->font();
    mono.setFamilies({QStringLiteral("monospace")});
    mono.setStyleHint(QFont::Monospace);
    label->setFont(mono);
    return label;
}

QToolButton* SmallButton(const QString& name, const QString& tip, QWidget* parent)
{
    auto* b = new QToolButton(parent);
    b->setObjectName(name);
    b->setToolTip(tip);
    b->setAutoRaise(true);
    b->setFocusPolicy(Qt::NoFocus);
    return b;
}

} // namespace

ColorStrip::ColorStrip(Color& foreColor, Color& backColor, int& selIndex, QWidget* parent)
    : QWidget(parent), m_fore(foreColor), m_back(backColor), m_selIndex(selIndex)
{
    setObjectName(QStringLiteral("ColorStrip"));
    build();
    for (int i = 0; i < kUserColorCount; ++i)
        m_userColors->setColor(i, DefaultUserColors()[i]);
    SetColorBars();
    DrawSelectedGradient();
}

ColorStrip::~ColorStrip() = default;

void ColorStrip::build()
{
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(4, 6, 4, 6);
    outer->setSpacing(6);
    outer->setSizeConstraint(QLayout::SetFixedSize);

    auto* working = Panel(this);
    auto* workingLayout = new QVBoxLayout(working);
    workingLayout->setContentsMargins(5, 5, 5, 5);
    workingLayout->setSpacing(5);
    workingLayout->addWidget(buildWorkingColors());
    // The way from the foreground to the background colour, under the two of them.
    m_gradient = new PickStrip(working);
    m_gradient->setObjectName(QStringLiteral("Gradient"));
    m_gradient->setFixedSize(kContentWidth, 16);
    m_gradient->setPicks(false);
    m_gradient->setToolTip(tr("Gradient Scale Preview"));
    workingLayout->addWidget(m_gradient);
    outer->addWidget(working);

    auto* choose = Panel(this);
    auto* chooseLayout = new QVBoxLayout(choose);
    chooseLayout->setContentsMargins(5, 4, 5, 5);
    chooseLayout->setSpacing(2);
    QVector<QPoint> places;
    for (int i = 0; i < kMSColorCount; ++i)
        places.append(MSColorPlace(i));
    m_msColors = new SwatchGrid(places, kCell, kCellGap, choose);
    m_msColors->setObjectName(QStringLiteral("MSColors"));
    for (int i = 0; i < kMSColorCount; ++i) {
        m_msColors->setColor(i, MSColorValue(i));
        m_msColors->setCellToolTip(i, MSColorGroup(i));
    }
    connect(m_msColors, &SwatchGrid::cellReleased, this, &ColorStrip::MSColors_MouseUp);
    chooseLayout->addWidget(m_msColors);

    const auto addStrip = [&](const QString& caption, const QString& name, int height) {
        if (!caption.isEmpty()) {
            chooseLayout->addSpacing(3);
            chooseLayout->addWidget(Caption(caption, choose));
        }
        auto* strip = new PickStrip(choose);
        strip->setObjectName(name);
        strip->setFixedSize(kContentWidth, height + 2);
        strip->setCursor(Qt::CrossCursor);
        chooseLayout->addWidget(strip);
        return strip;
    };
    m_imgColor = addStrip(tr("Rainbow:"), QStringLiteral("ImgColor"), 28);
    m_imgColor->setPicture(RainbowPicture(m_imgColor->pictureSize()));
    m_imgColor->setToolTip(tr("Click or drag along the rainbow to pick a colour"));
    m_imgGrays = addStrip(tr("Grays:"), QStringLiteral("ImgGrays"), 14);
    m_imgGrays->setPicture(GraysPicture(m_imgGrays->pictureSize()));
    m_imgGrays->setToolTip(tr("click to select gradient grayscale"));
    for (PickStrip* strip : {m_imgColor, m_imgGrays})
        connect(strip, &PickStrip::picked, this, &ColorStrip::ImgStrip_MouseDown);
    connect(m_imgGrays, &PickStrip::doubleClicked, this, &ColorStrip::ImgGrays_DblClick);
    outer->addWidget(choose);

    outer->addWidget(buildSliders());

    auto* mine = Panel(this);
    auto* mineLayout = new QVBoxLayout(mine);
    mineLayout->setContentsMargins(5, 4, 5, 5);
    mineLayout->setSpacing(2);
    auto* mineCaption = Caption(tr("My colours:"), mine);
    mineCaption->setToolTip(
        tr("Double click a cell to change it; drag a working colour onto it to keep that colour"));
    mineLayout->addWidget(mineCaption);
    QVector<QPoint> userPlaces;
    for (int i = 0; i < kUserColorCount; ++i)
        userPlaces.append(QPoint(i % 6, i / 6));
    m_userColors = new SwatchGrid(userPlaces, kCell, kCellGap, mine);
    m_userColors->setObjectName(QStringLiteral("PicUserColors"));
    m_userColors->setAcceptsColorDrops(true);
    for (int i = 0; i < kUserColorCount; ++i)
        m_userColors->setCellToolTip(i, tr("Your colour %1 (double click to change it)").arg(i + 1));
    connect(m_userColors, &SwatchGrid::cellPressed, this, &ColorStrip::PicUserColors_MouseDown);
    connect(m_userColors, &SwatchGrid::cellReleased, this, &ColorStrip::PicUserColors_MouseUp);
    connect(m_userColors, &SwatchGrid::cellDoubleClicked, this,
            [this](int index, int) { PicUserColors_DblClick(index); });
    connect(m_userColors, &SwatchGrid::colorDropped, this, &ColorStrip::PicUserColors_Drop);
    mineLayout->addWidget(m_userColors);
    outer->addWidget(mine);

    m_paletteButton = new QPushButton(tr("Use only the strip's colours"), this);
    m_paletteButton->setObjectName(QStringLiteral("PaletteButton"));
    m_paletteButton->setToolTip(tr("Change the picture (or the selection) so that it uses only the colours "
                                   "shown in this strip. Edit > Undo brings the old colours back."));
    m_paletteButton->setFixedWidth(kContentWidth + 12);
    m_paletteButton->setEnabled(false);
    connect(m_paletteButton, &QPushButton::clicked, this, &ColorStrip::reduceToPaletteRequested);
    outer->addWidget(m_paletteButton);
    outer->addStretch(1);
}

QWidget* ColorStrip::buildWorkingColors()
{
    auto* block = new QWidget(this);
    block->setFixedSize(kContentWidth, 58);
    for (int i = 1; i >= 0; --i) {
        m_selColor[i] = new ColorSample(block);
        m_selColor[i]->setObjectName(QStringLiteral("SelColor(%1)").arg(i));
        m_selColor[i]->setGeometry(i == 0 ? 2 : 20, i == 0 ? 2 : 20, 36, 36);
        m_selColor[i]->setToolTip(i == 0
                                      ? tr("Foreground colour: the left button paints with it.\n"
                                           "Click to edit it with the sliders, right click for the palette")
                                      : tr("Background colour: the right button paints with it.\n"
                                           "Click to edit it with the sliders, right click for the palette"));
        connect(m_selColor[i], &ColorSample::pressed, this,
                [this, i](int button) { SelColor_MouseDown(i, button); });
    }
    m_shift = SmallButton(QStringLiteral("ShiftColors"), tr("Swap the two colours"), block);
    m_shift->setIcon(NamedIcon(QStringLiteral("swap-colors")));
    m_shift->setGeometry(40, 0, 18, 18);
    connect(m_shift, &QToolButton::clicked, this, &ColorStrip::ShiftColors_Click);
    m_restore = SmallButton(QStringLiteral("RestoreColors"), tr("Back to black and white"), block);
    m_restore->setIcon(NamedIcon(QStringLiteral("restore-colors")));
    m_restore->setGeometry(0, 40, 18, 18);
    connect(m_restore, &QToolButton::clicked, this, &ColorStrip::RestoreColors_Click);

    // The mirrors to drag from, each with its edit button: Image2(1) edits the
    // foreground, Image2(0) the background.
    const char* const rowCaption[2] = {QT_TR_NOOP("Front"), QT_TR_NOOP("Back")};
    for (int i = 0; i < 2; ++i) {
        const int top = i == 0 ? 4 : 32;
        auto* caption = new QLabel(tr(rowCaption[i]), block);
        caption->setGeometry(68, top + 3, 36, 16);
        m_colorBlend[i] = new ColorSample(block);
        m_colorBlend[i]->setObjectName(QStringLiteral("ColorBlend(%1)").arg(i));
        m_colorBlend[i]->setDragSource(true);
        m_colorBlend[i]->setCursor(Qt::OpenHandCursor);
        m_colorBlend[i]->setToolTip(tr("Drag this colour onto one of your colours below to keep it"));
        m_colorBlend[i]->setGeometry(104, top, 32, 22);
        const int edits = i == 0 ? 1 : 0;
        m_image2[edits] = SmallButton(QStringLiteral("Image2(%1)").arg(edits),
                                      i == 0 ? tr("Choose the foreground colour in the True Color Palette")
                                             : tr("Choose the background colour in the True Color Palette"),
                                      block);
        m_image2[edits]->setText(QStringLiteral("\u2026"));
        m_image2[edits]->setAutoRaise(false);
        m_image2[edits]->setGeometry(140, top, 26, 22);
        connect(m_image2[edits], &QToolButton::clicked, this, [this, edits] { Image2_Click(edits); });
    }
    return block;
}

QWidget* ColorStrip::buildSliders()
{
    auto* panel = Panel(this);
    auto* panelLayout = new QVBoxLayout(panel);
    panelLayout->setContentsMargins(5, 5, 5, 5);
    panelLayout->setSpacing(4);
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(4);
    grid->setVerticalSpacing(4);
    const char* const channel[3] = {"R", "G", "B"};
    const QColor ink[3] = {QColor(170, 0, 0), QColor(0, 120, 0), QColor(0, 0, 170)};
    auto* digits = new QRegularExpressionValidator(QRegularExpression(QStringLiteral("\\d{0,3}")), this);
    for (int k = 0; k < 3; ++k) {
        auto* name = new QLabel(QString::fromLatin1(channel[k]), panel);
        name->setFixedWidth(12);
        CaptionLook(name, ink[k]);
        grid->addWidget(name, k, 0);
        m_bar[k] = new ColorSlider(panel);
        m_bar[k]->setObjectName(QStringLiteral("ColorBar(%1)").arg(k));
        m_bar[k]->setFixedWidth(kContentWidth - 12 - 34 - 8);
        m_bar[k]->setRamp(0, RGB(k == 0 ? 255 : 0, k == 1 ? 255 : 0, k == 2 ? 255 : 0));
        connect(m_bar[k], &ColorSlider::dragStarted, this, [this] { SliderDrag = true; });
        connect(m_bar[k], &ColorSlider::dragged, this, &ColorStrip::SetColorBars);
        connect(m_bar[k], &ColorSlider::dragEnded, this, [this] {
            SliderDrag = false;
            DrawSelectedGradient();
        });
        grid->addWidget(m_bar[k], k, 1);
        m_box[k] = new QLineEdit(panel);
        m_box[k]->setObjectName(QStringLiteral("lblcolor(%1)").arg(k));
        m_box[k]->setFixedWidth(34);
        m_box[k]->setAlignment(Qt::AlignRight);
        m_box[k]->setValidator(digits);
        m_box[k]->setToolTip(tr("Type a number from 0 to 255"));
        m_box[k]->installEventFilter(this);
        connect(m_box[k], &QLineEdit::textChanged, this, &ColorStrip::lblcolor_Change);
        grid->addWidget(m_box[k], k, 2);
    }
    panelLayout->addLayout(grid);

    auto* readouts = new QGridLayout;
    readouts->setHorizontalSpacing(4);
    readouts->setVerticalSpacing(3);
    m_valueLabel = new QLabel(tr("Value:"), panel);
    m_valueLabel->setObjectName(QStringLiteral("lblcolorvaluelabel"));
    m_value = Readout(QStringLiteral("lblcolorvalue"), panel);
    m_value->setToolTip(tr("Value of the color (double click to put in clipboard)"));
    m_htmlLabel = new QLabel(tr("HTML:"), panel);
    m_htmlLabel->setObjectName(QStringLiteral("lblcolorvaluelabel2"));
    m_html = Readout(QStringLiteral("lblcolorvalue2"), panel);
    m_html->setToolTip(tr("HTML value of the color (double click to put in clipboard)"));
    readouts->addWidget(m_valueLabel, 0, 0);
    readouts->addWidget(m_value, 0, 1);
    readouts->addWidget(m_htmlLabel, 1, 0);
    readouts->addWidget(m_html, 1, 1);
    readouts->setColumnMinimumWidth(0, 40);
    readouts->setColumnStretch(1, 1);
    panelLayout->addLayout(readouts);
    m_value->installEventFilter(this);
    m_html->installEventFilter(this);
    return panel;
}

void ColorStrip::setKidsMode(bool on)
{
    for (QWidget* w : {static_cast<QWidget*>(m_valueLabel), static_cast<QWidget*>(m_value),
                       static_cast<QWidget*>(m_htmlLabel), static_cast<QWidget*>(m_html)})
        w->setVisible(!on);
    for (QLineEdit* box : m_box)
        box->setVisible(!on);
}

void ColorStrip::setPaletteEnabled(bool on)
{
    m_paletteButton->setEnabled(on);
}

QVector<Color> ColorStrip::palette() const
{
    QVector<Color> colors;
    for (int i = 0; i < kMSColorCount; ++i)
        colors.append(m_msColors->color(i));
    for (int i = 0; i < kUserColorCount; ++i)
        colors.append(m_userColors->color(i));
    return colors;
}

Color ColorStrip::UserColor(int index) const
{
    return m_userColors->color(index);
}

} // namespace velunta
