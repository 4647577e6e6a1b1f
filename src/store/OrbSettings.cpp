#include "store/OrbSettings.h"

#include "store/IniGrammar.h"
#include "store/TextPattern.h"

#include <QFile>

using namespace paravue;

OrbSettings::OrbSettings(const QString &path) : m_path(path) {}

OrbSettings::~OrbSettings()
{
    write();
}

void OrbSettings::setPath(const QString &path)
{
    m_path = path;
    m_sectioned = false;
    m_loaded = false;
    m_lines.clear();
    m_entries.clear();
}

bool OrbSettings::read()
{
    m_sectioned = false;
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    while (!file.atEnd()) {
        QByteArray line = file.readLine();
        if (line.endsWith("\r\n"))
            line.replace(line.size() - 2, 2, "\n");
        m_lines.append(QString::fromUtf8(line));
    }
    m_loaded = true;
    QString section = DefaultSection.toString();
    for (const QString &text : std::as_const(m_lines)) {
        const auto line = scanIniLine(QStringView(text), EmptyValue::IsKey);
        if (line.kind == line.Key) {
            m_entries[section + u'/' + line.name.toString()] = {line.value.toString(), true};
        } else if (line.kind == line.Section) {
            m_sectioned = true;
            section = line.name.toString();
        }
    }
    return true;
}

void OrbSettings::ensureRead()
{
    if (m_entries.isEmpty())
        read();
}

void OrbSettings::merge(const QString &section, const QString &name, const Entry &entry)
{
    const QString keyLine = iniKeyLine(name, entry.value, EmptyValue::IsKey);
    const auto scanned = [this](qsizetype i) {
        return scanIniLine(QStringView(m_lines.at(i)), EmptyValue::IsKey);
    };
    const auto isKey = [&](qsizetype i) { return scanned(i).kind == IniLine<QStringView>::Key; };
    const auto isSection = [&](qsizetype i) { return scanned(i).kind == IniLine<QStringView>::Section; };
    const auto isOurs = [&](qsizetype i) { return isKey(i) && scanned(i).name == name; };

    const auto replaceFirst = [&](qsizetype from) {
        for (qsizetype i = from; i < m_lines.size(); ++i) {
            if (isOurs(i)) {
                m_lines[i] = keyLine;
                return;
            }
        }
    };
    if (!m_sectioned) {
        if (entry.inFile)
            replaceFirst(0);
        else
            m_lines.append(keyLine);
        return;
    }
    bool inserted = false;
    for (qsizetype i = 0; i < m_lines.size(); ++i) {
        if (!isSection(i) || scanned(i).name != section)
            continue;
        if (entry.inFile) {
            replaceFirst(i + 1);
            continue;
        }
        for (qsizetype j = i + 1; j < m_lines.size() && !inserted; ++j) {
            if (isSection(j)) {
                for (qsizetype k = j - 1; k > i && !inserted; --k) {
                    if (isKey(k)) {
                        m_lines.insert(k + 1, keyLine);
                        inserted = true;
                    }
                }
            }
            if (!inserted && j == m_lines.size() - 1) {
                m_lines.append(keyLine);
                inserted = true;
            }
        }
    }
    if (!entry.inFile && !inserted)
        m_lines << iniSectionLine(section) << keyLine;
}

bool OrbSettings::write()
{
    // An object that has seen nothing of its file yet must not empty it.
    if (!m_loaded && m_entries.isEmpty() && !read() && QFile::exists(m_path))
        return false;
    QFile file(m_path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate, QFile::ReadOwner | QFile::WriteOwner))
        return false;
    for (auto entry = m_entries.cbegin(); entry != m_entries.cend(); ++entry)
        merge(entry.key().section(u'/', 0, 0), entry.key().section(u'/', 1), entry.value());
    for (const QString &line : std::as_const(m_lines))
        file.write(line.toUtf8().replace("\n", "\r\n"));
    return file.flush();
}

bool OrbSettings::flush()
{
    write();
    m_lines.clear();
    read();
    return true;
}

QVariant OrbSettings::value(const QString &key, const QVariant &defaultValue)
{
    ensureRead();
    const auto entry = m_entries.constFind(key);
    return entry == m_entries.cend() ? defaultValue : QVariant(entry->value);
}

void OrbSettings::setValue(const QString &key, const QVariant &value)
{
    ensureRead();
    m_entries[key].value = value.toString();
}

QStringList OrbSettings::matching(const QString &pattern)
{
    ensureRead();
    const TextPattern keyPattern(pattern);
    QStringList result;
    for (auto entry = m_entries.cbegin(); entry != m_entries.cend(); ++entry) {
        if (keyPattern.matchesWhole(entry.key()))
            result << entry.key() + u'/' + entry->value;
    }
    return result;
}
