#pragma once
// Fetches the small version file without ever holding up the program: the request runs
// in the background, ends after a time limit however slowly the server answers, and
// gives up on a body larger than a version file can be.

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;
class QTimer;

namespace velunta {

struct FetchLimits {
    int timeoutMs = 10000; // the whole fetch, redirects and a trickling body included
    qint64 maxBytes = 4096;
    int maxRedirects = 5;
};

class VersionFetcher : public QObject {
    Q_OBJECT
public:
    explicit VersionFetcher(QObject* parent = nullptr);
    ~VersionFetcher() override;

    // Starts a fetch; a running one is dropped first. `finished` follows exactly once,
    // never from inside this call.
    void fetch(const QUrl& url, const FetchLimits& limits = {});
    // Drops the running fetch without a `finished`.
    void abort();
    bool running() const;

Q_SIGNALS:
    // ok: the server sent the whole file within the limits.
    void finished(bool ok, const QByteArray& body);

private:
    void readSome();
    void end(bool ok);
    void drop();

    QNetworkAccessManager* m_network = nullptr;
    QPointer<QNetworkReply> m_reply;
    QTimer* m_deadline = nullptr;
    QByteArray m_body;
    FetchLimits m_limits;
    quint64 m_generation = 0;
};

} // namespace velunta
