#include "store/LogText.h"

#include <QRegularExpression>

namespace paravue
{

namespace
{

constexpr qsizetype MaxLength = 500;

} // namespace

QString logText(const QString &text)
{
    // Greedy, as an address is split at its last "@".
    static const QRegularExpression account(QStringLiteral("[^\\s\"]*:[^\"\\n]*@"));
    static const QRegularExpression digest(QStringLiteral("[0-9A-Fa-f]{32,}"));
    QString shown = text.simplified();
    shown.replace(account, QStringLiteral("***@"));
    shown.replace(digest, QStringLiteral("***"));
    if (shown.size() > MaxLength)
        shown = shown.left(MaxLength) + QChar(0x2026);
    return shown;
}

} // namespace paravue
