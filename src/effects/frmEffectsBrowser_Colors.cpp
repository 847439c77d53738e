// The colour panel "Color Selection" (frmColorEff): red, green and blue sliders with
// their boxes, the sample and the colour picture; and the transparency colour that
// Render, Rotate and Zoom leave out, picked from the preview.

#include "effects/frmEffectsBrowser.h"

#include "core/Gdi.h"
#include "core/Numbers.h"
#include "effects/EffectView.h"
#include "effects/fx/Fx.h"
#include "widgets/ColorMath.h"
#include "widgets/Icons.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QSlider>

#include <cmath>

namespace velunta {

namespace {

constexpr int kColorPictureSize = 76;

// Forwards presses on a label to a function.
class PressFilter : public QObject {
public:
    PressFilter(QObject* parent, std::function<void(QMouseEvent*)> onPress)
        : QObject(parent), m_onPress(std::move(onPress))
    {
    }
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() != QEvent::MouseButtonPress)
            return false;
        m_onPress(static_cast<QMouseEvent*>(event));
        return true;
    }

private:
    std::function<void(QMouseEvent*)> m_onPress;
};

} // namespace

QWidget* frmEffectsBrowser::buildColorPanel()
{
    m_frmColorEff = new QGroupBox(tr("Color Selection"), this);
    m_frmColorEff->setObjectName(QStringLiteral("frmColorEff"));
    auto* grid = new QGridLayout(m_frmColorEff);
    grid->setContentsMargins(6, 4, 6, 6);
    grid->setVerticalSpacing(2);
    const QString names[3] = {tr("R"), tr("G"), tr("B")};
    for (int i = 0; i < 3; ++i) {
        auto* slider = new QSlider(Qt::Horizontal, m_frmColorEff);
        slider->setObjectName(QStringLiteral("HScrollc2(%1)").arg(i));
        slider->setRange(0, 255);
        auto* box = new QLineEdit(m_frmColorEff);
        box->setObjectName(QStringLiteral("RGBValues(%1)").arg(i));
        box->setMaxLength(8);
        box->setFixedWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("0000")) + 12);
        grid->addWidget(new QLabel(names[i], m_frmColorEff), i, 0);
        grid->addWidget(slider, i, 1);
        grid->addWidget(box, i, 2);
        m_HScrollc2[size_t(i)] = slider;
        m_RGBValues[size_t(i)] = box;
        connect(slider, &QSlider::valueChanged, this, [this] { HScrollc2_Change(); });
        connect(box, &QLineEdit::textEdited, this, [this] { RGBValues_Change(); });
    }
    // Square, as the pick reads along its diagonal too.
    m_colorPicture = HueChart(kColorPictureSize, kColorPictureSize);
    m_ColorSel = new QLabel(m_frmColorEff);
    m_ColorSel->setObjectName(QStringLiteral("ColorSel"));
    m_ColorSel->setPixmap(QPixmap::fromImage(m_colorPicture));
    m_ColorSel->setFixedSize(m_colorPicture.size());
    m_ColorSel->setCursor(Qt::CrossCursor);
    m_ColorSel->installEventFilter(new PressFilter(m_ColorSel, [this](QMouseEvent* e) {
        const QPoint p = e->position().toPoint();
        ColorSel_MouseDown(e->button() == Qt::RightButton ? 2 : 1, p.x(), p.y());
    }));
    grid->addWidget(m_ColorSel, 0, 3, 3, 1, Qt::AlignTop);
    m_Picturec1 = new QLabel(m_frmColorEff);
    m_Picturec1->setObjectName(QStringLiteral("Picturec1"));
    m_Picturec1->setFixedHeight(18);
    grid->addWidget(m_Picturec1, 3, 0, 1, 4);
    m_frmColorEff->hide();
    return m_frmColorEff;
}

QWidget* frmEffectsBrowser::buildTransparency()
{
    m_transparency = new QWidget(this);
    m_transparency->setObjectName(QStringLiteral("transparencyGroup"));
    auto* row = new QHBoxLayout(m_transparency);
    row->setContentsMargins(0, 4, 0, 4);
    m_imgTransparency = new QLabel(m_transparency);
    m_imgTransparency->setObjectName(QStringLiteral("imgTransparency"));
    m_imgTransparency->setPixmap(IconPixmap(QStringLiteral("eyedropper-small"), 20, devicePixelRatioF()));
    m_LlbTransparency = new QLabel(tr("Transparency color"), m_transparency);
    m_LlbTransparency->setObjectName(QStringLiteral("LlbTransparency"));
    m_LblTransparencyColor = new QLabel(m_transparency);
    m_LblTransparencyColor->setObjectName(QStringLiteral("LblTransparencyColor"));
    m_LblTransparencyColor->setFixedSize(56, 20);
    m_LblTransparencyColor->setAlignment(Qt::AlignCenter);
    for (QLabel* l : {m_imgTransparency, m_LlbTransparency}) {
        l->setToolTip(tr("Click to select color (and then on image)"));
        l->setCursor(Qt::PointingHandCursor);
        l->installEventFilter(new PressFilter(l, [this](QMouseEvent*) { imgTransparency_Click(); }));
    }
    row->addWidget(m_imgTransparency);
    row->addWidget(m_LlbTransparency);
    row->addWidget(m_LblTransparencyColor);
    row->addStretch(1);
    m_transparency->hide();
    return m_transparency;
}

void frmEffectsBrowser::showColor(QLabel* swatch, Color c)
{
    // No colour shows as words on the dialog's own face.
    if (c < 0) {
        swatch->setText(tr("none"));
        swatch->setStyleSheet(QStringLiteral("QLabel { border: 1px solid palette(dark); }"));
        return;
    }
    swatch->setText(QString());
    swatch->setStyleSheet(
        QStringLiteral("QLabel { background: %1; border: 1px solid black; }").arg(ToQColor(c).name()));
}

void frmEffectsBrowser::showEffectColor()
{
    showColor(m_Picturec1, m_st.EffectColor);
}

void frmEffectsBrowser::HScrollc2_Change()
{
    m_st.EffectColor = fxRGB(m_HScrollc2[0]->value(), m_HScrollc2[1]->value(), m_HScrollc2[2]->value());
    for (int i = 0; i < 3; ++i) {
        const QSignalBlocker block(m_RGBValues[size_t(i)]);
        m_RGBValues[size_t(i)]->setText(QString::number(m_HScrollc2[size_t(i)]->value()));
    }
    showEffectColor();
    m_EffectPending = true;
    ApplyEffect();
}

void frmEffectsBrowser::RGBValues_Change()
{
    // A value outside 0..255 in any box leaves the colour as it is.
    int values[3];
    for (int i = 0; i < 3; ++i) {
        const double v = Val(m_RGBValues[size_t(i)]->text());
        if (!(v >= 0 && v <= 255))
            return;
        values[i] = int(std::nearbyint(v));
    }
    for (int i = 0; i < 3; ++i)
        m_HScrollc2[size_t(i)]->setValue(values[i]);
}

void frmEffectsBrowser::ColorSel_MouseDown(int button, int x, int y)
{
    const auto pick = [this](int px, int py) {
        return m_colorPicture.rect().contains(px, py) ? FromQRgb(m_colorPicture.pixel(px, py)) : kNoColor;
    };
    x = std::max(x, 0);
    y = std::max(y, 0);
    // The effect colour is read on the diagonal, at (x, x): the boxes show the colour
    // under the pointer, the effect takes the one beside it on the diagonal.
    const Color diagonal = pick(x, x);
    if (button == 2) {
        if (diagonal >= 0)
            m_st.ShadowColor = diagonal;
        m_EffectPending = true;
        ApplyEffect();
        showColor(m_Picturec1, m_st.ShadowColor);
        return;
    }
    const Color c = pick(x, y);
    if (c >= 0) {
        for (int i = 0; i < 3; ++i) {
            const QSignalBlocker block(m_RGBValues[size_t(i)]);
            m_RGBValues[size_t(i)]->setText(
                QString::number(i == 0 ? c % 256 : (i == 1 ? (c / 256) % 256 : c / 65536)));
        }
        RGBValues_Change();
    }
    if (diagonal >= 0)
        m_st.EffectColor = diagonal;
    showEffectColor();
    m_EffectPending = true;
    ApplyEffect();
}

void frmEffectsBrowser::imgTransparency_Click()
{
    m_view->setPicking(true);
    m_LblTransparencyColor->setText(tr("pick..."));
    m_LblTransparencyColor->setStyleSheet(QStringLiteral("QLabel { border: 1px dashed palette(text); }"));
}

void frmEffectsBrowser::transparencyPicked(QPointF point, Qt::MouseButton)
{
    const int id = m_st.EffectId;
    if (id != 1170 && id != 1200 && id != 1260)
        return;
    m_view->setPicking(false);
    const Color c = GetPixel(m_picDest, int(std::floor(point.x())), int(std::floor(point.y())));
    if (c >= 0)
        m_st.TransparentColor = c;
    showColor(m_LblTransparencyColor, m_st.TransparentColor);
    // The preview leaves the new colour out at once.
    m_EffectPending = true;
    ApplyEffect();
}

} // namespace velunta
