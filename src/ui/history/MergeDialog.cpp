#include "ui/history/MergeDialog.h"

#include "changes/ShownValue.h"
#include "controls/DialogIcons.h"
#include "snapshots/SecretRemoval.h"
#include "ui/base/DialogParts.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace paravue
{

using namespace dialogparts;

namespace
{

constexpr QSize MergeSize(880, 420);
const QList<int> MergeWidths{190, 115, 115, 115, 200};

} // namespace

MergeDialog::MergeDialog(const Snapshot &snapshot, const QList<MergedEdit> &edits,
                         const PresentSettings &present, QWidget *parent)
    : QDialog(parent), m_edits(edits), m_list(makeList({tr("Setting"), tr("Snapshot"), tr("Edited"),
                                                        tr("Recorder now"), tr("Remark"), tr("Address")},
                                                       MergeWidths, tr("Edits to take over"), this))
{
    std::stable_partition(m_edits.begin(), m_edits.end(),
                          [](const MergedEdit &edit) { return edit.state == MergedEdit::State::Collides; });
    setWindowTitle(tr("Edits without the recorder"));
    auto *text = new QLabel(heading(snapshot.info, present), this);
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setObjectName(QStringLiteral("edits"));
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    QPushButton *takeOver = buttons->addButton(tr("Take over"), QDialogButtonBox::AcceptRole);
    takeOver->setDefault(true);
    takeOver->setToolTip(tr("Make the checked edits in the window, where they can be reviewed and sent"));
    setOwnIcons(*buttons);
    QVBoxLayout *layout = makeLayout(*this);
    layout->addWidget(text);
    layout->addWidget(m_list, 1);
    layout->addWidget(buttons);
    resize(MergeSize);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    fill(present, secretsOf(snapshot));
    m_list->installEventFilter(this);
    m_list->setFocus();
    finish(*this);
}

QString MergeDialog::heading(const SnapshotInfo &snapshot, const PresentSettings &present) const
{
    const auto collisions = std::count_if(m_edits.begin(), m_edits.end(), [](const MergedEdit &edit) {
        return edit.state == MergedEdit::State::Collides && edit.canBeTaken;
    });
    QStringList lines{misfit(snapshot, present.recorder)};
    if (!snapshot.recorder.isEmpty() && snapshot.recorder != present.recorder.recorder)
        lines << tr("The snapshot is of the recorder at %1.").arg(snapshot.recorder);
    const bool hasMoved = std::any_of(m_edits.begin(), m_edits.end(),
                                      [](const MergedEdit &edit) { return !edit.movedList.isEmpty(); });
    const bool isIncomplete =
        std::any_of(m_edits.begin(), m_edits.end(), [](const MergedEdit &edit) { return !edit.canBeTaken; });
    if (isIncomplete)
        lines << tr("Entries of a list were added, removed or renamed, and the snapshot has no passwords for "
                    "them: the edits of the list cannot be taken over.");
    else if (hasMoved)
        lines << tr("Entries of a list were added, removed or renamed: the list is taken over as a whole.");
    if (collisions > 0)
        lines << tr("Values that were changed on the recorder too, or may have been, are not checked. Check "
                    "those that are to become as they were edited.");
    else
        lines << tr("The checked values become as they were edited. Nothing is sent yet.");
    lines.removeAll(QString());
    return lines.join(u'\n');
}

void MergeDialog::fill(const PresentSettings &present, const QSet<QString> &secrets)
{
    QList<QTreeWidgetItem *> rows;
    QStringList groups;
    for (const MergedEdit &edit : m_edits) {
        const bool isSecret = present.isSecretWith(secrets, edit.path);
        QString remark;
        if (edit.state == MergedEdit::State::Collides && !edit.canBeTaken)
            remark = tr("The list lacks passwords");
        else if (edit.state == MergedEdit::State::Collides && !edit.movedList.isEmpty())
            remark = tr("Only with the whole list");
        else if (edit.state == MergedEdit::State::Collides)
            remark =
                edit.isBeforeKnown ? tr("Changed on the recorder too") : tr("May have changed there too");
        else if (edit.state == MergedEdit::State::IsDone)
            remark = tr("The recorder has it already");
        else if (edit.state == MergedEdit::State::NoFile)
            remark = tr("The recorder takes no such file");
        QTreeWidgetItem *row =
            makeRow({present.caption(edit.path),
                     edit.isBeforeKnown ? shownValue(edit.before, isSecret) : tr("(left out)"),
                     shownValue(edit.edited, isSecret), shownValue(edit.now, isSecret), remark, edit.path});
        const bool isOpen =
            edit.state == MergedEdit::State::Fits || edit.state == MergedEdit::State::Collides;
        if (isOpen && edit.canBeTaken)
            row->setCheckState(0, edit.state == MergedEdit::State::Fits ? Qt::Checked : Qt::Unchecked);
        rows << row;
        groups << edit.movedList;
    }
    setRows(*m_list, rows);
    checkTogether(*m_list, 0, groups);
}

QList<ValueEdit> MergeDialog::chosen() const
{
    QList<ValueEdit> edits;
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        if (m_list->topLevelItem(i)->checkState(0) == Qt::Checked)
            edits.append({m_edits[i].path, m_edits[i].now, m_edits[i].edited});
    }
    return edits;
}

bool MergeDialog::eventFilter(QObject *watched, QEvent *event)
{
    return toggleWithSpace(*m_list, 0, *event) || QDialog::eventFilter(watched, event);
}

} // namespace paravue
