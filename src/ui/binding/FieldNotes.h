#pragma once

#include <QObject>
#include <QString>

#include <optional>

class QLabel;
class QLineEdit;
class QWidget;

namespace paravue
{

class ControlContext;
class RefusalMark;
struct Control;

/// What stands beside a field: its unit, a mark when something else is stored than the field shows, and below
/// it a note, which is a help for the user, or says what is wrong with what the field holds. It only says so:
/// any value is written as before.
///
/// The words of the description are the children "unit" and "help", and of an edit field the attributes
/// "minimum", "maximum" and "required".
class FieldNotes : public QObject
{
    Q_OBJECT

public:
    /// Makes the notes of a new control when its element has any of these words; \a showsUnit: the widget
    /// shows its unit itself. The labels stand on the page of the widget, which places them (NotedFieldItem),
    /// and have the widget's visibility.
    static void attach(const Control &control, bool showsUnit);
    /// Null for a widget without notes.
    static FieldNotes *of(const QWidget *field);
    /// Those of a control that may have none yet.
    static FieldNotes &have(const Control &control);

    /// Nothing is typed into \a field, apart from the fixed letters of its mask.
    static bool isEmpty(const QLineEdit &field);

    QLabel *unit() const { return m_unit; }
    QLabel *note() const { return m_note; }
    /// Null, or hidden, while the field shows what is stored.
    QLabel *storedMark() const { return m_storedMark; }

    /// What is wrong with the value by the words of the description; empty when nothing is.
    QString problem() const;
    /// Says why a validator or a mask refuses what the field holds; empty when none does.
    void setRefusal(const QString &text);
    /// The field has a value that the recorder does not have: tells screen readers.
    void setChanged(bool isChanged);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    friend void loadFieldNotes(ControlContext &context, const Control &control);

    FieldNotes(const Control &control, bool showsUnit);
    void check();
    void follow();
    QString range() const;
    void setNote(const QString &text, bool isProblem);
    void paintNote();
    void setUnfitValue(const std::optional<QString> &value);
    void describe();

    QWidget *m_field;
    QLabel *m_unit = nullptr;
    QLabel *m_note = nullptr;
    QLabel *m_storedMark = nullptr;       ///< created by the first value that the field cannot show
    RefusalMark *m_refusalMark = nullptr; ///< created by the first refusal of a field without a note
    QString m_help;
    QString m_refusal;
    QString m_storedSentence; ///< what the mark means, in full
    std::optional<int> m_least;
    std::optional<int> m_most;
    bool m_isRequired = false;
    bool m_isSecret = false; ///< what is stored must not be seen
    bool m_isProblem = false;
    bool m_isChanged = false;
};

/// Shows the present texts of the notes of a control, if it has any, and whether its value is a good one.
void loadFieldNotes(ControlContext &context, const Control &control);

} // namespace paravue
