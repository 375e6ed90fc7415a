#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

// Values the program is built with but that a deployment or a test may need to change: host
// names, service keys, the systems the program is known to run on. Each key has a built-in
// default; a property list "Configuration.plist" in the settings root
// ($XDG_CONFIG_HOME/Orvane) overrides it, and an environment variable overrides both. The
// variable for a key is ORVANE_ followed by the key in upper case with words split by "_":
// "SupportedSystems" is ORVANE_SUPPORTED_SYSTEMS. Lists in a variable are separated by ";".
// Read afresh on each call, so any thread may ask.
namespace Configuration {

QVariant value(const QString &key);
QString text(const QString &key);
QStringList list(const QString &key);

// The environment variable that overrides a key.
QByteArray environmentName(const QString &key);

} // namespace Configuration
