#pragma once

#include <QString>

#include <optional>

/// What the texts of a description refer to: "@id" stands for a translation, "{address}" for a value.
namespace paravue
{

/// True for the characters that no id holds.
bool endsReference(QChar c);

/// An address in braces, and where it stands in its text with them.
struct BracedAddress {
    qsizetype begin = 0;
    qsizetype end = 0; ///< behind the closing brace
    QString address;
};

/// The first address in braces at \a from or behind it.
std::optional<BracedAddress> findBracedAddress(const QString &text, qsizetype from);

} // namespace paravue
