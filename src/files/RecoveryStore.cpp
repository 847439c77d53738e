#include "files/RecoveryStore.h"

#include "core/SafeFile.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QLockFile>

#include <algorithm>

namespace velunta {

namespace {

const QString kSessionPattern = QStringLiteral("session-*");

// The lock of a session lies beside its folder, so it is taken before the folder
// exists and goes after the folder is gone: a session folder without a live lock is
// always one whose program has ended.
std::unique_ptr<QLockFile> lockSession(const QString& folder)
{
    auto lock = std::make_unique<QLockFile>(folder + QStringLiteral(".lock"));
    // Only a dead owner makes a lock stale, never its age: a program may run for weeks.
    lock->setStaleLockTime(0);
    if (!lock->tryLock(0))
        return nullptr;
    return lock;
}

QStringList recoveryFiles(const QString& folder)
{
    QStringList files;
    const QFileInfoList entries =
        QDir(folder).entryInfoList({QStringLiteral("*") + QLatin1String(kRecoveryExtension)}, QDir::Files);
    for (const QFileInfo& entry : entries)
        files << entry.absoluteFilePath();
    return files;
}

} // namespace

RecoveryStore::RecoveryStore(const QString& folder) : m_folder(folder)
{
    if (!m_folder.endsWith(u'/'))
        m_folder += u'/';
}

RecoveryStore::~RecoveryStore()
{
    // Without close() the files stay: the next start offers them.
    releaseFound();
}

bool RecoveryStore::open(QString* reason)
{
    if (isOpen())
        return true;
    const QString name = QStringLiteral("session-%1-%2")
                             .arg(QCoreApplication::applicationPid())
                             .arg(QDateTime::currentMSecsSinceEpoch());
    const QString folder = m_folder + name;
    QString failure;
    if (!QDir().mkpath(m_folder)) {
        failure = QCoreApplication::translate("PictureFiles", "The folder %1 can't be created").arg(m_folder);
    } else if (auto lock = lockSession(folder); !lock) {
        failure = QCoreApplication::translate("PictureFiles", "The folder %1 can't be written").arg(m_folder);
    } else if (!QDir().mkdir(folder)) {
        failure = QCoreApplication::translate("PictureFiles", "The folder %1 can't be created").arg(folder);
    } else {
        m_lock = std::move(lock);
        m_session = folder + u'/';
        return true;
    }
    if (reason)
        *reason = failure;
    return false;
}

QString RecoveryStore::fileOf(int serial) const
{
    return m_session + QStringLiteral("picture-%1").arg(serial) + QLatin1String(kRecoveryExtension);
}

QList<FoundPicture> RecoveryStore::claimFound()
{
    QList<FoundPicture> found;
    const QFileInfoList sessions =
        QDir(m_folder).entryInfoList({kSessionPattern}, QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QFileInfo& session : sessions) {
        const QString folder = session.absoluteFilePath();
        if (folder + u'/' == m_session)
            continue;
        if (std::any_of(m_claimed.begin(), m_claimed.end(),
                        [&](const Claimed& c) { return c.folder == folder; }))
            continue;
        std::unique_ptr<QLockFile> lock = lockSession(folder);
        if (!lock)
            continue; // its program runs
        QList<FoundPicture> pictures;
        for (const QString& file : recoveryFiles(folder)) {
            FoundPicture picture;
            picture.file = file;
            if (ReadRecoveryHeader(file, &picture.header))
                pictures << picture;
        }
        if (pictures.isEmpty()) {
            // Nothing there can be brought back: a session that ended before its first
            // write, or a file cut short by the crash itself.
            QDir(folder).removeRecursively();
            continue;
        }
        found << pictures;
        m_claimed.push_back({folder, std::move(lock)});
    }
    std::stable_sort(found.begin(), found.end(), [](const FoundPicture& a, const FoundPicture& b) {
        return a.header.written < b.header.written;
    });
    return found;
}

bool RecoveryStore::adopt(const FoundPicture& found, int serial)
{
    if (!isOpen())
        return false;
    const QString target = fileOf(serial);
    QFile::remove(target);
    if (!QFile::rename(found.file, target))
        return false;
    SyncFolder(m_session);
    SyncFolder(QFileInfo(found.file).absolutePath());
    return true;
}

void RecoveryStore::discardFound()
{
    for (Claimed& claimed : m_claimed) {
        QDir(claimed.folder).removeRecursively();
        claimed.lock->unlock();
    }
    m_claimed.clear();
}

void RecoveryStore::releaseFound()
{
    for (Claimed& claimed : m_claimed) {
        if (recoveryFiles(claimed.folder).isEmpty())
            QDir(claimed.folder).removeRecursively();
        claimed.lock->unlock();
    }
    m_claimed.clear();
}

void RecoveryStore::close(bool keepFiles)
{
    if (!isOpen())
        return;
    releaseFound();
    const QString folder = m_session;
    if (!keepFiles || recoveryFiles(folder).isEmpty())
        QDir(folder).removeRecursively();
    else
        SyncFolder(folder);
    m_lock->unlock();
    m_lock.reset();
}

} // namespace velunta
