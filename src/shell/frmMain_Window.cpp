// The Window menu.

#include "shell/frmMain.h"

#include "document/frmPaint.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>

#include <algorithm>

namespace velunta {

namespace {

// The document windows an arrangement moves: those shown and not minimised.
QList<QMdiSubWindow*> arrangeable(QMdiArea* mdi, QMdiArea::WindowOrder order)
{
    QList<QMdiSubWindow*> windows;
    for (QMdiSubWindow* sw : mdi->subWindowList(order))
        if (sw->isVisible() && !sw->isMinimized())
            windows << sw;
    return windows;
}

// Tiles the visible document windows: horizontal stacks them full width one above the
// other, vertical puts them side by side.
void tile(QMdiArea* mdi, bool horizontal)
{
    const QList<QMdiSubWindow*> windows = arrangeable(mdi, QMdiArea::StackingOrder);
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
    // The windows overlap one title bar apart, each large enough to work in: as large as
    // the area less the steps, but never below two thirds of it. When the steps run out of
    // room they start again at the top left.
    const QList<QMdiSubWindow*> windows = arrangeable(m_mdi, QMdiArea::CreationOrder);
    if (windows.isEmpty())
        return;
    const QSize area = m_mdi->viewport()->size();
    const QSize frame = DocumentWindowFrame(windows.first());
    const int step = std::max(8, frame.height() - frame.width() / 2);
    const int n = int(windows.size());
    const QSize size(std::max(area.width() - step * (n - 1), area.width() * 2 / 3),
                     std::max(area.height() - step * (n - 1), area.height() * 2 / 3));
    const int steps =
        std::max(1, std::min(area.width() - size.width(), area.height() - size.height()) / step + 1);
    for (int i = 0; i < n; ++i) {
        QMdiSubWindow* sw = windows[i];
        if (sw->isMaximized())
            sw->showNormal();
        const int k = i % steps;
        sw->setGeometry(k * step, k * step, size.width(), size.height());
        sw->raise();
    }
    // The picture being worked on stays in front.
    if (QMdiSubWindow* active = m_mdi->activeSubWindow())
        active->raise();
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
