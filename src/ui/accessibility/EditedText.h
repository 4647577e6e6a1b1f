#pragma once

#include <QAccessible>
#include <QString>

#include <utility>

class QLineEdit;

namespace paravue
{

/// The text of an input line as screen readers and similar tools read and change it, by position. Changes are
/// made as the user would type them: the line's validator, mask and length limit decide, and a refused text
/// leaves the old one alone. A hidden text (a password) shows as asterisks, or not at all.
class EditedText : public QAccessibleTextInterface, public QAccessibleEditableTextInterface
{
public:
    explicit EditedText(QLineEdit *edit) : m_edit(edit) {}

    /// This object as the interface \a type; null when it does not implement it.
    void *cast(QAccessible::InterfaceType type);
    void addStates(QAccessible::State &state) const;
    QString shownText() const;
    void replaceAll(const QString &text);

    void selection(int index, int *start, int *end) const override;
    int selectionCount() const override;
    void addSelection(int start, int end) override;
    void removeSelection(int index) override;
    void setSelection(int index, int start, int end) override;

    int cursorPosition() const override;
    void setCursorPosition(int position) override;

    QString text(int start, int end) const override;
    int characterCount() const override;
    QString attributes(int offset, int *start, int *end) const override;

    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint &point) const override;
    void scrollToSubstring(int start, int end) override;

    void deleteText(int start, int end) override;
    void insertText(int offset, const QString &text) override;
    void replaceText(int start, int end, const QString &text) override;

private:
    bool isChangeable() const;
    std::pair<int, int> within(int start, int end) const;
    void select(int start, int end);

    QLineEdit *m_edit;
};

} // namespace paravue
