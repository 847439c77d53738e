#pragma once
// The one way the writers put a file on disk. Everything goes to a temporary file
// in the target's folder, which replaces the target only when commit() succeeds;
// a writer that fails or gives up leaves an existing file exactly as it was.
//
// Writes are gathered in a buffer so that a writer can hand over a few bytes at a
// time without a system call each. The first failure is kept: its code, from what
// the system said, and its reason in the system's own words ("Permission denied",
// "No space left on device").

#include "files/WriteError.h"

#include <QByteArray>
#include <QSaveFile>
#include <QString>

namespace velunta {

class SaveTarget {
public:
    explicit SaveTarget(const QString& path);
    ~SaveTarget();
    SaveTarget(const SaveTarget&) = delete;
    SaveTarget& operator=(const SaveTarget&) = delete;

    // Creates the temporary file. False (with the reason) when the folder refuses it.
    bool open();
    // Appends bytes; false once anything has failed.
    bool write(const void* data, qsizetype size);
    // Writes what is left and renames the temporary file over the target.
    bool commit();
    // Drops the temporary file; the target stays as it was.
    void cancel();

    // Records a failure of the writer's own (the file is then never committed).
    void fail(const QString& reason, WriteError error = WriteError::Refused);
    bool failed() const { return m_failed.error != WriteError::None; }
    const QString& reason() const { return m_failed.reason; }
    // Copies the failure to the caller's slot when it has one; true when nothing failed.
    bool report(WriteFailure* failure) const;

private:
    static constexpr qsizetype kBufferSize = 1 << 20;
    bool flush();
    bool writeThrough(const char* data, qsizetype size);
    // Records the failure of the file call just made, by the system's error number.
    void failFile();

    QSaveFile m_file;
    QByteArray m_buffer;
    WriteFailure m_failed;
    bool m_open = false;
};

} // namespace velunta
