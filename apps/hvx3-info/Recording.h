#pragma once

#include "program/ExitCode.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <stdexcept>

namespace paravue
{

/// Why a recording cannot be made or read, or an export cannot be written, as a text for the user.
class MediaError : public std::runtime_error
{
public:
    explicit MediaError(const QString &text, ExitCode exitCode = ExitCode::LocalFile)
        : std::runtime_error(text.toStdString()), m_exitCode(exitCode)
    {
    }
    QString text() const { return QString::fromUtf8(what()); }
    ExitCode exitCode() const { return m_exitCode; }

private:
    ExitCode m_exitCode;
};

/// Calls \a take with each piece of the file in turn, so that files of any size need the same memory.
/// It returns whether it wants more. "-" is the standard input. Throws a MediaError.
void readRecording(const QString &file, const std::function<bool(const QByteArray &piece)> &take);

/// Whether the file cannot be read a second time.
bool isPipe(const QString &file);

} // namespace paravue
