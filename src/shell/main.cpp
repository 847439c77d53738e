// The program's entry: the splash, then the main window, whose load runs the
// initialisation.

#include "core/AppFolder.h"
#include "core/SettingsStore.h"
#include "shell/QtServices.h"
#include "shell/Services.h"
#include "shell/frmMain.h"
#include "shell/frmRecovery.h"
#include "shell/frmSplashh.h"
#include "widgets/AppStyle.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QStringList>
#include <QTranslator>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Zolvane"));
    QApplication::setApplicationName(QStringLiteral("Velunta"));
    QApplication::setApplicationVersion(QStringLiteral(VELUNTA_VERSION));
    // Ties the windows to the installed launcher, for the icon and the name a desktop shows.
    QGuiApplication::setDesktopFileName(QStringLiteral("com.zolvane.Velunta"));

    using namespace velunta;
    QApplication::setStyle(new AppStyle);
    // The user's language, where a translation was shipped; Qt's own buttons too.
    QTranslator qtTranslation;
    if (qtTranslation.load(QLocale(), QStringLiteral("qtbase"), QStringLiteral("_"),
                           QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&qtTranslation);
    QTranslator translation;
    if (translation.load(QLocale(), QStringLiteral("velunta"), QStringLiteral("_"),
                         LayoutOf(QCoreApplication::applicationDirPath()).translations))
        QCoreApplication::installTranslator(&translation);

    const bool waits = qEnvironmentVariableIsEmpty("VELUNTA_NO_SPLASH_WAIT");
    frmSplashh splash;
    splash.show();
    splash.repaint();
    QCoreApplication::processEvents();
    if (waits)
        WaitWithEvents(1.0);

    const QString appFolder = ResolveAppFolder(QCoreApplication::applicationDirPath());
    SettingsStore settings;
    QtPrompt prompt;
    QtFileDialogs dialogs;
    QtRecoveryPrompt recovery;
    Services services{prompt, dialogs, settings, appFolder, waits, &recovery};
    frmMain main(services);
    prompt.setParent(&main);
    dialogs.setParent(&main);
    recovery.setParent(&main);

    // The command line is one text, as the program was given it.
    QStringList args = QCoreApplication::arguments();
    args.removeFirst();
    main.show();
    main.Load(args.join(u' '), [&](const QString& text) { splash.setStatus(text); });
    splash.close();
    return app.exec();
}
