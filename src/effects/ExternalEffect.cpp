#include "effects/ExternalEffect.h"

#include "core/Prompt.h"
#include "document/Document.h"
#include "document/ImageCommand.h"
#include "effects/Logging.h"
#include "files/BmpWriter.h"
#include "files/read/PictureLoader.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTimer>

#include <csignal>
#include <sys/stat.h>
#include <unistd.h>

namespace velunta {

namespace {

// A result larger than the largest picture the loader takes is refused unread.
constexpr qint64 kLargestResultFile = kMaxPicturePixels * 4 + (1 << 20);

// How long a program that Esc stopped may take to end before it is killed.
constexpr int kStopGraceMs = 1000;

QString withSlash(const QString& folder)
{
    return folder.endsWith(u'/') ? folder : folder + u'/';
}

} // namespace

QString EffectCaption(const QString& fileName)
{
    QString caption = fileName;
    const qsizetype exe = caption.indexOf(QLatin1String(".exe"));
    if (exe >= 0)
        caption.truncate(exe);
    if (caption.startsWith(QChar(0x00B0)))
        caption.remove(0, 1);
    if (!caption.isEmpty())
        caption[0] = caption[0].toUpper();
    return caption;
}

QStringList EffectPrograms(const QString& folder, const QString& prefix)
{
    QStringList programs;
    const QDir dir(folder);
    const QFileInfoList entries =
        dir.entryInfoList(QDir::Files | QDir::Executable, QDir::Name | QDir::IgnoreCase | QDir::LocaleAware);
    for (const QFileInfo& entry : entries) {
        // A link whose program was removed is no program.
        if (!entry.exists() || entry.isDir() || !entry.isExecutable())
            continue;
        if (!prefix.isEmpty() && !entry.fileName().startsWith(prefix))
            continue;
        programs << entry.fileName();
    }
    return programs;
}

void RemoveOldEffects(const QString& appFolder, const QString& version)
{
    if (!version.isEmpty())
        return;
    for (const char* name : {"Blur.exe", "Brighten.exe", "Darken.exe", "Emboss.exe", "GrayScale.exe"}) {
        const QString path = withSlash(appFolder) + QStringLiteral("effects/") + QLatin1String(name);
        if (QFileInfo(path).isFile())
            QFile::remove(path);
    }
}

FileStamp StampOf(const QString& path)
{
    struct stat st {};
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return {};
    return {true, std::int64_t(st.st_mtim.tv_sec) * 1'000'000'000 + st.st_mtim.tv_nsec,
            std::int64_t(st.st_size), std::uint64_t(st.st_ino)};
}

ExternalEffect::ExternalEffect(CommandHost& host, Prompt& prompt, const QString& appFolder, QObject* parent)
    : QObject(parent), m_host(host), m_prompt(prompt), m_appFolder(withSlash(appFolder))
{
}

ExternalEffect::~ExternalEffect()
{
    // Programs that went on after writing their result end with Velunta.
    for (QProcess* process : findChildren<QProcess*>())
        stopProgram(*process);
}

QString ExternalEffect::exchangePath() const
{
    return m_appFolder + QStringLiteral("temp/effect.bmp");
}

void ExternalEffect::CancelWait()
{
    m_cancel = true;
}

void ExternalEffect::warn(const QString& text)
{
    m_prompt.MsgBox(text, vbExclamation, tr("Error loading effect"));
}

void ExternalEffect::stopProgram(QProcess& process)
{
    if (process.state() == QProcess::NotRunning)
        return;
    // The program leads a process group of its own, so a script's children stop with it.
    const pid_t group = pid_t(process.processId());
    if (group > 0)
        ::kill(-group, SIGTERM);
    if (!process.waitForFinished(kStopGraceMs)) {
        if (group > 0)
            ::kill(-group, SIGKILL);
        process.kill();
        process.waitForFinished(kStopGraceMs);
    }
}

void ExternalEffect::TimerWaitEffect()
{
    const FileStamp now = StampOf(exchangePath());
    if (!(now == EffectFileStamp)) {
        EffectFileStamp = now;
        EffectFileLength = now.length;
        m_stillTicks = 0;
        return;
    }
    // A changed file is taken once it has held still for two looks: a program that
    // writes in pieces is done by then, and one that renames a finished file over it
    // costs only the wait.
    if (m_stillTicks >= 0 && now.exists && ++m_stillTicks >= 2)
        m_end = WaitEnd::FileWritten;
}

ExternalEffect::WaitEnd ExternalEffect::WaitForProcess(QProcess& process)
{
    m_end = WaitEnd::None;
    m_stillTicks = -1;
    if (process.state() == QProcess::NotRunning)
        return WaitEnd::ProcessEnded;
    QObject scope; // ends the connections with the wait
    connect(&process, &QProcess::finished, &scope, [this] {
        if (m_end == WaitEnd::None)
            m_end = WaitEnd::ProcessEnded;
    });
    QTimer timer;
    timer.setInterval(pollInterval);
    int tick = 0;
    connect(&timer, &QTimer::timeout, &scope, [&] {
        TimerWaitEffect();
        // The bar sweeps while the program works; Esc stops it.
        if (m_host.StepProgress(double(++tick % 20) / 19.0))
            m_cancel = true;
    });
    timer.start();
    while (m_end == WaitEnd::None && !m_cancel)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    timer.stop();
    return m_cancel ? WaitEnd::Cancelled : m_end;
}

namespace {

// The program's result, or a null image and the reason it can't be taken.
QImage ReadResult(const QString& path, const QString& name, QString& problem)
{
    QFile file(path);
    if (!file.exists()) {
        problem = ExternalEffect::tr("%1 removed the picture it was given, so your picture was not changed.")
                      .arg(name);
        return {};
    }
    if (file.size() > kLargestResultFile) {
        problem = ExternalEffect::tr("%1 gave back a file of %2 MB, too large for a picture, so your picture "
                                     "was not changed.")
                      .arg(name)
                      .arg(file.size() >> 20);
        return {};
    }
    if (!file.open(QIODevice::ReadOnly) || file.read(2) != "BM") {
        problem = ExternalEffect::tr("%1 did not give back a BMP picture, so your picture was not changed.")
                      .arg(name);
        return {};
    }
    file.close();
    QString error;
    int number = 0;
    QImage picture = LoadPicture(path, &error, &number);
    if (picture.isNull())
        problem = ExternalEffect::tr("%1 gave back a picture that can't be read (Err nr:%2), so your picture "
                                     "was not changed.")
                      .arg(name)
                      .arg(number) +
                  (error.isEmpty() ? QString() : QStringLiteral("\n\n") + error);
    return picture;
}

// The number the start's failure shows, and why, in words.
int StartErrorNumber(const QString& program, QString& why)
{
    const QFileInfo info(program);
    if (!info.exists()) {
        why = ExternalEffect::tr("The program %1 was not found.").arg(program);
        return 53;
    }
    if (!info.isExecutable() || info.isDir()) {
        why =
            ExternalEffect::tr("The program %1 may not be run: it is not marked as a program.").arg(program);
        return 70;
    }
    why = ExternalEffect::tr("The program %1 could not be started.").arg(program);
    return 75;
}

} // namespace

EffectOutcome ExternalEffect::RunEffect(const QString& program, const QString& name,
                                        const QStringList& arguments)
{
    // One program at a time: the exchange file is shared.
    if (EffectRunning)
        return EffectOutcome::Cancelled;
    ImageCommand command(m_host, {.name = "RunEffect"});
    if (!command)
        return EffectOutcome::Cancelled;
    const Document* doc = &command.doc();
    const bool onSelection = command.onSelection();
    const QSize sent = command.target().Image().size();

    const QString path = exchangePath();
    QDir().mkpath(QFileInfo(path).absolutePath());
    WriteFailure failure;
    if (!SaveBMP(command.target().Image(), path, &failure)) {
        warn(tr("The picture could not be handed to %1:\n%2").arg(name, failure.reason));
        return EffectOutcome::Failed;
    }
    // Taken before the start: a quick program may rewrite the file before it could be
    // looked at afterwards.
    const FileStamp before = StampOf(path);
    EffectFileStamp = before;
    EffectFileLength = before.length;
    m_cancel = false;

    QImage result;
    QString problem;
    {
        BusyScope busy(m_host, true);
        auto* process = new QProcess(this);
        process->setProgram(program);
        process->setArguments(QStringList{path} + arguments);
        process->setWorkingDirectory(m_appFolder);
        process->setProcessChannelMode(QProcess::ForwardedChannels);
        process->setChildProcessModifier([] { ::setpgid(0, 0); });
        process->start();
        if (!process->waitForStarted()) {
            QString why;
            const int number = StartErrorNumber(program, why);
            qCWarning(lcEffects, "%s: %s", qPrintable(program), qPrintable(process->errorString()));
            delete process;
            busy.end();
            warn(tr("effect err:") + QString::number(number) + QStringLiteral("\n\n") + why);
            return EffectOutcome::Failed;
        }
        process->closeWriteChannel();

        EffectRunning = true;
        WaitEnd end = WaitForProcess(*process);
        // A file that can't be read yet while its program still runs may be half
        // written: the wait goes on until it changes again or the program ends.
        while (end == WaitEnd::FileWritten) {
            result = ReadResult(path, name, problem);
            if (!result.isNull() || process->state() == QProcess::NotRunning)
                break;
            end = WaitForProcess(*process);
        }
        EffectRunning = false;

        if (end == WaitEnd::Cancelled) {
            stopProgram(*process);
            delete process;
            return EffectOutcome::Cancelled;
        }
        if (end == WaitEnd::ProcessEnded) {
            if (StampOf(path) == before) {
                if (process->exitStatus() == QProcess::CrashExit)
                    problem = tr("%1 stopped unexpectedly, so your picture was not changed.").arg(name);
                else if (process->exitCode() != 0)
                    problem = tr("%1 ended with error %2 and did not change your picture.")
                                  .arg(name)
                                  .arg(process->exitCode());
            } else {
                result = ReadResult(path, name, problem);
            }
        }
        // A program that goes on after writing (a window left open) runs by itself.
        if (process->state() == QProcess::NotRunning)
            delete process;
        else
            connect(process, &QProcess::finished, process, &QObject::deleteLater);
    }

    if (result.isNull()) {
        if (problem.isEmpty())
            return EffectOutcome::Unchanged;
        warn(problem);
        return EffectOutcome::Failed;
    }
    // The window took no input meanwhile; should the picture have gone all the same,
    // the result has nowhere to go.
    const Document* active = m_host.ActiveDocument();
    if (active != doc || active->SelectArea.Visible != onSelection) {
        warn(tr("The picture was closed or its selection changed while %1 worked.").arg(name));
        return EffectOutcome::Failed;
    }
    bool changed = false;
    if (result.size() == sent) {
        changed = command.run([&](ImageCommand& c) {
            if (onSelection)
                c.target().setImage(result);
            else
                c.target().setPicture(result);
        });
    } else if (onSelection) {
        warn(
            tr("%1 gave back a picture of %2 x %3 pixels for a selection of %4 x %5 pixels, so the selection "
               "was not changed.")
                .arg(name)
                .arg(result.width())
                .arg(result.height())
                .arg(sent.width())
                .arg(sent.height()));
        return EffectOutcome::Failed;
    } else {
        // A program may give the picture another size; Undo Resize brings the old one back.
        changed = RunImageCommand(m_host, {.name = "RunEffect", .resizes = true}, [&](ImageCommand& c) {
            c.target().setScaleSize(result.width(), result.height());
            c.target().setPicture(result);
        });
    }
    if (!changed)
        return EffectOutcome::Failed;
    QFile::remove(path);
    return EffectOutcome::Changed;
}

} // namespace velunta
