#include "support/Hvx3Bytes.h"
#include "video/cHvx3Demuxer.h"
#include "video/cHvx3Parser.h"

#include <QRegularExpression>
#include <QTest>

using namespace paravue::test;

namespace
{

/// A consumer that notes its calls in a journal that all share.
class Noter : public QObject
{
    Q_OBJECT

public:
    Noter(const QByteArray &name, QList<QByteArray> &journal) : m_name(name), m_journal(journal) {}

public Q_SLOTS:
    void create() { note("create()"); }
    bool create(const QString &text)
    {
        note("create " + text.toUtf8());
        return false; // ignored by the demuxer
    }
    void append(const QByteArray &bytes) { note("append " + bytes); }
    void append(quint64 time) { note("append " + QByteArray::number(time)); }

private:
    void note(const QByteArray &what) { m_journal << m_name + ": " + what; }

    QByteArray m_name;
    QList<QByteArray> &m_journal;
};

/// A consumer with the slots for video only.
class VideoConsumer : public QObject
{
    Q_OBJECT

public:
    QList<QByteArray> frames;

public Q_SLOTS:
    void create(const QString &) {}
    void append(const QByteArray &bytes) { frames << bytes; }
};

QByteArray operator""_z(const char *text, size_t size)
{
    return QByteArray(text, static_cast<qsizetype>(size) + 1);
}

} // namespace

class TestHvx3Demuxer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void passesHeadersToConsumers();
    void emitsTheTimeBeforeAFrame();
    void skipsMissingConsumers();
    void skipsMissingSlots();

private:
    using Journal = QList<QByteArray>;

    void consume(int key, const QByteArray &name)
    {
        m_noters.push_back(std::make_unique<Noter>(name, m_journal));
        m_demuxer->consumers()[key] = m_noters.back().get();
    }
    Journal play(const QByteArray &stream)
    {
        m_journal.clear();
        m_parser->append(stream);
        return m_journal;
    }

    std::unique_ptr<cHvx3Parser> m_parser;
    std::unique_ptr<cHvx3Demuxer> m_demuxer;
    std::vector<std::unique_ptr<Noter>> m_noters;
    Journal m_journal;
};

void TestHvx3Demuxer::init()
{
    m_parser = std::make_unique<cHvx3Parser>();
    m_demuxer = std::make_unique<cHvx3Demuxer>();
    connect(m_parser.get(), &cHvx3Parser::onHDR, m_demuxer.get(), &cHvx3Demuxer::hdr_slot);
    connect(m_parser.get(), &cHvx3Parser::onIDX, m_demuxer.get(), &cHvx3Demuxer::idx_slot);
    connect(m_parser.get(), &cHvx3Parser::onDATA, m_demuxer.get(), &cHvx3Demuxer::data_slot);
    connect(m_demuxer.get(), &cHvx3Demuxer::onCreate, this, [this] { m_journal << "onCreate"; });
    connect(m_demuxer.get(), &cHvx3Demuxer::timer, this,
            [this](quint64 time) { m_journal << "timer " + QByteArray::number(time); });
}

void TestHvx3Demuxer::cleanup()
{
    m_noters.clear();
}

void TestHvx3Demuxer::passesHeadersToConsumers()
{
    for (int id = 0; id < 10; ++id)
        consume(id, QByteArray::number(id));
    consume(998, "name");
    consume(999, "clock");
    consume(1001, "title 1");
    consume(1008, "title 8");
    consume(1009, "title 9");
    const QByteArray tags = "\1-koi8"_z + "\2local"_z;
    const QByteArray header = hvx3Header({{0, 1, "mp4v"},
                                          {1, 1, "mjpeg", "North gate"},
                                          {2, 1, "H264"},
                                          {3, 1, "h264"},
                                          {4, 2},
                                          {5, 4, "", "", "-utf8"},
                                          {6, 4, "", "", "-koi8"},
                                          {7, 4, "", "", "UTF-8"},
                                          {8, 16, "", "Alarms"},
                                          {9, 0},
                                          {200, 1}},
                                         "Yard", tags);
    QCOMPARE(play(header),
             Journal({"onCreate", "0: create mpeg4", "1: create mjpeg", "2: create h264", "3: create ",
                      "4: create()", "5: create UTF-8", "6: create KOI-8", "7: create ", "name: create KOI-8",
                      "name: append Yard"_z, "clock: create local", "title 1: create KOI-8",
                      "title 1: append North gate"_z, "title 8: create KOI-8", "title 8: append Alarms"_z}));
}

void TestHvx3Demuxer::emitsTheTimeBeforeAFrame()
{
    consume(0, "video");
    consume(1, "text");
    consume(999, "clock");
    play(hvx3Header({{0, 1}, {1, 4}, {2, 1}}));
    QCOMPARE(play(hvx3Index(1000)), Journal({"timer 1000000", "clock: append 1000000"}));
    QCOMPARE(play(hvx3Data(0, WholeFrame, "frame", {.word16 = 250})),
             Journal({"timer 1000250", "clock: append 1000250", "video: append frame"}));
    QCOMPARE(play(hvx3Data(1, WholeFrame, "words")), Journal({"text: append words"}));
    QCOMPARE(play(hvx3Data(2, WholeFrame, "unused", {.word16 = 1})), Journal());
    QCOMPARE(play(hvx3Index(0xffffffff)), Journal({"timer 4294967295000", "clock: append 4294967295000"}));
}

void TestHvx3Demuxer::skipsMissingConsumers()
{
    consume(0, "video");
    consume(1, "text");
    QVERIFY(!m_demuxer->consumers()[2]);
    m_noters.erase(m_noters.begin());
    const QByteArray stream = hvx3Header({{0, 1}, {1, 4}, {2, 2}}) + hvx3Index(1) +
                              hvx3Data(0, WholeFrame, "frame", {}) + hvx3Data(1, WholeFrame, "words") +
                              hvx3Data(2, WholeFrame, "plain");
    QCOMPARE(play(stream), Journal({"onCreate", "text: create UTF-8", "timer 1000", "text: append words"}));
    m_demuxer->create();
    QCOMPARE(play(hvx3Data(1, WholeFrame, "words")), Journal());
}

void TestHvx3Demuxer::skipsMissingSlots()
{
    VideoConsumer video;
    m_demuxer->consumers()[0] = &video;
    m_demuxer->consumers()[999] = &video;
    QTest::failOnWarning(QRegularExpression("."));
    play(hvx3Header({{0, 2}, {0, 1}}) + hvx3Index(1) + hvx3Data(0, WholeFrame, "frame"));
    QCOMPARE(video.frames, Journal({"frame"}));
}

QTEST_APPLESS_MAIN(TestHvx3Demuxer)
#include "tst_hvx3demuxer.moc"
