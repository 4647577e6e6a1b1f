#pragma once

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <functional>

class QWidget;

namespace paravue::test
{

/// Deals with every modal window of one class that appears while it lives: notes its title and texts, then
/// runs an action on it (which may fill it in), and closes it when it is still open. A test that makes one
/// before it calls something modal does not hang, and can count what came up.
class ModalWatcher : public QObject
{
    Q_OBJECT

public:
    using Action = std::function<void(QWidget &window)>;

    /// \a className is the exact class: message boxes, unless something else is asked for.
    explicit ModalWatcher(Action action = {}, const QByteArray &className = "QMessageBox");

    void setAction(const Action &action) { m_action = action; }

    bool hasSeen() const { return !m_texts.isEmpty(); }
    int count() const { return int(m_texts.size()); }
    /// Of the first window.
    QString title() const { return m_title; }
    /// For each window, the texts of its labels, a line each.
    QStringList texts() const { return m_texts; }

private:
    void look();

    Action m_action;
    QByteArray m_className;
    QTimer m_timer;
    QPointer<QWidget> m_last;
    QString m_title;
    QStringList m_texts;
};

} // namespace paravue::test
