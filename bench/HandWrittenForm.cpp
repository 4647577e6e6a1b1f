#include "HandWrittenForm.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>
#include <QVBoxLayout>

HandWrittenForm::HandWrittenForm(const GeneratedForm &form)
{
    auto *layout = new QVBoxLayout(this);
    auto *tabs = new QTabWidget(this);
    layout->addWidget(tabs);
    for (int tab = 0; tab < form.tabs(); ++tab) {
        auto *page = new QWidget;
        auto *area = new QScrollArea;
        area->setWidgetResizable(true);
        area->setWidget(page);
        tabs->addTab(area, GeneratedForm::tabName(tab));
        auto *grid = new QGridLayout(page);
        for (int row = 0; row < form.rowsOf(tab); ++row)
            addRow(grid, tab * GeneratedForm::RowsPerTab + row, row);
    }
}

void HandWrittenForm::bindTexts()
{
    int row = 0;
    for (const auto &[edit, label] : m_texts) {
        const QString address = GeneratedForm::textAddress(row++);
        connect(edit, &QLineEdit::textChanged, this, [this, address, label = label](const QString &text) {
            m_values[address] = text;
            label->setText(text);
        });
    }
}

QList<QLineEdit *> HandWrittenForm::fields() const
{
    QList<QLineEdit *> fields;
    for (const auto &[edit, label] : m_texts)
        fields.append(edit);
    return fields;
}

void HandWrittenForm::addRow(QGridLayout *grid, int row, int gridRow)
{
    QWidget *page = grid->parentWidget();
    const Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter;
    const auto changed = [this] { ++m_changes; };

    auto *label = new QLabel(GeneratedForm::text(row), page);
    name(label);
    grid->addWidget(label, gridRow, 0, alignment);

    auto *edit = new QLineEdit(GeneratedForm::text(row), page);
    name(edit);
    connect(edit, &QLineEdit::textChanged, this, changed);
    grid->addWidget(edit, gridRow, 1, alignment);
    m_texts.append({edit, label});

    auto *box = new QCheckBox(QStringLiteral("Enabled"), page);
    name(box);
    box->setChecked(GeneratedForm::isChecked(row));
    connect(box, &QCheckBox::stateChanged, this, changed);
    grid->addWidget(box, gridRow, 2, alignment);

    auto *list = new QComboBox(page);
    name(list);
    list->addItems(GeneratedForm::choices());
    list->setCurrentIndex(GeneratedForm::choice(row));
    connect(list, &QComboBox::activated, this, changed);
    grid->addWidget(list, gridRow, 3, alignment);

    auto *bar = new QScrollBar(Qt::Horizontal, page);
    name(bar);
    bar->setRange(0, 100);
    bar->setValue(GeneratedForm::position(row));
    bar->setMinimumWidth(120);
    connect(bar, &QScrollBar::valueChanged, this, changed);
    grid->addWidget(bar, gridRow, 4);
}
