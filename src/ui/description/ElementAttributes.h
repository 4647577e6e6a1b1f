#pragma once

#include <QDomElement>
#include <QString>
#include <QVarLengthArray>

#include <utility>

namespace paravue
{

/// All attributes of one element, read at once. An element looks up each attribute by a hash of its name,
/// which takes longer than to compare the few names that it has: most of those that are asked for it has not.
class ElementAttributes
{
public:
    explicit ElementAttributes(const QDomElement &element);

    /// The attribute \a name, which is empty when there is none.
    QString text(QLatin1StringView name) const;
    /// The same as a number; 0 when it is none.
    int number(QLatin1StringView name) const { return text(name).toInt(); }

private:
    QVarLengthArray<std::pair<QString, QString>, 8> m_attributes;
};

} // namespace paravue
