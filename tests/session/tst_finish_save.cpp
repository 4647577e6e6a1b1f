#include "ModalWatcher.h"
#include "SetupRun.h"
#include "entry/FinishParavueSetup.h"
#include "recorder/RecorderServer.h"
#include "store/ExchangeQueue.h"
#include "support/Waiting.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTimer>

#include <functional>

using namespace paravue;
using namespace paravue::test;
using Result = SaveOutcome::Result;

namespace
{

const QStringList Files{"streams", "net", "time", "timers", "disk", "users", "state"};

} // namespace

/// What a host does when the window is closed and a save is under way.
class TestFinishSave : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void nothingIsUnderWay();
    void waitsForTheSave();
    void waitsAlthoughTheLastWindowIsClosed();
    void aRefusedConnectionIsTriedAgain();
    void onlyMissingFilesAreSentAgain();
    void aSilentRecorderIsGivenUp();
    void stopIsAskedFor_data();
    void stopIsAskedFor();
    void quittingEndsIt();
    void givesUpWhatWaitsForAResetLink();
    void doesNotCoverTheQuestionForALogin();
    void whatIsFetchedAnewIsNotSentAgain();
    void laterEditsAreNotSentAgain();
    void aLargePackageIsNoSilence();
    void theEndClosesTheQuestionToStop();

private:
    QString address() const;
    /// Begins a slow save, during which the user presses Escape.
    void saveAndAskToStop(OrbNetSetup &store);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<recorder::RecorderServer> m_recorder;
    QStringList m_received;
};

void TestFinishSave::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_recorder = std::make_unique<recorder::RecorderServer>(m_folder->path());
    QVERIFY2(m_recorder->listen(), qPrintable(m_recorder->errorString()));
    m_received.clear();
    connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this,
            [this](const QString &name) { m_received << name; });
}

QString TestFinishSave::address() const
{
    return "admin:admin@127.0.0.1:" + QString::number(qint16(m_recorder->port()));
}

namespace
{

/// Calls \a act once, with the first dialog that has the focus, while \a context lives.
void whenADialogIsOpen(QObject &context, const std::function<void(QWidget &)> &act)
{
    auto *poll = new QTimer(&context);
    QObject::connect(poll, &QTimer::timeout, &context, [poll, act] {
        QWidget *dialog = QApplication::activeModalWidget();
        if (!dialog || !dialog->isActiveWindow() || !QApplication::focusWidget())
            return;
        poll->stop();
        act(*dialog);
    });
    poll->start(10);
}

} // namespace

void TestFinishSave::saveAndAskToStop(OrbNetSetup &store)
{
    m_recorder->setReplyDelay(120);
    store.store();
    whenADialogIsOpen(store, [](QWidget &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
}

namespace
{

/// A store that has loaded.
class LoadedStore : public OrbNetSetup
{
public:
    explicit LoadedStore(const QString &address) : OrbNetSetup(address)
    {
        connect(this, &OrbSetup::loadDone, this, [this] { isLoaded = true; });
        load();
        waitUntil([this] { return isLoaded && linkStatus().state == LinkStatus::State::Idle; });
    }

    bool isLoaded = false;
};

} // namespace

void TestFinishSave::nothingIsUnderWay()
{
    LoadedStore store(address());
    QVERIFY(store.isLoaded);
    QCOMPARE(FinishParavueSetup(&store).result, Result::Nothing);
    store.load(); // nobody waits for what is fetched
    QCOMPARE(FinishParavueSetup(&store).result, Result::Nothing);
}

void TestFinishSave::waitsForTheSave()
{
    LoadedStore store(address());
    m_recorder->setReplyDelay(100);
    store.store();
    // The impatient second Enter, and a look at what has the focus.
    bool isFocused = false;
    whenADialogIsOpen(store, [&](QWidget &dialog) {
        isFocused = dialog.findChild<QPushButton *>()->hasFocus();
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    const SaveOutcome outcome = FinishParavueSetup(&store);
    QCOMPARE(outcome.result, Result::Done);
    QCOMPARE(outcome.arrived, Files);
    QCOMPARE(outcome.missing, QStringList());
    QCOMPARE(m_received, Files);
    QVERIFY(!isFocused);
    QVERIFY(!QApplication::activeModalWidget());
}

void TestFinishSave::waitsAlthoughTheLastWindowIsClosed()
{
    QVERIFY(QApplication::quitOnLastWindowClosed());
    m_recorder->setReplyDelay(20);
    SaveOutcome outcome;
    QTimer::singleShot(0, this, [&] {
        LoadedStore store(address());
        {
            QWidget window;
            window.show();
            store.store();
            window.close();
        }
        outcome = FinishParavueSetup(&store);
    });
    QTimer::singleShot(20'000, qApp, [] { QApplication::exit(1); });
    QCOMPARE(QApplication::exec(), 0); // ended by the window, after the save
    QCOMPARE(outcome.result, Result::Done);
    QCOMPARE(m_received, Files);
    QVERIFY(QApplication::quitOnLastWindowClosed());
}

void TestFinishSave::aRefusedConnectionIsTriedAgain()
{
    LoadedStore store(address());
    const quint16 port = m_recorder->port();
    m_recorder->close();
    store.store();
    FinishOptions alone;
    alone.asksUser = false;
    const SaveOutcome first = FinishParavueSetup(&store, alone);
    QCOMPARE(first.result, Result::Failed);
    QCOMPARE(first.problem, "The recorder refuses the connection");
    QCOMPARE(first.missing, Files);

    const ModalWatcher questions([&](QWidget &box) {
        m_recorder->listen(port);
        static_cast<QMessageBox &>(box).button(QMessageBox::Retry)->click();
    });
    const SaveOutcome second = FinishParavueSetup(&store);
    QCOMPARE(questions.texts().size(), 1);
    QCOMPARE(second.result, Result::Done);
    QCOMPARE(m_received, Files);
}

void TestFinishSave::onlyMissingFilesAreSentAgain()
{
    LoadedStore store(address());
    const quint16 port = m_recorder->port();
    const QMetaObject::Connection cut =
        connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this, [&] {
            if (m_received.size() == 3)
                QMetaObject::invokeMethod(
                    m_recorder.get(), [this] { m_recorder->close(); }, Qt::QueuedConnection);
        });
    m_recorder->setReplyDelay(20); // the third file is received and not confirmed
    store.setValue("users/untitled/NAME0/renamed");
    store.store();
    QStringList texts;
    const ModalWatcher questions([&](QWidget &box) {
        disconnect(cut);
        texts << static_cast<QMessageBox &>(box).text();
        m_recorder->listen(port);
        static_cast<QMessageBox &>(box).button(QMessageBox::Retry)->click();
    });
    const SaveOutcome outcome = FinishParavueSetup(&store);
    QCOMPARE(outcome.result, Result::Done);
    QCOMPARE(outcome.arrived, Files);
    QCOMPARE(m_received, Files.mid(0, 3) + Files.mid(2));
    QCOMPARE(texts.size(), 1);
    QVERIFY2(texts.constFirst().contains("Arrived: streams, net"), qPrintable(texts.constFirst()));
    QVERIFY2(texts.constFirst().contains("Not sent: timers, disk, users, state") &&
                 texts.constFirst().contains("Sent, but not answered: time"),
             qPrintable(texts.constFirst()));
}

void TestFinishSave::aSilentRecorderIsGivenUp()
{
    QTcpServer silent;
    QVERIFY(silent.listen(QHostAddress::LocalHost));
    LoadedStore store(address());
    store.setAddress("admin:admin@127.0.0.1:" + QString::number(qint16(silent.serverPort())));
    store.store();
    FinishOptions options;
    options.asksUser = false;
    options.longestSilence = 200;
    const SaveOutcome outcome = FinishParavueSetup(&store, options);
    QCOMPARE(outcome.result, Result::Failed);
    QCOMPARE(outcome.problem, "The recorder does not answer");
    QCOMPARE(outcome.missing, Files);
    QCOMPARE(store.linkStatus().state, LinkStatus::State::Idle);
}

void TestFinishSave::stopIsAskedFor_data()
{
    QTest::addColumn<QMessageBox::StandardButton>("answer");
    QTest::addColumn<Result>("result");
    QTest::newRow("stop") << QMessageBox::Yes << Result::Stopped;
    QTest::newRow("go on") << QMessageBox::No << Result::Done;
}

void TestFinishSave::stopIsAskedFor()
{
    QFETCH(QMessageBox::StandardButton, answer);
    QFETCH(Result, result);
    LoadedStore store(address());
    saveAndAskToStop(store);
    const ModalWatcher questions(
        [&](QWidget &box) { static_cast<QMessageBox &>(box).button(answer)->click(); });
    const SaveOutcome outcome = FinishParavueSetup(&store);
    QCOMPARE(questions.texts().size(), 1);
    QCOMPARE(outcome.result, result);
    QCOMPARE(outcome.arrived + outcome.missing, Files);
    QCOMPARE(outcome.missing.isEmpty(), answer == QMessageBox::No);
}

void TestFinishSave::quittingEndsIt()
{
    LoadedStore store(address());
    m_recorder->setReplyDelay(500);
    SaveOutcome outcome;
    QTimer::singleShot(0, this, [&] {
        store.store();
        QTimer::singleShot(100, qApp, &QCoreApplication::quit);
        outcome = FinishParavueSetup(&store);
    });
    QTimer::singleShot(20'000, qApp, [] { QApplication::exit(1); });
    QCOMPARE(QApplication::exec(), 0);
    QCOMPARE(outcome.result, Result::Stopped);
    QCOMPARE(outcome.missing, Files);
}

void TestFinishSave::givesUpWhatWaitsForAResetLink()
{
    LoadedStore store(address());
    ExchangeQueue &queue = ExchangeQueue::of(store);
    queue.call("get_report", {}, ExchangeQueue::Caller::User);
    queue.call("soft_reboot", {}, ExchangeQueue::Caller::User);
    QCOMPARE(queue.waiting(), QStringList("soft_reboot"));
    store.resetLink();
    QCOMPARE(queue.waiting(), QStringList());
    QCOMPARE(queue.abandoned(), QStringList("soft_reboot"));
    QCOMPARE(FinishParavueSetup(&store).result, Result::Nothing);
}

void TestFinishSave::doesNotCoverTheQuestionForALogin()
{
    /// Takes longer than a silent recorder may, and longer than the progress takes to appear.
    struct SlowAnswer : CredentialsSource {
        bool ask(Credentials &) override
        {
            QTest::qWait(600);
            isCovered = QApplication::activeModalWidget();
            return false;
        }
        void save(const Credentials &) override {}
        bool isCovered = true;
    };
    LoadedStore store(address());
    auto owned = std::make_unique<SlowAnswer>();
    const SlowAnswer &source = *owned;
    store.setCredentialsSource(std::move(owned));
    store.setAddress(address().replace("admin:admin", "admin:wrong"));
    store.store();
    const ModalWatcher messages;
    FinishOptions options;
    options.longestSilence = 200;
    const SaveOutcome outcome = FinishParavueSetup(&store, options);
    QVERIFY(!source.isCovered);
    QCOMPARE(outcome.result, Result::Failed);
    QCOMPARE(outcome.problem, "The recorder has refused the login");
    QCOMPARE(outcome.missing, Files);
}

void TestFinishSave::whatIsFetchedAnewIsNotSentAgain()
{
    /// Knows the right login.
    struct Answer : CredentialsSource {
        bool ask(Credentials &record) override
        {
            record.login = "admin";
            record.password = "admin";
            return true;
        }
        void save(const Credentials &) override {}
    };
    LoadedStore store(address());
    store.setCredentialsSource(std::make_unique<Answer>());
    store.setAddress(address().replace("admin:admin", "admin:wrong"));
    store.setValue("net/untitled/HOSTNAME/renamed");
    store.store();
    m_recorder->setReplyDelay(20);
    QStringList texts;
    const ModalWatcher messages([&](QWidget &box) {
        auto &message = static_cast<QMessageBox &>(box);
        texts << message.text();
        QVERIFY(!message.button(QMessageBox::Retry));
        message.button(QMessageBox::Ok)->click();
    });
    const SaveOutcome outcome = FinishParavueSetup(&store);
    QCOMPARE(outcome.result, Result::Failed);
    QCOMPARE(outcome.missing, QStringList());
    QCOMPARE(outcome.replaced, Files);
    QVERIFY2(texts.value(0).contains("replaced by what the recorder has: streams, net"),
             qPrintable(texts.value(0)));
    QVERIFY(m_received.isEmpty());
    AWAIT_COMPARE(store.linkStatus().state, LinkStatus::State::Idle);
    QVERIFY(store.value("net/untitled/HOSTNAME") != "renamed");
    // It has been told, and no later session of the store has anything to do with it.
    QCOMPARE(FinishParavueSetup(&store).result, Result::Nothing);
}

void TestFinishSave::laterEditsAreNotSentAgain()
{
    LoadedStore store(address());
    const quint16 port = m_recorder->port();
    m_recorder->close();
    store.setValue("net/untitled/HOSTNAME/saved");
    store.store();
    FinishOptions alone;
    alone.asksUser = false;
    QCOMPARE(FinishParavueSetup(&store, alone).missing, Files);
    store.setValue("net/untitled/HOSTNAME/cancelled");
    QVERIFY(m_recorder->listen(port));
    store.resetLink();
    store.sendMissing();
    QCOMPARE(FinishParavueSetup(&store, alone).result, Result::Done);
    LoadedStore second(address());
    QCOMPARE(second.value("net/untitled/HOSTNAME"), "saved");
}

void TestFinishSave::aLargePackageIsNoSilence()
{
    constexpr qint64 Size = 40 << 20;
    QFile package(m_folder->filePath("package"));
    QVERIFY(package.open(QIODevice::WriteOnly) && package.resize(Size));
    // Reads 1 MiB every 50 ms, which takes two seconds, and answers the login and the package.
    QTcpServer slow;
    QVERIFY(slow.listen(QHostAddress::LocalHost));
    qint64 received = 0;
    QTimer reading;
    connect(&slow, &QTcpServer::newConnection, &slow, [&] {
        QTcpSocket *socket = slow.nextPendingConnection();
        socket->setReadBufferSize(1 << 20);
        socket->setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption, 1 << 20);
        connect(&reading, &QTimer::timeout, socket, [&, socket] {
            if (received == 0 && socket->bytesAvailable() > 0)
                socket->write("LENGTH=16\r\nVORN_ANSWER=OK\r\n");
            received += socket->readAll().size();
            if (received > Size && !socket->property("answered").toBool()) {
                socket->setProperty("answered", true);
                socket->write("LENGTH=16\r\nVORN_ANSWER=OK\r\n");
            }
        });
    });
    reading.start(50);
    LoadedStore store(address());
    store.setAddress("admin:admin@127.0.0.1:" + QString::number(qint16(slow.serverPort())));
    store.setValue("general/package/path/" + package.fileName());
    store.function("soft_istall_packet", "general/package/path");
    FinishOptions options;
    options.asksUser = false;
    options.longestSilence = 800;
    const SaveOutcome outcome = FinishParavueSetup(&store, options);
    QVERIFY2(outcome.result == Result::Done, qPrintable(outcome.problem));
    QVERIFY(received > Size);
}

void TestFinishSave::theEndClosesTheQuestionToStop()
{
    LoadedStore store(address());
    saveAndAskToStop(store);
    QCOMPARE(FinishParavueSetup(&store).result, Result::Done); // nobody answers
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(m_received, Files);
}

QTEST_MAIN(TestFinishSave)
#include "tst_finish_save.moc"
