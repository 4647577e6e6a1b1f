#include "SetupRun.h"
#include "controls/LiveView.h"
#include "entry/RunParavueSetup.h"
#include "recorder/RecorderServer.h"
#include "recorder/video/VideoService.h"
#include "support/OwnUserFolders.h"
#include "support/Waiting.h"

#include <QApplication>
#include <QDir>
#include <QKeySequence>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <functional>

#include <malloc.h>
#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

using namespace paravue;
using namespace paravue::test;

namespace
{

const char Description[] = R"(<pvsetup version="1.0">
  <window>
    <self/>
    <timetask type="startVideoOnline"><url>{general/network/url}</url><target>yard</target></timetask>
  </window>
  <tabwidget><tab><name>Page</name>
    <item type="gridlayout">
      <item type="setup" row="0" column="0"><device/></item>
      <item type="edit" row="1" column="0"><key>net/untitled/HOSTNAME</key></item>
      <item type="online" row="2" column="0"><yard/></item>
      <item type="pushbutton" row="3" column="0"><text>Save</text>
        <action type="call" slot="callSetup" param="save_settings">device</action></item>
      <item type="pushbutton" row="4" column="0"><text>Report</text>
        <action type="call" slot="callSetup" param="get_report">device</action></item>
      <item type="pushbutton" row="5" column="0"><text>Dialog</text>
        <action type="call" slot="showDialog" param="more">self</action>
        <action type="call" slot="callSetup" param="get_report">device</action></item>
      <item type="pushbutton" row="7" column="0"><text>Format</text>
        <action type="call" slot="callSetup" param="format_disk1">device</action></item>
      <item type="pushbutton" row="6" column="0"><text>Fault</text>
        <action type="call" slot="showDialog" param="nothing">self</action></item>
    </item>
  </tab></tabwidget>
  <moreDialog>
    <more/>
    <timetask type="startVideoOnline"><url>{general/network/url}</url><target>car</target></timetask>
    <item type="gridlayout"><item type="online"><car/></item>
      <item type="edit" row="1"><key>net/untitled/HOSTNAME</key></item></item>
  </moreDialog>
</pvsetup>)";

CWinMain *openWindow()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *window = qobject_cast<CWinMain *>(widget); window && window->isVisible())
            return window;
    }
    return nullptr;
}

bool isModal(const char *className)
{
    const QWidget *modal = QApplication::activeModalWidget();
    return modal && modal->inherits(className);
}

bool isExchanging(const OrbSetup &store)
{
    return store.linkStatus().state == LinkStatus::State::Running;
}

bool isBuilt(const CWinMain &window)
{
    return window.findChild<LiveView *>();
}

/// A moment of a session: pressing \a button of the built window, or \a keys, leads to it.
struct Moment {
    QString button;
    std::function<bool(CWinMain &, OrbSetup &)> isReached;
    bool isLoginRefused = false;
    QKeySequence keys = {};
    bool isOfChanges = false;       ///< with an edit, in a window that does everything that hosts can ask for
    bool isChangedByOthers = false; ///< the edited value, on the recorder

    bool comesByItself() const { return button.isEmpty() && keys.isEmpty(); }
};

WindowOptions everything(const QString &snapshots)
{
    WindowOptions options;
    options.tracksChanges = true;
    options.comparesBeforeSending = true;
    options.confirmsSaves = true;
    options.confirmsDangerousFunctions = true;
    options.snapshots = {.folder = snapshots};
    return options;
}

/// What a host does in a timer at that moment.
enum class End {
    WindowThenStore,      ///< closes the window and deletes the store
    StoreThenWindow,      ///< deletes the store and closes the window
    WindowThenStoreAfter, ///< closes the window, and deletes the store when the session has returned
    StoreLaterThenWindow, ///< with deleteLater()
    LinkThenWindow,       ///< the recorder goes away, then closes the window
};

qsizetype openDescriptors()
{
#ifdef Q_OS_WIN
    DWORD handles = 0;
    GetProcessHandleCount(GetCurrentProcess(), &handles);
    return qsizetype(handles);
#else
    return QDir("/proc/self/fd").count();
#endif
}

/// What a program holds open.
struct Holdings {
    qsizetype descriptors = openDescriptors();
    qsizetype files = QDir::temp().entryList(QDir::Files).size();
    qsizetype widgets = QApplication::allWidgets().size();
    qsizetype children = qApp->findChildren<QObject *>().size();

    bool isWithin(const Holdings &limit) const
    {
        return descriptors <= limit.descriptors && files <= limit.files && widgets <= limit.widgets &&
               children <= limit.children;
    }
    QByteArray text() const
    {
        QByteArray numbers;
        for (const qsizetype number : {descriptors, files, widgets, children})
            numbers += QByteArray::number(number) + ' ';
        return numbers;
    }
};

/// \a usual, or \a many when a long run is asked for.
int rounds(int usual, int many)
{
    return qEnvironmentVariableIsSet("PARAVUE_SOAK") ? many : usual;
}

/// Bytes that the program has allocated; 0 where that is not known.
size_t allocated()
{
#ifdef __GLIBC__
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
#else
    return 0;
#endif
}

} // namespace

Q_DECLARE_METATYPE(Moment)

/// Stores and windows end at any moment, and leave nothing behind.
class TestLifetimes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void endsAtAnyMoment_data();
    void endsAtAnyMoment();
    void leavesNothingBehind();
    void functionsLeaveNothingBehind();

private:
    QString address(const QString &login = "admin:admin") const;
    void edit(CWinMain &window, const Moment &moment);

    OwnUserFolders m_folders;
    QTemporaryDir m_temporaries;
    QTemporaryDir m_folder;
    QTemporaryDir m_snapshots;
    std::unique_ptr<recorder::RecorderServer> m_recorder;
    int m_edits = 0;
};

void TestLifetimes::initTestCase()
{
    QVERIFY(qputenv("TMPDIR", m_temporaries.path().toLocal8Bit()));
    m_recorder = std::make_unique<recorder::RecorderServer>(m_folder.path()); // fills the folder
    QFile file(m_recorder->filePath("interface"));
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(Description);
    file.close();
    QVERIFY2(m_recorder->listen(), qPrintable(m_recorder->errorString()));
    QVERIFY(m_recorder->video().setSettings({recorder::VideoCodec::MotionJpeg, {64, 64}, 25}));
}

QString TestLifetimes::address(const QString &login) const
{
    return login + "@127.0.0.1:" + QString::number(qint16(m_recorder->port()));
}

void TestLifetimes::edit(CWinMain &window, const Moment &moment)
{
    if (!moment.isOfChanges)
        return;
    const QByteArray number = QByteArray::number(++m_edits);
    window.setValue("net/untitled/HOSTNAME/mine" + number);
    QFile net(m_recorder->filePath("net"));
    if (moment.isChangedByOthers) // of several lines with one key the last counts
        QVERIFY(net.open(QIODevice::Append) && net.write("HOSTNAME=theirs" + number + '\n') > 0);
}

void TestLifetimes::endsAtAnyMoment_data()
{
    QTest::addColumn<Moment>("moment");
    QTest::addColumn<End>("end");
    const auto always = [](CWinMain &, OrbSetup &) { return true; };
    const auto exchanges = [](CWinMain &, OrbSetup &store) { return isExchanging(store); };
    const QList<std::pair<QByteArray, Moment>> moments{
        {"opened", {"", always}},
        {"loading", {"", [](CWinMain &, OrbSetup &store) { return store.fileExists("net"); }}},
        {"built", {"", [](CWinMain &window, OrbSetup &) { return isBuilt(window); }}},
        {"saving", {"Save", exchanges}},
        {"function", {"Report", exchanges}},
        {"dialog",
         {"Dialog",
          [](CWinMain &window, OrbSetup &) {
              const auto *modal = QApplication::activeModalWidget();
              return modal && modal != &window && modal->findChild<LiveView *>();
          }}},
        {"message", {"Fault", [](CWinMain &, OrbSetup &) { return isModal("QMessageBox"); }}},
        {"live view",
         {"",
          [](CWinMain &window, OrbSetup &) {
              const auto *view = window.findChild<LiveView *>();
              return view && view->hasPicture();
          }}},
        {"login dialog", {"", [](CWinMain &, OrbSetup &) { return isModal("cDlg"); }, true}},
    };
    const auto opens = [](const char *dialog) {
        return [dialog](CWinMain &, OrbSetup &) { return isModal(dialog); };
    };
    const auto isConfirmed = [](CWinMain &window, OrbSetup &) {
        const auto labels = window.findChildren<QLabel *>();
        return std::any_of(labels.begin(), labels.end(),
                           [](const QLabel *label) { return label->text() == "Sent and confirmed"; });
    };
    const QList<std::pair<QByteArray, Moment>> momentsOfChanges{
        {"review", {"", opens("paravue::ReviewDialog"), false, QKeySequence("Ctrl+R"), true}},
        {"find", {"", opens("paravue::FindDialog"), false, QKeySequence("Ctrl+F"), true}},
        {"history", {"", opens("paravue::HistoryDialog"), false, QKeySequence("Ctrl+H"), true}},
        {"comparing", {"Save", opens("paravue::SendingDialog"), false, {}, true}},
        {"confirmed", {"Save", isConfirmed, false, {}, true}},
        {"foreign changes", {"Save", opens("paravue::ForeignChangesDialog"), false, {}, true, true}},
        {"dangerous function", {"Format", opens("QMessageBox"), false, {}, true}},
    };
    const QList<std::pair<QByteArray, End>> ends{{"window, store", End::WindowThenStore},
                                                 {"store, window", End::StoreThenWindow},
                                                 {"window, store after", End::WindowThenStoreAfter},
                                                 {"store later, window", End::StoreLaterThenWindow}};
    for (const auto &[when, moment] : moments) {
        for (const auto &[how, end] : ends)
            QTest::newRow(when + ": " + how) << moment << end;
    }
    for (const auto &[when, moment] : momentsOfChanges) {
        for (const auto &[how, end] : ends)
            QTest::newRow(when + ": " + how) << moment << end;
        QTest::newRow(when + ": link, window") << moment << End::LinkThenWindow;
    }
}

void TestLifetimes::endsAtAnyMoment()
{
    QFETCH(Moment, moment);
    QFETCH(End, end);
    const Holdings before;
    auto store =
        std::make_unique<OrbNetSetup>(address(moment.isLoginRefused ? "admin:wrong" : "admin:admin"));
    const QPointer<OrbNetSetup> alive(store.get());
    QTimer host;
    bool isPressed = moment.comesByItself();
    bool isLate = false;
    const auto finish = [&](CWinMain &window) {
        if (end == End::StoreThenWindow)
            store.reset();
        if (end == End::StoreLaterThenWindow)
            store.release()->deleteLater();
        if (end == End::LinkThenWindow) {
            m_recorder->close();
            waitUntil([&] { return m_recorder->clientCount() == 0; });
        }
        window.close();
        if (end == End::WindowThenStore)
            store.reset();
    };
    connect(&host, &QTimer::timeout, &host, [&] {
        CWinMain *window = openWindow();
        if (!window)
            return;
        if (!isPressed && isBuilt(*window)) {
            isPressed = true;
            edit(*window, moment);
            // A timer does not run while its own receiver waits.
            QTimer::singleShot(0, window, [window, &moment] {
                window->activateWindow();
                QVERIFY(QTest::qWaitForWindowActive(window));
                if (moment.button.isEmpty())
                    QTest::keySequence(window, moment.keys);
                else
                    buttonWithText<QPushButton>(*window, moment.button)->click();
            });
        } else if (isPressed && moment.isReached(*window, *alive)) {
            host.stop();
            finish(*window);
        }
    });
    host.start(0);
    QTimer watchdog;
    connect(&watchdog, &QTimer::timeout, &watchdog, [&] {
        isLate = true;
        for (QWidget *widget : QApplication::topLevelWidgets())
            widget->close();
    });
    watchdog.start(3000);
    const quint16 port = m_recorder->port();
    const auto options = moment.isOfChanges ? everything(m_snapshots.path()) : WindowOptions();
    QVERIFY(!RunParavueSetup(store.get(), {.window = options}).isAccepted);
    QVERIFY(!isLate);
    watchdog.stop();
    QVERIFY(!host.isActive());
    store.reset();
    AWAIT_VERIFY(!alive);
    QVERIFY(end != End::LinkThenWindow || m_recorder->listen(port));
    AWAIT_COMPARE(m_recorder->clientCount(), 0);
    AWAIT_COMPARE(Holdings().widgets, before.widgets);
    QCOMPARE(Holdings().files, before.files);
}

void TestLifetimes::leavesNothingBehind()
{
    const auto runSession = [this] {
        {
            Session session(address());
            QVERIFY(session.isFine());
            buttonWithText<QPushButton>(*session.window, "Report")->click();
            session.window->timeout();
            session.window->timeout();
        }
        AWAIT_COMPARE(m_recorder->clientCount(), 0);
    };
    for (int warmUp = 0; warmUp < 3; ++warmUp)
        runSession();
    const Holdings before; // may count what the session before is about to delete
    for (int round = 0; round < rounds(30, 1000); ++round)
        runSession();
    QVERIFY2(waitUntil([&] { return Holdings().isWithin(before); }),
             Holdings().text() + "of " + before.text());
}

void TestLifetimes::functionsLeaveNothingBehind()
{
    OrbNetSetup store(address());
    QSignalSpy failed(&store, &OrbSetup::pseudothrow);
    const auto run = [&](int functions) {
        for (int i = 0; i < functions; ++i) {
            store.function(i % 2 == 0 ? "get_report" : "send_test_email", {});
            QVERIFY(waitUntil([&] { return !isExchanging(store) && m_recorder->clientCount() == 0; }));
        }
    };
    run(100);
    const Holdings before;
    const size_t memory = allocated();
    run(rounds(200, 10'000));
    QCOMPARE(failed.size(), 0);
    QCOMPARE(Holdings().files, before.files);
    // The last sockets of the recorder may be about to close in either count.
    const auto isReleased = [&] {
        const Holdings now;
        return now.descriptors <= before.descriptors && now.children <= before.children;
    };
    QVERIFY2(waitUntil(isReleased), before.text() + "before, now " + Holdings().text());
    const qint64 growth = qint64(allocated()) - qint64(memory);
    QVERIFY2(growth < 256 * 1024, QByteArray::number(growth));
}

QTEST_MAIN(TestLifetimes)
#include "tst_lifetimes.moc"
