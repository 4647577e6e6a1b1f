#pragma once

#include <QSet>
#include <QString>
#include <QStringView>

namespace paravue
{

/// Knows which values must not be seen: passwords, their digests (a digest logs in like the password), keys
/// of networks and the like.
class SecretKeys
{
public:
    /// The value at \a path, "file/section/key", is secret whatever its key is called.
    void mark(const QString &path) { m_marked.insert(path); }
    void clear() { m_marked.clear(); }

    /// True for what was marked, and for keys whose names tell it.
    bool contains(QStringView path) const;

    /// What stands in the place of every secret value. It has one length, so that it does not tell that of
    /// the value.
    static QString dots();

private:
    QSet<QString> m_marked;
};

} // namespace paravue
