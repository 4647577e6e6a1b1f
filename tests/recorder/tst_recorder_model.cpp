#include "RawClient.h"

#include "recorder/RecorderServer.h"

#include <QDomDocument>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

namespace
{

const QStringList Languages = {"en", "ru"};
const QStringList Files = {"streams", "net", "time", "timers", "soft", "disk", "users", "state"};
/// Files whose keys stand before any section line; a client calls that section "untitled".
const QStringList Sectionless = {"net", "time", "soft", "disk", "users"};
/// What a client itself keeps while it works; the level is that of a user who is being added.
const QHash<QString, QString> ClientValues = {{"general/progress_dialog/progress", {}},
                                              {"general/network/login", {}},
                                              {"general/access/name", {}},
                                              {"general/access/pass1", {}},
                                              {"general/access/pass2", {}},
                                              {"general/access/level", "1"},
                                              {"general/remove_package/name", {}},
                                              {"general/confirm/question", {}},
                                              {"general/confirm/hint", {}},
                                              {"general/confirm/action", {}},
                                              {"general/confirm/function", {}},
                                              {"general/install_packet/path", {}},
                                              {"general/report/path", {}}};
/// The dialogs that a client opens by itself.
const QStringList ClientDialogs = {"progress_dialog",         "accessdlg",         "accessdlgerr_namedouble",
                                   "accessdlgerr_editrights", "accessdlgerr_name", "accessdlgerr_pass",
                                   "accessdlgerr_lastuser",   "softcantdelete",    "softdodelete"};
/// Where the rows of a list are counted that has the beginning of its addresses as its key.
const QMap<QString, QString> RowCounts = {{"accesslist", "/CNT"}, {"softlist", "/PACKAGES"}};

/// Types that show a value, and those that show none.
const QSet<QString> ValueTypes = {"label", "edit",   "dropdown",    "checkbox",   "scroll",  "datetime",
                                  "list",  "orbpie", "progressbar", "accesslist", "softlist"};
const QSet<QString> OtherTypes = {"separator", "tabwidget", "pushbutton", "setup", "gridlayout", "spacer"};

QList<QDomElement> elementsIn(const QDomElement &element, const QString &tag = {})
{
    QList<QDomElement> found;
    for (auto child = element.firstChildElement(tag); !child.isNull(); child = child.nextSiblingElement(tag))
        found.append(child);
    return found;
}

QList<QDomElement> descendants(const QDomElement &element)
{
    QList<QDomElement> found;
    for (const QDomElement &child : elementsIn(element))
        found << child << descendants(child);
    return found;
}

QString addressOf(const QString &assignment)
{
    return assignment.section('/', 0, 2);
}

QString addressOf(const QDomElement &key)
{
    return addressOf(key.text() + RowCounts.value(key.parentNode().toElement().attribute("type")));
}

/// A text without that of its children.
QString ownText(const QDomElement &element)
{
    QString text;
    for (QDomNode node = element.firstChild(); !node.isNull(); node = node.nextSibling())
        text += node.isText() ? node.nodeValue() : QString();
    return text;
}

QStringList matches(const QString &pattern, const QString &text)
{
    QStringList found;
    const QRegularExpression expression(pattern);
    for (auto match = expression.globalMatch(text); match.hasNext();)
        found.append(match.next().captured(1));
    return found;
}

QString describe(const QDomElement &element)
{
    return QStringLiteral("%1 %2, line %3")
        .arg(element.tagName(), element.attribute("type"))
        .arg(element.lineNumber());
}

} // namespace

/// The shipped model must hold together: nothing that it refers to may be missing.
class TestRecorderModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void hasTheExpectedFrame();
    void usesEveryControlTypeAndShowsValuesTwice();
    void bindsOnlyAddressesThatExist();
    void offersTheStoredChoice();
    void fillsEveryListCell();
    void translatesEveryTextIntoBothLanguages();
    void namesOnlyTargetsThatExist();
    void keepsCellsApart();
    void marksStateDirectives();

private:
    void readValues(const QString &file);
    QList<QDomElement> items(const QString &type) const;
    QStringList addressesIn(const QString &text) const;
    QStringList addressesOf(const QDomElement &item) const;

    QTemporaryDir m_folder;
    QDomDocument m_document;
    QDomElement m_root;
    QList<QDomElement> m_elements;                   // all of them
    QHash<QString, QString> m_values;                // by file/section/key
    QHash<QString, QHash<QString, QString>> m_texts; // by language and id
};

void TestRecorderModel::initTestCase()
{
    recorder::RecorderServer server(m_folder.path());
    QVERIFY2(server.listen(), qPrintable(server.errorString()));
    for (const QString &file : Files)
        readValues(file);
    // Clients keep a report under this name.
    RawClient client(server.port());
    QVERIFY(client.logIn());
    const QByteArray report = client.ask("GET REPORT\r\n");
    QFile kept(m_folder.filePath("tmp"));
    QVERIFY(kept.open(QIODevice::WriteOnly));
    kept.write(report.mid(report.indexOf("\r\n") + 2).chopped(16));
    kept.close();
    readValues("tmp");
    m_values.insert(ClientValues);

    QFile description(server.filePath("interface"));
    QVERIFY(description.open(QIODevice::ReadOnly));
    QVERIFY(m_document.setContent(&description));
    m_root = m_document.documentElement();
    m_elements = descendants(m_root);
    for (const QString &language : Languages) {
        for (const QDomElement &text :
             elementsIn(m_root.firstChildElement("translations").firstChildElement(language)))
            m_texts[language].insert(text.tagName(), text.text());
    }
}

void TestRecorderModel::readValues(const QString &name)
{
    QFile file(m_folder.filePath(name));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QRegularExpression sectionLine("^\\[ (\\S+) \\]$");
    const QRegularExpression keyLine("^([^;#=\\s]+) ?= ?(?:(-?\\d+)|'([^'\"]*)')$");
    QString section = "untitled";
    for (const QString &line : QString::fromUtf8(file.readAll()).split('\n')) {
        if (const auto match = sectionLine.match(line); match.hasMatch()) {
            section = match.captured(1);
        } else if (const auto match = keyLine.match(line); match.hasMatch()) {
            const QString address = QStringList({name, section, match.captured(1)}).join('/');
            QVERIFY2(!m_values.contains(address), qPrintable(address));
            m_values.insert(address, match.captured(2) + match.captured(3));
            QCOMPARE(section == "untitled", Sectionless.contains(name));
        } else {
            QVERIFY2(line.isEmpty() || line.startsWith('#') || line.startsWith(';'),
                     qPrintable(name + ": " + line));
        }
    }
}

QList<QDomElement> TestRecorderModel::items(const QString &type) const
{
    QList<QDomElement> found;
    for (const QDomElement &element : m_elements) {
        if (element.tagName() == "item" && element.attribute("type") == type)
            found.append(element);
    }
    return found;
}

QStringList TestRecorderModel::addressesIn(const QString &text) const
{
    QString resolved = text;
    for (const QString &id : matches("@([^ .@\r\n\t]+)", text))
        resolved += m_texts.value("en").value(id) + m_texts.value("ru").value(id);
    QStringList addresses;
    for (const QString &address : matches("\\{\\s*([^{}]+)\\s*\\}", resolved))
        addresses.append(addressOf(address));
    return addresses;
}

/// The addresses whose values an item shows.
QStringList TestRecorderModel::addressesOf(const QDomElement &item) const
{
    QStringList addresses;
    for (const QDomElement &child : elementsIn(item)) {
        const QString tag = child.tagName();
        if (tag == "key" || tag == "row_count")
            addresses.append(addressOf(child));
        else if (tag == "text" && !child.firstChildElement("key").isNull())
            addresses.append(addressOf(child.firstChildElement("key").text()));
        if (QStringList({"text", "tooltip", "size", "used", "limit"}).contains(tag))
            addresses.append(addressesIn(ownText(child)));
    }
    return addresses;
}

void TestRecorderModel::hasTheExpectedFrame()
{
    QCOMPARE(m_root.tagName(), QString("pvsetup"));
    QCOMPARE(m_root.attribute("version"), QString("1.0"));
    QVERIFY(elementsIn(m_root.firstChildElement("tabwidget"), "tab").size() >= 8);
    int bound = 0;
    for (const QDomElement &element : m_elements) {
        const bool isItem = element.tagName() == "item";
        const bool isGrid = element.attribute("type") == "gridlayout";
        bound += isItem && !isGrid && !element.elementsByTagName("key").isEmpty() ? 1 : 0;
        // The items of a page, that is of a tab or of the element around a dialog's tag, are grids.
        if (isItem && element.parentNode().toElement().tagName() != "item")
            QVERIFY2(isGrid, qPrintable(describe(element)));
    }
    QVERIFY2(bound >= 120, qPrintable(QString::number(bound)));
}

void TestRecorderModel::usesEveryControlTypeAndShowsValuesTwice()
{
    QSet<QString> used;
    QHash<QString, QSet<int>> linesByAddress;
    QHash<QString, QSet<QString>> typesByAddress;
    for (const QDomElement &element : m_elements) {
        if (element.tagName() != "item")
            continue;
        used.insert(element.attribute("type"));
        for (const QString &address : addressesOf(element)) {
            linesByAddress[address].insert(element.lineNumber());
            typesByAddress[address].insert(element.attribute("type"));
        }
    }
    QCOMPARE(used, ValueTypes + OtherTypes);
    QSet<QString> shownTwice;
    for (auto lines = linesByAddress.cbegin(); lines != linesByAddress.cend(); ++lines) {
        if (lines->size() >= 2)
            shownTwice += typesByAddress.value(lines.key());
    }
    QVERIFY(shownTwice.contains(ValueTypes));
}

void TestRecorderModel::bindsOnlyAddressesThatExist()
{
    for (const QDomElement &element : m_elements) {
        QStringList addresses = addressesIn(ownText(element)) + addressesIn(element.attribute("param"));
        if (element.tagName() == "key" || element.tagName() == "row_count")
            addresses.append(addressOf(element));
        if (element.tagName() == "keyset") {
            for (const QString &assignment : element.text().split(','))
                addresses.append(addressOf(assignment.trimmed()));
        }
        if (element.attribute("slot") == "setValue")
            addresses.append(addressOf(element.attribute("param")));
        for (const QString &address : addresses)
            QVERIFY2(m_values.contains(address), qPrintable(address + " in " + describe(element)));
    }
    for (const char *type : {"edit", "dropdown", "checkbox", "scroll", "datetime", "progressbar"}) {
        for (const QDomElement &item : items(type))
            QVERIFY2(!addressesOf(item).isEmpty(), qPrintable(describe(item)));
    }
}

void TestRecorderModel::offersTheStoredChoice()
{
    for (const QDomElement &item : items("dropdown")) {
        QStringList choices;
        for (const QDomElement &child : descendants(item)) {
            if (child.tagName() == "key")
                choices.append(child.text());
        }
        QCOMPARE(choices.size(), item.elementsByTagName("text").size());
        const QString address = addressOf(choices.value(0));
        for (const QString &choice : choices)
            QVERIFY2(addressOf(choice) == address, qPrintable(choice));
        QVERIFY2(choices.contains(address + '/' + m_values.value(address)), qPrintable(describe(item)));
    }
}

void TestRecorderModel::fillsEveryListCell()
{
    for (const QDomElement &item : items("list")) {
        const int rows = m_values.value(item.firstChildElement("row_count").text()).toInt();
        QVERIFY(rows > 0);
        const QDomNodeList sources = item.elementsByTagName("column_source");
        QCOMPARE(sources.size(), item.elementsByTagName("column").size());
        for (int column = 0; column < sources.size(); ++column) {
            const QString source = sources.at(column).toElement().text();
            for (int row = 0; row < rows; ++row)
                QVERIFY2(!m_values.value(source + QString::number(row)).isEmpty(), qPrintable(source));
            QVERIFY2(!m_values.contains(source + QString::number(rows)), qPrintable(source));
        }
    }
}

void TestRecorderModel::translatesEveryTextIntoBothLanguages()
{
    QSet<QString> used;
    for (const QDomElement &element : m_elements) {
        const QString texts = ownText(element) + ' ' + element.attribute("param");
        for (const QString &id : matches("@([^ .@\r\n\t]+)", texts)) {
            used.insert(id);
            for (const QString &language : Languages)
                QVERIFY2(!m_texts.value(language).value(id).isEmpty(), qPrintable(language + " " + id));
        }
        // Letters that a user sees must come from the translations.
        QString rest = ownText(element);
        rest.remove(QRegularExpression("@[^ .@]+|\\{[^}]*\\}"));
        if (QStringList({"text", "tooltip", "name", "title", "column"}).contains(element.tagName()))
            QVERIFY2(!rest.contains(QRegularExpression("[a-zA-Zа-яА-Я]{2}")),
                     qPrintable(describe(element) + rest));
    }
    for (const QString &language : Languages) {
        const QStringList ids = m_texts.value(language).keys();
        QCOMPARE(QSet<QString>(ids.begin(), ids.end()), used);
    }
    const auto isSame = [&](const QString &id) { return m_texts["en"].value(id) == m_texts["ru"].value(id); };
    QVERIFY(std::count_if(used.begin(), used.end(), isSame) < used.size() / 4);
}

void TestRecorderModel::namesOnlyTargetsThatExist()
{
    QHash<QString, int> tags;
    for (const QDomElement &element : descendants(m_root))
        ++tags[element.tagName()];
    const auto marks = [&](const QString &tag) { return !tag.isEmpty() && tags.value(tag) == 1; };
    for (const QDomElement &element : m_elements) {
        static const QRegularExpression reserved("^(link[0-9]+|controlWidget)$");
        QVERIFY2(!element.tagName().contains(reserved), qPrintable(element.tagName()));
        if (element.tagName() != "action")
            continue;
        // A tag is looked for in the whole document, so it must not be the tag of anything else.
        QVERIFY2(marks(element.text()), qPrintable(element.text()));
        const QString type = element.attribute("type");
        QVERIFY(QStringList({"call", "enable", "disable"}).contains(type));
        QVERIFY2(type == "call" || element.hasAttribute("state"), qPrintable(describe(element)));
        if (element.attribute("slot") == "showDialog")
            QVERIFY2(marks(element.attribute("param")), qPrintable(element.attribute("param")));
    }
    for (const QString &tag : ClientDialogs)
        QVERIFY2(marks(tag), qPrintable(tag));
    const QDomElement save = m_root.firstChildElement("buttonOK").firstChildElement("action");
    QCOMPARE(save.attribute("slot") + ' ' + save.attribute("param"), QString("callSetup save_settings"));
    QCOMPARE(m_root.elementsByTagName(save.text()).at(0).parentNode().toElement().attribute("type"),
             QString("setup"));
    QCOMPARE(save.nextSiblingElement("action").attribute("slot"), QString("accept"));
}

void TestRecorderModel::keepsCellsApart()
{
    for (const QDomElement &grid : items("gridlayout")) {
        QSet<std::pair<int, int>> taken;
        for (const QDomElement &item : elementsIn(grid, "item")) {
            const auto number = [&](const char *name, const char *fallback) {
                return item.attribute(name, fallback).toInt();
            };
            for (int row = 0; row < number("rowSpan", "1"); ++row) {
                for (int column = 0; column < number("columnSpan", "1"); ++column) {
                    const std::pair cell(number("row", "-1") + row, number("column", "-1") + column);
                    QVERIFY2(cell.first >= 0 && cell.second >= 0 && !taken.contains(cell),
                             qPrintable(describe(item)));
                    taken.insert(cell);
                }
            }
        }
    }
}

void TestRecorderModel::marksStateDirectives()
{
    QFile file(m_folder.filePath("state"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    const QRegularExpression directive(
        "(?<=[\r\n])#! s/([^/\n]*)/([^{\n]*)\\{([^}\n]*)\\}([^/\n]*)/(?=[\r\n])");
    int count = 0;
    for (auto match = directive.globalMatch(text); match.hasNext(); ++count) {
        const auto found = match.next();
        QVERIFY2(m_values.contains(found.captured(3)), qPrintable(found.captured(3)));
        // It must find the one line that it fills in and leave the directives alone, itself included.
        const QRegularExpression pattern(found.captured(1), QRegularExpression::InvertedGreedinessOption);
        const QString expected = found.captured(2) + "new" + found.captured(4);
        const QString filled = QString(text).replace(pattern, expected);
        QCOMPARE(filled.count('\n'), text.count('\n'));
        QCOMPARE(filled.count(expected), 1);
        QCOMPARE(filled.count("\n#!"), text.count("\n#!"));
        QVERIFY(filled.contains(found.captured(0)));
    }
    QVERIFY(count >= 1);
}

QTEST_GUILESS_MAIN(TestRecorderModel)
#include "tst_recorder_model.moc"
