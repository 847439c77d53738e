// A print run through a real CUPS queue: a private scheduler in a temporary folder
// with one queue whose device keeps what it is sent in a file. The queue takes the
// job as it comes (a PDF from Qt), so the page can be rendered back to pixels. Where
// the scheduler isn't installed or won't start, the test is skipped.

#include "print/frmPrint.h"
#include "support/FakeServices.h"
#include "support/OutsideTools.h"
#include "support/TestImages.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRadioButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

class tst_printcups : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;
    QProcess m_cupsd;
    QString m_skip;
    QString m_out;

    // The scheduler, its socket and the queue "velunta-test"; a reason when that failed.
    QString startScheduler()
    {
        const QString cupsd = QStandardPaths::findExecutable(QStringLiteral("cupsd"), {"/usr/sbin", "/sbin"});
        const QString lpadmin =
            QStandardPaths::findExecutable(QStringLiteral("lpadmin"), {"/usr/sbin", "/usr/bin"});
        if (cupsd.isEmpty() || lpadmin.isEmpty() ||
            !QFile::exists(QStringLiteral("/usr/lib/cups/daemon/cups-exec")))
            return QStringLiteral("the CUPS scheduler is not installed");
        if (QStandardPaths::findExecutable(QStringLiteral("pdftoppm")).isEmpty())
            return QStringLiteral("pdftoppm (poppler-utils) is not installed");
        const QString d = m_dir.path();
        for (const char* sub : {"spool", "cache", "log", "run", "tmp", "out", "bin/backend"})
            QDir().mkpath(d + u'/' + QLatin1String(sub));
        QFile::setPermissions(d + "/tmp", QFile::Permissions(0x7777));
        QFile::setPermissions(d + "/out", QFile::Permissions(0x7777));
        QFile::link(QStringLiteral("/usr/lib/cups/daemon"), d + "/bin/daemon");
        const QByteArray dir = d.toLocal8Bit();
        const bool written =
            WriteFile(d + "/cupsd.conf",
                      "Listen " + dir +
                          "/cups.sock\nLogLevel warn\n"
                          "<Location />\n  Order allow,deny\n  Allow all\n</Location>\n") &&
            WriteFile(d + "/cups-files.conf",
                      "ServerRoot " + dir + "\nServerBin " + dir + "/bin\nRequestRoot " + dir +
                          "/spool\nTempDir " + dir + "/tmp\nCacheDir " + dir + "/cache\nStateDir " + dir +
                          "/run\nErrorLog " + dir + "/log/error_log\nAccessLog " + dir +
                          "/log/access_log\nPageLog " + dir + "/log/page_log\nSandboxing Relaxed\n") &&
            // The scheduler runs its backends as another user.
            QFile::setPermissions(
                WriteScript(
                    d + "/bin/backend/save",
                    "[ $# -eq 0 ] && { echo 'direct save \"Unknown\" \"File keeper\"'; exit 0; }\n"
                    "cat \"${6:-/dev/stdin}\" > \"${DEVICE_URI#save:}\"\nchmod 644 \"${DEVICE_URI#save:}\""),
                QFile::Permissions(0x7755));
        if (!written)
            return QStringLiteral("the scheduler's folder could not be written");
        m_cupsd.start(cupsd, {"-f", "-c", d + "/cupsd.conf", "-s", d + "/cups-files.conf"});
        if (!m_cupsd.waitForStarted(5000))
            return QStringLiteral("cupsd did not start");
        const QString socket = d + "/cups.sock";
        for (int waited = 0; waited < 10000 && !QFile::exists(socket) && m_cupsd.state() == QProcess::Running;
             waited += 50)
            QTest::qWait(50);
        if (m_cupsd.state() != QProcess::Running)
            return QStringLiteral("cupsd stopped: ") + QString::fromLocal8Bit(m_cupsd.readAllStandardError());
        // Qt's CUPS support asks the scheduler named here, from its first question on.
        qputenv("CUPS_SERVER", socket.toLocal8Bit());
        m_out = d + "/out/printed.pdf";
        if (RunTool(lpadmin, {"-p", "velunta-test", "-E", "-v", "save:" + m_out}).isNull())
            return QStringLiteral("the test queue could not be made");
        return {};
    }

private Q_SLOTS:
    void initTestCase() { m_skip = startScheduler(); }

    void cleanupTestCase()
    {
        if (m_cupsd.state() == QProcess::Running) {
            m_cupsd.terminate();
            if (!m_cupsd.waitForFinished(5000))
                m_cupsd.kill();
        }
    }

    void printsThroughACupsQueue()
    {
        if (!m_skip.isEmpty())
            QSKIP(qPrintable(m_skip));
        ScriptedPrompt prompt;
        ScriptedDialogs dialogs;
        QImage picture(120, 60, QImage::Format_RGB32);
        picture.fill(QColor(20, 40, 220));
        frmPrint form(picture, m_dir.path() + u'/', prompt, dialogs);
        QVERIFY2(form.choosePrinter(QStringLiteral("velunta-test")), "the queue is not in the printer list");
        form.OptPaper(1)->click(); // A4
        form.OptOrient(1)->click();
        form.HScroll1(0)->setValue(720);
        form.HScroll1(1)->setValue(1440);
        QVERIFY(form.printPic());
        QVERIFY(prompt.shown.isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(m_out).size() > 0, 20000);
        QTest::qWait(300); // the device writes the file in one go; let it close
        QVERIFY(
            !RunTool(QStringLiteral("pdftoppm"), {"-r", "72", "-png", "-singlefile", m_out, m_out.chopped(4)})
                 .isNull());
        const QImage page = QImage(m_out.chopped(4) + ".png").convertToFormat(QImage::Format_RGB32);
        QCOMPARE(page.size(), QSize(842, 595)); // A4, landscape
        // 120 x 60 pixels are 90 x 45 points, half an inch from the left, an inch down.
        QCOMPARE(QColor(page.pixel(36 + 45, 72 + 22)).blue() > 180, true);
        QCOMPARE(QColor(page.pixel(36 - 4, 72 + 22)), QColor(Qt::white));
        QCOMPARE(QColor(page.pixel(36 + 45, 72 - 4)), QColor(Qt::white));
        QCOMPARE(QColor(page.pixel(36 + 94, 72 + 22)), QColor(Qt::white));
    }
};

QTEST_MAIN(tst_printcups)
#include "tst_printcups.moc"
