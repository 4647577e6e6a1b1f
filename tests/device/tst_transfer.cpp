#include "FakeRecorder.h"
#include "NotedStore.h"
#include "device/protocol/GzText.h"
#include "device/protocol/Limits.h"
#include "support/OwnerOnly.h"
#include "support/TemporaryPlace.h"
#include "support/TestTable.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QTemporaryDir>

#include <zlib.h>

using namespace paravue::test;

namespace
{

QByteArray gzipped(const QByteArray &text)
{
    constexpr int GzipFormat = 15 + 16;
    z_stream stream{};
    deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, GzipFormat, 8, Z_DEFAULT_STRATEGY);
    QByteArray result(qsizetype(deflateBound(&stream, uLong(text.size()))), '\0');
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(text.data()));
    stream.avail_in = uInt(text.size());
    stream.next_out = reinterpret_cast<Bytef *>(result.data());
    stream.avail_out = uInt(result.size());
    deflate(&stream, Z_FINISH);
    result.resize(qsizetype(stream.total_out));
    deflateEnd(&stream);
    return result;
}

const QMap<QString, QByteArray> &recorderFiles()
{
    static const QMap<QString, QByteArray> bodies{
        {"interface", gzipped("<pvsetup version=\"1.0\"/>")},
        {"streams", "[ stream_0 ]\nbrightness = 50\n"},
        {"net", "A=1\nB=2\n"},
        {"time", "YYYYMMDDHHMMSS=20260101120000\nTIME_ZONE='UTC-3'\n"},
        {"timers", "[ Timer1 ]\r\nfrom = 10\r\n"},
        {"soft", "PACKAGE_NAME_0=core\n"},
        {"disk", ""},
        {"users", "NAME0='admin'\n"},
        {"state", "ID=old\n"},
    };
    return bodies;
}

/// What a list of "difile" elements makes of a fetch.
QByteArray listing(const QByteArray &files)
{
    return "<pvsetup version=\"1.0\"><other><di><difile/></di></other><di>" + files + "</di><di/></pvsetup>";
}

qsizetype openDescriptors()
{
    return QDir("/proc/self/fd").entryList(QDir::Files | QDir::System).size();
}

} // namespace

class TestTransfer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fetchesAndSendsTheWholeTable();
    void sendsFilesAsTheyAre_data();
    void sendsFilesAsTheyAre();
    void doesNotInventATimeFile();
    void sendsTheEditedFileLastFetched();

    void followsTheListOfTheDescription();
    void keepsTheBuiltInList_data();
    void keepsTheBuiltInList();
    void unpacksDescriptions_data();
    void unpacksDescriptions();
    void doesNotTakeADamagedDescriptionForWhole();
    void refusesHugeDescriptions_data();
    void refusesHugeDescriptions();

    void appliesDirectives();
    void appliesDirectivesToTheTextAsItCame();
    void leavesOutAStateFileThatExplodes();

    void runsASingleCommand();
    void leavesNothingBehind();
    void survivesHundredsOfCommands();
};

void TestTransfer::fetchesAndSendsTheWholeTable()
{
    FakeRecorder recorder;
    recorder.login().fetchOf(recorderFiles()).expectClosed();
    // Neither "interface" nor "soft", whatever was edited in them. The clock is emptied.
    recorder.startConnection().login();
    recorder.reply("PUT CONFIG\r\nLENGTH=29\r\n[ stream_0 ]\nbrightness = 50\n");
    recorder.reply("PUT NET CONFIG\r\nLENGTH=8\r\nA=1\nB=2\n");
    recorder.reply("PUT TIME CONFIG\r\nLENGTH=38\r\nYYYYMMDDHHMMSS = \nTIME_ZONE = 'UTC-3'\n");
    recorder.reply("PUT TIMER CONFIG\r\nLENGTH=21\r\n[ Timer1 ]\nfrom = 10\n");
    recorder.reply("PUT DISK CONFIG\r\nLENGTH=0\r\n");
    recorder.reply("PUT USER CONFIG\r\nLENGTH=14\r\nNAME0='admin'\n");
    recorder.reply("PUT STATE CONFIG\r\nLENGTH=7\r\nID=old\n").expectClosed();
    NotedStore store(recorder.address());
    QVERIFY(store.fetch());
    QCOMPARE(std::exchange(store.percents, {}), QList<int>({0, 11, 22, 33, 44, 55, 66, 77, 88, 100}));
    QCOMPARE(store.activities.first(), "Fetching \"interface\"");
    QCOMPARE(store.activities.at(8), "Fetching \"state\"");
    QCOMPARE(std::exchange(store.activities, {}).last(), QString());
    QMap<QString, QByteArray> expected = recorderFiles();
    expected["interface"] = "<pvsetup version=\"1.0\"/>";
    for (const char *sectionless : {"net", "time", "soft", "disk", "users"})
        expected[sectionless].prepend("[ untitled ]\r\n");
    for (auto file = expected.cbegin(); file != expected.cend(); ++file) {
        QCOMPARE(store.content(file.key()), file.value());
        QCOMPARE(store.content(file.key() + ".original"), file.value());
    }

    store.setValue("soft/untitled/PACKAGE_NAME_0/x");
    store.setValue("interface/untitled/x/y");
    QVERIFY(store.sendAll());
    QCOMPARE(store.faultsWith(recorder), QStringList());
    QCOMPARE(store.percents, QList<int>({11, 22, 33, 44, 66, 77, 88, 100}));
    QCOMPARE(store.activities.first(), "Sending \"streams\"");
    QCOMPARE(store.content("net.original"), expected["net"]);
    QCOMPARE(store.value("net/untitled/A"), "1");
    QCOMPARE(store.value("streams/stream_0/brightness"), "50");
}

void TestTransfer::sendsFilesAsTheyAre_data()
{
    const TestTable<QByteArray, QByteArray> row("file", "body");
    row("nothing: the line goes alone", "", "");
    row("untitled header alone", "[ untitled ]\r\n", "LENGTH=0\r\n");
    row("untitled header of another form", "[ untitled ]\nA=1\n", "LENGTH=17\r\n[ untitled ]\nA=1\n");
    row("untitled header later", "A=1\r\n[ untitled ]\r\n", "LENGTH=17\r\nA=1\n[ untitled ]\n");
    row("only one untitled header", "[ untitled ]\r\n[ untitled ]\r\n", "LENGTH=13\r\n[ untitled ]\n");
    row("line ends", "a\r\n\r\nb\r\r\nc\rd\n", "LENGTH=10\r\na\n\nb\r\nc\rd\n");
    row("any bytes", QByteArray("\0\xff\r\n\x04", 5), QByteArray("LENGTH=4\r\n\0\xff\n\x04", 14));
}

void TestTransfer::sendsFilesAsTheyAre()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, body);
    FakeRecorder recorder;
    recorder.login().reply("PUT X\r\n" + body).expectClosed();
    NotedStore store(recorder.address());
    QVERIFY(store.runCommand("PUT X\r\n", file, true));
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

void TestTransfer::doesNotInventATimeFile()
{
    FakeRecorder recorder;
    recorder.login();
    for (const char *what : {"", "NET ", "TIME ", "TIMER ", "DISK ", "USER ", "STATE "})
        recorder.reply(QByteArray("PUT ") + what + "CONFIG\r\n");
    recorder.expectClosed();
    NotedStore store(recorder.address());
    QVERIFY(store.sendAll());
    QCOMPARE(store.faultsWith(recorder).size(), 7);
    QVERIFY(!store.fileExists("time"));
    QCOMPARE(store.errors.first(), "File \"streams\" does not exist");
}

void TestTransfer::sendsTheEditedFileLastFetched()
{
    const QByteArray list =
        listing("<difile/><difile name='n' type='sectionless' get_command='G' put_command='P'/>");
    FakeRecorder recorder;
    recorder.login().reply("GET SETUP\r\n", list).reply("G\r\n", "A=1\nB=1\n").expectClosed();
    recorder.startConnection().login().reply("GET SETUP\r\n", list);
    recorder.reply("G\r\n", "# comment\nA=2\nC='two words'\n").expectClosed();
    recorder.startConnection().login();
    recorder.reply("P\r\nLENGTH=52\r\n# comment\nA = 7\nC = 'two words'\nNAME = '\xd0\xb4\xd0\xb0 or no'\n");
    recorder.expectClosed();
    NotedStore store(recorder.address());
    QVERIFY(store.fetch());
    store.setValue("n/untitled/B/9");
    QVERIFY(store.fetch());
    QCOMPARE(store.value("n/untitled/A"), "2");
    QCOMPARE(store.value("n/untitled/B"), "");
    store.setValue("n/untitled/A/7");
    store.setValue("n/untitled/NAME/да or no");
    QVERIFY(store.sendAll());
    QCOMPARE(store.faultsWith(recorder), QStringList());
    QCOMPARE(store.content("n.original"), "[ untitled ]\r\n# comment\nA=2\nC='two words'\n");
}

void TestTransfer::followsTheListOfTheDescription()
{
    const QByteArray list =
        listing("<difile name='interface' get_command='GET SETUP'/>"
                "<difile name='a' get_command='GET A' type='sectionless' put_command='PUT A'/>"
                "<skipped name='x' get_command='GET X'/>"
                "<difile name='b' put_command='PUT B'/>"
                "<difile name='c' get_command='GET C' type='inifile'/>"
                "<difile name='\xd0\xb4' get_command='GET D' put_command='PUT D' type='state'/>");
    FakeRecorder recorder;
    recorder.login().reply("GET SETUP\r\n", gzipped(list));
    recorder.reply("GET A\r\n", "A=1\n")
        .reply("GET C\r\n", "C=1\n")
        .reply("GET D\r\n", "k\n#!s/k/v{a/untitled/A}/\n");
    recorder.expectClosed();
    recorder.startConnection().login();
    recorder.reply("PUT A\r\nLENGTH=6\r\nA = 1\n").reply("PUT B\r\n");
    recorder.reply("PUT D\r\nLENGTH=27\r\nv1\n#!s/v1/v{a/untitled/A}/\n");
    recorder.expectClosed();
    NotedStore store(recorder.address());
    QVERIFY(store.fetch());
    QCOMPARE(store.percents, QList<int>({0, 20, 60, 80, 100}));
    QCOMPARE(store.content("a"), "[ untitled ]\r\nA=1\n");
    QCOMPARE(store.content("c"), "C=1\n");
    QVERIFY(!store.fileExists("streams"));
    QCOMPARE(store.errors, QStringList());
    QVERIFY(store.sendAll());
    QCOMPARE(store.faultsWith(recorder), QStringList("File \"b\" does not exist"));
}

void TestTransfer::keepsTheBuiltInList_data()
{
    const TestTable<QByteArray> row("description");
    row("no list", "<a><b><di><difile/></di></b></a>");
    row("not well-formed behind the list", "<a><di/></b>");
    row("cut", "<a><di><difile/></di>");
    row("two documents", "<a><di/></a><a/>");
    row("empty", "");
    row("no XML", "<di");
    row("entities", "<!DOCTYPE a [<!ENTITY e 'x'>]><a><di/></a>");
    row("nested too deep",
        "<a><di/>" + QByteArray("<b>").repeated(100) + QByteArray("</b>").repeated(100) + "</a>");
}

void TestTransfer::keepsTheBuiltInList()
{
    QFETCH(QByteArray, description);
    QMap<QString, QByteArray> files = recorderFiles();
    files["interface"] = description;
    FakeRecorder recorder;
    recorder.login().fetchOf(files).expectClosed();
    NotedStore store(recorder.address());
    QVERIFY(store.fetch());
    QCOMPARE(store.content("interface"), description);
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

void TestTransfer::unpacksDescriptions_data()
{
    const TestTable<QByteArray, QByteArray> row("packed", "content");
    const QByteArray text = QByteArray("<a>text</a>\n").repeated(20'000);
    const QByteArray gzip = gzipped(text);
    row("gzip", gzip, text);
    row("plain text passes through", text, text);
    row("two members", gzip + gzipped("end"), text + "end");
    row("bytes behind are dropped", gzip + "rubbish", text);
    const QByteArray largest(paravue::MaxDescriptionBytes, ' ');
    row("largest", gzipped(largest), largest);
    row("empty", "", "");
    row("first byte of a gzip header only", "\x1f", "\x1f");
}

void TestTransfer::unpacksDescriptions()
{
    QFETCH(QByteArray, packed);
    QFETCH(QByteArray, content);
    NotedStore store(":@");
    store._push_gzfile("x", packed);
    QCOMPARE(store.content("x"), content);
    QCOMPARE(store.content("x.original"), content);
    // What is there of a cut one is kept.
    const auto half = paravue::gunzipped(packed.first(packed.size() / 2), paravue::MaxDescriptionBytes);
    QVERIFY(half && content.startsWith(*half) && half->size() >= content.size() / 4);
}

void TestTransfer::doesNotTakeADamagedDescriptionForWhole()
{
    const QByteArray text = QByteArray("<a>text</a>\n").repeated(20'000);
    const QByteArray packed = gzipped(text);
    for (qsizetype i = 0; i < packed.size(); ++i) {
        QByteArray damaged = packed;
        damaged[i] = char(damaged[i] ^ 0x55);
        const auto content = paravue::gunzipped(damaged, paravue::MaxDescriptionBytes);
        // The first ten bytes hold a mark, without which the data is none, and fields that do not matter.
        QVERIFY(i < 10 || (content && *content != text));
    }
}

void TestTransfer::refusesHugeDescriptions_data()
{
    const TestTable<QByteArray, QString> row("description", "error");
    row("text", gzipped(QByteArray(paravue::MaxDescriptionBytes + 1, ' ')),
        "File \"interface\" is too large");
    row("files", listing(QByteArray("<difile/>").repeated(1001)),
        "The interface description lists more than 1000 files");
}

void TestTransfer::refusesHugeDescriptions()
{
    QFETCH(QByteArray, description);
    QFETCH(QString, error);
    QMap<QString, QByteArray> files = recorderFiles();
    files["interface"] = description;
    FakeRecorder recorder;
    recorder.login().fetchOf(files).expectClosed();
    NotedStore store(recorder.address());
    QVERIFY(store.fetch());
    QCOMPARE(store.faultsWith(recorder), QStringList(error));
}

void TestTransfer::appliesDirectives()
{
    NotedStore store(":@");
    store._push_file("net", "[ a ]\r\nip = '10.0.0.5'\r\n");
    store._push_statefile("state", "\n[ s ]\nID=old\nNAME=x\n#!s/'old'/'{net/a/ip}'/\n");
    store.setValue("state/s/NAME/edited");
    QVERIFY(store._compile_state("state"));
    const QByteArray expected =
        "\r\n[ s ]\r\nID = '10.0.0.5'\r\nNAME = 'edited'\r\n#!s/'10.0.0.5'/'{net/a/ip}'/\r\n";
    QCOMPARE(store.content("state"), expected);
    QCOMPARE(store.value("state/s/ID"), "10.0.0.5");

    // A directive may read the file that it stands in.
    store._push_statefile("own", "\n[ s ]\nip old\nB = 2\n#!s/ip old/ip {own/s/B}/\n");
    QVERIFY(store._compile_state("own"));
    const QByteArray applied = "\n[ s ]\nip 2\nB = 2\n#!s/ip 2/ip {own/s/B}/\n";
    QCOMPARE(store.content("own"), applied);
    store.flush();
    QCOMPARE(store.content("state"), expected);
    QCOMPARE(store.content("own").replace("\r\n", "\n"), applied);
}

/// Neither a look at the values of a state file nor a directive that reads another one changes what is sent.
void TestTransfer::appliesDirectivesToTheTextAsItCame()
{
    const QByteArray files = listing("<difile name='s' type='state' put_command='PUT S'/>"
                                     "<difile name='t' type='state' put_command='PUT T'/>");
    FakeRecorder recorder;
    for (int save = 0; save < 2; ++save) {
        if (save > 0)
            recorder.startConnection();
        recorder.login()
            .reply("PUT S\r\nLENGTH=30\r\nID=new\n#!s/ID=new/ID={n/x/A}/\n")
            .reply("PUT T\r\nLENGTH=39\r\nNO=new\n#!s/NO=new/NO={s/untitled/ID}/\n ")
            .expectClosed();
    }
    NotedStore store(recorder.address());
    store._push_file("interface", files);
    store._push_file("n", "[ x ]\r\nA = 'new'\r\n");
    store._push_statefile("s", "ID=old\n#!s/ID=old/ID={n/x/A}/\n");
    store._push_statefile("t", "NO=old\n#!s/NO=old/NO={s/untitled/ID}/\n ");
    QCOMPARE(store.value("s/untitled/ID"), "old");
    QVERIFY(store.sendAll());
    QCOMPARE(store.value("s/untitled/ID"), "new");
    QVERIFY(store.sendAll());
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

void TestTransfer::leavesOutAStateFileThatExplodes()
{
    const QByteArray state = "a\n#!s/\\x61/aa{x/y/z/1}/\n";
    FakeRecorder recorder;
    recorder.login().reply("PUT N\r\n").expectClosed();
    NotedStore store(recorder.address());
    store._push_file("n", "");
    store._push_file("x", "");
    store._push_statefile("s", state);
    store._push_file("interface", listing("<difile name='s' type='state' put_command='PUT S'/>"
                                          "<difile name='n' put_command='PUT N'/>"));
    store.store();
    QCOMPARE(store.faultsWith(recorder), QStringList("The directives of file \"s\" make it too large"));
    AWAIT_COMPARE(store.m_operation, 0);
    QCOMPARE(store.stores, 0);
    QCOMPARE(store.content("s"), state);
}

void TestTransfer::runsASingleCommand()
{
    FakeRecorder recorder;
    recorder.login().reply("GET REPORT\r\n", "all is well\n").expectClosed();
    recorder.startConnection().login().reply("DO X\r\nLENGTH=4\r\nK=1\n").expectClosed();
    NotedStore store(recorder.address());
    QVERIFY(store.runCommand("GET REPORT\r\n", "", false));
    QCOMPARE(store.content("tmp"), "all is well\n");
    QVERIFY(store.runCommand("DO X\r\n", "K=1\r\n", true));
    QCOMPARE(store.content("tmp.original"), "K=1\r\n");
    QCOMPARE(store.faultsWith(recorder), QStringList());
    QCOMPARE(store._to_cmdstring("GET X"), "GET X\r\n");
    QCOMPARE(store._to_cmdstring(""), "");
}

void TestTransfer::leavesNothingBehind()
{
    QTemporaryDir folder;
    const QByteArray before = qgetenv(TemporaryFolderVariable);
    qputenv(TemporaryFolderVariable, folder.path().toLocal8Bit());
    const auto restore = qScopeGuard([&before] { qputenv(TemporaryFolderVariable, before); });
    const auto filesLeft = [&folder] {
        QFileInfoList files;
        QDirIterator file(folder.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (file.hasNext()) {
            file.next();
            files << file.fileInfo();
        }
        return files;
    };
    {
        FakeRecorder recorder;
        recorder.login().fetchOf(recorderFiles()).expectClosed();
        NotedStore store(recorder.address());
        QVERIFY(store.fetch());
        // Nine files and "general", each with its copy; what was unpacked is gone already.
#ifdef Q_OS_WIN
        constexpr int lock = 1; // of the session's folder
#else
        constexpr int lock = 0;
#endif
        QCOMPARE(filesLeft().size(), 20 + lock);
        for (const QFileInfo &file : filesLeft())
            QVERIFY(isForOwnerOnly(file.filePath()));
        store.setValue("net/untitled/A/secret");
    }
    QVERIFY(QDir(folder.path()).isEmpty());
}

void TestTransfer::survivesHundredsOfCommands()
{
    if (!QFileInfo::exists("/proc/self/fd"))
        QSKIP("Open descriptors cannot be counted here");
    NotedStore store(":@");
    const qsizetype before = openDescriptors();
    for (int i = 0; i < 300; ++i)
        store._push_file("tmp", "x");
    QVERIFY(openDescriptors() <= before + 2);
}

QTEST_GUILESS_MAIN(TestTransfer)
#include "tst_transfer.moc"
