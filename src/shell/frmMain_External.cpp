// Effects that live in programs of their own: the Effects menu lists the programs of
// the effects folder, Extra > Plugin the Plugin_* programs beside Velunta, and the
// Tools menu starts the companion tools (the Bezier and polygon editors and the colour
// depth converter). Each gets the picture through temp/effect.bmp.

#include "shell/frmMain.h"

#include "core/AppFolder.h"
#include "core/Numbers.h"
#include "core/SettingsStore.h"
#include "document/frmPaint.h"
#include "effects/ExternalEffect.h"
#include "shell/Services.h"

#include <QFile>
#include <QFileInfo>
#include <QMenu>

namespace velunta {

namespace {

// A file name as a menu shows it: an "&" in it is no access key.
QString MenuText(const QString& caption)
{
    QString text = caption;
    return text.replace(u'&', QStringLiteral("&&"));
}

// The first plug-in entry; those before it are the menu's own.
constexpr int kFirstPlugin = 4;

} // namespace

ExternalEffect& frmMain::externalEffect()
{
    if (!m_external)
        m_external = new ExternalEffect(*this, m_services.prompt, m_services.AppFolder, this);
    return *m_external;
}

void frmMain::RemoveOldEffects()
{
    velunta::RemoveOldEffects(m_services.AppFolder,
                              m_services.settings.GetSetting(QStringLiteral("Version")));
}

void frmMain::ScanEffects()
{
    // The lists are built anew, so a rescan shows what the folders hold now.
    qDeleteAll(m_filters);
    m_filters.clear();
    qDeleteAll(m_plugins);
    m_plugins.clear();

    QMenu* filters = menu(MenuId::Filters);
    const QStringList programs = EffectPrograms(m_services.AppFolder + QStringLiteral("effects"));
    for (int i = 0; i < programs.size(); ++i) {
        QAction* a = filters->addAction(MenuText(EffectCaption(programs[i])));
        a->setObjectName(QStringLiteral("Filter(%1)").arg(i));
        a->setData(programs[i]);
        connect(a, &QAction::triggered, this,
                [this, i] { guarded("Filter_Click", [&] { Filter_Click(i); }); });
        m_filters << a;
    }
    showEntry(MenuId::split060, !programs.isEmpty());

    const QString prefix = QStringLiteral("Plugin_");
    const QStringList plugins = EffectPrograms(m_services.AppFolder, prefix);
    QMenu* pluginMenu = menu(MenuId::mnuextraplugin);
    for (int i = 0; i < plugins.size(); ++i) {
        const QString stored = plugins[i].mid(prefix.size());
        QAction* a = action(MenuId::mnuextraplugins, kFirstPlugin);
        if (i > 0) {
            const int index = kFirstPlugin + i;
            a = pluginMenu->addAction(QString());
            a->setObjectName(QStringLiteral("mnuextraplugins(%1)").arg(index));
            connect(a, &QAction::triggered, this, [this, index] {
                guarded("mnuextraplugins_Click", [&] { mnuextraplugins_Click(index); });
            });
            m_plugins << a;
        }
        a->setText(MenuText(EffectCaption(stored)));
        a->setData(stored);
        a->setVisible(true);
    }
    if (plugins.isEmpty())
        showEntry(MenuId::mnuextraplugins, false, kFirstPlugin);
    // With nothing to offer the submenu would open empty.
    showEntry(MenuId::mnuextraplugin, !plugins.isEmpty());
    enableExternalEffects(activeDocument() != nullptr);
}

QAction* frmMain::PluginEntry(int index) const
{
    if (index == kFirstPlugin)
        return action(MenuId::mnuextraplugins, kFirstPlugin)->isVisible()
                   ? action(MenuId::mnuextraplugins, kFirstPlugin)
                   : nullptr;
    const int i = index - kFirstPlugin - 1;
    return i >= 0 && i < m_plugins.size() ? m_plugins[i] : nullptr;
}

void frmMain::enableExternalEffects(bool document)
{
    for (QAction* a : std::as_const(m_filters))
        a->setEnabled(document);
    for (QAction* a : std::as_const(m_plugins))
        a->setEnabled(document);
}

void frmMain::runExternal(const QString& program, const QString& name, const QStringList& arguments)
{
    if (!activeDocument())
        return;
    // The programs read the two colours from the settings store.
    SettingsStore& s = m_services.settings;
    s.SaveSetting(QStringLiteral("SelectedColor"), m_state.ForeColor);
    s.SaveSetting(QStringLiteral("SelectedBackColor"), m_state.BackColor);
    s.sync();
    if (externalEffect().RunEffect(program, name, arguments) == EffectOutcome::Changed)
        SetUndoEnabled(true);
    ValidateMenus();
}

void frmMain::RunEffect(const QString& fileName, bool fullPath)
{
    QString program = m_services.AppFolder + QStringLiteral("effects/") + fileName;
    if (fullPath)
        program = QFileInfo(fileName).isAbsolute() ? fileName : m_services.AppFolder + fileName;
    runExternal(program, EffectCaption(QFileInfo(fileName).fileName()));
}

void frmMain::Filter_Click(int index)
{
    if (index < 0 || index >= m_filters.size())
        return;
    RunEffect(m_filters[index]->data().toString(), false);
}

void frmMain::mnuextraplugins_Click(int index)
{
    if (index < kFirstPlugin)
        return;
    if (QAction* entry = PluginEntry(index))
        RunEffect(QStringLiteral("Plugin_") + entry->data().toString(), true);
}

namespace {

// A companion tool beside the program, or where it would be (so that a missing one
// is named in the message).
QString Companion(const QString& appFolder, const QString& name)
{
    const QString found = CompanionProgram(appFolder, name);
    return found.isEmpty() ? appFolder + name : found;
}

} // namespace

void frmMain::mnuBezier_Click()
{
    if (!activeDocument())
        return;
    // The editor draws with the circles' border size and the foreground colour.
    m_services.settings.SaveSetting(QStringLiteral("CircleThickness"), I2(m_state.SelectorValues[6].Value));
    runExternal(Companion(m_services.AppFolder, QStringLiteral("VeluntaExt1")), tr("Advanced Bezier Curves"));
}

void frmMain::mnuPolygons_Click()
{
    if (!activeDocument())
        return;
    // The same thickness as the Bezier editor's, kept under the polygon editor's key.
    m_services.settings.SaveSetting(QStringLiteral("LineThickness"), I2(m_state.SelectorValues[6].Value));
    runExternal(Companion(m_services.AppFolder, QStringLiteral("VeluntaExt2")), tr("Advanced Polygons"));
}

void frmMain::mnucolordepth_Click()
{
    // The converter asks for the depth and the dither in its own window.
    runExternal(Companion(m_services.AppFolder, QStringLiteral("bmpExport")),
                tr("Color Depth and Dither Control"), {QStringLiteral("/dialog")});
}

} // namespace velunta
