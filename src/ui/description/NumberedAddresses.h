#pragma once

#include <QStringList>

class QDomElement;

namespace paravue
{

/// Addresses of values that differ by the number at their end: with the key "motion/cam0/MASK" they are
/// "motion/cam0/MASK0", "motion/cam0/MASK1" and so on. A key that ends with its section gets \a usualName
/// behind it, and what follows the third "/" of a key, its default, stands behind each of them. Empty for a
/// null element.
QStringList numberedAddresses(const QDomElement &key, const QString &usualName, int first, int count);

} // namespace paravue
