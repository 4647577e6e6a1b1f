#pragma once

#include <QLabel>

class QLineEdit;

namespace paravue
{

/// Says at a field why its text is refused, without any room in the layout, which would move with every key:
/// behind the text when there is room in the field; else below it, over the page, while the field has the
/// focus or the mouse; else by an exclamation mark in it.
class RefusalMark : public QLabel
{
public:
    explicit RefusalMark(QLineEdit &field);

    /// Nothing is shown without a text.
    void setReason(const QString &reason);

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    enum class Form { Inside, Below, Sign };

    Form form() const;
    void place();

    QLineEdit &m_field;
    QString m_reason;
    bool m_isBelow = false;
};

} // namespace paravue
