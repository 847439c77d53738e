#include "tools/frmControls.h"

#include "tools/DrawState.h"
#include "widgets/Icons.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QStackedWidget>

namespace velunta {

QString PanelCaption(int tool)
{
    static const char* const kCaptions[20] = {"Cursor",         "Pencil",       "Zoom",           "Fill",
                                              "Gradient",       "Select Area",  "Air Brush",      "Crop",
                                              "Color Picker",   "Rectangle",    "Circles",        "Brighten Brush",
                                              "Text",           "Blur/Soften Brush", "Lines",     "Darken Brush",
                                              "3D Rectangles",  "Color replacer", "Dissolve",     "Enhance"};
    return tool >= 0 && tool < 20 ? QString::fromLatin1(kCaptions[tool]) : QString();
}

frmControls::frmControls(DrawState& state, QWidget* parent) : QWidget(parent), m_state(state)
{
    setObjectName(QStringLiteral("frmControls"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_stack = new QStackedWidget(this);
    layout->addWidget(m_stack);
    setFixedHeight(52);
    for (int i = 0; i < 20; ++i) {
        auto* panel = new QWidget(m_stack);
        panel->setObjectName(QStringLiteral("DrawToolbar(%1)").arg(i));
        auto* row = new QHBoxLayout(panel);
        row->setContentsMargins(6, 2, 6, 2);
        row->setSpacing(6);
        auto* icon = new QLabel(panel);
        icon->setObjectName(QStringLiteral("ToolIcon(%1)").arg(i));
        icon->setPixmap(ToolIcon(i).pixmap(QSize(24, 24), devicePixelRatioF()));
        row->addWidget(icon);
        auto* caption = new QLabel(PanelCaption(i), panel);
        QFont bold = caption->font();
        bold.setBold(true);
        caption->setFont(bold);
        row->addWidget(caption);
        auto* options = new QHBoxLayout;
        options->setSpacing(6);
        row->addLayout(options);
        row->addStretch(1);
        m_panels[i] = panel;
        m_options[i] = options;
        m_stack->addWidget(panel);
    }
}

void frmControls::ShowPanel(int tool)
{
    if (tool >= 0 && tool < 20)
        m_stack->setCurrentIndex(tool);
}

int frmControls::shownPanel() const { return m_stack->currentIndex(); }

void frmControls::LoadDrawSettings() {}

void frmControls::SetZoomText(const QString& text) { m_zoomText = text; }

void frmControls::SetZoomOption(double) {}

void frmControls::ShowCursorPanel(bool visible) { m_cursorPanelVisible = visible; }

void frmControls::SetBlendText(const QString& text) { m_blendText = text; }

void frmControls::ShowPickedColor(Color) {}

void frmControls::ColorsChanged() {}

} // namespace velunta
