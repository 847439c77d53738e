#include "imageops/ChosenPicture.h"

#include "core/Prompt.h"
#include "files/read/PictureLoader.h"

#include <QCoreApplication>
#include <QFile>

namespace velunta {

namespace {

// A file that starts like a picture of a kind the program reads: it is damaged or cut
// short rather than of another format.
bool LooksLikeKnownPicture(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = file.read(8);
    return head.startsWith("BM") || head.startsWith("\xFF\xD8") || head.startsWith("GIF8") ||
           head.startsWith("\x89PNG") || head.startsWith(QByteArray("\0\0\1\0", 4)) ||
           head.startsWith(QByteArray("\0\0\2\0", 4));
}

} // namespace

QImage LoadChosenPicture(const QString& path, Prompt& prompt)
{
    QString detail;
    int number = 0;
    QImage picture = LoadPicture(path, &detail, &number);
    if (!picture.isNull())
        return picture;
    auto tr = [](const char* text) { return QCoreApplication::translate("ChosenPicture", text); };
    QString title = tr("Unable to open picture");
    if (number == ErrOutOfMemory)
        title = tr("Image to big");
    else if (number == ErrInvalidPicture && !LooksLikeKnownPicture(path))
        title = tr("Incompatible picture format");
    QString text = tr("Could not open/read the selected picture.");
    if (!detail.isEmpty())
        text += QStringLiteral("\n\n") + detail;
    prompt.MsgBox(text, vbExclamation, title);
    return QImage();
}

} // namespace velunta
