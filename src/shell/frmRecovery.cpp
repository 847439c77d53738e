#include "shell/frmRecovery.h"

#include "widgets/Icons.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace velunta {

namespace {

constexpr int kThumbnailSide = 96;

// The thumbnail centred on a square with a thin frame, so wide and tall pictures line up.
QIcon framedThumbnail(const QImage& thumbnail)
{
    QPixmap square(kThumbnailSide + 2, kThumbnailSide + 2);
    square.fill(Qt::transparent);
    QPainter p(&square);
    if (!thumbnail.isNull()) {
        const QRect at(
            QPoint((square.width() - thumbnail.width()) / 2, (square.height() - thumbnail.height()) / 2),
            thumbnail.size());
        p.drawImage(at, thumbnail);
        p.setPen(QColor(116, 156, 218));
        p.drawRect(at.adjusted(-1, -1, 0, 0));
    }
    return QIcon(square);
}

} // namespace

frmRecovery::frmRecovery(const QList<RecoveryOffer>& found, QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmRecovery"));
    setWindowTitle(tr("Restore Unsaved Pictures"));
    auto* layout = new QVBoxLayout(this);

    auto* top = new QHBoxLayout;
    auto* icon = new QLabel(this);
    icon->setPixmap(NamedIcon(QStringLiteral("app")).pixmap(48, 48));
    icon->setAlignment(Qt::AlignTop);
    top->addWidget(icon);
    auto* words = new QVBoxLayout;
    auto* heading = new QLabel(
        found.size() == 1
            ? tr("Velunta kept a picture that was not saved when it last ended.")
            : tr("Velunta kept %1 pictures that were not saved when it last ended.").arg(found.size()),
        this);
    QFont bold = heading->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.15);
    heading->setFont(bold);
    heading->setWordWrap(true);
    words->addWidget(heading);
    auto* help =
        new QLabel(tr("Tick the pictures to bring back. Pictures without a tick are deleted."), this);
    help->setWordWrap(true);
    words->addWidget(help);
    top->addLayout(words, 1);
    layout->addLayout(top);

    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("lstPictures"));
    m_list->setIconSize(QSize(kThumbnailSide + 2, kThumbnailSide + 2));
    m_list->setSpacing(4);
    m_list->setSelectionMode(QAbstractItemView::NoSelection);
    const QLocale locale;
    for (const RecoveryOffer& offer : found) {
        const QString name = offer.name.isEmpty() ? tr("Untitled") : QFileInfo(offer.name).fileName();
        QString text = name + u'\n' +
                       tr("%1 x %2 pixels, kept %3")
                           .arg(offer.size.width())
                           .arg(offer.size.height())
                           .arg(locale.toString(offer.written, QLocale::ShortFormat));
        text +=
            u'\n' + (offer.path.isEmpty()
                         ? tr("Never saved")
                         : tr("From %1").arg(QDir::toNativeSeparators(QFileInfo(offer.path).absolutePath())));
        auto* item = new QListWidgetItem(framedThumbnail(offer.thumbnail), text, m_list);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Checked);
        item->setToolTip(offer.path.isEmpty() ? name : QDir::toNativeSeparators(offer.path));
    }
    connect(m_list, &QListWidget::itemChanged, this, &frmRecovery::ticksChanged);
    layout->addWidget(m_list, 1);

    auto* buttons = new QDialogButtonBox(this);
    m_restore = buttons->addButton(tr("Restore"), QDialogButtonBox::AcceptRole);
    m_restore->setObjectName(QStringLiteral("cmdRestore"));
    m_restore->setDefault(true);
    QPushButton* discard = buttons->addButton(tr("Discard All"), QDialogButtonBox::DestructiveRole);
    discard->setObjectName(QStringLiteral("cmdDiscard"));
    QPushButton* later = buttons->addButton(tr("Decide Later"), QDialogButtonBox::RejectRole);
    later->setObjectName(QStringLiteral("cmdLater"));
    connect(m_restore, &QPushButton::clicked, this, [this] { finish(RecoveryPrompt::Restore); });
    connect(discard, &QPushButton::clicked, this, &frmRecovery::discardAll);
    connect(later, &QPushButton::clicked, this, [this] { finish(RecoveryPrompt::Later); });
    layout->addWidget(buttons);

    resize(520, std::min(160 + int(found.size()) * (kThumbnailSide + 14), 620));
}

QList<bool> frmRecovery::ticks() const
{
    QList<bool> ticks;
    for (int i = 0; i < m_list->count(); ++i)
        ticks << (m_list->item(i)->checkState() == Qt::Checked);
    return ticks;
}

void frmRecovery::ticksChanged()
{
    m_restore->setEnabled(ticks().contains(true));
}

void frmRecovery::discardAll()
{
    if (QMessageBox::question(this, tr("Discard All"), tr("Delete the unsaved pictures for good?"),
                              QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::Yes)
        finish(RecoveryPrompt::Discard);
}

void frmRecovery::finish(RecoveryPrompt::Answer answer)
{
    m_answer = answer;
    if (answer == RecoveryPrompt::Later)
        reject();
    else
        accept();
}

RecoveryPrompt::Answer QtRecoveryPrompt::AskRecovery(const QList<RecoveryOffer>& found, QList<bool>& restore)
{
    frmRecovery dialog(found, m_parent);
    dialog.exec();
    restore = dialog.ticks();
    return dialog.answer();
}

} // namespace velunta
