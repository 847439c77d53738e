// The option panels of the twenty tools, column by column.

#include "document/DrawState.h"
#include "tools/PanelWidgets.h"
#include "tools/frmControls.h"
#include "widgets/ButtonLooks.h"
#include "widgets/Icons.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QScrollBar>

namespace velunta {

namespace {

const char* const kFillTips[8] = {QT_TRANSLATE_NOOP("velunta::frmControls", "Solid"),
                                  QT_TRANSLATE_NOOP("velunta::frmControls", "Transparent (fills nothing)"),
                                  QT_TRANSLATE_NOOP("velunta::frmControls", "Horizontal lines"),
                                  QT_TRANSLATE_NOOP("velunta::frmControls", "Vertical lines"),
                                  QT_TRANSLATE_NOOP("velunta::frmControls", "Upward diagonal lines"),
                                  QT_TRANSLATE_NOOP("velunta::frmControls", "Downward diagonal lines"),
                                  QT_TRANSLATE_NOOP("velunta::frmControls", "Cross"),
                                  QT_TRANSLATE_NOOP("velunta::frmControls", "Diagonal cross")};

} // namespace

void frmControls::buildPanel(int tool)
{
    switch (tool) {
    case 0:
        buildCursorPanel();
        break;
    case 1:
        buildPencilPanel();
        break;
    case 2:
        buildZoomPanel();
        break;
    case 3:
        buildFillPanel();
        break;
    case 4:
        m_lblAngle =
            new ReadoutLabel(QStringLiteral("lblAngle"), tr("Angle of the gradient"), 56, m_panels[4]);
        addColumn(4, {{tr("Angle:"), m_lblAngle}});
        break;
    case 6:
        addColumn(6, {{tr("Pressure:"), selectorBox(6, 0)}, {tr("Size:"), selectorBox(6, 2)}});
        addColumn(6, {{QString(), checkBox(6, QStringLiteral("chkAirOldSchool"), tr("Hard Spray"),
                                           tr("Use hard style spray/brush"), &DrawState::HardSpray)}});
        break;
    case 8:
        buildPickerPanel();
        break;
    case 9:
        addColumn(9, {{tr("Bordersize:"), selectorBox(9, 5)}, {tr("Style:"), styleRow(9, GCmd, 0, 5)}});
        addColumn(9, {{tr("Round:"),
                       textBox(9, QStringLiteral("TxtRoundCorners"), tr("Amount % of rounding of corners"),
                               &DrawState::RoundCornersText)}});
        break;
    case 10:
        addColumn(10, {{tr("Bordersize:"), selectorBox(10, 6)}, {tr("Style:"), styleRow(10, GCmd2, 0, 5)}});
        addColumn(10, {{QString(), operationButton(10, QStringLiteral("Image4"), tr("Bezier curvers"),
                                                   tr("Draw Advanced Bezier Curves"), op::Bezier,
                                                   QStringLiteral("cmd-21"))}});
        break;
    case 11:
        addColumn(11, {{tr("Size:"), selectorBox(11, 3)}, {tr("Pressure:"), selectorBox(11, 1)}});
        addColumn(11, {{tr("Style:"), styleRow(11, GCmd4, 0, 1)}});
        break;
    case 12:
        buildTextPanel();
        break;
    case 13:
        addColumn(13, {{tr("Size:"), selectorBox(13, 8)}});
        break;
    case 14:
        buildLinePanel();
        break;
    case 15:
        addColumn(15, {{tr("Size:"), selectorBox(15, 10)}, {tr("Pressure:"), selectorBox(15, 11)}});
        addColumn(15, {{tr("Style:"), styleRow(15, GCmd4, 2, 3)}});
        break;
    case 16:
        build3DPanel();
        break;
    case 17:
        buildReplacePanel();
        break;
    case 18:
        buildDissolvePanel();
        break;
    case 19:
        buildEnhancePanel();
        break;
    default:
        // Area Selection and Crop Image have no options.
        break;
    }
}

void frmControls::buildCursorPanel()
{
    m_cursorPanel = new QWidget(m_panels[0]);
    m_cursorPanel->setObjectName(QStringLiteral("PicCursorCMD"));
    auto* row = RowLayout(m_cursorPanel, 10);
    m_options[0]->addWidget(m_cursorPanel);
    // The panel's options are those of the floating selection, shown only while one floats.
    m_options[0] = row;

    QCheckBox* blendIt =
        checkBox(0, QStringLiteral("chkblendit"), tr("Blend selection"),
                 tr("Blend the selection with the picture under it"), &DrawState::BlendSelection);
    connect(blendIt, &QCheckBox::clicked, this, [this](bool on) {
        if (on)
            Q_EMIT operationRequested(op::BlendThePic);
    });
    connect(blendIt, &QCheckBox::toggled, this, &frmControls::selectionOptionsChanged);
    needsOperation(blendIt, op::BlendThePic);

    auto* keyBox = new QWidget(m_cursorPanel);
    auto* keyRow = RowLayout(keyBox, 4);
    QCheckBox* transparent = checkBox(0, QStringLiteral("ChkTransparencyColor"), tr("Transparent color"),
                                      tr("Let the picture show through where the selection has this color"),
                                      &DrawState::TransparentSelection);
    connect(transparent, &QCheckBox::clicked, this, [this](bool on) {
        if (on)
            Q_EMIT operationRequested(op::DoTransparent);
    });
    connect(transparent, &QCheckBox::toggled, this, &frmControls::selectionOptionsChanged);
    needsOperation(transparent, op::DoTransparent);
    m_transparencyColor =
        new ColorSwatch(QStringLiteral("LblTransparencyColor"),
                        tr("The transparent color: click here, then on the picture"), QSize(28, 18), keyBox);
    connect(m_transparencyColor, &ColorSwatch::clicked, this, [this] {
        if (!m_transparencyColor->isEnabled())
            return;
        m_state.TransparencyPickArmed = true;
        ColorsChanged();
        Q_EMIT transparencyPickRequested();
    });
    needsOperation(m_transparencyColor, op::DoTransparent);
    keyRow->addWidget(transparent);
    keyRow->addWidget(m_transparencyColor);
    addColumn(0, {{QString(), blendIt}, {QString(), keyBox}});

    // " Blend:          %": the box stands in the gap of the caption.
    auto* blendBox = new QWidget(m_cursorPanel);
    auto* blendRow = RowLayout(blendBox, 4);
    auto* lblBlend = new QLabel(tr(" Blend:"), blendBox);
    lblBlend->setObjectName(QStringLiteral("LblBlend"));
    m_txtBlend = new QLineEdit(blendBox);
    m_txtBlend->setObjectName(QStringLiteral("TxtBlend"));
    m_txtBlend->setToolTip(tr("Blend in percent, 0 to 100; press Enter"));
    m_txtBlend->setFixedSize(44, kPanelRowHeight);
    m_txtBlend->setAlignment(Qt::AlignRight);
    connect(m_txtBlend, &QLineEdit::returnPressed, this, [this] { TxtBlend_Enter(); });
    auto* lblBlend2 = new QLabel(QStringLiteral("%"), blendBox);
    lblBlend2->setObjectName(QStringLiteral("LblBlend2"));
    blendRow->addWidget(lblBlend);
    blendRow->addWidget(m_txtBlend);
    blendRow->addWidget(lblBlend2);
    m_scrllBlend = new QScrollBar(Qt::Horizontal, m_cursorPanel);
    m_scrllBlend->setObjectName(QStringLiteral("ScrllBlend"));
    m_scrllBlend->setToolTip(tr("Blend of the selection"));
    m_scrllBlend->setRange(1, 255);
    m_scrllBlend->setPageStep(26);
    m_scrllBlend->setFixedWidth(140);
    connect(m_scrllBlend, &QScrollBar::valueChanged, this, [this](int value) {
        m_state.SelectionBlend = value;
        m_txtBlend->setText(QString::number(BlendPercent(value)));
        Q_EMIT selectionBlendChanged();
    });
    addColumn(0, {{QString(), blendBox}, {QString(), m_scrllBlend}});

    QAbstractButton* fromFile =
        operationButton(0, QStringLiteral("imgBlendfile"), tr("From file"), tr("Blend Image From..."),
                        op::PasteBlend, QStringLiteral("cmd-19"));
    auto* remove = new zolButton(tr("remove selection"), m_cursorPanel);
    remove->setObjectName(QStringLiteral("cmdRemoveArea"));
    remove->setToolTip(tr("Drop the selection; the picture keeps what it shows now"));
    DialogLook(remove);
    remove->setFixedHeight(kPanelRowHeight);
    connect(remove, &zolButton::Click, this, [this] { Q_EMIT removeAreaRequested(); });
    addColumn(0, {{QString(), fromFile}, {QString(), remove}});
    addColumn(0,
              {{QString(), operationButton(0, QStringLiteral("CmdButton(2)"), tr("Apply to Selection"),
                                           tr("Blend the selection into the picture"), op::ApplySelection)},
               {QString(), operationButton(0, QStringLiteral("CmdButton(3)"), tr("Cancel"),
                                           tr("Put the selection back as it was"), op::CancelSelection)}});
    m_cursorPanel->hide();
}

void frmControls::buildPencilPanel()
{
    addColumn(1, {{tr("Pencil  size:"), selectorBox(1, 4)}, {tr("Style:"), styleRow(1, GCmd3, 0, 10)}});
    addColumn(1, {{QString(), checkBox(1, QStringLiteral("chkRan"), tr("Scatter color"),
                                       tr("Enable for Scatter color (or disable for gradient style)"),
                                       &DrawState::ScatterColors)},
                  {QString(), checkBox(1, QStringLiteral("chkSmoothEdge"), tr("Smooth edge"),
                                       tr("Soften the edges of the stroke"), &DrawState::SmoothEdge)}});
}

void frmControls::buildDissolvePanel()
{
    addColumn(18,
              {{tr("Dissolve Brush  size:"), selectorBox(18, 12)}, {tr("Intensity:"), selectorBox(18, 13)}});
    addStacked(18, tr("Desolve colors:"), styleRow(18, GCmd6, 0, 3));
    optionPair(18, QStringLiteral("OptNoise"), {tr("N"), tr("Y")},
               {tr("No color noise"), tr("Add color noise")}, &DrawState::AddNoise, m_noise);
    addColumn(18, {{tr("Noise"), m_noise[0]}, {QString(), m_noise[1]}});
}

void frmControls::buildEnhancePanel()
{
    addColumn(19,
              {{tr("Enhance Brush size:"), selectorBox(19, 15)}, {tr("Intensity:"), selectorBox(19, 14)}});
    addStacked(19, tr("Enhance colors:"), styleRow(19, GCmd8, 0, 2));
    optionPair(19, QStringLiteral("OptStep"), {tr("Single Step (default)"), tr("Double")},
               {tr("Every pixel of the brush"), tr("Every second pixel: a sieve")}, &DrawState::DoubleStep,
               m_step);
    addColumn(19, {{tr("Step"), m_step[0]}, {QString(), m_step[1]}});
    addColumn(19, {{QString(), checkBox(19, QStringLiteral("chkFilter"), tr("Filter only base color"),
                                        tr("Weaken the other colors instead of adding to this one"),
                                        &DrawState::FilterBaseColor)}});
}

void frmControls::buildFillPanel()
{
    auto* patterns = new QWidget(m_panels[3]);
    auto* patternRow = RowLayout(patterns, 1);
    for (int i = 0; i < 8; ++i) {
        m_fillStyles[i] = new FillPatternButton(i, tr(kFillTips[i]), patterns);
        patternRow->addWidget(m_fillStyles[i]);
        connect(m_fillStyles[i], &QAbstractButton::clicked, this, [this, i] { OptFillStyle_Click(i); });
    }
    addColumn(3, {{tr("Fill       Styles:"), patterns}});
    addColumn(3,
              {{QString(),
                checkBox(3, QStringLiteral("ChkFloodfill"), tr("floodfill (Stop at a closed color boundery)"),
                         tr("Fill up to a border of the foreground color"), &DrawState::FloodFillBorder)},
               {QString(), operationButton(3, QStringLiteral("Image3"), tr("Textures"),
                                           tr("Fill entire image or selection with textures"),
                                           op::Texturefill, QStringLiteral("cmd-18"))}});
}

void frmControls::buildLinePanel()
{
    // "Arrow size:         pixels": the box stands in the gap of the caption.
    auto* arrow = new QWidget(m_panels[14]);
    auto* arrowRow = RowLayout(arrow, 4);
    arrowRow->addWidget(textBox(14, QStringLiteral("TxtArrowSize"), tr("Length of the arrow's barbs"),
                                &DrawState::ArrowSizeText));
    arrowRow->addWidget(new QLabel(tr("pixels"), arrow));
    addColumn(14, {{tr("Line:"), selectorBox(14, 9)}, {tr("Style:"), styleRow(14, GCmd7, 0, 1)}});
    addColumn(14, {{tr("Arrow size:"), arrow}});
    addColumn(14, {{QString(),
                    operationButton(14, QStringLiteral("Image5"), tr("Polygons"),
                                    tr("Draw Advanced Polygons"), op::Polygons, QStringLiteral("cmd-22"))}});
}

void frmControls::build3DPanel()
{
    m_cmb3Dsize = new QComboBox(m_panels[16]);
    m_cmb3Dsize->setObjectName(QStringLiteral("cmb3Dsize"));
    m_cmb3Dsize->setToolTip(tr("Thickness of the 3D edge in pixels"));
    m_cmb3Dsize->setEditable(true);
    for (int size : {1, 2, 3, 4, 5, 6, 8, 10, 12, 15, 20})
        m_cmb3Dsize->addItem(QString::number(size));
    m_cmb3Dsize->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("\\d{0,3}")), m_cmb3Dsize));
    m_cmb3Dsize->setFixedSize(60, kPanelRowHeight);
    connect(m_cmb3Dsize, &QComboBox::editTextChanged, this,
            [this](const QString& text) { m_state.Size3DText = text; });
    m_loaders.push_back([this] { m_cmb3Dsize->setEditText(m_state.Size3DText); });
    addColumn(16, {{tr("Thickness:"), m_cmb3Dsize}, {tr("Style:"), styleRow(16, GCmd5, 0, 5)}});
    addColumn(16, {{QString(),
                    operationButton(16, QStringLiteral("Image6"), tr("Picture Frames"),
                                    tr("Create Picture Frames"), op::PicFrames, QStringLiteral("cmd-08"))}});
}

void frmControls::buildZoomPanel()
{
    static const int kZooms[6] = {10, 25, 50, 100, 200, 300};
    auto* zooms = new QWidget(m_panels[2]);
    auto* zoomGrid = new QGridLayout(zooms);
    zoomGrid->setContentsMargins(0, 0, 0, 0);
    zoomGrid->setHorizontalSpacing(3);
    zoomGrid->setVerticalSpacing(2);
    for (int i = 0; i < 6; ++i) {
        auto* option = new zolButton(QStringLiteral("%1%").arg(kZooms[i]), zooms);
        option->setObjectName(QStringLiteral("optZoomss(%1)").arg(i));
        option->setToolTip(tr("Show the picture at %1%").arg(kZooms[i]));
        OptionLook(option);
        option->setFixedSize(46, kPanelRowHeight);
        // Marked only by the zoom in force, and all clear at any other zoom.
        option->setMode(2);
        zoomGrid->addWidget(option, i / 3, i % 3);
        connect(option, &zolButton::Click, this, [this, i] {
            SetZoomOption(kZooms[i]);
            Q_EMIT zoomRequested(kZooms[i]);
        });
        m_zoomOptions[i] = option;
    }
    m_lblZoom = new ReadoutLabel(QStringLiteral("lblZoom"), tr("Zoom of the picture"), 56, m_panels[2]);
    m_lblZoom->setAlignment(Qt::AlignCenter);
    auto* fit = new zolButton(tr("Fit to Window"), m_panels[2]);
    fit->setObjectName(QStringLiteral("cmdFitWindow"));
    fit->setToolTip(tr("Zoom the picture to the width of its window"));
    DialogLook(fit);
    fit->setFixedHeight(kPanelRowHeight);
    connect(fit, &zolButton::Click, this, [this] { Q_EMIT fitWindowRequested(); });
    addColumn(2, {{tr("Zoom:"), zooms}});
    addColumn(2, {{QString(), m_lblZoom}});
    addColumn(2, {{QString(), fit},
                  {QString(), operationButton(2, QStringLiteral("cmdDetailEdit"), tr("Detailed Editing"),
                                              tr("Edit a small area pixel by pixel"), op::DetailEdit)}});
}

void frmControls::buildPickerPanel()
{
    m_colorPick = new ColorSwatch(QStringLiteral("ColorPick"), tr("The color under the pointer"),
                                  QSize(48, 20), m_panels[8]);
    auto* rgb = new QWidget(m_panels[8]);
    auto* rgbRow = RowLayout(rgb, 3);
    const char* const names[3] = {"lblRed", "lblGreen", "lblBlue"};
    const char* const tips[3] = {QT_TR_NOOP("Red"), QT_TR_NOOP("Green"), QT_TR_NOOP("Blue")};
    for (int k = 0; k < 3; ++k) {
        m_rgb[k] = new ReadoutLabel(QString::fromLatin1(names[k]), tr(tips[k]), 38, rgb);
        m_rgb[k]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        rgbRow->addWidget(m_rgb[k]);
    }
    addColumn(8, {{tr("Color:"), m_colorPick}, {tr("RGB:"), rgb}});
}

void frmControls::buildTextPanel()
{
    auto picker = [this](const QString& buttonName, const QString& icon, const QString& labelName,
                         const QString& tip, QAbstractButton*& button, QLabel*& label) {
        auto* box = new QWidget(m_panels[12]);
        auto* row = RowLayout(box, 3);
        button = new StyleButton(buttonName, NamedIcon(icon), tip, box, 1);
        auto* readout = new ReadoutLabel(labelName, tip, 150, box);
        readout->setFixedWidth(150);
        readout->setCursor(Qt::PointingHandCursor);
        label = readout;
        row->addWidget(button);
        row->addWidget(readout);
        return std::make_pair(box, readout);
    };
    auto [fontBox, fontLabel] =
        picker(QStringLiteral("CmdFont"), QStringLiteral("font"), QStringLiteral("lblFont"),
               tr("Font of the text"), m_cmdFont, m_lblFont);
    auto [styleBox, styleLabel] =
        picker(QStringLiteral("CmdFontStyle"), QStringLiteral("font-style"), QStringLiteral("lblFontStyle"),
               tr("Style of the text"), m_cmdFontStyle, m_lblFontStyle);
    connect(m_cmdFont, &QAbstractButton::clicked, this, [this] { ShowHideFonts(); });
    connect(fontLabel, &ReadoutLabel::clicked, this, [this] { ShowHideFonts(); });
    connect(m_cmdFontStyle, &QAbstractButton::clicked, this, [this] { ShowHideFontStyle(); });
    connect(styleLabel, &ReadoutLabel::clicked, this, [this] { ShowHideFontStyle(); });
    addColumn(12, {{QString(), fontBox}, {QString(), styleBox}});
    m_fontPreview = new BoxLabel(m_panels[12]);
    m_fontPreview->setObjectName(QStringLiteral("picFontPreview"));
    m_fontPreview->setToolTip(tr("How the text will look"));
    m_fontPreview->setAlignment(Qt::AlignCenter);
    m_fontPreview->setFixedSize(84, 2 * kPanelRowHeight + 4);
    m_options[12]->addWidget(m_fontPreview);
    addColumn(12, {{tr("Text  size:"), selectorBox(12, 7)},
                   {QString(), checkBox(12, QStringLiteral("OptCenterFont"), tr("Center text"),
                                        tr("Center the lines of the text"), &DrawState::CenterText)}});
    addColumn(12,
              {{QString(), checkBox(12, QStringLiteral("chkSolidText"), tr("Solid Text (non-transparent)"),
                                    tr("Text on a box of the background color"), &DrawState::SolidText)},
               {QString(),
                checkBox(12, QStringLiteral("chkTransparentTXT"), tr("Show background in text window"),
                         tr("See the picture through the text while typing"), &DrawState::TransparentText)}});
    addColumn(12, {{QString(), operationButton(12, QStringLiteral("CmdButton(0)"), tr("Apply Text"),
                                               tr("Put the text on the picture"), op::ApplyText)},
                   {QString(), operationButton(12, QStringLiteral("CmdButton(1)"), tr("Cancel Text"),
                                               tr("Drop the text"), op::CancelText)}});
}

void frmControls::buildReplacePanel()
{
    m_replaceCol[0] =
        new ColorSwatch(QStringLiteral("LblReplaceCol(0)"), tr("Move the pointer on the image and click"),
                        QSize(48, 20), m_panels[17]);
    m_replaceCol[1] =
        new ColorSwatch(QStringLiteral("LblReplaceCol(1)"),
                        tr("Move the pointer on the image and right-click"), QSize(48, 20), m_panels[17]);
    addColumn(17, {{tr("Replace color:"), m_replaceCol[0]}, {tr("with color:"), m_replaceCol[1]}});
    addColumn(17, {{tr("Action:"), operationButton(17, QStringLiteral("CmdButton(4)"), tr("Replace colors"),
                                                   tr("Replace the first color by the second everywhere"),
                                                   op::Replacecolors)},
                   {QString(), operationButton(17, QStringLiteral("CmdButton(5)"), tr("Cancel"),
                                               tr("Forget the two colors"), op::CancelReplace)}});
}

} // namespace velunta
