#pragma once

#include <QByteArray>
#include <QStringList>
#include <QStringView>

namespace paravue
{

/// Whether an element of a description with these attributes "password" and "secret" holds secret values:
/// it hides what is typed (password="on"), or says so (secret="yes").
bool isMarkedSecret(QStringView password, QStringView secret);

/// The paths of the values of all such elements in an interface description, those of dialogs included.
QStringList describedSecrets(const QByteArray &description);

} // namespace paravue
