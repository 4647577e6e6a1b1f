#include "snapshots/SecretRemoval.h"

#include "changes/DescribedSecrets.h"
#include "changes/FileValues.h"
#include "changes/StateDirectives.h"
#include "store/ConfigAddress.h"
#include "store/IniGrammar.h"
#include "store/IniText.h"
#include "store/TextPattern.h"

#include <algorithm>
#include <vector>

namespace paravue
{

namespace
{

const QString DescriptionFile = QStringLiteral("interface");
/// Directives that only take values out lengthen a text by what stands around these.
constexpr qsizetype MaxGrowth = 64 * 1024;

bool isDirective(QByteArrayView line)
{
    return line.startsWith("#!") && line.sliced(2).trimmed().startsWith("s/");
}

/// Where the secret value in \a line begins; -1 without one. What stands before any "=" may be a name, also
/// where the store takes the line for no key: in one with odd quotes, or one that is commented out.
template <typename IsSecret>
qsizetype secretBegin(QByteArrayView line, IsSecret isSecret)
{
    const qsizetype first = line.indexOf('=');
    const qsizetype last = line.lastIndexOf('=');
    const auto isNamedSecret = [&](qsizetype sign) {
        // A "/" would end the name in an address.
        return isSecret(QString::fromUtf8(line.first(sign)).remove(u';').remove(u'#').remove(u'/').trimmed());
    };
    if (first < 0 || isDirective(line))
        return -1;
    if (isNamedSecret(first))
        return first + 1;
    if (first == last || !isNamedSecret(last))
        return -1;
    // A name that is secret for a word in it stays so when it goes on.
    std::vector<qsizetype> signs;
    for (qsizetype sign = first; sign >= 0; sign = line.indexOf('=', sign + 1))
        signs.push_back(sign);
    return *std::partition_point(signs.begin(), signs.end(), [&](qsizetype sign) {
        return !isNamedSecret(sign);
    }) + 1;
}

/// Appends \a line to \a text, without its secret value.
void appendWithoutSecret(QByteArray &text, QByteArrayView line, const QString &sectionPath,
                         const SecretKeys &secrets)
{
    const qsizetype begin =
        secretBegin(line, [&](const QString &name) { return secrets.contains(sectionPath + name); });
    if (begin < 0) {
        text.append(line);
        return;
    }
    const qsizetype end = line.endsWith("\r\n") ? 2 : line.endsWith('\n') ? 1 : 0;
    text.append(line.first(begin)).append("''").append(line.last(end));
}

/// In bytes, so that what is no UTF-8 stays as it is. Nothing when the names are too long for a store.
std::optional<QByteArray> withoutSecretKeys(const QByteArray &text, const QString &file,
                                            const SecretKeys &secrets)
{
    QString sectionPath = file + u'/' + DefaultSection.toString() + u'/';
    QByteArray result;
    result.reserve(text.size());
    qint64 keyBytes = 0;
    for (qsizetype begin = 0; begin < text.size();) {
        const qsizetype feed = text.indexOf('\n', begin);
        const qsizetype end = feed < 0 ? text.size() : feed + 1;
        const QByteArrayView line = QByteArrayView(text).sliced(begin, end - begin);
        if (line.trimmed().startsWith('[')) {
            const QString decoded = QString::fromUtf8(line);
            const auto scanned = scanIniLine(QStringView(decoded), EmptyValue::IsKey);
            if (scanned.kind == IniLine<QStringView>::Section)
                sectionPath = file + u'/' + scanned.name.toString() + u'/';
        }
        keyBytes += line.contains('=') ? sectionPath.size() : 0;
        if (!IniText::areKeepable(keyBytes, text.size()))
            return {};
        appendWithoutSecret(result, line, sectionPath, secrets);
        begin = end;
    }
    return result;
}

class SecretLookup
{
public:
    SecretLookup(const FileContents &files, const SecretKeys &secrets) : m_files(files), m_secrets(secrets) {}

    bool isSecret(const QString &address) const { return m_secrets.contains(ConfigAddress(address).path()); }

    QString valueAt(const QString &address)
    {
        const ConfigAddress parts(address);
        const QString file = parts.file().toString();
        auto values = m_values.find(file);
        if (values == m_values.end())
            values = m_values.insert(file, FileValues(m_files.value(file)));
        return values->value(parts.entry().toString()).value_or(QString());
    }

private:
    const FileContents &m_files;
    const SecretKeys &m_secrets;
    QHash<QString, FileValues> m_values;
};

/// Nothing when the directives of \a content take too long or feed themselves.
std::optional<QByteArray> withoutDirectedSecrets(const QByteArray &content, SecretLookup &lookup)
{
    const QString text = QString::fromUtf8(content);
    QStringList values;
    const CompiledState emptied = statedirectives::preview(
        text,
        [&](const QString &address) -> std::optional<QString> {
            if (!lookup.isSecret(address))
                return {};
            values << lookup.valueAt(address);
            return QString();
        },
        MaxGrowth);
    if (emptied.fault != CompiledState::Fault::None)
        return {};
    // A pattern need not match what it was replaced with.
    QString result = emptied.text;
    values.removeDuplicates();
    for (const QString &value : std::as_const(values)) {
        if (value.size() >= statedirectives::ShortestSecret)
            result.remove(value);
    }
    return result == text ? content : result.toUtf8();
}

/// The entries whose values in \a before are not those in \a after.
QStringList changedEntries(const QByteArray &before, const QByteArray &after)
{
    const FileValues old(before);
    const FileValues now(after);
    QStringList changed;
    for (auto value = old.all().cbegin(); value != old.all().cend(); ++value) {
        if (now.value(value.key()) != *value)
            changed << value.key();
    }
    return changed;
}

/// Nothing when it would have to be left out.
std::optional<QByteArray> withoutSecrets(const QString &name, const QByteArray &content, SecretLookup &lookup,
                                         const SecretKeys &secrets)
{
    const auto directed = withoutDirectedSecrets(content, lookup);
    return directed ? withoutSecretKeys(*directed, name, secrets) : std::nullopt;
}

QStringList leftOutOf(const QString &name, const QByteArray &content, const std::optional<QByteArray> &kept)
{
    if (!kept)
        return {name};
    QStringList leftOut;
    for (const QString &entry : *kept == content ? QStringList() : changedEntries(content, *kept))
        leftOut << name + u'/' + entry;
    return leftOut;
}

SecretKeys describedKeys(const FileContents &files)
{
    SecretKeys secrets;
    for (const QString &path : describedSecrets(files.value(DescriptionFile)))
        secrets.mark(path);
    return secrets;
}

} // namespace

QStringList removeSecrets(FileContents &files)
{
    const SecretKeys secrets = describedKeys(files);
    const PatternBudget budget; // one for the directives of all files
    const FileContents complete = files;
    SecretLookup lookup(complete, secrets);
    QStringList leftOut;
    for (auto file = complete.cbegin(); file != complete.cend(); ++file) {
        if (file.key() == DescriptionFile)
            continue;
        const auto kept = withoutSecrets(file.key(), *file, lookup, secrets);
        leftOut << leftOutOf(file.key(), *file, kept);
        if (!kept)
            files.remove(file.key());
        else if (*kept != *file) // else both keep sharing it
            files[file.key()] = *kept;
    }
    std::sort(leftOut.begin(), leftOut.end());
    return leftOut;
}

QStringList secretsOfFiles(const QStringList &names, const FileContents &files, const SecretKeys &secrets)
{
    const PatternBudget budget;
    SecretLookup lookup(files, secrets);
    QStringList found;
    for (const QString &name : names) {
        const QByteArray content = files.value(name);
        if (name != DescriptionFile)
            found << leftOutOf(name, content, withoutSecrets(name, content, lookup, secrets));
    }
    return found;
}

QSet<QString> secretsOf(const Snapshot &snapshot)
{
    QStringList secrets = describedSecrets(snapshot.files.value(DescriptionFile));
    for (FileContents files : {snapshot.files, snapshot.currentFiles()})
        secrets += removeSecrets(files);
    return {secrets.begin(), secrets.end()};
}

} // namespace paravue
