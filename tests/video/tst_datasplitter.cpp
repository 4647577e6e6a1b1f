#include "support/TestTable.h"
#include "video/cDataSplitter.h"

#include <functional>
#include <limits>

using paravue::test::TestTable;

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
    void keepsWhatItBorrows();
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
    const TestTable<int, Read> row("position", "read");
    // The buffer is five bytes, a zero and four letters.
    row("u8 at the end", 5, u8);
    row("u16 cut", 4, u16);
    row("u32 cut", 2, u32);
    row("bytes cut", 3, bytes(3));
    row("bytes beyond any buffer", 2, bytes(IntMax));
    row("negative count", 2, bytes(-1));
    row("position behind the end", 6, bytes(0));
    row("position beyond any buffer", IntMax, u32);
    row("negative position", -1, u8);
    row("text without its zero", 1, text);
    row("text at the end", 5, text);
    row("text behind the end", 9, text);
    row("text before the start", -1, text);
    row("consume too many", 0, consume(6));
    row("consume a negative count", 0, consume(-1));
}

void TestDataSplitter::shortInputChangesNothing()
{
    QFETCH(int, position);
    QFETCH(Read, read);

    const QByteArray buffer("\0abcd", 5);
    cDataSplitter splitter;
    splitter.append(buffer);
    int moved = position;
    QVERIFY(needsMore([&] { read(splitter, moved); }));
    QCOMPARE(moved, position);
    int start = 0;
    QCOMPARE(splitter.size(), buffer.size());
    QCOMPARE(splitter.readBytes(start, 5), buffer);
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
    QCOMPARE(splitter.cStringSize(-7), 0);
    QCOMPARE(splitter.readCString(position), QByteArray("names\0", 6));
    QCOMPARE(position, 7);
}

void TestDataSplitter::keepsWhatItBorrows()
{
    cDataSplitter splitter;
    QByteArray piece = "cdef";
    splitter.append("ab");
    splitter.borrow(piece);
    QCOMPARE(splitter.unread(), "abcdef");
    splitter.consume(6);
    splitter.borrow(piece);
    splitter.consume(1);
    QCOMPARE(splitter.unread().data(), piece.constData() + 1); // not copied
    splitter.keep();
    piece.fill('?');
    splitter.append("gh");
    QCOMPARE(splitter.unread(), "defgh");
}

void TestDataSplitter::survivesByteByByteUse()
{
    // Single bytes in, records of seven bytes out: the front is cut while the end grows.
    cDataSplitter splitter;
    int expected = 0;
    for (int i = 0; i < 70'000; ++i) {
        splitter.append(QByteArray(1, char(i)));
        int position = 0;
        if (!splitter.has(position, 7))
            continue;
        const QByteArray record = splitter.readBytes(position, 7);
        splitter.consume(position); // what was read stays
        for (const char byte : record)
            QCOMPARE(byte, char(expected++));
    }
    QCOMPARE(expected, 70'000);
    QCOMPARE(splitter.size(), 0);
    QVERIFY(!splitter.has(0, 1));
    QVERIFY(splitter.has(0, 0));
    splitter.consume(0);
}

QTEST_APPLESS_MAIN(TestDataSplitter)
#include "tst_datasplitter.moc"
