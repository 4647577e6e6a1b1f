#include "ModalWatcher.h"
#include "OwnUserFolders.h"
#include "Waiting.h"
#include "capi/paravue.h"
#include "recorder/RecorderServer.h"

#include <QApplication>
#include <QFile>
#include <QPushButton>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

using namespace paravue::test;

namespace
{

constexpr char HostName[] = "net/untitled/HOSTNAME";

/// Reads a text as a host does: asks for the length, then with a buffer of that size.
template <typename Read>
std::optional<std::string> textOf(Read read)
{
    size_t length = 0;
    if (read(nullptr, 0, &length) != PARAVUE_BUFFER_TOO_SMALL)
        return {};
    std::string text(length + 1, '?');
    if (read(text.data(), text.size(), &length) != PARAVUE_OK || text.back() != '\0')
        return {};
    text.pop_back();
    return text;
}

std::optional<std::string> valueOf(paravue_store *store, const char *path)
{
    return textOf([=](char *buffer, size_t capacity, size_t *length) {
        return paravue_store_get_value(store, path, PARAVUE_TERMINATED, buffer, capacity, length);
    });
}

std::optional<std::string> filesOf(paravue_store *store, int32_t which)
{
    return textOf([=](char *buffer, size_t capacity, size_t *length) {
        return paravue_store_files(store, which, buffer, capacity, length);
    });
}

paravue_result setValue(paravue_store *store, const std::string &path, const std::string &value)
{
    return paravue_store_set_value(store, path.data(), path.size(), value.data(), value.size());
}

paravue_result waitAfter(paravue_result started, paravue_store *store)
{
    return started == PARAVUE_OK ? paravue_store_wait(store) : started;
}

/// What an observer has heard, and what it does then.
struct Notes {
    std::vector<int32_t> percentages;
    std::vector<std::string> messages;
    int loaded = 0;
    int saved = 0;
    std::function<void()> atLoaded;

    paravue_observer observer()
    {
        return {sizeof(paravue_observer),
                this,
                [](void *user, int32_t percent) { of(user).percentages.push_back(percent); },
                [](void *user, const char *text, size_t length, const char *, size_t) {
                    of(user).messages.emplace_back(text, length);
                },
                [](void *user) {
                    ++of(user).loaded;
                    if (of(user).atLoaded)
                        of(user).atLoaded();
                },
                [](void *user) { ++of(user).saved; }};
    }

    static Notes &of(void *user) { return *static_cast<Notes *>(user); }
};

/// Closes \a window when something has failed.
paravue_observer closerAtMessage(paravue_window *window)
{
    paravue_observer observer = {};
    observer.size = sizeof(observer);
    observer.user = window;
    observer.message = [](void *user, const char *, size_t, const char *, size_t) {
        QCOMPARE(paravue_window_close(static_cast<paravue_window *>(user)), PARAVUE_OK);
    };
    return observer;
}

/// How the sessions of windows have ended.
struct Ends {
    std::vector<int32_t> areAccepted;

    void addTo(paravue_window_options &options)
    {
        options.user = this;
        options.finished = [](void *user, int32_t isAccepted) {
            static_cast<Ends *>(user)->areAccepted.push_back(isAccepted);
        };
    }
};

} // namespace

/// The C interface as its hosts use it. There is no application but the one that the library makes.
class TestCapi : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void everyResultHasAText();
    void otherVersionsAreRefused();
    void nothingWorksBeforeTheStart();
    void otherThreadsAreRefused();
    void startsAreCounted();
    void usesTheApplicationThatThereIs();
    void writesAddresses();
    void readsAndSavesValues();
    void smallBuffersAreNotOverrun();
    void badTextsAreRefused_data();
    void badTextsAreRefused();
    void handlesAreRecognised();
    void failuresHaveAResult_data();
    void failuresHaveAResult();
    void problemsAreInTheLanguageOfTheHost();
    void exchangesAreGivenUp();
    void observersHearWhatHappens();
    void callbacksCannotStartOrDestroy();
    void functionsRun();
    void windowsRunAndAreClosed();
    void windowsCloseOnlyTheirOwn();
    void windowsAreClosedWhileTheyOpen();
    void windowRunsInAParent();
    void aWindowShowsWhyNothingCame();
    void descriptionsAreChecked();
    void noExceptionComesOut();

private:
    void start(uint32_t flags = PARAVUE_START_WINDOWS);
    paravue_store *loadedStore();
    std::string address(const std::string &password = "admin") const;

    OwnUserFolders m_userFolders;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<recorder::RecorderServer> m_recorder;
};

void TestCapi::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void TestCapi::cleanup()
{
    m_recorder.reset();
    while (paravue_stop() == PARAVUE_OK) {
    }
}

void TestCapi::start(uint32_t flags)
{
    QCOMPARE(paravue_start(PARAVUE_API_VERSION, flags), PARAVUE_OK);
    m_recorder = std::make_unique<recorder::RecorderServer>(m_folder->path());
    QVERIFY2(m_recorder->listen(), qPrintable(m_recorder->errorString()));
}

std::string TestCapi::address(const std::string &password) const
{
    return "admin:" + password + "@127.0.0.1:" + std::to_string(qint16(m_recorder->port()));
}

paravue_store *TestCapi::loadedStore()
{
    paravue_store *store = nullptr;
    if (paravue_store_create(address().c_str(), PARAVUE_TERMINATED, 0, &store) != PARAVUE_OK ||
        waitAfter(paravue_store_load(store), store) != PARAVUE_OK)
        return nullptr;
    return store;
}

void TestCapi::everyResultHasAText()
{
    const std::string unknown = paravue_result_text(-1);
    for (int32_t result = PARAVUE_OK; result <= PARAVUE_INTERNAL; ++result) {
        const bool isNone = result == 5 || (result > PARAVUE_CANCELLED && result < PARAVUE_WRONG_THREAD);
        QCOMPARE(paravue_result_text(result) == unknown, isNone);
    }
}

void TestCapi::otherVersionsAreRefused()
{
    QCOMPARE(paravue_api_version(), PARAVUE_API_VERSION);
    QVERIFY(!std::string(paravue_version()).empty());
    for (const uint32_t version : {PARAVUE_API_VERSION + 1, PARAVUE_API_VERSION + 0x10000u, 0u})
        QCOMPARE(paravue_start(version, 0), PARAVUE_WRONG_VERSION);
    QCOMPARE(paravue_start(PARAVUE_API_VERSION, 0x80), PARAVUE_WRONG_USE);
    QVERIFY(!QCoreApplication::instance());
}

void TestCapi::nothingWorksBeforeTheStart()
{
    paravue_store *store = nullptr;
    QCOMPARE(paravue_store_create("a:b@c", PARAVUE_TERMINATED, 0, &store), PARAVUE_NOT_STARTED);
    QCOMPARE(paravue_stop(), PARAVUE_NOT_STARTED);
}

void TestCapi::otherThreadsAreRefused()
{
    start(0);
    paravue_store *store = nullptr;
    QCOMPARE(paravue_store_create("a:b@c", PARAVUE_TERMINATED, 0, &store), PARAVUE_OK);
    std::vector<paravue_result> results;
    std::thread([&] {
        paravue_store *other = nullptr;
        size_t length = 0;
        results = {paravue_start(PARAVUE_API_VERSION, 0),
                   paravue_stop(),
                   paravue_store_create("a:b@c", PARAVUE_TERMINATED, 0, &other),
                   paravue_store_load(store),
                   paravue_store_destroy(store),
                   paravue_problem(nullptr, 0, &length),
                   paravue_check_description("x", 1, nullptr, 0, nullptr, nullptr, nullptr, nullptr)};
    }).join();
    QCOMPARE(results, std::vector<paravue_result>(results.size(), PARAVUE_WRONG_THREAD));
    QCOMPARE(paravue_store_destroy(store), PARAVUE_OK);
}

void TestCapi::startsAreCounted()
{
    start(0);
    QCOMPARE(paravue_start(PARAVUE_API_VERSION, 0), PARAVUE_OK);
    // Made without windows, the application cannot have any later.
    QCOMPARE(paravue_start(PARAVUE_API_VERSION, PARAVUE_START_WINDOWS), PARAVUE_NO_WINDOWS);
    QCOMPARE(paravue_stop(), PARAVUE_OK);
    QVERIFY(loadedStore());
    m_recorder.reset();
    QCOMPARE(paravue_stop(), PARAVUE_OK);
    QVERIFY(!QCoreApplication::instance());
    QCOMPARE(paravue_stop(), PARAVUE_NOT_STARTED);

    start(PARAVUE_START_WINDOWS);
    QVERIFY(qobject_cast<QApplication *>(QCoreApplication::instance()));
    QVERIFY(loadedStore());
}

void TestCapi::usesTheApplicationThatThereIs()
{
    int count = 1;
    char name[] = "host";
    char *arguments[] = {name, nullptr};
    QApplication application(count, arguments);
    start();
    QCOMPARE(QCoreApplication::instance(), &application);
    paravue_store *store = loadedStore();
    QVERIFY(store);

    // What waits ends with it. The next event loop makes waiting possible again.
    m_recorder->setReplyDelay(60'000);
    paravue_result result = PARAVUE_OK;
    QTimer::singleShot(0, [&] {
        QCoreApplication::exit();
        result = waitAfter(paravue_store_load(store), store);
    });
    QApplication::exec();
    QCOMPARE(result, PARAVUE_CANCELLED);
    m_recorder->setReplyDelay(0);
    QCOMPARE(waitAfter(paravue_store_load(store), store), PARAVUE_OK);
    m_recorder.reset();
    QCOMPARE(paravue_stop(), PARAVUE_OK);
    QCOMPARE(QCoreApplication::instance(), &application);
}

void TestCapi::writesAddresses()
{
    start(0);
    const auto write = [](const char *host, const char *password, uint16_t port, uint32_t flags) {
        return textOf([=](char *buffer, size_t capacity, size_t *length) {
            return paravue_address("admin", PARAVUE_TERMINATED, password, PARAVUE_TERMINATED, host,
                                   PARAVUE_TERMINATED, port, flags, buffer, capacity, length);
        });
    };
    QCOMPARE(write("gate", "admin", 40000, PARAVUE_PASSWORD_TYPED),
             std::string("admin:21232f297a57a5a743894a0e4a801fc3@gate:-25536"));
    QVERIFY(!write("", "admin", 5049, 0));
    QVERIFY(!write("gate", "a:b", 5049, 0));
    QVERIFY(write("gate", "a:b", 5049, PARAVUE_PASSWORD_TYPED));
    // A second byte order mark is a letter that no local encoding gives back at the beginning of a text.
    const char unsendable[] = "\ufeff\ufeffadmin";
    const QString cyrillic = QStringLiteral("\u0430");
    QCOMPARE(bool(write("gate", "\u0430", 5049, PARAVUE_PASSWORD_TYPED)),
             QString::fromLocal8Bit(cyrillic.toLocal8Bit()) == cyrillic);
    QVERIFY(!write("gate", unsendable, 5049, PARAVUE_PASSWORD_TYPED));
    QCOMPARE(textOf(paravue_problem),
             std::string("The login or the password has letters that this computer cannot send."));
    size_t length = 0;
    QCOMPARE(paravue_address(unsendable, PARAVUE_TERMINATED, "admin", PARAVUE_TERMINATED, "gate",
                             PARAVUE_TERMINATED, 5049, 0, nullptr, 0, &length),
             PARAVUE_WRONG_USE);
}

void TestCapi::readsAndSavesValues()
{
    start(0);
    paravue_store *store = loadedStore();
    QVERIFY(store);
    QVERIFY(filesOf(store, PARAVUE_FILES_FETCHED)->find("net\n") != std::string::npos);
    const std::string name = "Ворота 1";
    QCOMPARE(setValue(store, HostName, name), PARAVUE_OK);
    QCOMPARE(valueOf(store, HostName), name);
    QCOMPARE(paravue_store_save(store), PARAVUE_OK);
    QCOMPARE(paravue_store_save(store), PARAVUE_BUSY);
    QCOMPARE(paravue_store_wait_for_save(store, 0, 0), PARAVUE_OK);
    QVERIFY(filesOf(store, PARAVUE_FILES_ARRIVED)->find("net\n") != std::string::npos);
    QCOMPARE(filesOf(store, PARAVUE_FILES_MISSING), std::string());

    QFile received(m_recorder->filePath("net"));
    QVERIFY(received.open(QIODevice::ReadOnly));
    QVERIFY(received.readAll().contains(QByteArray::fromStdString(name)));

    QCOMPARE(valueOf(store, "net/untitled/NO_SUCH_KEY"), std::nullopt);
    QCOMPARE(setValue(store, "nofile/untitled/KEY", "1"), PARAVUE_NOT_FOUND);
    QCOMPARE(setValue(store, "net/untitled", "1"), PARAVUE_WRONG_USE);
    QCOMPARE(setValue(store, "net/untitled/KEY/1", "1"), PARAVUE_WRONG_USE);
}

void TestCapi::smallBuffersAreNotOverrun()
{
    start(0);
    paravue_store *store = loadedStore();
    QVERIFY(store);
    QCOMPARE(setValue(store, HostName, "gate"), PARAVUE_OK);
    char buffer[] = "??????";
    size_t length = 0;
    const auto read = [&](size_t capacity) {
        return paravue_store_get_value(store, HostName, PARAVUE_TERMINATED, buffer, capacity, &length);
    };
    QCOMPARE(read(4), PARAVUE_BUFFER_TOO_SMALL);
    QCOMPARE(std::string(buffer, 6), std::string("\0?????", 6));
    QCOMPARE(length, size_t(4));
    QCOMPARE(read(5), PARAVUE_OK);
    QCOMPARE(std::string(buffer, 6), std::string("gate\0?", 6));
    QCOMPARE(paravue_store_get_value(store, HostName, PARAVUE_TERMINATED, nullptr, 5, &length),
             PARAVUE_WRONG_USE);
    QCOMPARE(paravue_store_get_value(store, HostName, PARAVUE_TERMINATED, buffer, 5, nullptr),
             PARAVUE_WRONG_USE);
}

void TestCapi::badTextsAreRefused_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("no UTF-8") << QByteArray("\xff\xfe");
    QTest::newRow("an unfinished letter") << QByteArray("gate\xd0");
    QTest::newRow("a zero byte") << QByteArray("a\0b", 3);
}

void TestCapi::badTextsAreRefused()
{
    QFETCH(QByteArray, text);
    start(0);
    paravue_store *store = loadedStore();
    QVERIFY(store);
    const auto before = valueOf(store, HostName);
    QCOMPARE(setValue(store, HostName, text.toStdString()), PARAVUE_WRONG_USE);
    QCOMPARE(valueOf(store, HostName), before);
    QCOMPARE(paravue_store_set_value(store, HostName, PARAVUE_TERMINATED, nullptr, 0), PARAVUE_WRONG_USE);
}

void TestCapi::handlesAreRecognised()
{
    start();
    paravue_store *store = loadedStore();
    QVERIFY(store);
    paravue_window *window = nullptr;
    QCOMPARE(paravue_window_create(store, nullptr, &window), PARAVUE_OK);
    QCOMPARE(paravue_store_load(reinterpret_cast<paravue_store *>(window)), PARAVUE_BAD_HANDLE);
    QCOMPARE(paravue_store_destroy(store), PARAVUE_BUSY);
    QCOMPARE(paravue_window_destroy(window), PARAVUE_OK);
    QCOMPARE(paravue_window_destroy(window), PARAVUE_BAD_HANDLE);
    QCOMPARE(paravue_store_destroy(store), PARAVUE_OK);
    QCOMPARE(paravue_store_destroy(store), PARAVUE_BAD_HANDLE);
    QCOMPARE(paravue_store_load(nullptr), PARAVUE_BAD_HANDLE);
    QCOMPARE(paravue_store_destroy(nullptr), PARAVUE_OK);
    QVERIFY(loadedStore() != store);
}

void TestCapi::failuresHaveAResult_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<int>("result");
    QTest::newRow("nobody listens") << "closed" << PARAVUE_NETWORK;
    QTest::newRow("no answer in time") << "silent" << PARAVUE_NETWORK;
    QTest::newRow("a wrong password") << "password" << PARAVUE_LOGIN;
}

void TestCapi::failuresHaveAResult()
{
    QFETCH(QString, what);
    QFETCH(int, result);
    start(0);
    QTcpServer silent;
    QVERIFY(silent.listen(QHostAddress::LocalHost));
    std::string to = address("wrong");
    if (what != "password")
        to = "admin:admin@127.0.0.1:" + std::to_string(qint16(silent.serverPort()));
    if (what == "closed")
        silent.close();
    paravue_store *store = nullptr;
    QCOMPARE(paravue_store_create(to.data(), to.size(), 0, &store), PARAVUE_OK);
    QCOMPARE(paravue_store_set_timeouts(store, 3000, 300), PARAVUE_OK);
    QCOMPARE(waitAfter(paravue_store_load(store), store), result);
    const auto problem = textOf(paravue_problem);
    QVERIFY(problem && !problem->empty());
    // The next one starts afresh.
    QCOMPARE(waitAfter(paravue_store_load(store), store), result);
}

void TestCapi::problemsAreInTheLanguageOfTheHost()
{
    start(0);
    const auto problem = [] {
        paravue_store *store = nullptr;
        paravue_store_create("admin:admin@127.0.0.1:1", PARAVUE_TERMINATED, 0, &store); // nobody listens
        waitAfter(paravue_store_load(store), store);
        return QString::fromStdString(textOf(paravue_problem).value_or("none"));
    };
    QVERIFY2(problem().contains("The recorder refuses the connection"), qPrintable(problem()));
    QCOMPARE(paravue_set_language("ru", PARAVUE_TERMINATED), PARAVUE_OK);
    QVERIFY2(problem().contains("Регистратор отклоняет соединение"), qPrintable(problem()));
    QCOMPARE(paravue_set_language("\xff", 1), PARAVUE_WRONG_USE);
    QCOMPARE(textOf(paravue_problem), std::string("Недопустимый аргумент вызова"));
    QCOMPARE(std::string(paravue_result_text(PARAVUE_WRONG_USE)),
             std::string("An argument of the call makes no sense"));
    QCOMPARE(paravue_set_language("en-GB", 5), PARAVUE_OK);
    QVERIFY2(problem().contains("The recorder refuses the connection"), qPrintable(problem()));
}

void TestCapi::exchangesAreGivenUp()
{
    start(0);
    paravue_store *store = nullptr;
    QCOMPARE(paravue_store_create(address().c_str(), PARAVUE_TERMINATED, 0, &store), PARAVUE_OK);
    m_recorder->setReplyDelay(60'000);
    QCOMPARE(paravue_store_load(store), PARAVUE_OK);
    QCOMPARE(paravue_process_events(1), PARAVUE_OK);
    QCOMPARE(paravue_process_events(0x80000000), PARAVUE_WRONG_USE);
    QCOMPARE(paravue_store_reset(store), PARAVUE_OK);
    QCOMPARE(paravue_store_wait(store), PARAVUE_CANCELLED);
    m_recorder->setReplyDelay(0);
    QCOMPARE(waitAfter(paravue_store_load(store), store), PARAVUE_OK);
    QCOMPARE(paravue_store_load(store), PARAVUE_OK);
    QCOMPARE(paravue_store_destroy(store), PARAVUE_OK);
}

void TestCapi::observersHearWhatHappens()
{
    start(0);
    paravue_store *store = nullptr;
    QCOMPARE(paravue_store_create(address().c_str(), PARAVUE_TERMINATED, 0, &store), PARAVUE_OK);
    Notes notes;
    paravue_observer observer = notes.observer();
    QCOMPARE(paravue_store_set_observer(store, &observer), PARAVUE_OK);
    QCOMPARE(waitAfter(paravue_store_load(store), store), PARAVUE_OK);
    QCOMPARE(notes.loaded, 1);
    QCOMPARE(notes.percentages.back(), 100);
    QCOMPARE(waitAfter(paravue_store_save(store), store), PARAVUE_OK);
    QCOMPARE(notes.saved, 1);
    m_recorder.reset();
    QCOMPARE(waitAfter(paravue_store_load(store), store), PARAVUE_NETWORK);
    QVERIFY(!notes.messages.empty());

    const size_t heard = notes.messages.size();
    QCOMPARE(paravue_store_set_observer(store, nullptr), PARAVUE_OK);
    QCOMPARE(waitAfter(paravue_store_load(store), store), PARAVUE_NETWORK);
    QCOMPARE(notes.messages.size(), heard);
    observer.size = sizeof(size_t); // a structure without its callbacks
    QCOMPARE(paravue_store_set_observer(store, &observer), PARAVUE_WRONG_USE);
}

void TestCapi::callbacksCannotStartOrDestroy()
{
    start();
    paravue_store *store = nullptr;
    QCOMPARE(paravue_store_create(address().c_str(), PARAVUE_TERMINATED, 0, &store), PARAVUE_OK);
    Notes notes;
    std::vector<paravue_result> refused;
    notes.atLoaded = [&] {
        paravue_window *window = nullptr;
        refused = {paravue_store_load(store),
                   paravue_store_save(store),
                   paravue_store_function(store, "soft_reboot", PARAVUE_TERMINATED, nullptr, 0),
                   paravue_store_wait(store),
                   paravue_store_wait_for_save(store, 0, 0),
                   paravue_process_events(0),
                   paravue_window_create(store, nullptr, &window),
                   paravue_store_destroy(store),
                   paravue_stop()};
        QCOMPARE(setValue(store, HostName, "from a callback"), PARAVUE_OK);
    };
    const paravue_observer observer = notes.observer();
    QCOMPARE(paravue_store_set_observer(store, &observer), PARAVUE_OK);
    QCOMPARE(waitAfter(paravue_store_load(store), store), PARAVUE_OK);
    QCOMPARE(refused, std::vector<paravue_result>(9, PARAVUE_BUSY));
    QCOMPARE(valueOf(store, HostName), std::string("from a callback"));

    // One that comes while no exchange runs.
    refused.clear();
    std::function<void()> callback = [&] {
        refused = {paravue_store_load(store), paravue_store_save(store), paravue_process_events(0)};
    };
    const std::string description = "no description";
    QCOMPARE(paravue_check_description_data(
                 description.data(), description.size(), nullptr, 0,
                 [](void *user, const paravue_description_problem *) {
                     (*static_cast<std::function<void()> *>(user))();
                 },
                 &callback, nullptr, nullptr),
             PARAVUE_BAD_DATA);
    QCOMPARE(refused, std::vector<paravue_result>(3, PARAVUE_BUSY));
}

void TestCapi::functionsRun()
{
    start(0);
    paravue_store *store = loadedStore();
    QVERIFY(store);
    const auto run = [store](const char *name, const char *argument = nullptr) {
        return waitAfter(
            paravue_store_function(store, name, PARAVUE_TERMINATED, argument, PARAVUE_TERMINATED), store);
    };
    QCOMPARE(run("get_report"), PARAVUE_OK);
    const auto path = textOf([store](char *buffer, size_t capacity, size_t *length) {
        return paravue_store_file_path(store, "tmp", PARAVUE_TERMINATED, buffer, capacity, length);
    });
    QVERIFY(path);
    QVERIFY(QFile(QString::fromStdString(*path)).size() > 0);
    QCOMPARE(run("no_such_function"), PARAVUE_NOT_FOUND);
    QCOMPARE(run("soft_istall_packet", "general/no/package"), PARAVUE_LOCAL_FILE);
    QCOMPARE(setValue(store, HostName, "saved by a function"), PARAVUE_OK);
    QCOMPARE(run("save_settings"), PARAVUE_OK);
    QFile received(m_recorder->filePath("net"));
    QVERIFY(received.open(QIODevice::ReadOnly));
    QVERIFY(received.readAll().contains("saved by a function"));
}

void TestCapi::windowsRunAndAreClosed()
{
    start();
    paravue_store *store = nullptr;
    QCOMPARE(paravue_store_create(address().c_str(), PARAVUE_TERMINATED, 0, &store), PARAVUE_OK);
    for (const bool accepts : {true, false}) {
        Ends ends;
        paravue_window_options options = {};
        options.size = sizeof(options);
        options.features = PARAVUE_WINDOW_TRACKS_CHANGES | PARAVUE_WINDOW_OFFERS_REFRESH;
        ends.addTo(options);
        paravue_window *window = nullptr;
        QCOMPARE(paravue_window_create(store, &options, &window), PARAVUE_OK);
        QCOMPARE(paravue_window_show(window), PARAVUE_WRONG_USE); // it has no parent
        Notes notes;
        notes.atLoaded = [&] {
            // From the event loop, once the window has built its pages.
            QTimer::singleShot(0, [&] {
                if (!accepts)
                    QCOMPARE(paravue_window_close(window), PARAVUE_OK);
                else
                    QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Return);
            });
        };
        const paravue_observer observer = notes.observer();
        QCOMPARE(paravue_store_set_observer(store, &observer), PARAVUE_OK);
        int32_t isAccepted = -1;
        QCOMPARE(paravue_window_run(window, &isAccepted), PARAVUE_OK);
        QCOMPARE(isAccepted, accepts ? 1 : 0);
        QCOMPARE(ends.areAccepted, std::vector<int32_t>{isAccepted});
        QCOMPARE(paravue_window_run(window, &isAccepted), PARAVUE_WRONG_USE);
        QCOMPARE(paravue_store_wait_for_save(store, 0, 0), PARAVUE_OK);
        QCOMPARE(paravue_window_destroy(window), PARAVUE_OK);
    }
}

void TestCapi::windowsCloseOnlyTheirOwn()
{
    start();
    constexpr size_t Count = 2;
    paravue_window *windows[Count] = {};
    Notes notes[Count];
    for (size_t i = 0; i < Count; ++i) {
        paravue_store *store = nullptr;
        QCOMPARE(paravue_store_create(address().c_str(), PARAVUE_TERMINATED, 0, &store), PARAVUE_OK);
        const paravue_observer observer = notes[i].observer();
        QCOMPARE(paravue_store_set_observer(store, &observer), PARAVUE_OK);
        QCOMPARE(paravue_window_create(store, nullptr, &windows[i]), PARAVUE_OK);
    }
    const auto visible = [] {
        const QWidgetList all = QApplication::topLevelWidgets();
        return std::count_if(all.begin(), all.end(), [](const QWidget *widget) {
            return widget->inherits("CWinMain") && widget->isVisible();
        });
    };
    std::vector<qsizetype> left;
    notes[0].atLoaded = [&] { QTimer::singleShot(0, [&] { paravue_window_run(windows[1], nullptr); }); };
    notes[1].atLoaded = [&] {
        QTimer::singleShot(0, [&] {
            for (paravue_window *window : windows) {
                QCOMPARE(paravue_window_close(window), PARAVUE_OK);
                left.push_back(visible());
            }
        });
    };
    QCOMPARE(paravue_window_run(windows[0], nullptr), PARAVUE_OK);
    QCOMPARE(left, (std::vector<qsizetype>{1, 0}));
}

/// In a callback that comes before the window is complete.
void TestCapi::windowsAreClosedWhileTheyOpen()
{
    start();
    paravue_store *store = nullptr;
    QCOMPARE(paravue_store_create("not an address@", PARAVUE_TERMINATED, 0, &store), PARAVUE_OK);
    paravue_window *window = nullptr;
    QCOMPARE(paravue_window_create(store, nullptr, &window), PARAVUE_OK);
    const paravue_observer observer = closerAtMessage(window);
    QCOMPARE(paravue_store_set_observer(store, &observer), PARAVUE_OK);
    const ModalWatcher message;
    int32_t isAccepted = -1;
    QVERIFY(paravue_window_run(window, &isAccepted) != PARAVUE_OK);
    QCOMPARE(isAccepted, 0);
    QVERIFY(message.hasSeen());
}

void TestCapi::windowRunsInAParent()
{
    start();
    QWindow parent;
    parent.setGeometry(50, 50, 1000, 700);
    parent.create();
    paravue_store *store = nullptr;
    QCOMPARE(paravue_store_create(address().c_str(), PARAVUE_TERMINATED, 0, &store), PARAVUE_OK);
    paravue_window_options options = {};
    options.size = sizeof(options);
    options.parent = parent.winId();
    options.width = 900;
    options.height = 600;
    paravue_window *window = nullptr;
    const paravue_result created = paravue_window_create(store, &options, &window);
    if (QGuiApplication::platformName() == "offscreen") {
        QCOMPARE(created, PARAVUE_NO_WINDOWS);
        return; // the test capi_in_a_parent runs on a screen that knows windows of other programs
    }
    QCOMPARE(created, PARAVUE_OK);
    parent.show();
    Notes notes;
    const paravue_observer observer = notes.observer();
    QCOMPARE(paravue_store_set_observer(store, &observer), PARAVUE_OK);
    QCOMPARE(paravue_window_show(window), PARAVUE_OK);
    AWAIT_VERIFY_WITHIN(notes.loaded == 1, 20'000);
    QWidget *page = nullptr;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->inherits("paravue::SetupPage"))
            page = widget;
    }
    QVERIFY(page && page->isVisible());
    QCOMPARE(page->windowHandle()->parent()->winId(), parent.winId());
    AWAIT_COMPARE(page->size(), QSize(900, 600));
    QCOMPARE(paravue_window_set_geometry(window, 10, 20, 800, 500), PARAVUE_OK);
    AWAIT_COMPARE(page->geometry(), QRect(10, 20, 800, 500));
    AWAIT_VERIFY(page->grab().toImage().pixelColor(400, 250).isValid());
    QCOMPARE(paravue_window_close(window), PARAVUE_OK);
    AWAIT_VERIFY(!page->isVisible());
    QCOMPARE(paravue_window_destroy(window), PARAVUE_OK);

    // One that is closed before its session has begun.
    Ends early;
    early.addTo(options);
    QCOMPARE(paravue_window_create(store, &options, &window), PARAVUE_OK);
    QCOMPARE(paravue_window_show(window), PARAVUE_OK);
    QCOMPARE(paravue_window_close(window), PARAVUE_OK);
    QCOMPARE(early.areAccepted, std::vector<int32_t>{0});
    QCOMPARE(paravue_process_events(10), PARAVUE_OK);
    QCOMPARE(paravue_store_load(store), PARAVUE_OK); // nothing else is being fetched
    QCOMPARE(paravue_store_reset(store), PARAVUE_OK);
    QCOMPARE(paravue_window_destroy(window), PARAVUE_OK);

    // And one that is closed while its session begins.
    paravue_store *nowhere = nullptr;
    QCOMPARE(paravue_store_create("not an address@", PARAVUE_TERMINATED, 0, &nowhere), PARAVUE_OK);
    QCOMPARE(paravue_window_create(nowhere, &options, &window), PARAVUE_OK);
    const paravue_observer closer = closerAtMessage(window);
    QCOMPARE(paravue_store_set_observer(nowhere, &closer), PARAVUE_OK);
    const ModalWatcher message;
    QCOMPARE(paravue_window_show(window), PARAVUE_OK);
    AWAIT_COMPARE(early.areAccepted, (std::vector<int32_t>{0, 0}));
    QCOMPARE(paravue_window_destroy(window), PARAVUE_OK);

    // The end of the application ends the session too.
    Ends ends;
    ends.addTo(options);
    QCOMPARE(paravue_window_create(store, &options, &window), PARAVUE_OK);
    notes.atLoaded = [] { QCoreApplication::exit(); };
    paravue_result result = PARAVUE_INTERNAL;
    QTimer::singleShot(0, [&] { result = paravue_window_run(window, nullptr); });
    QCoreApplication::exec();
    QCOMPARE(result, PARAVUE_OK);
    QCOMPARE(ends.areAccepted, std::vector<int32_t>{0});
    QCOMPARE(paravue_window_set_geometry(window, 10, 20, 800, 500), PARAVUE_OK);
    QCOMPARE(paravue_window_destroy(window), PARAVUE_OK);
    QVERIFY(parent.handle()); // the host's window is still there
}

void TestCapi::aWindowShowsWhyNothingCame()
{
    start();
    const std::string to = address();
    m_recorder.reset();
    paravue_store *store = nullptr;
    QCOMPARE(paravue_store_create(to.c_str(), PARAVUE_TERMINATED, 0, &store), PARAVUE_OK);
    paravue_window *window = nullptr;
    QCOMPARE(paravue_window_create(store, nullptr, &window), PARAVUE_OK);
    QTimer poll;
    connect(&poll, &QTimer::timeout, [] {
        if (QWidget *dialog = QApplication::activeModalWidget())
            dialog->close();
    });
    poll.start(2000); // long after the connection was refused
    int32_t isAccepted = -1;
    QCOMPARE(paravue_window_run(window, &isAccepted), PARAVUE_NETWORK);
    QCOMPARE(isAccepted, 0);
    poll.stop();
}

void TestCapi::descriptionsAreChecked()
{
    start(0);
    const std::string description = "<pvsetup version='1.0'>\n"
                                    "  <window><title>Gate</title><self/></window>\n"
                                    "  <tabwidget><tab><name>Net</name><item type='gridlayout'>\n"
                                    "    <item type='no such type' row='0' column='0'/>\n"
                                    "  </item></tab></tabwidget>\n"
                                    "</pvsetup>\n";
    struct Problem {
        int32_t isError;
        int32_t line;
        std::string text;
    };
    std::vector<Problem> problems;
    const paravue_problem_callback note = [](void *user, const paravue_description_problem *problem) {
        static_cast<std::vector<Problem> *>(user)->push_back(
            {problem->is_error, problem->line, std::string(problem->text, problem->length)});
    };
    size_t errors = 0;
    size_t warnings = 0;
    QCOMPARE(paravue_check_description_data(description.data(), description.size(), nullptr, 0, note,
                                            &problems, &errors, &warnings),
             PARAVUE_BAD_DATA);
    QCOMPARE(problems.size(), errors + warnings);
    QVERIFY(std::any_of(problems.begin(), problems.end(), [](const Problem &problem) {
        return problem.isError && problem.line == 4 && problem.text.find("no such type") != std::string::npos;
    }));

    const std::string path = m_folder->filePath("interface.xml").toStdString();
    const auto checkFile = [&] {
        return paravue_check_description(path.c_str(), path.size(), nullptr, 0, nullptr, nullptr, nullptr,
                                         nullptr);
    };
    QFile(QString::fromStdString(path)).remove();
    QCOMPARE(checkFile(), PARAVUE_LOCAL_FILE);
    m_recorder.reset();
    const QTemporaryDir model;
    const recorder::RecorderServer shipped(model.path());
    const std::string interface = shipped.filePath("interface").toStdString();
    QCOMPARE(paravue_check_description(interface.c_str(), PARAVUE_TERMINATED, nullptr, 0, nullptr, nullptr,
                                       &errors, nullptr),
             PARAVUE_OK);
    QCOMPARE(errors, size_t(0));
}

void TestCapi::noExceptionComesOut()
{
    start(0);
    const std::string description = "no description";
    const paravue_problem_callback fail = [](void *, const paravue_description_problem *) {
        throw QString("thrown by a callback");
    };
    QCOMPARE(paravue_check_description_data(description.data(), description.size(), nullptr, 0, fail, nullptr,
                                            nullptr, nullptr),
             PARAVUE_INTERNAL);
    QCOMPARE(textOf(paravue_problem), std::string("thrown by a callback"));
    QVERIFY(loadedStore()); // the library counts no callback any more
}

QTEST_APPLESS_MAIN(TestCapi)

#include "tst_capi.moc"
