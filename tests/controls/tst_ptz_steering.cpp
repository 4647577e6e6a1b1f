#include "Gestures.h"
#include "controls/PtzCrossView.h"
#include "controls/PtzVideoInput.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QSignalSpy>
#include <QWheelEvent>

#include <cmath>

using namespace paravue;
using namespace paravue::test;

namespace
{

QPoint placeIn(const PictureView &view, const QPointF &fraction)
{
    const QRectF picture = view.pictureRect();
    return (picture.topLeft() + QPointF(fraction.x() * picture.width(), fraction.y() * picture.height()))
        .toPoint();
}

void turnWheel(QWidget &view, int notches)
{
    const QPoint centre = view.rect().center();
    QWheelEvent event(centre, view.mapToGlobal(centre), {}, {0, 120 * notches}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&view, &event);
}

/// A view with what it has asked for.
template <class View>
struct Steered {
    explicit Steered(const QString &position = "0.2,-0.4,0.5")
    {
        view.resize(402, 302);
        view.show();
        QObject::connect(&view.steering(), &PtzSteering::turnRequested, &view,
                         [this](const PtzPosition &goal) { asked << ptzPositionText(goal); });
        QObject::connect(&view.steering(), &PtzSteering::pointRequested, &view,
                         [this](int point) { asked << QString("point %1").arg(point); });
        moveTo(position);
        view.setFocus();
        waitUntil([this] { return view.hasFocus(); });
    }

    void moveTo(const QString &position) { view.steering().setPosition(parsePtzPosition(position)); }
    void play(const QString &gestures)
    {
        perform(view, gestures, [this](const QPointF &place) { return placeIn(view, place); });
    }

    View view;
    QStringList asked;
};

} // namespace

class TestPtzSteering : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void turns_data();
    void turns();
    void turnsFasterTheLongerTheDrag();
    void followsTheCamera();
    void stops_data();
    void stops();
    void goesOnWhileAKeyIsHeld_data();
    void goesOnWhileAKeyIsHeld();
    void dragsInThePictureOfAll();
    void centresInThePictureOfAll();
    void zoomsByTheWheelWithTheFocus();
    void takesNothingWithoutAPosition();
};

void TestPtzSteering::turns_data()
{
    // At half of the zoom the camera sees 0.625 of the ranges.
    const TestTable<QString, QString, QStringList> row("position", "gestures", "asked");
    const QString usual = "0.2,-0.4,0.5";
    row("right", usual, "Right", {"0.263,-0.400,0.500"});
    row("up, finely", usual, "Shift+Up", {"0.200,-0.388,0.500"});
    row("no further than the end", "0.99,0,0", "Right", {"1.000,0.000,0.000"});
    row("without a zoom", "0,0", "Left +", {"-0.100,0.000"});
    row("zoom", usual, "+ - -", {"0.200,-0.400,0.550", "0.200,-0.400,0.500", "0.200,-0.400,0.450"});
    row("zoom at the end", "0,0,0.99", "+ +", {"0.000,0.000,1.000", "0.000,0.000,1.000"});
    row("points", usual, "3 9", {"point 3", "point 9"});
    row("step by step", usual, "Right Right Up",
        {"0.263,-0.400,0.500", "0.325,-0.400,0.500", "0.325,-0.338,0.500"});
    row("zoom while it turns", usual, "D.75,.25 +", {"0.356,-0.244,0.500", "0.356,-0.244,0.550"});
    row("centre", usual, "D.75,.25", {"0.356,-0.244,0.500"});
    row("click", usual, "L.75,.25 U", {});
    row("right button", usual, "R.25,.25 M.75,.75 U", {});
    row("other keys", usual, "A 0 Ctrl+Right Space", {});
}

void TestPtzSteering::turns()
{
    QFETCH(QString, position);
    QFETCH(QString, gestures);
    Steered<PtzVideoInput> steered(position);
    steered.play(gestures);
    QTEST(steered.asked, "asked");
}

void TestPtzSteering::turnsFasterTheLongerTheDrag()
{
    Steered<PtzVideoInput> steered("0,0,0");
    steered.play("L.5,.5 M.6,.5");
    const auto pan = [&] { return parsePtzPosition(steered.asked.last())->pan; };
    QCOMPARE(steered.asked.size(), 1);
    const double slow = pan();
    QVERIFY(slow > 0.01);
    steered.play("M.7,.5");
    AWAIT_VERIFY(pan() > 1.5 * slow);
    steered.play("M2,.5");
    AWAIT_VERIFY(pan() > 4 * slow);
    QVERIFY(pan() <= 0.25);
    steered.play("M.5,.2");
    AWAIT_VERIFY(pan() == 0 && parsePtzPosition(steered.asked.last())->tilt > 0);
}

void TestPtzSteering::followsTheCamera()
{
    Steered<PtzVideoInput> steered("0,0,0");
    steered.play("L.5,.5 M.75,.5");
    steered.moveTo("0.5,0.1,0");
    AWAIT_VERIFY(steered.asked.last().startsWith("0.625,0.100"));
    steered.moveTo("0.6,0.1,0");
    steered.play("U");
    QCOMPARE(steered.asked.last(), "0.600,0.100,0.000"); // where it is, and no further
}

void TestPtzSteering::stops_data()
{
    const TestTable<QString, bool> row("end", "isStopped");
    row("release", "U", true);
    row("escape", "Esc", true);
    row("loss of the focus", "F", true);
    row("back to the start", "M.5,.5", true);
    row("no room any more", "", true);
    row("other keys do not stop it", "A", false);
}

void TestPtzSteering::stops()
{
    QFETCH(QString, end);
    QFETCH(bool, isStopped);
    Steered<PtzVideoInput> steered("0.1,0,0");
    steered.play("L.5,.5 M.75,.5");
    const QString stop = "0.100,0.000,0.000";
    QVERIFY(steered.asked.last() != stop);
    steered.asked.clear();
    if (end.isEmpty())
        steered.view.resize(2, 2);
    steered.play(end);
    if (isStopped) {
        AWAIT_COMPARE(steered.asked.value(0), stop);
        QVERIFY2(!waitUntil([&] { return steered.asked.size() > 1; }, 300), qPrintable(steered.asked.last()));
    } else {
        AWAIT_VERIFY(steered.asked.size() > 1 && !steered.asked.contains(stop));
    }
}

void TestPtzSteering::goesOnWhileAKeyIsHeld_data()
{
    const TestTable<Qt::Key, Qt::Key, QString, QString> row("pressed", "released", "step", "goal");
    row("arrow", Qt::Key_Right, Qt::Key_Right, "0.100,0.000,0.000", "0.378,0.000,0.300");
    row("zoom", Qt::Key_Plus, Qt::Key_Equal, "0.000,0.000,0.050",
        "0.300,0.000,0.350"); // Shift came off first
}

void TestPtzSteering::goesOnWhileAKeyIsHeld()
{
    QFETCH(Qt::Key, pressed);
    QFETCH(Qt::Key, released);
    QFETCH(QString, step);
    Steered<PtzVideoInput> steered("0,0,0");
    QTest::keyPress(&steered.view, pressed);
    QKeyEvent repeated(QEvent::KeyPress, pressed, {}, {}, true);
    QCoreApplication::sendEvent(&steered.view, &repeated);
    QTest::keyRelease(&steered.view, released); // a step, to its end
    QCOMPARE(steered.asked, QStringList(step));
    QTest::keyPress(&steered.view, pressed);
    AWAIT_VERIFY(steered.asked.size() >= 4);
    steered.moveTo("0.3,0,0.3");
    QFETCH(QString, goal);
    AWAIT_COMPARE(steered.asked.last(), goal);
    QTest::keyRelease(&steered.view, released);
    QCOMPARE(steered.asked.last(), "0.300,0.000,0.300");
}

void TestPtzSteering::dragsInThePictureOfAll()
{
    Steered<PtzCrossView> steered("0,0,0");
    const QImage before = steered.view.grab().toImage();
    steered.play("L.5,.5 M.5,.25");
    QCOMPARE(steered.asked, QStringList("0.000,0.125,0.000"));
    QVERIFY2(steered.view.grab().toImage() != before, "no arrow");
    steered.play("U");
    QCOMPARE(steered.asked.last(), "0.000,0.000,0.000");
}

void TestPtzSteering::centresInThePictureOfAll()
{
    Steered<PtzCrossView> steered;
    steered.play("D.75,.25");
    QCOMPARE(steered.asked.size(), 1);
    const auto goal = parsePtzPosition(steered.asked.first());
    QVERIFY2(std::abs(goal->pan - 0.5) < 0.01 && std::abs(goal->tilt - 0.5) < 0.01 && goal->zoom == 0.5,
             qPrintable(steered.asked.first()));
}

void TestPtzSteering::zoomsByTheWheelWithTheFocus()
{
    Steered<PtzVideoInput> steered;
    AWAIT_VERIFY(steered.view.hasFocus());
    turnWheel(steered.view, 2);
    turnWheel(steered.view, 1);
    QCOMPARE(steered.asked, QStringList({"0.200,-0.400,0.600", "0.200,-0.400,0.650"}));
    steered.view.clearFocus();
    turnWheel(steered.view, 1);
    QCOMPARE(steered.asked.size(), 2);
}

void TestPtzSteering::takesNothingWithoutAPosition()
{
    Steered<PtzVideoInput> steered;
    steered.view.setPixmap(QPixmap(64, 48));
    QCOMPARE(steered.view.valueText(), "64 × 48 pixels; Pan 0.20, tilt -0.40, zoom 0.50");
    QCOMPARE(steered.view.focusPolicy(), Qt::StrongFocus);
    steered.play("L.5,.5 M.75,.5");
    steered.asked.clear();
    steered.moveTo(QString()); // within a drag
    QCOMPARE(steered.view.valueText(), "64 × 48 pixels");
    QCOMPARE(steered.view.focusPolicy(), Qt::NoFocus);
    steered.play("M.9,.5 U Right + D.75,.25 3");
    QVERIFY2(!waitUntil([&] { return !steered.asked.isEmpty(); }, 300), "the camera is turned");
}

QTEST_MAIN(TestPtzSteering)
#include "tst_ptz_steering.moc"
