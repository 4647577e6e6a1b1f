#include "ui/sending/ForeignChangesDialog.h"

#include "changes/SecretKeys.h"
#include "controls/DialogFrame.h"
#include "controls/DialogIcons.h"
#include "controls/WindowLook.h"
#include "ui/base/WindowStyle.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace paravue
{

namespace
{

enum ForeignColumn { ForeignSetting, ForeignBefore, ForeignRecorder, ForeignOwn, ForeignColumnCount };
constexpr int ForeignPathRole = Qt::UserRole;
constexpr QSize ForeignListSize(800, 380);
constexpr int ForeignWidths[] = {280, 150, 150};

} // namespace

QString ValueTexts::shown(const QString &path, const QString &value) const
{
    if (isSecret(path))
        return SecretKeys::dots();
    return value.isEmpty() ? QStringLiteral("–") : value.simplified();
}

ForeignChangesDialog::ForeignChangesDialog(const QList<ForeignChange> &changes, const ValueTexts &texts,
                                           QWidget *parent)
    : QDialog(parent), m_list(new QTreeWidget(this))
{
    setWindowTitle(tr("Changed by somebody else"));
    auto *text =
        new QLabel(tr("These values were changed at the recorder while this window was open. They are "
                      "kept; tick those that are to get your value instead."),
                   this);
    text->setWordWrap(true);
    m_list->setHeaderLabels({tr("Setting"), tr("Was"), tr("Recorder now"), tr("Send mine")});
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    m_list->setAccessibleName(windowTitle());
    for (int column = 0; column < ForeignOwn; ++column)
        m_list->header()->resizeSection(column, ForeignWidths[column]);
    for (const ForeignChange &change : changes) {
        auto *row = new QTreeWidgetItem(m_list);
        row->setText(ForeignSetting, texts.caption(change.path));
        row->setText(ForeignBefore, texts.shown(change.path, change.before));
        row->setText(ForeignRecorder, texts.shown(change.path, change.recorder));
        row->setText(ForeignOwn, texts.shown(change.path, change.own.value_or(change.before)));
        row->setCheckState(ForeignOwn, Qt::Unchecked);
        for (int column = 0; column < ForeignColumnCount; ++column)
            row->setToolTip(column, column == ForeignSetting ? change.path : row->text(column));
        row->setData(0, ForeignPathRole, change.path);
    }
    m_list->setCurrentItem(m_list->topLevelItem(0));

    auto *buttons = new QDialogButtonBox(this);
    QPushButton *goOn = buttons->addButton(tr("Continue"), QDialogButtonBox::AcceptRole);
    buttons->addButton(tr("Go on editing"), QDialogButtonBox::RejectRole);
    goOn->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(PageMargin, PageMargin, PageMargin, PageMargin);
    layout->setSpacing(GridSpacing);
    layout->addWidget(text);
    layout->addWidget(m_list, 1);
    layout->addWidget(buttons);
    resize(ForeignListSize);
    m_list->setFocus();
    WindowLook::apply(*this);
    setOwnIcons(*buttons);
    DialogFrame::give(*this, DialogFrame::Size::OfTheUser);
}

QSet<QString> ForeignChangesDialog::own() const
{
    QSet<QString> paths;
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        const QTreeWidgetItem *row = m_list->topLevelItem(i);
        if (row->checkState(ForeignOwn) == Qt::Checked)
            paths.insert(row->data(0, ForeignPathRole).toString());
    }
    return paths;
}

} // namespace paravue
