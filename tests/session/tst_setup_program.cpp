#include "OwnUserFolders.h"
#include "recorder/RecorderServer.h"
#include "recorder/files/Gzip.h"
#include "setup/CommandLine.h"
#include "setup/RecorderAddress.h"
#include "setup/SetupProgram.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QAccessible>
#include <QApplication>
#include <QCryptographicHash>
#include <QDialog>
#include <QDir>
#include <QDirIterator>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QMessageBox>
#include <QNetworkProxy>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <csignal>
#include <functional>

using namespace paravue;

namespace
{

struct Run {
    int exitCode = -1;
    QString out;
    QString err;
};

Run runProgram(const QStringList &arguments, const QString &platform = "offscreen",
               const QString &temporaryFolder = QDir::tempPath(),
               const QString &input = QProcess::nullDevice())
{
    QProcess process;
    process.setStandardInputFile(input);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", platform);
    environment.insert("TMPDIR", temporaryFolder);
    process.setProcessEnvironment(environment);
    QEventLoop loop; // keeps a recorder of this process answering
    QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
    process.start(SETUP_PROGRAM, arguments);
    QTimer::singleShot(60'000, &loop, &QEventLoop::quit);
    loop.exec();
    if (process.state() != QProcess::NotRunning)
        return {};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

QString addressOf(const recorder::RecorderServer &recorder, const QString &account)
{
    return account + "@127.0.0.1:" + QString::number(recorder.port());
}

QPushButton *buttonWithText(const QWidget &window, const QString &text)
{
    for (QPushButton *button : window.findChildren<QPushButton *>()) {
        if (button->text() == text)
            return button;
    }
    return nullptr;
}

/// Acts as the user of a session: does \a act to the topmost window whenever there is one.
class User
{
public:
    explicit User(const std::function<void(QWidget &)> &act)
    {
        QObject::connect(&m_timer, &QTimer::timeout, [act] {
            // Not from here: a timer whose receiver waits in a dialog is not called again.
            if (QWidget *top = QApplication::activeModalWidget())
                QTimer::singleShot(0, top, [act, top] { act(*top); });
        });
        m_timer.start(20);
    }

private:
    QTimer m_timer;
};

/// The share of the pixels that are far from grey, as those of a camera's picture are.
double colouredShare(const QImage &image)
{
    int coloured = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            const auto [least, most] = std::minmax({qRed(pixel), qGreen(pixel), qBlue(pixel)});
            coloured += most - least > 40;
        }
    }
    return double(coloured) / (image.width() * image.height());
}

} // namespace

class TestSetupProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void readsAddresses_data();
    void readsAddresses();
    void showsTextWithoutAScreen();
    void refusesWrongUsage_data();
    void refusesWrongUsage();

    void checksDescriptions_data();
    void checksDescriptions();
    void previewsOnCopies();
    void takesPicturesOfAPreview();
    void takesPicturesOfTheDemo();
    void failsInsteadOfHanging_data();
    void failsInsteadOfHanging();

    void saysWhyItCannotStart_data();
    void saysWhyItCannotStart();
    void refusesALanguageThatTheDescriptionLacks_data();
    void refusesALanguageThatTheDescriptionLacks();
    void takesPicturesOfWholePages();
    void writesALogWithoutSecrets();
    void waitsNoLongerThanItMay();
    void endsLikeTheSessionThatShowsNothing_data();
    void endsLikeTheSessionThatShowsNothing();

    void leavesNoFilesWhenItIsEnded_data();
    void leavesNoFilesWhenItIsEnded();
    void leavesNoFilesOfAKilledRun_data();
    void leavesNoFilesOfAKilledRun();
    void finishesTheSaveOfAnAcceptedWindow();
    void endsWithOneWhenCancelled();
    void tellsWhenTheSaveFails();
    void isCancelledWhenASignalStopsTheSave_data();
    void isCancelledWhenASignalStopsTheSave();
    void asksForALoginOnce();

private:
    CommandLine sessionWithTheRecorder(const QString &account = "admin:admin@") const;
    ExitCode runSessionAs(const CommandLine &commandLine, const std::function<void(QWidget &)> &user);
    ExitCode runSessionAs(const std::function<void(QWidget &)> &user);

    test::OwnUserFolders m_user;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<recorder::RecorderServer> m_recorder;
    QStringList m_received;
};

void TestSetupProgram::initTestCase()
{
    QApplication::setQuitOnLastWindowClosed(false);
}

void TestSetupProgram::init()
{
    m_received.clear();
    m_folder = std::make_unique<QTemporaryDir>();
    m_recorder = std::make_unique<recorder::RecorderServer>(m_folder->filePath("data"));
    QVERIFY2(m_recorder->listen(), qPrintable(m_recorder->errorString()));
    connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this,
            [this](const QString &name) { m_received += name; });
}

void TestSetupProgram::readsAddresses_data()
{
    const test::TestTable<QStringList, QString> row("arguments", "address");
    row("no port", {"a:b@host"}, "a:b@host");
    row("port", {"a:b@host:32767"}, "a:b@host:32767");
    row("port beyond 15 bits", {"a:b@host:32768"}, "a:b@host:-32768");
    row("last port", {"a:b@host:65535"}, "a:b@host:-1");
    row("no login", {"host:40000", "--digest"}, "host:-25536");
    row("separators in login and password", {"a:b:c@d@host"}, "a:b:c@d@host");
    row("typed password", {"admin:admin@host", "--digest"}, "admin:21232f297a57a5a743894a0e4a801fc3@host");
}

void TestSetupProgram::readsAddresses()
{
    QFETCH(QStringList, arguments);
    const CommandLine read = CommandLine::parse(QStringList("paravue-setup") + arguments);
    QCOMPARE(read.text, QString());
    QTEST(read.address, "address");
}

void TestSetupProgram::showsTextWithoutAScreen()
{
    const Run help = runProgram({"--help"}, "nosuchplatform");
    QCOMPARE(help.exitCode, 0);
    QVERIFY2(help.out.contains("--screenshot") && help.out.contains("Exit code"), qPrintable(help.out));
    QVERIFY2(help.out.startsWith("Usage: paravue-setup [options] [ADDRESS]\n"), qPrintable(help.out));
    const Run version = runProgram({"--version"}, "nosuchplatform");
    QCOMPARE(version.exitCode, 0);
    QCOMPARE(version.out.trimmed(), "paravue-setup " PARAVUE_VERSION);
    const Run zones = runProgram({"--time-zones", "--language", "ru"}, "nosuchplatform");
    QCOMPARE(zones.exitCode, 0);
    QVERIFY(zones.out.split('\n').contains(QString("UTC-3").leftJustified(44) +
                                           "UTC+3, Москва, Минск, Стамбул, Эр-Рияд"));
}

void TestSetupProgram::refusesWrongUsage_data()
{
    const test::TestTable<QStringList, QString> row("arguments", "reason");
    const QString address = "admin:s3cret@host";
    row("nothing", {}, "no address");
    row("two addresses", {address, address}, "more than one address");
    row("unknown option", {address, "--nonsense"}, "nonsense");
    row("no login", {"s3cret@host"}, "[login:password@]host[:port]");
    row("no host", {"admin:s3cret@"}, "names no host");
    row("port 0", {address + ":0"}, "port must be");
    row("port too large", {address + ":65536"}, "port must be");
    row("port is a word", {address + ":http"}, "port must be");
    row("IPv6", {"admin:s3cret@::1"}, "IPv6");
    row("demo and address", {"--demo", address}, "takes no address");
    row("demo data without demo", {"--demo-data", "x", address}, "needs --demo");
    row("no folder for pictures", {address, "--screenshot", ""}, "needs a value");
    row("check nothing", {"--check", ""}, "--check needs a value");
    row("check and address", {"--check", "x", address}, "take no recorder");
    row("preview and demo", {"--preview", "x", "--demo"}, "take no recorder");
    row("check and preview", {"--check", "x", "--preview", "x"}, "exclude");
    row("pictures of a check", {"--check", "x", "--screenshot", "x"}, "no window");
    row("files of a recorder", {address, "--files", "x"}, "--files needs");
    row("preview for programs", {"--preview", "x", "--json"}, "--json needs");
    row("time without a unit", {address, "--timeout", "soon"}, "--timeout takes a number of seconds");
    row("unknown style", {address, "--style", "fusion"}, "--style takes light, dark or system");
    row("no file for the log", {address, "--log", ""}, "needs a value");
    row("language with a value", {address, "--language", "en/x"}, "a language is");
}

void TestSetupProgram::refusesWrongUsage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, reason);
    const Run run = runProgram(arguments, "nosuchplatform");
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.out, QString());
    QVERIFY2(run.err.contains(reason), qPrintable(run.err));
    QVERIFY2(!run.err.contains("s3cret"), qPrintable(run.err));
}

void TestSetupProgram::checksDescriptions_data()
{
    // %1: the file
    const test::TestTable<QByteArray, QStringList, int, QString> row("text", "options", "exitCode", "out");
    const QByteArray broken("<pvsetup><buttonOK><action type='call' slot='accept'>w</action></buttonOK>\n "
                            "<window><w/><timetask type='x'/><width>y</width></window>\n</pvsetup>");
    row("clean", "<pvsetup/>", {}, 0, "%1: errors: 0, warnings: 0\n");
    row("warning", "<pvsetup><window><width>y</width></window></pvsetup>", {}, 0,
        "%1:1:1: warning: OK does nothing: there is no \"buttonOK\" with a call\n"
        "%1:1:18: warning: \"y\" is no number and counts as 0\n"
        "%1: errors: 0, warnings: 2\n");
    row("error", broken, {}, 1,
        "%1:2:14: error: Unknown time task \"x\"\n"
        "%1:2:34: warning: \"y\" is no number and counts as 0\n"
        "%1: errors: 1, warnings: 1\n");
    row("for programs", broken, {"--json"}, 1,
        R"({"errors":1,"file":"%1","problems":[{"column":14,"line":2,)"
        R"("severity":"error","text":"Unknown time task \"x\""},{"column":34,)"
        R"("line":2,"severity":"warning","text":"\"y\" is no number and )"
        R"(counts as 0"}],"warnings":1})");
    row("no such folder", broken, {"--files", "nosuch"}, 6, "");
}

void TestSetupProgram::checksDescriptions()
{
    QFETCH(QByteArray, text);
    QFETCH(QStringList, options);
    QFETCH(QString, out);
    QFile file(m_folder->filePath("described"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
    file.close();
    const Run run = runProgram(QStringList{"--check", file.fileName()} + options, "nosuchplatform");
    QTEST(run.exitCode, "exitCode");
    const QJsonDocument json = QJsonDocument::fromJson(run.out.toUtf8());
    QCOMPARE(json.isNull() ? run.out : QString(json.toJson(QJsonDocument::Compact)),
             QString(out).replace("%1", file.fileName()));
    const Run piped = runProgram(QStringList{"--check", "-"} + options, "nosuchplatform", QDir::tempPath(),
                                 file.fileName());
    QCOMPARE(piped.exitCode, run.exitCode);
    QCOMPARE(piped.out, QString(run.out).replace(file.fileName(), "<stdin>"));
}

void TestSetupProgram::previewsOnCopies()
{
    // The simulator has just put its files there: the description and all the others.
    const QDir folder(m_folder->filePath("data"));
    const auto contents = [&folder] {
        QMap<QString, QByteArray> contents;
        for (const QFileInfo &info : folder.entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
            QFile file(info.filePath());
            if (file.open(QIODevice::ReadOnly))
                contents.insert(info.fileName(), file.readAll() + info.lastModified().toString().toUtf8());
        }
        return contents;
    };
    const auto before = contents();
    QVERIFY(before.size() >= 9);

    CommandLine commandLine;
    commandLine.description = m_recorder->filePath("interface");
    commandLine.filesFolder = folder.path();
    commandLine.language = "en";
    QString shown;
    QString picture;
    const auto proxy = [] { return QNetworkProxy::applicationProxy(); };
    const QNetworkProxy usual = proxy();
    QNetworkProxy meanwhile;
    const ExitCode code = runSessionAs(commandLine, [&](QWidget &top) {
        meanwhile = proxy();
        for (QWidget *child : top.findChildren<QWidget *>()) {
            if (child->inherits("paravue::LiveView"))
                picture = QAccessible::queryAccessibleInterface(child)->text(QAccessible::Value);
        }
        for (QLineEdit *name : top.findChildren<QLineEdit *>()) {
            if (name->text() != "Warehouse recorder")
                continue;
            shown = name->text();
            name->setText("changed");
        }
        if (top.inherits("paravue::ReviewDialog"))
            QTest::keyClick(&top, Qt::Key_Return);
        else if (QPushButton *save = buttonWithText(top, "Save"))
            save->click();
    });
    QCOMPARE(code, ExitCode::Done);
    QCOMPARE(picture, "No video in a preview");
    QVERIFY(meanwhile.type() == QNetworkProxy::HttpProxy && meanwhile.port() == 0); // leads nowhere
    QCOMPARE(proxy(), usual);
    QVERIFY2(!shown.isEmpty() && before.value("streams").contains(shown.toUtf8()), qPrintable(shown));
    QCOMPARE(contents(), before);
    QCOMPARE(m_received, QStringList());
}

void TestSetupProgram::takesPicturesOfAPreview()
{
    const QDir pictures(m_folder->filePath("pictures"));
    QFile plain(m_recorder->filePath("interface"));
    QFile packed(m_folder->filePath("interface.gz")); // as the recorder sends it
    QVERIFY(plain.open(QIODevice::ReadOnly) && packed.open(QIODevice::WriteOnly));
    packed.write(recorder::gzip(plain.readAll()));
    packed.close();
    const Run run =
        runProgram({"--preview", packed.fileName(), "--language", "en", "--screenshot", pictures.path()});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    const QStringList names = pictures.entryList({"*.png"}, QDir::Files, QDir::Name);
    QCOMPARE(names.value(0), "01-overview.png");
    QCOMPARE(runProgram({"--preview", "nosuch", "--screenshot", pictures.path()}).exitCode, 6);
}

void TestSetupProgram::takesPicturesOfTheDemo()
{
    const QDir pictures(m_folder->filePath("pictures"));
    const QString data = m_folder->filePath("demo");
    const Run run =
        runProgram({"--demo", "--demo-data", data, "--language", "en", "--screenshot", pictures.path()});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QVERIFY(QFile::exists(data + "/streams"));

    const QStringList names = pictures.entryList({"*.png"}, QDir::Files, QDir::Name);
    QVERIFY2(names.size() >= 8, qPrintable(names.join(' ')));
    QCOMPARE(run.out.split('\n', Qt::SkipEmptyParts).size(), names.size());
    QCOMPARE(names.first(), "01-overview.png");
    QVERIFY2(names.contains("02-cameras-02-camera-2.png"), qPrintable(names.join(' ')));
    QList<QImage> seen;
    for (const QString &name : names) {
        const QImage picture(pictures.filePath(name));
        QVERIFY(picture.width() > 300 && picture.height() > 200);
        QVERIFY2(!seen.contains(picture), qPrintable(name + " shows the same as another one"));
        seen += picture;
    }
    const QImage live(pictures.filePath("03-live.png"));
    QVERIFY2(colouredShare(live) > 0.1, "the page with video shows none");
}

void TestSetupProgram::failsInsteadOfHanging_data()
{
    const test::TestTable<QString, bool, int, QString> row("account", "isListening", "exitCode", "reason");
    row("wrong password", "admin:s3cret", true, 4,
        "Authorization failed: The recorder has refused the login");
    row("nobody listens", "admin:s3cret", false, 3, "Network error 0: The recorder refuses the connection");
    row("description is no XML", "admin:admin", true, 7, ":1.9");
}

void TestSetupProgram::failsInsteadOfHanging()
{
    QFETCH(QString, account);
    QFETCH(bool, isListening);
    QFETCH(int, exitCode);
    QFETCH(QString, reason);
    const QString address = addressOf(*m_recorder, account);
    if (!isListening)
        m_recorder->close();
    QFile description(m_recorder->filePath("interface"));
    QVERIFY(description.open(QIODevice::WriteOnly));
    description.write("<pvsetup>");
    description.close();

    const Run run = runProgram({address, "--screenshot", m_folder->filePath("pictures")});
    QCOMPARE(run.exitCode, exitCode);
    QVERIFY2(!run.err.contains("s3cret"), qPrintable(run.err));
    QVERIFY2(run.err.contains(reason), qPrintable(run.err));
}

void TestSetupProgram::saysWhyItCannotStart_data()
{
    const test::TestTable<QStringList, QString, int, QString> row("arguments", "platform", "exitCode",
                                                                  "reason");
    row("no screen", {"nobody:x@127.0.0.1:1"}, "xcb", 2, "there is no screen");
    row("unknown model", {"--demo", "--model", "other", "--screenshot", "x"}, "offscreen", 2,
        "there is no model \"other\", only: standard, everything");
    row("nothing to check", {"--check", "/no/such/file"}, "none", 6,
        "/no/such/file cannot be read: No such file");
    row("no folder for the log", {"--demo", "--log", "/no/such/folder/log"}, "offscreen", 6,
        "The log /no/such/folder/log cannot be written");
}

void TestSetupProgram::saysWhyItCannotStart()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, platform);
    QFETCH(QString, reason);
    qunsetenv("DISPLAY");
    qunsetenv("WAYLAND_DISPLAY");
    const Run run = runProgram(arguments, platform);
    QTEST(run.exitCode, "exitCode");
    QVERIFY2(run.err.contains(reason), qPrintable(run.err));
}

void TestSetupProgram::refusesALanguageThatTheDescriptionLacks_data()
{
    const test::TestTable<QByteArray, QString> row("description", "reason");
    row("others", {}, "no texts in the language \"de\", only in: en, ru");
    row("none", "<pvsetup version='1.0'><tabwidget><tab/></tabwidget></pvsetup>", "has no translations");
}

void TestSetupProgram::refusesALanguageThatTheDescriptionLacks()
{
    QFETCH(QByteArray, description);
    QFETCH(QString, reason);
    if (!description.isEmpty()) {
        QFile file(m_recorder->filePath("interface"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(description) > 0);
    }
    CommandLine commandLine = sessionWithTheRecorder();
    commandLine.language = "de";
    QString message;
    QCOMPARE(runSessionAs(commandLine,
                          [&](QWidget &top) {
                              if (auto *box = qobject_cast<QMessageBox *>(&top)) {
                                  message = box->text();
                                  box->close();
                              }
                          }),
             ExitCode::WrongUsage);
    QVERIFY2(message.contains(reason), qPrintable(message));
    const Run run = runProgram({addressOf(*m_recorder, "admin:admin"), "--language", "de", "--screenshot",
                                m_folder->filePath("pictures")});
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.err.contains(reason), qPrintable(run.err));
    QCOMPARE(run.out, "");
}

void TestSetupProgram::takesPicturesOfWholePages()
{
    QByteArray rows;
    for (int i = 0; i < 60; ++i)
        rows += "<item type='label' row='" + QByteArray::number(i) + "'><text>line</text></item>";
    // The last row is the only thing with a colour.
    rows += "<item type='pushbutton' row='60'><text>end</text><color>red</color></item>";
    QFile description(m_folder->filePath("long.xml"));
    QVERIFY(description.open(QIODevice::WriteOnly));
    description.write("<pvsetup version='1.0'><tabwidget><tab><name>long</name><item type='gridlayout'>" +
                      rows +
                      "</item></tab><tab><name>short</name><item type='gridlayout'><item "
                      "type='label'><text>x</text></item></item></tab>"
                      "</tabwidget></pvsetup>");
    description.close();
    const QDir pictures(m_folder->filePath("pictures"));
    const Run run = runProgram({"--preview", description.fileName(), "--screenshot", pictures.path()});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    const QImage whole(pictures.filePath("01-long.png"));
    const QImage other(pictures.filePath("02-short.png"));
    QVERIFY2(whole.height() > 1000, qPrintable(QString::number(whole.height())));
    // Each picture has the size of its own page.
    QVERIFY2(other.height() <= 600, qPrintable(QString::number(other.height())));
}

void TestSetupProgram::writesALogWithoutSecrets()
{
    QFile accounts(m_recorder->filePath("users"));
    QVERIFY(accounts.open(QIODevice::WriteOnly));
    accounts.write("CNT=1\nNAME0=admin\nPASSWD0=a141c47927929bc2d1fb6d336a256df4\nLEVEL0=2\n");
    accounts.close();
    const QString log = m_folder->filePath("log");
    const Run run = runProgram({addressOf(*m_recorder, "admin:abc1234"), "--digest", "--log", log,
                                "--screenshot", m_folder->filePath("pictures")});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QFile file(log);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    for (const char *part :
         {"paravue.link", "connecting to 127.0.0.1", "logging in as admin", "logged in",
          "sent GET NET CONFIG for net", "answered, ", "exchange ended", "description shown, ",
          "paravue.pictures", "connected", "first picture", "closed, rejected"})
        QVERIFY2(text.contains(part), part);
    for (const char *secret : {"abc1234", "a141c47927929bc2d1fb6d336a256df4"})
        QVERIFY2(!text.contains(secret), secret);
    QCOMPARE(file.permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    QVERIFY2(!run.err.contains("paravue-setup:"), qPrintable(run.err)); // nothing has failed
}

void TestSetupProgram::waitsNoLongerThanItMay()
{
    m_recorder->setReplyDelay(60'000);
    const Run run = runProgram({addressOf(*m_recorder, "admin:admin"), "--timeout", "1", "--screenshot",
                                m_folder->filePath("pictures")});
    QCOMPARE(run.exitCode, 3);
    QVERIFY2(run.err.contains("No answer from the recorder for 1 s"), qPrintable(run.err));
}

/// The user closes the message, and then the window.
void TestSetupProgram::endsLikeTheSessionThatShowsNothing_data()
{
    const test::TestTable<QString, QByteArray, ExitCode> row("account", "description", "exitCode");
    row("login given up", "admin:wrong@", "", ExitCode::Login);
    row("nobody listens", "", "", ExitCode::Network);
    row("description is no XML", "admin:admin@", "<pvsetup>", ExitCode::BadData);
}

void TestSetupProgram::endsLikeTheSessionThatShowsNothing()
{
    QFETCH(QString, account);
    QFETCH(QByteArray, description);
    QFETCH(ExitCode, exitCode);
    const CommandLine commandLine = sessionWithTheRecorder(account.isEmpty() ? "a:b@" : account);
    if (account.isEmpty())
        m_recorder->close();
    QFile file(m_recorder->filePath("interface"));
    if (!description.isEmpty())
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(description) > 0);
    file.close();
    bool hasSeenMessage = false;
    const ExitCode code = runSessionAs(commandLine, [&](QWidget &top) {
        const bool isMessage = qobject_cast<QMessageBox *>(&top);
        hasSeenMessage = hasSeenMessage || isMessage;
        if (isMessage || hasSeenMessage || top.inherits("cDlg"))
            top.close();
    });
    QCOMPARE(code, exitCode);
    QVERIFY(hasSeenMessage);
}

void TestSetupProgram::leavesNoFilesWhenItIsEnded_data()
{
#ifdef Q_OS_UNIX
    const test::TestTable<int, bool> row("signal", "isClean");
    row("asked", SIGTERM, true);
    row("Ctrl+C", SIGINT, true);
    row("terminal closed", SIGHUP, true);
    row("killed", SIGKILL, false);
#endif
}

void TestSetupProgram::leavesNoFilesWhenItIsEnded()
{
#ifndef Q_OS_UNIX
    QSKIP("A process of another console cannot be signalled.");
#else
    QFETCH(int, signal);
    QFETCH(bool, isClean);
    QVERIFY(QDir(m_folder->path()).mkdir("local"));
    const QDir local(m_folder->filePath("local"));
    const auto copies = [&local] {
        QDirIterator copy(local.path(), QDir::Files, QDirIterator::Subdirectories);
        int count = 0;
        for (; copy.hasNext(); copy.next())
            ++count;
        return count;
    };
    const int bothCopiesOfAllFiles = 18;
    const auto run = [&](int number) {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("TMPDIR", local.path());
        process.setProcessEnvironment(environment);
        process.start(SETUP_PROGRAM, {addressOf(*m_recorder, "admin:admin")});
        AWAIT_VERIFY_WITHIN(copies() >= bothCopiesOfAllFiles, 20'000);
        QCOMPARE(local.entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 1);
        ::kill(static_cast<pid_t>(process.processId()), number);
        AWAIT_COMPARE_WITHIN(process.state(), QProcess::NotRunning, 20'000);
        QCOMPARE(process.exitStatus(), number == SIGKILL ? QProcess::CrashExit : QProcess::NormalExit);
        if (number != SIGKILL)
            QCOMPARE(process.exitCode(), 8);
    };
    run(signal);
    QCOMPARE(local.isEmpty(), isClean);
    if (isClean)
        return;
    // The next session finds the copies when it starts.
    const Run next = runProgram({"nobody:x@127.0.0.1:1", "--screenshot", m_folder->filePath("pictures")},
                                "offscreen", local.path());
    QCOMPARE(next.exitCode, 3); // nobody listens
    QVERIFY2(local.isEmpty(), qPrintable(local.entryList().join(' ')));
#endif
}

void TestSetupProgram::leavesNoFilesOfAKilledRun_data()
{
    const test::TestTable<QStringList> row("arguments");
    row("preview", {"--preview", "%1", "--files", "%2"});
    row("demo", {"--demo"});
}

/// What it could not remove goes when the next one starts.
void TestSetupProgram::leavesNoFilesOfAKilledRun()
{
    QFETCH(QStringList, arguments);
    arguments.replaceInStrings("%1", m_recorder->filePath("interface"));
    arguments.replaceInStrings("%2", m_folder->filePath("data"));
    QVERIFY(QDir(m_folder->path()).mkdir("local"));
    const QDir local(m_folder->filePath("local"));
    const auto folders = [&local] { return local.entryList(QDir::Dirs | QDir::NoDotAndDotDot); };
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("TMPDIR", local.path());
    process.setProcessEnvironment(environment);
    process.start(SETUP_PROGRAM, arguments);
    // Of the program or its simulator, and of the session with that. Each is locked once it holds something.
    const qsizetype count = arguments.contains("--demo") ? 2 : 1;
    const auto areLocked = [&] {
        const QStringList all = folders();
        return all.size() == count && std::none_of(all.cbegin(), all.cend(), [&](const QString &name) {
                   return QDir(local.filePath(name)).isEmpty();
               });
    };
    AWAIT_VERIFY_WITHIN(areLocked(), 20'000);
    process.kill();
    AWAIT_COMPARE_WITHIN(process.state(), QProcess::NotRunning, 20'000);
    QVERIFY(!folders().isEmpty());
    const QStringList next = arguments + QStringList{"--screenshot", m_folder->filePath("pictures")};
    QCOMPARE(runProgram(next, "offscreen", local.path()).exitCode, 0);
    AWAIT_COMPARE(folders(), QStringList());
}

CommandLine TestSetupProgram::sessionWithTheRecorder(const QString &account) const
{
    CommandLine commandLine;
    const QString url = addressOf(*m_recorder, {}).mid(1);
    commandLine.address = RecorderAddress::fromText(account + url, RecorderAddress::Password::AsSent).address;
    commandLine.language = "en";
    return commandLine;
}

ExitCode TestSetupProgram::runSessionAs(const std::function<void(QWidget &)> &user)
{
    return runSessionAs(sessionWithTheRecorder(), user);
}

ExitCode TestSetupProgram::runSessionAs(const CommandLine &commandLine,
                                        const std::function<void(QWidget &)> &user)
{
    const User acting(user);
    return runSession(commandLine);
}

void TestSetupProgram::finishesTheSaveOfAnAcceptedWindow()
{
    m_recorder->setReplyDelay(30); // the save is still running when the window has closed
    const ExitCode code = runSessionAs([](QWidget &top) {
        if (QPushButton *save = buttonWithText(top, "Save"))
            save->click();
    });
    QCOMPARE(code, ExitCode::Done);
    QCOMPARE(m_received, QStringList({"streams", "net", "time", "timers", "disk", "users", "state"}));
}

void TestSetupProgram::endsWithOneWhenCancelled()
{
    const ExitCode code = runSessionAs([](QWidget &top) { QTest::keyClick(&top, Qt::Key_Escape); });
    QCOMPARE(code, ExitCode::Rejected);
    QCOMPARE(m_received, QStringList());
}

void TestSetupProgram::tellsWhenTheSaveFails()
{
    QString message;
    const ExitCode code = runSessionAs([&](QWidget &top) {
        if (auto *box = qobject_cast<QMessageBox *>(&top)) {
            message = box->text();
            box->accept();
            return;
        }
        if (QPushButton *save = buttonWithText(top, "Save")) {
            save->click();
            m_recorder->close();
        }
    });
    QCOMPARE(code, ExitCode::Network);
    QVERIFY(!message.isEmpty());
    QVERIFY(m_received.size() < 7);
}

void TestSetupProgram::isCancelledWhenASignalStopsTheSave_data()
{
    const test::TestTable<bool> row("hasBegun");
    row("before it begins", false);
    row("when a file has arrived", true);
}

void TestSetupProgram::isCancelledWhenASignalStopsTheSave()
{
    QFETCH(bool, hasBegun);
    const auto quit = [] { QCoreApplication::exit(); }; // as the program does on a signal
    if (hasBegun)
        connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this, quit);
    ExitCode code = ExitCode::Done;
    QTimer::singleShot(0, this, [&] {
        code = runSessionAs([&](QWidget &top) {
            QPushButton *save = buttonWithText(top, "Save");
            if (!save)
                return;
            save->click();
            if (!hasBegun)
                quit();
        });
    });
    QCoreApplication::exec();
    QVERIFY(m_received.size() <= 1);
    QCOMPARE(code, ExitCode::Cancelled);
}

void TestSetupProgram::asksForALoginOnce()
{
    QFile accounts(m_recorder->filePath("users"));
    QVERIFY(accounts.open(QIODevice::WriteOnly));
    accounts.write("CNT=1\nNAME0=admin\nPASSWD0=s3cret\nLEVEL0=2\n");
    accounts.close();
    QStringList passwords{"s3cre", "s3cret"};
    QStringList events;
    const auto user = [&](QWidget &top) {
        if (auto *box = qobject_cast<QMessageBox *>(&top)) {
            events += box->text();
            box->accept();
        } else if (auto *password = top.findChild<QLineEdit *>("lineEditPassword")) {
            events += top.findChild<QLabel *>("labelRefusal")->text();
            // The login is typed once.
            if (passwords.size() == 2)
                QTest::keyClicks(top.focusWidget(), "admin");
            QTest::keyClicks(password, passwords.takeFirst());
            QTest::keyClick(password, Qt::Key_Return);
        } else if (buttonWithText(top, "Save")) {
            events += "loaded";
            QTest::keyClick(&top, Qt::Key_Escape);
        }
    };
    const QString refused = "The recorder has refused the login.";
    QCOMPARE(runSessionAs(sessionWithTheRecorder("admin:wrong@"), user), ExitCode::Rejected);
    QCOMPARE(events, QStringList({refused, refused, "loaded"}));
    QCOMPARE(runSessionAs(sessionWithTheRecorder(""), user), ExitCode::Rejected);
    QCOMPARE(events, QStringList({refused, refused, "loaded", "loaded"}));

    QFile settings(m_user.settingsPath());
    QVERIFY(settings.open(QIODevice::ReadOnly));
    const QByteArray text = settings.readAll();
    const QByteArray digest = QCryptographicHash::hash("s3cret", QCryptographicHash::Md5).toHex();
    QVERIFY(text.contains("password0=" + digest.toHex()));
    QVERIFY(!text.contains(QByteArray("s3cret").toHex()) && !text.contains("password1="));
}

QTEST_MAIN(TestSetupProgram)
#include "tst_setup_program.moc"
