#pragma once

#include "program/TemporaryFolder.h"

#include <QString>

class OrbSetup;

namespace paravue
{

/// The files of a session without a recorder: copies of local ones, so that whatever is edited and saved, the
/// originals stay as they are.
class PreviewFiles
{
public:
    /// Gives \a store copies of \a description and of every file in \a folder (which may be empty) that a
    /// session with this description has. Those that are not there begin empty. Returns what went wrong, or
    /// an empty text.
    QString copyTo(OrbSetup &store, const QString &description, const QString &folder);

    /// Gives \a store another description. False, with the old one kept, when \a content is no well-formed
    /// document or cannot be copied.
    bool replaceDescription(OrbSetup &store, const QByteArray &content);

private:
    QString copy(OrbSetup &store, const QString &name, const QByteArray &content);

    TemporaryFolder m_copies;
};

} // namespace paravue
