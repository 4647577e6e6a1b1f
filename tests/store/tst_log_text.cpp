#include "store/LogText.h"
#include "support/TestTable.h"

#include <QTest>

using namespace paravue;

class TestLogText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hidesWhatLogsIn_data();
    void hidesWhatLogsIn();
};

void TestLogText::hidesWhatLogsIn_data()
{
    const test::TestTable<QString, QString> row("text", "logged");
    row("plain", "The recorder refuses the connection", "The recorder refuses the connection");
    row("mail address", "sent to guard@example.org", "sent to guard@example.org");
    row("address", "Wrong network address \"admin:secret@\"<br>Correct",
        "Wrong network address \"***@\"<br>Correct");
    row("separators in the password", "a:b c@d@host:1", "***@host:1");
    row("digest", "x 21232f297a57a5a743894a0e4a801fc3.", "x ***.");
    row("lines and control characters", "a\nb\r\n\tc", "a b c");
    row("long", QString(600, 'x'), QString(500, 'x') + QChar(0x2026));
}

void TestLogText::hidesWhatLogsIn()
{
    QFETCH(QString, text);
    QTEST(logText(text), "logged");
}

QTEST_APPLESS_MAIN(TestLogText)
#include "tst_log_text.moc"
