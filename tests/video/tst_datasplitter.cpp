#include "video/cDataSplitter.h"

#include <QTest>

#include <functional>
#include <limits>

namespace
{

constexpr int IntMax = std::numeric_limits<int>::max();

/// Runs \a read and tells whether it asked for more data, which must be an empty byte array.
bool needsMore(const std::function<void()> &read)
{
    try {
        read();
    } catch (const QByteArray &signal) {
        return signal.isEmpty();
    }
    return false;
}

using Read = std::function<void(cDataSplitter &, int &)>;

} // namespace

class TestDataSplitter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsFieldsInOrder();
    void shortInputChangesNothing_data();
    void shortInputChangesNothing();
    void cStringWaitsForItsZero();
    void consumesFromTheFront();
    void survivesByteByByteUse();
};

void TestDataSplitter::readsFieldsInOrder()
{
    cDataSplitter splitter;
    splitter.append(QByteArray::fromHex("fe"
                                        "0180"
                                        "b505b5b5"
                                        "610000"
                                        "00ff10"));
    int position = 0;
    QCOMPARE(splitter.readU8(position), quint8(0xfe));
    QCOMPARE(splitter.readU16(position), quint16(0x8001));
    QCOMPARE(splitter.readU32(position), quint32(0xb5b505b5));
    QCOMPARE(position, 7);
    QCOMPARE(splitter.readCString(position), QByteArray("a\0", 2));
    QCOMPARE(splitter.readCString(position), QByteArray("\0", 1));
    QCOMPARE(splitter.readBytes(position, 3), QByteArray::fromHex("00ff10"));
    QCOMPARE(position, 13);
    QCOMPARE(splitter.readBytes(position, 0), QByteArray());
    QCOMPARE(position, 13);
    QCOMPARE(splitter.size(), 13);
}

void TestDataSplitter::shortInputChangesNothing_data()
{
    QTest::addColumn<QByteArray>("buffer");
    QTest::addColumn<int>("position");
    QTest::addColumn<Read>("read");

    const Read u8 = [](cDataSplitter &splitter, int &position) { splitter.readU8(position); };
    const Read u16 = [](cDataSplitter &splitter, int &position) { splitter.readU16(position); };
    const Read u32 = [](cDataSplitter &splitter, int &position) { splitter.readU32(position); };
    const Read text = [](cDataSplitter &splitter, int &position) { splitter.readCString(position); };
    const auto bytes = [](int n) -> Read {
        return [n](cDataSplitter &splitter, int &position) { splitter.readBytes(position, n); };
    };
    const auto consume = [](int n) -> Read {
        return [n](cDataSplitter &splitter, int &) { splitter.consume(n); };
    };
    const QByteArray four("abcd");

    QTest::newRow("u8 of nothing") << QByteArray() << 0 << u8;
    QTest::newRow("u8 at the end") << four << 4 << u8;
    QTest::newRow("u16 cut") << four << 3 << u16;
    QTest::newRow("u32 cut") << four << 1 << u32;
    QTest::newRow("bytes cut") << four << 2 << bytes(3);
    QTest::newRow("bytes beyond any buffer") << four << 2 << bytes(IntMax);
    QTest::newRow("negative count") << four << 2 << bytes(-1);
    QTest::newRow("position behind the end") << four << 5 << bytes(0);
    QTest::newRow("position beyond any buffer") << four << IntMax << u32;
    QTest::newRow("negative position") << four << -1 << u8;
    QTest::newRow("text without its zero") << four << 0 << text;
    QTest::newRow("text at the end") << QByteArray("ab\0", 3) << 3 << text;
    QTest::newRow("text behind the end") << QByteArray("ab\0", 3) << 9 << text;
    QTest::newRow("text before the start") << QByteArray("ab\0", 3) << -1 << text;
    QTest::newRow("consume too many") << four << 0 << consume(5);
    QTest::newRow("consume a negative count") << four << 0 << consume(-1);
}

void TestDataSplitter::shortInputChangesNothing()
{
    QFETCH(QByteArray, buffer);
    QFETCH(int, position);
    QFETCH(Read, read);

    cDataSplitter splitter;
    splitter.append(buffer);
    int moved = position;
    QVERIFY(needsMore([&] { read(splitter, moved); }));
    QCOMPARE(moved, position);
    int start = 0;
    QCOMPARE(splitter.size(), buffer.size());
    QCOMPARE(splitter.readBytes(start, int(buffer.size())), buffer);
}

void TestDataSplitter::cStringWaitsForItsZero()
{
    cDataSplitter splitter;
    splitter.append("xname");
    int position = 1;
    QCOMPARE(splitter.cStringSize(position), 0);
    QVERIFY(needsMore([&] { splitter.readCString(position); }));
    splitter.append(QByteArray("s\0rest", 6));
    QCOMPARE(splitter.cStringSize(position), 6);
    QCOMPARE(splitter.readCString(position), QByteArray("names\0", 6));
    QCOMPARE(position, 7);
}

void TestDataSplitter::consumesFromTheFront()
{
    cDataSplitter splitter;
    splitter.append("abcdef");
    int position = 2;
    const QByteArray kept = splitter.readBytes(position, 2);
    splitter.consume(4);
    QCOMPARE(kept, QByteArray("cd"));
    position = 0;
    QCOMPARE(splitter.readBytes(position, 2), QByteArray("ef"));
    splitter.consume(0);
    splitter.consume(2);
    QCOMPARE(splitter.size(), 0);
    QVERIFY(!splitter.has(0, 1));
    QVERIFY(splitter.has(0, 0));
}

void TestDataSplitter::survivesByteByByteUse()
{
    // Single bytes in, records of seven bytes out: the front is cut while the end grows.
    cDataSplitter splitter;
    int expected = 0;
    for (int i = 0; i < 70'000; ++i) {
        splitter.append(QByteArray(1, char(i)));
        int position = 0;
        if (!splitter.has(position, 7)) {
            continue;
        }
        const QByteArray record = splitter.readBytes(position, 7);
        for (const char byte : record) {
            QCOMPARE(byte, char(expected++));
        }
        splitter.consume(position);
    }
    QCOMPARE(expected, 70'000);
    QCOMPARE(splitter.size(), 0);
}

QTEST_APPLESS_MAIN(TestDataSplitter)
#include "tst_datasplitter.moc"
