#pragma once

#include <QJsonValue>
#include <QString>

#include <optional>

namespace paravue
{

/// \a text, which may come from a recorder, as it may be written to a terminal: on one line, and without
/// control characters, which could do anything there.
QString terminalText(QString text);

/// The same of a text of several lines.
QString terminalLines(const QString &text);

/// A value in a text: dots when it is hidden, "(none)" where there is no such key.
QString shownInText(const std::optional<QString> &value, bool isHidden);
/// The same in JSON, where both are null.
QJsonValue shownInJson(const std::optional<QString> &value, bool isHidden);

/// A line that tells of a value at \a path and of another one there.
QString changeText(const QString &path, const std::optional<QString> &before,
                   const std::optional<QString> &after, bool isHidden);

} // namespace paravue
