#pragma once

#include "snapshots/RestorePlan.h"
#include "snapshots/SnapshotDifferences.h"
#include "snapshots/SnapshotFolder.h"
#include "ui/binding/EditSteps.h"

#include <QDialog>
#include <QList>
#include <QSet>

#include <functional>
#include <optional>
#include <vector>

class QCheckBox;
class QLabel;
class QTimer;
class QToolButton;
class QTreeWidget;

namespace paravue
{

/// What the history knows of the values of the window.
struct PresentSettings {
    SnapshotInfo recorder; ///< model and firmware
    QString problem;       ///< why the values are not known; empty when they are
    ConfigurationValues values;
    std::function<QString(const QString &path)> caption;
    std::function<bool(const QString &path)> isSent;     ///< false for what the recorder does not take
    std::function<bool(const QString &path)> isEditable; ///< in the window
    std::function<bool(const QString &path)> isSecret;

    /// Secret now, or one of \a secrets; see secretsOf().
    bool isSecretWith(const QSet<QString> &secrets, const QString &path) const;
};

/// Lists the snapshots of a recorder and what changed after each. One selected snapshot is compared with the
/// present settings, two with each other.
class HistoryDialog : public QDialog
{
    Q_OBJECT

public:
    HistoryDialog(const SnapshotFolder &folder, PresentSettings present, QWidget *parent);

    /// The values that the user wants back; empty when the dialog was closed otherwise.
    const QList<ValueEdit> &restored() const { return m_restored; }

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void showRequested(const paravue::Snapshot &snapshot);

private:
    void createWidgets();
    void arrangeWidgets();
    void listSnapshots();
    void countNext();
    void compare();
    QList<ValueDifference> sentOnes(QList<ValueDifference> found) const;
    QList<ValueDifference> differencesToPresent(const Snapshot &snapshot) const;
    void compareWithPresent(int number);
    void compareTwo(int older, int newer);
    void noteMovedLists();
    void setValueHeadings(const QStringList &headings);
    void fill(const QList<ValueDifference> &found, const QSet<QString> &secrets);
    void updateButtons();
    QList<int> selectedNumbers() const;
    std::optional<Snapshot> read(int number);
    void restore(bool onlySelected);
    void showSelected();

    PresentSettings m_present;
    QList<KeptSnapshot> m_kept;      ///< the newest first; its rows follow that of the present settings
    int m_counted = 0;               ///< rows whose changes are counted
    std::optional<Snapshot> m_newer; ///< that was counted last; none: the present settings
    RestorePlan m_plan;             ///< of the selected snapshot, if it is compared with the present settings
    QList<ValueDifference> m_found; ///< by row
    QList<ValueEdit> m_restored;
    QTreeWidget *m_snapshots;
    QTreeWidget *m_values;
    QLabel *m_caption;
    QLabel *m_note;
    QCheckBox *m_settingsOnly;
    QToolButton *m_restore;
    QToolButton *m_restoreAll;
    QToolButton *m_show;
    QTimer *m_counter;
};

} // namespace paravue
