#pragma once
// The per-user settings store: vendor Zolvane, section Velunta, one text value per
// key. A read of a missing key gives the default.

#include <QString>

#include <memory>

class QSettings;

namespace velunta {

class SettingsStore {
public:
    SettingsStore();
    ~SettingsStore();

    QString GetSetting(const QString& key, const QString& defaultValue = QString()) const;
    void SaveSetting(const QString& key, const QString& value);
    void SaveSetting(const QString& key, long long value) { SaveSetting(key, QString::number(value)); }
    // Writes pending values; false (reported once on stderr) when the file can't be written.
    bool sync();
    QString fileName() const;

private:
    std::unique_ptr<QSettings> m_settings;
    bool m_reportedFailure = false;
};

} // namespace velunta
