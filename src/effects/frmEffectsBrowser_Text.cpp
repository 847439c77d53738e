// The text controls of Text and Transparent Text: the text, the font, bold, italic
// and underline, the shadow or softening, and Transparent Text's own sliders.

#include "effects/frmEffectsBrowser.h"

#include "widgets/zolButton.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>
#include <QVBoxLayout>

namespace velunta {

namespace {

constexpr Color kStyleOn = RGB(255, 214, 120);

} // namespace

QWidget* frmEffectsBrowser::buildTextControls()
{
    auto* group = new QWidget(this);
    auto* column = new QVBoxLayout(group);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(4);

    m_Text1 = new QLineEdit(this);
    m_Text1->setObjectName(QStringLiteral("Text1"));
    connect(m_Text1, &QLineEdit::textChanged, this, [this] {
        m_EffectPending = true;
        ApplyEffect();
    });
    connect(m_Text1, &QLineEdit::returnPressed, this, &frmEffectsBrowser::Text1_Enter);

    m_Combo1 = new QComboBox(this);
    m_Combo1->setObjectName(QStringLiteral("Combo1"));
    QStringList fonts = QFontDatabase::families();
    // Verdana is the text's first font; where it isn't installed the font system
    // draws its nearest match under that name.
    if (!fonts.contains(QStringLiteral("Verdana")))
        fonts.prepend(QStringLiteral("Verdana"));
    m_Combo1->addItems(fonts);
    m_Combo1->setMaxVisibleItems(16);
    m_Combo1->setCurrentText(m_st.FontName.isEmpty() ? QStringLiteral("Verdana") : m_st.FontName);
    if (m_Combo1->currentText() != m_st.FontName)
        m_Combo1->setCurrentText(QStringLiteral("Verdana"));
    connect(m_Combo1, &QComboBox::currentTextChanged, this, [this](const QString& name) {
        m_PicSource.FontName = name;
        m_picDest.FontName = name;
        m_EffectPending = true;
        ApplyEffect();
    });

    m_textStyle = new QWidget(group);
    m_textStyle->setObjectName(QStringLiteral("textStyle"));
    auto* style = new QHBoxLayout(m_textStyle);
    style->setContentsMargins(0, 0, 0, 0);
    const struct {
        zolButton** button;
        const char* name;
        const char* caption;
        const char* tip;
    } keys[] = {{&m_Check1, "Check1", "B", QT_TRANSLATE_NOOP("velunta::frmEffectsBrowser", "Bold")},
                {&m_Check2, "Check2", "I", QT_TRANSLATE_NOOP("velunta::frmEffectsBrowser", "Italic")},
                {&m_Check3, "Check3", "U", QT_TRANSLATE_NOOP("velunta::frmEffectsBrowser", "Underline")}};
    for (const auto& k : keys) {
        auto* b = new zolButton(QString::fromLatin1(k.caption), m_textStyle);
        b->setObjectName(QString::fromLatin1(k.name));
        b->setMode(1);
        b->setButtonStyle(7);
        b->setFixedSize(30, 26);
        b->setToolTip(tr(k.tip));
        QFont f = b->font();
        f.setBold(k.button == &m_Check1);
        f.setItalic(k.button == &m_Check2);
        f.setUnderline(k.button == &m_Check3);
        b->setFont(f);
        connect(b, &zolButton::Click, this, &frmEffectsBrowser::textStyleChanged);
        *k.button = b;
        style->addWidget(b);
    }
    m_chkText3d = new QCheckBox(tr("3D-Shadow"), m_textStyle);
    m_chkText3d->setObjectName(QStringLiteral("chkText3d"));
    connect(m_chkText3d, &QCheckBox::toggled, this, [this] {
        m_Text1->setFocus();
        m_EffectPending = true;
        ApplyEffect();
    });
    style->addSpacing(6);
    style->addWidget(m_chkText3d);
    style->addStretch(1);
    column->addWidget(m_textStyle);

    // Transparent Text's own controls: smooth edges, and the transparency, widening
    // and turn of its letters.
    m_picTrnsText = new QWidget(group);
    m_picTrnsText->setObjectName(QStringLiteral("picTrnsText"));
    auto* grid = new QGridLayout(m_picTrnsText);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setVerticalSpacing(2);
    m_Check4 = new QCheckBox(tr("Outline"), m_picTrnsText);
    m_Check4->setObjectName(QStringLiteral("Check4"));
    connect(m_Check4, &QCheckBox::toggled, this, [this] {
        m_Text1->setFocus();
        m_EffectPending = true;
        ApplyEffect();
    });
    grid->addWidget(m_Check4, 0, 0);
    const char* labels[3] = {"Label10", "Label11", "Label12"};
    const char* captions[3] = {QT_TRANSLATE_NOOP("EffectSliders", "Transparency: 0"),
                               QT_TRANSLATE_NOOP("EffectSliders", "Widen: 0"),
                               QT_TRANSLATE_NOOP("EffectSliders", "Rotate: 0")};
    for (int i = 0; i < 3; ++i) {
        auto* label = new QLabel(sliderCaption(captions[i]), m_picTrnsText);
        label->setObjectName(QString::fromLatin1(labels[i]));
        auto* slider = new QSlider(Qt::Horizontal, m_picTrnsText);
        m_sliderLabel[size_t(3 + i)] = label;
        m_HScroll1[size_t(3 + i)] = slider;
        grid->addWidget(label, 1 + 2 * i, 0);
        grid->addWidget(slider, 2 + 2 * i, 0);
    }
    column->addWidget(m_picTrnsText);
    return group;
}

void frmEffectsBrowser::textStyleChanged()
{
    for (zolButton* b : {m_Check1, m_Check2, m_Check3})
        b->setBackColor(b->Value() ? kStyleOn : FormColor);
    for (Surface* s : {&m_PicSource, &m_picDest}) {
        s->FontBold = m_Check1->Value();
        s->FontItalic = m_Check2->Value();
        s->FontUnderline = m_Check3->Value();
    }
    m_Text1->setFocus();
    m_EffectPending = true;
    ApplyEffect();
}

void frmEffectsBrowser::Text1_Enter()
{
    // Enter stamps the line and empties the box for the next one.
    Command2_Click();
    m_Text1->clearFocus();
    m_Text1->clear();
    m_Text1->setFocus();
}

} // namespace velunta
