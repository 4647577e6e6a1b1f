#include "LiteralSettings.h"

#include "store/OrbSettings.h"
#include "support/OwnerOnly.h"
#include "support/TestTable.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <filesystem>
#include <optional>

using paravue::test::isForOwnerOnly;
using paravue::test::TestTable;

class TestOrbSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void values_data();
    void values();
    void merging_data();
    void merging();
    void untouchedLinesSurviveToTheByte();
    void aFileThatWasNotReadIsNotEmptied();
    void aFileThatCannotBeReadIsNotReplaced();
    void keysThatGrowWithTheNameOfTheirSectionAreRefused();
    void quotedQuoteVanishesFromTheValues();
    void aFileWithoutKeysGathersItsLines();
    void gatheredLinesAreBounded();
    void aLargeFileWithoutKeysIsReadOnce();
    void linksAndPermissionsStay();
    void aMissingFileIsReadOnceItIsThere();
    void setPathForgetsEverything();
    void flushKeepsValuesThatTheFileLost();
    void flushLeavesAFileInItsUsualFormAlone();
    void anUnwritableFileKeepsItsEdits();
    void whatIsPutBackIsNoEdit();
    void matchingGivesKeysInOrder();
    void agreesWithTheLiteralRules();
    void manyQuotedValuesAreWritten();

private:
    QByteArray content() const;
    void setContent(const QByteArray &bytes) const;

    std::optional<QTemporaryDir> m_folder;
    QString m_path;
};

void TestOrbSettings::init()
{
    m_folder.emplace();
    m_path = m_folder->filePath("general");
}

QByteArray TestOrbSettings::content() const
{
    QFile file(m_path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

void TestOrbSettings::setContent(const QByteArray &bytes) const
{
    QFile file(m_path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

void TestOrbSettings::values_data()
{
    const TestTable<QByteArray, QString, QString> row("file", "key", "value");
    row("before the first section", "a = 1\n", "untitled/a", "1");
    row("in a section", "[ s ]\r\na = 1\r\n", "s/a", "1");
    row("later duplicate", "a = 1\na = 2\n", "untitled/a", "2");
    row("section comes again", "[s]\na=1\n[t]\n[s]\nb=2\n", "s/b", "2");
    row("section without an end of line", "a=1\n[s]", "untitled/a", "1");
    row("last line unfinished", "a=1\nb=2", "untitled/b", "(none)");
    row("absent", "a=1\n", "untitled/A", "(none)");
    row("empty", "a=\n", "untitled/a", "");
    row("two CR", "a=1\r\r\n", "untitled/a", "(none)");
    row("not ASCII", "ключ = 'два слова'\r\n", "untitled/ключ", "два слова");
    row("no-break space in a value", "a=x\u00a0y\n", "untitled/a", "x\u00a0y");
    row("broken UTF-8", "a=x\xffy\n", "untitled/a", "x\ufffdy");
    row("byte-order mark", "\ufeffa=1\n", "untitled/a", "1");
}

void TestOrbSettings::values()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, key);
    setContent(file);
    OrbSettings settings(m_path);
    QTEST(settings.value(key, "(none)").toString(), "value");
}

void TestOrbSettings::merging_data()
{
    const TestTable<QByteArray, QString, QString, QByteArray> row("before", "key", "value", "after");
    row("usual form", "[s]\n a=\"x\"\n", "s/a", "12", "[s]\r\na = 12\r\n");
    row("other keys get it too", "[s]\r\na=007\r\nb=\n;c\r\n", "s/b", "",
        "[s]\r\na = '007'\r\nb = \r\n;c\r\n");
    row("new key behind the last one of its section", "[s]\na = 1\n\n[t]\nb = 2\n", "s/n", "x",
        "[s]\r\na = 1\r\nn = 'x'\r\n\r\n[t]\r\nb = 2\r\n");
    row("new key of the last section comes last", "[s]\na = 1\n; end\n", "s/n", "3",
        "[s]\r\na = 1\r\n; end\r\nn = 3\r\n");
    // Deliberate: a section without keys hands its new key on to the next one.
    row("new key of a section without keys", "[s]\n\n[t]\nb = 2\n[u]\nc = 3\n", "s/n", "4",
        "[s]\r\n\r\n[t]\r\nb = 2\r\nn = 4\r\n[u]\r\nc = 3\r\n");
    row("new section", "[s]\na = 1\n", "t/n", "5", "[s]\r\na = 1\r\n[ t ]\r\nn = 5\r\n");
    row("header in the last line", "a = 1\n[s]\n", "s/n", "6", "a = 1\r\n[s]\r\n[ s ]\r\nn = 6\r\n");
    row("file without sections drops the section", "a = 1\n", "s/n", "7", "a = 1\r\nn = 7\r\n");
    // Deliberate: a key is looked for behind each of its headers, up to the end of the file.
    row("section in two pieces", "[s]\na = 1\n[t]\na = 2\n[s]\n[u]\na = 3\n", "s/a", "8",
        "[s]\r\na = 8\r\n[t]\r\na = 2\r\n[s]\r\n[u]\r\na = 3\r\n");
    row("section in two pieces reaches into the next one", "[s]\na = 1\n[s]\n[b]\na = 3\n", "s/a", "8",
        "[s]\r\na = 8\r\n[s]\r\n[b]\r\na = 8\r\n");
    row("key before the first section has no header", "a = 1\n[s]\nb = 2\n", "untitled/a", "9",
        "a = 1\r\n[s]\r\nb = 2\r\n");
    row("every line feed becomes CR LF", "a = 1\n", "untitled/a", "x\ny\r\n", "a = 'x\r\ny\r\r\n'\r\n");
    row("section whose name holds a slash", "[/]\nb=1\n[s]\nc=1\n", "s/c", "2",
        "[/]\r\nb=1\r\n[s]\r\nc = 2\r\n");
    row("empty file", "", "s/n", "10", "n = 10\r\n");
}

void TestOrbSettings::merging()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, key);
    QFETCH(QString, value);
    setContent(before);
    {
        OrbSettings settings(m_path);
        settings.setValue(key, value);
        QCOMPARE(settings.value(key).toString(), value);
        QCOMPARE(content(), before); // nothing is written before it is asked for
    }
    QTEST(content(), "after");
}

void TestOrbSettings::untouchedLinesSurviveToTheByte()
{
    const QByteArray odd = "; \xc0\xff caf\xe9\r\n\xef\xbb\xbf;\r\nlone\rcarriage\r\n\tk = v \r\n";
    setContent(odd + "a = 1\r\n" + odd + "end");
    OrbSettings(m_path).value("untitled/a");
    QCOMPARE(content(), odd + "a = 1\r\n" + odd + "end");
}

void TestOrbSettings::aFileThatWasNotReadIsNotEmptied()
{
    setContent("a=1\n");
    {
        OrbSettings settings(m_path);
    }
    QCOMPARE(content(), "a = 1\r\n");
    setContent("a=2\n");
    OrbSettings settings(m_path);
    QVERIFY(settings.flush());
    QCOMPARE(settings.value("untitled/a").toString(), "2");
}

void TestOrbSettings::aFileThatCannotBeReadIsNotReplaced()
{
    QFile file(m_path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(paravue::IniText::SizeLimit + 1));
    file.close();
    {
        OrbSettings settings(m_path);
        settings.setValue("s/A", "1");
        QCOMPARE(settings.value("s/A").toString(), "1");
        QVERIFY(!settings.write());
        QVERIFY(!settings.isWritten());
    }
    QCOMPARE(QFileInfo(m_path).size(), paravue::IniText::SizeLimit + 1);
}

void TestOrbSettings::keysThatGrowWithTheNameOfTheirSectionAreRefused()
{
    constexpr int Size = 16 << 10; // of the name, and as many keys: 256 MiB
    QByteArray text = '[' + QByteArray(Size, 's') + "]\r\n";
    for (int key = 0; key < Size; ++key)
        text += 'k' + QByteArray::number(key) + "=1\r\n";
    setContent(text);
    {
        OrbSettings settings(m_path);
        QCOMPARE(settings.matching(".*"), QStringList());
        settings.setValue("s/A", "1");
        QVERIFY(!settings.write());
        QVERIFY(!settings.isWritten());
    }
    QCOMPARE(content(), text);

    setContent("[s]\r\nA=1\r\n");
    OrbSettings settings(m_path);
    QCOMPARE(settings.value("s/A").toString(), "1");
}

void TestOrbSettings::quotedQuoteVanishesFromTheValues()
{
    // Deliberate: there is no escape for a quote, and the line is no key line when it is read again.
    setContent("a = \"it's\"\r\nb = 1\r\n");
    {
        OrbSettings settings(m_path);
        QCOMPARE(settings.value("untitled/a").toString(), "it's");
    }
    QCOMPARE(content(), "a = 'it's'\r\nb = 1\r\n");
    OrbSettings settings(m_path);
    QVERIFY(!settings.value("untitled/a").isValid());
    QCOMPARE(settings.value("untitled/b").toString(), "1");
}

void TestOrbSettings::aFileWithoutKeysGathersItsLines()
{
    // Deliberate: such a file is read at each access, and what is read is added to what is held.
    setContent("; note\n[s]\n");
    {
        OrbSettings settings(m_path);
        settings.value("s/a");
        settings.value("s/a");
        QVERIFY(settings.flush());
        QCOMPARE(content(), "; note\r\n[s]\r\n; note\r\n[s]\r\n");
        settings.setValue("s/a", 1);
    }
    // Read by flush() and by setValue(): twice the four lines. The key comes behind them.
    const QByteArray twice = "; note\r\n[s]\r\n; note\r\n[s]\r\n";
    QCOMPARE(content(), twice + twice + "a = 1\r\n");
}

void TestOrbSettings::gatheredLinesAreBounded()
{
    const QByteArray note = '#' + QByteArray(1'000'000, '-') + "\r\n";
    setContent(note);
    {
        OrbSettings settings(m_path);
        for (int i = 0; i < 20; ++i)
            settings.value("s/a");
    }
    QVERIFY(content().size() > 10 * note.size());
    QVERIFY(content().size() <= 16 << 20);
    QCOMPARE(content().last(note.size()), note);
}

void TestOrbSettings::aLargeFileWithoutKeysIsReadOnce()
{
    // A window may ask for a value thousands of times.
    const auto write = [this](QByteArray content, int secondsAgo) {
        setContent(content.leftJustified(100'000, ';'));
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        const QDateTime time = QDateTime::fromSecsSinceEpoch(1'700'000'000 - secondsAgo);
        QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
    };
    write("; none\n;", 20);
    OrbSettings settings(m_path);
    QVERIFY(settings.value("s/a").isNull());
    write("[s]\na=1\n;", 20); // to be seen only by reading it
    QVERIFY(settings.value("s/a").isNull());
    write("[s]\na=1\n;", 10);
    QCOMPARE(settings.value("s/a"), "1");
}

void TestOrbSettings::linksAndPermissionsStay()
{
#ifdef Q_OS_WIN
    QSKIP("A shortcut is no link, and permissions are inherited.");
#endif
    setContent("a=1\n");
    const QFile::Permissions shared = QFile::permissions(m_path) | QFile::WriteGroup;
    QVERIFY(QFile::setPermissions(m_path, shared));
    const QString link = m_folder->filePath("link");
    QVERIFY(QFile::link(m_path, link));
    QVERIFY(OrbSettings(link).write());
    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(content(), "a = 1\r\n");
    QCOMPARE(QFile::permissions(m_path), shared);
}

void TestOrbSettings::aMissingFileIsReadOnceItIsThere()
{
    OrbSettings settings(m_path);
    QVERIFY(!settings.read());
    QCOMPARE(settings.value("s/a", 7).toInt(), 7);
    setContent("[s]\na=8\n");
    QCOMPARE(settings.value("s/a", 7).toInt(), 8);
}

void TestOrbSettings::setPathForgetsEverything()
{
    setContent("a=1\n");
    const QString other = m_folder->filePath("other");
    OrbSettings settings(other);
    settings.setValue("untitled/a", 5);
    settings.setPath(m_path);
    QVERIFY(!QFile::exists(other));
    QVERIFY(settings.flush()); // before anything was read from the new path
    QCOMPARE(content(), "a = 1\r\n");

    // The same path again: the file is read afresh.
    setContent("b=2\n");
    settings.setPath(m_path);
    QCOMPARE(settings.matching(".*"), QStringList("untitled/b/2"));
}

void TestOrbSettings::flushKeepsValuesThatTheFileLost()
{
    setContent("[s]\na=1\n");
    OrbSettings settings(m_path);
    settings.setValue("s/a", "it's");
    QVERIFY(settings.flush());
    QCOMPARE(settings.value("s/a").toString(), "it's");
    settings.setValue("s/b", 2);
    QVERIFY(settings.flush());
    QVERIFY(settings.flush());
    QCOMPARE(content(), "[s]\r\na = 'it's'\r\nb = 2\r\n");
}

void TestOrbSettings::flushLeavesAFileInItsUsualFormAlone()
{
    setContent("[s]\r\na=1\r\n");
    OrbSettings settings(m_path);
    QCOMPARE(settings.value("s/a").toInt(), 1);
    // A file that is written is a new one: the other name is still that of the old one.
    const std::filesystem::path path = m_path.toStdU16String();
    const auto isWrittenByFlush = [&] {
        const std::filesystem::path other = path.parent_path() / "other";
        std::filesystem::create_hard_link(path, other);
        settings.flush();
        const bool isWritten = !std::filesystem::equivalent(path, other);
        std::filesystem::remove(other);
        return isWritten;
    };
    QVERIFY(isWrittenByFlush());
    QVERIFY(!isWrittenByFlush());
    settings.setValue("s/a", "2");
    QVERIFY(isWrittenByFlush());
    QVERIFY(!isWrittenByFlush());
    setContent("[s]\r\na = 33\r\n");
    QVERIFY(isWrittenByFlush());
    QCOMPARE(content(), "[s]\r\na = 2\r\n");
}

void TestOrbSettings::anUnwritableFileKeepsItsEdits()
{
    OrbSettings settings(m_folder->filePath("missing/general"));
    settings.setValue("s/a", 1);
    QVERIFY(!settings.write());
    QVERIFY(settings.flush());
    QCOMPARE(settings.value("s/a").toInt(), 1);
    QVERIFY(QDir(m_folder->path()).mkdir("missing"));
    QVERIFY(settings.write());
    // What is made anew is for the user alone.
    QVERIFY(isForOwnerOnly(settings.path()));
}

void TestOrbSettings::whatIsPutBackIsNoEdit()
{
    setContent("[s]\r\na=1\r\n");
    OrbSettings settings(m_path);
    for (const char *value : {"2", "3"})
        settings.setValue("s/a", value);
    settings.setValue("s/new", "4");
    settings.putBack("s/a", "2");
    QCOMPARE(settings.value("s/a"), "2");
    settings.putBack("s/new", std::nullopt);
    QVERIFY(settings.hasEdits());
    settings.putBack("s/a", "1");
    QVERIFY(!settings.hasEdits());
    QVERIFY(settings.value("s/new").isNull());
    QCOMPARE(settings.matching(".*/.*"), QStringList("s/a/1"));
    QVERIFY(settings.flush());
    QCOMPARE(content(), "[s]\r\na = 1\r\n");

    settings.setValue("s/new", "5");
    settings.flush();
    settings.putBack("s/new", std::nullopt); // stands in the file by now
    QVERIFY(settings.hasEdits());
    QCOMPARE(settings.value("s/new"), "");
}

void TestOrbSettings::matchingGivesKeysInOrder()
{
    setContent("[Users]\nuser2=b\nuser10=c\nuser1=a/b\nadmin=d\n[Users2]\nuser1=e\n");
    OrbSettings settings(m_path);
    settings.setValue("Users/user3", "new");
    const QStringList expected{"Users/user1/a/b", "Users/user10/c", "Users/user2/b", "Users/user3/new"};
    QCOMPARE(settings.matching("Users/user[0-9]+"), expected);
    QCOMPARE(settings.matching("users/.*"), QStringList());
}

namespace
{

QByteArray pick(QRandomGenerator &random, std::initializer_list<const char *> choices)
{
    return choices.begin()[random.bounded(int(choices.size()))];
}

QByteArray randomSection(QRandomGenerator &random)
{
    return pick(random, {"s", "t", "u", "untitled"});
}

QByteArray randomName(QRandomGenerator &random)
{
    return pick(random, {"a", "b", "c", "[s]", "a=b", "[t", "n'", "\uE000", "\U0001F600"});
}

/// Anything that may stand in such a file.
QByteArray randomFile(QRandomGenerator &random)
{
    QByteArray file;
    for (int lines = random.bounded(14); lines > 0; --lines) {
        if (random.bounded(5) < 3)
            file += randomName(random) + pick(random, {"=", " = "}) +
                    pick(random, {"", "1", "007", "x y", "'x'", "\"it's\"", "\"it's\"", "б", "'"});
        else
            file += pick(random, {"[ s ]", "[t]", "[ u ] note", "[untitled]", "", "; note", " ", "k = 'it's'",
                                  "[ two words ]"});
        file += pick(random, {"\n", "\r\n", "\r\n", "\r\n"});
    }
    return random.bounded(5) == 0 ? file.trimmed() : file;
}

/// What recorders send: every section and every key once.
QByteArray randomTidyFile(QRandomGenerator &random)
{
    return pick(random, {"", "[ t ]\r\nc=1\na = 'x y'\r\n", "[ t ]\r\n[s] = 007\r\n;\r\n"}) +
           pick(random, {"", "[ s ]\r\na = \r\nn'=\"it's\"\n\r\n", "[s]\nb=1\n; note\r\n"}) +
           pick(random, {"", "[ untitled ]\r\na=\"it's\"\nc = 'x y'\r\n", "[ untitled ]\r\n"});
}

} // namespace

void TestOrbSettings::agreesWithTheLiteralRules()
{
    QRandomGenerator random(19);
    int changed = 0;
    for (int round = 0; round < 300; ++round) {
        const QByteArray file = round % 2 ? randomFile(random) : randomTidyFile(random);
        setContent(file);
        OrbSettings settings(m_path);
        LiteralSettings literal(file);
        QString story = QString::fromUtf8(file);
        for (int steps = random.bounded(1, 12); steps > 0; --steps) {
            QVERIFY2(settings.matching(".*") == literal.keysAndValues(), qPrintable(story));
            const QByteArray section = random.bounded(10) ? randomSection(random) : QByteArray(" t] y");
            const QByteArray name = random.bounded(4)
                                        ? randomName(random)
                                        : pick(random, {"new", "x y", "[t] y", "[s] y", "a\nb"});
            const QString key = QString::fromUtf8(section + '/' + name);
            const QString value =
                QString::fromUtf8(pick(random, {"", "5", "07", "x y", "it's", "\"", "x\ny", "\r", "б"}));
            const int action = random.bounded(10);
            const auto act = [&](auto &it) {
                if (action == 0)
                    it.write();
                else if (action == 1)
                    it.flush();
                else if (action == 2)
                    it.read();
                else
                    it.setValue(key, value);
            };
            act(settings);
            act(literal);
            story += QString("action %1, key %2, value %3\n").arg(QString::number(action), key, value);
        }
        settings.write();
        literal.write();
        QVERIFY2(content() == literal.file(), qPrintable(story + "expected\n" + literal.file()));
        changed += literal.file() != file;
        settings.setPath({}); // its destruction need not write once more
    }
    QVERIFY(changed > 200);
}

void TestOrbSettings::manyQuotedValuesAreWritten()
{
    // All lines have one name and cease to be key lines when they are written; new keys go into one place.
    // What such a file costs is measured in bench_ini.
    constexpr int Count = 1'000;
    QByteArray file;
    for (int i = 0; i < Count; ++i)
        file += "[s" + QByteArray::number(i) + "]\na = \"it's\"\n";
    setContent(file);
    OrbSettings settings(m_path);
    for (int i = 0; i < Count; ++i)
        settings.setValue(QString("s7/new%1").arg(i), i % 2 ? "it's" : "its");
    QVERIFY(settings.write());
    QCOMPARE(content().count("\r\na = 'it's'\r\n"), Count);
    QCOMPARE(content().count("\r\nnew"), Count);
}

QTEST_APPLESS_MAIN(TestOrbSettings)
#include "tst_orb_settings.moc"
