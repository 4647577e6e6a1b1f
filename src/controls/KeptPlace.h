#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPoint>

class QWidget;

namespace paravue
{

/// Puts a window somewhere on the screen, and lets it know that it is there. While some window managers of X
/// take a new window up, it is in the corner of the screen for a moment; when it then comes to stand where it
/// was asked to, they report nothing. Qt would go on to believe in the corner: dialogs and lists of choices
/// would open there, and the next change of the size would move the window there.
class KeptPlace : public QObject
{
public:
    /// This long, in milliseconds, the position of a window that was just shown or put may be wrong.
    static constexpr int TakeUpTime = 2000;

    /// \a window must outlive the object.
    explicit KeptPlace(QWidget &window);

    /// \a topLeft as for QWidget::move(). To be called again for a window that is shown again.
    void put(const QPoint &topLeft);
    /// True for TakeUpTime.
    bool isNew() const { return m_sincePut.isValid() && !m_sincePut.hasExpired(TakeUpTime); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget &m_window;
    QPoint m_asked;
    QElapsedTimer m_sincePut;
    int m_attempts = 0; ///< that are left, as a window manager may insist on the corner
};

} // namespace paravue
