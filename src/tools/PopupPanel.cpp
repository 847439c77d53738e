#include "tools/PopupPanel.h"

#include <QFontInfo>
#include <QListWidget>
#include <QVBoxLayout>

namespace velunta {

PopupPanel::PopupPanel(const QString& name, QWidget* parent) : QFrame(parent)
{
    setObjectName(name);
    setFrameShape(QFrame::Box);
    setAutoFillBackground(true);
    setStyleSheet(QStringLiteral("#%1 { background: rgb(240,248,255); border: 1px solid rgb(80,120,190); "
                                 "border-radius: 3px; }")
                      .arg(name));
    hide();
}

void PopupPanel::popUpUnder(const QWidget* anchor)
{
    QWidget* host = parentWidget();
    QPoint at = anchor->mapTo(host, QPoint(0, anchor->height() + 2));
    adjustSize();
    // Kept inside the main window: a selector near the right edge opens leftwards.
    at.setX(std::clamp(at.x(), 0, std::max(0, host->width() - width())));
    at.setY(std::clamp(at.y(), 0, std::max(0, host->height() - height())));
    move(at);
    show();
    raise();
}

PickList::PickList(const QString& name, QWidget* parent) : PopupPanel(name, parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("VScroll1"));
    m_list->setMouseTracking(true);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setStyleSheet(QStringLiteral("QListWidget { background: white; }"
                                         "QListWidget::item { border: none; padding-left: 6px; }"
                                         "QListWidget::item:hover { background: rgb(220,245,255); }"
                                         "QListWidget::item:selected { background: rgb(185,214,249); "
                                         "color: black; }"));
    layout->addWidget(m_list);
    connect(m_list, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) { pick(item->text()); });
}

void PickList::addRow(const QString& text, const QFont& font)
{
    auto* item = new QListWidgetItem(text, m_list);
    item->setFont(font);
    // Rows as high as their own face needs, with a little air.
    item->setSizeHint(QSize(0, QFontMetrics(font).height() + 6));
}

void PickList::setCurrentText(const QString& text)
{
    QList<QListWidgetItem*> found = m_list->findItems(text, Qt::MatchFixedString);
    if (found.isEmpty()) {
        // A font asked for by a name the system lacks shows as the family that stands in for it.
        found = m_list->findItems(QFontInfo(QFont(text)).family(), Qt::MatchFixedString);
    }
    if (found.isEmpty()) {
        m_list->clearSelection();
        return;
    }
    m_list->setCurrentItem(found.first());
    m_list->scrollToItem(found.first(), QAbstractItemView::PositionAtCenter);
}

QStringList PickList::rows() const
{
    QStringList texts;
    for (int i = 0; i < m_list->count(); ++i)
        texts << m_list->item(i)->text();
    return texts;
}

bool PickList::pick(const QString& text)
{
    const QList<QListWidgetItem*> found = m_list->findItems(text, Qt::MatchFixedString);
    if (found.isEmpty())
        return false;
    Q_EMIT picked(found.first()->text());
    return true;
}

} // namespace velunta
