#pragma once
// The tool option strip below the menu bar: one panel per tool (DrawToolbar(n)),
// with the tool's icon and caption and its options. Each control writes the draw
// state through a setter; the tools only read the state.

#include "core/Color.h"

#include <QWidget>

#include <array>

class QHBoxLayout;
class QLabel;
class QStackedWidget;

namespace velunta {

struct DrawState;

class frmControls : public QWidget {
    Q_OBJECT
public:
    explicit frmControls(DrawState& state, QWidget* parent = nullptr);

    // Shows the panel of a tool (SelectTool's step 2).
    void ShowPanel(int tool);
    int shownPanel() const;
    QWidget* DrawToolbar(int tool) const { return m_panels.at(tool); }
    // The area of a panel where its options stand.
    QHBoxLayout* options(int tool) const { return m_options.at(tool); }

    // Applies the tool option values of the draw state to the controls.
    void LoadDrawSettings();

    // Read-outs that follow the document.
    void SetZoomText(const QString& text);
    QString zoomText() const { return m_zoomText; }
    // Marks the zoom option of a zoom percent (10, 25, 50, 100, 200, 300); others clear all.
    void SetZoomOption(double zoom);
    void ShowCursorPanel(bool visible);
    bool cursorPanelVisible() const { return m_cursorPanelVisible; }
    void SetBlendText(const QString& text);
    QString blendText() const { return m_blendText; }
    void ShowPickedColor(Color c);
    // The gradient panel's angle read-out lblAngle: its text and alignment (0 left,
    // 1 right, 2 centred). Nothing happens while the panel has no such label.
    void SetAngleText(const QString& text, int alignment);
    // The working colours changed: colour samples of the panels follow.
    void ColorsChanged();

private:
    DrawState& m_state;
    QStackedWidget* m_stack = nullptr;
    std::array<QWidget*, 20> m_panels{};
    std::array<QHBoxLayout*, 20> m_options{};
    QString m_zoomText = QStringLiteral("100%");
    QString m_blendText = QStringLiteral("50");
    bool m_cursorPanelVisible = false;
};

// The caption of each tool's panel.
QString PanelCaption(int tool);

} // namespace velunta
