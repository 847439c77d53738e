#pragma once
// The Effects Browser: a modal dialog that takes the picture (or the floating
// selection) of the active document, lets the user try one effect at a time with a
// live preview, stack effects with Apply Effect, and writes the result back to the
// document as one undo step.
//
// The pixel work is the effect engine's (effects/fx/EffectEngine.h): the dialog keeps
// the engine's state in step with its controls and asks for a preview after each
// change. Previews never queue up: changes that arrive while one is drawn are folded
// into the next one, so a slider drag shows where the hand is, not where it was.
//
// The dialog is split over several files: the form and its buttons here and in
// frmEffectsBrowser.cpp, the effect table turned into controls (_Effects), the colour
// panel and the transparency colour (_Colors), the text controls (_Text) and the
// menus (_Menus).

#include "core/Surface.h"
#include "effects/fx/EffectEngine.h"

#include <QDialog>

#include <array>

class QAction;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QMenu;
class QMenuBar;
class QScrollBar;
class QSlider;
class QTimer;
class QWidget;

namespace velunta {

class EffectView;
class ImageCommand;
class Prompt;
class SettingsStore;
class zolButton;

// What the browser keeps from one opening to the next while the program runs: the
// engine's state (the chosen colours and font among it) and the once-only flags.
struct EffectsBrowserMemory {
    EffectState state;
    bool FirstActivate = true; // until the browser has opened once
    bool AmbientSeen = false;  // Ambient Light has been chosen
    bool LightSeen = false;    // Light (spot) has been chosen
};

class frmEffectsBrowser : public QDialog {
    Q_OBJECT
public:
    // On `command`'s target: BufferSelected while the selection shows, else Buffer.
    // Update Picture and Exit runs the command; closing otherwise leaves it unrun.
    frmEffectsBrowser(ImageCommand& command, SettingsStore& settings, Prompt& prompt,
                      EffectsBrowserMemory& memory, QWidget* parent = nullptr);
    ~frmEffectsBrowser() override;

    // Choosing an effect by its id (the menu) or by button number k (id 1000 + 10 k).
    void mnuFx_Click(int id);
    void cmdEffect_Click(int k);
    // The Image menu's flips and mirrors: 1300 to 1340.
    void Flip_Click(int id);
    // The Effect menu's ambient light presets, by the preset's index.
    void mnuAmbients_Click(int index);

    void Command2_Click(); // Apply Effect: the result becomes the picture the next effect starts from
    void Command3_Click(); // Undo All: back to the document's picture
    void Command1_Click(); // Update Picture and Exit
    void menuhelpeff_Click();

    // The colour picture: the left button takes the effect colour, the right one the
    // shadow colour, at a point of the picture.
    void ColorSel_MouseDown(int button, int x, int y);
    // Arms the transparency colour picker (imgTransparency, LlbTransparency).
    void imgTransparency_Click();

    // A preview of the current settings, unless Auto Preview is off. It is drawn from
    // the event loop; more requests before then make one preview.
    void ApplyEffect();
    // Draws a requested preview now.
    void RenderPreview();
    bool previewPending() const { return m_pendingRender; }
    // How many previews were drawn.
    int previewCount() const { return m_previews; }

    EffectState& state() { return m_st; }
    Surface& PicSource() { return m_PicSource; }
    Surface& picDest() { return m_picDest; }
    EffectView* view() const { return m_view; }
    bool EffectApplied() const { return m_EffectApplied; }
    bool EffectPending() const { return m_EffectPending; }

    // The menus' entries, by name ("mnuFx(1130)", "mnufliphor", "mnuAmbients(2)", ...).
    QAction* menuAction(const QString& name) const;
    // How big the preview's picture is drawn, and the full picture's size.
    QSize pictureSize() const { return {m_st.PictureWidth, m_st.PictureHeight}; }

    // Closing by any way (Cancel, File > Exit, the close box, Esc) asks first when a
    // change was never applied.
    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    // frmEffectsBrowser.cpp: the form.
    void buildForm();
    QWidget* buildEffectButtons();
    QWidget* buildControls();
    QWidget* buildButtons();
    void paintSchemes();
    void firstActivation();
    void activation();
    void takePicture();
    void syncState();
    // Closing: the copies of the picture go.
    void releasePictures();
    void fitToScreen();

    // frmEffectsBrowser_Effects.cpp: the effect table as controls.
    // The table's effect names and slider captions as the user reads them; the table
    // keeps the English ones, by which the program knows its effects.
    static QString effectName(const char* name);
    static QString sliderCaption(const char* caption);
    void resetControls();
    void applyRow(const EffectRow& row);
    void firstUseColour(int id);
    void HScroll1_Change(int index);
    void rewriteLabels(int changed);
    void positionChanged();

    // frmEffectsBrowser_Colors.cpp: the colour panel and the transparency colour.
    QWidget* buildColorPanel();
    QWidget* buildTransparency();
    void HScrollc2_Change();
    void RGBValues_Change();
    void showColor(QLabel* swatch, Color c);
    void showEffectColor();
    void transparencyPicked(QPointF point, Qt::MouseButton button);

    // frmEffectsBrowser_Text.cpp: the text controls.
    QWidget* buildTextControls();
    void textStyleChanged();
    void Text1_Enter();

    // frmEffectsBrowser_Menus.cpp: the menu bar.
    void buildMenus();

    ImageCommand& m_command;
    SettingsStore& m_settings;
    Prompt& m_prompt;
    EffectsBrowserMemory& m_memory;
    EffectState& m_st;

    Surface m_PicSource;
    Surface m_picDest;
    Surface m_picSrc; // the window's colour, blended in by Alpha Blending

    bool m_EffectApplied = false;
    bool m_EffectPending = false;
    int LastOption = 3;
    int OptionZoom = 0;
    Color FrameColor = 0;
    Color FormColor = 0;
    bool m_activated = false;

    bool m_pendingRender = false;
    bool m_rendering = false;
    int m_previews = 0;
    QTimer* m_renderTimer = nullptr;

    QMenuBar* m_menuBar = nullptr;
    QMenu* m_menuFx = nullptr;
    std::array<zolButton*, 29> m_cmdEffect{};
    EffectView* m_view = nullptr;
    QLabel* m_Label1 = nullptr;
    QLabel* m_Label9 = nullptr;
    std::array<QSlider*, 6> m_HScroll1{};
    std::array<QLabel*, 6> m_sliderLabel{}; // Label2, Label3, Label4, Label10, Label11, Label12
    QScrollBar* m_HScrollT = nullptr;
    QScrollBar* m_VScrollT = nullptr;
    QScrollBar* m_HScroll2 = nullptr;
    QScrollBar* m_VScroll2 = nullptr;
    QWidget* m_positionBars = nullptr;
    QWidget* m_renderOffset = nullptr;

    QGroupBox* m_frmColorEff = nullptr;
    std::array<QSlider*, 3> m_HScrollc2{};
    std::array<QLineEdit*, 3> m_RGBValues{};
    QLabel* m_Picturec1 = nullptr;
    QLabel* m_ColorSel = nullptr;
    QImage m_colorPicture;

    QWidget* m_transparency = nullptr;
    QLabel* m_imgTransparency = nullptr;
    QLabel* m_LlbTransparency = nullptr;
    QLabel* m_LblTransparencyColor = nullptr;

    QLineEdit* m_Text1 = nullptr;
    QComboBox* m_Combo1 = nullptr;
    zolButton* m_Check1 = nullptr;
    zolButton* m_Check2 = nullptr;
    zolButton* m_Check3 = nullptr;
    QCheckBox* m_Check4 = nullptr;
    QCheckBox* m_chkText3d = nullptr;
    QWidget* m_textStyle = nullptr;
    QWidget* m_picTrnsText = nullptr;

    QCheckBox* m_ChkPreview = nullptr;
    zolButton* m_Chkzoom = nullptr;
    QLabel* m_picSrcSwatch = nullptr;
    zolButton* m_Command1 = nullptr;
    zolButton* m_Command2 = nullptr;
    zolButton* m_Command3 = nullptr;
    zolButton* m_Command4 = nullptr;
};

} // namespace velunta
