#include "controls/CellFrame.h"
#include "controls/EditGesture.h"
#include "controls/EditHistory.h"
#include "support/TestTable.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QTest>

using namespace paravue;
using namespace paravue::test;

namespace
{

using Interruption = EditGesture::Interruption;

/// An editor of one text. A drag adds a letter for each position, and "." when it is dropped; nothing can be
/// dragged with the right button.
class Editor : public EditGesture::Editor
{
public:
    explicit Editor(Interruption interruption) : m_gesture(*this, interruption, &m_history) {}

    /// "L", "R" and "l", "r" press and release a button; "m" moves the mouse with the left one held, "n"
    /// without any; "e" is Escape, "E" Enter, "k" another key; "f" loses the focus; "p" changes the text at
    /// once, "s" replaces it from elsewhere; "u" undoes and "U" redoes.
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
        case u'u':
            return m_gesture.undo();
        case u'U':
            return m_gesture.redo();
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
    void restore(const QStringList &texts) override { text = texts[0]; }
    void textsEdited(const QStringList &before, const QStringList &after) override
    {
        reports << before[0] + u'>' + after[0];
    }

    EditHistory m_history;
    EditGesture m_gesture;
};

} // namespace

class TestEditGesture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reportsChanges_data();
    void reportsChanges();
    void remembersWhatDiffers_data();
    void remembersWhatDiffers();
    void forgetsTheFirstSteps();
    void movesTheFrame_data();
    void movesTheFrame();
};

void TestEditGesture::reportsChanges_data()
{
    QTest::addColumn<Interruption>("interruption");
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("reports");
    QTest::addColumn<QString>("unusedKeys");

    const auto row = [](const char *name, Interruption interruption, const QString &steps,
                        const QString &text, const QString &reports, const QString &unusedKeys = {}) {
        QTest::newRow(name) << interruption << steps << text << reports << unusedKeys;
    };
    using enum EditGesture::Interruption;
    row("drag", Cancels, "Lmml", "ddd.", ">ddd.");
    row("button that begins no drag", Cancels, "Rmr", "", "");
    row("other button in a drag", Cancels, "LRrml", "dd.", ">dd.");
    row("moves outside of a drag", Cancels, "mLlm", "d.", ">d.");
    row("change at once", Drops, "pp", "pp", ">p p>pp");
    row("keys outside of a drag", Drops, "keELlke", "d.", ">d.", "kk");
    row("escape", Cancels, "pLmkeml", "p", ">p");
    row("escape after another text", Cancels, "Lsme", "s", "");
    row("drop after another text", Cancels, "Lsml", "sd.", "s>sd.");

    row("missed release that drops", Drops, "Lmnm", "dd.", ">dd.");
    row("missed release that cancels", Cancels, "Lmnm", "", "");
    row("second press after a missed release", Cancels, "LmLl", "d.", ">d.");
    row("second press that drops", Drops, "LLl", "d.d.", ">d. d.>d.d.");
    row("focus that drops", Drops, "Lfm", "d.", ">d.");
    row("focus that cancels", Cancels, "Lfm", "", "");
    row("focus without a drag", Drops, "f", "", "");

    row("undo and redo of drags", Drops, "LmlLluuUUU", "dd.d.",
        ">dd. dd.>dd.d. dd.d.>dd. dd.> >dd. dd.>dd.d.");
    row("undo of a change at once", Drops, "ppu", "p", ">p p>pp pp>p");
    row("nothing to undo", Drops, "uUpUuu", "", ">p p>");
    row("change after an undo", Drops, "pupU", "p", ">p p> >p");
    row("no undo in a drag", Cancels, "pLuml", "pdd.", ">p p>pdd.");
    row("cancelled drag", Cancels, "pLmeu", "", ">p p>");
    row("other text after a step", Drops, "psuU", "s", ">p");
    row("other text after an undo", Drops, "pusU", "s", ">p p>");
}

void TestEditGesture::reportsChanges()
{
    QFETCH(Interruption, interruption);
    QFETCH(QString, steps);
    Editor editor(interruption);
    editor.perform(steps);
    QTEST(editor.text, "text");
    QTEST(editor.reports.join(u' '), "reports");
    QTEST(editor.unusedKeys, "unusedKeys");
}

void TestEditGesture::remembersWhatDiffers_data()
{
    const TestTable<QString, QString> row("before", "after");
    row("one character", "0000", "0100");
    row("several texts", "0000/1111/22", "0100/1111/23");
    row("longer", "00", "0011");
    row("shorter", "0011", "00");
    row("from nothing", "/1", "000/1");
    row("to nothing", "0/1", "/1");
    row("repeated characters", "aaa", "aaaaa");
    row("fewer repeated characters", "abab", "ab");
    row("halves of a character in common", QString::fromUtf8("🎥x"), QString::fromUtf8("🎦x"));
}

void TestEditGesture::remembersWhatDiffers()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    EditHistory history;
    history.record(before.split(u'/'), after.split(u'/'));
    for (int turn = 0; turn < 2; ++turn) {
        QCOMPARE(history.undo(after.split(u'/')), before.split(u'/'));
        QCOMPARE(history.redo(before.split(u'/')), after.split(u'/'));
    }
}

void TestEditGesture::forgetsTheFirstSteps()
{
    EditHistory history;
    const int steps = EditHistory::MaxSteps + 20;
    for (int step = 0; step < steps; ++step)
        history.record({QString::number(step)}, {QString::number(step + 1)});
    QStringList texts{QString::number(steps)};
    while (history.canUndo())
        texts = history.undo(texts);
    QCOMPARE(texts, QStringList("20"));
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
