#include "imageops/FrmTextures.h"

#include "core/Prompt.h"
#include "core/Surface.h"
#include "files/read/PictureLoader.h"
#include "imageops/TileTexture.h"
#include "widgets/ButtonLooks.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QStorageInfo>
#include <QVBoxLayout>

namespace velunta {

namespace {

constexpr int kTileSide = 56;
constexpr int kPreviewSide = 176;

// "07-grass.png" shows as "grass".
QString TextureName(const QString& fileName)
{
    QString name = QFileInfo(fileName).completeBaseName();
    const int dash = name.indexOf(u'-');
    if (dash > 0 && name.left(dash).toInt() > 0)
        name = name.mid(dash + 1);
    return name.replace(u'-', u' ');
}

} // namespace

TextureTile::TextureTile(const QImage& texture, const QString& name, QWidget* parent)
    : QWidget(parent), m_texture(texture)
{
    setFixedSize(kTileSide + 6, kTileSide + 6);
    setToolTip(name);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
}

void TextureTile::setChosen(bool chosen)
{
    m_chosen = chosen;
    update();
}

void TextureTile::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    const QRect inner = rect().adjusted(3, 3, -3, -3);
    // The texture at its true size, repeated when it is smaller than the tile: what the
    // picture will look like.
    p.setBrushOrigin(inner.topLeft());
    p.fillRect(inner, QBrush(m_texture));
    const QColor mark = m_chosen
                            ? palette().color(QPalette::Highlight)
                            : (hasFocus() ? palette().color(QPalette::Mid) : palette().color(QPalette::Dark));
    p.setPen(QPen(mark, m_chosen ? 3 : 1));
    p.setBrush(Qt::NoBrush);
    p.drawRect(m_chosen ? rect().adjusted(1, 1, -2, -2) : inner.adjusted(-1, -1, 0, 0));
}

void TextureTile::mousePressEvent(QMouseEvent*)
{
    Q_EMIT clicked();
}

void TextureTile::mouseDoubleClickEvent(QMouseEvent*)
{
    Q_EMIT doubleClicked();
}

void TextureTile::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Space)
        Q_EMIT clicked();
    else
        QWidget::keyPressEvent(event);
}

FrmTextures::FrmTextures(const QString& textureFolder, const QString& lastUserTexture, Prompt& prompt,
                         QWidget* parent)
    : QDialog(parent), m_prompt(prompt)
{
    setObjectName(QStringLiteral("FrmTextures"));
    setWindowTitle(tr("Texture Fill"));
    auto* layout = new QVBoxLayout(this);
    auto* columns = new QHBoxLayout;
    layout->addLayout(columns);

    auto* builtIn = new QGroupBox(tr("Textures"), this);
    auto* grid = new QGridLayout(builtIn);
    grid->setSpacing(2);
    const QStringList files = QDir(textureFolder).entryList(TextureFileFilters(), QDir::Files, QDir::Name);
    for (const QString& file : files) {
        const QImage picture = LoadPicture(textureFolder + file);
        if (picture.isNull())
            continue;
        const int index = int(m_builtIn.size());
        auto* tile = new TextureTile(picture, TextureName(file), builtIn);
        tile->setObjectName(QStringLiteral("ImgTextures(%1)").arg(index));
        grid->addWidget(tile, index / 4, index % 4);
        connect(tile, &TextureTile::clicked, this, [this, index] { ImgTextures_Click(index); });
        connect(tile, &TextureTile::doubleClicked, this, [this, index] {
            ImgTextures_Click(index);
            Command1_Click();
        });
        m_builtIn.push_back(tile);
    }
    if (m_builtIn.isEmpty())
        grid->addWidget(new QLabel(tr("The textures that come with Velunta\nwere not found."), builtIn), 0,
                        0);
    grid->setRowStretch(grid->rowCount(), 1);
    columns->addWidget(builtIn);

    auto* own = new QGroupBox(tr("Your own textures"), this);
    auto* ownLayout = new QVBoxLayout(own);
    m_drives = new QComboBox(own);
    m_drives->setObjectName(QStringLiteral("Drive1"));
    m_drives->setToolTip(tr("Where to look: your home folder, the whole computer or a drive"));
    fillDrives();
    ownLayout->addWidget(m_drives);
    m_folderLabel = new QLabel(own);
    m_folderLabel->setObjectName(QStringLiteral("lblFolder"));
    m_folderLabel->setTextFormat(Qt::PlainText);
    m_folderLabel->setMinimumWidth(180);
    m_folderLabel->setMaximumWidth(220);
    ownLayout->addWidget(m_folderLabel);
    ownLayout->addWidget(new QLabel(tr("Folders:"), own));
    m_dirs = new QListWidget(own);
    m_dirs->setObjectName(QStringLiteral("Dir1"));
    m_dirs->setToolTip(tr("Double-click a folder to open it"));
    ownLayout->addWidget(m_dirs, 1);
    ownLayout->addWidget(new QLabel(tr("Pictures:"), own));
    m_files = new QListWidget(own);
    m_files->setObjectName(QStringLiteral("File1"));
    m_files->setToolTip(tr("Click a picture to use it as the texture"));
    ownLayout->addWidget(m_files, 1);
    columns->addWidget(own, 1);

    auto* previewBox = new QGroupBox(tr("Preview"), this);
    auto* previewLayout = new QVBoxLayout(previewBox);
    m_preview = new QLabel(previewBox);
    m_preview->setObjectName(QStringLiteral("Image1"));
    m_preview->setFixedSize(kPreviewSide + 2, kPreviewSide + 2);
    m_preview->setFrameShape(QFrame::Box);
    m_preview->setAlignment(Qt::AlignCenter);
    m_preview->setText(tr("Choose a\ntexture"));
    previewLayout->addWidget(m_preview);
    m_size = new QLabel(previewBox);
    m_size->setObjectName(QStringLiteral("lblSize"));
    m_size->setAlignment(Qt::AlignCenter);
    previewLayout->addWidget(m_size);
    previewLayout->addStretch(1);
    columns->addWidget(previewBox);

    auto* buttons = new QDialogButtonBox(this);
    AddDialogButton(buttons, tr("OK"), QDialogButtonBox::AcceptRole, QStringLiteral("Command1"));
    AddDialogButton(buttons, tr("Cancel"), QDialogButtonBox::RejectRole, QStringLiteral("Command2"));
    connect(buttons, &QDialogButtonBox::accepted, this, &FrmTextures::Command1_Click);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);

    connect(m_drives, &QComboBox::activated, this,
            [this](int index) { openFolder(m_drives->itemData(index).toString()); });
    connect(m_dirs, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) {
        openFolder(QDir(m_folder).absoluteFilePath(item->data(Qt::UserRole).toString()));
    });
    connect(m_files, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
        if (!File1_Click(QDir(m_folder).filePath(item->text()))) {
            // The list shows the choice that stands.
            const QSignalBlocker block(m_files);
            m_files->clearSelection();
            if (TextureFromFile && QFileInfo(m_userTexture).absolutePath() == QDir(m_folder).absolutePath())
                if (auto found = m_files->findItems(QFileInfo(m_userTexture).fileName(), Qt::MatchExactly);
                    !found.isEmpty())
                    m_files->setCurrentItem(found.first());
        }
    });

    // The lists open where the last texture of one's own came from.
    const QFileInfo last(lastUserTexture);
    openFolder(!lastUserTexture.isEmpty() && last.dir().exists() ? last.absolutePath() : QDir::homePath());
    if (last.isFile()) {
        const QSignalBlocker block(m_files);
        if (auto found = m_files->findItems(last.fileName(), Qt::MatchExactly); !found.isEmpty())
            m_files->setCurrentItem(found.first());
    }
}

void FrmTextures::fillDrives()
{
    m_drives->addItem(tr("Home folder"), QDir::homePath());
    m_drives->addItem(tr("Computer"), QDir::rootPath());
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        const QString root = volume.rootPath();
        // The drives a user plugs in or mounts; the system's own mounts are no place
        // for pictures.
        if (volume.isValid() && volume.isReady() &&
            (root.startsWith(QLatin1String("/media/")) || root.startsWith(QLatin1String("/mnt/")) ||
             root.startsWith(QLatin1String("/run/media/"))))
            m_drives->addItem(volume.displayName(), root);
    }
}

void FrmTextures::openFolder(const QString& path)
{
    QDir dir(path);
    if (!dir.exists() || !dir.isReadable())
        return;
    m_folder = dir.absolutePath();
    m_folderLabel->setText(QDir::toNativeSeparators(m_folder));
    m_folderLabel->setToolTip(m_folderLabel->text());
    m_dirs->clear();
    if (!dir.isRoot()) {
        auto* up = new QListWidgetItem(QStringLiteral(".."), m_dirs);
        up->setData(Qt::UserRole, QStringLiteral(".."));
    }
    for (const QString& sub :
         dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase)) {
        auto* item = new QListWidgetItem(sub + u'/', m_dirs);
        item->setData(Qt::UserRole, sub);
    }
    m_files->clear();
    m_files->addItems(dir.entryList(TextureFileFilters(), QDir::Files, QDir::Name | QDir::IgnoreCase));
    // The drive list follows the folder: the longest root that holds it.
    int drive = 0;
    qsizetype longest = -1;
    for (int i = 0; i < m_drives->count(); ++i) {
        const QString root = QDir(m_drives->itemData(i).toString()).absolutePath();
        const bool holds = m_folder == root || m_folder.startsWith(root.endsWith(u'/') ? root : root + u'/');
        if (holds && root.length() > longest) {
            drive = i;
            longest = root.length();
        }
    }
    m_drives->setCurrentIndex(drive);
}

void FrmTextures::ImgTextures_Click(int index)
{
    if (index < 0 || index >= m_builtIn.size())
        return;
    TextureFromFile = false;
    m_userTexture.clear();
    choose(m_builtIn[index]->texture());
    for (int i = 0; i < m_builtIn.size(); ++i)
        m_builtIn[i]->setChosen(i == index);
    const QSignalBlocker block(m_files);
    m_files->clearSelection();
}

bool FrmTextures::File1_Click(const QString& path)
{
    QString why;
    int number = 0;
    const QImage picture = LoadPicture(path, &why, &number);
    if (picture.isNull()) {
        // A file that isn't there or can't be opened, one that is no picture we read,
        // and one too big for the memory each have their own title.
        const QString title = number == ErrInvalidPicture ? tr("Incompatible picture format")
                              : number == ErrOutOfMemory  ? tr("Image to big")
                                                          : tr("Unable to open picture");
        m_prompt.MsgBox(tr("Could not open/read the selected picture."), vbExclamation, title);
        return false;
    }
    TextureFromFile = true;
    m_userTexture = QFileInfo(path).absoluteFilePath();
    choose(picture);
    for (TextureTile* tile : m_builtIn)
        tile->setChosen(false);
    return true;
}

void FrmTextures::choose(const QImage& picture)
{
    m_texture = picture.convertToFormat(QImage::Format_RGB32);
    TextureChosen = true;
    showChoice();
}

void FrmTextures::showChoice()
{
    Surface preview;
    preview.setScaleSize(kPreviewSide, kPreviewSide);
    Surface tile;
    tile.setImage(m_texture);
    TileTexture(preview, tile);
    m_preview->setPixmap(QPixmap::fromImage(preview.Image()));
    m_size->setText(tr("%1 x %2 pixels").arg(m_texture.width()).arg(m_texture.height()));
}

void FrmTextures::Command1_Click()
{
    accept();
}

} // namespace velunta
