#include "shell/ProgressStrip.h"

#include "document/UndoRing.h"
#include "widgets/PanelLooks.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMainWindow>

#include <algorithm>

namespace velunta {

ProgressStrip::ProgressStrip(QMainWindow& window, UndoState& undo, QWidget* parent)
    : QFrame(parent), m_window(window), m_undo(undo)
{
    setObjectName(QStringLiteral("ProcessBg"));
    setFocusPolicy(Qt::StrongFocus);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 3, 6, 3);
    auto* label = new QLabel(tr("Working... (Esc stops)"), this);
    layout->addWidget(label);
    m_process = new QFrame(this);
    m_process->setObjectName(QStringLiteral("Process"));
    m_process->setFixedHeight(14);
    m_process->setMinimumWidth(200);
    m_process->setFrameStyle(QFrame::Box | QFrame::Plain);
    m_process->setAutoFillBackground(true);
    QPalette box = m_process->palette();
    box.setColor(QPalette::Window, Qt::white);
    box.setColor(QPalette::WindowText, kFrameBlue);
    m_process->setPalette(box);
    layout->addWidget(m_process, 1);
    m_bar = new QFrame(m_process);
    m_bar->setObjectName(QStringLiteral("ProcessBar"));
    m_bar->setAutoFillBackground(true);
    QPalette fill = m_bar->palette();
    fill.setColor(QPalette::Window, QColor(70, 130, 220));
    m_bar->setPalette(fill);
    m_bar->setGeometry(1, 1, 1, 12);
    hide();
}

void ProgressStrip::begin()
{
    m_running = true;
    m_fraction = 0;
    m_bar->setGeometry(1, 1, 1, m_process->height() - 2);
    show();
    // The window takes no input meanwhile; the strip keeps the focus so Esc reaches it.
    // Only what was enabled is disabled, so the end gives back exactly that.
    auto disable = [this](QWidget* w) {
        if (w != this && w->isEnabled()) {
            w->setEnabled(false);
            m_disabled.append(w);
        }
    };
    QWidget* central = m_window.centralWidget();
    for (QWidget* w : m_window.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        if (w != central)
            disable(w);
    if (central)
        for (QWidget* w : central->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
            disable(w);
    setFocus();
    QCoreApplication::processEvents();
}

bool ProgressStrip::step(double fraction)
{
    m_fraction = std::clamp(fraction, 0.0, 1.0);
    const int width = std::max(1, int((m_process->width() - 2) * m_fraction));
    m_bar->setGeometry(1, 1, width, m_process->height() - 2);
    QCoreApplication::processEvents();
    return m_undo.CancelRequested;
}

void ProgressStrip::end()
{
    hide();
    for (const QPointer<QWidget>& w : std::as_const(m_disabled))
        if (w)
            w->setEnabled(true);
    m_disabled.clear();
    m_running = false;
}

} // namespace velunta
