#include "core/SafeFile.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSaveFile>

#include <fcntl.h>
#include <unistd.h>

namespace velunta {

bool WriteFileSafely(const QString& path, const QByteArray& bytes, QString* reason)
{
    // QSaveFile writes to a temporary file in the same folder, flushes it with
    // fdatasync and renames it over the target only in commit(). It is opened
    // unbuffered because it misses a failure of its own buffer's last write at the
    // commit; a short write is retried, and the retry names the reason.
    QSaveFile file(path);
    file.setDirectWriteFallback(false);
    QString failure;
    if (file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        for (qsizetype at = 0; at < bytes.size() && failure.isEmpty();) {
            const qint64 n = file.write(bytes.constData() + at, bytes.size() - at);
            if (n <= 0)
                failure = file.errorString();
            at += qMax<qint64>(n, 0);
        }
        if (failure.isEmpty() && file.commit()) {
            SyncFolder(QFileInfo(path).absolutePath());
            return true;
        }
    }
    if (failure.isEmpty())
        failure = file.errorString();
    file.cancelWriting();
    if (reason)
        *reason = failure.isEmpty() ? QCoreApplication::translate("PictureFiles", "Unknown error") : failure;
    return false;
}

void SyncFolder(const QString& folder)
{
    const int fd = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return;
    ::fsync(fd);
    ::close(fd);
}

} // namespace velunta
