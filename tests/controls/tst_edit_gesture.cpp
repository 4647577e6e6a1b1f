#include "controls/CellFrame.h"
#include "controls/EditGesture.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QTest>

using namespace paravue;

namespace
{

using Interruption = EditGesture::Interruption;
using Report = EditGesture::Report;

/// An editor of one text. A drag adds a letter for each position, and "." when it is dropped; nothing can be
/// dragged with the right button.
class Editor : public EditGesture::Editor
{
public:
    Editor(Interruption interruption, Report report) : m_gesture(*this, interruption, report) {}

    /// "L", "R" and "l", "r" press and release a button; "m" moves the mouse with the left one held, "n"
    /// without any; "e" is Escape, "E" Enter, "k" another key; "f" loses the focus; "p" changes the text at
    /// once, "s" replaces it from elsewhere.
    void perform(const QString &steps)
    {
        for (const QChar step : steps)
            perform(step);
    }

    QString text;
    QStringList reports;
    QString unusedKeys;

private:
    void perform(QChar step)
    {
        const auto mouse = [](QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons held) {
            return QMouseEvent(type, QPointF(), QPointF(), button, held, {});
        };
        const Qt::MouseButton button = step.toLower() == u'r' ? Qt::RightButton : Qt::LeftButton;
        switch (step.unicode()) {
        case u'L':
        case u'R':
            return m_gesture.press(mouse(QEvent::MouseButtonPress, button, button));
        case u'l':
        case u'r':
            return m_gesture.release(mouse(QEvent::MouseButtonRelease, button, {}));
        case u'm':
            return m_gesture.move(mouse(QEvent::MouseMove, {}, Qt::LeftButton));
        case u'n':
            return m_gesture.move(mouse(QEvent::MouseMove, {}, {}));
        case u'f':
            return m_gesture.interrupt();
        case u'p':
            return m_gesture.perform([this] { text += u'p'; });
        case u's':
            text = u's';
            return m_gesture.textsReplaced();
        default:
            const QMap<QChar, Qt::Key> keys{{u'e', Qt::Key_Escape}, {u'E', Qt::Key_Return}};
            const QKeyEvent key(QEvent::KeyPress, keys.value(step, Qt::Key_A), {});
            if (!m_gesture.takeKey(key))
                unusedKeys += step;
        }
    }

    QStringList texts() const override { return {text}; }
    bool beginDrag(const QMouseEvent &press) override { return press.button() == Qt::LeftButton; }
    void dragTo(const QPointF &) override { text += u'd'; }
    void drop() override { text += u'.'; }
    void cancelDrag(const QStringList &before) override { text = before[0]; }
    void textsEdited(const QStringList &before, const QStringList &after) override
    {
        reports << before[0] + u'>' + after[0];
    }

    EditGesture m_gesture;
};

} // namespace

class TestEditGesture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reportsChanges_data();
    void reportsChanges();
    void movesTheFrame_data();
    void movesTheFrame();
};

void TestEditGesture::reportsChanges_data()
{
    QTest::addColumn<Interruption>("interruption");
    QTest::addColumn<Report>("report");
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("reports");
    QTest::addColumn<QString>("unusedKeys");

    const auto row = [](const char *name, Interruption interruption, Report report, const QString &steps,
                        const QString &text, const QString &reports, const QString &unusedKeys = {}) {
        QTest::newRow(name) << interruption << report << steps << text << reports << unusedKeys;
    };
    using enum Interruption;
    using enum Report;
    row("drag", Cancels, WholeDrag, "Lmml", "ddd.", ">ddd.");
    row("drag in steps", Drops, EachStep, "Lml", "dd.", ">d d>dd dd>dd.");
    row("button that begins no drag", Cancels, WholeDrag, "Rmr", "", "");
    row("other button in a drag", Cancels, WholeDrag, "LRrml", "dd.", ">dd.");
    row("moves outside of a drag", Cancels, WholeDrag, "mLlm", "d.", ">d.");
    row("change at once", Drops, EachStep, "pp", "pp", ">p p>pp");
    row("keys outside of a drag", Drops, EachStep, "keELlke", "d.", ">d d>d.", "kk");
    row("escape", Cancels, WholeDrag, "pLmkeml", "p", ">p");
    row("escape after another text", Cancels, WholeDrag, "Lsme", "s", "");
    row("drop after another text", Cancels, WholeDrag, "Lsml", "sd.", "s>sd.");

    row("missed release that drops", Drops, WholeDrag, "Lmnm", "dd.", ">dd.");
    row("missed release that cancels", Cancels, WholeDrag, "Lmnm", "", "");
    row("second press after a missed release", Cancels, WholeDrag, "LmLl", "d.", ">d.");
    row("second press that drops", Drops, WholeDrag, "LLl", "d.d.", ">d. d.>d.d.");
    row("focus that drops", Drops, WholeDrag, "Lfm", "d.", ">d.");
    row("focus that cancels", Cancels, WholeDrag, "Lfm", "", "");
    row("focus without a drag", Drops, WholeDrag, "f", "", "");
}

void TestEditGesture::reportsChanges()
{
    QFETCH(Interruption, interruption);
    QFETCH(Report, report);
    QFETCH(QString, steps);
    Editor editor(interruption, report);
    editor.perform(steps);
    QTEST(editor.text, "text");
    QTEST(editor.reports.join(u' '), "reports");
    QTEST(editor.unusedKeys, "unusedKeys");
}

void TestEditGesture::movesTheFrame_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QPoint>("leftToRight");
    QTest::addColumn<QPoint>("rightToLeft");

    const auto row = [](const char *key, const QPoint &leftToRight, const QPoint &rightToLeft) {
        QTest::newRow(key) << key << leftToRight << rightToLeft;
    };
    row("Left", {0, 1}, {2, 1});
    row("Right", {2, 1}, {0, 1});
    row("Up", {1, 0}, {1, 0});
    row("Down", {1, 2}, {1, 2});
    row("Home", {0, 1}, {0, 1});
    row("End", {3, 1}, {3, 1});
    row("Ctrl+Home", {0, 0}, {0, 0});
    row("Ctrl+End", {3, 2}, {3, 2});
    row("PgUp", {1, 0}, {1, 0});
    row("PgDown", {1, 2}, {1, 2});
}

void TestEditGesture::movesTheFrame()
{
    QFETCH(QString, key);
    QFETCH(QPoint, leftToRight);
    QFETCH(QPoint, rightToLeft);
    const CellFrame frame({4, 3}, {1, 1}, {1, 1});
    const QKeyCombination keys = QKeySequence(key)[0];
    const QKeyEvent event(QEvent::KeyPress, keys.key(), keys.keyboardModifiers());
    QCOMPARE(frame.movedBy(event)->cells(), QRect(leftToRight, leftToRight));
    QCOMPARE(frame.movedBy(event, Qt::RightToLeft)->current(), rightToLeft);
    const QKeyEvent shifted(QEvent::KeyPress, keys.key(), keys.keyboardModifiers() | Qt::ShiftModifier);
    QCOMPARE(frame.movedBy(shifted)->anchor(), QPoint(1, 1));
    QCOMPARE(frame.movedBy(shifted)->current(), leftToRight);
    // Nothing leads out of the grid.
    const QRect grid(0, 0, 4, 3);
    for (const QPoint &corner : {grid.topLeft(), grid.bottomRight()})
        QVERIFY(grid.contains(CellFrame(grid.size(), corner, corner).movedBy(event)->current()));
}

QTEST_GUILESS_MAIN(TestEditGesture)
#include "tst_edit_gesture.moc"
