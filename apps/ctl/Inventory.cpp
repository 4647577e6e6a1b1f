#include "Inventory.h"

#include "ControlText.h"
#include "setup/RecorderAddress.h"
#include "snapshots/Snapshot.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <QStringDecoder>

#include <algorithm>
#include <optional>

namespace paravue
{

namespace
{

constexpr qint64 MaxBytes = 64 * 1024 * 1024;
const QString AllGroup = QStringLiteral("all");

bool isWord(const QString &text)
{
    static const QRegularExpression Word(
        QRegularExpression::anchoredPattern(QStringLiteral("[A-Za-z_][A-Za-z0-9_]*")));
    return Word.match(text).hasMatch();
}

/// What is wrong with the field; empty when \a entry got it.
QString setField(InventoryEntry &entry, const QString &name, const QString &value)
{
    if (name == u"address")
        entry.address = value;
    else if (name == u"login")
        entry.login = value;
    else if (name == u"password-file")
        entry.passwordFile = value;
    else if (name == u"groups")
        for (const QString &group : value.split(u',', Qt::SkipEmptyParts))
            entry.groups << group.trimmed();
    else if (name.count(u'/') == 2 && !name.split(u'/').contains(QString()))
        entry.values.insert(name, value);
    else if (isWord(name))
        entry.variables.insert(name, value);
    else
        return ControlText::tr("\"%1\" is no field").arg(name);
    return {};
}

QString unquoted(const QString &cell)
{
    return QString(cell).replace(QStringLiteral("\"\""), QStringLiteral("\""));
}

/// The cells of a line; nothing when a quote is not closed.
std::optional<QStringList> csvCells(const QString &line)
{
    QStringList cells;
    qsizetype begin = 0;
    while (begin <= line.size()) {
        qsizetype end = begin;
        if (line.mid(begin, 1) == u"\"") {
            for (end = begin + 1; end < line.size(); ++end) {
                if (line[end] != u'"')
                    continue;
                if (line.mid(end + 1, 1) != u"\"")
                    break;
                ++end;
            }
            if (end >= line.size() || (end + 1 < line.size() && line[end + 1] != u','))
                return {};
            cells << unquoted(line.mid(begin + 1, end - begin - 1));
            begin = end + 2;
        } else {
            end = line.indexOf(u',', begin);
            cells << line.mid(begin, end < 0 ? -1 : end - begin).trimmed();
            begin = end < 0 ? line.size() + 1 : end + 1;
        }
    }
    return cells;
}

/// The text of the field \a name; nothing when \a value is none, or no array of texts for the groups.
std::optional<QString> textOf(const QString &name, const QJsonValue &value)
{
    if (value.isString())
        return value.toString();
    const QJsonArray array = value.toArray();
    const bool hasTexts =
        std::all_of(array.begin(), array.end(), [](const auto &part) { return part.isString(); });
    if (name != u"groups" || !value.isArray() || !hasTexts)
        return {};
    return value.toVariant().toStringList().join(u',');
}

/// The first name that stands twice in \a columns.
QString repeated(const QStringList &columns)
{
    QSet<QString> names;
    for (const QString &name : columns) {
        if (!name.isEmpty() && names.contains(name))
            return name;
        names.insert(name);
    }
    return {};
}

} // namespace

/// Reads one file into an inventory. Each function returns what is wrong, empty when nothing is.
class InventoryReader
{
public:
    explicit InventoryReader(Inventory &inventory) : m_inventory(inventory) {}

    QString readIni(const QStringList &lines)
    {
        InventoryEntry *entry = nullptr;
        for (qsizetype i = 0; i < lines.size(); ++i) {
            const QString line = lines[i].trimmed();
            if (line.isEmpty() || line.startsWith(u'#') || line.startsWith(u';'))
                continue;
            QString problem;
            const qsizetype sign = line.indexOf(u'=');
            if (line.startsWith(u'[') && line.endsWith(u']'))
                problem = begin(line.sliced(1).chopped(1).trimmed(), entry);
            else if (!entry || sign < 0)
                problem = ControlText::tr("a line is [NAME] or FIELD=VALUE");
            else
                problem = setOnce(*entry, line.left(sign).trimmed(), line.mid(sign + 1).trimmed());
            if (!problem.isEmpty())
                return QStringLiteral("%1: %2").arg(QString::number(i + 1), problem);
        }
        return {};
    }

    QString readCsv(const QStringList &lines)
    {
        const auto names = csvCells(lines.constFirst());
        const qsizetype nameColumn = names ? names->indexOf(QStringLiteral("name")) : -1;
        if (nameColumn < 0)
            return ControlText::tr("1: there is no column \"name\"");
        if (const QString name = repeated(*names); !name.isEmpty())
            return QStringLiteral("1: ") + twice(name);
        for (qsizetype i = 1; i < lines.size(); ++i) {
            if (lines[i].trimmed().isEmpty())
                continue;
            const QString problem = addRow(*names, csvCells(lines[i]), nameColumn);
            if (!problem.isEmpty())
                return QStringLiteral("%1: %2").arg(QString::number(i + 1), problem);
        }
        return {};
    }

    QString readJson(const QByteArray &text)
    {
        QJsonParseError error;
        const QJsonObject root = QJsonDocument::fromJson(text, &error).object();
        if (error.error != QJsonParseError::NoError)
            return error.errorString();
        for (const auto &group : root[QStringLiteral("groups")].toArray()) {
            if (const QString problem = addObject(group.toObject(), QStringLiteral("group "));
                !problem.isEmpty())
                return problem;
        }
        for (const auto &recorder : root[QStringLiteral("recorders")].toArray()) {
            if (const QString problem = addObject(recorder.toObject(), {}); !problem.isEmpty())
                return problem;
        }
        return {};
    }

private:
    static QString twice(const QString &name) { return ControlText::tr("\"%1\" comes twice").arg(name); }

    /// A field of the section that was begun last.
    QString setOnce(InventoryEntry &entry, const QString &name, const QString &value)
    {
        if (m_fields.contains(name))
            return twice(name);
        m_fields.insert(name);
        return setField(entry, name, value);
    }

    /// Makes the entry of the section \a title.
    QString begin(const QString &title, InventoryEntry *&entry)
    {
        static const QString GroupWord = QStringLiteral("group ");
        const bool isGroup = title.startsWith(GroupWord);
        const QString name = isGroup ? title.mid(GroupWord.size()).trimmed() : title;
        if (name.isEmpty())
            return ControlText::tr("a name is missing");
        QSet<QString> &names = isGroup ? m_groupNames : m_names;
        if (names.contains(name))
            return twice(name);
        names.insert(name);
        m_fields.clear();
        if (isGroup) {
            entry = &m_inventory.m_groups[name];
        } else {
            m_inventory.m_recorders.append(InventoryEntry());
            entry = &m_inventory.m_recorders.last();
        }
        entry->name = name;
        return {};
    }

    QString addRow(const QStringList &names, const std::optional<QStringList> &cells, qsizetype nameColumn)
    {
        if (!cells)
            return ControlText::tr("a quote is not closed");
        if (cells->size() != names.size())
            return ControlText::tr("there are %1 columns in place of %2")
                .arg(cells->size())
                .arg(names.size());
        InventoryEntry *entry = nullptr;
        QString problem = begin(cells->at(nameColumn), entry);
        for (qsizetype i = 0; i < names.size() && problem.isEmpty(); ++i) {
            if (i != nameColumn && !cells->at(i).isEmpty())
                problem = setField(*entry, names[i], cells->at(i));
        }
        return problem;
    }

    QString addObject(const QJsonObject &object, const QString &prefix)
    {
        const QString nameField = QStringLiteral("name");
        InventoryEntry *entry = nullptr;
        const QString name = object[nameField].toString();
        QString problem = begin(prefix + name, entry);
        for (auto field = object.begin(); field != object.end() && problem.isEmpty(); ++field) {
            const auto text = textOf(field.key(), *field);
            if (!text)
                problem = ControlText::tr("\"%1\" of \"%2\" is no text").arg(field.key(), name);
            else if (field.key() != nameField)
                problem = setField(*entry, field.key(), *text);
        }
        return problem;
    }

    Inventory &m_inventory;
    QSet<QString> m_names;
    QSet<QString> m_groupNames;
    QSet<QString> m_fields; ///< that the section has by now
};

Outcome Inventory::read(const QString &path, Inventory &inventory)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {ExitCode::LocalFile, ControlText::tr("cannot read %1: %2").arg(path, file.errorString())};
    const QByteArray bytes = file.read(MaxBytes + 1);
    if (bytes.size() > MaxBytes)
        return {ExitCode::BadData, ControlText::tr("%1 is too large").arg(path)};
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QStringList lines =
        QString(decoder(bytes)).replace(QStringLiteral("\r\n"), QStringLiteral("\n")).split(u'\n');
    if (decoder.hasError())
        return {ExitCode::BadData, ControlText::tr("%1 is no UTF-8 text").arg(path)};
    Inventory read;
    InventoryReader reader(read);
    const QString suffix = QFileInfo(path).suffix().toLower();
    QString problem = suffix == u"json"  ? reader.readJson(bytes)
                      : suffix == u"csv" ? reader.readCsv(lines)
                                         : reader.readIni(lines);
    if (problem.isEmpty())
        problem = read.complete(QFileInfo(path).path());
    if (!problem.isEmpty())
        return {ExitCode::BadData, QStringLiteral("%1: %2").arg(path, problem)};
    inventory = read;
    return {};
}

bool Inventory::hasGroup(const QString &name) const
{
    return std::any_of(m_recorders.begin(), m_recorders.end(),
                       [&](const InventoryEntry &recorder) { return recorder.groups.contains(name); });
}

/// Tests what all formats have in common, and gives the recorders what their groups have.
QString Inventory::complete(const QString &folder)
{
    if (m_recorders.isEmpty())
        return ControlText::tr("there are no recorders");
    QHash<QString, QString> names; // by address
    for (InventoryEntry &recorder : m_recorders) {
        if (recorder.address.contains(u'@'))
            return ControlText::tr("the address of \"%1\" has a login; there are fields for it")
                .arg(recorder.name);
        const RecorderAddress address =
            RecorderAddress::fromText(recorder.address, RecorderAddress::Password::AsTyped);
        if (recorder.address.isEmpty() || !address.problem.isEmpty())
            return ControlText::tr("\"%1\" has no address of a recorder").arg(recorder.name);
        QString &known = names[recorderOfAddress(address.address)];
        if (!known.isEmpty())
            return ControlText::tr("\"%1\" and \"%2\" have one address").arg(known, recorder.name);
        known = recorder.name;
        for (const QString &group : recorder.groups)
            inherit(recorder, group);
        inherit(recorder, AllGroup);
        if (!recorder.passwordFile.isEmpty())
            recorder.passwordFile = QDir(folder).filePath(recorder.passwordFile);
    }
    return {};
}

void Inventory::inherit(InventoryEntry &recorder, const QString &group) const
{
    const auto found = m_groups.constFind(group);
    if (found == m_groups.constEnd())
        return;
    if (recorder.login.isEmpty())
        recorder.login = found->login;
    if (recorder.passwordFile.isEmpty())
        recorder.passwordFile = found->passwordFile;
    for (auto variable = found->variables.cbegin(); variable != found->variables.cend(); ++variable) {
        if (!recorder.variables.contains(variable.key()))
            recorder.variables.insert(variable.key(), *variable);
    }
    for (auto value = found->values.cbegin(); value != found->values.cend(); ++value) {
        if (!recorder.values.contains(value.key()))
            recorder.values.insert(value.key(), *value);
    }
}

} // namespace paravue
