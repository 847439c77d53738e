#pragma once
// The services the main window is given: message boxes, file dialogs, the settings
// store and the program's folder. Tests hand in doubles.

#include <QString>

namespace velunta {

class FileDialogs;
class Prompt;
class SettingsStore;

struct Services {
    Prompt& prompt;
    FileDialogs& dialogs;
    SettingsStore& settings;
    QString AppFolder; // with a trailing "/"
    // Waits of the start-up (splash) are skipped when false, for tests.
    bool splashWaits = true;
};

} // namespace velunta
