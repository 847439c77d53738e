#include "core/SettingsStore.h"

#include "core/Logging.h"

#include <QSettings>

namespace velunta {

SettingsStore::SettingsStore()
    : m_settings(std::make_unique<QSettings>(QStringLiteral("Zolvane"), QStringLiteral("Velunta")))
{
    // The default, said out loud: a sync writes a temporary file, flushes it and renames
    // it over the old one, or fails and leaves the old file whole.
    m_settings->setAtomicSyncRequired(true);
}

SettingsStore::~SettingsStore()
{
    sync();
}

QString SettingsStore::GetSetting(const QString& key, const QString& defaultValue) const
{
    const QVariant v = m_settings->value(key);
    if (!v.isValid())
        return defaultValue;
    return v.toString();
}

void SettingsStore::SaveSetting(const QString& key, const QString& value)
{
    m_settings->setValue(key, value);
}

bool SettingsStore::sync()
{
    m_settings->sync();
    if (m_settings->status() != QSettings::NoError) {
        if (!m_reportedFailure)
            qCWarning(lcCore, "the settings file %s can't be written; settings are kept for this run only",
                      qPrintable(m_settings->fileName()));
        m_reportedFailure = true;
        return false;
    }
    return true;
}

QString SettingsStore::fileName() const
{
    return m_settings->fileName();
}

} // namespace velunta
