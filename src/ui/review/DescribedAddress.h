#pragma once

#include "ui/binding/ControlAdapter.h"

#include <QDomElement>
#include <QList>
#include <QString>

namespace paravue
{

/// What a control shows or edits, as its element says.
struct DescribedAddress {
    QString text;
    KeyRule::Form form = KeyRule::Value;

    /// True when the value at \a path ("file/section/key") is, or is one of, those at the address.
    bool covers(const QString &path) const;
    /// The only path that it covers; empty when there may be several.
    QString path() const;
};

/// Hides what is typed into it, or says that its values are secret.
bool isMarkedSecret(const QDomElement &element);

/// The keys of a choice stand within its text.
QList<DescribedAddress> describedAddresses(const QDomElement &element, const ControlAdapter &adapter);

} // namespace paravue
