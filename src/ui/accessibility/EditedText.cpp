#include "ui/accessibility/EditedText.h"

#include <QLineEdit>

#include <algorithm>

namespace paravue
{

void *EditedText::cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TextInterface)
        return static_cast<QAccessibleTextInterface *>(this);
    if (type == QAccessible::EditableTextInterface)
        return static_cast<QAccessibleEditableTextInterface *>(this);
    return nullptr;
}

void EditedText::addStates(QAccessible::State &state) const
{
    state.readOnly = m_edit->isReadOnly();
    state.editable = !m_edit->isReadOnly();
    state.selectableText = true;
    state.passwordEdit = m_edit->echoMode() != QLineEdit::Normal;
}

QString EditedText::shownText() const
{
    switch (m_edit->echoMode()) {
    case QLineEdit::Normal:
        return m_edit->displayText();
    case QLineEdit::NoEcho:
        return {};
    default: // the display may show a character for a while when it is typed
        return QString(m_edit->text().size(), u'*');
    }
}

void EditedText::replaceAll(const QString &text)
{
    if (!isChangeable())
        return;
    m_edit->selectAll();
    m_edit->insert(text);
}

void EditedText::selection(int index, int *start, int *end) const
{
    const bool exists = index == 0 && m_edit->hasSelectedText();
    *start = exists ? m_edit->selectionStart() : 0;
    *end = exists ? m_edit->selectionEnd() : 0;
}

int EditedText::selectionCount() const
{
    return m_edit->hasSelectedText() ? 1 : 0;
}

void EditedText::addSelection(int start, int end)
{
    setSelection(0, start, end);
}

void EditedText::removeSelection(int index)
{
    if (index == 0)
        m_edit->deselect();
}

void EditedText::setSelection(int index, int start, int end)
{
    if (index == 0)
        select(start, end);
}

int EditedText::cursorPosition() const
{
    return m_edit->cursorPosition();
}

void EditedText::setCursorPosition(int position)
{
    m_edit->setCursorPosition(position);
}

QString EditedText::text(int start, int end) const
{
    const auto [from, to] = within(start, end);
    return shownText().mid(from, to - from);
}

int EditedText::characterCount() const
{
    return int(shownText().size());
}

QString EditedText::attributes(int, int *start, int *end) const
{
    *start = 0;
    *end = characterCount();
    return {};
}

QRect EditedText::characterRect(int offset) const
{
    const QString shown = shownText();
    if (offset < 0 || offset >= shown.size())
        return {};
    const QFontMetrics metrics = m_edit->fontMetrics();
    const auto widthUpTo = [&](int end) { return metrics.horizontalAdvance(shown.left(end)); };
    // Qt's cursor rectangle is wider than the cursor, which is in its middle.
    QRect rect = m_edit->inputMethodQuery(Qt::ImCursorRectangle).toRectF().toRect();
    rect.setLeft(rect.center().x() + widthUpTo(offset) - widthUpTo(m_edit->cursorPosition()));
    rect.setWidth(widthUpTo(offset + 1) - widthUpTo(offset));
    return {m_edit->mapToGlobal(rect.topLeft()), rect.size()};
}

int EditedText::offsetAtPoint(const QPoint &point) const
{
    return m_edit->cursorPositionAt(m_edit->mapFromGlobal(point));
}

void EditedText::scrollToSubstring(int start, int end)
{
    // The line scrolls so that its cursor is seen.
    m_edit->setCursorPosition(end);
    m_edit->setCursorPosition(start);
}

void EditedText::deleteText(int start, int end)
{
    replaceText(start, end, QString());
}

void EditedText::insertText(int offset, const QString &text)
{
    replaceText(offset, offset, text);
}

void EditedText::replaceText(int start, int end, const QString &text)
{
    if (!isChangeable())
        return;
    select(start, end);
    m_edit->insert(text);
}

bool EditedText::isChangeable() const
{
    return !m_edit->isReadOnly() && m_edit->isEnabled();
}

std::pair<int, int> EditedText::within(int start, int end) const
{
    const bool hidden = m_edit->echoMode() != QLineEdit::Normal;
    const int size = int(hidden ? m_edit->text().size() : m_edit->displayText().size());
    const int from = std::clamp(start, 0, size);
    return {from, std::clamp(end, from, size)};
}

void EditedText::select(int start, int end)
{
    const auto [from, to] = within(start, end);
    if (from == to)
        m_edit->setCursorPosition(from);
    else
        m_edit->setSelection(from, to - from);
}

} // namespace paravue
