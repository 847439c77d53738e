#include "tools/frmControls.h"

#include "core/Numbers.h"
#include "core/Prompt.h"
#include "document/Document.h"
#include "document/DrawState.h"
#include "tools/PanelWidgets.h"
#include "tools/frmFontStyle.h"
#include "tools/frmFonts.h"
#include "tools/frmSelector.h"
#include "widgets/Icons.h"
#include "widgets/PanelLooks.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QStackedWidget>

namespace velunta {

namespace {

// Rows of 26 logical pixels, two per panel, with a little air around them.
constexpr int kStripHeight = 2 * kStyleButtonSize + 8;

} // namespace

QString PanelCaption(int tool)
{
    static const char* const kCaptions[20] = {QT_TRANSLATE_NOOP("velunta::frmControls", "Cursor"),
                                              QT_TRANSLATE_NOOP("velunta::frmControls", "Pencil"),
                                              QT_TRANSLATE_NOOP("velunta::frmControls", "Zoom"),
                                              QT_TRANSLATE_NOOP("velunta::frmControls", "Fill"),
                                              QT_TRANSLATE_NOOP("velunta::frmControls", "Gradient"),
                                              QT_TRANSLATE_NOOP("velunta::frmControls", "Area Selection"),
                                              QT_TRANSLATE_NOOP("velunta::frmControls", "Air Brush"),
                                              QT_TRANSLATE_NOOP("velunta::frmControls", "Crop Image"),
                                              QT_TRANSLATE_NOOP("velunta::frmControls", "Color Picker"),
                                              QT_TRANSLATE_NOOP("velunta::frmControls", "Rectangle"),
                                              QT_TRANSLATE_NOOP("velunta::frmControls", "Circles"),
                                              QT_TRANSLATE_NOOP("velunta::frmControls", "Brighten Brush"),
                                              QT_TRANSLATE_NOOP("velunta::frmControls", "Text"),
                                              QT_TRANSLATE_NOOP("velunta::frmControls", "Blur/Soften Brush"),
                                              QT_TRANSLATE_NOOP("velunta::frmControls", "Lines"),
                                              QT_TRANSLATE_NOOP("velunta::frmControls", "Darken Brush"),
                                              QT_TRANSLATE_NOOP("velunta::frmControls", "3D Rectangles"),
                                              QT_TRANSLATE_NOOP("velunta::frmControls", "Color replacer"),
                                              QT_TRANSLATE_NOOP("velunta::frmControls", "Dissolve"),
                                              QT_TRANSLATE_NOOP("velunta::frmControls", "Enhance")};
    return tool >= 0 && tool < kToolCount
               ? QCoreApplication::translate("velunta::frmControls", kCaptions[tool])
               : QString();
}

frmControls::frmControls(DrawState& state, QWidget* parent) : QWidget(parent), m_state(state)
{
    setObjectName(QStringLiteral("frmControls"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_stack = new QStackedWidget(this);
    layout->addWidget(m_stack);
    setFixedHeight(kStripHeight);

    // One caption width for all panels, so the options start at the same place.
    QFont bold = font();
    bold.setBold(true);
    const QFontMetrics fm(bold);
    for (int i = 0; i < 20; ++i)
        for (const QString& word : PanelCaption(i).split(u' '))
            m_captionWidth = std::max(m_captionWidth, fm.horizontalAdvance(word) + 4);

    for (int i = 0; i < 20; ++i) {
        auto* panel = new QWidget(m_stack);
        panel->setObjectName(QStringLiteral("DrawToolbar(%1)").arg(i));
        auto* row = new QHBoxLayout(panel);
        row->setContentsMargins(6, 2, 6, 2);
        row->setSpacing(8);
        auto* icon = new IconView(QStringLiteral("ToolIcon(%1)").arg(i), ToolIcon(i), 32, panel);
        icon->setToolTip(PanelCaption(i));
        connect(icon, &IconView::clicked, this, [this, i] { Q_EMIT toolIconClicked(i); });
        row->addWidget(icon);
        auto* caption = new QLabel(PanelCaption(i), panel);
        caption->setObjectName(QStringLiteral("lblCaption(%1)").arg(i));
        CaptionLook(caption, QColor(20, 50, 110));
        caption->setWordWrap(true);
        caption->setFixedWidth(m_captionWidth);
        row->addWidget(caption);
        auto* options = new QHBoxLayout;
        options->setSpacing(10);
        row->addLayout(options);
        row->addStretch(1);
        m_panels[i] = panel;
        m_options[i] = options;
        m_stack->addWidget(panel);
    }
    // Each group's buttons (Cmd3(0) to Cmd3(10)...), filled in as their panels are made.
    using Buttons = std::vector<QAbstractButton*>;
    m_groups[GCmd3] = {QStringLiteral("Cmd3"), &DrawState::PencilStyle, &frmControls::SetPencilStyle,
                       Buttons(11)};
    m_groups[GCmd] = {QStringLiteral("Cmd"), &DrawState::ShapeStyle, &frmControls::SetShapeStyle, Buttons(6)};
    m_groups[GCmd2] = {QStringLiteral("Cmd2"), &DrawState::ShapeStyle, &frmControls::SetShapeStyle,
                       Buttons(6)};
    m_groups[GCmd5] = {QStringLiteral("Cmd5"), &DrawState::ShapeStyle, &frmControls::SetShapeStyle,
                       Buttons(6)};
    m_groups[GCmd4] = {QStringLiteral("Cmd4"), &DrawState::BrightStyle, &frmControls::SetBrightStyle,
                       Buttons(4)};
    m_groups[GCmd6] = {QStringLiteral("Cmd6"), &DrawState::DissolveMode, &frmControls::SetDissolveMode,
                       Buttons(4)};
    m_groups[GCmd7] = {QStringLiteral("Cmd7"), &DrawState::ArrowStyle, &frmControls::SetArrowStyle,
                       Buttons(2)};
    m_groups[GCmd8] = {QStringLiteral("Cmd8"), &DrawState::EnhanceMode, &frmControls::SetEnhanceMode,
                       Buttons(3)};
    m_angleText = tr("N/A");
    LoadDrawSettings();
    ColorsChanged();
}

frmControls::~frmControls()
{
    if (m_watching)
        qApp->removeEventFilter(this);
    // The pop-ups live in the main window; they go with the strip.
    delete m_selector;
    delete m_fonts;
    delete m_fontStyles;
}

void frmControls::ShowPanel(int tool)
{
    if (tool < 0 || tool >= kToolCount)
        return;
    ensurePanel(tool);
    closePopups();
    // The strip is as wide as the panel it shows, not as its widest one, so a narrow
    // window keeps room for the read-outs beside it.
    for (int i = 0; i < kToolCount; ++i)
        m_panels[i]->setSizePolicy(i == tool ? QSizePolicy::Preferred : QSizePolicy::Ignored,
                                   QSizePolicy::Preferred);
    m_stack->setCurrentIndex(tool);
    m_stack->updateGeometry();
    updateGeometry();
}

int frmControls::shownPanel() const
{
    return m_stack->currentIndex();
}

QWidget* frmControls::DrawToolbar(int tool)
{
    ensurePanel(tool);
    return m_panels.at(tool);
}

QLabel* frmControls::lblSelector(int index)
{
    if (!m_lblSelector.at(index))
        buildAll();
    return m_lblSelector.at(index);
}

QAbstractButton* frmControls::CmdDropDown(int index)
{
    if (!m_dropDown.at(index))
        buildAll();
    return m_dropDown.at(index);
}

void frmControls::refreshWidgets()
{
    for (int i = 0; i < 16; ++i)
        if (m_lblSelector[i])
            m_lblSelector[i]->setText(m_state.SelectorValues[i].Caption);
    for (const auto& load : m_loaders)
        load();
    for (int g = 0; g < GroupCount; ++g)
        showStyles(GroupId(g));
    OptFillStyle_Click(m_state.FillPattern);
    showFontLabels();
    showBlend();
    if (m_lblZoom)
        m_lblZoom->setText(m_zoomText);
    SetZoomOption(m_zoomChoice);
    SetAngleText(m_angleText, m_angleAlignment);
    ShowPickedColor(m_picked);
    ShowCursorPanel(m_cursorShown);
    ShowFontPreview();
    ColorsChanged();
}

void frmControls::LoadDrawSettings()
{
    for (int i = 0; i < 16; ++i) {
        SelectorValue& sv = m_state.SelectorValues[i];
        sv.Value = ClampSelectorValue(i, sv.Value);
        sv.Caption = SelectorCaption(i, sv.Value);
    }
    const int blend = m_state.SelectionBlend;
    m_blendText = blend >= 1 && blend <= 255 ? QString::number(BlendPercent(blend)) : QStringLiteral("50");
    refreshWidgets();
    // The active document and its text box follow the font.
    SetFontName(m_state.FontName);
    SetFontStyle(m_state.FontStyle);
}

void frmControls::SetSelectorCaption(int index, const QString& caption)
{
    if (index < 0 || index >= 16)
        return;
    m_state.SelectorValues[index].Caption = caption;
    if (m_lblSelector[index])
        m_lblSelector[index]->setText(caption);
}

void frmControls::ApplyTextSize()
{
    // Nothing to follow without a document.
    Document* doc = activeDocument();
    if (!doc)
        return;
    doc->Buffer.FontSize = m_state.SelectorValues[7].Value;
    Q_EMIT textFontChanged();
}

void frmControls::SetFontName(const QString& name)
{
    m_state.FontName = name;
    showFontLabels();
    ShowFontPreview();
    Q_EMIT textFontChanged();
}

void frmControls::showFontLabels()
{
    if (!m_lblFont)
        return;
    const QString& name = m_state.FontName;
    QFont face(name);
    face.setPointSizeF(font().pointSizeF());
    m_lblFont->setFont(face);
    // A long family name is shortened in the box and shown whole in its tooltip.
    m_lblFont->setText(QFontMetrics(face).elidedText(name, Qt::ElideRight, m_lblFont->width() - 10));
    m_lblFont->setToolTip(tr("Font of the text: %1").arg(name));
    const QString& style = m_state.FontStyle;
    m_lblFontStyle->setText(style);
    QFont styled = font();
    styled.setBold(FontStyleBold(style));
    styled.setItalic(FontStyleItalic(style));
    m_lblFontStyle->setFont(styled);
}

void frmControls::SetFontStyle(const QString& style)
{
    m_state.FontStyle = style;
    showFontLabels();
    if (Document* doc = activeDocument()) {
        doc->Buffer.FontBold = FontStyleBold(style);
        doc->Buffer.FontItalic = FontStyleItalic(style);
    }
    ShowFontPreview();
    Q_EMIT textFontChanged();
}

QLabel* frmControls::fontPreview() const
{
    return m_fontPreview;
}

void frmControls::ShowFontPreview()
{
    if (!m_fontPreview)
        return;
    QFont face(m_state.FontName);
    face.setPixelSize(22);
    face.setBold(FontStyleBold(m_state.FontStyle));
    face.setItalic(FontStyleItalic(m_state.FontStyle));
    m_fontPreview->setFont(face);
    m_fontPreview->setText(QStringLiteral("AaBb"));
    // The text box's colours: the foreground, on the background unless both are alike.
    const Color back = m_state.ForeColor != m_state.BackColor ? m_state.BackColor
                       : m_state.ForeColor == 0xFFFFFF        ? 0
                                                              : 0xFFFFFF;
    m_fontPreview->setBox(ToQColor(back), kFrameBlue, 0);
    m_fontPreview->setInk(ToQColor(m_state.ForeColor));
    m_fontPreview->show();
}

void frmControls::setStyle(GroupId group, int index)
{
    StyleGroup& g = m_groups[group];
    if (index >= 0 && index < int(g.buttons.size()))
        m_state.*g.field = index;
    showStyles(group);
}

void frmControls::showStyles(GroupId group)
{
    const StyleGroup& g = m_groups[group];
    const int chosen = m_state.*g.field;
    for (int i = 0; i < int(g.buttons.size()); ++i)
        if (g.buttons[i])
            g.buttons[i]->setChecked(i == chosen);
}

void frmControls::SetShapeStyle(int index)
{
    if (index < 0 || index > 5)
        return;
    m_state.ShapeStyle = index;
    // One value behind three panels: a style chosen on one shows on the others.
    for (GroupId g : {GCmd, GCmd2, GCmd5})
        showStyles(g);
}

void frmControls::SetPencilStyle(int index)
{
    setStyle(GCmd3, index);
}
void frmControls::SetBrightStyle(int index)
{
    setStyle(GCmd4, index);
}
void frmControls::SetDissolveMode(int index)
{
    setStyle(GCmd6, index);
}
void frmControls::SetArrowStyle(int index)
{
    setStyle(GCmd7, index);
}
void frmControls::SetEnhanceMode(int index)
{
    setStyle(GCmd8, index);
}

void frmControls::OptFillStyle_Click(int index)
{
    if (index >= 0 && index < 8)
        m_state.FillPattern = index;
    for (int i = 0; i < 8; ++i)
        if (m_fillStyles[i])
            m_fillStyles[i]->setChecked(i == m_state.FillPattern);
}

void frmControls::SetZoomText(const QString& text)
{
    m_zoomText = text;
    if (m_lblZoom)
        m_lblZoom->setText(text);
}

QString frmControls::zoomText() const
{
    return m_zoomText;
}

void frmControls::SetZoomOption(double zoom)
{
    static const double kZooms[6] = {10, 25, 50, 100, 200, 300};
    m_zoomChoice = zoom;
    for (int i = 0; i < 6; ++i)
        if (m_zoomOptions[i])
            m_zoomOptions[i]->setChecked(zoom == kZooms[i]);
}

void frmControls::ShowCursorPanel(bool visible)
{
    m_cursorShown = visible;
    if (m_cursorPanel)
        m_cursorPanel->setVisible(visible);
}

bool frmControls::cursorPanelVisible() const
{
    return m_cursorShown;
}

void frmControls::SetBlendText(const QString& text)
{
    m_blendText = text;
    showBlend();
}

void frmControls::showBlend()
{
    if (!m_txtBlend)
        return;
    // Called on every pointer move over a selection: a box being typed in keeps its cursor.
    if (m_txtBlend->text() != m_blendText)
        m_txtBlend->setText(m_blendText);
    const int blend = m_state.SelectionBlend;
    const QSignalBlocker block(m_scrllBlend);
    m_scrllBlend->setValue(blend >= 1 && blend <= 255 ? blend : BlendFromPercent(int(Val(m_blendText))));
}

QString frmControls::blendText() const
{
    return m_txtBlend ? m_txtBlend->text() : m_blendText;
}

void frmControls::TxtBlend_Enter()
{
    ensurePanel(0);
    bool ok = false;
    const int percent = m_txtBlend->text().trimmed().toInt(&ok);
    if (!ok || percent < 0 || percent > 100) {
        if (m_prompt)
            m_prompt->MsgBox(tr("Incorrect Blend value! Valid values are 0...100"), vbExclamation,
                             tr("Velunta"));
        // The box goes back to the value in force.
        const int blend = m_state.SelectionBlend;
        m_txtBlend->setText(blend >= 1 && blend <= 255 ? QString::number(BlendPercent(blend))
                                                       : QStringLiteral("50"));
        m_txtBlend->selectAll();
        return;
    }
    m_state.SelectionBlend = BlendFromPercent(percent);
    const QSignalBlocker block(m_scrllBlend);
    m_scrllBlend->setValue(m_state.SelectionBlend);
}

void frmControls::ShowPickedColor(Color c)
{
    m_picked = c;
    if (!m_colorPick)
        return;
    m_colorPick->setColor(c);
    const bool none = c < 0;
    m_rgb[0]->setText(none ? QString() : QString::number(ColorRed(c)));
    m_rgb[1]->setText(none ? QString() : QString::number(ColorGreen(c)));
    m_rgb[2]->setText(none ? QString() : QString::number(ColorBlue(c)));
}

void frmControls::SetTransparencySwatch(Color c)
{
    ensurePanel(0);
    m_transparencyColor->setColor(c);
}

void frmControls::SetReplaceSwatch(int index, Color c)
{
    ensurePanel(17);
    if (index >= 0 && index < 2)
        m_replaceCol[index]->setColor(c);
}

void frmControls::SetAngleText(const QString& text, int alignment)
{
    const Qt::Alignment horizontal = alignment == 1   ? Qt::AlignRight
                                     : alignment == 2 ? Qt::AlignHCenter
                                                      : Qt::AlignLeft;
    m_angleText = text;
    m_angleAlignment = alignment;
    if (!m_lblAngle)
        return;
    m_lblAngle->setAlignment(horizontal | Qt::AlignVCenter);
    m_lblAngle->setText(text);
}

void frmControls::ColorsChanged()
{
    for (FillPatternButton* b : m_fillStyles)
        if (b)
            b->setInk(m_state.ForeColor);
    for (int i = 0; i < 2; ++i)
        if (m_replaceCol[i])
            m_replaceCol[i]->setColor(m_state.ReplaceColors[i]);
    if (m_transparencyColor) {
        m_transparencyColor->setColor(m_state.TransparencyColor);
        m_transparencyColor->setArmed(m_state.TransparencyPickArmed);
    }
    if (m_fontPreview && m_fontPreview->isVisible())
        ShowFontPreview();
}

void frmControls::ClearSelectionOptions()
{
    m_state.BlendSelection = false;
    m_state.TransparentSelection = false;
    for (const char* name : {"chkblendit", "ChkTransparencyColor"})
        if (auto* box = findChild<QCheckBox*>(QString::fromLatin1(name))) {
            const QSignalBlocker block(box);
            box->setChecked(false);
        }
}

QStringList frmControls::operationNames()
{
    return {op::ApplyText,     op::CancelText,  op::ApplySelection, op::CancelSelection, op::Replacecolors,
            op::CancelReplace, op::BlendThePic, op::DoTransparent,  op::PasteBlend,      op::Texturefill,
            op::Bezier,        op::Polygons,    op::PicFrames,      op::DetailEdit};
}

void frmControls::needsOperation(QWidget* control, const QString& operation)
{
    m_operationControls[operation].append(control);
    control->setEnabled(m_available.value(operation, false));
}

void frmControls::setOperationAvailable(const QString& name, bool available)
{
    m_available[name] = available;
    for (QWidget* w : m_operationControls.value(name))
        w->setEnabled(available);
}

} // namespace velunta
