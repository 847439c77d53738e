#include "files/SaveTarget.h"

#include "core/SafeFile.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <cerrno>

namespace velunta {

namespace {

// The code of a failed file call, from the error number the system left: the words of
// the message differ between languages, the numbers don't.
WriteError errorOf(int number, QFileDevice::FileError kind)
{
    switch (number) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return WriteError::DiskFull;
    case EACCES:
    case EPERM:
    case EROFS:
        return WriteError::PermissionDenied;
    case ENOENT:
        return WriteError::PathNotFound;
    default:
        return kind == QFileDevice::ResourceError ? WriteError::DiskFull : WriteError::Refused;
    }
}

} // namespace

SaveTarget::SaveTarget(const QString& path) : m_file(path)
{
    // Never write in place: without the temporary file a failure half way would
    // destroy the picture that was there.
    m_file.setDirectWriteFallback(false);
}

SaveTarget::~SaveTarget()
{
    cancel();
}

bool SaveTarget::open()
{
    if (m_file.fileName().isEmpty()) {
        fail(QCoreApplication::translate("PictureFiles", "No file name"), WriteError::PathNotFound);
        return false;
    }
    // Unbuffered: QSaveFile misses a failure of its own buffer's last write at the
    // commit and would rename a file cut short by a full disk over the old one. Our
    // buffer is larger anyway, and every write is checked here.
    errno = 0;
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        failFile();
        return false;
    }
    m_open = true;
    m_buffer.reserve(kBufferSize);
    return true;
}

bool SaveTarget::writeThrough(const char* data, qsizetype size)
{
    // A short write is retried: the system names the reason (a full disk, say)
    // only when the write after it fails outright.
    while (size > 0) {
        errno = 0;
        const qint64 n = m_file.write(data, size);
        if (n <= 0) {
            failFile();
            return false;
        }
        data += n;
        size -= n;
    }
    return true;
}

bool SaveTarget::flush()
{
    if (failed() || !m_open)
        return false;
    if (!writeThrough(m_buffer.constData(), m_buffer.size()))
        return false;
    m_buffer.clear();
    return true;
}

bool SaveTarget::write(const void* data, qsizetype size)
{
    if (failed() || !m_open)
        return false;
    // Large pieces go straight to the file rather than through another copy.
    if (m_buffer.size() + size > kBufferSize || size >= kBufferSize / 4) {
        if (!flush())
            return false;
        if (size >= kBufferSize / 4)
            return writeThrough(static_cast<const char*>(data), size);
    }
    m_buffer.append(static_cast<const char*>(data), size);
    return true;
}

bool SaveTarget::commit()
{
    if (!flush()) {
        cancel();
        return false;
    }
    m_open = false;
    errno = 0;
    if (!m_file.commit()) {
        failFile();
        return false;
    }
    SyncFolder(QFileInfo(m_file.fileName()).absolutePath());
    return true;
}

void SaveTarget::cancel()
{
    if (m_open) {
        m_file.cancelWriting();
        m_file.commit(); // with the writing cancelled this only removes the temporary file
        m_open = false;
    }
}

void SaveTarget::failFile()
{
    fail(m_file.errorString(), errorOf(errno, m_file.error()));
}

void SaveTarget::fail(const QString& reason, WriteError error)
{
    if (!failed()) {
        m_failed.error = error == WriteError::None ? WriteError::Refused : error;
        m_failed.reason =
            reason.isEmpty() ? QCoreApplication::translate("PictureFiles", "Unknown error") : reason;
    }
}

bool SaveTarget::report(WriteFailure* failure) const
{
    if (failure)
        *failure = m_failed;
    return !failed();
}

} // namespace velunta
