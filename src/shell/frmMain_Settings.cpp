// The settings that outlive a run: the window, the view options, the recent files,
// and the draw presets, which are kept only when the user asks.

#include "shell/frmMain.h"

#include "core/Numbers.h"
#include "core/Prompt.h"
#include "core/SettingsStore.h"
#include "shell/Services.h"
#include "tools/frmControls.h"

#include <QApplication>
#include <QCheckBox>
#include <QScreen>

#include <cmath>
#include <optional>

namespace velunta {

namespace {

// Window geometry is kept in twips, 15 to a pixel.
constexpr int kTwipsPerPixel = 15;

// A number that fits the program's 32-bit value, or nothing: a malformed value leaves
// the setting as it was.
std::optional<int> numberOf(const QString& text)
{
    bool ok = false;
    const double v = Trim(text).toDouble(&ok);
    if (!ok || !std::isfinite(v) || v < -2147483648.0 || v > 2147483647.0)
        return std::nullopt;
    return int(std::nearbyint(v));
}

// A 16-bit tool option value, or nothing.
std::optional<int> shortOf(const QString& text)
{
    const auto v = numberOf(text);
    if (!v || *v < -32768 || *v > 32767)
        return std::nullopt;
    return v;
}

// A flag written as "True"/"False" or as -1/0.
std::optional<bool> flagOf(const QString& text)
{
    const QString t = Trim(text);
    if (t.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
        return true;
    if (t.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
        return false;
    if (const auto v = numberOf(t))
        return *v != 0;
    return std::nullopt;
}

// A colour: a decimal packed value from 0 to white.
std::optional<Color> colourOf(const QString& text)
{
    const auto v = numberOf(text);
    if (!v || *v < 0 || *v > 0xFFFFFF)
        return std::nullopt;
    return Color(*v);
}

template <class T> void assign(T& target, const std::optional<T>& value)
{
    if (value)
        target = *value;
}

QString trueFalse(bool on)
{
    return on ? QStringLiteral("True") : QStringLiteral("False");
}
QString minusOne(bool on)
{
    return on ? QStringLiteral("-1") : QStringLiteral("0");
}

} // namespace

void frmMain::GetSettings(bool drawPart)
{
    SettingsStore& s = m_services.settings;
    auto get = [&](const char* key, const QString& fallback) {
        return s.GetSetting(QString::fromLatin1(key), fallback);
    };
    if (!drawPart) {
        assign(AutoSizePos, flagOf(get("AutoSizePos", QStringLiteral("0"))));
        action(MenuId::mnuWindowAutoSizePosition)->setChecked(AutoSizePos);
        if (AutoSizePos) {
            const QSize screen = this->screen() ? this->screen()->size() : QSize(1280, 800);
            QRect r(1, 1, screen.width(), screen.height());
            if (const auto v = numberOf(get("MainLeft", QStringLiteral("1"))))
                r.moveLeft(std::max(0, *v / kTwipsPerPixel)); // a negative position is taken as 0
            if (const auto v = numberOf(get("MainTop", QStringLiteral("1"))))
                r.moveTop(std::max(0, *v / kTwipsPerPixel));
            if (const auto v = numberOf(get("MainWidth", QString::number(screen.width() * kTwipsPerPixel))))
                r.setWidth(std::clamp(*v / kTwipsPerPixel, 200, screen.width()));
            if (const auto v = numberOf(get("MainHeight", QString::number(screen.height() * kTwipsPerPixel))))
                r.setHeight(std::clamp(*v / kTwipsPerPixel, 150, screen.height()));
            setGeometry(r);
        }
        bool kids = action(MenuId::mnuKidsMode)->isChecked();
        assign(kids, flagOf(get("KidsMode", QStringLiteral("False"))));
        action(MenuId::mnuKidsMode)->setChecked(kids);
        const bool stepUndo = flagOf(get("StepUndo", QStringLiteral("False"))).value_or(false);
        action(MenuId::mnuStepUndo)->setChecked(stepUndo);
        action(MenuId::Redo)->setVisible(stepUndo);
        action(MenuId::Redo)
            ->setShortcuts(
                {QKeySequence(Qt::CTRL | Qt::Key_Y), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)});
        assign(FitBigImages, flagOf(get("FitBigImage", QStringLiteral("False"))));
        action(MenuId::mnufitbigimages)->setChecked(FitBigImages);
        assign(MaximizeOnOpen, flagOf(get("MaxOnOpen", QStringLiteral("0"))));
        action(MenuId::mnumaximizeonopen)->setChecked(MaximizeOnOpen);
        assign(StartBlankPage, flagOf(get("StartBlankPage", QStringLiteral("0"))));
        action(MenuId::mnustartblankpage)->setChecked(StartBlankPage);
        assign(m_state.ShowCrossLines, flagOf(get("UseGuideLines", QStringLiteral("1"))));
        action(MenuId::mnuGuideLines)->setChecked(m_state.ShowCrossLines);
        assign(GuideLinesColor, colourOf(get("GuideLinesColor", QString::number(RGB(128, 128, 128)))));
        assign(GridColor, colourOf(get("GridColor", QString::number(RGB(240, 240, 240)))));
        if (const auto v = numberOf(get("GuideLineStyle", QStringLiteral("2"))); v && *v >= 1 && *v <= 4)
            GuideLineStyle = *v;
        // "WxH", read at the "x".
        const QString size = get("NewImageSize", QStringLiteral("640x480"));
        const int x = int(size.indexOf(u'x', 0, Qt::CaseInsensitive));
        if (x > 0) {
            const auto w = numberOf(size.left(x)), h = numberOf(size.mid(x + 1));
            if (w && h && *w >= 2 && *h >= 2) {
                NewImageWidth = *w;
                NewImageHeight = *h;
            }
        }
        for (int i = 0; i < 16; ++i)
            if (const auto v = shortOf(get(qPrintable(QStringLiteral("LastOptionValue%1").arg(i)),
                                           QString::number(kToolOptionDefaults[i]))))
                m_state.SelectorValues[i].Value = *v;
        if (const auto v = numberOf(get("Blend", QStringLiteral("50"))); v && *v >= 0 && *v <= 100)
            m_state.SelectionBlend = BlendFromPercent(*v);
        if (const auto v = numberOf(get("SquareCorner", QStringLiteral("10"))))
            m_state.RoundCornersText = QString::number(*v);
        if (const auto v = numberOf(get("ArrowSize", QStringLiteral("6"))))
            m_state.ArrowSizeText = QString::number(*v);
        assign(m_state.GridX, shortOf(get("GridX", QStringLiteral("10"))));
        assign(m_state.GridY, shortOf(get("GridY", QStringLiteral("10"))));
        assign(m_state.SnapToGrid, flagOf(get("SnapToGrid", QStringLiteral("False"))));
        m_chkSnapGrid->setChecked(m_state.SnapToGrid);
        action(MenuId::menuExGridSnap)->setChecked(m_state.SnapToGrid);
        // The open and save dialogs start where the user last chose a file.
        m_services.dialogs.StartFolder = get("LastFolder", QString());
        NoURLupdate = get("NoURLupdate", QString());
        // Empty (never chosen) and "No" both want the check.
        action(MenuId::mnuhelp, 7)->setChecked(NoURLupdate != QLatin1String("Yes"));
    } else {
        const QString font = Trim(get("TextFont", QStringLiteral("Arial")));
        if (!font.isEmpty())
            m_state.FontName = font;
        const QString style = Trim(get("TextStyle", QStringLiteral("Normal")));
        if (style == QLatin1String("Normal") || style == QLatin1String("Bold") ||
            style == QLatin1String("Italic") || style == QLatin1String("Bold Italic"))
            m_state.FontStyle = style;
        assign(m_state.BackColor, colourOf(get("DrawBackColor", QStringLiteral("16777215"))));
        assign(m_state.ForeColor, colourOf(get("DrawForeColor", QStringLiteral("0"))));
        assign(AutoSizePos, flagOf(get("AutoSizePos", QStringLiteral("0"))));
        action(MenuId::mnuWindowAutoSizePosition)->setChecked(AutoSizePos);
        m_controls->SetFontName(m_state.FontName);
        m_controls->SetFontStyle(m_state.FontStyle);
        ColorsChanged();
    }
}

void frmMain::SaveSettings(bool drawPart)
{
    SettingsStore& s = m_services.settings;
    auto put = [&](const char* key, const QString& value) { s.SaveSetting(QString::fromLatin1(key), value); };
    const QRect g = normalGeometry().isValid() ? normalGeometry() : geometry();
    put("MainLeft", QString::number(g.x() * kTwipsPerPixel));
    put("MainTop", QString::number(g.y() * kTwipsPerPixel));
    put("MainWidth", QString::number(g.width() * kTwipsPerPixel));
    put("MainHeight", QString::number(g.height() * kTwipsPerPixel));
    put("AutoSizePos", minusOne(AutoSizePos));
    put("KidsMode", trueFalse(action(MenuId::mnuKidsMode)->isChecked()));
    put("StepUndo", trueFalse(StepUndoOn()));
    put("FitBigImage", trueFalse(FitBigImages));
    put("MaxOnOpen", minusOne(MaximizeOnOpen));
    put("StartBlankPage", minusOne(StartBlankPage));
    put("Version", QStringLiteral(VELUNTA_VERSION));
    put("SelectedColor", QString::number(m_state.ForeColor));
    put("FrameColorSheme", QString::number(FrameColorSheme));
    put("FormColorSheme", QString::number(FormColorSheme));
    // Outside effects read the thicknesses the option boxes show.
    put("CircleThickness", QString::number(I2(m_state.SelectorValues[6].Value)));
    put("LineThickness", QString::number(I2(m_state.SelectorValues[9].Value)));
    put("SelectedBackColor", QString::number(m_state.BackColor));
    put("UseGuideLines", minusOne(m_state.ShowCrossLines));
    put("GuideLinesColor", QString::number(GuideLinesColor));
    put("GridColor", QString::number(GridColor));
    put("GuideLineStyle", QString::number(GuideLineStyle));
    SaveRecentFiles();
    put("NewImageSize", QStringLiteral("%1x%2").arg(NewImageWidth).arg(NewImageHeight));
    put("LastFolder", m_services.dialogs.StartFolder);
    if (drawPart) {
        for (int i = 0; i < 16; ++i)
            s.SaveSetting(QStringLiteral("LastOptionValue%1").arg(i),
                          QString::number(I2(m_state.SelectorValues[i].Value)));
        put("TextFont", m_state.FontName);
        put("TextStyle", m_state.FontStyle);
        put("Blend", QString::number(BlendPercent(m_state.SelectionBlend)));
        put("SquareCorner", m_state.RoundCornersText);
        put("ArrowSize", m_state.ArrowSizeText);
        put("DrawForeColor", QString::number(m_state.ForeColor));
        put("DrawBackColor", QString::number(m_state.BackColor));
        put("GridX", QString::number(m_state.GridX));
        put("GridY", QString::number(m_state.GridY));
        put("SnapToGrid", trueFalse(m_state.SnapToGrid));
        put("NoURLupdate", NoURLupdate);
    }
    s.sync();
}

void frmMain::mnuextra1_Click()
{
    SaveSettings(true);
    m_services.prompt.MsgBox(tr("Settings of your draw-tools are saved"), vbInformation,
                             tr("Save Draw Settings"));
}

void frmMain::mnuextra2_Click()
{
    LoadLastDrawSettings();
    m_services.prompt.MsgBox(tr("Last saved draw-tools settings are active"), vbInformation,
                             tr("Load Draw Settings"));
}

void frmMain::mnuWindowAutoSizePosition_Click()
{
    AutoSizePos = action(MenuId::mnuWindowAutoSizePosition)->isChecked();
}

void frmMain::LoadLastDrawSettings()
{
    GetSettings(false);
    QCoreApplication::processEvents();
    GetSettings(true);
    m_controls->LoadDrawSettings();
}

void frmMain::RestoreDefaultSettings()
{
    if (m_services.prompt.MsgBox(tr("Do you want to restore all settings back to their default values?"),
                                 vbQuestionYesNoCancel, tr("Restore Velunta Default Settings")) != vbYes)
        return;
    SettingsStore& s = m_services.settings;
    for (int i = 0; i < 16; ++i) {
        m_state.SelectorValues[i].Value = kToolOptionDefaults[i];
        s.SaveSetting(QStringLiteral("LastOptionValue%1").arg(i), QString::number(kToolOptionDefaults[i]));
    }
    s.SaveSetting(QStringLiteral("TextFont"), QStringLiteral("Arial"));
    s.SaveSetting(QStringLiteral("TextStyle"), QStringLiteral("Normal"));
    s.SaveSetting(QStringLiteral("Blend"), QStringLiteral("50"));
    s.SaveSetting(QStringLiteral("SquareCorner"), QStringLiteral("10"));
    s.SaveSetting(QStringLiteral("ArrowSize"), QStringLiteral("6"));
    s.SaveSetting(QStringLiteral("DrawForeColor"), QStringLiteral("0"));
    s.SaveSetting(QStringLiteral("DrawBackColor"), QStringLiteral("16777215"));
    for (int i = 0; i < 4; ++i)
        m_recent[i].clear();
    SaveRecentFiles();
    MRUDlist(1);
    s.SaveSetting(QStringLiteral("NewImageSize"), QStringLiteral("640x480"));
    s.sync();
    QCoreApplication::processEvents();
    LoadLastDrawSettings();
}

} // namespace velunta
