#pragma once

#include "GeneratedForm.h"

#include <QDialog>

class QGridLayout;

/// The peer of the setup window: the same widgets with the same names and values and one connection each, as
/// one would write them by hand.
class HandWrittenForm : public QDialog
{
public:
    explicit HandWrittenForm(const GeneratedForm &form);

    int changes() const { return m_changes; }

private:
    void addRow(QGridLayout *grid, int row, int gridRow);
    void name(QWidget *widget) { widget->setAccessibleName(GeneratedForm::controlName(m_number++)); }

    int m_number = 0;
    int m_changes = 0;
};
