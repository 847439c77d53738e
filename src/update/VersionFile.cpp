#include "update/VersionFile.h"

#include "core/Numbers.h"
#include "core/WebAddresses.h"

#include <QCoreApplication>
#include <QStringList>

#include <cmath>

namespace velunta {

VersionFile ReadVersionFile(const QByteArray& bytes)
{
    // The server may write CR LF or LF; a stray NUL or binary junk only spoils the
    // number, which then fails the range check.
    const QStringList lines = QString::fromUtf8(bytes).remove(u'\r').split(u'\n');
    VersionFile file;
    const double number = lines.isEmpty() ? 0.0 : Val(lines[0]);
    // Integers only: 3.01 or 1e9 are not three digits.
    if (std::isfinite(number) && number == std::floor(number) && std::abs(number) < 1e6)
        file.number = int(number);
    file.title = lines.size() > 1 ? lines[1] : QString();
    if (file.title.size() < 2)
        file.title = QCoreApplication::translate("PictureFiles", "New version available");
    return file;
}

int OwnVersionNumber(const QString& version)
{
    const QStringList parts = version.split(u'.');
    QString joined;
    for (int i = 0; i < 3; ++i)
        joined += i < parts.size() ? QString::number(parts[i].toInt()) : QStringLiteral("0");
    return joined.toInt();
}

QString VersionText(int number)
{
    const QString digits = QString::number(number);
    if (digits.size() < 3)
        return digits;
    return digits.left(1) + u'.' + digits.mid(1, 1) + u'.' + digits.right(1);
}

UpdateVerdict JudgeVersion(int fileNumber, int ownNumber, int turnedDown)
{
    // Three digits: 100 to 999. A larger number would show as a version that isn't one.
    if (fileNumber < 100 || fileNumber > 999)
        return UpdateVerdict::NotValid;
    if (fileNumber <= ownNumber)
        return UpdateVerdict::UpToDate;
    if (fileNumber <= turnedDown)
        return UpdateVerdict::TurnedDown;
    return UpdateVerdict::NewVersion;
}

QUrl UpdateAddress(const QString& setting)
{
    for (const QString& candidate : {qEnvironmentVariable("VELUNTA_UPDATE_URL"), setting.trimmed()}) {
        const QUrl url(candidate, QUrl::StrictMode);
        if (!candidate.isEmpty() && url.isValid() && !url.scheme().isEmpty())
            return url;
    }
    return QUrl(QString::fromLatin1(kUpdateAddress));
}

} // namespace velunta
