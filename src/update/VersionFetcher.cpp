#include "update/VersionFetcher.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

namespace velunta {

VersionFetcher::VersionFetcher(QObject* parent)
    : QObject(parent), m_network(new QNetworkAccessManager(this)), m_deadline(new QTimer(this))
{
    m_deadline->setSingleShot(true);
    connect(m_deadline, &QTimer::timeout, this, [this] { end(false); });
}

VersionFetcher::~VersionFetcher()
{
    abort();
}

void VersionFetcher::fetch(const QUrl& url, const FetchLimits& limits)
{
    abort();
    m_limits = limits;
    m_body.clear();
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(limits.maxRedirects);
    // Always the file as it is now, never a copy a proxy kept.
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setRawHeader("Cache-Control", "no-cache");
    m_reply = m_network->get(request);
    connect(m_reply, &QNetworkReply::readyRead, this, &VersionFetcher::readSome);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, [this] {
        // A server that announces a body too big is not waited for.
        const QVariant length = m_reply->header(QNetworkRequest::ContentLengthHeader);
        if (length.isValid() && length.toLongLong() > m_limits.maxBytes)
            end(false);
    });
    connect(m_reply, &QNetworkReply::finished, this, [this] {
        readSome();
        if (m_reply)
            end(m_reply->error() == QNetworkReply::NoError);
    });
    m_deadline->start(limits.timeoutMs);
}

bool VersionFetcher::running() const
{
    return m_reply != nullptr;
}

void VersionFetcher::readSome()
{
    if (!m_reply)
        return;
    m_body += m_reply->read(m_limits.maxBytes + 1 - m_body.size());
    if (m_body.size() > m_limits.maxBytes)
        end(false);
}

void VersionFetcher::abort()
{
    drop();
    ++m_generation;
}

void VersionFetcher::drop()
{
    m_deadline->stop();
    if (QNetworkReply* reply = m_reply) {
        m_reply = nullptr;
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
}

void VersionFetcher::end(bool ok)
{
    if (!m_reply)
        return;
    const QByteArray body = ok ? m_body : QByteArray();
    drop();
    m_body.clear();
    // Later, so that whoever listens may start another fetch or delete this one; an
    // abort or a new fetch in between drops it.
    const quint64 generation = m_generation;
    QMetaObject::invokeMethod(
        this,
        [this, ok, body, generation] {
            if (generation == m_generation)
                Q_EMIT finished(ok, body);
        },
        Qt::QueuedConnection);
}

} // namespace velunta
