#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

#include <map>

class QLineEdit;
class QWidget;

namespace paravue
{

class ControlTable;
struct Control;

/// Knows which fields hold something wrong: a text that their validator or mask refuses, none where the
/// description calls for one, a number beyond its range. Each is said at the field, which gets an outline.
/// Fields that are disabled or hidden have no problems, as the user can do nothing about them.
///
/// A field is judged when its value changes, or when it is enabled, disabled, shown or hidden. One without a
/// wrong text costs nothing in between.
class FieldProblems : public QObject
{
    Q_OBJECT

public:
    explicit FieldProblems(ControlTable &controls) : m_controls(controls) {}

    /// \a control may hold another value.
    void check(const Control &control);
    /// Forgets the fields that are not in the table any more.
    void forgetRemoved();

    int count() const { return m_count; }
    /// What is wrong with the field number \a control; empty when nothing is.
    QString problemOf(int control) const;
    /// The numbers of the fields with problems, in the order of the window.
    QList<int> controls() const;
    /// The one of those within \a window behind \a control, or before it; the search goes on at the other
    /// end. -1 without any.
    int next(const QWidget &window, int control, bool isBackwards) const;

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// The field has a problem now, or has none any more. Null when it was deleted.
    void changed(QWidget *field, bool hasProblem);

private:
    struct Wrong {
        QPointer<QLineEdit> field;
        QString text;
        bool isRefusal = false; ///< by a validator or a mask
        bool isProblem = false; ///< the field can be used
    };

    void watch(QLineEdit &field, int number);
    void judge(int number, Wrong &wrong);
    void judgeWithin(const QWidget &widget);
    void setProblem(Wrong &wrong, bool isProblem);
    void forget(int number);

    ControlTable &m_controls;
    std::map<int, Wrong> m_wrong; ///< by number of the control
    int m_count = 0;
};

} // namespace paravue
