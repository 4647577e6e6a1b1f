#include "DebFile.h"
#include "ModalWatcher.h"
#include "SetupRun.h"

#include "controls/K9mButton.h"
#include "device/CTimeZoner.h"
#include "device/TimeZoneTable.h"
#include "recorder/RecorderServer.h"
#include "recorder/device/ZoneRule.h"
#include "store/ExchangeQueue.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QDomDocument>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTreeWidget>

using namespace paravue;
using paravue::test::ModalWatcher;

namespace
{

template <class Widget>
Widget *find(const QWidget &window, const QString &text, int index = 0)
{
    for (Widget *widget : window.findChildren<Widget *>()) {
        if (widget->text() == text && index-- == 0)
            return widget;
    }
    return nullptr;
}

QString addressOf(const recorder::RecorderServer &recorder)
{
    return "admin:admin@127.0.0.1:" + QString::number(qint16(recorder.port()));
}

/// Brings the pages to the front that the widget is on.
void reveal(QWidget &widget)
{
    for (QWidget *page = &widget; page; page = page->parentWidget()) {
        for (QWidget *above = page->parentWidget(); above; above = above->parentWidget()) {
            if (auto *tabs = qobject_cast<QTabWidget *>(above); tabs && tabs->indexOf(page) >= 0)
                tabs->setCurrentWidget(page);
        }
    }
}

/// A session with the shipped description whose buttons are pressed.
class Session : public test::Session
{
public:
    explicit Session(const recorder::RecorderServer &recorder)
        : test::Session(addressOf(recorder)), stored(&store, &OrbSetup::storeDone)
    {
    }

    /// Presses a button, and the one with the text \a answer of the question that then comes, if any.
    bool press(const QString &text, int index = 0, const QString &answer = {})
    {
        auto *button = find<QPushButton>(*window, text, index);
        if (!button)
            return false;
        const ModalWatcher watcher(
            [&](QWidget &dialog) {
                if (auto *yes = find<QPushButton>(dialog, answer))
                    QTest::mouseClick(yes, Qt::LeftButton);
            },
            "QDialog");
        reveal(*button);
        QTest::mouseClick(button, Qt::LeftButton);
        return watcher.hasSeen() == !answer.isEmpty();
    }

    QSignalSpy stored;
};

} // namespace

/// The functions of the recorder from the buttons of its window. Their effects are fetched by another
/// session.
class TestSessionFunctions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void hasItsEffect_data();
    void hasItsEffect();
    void asksBeforeItDestroys();
    void setsTheClockInAnyZone_data();
    void setsTheClockInAnyZone();
    void adjustsThePictureOnce();
    void putsAdjustmentsBack_data();
    void putsAdjustmentsBack();
    void showsTheReport();
    void switchesMaintenance();
    void takesTimesOfTheDayOnly();
    void goesOnAfterAFailure_data();
    void goesOnAfterAFailure();
    void offersEveryTimeZone();
    void bothSidesReadTheRulesAlike();

private:
    QString fetched(const QString &address);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<recorder::RecorderServer> m_recorder;
    QStringList m_requests; ///< lines and bodies, as the recorder logs them
};

void TestSessionFunctions::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_recorder = std::make_unique<recorder::RecorderServer>(m_folder->filePath("data"));
    QVERIFY2(m_recorder->listen(), qPrintable(m_recorder->errorString()));
    m_recorder->setRebootTime(1);
    m_requests.clear();
    // Live video and stills have connections of their own, which come and go in their own time.
    connect(m_recorder.get(), &recorder::RecorderServer::logged, this,
            [this, pictures = QSet<QString>()](const QString &line) mutable {
                const qsizetype start = line.indexOf(" < ");
                if (start < 0)
                    return;
                const QString connection = line.first(start);
                const QString request = line.sliced(start + 3);
                if (request.startsWith("video LOGIN=") || request.startsWith("GET /"))
                    pictures += connection;
                if (!pictures.contains(connection))
                    m_requests << request;
            });
}

/// The value that a new store finds, in a report when the address begins with "tmp".
QString TestSessionFunctions::fetched(const QString &address)
{
    OrbNetSetup store(addressOf(*m_recorder));
    QSignalSpy loaded(&store, &OrbSetup::loadDone);
    address.startsWith("tmp/") ? store.function("get_report", "") : store.load();
    return loaded.wait(20'000) ? store.value(address) : QString("nothing");
}

void TestSessionFunctions::hasItsEffect_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("request");
    const auto row = [](const char *name, const char *button, int index, const char *answer,
                        const char *address, const char *expected, const char *request) {
        QTest::newRow(name) << QString(button) << index << QString(answer) << QString(address)
                            << QString(expected) << QString(request);
    };
    row("format disk 1", "Format", 0, "Format", "disk/untitled/DISC1_USED", "0G",
        "DO FORMAT|LENGTH=13|DISC='DISC1'\\x0a");
    row("format disk 2", "Format", 1, "Format", "disk/untitled/DISC2_USED", "0G",
        "DO FORMAT|LENGTH=13|DISC='DISC2'\\x0a");
    row("format the USB disk", "Format", 2, "Format", "disk/untitled/USB_USED", "0G",
        "DO FORMAT|LENGTH=11|DISC='USB'\\x0a");
    row("clear e-mails 1", "Delete stored e-mails", 0, "Delete", "tmp/emails/DISC1", "0",
        "DO CLEAR EMAILS|LENGTH=13|DISC='DISC1'\\x0a");
    row("clear e-mails 2", "Delete stored e-mails", 1, "Delete", "tmp/emails/DISC2", "0",
        "DO CLEAR EMAILS|LENGTH=13|DISC='DISC2'\\x0a");
    row("clear e-mails USB", "Delete stored e-mails", 2, "Delete", "tmp/emails/USB", "0",
        "DO CLEAR EMAILS|LENGTH=11|DISC='USB'\\x0a");
    row("test e-mail", "Send a test e-mail", 0, "", "tmp/emails/DISC1", "4", "SEND TEST EMAIL");
    row("restart", "Restart", 0, "Restart", "state/health/UPTIME_DAYS", "0", "DO REBOOT");
    row("reset", "Reset the settings", 0, "Reset", "net/untitled/HOSTNAME", "paravue-r4", "RESET SETTINGS");
    row("time server", "Ask the server now", 0, "", "time/untitled/NTP_SYNC", "1",
        "PUT TIME "
        "CONFIG|LENGTH=65|USENTP=1\\x0aTIME_SERVER=pool.example.net\\x0aNTP_SYNC=1\\x0aTIME_ZONE=UTC-3\\x0a");
    row("remove a package", "Remove…", 0, "Remove", "soft/untitled/PACKAGES", "5",
        "PUT SOFT CONFIG|LENGTH=26|PACKAGE_DELETE=usb-backup\\x0a");
    row("install", "Install", 0, "Install", "soft/untitled/PACKAGE_NAME_6", "thermo-probe",
        "INSTALL DEB|LENGTH=2752");
}

void TestSessionFunctions::hasItsEffect()
{
    QFETCH(QString, button);
    QFETCH(int, index);
    QFETCH(QString, answer);
    QFETCH(QString, address);
    QFETCH(QString, expected);
    QFETCH(QString, request);
    QFile net(m_recorder->filePath("net"));
    QVERIFY(net.open(QIODevice::Append) && net.write("HOSTNAME='other'\n") > 0);
    net.close();
    QFile package(m_folder->filePath("probe.deb"));
    QVERIFY(package.open(QIODevice::WriteOnly));
    package.write(test::debFile("Package: thermo-probe\nVersion: 1.0\n"));
    package.close();

    QVERIFY(fetched(address) != expected);
    Session session(*m_recorder);
    session.window->setValue("general/install_packet/path/" + package.fileName());
    for (QTreeWidget *list : session.window->findChildren<QTreeWidget *>())
        list->setCurrentItem(list->findItems("usb-backup", Qt::MatchExactly).value(0));
    QSignalSpy back(m_recorder.get(), &recorder::RecorderServer::cameBack);
    bool isProgressShown = false;
    connect(&session.store, &OrbSetup::progress, this, [&](int percent) {
        const auto *text = find<QLabel>(*session.window, "Waiting for the recorder");
        isProgressShown |= percent == 0 && text && text->isVisible();
    });
    m_requests.clear();
    QVERIFY(session.press(button, index, answer));
    AWAIT_COMPARE(session.stored.count(), 1);
    QVERIFY(isProgressShown);
    QCOMPARE(m_requests.join('|'), "LOGIN=admin|PASS=***|" + request);
    QVERIFY2(session.isFine(), qPrintable(session.errors.value(0).value(0).toString()));
    QVERIFY(button != "Restart" || back.wait());
    QCOMPARE(fetched(address), expected);
}

void TestSessionFunctions::asksBeforeItDestroys()
{
    Session session(*m_recorder);
    m_requests.clear();
    for (const char *button : {"Format", "Delete stored e-mails", "Restart", "Reset the settings"}) {
        QSignalSpy progress(&session.store, &OrbSetup::progress);
        QVERIFY(session.press(button, 0, "Cancel"));
        QCOMPARE(progress, QList<QVariantList>{{100}}); // the function "cancel"
        QVERIFY(session.stored.isEmpty());
        QVERIFY(session.store.activity().isEmpty());
    }
    QCOMPARE(m_requests, QStringList());
}

void TestSessionFunctions::setsTheClockInAnyZone_data()
{
    QTest::addColumn<QString>("zone");
    for (const TimeZoneRow &row : timeZoneTable()) {
        if (row.offsetMinutes % 240 == 0)
            QTest::newRow(row.rule) << QString(row.rule);
    }
}

void TestSessionFunctions::setsTheClockInAnyZone()
{
    QFETCH(QString, zone);
    const auto secondsOff = [this, zone](QDateTime expected) {
        const QString digits = fetched("time/untitled/YYYYMMDDHHMMSS");
        QDateTime shown = QDateTime::fromString(digits, "yyyyMMddHHmmss");
        shown.setTimeSpec(Qt::UTC);
        return qAbs(shown.secsTo(expected));
    };
    Session session(*m_recorder);
    session.window->setValue("time/untitled/TIME_ZONE/" + zone);
    session.window->setValue("time/untitled/YYYYMMDDHHMMSS/20300715120000");
    const auto sent = [this] { return m_requests.join('|'); };
    m_requests.clear();
    QVERIFY(session.press("Set this time"));
    AWAIT_COMPARE(session.stored.count(), 1);
    QCOMPARE(sent(), QString("LOGIN=admin|PASS=***|PUT TIME CONFIG|LENGTH=%1|"
                             "YYYYMMDDHHMMSS=20300715120000\\x0aTIME_ZONE=%2\\x0a")
                         .arg(QString::number(41 + zone.size()), zone));
    QVERIFY(secondsOff(QDateTime(QDate(2030, 7, 15), QTime(12, 0), Qt::UTC)) < 30);
    QCOMPARE(fetched("time/untitled/TIME_ZONE"), zone);

    m_requests.clear();
    QVERIFY(session.press("Set to this computer's time"));
    AWAIT_COMPARE(session.stored.count(), 2);
    QVERIFY2(
        sent().contains(QRegularExpression("\\*\\|PUT TIME CONFIG\\|LENGTH=29\\|YYYYMMDDHHMMSS=\\d{14}$")),
        qPrintable(sent()));
    const qint64 local = CTimeZoner(zone.toLatin1()).toLocal(QDateTime::currentSecsSinceEpoch());
    QVERIFY(secondsOff(QDateTime::fromSecsSinceEpoch(local, Qt::UTC)) < 30);
    QVERIFY(session.isFine());
}

void TestSessionFunctions::adjustsThePictureOnce()
{
    Session session(*m_recorder);
    session.window->setValue("streams/stream_0/brightness/33");
    const auto bars = session.window->findChildren<QScrollBar *>();
    const auto first = std::find_if(bars.begin(), bars.end(), [](auto *bar) { return bar->value() == 33; });
    QVERIFY(first != bars.end());
    QScrollBar *brightness = *first;
    reveal(*brightness);
    m_requests.clear();
    for (int step = 0; step < 10; ++step)
        QTest::keyClick(brightness, Qt::Key_Right);
    const QString expected = QString::number(brightness->value());
    QVERIFY(brightness->value() > 33);
    AWAIT_COMPARE(session.stored.count(), 1);
    QVERIFY(session.isFine());
    QCOMPARE(m_requests.join('|'),
             "LOGIN=admin|PASS=***|ADJUST VIDEO|LENGTH=73|[ stream_0 ]\\x0abrightness=" + expected +
                 "\\x0acontrast=50\\x0asaturation=50\\x0ahue=50\\x0asharpness=40\\x0a");
    QCOMPARE(fetched("streams/stream_0/brightness"), expected);
}

void TestSessionFunctions::putsAdjustmentsBack_data()
{
    const test::TestTable<bool, QString, bool> row("isAsked", "end", "isPutBack");
    row("cancelled", true, "cancel", true);
    row("cancelled without the option", false, "cancel", false);
    row("accepted", true, "accept", false);
    row("saved before", true, "save", false);
    row("undone and cancelled", true, "undo", true);
}

void TestSessionFunctions::putsAdjustmentsBack()
{
    QFETCH(bool, isAsked);
    QFETCH(QString, end);
    QFETCH(bool, isPutBack);
    const QString address = "streams/stream_0/brightness";
    const QString before = fetched(address);
    OrbNetSetup store(addressOf(*m_recorder));
    QSignalSpy loaded(&store, &OrbSetup::loadDone);
    QSignalSpy stored(&store, &OrbSetup::storeDone);
    CWinMain window(&store, nullptr, CWinMain::Placement::Window, {.putsAdjustmentsBack = isAsked});
    AWAIT_COMPARE(loaded.count(), 1);
    window.setValue(address + "/93");
    ExchangeQueue::of(store).call("adjust_bcsh", {}, ExchangeQueue::Caller::User);
    AWAIT_COMPARE(stored.count(), 1);
    QCOMPARE(fetched(address), "93");
    if (end == "save") {
        ExchangeQueue::of(store).call("save_settings", {}, ExchangeQueue::Caller::User);
        AWAIT_COMPARE(stored.count(), 2);
        QCoreApplication::processEvents();
    }
    if (end == "undo") // which calls nothing
        store.setValue(address + '/' + before);
    QTimer::singleShot(0, &window, [&] { end == "accept" ? window.accept() : window.reject(); });
    window.exec();
    QCOMPARE(fetched(address), isPutBack ? before : "93");
    QCOMPARE(store.value(address), isPutBack ? before : "93");
    window.endSession();
}

void TestSessionFunctions::showsTheReport()
{
    Session session(*m_recorder);
    const QString path = m_folder->filePath("report.txt");
    bool isShown = false;
    const ModalWatcher watcher(
        [&](QWidget &dialog) {
            isShown = paravue::test::waitUntil([&] { return find<QLabel>(dialog, "R4-0017-2281"); });
            QTest::keyClicks(dialog.findChild<QLineEdit *>(), path);
            QTest::mouseClick(find<QPushButton>(dialog, "Save"), Qt::LeftButton);
        },
        "QDialog");
    auto *button = find<QPushButton>(*session.window, "Get the report");
    reveal(*button);
    m_requests.clear();
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(m_requests.join('|'), "LOGIN=admin|PASS=***|GET REPORT");
    QVERIFY(isShown);
    QVERIFY(watcher.texts().value(0).contains("is being fetched")); // at first
    QFile saved(path);
    QVERIFY(saved.open(QIODevice::ReadOnly));
    QVERIFY(saved.readAll().startsWith("[ report ]\nCREATED = '20"));
    QVERIFY(session.isFine());
}

void TestSessionFunctions::switchesMaintenance()
{
    const QString address = "streams/common/maintenance";
    Session session(*m_recorder);
    session.window->setValue(address + "/on");
    auto *button = find<K9mButton>(*session.window, "Maintenance mode");
    QVERIFY(button && button->isOn());
    reveal(*button);
    for (const char *expected : {"off", "on"}) {
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(session.store.value(address), expected);
        QCOMPARE(button->isOn(), expected == QString("on"));
    }
}

void TestSessionFunctions::takesTimesOfTheDayOnly()
{
    Session session(*m_recorder);
    session.window->setValue("timers/camera_0/from/12:34");
    QLineEdit *from = session.field("12:34");
    QVERIFY(from);
    reveal(*from);
    from->selectAll();
    QTest::keyClicks(from, "25:99");
    QCOMPARE(from->text(), "2"); // nothing else can follow but 0 to 3
    QTest::keyClicks(from, "3:79:58");
    QCOMPARE(session.store.value("timers/camera_0/from"), "23:58");
}

void TestSessionFunctions::goesOnAfterAFailure_data()
{
    const test::TestTable<QString, bool, QString> row("file", "isGone", "message");
    row("the recorder refuses", "letter.txt", false, "Device error \"this is no package\"");
    row("the recorder is gone", "letter.txt", true, "Network error 0");
    row("the package is not there", "nowhere.deb", false, "Can't read file \"");
}

void TestSessionFunctions::goesOnAfterAFailure()
{
    QFETCH(QString, file);
    QFETCH(bool, isGone);
    QFETCH(QString, message);
    QFile package(m_folder->filePath("letter.txt"));
    QVERIFY(package.open(QIODevice::WriteOnly) && package.write("Dear recorder") > 0);
    package.close();
    Session session(*m_recorder);
    session.window->setValue("general/install_packet/path/" + m_folder->filePath(file));
    const QString soft = fetched("soft/untitled/PACKAGES");
    const quint16 port = m_recorder->port();
    if (isGone)
        m_recorder->close();
    m_requests.clear();
    const ModalWatcher shown;
    QVERIFY(session.press("Install", 0, "Install"));
    AWAIT_VERIFY(shown.hasSeen());
    QVERIFY2(shown.texts().constFirst().contains(message), qPrintable(shown.texts().constFirst()));
    QCOMPARE(m_requests.isEmpty(), isGone || package.fileName() != m_folder->filePath(file));
    // The window goes on: a save starts over.
    QVERIFY(!isGone || m_recorder->listen(port));
    session.store.function("save_settings", "");
    AWAIT_COMPARE(session.stored.count(), 1);
    QCOMPARE(fetched("soft/untitled/PACKAGES"), soft);
}

void TestSessionFunctions::offersEveryTimeZone()
{
    QFile file(m_recorder->filePath("interface"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QDomDocument description;
    QVERIFY(description.setContent(&file));
    const QDomElement translations = description.documentElement().firstChildElement("translations");
    QStringList offered;
    const QDomNodeList texts = description.elementsByTagName("text");
    for (int i = 0; i < texts.size(); ++i) {
        const QDomElement text = texts.at(i).toElement();
        const QString key = text.firstChildElement("key").text();
        const QString id = text.firstChild().nodeValue().mid(1);
        if (key.startsWith("time/untitled/TIME_ZONE/"))
            offered << QStringList{key.section('/', 3),
                                   translations.firstChildElement("en").firstChildElement(id).text(),
                                   translations.firstChildElement("ru").firstChildElement(id).text()}
                           .join('|');
    }
    QStringList expected;
    for (const TimeZoneRow &row : timeZoneTable())
        expected << QStringList{row.rule, timeZoneCaption(row, "en"), timeZoneCaption(row, "ru")}.join('|');
    QCOMPARE(offered, expected);
}

void TestSessionFunctions::bothSidesReadTheRulesAlike()
{
    QList<QByteArray> rules = {"", "UTC+0UTC+0", "UTC-3UTC-4"};
    for (const TimeZoneRow &row : timeZoneTable())
        rules << row.rule;
    const qint64 start = QDateTime(QDate(2026, 1, 1), QTime(0, 0), Qt::UTC).toSecsSinceEpoch();
    for (const QByteArray &rule : rules) {
        const CTimeZoner ours(rule);
        const auto theirs = recorder::ZoneRule::parse(rule);
        QVERIFY2(theirs, rule);
        for (qint64 time = start; time < start + 2 * 365 * 86400; time += 3600)
            QVERIFY2(ours.toLocal(time) == theirs->localOf(time), rule + ' ' + QByteArray::number(time));
    }
}

QTEST_MAIN(TestSessionFunctions)
#include "tst_session_functions.moc"
