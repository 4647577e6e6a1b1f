#pragma once

#include <QPlainTextEdit>

namespace paravue
{

/// A line over its parent in which the user changes a name. Enter and the loss of the focus take it, Escape
/// leaves the name as it was. Deletes itself afterwards.
class NameEdit : public QPlainTextEdit
{
    Q_OBJECT

public:
    /// In characters.
    static constexpr int LongestName = 40;

    NameEdit(const QString &name, QWidget *parent);

Q_SIGNALS:
    /// Without line ends and other control characters, and no longer than LongestName.
    void named(const QString &name);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void end(bool isTaken);

    bool m_isOver = false;
};

} // namespace paravue
