#include "ui/history/HistoryDialog.h"

#include "changes/ShownValue.h"
#include "controls/ListColumns.h"
#include "snapshots/SecretRemoval.h"
#include "snapshots/SnapshotArchive.h"
#include "ui/base/DialogParts.h"
#include "ui/base/WindowStyle.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace paravue
{

using namespace dialogparts;

namespace
{

enum HistoryColumn { TimeColumn, ChangesColumn, RemarkColumn };
constexpr QSize HistorySize(780, 560);
const QList<int> SnapshotWidths{200, 160};
const QList<int> ValueWidths{250, 130, 130};
constexpr int ShareOfSnapshots = 2; // of the height, in fifths
constexpr int ShareOfValues = 3;

QString snapshotTime(const SnapshotInfo &info)
{
    return QLocale().toString(info.time.toLocalTime(), QLocale::ShortFormat);
}

} // namespace

bool PresentSettings::isSecretWith(const QSet<QString> &secrets, const QString &path) const
{
    return isSecret(path) || secrets.contains(path) || secrets.contains(path.section(u'/', 0, 0));
}

HistoryDialog::HistoryDialog(const SnapshotFolder &folder, PresentSettings present, QWidget *parent)
    : QDialog(parent), m_present(std::move(present)), m_kept(folder.list())
{
    setWindowTitle(tr("History"));
    createWidgets();
    arrangeWidgets();
    listSnapshots();
    compare();
    m_snapshots->setFocus();
    finish(*this);
}

void HistoryDialog::createWidgets()
{
    m_snapshots = makeList({tr("Kept"), tr("Changed afterwards"), tr("Remark")}, SnapshotWidths,
                           tr("Snapshots, the newest first"), this);
    m_snapshots->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_snapshots->setToolTip(tr("Select one to compare it with the present settings, or two to compare them"));
    m_snapshots->setObjectName(QStringLiteral("snapshots"));
    m_caption = new QLabel(this);
    m_caption->setTextFormat(Qt::PlainText);
    m_values = makeList({tr("Setting"), tr("Snapshot"), tr("Present"), tr("Address")}, ValueWidths,
                        tr("Different values"), this);
    m_values->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_values->setObjectName(QStringLiteral("values"));
    m_settingsOnly = new QCheckBox(tr("Only what this window edits"), this);
    m_settingsOnly->setChecked(true);
    m_note = new QLabel(this);
    m_note->setTextFormat(Qt::PlainText);
    m_note->setWordWrap(true);
    m_restore = makeButton(tr("Restore"), tr("Set the selected values to those of the snapshot (Enter)"),
                           "restore", this);
    m_restoreAll = makeButton(tr("Restore all"), tr("Set all listed values to those of the snapshot"),
                              "restoreAll", this);
    m_show = makeButton(tr("Show"), tr("Show the snapshot in a window of its own"), "show", this);
    m_counter = new QTimer(this);

    connect(m_snapshots, &QTreeWidget::itemSelectionChanged, this, &HistoryDialog::compare);
    connect(m_values, &QTreeWidget::itemSelectionChanged, this, &HistoryDialog::updateButtons);
    connect(m_settingsOnly, &QCheckBox::toggled, this, &HistoryDialog::compare);
    connect(m_restore, &QToolButton::clicked, this, [this] { restore(true); });
    connect(m_restoreAll, &QToolButton::clicked, this, [this] { restore(false); });
    connect(m_show, &QToolButton::clicked, this, &HistoryDialog::showSelected);
    connect(m_snapshots, &QTreeWidget::itemDoubleClicked, this, &HistoryDialog::showSelected);
    connect(m_counter, &QTimer::timeout, this, &HistoryDialog::countNext);
    m_values->installEventFilter(this);
    m_snapshots->installEventFilter(this);
}

void HistoryDialog::arrangeWidgets()
{
    auto *above = new QHBoxLayout;
    above->addWidget(m_caption, 1);
    above->addWidget(m_settingsOnly);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *bottom = new QHBoxLayout;
    for (QToolButton *button : {m_restore, m_restoreAll, m_show})
        bottom->addWidget(button);
    bottom->addStretch();
    bottom->addWidget(buttons);
    QVBoxLayout *layout = makeLayout(*this);
    layout->addWidget(m_snapshots, ShareOfSnapshots);
    layout->addLayout(above);
    layout->addWidget(m_values, ShareOfValues);
    layout->addWidget(m_note);
    layout->addLayout(bottom);
    resize(HistorySize);
}

void HistoryDialog::listSnapshots()
{
    QList<QTreeWidgetItem *> rows{new QTreeWidgetItem({tr("Present settings")})};
    for (const KeptSnapshot &kept : std::as_const(m_kept)) {
        QString remark = kept.problem;
        if (remark.isEmpty())
            remark = misfit(kept.info, m_present.recorder);
        if (remark.isEmpty() && kept.info.isEdited)
            remark = tr("Edited without the recorder");
        rows << makeRow({snapshotTime(kept.info), QString(), remark});
    }
    m_snapshots->addTopLevelItems(rows);
    m_snapshots->setCurrentItem(rows.value(1, rows.constFirst()), 0,
                                QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    m_counter->start(0); // one at a time: there may be many large ones
}

/// Counts what changed between a snapshot and the next newer one that can be read.
void HistoryDialog::countNext()
{
    if (m_counted == m_kept.size()) {
        m_counter->stop();
        return;
    }
    const int number = m_counted++;
    const auto snapshot = read(number);
    if (!snapshot)
        return;
    if (!m_newer && !m_present.problem.isEmpty()) {
        m_newer = snapshot;
        return;
    }
    const qsizetype count =
        sentOnes(m_newer ? differences(*snapshot, *m_newer) : differencesToPresent(*snapshot)).size();
    QTreeWidgetItem *row = m_snapshots->topLevelItem(number + 1);
    row->setText(ChangesColumn, count == 1 ? tr("1 value") : tr("%n values", nullptr, int(count)));
    m_newer = snapshot;
}

/// Nothing, with a remark in its row, when the archive cannot be used.
std::optional<Snapshot> HistoryDialog::read(int number)
{
    KeptSnapshot &kept = m_kept[number];
    if (!kept.problem.isEmpty())
        return {};
    auto [snapshot, problem] = snapshotarchive::read(kept.path);
    if (problem.isEmpty())
        return snapshot;
    kept.problem = problem;
    QTreeWidgetItem *row = m_snapshots->topLevelItem(number + 1);
    row->setText(RemarkColumn, problem);
    row->setToolTip(RemarkColumn, rowToolTip(problem));
    return {};
}

/// Of the selected snapshots, the newest first; -1 for the present settings.
QList<int> HistoryDialog::selectedNumbers() const
{
    QList<int> numbers;
    for (const QTreeWidgetItem *row : m_snapshots->selectedItems())
        numbers << m_snapshots->indexOfTopLevelItem(const_cast<QTreeWidgetItem *>(row)) - 1;
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

void HistoryDialog::compare()
{
    const QList<int> numbers = selectedNumbers();
    m_found.clear();
    m_plan = {};
    m_values->clear();
    m_note->clear();
    if (m_kept.isEmpty())
        m_caption->setText(tr("No snapshot was kept yet. One is kept before each sending."));
    else if (numbers == QList<int>{-1})
        m_caption->setText(tr("Select a snapshot to compare it with the present settings."));
    else if (numbers.size() == 1)
        compareWithPresent(numbers.constFirst());
    else if (numbers.size() == 2 && numbers.constFirst() < 0)
        compareWithPresent(numbers.constLast());
    else if (numbers.size() == 2)
        compareTwo(numbers.constLast(), numbers.constFirst());
    else
        m_caption->setText(tr("Select one or two snapshots."));
    m_note->setVisible(!m_note->text().isEmpty());
    updateButtons();
}

/// Nothing can be restored of files that no save sends; counters and states in them differ each time.
QList<ValueDifference> HistoryDialog::sentOnes(QList<ValueDifference> found) const
{
    found.removeIf([this](const ValueDifference &difference) { return !m_present.isSent(difference.path); });
    return found;
}

QList<ValueDifference> HistoryDialog::differencesToPresent(const Snapshot &snapshot) const
{
    return differences(valuesOf(snapshot.currentFiles()), m_present.values, snapshot.info.leftOut);
}

void HistoryDialog::compareWithPresent(int number)
{
    const auto snapshot = read(number);
    const QString problem = snapshot ? m_present.problem : m_kept[number].problem;
    if (!problem.isEmpty()) {
        m_caption->setText(problem);
        return;
    }
    setValueHeadings({tr("Setting"), tr("Snapshot"), tr("Present"), tr("Address")});
    if (!snapshot->info.leftOut.isEmpty())
        m_note->setText(tr("Passwords are not in this snapshot: they stay as they are."));
    m_plan = RestorePlan(*snapshot, m_present.values, m_present.isSent);
    fill(m_plan.differences(), secretsOf(*snapshot));
    noteMovedLists();
}

/// Says of the lists of which values are shown why these cannot be restored alone. The recorder's log is
/// another one in each snapshot.
void HistoryDialog::noteMovedLists()
{
    const MovedLists &moved = m_plan.movedLists();
    bool areMoved = false;
    bool areIncomplete = false;
    for (const ValueDifference &difference : std::as_const(m_found)) {
        areMoved = areMoved || !moved.listOf(difference.path).isEmpty();
        areIncomplete = areIncomplete || !moved.canBeSet(difference.path);
    }
    QStringList notes{m_note->text()};
    if (areIncomplete)
        notes << tr(
            "Entries of a list were added, removed or renamed since, and the snapshot has no passwords "
            "for them: the values of the list cannot be restored.");
    else if (areMoved)
        notes << tr(
            "Entries of a list were added, removed or renamed since: the list is restored as a whole.");
    notes.removeAll(QString());
    m_note->setText(notes.join(u'\n'));
}

/// A time needs more room than the other headings. Columns that the user has widened stay.
void HistoryDialog::setValueHeadings(const QStringList &headings)
{
    m_values->setHeaderLabels(headings);
    QList<int> widths;
    for (int column = 0; column < ValueWidths.size(); ++column)
        widths << m_values->columnWidth(column);
    setColumnWidths(*m_values, {widths.constData(), std::size_t(widths.size())});
}

void HistoryDialog::compareTwo(int older, int newer)
{
    const auto before = read(older);
    const auto after = read(newer);
    if (!before || !after) {
        m_caption->setText(m_kept[before ? newer : older].problem);
        return;
    }
    setValueHeadings({tr("Setting"), snapshotTime(before->info), snapshotTime(after->info), tr("Address")});
    fill(sentOnes(differences(*before, *after)), secretsOf(*before) | secretsOf(*after));
}

void HistoryDialog::fill(const QList<ValueDifference> &found, const QSet<QString> &secrets)
{
    QList<QTreeWidgetItem *> rows;
    for (const ValueDifference &difference : found) {
        if (m_settingsOnly->isChecked() && !m_present.isEditable(difference.path))
            continue;
        const bool isSecret = m_present.isSecretWith(secrets, difference.path);
        rows << makeRow({m_present.caption(difference.path), shownValue(difference.before, isSecret),
                         shownValue(difference.after, isSecret), difference.path});
        rows.last()->setDisabled(!m_plan.canRestore(difference));
        m_found << difference;
    }
    m_values->addTopLevelItems(rows);
    const qsizetype others = found.size() - m_found.size();
    QString text = m_found.size() == 1 ? tr("1 different value")
                                       : tr("%n different values", nullptr, int(m_found.size()));
    if (others > 0)
        text = tr("%1 (and %2 that this window does not edit)").arg(text).arg(others);
    m_caption->setText(text);
}

void HistoryDialog::updateButtons()
{
    const QList<int> numbers = selectedNumbers();
    const bool isWithPresent = numbers.size() == 1 || (numbers.size() == 2 && numbers.constFirst() < 0);
    m_restore->setEnabled(isWithPresent && !m_values->selectedItems().isEmpty());
    m_restoreAll->setEnabled(isWithPresent && !m_found.isEmpty());
    m_show->setEnabled(numbers.size() == 1 && numbers.constFirst() >= 0 &&
                       m_kept[numbers.constFirst()].problem.isEmpty());
}

void HistoryDialog::restore(bool onlySelected)
{
    QStringList paths;
    for (int i = 0; i < m_values->topLevelItemCount(); ++i) {
        if (!onlySelected || m_values->topLevelItem(i)->isSelected())
            paths << m_found[i].path;
    }
    for (const ValueDifference &value : m_plan.restored(paths))
        m_restored.append({value.path, value.after, value.before});
    accept();
}

void HistoryDialog::showSelected()
{
    if (!m_show->isEnabled())
        return;
    if (const auto snapshot = read(selectedNumbers().constFirst()))
        Q_EMIT showRequested(*snapshot);
}

bool HistoryDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter)
        return QDialog::eventFilter(watched, event);
    if (watched == m_snapshots)
        showSelected();
    else if (m_restore->isEnabled())
        restore(true);
    return true;
}

} // namespace paravue
