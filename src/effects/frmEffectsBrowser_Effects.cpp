// The effect table turned into the browser's controls: choosing an effect shows its
// sliders with their captions, ranges and values and the groups it needs; moving a
// slider rewrites the captions in the effect's own format; the flips, mirrors and
// ambient presets of the menus.

#include "effects/frmEffectsBrowser.h"

#include "core/Numbers.h"
#include "effects/EffectView.h"
#include "effects/fx/FxOnPicture.h"
#include "widgets/zolButton.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QSlider>

namespace velunta {

namespace {

constexpr Color kButtonsOff = 16574424;             // every effect button once one is chosen
constexpr Color kButtonChosen = RGB(200, 150, 255); // the chosen one

// How a slider's caption reads for an effect: the label (0..5 for Label2, Label3,
// Label4, Label10, Label11, Label12), its text, the slider it shows, and a divisor
// (a value of 100 shows 1 for "Gamma: ", say). `whole` divides in integers.
struct LabelFormat {
    int id;
    int label;
    const char* text;
    int slider;
    int divisor = 1;
    bool whole = false;
};

const LabelFormat kLabelFormats[] = {
    {1000, 0, QT_TRANSLATE_NOOP("EffectSliders", "Blending: "), 0},
    {1010, 0, QT_TRANSLATE_NOOP("EffectSliders", "Intensity: "), 0},
    {1030, 0, QT_TRANSLATE_NOOP("EffectSliders", "Brightness: "), 0},
    {1040, 0, QT_TRANSLATE_NOOP("EffectSliders", "Text size: "), 0},
    {1040, 3, QT_TRANSLATE_NOOP("EffectSliders", "Transparency: "), 3},
    {1040, 4, QT_TRANSLATE_NOOP("EffectSliders", "Widen: "), 4},
    {1040, 5, QT_TRANSLATE_NOOP("EffectSliders", "Rotate: "), 5, 10, true},
    {1050, 0, QT_TRANSLATE_NOOP("EffectSliders", "Depth: "), 0},
    {1060, 0, QT_TRANSLATE_NOOP("EffectSliders", "Height: "), 0},
    {1070, 0, QT_TRANSLATE_NOOP("EffectSliders", "Gamma: "), 0, 100},
    {1090, 0, QT_TRANSLATE_NOOP("EffectSliders", "Transparency: "), 0},
    {1090, 1, QT_TRANSLATE_NOOP("EffectSliders", "Size: "), 1},
    {1100, 0, QT_TRANSLATE_NOOP("EffectSliders", "Hue: "), 0, 100},
    {1110, 0, QT_TRANSLATE_NOOP("EffectSliders", "Inversion: "), 0},
    {1130, 0, QT_TRANSLATE_NOOP("EffectSliders", "Intensity: "), 0},
    {1130, 1, QT_TRANSLATE_NOOP("EffectSliders", "Definition: "), 1},
    {1130, 2, QT_TRANSLATE_NOOP("EffectSliders", "Aperture: "), 2},
    {1140, 0, QT_TRANSLATE_NOOP("EffectSliders", "Size: "), 0},
    {1150, 0, QT_TRANSLATE_NOOP("EffectSliders", "Level: "), 0},
    {1170, 0, QT_TRANSLATE_NOOP("EffectSliders", "Angle: "), 0},
    {1170, 1, QT_TRANSLATE_NOOP("EffectSliders", "Zoom: "), 1, 100},
    {1170, 2, QT_TRANSLATE_NOOP("EffectSliders", "Blending: "), 2},
    {1180, 0, QT_TRANSLATE_NOOP("EffectSliders", "AntiAlias: "), 0},
    {1190, 0, QT_TRANSLATE_NOOP("EffectSliders", "Similarity: "), 0},
    {1200, 0, QT_TRANSLATE_NOOP("EffectSliders", "Angle: "), 0},
    {1210, 0, QT_TRANSLATE_NOOP("EffectSliders", "Saturation: "), 0},
    {1220, 0, QT_TRANSLATE_NOOP("EffectSliders", "Transparency: "), 0},
    {1220, 1, QT_TRANSLATE_NOOP("EffectSliders", "Size: "), 1},
    {1240, 0, QT_TRANSLATE_NOOP("EffectSliders", "Text size: "), 0},
    {1250, 0, QT_TRANSLATE_NOOP("EffectSliders", "Tone: "), 0},
    {1260, 0, QT_TRANSLATE_NOOP("EffectSliders", "Zoom: "), 0, 100},
};

// An effect without a row of its own (Scroll, Brass Plate) only resets the controls
// and leaves the rest, the colour panel among it, as it stood.
bool hasNoRow(const EffectRow& row)
{
    return row.sliders[0].kind == SliderRow::Unchanged && !row.sliders[0].label;
}

} // namespace

QString frmEffectsBrowser::effectName(const char* name)
{
    return QCoreApplication::translate("Effects", name);
}

QString frmEffectsBrowser::sliderCaption(const char* caption)
{
    return QCoreApplication::translate("EffectSliders", caption);
}

void frmEffectsBrowser::resetControls()
{
    for (QWidget* w : {static_cast<QWidget*>(m_Text1), static_cast<QWidget*>(m_Combo1)}) {
        w->setEnabled(false);
        w->hide();
    }
    m_textStyle->hide();
    m_transparency->hide();
    m_positionBars->hide();
    m_renderOffset->hide();
    m_picTrnsText->hide();
    m_view->setPicking(false);
    for (int i = 1; i <= 2; ++i) {
        QSlider* s = m_HScroll1[size_t(i)];
        s->setValue(0);
        s->setEnabled(false);
        s->show();
    }
    m_chkText3d->setText(tr("3D-Shadow"));
    m_chkText3d->setToolTip(tr("3D Shadow (right-click mousebutton for in Color Palet for shadow color)"));
    m_ColorSel->setToolTip(tr("click to select color "));
}

void frmEffectsBrowser::cmdEffect_Click(int k)
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    mnuFx_Click(1000 + 10 * k);
    QApplication::restoreOverrideCursor();
}

void frmEffectsBrowser::mnuFx_Click(int id)
{
    const EffectRow* row = FindEffect(id);
    if (!row || !row->menuCaption)
        return;
    m_Command2->setEnabled(true);
    resetControls();
    for (QAction* a : m_menuFx->actions())
        a->setChecked(false);
    for (zolButton* b : m_cmdEffect)
        b->setBackColor(kButtonsOff);
    const int k = (id - 1000) / 10;
    m_cmdEffect[size_t(k)]->setBackColor(kButtonChosen);
    if (QAction* entry = menuAction(QStringLiteral("mnuFx(%1)").arg(id)))
        entry->setChecked(true);
    m_st.EffectId = id;
    m_Label1->setText(effectName(row->menuCaption));
    m_EffectPending = true;
    applyRow(*row);
    for (int i = 1; i <= 2; ++i) {
        QLabel* label = m_sliderLabel[size_t(i)];
        const QSlider* s = m_HScroll1[size_t(i)];
        const bool unused = !s->isEnabled() && !s->isHidden();
        label->setEnabled(!unused);
        if (unused)
            label->setText(sliderCaption(QT_TRANSLATE_NOOP("EffectSliders", "N/a")));
    }
    ApplyEffect();
    RenderPreview();
}

void frmEffectsBrowser::applyRow(const EffectRow& row)
{
    const unsigned extras = row.extras;
    if (extras & ColourPanel)
        m_frmColorEff->show();
    else if (!hasNoRow(row))
        m_frmColorEff->hide();
    if (extras & TransparentTextGroup) {
        m_picTrnsText->show();
        m_chkText3d->setText(tr("Soften"));
        m_chkText3d->setToolTip(tr("Soften edges"));
    }
    for (int i = 0; i < 6; ++i) {
        const SliderRow& s = row.sliders[i];
        QSlider* slider = m_HScroll1[size_t(i)];
        QLabel* label = m_sliderLabel[size_t(i)];
        if (s.kind != SliderRow::Reset && s.label)
            label->setText(sliderCaption(s.label));
        switch (s.kind) {
        case SliderRow::Reset:
            if (i == 0) // an effect with nothing to set leaves no slider usable
                slider->setEnabled(false);
            break;
        case SliderRow::Set:
            // A new value runs the slider's handler, which writes the caption anew.
            slider->setEnabled(true);
            slider->setRange(s.min, s.max);
            slider->setValue(s.value);
            slider->show();
            break;
        case SliderRow::Disabled:
            slider->setEnabled(false);
            break;
        case SliderRow::Unchanged:
            break;
        case SliderRow::Hidden:
            slider->hide();
            break;
        }
    }
    if (extras & TextGroup) {
        for (QWidget* w : {static_cast<QWidget*>(m_Text1), static_cast<QWidget*>(m_Combo1)}) {
            w->setEnabled(true);
            w->show();
        }
        m_textStyle->show();
        if (row.id == 1240) {
            m_ColorSel->setToolTip(tr("click to select color (right-click for shadow color)"));
            m_HScrollT->setValue(0);
            m_VScrollT->setValue(0);
        }
        m_positionBars->show();
        m_Text1->setFocus();
    }
    if (extras & PositionBars) {
        m_HScrollT->setValue(m_st.OffsetX);
        m_VScrollT->setValue(m_st.OffsetY);
        m_positionBars->show();
    }
    if (extras & TransparencyPick)
        m_transparency->show();
    if (extras & RenderOffset) {
        m_HScroll2->setValue(0);
        m_VScroll2->setValue(0);
        m_renderOffset->show();
    }
    if (extras & FirstUseColour)
        firstUseColour(row.id);
}

void frmEffectsBrowser::firstUseColour(int id)
{
    // The first time a light is chosen over a black colour it starts with a colour
    // that shows: an orange for the ambient light, white for the spot light.
    bool& seen = id == 1010 ? m_memory.AmbientSeen : m_memory.LightSeen;
    if (seen)
        return;
    seen = true;
    if (m_st.EffectColor != 0)
        return;
    if (id == 1010) {
        m_st.EffectColor = 16711680;
        m_HScrollc2[0]->setValue(255);
        m_HScrollc2[1]->setValue(200);
    } else {
        m_st.EffectColor = 16777215;
        for (QSlider* s : m_HScrollc2)
            s->setValue(255);
    }
}

void frmEffectsBrowser::HScroll1_Change(int)
{
    rewriteLabels(m_st.EffectId);
    m_EffectPending = true;
    ApplyEffect();
}

void frmEffectsBrowser::rewriteLabels(int id)
{
    for (const LabelFormat& f : kLabelFormats) {
        if (f.id != id)
            continue;
        const int v = m_HScroll1[size_t(f.slider)]->value();
        const QString shown = f.whole ? QString::number(v / f.divisor) : NumberText(double(v) / f.divisor);
        m_sliderLabel[size_t(f.label)]->setText(sliderCaption(f.text) + shown);
    }
}

void frmEffectsBrowser::positionChanged()
{
    m_EffectPending = true;
    ApplyEffect();
}

void frmEffectsBrowser::Flip_Click(int id)
{
    m_st.EffectId = id;
    m_EffectPending = true;
    ApplyEffect();
    RenderPreview();
    m_Command2->setEnabled(true);
}

void frmEffectsBrowser::mnuAmbients_Click(int index)
{
    const AmbientPreset* preset = AmbientPresetAt(index);
    if (!preset || !preset->browserCaption)
        return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    m_Command2->setEnabled(true);
    Command3_Click();
    // Painted at once on the work surface: there is no engine run behind it.
    PaintAmbientPreset(m_picDest, WholeOf(m_picDest), *preset);
    m_view->refresh();
    QApplication::restoreOverrideCursor();
}

} // namespace velunta
