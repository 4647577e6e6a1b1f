#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>

class QWidget;

namespace paravue
{

class TabBadges;
struct Control;

/// Shows which controls have a value that the recorder does not have: a bar beside each, and on each tab the
/// number of those on its page. A control without such a value costs nothing.
class ChangeMarks : public QObject
{
    Q_OBJECT

public:
    explicit ChangeMarks(TabBadges &badges) : m_badges(badges) {}
    ~ChangeMarks() override;

    /// \a control shows the value at \a path, which is changed or not.
    void set(const Control &control, const QString &path, bool isChanged);
    void clear();

private:
    struct Marked {
        QSet<QString> paths;
        QPointer<QWidget> bar;
        QPointer<QWidget> widget;
    };

    void remove(const Marked &marked);

    TabBadges &m_badges;
    QHash<int, Marked> m_controls; ///< by number
};

} // namespace paravue
