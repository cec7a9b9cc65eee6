#pragma once

#include <QString>

class QSettings;

namespace sendrel {

// The per-user store of text values by application, section and key: an INI file under the
// user's configuration folder (XDG_CONFIG_HOME honoured), shared with the suite's other programs.
class SettingsStore {
public:
    explicit SettingsStore(const QString &application = QStringLiteral("Tolvan"));
    ~SettingsStore();
    SettingsStore(const SettingsStore &) = delete;
    SettingsStore &operator=(const SettingsStore &) = delete;

    QString GetSetting(const QString &section, const QString &key, const QString &defaultValue = QString()) const;
    void SaveSetting(const QString &section, const QString &key, const QString &value);
    // Fails with number 5 when the key is not there.
    void DeleteSetting(const QString &section, const QString &key);
    void sync();

    QString fileName() const;

private:
    QSettings *m_settings;
};

}  // namespace sendrel
