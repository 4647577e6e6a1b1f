#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>

class QLabel;
class QTabWidget;
class QWidget;

namespace paravue
{

struct Control;

/// Shows which controls have a value that the recorder does not have: a bar beside each, and on each tab the
/// number of those on its page. A control without such a value costs nothing.
class ChangeMarks : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
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

    void count(QWidget &widget, int difference);
    void showCount(QTabWidget &tabs, QWidget &page);

    QHash<int, Marked> m_controls;                     ///< by number
    QHash<const QWidget *, int> m_counts;              ///< by page of a tab
    QHash<const QWidget *, QPointer<QLabel>> m_badges; ///< the same
};

} // namespace paravue
