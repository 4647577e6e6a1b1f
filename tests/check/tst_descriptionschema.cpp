#include "check/DescriptionSchema.h"
#include "recorder/RecorderServer.h"
#include "support/TestTable.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

using namespace paravue;
using paravue::test::TestTable;

namespace
{

QByteArray page(const QByteArray &cells, const QByteArray &rest = {})
{
    return "<pvsetup version='1.0'><window><main/></window><tabwidget><tab><name>a</name>"
           "<item type='gridlayout'>" +
           cells + "</item></tab></tabwidget>" + rest + "</pvsetup>";
}

} // namespace

class TestDescriptionSchema : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void acceptsModels_data();
    void acceptsModels();
    void tellsWordsFromOthers_data();
    void tellsWordsFromOthers();

private:
    bool write(const QString &name, const QByteArray &content);
    /// What xmllint says of the file; empty when it fits the schema.
    QByteArray complaints(const QString &file);

    QTemporaryDir m_folder;
};

bool TestDescriptionSchema::write(const QString &name, const QByteArray &content)
{
    QFile file(m_folder.filePath(name));
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QByteArray TestDescriptionSchema::complaints(const QString &file)
{
    QProcess lint;
    lint.setProcessChannelMode(QProcess::MergedChannels);
    lint.start(XMLLINT, {"--noout", "--relaxng", m_folder.filePath("schema"), file});
    if (!lint.waitForFinished())
        return "xmllint did not end";
    const QByteArray said = lint.readAll();
    return lint.exitCode() == 0 ? QByteArray() : said + "exit code";
}

void TestDescriptionSchema::initTestCase()
{
    QVERIFY(write("schema", descriptionSchema()));
}

void TestDescriptionSchema::acceptsModels_data()
{
    QTest::addColumn<QString>("model");
    for (const QString &model : recorder::RecorderServer::models())
        QTest::newRow(qPrintable(model)) << model;
}

void TestDescriptionSchema::acceptsModels()
{
    QFETCH(QString, model);
    const QTemporaryDir folder;
    const recorder::RecorderServer server(folder.path(), model);
    QCOMPARE(complaints(server.filePath("interface")), QByteArray());
}

void TestDescriptionSchema::tellsWordsFromOthers_data()
{
    const TestTable<QByteArray, bool> row("text", "isValid");
    row("nothing", "<pvsetup/>", true);
    row("other root", "<setup/>", false);
    row("other version", "<pvsetup version='2'/>", false);
    row("control", page("<item type='edit' row='1' minimum='0'><key>net/u/a</key><unit>s</unit></item>"),
        true);
    row("tag", page("<item type='edit'><my_field/></item>"), true);
    row("word as a tag", page("<item type='edit'><login/></item>"), true);
    row("dialog", page("", "<ask width='5'><asked/><title>a</title><item type='gridlayout'/></ask>"), true);
    row("list of values", page("", "<a><b><key>net/u/a</key></b></a>"), true);
    row("translations", page("", "<translations><en><item>a</item><x.y>b</x.y></en></translations>"), true);
    row("attribute", page("<item type='edit' colour='red'/>"), false);
    row("attribute of another type", page("<item type='edit' color='red'/>"), false);
    row("number", page("<item type='edit' row='a'/>"), false);
    row("word", page("<item type='pushbutton' color='yellow'/>"), false);
    row("type", page("<item type='button'/>"), false);
    row("control on a page", "<pvsetup><tabwidget><tab><item type='edit'/></tab></tabwidget></pvsetup>",
        false);
    row("misplaced element", page("<item type='edit'><keyset>net/u/a/1</keyset></item>"), false);
    row("action", page("<item type='edit'><action type='hide'>a</action></item>"), false);
}

void TestDescriptionSchema::tellsWordsFromOthers()
{
    QFETCH(QByteArray, text);
    QVERIFY(write("described", text));
    const QByteArray said = complaints(m_folder.filePath("described"));
    QFETCH(bool, isValid);
    QVERIFY2(said.isEmpty() == isValid, said.constData());
}

QTEST_APPLESS_MAIN(TestDescriptionSchema)
#include "tst_descriptionschema.moc"
