// The recent files: four entries on the File menu. The list isn't ordered by use:
// a new path takes the first empty entry, and once all four are full the oldest
// written entry goes.

#include "shell/frmMain.h"

#include "core/SettingsStore.h"
#include "shell/Services.h"

#include <QAction>

namespace velunta {

namespace {

// A long path shows as ".." and its last 30 characters.
QString recentCaption(const QString& path)
{
    return path.size() > 30 ? QStringLiteral("..") + path.right(30) : path;
}

} // namespace

void frmMain::MRUDlist(int mode, const QString& path)
{
    if (mode == 1) {
        for (int i = 0; i < 4; ++i) {
            showEntry(MenuId::mnuMrud, false, i);
            m_recent[i].clear();
        }
        showEntry(MenuId::niks025, false);
        for (int i = 0; i < 4; ++i) {
            // Values of four characters or fewer are blanks.
            const QString value =
                m_services.settings.GetSetting(QStringLiteral("MRUD%1").arg(i), QStringLiteral(" "));
            if (value.size() > 4)
                m_recent[i] = value;
        }
    } else if (mode == 2) {
        bool found = false;
        for (int i = 0; i < 4; ++i) {
            if (!m_recent[i].isEmpty() && m_recent[i].toLower() == path.toLower())
                found = true;
        }
        if (!found) {
            int slot = -1;
            for (int i = 0; i < 4 && slot < 0; ++i)
                if (m_recent[i].isEmpty())
                    slot = i;
            if (slot < 0) {
                slot = MRUNext % 4;
                ++MRUNext;
            }
            m_recent[slot] = path;
        }
    }
    for (int i = 0; i < 4; ++i) {
        QAction* entry = action(MenuId::mnuMrud, i);
        entry->setText(recentCaption(m_recent[i]).replace(u'&', QStringLiteral("&&")));
        entry->setVisible(!m_recent[i].isEmpty());
        entry->setEnabled(!m_recent[i].isEmpty());
        if (!m_recent[i].isEmpty())
            showEntry(MenuId::niks025, true);
    }
}

void frmMain::mnuMrud_Click(int index)
{
    FileToOpen = m_recent[index];
    Open_Click();
}

void frmMain::SaveRecentFiles()
{
    for (int i = 0; i < 4; ++i)
        m_services.settings.SaveSetting(QStringLiteral("MRUD%1").arg(i),
                                        m_recent[i].isEmpty() ? QStringLiteral(" ") : m_recent[i]);
}

} // namespace velunta
