// The Effects Browser's form: its layout, what happens as it opens, the preview
// scheduling, and the buttons that apply, undo and write back.

#include "effects/frmEffectsBrowser.h"

#include "core/Faults.h"
#include "core/Numbers.h"
#include "core/Prompt.h"
#include "core/SettingsStore.h"
#include "document/ImageCommand.h"
#include "effects/EffectView.h"
#include "widgets/zolButton.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace velunta {

namespace {

// A colour scheme setting: a packed colour or a system colour (its high bit set). An
// unset scheme is written as 0 by the main window, so 0 means the system's button
// face here, as a missing or broken value does: black buttons would hide their text.
Color schemeColour(const QString& text)
{
    bool ok = false;
    const qlonglong v = Trim(text).toLongLong(&ok);
    if (!ok || v == 0)
        return kSysButtonFace;
    if (v >= 0 && v <= 0xFFFFFF)
        return Color(v);
    const quint32 bits = quint32(v);
    return (bits & 0x80000000u) && (bits & 0xFFFFFFu) <= 0x18 ? Color(bits) : kSysButtonFace;
}

int settingNumber(const SettingsStore& settings, const char* key, int fallback)
{
    bool ok = false;
    const double v = Trim(settings.GetSetting(QString::fromLatin1(key))).toDouble(&ok);
    return ok && std::isfinite(v) && std::abs(v) <= 32767 ? int(std::nearbyint(v)) : fallback;
}

// A bar's range: a picture's size over 1.3 either way, held to the bar's 16 bits so a
// picture wider than 42 600 pixels can't overflow it.
int positionReach(int size)
{
    return int(std::clamp(std::nearbyint(size / 1.3), 0.0, 32767.0));
}

// A pair of bars that move something across and down, under a caption. Both lie
// flat, so they read alike; the second is the vertical one.
QWidget* positionPair(QWidget* parent, const QString& caption, QScrollBar*& across, const QString& acrossName,
                      QScrollBar*& down, const QString& downName)
{
    auto* box = new QWidget(parent);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(0, 4, 0, 0);
    grid->setVerticalSpacing(2);
    grid->setColumnStretch(1, 1);
    grid->addWidget(new QLabel(caption, box), 0, 0, 1, 2);
    across = new QScrollBar(Qt::Horizontal, box);
    across->setObjectName(acrossName);
    down = new QScrollBar(Qt::Horizontal, box);
    down->setObjectName(downName);
    const QString names[2] = {frmEffectsBrowser::tr("X"), frmEffectsBrowser::tr("Y")};
    QScrollBar* bars[2] = {across, down};
    for (int i = 0; i < 2; ++i) {
        bars[i]->setSingleStep(1);
        bars[i]->setPageStep(16);
        grid->addWidget(new QLabel(names[i], box), 1 + i, 0);
        grid->addWidget(bars[i], 1 + i, 1);
    }
    return box;
}

} // namespace

frmEffectsBrowser::frmEffectsBrowser(ImageCommand& command, SettingsStore& settings, Prompt& prompt,
                                     EffectsBrowserMemory& memory, QWidget* parent)
    : QDialog(parent), m_command(command), m_settings(settings), m_prompt(prompt), m_memory(memory),
      m_st(memory.state)
{
    setObjectName(QStringLiteral("frmEffectsBrowser"));
    setWindowTitle(tr("Effects Browser"));
    setModal(true);
    setSizeGripEnabled(true);

    m_renderTimer = new QTimer(this);
    m_renderTimer->setSingleShot(true);
    m_renderTimer->setInterval(0);
    connect(m_renderTimer, &QTimer::timeout, this, &frmEffectsBrowser::RenderPreview);

    // The settings of the form's look and its view are read at each opening.
    FrameColor = schemeColour(m_settings.GetSetting(QStringLiteral("FrameColorSheme")));
    FormColor = schemeColour(m_settings.GetSetting(QStringLiteral("FormColorSheme")));
    LastOption = settingNumber(m_settings, "EffectBrowser_LastOption", 3);
    OptionZoom = settingNumber(m_settings, "EffectBrowser_OptionZoom", 0);

    buildForm();
    paintSchemes();
    firstActivation();
    activation();
}

frmEffectsBrowser::~frmEffectsBrowser() = default;

// ---- The form ---------------------------------------------------------------------

void frmEffectsBrowser::buildForm()
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 4, 8, 8);
    buildMenus();
    layout->setMenuBar(m_menuBar);

    auto* body = new QHBoxLayout;
    body->addWidget(buildEffectButtons());

    auto* centre = new QVBoxLayout;
    m_Label1 = new QLabel(this);
    m_Label1->setObjectName(QStringLiteral("Label1"));
    QFont big = m_Label1->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.25);
    m_Label1->setFont(big);
    centre->addWidget(m_Label1);
    m_view = new EffectView(this);
    m_view->setImage(&m_picDest.Image());
    m_view->setMinimumSize(320, 240);
    connect(m_view, &EffectView::dragged, this, [this] {
        // The picture's place gives the pointer of the spot light and the text.
        if (m_st.EffectId == 1130 || m_st.EffectId == 1240)
            ApplyEffect();
    });
    connect(m_view, &EffectView::scrolled, this, [this] {
        if (m_st.EffectId == 1130 || m_st.EffectId == 1240)
            ApplyEffect();
    });
    connect(m_view, &EffectView::picked, this, &frmEffectsBrowser::transparencyPicked);
    centre->addWidget(m_view, 1);

    auto* viewRow = new QHBoxLayout;
    m_Chkzoom = new zolButton(this);
    m_Chkzoom->setObjectName(QStringLiteral("Chkzoom"));
    m_Chkzoom->setMode(1);
    m_Chkzoom->setButtonStyle(7);
    m_Chkzoom->setMinimumWidth(96);
    m_Chkzoom->setToolTip(tr("Real picture size (or view image to fit the screen)"));
    connect(m_Chkzoom, &zolButton::Click, this, [this] {
        m_Chkzoom->setCaption(m_Chkzoom->Value() ? tr("View 100%") : tr("Fit Image"));
        m_view->setActualSize(m_Chkzoom->Value());
    });
    viewRow->addWidget(m_Chkzoom);
    m_ChkPreview = new QCheckBox(tr("Auto Preview"), this);
    m_ChkPreview->setObjectName(QStringLiteral("ChkPreview"));
    m_ChkPreview->setChecked(true);
    connect(m_ChkPreview, &QCheckBox::toggled, this, [this](bool on) {
        // Switched on, the preview catches up with every change made meanwhile.
        if (on)
            ApplyEffect();
    });
    viewRow->addWidget(m_ChkPreview);
    m_Label9 = new QLabel(this);
    m_Label9->setObjectName(QStringLiteral("Label9"));
    viewRow->addSpacing(8);
    viewRow->addWidget(m_Label9);
    viewRow->addStretch(1);
    m_picSrcSwatch = new QLabel(this);
    m_picSrcSwatch->setObjectName(QStringLiteral("picSrc"));
    m_picSrcSwatch->setFixedSize(28, 20);
    m_picSrcSwatch->setFrameShape(QFrame::Box);
    m_picSrcSwatch->setAutoFillBackground(true);
    viewRow->addWidget(m_picSrcSwatch);
    viewRow->addWidget(new QLabel(tr("<- for alpha blending"), this));
    centre->addLayout(viewRow);
    body->addLayout(centre, 1);

    auto* panel = new QScrollArea(this);
    panel->setObjectName(QStringLiteral("controlPanel"));
    panel->setWidget(buildControls());
    panel->setWidgetResizable(true);
    panel->setFrameShape(QFrame::NoFrame);
    panel->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    panel->setFixedWidth(panel->widget()->sizeHint().width() +
                         panel->verticalScrollBar()->sizeHint().width() + 4);
    body->addWidget(panel);
    layout->addLayout(body, 1);
    layout->addWidget(buildButtons());
}

QWidget* frmEffectsBrowser::buildEffectButtons()
{
    auto* box = new QWidget(this);
    box->setObjectName(QStringLiteral("cmdEffects"));
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(3);
    const std::span<const EffectRow> rows = EffectTable();
    int k = 0;
    for (const EffectRow& row : rows) {
        if (!row.buttonCaption)
            continue; // the flips and mirrors live in the Image menu only
        auto* b = new zolButton(effectName(row.buttonCaption), box);
        b->setObjectName(QStringLiteral("cmdEffect(%1)").arg(k));
        b->setButtonStyle(7);
        b->setHoverBackColor(RGB(255, 228, 160));
        b->setFocusPolicy(Qt::TabFocus);
        b->setMinimumWidth(112);
        b->setMinimumHeight(24);
        const int index = k;
        connect(b, &zolButton::Click, this, [this, index] { cmdEffect_Click(index); });
        m_cmdEffect[size_t(k)] = b;
        grid->addWidget(b, k % 15, k / 15);
        ++k;
    }
    grid->setRowStretch(15, 1);
    return box;
}

QWidget* frmEffectsBrowser::buildControls()
{
    auto* panel = new QWidget(this);
    auto* column = new QVBoxLayout(panel);
    column->setContentsMargins(4, 0, 4, 0);
    column->setSpacing(4);

    // HScroll1(0..2) with Label2..4 above them; the font list and the text share the
    // places of sliders 1 and 2, which the text effects hide.
    auto* sliders = new QGridLayout;
    sliders->setVerticalSpacing(2);
    const char* labels[3] = {"Label2", "Label3", "Label4"};
    for (int i = 0; i < 3; ++i) {
        m_sliderLabel[size_t(i)] =
            new QLabel(sliderCaption(QT_TRANSLATE_NOOP("EffectSliders", "N/a")), panel);
        m_sliderLabel[size_t(i)]->setObjectName(QString::fromLatin1(labels[i]));
        m_HScroll1[size_t(i)] = new QSlider(Qt::Horizontal, panel);
        m_HScroll1[size_t(i)]->setEnabled(false);
        sliders->addWidget(m_sliderLabel[size_t(i)], 2 * i, 0);
        sliders->addWidget(m_HScroll1[size_t(i)], 2 * i + 1, 0);
    }
    column->addLayout(sliders);
    column->addWidget(buildTextControls());
    // The text widgets take the places of sliders 1 and 2.
    sliders->addWidget(m_Combo1, 3, 0);
    sliders->addWidget(m_Text1, 5, 0);

    for (int i = 0; i < 6; ++i) {
        QSlider* s = m_HScroll1[size_t(i)];
        s->setObjectName(QStringLiteral("HScroll1(%1)").arg(i));
        s->setMinimumWidth(220);
        connect(s, &QSlider::valueChanged, this, [this, i] { HScroll1_Change(i); });
    }

    // The position of the text and of the spot light, and Render's offset of its source.
    m_positionBars = positionPair(panel, tr("Position:"), m_HScrollT, QStringLiteral("HScrollT"), m_VScrollT,
                                  QStringLiteral("VScrollT"));
    connect(m_HScrollT, &QScrollBar::valueChanged, this, [this](int v) {
        m_st.OffsetX = v;
        positionChanged();
    });
    connect(m_VScrollT, &QScrollBar::valueChanged, this, [this](int v) {
        m_st.OffsetY = v;
        positionChanged();
    });
    column->addWidget(m_positionBars);
    m_renderOffset = positionPair(panel, tr("Offset:"), m_HScroll2, QStringLiteral("HScroll2"), m_VScroll2,
                                  QStringLiteral("VScroll2"));
    for (QScrollBar* bar : {m_HScroll2, m_VScroll2})
        connect(bar, &QScrollBar::valueChanged, this, [this] { positionChanged(); });
    column->addWidget(m_renderOffset);

    column->addWidget(buildTransparency());
    column->addWidget(buildColorPanel());
    column->addStretch(1);
    return panel;
}

QWidget* frmEffectsBrowser::buildButtons()
{
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 6, 0, 0);
    auto key = [&](const char* name, const QString& caption, const QString& tip) {
        auto* b = new zolButton(caption, row);
        b->setObjectName(QString::fromLatin1(name));
        b->setButtonStyle(7);
        b->setHoverBackColor(RGB(255, 228, 160));
        b->setFocusPolicy(Qt::StrongFocus);
        b->setMinimumSize(112, 30);
        b->setToolTip(tip);
        return b;
    };
    m_Command2 = key("Command2", tr("Apply Effect"), tr("Apply result in Effects Browser"));
    m_Command2->setEnabled(false);
    m_Command3 = key("Command3", tr(" Undo  All "), tr("Reset to original"));
    m_Command1 = key("Command1", tr("Update Picture and Exit"), tr("Update Picture and Exit"));
    m_Command1->setPicture(QStringLiteral("fx-update-picture"));
    m_Command1->setPictureSize(1);
    m_Command1->setMinimumWidth(200);
    m_Command4 = key("Command4", tr("Cancel"), tr("Close the Effects Browser"));
    connect(m_Command2, &zolButton::Click, this, &frmEffectsBrowser::Command2_Click);
    connect(m_Command3, &zolButton::Click, this, &frmEffectsBrowser::Command3_Click);
    connect(m_Command1, &zolButton::Click, this, &frmEffectsBrowser::Command1_Click);
    connect(m_Command4, &zolButton::Click, this, &frmEffectsBrowser::reject);
    layout->addWidget(m_Command2);
    layout->addWidget(m_Command3);
    layout->addStretch(1);
    layout->addWidget(m_Command1);
    layout->addWidget(m_Command4);
    return row;
}

void frmEffectsBrowser::paintSchemes()
{
    for (zolButton* b : m_cmdEffect)
        b->setBackColor(FrameColor);
    for (zolButton* b : {m_Command1, m_Command2, m_Command3, m_Command4, m_Chkzoom})
        b->setBackColor(FrameColor);
    for (zolButton* b : {m_Check1, m_Check2, m_Check3})
        b->setBackColor(FormColor);
    if (FormColor != kSysButtonFace) {
        QPalette p = palette();
        p.setColor(QPalette::Window, ResolveColor(FormColor, p));
        setPalette(p);
    }
    // picSrc, the second picture of Alpha Blending, is the window's colour.
    const QColor window = palette().color(QPalette::Window);
    m_picSrc.BackColor = FromQColor(window);
    m_picSrc.setScaleSize(4, 4);
    m_picSrc.Cls();
    QPalette swatch = m_picSrcSwatch->palette();
    swatch.setColor(QPalette::Window, window);
    m_picSrcSwatch->setPalette(swatch);
}

void frmEffectsBrowser::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (!m_activated) {
        m_activated = true;
        fitToScreen();
    }
}

void frmEffectsBrowser::fitToScreen()
{
    // A comfortable size, never larger than the screen it opens on (1366 x 768 at least).
    QScreen* screen = parentWidget() ? parentWidget()->screen() : QGuiApplication::primaryScreen();
    const QRect room = screen ? screen->availableGeometry() : QRect(0, 0, 1366, 740);
    const QSize want(std::min(1120, room.width() - 16), std::min(720, room.height() - 48));
    resize(want.expandedTo(minimumSizeHint().boundedTo(want)));
    move(room.center() - rect().center());
}

// ---- Opening ---------------------------------------------------------------------

void frmEffectsBrowser::firstActivation()
{
    if (m_memory.FirstActivate) {
        m_memory.FirstActivate = false;
        bool ok = false;
        const qlonglong selected =
            Trim(m_settings.GetSetting(QStringLiteral("SelectedColor"), QStringLiteral("16711680")))
                .toLongLong(&ok);
        m_st.EffectColor = ok && selected >= 0 && selected <= 0xFFFFFF ? Color(selected) : 16711680;
        m_st.ShadowColor = RGB(128, 128, 255);
        m_st.TextBoxWidth = 320;
        m_st.TextBoxHeight = 255;
    }
    // The controls are made anew at each opening, so they take what the state holds.
    const QScreen* screen = parentWidget() ? parentWidget()->screen() : QGuiApplication::primaryScreen();
    m_st.ScreenDpiY = screen ? int(std::lround(screen->logicalDotsPerInchY())) : 96;
    m_st.TwipsPerPixelX = m_st.TwipsPerPixelY = 15;
    const Color c = m_st.EffectColor;
    for (int i = 0; i < 3; ++i) {
        const QSignalBlocker block(m_HScrollc2[size_t(i)]);
        m_HScrollc2[size_t(i)]->setValue(i == 0 ? c % 256 : (i == 1 ? (c / 256) % 256 : c / 65536));
    }
    for (int i = 0; i < 3; ++i) {
        const QSignalBlocker block(m_RGBValues[size_t(i)]);
        m_RGBValues[size_t(i)]->setText(QString::number(m_HScrollc2[size_t(i)]->value()));
    }
    showEffectColor();
    showColor(m_LblTransparencyColor, m_st.TransparentColor);
}

void frmEffectsBrowser::activation()
{
    takePicture();
    // No effect is chosen yet: a preview shows the picture as it is.
    m_st.EffectId = 0;
    m_Label1->setText(tr("Choose an effect"));
    for (zolButton* b : m_cmdEffect)
        b->setEnabled(true);
    const int w = m_st.PictureWidth, h = m_st.PictureHeight;
    m_HScrollT->setRange(-positionReach(w), positionReach(w));
    m_VScrollT->setRange(-positionReach(h), positionReach(h));
    m_HScroll2->setRange(-std::min(w, 32767), std::min(w, 32767));
    m_VScroll2->setRange(-std::min(h, 32767), std::min(h, 32767));
    m_Label9->setText(tr("Size:") + QString::number(w) + QStringLiteral(" X ") + QString::number(h));
    const bool actual = w < 520 || h < 400 || OptionZoom != 0;
    m_Chkzoom->setValue(actual);
    m_Chkzoom->setCaption(actual ? tr("View 100%") : tr("Fit Image"));
    m_view->setActualSize(actual);
    m_view->Move(0, 0);
    resetControls();
    m_ColorSel->setToolTip(tr("Select a color from picture")); // until an effect is chosen
    m_EffectPending = false;
    m_EffectApplied = false;
}

void frmEffectsBrowser::takePicture()
{
    // The applied picture and the work surface start as the document's picture (or its
    // floating selection); PicSource shares its pixels until the document changes.
    const Surface& target = m_command.target();
    m_PicSource.setImage(target.Image());
    m_PicSource.keepImageAsPicture();
    m_picDest.BackColor = 0xFFFFFF;
    m_picDest.setImage(target.Image());
    m_picDest.setPicture(target.Image());
    SetPictureSize(m_st, m_PicSource, m_picDest);
    m_pendingRender = false;
    m_view->refresh();
}

void frmEffectsBrowser::syncState()
{
    for (int i = 0; i < 6; ++i)
        m_st.HScroll1[i] = m_HScroll1[size_t(i)]->value();
    m_st.HScroll2 = m_HScroll2->value();
    m_st.VScroll2 = m_VScroll2->value();
    m_st.OffsetX = m_HScrollT->value();
    m_st.OffsetY = m_VScrollT->value();
    m_st.Text1 = m_Text1->text();
    m_st.FontName = m_Combo1->currentText();
    m_st.Check1 = m_Check1->Value();
    m_st.Check2 = m_Check2->Value();
    m_st.Check3 = m_Check3->Value();
    m_st.Check4 = m_Check4->isChecked();
    m_st.chkText3d = m_chkText3d->isChecked();
}

// ---- Previews --------------------------------------------------------------------

void frmEffectsBrowser::ApplyEffect()
{
    if (!m_ChkPreview->isChecked())
        return;
    m_pendingRender = true;
    if (!m_rendering)
        m_renderTimer->start();
}

void frmEffectsBrowser::RenderPreview()
{
    m_renderTimer->stop();
    if (!m_pendingRender || m_rendering)
        return;
    m_pendingRender = false;
    m_rendering = true;
    ++m_previews;
    syncState();
    SetPointerFromView(m_st, m_view->Left(), m_view->Top());
    // An argument that overflows ends this preview only; the next change draws again.
    Guarded("ApplyEffect", [&] { velunta::ApplyEffect(m_st, m_PicSource, m_picDest, m_picSrc); });
    m_rendering = false;
    m_view->refresh();
    // Transparent Text keeps white out of the picture; the panel shows what is used.
    showEffectColor();
    if (m_pendingRender)
        m_renderTimer->start();
}

// ---- The buttons ----------------------------------------------------------------

void frmEffectsBrowser::Command2_Click()
{
    RenderPreview(); // a change still on its way belongs to what is applied
    m_PicSource.setImage(m_picDest.Image());
    m_PicSource.keepImageAsPicture();
    m_picDest.setPicture(m_PicSource.Image());
    m_view->refresh();
    m_EffectApplied = true;
}

void frmEffectsBrowser::Command3_Click()
{
    takePicture();
    m_EffectApplied = false;
    m_EffectPending = false;
}

void frmEffectsBrowser::Command1_Click()
{
    Command2_Click();
    m_settings.SaveSetting(QStringLiteral("EffectBrowser_LastOption"), LastOption);
    m_settings.SaveSetting(QStringLiteral("EffectBrowser_OptionZoom"), m_Chkzoom->Value() ? 1 : 0);
    const QImage result = m_picDest.Image();
    m_command.run([&](ImageCommand& c) {
        // The same picture back is no change: the document stays as it was saved.
        if (c.target().Image() == result)
            return false;
        c.target().setImage(result);
        return true;
    });
    m_EffectApplied = true;
    releasePictures();
    QDialog::accept();
}

void frmEffectsBrowser::releasePictures()
{
    m_renderTimer->stop();
    m_pendingRender = false;
    m_PicSource.setImage(QImage());
    m_PicSource.clearPicture();
    m_picDest.clearPicture();
    m_picDest.setImage(QImage());
    m_view->refresh();
}

void frmEffectsBrowser::reject()
{
    if (!m_EffectApplied && m_EffectPending) {
        const int answer = m_prompt.MsgBox(tr("You have not yet 'applied' the effect.") + u'\n' +
                                               tr("Do you want apply it to your picture?"),
                                           vbYesNoCancel | vbQuestion, tr("Quit before effect applied"));
        if (answer == vbYes) {
            Command1_Click();
            return;
        }
        if (answer == vbCancel) {
            m_EffectPending = false;
            return;
        }
    }
    releasePictures();
    QDialog::reject();
}

} // namespace velunta
