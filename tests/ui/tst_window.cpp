#include "DescribedWindow.h"
#include "controls/MaskEditor.h"
#include "controls/PtzCalibrator.h"
#include "controls/ScheduleGrid.h"
#include "support/TestTable.h"
#include "support/Waiting.h"
#include "ui/window/LoadingView.h"
#include "ui/window/StatusLine.h"
#include "ui/window/WindowHeader.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSizeGrip>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeWidget>

using namespace paravue::test;

namespace
{

const QByteArray TwoPages =
    "<tabwidget><tab><name>One</name><item type='gridlayout'>"
    "<item type='edit'><key>net/untitled/NAME</key></item></item></tab>"
    "<tab><name>@two</name><item type='gridlayout'><item type='label'><text>{net/untitled/NAME}</text></item>"
    "</item></tab><selection>1</selection></tabwidget><translations><ru><two>Два</two></ru></translations>";

/// Counts how often the watched widgets are shown.
class ShowEvents : public QObject
{
public:
    int count = 0;

    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Show ? 1 : 0;
        return false;
    }
};

const QByteArray ProgressDialog =
    "<dialog><progress_dialog/><item type='gridlayout'><item type='progressbar' "
    "maxvalue='100'><key>general/progress_dialog/progress</key></item></item></dialog>";

QLabel *header(const DescribedWindow &window)
{
    return window.window->findChild<paravue::WindowHeader *>()->label();
}

QToolButton *closeButton(const DescribedWindow &window)
{
    return window.window->findChild<paravue::WindowHeader *>()->closeButton();
}

QTabWidget *tabs(const DescribedWindow &window)
{
    return window.window->findChild<QTabWidget *>();
}

QList<QDialog *> dialogs(const DescribedWindow &window)
{
    QList<QDialog *> visible;
    for (QDialog *dialog : window.window->findChildren<QDialog *>()) {
        if (dialog->isVisible())
            visible << dialog;
    }
    return visible;
}

} // namespace

class TestWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void explainsWhatCannotBeLoaded_data();
    void explainsWhatCannotBeLoaded();
    void leavesOutUnknownTypes();
    void showsTheFrameOfTheDescription();
    void standsWhereItWasPut();
    void remembersItsPlace_data();
    void remembersItsPlace();
    void keepsAReadableWidth();
    void hidesTheStatusLineOnRequest();
    void placesTabs();
    void elidesAndScrollsTabs();
    void keepsItsOwnSizeWithoutBothNumbers();
    void showsTheNewLanguageOfAnOldDescription();
    void showsAnotherLanguageAtOnce();
    void rebuildsForANewDescription();
    void showsNoOtherPageWhileItRebuilds();
    void showsEveryControlOfANewDescription();
    void reloadsForOtherFiles();
    void keepsTheOldPagesWhenTheNewOnesAreBad();
    void showsProgressInTheDialog();
    void showsTheFirstErrorOfABurst();
    void pressesButtonsByKey_data();
    void pressesButtonsByKey();
    void walksThroughTheGridByTab();
    void focusesCancelFirstWithoutPages();
    void followsTheMouse();
    void runsUntilClosed();
};

void TestWindow::explainsWhatCannotBeLoaded_data()
{
    QTest::addColumn<QByteArray>("description");
    QTest::addColumn<QString>("message"); // a pattern
    QTest::newRow("no file") << QByteArray() << "File \"interface\" does not exist";
    QTest::newRow("unreadable") << QByteArray("/") << "Cannot read file .*/nowhere";
    QTest::newRow("broken") << QByteArray("<pvsetup>\n<a>") << ".*/interface:2\\.\\d+\n.+";
}

void TestWindow::explainsWhatCannotBeLoaded()
{
    QFETCH(QByteArray, description);
    QFETCH(QString, message);
    StoreFixture fixture({{"net", ""}});
    if (description == "/")
        fixture.store().setFilePath("interface", "/nowhere");
    else if (!description.isEmpty())
        fixture.setFile("interface", description);
    ModalWatcher messages;
    // A message that comes while another is on the screen is dropped, in the window as well.
    QTimer::singleShot(0, &fixture.store(), [&] { Q_EMIT fixture.store().pseudothrow("dropped"); });
    CWinMain window(&fixture.store(), nullptr);
    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.title(), "Paravue Setup");
    // The box shortens long paths; the window shows the same.
    const QString shown = messages.texts().first();
    QVERIFY2(QRegularExpression(QRegularExpression::anchoredPattern(message)).match(shown).hasMatch() ||
                 shown.contains(QChar(0x2026)),
             qPrintable(shown));
    auto *view = window.findChild<paravue::LoadingView *>();
    QVERIFY(view->isVisible());
    QVERIFY(!view->findChild<QProgressBar *>()->isVisible());
    QStringList texts;
    for (const QLabel *label : view->findChildren<QLabel *>())
        texts << label->text();
    QVERIFY2(texts.contains(shown), qPrintable(texts.join(u'|')));

    // Once the file has come after all, the window is as if nothing had happened.
    fixture.setFile("interface", describe(TwoPages));
    fixture.store().load();
    QVERIFY(!window.findChild<paravue::LoadingView *>() || !view->isVisible());
    QCOMPARE(window.findChild<QTabWidget *>()->count(), 2);
    QTest::keyClick(&window, Qt::Key_Escape);
    QVERIFY(!window.isVisible());
    QCOMPARE(messages.count(), 1);
}

void TestWindow::leavesOutUnknownTypes()
{
    const DescribedWindow window(describe(
        "<tabwidget><tab><item type='edit'/><item type='gridlayout'><item type='edit'/><item type='knob' "
        "row='1'/><item type='Edit' row='2'/><item type='label' row='3'><text>Last</text></item></item></tab>"
        "</tabwidget>"));
    QCOMPARE(window.messages.texts(), QStringList("Unknown node type \"edit\"")); // one box for one build
    QVERIFY(window.widget<QLineEdit>(0) && !window.widget<QLineEdit>(1));
    QCOMPARE(window.widget<QLabel>()->text(), "Last");
}

void TestWindow::showsTheFrameOfTheDescription()
{
    DescribedWindow window(
        describe("<window width='500' textside='left'><title>@t {net/untitled/NAME}</title><width>700</width>"
                 "<height>610</height><tooltip>Tip</tooltip></window>"
                 "<buttonOK><text>@t</text><tooltip>Sends {net/untitled/NAME}</tooltip></buttonOK>"
                 "<buttonCancel><text>Away</text><tooltip>not this</tooltip></buttonCancel>" +
                 TwoPages + "<translations><ru><t>Titel</t></ru></translations>"),
        {{"net", "NAME=Gate\n"}});
    QCOMPARE(window.window->windowTitle(), "Paravue Setup");
    QVERIFY2(header(window)->text().endsWith(" Titel Gate"), qPrintable(header(window)->text()));
    QCOMPARE(window.window->size(), QSize(700, 610));
    QCOMPARE(window.window->minimumWidth(), 500);
    QCOMPARE(window.window->toolTip(), "Tip");
    QCOMPARE(window.window->layoutDirection(), Qt::RightToLeft);
    QVERIFY(window.button<QPushButton>("Titel"));
    QCOMPARE(window.button<QPushButton>("Titel")->toolTip(), "Sends Gate");
    QCOMPARE(window.button<QPushButton>("Away")->toolTip(), "Sends Gate");
    QCOMPARE(tabs(window)->tabText(1), "Два");
    QCOMPARE(tabs(window)->currentIndex(), 1);

    // Of a larger one there is what the screen has room for.
    DescribedWindow large(describe("<window><width>5000</width><height>610</height></window>"));
    const QRect screen = large.window->screen()->availableGeometry();
    QCOMPARE(large.window->size(), QSize(screen.width(), 610));
    QVERIFY(screen.contains(large.window->geometry()));

    DescribedWindow bare(describe(TwoPages));
    QVERIFY(bare.button<QPushButton>("OK"));
    QVERIFY(bare.button<QPushButton>("Cancel"));
}

/// A window manager that takes up the window reports the corner of the screen for a while.
void TestWindow::standsWhereItWasPut()
{
    StoreFixture fixture(
        {{"interface", describe("<window><width>500</width><height>400</height></window>")}});
    fixture.store().blockSignals(true); // load() has not ended yet
    CWinMain window(&fixture.store(), nullptr);
    fixture.store().blockSignals(false);
    const QPoint before = window.geometry().center();
    window.move(0, 0);
    AWAIT_COMPARE(window.geometry().center(), before);
    window.move(0, 0);
    fixture.store().load();
    QCOMPARE(window.size(), QSize(500, 400));
    QVERIFY((window.geometry().center() - before).manhattanLength() <= 4);
}

void TestWindow::remembersItsPlace_data()
{
    const TestTable<QByteArray, QSize, QPoint, int> row("kept", "size", "middle", "page");
    const QPoint centre = QGuiApplication::primaryScreen()->availableGeometry().center();
    row("as it was left", "400 350 310 260 0", QSize(400, 350), QPoint(310, 260), 0);
    row("nothing", "", QSize(500, 400), centre, 1);
    row("nonsense", "400 350 many 260 0", QSize(500, 400), centre, 1);
    row("too little", "400 350", QSize(500, 400), centre, 1);
    row("no size", "0 350 310 260 0", QSize(500, 400), centre, 1);
    row("outside of every screen", "400 350 9000 -9000 0", QSize(400, 350), centre, 0);
    row("a page that is gone", "400 350 310 260 9", QSize(400, 350), QPoint(310, 260), 1);
}

void TestWindow::remembersItsPlace()
{
    QFETCH(QByteArray, kept);
    QFETCH(QSize, size);
    QFETCH(QPoint, middle);
    StoreFixture fixture({{"interface", describe("<window><width>500</width><height>400</height>"
                                                 "<model>{soft/untitled/MODEL}</model></window>" +
                                                 TwoPages)},
                          {"net", ""},
                          {"soft", "MODEL=Model 4\n"}});
    QMap<QString, QByteArray> memory{{"Model 4", kept}, {"Model 5", "300 300 300 300 0"}};
    paravue::WindowOptions options;
    options.memory = {[&](const QString &key) { return memory.value(key); },
                      [&](const QString &key, const QByteArray &value) { memory[key] = value; }};
    CWinMain window(&fixture.store(), nullptr, CWinMain::Placement::Window, options);
    auto *tabs = window.findChild<QTabWidget *>();
    QCOMPARE(window.size(), size);
    QVERIFY((window.geometry().center() - middle).manhattanLength() <= 4);
    QTEST(tabs->currentIndex(), "page");
    window.resize(450, 390);
    tabs->setCurrentIndex(1);
    window.reject();
    QCOMPARE(memory["Model 4"], QStringLiteral("450 390 %1 %2 1").arg(middle.x()).arg(middle.y()).toLatin1());
}

void TestWindow::keepsAReadableWidth()
{
    const auto listWidth = [](const QByteArray &label) {
        DescribedWindow window(
            describePage("<item type='list'><column/></item><item type='label' row='1' " + label + "/>"));
        window.window->resize(2400, 700);
        window.settle();
        return window.widget<QTreeWidget>()->width();
    };
    const int usual = listWidth({});
    QVERIFY2(usual > 1000 && usual <= 1200, qPrintable(QString::number(usual)));
    QCOMPARE(listWidth("width='1700'"), 1700);
}

void TestWindow::hidesTheStatusLineOnRequest()
{
    StoreFixture fixture({{"interface", describe(TwoPages)}, {"net", ""}});
    for (const bool isWanted : {true, false}) {
        paravue::WindowOptions options;
        options.hasStatusLine = isWanted;
        const CWinMain window(&fixture.store(), nullptr, CWinMain::Placement::Window, options);
        QCOMPARE(window.findChild<paravue::StatusLine *>()->isVisible(), isWanted);
    }
}

void TestWindow::placesTabs()
{
    const QPair<QByteArray, QTabWidget::TabPosition> positions[] = {{"South", QTabWidget::South},
                                                                    {"West", QTabWidget::West},
                                                                    {"East", QTabWidget::East},
                                                                    {"south", QTabWidget::North}};
    for (const auto &[word, position] : positions) {
        DescribedWindow window(describe("<tabwidget><tabposition>" + word + "</tabposition></tabwidget>"));
        QCOMPARE(tabs(window)->tabPosition(), position);
    }
}

void TestWindow::elidesAndScrollsTabs()
{
    const QString longName = QString("A tab with too many words ").repeated(4).trimmed();
    QByteArray pages = "<tab><name>" + longName.toUtf8() + "</name></tab>";
    for (int i = 0; i < 12; ++i)
        pages += "<tab><name>Page of something</name></tab>";
    for (const QByteArray position : {"North", "East"}) {
        DescribedWindow window(describe("<window><width>500</width><height>400</height></window><tabwidget>"
                                        "<tabposition>" +
                                        position + "</tabposition>" + pages + "</tabwidget>"));
        const QTabBar *bar = tabs(window)->tabBar();
        const auto length = [bar](int tab) {
            return qMax(bar->tabRect(tab).width(), bar->tabRect(tab).height());
        };
        const auto textWidth = [bar](int tab) {
            return bar->fontMetrics().horizontalAdvance(bar->tabText(tab));
        };
        QCOMPARE(bar->tabText(0), longName);
        QVERIFY2(length(0) < textWidth(0), position);
        QVERIFY2(bar->tabToolTip(0).contains(longName), qPrintable(bar->tabToolTip(0)));
        QVERIFY2(length(1) > textWidth(1), position);
        QCOMPARE(bar->tabToolTip(1), QString());
        const QList<QToolButton *> scrollers = bar->findChildren<QToolButton *>();
        QVERIFY2(std::any_of(scrollers.begin(), scrollers.end(),
                             [](const QToolButton *button) { return button->isVisible(); }),
                 position);
        QCOMPARE(window.window->size(), QSize(500, 400));
    }
}

void TestWindow::keepsItsOwnSizeWithoutBothNumbers()
{
    const QSize own = DescribedWindow(describe("<window/>")).window->size();
    for (const char *size : {"<width>0</width><height>700</height>", "<width>700</width>",
                             "<width>700</width><height>tall</height>"})
        QCOMPARE(DescribedWindow(describe(QByteArray("<window>") + size + "</window>")).window->size(), own);
}

void TestWindow::showsTheNewLanguageOfAnOldDescription()
{
    DescribedWindow window(
        describe("<window><title>@t</title></window><buttonOK><text>@t</text></buttonOK><buttonCancel>"
                 "<text>@t</text></buttonCancel><tabwidget><tab><name>@t</name><item type='gridlayout'>"
                 "<item type='list'><column>@t</column></item><item type='tabwidget' row='1'><tab>"
                 "<name>@t</name></tab></item></item></tab></tabwidget><translations><ru><t>Да</t></ru>"
                 "<en><t>Yes</t></en></translations>"),
        {{"streams", "[common]\nlanguage=ru\n"}});
    const auto texts = [&] {
        return QStringList{header(window)->text().section(u' ', -1),
                           window.window->findChild<QPushButton *>("buttonOK")->text(),
                           window.window->findChild<QPushButton *>("buttonCancel")->text(),
                           tabs(window)->tabText(0),
                           window.widget<QTreeWidget>()->headerItem()->text(0),
                           window.widget<QTabWidget>()->tabText(0)}
            .join(u' ');
    };
    QCOMPARE(texts(), "Да Да Да Да Да Да");
    window.fixture.store().setValue("streams/common/language/en");
    QCOMPARE(texts(), "Да Да Да Да Да Да"); // what a fetch brings shows when it is complete
    Q_EMIT window.fixture.store().loadDone();
    QCOMPARE(texts(), "Yes Yes Yes Yes Yes Yes");
}

void TestWindow::showsAnotherLanguageAtOnce()
{
    const QByteArray language = "<key>streams/common/language/";
    DescribedWindow window(
        describe("<window><self/><title>@t</title></window><buttonOK><text>@t</text></buttonOK>"
                 "<tabwidget><tab><name>@t</name><item type='gridlayout'>"
                 "<item type='label'><text>@t</text><tooltip>@t</tooltip></item>"
                 "<item type='pushbutton' row='1'><text>@t</text><action type='call' slot='showDialog' "
                 "param='box'>self</action></item>"
                 "<item type='dropdown' row='2'><text>ru" +
                 language +
                 "ru</key></text>"
                 "<text>@t" +
                 language +
                 "en</key></text></item>"
                 "<item type='checkbox' row='3'><text>@t</text></item></item></tab></tabwidget>"
                 "<x><box/><title>@t</title><item type='gridlayout'><item type='dropdown'>"
                 "<text>en" +
                 language + "en</key></text><text>ru" + language +
                 "ru</key></text></item>"
                 "<item type='label' row='1'><text>@t</text></item></item></x>"
                 "<translations><ru><t>Titel</t></ru><en><t>Title</t></en></translations>"),
        {{"streams", "[ common ]\nlanguage=ru\n"}});
    const auto texts = [&window] {
        return QStringList{header(window)->text().section(u' ', -1),
                           window.window->findChild<QPushButton *>("buttonOK")->text(),
                           window.window->findChild<QTabWidget *>()->tabText(0),
                           window.widget<QLabel>()->text(),
                           window.widget<QLabel>()->toolTip(),
                           window.widget<QPushButton>()->text(),
                           window.widget<QComboBox>()->itemText(1),
                           window.widget<QCheckBox>()->text()};
    };
    QCOMPARE(texts(), QStringList(8, "Titel"));
    // In a dialog, whose own texts change as well.
    QStringList ofDialog;
    const ModalWatcher dialogs(
        [&](QWidget &dialog) {
            auto *box = dialog.findChild<QComboBox *>();
            box->setCurrentIndex(0);
            Q_EMIT box->activated(0);
            ofDialog << dialog.windowTitle() << dialog.findChild<QLabel *>()->text();
        },
        "QDialog");
    window.widget<QPushButton>()->click();
    QCOMPARE(ofDialog, QStringList(2, "Title"));
    QCOMPARE(texts(), QStringList(8, "Title"));
    const QTabBar *bar = tabs(window)->tabBar();
    QVERIFY(bar->tabRect(0).width() > bar->fontMetrics().horizontalAdvance(bar->tabText(0)));
    auto *box = window.widget<QComboBox>();
    box->setCurrentIndex(0);
    Q_EMIT box->activated(0);
    QCOMPARE(texts(), QStringList(8, "Titel"));
}

void TestWindow::rebuildsForANewDescription()
{
    DescribedWindow window(
        describe("<window><title>First</title></window><buttonCancel><text>Leave</text></buttonCancel>" +
                 TwoPages + ProgressDialog),
        {{"net", "NAME=Gate\n"}, {"general", ""}});
    Q_EMIT window.fixture.store().progress(50);
    QCOMPARE(dialogs(window).size(), 1);
    window.fixture.setFile(
        "interface",
        describe(
            "<window><title>Second</title></window><tabwidget><tab/><tab><name>New</name>"
            "<item type='gridlayout'><item type='edit'><key>net/untitled/NAME</key></item></item></tab><tab/>"
            "</tabwidget>"));
    QLineEdit *oldField = window.widget<QLineEdit>();
    window.window->onLoadDone();
    QVERIFY(!window.window->findChildren<QLineEdit *>().contains(oldField)); // not even until it is deleted
    QCOMPARE(dialogs(window).size(), 0);
    oldField->setText("old"); // still there, but no control any more
    QCOMPARE(window.value("net/untitled/NAME"), "Gate");
    window.settle();
    QVERIFY(header(window)->text().endsWith("Second"));
    QVERIFY(!header(window)->text().contains("First"));
    QVERIFY(window.button<QPushButton>("Cancel"));
    QCOMPARE(tabs(window)->count(), 3);
    QCOMPARE(tabs(window)->currentIndex(), 1);
    QVERIFY(!window.widget<QLabel>());
    QVERIFY(!window.widget<QLineEdit>(1));
    QTest::keyClicks(window.widget<QLineEdit>(), "!");
    QCOMPARE(window.value("net/untitled/NAME"), "Gate!");
    QCOMPARE(window.messages.texts(), QStringList());
}

/// Pages take time to be laid out, and cameras on them begin to play.
void TestWindow::showsNoOtherPageWhileItRebuilds()
{
    const QByteArray page = "<tab><item type='gridlayout'><item type='label'/></item></tab>";
    for (const int shown : {0, 1, 2}) {
        DescribedWindow window(describe("<tabwidget>" + page.repeated(3) + "</tabwidget>"));
        tabs(window)->setCurrentIndex(shown);
        ShowEvents events;
        for (const int other : {(shown + 1) % 3, (shown + 2) % 3})
            window.widget<QLabel>(other)->installEventFilter(&events);
        window.fixture.setFile("interface", describe("<tabwidget><tab/></tabwidget>"));
        window.window->onLoadDone();
        QCOMPARE(tabs(window)->count(), 1);
        QCOMPARE(events.count, 0);
    }
}

/// The pages are visible already while they are built again.
void TestWindow::showsEveryControlOfANewDescription()
{
    DescribedWindow window(describePage("<item type='label'/>"));
    window.fixture.setFile("interface",
                           describePage("<item type='label'/><item type='edit' row='1'/><item type='list' "
                                        "row='2'/><item type='separator' row='3' orientation='horizontal'/>"
                                        "<item type='dropdown' row='4'/><item type='edit' visible='no'/>"));
    window.window->onLoadDone();
    window.settle();
    const QWidget *page = window.widget<QLineEdit>()->parentWidget();
    QStringList hidden;
    for (const QWidget *control : page->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (!control->isVisible())
            hidden << control->accessibleName();
    }
    QCOMPARE(hidden, QStringList{window.widget<QLineEdit>(1)->accessibleName()});
}

void TestWindow::reloadsForOtherFiles()
{
    DescribedWindow window(describe(TwoPages), {{"net", "NAME=Gate\n"}});
    tabs(window)->setCurrentIndex(0);
    const QPointer<QLineEdit> field = window.widget<QLineEdit>();
    window.fixture.store().setValue("net/untitled/NAME/New");
    window.fixture.store().load();
    QCOMPARE(field->text(), "New");
    window.settle();
    QVERIFY(field); // the window is not built again
    QCOMPARE(window.widget<QLabel>()->text(), "New");
    QCOMPARE(tabs(window)->currentIndex(), 0);
}

void TestWindow::keepsTheOldPagesWhenTheNewOnesAreBad()
{
    DescribedWindow window(describe(TwoPages), {{"net", "NAME=Gate\n"}});
    window.fixture.setFile("interface", "<pvsetup><tabwidget>");
    window.window->onLoadDone();
    QCOMPARE(window.messages.count(), 1);
    window.settle();
    QCOMPARE(tabs(window)->count(), 2);
    QTest::keyClicks(window.widget<QLineEdit>(), "!");
    QCOMPARE(window.value("net/untitled/NAME"), "Gate!");
    QCOMPARE(window.widget<QLabel>()->text(), "Gate!");
}

void TestWindow::showsProgressInTheDialog()
{
    DescribedWindow window(describe(TwoPages + ProgressDialog), {{"net", ""}, {"general", ""}});
    OrbSetup &store = window.fixture.store();
    for (int round = 0; round < 2; ++round) {
        QCOMPARE(dialogs(window).size(), 0);
        Q_EMIT store.progress(30);
        Q_EMIT store.progress(99);
        QCOMPARE(dialogs(window).size(), 1);
        QVERIFY(!dialogs(window).first()->isModal());
        QCOMPARE(dialogs(window).first()->findChild<QProgressBar *>()->value(), 99);
        QCOMPARE(window.value("general/progress_dialog/progress"), "99");
        Q_EMIT store.progress(100);
    }
    QCOMPARE(dialogs(window).size(), 0);
    // One that the user has closed stays away until the next exchange.
    Q_EMIT store.progress(20);
    dialogs(window).first()->close();
    Q_EMIT store.progress(40);
    QCOMPARE(dialogs(window).size(), 0);
    Q_EMIT store.progress(0);
    QCOMPARE(dialogs(window).size(), 1);
    Q_EMIT store.progress(100);
    // After a fault nothing would close it any more.
    Q_EMIT store.progress(10);
    Q_EMIT store.pseudothrow("Connection lost");
    QCOMPARE(dialogs(window).size(), 0);
    QCOMPARE(window.messages.texts(), QStringList("Connection lost"));

    DescribedWindow withoutFile(describe(TwoPages + ProgressDialog), {{"net", ""}});
    Q_EMIT withoutFile.fixture.store().progress(30);
    QCOMPARE(dialogs(withoutFile).size() + withoutFile.messages.count(), 0);
}

void TestWindow::showsTheFirstErrorOfABurst()
{
    DescribedWindow window(describe(TwoPages), {{"net", ""}});
    OrbSetup &store = window.fixture.store();
    Q_EMIT store.pseudothrow("one");
    Q_EMIT store.pseudothrow("two");
    QCOMPARE(window.messages.texts(), QStringList("one"));
    QCOMPARE(window.messages.title(), "Paravue Setup");
    window.settle();
    // One that comes while the box is on the screen is dropped as well; afterwards there is a new one.
    QTimer::singleShot(0, &store, [&] { Q_EMIT store.pseudothrow("four"); });
    Q_EMIT store.pseudothrow("three");
    window.settle();
    window.window->setValue("net/untitled");
    QCOMPARE(window.messages.texts(), (QStringList{"one", "three", "Wrong value \"net/untitled\""}));
    QVERIFY(window.window->isVisible());
}

void TestWindow::pressesButtonsByKey_data()
{
    QTest::addColumn<QString>("focus");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("outcome"); // the last word that a button wrote, or how the window was closed
    QTest::newRow("Enter in a field") << "edit" << int(Qt::Key_Return) << "ok";
    QTest::newRow("Enter in a list of choices") << "choice" << int(Qt::Key_Return) << "ok";
    QTest::newRow("Enter on a button of the page") << "button" << int(Qt::Key_Return) << "format";
    QTest::newRow("Enter on Cancel") << "cancel" << int(Qt::Key_Return) << "rejected";
    QTest::newRow("Enter on the button of the header") << "close" << int(Qt::Key_Return) << "ok";
    QTest::newRow("Space on the button of the header") << "close" << int(Qt::Key_Space) << "rejected";
    QTest::newRow("Escape in a field") << "edit" << int(Qt::Key_Escape) << "rejected";
    QTest::newRow("Escape on a menu of the week") << "menu" << int(Qt::Key_Escape) << "";
    for (const char *editor : {"mask", "week", "legend", "points"}) {
        for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter})
            QTest::addRow("%s, %x", editor, key) << editor << int(key) << "";
    }
}

void TestWindow::pressesButtonsByKey()
{
    QFETCH(QString, focus);
    QFETCH(int, key);
    DescribedWindow window(
        describePage(
            "<item type='pushbutton'><text>Format</text>"
            "<action type='call' slot='setValue' param='net/untitled/DONE/format'>self</action></item>"
            "<item type='edit' row='1'/><item type='dropdown' row='2'/><item type='maskctrl' row='3'/>"
            "<item type='vornschedule' row='4'/><item type='PTZCalibrator' row='5'/>",
            "<buttonOK><action type='call' slot='setValue' param='net/untitled/DONE/ok'>self</action>"
            "<action type='enable'>self</action></buttonOK>"),
        {{"net", ""}});
    const QMap<QString, QWidget *> targets{{"edit", window.widget<QLineEdit>()},
                                           {"choice", window.widget<QComboBox>()},
                                           {"button", window.widget<QPushButton>()},
                                           {"mask", window.widget<paravue::MaskEditor>()},
                                           {"week", window.widget<paravue::ScheduleGrid>()},
                                           {"legend", window.widget<QToolButton>()},
                                           {"menu", window.widget<QPushButton>(1)},
                                           {"points", window.widget<paravue::PtzCalibrator>()},
                                           {"cancel", window.button<QPushButton>("Cancel")},
                                           {"close", closeButton(window)}};
    QSignalSpy rejected(window.window.get(), &QDialog::rejected);
    targets[focus]->setFocus();
    QKeyEvent held(QEvent::KeyPress, key, {}, {}, true); // since it has closed another window, for example
    QCoreApplication::sendEvent(targets[focus], &held);
    QVERIFY(window.window->isVisible() && window.value("net/untitled/DONE").isEmpty());
    QTest::keyClick(targets[focus], Qt::Key(key));
    QString outcome = window.value("net/untitled/DONE");
    if (!window.window->isVisible() && rejected.size() == 1)
        outcome += "rejected";
    QTEST(outcome, "outcome");
}

void TestWindow::walksThroughTheGridByTab()
{
    // Written from the bottom to the top, with a nested grid and a nested tab widget.
    const QByteArray page =
        "<tab><name>P</name><item type='gridlayout'><item type='edit' row='3'><e/></item>"
        "<item type='tabwidget' row='2'><tab><name>I</name><item type='gridlayout'><item type='edit' "
        "row='1'/>"
        "<item type='edit' row='0'/></item></tab></item>"
        "<item type='gridlayout' row='1'><item type='edit' column='1'/><item type='edit' column='0'/></item>"
        "<item type='label' row='0' column='0'/><item type='edit' row='0' column='1'/></item></tab>";
    const QByteArray plain = "<tab><name>Q</name><item type='gridlayout'><item type='edit'/>"
                             "<item type='edit' row='1'/></item></tab>";
    const auto walk = [](DescribedWindow &window, int steps) {
        QStringList names;
        tabs(window)->setFocus();
        for (int step = 0; step < steps; ++step) {
            QTest::keyClick(window.window.get(), Qt::Key_Tab);
            QWidget *focus = QApplication::focusWidget();
            const QString text = focus->property("text").toString();
            names << (qobject_cast<QTabBar *>(focus) ? "tabs"
                      : text.isEmpty()               ? focus->accessibleName()
                                                     : text);
        }
        return names.join(u' ');
    };
    DescribedWindow window(describe("<tabwidget>" + page + plain + "</tabwidget>"));
    QCOMPARE(walk(window, 11), "link7 link5 link4 tabs link3 link2 link0 OK Cancel Close tabs");
    tabs(window)->setCurrentIndex(1);
    QCOMPARE(walk(window, 6), "link8 link9 OK Cancel Close tabs");
    window.fixture.setFile("interface", describe("<tabwidget>" + plain + page + "</tabwidget>"));
    window.window->onLoadDone();
    window.settle();
    QCOMPARE(walk(window, 11), "link19 link17 link16 tabs link15 link14 link12 OK Cancel Close tabs");
}

void TestWindow::focusesCancelFirstWithoutPages()
{
    DescribedWindow window("no description");
    if (QWidget *focus = QApplication::focusWidget())
        focus->clearFocus();
    QTest::keyClick(window.window.get(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), window.button<QPushButton>("Cancel"));
}

void TestWindow::followsTheMouse()
{
    DescribedWindow window(
        describePage("<item type='label'><text>Text</text></item><item type='edit' row='1'/>"
                     "<item type='scroll' row='2' maxvalue='9'/>"));
    QWidget *strip = window.window->findChild<paravue::WindowHeader *>();
    const auto movesBy = [&](QWidget *grip, const QPoint &position) {
        const QPoint before = window.window->pos();
        QTest::mousePress(grip, Qt::LeftButton, {}, position);
        QTest::mouseMove(grip, position + QPoint(20, 10));
        QTest::mouseRelease(grip, Qt::LeftButton, {}, position);
        return window.window->pos() - before;
    };
    const QPoint inside(3, 3);
    for (QWidget *handle :
         std::initializer_list<QWidget *>{window.window.get(), strip, header(window), window.widget<QLabel>(),
                                          tabs(window)->currentWidget()})
        QCOMPARE(movesBy(handle, inside), QPoint(20, 10));
    for (QWidget *control : std::initializer_list<QWidget *>{
             window.widget<QLineEdit>(), window.widget<QScrollBar>(), window.window->findChild<QSizeGrip *>(),
             window.button<QPushButton>("OK")})
        QCOMPARE(movesBy(control, inside), QPoint());
}

void TestWindow::runsUntilClosed()
{
    DescribedWindow window(
        describePage("<item type='pushbutton'><action type='call' slot='accept'>self</action>"
                     "</item><item type='pushbutton' row='1'><action type='call' slot='exec'>self"
                     "</action></item>"));
    QTimer::singleShot(0, window.window.get(), [&] {
        QTest::mouseClick(window.widget<QPushButton>(1), Qt::LeftButton); // it runs already
        QTest::mouseClick(window.widget<QPushButton>(0), Qt::LeftButton);
    });
    QCOMPARE(window.window->exec(), int(QDialog::Accepted));
    QVERIFY(!window.window->isVisible());
    for (const bool byHeader : {false, true}) {
        QTimer::singleShot(0, window.window.get(), [&] {
            if (byHeader)
                closeButton(window)->click();
            else
                window.window->close();
        });
        QCOMPARE(window.window->exec(), int(QDialog::Rejected));
    }
}

QTEST_MAIN(TestWindow)
#include "tst_window.moc"
