#include "device/protocol/DeviceAddress.h"
#include "device/protocol/Limits.h"
#include "device/protocol/ReplyFrame.h"
#include "support/TestTable.h"

using namespace paravue;
using paravue::test::TestTable;
using Progress = ReplyFrame::Progress;
using Answer = ReplyContent::Answer;

Q_DECLARE_METATYPE(paravue::ReplyFrame::Progress)
Q_DECLARE_METATYPE(paravue::ReplyContent::Answer)

class TestReplyFrame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsAddresses_data();
    void readsAddresses();
    void framesReplies_data();
    void framesReplies();
    void judgesAnswers_data();
    void judgesAnswers();
};

void TestReplyFrame::readsAddresses_data()
{
    const TestTable<QStringList, int> row("parts", "port");
    row("a:b@host", {"a", "b", "host", "host"}, 5049);
    row("a:b@host:80", {"a", "b", "host:80", "host"}, 80);
    // The login ends at the last colon before the last at.
    row("a:b:c@host", {"a:b", "c", "host", "host"}, 5049);
    row("a:p@x@host", {"a", "p@x", "host", "host"}, 5049);
    row("a:b@c:d@h:1", {"a:b@c", "d", "h:1", "h"}, 1);
    row(":@", {"", "", "", ""}, 5049);
    // The port is a signed 16-bit number, and what does not fit is 0.
    row("a:b@host:70000", {"a", "b", "host:70000", "host"}, 0);
    row("a:b@host:40000", {"a", "b", "host:40000", "host"}, 0);
    row("a:b@host:32767", {"a", "b", "host:32767", "host"}, 32767);
    row("a:b@host:-1", {"a", "b", "host:-1", "host"}, 65535);
    row("a:b@host:x", {"a", "b", "host:x", "host"}, 0);
    row("a:b@host:", {"a", "b", "host:", "host"}, 0);
    row("a:b@host:80:90", {"a", "b", "host:80:90", "host"}, 80);
    for (const char *text : {"", "host", "host:80", "a@host", "@", "@a:b", ":", "a@b:c"})
        row(text, {}, 0);
}

void TestReplyFrame::readsAddresses()
{
    QFETCH(QStringList, parts);
    const auto address = DeviceAddress::parse(QTest::currentDataTag());
    QCOMPARE(address.has_value(), !parts.isEmpty());
    if (!address)
        return;
    QCOMPARE(QStringList({address->login, address->password, address->url, address->host}), parts);
    QTEST(int(address->port), "port");
}

void TestReplyFrame::framesReplies_data()
{
    const QByteArray ok = "VORN_ANSWER=OK\r\n";
    const TestTable<QByteArray, Progress, int> row("bytes", "progress", "headerSize");
    row("body and answer", "LENGTH=20\r\nabcd" + ok, Progress::Complete, 11);
    row("answer cut", "LENGTH=20\r\nabcdVORN_A", Progress::Incomplete, 0);
    row("one byte short", ("LENGTH=20\r\nabcd" + ok).chopped(1), Progress::Incomplete, 0);
    row("more than announced", "LENGTH=3\r\nabcd" + ok, Progress::Complete, 10);
    row("nothing announced", "LENGTH=0\r\n", Progress::Complete, 10);
    row("leading zeros", "LENGTH=00003\r\nabc", Progress::Complete, 14);
    row("no header", "hello\r\n", Progress::Incomplete, 0);
    row("no digits", "LENGTH=\r\nabc", Progress::Incomplete, 0);
    row("sign", "LENGTH=+3\r\nabc", Progress::Incomplete, 0);
    row("line feed only", "LENGTH=3\nabc", Progress::Incomplete, 0);
    row("lower case", "length=3\r\nabc", Progress::Incomplete, 0);
    row("header cut in the line end", "LENGTH=0\r", Progress::Incomplete, 0);
    row("bytes before the header count as received", "abcLENGTH=3\r\n", Progress::Complete, 10);
    row("second header counts when the first is none", "LENGTH=12LENGTH=1\r\nx", Progress::Complete, 10);
    row("name begins again", "LENLENGTH=1\r\nx", Progress::Complete, 10);
    row("longest reply", "LENGTH=" + QByteArray::number(MaxReplyBytes) + "\r\n", Progress::Incomplete, 0);
    row("beyond the limit", "LENGTH=" + QByteArray::number(MaxReplyBytes + 1) + "\r\n", Progress::TooLong, 0);
    row("beyond 32 bits", "LENGTH=4294967296\r\n", Progress::TooLong, 0);
    row("beyond 64 bits", "LENGTH=18446744073709551617\r\n", Progress::TooLong, 0);
    row("much noise", QByteArray(MaxReplyBytes / 16, 'x'), Progress::Incomplete, 0);
    row("endless noise", QByteArray(MaxReplyBytes + 1, 'x'), Progress::TooLong, 0);
    row("thousand digits", "LENGTH=" + QByteArray(1000, '9') + "\r\n", Progress::TooLong, 0);
}

void TestReplyFrame::framesReplies()
{
    QFETCH(QByteArray, bytes);
    QFETCH(Progress, progress);

    ReplyFrame whole;
    QCOMPARE(whole.read(bytes), progress);
    if (progress == Progress::Complete)
        QTEST(int(whole.headerSize()), "headerSize");

    if (bytes.size() > 5'000)
        return; // of the same bytes again and again there are no interesting pieces
    ReplyFrame piecewise;
    Progress last = Progress::Incomplete;
    for (qsizetype size = 1; size <= bytes.size() && last == Progress::Incomplete; ++size)
        last = piecewise.read(bytes.first(size));
    QCOMPARE(last, progress);
}

void TestReplyFrame::judgesAnswers_data()
{

    const TestTable<QByteArray, Answer, QString, QByteArray> row("reply", "answer", "text", "body");
    row("empty body", "VORN_ANSWER=OK\r\n", Answer::Ok, "", "");
    row("body", "abcdVORN_ANSWER=OK\r\n", Answer::Ok, "", "abcd");
    row("body holds an answer line", "VORN_ANSWER=OK\r\nVORN_ANSWER=OK\r\n", Answer::Ok, "",
        "VORN_ANSWER=OK\r\n");
    row("OK with a text", "abVORN_ANSWER=OK:well\r\n", Answer::Ok, "well", "ab");
    row("error", "VORN_ANSWER=ERROR\r\n", Answer::Error, "", "");
    row("error with a text", "VORN_ANSWER=ERROR:disk busy\r\n", Answer::Error, "disk busy", "");
    row("error with an empty text", "VORN_ANSWER=ERROR:\r\n", Answer::Error, "", "");
    row("error text of two lines", "VORN_ANSWER=ERROR:a\r\nb\r\n", Answer::Error, "a\r\nb", "");
    row("error text is UTF-8", "VORN_ANSWER=ERROR:\xd0\xb4\xd0\xb0\r\n", Answer::Error, "да", "");
    row("endless error text", "VORN_ANSWER=ERROR:" + QByteArray(1'000'000, 'x') + "\r\n", Answer::Error,
        QString(MaxQuotedAnswer, 'x') + u'\u2026', "");
    row("other word", "VORN_ANSWER=MAYBE\r\n", Answer::Unrecognized, "VORN_ANSWER=MAYBE\r\n", "");
    row("no colon", "VORN_ANSWER=OKAY\r\n", Answer::Unrecognized, "VORN_ANSWER=OKAY\r\n", "");
    row("line feed only", "abVORN_ANSWER=ERROR\n", Answer::Unrecognized, "VORN_ANSWER=ERROR\n", "ab");
    row("bytes behind", "VORN_ANSWER=OK\r\nx", Answer::Unrecognized, "VORN_ANSWER=OK\r\nx", "");
    row("no answer line", "0123456789abcdefgh", Answer::Missing, "", "0123456789abcdefgh");
    row("shorter than an answer", "abc", Answer::Missing, "", "abc");
    row("answer shorter than the shortest", "abVORN_ANSWER=X\r\n", Answer::Missing, "",
        "abVORN_ANSWER=X\r\n");
    row("nothing", "", Answer::Missing, "", "");
}

void TestReplyFrame::judgesAnswers()
{
    QFETCH(QByteArray, reply);
    const ReplyContent content = takeAnswer(reply);
    QTEST(content.answer, "answer");
    QTEST(content.text, "text");
    QTEST(reply, "body");
}

QTEST_GUILESS_MAIN(TestReplyFrame)
#include "tst_reply_frame.moc"
