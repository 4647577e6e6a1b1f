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

const QStringList Files = {"streams", "net", "time", "timers", "soft", "disk", "users", "state"};
/// Files whose keys stand before any section line; a client calls that section "untitled".
const QStringList Sectionless = {"net", "time", "soft", "disk", "users"};

template <typename Parent>
QList<QDomElement> descendants(const Parent &parent, const QString &tag)
{
    QList<QDomElement> found;
    const QDomNodeList nodes = parent.elementsByTagName(tag);
    for (int i = 0; i < nodes.size(); ++i)
        found.append(nodes.at(i).toElement());
    return found;
}

QString addressOf(const QString &assignment)
{
    return assignment.section('/', 0, 2);
}

QString describe(const QDomElement &element)
{
    return QStringLiteral("%1 %2, line %3")
        .arg(element.tagName(), element.attribute("type"))
        .arg(element.lineNumber());
}

} // namespace

/// The shipped model, as far as the check of descriptions does not cover it.
class TestRecorderModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void showsWhatTheReportHolds();
    void offersTheStoredChoice();
    void fillsEveryListCell();
    void takesWordsFromTheTranslations();
    void keepsCellsApart();
    void marksStateDirectives();

private:
    void readValues(const QString &file);
    QList<QDomElement> items(const QString &type) const;

    QTemporaryDir m_folder;
    QDomDocument m_document;
    QHash<QString, QString> m_values; // by file/section/key
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
    // Values that a client itself sets; the level is that of a user who is being added.
    m_values.insert({{"general/network/login", {}}, {"general/access/level", "1"}});

    QFile description(server.filePath("interface"));
    QVERIFY(description.open(QIODevice::ReadOnly));
    QVERIFY(m_document.setContent(&description));
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
    for (const QDomElement &item : descendants(m_document, "item")) {
        if (item.attribute("type") == type)
            found.append(item);
    }
    return found;
}

void TestRecorderModel::showsWhatTheReportHolds()
{
    auto address = QRegularExpression("tmp/\\w+/\\w+").globalMatch(m_document.toString());
    QVERIFY(address.hasNext());
    while (address.hasNext()) {
        const QString shown = address.next().captured();
        QVERIFY2(m_values.contains(shown), qPrintable(shown));
    }
}

void TestRecorderModel::offersTheStoredChoice()
{
    for (const QDomElement &item : items("dropdown")) {
        QStringList choices;
        for (const QDomElement &key : descendants(item, "key"))
            choices.append(key.text());
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

void TestRecorderModel::takesWordsFromTheTranslations()
{
    for (const char *tag : {"text", "tooltip", "name", "title", "column"}) {
        for (const QDomElement &element : descendants(m_document, tag)) {
            QString rest = element.firstChild().nodeValue();
            rest.remove(QRegularExpression("@[^ .@]+|\\{[^}]*\\}"));
            QVERIFY2(!rest.contains(QRegularExpression("[a-zA-Zа-яА-Я]{2}")), qPrintable(describe(element)));
        }
    }
}

void TestRecorderModel::keepsCellsApart()
{
    for (const QDomElement &grid : items("gridlayout")) {
        QSet<std::pair<int, int>> taken;
        for (auto item = grid.firstChildElement("item"); !item.isNull();
             item = item.nextSiblingElement("item")) {
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
