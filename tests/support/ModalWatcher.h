#pragma once

#include <QPointer>
#include <QString>
#include <QTimer>

#include <functional>

class QWidget;

namespace paravue::test
{

/// Deals with the next modal window that appears while it lives: notes its title and texts, then runs an
/// action on it (which may fill it in), and closes it when it is still open. A test that makes one before it
/// calls something modal does not hang.
class ModalWatcher : public QObject
{
    Q_OBJECT

public:
    using Action = std::function<void(QWidget &window)>;

    explicit ModalWatcher(Action action = {});

    bool hasSeen() const { return m_seen; }
    QString title() const { return m_title; }
    /// The texts of all labels of the window, a line each.
    QString text() const { return m_text; }

private:
    void look();

    Action m_action;
    QTimer m_timer;
    bool m_seen = false;
    QString m_title;
    QString m_text;
};

} // namespace paravue::test
