#pragma once

#include <QCoreApplication>

namespace recorder
{

/// For the texts that the simulator prints for its user. Answers to clients and the log are a part of the
/// simulated recorder: they are the same in every language.
class RecorderText
{
    Q_DECLARE_TR_FUNCTIONS(RecorderText)
};

} // namespace recorder
