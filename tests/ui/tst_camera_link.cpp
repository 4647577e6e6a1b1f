#include "controls/PtzCalibrator.h"
#include "controls/PtzCrossView.h"
#include "support/TestTable.h"
#include "support/Waiting.h"
#include "ui/tasks/CameraLink.h"
#include "ui/tasks/PictureSource.h"

#include <functional>
#include <limits>

using namespace paravue;
using namespace paravue::test;

namespace
{

class FakeSource : public PictureSource
{
public:
    bool isActive() const override { return true; }
    quint64 traffic() const override { return heard; }
    QString cameraPosition() const override { return position; }
    void turnTo(const QString &) override { commands << "MOVE"; }
    void goTo(int point) override { commands << QString("GOTO %1").arg(point); }
    void setPoint(int point, const QString &text) override
    {
        commands << QString("POINT %1 %2").arg(QString::number(point), text);
    }
    void move(const QString &to)
    {
        position = to;
        ++heard;
        Q_EMIT cameraMoved(position);
    }

    quint64 heard = 0;
    QString position = "0,0,0";
    QStringList commands;
};

/// A cross hair and, unless it is left out, a calibration that belong to a camera.
struct Camera {
    explicit Camera(bool isCalibrated = true) : link(source)
    {
        // Remarks are about a picture.
        for (PictureView *view :
             {static_cast<PictureView *>(&cross), static_cast<PictureView *>(&calibrator)})
            view->setPixmap(QPixmap(64, 48));
        link.add({&cross});
        if (isCalibrated)
            link.add({&calibrator});
    }

    static constexpr int Tick = 250; // milliseconds

    /// Lets the time pass until the link says \a remark. Returns how long that took; -1 when it is not said
    /// within \a longest. A picture comes every \a interval behind a \a silence. \a live is called at each
    /// tick.
    int untilRemark(const QString &remark, int longest, int silence = 0, int interval = Tick,
                    const std::function<void()> &live = {})
    {
        for (int time = 0; time <= longest; time += Tick, now += Tick) {
            source.heard += time >= silence && (time - silence) % interval == 0;
            if (live)
                live();
            link.poll(now);
            if (link.remark().contains(remark))
                return time;
        }
        return -1;
    }

    quint32 now = std::numeric_limits<quint32>::max() - 1000; // it wraps around
    FakeSource source;
    PtzCrossView cross;
    PtzCalibrator calibrator{4};
    CameraLink link;
};

} // namespace

/// What the controls of a turning camera hear of its recorder, which answers no command.
class TestCameraLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// Lists of points are joined as the language does it.
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void tellsThatItDoesNotTurn_data();
    void tellsThatItDoesNotTurn();
    void takesARemarkBack();
    void comparesMovesWithTheGoal_data();
    void comparesMovesWithTheGoal();
    void followsADrag_data();
    void followsADrag();
    void trustsShortDrags_data();
    void trustsShortDrags();
    void takesNoMoveToAnUnknownGoalForAnAnswer();
    void tellsOfPoints_data();
    void tellsOfPoints();
    void tellsOfPointsThatWait();
    void tellsNoMoreOfPointsThatWaitNoMore();
    void doubtsPointsOnce();
    void trustsARecorderThatTurns();
    void sendsReplacedPoints();
};

void TestCameraLink::tellsThatItDoesNotTurn_data()
{
    const TestTable<int, int, int, int> row("silence", "interval", "earliest", "latest");
    row("pictures all the time", 0, Camera::Tick, 3500, 3500);
    row("a silence at first", 4000, Camera::Tick, 6500, 6500);
    row("a picture every two seconds", 0, 2000, 4500, 6500);
}

void TestCameraLink::tellsThatItDoesNotTurn()
{
    QFETCH(int, silence);
    QFETCH(int, interval);
    QFETCH(int, earliest);
    QFETCH(int, latest);
    Camera camera;
    QTest::keyClick(&camera.cross, Qt::Key_Right);
    QCOMPARE(camera.source.commands, QStringList("MOVE"));
    const int time = camera.untilRemark("does not turn", latest, silence, interval);
    QVERIFY2(time >= earliest, qPrintable(QString::number(time)));
    QVERIFY(camera.calibrator.valueText().contains("not allowed"));
    camera.source.move("0.1,0,0"); // late
    QCOMPARE(camera.link.remark(), QString());
}

void TestCameraLink::takesARemarkBack()
{
    Camera camera;
    QTest::keyClick(&camera.cross, Qt::Key_Right);
    QVERIFY(camera.untilRemark("does not turn", 9000) >= 0);
    QVERIFY(camera.untilRemark("nothing like that", 9000) < 0);
    QVERIFY(!camera.link.remark().isEmpty());
    QVERIFY(camera.untilRemark("nothing like that", 2000) < 0);
    QCOMPARE(camera.link.remark(), QString());
    camera.source.move("0.1,0,0"); // of a tour
    Q_EMIT camera.calibrator.signal_Point_calibrated(1);
    QVERIFY(camera.link.remark().contains("takes a point"));
}

void TestCameraLink::comparesMovesWithTheGoal_data()
{
    const TestTable<QStringList, bool> row("positions", "isObeyed");
    // The goal is 0.1,0,0.
    row("to the goal", {"0.05,0,0", "0.1,0,0"}, true);
    row("to the goal, slowly", {"0.01,0,0", "0.02,0,0", "0.03,0,0"}, true);
    row("to the goal, at first on from the last one", {"-0.05,0,0", "0,0,0", "0.05,0,0"}, true);
    row("away", {"-0.1,0,0"}, false);
    row("across", {"0,0.1,0"}, false);
    row("zooming", {"0,0,0.3"}, false);
    row("past the goal", {"0.08,0.02,0", "0.2,0.2,0"}, false);
}

/// Other users and tours turn the camera, too.
void TestCameraLink::comparesMovesWithTheGoal()
{
    QFETCH(QStringList, positions);
    QFETCH(bool, isObeyed);
    Camera camera;
    QTest::keyClick(&camera.cross, Qt::Key_Right);
    const int time = camera.untilRemark("does not turn", 9000, 0, Camera::Tick, [&] {
        if (!positions.isEmpty())
            camera.source.move(positions.takeFirst());
    });
    QCOMPARE(time < 0, isObeyed);
    Q_EMIT camera.calibrator.signal_Point_calibrated(1);
    QCOMPARE(camera.link.remark().contains("takes a point"), !isObeyed);
}

/// A drag has a goal in front of the camera all the time, and its last command is to stay.
void TestCameraLink::followsADrag_data()
{
    const TestTable<double, bool> row("step", "isObeyed");
    row("of a camera that follows", 0.02, true);
    row("of a camera that a tour turns the other way", -0.02, false);
}

void TestCameraLink::followsADrag()
{
    QFETCH(double, step);
    QFETCH(bool, isObeyed);
    Camera camera;
    double pan = 0;
    int ticks = 0;
    const auto send = [&](double ahead) {
        Q_EMIT camera.cross.steering().turnRequested({pan + ahead, 0, 0});
    };
    const int time = camera.untilRemark("does not turn", 9000, 0, Camera::Tick, [&] {
        if (++ticks <= 15) { // until the first outcome
            send(0.25);
            pan += step;
            camera.source.move(QString::number(pan) + ",0,0");
        } else if (ticks == 16) {
            send(0.25);
            send(0);
        }
    });
    QCOMPARE(time < 0, isObeyed);
}

void TestCameraLink::trustsShortDrags_data()
{
    const TestTable<QStringList, QStringList, bool> row("during", "behind", "isObeyed");
    row("that the camera follows", {"0.02,0,0", "0.04,0,0"}, {"0.06,0,0", "0.02,0,0"}, true);
    row("whose goal it reaches only behind them", {}, {"0.05,0,0", "0.02,0,0", "0,0,0"}, true);
    row("that end before it has turned by more than a step", {}, {"0.005,0,0", "0,0,0"}, true);
    row("that it does not follow", {}, {}, false);
    row("while a tour turns it the other way", {"-0.02,0,0"}, {"-0.04,0,0", "-0.2,0,0"}, false);
    row("while a tour turns it to and fro", {"-0.04,0,0", "-0.02,0,0"}, {"-0.03,0,0", "-0.06,0,0"}, false);
}

/// Their time is over before that for an answer, and their last command is to stay.
void TestCameraLink::trustsShortDrags()
{
    QFETCH(QStringList, during);
    QFETCH(QStringList, behind);
    QFETCH(bool, isObeyed);
    Camera camera;
    QTest::keyClick(&camera.cross, Qt::Key_Right);
    QVERIFY(camera.untilRemark("does not turn", 9000) >= 0); // at first it was ignored
    const auto send = [&](double ahead) {
        const double pan = camera.source.position.section(u',', 0, 0).toDouble();
        Q_EMIT camera.cross.steering().turnRequested({pan + ahead, 0, 0});
    };
    send(0.25);
    for (const QString &position : during) {
        camera.source.move(position);
        send(0.25);
    }
    send(0);
    const int time = camera.untilRemark("does not turn", 4000, 0, Camera::Tick, [&] {
        if (!behind.isEmpty())
            camera.source.move(behind.takeFirst());
    });
    QCOMPARE(time < 0, isObeyed);
    Q_EMIT camera.calibrator.signal_Point_calibrated(1);
    QCOMPARE(camera.link.remark().contains("takes a point"), !isObeyed);
}

/// Where a point of the recorder is only the recorder knows: a tour may have turned the camera.
void TestCameraLink::takesNoMoveToAnUnknownGoalForAnAnswer()
{
    Camera camera(false);
    QTest::keyClick(&camera.cross, Qt::Key_1);
    camera.source.move("0.1,0,0");
    QVERIFY(camera.untilRemark("has not turned", 9000) < 0);
    Q_EMIT camera.cross.steering().turnRequested({0.35, 0, 0});
    Q_EMIT camera.cross.steering().turnRequested({0.1, 0, 0}); // to stay
    QVERIFY(camera.untilRemark("does not turn", 9000) >= 0);
}

void TestCameraLink::tellsOfPoints_data()
{
    const TestTable<bool, QString, QList<int>, QStringList, QString> row("isCalibrated", "point", "keys",
                                                                         "commands", "remark");
    const QString unanswered = "does not say whether it takes a point";
    row("set", true, "", {Qt::Key_Space}, {"POINT 1 0.5000,0.5000,0,0,0"}, unanswered);
    row("removed", true, "0.5,0.5,0,0,0", {Qt::Key_Delete}, {"POINT 1 "}, unanswered);
    row("gone to, without a position", true, "0.5,0.5", {Qt::Key_Return}, {"POINT 1 0.5,0.5", "GOTO 1"},
        "Point 1 has no position");
    row("not set", true, "", {}, {}, "Point 1 is not set");
    row("of the recorder", false, "", {}, {"GOTO 1"}, "The camera has not turned");
}

/// Without keys the cross hair is asked for point 1.
void TestCameraLink::tellsOfPoints()
{
    QFETCH(bool, isCalibrated);
    QFETCH(QString, point);
    QFETCH(QList<int>, keys);
    QFETCH(QString, remark);
    Camera camera(isCalibrated);
    camera.calibrator.setPoints({point});
    camera.source.commands.clear();
    for (const int key : keys)
        QTest::keyClick(&camera.calibrator, Qt::Key(key));
    if (keys.isEmpty())
        QTest::keyClick(&camera.cross, Qt::Key_1);
    QFETCH(QStringList, commands);
    AWAIT_COMPARE(camera.source.commands, commands); // a point waits for the camera
    QVERIFY(camera.untilRemark(remark, 9000) >= 0);
    QVERIFY2(camera.cross.valueText().contains(remark), qPrintable(camera.cross.valueText()));
}

/// The point is set already, but to another place.
void TestCameraLink::tellsOfPointsThatWait()
{
    Camera camera;
    camera.calibrator.setPoints({"0.5,0.5,0.1,0,0"});
    camera.source.move("0.2,0,0");
    QTest::keyClick(&camera.calibrator, Qt::Key_Space);
    camera.source.commands.clear();
    QTest::keyClick(&camera.cross, Qt::Key_1);
    QCOMPARE(camera.source.commands, QStringList());
    QCOMPARE(camera.link.remark(), "Point 1 is set as soon as the camera stands still.");
    AWAIT_VERIFY(!camera.source.commands.isEmpty());
    QVERIFY2(!camera.link.remark().contains("stands still"), qPrintable(camera.link.remark()));
}

void TestCameraLink::tellsNoMoreOfPointsThatWaitNoMore()
{
    Camera camera;
    for (const int point : {Qt::Key_1, Qt::Key_2, Qt::Key_3}) {
        QTest::keyClick(&camera.calibrator, Qt::Key(point));
        QTest::keyClick(&camera.calibrator, Qt::Key_Space);
    }
    QTest::keyClick(&camera.cross, Qt::Key_1);
    QCOMPARE(camera.link.remark(), "Points 1, 2, 3 are set as soon as the camera stands still.");
    QTest::keyClick(&camera.calibrator, Qt::Key_Delete);
    QCOMPARE(camera.link.remark(), "Points 1, 2 are set as soon as the camera stands still.");
    camera.calibrator.setPoints({"0.1,0.1"}); // such as by an undo
    QCOMPARE(camera.link.remark(), "Point 2 is set as soon as the camera stands still.");
    camera.calibrator.setPoints({"0.1,0.1", "0.2,0.2"});
    QCOMPARE(camera.link.remark(), QString());
    // Other remarks stay.
    camera.calibrator.setPoints({});
    QTest::keyClick(&camera.cross, Qt::Key_1);
    QTest::keyClick(&camera.calibrator, Qt::Key_Space);
    QCOMPARE(camera.link.remark(), "Point 1 is not set.");
}

/// Each time only behind a turn that was ignored.
void TestCameraLink::doubtsPointsOnce()
{
    Camera camera;
    const auto setPoint = [&camera] {
        Q_EMIT camera.calibrator.signal_Point_calibrated(1);
        return camera.link.remark().contains("takes a point");
    };
    QVERIFY(setPoint());
    QVERIFY2(setPoint(), "the next point has taken the remark back");
    camera.link.setLive(false, true); // takes the remark back
    camera.link.setLive(true, true);
    QVERIFY(!setPoint());

    QTest::keyClick(&camera.cross, Qt::Key_Right);
    QVERIFY(camera.untilRemark("does not turn the camera", 9000) >= 0);
    QVERIFY(setPoint());
}

void TestCameraLink::trustsARecorderThatTurns()
{
    Camera camera;
    QTest::keyClick(&camera.cross, Qt::Key_Right);
    camera.source.move("0.1,0,0");
    QTest::keyClick(&camera.calibrator, Qt::Key_Space);
    AWAIT_VERIFY(camera.source.commands.last().startsWith("POINT 1"));
    QCOMPARE(camera.link.remark(), QString());
}

/// Such as by an undo.
void TestCameraLink::sendsReplacedPoints()
{
    Camera camera;
    camera.calibrator.setPoints({"0.1,0.1", "0.2,0.2"});
    camera.source.commands.clear();
    camera.calibrator.setPoints({"0.1,0.1", "", "0.3,0.3"});
    QCOMPARE(camera.source.commands, QStringList({"POINT 2 ", "POINT 3 0.3,0.3"}));
}

QTEST_MAIN(TestCameraLink)
#include "tst_camera_link.moc"
