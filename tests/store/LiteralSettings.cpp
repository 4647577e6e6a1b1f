#include "LiteralSettings.h"

#include "store/IniGrammar.h"

using namespace paravue;

namespace
{

IniLine<QStringView> scanned(const QString &line)
{
    return scanIniLine(QStringView(line), EmptyValue::IsKey);
}

bool isKey(const QString &line)
{
    return scanned(line).kind == IniLine<QStringView>::Key;
}

bool isSection(const QString &line)
{
    return scanned(line).kind == IniLine<QStringView>::Section;
}

} // namespace

void LiteralSettings::read()
{
    QByteArray rest = m_file;
    while (!rest.isEmpty()) {
        const qsizetype lineFeed = rest.indexOf('\n');
        QByteArray line = lineFeed < 0 ? rest : rest.first(lineFeed + 1);
        rest.remove(0, line.size());
        if (line.endsWith("\r\n"))
            line = line.chopped(2) + '\n';
        m_lines << QString::fromUtf8(line);
    }
    m_sectioned = false;
    QString section = QStringLiteral("untitled");
    for (const QString &line : std::as_const(m_lines)) {
        if (isKey(line)) {
            const QString key = section + u'/' + scanned(line).name.toString();
            m_entries[key] = {scanned(line).value.toString(), true};
        } else if (isSection(line)) {
            m_sectioned = true;
            section = scanned(line).name.toString();
        }
    }
}

QStringList LiteralSettings::keysAndValues()
{
    if (m_entries.isEmpty())
        read();
    QStringList result;
    for (auto entry = m_entries.cbegin(); entry != m_entries.cend(); ++entry)
        result << entry.key() + u'/' + entry->value;
    return result;
}

void LiteralSettings::setValue(const QString &key, const QString &value)
{
    if (m_entries.isEmpty())
        read();
    m_entries[key].value = value;
}

void LiteralSettings::write()
{
    for (auto entry = m_entries.cbegin(); entry != m_entries.cend(); ++entry)
        merge(entry.key().section(u'/', 0, 0), entry.key().section(u'/', 1), *entry);
    m_file.clear();
    for (const QString &line : std::as_const(m_lines))
        m_file += line.toUtf8().replace('\n', "\r\n");
}

void LiteralSettings::flush()
{
    write();
    m_lines.clear();
    read();
}

void LiteralSettings::merge(const QString &section, const QString &name, const Entry &entry)
{
    const QString keyLine = iniKeyLine(name, entry.value, EmptyValue::IsKey);
    if (!m_sectioned) {
        if (entry.inFile)
            replaceFirst(0, name, keyLine);
        else
            m_lines << keyLine;
        return;
    }
    bool inserted = false;
    for (qsizetype i = 0; i < m_lines.size(); ++i) {
        if (!isSection(m_lines[i]) || scanned(m_lines[i]).name != section)
            continue;
        if (entry.inFile)
            replaceFirst(i + 1, name, keyLine);
        else if (!inserted)
            inserted = insertBehind(i, keyLine);
    }
    if (!entry.inFile && !inserted)
        m_lines << iniSectionLine(section) << keyLine;
}

void LiteralSettings::replaceFirst(qsizetype from, const QString &name, const QString &keyLine)
{
    for (qsizetype i = from; i < m_lines.size(); ++i) {
        if (isKey(m_lines[i]) && scanned(m_lines[i]).name == name) {
            m_lines[i] = keyLine;
            return;
        }
    }
}

bool LiteralSettings::insertBehind(qsizetype header, const QString &keyLine)
{
    for (qsizetype j = header + 1; j < m_lines.size(); ++j) {
        if (isSection(m_lines[j])) {
            for (qsizetype k = j - 1; k > header; --k) {
                if (isKey(m_lines[k])) {
                    m_lines.insert(k + 1, keyLine);
                    return true;
                }
            }
        }
        if (j == m_lines.size() - 1) {
            m_lines << keyLine;
            return true;
        }
    }
    return false;
}
