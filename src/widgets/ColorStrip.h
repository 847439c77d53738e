#pragma once
// The colour strip of the main window's right bar: the two working colours and every
// way of choosing them. The colours themselves live in the caller's draw state (the
// three fields are handed in by reference); the strip changes them and says so with
// colorsChanged(), on which the caller brings the documents and tool panels along.

#include "core/Color.h"
#include "widgets/ColorMath.h"
#include "widgets/frmColor.h"

#include <QPointer>

#include <QWidget>

#include <array>

class QLabel;
class QLineEdit;
class QToolButton;
class QPushButton;

namespace velunta {

class ColorSample;
class ColorSlider;
class PickStrip;
class SwatchGrid;

class ColorStrip : public QWidget {
    Q_OBJECT
public:
    // foreColor is SelColor(0), backColor SelColor(1), selIndex SelIndex.
    ColorStrip(Color& foreColor, Color& backColor, int& selIndex, QWidget* parent = nullptr);
    ~ColorStrip() override;

    Color SelColor(int index) const { return index == 0 ? m_fore : m_back; }
    int GetSelectedColor() const { return m_selIndex; }

    // Sliders, text boxes and the colour being edited brought in line (see SliderDrag).
    void SetColorBars();
    void DrawSelectedGradient();
    // Everything shown redrawn from the draw state, after someone else changed it.
    void refresh();

    // The ways of choosing, by event.
    void RestoreColors_Click();
    void ShiftColors_Click();
    void SelColor_MouseDown(int index, int button);
    void ImgStrip_MouseDown(Color c, int button); // ImgColor, ImgGrays, also while dragging
    void ImgGrays_DblClick();
    void Image2_Click(int index);
    void MSColors_MouseUp(int index, int button);
    void PicUserColors_MouseDown(int index, int button);
    void PicUserColors_MouseUp(int index, int button);
    void PicUserColors_DblClick(int index);
    void PicUserColors_Drop(int index, Color c);
    void lblcolorvalue_DblClick(QLabel* label);

    // User colours and their file.
    void setUserColorsFile(const QString& path) { m_userColorsFile = path; }
    void LoadUserColors();
    Color UserColor(int index) const;

    // PicPalette(1): the fixed swatches and the user colours.
    QVector<Color> palette() const;

    // Easy Mode hides the numbers.
    void setKidsMode(bool on);
    // The palette button follows whether there is a picture to change.
    void setPaletteEnabled(bool on);

    // The colour dialog opened modeless from a swatch (null while none is open).
    frmColor* openDialog() const { return m_dialog.data(); }

    // State of the strip, by its program names.
    bool SliderDrag = false;
    Color SavedColor = 0;
    int ColorDialogTarget = 0;
    Color ColorDialogResult = kNoColor;

    // Named parts.
    ColorSample* SelColorSample(int i) const { return m_selColor[i]; }
    ColorSample* ColorBlend(int i) const { return m_colorBlend[i]; }
    QToolButton* Image2(int i) const { return m_image2[i]; }
    SwatchGrid* MSColors() const { return m_msColors; }
    SwatchGrid* PicUserColors() const { return m_userColors; }
    PickStrip* ImgColor() const { return m_imgColor; }
    PickStrip* ImgGrays() const { return m_imgGrays; }
    PickStrip* Gradient() const { return m_gradient; }
    ColorSlider* ColorBar(int k) const { return m_bar[k]; }
    QLineEdit* lblcolor(int k) const { return m_box[k]; }
    QLabel* lblcolorvalue() const { return m_value; }
    QLabel* lblcolorvalue2() const { return m_html; }
    QToolButton* RestoreColors() const { return m_restore; }
    QToolButton* ShiftColors() const { return m_shift; }
    QPushButton* PaletteButton() const { return m_paletteButton; }

Q_SIGNALS:
    // The working colours may have changed: ApplyColors and the tool panels follow.
    void colorsChanged();
    // "Use only the strip's colours" was asked for.
    void reduceToPaletteRequested();
    // UserColors.ini could not be written (a full disk, a read-only folder).
    void userColorsNotSaved(const QString& path, const QString& reason);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void build();
    QWidget* buildWorkingColors();
    QWidget* buildSliders();
    void setSel(int index, Color c) { (index == 0 ? m_fore : m_back) = c; }
    // A colour chosen for SelColor(selIndex), which the sliders then edit.
    void choose(int selIndex, Color c);
    // The usual chain after a colour was chosen: gradient, documents, sliders.
    void chosen();
    void lblcolor_Change();
    void lblcolor_KeyUp();
    void showReadouts();
    void showSwatches();
    void placeThumbs(const std::array<int, 3>& values);
    void openModeless();
    void dialogFinished(int result);

    Color& m_fore;
    Color& m_back;
    int& m_selIndex;
    QString m_userColorsFile;
    bool m_inChange = false;

    ColorSample* m_selColor[2] = {};
    ColorSample* m_colorBlend[2] = {};
    QToolButton* m_image2[2] = {};
    QToolButton* m_restore = nullptr;
    QToolButton* m_shift = nullptr;
    SwatchGrid* m_msColors = nullptr;
    SwatchGrid* m_userColors = nullptr;
    PickStrip* m_imgColor = nullptr;
    PickStrip* m_imgGrays = nullptr;
    PickStrip* m_gradient = nullptr;
    std::array<ColorSlider*, 3> m_bar{};
    std::array<QLineEdit*, 3> m_box{};
    QLabel* m_valueLabel = nullptr;
    QLabel* m_value = nullptr;
    QLabel* m_htmlLabel = nullptr;
    QLabel* m_html = nullptr;
    QPushButton* m_paletteButton = nullptr;
    QPointer<frmColor> m_dialog;
};

} // namespace velunta
