#pragma once
// The tool option strip below the menu bar: one panel per tool (DrawToolbar(n)),
// with the tool's icon and caption and its options. Each control writes the draw
// state through a setter; the tools only read the state.
//
// A panel's options are made when the panel is first shown (or a control of it is
// asked for by name), so the window opens with only the chosen tool's. What the
// setters show is kept, and a panel made later shows it too.
//
// Controls whose action is an operation of another part of the program (applying
// text, replacing colours, blending the selection, the texture and frame dialogs...)
// ask for it by name through operationRequested() and stay disabled until the main
// window says, through setOperationAvailable(), that the operation exists.

#include "core/Color.h"
#include "document/Tool.h"

#include <QHash>
#include <QPointer>
#include <QWidget>

#include <array>
#include <functional>
#include <vector>

class QAbstractButton;
class QCheckBox;
class QGridLayout;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QComboBox;
class QScrollBar;
class QStackedWidget;

namespace velunta {

class BoxLabel;
class ColorSwatch;
class Document;
class FillPatternButton;
class PickList;
class Prompt;
class ReadoutLabel;
class frmFontStyle;
class frmFonts;
class frmSelector;
class zolButton;
struct DrawState;

// Names of the operations the panels ask for.
namespace op {
inline const QString ApplyText = QStringLiteral("ApplyText");             // CmdButton(0)
inline const QString CancelText = QStringLiteral("CancelText");           // CmdButton(1)
inline const QString ApplySelection = QStringLiteral("ApplySelection");   // CmdButton(2)
inline const QString CancelSelection = QStringLiteral("CancelSelection"); // CmdButton(3)
inline const QString Replacecolors = QStringLiteral("Replacecolors");     // CmdButton(4)
inline const QString CancelReplace = QStringLiteral("CancelReplace");     // CmdButton(5)
inline const QString BlendThePic = QStringLiteral("BlendThePic");         // chkblendit
inline const QString DoTransparent =
    QStringLiteral("DoTransparent"); // ChkTransparencyColor, LblTransparencyColor
inline const QString PasteBlend = QStringLiteral("mnuPasteBlend");   // imgBlendfile
inline const QString Texturefill = QStringLiteral("mnuTexturefill"); // Image3
inline const QString Bezier = QStringLiteral("mnuBezier");           // Image4
inline const QString Polygons = QStringLiteral("mnuPolygons");       // Image5
inline const QString PicFrames = QStringLiteral("mnuPicFrames");     // Image6
inline const QString DetailEdit = QStringLiteral("mnudetailedit");   // cmdDetailEdit
} // namespace op

class frmControls : public QWidget {
    Q_OBJECT
public:
    explicit frmControls(DrawState& state, QWidget* parent = nullptr);
    ~frmControls() override;

    // Shows the panel of a tool (SelectTool's step 2); open pop-ups close.
    void ShowPanel(int tool);
    int shownPanel() const;
    // A tool's panel, with its options made.
    QWidget* DrawToolbar(int tool);
    bool panelBuilt(int tool) const { return tool >= 0 && tool < kToolCount && m_built[tool]; }

    // Applies the tool option values of the draw state to the controls: selector
    // values (brought into their ranges) and captions, the text fields, the check
    // boxes, the pressed style buttons and the font labels.
    void LoadDrawSettings();

    // Read-outs that follow the document.
    void SetZoomText(const QString& text);
    QString zoomText() const;
    // Marks the zoom option of a zoom percent (10, 25, 50, 100, 200, 300); others clear all.
    void SetZoomOption(double zoom);
    void ShowCursorPanel(bool visible);
    bool cursorPanelVisible() const;
    // TxtBlend's text; the bar follows SelectionBlend.
    void SetBlendText(const QString& text);
    QString blendText() const;
    // ColorPick and lblRed, lblGreen, lblBlue.
    void ShowPickedColor(Color c);
    // The gradient panel's angle read-out lblAngle: its text and alignment (0 left,
    // 1 right, 2 centred). Nothing happens while the panel has no such label.
    void SetAngleText(const QString& text, int alignment = 0);
    // The working colours changed: colour samples of the panels follow.
    void ColorsChanged();
    // The picker's read-outs (ColorPick and lblRed, lblGreen, lblBlue), the transparency
    // swatch (LblTransparencyColor) and the replacer's swatches (LblReplaceCol(0), (1)).
    // Each finds its control by name and does nothing while the panel has none.
    void SetTransparencySwatch(Color c);
    void SetReplaceSwatch(int index, Color c);

    // What the strip needs from the main window.
    void setPrompt(Prompt* prompt) { m_prompt = prompt; }
    void setDocumentSource(std::function<Document*()> source) { m_documentSource = std::move(source); }
    Document* activeDocument() const { return m_documentSource ? m_documentSource() : nullptr; }
    // The widget the pop-ups float in; the main window unless set.
    void setPopupHost(QWidget* host) { m_popupHost = host; }

    // The style setters: the group's old button shows flat, the new one pressed.
    // ShapeStyle is one value for the Cmd, Cmd2 and Cmd5 buttons of three panels.
    void SetShapeStyle(int index);
    void SetPencilStyle(int index);
    void SetBrightStyle(int index);
    void SetDissolveMode(int index);
    void SetArrowStyle(int index);
    void SetEnhanceMode(int index);
    void OptFillStyle_Click(int index);

    // The selectors' drop-downs and the slider.
    void ClickDropDown(int index);
    void UnClickButton();
    void DrawButton(int index, bool pressed);
    // The selector whose slider is open, or -1.
    int droppedDown() const;
    frmSelector* selector();
    // lblSelector(i)'s caption and the draw state's copy of it.
    void SetSelectorCaption(int index, const QString& caption);
    // The text size (SelectorValues(7)) reaches the active document's font.
    void ApplyTextSize();

    // The font pickers under CmdFont and CmdFontStyle: each call opens or closes.
    void ShowHideFonts();
    void ShowHideFontStyle();
    frmFonts* fonts();
    frmFontStyle* fontStyles();
    void SetFontName(const QString& name);
    void SetFontStyle(const QString& style);
    // The text tool's font preview: a sample in the chosen font and style, in the
    // working colours.
    void ShowFontPreview();
    QLabel* fontPreview() const;

    // TxtBlend's Enter: a value of 0 to 100 sets the blend; anything else is refused
    // with a message and changes nothing.
    void TxtBlend_Enter();

    // The float's blend and transparent colour options off, their boxes cleared.
    void ClearSelectionOptions();

    // Controls waiting for an operation are enabled once it exists.
    void setOperationAvailable(const QString& name, bool available);
    bool operationAvailable(const QString& name) const { return m_available.value(name, false); }
    // Every operation a panel asks for, made or not.
    static QStringList operationNames();

    // A control by its name in the program ("lblSelector(4)", "Cmd2(3)", "chkRan"); a
    // name not found among the panels made so far makes them all.
    template <class T = QWidget> T* control(const QString& name)
    {
        if (T* found = findChild<T*>(name))
            return found;
        buildAll();
        return findChild<T*>(name);
    }
    QLabel* lblSelector(int index);
    QAbstractButton* CmdDropDown(int index);

Q_SIGNALS:
    // A control asks for an operation of the main window by name (see op::).
    void operationRequested(const QString& name);
    // optZoomss: a preset zoom for the active document.
    void zoomRequested(double zoom);
    void fitWindowRequested();
    // ToolIcon(n) was clicked.
    void toolIconClicked(int tool);
    void removeAreaRequested();
    // The font name, style or size of the text tool changed.
    void textFontChanged();
    // The float's options: a check box turned on or off, the blend moved, the
    // transparent colour's swatch clicked (the pick is armed).
    void selectionOptionsChanged();
    void selectionBlendChanged();
    void transparencyPickRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // One group of style buttons and the draw state field it shows.
    struct StyleGroup {
        QString name;
        int DrawState::*field;
        void (frmControls::*setter)(int);
        std::vector<QAbstractButton*> buttons;
    };
    enum GroupId { GCmd3, GCmd, GCmd2, GCmd5, GCmd4, GCmd6, GCmd7, GCmd8, GroupCount };

    // Building (frmControls_Build.cpp, frmControls_Panels.cpp).
    void ensurePanel(int tool);
    void buildAll();
    void buildPanel(int tool);
    void buildCursorPanel();
    void buildPencilPanel();
    void buildZoomPanel();
    void buildFillPanel();
    void buildPickerPanel();
    void buildTextPanel();
    void buildLinePanel();
    void build3DPanel();
    void buildReplacePanel();
    void buildDissolvePanel();
    void buildEnhancePanel();
    // Puts what the draw state and the setters hold on the controls made so far.
    void refreshWidgets();
    void showFontLabels();
    void showBlend();
    // A column of one or two rows, each a caption and a control; a single row stands centred.
    struct Row {
        QString caption;
        QWidget* control;
    };
    void addColumn(int tool, std::initializer_list<Row> rows);
    QGridLayout* newColumn(int tool);
    // A caption above a control.
    void addStacked(int tool, const QString& caption, QWidget* control);
    QWidget* selectorBox(int tool, int index);
    QWidget* styleRow(int tool, GroupId group, int from, int to);
    QCheckBox* checkBox(int tool, const QString& name, const QString& caption, const QString& tip,
                        bool DrawState::*field);
    // Two option buttons name(0) and name(1); the second one sets the flag.
    void optionPair(int tool, const QString& name, const std::array<QString, 2>& captions,
                    const std::array<QString, 2>& tips, bool DrawState::*field,
                    std::array<zolButton*, 2>& options);
    QLineEdit* textBox(int tool, const QString& name, const QString& tip, QString DrawState::*field);
    QAbstractButton* operationButton(int tool, const QString& name, const QString& caption,
                                     const QString& tip, const QString& operation,
                                     const QString& icon = QString());
    void needsOperation(QWidget* control, const QString& operation);

    void setStyle(GroupId group, int index);
    void showStyles(GroupId group);
    void closePopups();
    // Opens a list under its button, or closes it when it is open.
    void toggleList(PickList* list, QAbstractButton* opener, const QString& current);
    // Creates a font list on first use; a pick goes through `apply`.
    template <class List> List* pickList(QPointer<List>& list, void (frmControls::*apply)(const QString&));
    QWidget* popupHost();
    void watchOutsideClicks();

    DrawState& m_state;
    Prompt* m_prompt = nullptr;
    std::function<Document*()> m_documentSource;
    QPointer<QWidget> m_popupHost;
    QStackedWidget* m_stack = nullptr;
    std::array<QWidget*, kToolCount> m_panels{};
    std::array<bool, kToolCount> m_built{};
    std::array<QHBoxLayout*, kToolCount> m_options{};
    std::array<StyleGroup, GroupCount> m_groups;
    std::array<QLabel*, 16> m_lblSelector{};
    std::array<QAbstractButton*, 16> m_dropDown{};
    std::array<FillPatternButton*, 8> m_fillStyles{};
    std::array<zolButton*, 6> m_zoomOptions{};
    std::array<zolButton*, 2> m_noise{};
    std::array<zolButton*, 2> m_step{};
    std::array<QLabel*, 3> m_rgb{};
    std::array<ColorSwatch*, 2> m_replaceCol{};
    QWidget* m_cursorPanel = nullptr;
    QLabel* m_lblZoom = nullptr;
    QLabel* m_lblAngle = nullptr;
    QLabel* m_lblFont = nullptr;
    QLabel* m_lblFontStyle = nullptr;
    BoxLabel* m_fontPreview = nullptr;
    QAbstractButton* m_cmdFont = nullptr;
    QAbstractButton* m_cmdFontStyle = nullptr;
    QLineEdit* m_txtBlend = nullptr;
    QScrollBar* m_scrllBlend = nullptr;
    ColorSwatch* m_colorPick = nullptr;
    ColorSwatch* m_transparencyColor = nullptr;
    QComboBox* m_cmb3Dsize = nullptr;
    std::vector<std::function<void()>> m_loaders; // each puts one control back to its state field
    // What the setters were told, for panels made later.
    QString m_zoomText = QStringLiteral("100%");
    double m_zoomChoice = -1;
    QString m_angleText;
    int m_angleAlignment = 1;
    Color m_picked = kNoColor;
    bool m_cursorShown = false;
    QString m_blendText = QStringLiteral("50");
    int m_dropped = -1;
    // The pop-ups are children of the main window, which may delete them first.
    QPointer<frmSelector> m_selector;
    QPointer<frmFonts> m_fonts;
    QPointer<frmFontStyle> m_fontStyles;
    bool m_watching = false;
    QHash<QString, QList<QWidget*>> m_operationControls;
    QHash<QString, bool> m_available;
    int m_captionWidth = 0;
};

// The caption of each tool's panel.
QString PanelCaption(int tool);

} // namespace velunta
