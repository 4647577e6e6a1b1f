#pragma once

#include <QByteArrayView>
#include <QLatin1StringView>
#include <QString>
#include <QStringView>

/// The lines of a recorder's configuration files: which of them hold a key, which open a section, and how a
/// value is written. Pure functions.
///
/// A section line is "[ name ]": the name holds no white space, and anything may follow the bracket. A key
/// line is "name = value" and ends in exactly one white-space character, its line feed; the value may be
/// quoted with ' or ", without any escapes. As patterns of the recorder's own tools:
///
///     section  ^\s*\[\s*([^\s]+)\s*\].*$
///     key      ^\s*([^;\s]+)\s*=\s*((([^\s\n"']*))|('([^\n']*)')|("([^\n"]*)")|
///                                  ([^\s\n"'][^\n"']*[^\s\n"']))\s
///
/// Lines are scanned by hand since files of many megabytes hold hundreds of thousands of them.
namespace paravue
{

/// What a key line without any value ("key =") is.
enum class EmptyValue {
    IsKey,     ///< a key with an empty value, as OrbSettings reads it
    IsIgnored, ///< no key at all, as the flat map codec reads it
};

template <typename View>
struct IniLine {
    enum Kind { Other, Key, Section };
    Kind kind = Other;
    View name;  ///< of the key or the section
    View value; ///< of a key, without its quotes
};

/// Tells what the single line \a line is; it keeps its line feed, if it has one. A line that is both a key
/// and a section is a key.
IniLine<QStringView> scanIniLine(QStringView line, EmptyValue emptyValue);
/// The same for a line that is known to hold nothing but ASCII.
IniLine<QLatin1StringView> scanIniLine(QLatin1StringView line, EmptyValue emptyValue);

/// True when \a value reads as the integer that it was written from, and so stands without quotes: 0, 42 and
/// -7 do; 007, +5, 1.5 and numbers beyond 32 bits do not.
bool isPlainInteger(QStringView value);
/// The same for UTF-8.
bool isPlainInteger(QByteArrayView value);

/// "name = value" and a line feed. The value is quoted with ' unless it is a plain integer, or empty where
/// that is a key. Nothing is escaped: a value that holds a single quote is written all the same, but the line
/// is no key line when it is read again.
QString iniKeyLine(QStringView name, QStringView value, EmptyValue emptyValue);
/// "[ name ]" and a line feed.
QString iniSectionLine(QStringView name);

/// Where keys live that stand before the first section line.
inline constexpr QLatin1StringView DefaultSection("untitled");

} // namespace paravue
