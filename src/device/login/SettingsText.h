#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <optional>

namespace paravue
{

/// Settings by "group/key".
using SettingsMap = QMap<QString, QByteArray>;

// The text of the library's settings file: ini sections of lines "key=value", where every value is the
// hexadecimal text of its bytes. So values hold any bytes, and nothing needs quotes or escapes.

/// Nothing when \a text is damaged: a line that is none of a section, a key, a comment or blank, a section
/// whose name holds a "=", or a value that is no hexadecimal text.
std::optional<SettingsMap> parseSettings(const QByteArray &text);

/// The whole text, which QSettings reads as an ini file as well.
QByteArray settingsText(const SettingsMap &settings);

} // namespace paravue
