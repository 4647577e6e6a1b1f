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

/// Remembers the answer for one description, which each save asks about once more. Descriptions are large,
/// and there may be hundreds of sessions, so it is known by its size and its hash.
class KnownFileList
{
public:
    const std::optional<QList<ListedFile>> &of(const QByteArray &description)
    {
        const size_t hash = qHash(description, QHashSeed::globalSeed());
        if (!m_isKnown || description.size() != m_size || hash != m_hash) {
            m_files = readDescriptionFileList(description);
            m_size = description.size();
            m_hash = hash;
            m_isKnown = true;
        }
        return m_files;
    }

private:
    bool m_isKnown = false;
    qsizetype m_size = 0;
    size_t m_hash = 0;
    std::optional<QList<ListedFile>> m_files;
};

} // namespace paravue
