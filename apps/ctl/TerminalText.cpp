#include "TerminalText.h"

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

} // namespace paravue
