#pragma once
// Effects that live in programs of their own: the programs of the effects folder, the
// Plugin_* programs beside Velunta and the companion tools. All of them take one
// picture file. The picture (or the floating selection) is written to
// temp/effect.bmp, the program is started with that path as its argument, and when it
// has rewritten the file the new picture comes back as one undo step.
//
// The wait ends as soon as the file has been rewritten, so a program may keep a
// window open afterwards, or when the program ends, so a program that never writes
// can't hold Velunta; Esc stops the program and the wait. The window keeps painting
// meanwhile but takes no input.

#include <QObject>
#include <QString>
#include <QStringList>

#include <cstdint>

class QProcess;

namespace velunta {

class CommandHost;
class Prompt;

// The menu caption of an effect program: its file name up to the first ".exe",
// without a leading "°", the first letter in upper case and the rest as it stands.
QString EffectCaption(const QString& fileName);

// The programs in `folder` whose names begin with `prefix`, as the menus list them:
// executable files, hidden ones left out, sorted by name regardless of case.
QStringList EffectPrograms(const QString& folder, const QString& prefix = QString());

// Effects that earlier versions shipped and that the program now does itself. They go
// on a first run only (`version`, the settings' Version, is still empty), so a user's
// own copy put back later stays.
void RemoveOldEffects(const QString& appFolder, const QString& version);

// Date, length and file of the exchange file: any rewrite changes one of them, a
// rename over it included.
struct FileStamp {
    bool exists = false;
    std::int64_t modified = 0; // nanoseconds
    std::int64_t length = 0;
    std::uint64_t inode = 0;
    bool operator==(const FileStamp&) const = default;
};
FileStamp StampOf(const QString& path);

enum class EffectOutcome {
    Changed,   // the picture took the program's result
    Unchanged, // the program ended without writing (its own Cancel, say)
    Failed,    // a message said why nothing changed
    Cancelled, // Esc, Velunta closing, or no picture to work on
};

class ExternalEffect : public QObject {
    Q_OBJECT
public:
    ExternalEffect(CommandHost& host, Prompt& prompt, const QString& appFolder, QObject* parent = nullptr);
    ~ExternalEffect() override;

    // temp/effect.bmp under the program's folder.
    QString exchangePath() const;

    // Runs `program` on the active document's picture, or on its floating selection.
    // `name` is what messages call it; `arguments` follow the exchange file's path.
    EffectOutcome RunEffect(const QString& program, const QString& name, const QStringList& arguments = {});

    // Ends a running wait as if the user had pressed Esc (Velunta is closing).
    void CancelWait();

    // True while a program runs and its result is awaited.
    bool EffectRunning = false;
    // The exchange file as it was when last looked at.
    FileStamp EffectFileStamp;
    std::int64_t EffectFileLength = 0;

    // How often the wait looks at the exchange file, in milliseconds.
    int pollInterval = 100;

private:
    enum class WaitEnd { None, FileWritten, ProcessEnded, Cancelled };
    // One look at the exchange file during the wait.
    void TimerWaitEffect();
    WaitEnd WaitForProcess(QProcess& process);
    // Stops the program and whatever it started.
    static void stopProgram(QProcess& process);
    void warn(const QString& text);

    CommandHost& m_host;
    Prompt& m_prompt;
    QString m_appFolder;
    WaitEnd m_end = WaitEnd::None;
    // Looks since the file last changed; a changed file is read once it has held still.
    int m_stillTicks = -1;
    bool m_cancel = false;
};

} // namespace velunta
