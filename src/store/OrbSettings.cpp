#include "store/OrbSettings.h"

#include "store/IniGrammar.h"
#include "store/IniMerge.h"
#include "store/TextPattern.h"
#include "store/WholeFile.h"

#include <QFile>
#include <QLoggingCategory>

#include <algorithm>

using namespace paravue;

namespace
{

Q_LOGGING_CATEGORY(settingsLog, "paravue.settings")

/// Up to this size the repeated lines of a file without keys are written. A session that asks such a file for
/// a value twice a second must not fill the disk.
constexpr qsizetype RepeatLimit = 16 << 20;

void appendUtf8(QString &text, QByteArrayView bytes)
{
    const bool ascii = std::all_of(bytes.begin(), bytes.end(), [](char c) { return uchar(c) < 0x80; });
    if (ascii)
        text += QLatin1StringView(bytes);
    else
        text += QString::fromUtf8(bytes);
}

} // namespace

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
    m_text = {};
    m_entries.clear();
    m_lastContent.clear();
    m_repeats = 0;
}

bool OrbSettings::read()
{
    QFile file(m_path);
    if (m_path.isEmpty() || !file.open(QIODevice::ReadOnly))
        return false;
    if (file.size() > IniText::SizeLimit) {
        qCWarning(settingsLog) << m_path << "is too large for a configuration file";
        return false;
    }
    const QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return false;

    if (m_entries.isEmpty() && !m_text.bytes().isEmpty() && content == m_lastContent) {
        ++m_repeats;
    } else {
        appendRepeats();
        m_text.append(content);
    }
    m_loaded = true;
    takeKeys();
    m_lastContent = m_entries.isEmpty() ? content : QByteArray();
    return true;
}

void OrbSettings::takeKeys()
{
    m_sectioned = false;
    if (m_entries.isEmpty())
        m_entries.reserve(qsizetype(m_text.marks().size()));
    QString key = DefaultSection.toString() + u'/'; // its section part stays, name by name is put behind
    qsizetype sectionSize = key.size();
    for (const IniText::Mark &mark : m_text.marks()) {
        if (mark.isSection) {
            m_sectioned = true;
            key.truncate(0);
            appendUtf8(key, m_text.name(mark));
            key += u'/';
            sectionSize = key.size();
            continue;
        }
        key.truncate(sectionSize);
        appendUtf8(key, m_text.name(mark));
        IniEntries::Entry &entry = m_entries.at(key);
        entry.value = QString::fromUtf8(m_text.value(mark));
        entry.inFile = true;
    }
}

void OrbSettings::appendRepeats()
{
    for (; m_repeats > 0; --m_repeats) {
        if (m_text.bytes().size() + m_lastContent.size() > RepeatLimit) {
            qCWarning(settingsLog) << m_path << "holds no keys; repeats of its lines are left out";
            m_repeats = 0;
            return;
        }
        m_text.append(m_lastContent);
    }
}

void OrbSettings::readIfEmpty()
{
    if (m_entries.isEmpty())
        read();
}

bool OrbSettings::write()
{
    if (m_path.isEmpty())
        return false; // of a name that never got a file
    // An object that has not seen its file yet must not empty it.
    if (!m_loaded && m_entries.isEmpty() && !read() && QFile::exists(m_path))
        return false;

    appendRepeats();
    IniMerge merge(m_text, m_sectioned);
    for (const IniEntries::Entry *entry : m_entries.sorted())
        merge.put(entry->section(), entry->name(), entry->value, entry->inFile);
    IniText text = merge.result();
    QString error;
    if (!writeWholeFile(m_path, text.bytes(), &error)) {
        qCWarning(settingsLog) << "cannot write" << m_path << error;
        return false;
    }
    m_text = std::move(text);
    return true;
}

bool OrbSettings::flush()
{
    if (!write())
        return true;
    IniText written = std::exchange(m_text, {});
    if (!read())
        m_text = std::move(written);
    return true;
}

const QString *OrbSettings::find(QStringView key)
{
    readIfEmpty();
    const IniEntries::Entry *entry = m_entries.find(key);
    return entry ? &entry->value : nullptr;
}

QVariant OrbSettings::value(const QString &key, const QVariant &defaultValue)
{
    const QString *found = find(key);
    return found ? QVariant(*found) : defaultValue;
}

void OrbSettings::setValue(const QString &key, const QVariant &value)
{
    readIfEmpty();
    m_entries.at(key).value = value.toString();
}

QStringList OrbSettings::matching(const QString &pattern)
{
    readIfEmpty();
    const TextPattern keyPattern(pattern);
    QStringList result;
    for (const IniEntries::Entry *entry : m_entries.sorted()) {
        if (keyPattern.matchesWhole(entry->key))
            result << entry->key + u'/' + entry->value;
    }
    return result;
}
