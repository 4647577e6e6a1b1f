#pragma once

#include "GeneratedForm.h"

#include <QDialog>
#include <QHash>
#include <QList>

#include <utility>

class QGridLayout;
class QLabel;
class QLineEdit;

/// The peer of the setup window: the same widgets with the same names and values and one connection each, as
/// one would write them by hand.
class HandWrittenForm : public QDialog
{
public:
    explicit HandWrittenForm(const GeneratedForm &form);

    int changes() const { return m_changes; }
    /// From now on the text of a field is kept by its address, and the label of its row shows it.
    void bindTexts();
    QList<QLineEdit *> fields() const;

private:
    void addRow(QGridLayout *grid, int row, int gridRow);
    void name(QWidget *widget) { widget->setAccessibleName(GeneratedForm::controlName(m_number++)); }

    QList<std::pair<QLineEdit *, QLabel *>> m_texts;
    QHash<QString, QString> m_values; ///< by address
    int m_number = 0;
    int m_changes = 0;
};
