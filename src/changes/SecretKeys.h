#pragma once

#include <QSet>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <functional>
#include <utility>

namespace paravue
{

/// Knows which values must not be seen: passwords, their digests (a digest logs in like the password), keys
/// of networks and the like.
class SecretKeys
{
public:
    /// The value at \a path, "file/section/key", is secret whatever its key is called.
    void mark(const QString &path) { m_marked.insert(path); }
    /// \a source tells more such paths. It is asked once, by contains(), as it may take time.
    void setSource(std::function<QStringList()> source) { m_source = std::move(source); }
    /// How many paths were marked.
    qsizetype markCount() const { return m_marked.size(); }

    /// True for what was marked, and for keys whose names tell it.
    bool contains(QStringView path) const;
    /// The same as far as it is known without the source.
    bool isKnown(QStringView path) const;

    /// What stands in the place of every secret value. It has one length, so that it does not tell that of
    /// the value.
    static QString dots();

private:
    mutable QSet<QString> m_marked;
    mutable std::function<QStringList()> m_source; ///< empty once it was asked
};

} // namespace paravue
