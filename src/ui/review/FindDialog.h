#pragma once

#include "ui/review/FindIndex.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QLineEdit;
class QTreeWidget;

namespace paravue
{

/// Finds controls of the window by what they say and hold. Enter shows the chosen one.
class FindDialog : public QDialog
{
    Q_OBJECT

public:
    FindDialog(const FindIndex &index, QWidget *parent);

    /// The number of the control that the user wants to see; -1 for none.
    int chosenControl() const { return m_chosen; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void search();
    void choose();

    const FindIndex &m_index;
    QLineEdit *m_query;
    QCheckBox *m_changedOnly;
    QCheckBox *m_withProblems;
    QTreeWidget *m_list;
    QLabel *m_count;
    int m_chosen = -1;
};

} // namespace paravue
