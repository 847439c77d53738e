#pragma once
// The version file on the makers' server and what the program makes of it. Display-free
// and without the network, so every rule is testable on its own.

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace velunta {

// The file's two lines: the newest version as three digits (301 is 3.0.1) and the title
// of the message that announces it.
struct VersionFile {
    int number = 0;
    QString title;
};

// Reads the leading number of the first line (0 when it has none) and the second line.
// A title shorter than 2 characters becomes "New version available".
VersionFile ReadVersionFile(const QByteArray& bytes);

// The program's own version as the file writes it: the texts of major, minor and
// revision joined and read as one number ("3.0.1" is 301).
int OwnVersionNumber(const QString& version);

// "305" shown as "3.0.5": the first digit, the second and the last.
QString VersionText(int number);

enum class UpdateVerdict {
    NotValid,   // not a version file: below 100 or more than three digits
    NewVersion, // newer than this program and not turned down before
    TurnedDown, // newer, but the user said No to this version (or a later one)
    UpToDate,   // this version or an older one
};

// `turnedDown` is the version the user last said No to (0: none).
UpdateVerdict JudgeVersion(int fileNumber, int ownNumber, int turnedDown);

// Where the version file is read from: VELUNTA_UPDATE_URL, else the setting UpdateURL
// (`setting`), else the makers' address. A text that isn't an address is passed over.
QUrl UpdateAddress(const QString& setting);

} // namespace velunta
