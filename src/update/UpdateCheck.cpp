#include "update/UpdateCheck.h"

#include "core/Numbers.h"
#include "core/Prompt.h"
#include "core/SafeFile.h"
#include "core/SettingsStore.h"
#include "core/WebAddresses.h"
#include "update/VersionFile.h"
#include "update/frmUpdateWait.h"

#include <QHostAddress>
#include <QNetworkInformation>

#include <algorithm>

namespace velunta {

bool IsConnected(const QUrl& url)
{
    const QString host = url.host();
    if (url.isLocalFile() || host.isEmpty() || host == QLatin1String("localhost") ||
        QHostAddress(host).isLoopback())
        return true;
    // Without a backend that knows (no network manager on the system) the fetch is tried.
    if (!QNetworkInformation::instance() &&
        !QNetworkInformation::load(QNetworkInformation::Feature::Reachability))
        return true;
    return QNetworkInformation::instance()->reachability() != QNetworkInformation::Reachability::Disconnected;
}

UpdateCheck::UpdateCheck(SettingsStore& settings, Prompt& prompt, std::function<void(const QUrl&)> openUrl,
                         QWidget* window, QObject* parent)
    : QObject(parent), ownVersion(OwnVersionNumber(QStringLiteral(VELUNTA_VERSION))),
      downloadPage(QString::fromLatin1(kDownloadAddress)), m_settings(settings), m_prompt(prompt),
      m_openUrl(std::move(openUrl)), m_window(window)
{
    connect(&m_fetcher, &VersionFetcher::finished, this, &UpdateCheck::received);
}

UpdateCheck::~UpdateCheck()
{
    delete m_wait;
}

bool UpdateCheck::CheckNewVersion(const QUrl& url, const QString& localFile, bool verbose)
{
    if (running()) {
        if (verbose && !m_verbose) {
            m_verbose = true;
            showWait();
        }
        if (m_wait)
            m_wait->raise();
        return true;
    }
    // The starts are counted here, so the check begins with the sixth: a new
    // installation stays quiet, whatever the user asks.
    const double counted = Val(m_settings.GetSetting(QStringLiteral("UseCounter"), QStringLiteral("1")));
    const long long uses = std::clamp<long long>(static_cast<long long>(counted), 0, 1000000000);
    m_settings.SaveSetting(QStringLiteral("UseCounter"), uses + 1);
    if (uses < 6)
        return false;
    if (m_settings.GetSetting(QStringLiteral("NoURLupdate")) == QLatin1String("Yes"))
        return false;
    if (!isConnected(url) && !verbose)
        return false;
    m_verbose = verbose;
    m_localFile = localFile;
    m_fetcher.fetch(url, limits);
    if (verbose)
        showWait();
    return true;
}

void UpdateCheck::received(bool ok, const QByteArray& body)
{
    closeWait();
    if (ok) {
        if (!m_localFile.isEmpty())
            WriteFileSafely(m_localFile, body);
        const VersionFile file = ReadVersionFile(body);
        const int turnedDown =
            int(std::clamp(Val(m_settings.GetSetting(QStringLiteral("Download"))), 0.0, 1e6));
        switch (JudgeVersion(file.number, ownVersion, turnedDown)) {
        case UpdateVerdict::NewVersion: {
            const int answer =
                m_prompt.MsgBox(tr("A new version ") + VersionText(file.number) + tr(" is available!") +
                                    QStringLiteral("\n\n") + tr("Do you want to download the new version?"),
                                vbYesNoCancel, file.title);
            if (answer == vbYes && m_openUrl)
                m_openUrl(downloadPage);
            else if (answer == vbNo)
                m_settings.SaveSetting(QStringLiteral("Download"), file.number);
            break;
        }
        case UpdateVerdict::UpToDate:
            if (m_verbose)
                m_prompt.MsgBox(tr("Your version is the most recent version.") + u'\n' +
                                    tr("No need to download an update."),
                                vbInformation, tr("Version is already up-to-date!"));
            break;
        case UpdateVerdict::NotValid:
        case UpdateVerdict::TurnedDown:
            break;
        }
    }
    m_verbose = false;
    Q_EMIT done();
}

frmUpdateWait* UpdateCheck::waitWindow() const
{
    return m_wait;
}

void UpdateCheck::showWait()
{
    if (!m_wait) {
        m_wait = new frmUpdateWait(m_window);
        connect(m_wait, &QDialog::rejected, this, [this] {
            // Cancel drops the check; nothing is said.
            m_fetcher.abort();
            m_verbose = false;
            Q_EMIT done();
        });
    }
    m_wait->show();
    m_wait->raise();
}

void UpdateCheck::closeWait()
{
    if (m_wait) {
        m_wait->disconnect(this);
        m_wait->hide();
        m_wait->deleteLater();
        m_wait = nullptr;
    }
}

} // namespace velunta
