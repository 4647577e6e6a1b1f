#pragma once

#include <QByteArray>
#include <QString>

namespace paravue::test
{

/// What a program has written, with line feeds: on Windows its runtime writes CR LF.
inline QString programText(QByteArray written)
{
    return QString::fromUtf8(written.replace("\r\n", "\n"));
}

} // namespace paravue::test
