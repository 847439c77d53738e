// The Window menu.

#include "shell/frmMain.h"

#include "document/frmPaint.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>

#include <algorithm>

namespace velunta {

namespace {

// Tiles the visible document windows: horizontal stacks them full width one above the
// other, vertical puts them side by side.
void tile(QMdiArea* mdi, bool horizontal)
{
    QList<QMdiSubWindow*> windows;
    for (QMdiSubWindow* sw : mdi->subWindowList(QMdiArea::StackingOrder))
        if (sw->isVisible() && !sw->isMinimized())
            windows << sw;
    if (windows.isEmpty())
        return;
    const QRect area = mdi->viewport()->rect();
    const int n = int(windows.size());
    for (int i = 0; i < n; ++i) {
        QMdiSubWindow* sw = windows[i];
        if (sw->isMaximized())
            sw->showNormal();
        if (horizontal) {
            const int h = area.height() / n;
            sw->setGeometry(0, i * h, area.width(), i == n - 1 ? area.height() - i * h : h);
        } else {
            const int w = area.width() / n;
            sw->setGeometry(i * w, 0, i == n - 1 ? area.width() - i * w : w, area.height());
        }
    }
}

} // namespace

void frmMain::ArrHorizontal_Click()
{
    tile(m_mdi, true);
}

void frmMain::ArrVertival_Click()
{
    tile(m_mdi, false);
}

void frmMain::Cascade_Click()
{
    m_mdi->cascadeSubWindows();
}

void frmMain::refreshWindowList()
{
    QMenu* window = menu(MenuId::Window);
    for (QAction* a : window->actions())
        if (a->property("windowEntry").toBool())
            window->removeAction(a), a->deleteLater();
    ValidateMenus();
    int n = 0;
    frmPaint* active = activeDocument();
    for (frmPaint* form : documents()) {
        ++n;
        QAction* a = window->addAction(QStringLiteral("&%1 %2").arg(n).arg(form->doc.Caption));
        a->setProperty("windowEntry", true);
        a->setCheckable(true);
        a->setChecked(form == active);
        QMdiSubWindow* sw = qobject_cast<QMdiSubWindow*>(form->parentWidget());
        connect(a, &QAction::triggered, this, [this, sw] {
            if (m_mdi->subWindowList().contains(sw))
                m_mdi->setActiveSubWindow(sw);
        });
    }
}

} // namespace velunta
