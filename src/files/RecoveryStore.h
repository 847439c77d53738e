#pragma once
// The recovery folder holds one folder per running Velunta (a session), each with the
// recovery files of that program's unsaved pictures. A session is locked while its
// program runs, so instances never touch each other's files; the lock of a program
// that died (killed, a power cut) is stale and the next start takes the session over
// to offer its pictures.

#include "files/RecoveryFile.h"

#include <QList>
#include <QString>

#include <memory>
#include <vector>

class QLockFile;

namespace velunta {

// A picture left in the session of a program that no longer runs.
struct FoundPicture {
    QString file;
    RecoveryHeader header;
};

class RecoveryStore {
public:
    explicit RecoveryStore(const QString& folder);
    ~RecoveryStore();
    RecoveryStore(const RecoveryStore&) = delete;
    RecoveryStore& operator=(const RecoveryStore&) = delete;

    // Takes this program's session: its lock, then its folder. False with the reason
    // when the recovery folder can't be written; nothing is kept then.
    bool open(QString* reason = nullptr);
    bool isOpen() const { return m_lock != nullptr; }
    QString sessionFolder() const { return m_session; }
    // The recovery file of this session's picture number `serial`.
    QString fileOf(int serial) const;

    // The pictures of sessions whose program has ended; those sessions stay locked by
    // this program until discardFound() or releaseFound(), so two programs started
    // together never offer the same picture twice. Oldest first.
    QList<FoundPicture> claimFound();
    // Moves a found picture into this session as picture `serial`.
    bool adopt(const FoundPicture& found, int serial);
    // Deletes what is left of the claimed sessions.
    void discardFound();
    // Leaves the claimed sessions as they are, for a later start.
    void releaseFound();

    // Ends this session. Without `keepFiles` its folder goes with every file in it;
    // with it the files stay for the next start to offer. The lock goes either way.
    void close(bool keepFiles);

private:
    struct Claimed {
        QString folder;
        std::unique_ptr<QLockFile> lock;
    };

    QString m_folder;
    QString m_session;
    std::unique_ptr<QLockFile> m_lock;
    std::vector<Claimed> m_claimed;
};

} // namespace velunta
