#pragma once

#include "snapshots/EditMerge.h"
#include "ui/binding/EditSteps.h"
#include "ui/history/HistoryDialog.h"

#include <QDialog>
#include <QList>

class QTreeWidget;

namespace paravue
{

/// Shows the edits that were made without the recorder from three sides: the snapshot, the edit, and what the
/// recorder has now. Those that fit are checked. Those that collide are taken over only when the user checks
/// them; those of a list whose entries have moved only together.
class MergeDialog : public QDialog
{
    Q_OBJECT

public:
    /// \a snapshot are the edits to choose from.
    MergeDialog(const Snapshot &snapshot, const QList<MergedEdit> &edits, const PresentSettings &present,
                QWidget *parent);

    /// The checked edits.
    QList<ValueEdit> chosen() const;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void fill(const PresentSettings &present, const QSet<QString> &secrets);
    QString heading(const SnapshotInfo &snapshot, const PresentSettings &present) const;

    QList<MergedEdit> m_edits; ///< those that collide come first
    QTreeWidget *m_list;
};

} // namespace paravue
