#pragma once
// File > Open in thumbnail-view: the pictures of a folder (BMP, JPEG, GIF, ICO and
// PNG) as thumbnails, each with its file size and, once read, its size in pixels.
// Folders are entered by a double click, the Up button or by typing a path; a double
// click on a picture, or Open, chooses it. Thumbnails come from the background
// (ThumbnailLoader) and the dialog answers all the while.

#include "files/read/Thumbnail.h"

#include <QDialog>
#include <QHash>

class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;

namespace velunta {

class ThumbnailLoader;
class zolButton;

class frmOpenThumbnail : public QDialog {
    Q_OBJECT
public:
    explicit frmOpenThumbnail(const QString& folder, QWidget* parent = nullptr);
    ~frmOpenThumbnail() override;

    // The folder shown; false (and nothing changes) when it isn't one that can be read.
    bool setFolder(const QString& folder);
    QString folder() const { return m_folder; }
    // The picture chosen with Open or a double click.
    QString selectedFile() const { return m_selected; }

    // The file endings shown, in lower case.
    static const QStringList& PictureSuffixes();

    QListWidget* lstFiles() const { return m_list; }
    QLineEdit* txtFolder() const { return m_path; }
    ThumbnailLoader* loader() const { return m_loader; }
    QListWidgetItem* itemFor(const QString& path) const { return m_items.value(path); }

    void done(int result) override;

private:
    void activate(QListWidgetItem* item);
    void showThumbnail(const QString& path, const Thumbnail& thumbnail);

    QString m_folder;
    QString m_selected;
    QLineEdit* m_path = nullptr;
    QListWidget* m_list = nullptr;
    QLabel* m_status = nullptr;
    zolButton* m_up = nullptr;
    ThumbnailLoader* m_loader = nullptr;
    QHash<QString, QListWidgetItem*> m_items;
};

} // namespace velunta
