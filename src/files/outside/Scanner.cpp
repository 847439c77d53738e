#include "files/outside/Scanner.h"

#include "core/OutsideProgram.h"

#include <QCoreApplication>

namespace velunta {

namespace {

// Backends that look for scanners on the network may take a while to answer.
constexpr int kListTimeLimitMs = 60000;
// Some devices warm their lamp for up to a minute before the first line comes.
constexpr int kScanSilenceLimitMs = 120000;

} // namespace

QString ScannerDevice::label() const
{
    const QString product = QString(vendor + u' ' + model).trimmed();
    return product.isEmpty() ? name : product + QStringLiteral(" (") + name + u')';
}

std::vector<ScannerDevice> ParseScannerList(const QByteArray& output)
{
    std::vector<ScannerDevice> devices;
    for (const QByteArray& line : output.split('\n')) {
        const QList<QByteArray> fields = line.split('\t');
        if (fields.value(0).trimmed().isEmpty())
            continue;
        devices.push_back({QString::fromUtf8(fields.value(0)), QString::fromUtf8(fields.value(1)),
                           QString::fromUtf8(fields.value(2)), QString::fromUtf8(fields.value(3).trimmed())});
    }
    return devices;
}

ScannerList ListScanners(const QString& companion, const std::function<bool(double)>& keepWaiting)
{
    ScannerList list;
    if (companion.isEmpty()) {
        list.error =
            QCoreApplication::translate("PictureFiles", "The scanner program of Velunta is missing.");
        return list;
    }
    OutsideOptions options;
    options.timeLimitMs = kListTimeLimitMs;
    options.keepWaiting = keepWaiting;
    const OutsideRun run = RunOutsideProgram(companion, {QStringLiteral("--list")}, options);
    if (!run.ok()) {
        list.error = run.outcome == OutsideRun::TimedOut
                         ? QCoreApplication::translate("PictureFiles", "The scanners did not answer in time.")
                     : run.outcome == OutsideRun::Stopped
                         ? QCoreApplication::translate("PictureFiles", "The search was stopped.")
                         : run.firstErrorLine();
        return list;
    }
    list.devices = ParseScannerList(run.output);
    list.ok = true;
    return list;
}

ScanResult ScanPage(const QString& companion, const QString& device, const QString& file,
                    const std::function<bool(double)>& keepWaiting)
{
    ScanResult result;
    if (companion.isEmpty()) {
        result.error =
            QCoreApplication::translate("PictureFiles", "The scanner program of Velunta is missing.");
        return result;
    }
    double done = 0;
    OutsideOptions options;
    options.timeLimitMs = kScanSilenceLimitMs;
    options.limitFromLastOutput = true;
    options.outputLine = [&](const QByteArray& line) {
        if (line.startsWith("progress "))
            done = std::clamp(line.mid(9).toDouble() / 100, 0.0, 1.0);
    };
    if (keepWaiting)
        options.keepWaiting = [&](double) { return keepWaiting(done); };
    const OutsideRun run = RunOutsideProgram(companion, {QStringLiteral("--scan"), device, file}, options);
    result.error = run.firstErrorLine();
    if (run.ok())
        result.outcome = ScanResult::Scanned;
    else if (run.outcome == OutsideRun::Stopped || (run.outcome == OutsideRun::Finished && run.exitCode == 1))
        result.outcome = ScanResult::Aborted;
    else
        result.outcome = ScanResult::Failed;
    if (run.outcome == OutsideRun::TimedOut)
        result.error = QCoreApplication::translate("PictureFiles", "The scanner stopped answering.");
    return result;
}

} // namespace velunta
