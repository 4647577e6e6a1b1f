#include "controls/NameEdit.h"

#include <QKeyEvent>

#include <utility>

namespace paravue
{

NameEdit::NameEdit(const QString &name, QWidget *parent) : QPlainTextEdit(name, parent)
{
    setAttribute(Qt::WA_InputMethodEnabled);
    setTabChangesFocus(true);
    setLineWrapMode(NoWrap);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    selectAll();
}

void NameEdit::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter)
        end(true);
    else if (key == Qt::Key_Escape)
        end(false);
    else
        QPlainTextEdit::keyPressEvent(event);
}

void NameEdit::focusOutEvent(QFocusEvent *event)
{
    QPlainTextEdit::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason)
        end(true);
}

void NameEdit::end(bool isTaken)
{
    if (std::exchange(m_isOver, true))
        return;
    const bool hadFocus = hasFocus();
    hide();
    if (hadFocus && parentWidget())
        parentWidget()->setFocus();
    if (isTaken) {
        QString name = toPlainText();
        for (QChar &character : name) {
            if (!character.isPrint() && !character.isSurrogate())
                character = u' ';
        }
        Q_EMIT named(name.simplified().left(LongestName).trimmed());
    }
    deleteLater();
}

} // namespace paravue
