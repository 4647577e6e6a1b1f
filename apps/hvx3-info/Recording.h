#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <stdexcept>

namespace paravue
{

/// Why a recording cannot be read or an export cannot be written, as a text for the user.
class MediaError : public std::runtime_error
{
public:
    explicit MediaError(const QString &text) : std::runtime_error(text.toStdString()) {}
    QString text() const { return QString::fromUtf8(what()); }
};

/// Calls \a take with each piece of the file in turn, so that files of any size need the same memory.
/// "-" is the standard input. Throws a MediaError.
void readRecording(const QString &file, const std::function<void(const QByteArray &piece)> &take);

/// Whether the file cannot be read a second time.
bool isPipe(const QString &file);

} // namespace paravue
