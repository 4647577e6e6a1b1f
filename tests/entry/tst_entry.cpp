#include "ModalWatcher.h"
#include "StoreFixture.h"
#include "entry/DoParavueSetup.h"
#include "entry/RunParavueSetup.h"
#include "entry/SetupPage.h"
#include "entry/cSetupWidget.h"
#include "support/TestTable.h"
#include "support/Waiting.h"
#include "ui/CWinMain.h"

#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

#if defined(__has_feature) // clang
#define FINDS_LEAKS __has_feature(address_sanitizer)
#elif defined(__SANITIZE_ADDRESS__) // GCC
#define FINDS_LEAKS 1
#endif
#if FINDS_LEAKS
#include <sanitizer/lsan_interface.h>
#endif

using namespace paravue;
using namespace paravue::test;

namespace
{

const QByteArray Description = R"(<pvsetup><window><self/></window><tabwidget><tab><item type="gridlayout">
  <item type="setup"><store/></item>
  <item type="pushbutton" row="1"><text>Throw</text>
    <action type="call" slot="callSetup" param="throw,run failed">store</action></item>
  <item type="pushbutton" row="2"><text>Number</text>
    <action type="call" slot="callSetup" param="throw_number">store</action></item>
  <item type="pushbutton" row="3"><text>Open</text>
    <action type="call" slot="showDialog" param="box">self</action></item>
</item></tab></tabwidget>
<buttonOK><action type="call" slot="accept">self</action></buttonOK>
<x><box/><item type="gridlayout"><item type="pushbutton"><text>Inside</text>
  <action type="call" slot="callSetup" param="throw,dialog failed">store</action></item></item></x></pvsetup>)";

/// Throws where it is told to; its window has buttons that call it.
class ThrowingStore : public OrbSetup
{
public:
    ThrowingStore() { setFilePath("interface", m_files.store().filePath("interface")); }
    void load() override
    {
        if (throwsInLoad)
            throw QString("load failed");
        OrbSetup::load();
    }
    void function(const QString &name, const QString &arg) override
    {
        calls << name + '(' + arg + ')';
        if (name == "throw")
            throw QString(arg);
        if (name == "throw_number")
            throw 7;
    }

    bool throwsInLoad = false;
    QStringList calls;

private:
    StoreFixture m_files{{{"interface", Description}}};
};

/// Qt's own event handling does not clean up behind an exception that passes through it.
class ToleratedLeaks
{
#if FINDS_LEAKS
    __lsan::ScopedDisabler m_disabler;
#endif
};

void press(const QWidget &window, const QString &text)
{
    for (QPushButton *button : window.findChildren<QPushButton *>()) {
        if (button->text() == text) {
            // From the event loop of the window itself: the watcher's own timer must be over by then.
            QTimer::singleShot(0, button, &QPushButton::click);
        }
    }
}

bool windowIsLeft()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (const QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->inherits("CWinMain"))
            return true;
    }
    return false;
}

} // namespace

class TestEntry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void returnsTheResult_data();
    void returnsTheResult();
    void standsAboveItsParent();
    void tellsWhetherItHasShownPages_data();
    void tellsWhetherItHasShownPages();
    void standsInAPage_data();
    void standsInAPage();
    void leavesTheKeysOfThePageToIt();
    void asksBeforeThePageGoes();
    void endsWithThePageOrItsStore_data();
    void endsWithThePageOrItsStore();
    void endsWhileThePageBegins();
    void showsWhatWasThrown_data();
    void showsWhatWasThrown();
    void letsOtherExceptionsThrough();
    void splitsCommands_data();
    void splitsCommands();
};

void TestEntry::returnsTheResult_data()
{
    const TestTable<QString, int> row("button", "result");
    row("accepted", "OK", 1);
    row("rejected", "Cancel", 0);
    row("closed", "", 0);
}

void TestEntry::returnsTheResult()
{
    QFETCH(QString, button);
    QFETCH(int, result);
    StoreFixture fixture({{"interface", Description}});
    const ModalWatcher messages;
    const ModalWatcher windows(
        [&](QWidget &window) {
            QCOMPARE(window.parentWidget(), nullptr);
            QVERIFY(window.windowFlags().testFlags(Qt::Tool | Qt::FramelessWindowHint));
            for (QPushButton *candidate : window.findChildren<QPushButton *>()) {
                if (candidate->text() == button)
                    candidate->click();
            }
        },
        "CWinMain");
    QCOMPARE(DoParavueSetup(&fixture.store()), result);
    QCOMPARE(windows.count(), 1);
    QVERIFY(!windowIsLeft());
    QVERIFY(!messages.hasSeen());
    Q_EMIT fixture.store().progress(5); // nobody listens any more
}

void TestEntry::standsAboveItsParent()
{
    StoreFixture fixture({{"interface", Description}});
    QWidget host;
    host.setGeometry(100, 100, 700, 500);
    host.show();
    const ModalWatcher windows(
        [&](QWidget &window) {
            QCOMPARE(window.parentWidget(), &host);
            QVERIFY(window.isWindow() && window.isModal());
            const QPoint distance = window.geometry().center() - host.geometry().center();
            QVERIFY2(distance.manhattanLength() < 200,
                     qPrintable(QString::number(distance.manhattanLength())));
        },
        "CWinMain");
    const SessionOutcome outcome = RunParavueSetup(&fixture.store(), {&host});
    QVERIFY(!outcome.isAccepted && outcome.isShown);
    QCOMPARE(windows.count(), 1);
}

void TestEntry::tellsWhetherItHasShownPages_data()
{
    const TestTable<QByteArray, bool> row("description", "isShown");
    row("good", Description, true);
    row("no description", "<html/>", false);
}

void TestEntry::tellsWhetherItHasShownPages()
{
    QFETCH(QByteArray, description);
    StoreFixture fixture({{"interface", description}});
    QTimer user; // closes the message, and then the window
    connect(&user, &QTimer::timeout, &user, [] {
        if (QWidget *top = QApplication::activeModalWidget())
            top->close();
    });
    user.start(10);
    QTEST(RunParavueSetup(&fixture.store()).isShown, "isShown");
}

void TestEntry::standsInAPage_data()
{
    const TestTable<QString, bool> row("button", "isAccepted");
    row("accepted", "OK", true);
    row("rejected", "Cancel", false);
}

void TestEntry::standsInAPage()
{
    QFETCH(QString, button);
    QFETCH(bool, isAccepted);
    StoreFixture fixture({{"interface", Description}});
    QTabWidget host;
    auto *page = new SetupPage(&fixture.store());
    host.addTab(new QWidget, "first");
    host.addTab(page, "recorder");
    host.resize(640, 480);
    host.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host));
    QVERIFY(page->findChildren<QPushButton *>().isEmpty()); // nothing is fetched for a page that nobody sees
    host.setCurrentIndex(1);
    AWAIT_VERIFY(!page->findChildren<QPushButton *>().isEmpty());
    auto *window = page->findChild<QDialog *>();
    QVERIFY(window && !window->isWindow() && !QApplication::activeModalWidget());
    AWAIT_COMPARE(window->size(), page->size());
    QSignalSpy finished(page, &SetupPage::finished);
    for (QPushButton *candidate : page->findChildren<QPushButton *>()) {
        if (candidate->text() == button)
            QTest::mouseClick(candidate, Qt::LeftButton);
    }
    QCOMPARE(finished, QList<QVariantList>({{isAccepted}}));
    AWAIT_VERIFY(page->findChildren<QDialog *>().isEmpty());
}

/// Ctrl+F, F5 and the others are the host's where the focus is in no page.
void TestEntry::leavesTheKeysOfThePageToIt()
{
    StoreFixture fixture({{"interface", Description}});
    QWidget host;
    auto *layout = new QVBoxLayout(&host);
    auto *own = new QPushButton("own", &host);
    auto *page = new SetupPage(&fixture.store());
    page->setWindowOptions({.tracksChanges = true});
    layout->addWidget(own);
    layout->addWidget(page);
    host.show();
    AWAIT_VERIFY(!page->findChildren<QPushButton *>().isEmpty());
    host.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&host));
    const ModalWatcher find({}, "paravue::FindDialog");
    for (QWidget *focused : {own, page->findChildren<QPushButton *>().constFirst()}) {
        QVERIFY(!find.hasSeen());
        focused->setFocus();
        QTest::keySequence(&host, QKeySequence::Find);
    }
    QVERIFY(find.hasSeen());
}

void TestEntry::asksBeforeThePageGoes()
{
    StoreFixture fixture({{"interface", Description}, {"net", "NAME=old\n"}});
    SetupPage page(&fixture.store());
    WindowOptions options;
    options.tracksChanges = true;
    options.asksBeforeClosing = true;
    page.setWindowOptions(options);
    QVERIFY(page.mayClose() && !page.hasChanges()); // has not begun
    page.show();
    AWAIT_VERIFY(!page.findChildren<QPushButton *>().isEmpty());
    auto answer = QMessageBox::Cancel;
    const ModalWatcher questions(
        [&](QWidget &box) { static_cast<QMessageBox &>(box).button(answer)->click(); });
    QVERIFY(page.mayClose() && !page.hasChanges());
    auto *window = static_cast<CWinMain *>(page.findChild<QDialog *>());
    window->setValue("net/untitled/NAME/new");
    QVERIFY(page.hasChanges() && !page.mayClose());
    QCOMPARE(questions.count(), 1);
    page.hide();
    QVERIFY(!page.mayClose());
    QCOMPARE(questions.count(), 1);
    page.show();
    answer = QMessageBox::Discard;
    QVERIFY(page.mayClose());
    QCOMPARE(questions.count(), 2);
    window->setValue("net/untitled/NAME/old");
    QVERIFY(!page.hasChanges());
}

void TestEntry::endsWithThePageOrItsStore_data()
{
    QTest::addColumn<bool>("isPageFirst");
    QTest::newRow("page") << true;
    QTest::newRow("store") << false;
}

void TestEntry::endsWithThePageOrItsStore()
{
    QFETCH(bool, isPageFirst);
    auto fixture = std::make_unique<StoreFixture>(QMap<QString, QByteArray>{{"interface", Description}});
    auto page = std::make_unique<SetupPage>(&fixture->store());
    page->show();
    AWAIT_VERIFY(!page->findChildren<QPushButton *>().isEmpty());
    QSignalSpy finished(page.get(), &SetupPage::finished);
    if (isPageFirst) {
        page.reset();
        QCOMPARE(finished.size(), 0);
        Q_EMIT fixture->store().progress(5); // nobody listens any more
    } else {
        fixture.reset();
        QCOMPARE(finished, QList<QVariantList>({{false}}));
        AWAIT_VERIFY(page->findChildren<QDialog *>().isEmpty());
    }
}

/// A message of a window that is being made waits for its user.
void TestEntry::endsWhileThePageBegins()
{
    StoreFixture fixture({}); // without a description
    const QPointer<SetupPage> page(new SetupPage(&fixture.store()));
    const ModalWatcher messages([&](QWidget &) { delete page; });
    page->show();
    AWAIT_VERIFY(messages.hasSeen());
    QVERIFY(!page);
    const auto hasWindow = [] {
        const QWidgetList widgets = QApplication::allWidgets();
        return std::any_of(widgets.begin(), widgets.end(),
                           [](QWidget *widget) { return qobject_cast<CWinMain *>(widget); });
    };
    AWAIT_VERIFY(!hasWindow());
}

void TestEntry::showsWhatWasThrown_data()
{
    const TestTable<QString, QString> row("where", "message");
    row("while the window is constructed", "load", "load failed");
    row("while it runs", "Throw", "run failed");
    row("in a dialog", "Inside", "dialog failed");
    row("while a message is shown", "message", "message failed");
}

void TestEntry::showsWhatWasThrown()
{
    QFETCH(QString, where);
    QFETCH(QString, message);
    ThrowingStore store;
    store.throwsInLoad = where == "load";
    bool windowWasVisible = false;
    const ModalWatcher messages([&](QWidget &box) {
        QVERIFY(!box.parentWidget());
        QCOMPARE(box.findChildren<QPushButton *>().size(), 1);
        for (const QWidget *widget : QApplication::topLevelWidgets())
            windowWasVisible = windowWasVisible || (widget != &box && widget->isVisible());
    });
    QTimer::singleShot(0, &store, [&] {
        if (where == "message") {
            QTimer::singleShot(0, &store, [] { throw QString("message failed"); });
            Q_EMIT store.pseudothrow("first");
        }
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (window->inherits("CWinMain"))
                press(*window, where == "Inside" ? "Open" : where);
        }
    });
    QTimer opened;
    connect(&opened, &QTimer::timeout, &opened, [&] {
        QWidget *dialog = QApplication::activeModalWidget();
        if (!dialog || dialog->metaObject()->className() != QByteArray("QDialog"))
            return;
        opened.stop();
        press(*dialog, "Inside");
    });
    opened.start(1);
    {
        [[maybe_unused]] const ToleratedLeaks leaks;
        QCOMPARE(DoParavueSetup(&store), 0);
    }
    QCOMPARE(messages.title(), "Paravue Setup");
    QCOMPARE(messages.count(), 1);
    QVERIFY(messages.texts().first().contains(message));
    QVERIFY(!windowWasVisible);
    QVERIFY(!windowIsLeft());
}

void TestEntry::letsOtherExceptionsThrough()
{
    ThrowingStore store;
    const ModalWatcher messages;
    QTimer::singleShot(0, &store, [] { press(*QApplication::activeModalWidget(), "Number"); });
    int caught = 0;
    try {
        [[maybe_unused]] const ToleratedLeaks leaks;
        DoParavueSetup(&store);
    } catch (int number) {
        caught = number;
    }
    QCOMPARE(caught, 7);
    QVERIFY(!messages.hasSeen());
    QVERIFY(!windowIsLeft());
}

void TestEntry::splitsCommands_data()
{
    const TestTable<QString, QString> row("command", "call");
    row("name only", "save_settings", "save_settings()");
    row("argument with a comma", "a,b,c", "a(b,c)");
    row("empty parts", "a,,b,", "a(,b,)");
    row("no name", ",b", "(b)");
    row("nothing", "", "()");
}

void TestEntry::splitsCommands()
{
    QFETCH(QString, command);
    ThrowingStore store;
    cSetupWidget widget(&store);
    QVERIFY(widget.isWindow());
    QVERIFY(QMetaObject::invokeMethod(&widget, "callSetup", Q_ARG(QString, command)));
    QTEST(store.calls.join(u'|'), "call");
}

QTEST_MAIN(TestEntry)
#include "tst_entry.moc"
