// The menu bar and the toolbar's commands, built from their tables: every entry with
// its name, caption and shortcut. An entry is enabled only when its command is built
// and its rule allows it.

#include "shell/frmMain.h"

#include "core/Faults.h"
#include "document/frmPaint.h"

#include <QCoreApplication>
#include <QMenu>
#include <QMenuBar>
#include <QToolButton>

namespace velunta {

namespace {

quint32 rowKey(MenuId id, int index)
{
    return (quint32(id) << 16) | quint16(index + 1);
}

QString rowName(const MenuRow& row)
{
    const QString name = QString::fromLatin1(row.name);
    return row.index < 0 ? name : name + QStringLiteral("(%1)").arg(row.index);
}

} // namespace

void frmMain::buildMenus()
{
    const std::span<const MenuRow> rows = MenuRows();
    m_rowActions.assign(rows.size(), nullptr);
    QHash<int, QMenu*> menus;
    for (size_t i = 0; i < rows.size(); ++i) {
        const MenuRow& row = rows[i];
        const QString name = rowName(row);
        const QString caption = row.caption ? QCoreApplication::translate("Menu", row.caption) : QString();
        QAction* a = nullptr;
        if (row.kind == MenuKind::Submenu) {
            QMenu* m = row.menu == MenuId::None ? menuBar()->addMenu(caption)
                                                : menus[int(row.menu)]->addMenu(caption);
            m->setObjectName(name);
            menus.insert(int(row.id), m);
            m_menus.insert(name, m);
            a = m->menuAction();
            a->setEnabled(row.menu == MenuId::None);
        } else if (row.kind == MenuKind::Separator) {
            a = menus[int(row.menu)]->addSeparator();
        } else {
            a = menus[int(row.menu)]->addAction(caption);
            a->setCheckable(row.flags & kCheckable);
            a->setEnabled(false);
            if (row.shortcut != QKeySequence::UnknownKey)
                a->setShortcut(row.shortcut);
            if (row.handler) {
                a->setProperty("built", true);
                connect(a, &QAction::triggered, this, [this, i] {
                    const MenuRow& r = MenuRows()[i];
                    guarded(r.name, [&] { runHandler(r.handler, r.index); });
                });
            }
        }
        a->setObjectName(name);
        if (row.flags & (kHidden | kContextOnly | kShowWithRule))
            a->setVisible(false);
        m_rowActions[i] = a;
        m_actions.insert(name, a);
        m_rowOf.insert(rowKey(row.id, row.index), int(i));
    }
    // The marks of the View menu follow the state each time it opens; the Window menu
    // lists the open pictures.
    connect(menu(MenuId::mnuView), &QMenu::aboutToShow, this, [this] { mnuView_Click(); });
    connect(menu(MenuId::Window), &QMenu::aboutToShow, this, [this] { refreshWindowList(); });
    connect(menu(MenuId::Filters), &QMenu::aboutToShow, this, [this] { Filters_Click(); });
}

void frmMain::wireCommandBar()
{
    const std::span<const ToolbarRow> rows = ToolbarRows();
    for (int i = 0; i < int(rows.size()); ++i)
        if (rows[i].handler)
            wireCommand(i, [this, i] { runHandler(ToolbarRows()[i].handler, i); });
}

void frmMain::runHandler(const MenuHandler& handler, int index)
{
    if (handler.plain)
        (this->*handler.plain)();
    else if (handler.indexed)
        (this->*handler.indexed)(index);
}

int frmMain::rowOf(MenuId id, int index) const
{
    const int row = m_rowOf.value(rowKey(id, index), -1);
    Q_ASSERT_X(row >= 0, "menu entry", qPrintable(QString::number(int(id)) + u'/' + QString::number(index)));
    return row;
}

QAction* frmMain::action(MenuId id, int index) const
{
    const int row = rowOf(id, index);
    return row < 0 ? nullptr : m_rowActions[size_t(row)];
}

QMenu* frmMain::menu(MenuId id) const
{
    QAction* a = action(id);
    return a ? a->menu() : nullptr;
}

QAction* frmMain::action(const QString& name) const
{
    return m_actions.value(name);
}

QMenu* frmMain::menu(const QString& name) const
{
    return m_menus.value(name);
}

bool frmMain::isBuilt(MenuId id, int index) const
{
    const int row = rowOf(id, index);
    return row >= 0 && bool(MenuRows()[size_t(row)].handler);
}

bool frmMain::isBuilt(const QString& name) const
{
    const QAction* a = m_actions.value(name);
    return a && a->property("built").toBool();
}

void frmMain::enable(MenuId id, bool on, int index)
{
    const int row = rowOf(id, index);
    if (row >= 0)
        enableRow(size_t(row), on);
}

void frmMain::enableRow(size_t row, bool on)
{
    const MenuRow& r = MenuRows()[row];
    if (r.kind != MenuKind::Separator)
        m_rowActions[row]->setEnabled(on && (r.kind == MenuKind::Submenu || r.handler));
}

void frmMain::showEntry(MenuId id, bool visible, int index)
{
    if (QAction* a = action(id, index))
        a->setVisible(visible);
}

void frmMain::guarded(const char* step, const std::function<void()>& fn)
{
    Guarded(step, fn);
}

} // namespace velunta
