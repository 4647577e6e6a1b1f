#pragma once

#include <QMap>
#include <QString>
#include <QVariant>

class QIODevice;

/// The configuration text as a flat map of "section/key" to value: comments and unknown lines are lost, and
/// the whole text is written from the map. A key line without any value is no key here, and an empty value is
/// written as two quotes.
namespace paravue
{

/// Adds the keys of the text to \a map. The text is read from the start of \a device, which must be open.
bool readIniMap(QIODevice &device, QMap<QString, QVariant> &map);
/// Writes \a map as text with CR LF line ends over the content of \a device, which must be open.
bool writeIniMap(QIODevice &device, const QMap<QString, QVariant> &map);

} // namespace paravue
