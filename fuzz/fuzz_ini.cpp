// Requires that configuration files are read, edited and written by their rules: to the same bytes as the
// literal form of the rules gives, without losing a line or a value, and at rest once they are written.
//
// Input: the file; then pieces "section/key/value", each an edit.

#include "FuzzInput.h"
#include "InputFolder.h"
#include "InputTime.h"
#include "Require.h"

#include "store/IniGrammar.h"
#include "store/IniMapCodec.h"
#include "store/LiteralSettings.h"
#include "store/OrbSettings.h"

#include <QBuffer>
#include <QSet>

#include <optional>

using namespace paravue;
using namespace paravue::fuzz;

namespace
{

const QString FileName = QStringLiteral("file");
constexpr char ByteOrderMark[] = "\xef\xbb\xbf";

struct Edit {
    QString key; ///< "section/key"
    QString value;
};

/// Of a piece of an input; nothing when it has no value. A key that cannot be told from another one, such as
/// one with a line end, is as good as any.
std::optional<Edit> editIn(const QByteArray &piece)
{
    const QString text = QString::fromUtf8(QByteArray(piece).replace(ByteOrderMark, ""));
    const qsizetype value = text.indexOf(u'/', text.indexOf(u'/') + 1);
    if (value <= 0 || text.indexOf(u'/') == value)
        return {};
    return Edit{text.left(value), text.mid(value + 1)};
}

QList<Edit> editsIn(const QList<QByteArray> &pieces)
{
    QList<Edit> edits;
    for (const QByteArray &piece : pieces.sliced(1)) {
        if (const auto edit = editIn(piece))
            edits << *edit;
    }
    return edits;
}

QStringList linesIn(const QByteArray &file)
{
    QStringList lines = QString::fromUtf8(file).split(u'\n');
    for (qsizetype i = 0; i + 1 < lines.size(); ++i)
        lines[i] += u'\n';
    return lines;
}

/// What recorders send: every line ends, every section and every key stands there once, and a value reads as
/// it was written.
bool isTidy(const QByteArray &file)
{
    if (!file.endsWith('\n'))
        return false;
    QSet<QString> names;
    QString section;
    bool hasKeys = true; // of the section
    for (const QString &line : linesIn(file)) {
        const auto scanned = scanIniLine(QStringView(line), EmptyValue::IsKey);
        if (scanned.kind == scanned.Other)
            continue;
        const bool isSection = scanned.kind == scanned.Section;
        if (isSection && !hasKeys)
            return false;
        hasKeys = !isSection;
        if (isSection)
            section = scanned.name.toString();
        // A key before the first section finds no place in a file that has sections.
        const QString name = section + u'/' + (isSection ? QString() : scanned.name.toString());
        if (names.contains(name) || (!isSection && section.isEmpty()) || scanned.value.contains(u'\''))
            return false;
        names.insert(name);
    }
    return hasKeys && !names.isEmpty();
}

bool isPlainWord(QStringView text)
{
    return !text.isEmpty() &&
           std::all_of(text.begin(), text.end(), [](QChar c) { return c == u'_' || c.isLetterOrNumber(); });
}

/// An edit that a tidy file takes in.
bool isTidy(const Edit &edit)
{
    return isPlainWord(edit.key.section(u'/', 0, 0)) && isPlainWord(edit.key.section(u'/', 1)) &&
           !edit.value.contains(u'\'') && !edit.value.contains(u'\n');
}

/// The literal form decodes every line, so it does not keep a damaged character or a byte-order mark.
bool isKeptByRules(const QByteArray &file)
{
    return QString::fromUtf8(file).toUtf8() == file && !file.contains(ByteOrderMark);
}

void checkAgainstRules(const QByteArray &file, const QList<Edit> &edits)
{
    const InputFolder folder;
    OrbSettings settings(folder.write(FileName, file));
    LiteralSettings literal(file);
    require(settings.matching(".*") == literal.keysAndValues(), "a file is read by the rules");
    int number = 0;
    for (const Edit &edit : edits) {
        settings.setValue(edit.key, edit.value);
        literal.setValue(edit.key, edit.value);
        require(settings.value(edit.key).toString() == edit.value, "an edit can be read");
        if (++number % 4 == 0) {
            settings.flush();
            literal.flush();
        }
        require(settings.matching(".*") == literal.keysAndValues(), "the values are those of the rules");
    }
    require(settings.write(), "the file can be written");
    literal.write();
    require(folder.content(FileName) == literal.file(), "the file is that of the rules");
    settings.setPath({});
}

/// Reads and writes the file without an edit.
QByteArray rewritten(const QByteArray &file)
{
    const InputFolder folder;
    OrbSettings(folder.write(FileName, file)).write();
    return folder.content(FileName);
}

/// A value that holds a quote is no value any more once it is written, which may bring another line of its
/// name forward. Each file loses such lines only once.
void checkRest(const QByteArray &file)
{
    QByteArray last = rewritten(file);
    for (qsizetype lines = file.count('\n') + 1; lines > 0; --lines) {
        const QByteArray next = rewritten(last);
        if (next == last)
            return;
        require(last.contains('\''), "a file that was written stays as it is");
        last = next;
    }
    require(false, "writing a file again and again comes to rest");
}

/// Lines that hold no key stay, to the byte but for their ends, and in their order. Only the names of
/// sections are text: their damaged characters are replaced.
void checkOtherLines(const QByteArray &file)
{
    const QByteArray after = rewritten(file);
    qsizetype next = 0;
    for (qsizetype begin = 0, end = 0; begin < file.size(); begin = end) {
        const qsizetype lineFeed = file.indexOf('\n', begin);
        end = lineFeed < 0 ? file.size() : lineFeed + 1;
        QByteArray line = file.sliced(begin, end - begin);
        if (line.endsWith("\r\n"))
            line = line.chopped(2) + '\n';
        const QString text = QString::fromUtf8(line);
        const auto scanned = scanIniLine(QStringView(text), EmptyValue::IsKey);
        if (scanned.kind == scanned.Key)
            continue;
        if (scanned.kind == scanned.Section)
            line = text.toUtf8();
        if (line.endsWith('\n'))
            line.chop(1);
        const qsizetype found = after.indexOf(line, next);
        require(found >= 0, "a line without a key survives");
        next = found + line.size();
    }
}

void checkTidyFile(const QByteArray &file, const QList<Edit> &edits)
{
    const InputFolder folder;
    QMap<QString, QString> expected;
    {
        OrbSettings settings(folder.write(FileName, file));
        for (const Edit &edit : edits) {
            if (!isTidy(edit))
                continue;
            settings.setValue(edit.key, edit.value);
            expected[edit.key] = edit.value;
        }
    }
    OrbSettings settings(folder.filePath(FileName));
    for (auto edit = expected.cbegin(); edit != expected.cend(); ++edit)
        require(settings.value(edit.key()).toString() == *edit, "an edit of a tidy file survives");
    settings.setPath({});
}

/// The flat map has a text of its own.
void checkMap(const QByteArray &file)
{
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadWrite);
    QMap<QString, QVariant> map;
    readIniMap(buffer, map);
    for (auto entry = map.begin(); entry != map.end();) {
        const bool reads = !entry->toString().contains(u'\'') &&
                           isPlainWord(entry.key().section(u'/', 0, 0)) &&
                           isPlainWord(entry.key().section(u'/', 1));
        entry = reads ? std::next(entry) : map.erase(entry);
    }
    writeIniMap(buffer, map);
    QMap<QString, QVariant> again;
    readIniMap(buffer, again);
    require(again == map, "a map reads as it was written");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const InputTime time;
    const QList<QByteArray> pieces = FuzzInput(data, size).pieces();
    const QByteArray &file = pieces.first();
    const QList<Edit> edits = editsIn(pieces);
    if (isKeptByRules(file))
        checkAgainstRules(file, edits);
    checkRest(file);
    checkOtherLines(file);
    if (isTidy(file))
        checkTidyFile(file, edits);
    checkMap(file);
    return 0;
}
