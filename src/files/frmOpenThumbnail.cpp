#include "files/frmOpenThumbnail.h"

#include "files/ThumbnailLoader.h"
#include "widgets/ButtonLooks.h"
#include "widgets/zolButton.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QPainter>
#include <QStyle>
#include <QVBoxLayout>

namespace velunta {

namespace {

constexpr int kSide = 128;
constexpr int kPathRole = Qt::UserRole;
constexpr int kFolderRole = Qt::UserRole + 1;

// An empty frame while the thumbnail loads; a torn page with a red cross for a file
// that gives none.
QIcon tile(bool broken)
{
    QPixmap pixmap(kSide, kSide);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF page(kSide * 0.2, kSide * 0.1, kSide * 0.6, kSide * 0.8);
    p.setPen(QPen(QColor(150, 150, 150), 2));
    p.setBrush(broken ? QColor(250, 240, 240) : QColor(245, 245, 245));
    p.drawRect(page);
    if (broken) {
        p.setPen(QPen(QColor(200, 40, 40), 6, Qt::SolidLine, Qt::RoundCap));
        const QRectF cross = page.adjusted(page.width() * 0.25, page.height() * 0.3, -page.width() * 0.25,
                                           -page.height() * 0.3);
        p.drawLine(cross.topLeft(), cross.bottomRight());
        p.drawLine(cross.topRight(), cross.bottomLeft());
    }
    return QIcon(pixmap);
}

// Every tile square and of one size, the picture centred, so that the captions line up.
QIcon squareIcon(const QImage& image)
{
    QPixmap pixmap(kSide, kSide);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.drawImage((kSide - image.width()) / 2, (kSide - image.height()) / 2, image);
    return QIcon(pixmap);
}

QString sizeText(qint64 bytes)
{
    return QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat);
}

} // namespace

const QStringList& frmOpenThumbnail::PictureSuffixes()
{
    static const QStringList suffixes{QStringLiteral("bmp"),  QStringLiteral("dib"),  QStringLiteral("rle"),
                                      QStringLiteral("jpg"),  QStringLiteral("jpeg"), QStringLiteral("jpe"),
                                      QStringLiteral("jfif"), QStringLiteral("gif"),  QStringLiteral("ico"),
                                      QStringLiteral("cur"),  QStringLiteral("png")};
    return suffixes;
}

frmOpenThumbnail::frmOpenThumbnail(const QString& folder, QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmOpenThumbnail"));
    setWindowTitle(tr("Open in thumbnail-view"));
    auto* layout = new QVBoxLayout(this);

    auto* bar = new QHBoxLayout;
    bar->addWidget(new QLabel(tr("Folder:"), this));
    m_path = new QLineEdit(this);
    m_path->setObjectName(QStringLiteral("txtFolder"));
    connect(m_path, &QLineEdit::returnPressed, this, [this] {
        if (!setFolder(m_path->text()))
            m_path->setText(QDir::toNativeSeparators(m_folder));
    });
    bar->addWidget(m_path, 1);
    m_up = new zolButton(this);
    m_up->setObjectName(QStringLiteral("cmdUp"));
    m_up->setCaption(tr("&Up"));
    m_up->setToolTip(tr("The folder that holds this one"));
    DialogLook(m_up);
    connect(m_up, &zolButton::Click, this, [this] {
        QDir dir(m_folder);
        if (dir.cdUp())
            setFolder(dir.absolutePath());
    });
    bar->addWidget(m_up);
    layout->addLayout(bar);

    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("lstFiles"));
    m_list->setViewMode(QListView::IconMode);
    m_list->setIconSize(QSize(kSide, kSide));
    m_list->setGridSize(QSize(kSide + 40, kSide + 4 * m_list->fontMetrics().height()));
    m_list->setMovement(QListView::Static);
    m_list->setResizeMode(QListView::Adjust);
    m_list->setWordWrap(true);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    connect(m_list, &QListWidget::itemActivated, this, &frmOpenThumbnail::activate);
    layout->addWidget(m_list, 1);

    auto* bottom = new QHBoxLayout;
    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("lblStatus"));
    bottom->addWidget(m_status, 1);
    auto* buttons = new QDialogButtonBox(this);
    AddDialogButton(buttons, tr("&Open"), QDialogButtonBox::AcceptRole, QStringLiteral("cmdOpen"));
    AddDialogButton(buttons, tr("Cancel"), QDialogButtonBox::RejectRole, QStringLiteral("cmdCancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { activate(m_list->currentItem()); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    bottom->addWidget(buttons);
    layout->addLayout(bottom);

    m_loader = new ThumbnailLoader(kSide, this);
    connect(m_loader, &ThumbnailLoader::ready, this, &frmOpenThumbnail::showThumbnail);
    resize(820, 600);
    if (!setFolder(folder))
        setFolder(QDir::homePath());
}

frmOpenThumbnail::~frmOpenThumbnail() = default;

void frmOpenThumbnail::done(int result)
{
    // No folder goes on loading behind a closed dialog.
    m_loader->cancel();
    QDialog::done(result);
}

bool frmOpenThumbnail::setFolder(const QString& folder)
{
    const QDir dir(QDir::fromNativeSeparators(folder.trimmed()));
    if (folder.trimmed().isEmpty() || !dir.exists() || !dir.isReadable()) {
        m_status->setText(tr("The folder \"%1\" can't be opened.").arg(folder.trimmed()));
        return false;
    }
    m_loader->cancel();
    m_folder = dir.absolutePath();
    m_path->setText(QDir::toNativeSeparators(m_folder));
    m_up->setEnabled(!dir.isRoot());
    m_list->clear();
    m_items.clear();

    const QIcon folderIcon = style()->standardIcon(QStyle::SP_DirIcon);
    for (const QFileInfo& info :
         dir.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase)) {
        auto* item = new QListWidgetItem(folderIcon, info.fileName(), m_list);
        item->setData(kPathRole, info.absoluteFilePath());
        item->setData(kFolderRole, true);
    }
    QStringList filters;
    for (const QString& suffix : PictureSuffixes())
        filters << QStringLiteral("*.") + suffix;
    const QIcon loading = tile(false);
    QStringList paths;
    for (const QFileInfo& info : dir.entryInfoList(filters, QDir::Files, QDir::Name | QDir::IgnoreCase)) {
        auto* item =
            new QListWidgetItem(loading, info.fileName() + QLatin1Char('\n') + sizeText(info.size()), m_list);
        item->setData(kPathRole, info.absoluteFilePath());
        item->setData(kFolderRole, false);
        item->setToolTip(info.fileName());
        m_items.insert(info.absoluteFilePath(), item);
        paths << info.absoluteFilePath();
    }
    m_status->setText(paths.isEmpty()     ? tr("No pictures in this folder.")
                      : paths.size() == 1 ? tr("1 picture")
                                          : tr("%1 pictures").arg(paths.size()));
    m_loader->load(paths);
    return true;
}

void frmOpenThumbnail::showThumbnail(const QString& path, const Thumbnail& thumbnail)
{
    QListWidgetItem* item = m_items.value(path);
    if (!item)
        return;
    const QFileInfo info(path);
    QString text = info.fileName() + QLatin1Char('\n') + sizeText(info.size()) + QLatin1Char('\n');
    if (thumbnail.ok()) {
        item->setIcon(squareIcon(thumbnail.image));
        text +=
            QStringLiteral("%1 x %2").arg(thumbnail.pictureSize.width()).arg(thumbnail.pictureSize.height());
    } else {
        static const QIcon broken = tile(true);
        item->setIcon(broken);
        text += tr("can't be shown");
        item->setToolTip(info.fileName() + QLatin1Char('\n') + thumbnail.error);
    }
    item->setText(text);
}

void frmOpenThumbnail::activate(QListWidgetItem* item)
{
    if (!item)
        return;
    const QString path = item->data(kPathRole).toString();
    if (item->data(kFolderRole).toBool()) {
        setFolder(path);
        return;
    }
    m_selected = path;
    accept();
}

} // namespace velunta
