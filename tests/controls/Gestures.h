#pragma once

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QRegularExpression>
#include <QTest>

#include <functional>

namespace paravue::test
{

/// Performs a gesture on \a widget for each word, at places that \a position gives: "L1,2" and "R1,2" press a
/// button ("SL1,2" with Shift, "AL1,2" with Alt), "M1,2" moves the mouse, "U" lets the button go, "D1,2"
/// clicks twice, "F" takes the focus away; anything else is a key, with "~" before it the repeat of a held
/// one.
inline void perform(QWidget &widget, const QString &gestures,
                    const std::function<QPoint(const QPointF &)> &position)
{
    static const QRegularExpression mouse("^([SA]?)([LRMD])(-?[\\d.]+),(-?[\\d.]+)$");
    Qt::MouseButton held = Qt::NoButton;
    QPoint place;
    for (const QString &word : gestures.split(u' ', Qt::SkipEmptyParts)) {
        const auto match = mouse.match(word);
        if (match.hasMatch())
            place = position({match.captured(3).toDouble(), match.captured(4).toDouble()});
        const QString kind = match.captured(2);
        if (kind == "M") {
            QTest::mouseMove(&widget, place);
        } else if (kind == "D") {
            QTest::mouseClick(&widget, Qt::LeftButton, {}, place);
            QTest::mouseDClick(&widget, Qt::LeftButton, {}, place);
        } else if (match.hasMatch()) {
            held = kind == "L" ? Qt::LeftButton : Qt::RightButton;
            const QMap<QString, Qt::KeyboardModifier> modifiers{{"S", Qt::ShiftModifier},
                                                                {"A", Qt::AltModifier}};
            QTest::mousePress(&widget, held, modifiers.value(match.captured(1)), place);
        } else if (word == "U") {
            QTest::mouseRelease(&widget, held, {}, place);
        } else if (word == "F") {
            widget.clearFocus();
        } else {
            const bool isRepeat = word.startsWith(u'~');
            const QKeyCombination key = QKeySequence::fromString(word.mid(isRepeat ? 1 : 0))[0];
            QKeyEvent repeat(QEvent::KeyPress, key.key(), key.keyboardModifiers(), {}, true);
            if (isRepeat)
                QCoreApplication::sendEvent(&widget, &repeat);
            else
                QTest::keyClick(&widget, key.key(), key.keyboardModifiers());
        }
    }
}

/// Shift+F10. Windows makes the event for the menu of it, other systems leave that to the widget.
inline void openMenuByKey(QWidget &widget)
{
#ifdef Q_OS_WIN
    QContextMenuEvent event(QContextMenuEvent::Keyboard, widget.rect().center(),
                            widget.mapToGlobal(widget.rect().center()));
    QCoreApplication::sendEvent(&widget, &event);
#else
    QTest::keyClick(&widget, Qt::Key_F10, Qt::ShiftModifier);
#endif
}

} // namespace paravue::test
