#pragma once
// The new-version check: at start-up when the user wants it, and from the Help menu.
// It counts the program's starts and stays quiet for the first five, fetches the
// version file in the background, and asks whether to open the download page when a
// newer version is there. A version the user said No to is never offered again; only
// a check the user asked for says that the program is up to date.

#include "update/VersionFetcher.h"

#include <QObject>
#include <QPointer>
#include <QUrl>

#include <functional>

namespace velunta {

class Prompt;
class SettingsStore;
class frmUpdateWait;

// True unless the system knows it has no connection. An address on this machine is
// always reachable.
bool IsConnected(const QUrl& url);

class UpdateCheck : public QObject {
    Q_OBJECT
public:
    // `window` carries the waiting window; `openUrl` opens the download page.
    UpdateCheck(SettingsStore& settings, Prompt& prompt, std::function<void(const QUrl&)> openUrl,
                QWidget* window, QObject* parent = nullptr);
    ~UpdateCheck() override;

    // `verbose`: the user asked (the waiting window shows, and "up to date" is said).
    // The file fetched is kept as `localFile` when that is not empty. True when a
    // fetch started; `done` follows it. A check asked for while one runs takes that one
    // over, with the waiting window.
    bool CheckNewVersion(const QUrl& url, const QString& localFile, bool verbose);
    bool running() const { return m_fetcher.running(); }
    frmUpdateWait* waitWindow() const;

    // For tests: shorter limits, another own version, another view of the connection.
    FetchLimits limits;
    int ownVersion;
    std::function<bool(const QUrl&)> isConnected = IsConnected;
    QUrl downloadPage;

Q_SIGNALS:
    // The check is over, whatever came of it.
    void done();

private:
    void received(bool ok, const QByteArray& body);
    void showWait();
    void closeWait();

    SettingsStore& m_settings;
    Prompt& m_prompt;
    std::function<void(const QUrl&)> m_openUrl;
    QPointer<QWidget> m_window;
    VersionFetcher m_fetcher;
    QPointer<frmUpdateWait> m_wait;
    QString m_localFile;
    bool m_verbose = false;
};

} // namespace velunta
