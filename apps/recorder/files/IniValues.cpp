#include "recorder/files/IniValues.h"

#include <QStringDecoder>

namespace recorder
{

namespace
{

bool isComment(QByteArrayView line)
{
    return line.startsWith(';') || line.startsWith('#');
}

QByteArray sectionName(QByteArrayView line)
{
    const qsizetype end = line.indexOf(']');
    return line.startsWith('[') && end > 0 ? line.sliced(1, end - 1).trimmed().toByteArray() : QByteArray();
}

QByteArrayView withoutQuotes(QByteArrayView value)
{
    for (const char quote : {'\'', '"'}) {
        if (value.size() >= 2 && value.startsWith(quote) && value.endsWith(quote))
            return value.sliced(1, value.size() - 2);
    }
    return value;
}

/// Calls the visitor with each line, line feed included.
void forEachLine(const QByteArray &text, const std::function<void(QByteArrayView)> &visit)
{
    for (qsizetype start = 0; start < text.size();) {
        const qsizetype feed = text.indexOf('\n', start);
        const qsizetype end = feed < 0 ? text.size() : feed + 1;
        visit(QByteArrayView(text).sliced(start, end - start));
        start = end;
    }
}

QByteArray quotedLine(const QByteArray &name, const QByteArray &value)
{
    const char quote = value.contains('\'') ? '"' : '\'';
    return name + '=' + quote + value + quote;
}

bool isText(const QByteArray &text)
{
    for (const char c : text) {
        const bool control = static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
        if (control && c != '\n' && c != '\r' && c != '\t')
            return false;
    }
    QStringDecoder decoder(QStringDecoder::Utf8);
    [[maybe_unused]] const QString decoded = decoder(text);
    return !decoder.hasError();
}

} // namespace

bool parseIniLine(QByteArrayView line, IniValue &value)
{
    const QByteArrayView trimmed = line.trimmed();
    const qsizetype equals = trimmed.indexOf('=');
    if (equals <= 0 || isComment(trimmed) || trimmed.startsWith('['))
        return false;
    value.name = trimmed.first(equals).trimmed().toByteArray();
    value.value = withoutQuotes(trimmed.sliced(equals + 1).trimmed()).toByteArray();
    return true;
}

QMap<QByteArray, QByteArray> iniValues(const QByteArray &text)
{
    QMap<QByteArray, QByteArray> values;
    IniValue current;
    forEachLine(text, [&](QByteArrayView line) {
        if (parseIniLine(line, current))
            values.insert(current.section + '/' + current.name, current.value);
        else if (const QByteArray section = sectionName(line.trimmed()); !section.isEmpty())
            current.section = section;
    });
    return values;
}

QString iniFault(const QByteArray &text)
{
    if (text.trimmed().isEmpty())
        return QStringLiteral("the file is empty");
    if (!isText(text))
        return QStringLiteral("the file is not UTF-8 text");
    int number = 0;
    int faulty = 0;
    int known = 0;
    forEachLine(text, [&](QByteArrayView line) {
        ++number;
        const QByteArrayView trimmed = line.trimmed();
        IniValue value;
        if (parseIniLine(line, value) || !sectionName(trimmed).isEmpty())
            ++known;
        else if (!trimmed.isEmpty() && !isComment(trimmed) && faulty == 0)
            faulty = number;
    });
    if (faulty > 0)
        return QStringLiteral("line %1 is neither a section nor a value").arg(faulty);
    return known == 0 ? QStringLiteral("the file holds no values") : QString();
}

QByteArray withIniValues(const QByteArray &text, const QMap<QByteArray, QByteArray> &values)
{
    QByteArray result;
    QMap<QByteArray, QByteArray> missing = values;
    IniValue current;
    const auto addMissing = [&](const QByteArray &section) {
        for (auto value = missing.begin(); value != missing.end();) {
            const bool isHere = value.key().left(value.key().indexOf('/')) == section;
            if (isHere && !result.isEmpty() && !result.endsWith('\n'))
                result += '\n';
            if (isHere)
                result += quotedLine(value.key().mid(section.size() + 1), value.value()) + '\n';
            value = isHere ? missing.erase(value) : std::next(value);
        }
    };
    forEachLine(text, [&](QByteArrayView line) {
        if (const QByteArray section = sectionName(line.trimmed()); !section.isEmpty()) {
            addMissing(current.section);
            current.section = section;
        }
        const bool isValue = parseIniLine(line, current);
        const QByteArray key = current.section + '/' + current.name;
        if (!isValue || !values.contains(key)) {
            result += line;
            return;
        }
        missing.remove(key);
        result += quotedLine(current.name, values.value(key));
        result += line.sliced(line.endsWith("\r\n") ? line.size() - 2 : line.size() - line.endsWith('\n'));
    });
    addMissing(current.section);
    return result;
}

} // namespace recorder
