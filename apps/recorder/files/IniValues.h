#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <functional>

namespace recorder
{

/// What the recorder itself understands of its configuration files: comments (";" or "#"), "[ section ]"
/// lines and "name = value" lines, the value optionally in single or double quotes. Keys before the first
/// section line have the section "".
struct IniValue {
    QByteArray section;
    QByteArray name;
    QByteArray value;
};

/// The value of one line, given without its line end; false when the line holds none.
bool parseIniLine(QByteArrayView line, IniValue &value);

/// Every value by "section/name"; of a repeated name the last one counts.
QMap<QByteArray, QByteArray> iniValues(const QByteArray &text);

/// Why a text cannot be a configuration file, for the client to read; empty when it can.
QString iniFault(const QByteArray &text);

/// The text with the line of each value replaced that is named by "section/name"; values that the text lacks
/// get lines of their own, at the end of their section. Line ends, comments and all other lines stay as they
/// are.
QByteArray withIniValues(const QByteArray &text, const QMap<QByteArray, QByteArray> &values);

} // namespace recorder
