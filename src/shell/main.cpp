// The program's entry: the splash, then the main window, whose load runs the
// initialisation.

#include "core/AppFolder.h"
#include "core/SettingsStore.h"
#include "shell/QtServices.h"
#include "shell/Services.h"
#include "shell/frmMain.h"
#include "shell/frmSplashh.h"

#include <QApplication>
#include <QStringList>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Zolvane"));
    QApplication::setApplicationName(QStringLiteral("Velunta"));
    QApplication::setApplicationVersion(QStringLiteral(VELUNTA_VERSION));

    using namespace velunta;
    const bool waits = qEnvironmentVariableIsEmpty("VELUNTA_NO_SPLASH_WAIT");
    frmSplashh splash;
    splash.show();
    splash.repaint();
    QCoreApplication::processEvents();
    if (waits)
        WaitWithEvents(0.5);

    const QString appFolder = ResolveAppFolder(QCoreApplication::applicationDirPath());
    SettingsStore settings;
    QtPrompt prompt;
    QtFileDialogs dialogs;
    Services services{prompt, dialogs, settings, appFolder, waits};
    frmMain main(services);
    prompt.setParent(&main);
    dialogs.setParent(&main);

    // The command line is one text, as the program was given it.
    QStringList args = QCoreApplication::arguments();
    args.removeFirst();
    main.show();
    main.Load(args.join(u' '), [&](const QString& text) { splash.setStatus(text); });
    splash.close();
    return app.exec();
}
