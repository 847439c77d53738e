#include "core/OutsideProgram.h"

#include "core/Logging.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>

namespace velunta {

namespace {

void appendLimited(QByteArray& to, const QByteArray& more)
{
    to.append(more.first(std::min(more.size(), std::max<qsizetype>(0, kOutputLimit - to.size()))));
}

// Asks the program to end, then makes it.
void stop(QProcess& process)
{
    process.terminate();
    if (!process.waitForFinished(2000)) {
        process.kill();
        process.waitForFinished(2000);
    }
}

} // namespace

QString OutsideRun::firstErrorLine() const
{
    for (const QByteArray& line : errors.split('\n'))
        if (!line.trimmed().isEmpty())
            return QString::fromLocal8Bit(line.trimmed()).left(300);
    return {};
}

OutsideRun RunOutsideProgram(const QString& program, const QStringList& arguments,
                             const OutsideOptions& options)
{
    OutsideRun run;
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    process.setStandardInputFile(QProcess::nullDevice());
    if (options.environment)
        process.setProcessEnvironment(*options.environment);
    process.start();
    if (!process.waitForStarted(10000)) {
        qCWarning(lcCore) << "could not start" << program << process.errorString();
        if (process.state() != QProcess::NotRunning)
            stop(process);
        return run;
    }

    QDeadlineTimer deadline(options.timeLimitMs);
    QByteArray pending; // output not yet ended by a line break
    QEventLoop loop;
    bool stopped = false;
    QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
    QObject::connect(&process, &QProcess::readyReadStandardOutput, &loop, [&] {
        const QByteArray more = process.readAllStandardOutput();
        appendLimited(run.output, more);
        if (options.limitFromLastOutput)
            deadline.setRemainingTime(options.timeLimitMs);
        if (!options.outputLine)
            return;
        pending += more;
        qsizetype end;
        while ((end = pending.indexOf('\n')) >= 0) {
            options.outputLine(pending.first(end));
            pending.remove(0, end + 1);
        }
        if (pending.size() > 4096)
            pending.clear();
    });
    QObject::connect(&process, &QProcess::readyReadStandardError, &loop,
                     [&] { appendLimited(run.errors, process.readAllStandardError()); });
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, &loop, [&] {
        const double gone = 1.0 - double(deadline.remainingTime()) / std::max(1, options.timeLimitMs);
        if (options.keepWaiting && !options.keepWaiting(std::clamp(gone, 0.0, 1.0))) {
            stopped = true;
            loop.quit();
        } else if (deadline.hasExpired()) {
            loop.quit();
        }
    });
    tick.start(50);
    if (process.state() != QProcess::NotRunning)
        loop.exec();
    tick.stop();

    if (process.state() != QProcess::NotRunning) {
        // Stopped by the user, past the limit, or the application is quitting (which
        // ends every event loop, this one too).
        run.outcome = stopped || !deadline.hasExpired() ? OutsideRun::Stopped : OutsideRun::TimedOut;
        qCWarning(lcCore) << program
                          << (run.outcome == OutsideRun::TimedOut ? "ran too long" : "was stopped");
        stop(process);
        return run;
    }
    appendLimited(run.output, process.readAllStandardOutput());
    appendLimited(run.errors, process.readAllStandardError());
    if (options.outputLine && !pending.isEmpty())
        options.outputLine(pending);
    if (process.exitStatus() == QProcess::CrashExit) {
        run.outcome = OutsideRun::Crashed;
        return run;
    }
    run.outcome = OutsideRun::Finished;
    run.exitCode = process.exitCode();
    return run;
}

bool StartOutsideProgram(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    process.setStandardInputFile(QProcess::nullDevice());
    return process.startDetached();
}

QString FindOutsideProgram(const QString& nameOrPath)
{
    if (nameOrPath.contains(u'/')) {
        const QFileInfo info(nameOrPath);
        return info.isFile() && info.isExecutable() ? info.absoluteFilePath() : QString();
    }
    return QStandardPaths::findExecutable(nameOrPath);
}

} // namespace velunta
