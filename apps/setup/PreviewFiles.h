#pragma once

#include <QString>
#include <QTemporaryDir>

class OrbSetup;

namespace paravue
{

/// The files of a session without a recorder: copies of local ones, so that whatever is edited and saved, the
/// originals stay as they are.
class PreviewFiles
{
public:
    /// Gives \a store copies of \a description and of the files in \a folder (which may be empty), and empty
    /// files in place of those that a session with this description would have besides. Returns what went
    /// wrong, or an empty text.
    QString copyTo(OrbSetup &store, const QString &description, const QString &folder);

private:
    QString copy(OrbSetup &store, const QString &name, const QByteArray &content);

    QTemporaryDir m_copies;
};

} // namespace paravue
