// The Help menu: the manual, a mail to the makers, the update check, the support group,
// the automatic check at start-up, and About.

#include "shell/frmMain.h"

#include "core/AppFolder.h"
#include "core/Prompt.h"
#include "core/SettingsStore.h"
#include "core/WebAddresses.h"
#include "shell/Services.h"
#include "update/UpdateCheck.h"
#include "update/VersionFile.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace velunta {

namespace {

// The manual's first page: beside the source data when run from a build or a test
// (VELUNTA_DATA), in the data folder of an installed program (share/velunta/manual),
// beside a portable program, or in the program's own folder.
QString ManualIndex(const QString& appFolder)
{
    const ProgramLayout layout = LayoutOf(QCoreApplication::applicationDirPath());
    QStringList folders;
    if (const QString data = qEnvironmentVariable("VELUNTA_DATA"); !data.isEmpty())
        folders << data + u'/';
    folders << layout.data << layout.programFolder << appFolder;
    for (const QString& folder : folders) {
        const QString page = QDir(folder).filePath(QStringLiteral("manual/index.html"));
        if (!folder.isEmpty() && QFileInfo(page).isFile())
            return QFileInfo(page).absoluteFilePath();
    }
    return QString();
}

} // namespace

void frmMain::OpenAddress(const QUrl& url)
{
    if (m_services.openUrl)
        m_services.openUrl(url);
    else if (!QDesktopServices::openUrl(url))
        m_services.prompt.MsgBox(
            tr("There is no program on this computer that opens\n%1").arg(url.toDisplayString()),
            vbExclamation, tr("Velunta"));
}

void frmMain::CheckForUpdates(bool verbose)
{
    if (!m_updateCheck)
        m_updateCheck = std::make_unique<UpdateCheck>(
            m_services.settings, m_services.prompt, [this](const QUrl& url) { OpenAddress(url); }, this);
    const QUrl address = UpdateAddress(m_services.settings.GetSetting(QStringLiteral("UpdateURL")));
    m_updateCheck->CheckNewVersion(address, m_services.AppFolder + QStringLiteral("temp/dversion.ver"),
                                   verbose);
}

void frmMain::mnuhelp_Click(int index)
{
    switch (index) {
    case 0: {
        const QString page = ManualIndex(m_services.AppFolder);
        if (page.isEmpty())
            m_services.prompt.MsgBox(tr("The manual was not installed with this copy of Velunta."),
                                     vbExclamation, tr("Manual"));
        else
            OpenAddress(QUrl::fromLocalFile(page));
        break;
    }
    case 1:
        OpenAddress(QUrl(QString::fromLatin1(kMailAddress)));
        break;
    case 3:
        CheckForUpdates(true);
        break;
    case 4:
        OpenAddress(QUrl(QString::fromLatin1(kSupportGroupAddress)));
        break;
    case 7:
        NoURLupdate = action(MenuId::mnuhelp, 7)->isChecked() ? QStringLiteral("No") : QStringLiteral("Yes");
        m_services.settings.SaveSetting(QStringLiteral("NoURLupdate"), NoURLupdate);
        break;
    case 9:
        m_services.prompt.MsgBox(
            tr("Velunta %1\n\nA paint program for beginners, children and hobby painters.\n\n"
               "Zolvane")
                .arg(QStringLiteral(VELUNTA_VERSION)),
            vbInformation, tr("About Velunta"));
        break;
    default:
        break;
    }
}

} // namespace velunta
