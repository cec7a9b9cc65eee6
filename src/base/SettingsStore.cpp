#include "base/SettingsStore.h"

#include "base/SendrelError.h"

#include <QDir>
#include <QSettings>
#include <QStandardPaths>

namespace sendrel {

namespace {

QString storePath(const QString &application)
{
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return config + QLatin1Char('/') + application + QLatin1Char('/') + application + QStringLiteral(".ini");
}

QString address(const QString &section, const QString &key)
{
    return section + QLatin1Char('/') + key;
}

}  // namespace

SettingsStore::SettingsStore(const QString &application) : m_settings(new QSettings(storePath(application), QSettings::IniFormat))
{
}

SettingsStore::~SettingsStore()
{
    m_settings->sync();
    delete m_settings;
}

QString SettingsStore::GetSetting(const QString &section, const QString &key, const QString &defaultValue) const
{
    const QVariant v = m_settings->value(address(section, key));
    if (!v.isValid())
        return defaultValue;
    // A value that the INI reader split at commas comes back as a list; keep it as written.
    if (v.typeId() == QMetaType::QStringList)
        return v.toStringList().join(QLatin1Char(','));
    return v.toString();
}

void SettingsStore::SaveSetting(const QString &section, const QString &key, const QString &value)
{
    m_settings->setValue(address(section, key), value);
}

void SettingsStore::DeleteSetting(const QString &section, const QString &key)
{
    if (!m_settings->contains(address(section, key)))
        throw SendrelError(ErrNo::InvalidCall, QStringLiteral("Sendrel"), QStringLiteral("Invalid procedure call or argument"));
    m_settings->remove(address(section, key));
}

void SettingsStore::sync()
{
    m_settings->sync();
}

QString SettingsStore::fileName() const
{
    return m_settings->fileName();
}

}  // namespace sendrel
