#include "controls/MessageText.h"

#include <QTextDocument>

namespace paravue
{

namespace
{

constexpr qsizetype MaxLines = 12;
constexpr qsizetype MaxCharacters = 800;
// A label is at least as wide as its longest word, and a path is one word.
constexpr qsizetype MaxWordLength = 80;

const QChar Ellipsis(0x2026);

QString withShortWords(const QString &text)
{
    QString result;
    qsizetype wordStart = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        if (i < text.size() && !text.at(i).isSpace()) {
            continue;
        }
        const QStringView word = QStringView(text).sliced(wordStart, i - wordStart);
        if (word.size() > MaxWordLength) {
            result += word.first(MaxWordLength / 2);
            result += Ellipsis;
            result += word.last(MaxWordLength / 2 - 1);
        } else {
            result += word;
        }
        if (i < text.size()) {
            result += text.at(i);
        }
        wordStart = i + 1;
    }
    return result;
}

/// Where the first MaxLines lines of \a text end.
qsizetype endOfLines(const QString &text)
{
    qsizetype end = -1;
    for (qsizetype line = 0; line < MaxLines; ++line) {
        end = text.indexOf(QLatin1Char('\n'), end + 1);
        if (end < 0) {
            return text.size();
        }
    }
    return end;
}

} // namespace

QString plainMessage(const QString &message)
{
    QString plain = message;
    return plain.replace(QLatin1String("<br>"), QLatin1String("\n"));
}

QString shortenedMessage(const QString &text)
{
    const qsizetype end = qMin(endOfLines(text), MaxCharacters);
    const QString head = withShortWords(text.first(end));
    return end < text.size() ? head + Ellipsis : head;
}

QString literalToolTip(const QString &text)
{
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

} // namespace paravue
