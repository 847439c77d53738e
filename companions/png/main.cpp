// Velunta's PNG companion, given one file:
//   a PNG            becomes a BMP beside it, with the same name and the extension
//                    ".tmp" (an import: Velunta loads that file and deletes it);
//   any other picture becomes a PNG: the file itself when its name ends in ".png" (an
//                    export: Velunta wrote the picture there as a BMP), else the same
//                    name with ".png".
// Exit code 0 when the file was written, 2 when not (the reason on standard error).
// Every file is written whole or not at all.

#include "files/BmpWriter.h"
#include "files/read/PictureLoader.h"

#include <QFile>
#include <QFileInfo>
#include <QImageWriter>
#include <QSaveFile>

#include <cstdio>

using namespace velunta;

namespace {

int fail(const QString& reason)
{
    std::fprintf(stderr, "png: %s\n", qPrintable(reason));
    return 2;
}

// The name with its extension replaced; a name without one gets it added.
QString withExtension(const QString& name, const QString& extension)
{
    const QFileInfo info(name);
    const qsizetype dot = info.fileName().lastIndexOf(u'.');
    const QString stem = dot > 0 ? name.left(name.size() - info.fileName().size() + dot) : name;
    return stem + extension;
}

bool isPng(const QString& name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) && file.read(8) == QByteArray("\x89PNG\r\n\x1A\n", 8);
}

int writePng(const QImage& picture, const QString& target)
{
    QSaveFile file(target);
    if (!file.open(QIODevice::WriteOnly))
        return fail(target + QStringLiteral(": ") + file.errorString());
    QImageWriter writer(&file, "png");
    if (!writer.write(picture)) {
        file.cancelWriting();
        return fail(target + QStringLiteral(": ") + writer.errorString());
    }
    return file.commit() ? 0 : fail(target + QStringLiteral(": ") + file.errorString());
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
        return fail(QStringLiteral("usage: png FILE"));
    const QString name = QFile::decodeName(argv[1]);
    QString error;
    int number = 0;
    const QImage picture = LoadPicture(name, &error, &number);
    if (picture.isNull())
        return fail(name + QStringLiteral(": ") +
                    (error.isEmpty() ? QStringLiteral("can't be read") : error));
    if (isPng(name)) {
        WriteFailure failure;
        const QString target = withExtension(name, QStringLiteral(".tmp"));
        return SaveBMP(picture, target, &failure) ? 0 : fail(target + QStringLiteral(": ") + failure.reason);
    }
    return writePng(picture, name.endsWith(QLatin1String(".png"), Qt::CaseInsensitive)
                                 ? name
                                 : withExtension(name, QStringLiteral(".png")));
}
