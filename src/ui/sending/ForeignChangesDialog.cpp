#include "ui/sending/ForeignChangesDialog.h"

#include "changes/ShownValue.h"
#include "controls/DialogIcons.h"
#include "ui/base/DialogParts.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace paravue
{

using namespace dialogparts;

namespace
{

constexpr int OwnColumn = 3;
constexpr int ForeignPathRole = Qt::UserRole;
constexpr QSize ForeignListSize(860, 380);
const QList<int> ForeignWidths{230, 140, 140, 150};

} // namespace

QString ValueTexts::shown(const QString &path, const std::optional<QString> &value) const
{
    return shownValue(value, isSecret(path));
}

ForeignChangesDialog::ForeignChangesDialog(const QList<ForeignChange> &changes, const ValueTexts &texts,
                                           QWidget *parent)
    : QDialog(parent),
      m_list(makeList({tr("Setting"), tr("Was"), tr("Recorder now"), tr("Send mine"), tr("Address")},
                      ForeignWidths, tr("Changed by somebody else"), this))
{
    setWindowTitle(tr("Changed by somebody else"));
    auto *text =
        new QLabel(tr("These values were changed at the recorder while this window was open. They are "
                      "kept; tick those that are to get your value instead."),
                   this);
    text->setWordWrap(true);
    if (std::any_of(changes.begin(), changes.end(),
                    [](const auto &change) { return !change.movedList.isEmpty(); }))
        text->setText(text->text() + u' ' +
                      tr("Entries of a list were added, removed or renamed, so your values may belong to "
                         "another entry than the one that has their position now. Such a list gets your "
                         "values as a whole."));
    QList<QTreeWidgetItem *> rows;
    QStringList groups;
    for (const ForeignChange &change : changes) {
        QTreeWidgetItem *row =
            makeRow({texts.caption(change.path), texts.shown(change.path, change.before),
                     texts.shown(change.path, change.recorder),
                     texts.shown(change.path, change.own.value_or(change.before)), change.path});
        row->setCheckState(OwnColumn, Qt::Unchecked);
        row->setData(0, ForeignPathRole, change.path);
        rows << row;
        groups << change.movedList;
    }
    setRows(*m_list, rows);
    checkTogether(*m_list, OwnColumn, groups);

    auto *buttons = new QDialogButtonBox(this);
    QPushButton *goOn = buttons->addButton(tr("Continue"), QDialogButtonBox::AcceptRole);
    buttons->addButton(tr("Go on editing"), QDialogButtonBox::RejectRole);
    goOn->setObjectName(QStringLiteral("goOn"));
    goOn->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    QVBoxLayout *layout = makeLayout(*this);
    layout->addWidget(text);
    layout->addWidget(m_list, 1);
    layout->addWidget(buttons);
    resize(ForeignListSize);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->installEventFilter(this);
    m_list->setFocus();
    setOwnIcons(*buttons);
    ignoreSecondEnter(*this);
    finish(*this);
}

bool ForeignChangesDialog::eventFilter(QObject *watched, QEvent *event)
{
    return toggleWithSpace(*m_list, OwnColumn, *event) || QDialog::eventFilter(watched, event);
}

QSet<QString> ForeignChangesDialog::own() const
{
    QSet<QString> paths;
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        const QTreeWidgetItem *row = m_list->topLevelItem(i);
        if (row->checkState(OwnColumn) == Qt::Checked)
            paths.insert(row->data(0, ForeignPathRole).toString());
    }
    return paths;
}

} // namespace paravue
