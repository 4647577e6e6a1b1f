#pragma once

#include "ui/review/FindIndex.h"

#include <QDialog>

#include <functional>

class QCheckBox;
class QLabel;
class QLineEdit;
class QTreeWidget;

namespace paravue
{

/// Finds controls of the window and its dialogs by what they say and hold. Enter shows the chosen one.
class FindDialog : public QDialog
{
    Q_OBJECT

public:
    /// What there is to say about an element of a dialog that is not open.
    struct Way {
        QString text;
        bool exists = true; ///< Enter leads there, or towards it
    };
    using Ways = std::function<Way(const FindIndex::Entry &)>;

    FindDialog(const FindIndex &index, Ways ways, QWidget *parent);

    /// What the user wants to see; null for nothing.
    const FindIndex::Entry *chosen() const { return m_chosen; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void search();
    const FindIndex::Entry *current() const;
    void showWay();
    void choose();

    const FindIndex &m_index;
    const Ways m_ways;
    QLineEdit *m_query;
    QCheckBox *m_changedOnly;
    QCheckBox *m_withProblems;
    QTreeWidget *m_list;
    QLabel *m_count;
    QLabel *m_way;
    QList<const FindIndex::Entry *> m_found; ///< by row
    const FindIndex::Entry *m_chosen = nullptr;
};

} // namespace paravue
