#include "TerminalText.h"

#include "ControlText.h"
#include "Terminal.h"
#include "changes/SecretKeys.h"

#include <algorithm>

namespace paravue
{

QString terminalText(QString text)
{
    const auto isUnsafe = [](QChar letter) {
        return letter.category() == QChar::Other_Control || letter.category() == QChar::Other_Format ||
               letter.category() == QChar::Separator_Line || letter.category() == QChar::Separator_Paragraph;
    };
    std::replace_if(text.begin(), text.end(), isUnsafe, QChar(QChar::ReplacementCharacter));
    return text;
}

QString terminalLines(const QString &text)
{
    QString safe;
    for (QString line : text.split(u'\n')) {
        if (line.endsWith(u'\r'))
            line.chop(1);
        safe += terminalText(line.replace(u'\t', u' ')) + u'\n';
    }
    if (text.endsWith(u'\n'))
        safe.chop(1);
    return safe;
}

QString shownInText(const std::optional<QString> &value, bool isHidden)
{
    if (isHidden)
        return SecretKeys::dots();
    return value ? terminalText(*value) : ControlText::tr("(none)");
}

QJsonValue shownInJson(const std::optional<QString> &value, bool isHidden)
{
    return value && !isHidden ? QJsonValue(*value) : QJsonValue();
}

QString changeText(const QString &path, const std::optional<QString> &before,
                   const std::optional<QString> &after, bool isHidden)
{
    return QStringLiteral("%1: %2 -> %3\n")
        .arg(terminalText(path), coloured(shownInText(before, isHidden), Colour::Red),
             coloured(shownInText(after, isHidden), Colour::Green));
}

} // namespace paravue
