// The Help menu. The new-version check against a web server on this machine: what it
// says for each version file, that the first five starts never touch the network, that a
// version turned down stays silent, and that no server however hostile makes it hang,
// crash or speak unasked. Every entry acts, and the manual's pages hold together.

#include "core/Prompt.h"
#include "core/SettingsStore.h"
#include "support/FakeServices.h"
#include "support/MainWindowFixture.h"
#include "update/UpdateCheck.h"
#include "update/VersionFile.h"
#include "update/frmUpdateWait.h"

#include <QElapsedTimer>
#include <QSettings>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

// Answers every request by `mode`: "file" serves `body`; "404", "redirect" (to itself,
// for ever), "huge" (10 MB), "slow" (a byte every 50 ms, never ending), "hangup"
// (closes without a word), "silent" (never answers).
class VersionServer : public QObject {
public:
    explicit VersionServer(const QString& mode, const QByteArray& body = {}) : m_mode(mode), m_body(body)
    {
        m_server.listen(QHostAddress::LocalHost);
        connect(&m_server, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* s = m_server.nextPendingConnection()) {
                connect(s, &QTcpSocket::readyRead, this, [this, s] { answer(s); });
                connect(s, &QTcpSocket::disconnected, s, &QObject::deleteLater);
            }
        });
    }
    QUrl url() const
    {
        return QUrl(QStringLiteral("http://127.0.0.1:%1/velunta.ver").arg(m_server.serverPort()));
    }
    int requests = 0;

private:
    void answer(QTcpSocket* s)
    {
        if (!s->readAll().contains("\r\n\r\n") || s->property("answered").toBool())
            return;
        s->setProperty("answered", true);
        ++requests;
        if (m_mode == QLatin1String("file")) {
            s->write("HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\nContent-Length: " +
                     QByteArray::number(m_body.size()) + "\r\nConnection: close\r\n\r\n" + m_body);
            s->disconnectFromHost();
        } else if (m_mode == QLatin1String("404")) {
            s->write("HTTP/1.1 404 Not Found\r\nContent-Length: 3\r\nConnection: close\r\n\r\n301");
            s->disconnectFromHost();
        } else if (m_mode == QLatin1String("redirect")) {
            s->write("HTTP/1.1 302 Found\r\nLocation: " + url().toEncoded() +
                     "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
            s->disconnectFromHost();
        } else if (m_mode == QLatin1String("huge")) {
            // No length announced: the size limit has to catch the body itself.
            s->write("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n");
            s->write(QByteArray(10 * 1024 * 1024, '7'));
            s->disconnectFromHost();
        } else if (m_mode == QLatin1String("slow")) {
            s->write("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n3");
            auto* timer = new QTimer(s);
            connect(timer, &QTimer::timeout, s, [s] { s->write("0"); });
            timer->start(50);
        } else if (m_mode == QLatin1String("hangup")) {
            s->disconnectFromHost();
        }
    }

    QTcpServer m_server;
    QString m_mode;
    QByteArray m_body;
};

struct Checker {
    Checker()
    {
        QSettings(QStringLiteral("Zolvane"), QStringLiteral("Velunta")).clear();
        check.ownVersion = 300;
        check.limits.timeoutMs = 1500;
        check.isConnected = [](const QUrl&) { return true; };
        settings.SaveSetting(QStringLiteral("UseCounter"), QStringLiteral("6"));
    }
    // Runs one check to its end; false when none started.
    bool run(const QUrl& url, bool verbose)
    {
        QSignalSpy done(&check, &UpdateCheck::done);
        if (!check.CheckNewVersion(url, QString(), verbose))
            return false;
        return done.count() > 0 || done.wait(5000);
    }
    SettingsStore settings;
    ScriptedPrompt prompt;
    QList<QUrl> opened;
    UpdateCheck check{settings, prompt, [this](const QUrl& u) { opened << u; }, nullptr};
};

} // namespace

class tst_Help : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void versionFile_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<int>("turnedDown");
        QTest::addColumn<int>("verdict");
        QTest::addColumn<QString>("title");
        using V = UpdateVerdict;
        QTest::newRow("newer") << QByteArray("305\r\nVelunta 3.0.5\r\n") << 0 << int(V::NewVersion)
                               << "Velunta 3.0.5";
        QTest::newRow("short title falls back")
            << QByteArray("305\nX\n") << 0 << int(V::NewVersion) << "New version available";
        QTest::newRow("no second line")
            << QByteArray("305") << 0 << int(V::NewVersion) << "New version available";
        QTest::newRow("own version") << QByteArray("300\nT1\n") << 0 << int(V::UpToDate) << "T1";
        QTest::newRow("99 is no version") << QByteArray("99\nT1\n") << 0 << int(V::NotValid) << "T1";
        QTest::newRow("above 999") << QByteArray("1000\nT1\n") << 0 << int(V::NotValid) << "T1";
        QTest::newRow("negative") << QByteArray("-305\nT1\n") << 0 << int(V::NotValid) << "T1";
        QTest::newRow("empty") << QByteArray() << 0 << int(V::NotValid) << "New version available";
        QTest::newRow("garbage") << QByteArray("\x89PNG\r\n\x1a\n\0\0", 10) << 0 << int(V::NotValid)
                                 << "New version available";
        QTest::newRow("fraction") << QByteArray("305.5\nT1\n") << 0 << int(V::NotValid) << "T1";
        QTest::newRow("turned down") << QByteArray("305\nT1\n") << 305 << int(V::TurnedDown) << "T1";
        QTest::newRow("later than turned down")
            << QByteArray("306\nT1\n") << 305 << int(V::NewVersion) << "T1";
    }
    void versionFile()
    {
        QFETCH(QByteArray, file);
        QFETCH(int, turnedDown);
        QFETCH(int, verdict);
        QFETCH(QString, title);
        const VersionFile read = ReadVersionFile(file);
        QCOMPARE(int(JudgeVersion(read.number, 300, turnedDown)), verdict);
        QCOMPARE(read.title, title);
    }

    void versionNumbers()
    {
        QCOMPARE(OwnVersionNumber(QStringLiteral("3.0.1")), 301);
        QCOMPARE(OwnVersionNumber(QStringLiteral("3.0")), 300);
        QCOMPARE(VersionText(305), QStringLiteral("3.0.5"));
    }

    void addressOverrides()
    {
        qunsetenv("VELUNTA_UPDATE_URL");
        QVERIFY(UpdateAddress(QString()).scheme().startsWith(QLatin1String("http")));
        QCOMPARE(UpdateAddress(QStringLiteral("http://127.0.0.1:8/v.ver")), QUrl("http://127.0.0.1:8/v.ver"));
        QCOMPARE(UpdateAddress(QStringLiteral("not an address")), UpdateAddress(QString()));
        qputenv("VELUNTA_UPDATE_URL", "http://127.0.0.1:7/w.ver");
        QCOMPARE(UpdateAddress(QStringLiteral("http://127.0.0.1:8/v.ver")), QUrl("http://127.0.0.1:7/w.ver"));
        qunsetenv("VELUNTA_UPDATE_URL");
    }

    void newVersionAsksAndYesOpensTheDownloadPage()
    {
        Checker c;
        VersionServer server(QStringLiteral("file"), "305\r\nVelunta news\r\n");
        c.prompt.answers << vbYes;
        QVERIFY(c.run(server.url(), false));
        QCOMPARE(c.prompt.shown.size(), 1);
        QCOMPARE(c.prompt.shown[0].title, QStringLiteral("Velunta news"));
        QCOMPARE(
            c.prompt.shown[0].text,
            QStringLiteral("A new version 3.0.5 is available!\n\nDo you want to download the new version?"));
        QCOMPARE(c.prompt.shown[0].style, int(vbYesNoCancel));
        QCOMPARE(c.opened, QList<QUrl>{c.check.downloadPage});
        QCOMPARE(c.settings.GetSetting(QStringLiteral("Download")), QString());
    }

    void noSilencesThatVersionOnly()
    {
        Checker c;
        {
            VersionServer server(QStringLiteral("file"), "305\nT\n");
            c.prompt.answers << vbNo;
            QVERIFY(c.run(server.url(), false));
            QCOMPARE(c.settings.GetSetting(QStringLiteral("Download")), QStringLiteral("305"));
            QVERIFY(c.run(server.url(), true));
            QCOMPARE(c.prompt.shown.size(), 1);
        }
        VersionServer later(QStringLiteral("file"), "306\nT\n");
        c.prompt.answers << vbCancel;
        QVERIFY(c.run(later.url(), false));
        QCOMPARE(c.prompt.shown.size(), 2);
        QCOMPARE(c.settings.GetSetting(QStringLiteral("Download")), QStringLiteral("305"));
        QVERIFY(c.opened.isEmpty());
    }

    void upToDateIsSaidOnlyWhenAsked()
    {
        Checker c;
        VersionServer server(QStringLiteral("file"), "300\nT\n");
        QVERIFY(c.run(server.url(), false));
        QVERIFY(c.prompt.shown.isEmpty());
        QVERIFY(c.run(server.url(), true));
        QCOMPARE(c.prompt.shown.size(), 1);
        QCOMPARE(c.prompt.shown[0].title, QStringLiteral("Version is already up-to-date!"));
        QCOMPARE(c.prompt.shown[0].text,
                 QStringLiteral("Your version is the most recent version.\nNo need to download an update."));
        QCOMPARE(c.prompt.shown[0].style, int(vbInformation));
    }

    // Before the sixth start, turned off, or offline unasked, the check stays off the network.
    void turnedOffOrOfflineStaysQuiet()
    {
        Checker c;
        VersionServer server(QStringLiteral("file"), "305\nT\n");
        c.settings.SaveSetting(QStringLiteral("UseCounter"), QStringLiteral("5"));
        QVERIFY(!c.check.CheckNewVersion(server.url(), QString(), true)); // even when asked
        c.settings.SaveSetting(QStringLiteral("NoURLupdate"), QStringLiteral("Yes"));
        QVERIFY(!c.check.CheckNewVersion(server.url(), QString(), true));
        c.settings.SaveSetting(QStringLiteral("NoURLupdate"), QStringLiteral("No"));
        c.check.isConnected = [](const QUrl&) { return false; };
        QVERIFY(!c.check.CheckNewVersion(server.url(), QString(), false));
        QCOMPARE(server.requests, 0);
        // Asked for, the fetch is tried all the same; a server that isn't there says nothing.
        c.prompt.answers << vbCancel;
        QVERIFY(c.run(server.url(), true));
        QCOMPARE(server.requests, 1);
        QTcpServer closed;
        closed.listen(QHostAddress::LocalHost);
        const quint16 port = closed.serverPort();
        closed.close();
        QVERIFY(c.run(QUrl(QStringLiteral("http://127.0.0.1:%1/velunta.ver").arg(port)), true));
        QCOMPARE(c.prompt.shown.size(), 1);
    }

    void hostileServerNeverHangsOrSpeaks_data()
    {
        QTest::addColumn<QString>("mode");
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("404") << "404" << QByteArray();
        QTest::newRow("redirect loop") << "redirect" << QByteArray();
        QTest::newRow("garbage") << "file" << QByteArray("<html><body>Oops</body></html>");
        QTest::newRow("10 MB body") << "huge" << QByteArray();
        QTest::newRow("endless slow body") << "slow" << QByteArray();
        QTest::newRow("empty file") << "file" << QByteArray();
        QTest::newRow("hang up") << "hangup" << QByteArray();
        QTest::newRow("never answers") << "silent" << QByteArray();
        QTest::newRow("just over 4 KB") << "file" << QByteArray("305\n") + QByteArray(4100, 'x');
    }
    void hostileServerNeverHangsOrSpeaks()
    {
        QFETCH(QString, mode);
        QFETCH(QByteArray, body);
        Checker c;
        VersionServer server(mode, body);
        QElapsedTimer clock;
        clock.start();
        QVERIFY(c.run(server.url(), false));
        QVERIFY(clock.elapsed() < 4000);
        QVERIFY(c.prompt.shown.isEmpty());
        QVERIFY(c.opened.isEmpty());
    }

    void waitWindowShowsWhileAskedAndCancelDropsTheCheck()
    {
        Checker c;
        VersionServer server(QStringLiteral("silent"));
        QSignalSpy done(&c.check, &UpdateCheck::done);
        QVERIFY(c.check.CheckNewVersion(server.url(), QString(), true));
        QTRY_VERIFY(c.check.waitWindow() && c.check.waitWindow()->isVisible());
        QCOMPARE(c.check.waitWindow()->windowTitle(), QStringLiteral("Updates"));
        c.check.waitWindow()->reject();
        QCOMPARE(done.count(), 1);
        QVERIFY(!c.check.running());
        QTest::qWait(200);
        QCOMPARE(done.count(), 1);
        QVERIFY(c.prompt.shown.isEmpty());
    }

    // The start-up check in the real window runs after the load, from the sixth start on.
    void mainWindowChecksFromTheSixthStart()
    {
        VersionServer server(QStringLiteral("file"), "305\nT\n");
        qputenv("VELUNTA_UPDATE_URL", server.url().toEncoded());
        QSettings(QStringLiteral("Zolvane"), QStringLiteral("Velunta")).clear();
        for (int start = 1; start <= 5; ++start) {
            MainWindowFixture f(false);
            QTest::qWait(20);
            QVERIFY(f.prompt.shown.isEmpty());
        }
        QCOMPARE(server.requests, 0);
        MainWindowFixture f(false);
        f.prompt.answers << vbNo;
        QTRY_COMPARE(f.prompt.shown.size(), 1);
        QCOMPARE(server.requests, 1);
        QCOMPARE(SettingsStore().GetSetting(QStringLiteral("Download")), QStringLiteral("305"));
        qunsetenv("VELUNTA_UPDATE_URL");
    }

    void helpEntriesAllAct()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        for (int index : {0, 1, 3, 4, 7, 9})
            QVERIFY2(m.isBuilt(MenuId::mnuhelp, index), qPrintable(QString::number(index)));
        m.action(MenuId::mnuhelp, 0)->trigger();
        m.action(MenuId::mnuhelp, 1)->trigger();
        m.action(MenuId::mnuhelp, 4)->trigger();
        QCOMPARE(f.openedUrls.size(), 3);
        QVERIFY(f.openedUrls[0].isLocalFile());
        QVERIFY(QFileInfo(f.openedUrls[0].toLocalFile()).isFile());
        QCOMPARE(f.openedUrls[1].scheme(), QStringLiteral("mailto"));
        QVERIFY(f.openedUrls[2].scheme().startsWith(QLatin1String("http")));
        QVERIFY(f.prompt.shown.isEmpty());

        QAction* automatic = m.action(MenuId::mnuhelp, 7);
        QVERIFY(automatic->isChecked());
        automatic->trigger();
        QCOMPARE(SettingsStore().GetSetting(QStringLiteral("NoURLupdate")), QStringLiteral("Yes"));
        automatic->trigger();
        QCOMPARE(SettingsStore().GetSetting(QStringLiteral("NoURLupdate")), QStringLiteral("No"));
    }

    // Every page, picture and section a page points to is there; pictures stay under 200 KB.
    void manualHoldsTogether()
    {
        const QDir manual(qEnvironmentVariable("VELUNTA_DATA") + QStringLiteral("/manual"));
        const QStringList pages = manual.entryList({QStringLiteral("*.html")});
        QVERIFY(pages.contains(QStringLiteral("index.html")));
        const QRegularExpression link(QStringLiteral("(?:src|href)=\"([^\"#:]*)(?:#([^\"]*))?\""));
        for (const QString& page : pages) {
            QFile file(manual.filePath(page));
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QString html = QString::fromUtf8(file.readAll());
            for (auto it = link.globalMatch(html); it.hasNext();) {
                const QRegularExpressionMatch m = it.next();
                const QString target = m.captured(1).isEmpty() ? page : m.captured(1);
                QVERIFY2(QFileInfo::exists(manual.filePath(target)), qPrintable(page + u' ' + target));
                if (target.endsWith(QLatin1String(".png")))
                    QVERIFY2(QFileInfo(manual.filePath(target)).size() < 200 * 1024, qPrintable(target));
                if (!m.captured(2).isEmpty()) {
                    QFile other(manual.filePath(target));
                    QVERIFY(other.open(QIODevice::ReadOnly));
                    QVERIFY2(other.readAll().contains(QByteArray("id=\"" + m.captured(2).toUtf8() + '"')),
                             qPrintable(page + u' ' + m.captured(0)));
                }
            }
        }
    }
};

QTEST_MAIN(tst_Help)
#include "tst_help.moc"
