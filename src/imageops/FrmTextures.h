#pragma once
// The Texture Fill dialog: the program's own textures, and pictures from any folder
// as textures of one's own. The choice shows tiled in the preview; OK hands it to the
// caller, which tiles it over the picture or the selection.

#include <QDialog>
#include <QImage>
#include <QVector>

class QComboBox;
class QLabel;
class QListWidget;
class QListWidgetItem;

namespace velunta {

class Prompt;
class TextureTile;

class FrmTextures : public QDialog {
    Q_OBJECT
public:
    // `textureFolder` holds the built-in textures (with a trailing "/"); `lastUserTexture`
    // is the user texture chosen last time (UserTextures0), whose folder the lists open.
    FrmTextures(const QString& textureFolder, const QString& lastUserTexture, Prompt& prompt,
                QWidget* parent = nullptr);

    // A texture was picked, so OK applies it.
    bool TextureChosen = false;
    // The texture comes from File1.
    bool TextureFromFile = false;
    // The chosen picture (Format_RGB32), and its file when it is a user texture.
    const QImage& texture() const { return m_texture; }
    QString userTexture() const { return m_userTexture; }
    // The folder Dir1 shows.
    QString folder() const { return m_folder; }

    // The built-in textures, in their order.
    int textureCount() const { return m_builtIn.size(); }
    TextureTile* ImgTextures(int index) const { return m_builtIn.at(index); }
    QComboBox* Drive1() const { return m_drives; }
    QListWidget* Dir1() const { return m_dirs; }
    QListWidget* File1() const { return m_files; }
    QLabel* Image1() const { return m_preview; }

    void ImgTextures_Click(int index);
    // Loads a picture file as the texture; a file that can't be read says why and
    // leaves the previous choice.
    bool File1_Click(const QString& path);
    // Shows the folder in Dir1 and its pictures in File1.
    void openFolder(const QString& path);
    // OK.
    void Command1_Click();

private:
    void choose(const QImage& picture);
    void showChoice();
    void fillDrives();

    Prompt& m_prompt;
    QVector<TextureTile*> m_builtIn;
    QComboBox* m_drives = nullptr;
    QListWidget* m_dirs = nullptr;
    QListWidget* m_files = nullptr;
    QLabel* m_folderLabel = nullptr;
    QLabel* m_preview = nullptr;
    QLabel* m_size = nullptr;
    QString m_folder;
    QImage m_texture;
    QString m_userTexture;
};

// One of the built-in textures as a button: the texture at its true size, framed,
// marked while it is the choice.
class TextureTile : public QWidget {
    Q_OBJECT
public:
    TextureTile(const QImage& texture, const QString& name, QWidget* parent);
    const QImage& texture() const { return m_texture; }
    void setChosen(bool chosen);

Q_SIGNALS:
    void clicked();
    void doubleClicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QImage m_texture;
    bool m_chosen = false;
};

} // namespace velunta
