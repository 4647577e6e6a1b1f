#pragma once

#include "ParavueSetupExport.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

class QIODevice;

namespace paravue
{

/// Something in an interface description that does not work, or hardly does what its author wants.
struct DescriptionProblem {
    enum class Severity {
        Error,   ///< the window reports it, shows something wrong, or a part of the description does nothing
        Warning, ///< the window works, but something in the description is probably a mistake
    };

    Severity severity = Severity::Error;
    /// Where the element begins that the problem is with: both count from 1, columns in characters (a tab is
    /// one). 0 for problems with the file as a whole.
    int line = 0;
    int column = 0;
    QString text; ///< one line, translated
    /// Which control it is about, of the window's pages or of \a dialog, counted from 0 in the order of the
    /// description; -1 for none.
    int control = -1;
    QString dialog = {}; ///< the tag that opens the dialog; empty for the pages
};

/// A description as it is read: \a content itself, or what it unpacks to when it has the gzip form in which
/// recorders send it. Nothing when it unpacks to more than a description may hold.
PARAVUE_EXPORT std::optional<QByteArray> unpackedDescription(const QByteArray &content);

/// Reads the interface description in \a file, packed or not, without a recorder and without a window, and
/// lists its problems in the order of their places. The list is empty when there is nothing to say. A
/// description that the window would not read at all has one problem, that of the window's own message.
///
/// With \a filesFolder every address is also looked up in the configuration files there. They have the names
/// that the recorder's files have in a session ("streams", "net"), with or without a section line in front,
/// and are only read.
///
/// \a file may also be a device, which \a name stands for in messages.
///
/// Takes time in proportion to the size of the description. Needs no QApplication.
PARAVUE_EXPORT QList<DescriptionProblem> checkDescription(const QString &file,
                                                          const QString &filesFolder = {});
PARAVUE_EXPORT QList<DescriptionProblem> checkDescription(QIODevice &file, const QString &name,
                                                          const QString &filesFolder = {});

} // namespace paravue
