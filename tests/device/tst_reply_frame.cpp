#include "device/DeviceAddress.h"
#include "device/Limits.h"
#include "device/ReplyFrame.h"
#include "store/TextPattern.h"

#include <QRandomGenerator>
#include <QTest>

using namespace paravue;
using Progress = ReplyFrame::Progress;
using Answer = ReplyContent::Answer;

Q_DECLARE_METATYPE(paravue::ReplyFrame::Progress)
Q_DECLARE_METATYPE(paravue::ReplyContent::Answer)

namespace
{

/// Any text of \a length pieces of \a alphabet: near misses are as likely as hits.
QByteArray randomText(QRandomGenerator &random, const QList<QByteArray> &alphabet, int length)
{
    QByteArray text;
    for (int i = 0; i < length; ++i)
        text += alphabet.at(random.bounded(alphabet.size()));
    return text;
}

} // namespace

class ReplyFrameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsAddresses_data();
    void readsAddresses();
    void framesReplies_data();
    void framesReplies();
    void findsTheHeaderThatThePatternFinds();
    void judgesAnswers_data();
    void judgesAnswers();
    void agreesWithTheAnswerPattern();
};

void ReplyFrameTest::readsAddresses_data()
{
    QTest::addColumn<QStringList>("parts");
    QTest::addColumn<int>("port");
    const auto row = [](const char *text, const QStringList &parts, int port) {
        QTest::newRow(text) << parts << port;
    };
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

void ReplyFrameTest::readsAddresses()
{
    QFETCH(QStringList, parts);
    const auto address = DeviceAddress::parse(QTest::currentDataTag());
    QCOMPARE(address.has_value(), !parts.isEmpty());
    if (!address)
        return;
    QCOMPARE(QStringList({address->login, address->password, address->url, address->host}), parts);
    QTEST(int(address->port), "port");
}

void ReplyFrameTest::framesReplies_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Progress>("progress");
    QTest::addColumn<int>("headerSize");

    const QByteArray ok = "VORN_ANSWER=OK\r\n";
    const auto row = [](const char *name, const QByteArray &bytes, Progress progress, int headerSize = 0) {
        QTest::newRow(name) << bytes << progress << headerSize;
    };
    row("body and answer", "LENGTH=20\r\nabcd" + ok, Progress::Complete, 11);
    row("answer cut", "LENGTH=20\r\nabcdVORN_A", Progress::Incomplete);
    row("one byte short", ("LENGTH=20\r\nabcd" + ok).chopped(1), Progress::Incomplete);
    row("more than announced", "LENGTH=3\r\nabcd" + ok, Progress::Complete, 10);
    row("nothing announced", "LENGTH=0\r\n", Progress::Complete, 10);
    row("leading zeros", "LENGTH=00003\r\nabc", Progress::Complete, 14);
    row("no header", "hello\r\n", Progress::Incomplete);
    row("no digits", "LENGTH=\r\nabc", Progress::Incomplete);
    row("sign", "LENGTH=+3\r\nabc", Progress::Incomplete);
    row("line feed only", "LENGTH=3\nabc", Progress::Incomplete);
    row("lower case", "length=3\r\nabc", Progress::Incomplete);
    row("header cut in the line end", "LENGTH=0\r", Progress::Incomplete);
    row("bytes before the header count as received", "abcLENGTH=3\r\n", Progress::Complete, 10);
    row("second header counts when the first is none", "LENGTH=12LENGTH=1\r\nx", Progress::Complete, 10);
    row("name begins again", "LENLENGTH=1\r\nx", Progress::Complete, 10);
    row("longest reply", "LENGTH=" + QByteArray::number(MaxReplyBytes) + "\r\n", Progress::Incomplete);
    row("beyond the limit", "LENGTH=" + QByteArray::number(MaxReplyBytes + 1) + "\r\n", Progress::TooLong);
    row("beyond 32 bits", "LENGTH=4294967296\r\n", Progress::TooLong);
    row("beyond 64 bits", "LENGTH=18446744073709551617\r\n", Progress::TooLong);
    row("longest noise", QByteArray(MaxReplyBytes, 'x'), Progress::Incomplete);
    row("endless noise", QByteArray(MaxReplyBytes + 1, 'x'), Progress::TooLong);
    row("thousand digits", "LENGTH=" + QByteArray(1000, '9') + "\r\n", Progress::TooLong);
}

void ReplyFrameTest::framesReplies()
{
    QFETCH(QByteArray, bytes);
    QFETCH(Progress, progress);
    QFETCH(int, headerSize);

    ReplyFrame whole;
    QCOMPARE(whole.read(bytes), progress);
    if (progress == Progress::Complete)
        QCOMPARE(whole.headerSize(), headerSize);

    ReplyFrame piecewise;
    Progress last = Progress::Incomplete;
    const qsizetype step = bytes.size() > 5'000 ? bytes.size() / 3 : 1;
    for (qsizetype size = 1; size < bytes.size() + step && last == Progress::Incomplete; size += step)
        last = piecewise.read(bytes.first(std::min(size, bytes.size())));
    QCOMPARE(last, progress);
}

void ReplyFrameTest::findsTheHeaderThatThePatternFinds()
{
    const TextPattern pattern("LENGTH=(\\d+)\\r\\n");
    const QList<QByteArray> alphabet{"LENGTH=", "LENGTH=", "LEN", "L", "0", "2", "\r\n", "\r\n", "\r", "x"};
    QRandomGenerator random(20260101);
    int found = 0;
    for (int i = 0; i < 20'000; ++i) {
        const QByteArray text = randomText(random, alphabet, random.bounded(12));
        const auto match = pattern.find(QString::fromLatin1(text));
        const qsizetype length = match ? match->captures.at(1).toLongLong() : 0;
        ReplyFrame frame;
        const bool complete = frame.read(text) == Progress::Complete;
        QCOMPARE(complete, match && text.size() >= match->length + length);
        if (complete)
            QCOMPARE(frame.headerSize(), match->length);
        found += complete;
    }
    QVERIFY(found > 500);
}

void ReplyFrameTest::judgesAnswers_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("body");

    const auto row = [](const char *name, const QByteArray &reply, Answer answer, const QString &text,
                        const QByteArray &body) { QTest::newRow(name) << reply << answer << text << body; };
    row("empty body", "VORN_ANSWER=OK\r\n", Answer::Ok, "", "");
    row("body", "abcdVORN_ANSWER=OK\r\n", Answer::Ok, "", "abcd");
    row("body holds an answer line", "VORN_ANSWER=OK\r\nVORN_ANSWER=OK\r\n", Answer::Ok, "",
        "VORN_ANSWER=OK\r\n");
    row("OK with a text", "abVORN_ANSWER=OK:well\r\n", Answer::Ok, "", "ab");
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

void ReplyFrameTest::judgesAnswers()
{
    QFETCH(QByteArray, reply);
    QFETCH(Answer, answer);
    QFETCH(QString, text);
    QFETCH(QByteArray, body);
    const ReplyContent content = takeAnswer(reply);
    QCOMPARE(content.answer, answer);
    QCOMPARE(content.text, text);
    QCOMPARE(reply, body);
}

void ReplyFrameTest::agreesWithTheAnswerPattern()
{
    const TextPattern pattern("^VORN_ANSWER=(OK|ERROR)(:(.*))?\\r\\n$");
    const QList<QByteArray> alphabet{"OK", "ERROR", ":", "\r\n", "\r", "\n", "x", " "};
    QRandomGenerator random(20260102);
    for (int i = 0; i < 20'000; ++i) {
        QByteArray reply = "VORN_ANSWER=" + randomText(random, alphabet, 1 + random.bounded(6));
        if (reply.size() < 16)
            continue;
        const auto match = pattern.matchWhole(QString::fromUtf8(reply));
        const ReplyContent content = takeAnswer(reply);
        QCOMPARE(content.answer == Answer::Unrecognized, !match);
        if (match)
            QCOMPARE(content.answer == Answer::Ok, match->captures.at(1) == "OK");
        if (content.answer == Answer::Error)
            QCOMPARE(content.text, match->captures.value(3));
    }
}

QTEST_GUILESS_MAIN(ReplyFrameTest)
#include "tst_reply_frame.moc"
