#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace paravue
{

/// One "difile" element of an interface description: a configuration file of the recorder and how to transfer
/// it.
struct ListedFile {
    enum class Kind {
        AsItComes,   ///< "inifile", any other type, or none
        Sectionless, ///< "sectionless": has keys only
        State,       ///< "state": may carry directives
    };

    QString name;
    QString getCommand; ///< empty: nothing to fetch
    QString putCommand; ///< empty: nothing to send
    Kind kind = Kind::AsItComes;
};

/// The files that the first element "di" of the document element lists. Nothing when there is no such
/// element, or the description is no well-formed XML or beyond the limits on it; the built-in list is then in
/// force. A list may well be empty.
std::optional<QList<ListedFile>> readDescriptionFileList(const QByteArray &description);

/// Remembers the answer for one description, which each save asks about once more.
class KnownFileList
{
public:
    const std::optional<QList<ListedFile>> &of(const QByteArray &description)
    {
        if (description != m_description) {
            m_files = readDescriptionFileList(description);
            m_description = description;
        }
        return m_files;
    }

private:
    QByteArray m_description;
    std::optional<QList<ListedFile>> m_files;
};

} // namespace paravue
