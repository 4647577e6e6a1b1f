#pragma once

#include "store/IniEntries.h"
#include "store/IniText.h"

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>
#include <vector>

/// One local configuration file: ini text that is kept line by line.
///
/// The file is UTF-8 with CR LF line ends. Keys are addressed as "section/key"; keys before the first section
/// line live in the section "untitled". Writing changes only the lines of keys, and puts new keys next to
/// their section: comments, unknown lines and the order of lines survive. store/IniGrammar.h describes the
/// lines, store/IniMerge.h what writing does.
class OrbSettings
{
public:
    /// Does not touch the file.
    explicit OrbSettings(const QString &path);
    /// Writes the file, whether or not anything was changed: its keys get their usual form.
    ~OrbSettings();
    Q_DISABLE_COPY_MOVE(OrbSettings)

    QString path() const { return m_path; }
    /// Forgets all lines and values, edits too, and takes the file at \a path from now on (which may be the
    /// same path: the file is then read afresh). Writes nothing.
    void setPath(const QString &path);
    /// The same for the present path, which also stays unwritten until a value is read or set: the file keeps
    /// the form that it has on the disk.
    void forget();

    /// Adds the lines of the file to those that are held, and takes the keys of them all. False when the file
    /// cannot be read.
    bool read();
    /// Puts all values into the lines and writes these. False when the file cannot be written, and then
    /// nothing is changed in memory either. Until they are read again, new keys stay new: a second write puts
    /// them into the file once more. A file that exists but could not be read is not overwritten.
    bool write();
    /// False when the last write failed and the file on the disk has other values than those in memory.
    bool isWritten() const { return m_isWritten; }
    /// True when a value was set that no write and read have brought to the disk.
    bool hasEdits() const;
    /// Writes, and takes what was written in place of the lines that were held. Always true. Values of keys
    /// that the file does not hold stay known. A file that cannot be written keeps its edits in memory. One
    /// without edits that has its usual form already, and has not changed since, is not touched.
    bool flush();

    /// The value of "section/key" as a string, or \a defaultValue. Here and in the following functions, a
    /// file of which no key is known is read first.
    QVariant value(const QString &key, const QVariant &defaultValue = QVariant());
    /// Keeps \a value, as a string, until the next write.
    void setValue(const QString &key, const QVariant &value);
    /// As setValue(), or without a \a value as if the key had never been set. When this is what the file
    /// says, the edit of the key is forgotten, so that a file without other edits keeps the form that it has
    /// on the disk. A key that the file holds cannot be taken out of it: it gets an empty value.
    void putBack(const QString &key, const std::optional<QString> &value);
    /// All "section/key/value" whose "section/key" matches the regular expression \a pattern as a whole, in
    /// the order of keys.
    QStringList matching(const QString &pattern);

    /// The value of "section/key", or null. Valid until the next call.
    const QString *find(QStringView key)
    {
        readIfEmpty();
        const paravue::IniEntries::Entry *entry = m_entries.find(key);
        return entry && !entry->withdrawn ? &entry->value(m_text) : nullptr;
    }

private:
    void readIfEmpty()
    {
        if (m_entries.isEmpty() && !addUnchanged())
            read();
    }
    bool addUnchanged();
    void takeKeys();
    void appendRepeats();
    bool mayWrite();
    paravue::IniText merged();
    bool writeText(paravue::IniText text);
    void takeAsWritten();

    /// What changes when somebody else writes the file.
    struct FileState {
        bool operator==(const FileState &) const = default;

        qint64 size = -1;
        QDateTime modified;

        /// Two changes within one tick of a file system's clock cannot be told apart.
        bool isOld() const;
    };
    FileState fileState() const;
    bool addContent(const QByteArray &content);

    QString m_path;
    bool m_sectioned = false;  ///< the last read met a section line
    bool m_loaded = false;     ///< read since the path was set
    bool m_unreadable = false; ///< the last read has failed although there is a file
    bool m_forgotten = false;
    bool m_isWritten = true;
    paravue::IniText m_text;
    paravue::IniEntries m_entries;
    QHash<quint32, std::optional<QString>> m_unedited; ///< of edited entries, what they were before
    std::vector<quint32> m_entriesOfLines;             ///< for each marked line its entry, while m_linesKnown
    bool m_linesKnown = false;                         ///< no two lines have the same entry

    std::optional<FileState> m_held;    ///< of the file that the text is, to the byte
    std::optional<FileState> m_refused; ///< of a file whose keys cannot be kept

    /// A file without any key is read again at each access, and its lines are added each time. The content
    /// that was read last, and how many more times it stands behind the text.
    QByteArray m_lastContent;
    QDateTime m_lastModified; ///< of the file with that content; invalid while it is too new to tell
    qint64 m_repeats = 0;
};
