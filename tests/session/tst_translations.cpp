#include "FakeRecorder.h"
#include "ModalWatcher.h"
#include "OwnUserFolders.h"
#include "SetupRun.h"
#include "check/DescriptionCheck.h"
#include "controls/AlarmZoneEditor.h"
#include "device/login/SettingsFile.h"
#include "recorder/RecorderServer.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QAccessible>
#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QLibraryInfo>
#include <QProcess>
#include <QPushButton>
#include <QSet>
#include <QStandardPaths>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTranslator>

using namespace paravue;
using namespace paravue::test;

namespace
{

/// A translator that notes what is looked up in contexts of ours, and what of it is not found.
class NotingTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *text, const char *comment, int number) const override
    {
        const QString found = QTranslator::translate(context, text, comment, number);
        // The contexts of Qt are the names of its classes.
        if (*context != 'Q') {
            contexts.insert(context);
            if (found.isEmpty())
                missing.append(QStringLiteral("%1: %2").arg(context, text));
        }
        return found;
    }

    mutable QSet<QByteArray> contexts;
    mutable QStringList missing;
};

/// The program of Qt; empty when it is not installed.
QString qtProgram(const QString &name)
{
    return QStandardPaths::findExecutable(name, {QLibraryInfo::path(QLibraryInfo::BinariesPath)});
}

QString run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    const bool isDone = process.waitForFinished() && process.exitCode() == 0;
    return isDone ? QString() : program + ": " + process.errorString() + process.readAll();
}

void addText(QDomElement &element, const QString &text)
{
    element.appendChild(element.ownerDocument().createTextNode('[' + text + ']'));
}

/// Writes each text in brackets as its own translation.
bool translateAll(const QString &catalogue)
{
    QFile file(catalogue);
    QDomDocument document;
    if (!file.open(QIODevice::ReadWrite) || !document.setContent(&file))
        return false;
    const QDomNodeList messages = document.elementsByTagName("message");
    for (int i = 0; i < messages.size(); ++i) {
        QDomElement translation = messages.at(i).firstChildElement("translation");
        translation.removeAttribute("type");
        const QString text = messages.at(i).firstChildElement("source").text();
        QDomNodeList forms = translation.elementsByTagName("numerusform");
        for (int form = 0; form < forms.size(); ++form) {
            QDomElement element = forms.at(form).toElement();
            addText(element, text);
        }
        if (forms.isEmpty())
            addText(translation, text);
    }
    return file.resize(0) && file.seek(0) && file.write(document.toByteArray()) > 0;
}

/// Asks for everything that a screen reader can be told of this part of a window.
void readAloud(QAccessibleInterface *part)
{
    if (!part)
        return;
    for (const QAccessible::Text kind : {QAccessible::Name, QAccessible::Description, QAccessible::Value})
        part->text(kind);
    for (int i = 0; i < part->childCount(); ++i)
        readAloud(part->child(i));
}

/// Brings each page to the front and tells all of it to a screen reader.
void visitPages(CWinMain &window)
{
    auto *tabs = window.findChild<QTabWidget *>("tabWidget");
    for (int page = 0; page < tabs->count(); ++page) {
        tabs->setCurrentIndex(page);
        readAloud(QAccessible::queryAccessibleInterface(&window));
    }
}

QByteArray calling(const QByteArray &slot, const QByteArray &param)
{
    return "<item type='pushbutton'><action type='call' slot='" + slot + "' param='" + param +
           "'>self</action></item>";
}

/// Mistakes of a description that the window tells of, and some that only a check does.
QByteArray faultyDescription()
{
    return "<pvsetup version='1.0'><window><self/><timetask type='blink'/>"
           "<timetask type='v3getjpeg' period='1'>"
           "<url>http://{general/network/url}/none.jpg</url><target>yard</target></timetask>"
           "<timetask type='startVideoOnline' period='1'><url/><target>gate</target></timetask>"
           "</window><tabwidget><tab><item type='edit'/><item type='gridlayout'>"
           "<stretch column='2000'>1</stretch><item type='hologram'/><item type='edit' row='2000'/>"
           "<item type='edit' minvalue='x' validator='['><key>nowhere</key></item>"
           "<item type='label'><text>@nothing {streams/common}</text></item>"
           "<item type='online'><yard/></item><item type='online'><gate/></item>" +
           calling("showDialog", "none") + calling("fileDialog", "open") + calling("fileDialog", "a,b,c,d") +
           calling("settingsSlot", "write,a,none") + calling("saveFileAs", "streams") +
           calling("accessListSlot", "none") + calling("accessListSlot", "edit") +
           calling("softListSlot", "none") + calling("softListSlot", "remove") +
           "</item></tab></tabwidget><di><difile name='a/b'/></di></pvsetup>";
}

} // namespace

/// The catalogue that translators work on holds every text in the context in which the library looks it up.
class TestTranslations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void everyControl();
    void aFaultyDescription();
    void theLogin();
    void theMessagesOfAStore();
    void theAnswersOfARecorder_data();
    void theAnswersOfARecorder();
    void theCheckOfADescription_data();
    void theCheckOfADescription();

private:
    QString address(const QString &password = QStringLiteral("admin")) const;
    void writeDescription(const QByteArray &text);

    OwnUserFolders m_user;
    NotingTranslator m_translator;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<recorder::RecorderServer> m_recorder;
    QStringList m_expectedContexts; ///< of the test function that runs
};

void TestTranslations::initTestCase()
{
    const QString lupdate = qtProgram("lupdate");
    const QString lrelease = qtProgram("lrelease");
    if (lupdate.isEmpty() || lrelease.isEmpty())
        QSKIP("lupdate and lrelease are not installed");
    const QTemporaryDir folder;
    const QString catalogue = folder.filePath("texts.ts");
    const QString sources = QStringLiteral(SOURCE_FOLDER);
    QCOMPARE(run(lupdate, {"-silent", "-target-language", "en", "-I", sources, sources, "-ts", catalogue}),
             QString());
    QVERIFY(translateAll(catalogue));
    const QString compiled = folder.filePath("texts.qm");
    QCOMPARE(run(lrelease, {"-silent", catalogue, "-qm", compiled}), QString());
    QVERIFY(m_translator.load(compiled));
    QVERIFY(QCoreApplication::installTranslator(&m_translator));
}

void TestTranslations::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_recorder = std::make_unique<recorder::RecorderServer>(m_folder->path(), "everything");
    QVERIFY2(m_recorder->listen(), qPrintable(m_recorder->errorString()));
    m_translator.contexts.clear();
    m_translator.missing.clear();
    m_expectedContexts.clear();
}

void TestTranslations::cleanup()
{
    QCOMPARE(m_translator.missing.join(u'\n'), QString());
    for (const QString &context : std::as_const(m_expectedContexts))
        QVERIFY2(m_translator.contexts.contains(context.toUtf8()), qPrintable(context));
}

QString TestTranslations::address(const QString &password) const
{
    return QStringLiteral("admin:%1@127.0.0.1:%2").arg(password, QString::number(qint16(m_recorder->port())));
}

void TestTranslations::writeDescription(const QByteArray &text)
{
    QFile file(m_recorder->filePath("interface"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
}

void TestTranslations::everyControl()
{
    Session session(address());
    QVERIFY(session.isFine());
    CWinMain &window = *session.window;
    quint32 now = 0;
    window.setTaskClock([&now] { return now; });
    window.show();
    visitPages(window);
    const auto isSaid = [&](const char *context) {
        return waitUntil([&] {
            now += 500;
            window.timeout();
            return m_translator.contexts.contains(context);
        });
    };
    QVERIFY(isSaid("PictureStatus"));
    m_recorder->close(); // pictures end
    QVERIFY(isSaid("paravue::HttpPictureReceiver"));
    visitPages(window);
    auto *zones = window.findChild<AlarmZoneEditor *>();
    QTest::keyClick(zones, Qt::Key_Space);
    readAloud(QAccessible::queryAccessibleInterface(zones));
    QTest::keyClick(window.findChild<QWidget *>("scheduleGrid"), Qt::Key_Space);
    m_expectedContexts = {"CWinMain",
                          "OrbNetSetup",
                          "OrbProgressPie",
                          "PictureTask",
                          "paravue::AlarmZoneEditor",
                          "paravue::CellGridEditor",
                          "paravue::EditActions",
                          "paravue::K9mButton",
                          "paravue::LiveView",
                          "paravue::LoadingView",
                          "paravue::MaskEditor",
                          "paravue::PackageListView",
                          "paravue::PictureView",
                          "paravue::PtzCalibrator",
                          "paravue::PtzView",
                          "paravue::ScheduleGrid",
                          "paravue::ScheduleTexts",
                          "paravue::WeekSchedule",
                          "paravue::WindowHeader"};
}

void TestTranslations::aFaultyDescription()
{
    writeDescription(faultyDescription());
    const ModalWatcher messages;
    const Session session(address());
    visitPages(*session.window);
    for (QPushButton *button :
         session.window->findChild<QTabWidget *>("tabWidget")->findChildren<QPushButton *>())
        button->click();
    QVERIFY(messages.hasSeen());
    QCOMPARE(messages.title(), "[Paravue Setup]");
    m_expectedContexts = {"CWinMain", "OrbSetup", "PictureTask"};
}

void TestTranslations::theLogin()
{
    QVERIFY(QDir().mkpath(QFileInfo(m_user.settingsPath()).path()));
    QFile settings(m_user.settingsPath());
    QVERIFY(settings.open(QIODevice::WriteOnly) && settings.write("damaged") > 0);
    settings.close();
    const ModalWatcher dialogs({}, "cDlg");
    const ModalWatcher messages;
    OrbNetSetup store(address("wrong"));
    CWinMain window(&store, nullptr);
    AWAIT_VERIFY(messages.hasSeen());
    QCOMPARE(dialogs.title(), "[Dialog]");
    QVERIFY(dialogs.texts().constFirst().contains("[The recorder has refused the login.]"));
    QCOMPARE(messages.texts().constFirst(), "[Authorization failed]\n[The recorder has refused the login]");
    m_expectedContexts = {"cDlg", "OrbNetSetup", "paravue::LoadingView"};
}

void TestTranslations::theMessagesOfAStore()
{
    m_recorder->close();
    OrbNetSetup store("nobody");
    const QSignalSpy errors(&store, &OrbSetup::pseudothrow);
    store.load();
    store.value("key");
    store.setValue("key");
    store.regexp_values("key");
    store.value("nowhere/section/key");
    store.function("soft_istall_packet", "general/no/package");
    store.setAddress(address());
    store.load();
    store.load(); // while it is busy
    AWAIT_COMPARE(errors.size(), 9);
    for (const QList<QVariant> &error : errors)
        QVERIFY2(error.constFirst().toString().startsWith('['), qPrintable(error.constFirst().toString()));
    m_expectedContexts = {"OrbNetSetup", "OrbSetup"};
}

void TestTranslations::theAnswersOfARecorder_data()
{
    const TestTable<QByteArray, QString> row("answer", "message");
    row("error", FakeRecorder::frame("", "VORN_ANSWER=ERROR:busy\r\n"), "[Device error \"busy\"]");
    row("of another form", FakeRecorder::frame("", "VORN_ANSWER=MAYBE\r\n"),
        "[Unrecognized device error \"VORN_ANSWER=MAYBE\r\n\"]");
    row("none", "LENGTH=2\r\nab", "[Wrong device answer]");
}

void TestTranslations::theAnswersOfARecorder()
{
    QFETCH(QByteArray, answer);
    QFETCH(QString, message);
    FakeRecorder recorder;
    recorder.login().expect("GET SETUP\r\n").send(answer);
    OrbNetSetup store(recorder.address());
    const QSignalSpy errors(&store, &OrbSetup::pseudothrow);
    store.load();
    AWAIT_COMPARE(errors.size(), 1);
    QCOMPARE(errors.constFirst().constFirst().toString(), message);
}

void TestTranslations::theCheckOfADescription_data()
{
    const TestTable<QByteArray, QString> row("description", "context");
    row("faulty", faultyDescription(), "DescriptionCheck");
    row("no description", "<a/>", "CWinMain");
    row("too much of something", "<!DOCTYPE p [<!ENTITY a 'b'>]><pvsetup/>", "XmlLimits");
}

void TestTranslations::theCheckOfADescription()
{
    QFETCH(QByteArray, description);
    QFETCH(QString, context);
    writeDescription(description);
    const auto problems = checkDescription(m_recorder->filePath("interface"), m_folder->path());
    QVERIFY(!problems.isEmpty());
    for (const DescriptionProblem &problem : problems)
        QVERIFY2(problem.text.contains('['), qPrintable(problem.text));
    m_expectedContexts = {context};
}

QTEST_MAIN(TestTranslations)
#include "tst_translations.moc"
