#include "DescribedWindow.h"
#include "controls/LiveView.h"
#include "controls/MaskEditor.h"
#include "controls/PtzCrossView.h"
#include "controls/PtzVideoInput.h"
#include "support/ModalWatcher.h"
#include "support/TestTable.h"
#include "support/Waiting.h"
#include "ui/tasks/StreamDetails.h"
#include "ui/types/ControlTypes.h"
#include "ui/window/WindowParts.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFileDialog>
#include <QHelpEvent>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QToolButton>
#include <QToolTip>

using namespace paravue;
using namespace paravue::test;

namespace
{

class FakeSource : public PictureSource
{
public:
    bool isActive() const override { return active; }
    bool hasConnected() const override { return connected; }
    quint64 traffic() const override { return pictures(); }
    std::optional<StreamFigures> figures() const override { return given; }
    QDateTime pictureTime() const override { return taken; }

    bool active = true;
    bool connected = true;
    std::optional<StreamFigures> given;
    QDateTime taken;
};

QPixmap filled(const QColor &colour, const QSize &size = {64, 48})
{
    QPixmap picture(size);
    picture.fill(colour);
    return picture;
}

/// A page with a live picture, a mask and a turning camera that show the pictures of one task.
struct Played {
    explicit Played(const QByteArray &type = "startVideoOnline")
        : fixture({{"net", ""}, {"general", ""}}),
          parts(fixture.store(), window, adapterOfType,
                {.report = [this](const QString &message) { reported << message; },
                 .showDialog = {},
                 .letUserAct = [](const std::function<void()> &wait) { wait(); },
                 .askForFileAccess = {}})
    {
        InterfaceDocument document;
        document.load(describe("<window><timetask period='1000' type='" + type +
                               "'><url>camera</url><target>view</target></timetask></window>"
                               "<page><item type='gridlayout'>"
                               "<item type='label'><text>Yard</text></item>"
                               "<item type='online' row='1'><view/></item>"
                               "<item type='maskctrl' row='2'><view/></item>"
                               "<item type='PTZvideoin' row='3'><view/></item>"
                               "<item type='PTZcrossView' row='4'><view/></item>"
                               "<item type='label' row='5'><view/></item></item></page>"),
                      QStringLiteral("description"));
        parts.description.replace(document);
        parts.builder.buildPage(parts.description.document().first("page"), &window);
        for (QLabel *label : window.findChildren<QLabel *>()) {
            if (!qobject_cast<LiveView *>(label))
                label->setText("Yard");
        }
        window.resize(400, 900);
        window.show();
        parts.tasks.setSourceFactory([this](PictureKind, const QDomElement &) {
            auto made = std::make_unique<FakeSource>();
            sources << made.get();
            return made;
        });
        parts.tasks.setClock([this] { return now; });
        parts.tasks.add(parts.description.document().first("window"));
        tick(1001);
    }
    ~Played()
    {
        parts.tasks.clear();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void tick(int milliseconds)
    {
        now += milliseconds;
        parts.tasks.tick();
    }
    void send(const QPixmap &picture) { Q_EMIT sources.last()->pixmapReady(picture); }
    template <class View>
    View &view() const
    {
        return *window.findChild<View *>();
    }
    /// The one with the picture, once it has come.
    QLabel *plainLabel() const
    {
        for (QLabel *label : window.findChildren<QLabel *>()) {
            if (!qobject_cast<LiveView *>(label) && !label->pixmap(Qt::ReturnByValue).isNull())
                return label;
        }
        return nullptr;
    }
    /// The window over the page, if there is one.
    PictureView *enlarged() const
    {
        for (PictureView *view : window.findChildren<PictureView *>()) {
            if (view->isWindow() && view->isVisible())
                return view;
        }
        return nullptr;
    }
    StreamDetails *details() const { return window.findChild<StreamDetails *>(); }

    QStringList reported;
    StoreFixture fixture;
    QWidget window;
    WindowParts parts;
    QList<QPointer<FakeSource>> sources;
    quint32 now = 0;
};

bool openMenu(QWidget &control, QContextMenuEvent::Reason reason = QContextMenuEvent::Mouse)
{
    const QPoint place = control.rect().center();
    QContextMenuEvent event(reason, place, control.mapToGlobal(place));
    QCoreApplication::sendEvent(&control, &event);
    return control.findChild<QMenu *>() != nullptr;
}

/// Chooses the entry that begins with \a text in the context menu of \a control.
void choose(QWidget &control, const QString &text)
{
    QVERIFY(openMenu(control));
    for (QAction *action : control.findChild<QMenu *>()->actions()) {
        if (action->text().startsWith(text)) {
            QVERIFY(action->isEnabled());
            action->trigger();
            control.findChild<QMenu *>()->close();
            return;
        }
    }
    QFAIL(qPrintable("no entry " + text));
}

} // namespace

class TestPictureActions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesTheFocusOnceItsTaskRuns();
    void enlarges_data();
    void enlarges();
    void enlargesACrossView();
    void steersInALargerPicture();
    void opensTheMenuOfALabel();
    void leavesEditorsTheirMouse();
    void endsWithItsTask();
    void copies();
    void proposesAName();
    void namesStillPicturesByTheirTime();
    void savesAsItsSuffixSays_data();
    void savesAsItsSuffixSays();
    void dropsASaveWhoseWindowEnds();
    void tellsTheTimeOfStillPictures();
    void fetchesNow();
    void fetchesBeforeItsFirstRun_data();
    void fetchesBeforeItsFirstRun();
    void takesLettersOfOtherLayouts();
    void detailsTheStream();
    void keepsWhatIsRead();
};

void TestPictureActions::takesTheFocusOnceItsTaskRuns()
{
    Played played;
    auto &online = played.view<LiveView>();
    // Pictures that never come are what the details are needed for.
    QCOMPARE(online.focusPolicy(), Qt::TabFocus);
    QTest::keyClick(&online, Qt::Key_I);
    QVERIFY(played.details());
    auto &camera = played.view<PtzVideoInput>();
    for (const auto &position : {std::optional(PtzPosition()), std::optional<PtzPosition>()}) {
        camera.steering().setPosition(position);
        QVERIFY(camera.focusPolicy() & Qt::TabFocus);
    }
    QCOMPARE(played.view<MaskEditor>().focusPolicy(), Qt::StrongFocus);
    played.sources.last()->active = false;
    played.tick(1);
    QCOMPARE(online.focusPolicy(), Qt::TabFocus);
}

void TestPictureActions::enlarges_data()
{
    const TestTable<std::function<void(QWidget &)>, std::function<void(QWidget &)>> row("open", "close");
    const auto press = [](Qt::Key key) { return [key](QWidget &view) { QTest::keyClick(&view, key); }; };
    const auto doubleClick = [](QWidget &view) {
        QTest::mouseDClick(&view, Qt::LeftButton, {}, view.rect().center());
    };
    row("key", press(Qt::Key_F11), press(Qt::Key_Escape));
    row("key, twice", press(Qt::Key_F11), press(Qt::Key_F11));
    row("double click", doubleClick, doubleClick);
    row(
        "menu", [](QWidget &view) { choose(view, "Enlarge"); }, [](QWidget &view) { choose(view, "Close"); });
}

void TestPictureActions::enlarges()
{
    QFETCH(std::function<void(QWidget &)>, open);
    QFETCH(std::function<void(QWidget &)>, close);
    Played played;
    auto &online = played.view<LiveView>();
    played.send(filled(Qt::red));
    open(online);
    QPointer<PictureView> large = played.enlarged();
    QVERIFY(large && large->width() > 3 * online.width() / 2);
    QCOMPARE(large->windowTitle(), "Yard");
    QCOMPARE(large->pixmap().toImage(), filled(Qt::red).toImage());
    const QAccessibleInterface *heard = QAccessible::queryAccessibleInterface(large);
    QCOMPARE(heard->role(), QAccessible::Graphic);
    QCOMPARE(heard->text(QAccessible::Name), "Yard");
    QCOMPARE(heard->text(QAccessible::Value), large->valueText());
    large->showMinimized();
    QTest::keyClick(&online, Qt::Key_F11);
    QCOMPARE(played.enlarged(), large.data()); // one is enough
    QVERIFY(!large->isMinimized());
    QKeyEvent held(QEvent::KeyPress, Qt::Key_F11, {}, {}, true); // the key that has opened it
    QCoreApplication::sendEvent(large, &held);
    QCOMPARE(played.enlarged(), large.data());

    // It lives on with the same task, over a lost connection too.
    played.send(filled(Qt::green));
    QCOMPARE(large->pixmap().toImage(), filled(Qt::green).toImage());
    QCOMPARE(played.sources.size(), 1);
    played.sources.last()->active = false;
    played.tick(1);
    QVERIFY2(large->valueText().startsWith("Connection lost"), qPrintable(large->valueText()));
    played.tick(1001);
    QCOMPARE(played.sources.size(), 2);
    played.send(filled(Qt::blue));
    QCOMPARE(large->pixmap().toImage(), filled(Qt::blue).toImage());
    played.tick(1);
    QVERIFY2(!large->valueText().contains("lost"), qPrintable(large->valueText()));

    close(*large);
    AWAIT_VERIFY(!large);
    played.send(filled(Qt::red));
    played.tick(1001);
    QVERIFY(played.window.isVisible());
}

/// Its position may come from the task of other pictures, or from none.
void TestPictureActions::enlargesACrossView()
{
    Played played;
    played.send(filled(Qt::red));
    auto &cross = played.view<PtzCrossView>();
    cross.slot_Set_PTZ_pos("0.5,0,0.25");
    QTest::keyClick(&cross, Qt::Key_F11);
    auto *large = qobject_cast<PtzCrossView *>(played.enlarged());
    QVERIFY(large);
    QCOMPARE(large->position(), cross.position());
    cross.slot_Set_PTZ_pos("0.25,0,0.25");
    QCOMPARE(large->position(), cross.position());
    QVERIFY(!large->steering().isSteerable());
}

void TestPictureActions::steersInALargerPicture()
{
    Played played;
    auto &camera = played.view<PtzVideoInput>();
    auto &cross = played.view<PtzCrossView>();
    for (auto [view, steering] : {std::pair<QWidget *, PtzSteering *>(&camera, &camera.steering()),
                                  std::pair<QWidget *, PtzSteering *>(&cross, &cross.steering())}) {
        QTest::keyClick(view, Qt::Key_F11);
        steering->setPosition(PtzPosition{0.25, 0, 0.25});
        QStringList asked;
        connect(steering, &PtzSteering::turnRequested, this,
                [&](const PtzPosition &goal) { asked << ptzPositionText(goal); });
        QTest::keyClick(played.enlarged(), Qt::Key_Plus);
        QCOMPARE(asked, QStringList("0.250,0.000,0.300"));
        steering->disconnect(this);
        QTest::keyClick(played.enlarged(), Qt::Key_Escape);
    }
}

void TestPictureActions::opensTheMenuOfALabel()
{
    Played played;
    played.send(filled(Qt::red));
    QLabel *label = played.plainLabel();
    QVERIFY(label);
    choose(*label, "Enlarge");
    QVERIFY(played.enlarged());
    QCOMPARE(played.enlarged()->pixmap().size(), QSize(64, 48));
}

void TestPictureActions::leavesEditorsTheirMouse()
{
    Played played;
    played.send(filled(Qt::red));
    auto &mask = played.view<MaskEditor>();
    QTest::mouseDClick(&mask, Qt::LeftButton, {}, mask.rect().center());
    QTest::mouseRelease(&mask, Qt::LeftButton, {}, mask.rect().center());
    QVERIFY(!openMenu(mask));
    QVERIFY(!played.enlarged());
    // Its own menu goes on with what can be done with the picture.
    QVERIFY(openMenu(mask, QContextMenuEvent::Keyboard));
    QStringList entries;
    for (const QAction *action : mask.findChild<QMenu *>()->actions())
        entries << action->text();
    QVERIFY2(entries.contains("Invert") && entries.last() == "Stream details", qPrintable(entries.join('|')));
    delete mask.findChild<QMenu *>();
    QApplication::clipboard()->clear();
    QTest::keyClick(&mask, Qt::Key_C, Qt::ControlModifier);
    QVERIFY(QApplication::clipboard()->pixmap().isNull()); // it copies its cells
    QTest::keyClick(&mask, Qt::Key_F11);
    QVERIFY(played.enlarged());
    // A double click turns a camera whose position is known.
    auto &camera = played.view<PtzVideoInput>();
    camera.steering().setPosition(PtzPosition{});
    QTest::keyClick(played.enlarged(), Qt::Key_Escape);
    QTest::mouseDClick(&camera, Qt::LeftButton, {}, camera.rect().center());
    QVERIFY(!played.enlarged());
}

void TestPictureActions::endsWithItsTask()
{
    Played played;
    played.send(filled(Qt::red));
    auto &online = played.view<LiveView>();
    QTest::keyClick(&online, Qt::Key_F11);
    QTest::keyClick(&online, Qt::Key_I);
    const QPointer<PictureView> large = played.enlarged();
    const QPointer<StreamDetails> details = played.details();
    QVERIFY(large && details);
    QVERIFY(openMenu(online));
    played.parts.tasks.remove({played.parts.description.document().first("window").firstChildElement()});
    AWAIT_VERIFY(!large && !details);
    for (QAction *action : online.findChild<QMenu *>()->actions())
        action->trigger(); // leads nowhere
    QTest::keyClick(&online, Qt::Key_F11);
    QVERIFY(!played.enlarged());
}

void TestPictureActions::copies()
{
    Played played;
    played.send(filled(Qt::red));
    QTest::keyClick(&played.view<LiveView>(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->pixmap().toImage().convertToFormat(QImage::Format_RGB32),
             filled(Qt::red).toImage().convertToFormat(QImage::Format_RGB32));
}

void TestPictureActions::proposesAName()
{
    Played played;
    QStringList names;
    played.parts.tasks.clear();
    played.parts.tasks.setPictureSaver([&](const QPixmap &picture, const QString &name, const QWidget &) {
        QCOMPARE(picture.size(), QSize(64, 48)); // of the stream
        names << name;
    });
    played.parts.tasks.add(played.parts.description.document().first("window"));
    played.tick(1001);
    QTest::keyClick(&played.view<LiveView>(), Qt::Key_S, Qt::ControlModifier); // no picture yet
    QVERIFY(names.isEmpty());
    played.send(filled(Qt::red));
    QTest::keyClick(&played.view<LiveView>(), Qt::Key_S, Qt::ControlModifier);
    choose(played.view<LiveView>(), "Save picture");
    QCOMPARE(names.size(), 2);
    QVERIFY2(
        QRegularExpression("^Yard \\d{4}-\\d\\d-\\d\\d \\d\\d-\\d\\d-\\d\\d$").match(names[0]).hasMatch(),
        qPrintable(names[0]));
}

void TestPictureActions::namesStillPicturesByTheirTime()
{
    Played played("v3getjpeg");
    QString proposed;
    played.parts.tasks.clear();
    played.parts.tasks.setPictureSaver(
        [&](const QPixmap &, const QString &name, const QWidget &) { proposed = name; });
    played.parts.tasks.add(played.parts.description.document().first("window"));
    played.tick(1001);
    played.sources.last()->taken = QDateTime({2026, 3, 4}, {5, 6, 7});
    played.send(filled(Qt::red));
    QTest::keyClick(&played.view<LiveView>(), Qt::Key_S, Qt::ControlModifier);
    QCOMPARE(proposed, "Yard 2026-03-04 05-06-07");
}

void TestPictureActions::savesAsItsSuffixSays_data()
{
    const TestTable<QString, QString, QByteArray, bool> row("typed", "file", "format", "isSaved");
    row("no suffix", "yard", "yard.png", "png", true);
    row("jpeg", "yard.JPEG", "yard.JPEG", "jpeg", true);
    row("jpg", "yard.jpg", "yard.jpg", "jpeg", true);
    row("another suffix", "yard.bmp", "yard.bmp", "png", true);
    row("a folder that is not there", "none/yard.png", "none/yard.png", "", false);
}

void TestPictureActions::savesAsItsSuffixSays()
{
    QFETCH(QString, typed);
    QFETCH(QString, file);
    QFETCH(bool, isSaved);
    Played played;
    const QTemporaryDir folder;
    ModalWatcher dialogs(
        [&](QWidget &shown) {
            auto &dialog = static_cast<QFileDialog &>(shown);
            QCOMPARE(dialog.nameFilters().size(), 2);
            auto *name = dialog.findChild<QLineEdit *>("fileNameEdit");
            QVERIFY(name->text().startsWith("proposed"));
            if (!isSaved) // the dialog itself refuses such names
                return dialog.reject();
            dialog.setDirectory(folder.path());
            name->selectAll();
            QTest::keyClicks(name, typed);
            QTest::keyClick(name, Qt::Key_Return);
        },
        "QFileDialog");
    played.parts.files.savePicture(filled(Qt::red), "proposed", played.view<LiveView>());
    QCOMPARE(dialogs.count(), 1);
    QImageReader reader(folder.filePath(file));
    reader.setDecideFormatFromContent(true);
    QTEST(reader.format(), "format");
    QCOMPARE(reader.read().size(), isSaved ? QSize(64, 48) : QSize(0, 0));
    QCOMPARE(played.reported, QStringList());
}

void TestPictureActions::dropsASaveWhoseWindowEnds()
{
    Played played;
    auto over = std::make_unique<QWidget>(&played.window, Qt::Window);
    over->show();
    ModalWatcher dialogs([&](QWidget &) { over.reset(); }, "QFileDialog");
    played.parts.files.savePicture(filled(Qt::red), "proposed", *over);
    QCOMPARE(dialogs.count(), 1);
    QVERIFY(!over);
}

void TestPictureActions::tellsTheTimeOfStillPictures()
{
    Played played("v3getjpeg");
    auto &online = played.view<LiveView>();
    const QImage before = [&] {
        online.setPixmap(filled(Qt::red));
        return online.grab().toImage();
    }();
    played.send(filled(Qt::red));
    QVERIFY(online.grab().toImage() != before);
    const QString said = online.accessibleDescription();
    const QDateTime now = QDateTime::currentDateTime();
    const auto arrival = QDateTime::fromString(said, "'Picture fetched 'yyyy-MM-dd HH:mm:ss");
    QVERIFY2(arrival > now.addSecs(-60) && arrival <= now, qPrintable(said));
    played.sources.last()->taken = QDateTime({2026, 3, 4}, {5, 6, 7}); // as the recorder says
    played.send(filled(Qt::red));
    QCOMPARE(online.accessibleDescription(), "Picture taken 2026-03-04 05:06:07");
    QCOMPARE(online.valueText(), QString());
    // Where it covers no cells.
    auto &mask = played.view<MaskEditor>();
    QCOMPARE(mask.accessibleDescription(), "Picture taken 2026-03-04 05:06:07");
    const QImage cells = mask.grab(mask.pictureRect()).toImage();
    const QImage whole = mask.grab().toImage();
    mask.setCaption("Picture taken 11:11:11");
    QCOMPARE(mask.grab(mask.pictureRect()).toImage(), cells);
    QVERIFY(mask.grab().toImage() != whole);
    QLabel *label = played.plainLabel();
    QVERIFY(label);
    QCOMPARE(label->accessibleDescription(), "Picture taken 2026-03-04 05:06:07");
    const auto shownTip = [](QLabel &shown) {
        QHelpEvent event(QEvent::ToolTip, QPoint(1, 1), shown.mapToGlobal(QPoint(1, 1)));
        QCoreApplication::sendEvent(&shown, &event);
        return event.isAccepted() ? QToolTip::text() : QString();
    };
    QCOMPARE(shownTip(*label), "Picture taken 2026-03-04 05:06:07");
    label->setToolTip("The yard");
    QCOMPARE(shownTip(*label), "The yard\nPicture taken 2026-03-04 05:06:07");
    QCOMPARE(label->toolTip(), "The yard");
    Played live;
    live.send(filled(Qt::red));
    QCOMPARE(live.view<LiveView>().accessibleDescription(), QString());
    QVERIFY(live.plainLabel());
    QCOMPARE(shownTip(*live.plainLabel()), QString());
}

void TestPictureActions::fetchesNow()
{
    Played played("v3getjpeg");
    auto &online = played.view<LiveView>();
    played.send(filled(Qt::red));
    played.sources.last()->active = false;
    played.tick(1);
    QCOMPARE(played.sources.size(), 1);
    // A shortcut of the window does not get the key.
    QKeyEvent claim(QEvent::ShortcutOverride, Qt::Key_F5, {});
    claim.ignore();
    QCoreApplication::sendEvent(&online, &claim);
    QVERIFY(claim.isAccepted());
    QTest::keyClick(&online, Qt::Key_F5);
    played.tick(1);
    QCOMPARE(played.sources.size(), 2);
    QTest::keyClick(&online, Qt::Key_F5); // one is under way
    played.tick(1);
    QCOMPARE(played.sources.size(), 2);
    played.send(filled(Qt::red));
    played.sources.last()->active = false;
    choose(online, "Fetch");
    played.tick(1);
    QCOMPARE(played.sources.size(), 3);
    played.send(filled(Qt::red));
    played.sources.last()->active = false;
    QTest::keyClick(&played.view<MaskEditor>(), Qt::Key_F5);
    played.tick(1);
    QCOMPARE(played.sources.size(), 4);
}

void TestPictureActions::fetchesBeforeItsFirstRun_data()
{
    const TestTable<std::function<void(Played &)>, int, QString> row("change", "requests", "notice");
    row(
        "before its time", [](Played &) {}, 1, "No picture yet");
    row(
        "without an address",
        [](Played &played) {
            QDomElement task = played.parts.description.document().first("window").firstChildElement();
            task.removeChild(task.firstChildElement("url"));
        },
        0, "No address of pictures");
    row(
        "in a preview", [](Played &played) { played.parts.tasks.setSourceFactory({}); }, 0,
        "No video in a preview");
}

void TestPictureActions::fetchesBeforeItsFirstRun()
{
    QFETCH(std::function<void(Played &)>, change);
    QFETCH(int, requests);
    QFETCH(QString, notice);
    Played played("v3getjpeg");
    played.parts.tasks.clear();
    change(played);
    played.parts.tasks.add(played.parts.description.document().first("window"));
    played.sources.clear();
    auto &online = played.view<LiveView>();
    QTest::keyClick(&online, Qt::Key_F5);
    played.tick(1);
    played.tick(1);
    QCOMPARE(played.sources.size(), requests);
    QCOMPARE(online.valueText(), notice);
}

void TestPictureActions::takesLettersOfOtherLayouts()
{
    Played played;
    QKeyEvent press(QEvent::KeyPress, 0x428, {}, QStringLiteral("ш")); // the key I of a Russian keyboard
    QCoreApplication::sendEvent(&played.view<LiveView>(), &press);
    QVERIFY(played.details());
}

void TestPictureActions::detailsTheStream()
{
    Played played;
    auto &online = played.view<LiveView>();
    StreamFigures figures;
    figures.codec = "H264";
    figures.size = {1920, 1080};
    figures.bytes = 1000;
    figures.frames = 50;
    figures.leftOut = 3;
    figures.wait = std::chrono::milliseconds(40);
    figures.losses = {.bytes = 7, .gaps = 2, .fragments = 4, .frames = 5};
    played.sources.last()->given = figures;
    played.send(filled(Qt::red));
    QTest::keyClick(&online, Qt::Key_I);
    StreamDetails *window = played.details();
    QVERIFY(window && window->isVisible());
    for (const char *line :
         {"Picture: Yard", "State: current", "Shown: 64 × 48 pixels", "Pictures shown: 1", "Codec: H264",
          "Size: 1920 × 1080 pixels", "Pictures received: 50", "Pictures left out: 3",
          "Lateness: 40 ms, at most 40 ms", "Bytes received: 1,000", "Lost bytes: 7 at 2 places",
          "Lost fragments: 4, lost frames: 5", "Reconnections: 0", "Attempts without a picture: 0"})
        QVERIFY2(window->text().split('\n').contains(QString::fromUtf8(line)), qPrintable(window->text()));
    figures.bytes += 1'000'000;
    figures.wait = std::chrono::milliseconds(5);
    played.sources.last()->given = figures;
    AWAIT_VERIFY(window->text().contains("Lateness: 5 ms, at most 40 ms"));
    static const QRegularExpression rate("Bit rate: ([\\d,]+) kbit/s");
    QCOMPARE(window->findChild<QPlainTextEdit *>()->verticalScrollBar()->maximum(), 0); // all can be seen
    const double kilobits = rate.match(window->text()).captured(1).remove(',').toDouble();
    QVERIFY2(kilobits > 2'000 && kilobits < 9'000, qPrintable(window->text()));
    QTest::mouseClick(window->findChild<QToolButton *>(), Qt::LeftButton);
    QVERIFY(QApplication::clipboard()->text().contains("Codec: H264"));

    played.sources.last()->active = false;
    played.tick(1);
    played.tick(1001);
    figures.frames = 10; // its own count
    played.sources.last()->given = figures;
    AWAIT_VERIFY(window->text().contains("Pictures received: 60"));
    QVERIFY2(window->text().contains("Reconnections: 0"), qPrintable(window->text())); // so far an attempt
    QVERIFY(window->text().contains("State: Connection lost"));
    played.send(filled(Qt::red));
    AWAIT_VERIFY(window->text().contains("Reconnections: 1"));
    QVERIFY2(window->text().contains("Pictures shown: 2") &&
                 window->text().contains("Lost bytes: 14 at 4 places"),
             qPrintable(window->text()));
    // What connections without a picture have lost is what a supporter looks for.
    for (int attempt = 0; attempt < 3; ++attempt) {
        played.sources.last()->active = false;
        played.tick(1);
        played.tick(600'000); // longer than a refused login waits
        played.sources.last()->given = figures;
    }
    AWAIT_VERIFY(window->text().contains("Attempts without a picture: 2"));
    QVERIFY2(window->text().contains("Lost bytes: 35 at 10 places") &&
                 window->text().contains("Reconnections: 1"),
             qPrintable(window->text()));
    QTest::keyClick(window->findChild<QPlainTextEdit *>(), Qt::Key_Escape);
    AWAIT_VERIFY(!played.details());
}

void TestPictureActions::keepsWhatIsRead()
{
    int calls = 0;
    StreamDetails details(
        [&] {
            PictureDetails given;
            given.kind = PictureKind::Live;
            given.figures = StreamFigures{};
            given.shown = ++calls;
            return given;
        },
        nullptr);
    auto *text = details.findChild<QPlainTextEdit *>();
    text->selectAll();
    const QString before = details.text();
    AWAIT_VERIFY(calls >= 3);
    QCOMPARE(details.text(), before);
    QVERIFY(text->textCursor().hasSelection());

    details.resize(details.width(), text->fontMetrics().lineSpacing() * 5);
    details.show();
    text->moveCursor(QTextCursor::Start);
    text->moveCursor(QTextCursor::Down);
    text->moveCursor(QTextCursor::Right);
    QScrollBar &bar = *text->verticalScrollBar();
    bar.setValue(1);
    AWAIT_VERIFY(details.text() != before);
    QCOMPARE(text->textCursor().blockNumber(), 1);
    QCOMPARE(text->textCursor().positionInBlock(), 1);
    QCOMPARE(bar.value(), 1);
}

QTEST_MAIN(TestPictureActions)
#include "tst_picture_actions.moc"
