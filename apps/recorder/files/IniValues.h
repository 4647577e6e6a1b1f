#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <functional>

namespace recorder
{

/// The grammar of configuration files as the recorder reads it: comments (";" or "#"), "[ section ]" lines
/// and "name = value" lines, the value optionally in single or double quotes. Keys before the first section
/// line have the section "".
struct IniValue {
    QByteArray section;
    QByteArray name;
    QByteArray value;
};

/// The value of one line, given without its line end; false when the line holds none.
bool parseIniLine(QByteArrayView line, IniValue &value);

/// Every value by "section/name"; of a repeated name the last one counts.
QMap<QByteArray, QByteArray> iniValues(const QByteArray &text);

/// The reason why a text is no configuration file, for the client; empty when it is one.
QString iniFault(const QByteArray &text);

/// Replaces the lines of these values, named by "section/name"; values that the text lacks are added at the
/// end of their section. Line ends, comments and all other lines do not change.
QByteArray withIniValues(const QByteArray &text, const QMap<QByteArray, QByteArray> &values);

} // namespace recorder
