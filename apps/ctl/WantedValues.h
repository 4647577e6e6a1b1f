#pragma once

#include "Outcome.h"

#include <QList>
#include <QString>

namespace paravue
{

class RecorderSession;
struct ControlCommandLine;

/// A value that is to be set.
struct WantedValue {
    QString path; ///< "file/section/key"
    QString value;
};

/// Reads what the arguments of \a line and its file of values say. No problem repeats a value, which may be
/// a password.
Outcome readWantedValues(const ControlCommandLine &line, QList<WantedValue> &wanted);

/// What keeps \a wanted from being set at the recorder, whose files were fetched.
Outcome checkWantedValues(const QList<WantedValue> &wanted, RecorderSession &session, bool allowsNewKeys);

} // namespace paravue
