#pragma once
// Keeps a copy of every open picture with unsaved changes in the session's recovery
// folder, in the background of the event loop.
//
// Once per interval (a minute) the pictures that changed since their last copy are
// copied, a few milliseconds of rows at a time between the events, so painting never
// waits on it; each finished copy is written and flushed to the disk on a worker
// thread. A picture that changes while it is being copied is written all the same (a
// copy a moment old is better than none) and copied again at the next interval.
// Files of pictures that were saved or closed are removed within seconds.

#include <QElapsedTimer>
#include <QHash>
#include <QImage>
#include <QList>
#include <QObject>
#include <QSet>
#include <QString>
#include <QThreadPool>
#include <QTimer>

#include <functional>

namespace velunta {

class RecoveryStore;

// What the writer needs of one open picture. It is asked afresh before every slice,
// so a document that closes or changes size in between is noticed.
struct RecoverySource {
    int id = 0;                    // the same for the life of the document
    const QImage* image = nullptr; // read on the event loop's thread only
    bool dirty = false;
    QString name;
    QString path;
};

class RecoveryWriter : public QObject {
    Q_OBJECT
public:
    using Sources = std::function<QList<RecoverySource>()>;

    RecoveryWriter(RecoveryStore& store, Sources sources, QObject* parent = nullptr);
    // Waits for a write under way.
    ~RecoveryWriter() override;

    // The time between two rounds of copies (60 s).
    void setInterval(int ms);
    // The time one slice of copying may take before the events get their turn.
    void setSliceBudget(double ms) { m_sliceBudget = ms; }
    // Starts a round now, unless one is under way.
    void writeChanged();
    // Copies and writes the changed pictures named in `ids` at once and waits for the
    // disk; the others lose their files. For the end of the program.
    void writeNow(const QSet<int>& ids);
    // A picture whose file is already in the session (brought back from a crash): it is
    // rewritten only after it changes.
    void adopted(int id, const QImage& image);
    // The session's file number of a picture.
    int serialOf(int id);
    // Removes the files of pictures that were saved or closed.
    void sweep();

    bool busy() const { return m_pass.active || m_writingId != 0; }
    // The longest slice so far, in milliseconds: what a user may feel as a pause.
    double longestSliceMs() const { return m_longestSlice; }
    int writesDone() const { return m_writesDone; }

Q_SIGNALS:
    // A round ended: every changed picture was written or given up.
    void roundFinished();

private:
    struct Entry {
        int serial = 0;
        qint64 writtenKey = 0; // the picture's cache key when its copy began
        bool hasFile = false;
    };
    struct Pass {
        bool active = false;
        QList<int> queue;
        int id = 0; // 0 while between pictures
        QImage copy;
        qint64 startKey = 0;
        int row = 0;
        int restarts = 0;
    };

    void step();
    bool beginNext(const QHash<int, RecoverySource>& sources);
    void handOver(const RecoverySource& source);
    void written(int id, qint64 key, bool ok, const QString& reason);
    void finishRound();
    void removeFile(int id);
    QHash<int, RecoverySource> sourcesById() const;

    RecoveryStore& m_store;
    Sources m_sources;
    QTimer m_roundTimer;
    QTimer m_sweepTimer;
    QThreadPool m_pool;
    QHash<int, Entry> m_entries;
    Pass m_pass;
    int m_writingId = 0; // the picture whose file the worker writes now
    int m_nextSerial = 1;
    double m_sliceBudget = 4.0;
    double m_longestSlice = 0;
    int m_writesDone = 0;
    bool m_reportedFailure = false;
};

} // namespace velunta
