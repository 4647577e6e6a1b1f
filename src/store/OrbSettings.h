#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

/// One local configuration file: ini text that is kept line by line.
///
/// The file is UTF-8 with CR LF line ends. Keys are addressed as "section/key"; keys before the first section
/// line live in the section "untitled". Writing changes only the lines of keys, and puts new keys next to
/// their section: comments, unknown lines and the order of lines survive. See store/IniGrammar.h for the
/// lines.
class OrbSettings
{
public:
    /// Does not touch the file.
    explicit OrbSettings(const QString &path);
    /// Writes the file, whether or not anything was changed.
    ~OrbSettings();
    Q_DISABLE_COPY_MOVE(OrbSettings)

    QString path() const { return m_path; }
    /// Forgets all lines and values, edits too, and takes the file at \a path from now on (which may be the
    /// same path: the file is then read afresh). Writes nothing.
    void setPath(const QString &path);

    /// Adds the lines of the file to those that are held, and reads the keys of them all. False when the file
    /// cannot be opened.
    bool read();
    /// Merges all values into the lines and writes them. False when the file cannot be written.
    bool write();
    /// Writes, and reads what was written. Always true.
    bool flush();

    /// The value of "section/key" as a string, or \a defaultValue. Here and in the next two, a file of which
    /// no key is known is read first.
    QVariant value(const QString &key, const QVariant &defaultValue = QVariant());
    void setValue(const QString &key, const QVariant &value);
    /// All "section/key/value" whose "section/key" matches \a pattern as a whole, in the order of keys.
    QStringList matching(const QString &pattern);

private:
    struct Entry {
        QString value;
        bool inFile = false; ///< the key has a line
    };
    void ensureRead();
    void merge(const QString &section, const QString &name, const Entry &entry);

    QString m_path;
    bool m_sectioned = false;
    bool m_loaded = false; ///< read since the path was set
    QStringList m_lines;
    QMap<QString, Entry> m_entries;
};
