#include "support/Hvx3Bytes.h"
#include "support/TestTable.h"
#include "video/cHvx3Parser.h"

#include <QStringList>

#include <algorithm>
#include <random>

using namespace paravue::test;

namespace
{

constexpr quint8 Video = 0;
constexpr quint8 Sound = 1;
constexpr quint8 Text = 2;

QString hex(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex());
}

/// Records what a parser emits.
class Records : public QObject
{
public:
    explicit Records(const cHvx3Parser &parser)
    {
        connect(&parser, &cHvx3Parser::onHDR, this, &Records::header, Qt::DirectConnection);
        connect(&parser, &cHvx3Parser::onIDX, this, &Records::index, Qt::DirectConnection);
        connect(&parser, &cHvx3Parser::onDATA, this, &Records::data, Qt::DirectConnection);
    }

    QStringList list;
    QList<qsizetype> sizes;

private:
    void header(HDR_T header)
    {
        QString line = "header " + hex(header.name);
        const QList<STREAM_T> streams = header.streams;
        for (const STREAM_T &stream : streams) {
            line += QStringLiteral(" %1:%2").arg(stream.streamId).arg(stream.streamType);
            line += ' ' + hex(stream.label1) + ' ' + hex(stream.label2) + ' ' + hex(stream.label3);
        }
        const QList<QByteArray> texts = header.texts;
        QCOMPARE(texts.size(), 9);
        for (qsizetype tag = 0; tag < texts.size(); ++tag) {
            if (!texts.at(tag).isEmpty())
                line += QStringLiteral(" t%1=").arg(tag) + hex(texts.at(tag));
        }
        list.append(line);
    }
    void index(IDX_T index)
    {
        QCOMPARE(index.value1, Hvx3IndexMagic);
        list.append(QStringLiteral("index %1 %2 ").arg(index.value2).arg(index.value3) + hex(index.blob));
    }
    void data(DATA_T data)
    {
        QCOMPARE(qsizetype(data.length), data.payload.size());
        QCOMPARE(data.stream.streamId, data.streamId);
        sizes.append(data.payload.size());
        list.append(QStringLiteral("data %1:%2 %3 ")
                        .arg(data.streamId)
                        .arg(data.stream.streamType)
                        .arg(data.flags, 2, 16, QLatin1Char('0')) +
                    QStringLiteral("%1,%2,%3 ").arg(data.word16).arg(data.byteA).arg(data.byteB) +
                    QString::fromLatin1(data.payload.value()));
    }
};

QStringList recordsOf(const QList<QByteArray> &pieces)
{
    cHvx3Parser parser;
    const Records records(parser);
    for (QByteArray piece : pieces) {
        parser.append(QByteArray::fromRawData(piece.data(), piece.size()));
        piece.fill('?'); // the parser must not refer to it any more
    }
    return records.list;
}

QList<QByteArray> cut(const QByteArray &stream, qsizetype size)
{
    QList<QByteArray> pieces;
    for (qsizetype at = 0; at < stream.size(); at += size)
        pieces.append(stream.mid(at, size));
    return pieces;
}

QByteArray usualHeader()
{
    return hvx3Header(
        {{Video, 1}, {Sound, 2}, {Text, 4}, {3, 8}, {4, 16}, {5, 3}, {6, 17}, {7, 0}, {0xb5, 2}});
}

/// A stream with all kinds of records and damage.
QByteArray richStream()
{
    return "noise" + usualHeader() + "more" + hvx3Index(7, 8, "blob") +
           hvx3Frame(Video, "a picture in fragments", 5, {250, 1, 2}) + hvx3Data(Text, WholeFrame, "text") +
           hvx3Data(99, WholeFrame, "unknown") + hvx3Index(8) + hvx3Data(Video, LastFragment, "late") +
           hvx3Frame(Video, "whole", 9, {7000, 3, 0}) + hvx3Header({{Video, 2}}, "again") + hvx3Index(9) +
           hvx3Data(Video, WholeFrame, "as sound");
}

} // namespace

class TestHvx3Parser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsHeaders_data();
    void readsHeaders();
    void readsData_data();
    void readsData();
    void doesNotDependOnPieces();
    void countsWhatIsLost();
    void dropsWhatIsTooLarge_data();
    void dropsWhatIsTooLarge();
    void receiverMayAppend();
    void keepsFramesApart();
    void survivesDamage();
    void usesFieldsAsContainers();
};

/// Each header is followed by an index record, which is read only if the header ends in the right place.
void TestHvx3Parser::readsHeaders_data()
{
    const Hvx3Stream one{1, 1, "a", "b", "c"};
    const Hvx3Stream two{2, 4, "", "", ""};
    const QByteArray name("n", 2);
    const QByteArray first = hvx3StreamBytes(one);
    const quint16 behindFirst = quint16(8 + name.size() + first.size());
    const QString plain = "header 6e00";
    const QString withOne = plain + " 1:1 6100 6200 6300";

    const TestTable<QByteArray, QString> row("bytes", "expected");
    row("two streams", hvx3Header({one, two}, "n"), withOne + " 2:4 00 00 00");
    row("garbage in front", hvx3Index(1) + QByteArray(200, '\xB5') + hvx3Header({one}, "n"), withOne);
    row("list ends inside of the second stream",
        hvx3Header(behindFirst + 1, 2, name + first + hvx3StreamBytes(two)), withOne);
    row("tags begin behind what has overrun the list",
        hvx3Header(behindFirst + 1, 7, name + first + hvx3StreamBytes(two) + QByteArray("\x01x\0", 3)),
        withOne + " t1=7800");
    row("list shorter than the name", hvx3Header(0, 0, name), plain);
    row("tags of one byte and of texts", hvx3Header({}, "n", QByteArray("\x00\x09\xff\x01one\0\x08\0", 10)),
        plain + " t1=6f6e6500 t8=00");
    row("tag given twice", hvx3Header({}, "n", QByteArray("\x05old\0\x05new\0", 10)), plain + " t5=6e657700");
    row("text longer than its block", hvx3Header(8 + 2, 1, name + QByteArray("\x02long\0", 6)),
        plain + " t2=6c6f6e6700");
}

void TestHvx3Parser::readsHeaders()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, expected);

    const QStringList records = recordsOf({bytes + hvx3Index(1)});
    QCOMPARE(records, QStringList({expected, "index 1 0 "}));
}

/// Each row begins behind a header and an index record.
void TestHvx3Parser::readsData_data()
{
    const QByteArray video = hvx3Data(Video, FirstFragment | 5, "one ", {7000, 3, 9});
    const QByteArray middle = hvx3Data(Video, MiddleFragment, "two ");
    const QByteArray last = hvx3Data(Video, LastFragment | 1, "three");
    const QByteArray late = hvx3Index(2) + hvx3Data(Text, WholeFrame, "late");
    const QStringList gotLate{"index 2 0 ", "data 2:4 c0 0,0,0 late"};

    const TestTable<QByteArray, QStringList> row("bytes", "expected");
    row("whole frame", hvx3Data(Video, WholeFrame | 0x3f, "x", {2999, 0, 255}), {"data 0:1 ff 2999,0,255 x"});
    row("empty frame", hvx3Data(Video, WholeFrame, "", {1, 2, 3}), {"data 0:1 c0 1,2,3 "});
    row("milliseconds fold below 4", hvx3Data(Video, WholeFrame, "", {7000, 3, 0}),
        {"data 0:1 c0 1000,3,0 "});
    row("and not from 4 on", hvx3Data(Video, WholeFrame, "", {7000, 4, 0}), {"data 0:1 c0 7000,4,0 "});
    row("types without extension",
        hvx3Data(Sound, WholeFrame, "s") + hvx3Data(3, WholeFrame, "8") + hvx3Data(4, WholeFrame, "16"),
        {"data 1:2 c0 0,0,0 s", "data 3:8 c0 0,0,0 8", "data 4:16 c0 0,0,0 16"});
    row("fragments", video + middle + middle + last, {"data 0:1 c1 1000,3,9 one two two three"});
    row("first and last only", video + last, {"data 0:1 c1 1000,3,9 one three"});
    row("fragments of two streams",
        video + hvx3Data(Text, FirstFragment, "te") + middle + hvx3Data(Text, LastFragment, "xt") + last,
        {"data 2:4 c0 0,0,0 text", "data 0:1 c1 1000,3,9 one two three"});
    row("whole frame between fragments", video + hvx3Data(Video, WholeFrame, "w", {1, 2, 3}) + last,
        {"data 0:1 c0 1,2,3 w", "data 0:1 c1 1000,3,9 one three"});
    row("another first fragment", video + middle + video + last, {"data 0:1 c1 1000,3,9 one three"});
    row("nothing after the last", video + last + middle + last, {"data 0:1 c1 1000,3,9 one three"});
    row("middle and last without a first", middle + last, {});
    row("index between fragments", video + hvx3Index(2) + last, {"index 2 0 "});
    row("unknown stream", hvx3Data(99, WholeFrame, "x") + late, gotLate);
    row("refused type 3", hvx3Data(5, WholeFrame, "x") + late, gotLate);
    row("refused type 17", hvx3Data(6, WholeFrame, "x") + late, gotLate);
    row("refused type 0", hvx3Data(7, WholeFrame, "x") + late, gotLate);
    row("no data before the next index", hvx3Data(99, 0, "") + hvx3Data(Text, WholeFrame, "x") + late,
        gotLate);
    row("garbage that nearly is an index", QByteArray::fromHex("ff00ff6305b5b505") + late, gotLate);
    row("garbage that makes the index look like a header", QByteArray::fromHex("ff00ff63b5b5") + late,
        gotLate);
    row("header where an index is awaited",
        hvx3Data(99, 0, "") + hvx3Header({{Video, 2, "", "", ""}}, "n") + hvx3Data(Video, WholeFrame, "x") +
            hvx3Index(3) + hvx3Data(Video, WholeFrame, "y"),
        {"header 6e00 0:2 00 00 00", "index 3 0 ", "data 0:2 c0 0,0,0 y"});
    row("header behind data", hvx3Header({{Video, 2, "", "", ""}}, "n") + late,
        {"header 6e00 0:2 00 00 00", "index 2 0 "});
    row("first of two streams with one id",
        hvx3Header({{Video, 2, "", "", ""}, {Video, 4, "", "", ""}}, "n") + hvx3Index(3) +
            hvx3Data(Video, WholeFrame, "y"),
        {"header 6e00 0:2 00 00 00 0:4 00 00 00", "index 3 0 ", "data 0:2 c0 0,0,0 y"});
}

void TestHvx3Parser::readsData()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, expected);

    const QStringList records = recordsOf({usualHeader() + hvx3Index(1), bytes});
    QCOMPARE(records.mid(2), expected);
}

void TestHvx3Parser::doesNotDependOnPieces()
{
    const QByteArray stream = richStream();
    const QStringList whole = recordsOf({stream});
    QCOMPARE(whole.size(), 9);
    QCOMPARE(recordsOf(cut(stream, 1)), whole);
    for (qsizetype border = 1; border < stream.size(); ++border)
        QCOMPARE(recordsOf({stream.first(border), QByteArray(), stream.sliced(border)}), whole);
    // A record does not wait for the one behind it.
    const QByteArray header = hvx3Header({{Video, 1, "a", "b", "c"}}, "n");
    QCOMPARE(recordsOf(cut(header, 1)), recordsOf({header}));
    QCOMPARE(recordsOf({header}).size(), 1);
}

void TestHvx3Parser::countsWhatIsLost()
{
    const QByteArray stream = richStream() + hvx3Data(Video, FirstFragment, "begun") + hvx3Index(10);
    for (const qsizetype size : {qsizetype(1), stream.size()}) {
        cHvx3Parser parser;
        for (const QByteArray &piece : cut(stream, size))
            parser.append(piece);
        const paravue::Hvx3Losses losses = parser.losses();
        QCOMPARE(losses.bytes, 5 + 4 + hvx3Data(99, 0, "unknown").size());
        QCOMPARE(losses.gaps, 3);
        QCOMPARE(losses.fragments, 1);
        QCOMPARE(losses.frames, 1);
        QCOMPARE(parser.header().name.value(), QByteArray("again", 6));
        QCOMPARE(parser.index().value2, 10u);
    }
}

/// The limit is 100 bytes. A text behind the bytes shows that parsing continues.
void TestHvx3Parser::dropsWhatIsTooLarge_data()
{
    const auto frame = [](int size) { return hvx3Frame(Video, QByteArray(size, 'x'), 10); };
    const QByteArray start = hvx3Header({{Video, 1, "", "", ""}, {Text, 4, "", "", ""}}, "n") + hvx3Index(1);
    const QByteArray name(100 - 8 - 1, 'n');

    const auto begun = [](int size) { return hvx3Data(Video, FirstFragment, QByteArray(size, 'x'), {}); };
    const QByteArray textBegun = hvx3Data(Text, FirstFragment, QByteArray(41, 'x'));
    const QByteArray textEnd = hvx3Data(Text, LastFragment, "x");

    using Sizes = QList<qsizetype>;
    const TestTable<QByteArray, Sizes> row("bytes", "sizes");
    row("frames at the limit", start + frame(100) + frame(100), {100, 100});
    row("frame beyond the limit", start + frame(101) + frame(100), {100});
    row("whole frame beyond the limit", start + hvx3Data(Video, WholeFrame, QByteArray(101, 'x'), {}), {});
    row("frames that are too large together", start + begun(60) + textBegun + textEnd + frame(59), {59});
    row("frames that are not", start + begun(58) + textBegun + textEnd, {42});
    row("frames begun anew", start + begun(60) + begun(90) + begun(59) + hvx3Index(2) + frame(100), {100});
    row("header at the limit", hvx3Header({}, name) + start, {});
    row("header beyond the limit", hvx3Header({}, name + "nn") + start, {});
    row("name without an end", hvx3Header({}, QByteArray(5000, 'n')) + hvx3Header({}, name + "nn") + start,
        {});
}

void TestHvx3Parser::dropsWhatIsTooLarge()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QList<qsizetype>, sizes);

    QStringList whole;
    for (const qsizetype pieceSize : {bytes.size() + 99, qsizetype(1), qsizetype(7)}) {
        cHvx3Parser parser;
        parser.setMaxFrameSize(100);
        const Records records(parser);
        for (const QByteArray &piece : cut(bytes + hvx3Data(Text, WholeFrame, "text"), pieceSize))
            parser.append(piece);
        QCOMPARE(records.sizes, sizes + QList<qsizetype>{4});
        if (whole.isEmpty())
            whole = records.list;
        QCOMPARE(records.list, whole);
    }
}

void TestHvx3Parser::receiverMayAppend()
{
    const QByteArray stream = usualHeader() + hvx3Index(1) + hvx3Data(Text, WholeFrame, "first") +
                              hvx3Data(Text, WholeFrame, "second");
    for (qsizetype border = 0; border < stream.size() - 10; ++border) {
        cHvx3Parser parser;
        const Records records(parser);
        connect(&parser, &cHvx3Parser::onDATA, this, [&parser](const DATA_T &frame) {
            if (frame.payload == "first")
                parser.append(hvx3Data(Text, WholeFrame, "third") + hvx3Index(2));
        });
        parser.append(stream.first(border));
        parser.append(stream.sliced(border));
        QCOMPARE(records.list.mid(2), QStringList({"data 2:4 c0 0,0,0 first", "data 2:4 c0 0,0,0 second",
                                                   "data 2:4 c0 0,0,0 third", "index 2 0 "}));
    }
}

/// The memory of a frame is used for the next one, unless a receiver has kept it.
void TestHvx3Parser::keepsFramesApart()
{
    cHvx3Parser parser;
    QList<QByteArray> kept;
    connect(&parser, &cHvx3Parser::onDATA, this, [&kept](const DATA_T &frame) {
        if (frame.payload.size() % 2 == 0)
            kept.append(frame.payload);
    });
    parser.append(usualHeader() + hvx3Index(1));
    for (int size = 2; size <= 1000; size += 2) {
        parser.append(hvx3Frame(Video, QByteArray(20'001, 'x'), 20'001));
        parser.append(hvx3Frame(Video, QByteArray(size, char(size)), size % 3 == 0 ? 100 : 1000));
    }
    QCOMPARE(kept.size(), 500);
    for (const QByteArray &payload : kept) {
        QCOMPARE(payload, QByteArray(payload.size(), char(payload.size())));
        QVERIFY(payload.capacity() <= 4 * payload.size() + 1024);
    }
}

/// Valid streams with random damage: no payload exceeds the limit, and pieces give the same records as the
/// whole.
void TestHvx3Parser::survivesDamage()
{
    std::mt19937 random(20);
    const auto upTo = [&random](qsizetype most) { return qsizetype(random() % quint64(most + 1)); };
    const QByteArray valid = richStream() + richStream();
    const QList<QByteArray> snippets{"",
                                     QByteArray(1, '\0'),
                                     hvx3Index(3),
                                     usualHeader(),
                                     hvx3Header({}).first(4),
                                     hvx3Data(Video, FirstFragment, QByteArray(90, 'f'), {1, 2, 3}),
                                     hvx3Data(Text, WholeFrame, QByteArray(300, 'w'))};
    for (int i = 0; i < 1000; ++i) {
        QByteArray stream = valid;
        for (qsizetype damage = upTo(8); damage >= 0; --damage) {
            const qsizetype at = upTo(stream.size());
            stream.replace(at, upTo(3), snippets.at(upTo(snippets.size() - 1)));
            if (at < stream.size())
                stream[at] = char(random());
        }
        QStringList whole;
        for (const qsizetype size : {stream.size(), 1 + upTo(20)}) {
            cHvx3Parser parser;
            parser.setMaxFrameSize(200);
            const Records records(parser);
            for (const QByteArray &piece : cut(stream, size))
                parser.append(piece);
            for (const qsizetype payload : records.sizes)
                QVERIFY(payload <= 200);
            if (whole.isEmpty())
                whole = records.list;
            QCOMPARE(records.list, whole);
        }
    }
}

void TestHvx3Parser::usesFieldsAsContainers()
{
    HDR_T header;
    const STREAM_T stream{1, 4, "one", QByteArray("two"), {}};
    header.name = "name";
    header.streams.append(stream);
    header.streams << STREAM_T{2, 1, {}, {}, {}} << stream;
    header.streams.push_back(header.streams.first());
    header.streams[1].label1 += "x";
    header.streams.last().streamId = 9;
    const HDR_T kept = header;
    QString ids;
    for (STREAM_T &one : header.streams)
        one.label3 = "-utf8";
    for (const STREAM_T &one : kept.streams)
        ids += QString::number(one.streamId) + QString::fromLatin1(one.label1) + one.label3;
    QCOMPARE(ids, QString("1one2x1one9one"));
    QVERIFY(header.streams.at(3).label3.endsWith("utf8") && kept.streams.at(3).label3.isEmpty());
    QCOMPARE(std::distance(header.streams.cbegin(), header.streams.cend()), 4);
    header.texts[1] = "koi8";
    QCOMPARE(header.texts.at(1), QByteArray("koi8"));
    QVERIFY(header.texts.contains("koi8") && header.texts.at(5).isEmpty() && kept.texts != header.texts);
    QCOMPARE(header.texts.indexOf("koi8"), 1);
    header.texts = {"a", "b"};
    QVERIFY((header.texts == QList<QByteArray>{"a", "b"}) && QList<QByteArray>() != header.texts);

    DATA_T data;
    data.stream = header.streams.constFirst();
    data.payload.append("abc").append('d');
    const DATA_T shared = data;
    data.payload += data.payload + "efg";
    data.payload[0] = 'A';
    *data.payload.begin() = 'B';
    data.payload.data()[1] = '-';
    QCOMPARE(data.payload, QByteArray("B-cdabcdefg"));
    QVERIFY(data.payload == "B-cdabcdefg" && "B-cdabcdefg" == data.payload && data.payload != shared.payload);
    QCOMPARE(shared.payload.toHex(), QByteArray("61626364"));
    QCOMPARE(shared.payload.mid(1, 2) + shared.payload.left(1) + shared.payload.right(1), QByteArray("bcad"));
    QCOMPARE(shared.payload.first(2) + shared.payload.last(1) + shared.payload[1], QByteArray("abdb"));
    QVERIFY(shared.payload.startsWith('a') && shared.payload.count() == 4 && shared.payload.length() == 4);
    QCOMPARE(std::string(shared.payload.constData(), shared.payload.size()), std::string("abcd"));
    QByteArray bytes = shared.payload;
    bytes += shared.payload;
    bytes.append(shared.payload);
    QCOMPARE(bytes, shared.payload + "abcdabcd");
    data.payload.resize(2);
    QCOMPARE(data.payload, "B-");
    data.payload.clear();
    QVERIFY(data.payload.isEmpty());
    data.payload = bytes;
    data.payload = {};
    QCOMPARE(data.payload, shared.stream.label2.mid(3));
}

QTEST_APPLESS_MAIN(TestHvx3Parser)
#include "tst_hvx3parser.moc"
