#pragma once

#include <QString>
#include <QStringList>

namespace paravue
{

/// What a function of the recorder does, in words for the user: "Format disk 1". The name itself of a
/// function that has no words.
QString functionTitle(const QString &name);
/// The same of several, in one line.
QString functionTitles(const QStringList &names);
/// What a call of the function \a name loses, in one sentence; empty when it is not known.
QString functionLoss(const QString &name);

} // namespace paravue
