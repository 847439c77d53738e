#include "support/MainWindowFixture.h"

#include "document/frmPaint.h"
#include "shell/ProgressStrip.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QSettings>

namespace velunta::test {

bool WindowUsable(frmMain& m)
{
    if (!m.menuBar()->isEnabled() || m.progress()->isVisible() || QApplication::overrideCursor())
        return false;
    for (QWidget* w : m.centralWidget()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        if (!w->isEnabled())
            return false;
    return true;
}

MainWindowFixture::MainWindowFixture(bool fresh, RecoveryPrompt* recovery, const QString& appFolder)
{
    const QString folder = appFolder.isEmpty() ? m_home.path() + QStringLiteral("/app/") : appFolder;
    QDir().mkpath(folder + QStringLiteral("temp"));
    if (fresh)
        QSettings(QStringLiteral("Zolvane"), QStringLiteral("Velunta")).clear();
    m_settings = std::make_unique<SettingsStore>();
    m_services = std::make_unique<Services>(Services{prompt, dialogs, *m_settings, folder, false, recovery});
    m_services->openUrl = [this](const QUrl& url) { openedUrls << url; };
    m_main = std::make_unique<frmMain>(*m_services);
    m_main->resize(1000, 700);
    m_main->show();
    m_main->Load(QString());
    settle();
}

MainWindowFixture::~MainWindowFixture()
{
    if (!m_main)
        return;
    // Windows go without questions at the end of a test.
    for (frmPaint* f : m_main->documents())
        f->closeWithoutQuestion();
    settle();
}

void MainWindowFixture::endWithoutClose()
{
    m_main.reset();
    settle();
}

frmPaint* MainWindowFixture::newDocument(int w, int h, Color background)
{
    frmPaint* form = m_main->createDocument();
    form->doc.CreatePicture(w + 2, h + 2, background);
    form->doc.Name = QStringLiteral("Untitled");
    form->doc.SetCaption(QStringLiteral("Untitled"));
    m_main->showDocument(form, false);
    settle();
    return form;
}

frmPaint* MainWindowFixture::newDocument(const QImage& picture)
{
    frmPaint* form = newDocument(picture.width(), picture.height());
    form->doc.Buffer.setImage(picture);
    form->doc.Buffer.keepImageAsPicture();
    form->doc.invalidateView();
    return form;
}

void MainWindowFixture::drag(frmPaint& form, QPointF from, QPointF to, int moves)
{
    m_main->PaintAreaMouseDown(form, 1, 0, float(from.x()), float(from.y()));
    for (int i = 1; i <= moves; ++i) {
        const QPointF p = from + (to - from) * (double(i) / moves);
        m_main->PaintAreaMouseMove(form, 1, 0, float(p.x()), float(p.y()));
    }
    m_main->PaintAreaMouseUp(form, 1, 0, float(to.x()), float(to.y()));
}

void MainWindowFixture::settle()
{
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
}

} // namespace velunta::test
