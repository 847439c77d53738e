#pragma once
// Where the program's own files live: the data files it ships (brushes, textures,
// effects), UserColors.ini, VeluntaPrint.ini and the temp folder.

#include <QString>

namespace velunta {

// Where the files that come with the program lie, by how it was laid out. A program
// folder that holds the data list (velunta-data.txt) is a portable folder or a build:
// everything lies beside the program. A program in bin/ next to share/velunta/ is an
// installed one: data in share/velunta/, the companion programs in libexec/velunta/
// and the bundled effect programs in libexec/velunta/effects/.
struct ProgramLayout {
    QString programFolder; // each folder with a trailing "/"
    QString data;          // empty when no data list was found
    QString companions;
    QString effects;
    QString translations;
    bool installed = false;
};
ProgramLayout LayoutOf(const QString& programFolder);

// The program's folder with a trailing "/" when it is a portable folder that can be
// written. Otherwise (an installed program) the per-user data folder
// $XDG_DATA_HOME/Zolvane/Velunta/, created on first use with the program's data files
// copied there and the bundled effect programs linked into its effects folder.
// VELUNTA_HOME overrides both. The temp folder under it is created when missing.
QString ResolveAppFolder(const QString& programFolder);

// Copies the data files that aren't there yet from `from` into `to` (recursively).
void CopyMissingDataFiles(const QString& from, const QString& to);

// Links every program of `from` that `to` doesn't have yet into `to`. The links follow
// the installed programs, so an update of the package updates the effects too.
void LinkMissingPrograms(const QString& from, const QString& to);

// A companion program (png, bmpExport, VeluntaExt1, VeluntaExt2): in AppFolder, where a
// user may put their own, else where the program's layout keeps them (beside the
// program, or libexec/velunta/ when installed; for tests, VELUNTA_COMPANIONS). Empty
// when it isn't there.
QString CompanionProgram(const QString& appFolder, const QString& name);
QString CompanionProgram(const QString& appFolder, const QString& name, const QString& programFolder);

// The folder that keeps unsaved pictures against a crash: recovery/ under AppFolder,
// except for an installed program, whose pictures are state rather than data:
// $XDG_STATE_HOME/Zolvane/Velunta/recovery/. With a trailing "/".
QString RecoveryFolder(const QString& appFolder);

} // namespace velunta
