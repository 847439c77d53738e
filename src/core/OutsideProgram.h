#pragma once
// Outside programs (the metafile converters, the companion programs, the desktop's own
// tools) start without a shell, so a name with blanks or shell characters is only a
// name, and are waited for with a time limit while the window's events run on: a
// program that hangs is stopped, and Esc or closing the window ends the wait.

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace velunta {

struct OutsideRun {
    enum Outcome {
        Finished,   // ended by itself; see exitCode
        NotStarted, // missing, not a program, or refused
        Crashed,    // ended by a signal
        TimedOut,   // ran past its time limit and was stopped
        Stopped,    // the user stopped the wait (Esc, or the window closed)
    };
    Outcome outcome = NotStarted;
    int exitCode = -1;
    QByteArray output; // standard output, at most kOutputLimit bytes
    QByteArray errors; // standard error, at most kOutputLimit bytes
    bool ok() const { return outcome == Finished && exitCode == 0; }
    // The first line of what the program said on standard error, for a message.
    QString firstErrorLine() const;
};

inline constexpr qsizetype kOutputLimit = 4 << 20;

struct OutsideOptions {
    // The longest wait in milliseconds; with `limitFromLastOutput`, the longest silence.
    int timeLimitMs = 30000;
    bool limitFromLastOutput = false;
    // Asked about every 50 ms with the part of the time limit gone (0..1): false stops
    // the program (Esc on the progress strip).
    std::function<bool(double)> keepWaiting;
    // Each line the program writes on standard output, as it comes.
    std::function<void(const QByteArray&)> outputLine;
    std::optional<QProcessEnvironment> environment;
};

// Runs `program` with `arguments` and waits for its end within the options' limits.
OutsideRun RunOutsideProgram(const QString& program, const QStringList& arguments,
                             const OutsideOptions& options = {});

// Starts a program that lives on by itself (a viewer, a dialog of a companion). True when it started.
bool StartOutsideProgram(const QString& program, const QStringList& arguments);

// The program's full path: a path as it stands when it is an executable file, else the
// name looked up on PATH. Empty when there is none.
QString FindOutsideProgram(const QString& nameOrPath);

} // namespace velunta
