#include "StoreFixture.h"
#include "controls/DialogFrame.h"
#include "support/Waiting.h"
#include "ui/CWinMain.h"

#include <QApplication>
#include <QCheckBox>
#include <QDeadlineTimer>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QSizeGrip>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>

#include <qt_windows.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

using namespace paravue;
using namespace paravue::test;

namespace
{

const QByteArray Description =
    "<pvsetup version='1.0'><window><self/><width>600</width><height>400</height></window>"
    "<buttonOK><action type='call' slot='accept'>self</action></buttonOK>"
    "<tabwidget><tab><name>First</name><item type='gridlayout'>"
    "<item type='label'><text>A label</text></item>"
    "<item type='edit' row='1'><key>net/untitled/NAME</key></item>"
    "<item type='checkbox' row='2'><text>A box</text><key>net/untitled/BOX</key></item>"
    "<item type='label' row='3'><text>Below</text></item></item></tab>"
    "<tab><name>Second</name><item type='gridlayout'><item type='label'><text>Two</text></item></item></tab>"
    "</tabwidget></pvsetup>";

const QPoint DragDistance(60, 40);
constexpr int DragSteps = 6;

/// Looks again and again, in the thread of the hand.
bool handWaits(const std::function<bool()> &isDone)
{
    constexpr int Limit = 3000;
    const QDeadlineTimer end(Limit);
    while (!isDone() && !end.hasExpired())
        Sleep(1);
    return isDone();
}

/// Runs a program of the system that Wine runs on, and does not wait for its end, which Wine does not notice.
void runBelowWine(const QString &commandLine)
{
    std::wstring text = commandLine.toStdWString();
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    CreateProcessW(L"Z:\\usr\\bin\\xdotool", text.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                   &startup, &process);
}

bool isWine()
{
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

void send(DWORD flags, const QPoint &point = {})
{
    const QSize screen = QGuiApplication::primaryScreen()->size();
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    // The whole screen is 65536 units wide and high.
    input.mi.dx = (LONG(point.x()) * 65536 + screen.width() - 1) / screen.width();
    input.mi.dy = (LONG(point.y()) * 65536 + screen.height() - 1) / screen.height();
    SendInput(1, &input, sizeof input);
}

/// Wine moves the cursor of its X server too, whose late echo would lead the hand astray: there the hand is
/// that of the X server.
void moveTo(const QPoint &point)
{
    if (isWine())
        runBelowWine(QStringLiteral("xdotool mousemove %1 %2").arg(point.x()).arg(point.y()));
    else
        send(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE, point);
    handWaits([&] {
        POINT cursor{};
        return GetCursorPos(&cursor) && QPoint(cursor.x, cursor.y) == point;
    });
}

void press()
{
    if (isWine())
        runBelowWine(QStringLiteral("xdotool mousedown 1"));
    else
        send(MOUSEEVENTF_LEFTDOWN);
    handWaits([] { return (GetAsyncKeyState(VK_LBUTTON) & 0x8000) != 0; });
}

void release()
{
    if (isWine())
        runBelowWine(QStringLiteral("xdotool mouseup 1"));
    else
        send(MOUSEEVENTF_LEFTUP);
    handWaits([] { return (GetAsyncKeyState(VK_LBUTTON) & 0x8000) == 0; });
}

void key(WORD code)
{
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = code;
    SendInput(1, &input, sizeof input);
    input.ki.dwFlags = KEYEVENTF_KEYUP;
    SendInput(1, &input, sizeof input);
}

/// Whether a thread is in the loop in which Windows moves or resizes a window.
bool isMoving(DWORD thread)
{
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    return GetGUIThreadInfo(thread, &info) && (info.flags & GUI_INMOVESIZE);
}

/// Acts as the user's hand while this thread runs the event loop: a drag has a loop of its own within it.
void act(const std::function<void()> &hand)
{
    std::atomic_bool hasActed = false;
    std::thread thread([&] {
        hand();
        hasActed = true;
    });
    while (!hasActed)
        waitUntil([&] { return hasActed.load(); });
    thread.join();
}

/// False when what stands at \a from is no handle.
bool drag(const QPoint &from, const QPoint &distance)
{
    const DWORD thread = GetCurrentThreadId();
    bool hasBegun = false;
    act([&] {
        moveTo(from);
        press();
        hasBegun = handWaits([&] { return isMoving(thread); });
        for (int i = 1; i <= DragSteps; ++i)
            moveTo(from + distance * i / DragSteps);
        release();
        handWaits([&] { return !isMoving(thread); });
    });
    return hasBegun;
}

/// Whether a drag has led to \a expected. On a busy computer Wine may count one step of the hand twice.
bool isAbout(const QPoint &actual, const QPoint &expected)
{
    const int tolerance = isWine() ? DragDistance.manhattanLength() / DragSteps + 1 : 0;
    return (actual - expected).manhattanLength() <= tolerance;
}

void click(const QPoint &at)
{
    act([&] {
        moveTo(at);
        press();
        release();
    });
}

QPoint middleOf(const QWidget &widget)
{
    return widget.mapToGlobal(widget.rect().center());
}

struct Session {
    Session() : window(std::make_unique<CWinMain>(&fixture.store(), nullptr)) {}
    ~Session() { window->endSession(); }

    template <class Widget>
    Widget *find(const QString &text) const
    {
        for (Widget *widget : window->findChildren<Widget *>()) {
            if (widget->isVisible() && widget->text() == text)
                return widget;
        }
        return nullptr;
    }
    QToolButton *closeButton() const
    {
        for (QToolButton *tool : window->findChildren<QToolButton *>()) {
            if (tool->accessibleName() == "Close")
                return tool;
        }
        return nullptr;
    }
    QTabWidget *tabs() const { return window->findChild<QTabWidget *>("tabWidget"); }
    QLineEdit *field() const { return window->findChild<QLineEdit *>(); }

    StoreFixture fixture{{{"interface", Description}, {"net", "NAME=''\r\nBOX=0\r\n"}, {"general", ""}}};
    std::unique_ptr<CWinMain> window;
};

} // namespace

class TestNativeWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void keysWorkBeforeAnyClick();
    void isDraggedByAnyPlace_data();
    void isDraggedByAnyPlace();
    void controlsKeepTheirPresses();
    void okAndCloseEndIt();
    void gripResizesIt();
    void secondSessionLeavesTheFirstUsable();
    void dialogsAreDraggedByTheirStrip();
};

void TestNativeWindow::initTestCase()
{
    if (QGuiApplication::platformName() != "windows")
        QSKIP("needs the windows platform plug-in");
}

using PlaceOf = std::function<QPoint(const Session &)>;
Q_DECLARE_METATYPE(PlaceOf)

void TestNativeWindow::isDraggedByAnyPlace_data()
{
    QTest::addColumn<PlaceOf>("place");
    const auto row = [](const char *name, const PlaceOf &place) { QTest::newRow(name) << place; };
    const auto header = [](const Session &session) {
        return session.window->findChild<QLabel *>("labelHeader");
    };
    row("header label", [header](const Session &s) { return middleOf(*header(s)); });
    row("strip of the header", [header](const Session &s) {
        const QWidget *strip = header(s)->parentWidget();
        return strip->mapToGlobal(QPoint(2, 2));
    });
    row("picture of the header", [header](const Session &s) {
        const QWidget *strip = header(s)->parentWidget();
        return strip->mapToGlobal(QPoint(header(s)->x() - 12, strip->height() / 2));
    });
    row("label of a page", [](const Session &s) { return middleOf(*s.find<QLabel>("A label")); });
    row("ground of a page", [](const Session &s) {
        const QWidget *label = s.find<QLabel>("Below");
        return label->parentWidget()->mapToGlobal(label->parentWidget()->rect().bottomRight() -
                                                  QPoint(20, 5));
    });
    row("beside the tabs", [](const Session &s) {
        const QTabBar *bar = s.tabs()->tabBar();
        return s.tabs()->mapToGlobal(QPoint(s.tabs()->width() - 10, bar->height() / 2));
    });
    row("left margin",
        [](const Session &s) { return s.window->mapToGlobal(QPoint(5, s.window->height() / 2)); });
    row("right margin", [](const Session &s) {
        return s.window->mapToGlobal(QPoint(s.window->width() - 5, s.window->height() / 2));
    });
    row("lower margin", [](const Session &s) {
        return s.window->mapToGlobal(QPoint(s.window->width() / 2, s.window->height() - 4));
    });
}

void TestNativeWindow::isDraggedByAnyPlace()
{
    QFETCH(PlaceOf, place);
    const Session session;
    QVERIFY(QTest::qWaitForWindowExposed(session.window.get()));
    const QPoint before = session.window->pos();
    QVERIFY(drag(place(session), DragDistance));
    AWAIT_VERIFY(isAbout(session.window->pos(), before + DragDistance));
    // It is as usable as before.
    click(middleOf(*session.field()));
    AWAIT_VERIFY(session.field()->hasFocus());
    const QPoint moved = session.window->pos();
    QVERIFY(drag(place(session), -DragDistance));
    AWAIT_VERIFY(isAbout(session.window->pos(), moved - DragDistance));
}

void TestNativeWindow::controlsKeepTheirPresses()
{
    const Session session;
    QVERIFY(QTest::qWaitForWindowExposed(session.window.get()));
    QVERIFY(drag(middleOf(*session.window->findChild<QLabel *>("labelHeader")), DragDistance));
    const QPoint place = session.window->pos();
    auto *box = session.window->findChild<QCheckBox *>();
    const bool wasChecked = box->isChecked();
    click(box->mapToGlobal(QPoint(8, box->height() / 2)));
    AWAIT_VERIFY(box->isChecked() != wasChecked);
    click(middleOf(*session.field()));
    AWAIT_VERIFY(session.field()->hasFocus());
    act([] { key('A'); });
    AWAIT_COMPARE(session.field()->text(), "a");
    const QTabBar *bar = session.tabs()->tabBar();
    click(bar->mapToGlobal(bar->tabRect(1).center()));
    AWAIT_COMPARE(session.tabs()->currentIndex(), 1);
    QCOMPARE(session.window->pos(), place);
}

void TestNativeWindow::okAndCloseEndIt()
{
    for (const bool isOk : {true, false}) {
        const Session session;
        QVERIFY(QTest::qWaitForWindowExposed(session.window.get()));
        QVERIFY(drag(middleOf(*session.window->findChild<QLabel *>("labelHeader")), DragDistance));
        const QWidget *pressed =
            isOk ? static_cast<QWidget *>(session.window->findChild<QPushButton *>("buttonOK"))
                 : session.closeButton();
        click(middleOf(*pressed));
        AWAIT_VERIFY(!session.window->isVisible());
        QCOMPARE(session.window->result(), int(isOk ? QDialog::Accepted : QDialog::Rejected));
    }
}

void TestNativeWindow::gripResizesIt()
{
    const Session session;
    QVERIFY(QTest::qWaitForWindowExposed(session.window.get()));
    const QRect before = session.window->geometry();
    QVERIFY(drag(middleOf(*session.window->findChild<QSizeGrip *>()), DragDistance));
    const auto corner = [&] { return session.window->geometry().bottomRight(); };
    AWAIT_VERIFY(isAbout(corner(), before.bottomRight() + DragDistance));
    QCOMPARE(session.window->pos(), before.topLeft());
}

void TestNativeWindow::keysWorkBeforeAnyClick()
{
    const Session session;
    QVERIFY(QTest::qWaitForWindowExposed(session.window.get()));
    AWAIT_COMPARE(GetForegroundWindow(), reinterpret_cast<HWND>(session.window->winId()));
    session.field()->setFocus();
    act([] { key('B'); });
    AWAIT_COMPARE(session.field()->text(), "b");
    act([] { key(VK_ESCAPE); });
    AWAIT_VERIFY(!session.window->isVisible());
}

void TestNativeWindow::secondSessionLeavesTheFirstUsable()
{
    const Session first;
    QVERIFY(QTest::qWaitForWindowExposed(first.window.get()));
    {
        const Session second;
        QVERIFY(QTest::qWaitForWindowExposed(second.window.get()));
        const QPoint before = second.window->pos();
        QVERIFY(drag(middleOf(*second.find<QLabel>("A label")), DragDistance));
        AWAIT_VERIFY(isAbout(second.window->pos(), before + DragDistance));
        click(middleOf(*second.closeButton()));
        AWAIT_VERIFY(!second.window->isVisible());
    }
    const QPoint before = first.window->pos();
    QVERIFY(drag(middleOf(*first.window->findChild<QLabel *>("labelHeader")), DragDistance));
    AWAIT_VERIFY(isAbout(first.window->pos(), before + DragDistance));
    click(middleOf(*first.field()));
    AWAIT_VERIFY(first.field()->hasFocus());
    act([] { key('C'); });
    AWAIT_COMPARE(first.field()->text(), "c");
}

void TestNativeWindow::dialogsAreDraggedByTheirStrip()
{
    QDialog dialog;
    dialog.resize(300, 200);
    DialogFrame::give(dialog, DialogFrame::Size::OfTheUser);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const QPoint before = dialog.pos();
    QVERIFY(drag(dialog.mapToGlobal(QPoint(60, 12)), DragDistance));
    AWAIT_VERIFY(isAbout(dialog.pos(), before + DragDistance));
}

QTEST_MAIN(TestNativeWindow)
#include "tst_native_window.moc"
