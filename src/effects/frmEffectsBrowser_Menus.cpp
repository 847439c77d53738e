// The Effects Browser's menus: File, the effect list and the ambient presets, the
// flips and mirrors of the Image menu, and Help.

#include "effects/frmEffectsBrowser.h"

#include "core/WebAddresses.h"
#include "effects/fx/FxOnPicture.h"

#include <QDesktopServices>
#include <QMenu>
#include <QMenuBar>
#include <QUrl>

namespace velunta {

namespace {

QAction* addEntry(QMenu* menu, const QString& name, const QString& caption)
{
    QAction* a = menu->addAction(caption);
    a->setObjectName(name);
    return a;
}

} // namespace

void frmEffectsBrowser::buildMenus()
{
    m_menuBar = new QMenuBar(this);
    m_menuBar->setObjectName(QStringLiteral("menuBar"));

    QMenu* file = m_menuBar->addMenu(tr("File"));
    file->setObjectName(QStringLiteral("mnuFile"));
    connect(addEntry(file, QStringLiteral("mnusave"), tr("Update Picture and Exit")), &QAction::triggered,
            this, &frmEffectsBrowser::Command1_Click);
    file->addSeparator();
    connect(addEntry(file, QStringLiteral("mnuFileExit"), tr("E&xit")), &QAction::triggered, this,
            &frmEffectsBrowser::reject);

    m_menuFx = m_menuBar->addMenu(tr("Effect"));
    m_menuFx->setObjectName(QStringLiteral("menuFX"));
    for (const EffectRow& row : EffectTable()) {
        if (!row.menuCaption)
            continue;
        QAction* a = addEntry(m_menuFx, QStringLiteral("mnuFx(%1)").arg(row.id), effectName(row.menuCaption));
        a->setCheckable(true);
        const int id = row.id;
        connect(a, &QAction::triggered, this, [this, id] { mnuFx_Click(id); });
    }
    m_menuFx->addSeparator();
    QMenu* ambient = m_menuFx->addMenu(tr("Ambient Light"));
    ambient->setObjectName(QStringLiteral("mnuAmbient"));
    // The presets of the main window's Ambient Light menu that the browser offers, with
    // a line where the main menu has its gaps.
    int last = -1;
    for (const AmbientPreset& p : AmbientPresets()) {
        if (!p.browserCaption)
            continue;
        if (last >= 0 && p.index > last + 1)
            ambient->addSeparator();
        last = p.index;
        const int index = p.index;
        connect(addEntry(ambient, QStringLiteral("mnuAmbients(%1)").arg(index), effectName(p.browserCaption)),
                &QAction::triggered, this, [this, index] { mnuAmbients_Click(index); });
    }

    QMenu* image = m_menuBar->addMenu(tr("Image"));
    image->setObjectName(QStringLiteral("mnuimage"));
    const struct {
        const char* name;
        const char* caption;
        int id;
    } flips[] = {{"mnufliphor", QT_TRANSLATE_NOOP("velunta::frmEffectsBrowser", "Flip horizontal"), 1300},
                 {"mnuflipver", QT_TRANSLATE_NOOP("velunta::frmEffectsBrowser", "Flip vertical"), 1310},
                 {"mnumirh", QT_TRANSLATE_NOOP("velunta::frmEffectsBrowser", "Horizontal Mirror"), 1320},
                 {"mnumirv", QT_TRANSLATE_NOOP("velunta::frmEffectsBrowser", "Vertical Mirror"), 1330},
                 {"mnumirq", QT_TRANSLATE_NOOP("velunta::frmEffectsBrowser", "Quad Mirror"), 1340}};
    for (const auto& f : flips) {
        const int id = f.id;
        connect(addEntry(image, QString::fromLatin1(f.name), tr(f.caption)), &QAction::triggered, this,
                [this, id] { Flip_Click(id); });
    }

    QMenu* help = m_menuBar->addMenu(tr("Help"));
    help->setObjectName(QStringLiteral("mnuhelp"));
    connect(addEntry(help, QStringLiteral("menuhelpeff"), tr("More Effects...")), &QAction::triggered, this,
            &frmEffectsBrowser::menuhelpeff_Click);
}

QAction* frmEffectsBrowser::menuAction(const QString& name) const
{
    return m_menuBar->findChild<QAction*>(name);
}

void frmEffectsBrowser::menuhelpeff_Click()
{
    QDesktopServices::openUrl(QUrl(QString::fromLatin1(kMoreEffectsAddress)));
}

} // namespace velunta
