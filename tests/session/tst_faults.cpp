#include "FaultTest.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QRegularExpression>

using namespace paravue;
using namespace paravue::test;
using recorder::AnswerFault;

namespace
{

/// What an exchange comes to.
struct Outcome {
    enum Kind {
        Done,
        Waits,         ///< it waits for the recorder, without a time limit
        WrongLogin,    ///< the same, and the status tells why in vain
        Stops,         ///< with the text as the one message
        Ends,          ///< the recorder ends the connection
        EndsIfNotLast, ///< the recorder ends the connection behind the answer
        Refused,       ///< the login is refused, and nobody knows another
    } kind = Done;
    QString text = {};
};

const Outcome Done{Outcome::Done};
const Outcome Waits{Outcome::Waits};
const Outcome WrongLogin{Outcome::WrongLogin};
const Outcome Ends{Outcome::Ends};
const Outcome WrongAnswer{Outcome::Stops, "Wrong device answer"};

/// What runs while the recorder misbehaves.
enum class Phase {
    LoginOfFirstLoad,
    LoginOfSave,
    LoginRetry,
    FirstLoad,
    SecondLoad,
    Save,
    SendFunction,
    SendFunctionWithBody,
    FetchFunction,
};

struct PhaseRow {
    Phase phase;
    const char *name;
    const char *place; ///< the answer that is wrong
};

constexpr PhaseRow Phases[] = {
    {Phase::LoginOfFirstLoad, "login of the first load", AnswerFault::Login},
    {Phase::LoginOfSave, "login of a save", AnswerFault::Login},
    {Phase::LoginRetry, "second login", AnswerFault::Login},
    {Phase::FirstLoad, "first load", "GET NET CONFIG"},
    {Phase::SecondLoad, "second load", "GET NET CONFIG"},
    {Phase::Save, "save", "PUT NET CONFIG"},
    {Phase::SendFunction, "send_test_email", "SEND TEST EMAIL"},
    {Phase::SendFunctionWithBody, "format_usb", "DO FORMAT"},
    {Phase::FetchFunction, "get_report", "GET REPORT"},
};

bool isLoad(Phase phase)
{
    return phase == Phase::LoginOfFirstLoad || phase == Phase::LoginRetry || phase == Phase::FirstLoad ||
           phase == Phase::SecondLoad;
}

bool isSave(Phase phase)
{
    return phase == Phase::Save || phase == Phase::LoginOfSave;
}

/// Its load comes before the store has any files.
bool isFirst(Phase phase)
{
    return isLoad(phase) && phase != Phase::SecondLoad;
}

/// Knows one other login and uses it once.
class OneAnswer : public CredentialsSource
{
public:
    explicit OneAnswer(const std::function<void()> &asked) : m_asked(asked) {}

    bool ask(Credentials &record) override
    {
        if (!m_asked)
            return false;
        std::exchange(m_asked, nullptr)();
        record.remember = false;
        record.login = "admin";
        record.password = "admin";
        return true;
    }
    void save(const Credentials &) override {}

private:
    std::function<void()> m_asked;
};

class WatchedStore
{
public:
    explicit WatchedStore(const QString &address) : store(address)
    {
        QObject::connect(&store, &OrbSetup::pseudothrow, &store, [this](const QString &s) { messages << s; });
        QObject::connect(&store, &OrbSetup::loadDone, &store, [this] { ++loads; });
        QObject::connect(&store, &OrbSetup::storeDone, &store, [this] { ++stores; });
        store.setCredentialsSource(std::make_unique<OneAnswer>(nullptr));
    }

    LinkStatus::State state() const { return store.linkStatus().state; }

    OrbNetSetup store;
    QStringList messages;
    int loads = 0;
    int stores = 0;
};

} // namespace

Q_DECLARE_METATYPE(Outcome)
Q_DECLARE_METATYPE(Phase)

/// A recorder that answers wrongly, late or not at all. Whatever it does, a session says so once, does not
/// hang, loses no edit, and sends nothing but what was asked for.
class TestFaults : public FaultTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { startRecorder(); }
    void cleanup() { m_recorder.reset(); }
    void exchanges_data();
    void exchanges();
    void aLateAnswerDoesNotReachTheNextExchange();
    void namesTheFirstProblem_data();
    void namesTheFirstProblem();
    void aRefusedFunctionIsNotSentLater();
    void aReceiverMayResetTheLink_data();
    void aReceiverMayResetTheLink();
    void descriptions_data();
    void descriptions();
    void directives();

private:
    void prepare(WatchedStore &watched, Phase phase);
    void start(WatchedStore &watched, Phase phase, const QStringList &faults);
    void checkOutcome(WatchedStore &watched, Phase phase, const Outcome &outcome);
    void checkRequests(const PhaseRow &row, bool isWhole);
    void save(WatchedStore &watched);

    QMap<QString, QByteArray> m_saved; ///< what a save sends without a fault
    QMap<Phase, QStringList> m_meant;  ///< what each phase sends without a fault
};

void TestFaults::initTestCase()
{
    for (const PhaseRow &row : Phases) {
        startRecorder();
        WatchedStore watched(address());
        prepare(watched, row.phase);
        start(watched, row.phase, {});
        AWAIT_VERIFY(watched.state() == LinkStatus::State::Idle);
        m_meant[row.phase] = m_requests;
        if (row.phase == Phase::Save)
            m_saved = m_files;
    }
    QCOMPARE(m_saved.size(), 3);
    QVERIFY(m_saved["net"].contains("HOSTNAME = 'renamed'"));
    QCOMPARE(m_meant[Phase::LoginRetry].size(), m_meant[Phase::FirstLoad].size() + 2);
}

void TestFaults::prepare(WatchedStore &watched, Phase phase)
{
    if (!isFirst(phase)) {
        watched.store.load();
        AWAIT_VERIFY(watched.loads == 1 && watched.state() == LinkStatus::State::Idle);
        watched.store.setValue(HostName + "/renamed");
    }
    m_requests.clear();
    m_files.clear();
    m_faultCount = 0;
    watched.loads = 0;
}

void TestFaults::start(WatchedStore &watched, Phase phase, const QStringList &faults)
{
    if (phase == Phase::LoginRetry) {
        setFaults({"refuse"});
        watched.store.setCredentialsSource(
            std::make_unique<OneAnswer>([this, faults] { setFaults(faults); }));
    } else {
        setFaults(faults);
    }
    if (isLoad(phase))
        watched.store.load();
    else if (isSave(phase))
        watched.store.store();
    else
        watched.store.function(Phases[int(phase)].name, QString());
}

void TestFaults::checkOutcome(WatchedStore &watched, Phase phase, const Outcome &outcome)
{
    if (outcome.kind == Outcome::Done)
        AWAIT_COMPARE(watched.state(), LinkStatus::State::Idle);
    else if (outcome.kind == Outcome::Waits || outcome.kind == Outcome::WrongLogin)
        AWAIT_VERIFY(m_faultCount > 0);
    else
        AWAIT_VERIFY(!watched.messages.isEmpty());
    letEventsArrive();
    const bool isFetch = isLoad(phase) || phase == Phase::FetchFunction;
    QCOMPARE(watched.loads, outcome.kind == Outcome::Done && isFetch ? 1 : 0);
    QCOMPARE(watched.stores, outcome.kind == Outcome::Done && !isFetch ? 1 : 0);
    const LinkStatus &status = watched.store.linkStatus();
    switch (outcome.kind) {
    case Outcome::Done:
        QCOMPARE(watched.messages, QStringList());
        QCOMPARE(status.problem, QString());
        break;
    case Outcome::Waits:
        QCOMPARE(watched.messages, QStringList());
        QCOMPARE(status.state, LinkStatus::State::Running);
        QVERIFY(status.lastTraffic.isValid());
        break;
    case Outcome::WrongLogin:
        AWAIT_COMPARE(status.state, LinkStatus::State::Failed);
        QCOMPARE(watched.messages, QStringList());
        QCOMPARE(status.cause, LinkStatus::Cause::BadAnswer);
        QVERIFY(!status.problem.isEmpty());
        break;
    case Outcome::Stops:
        QCOMPARE(watched.messages, QStringList(outcome.text));
        QCOMPARE(status.state, LinkStatus::State::Failed);
        QCOMPARE(status.problem, outcome.text);
        break;
    case Outcome::Ends:
    case Outcome::EndsIfNotLast:
        // The second one tells developers where the exchange stood; a window shows the first.
        QCOMPARE(watched.messages.value(0), "Network error 1");
        QVERIFY2(watched.messages.value(1).startsWith("OrbNetSetup::disconnected in wrong state "),
                 qPrintable(watched.messages.value(1)));
        QCOMPARE(watched.messages.size(), 2);
        QCOMPARE(status.state, LinkStatus::State::Failed);
        QCOMPARE(status.problem, Closed);
        break;
    case Outcome::Refused:
        QCOMPARE(watched.messages, QStringList("Authorization failed"));
        QCOMPARE(status.state, LinkStatus::State::Idle);
        QCOMPARE(status.problem, "The recorder has refused the login");
        break;
    }
}

/// A failed exchange has sent what was meant up to the request whose answer is wrong.
void TestFaults::checkRequests(const PhaseRow &row, bool isWhole)
{
    const QStringList meant = m_meant[row.phase];
    if (isWhole) {
        QCOMPARE(m_requests, meant);
        return;
    }
    QCOMPARE(m_requests, meant.first(qMin(m_requests.size(), meant.size())));
    const QString last = row.place == QLatin1StringView(AnswerFault::Login) ? "PASS=***" : row.place;
    const QStringList tail = m_requests.mid(m_requests.lastIndexOf(last));
    QVERIFY2(m_requests.contains(last) && tail.filter(QRegularExpression("^(GET|PUT|DO|SEND) ")).size() <= 1,
             qPrintable(tail.join(u'\n')));
}

void TestFaults::save(WatchedStore &watched)
{
    const int before = watched.stores;
    m_files.clear();
    watched.store.store();
    AWAIT_COMPARE(watched.stores, before + 1);
    AWAIT_COMPARE(watched.state(), LinkStatus::State::Idle);
}

void TestFaults::exchanges_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<Phase>("phase");
    QTest::addColumn<Outcome>("outcome");
    const struct {
        const char *fault;
        Outcome atLogin;
        Outcome atCommand;
    } rows[] = {
        {"bytewise", Done, Done},
        {"pieces=7", Done, Done},
        {"late=10", Done, Done},
        {"never", Waits, Waits},
        {"close-before", Ends, Ends},
        {"close-within", Ends, Ends},
        {"close-after", Ends, {Outcome::EndsIfNotLast}},
        {"reset", Ends, Ends},
        {"error", {Outcome::Refused}, {Outcome::Stops, "Device error \"\""}},
        {"error=disk busy", WrongLogin, {Outcome::Stops, "Device error \"disk busy\""}},
        // A login has two exact replies.
        {"no-answer-line", WrongLogin, WrongAnswer},
        {"length=0", WrongLogin, Done},
        {"length=less", WrongLogin, Done},
        {"length=more", WrongLogin, Waits},
        {"length=2147483648", WrongLogin, WrongAnswer},
        {"length=9223372036854775808", WrongLogin, WrongAnswer},
        {"length=2147483648 + bytewise", WrongLogin, WrongAnswer},
        {"length=-5", WrongLogin, Waits},
        {"length=none", WrongLogin, Waits},
        {"garbage-before", WrongLogin, Done},
        {"garbage-behind",
         WrongLogin,
         {Outcome::Stops, "Unrecognized device error \"VORN_ANSWER=OK\r\n\x07garbage\uFFFD\r\n\""}},
    };
    for (const auto &row : rows) {
        for (const PhaseRow &phase : Phases) {
            const bool isLogin = phase.place == QLatin1StringView(AnswerFault::Login);
            Outcome outcome = isLogin ? row.atLogin : row.atCommand;
            if (outcome.kind == Outcome::EndsIfNotLast && !isLoad(phase.phase) && !isSave(phase.phase))
                outcome = Done;
            QTest::addRow("%s, %s", row.fault, phase.name) << QString(row.fault) << phase.phase << outcome;
        }
    }
}

void TestFaults::exchanges()
{
    QFETCH(QString, fault);
    QFETCH(Phase, phase);
    QFETCH(Outcome, outcome);
    const PhaseRow &row = Phases[int(phase)];
    const bool isDone = outcome.kind == Outcome::Done;
    WatchedStore watched(address());
    prepare(watched, phase);
    QStringList faults = fault.split(" + ");
    for (QString &text : faults)
        text += u'@' + QLatin1StringView(row.place);
    start(watched, phase, faults);
    checkOutcome(watched, phase, outcome);
    if (QTest::currentTestFailed())
        return;
    QVERIFY(m_faultCount > 0);
    checkRequests(row, isDone);
    // The second load has fetched the recorder's value if the file has arrived.
    const bool isFetched = phase == Phase::SecondLoad && (isDone || outcome.kind == Outcome::EndsIfNotLast);
    if (!isFirst(phase) && !isFetched)
        QCOMPARE(watched.store.value(HostName), "renamed");

    m_recorder->setFaults({});
    watched.messages.clear();
    if (!isSave(phase)) { // a save starts over in any state
        watched.store.resetLink();
        QCOMPARE(watched.state(), LinkStatus::State::Idle);
    }
    if (isLoad(phase) && !isDone) {
        watched.store.load();
        AWAIT_VERIFY(watched.loads == 1 && watched.state() == LinkStatus::State::Idle);
    }
    if (isLoad(phase))
        watched.store.setValue(HostName + "/renamed");
    save(watched);
    QCOMPARE(watched.messages, QStringList());
    if (fault == "garbage-before" && isLoad(phase) && isDone)
        QEXPECT_FAIL("", "what stands before a frame becomes a part of the file", Continue);
    QCOMPARE(m_files, m_saved);
}

void TestFaults::aLateAnswerDoesNotReachTheNextExchange()
{
    WatchedStore watched(address());
    prepare(watched, Phase::Save);
    start(watched, Phase::Save, {"late=30@PUT NET CONFIG"});
    AWAIT_VERIFY(m_faultCount > 0);
    watched.store.resetLink();
    m_recorder->setFaults({});
    m_recorder->setReplyDelay(10); // the late answer is sent in the middle of the next exchange
    save(watched);
    QCOMPARE(m_files, m_saved);
    QCOMPARE(watched.stores, 1);
    QCOMPARE(watched.messages, QStringList());
}

void TestFaults::namesTheFirstProblem_data()
{
    const TestTable<QString> row("problem");
    row("error=disk busy@PUT NET CONFIG", "Device error \"disk busy\"");
    row("no-answer-line@PUT NET CONFIG", "Wrong device answer");
}

/// Recorders close the connection when they have refused something.
void TestFaults::namesTheFirstProblem()
{
    QFETCH(QString, problem);
    WatchedStore watched(address());
    prepare(watched, Phase::Save);
    start(watched, Phase::Save, {QTest::currentDataTag(), "close-after@PUT NET CONFIG"});
    AWAIT_VERIFY(watched.messages.size() == 3);
    QCOMPARE(watched.messages.first(), problem);
    QCOMPARE(watched.state(), LinkStatus::State::Failed);
    QCOMPARE(watched.store.linkStatus().problem, problem);
}

void TestFaults::aRefusedFunctionIsNotSentLater()
{
    WatchedStore watched(address());
    prepare(watched, Phase::Save);
    start(watched, Phase::Save, {"error@PUT NET CONFIG"});
    AWAIT_COMPARE(watched.messages.size(), 1);
    watched.store.function("soft_reboot", QString());
    QCOMPARE(watched.messages.size(), 2);
    QVERIFY2(watched.messages.last().contains("wrong state"), qPrintable(watched.messages.last()));
    m_recorder->setFaults({});
    m_requests.clear();
    save(watched);
    QCOMPARE(m_requests, m_meant[Phase::Save]);
    m_requests.clear();
    watched.store.function("format_usb", QString());
    AWAIT_COMPARE(watched.stores, 2);
    QCOMPARE(m_requests, m_meant[Phase::SendFunctionWithBody]);
}

void TestFaults::aReceiverMayResetTheLink_data()
{
    QTest::addColumn<bool>("savesAtOnce");
    for (const char *fault : {"bomb", "error@login", "error@GET NET CONFIG",
                              "length=2147483648@GET NET CONFIG", "garbage-behind@GET NET CONFIG",
                              "close-before@login", "close-within@GET NET CONFIG", "reset@GET NET CONFIG"}) {
        QTest::addRow("%s, then waits", fault) << false;
        QTest::addRow("%s, then saves", fault) << true;
    }
}

/// A receiver of the message gives the exchange up, or starts a save.
void TestFaults::aReceiverMayResetTheLink()
{
    QFETCH(bool, savesAtOnce);
    WatchedStore watched(address());
    prepare(watched, Phase::SecondLoad);
    bool isFirst = true;
    connect(&watched.store, &OrbSetup::pseudothrow, this, [&] {
        if (!std::exchange(isFirst, false))
            return;
        m_recorder->setFaults({});
        watched.store.resetLink();
        watched.store.setValue(HostName + "/renamed");
        if (savesAtOnce)
            watched.store.store();
    });
    start(watched, Phase::SecondLoad, {QString(QTest::currentDataTag()).section(u',', 0, 0)});
    AWAIT_VERIFY(!isFirst);
    if (!savesAtOnce) {
        letEventsArrive();
        QCOMPARE(watched.state(), LinkStatus::State::Idle);
        watched.store.store();
    }
    AWAIT_COMPARE(watched.stores, 1);
    AWAIT_COMPARE(watched.state(), LinkStatus::State::Idle);
    QCOMPARE(watched.loads, 0);
    QCOMPARE(m_files, m_saved);
    QVERIFY2(watched.messages.size() == 1, qPrintable(watched.messages.join(" | ")));
}

void TestFaults::descriptions_data()
{
    const TestTable<QString> row("message");
    row("truncated", "");
    row("no-xml", "");
    row("no-gzip", "");
    row("bomb", "File \"interface\" is too large");
    row("deep", "");
    row("entities", "");
    row("controls", "");
}

void TestFaults::descriptions()
{
    QFETCH(QString, message);
    const QStringList messages = message.isEmpty() ? QStringList() : QStringList(message);
    WatchedStore watched(address());
    setFaults({QTest::currentDataTag()});
    // Without a list of files in the description, the built-in one is fetched and sent.
    watched.store.load();
    AWAIT_VERIFY_WITHIN(watched.loads == 1 && watched.state() == LinkStatus::State::Idle, 20'000);
    QCOMPARE(watched.messages, messages);
    watched.store.setValue(HostName + "/renamed");
    save(watched);
    QCOMPARE(watched.messages, messages);
    QCOMPARE(m_files.size(), 7);
    QCOMPARE(m_files["net"], m_saved["net"]);
    m_recorder->setFaults({});
    watched.store.load();
    AWAIT_VERIFY(watched.loads == 2);
    QFile file(watched.store.filePath("interface"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray(Description));
    QCOMPARE(watched.messages, messages);
}

void TestFaults::directives()
{
    WatchedStore watched(address());
    setFaults({"directives"});
    watched.store.load();
    AWAIT_VERIFY(watched.loads == 1 && watched.state() == LinkStatus::State::Idle);
    m_recorder->setFaults({});
    watched.store.setValue(HostName + "/renamed");
    watched.store.store();
    AWAIT_VERIFY_WITHIN(m_files.size() == 2 && watched.state() == LinkStatus::State::Idle, 20'000);
    QCOMPARE(watched.messages, QStringList("The directives of file \"state\" make it too large"));
    QCOMPARE(watched.stores, 0);
    QVERIFY(!m_files.contains("state"));
    QCOMPARE(m_files["net"], m_saved["net"]);
    watched.store.load();
    AWAIT_VERIFY(watched.loads == 2 && watched.state() == LinkStatus::State::Idle);
    save(watched);
    QCOMPARE(m_files, m_saved);
    QCOMPARE(watched.messages.size(), 1);
}

QTEST_MAIN(TestFaults)
#include "tst_faults.moc"
