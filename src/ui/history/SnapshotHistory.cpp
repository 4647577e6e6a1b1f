#include "ui/history/SnapshotHistory.h"

#include "controls/OrbDlgQuestion.h"
#include "controls/OwnTexts.h"
#include "snapshots/SnapshotArchive.h"
#include "snapshots/SnapshotFolder.h"
#include "snapshots/SnapshotStore.h"
#include "store/ConfigAddress.h"
#include "ui/history/HistoryDialog.h"
#include "ui/history/MergeDialog.h"
#include "ui/review/ChangeTracking.h"

#include <QFile>
#include <QLoggingCategory>
#include <QShortcut>
#include <QToolButton>

#include <algorithm>
#include <utility>

namespace paravue
{

namespace
{

Q_LOGGING_CATEGORY(historyLog, "paravue.history", QtWarningMsg)
const QString SuffixOfPristine = QStringLiteral(".original");

} // namespace

SnapshotHistory::SnapshotHistory(QWidget &window, OrbSetup &store, ChangeTracking &changes,
                                 const SnapshotOptions &options, const NewerFile &newerFile,
                                 const std::function<void(QDialog &)> &runDialog)
    : m_window(window), m_store(store), m_changes(changes), m_options(options), m_newerFile(newerFile),
      m_runDialog(runDialog), m_button(new QToolButton(&window))
{
    m_button->setObjectName(QStringLiteral("history"));
    keepTranslated(*m_button, [this] {
        m_button->setText(tr("History"));
        m_button->setToolTip(tr("Compare with what the recorder had earlier, and restore it (Ctrl+H)"));
    });
    m_button->setAutoRaise(true);
    m_button->setFocusPolicy(Qt::TabFocus);
    m_button->setVisible(!options.folder.isEmpty());
    connect(m_button, &QToolButton::clicked, this, &SnapshotHistory::requested);
    if (!options.folder.isEmpty())
        connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_H), &window), &QShortcut::activated, this,
                &SnapshotHistory::requested);
}

QString SnapshotHistory::recorder() const
{
    return m_options.recorder.isEmpty() ? recorderOfAddress(m_store->address()) : m_options.recorder;
}

FileContents SnapshotHistory::fetchedFiles(QString &problem) const
{
    FileContents files;
    for (const QString &name : m_store->fetchedFiles()) {
        if (const auto newer = m_newerFile(name)) {
            files.insert(name, *newer);
            continue;
        }
        QFile file(m_store->filePath(name + SuffixOfPristine));
        if (file.open(QIODevice::ReadOnly))
            files.insert(name, file.readAll());
        if (file.error() != QFileDevice::NoError) {
            problem = tr("The copy of \"%1\" cannot be read: %2").arg(name, file.errorString());
            return {};
        }
    }
    return files;
}

bool SnapshotHistory::keep(const std::function<void(const std::function<void()> &)> &ask)
{
    if (m_options.folder.isEmpty())
        return true;
    QString problem;
    const FileContents files = fetchedFiles(problem);
    if (problem.isEmpty()) {
        SnapshotFolder folder(m_options.folder, recorder());
        const auto secrets =
            m_options.keepsSecrets ? SnapshotFolder::Secrets::Kept : SnapshotFolder::Secrets::LeftOut;
        problem = folder.keep(files, secrets, m_options.count).problem;
    }
    // A time task may try it every second.
    if (std::exchange(m_problem, problem) != problem && !problem.isEmpty())
        qCWarning(historyLog) << "no snapshot before a save:" << problem;
    if (problem.isEmpty())
        return true;
    bool isAllowed = false;
    ask([&] {
        isAllowed =
            OrbDlgQuestion::DoExplained(
                &m_window, QMessageBox::Warning, m_window.windowTitle(),
                tr("The present settings of the recorder could not be kept as a snapshot. Send all the "
                   "same?"),
                problem, QMessageBox::Yes | QMessageBox::No, QMessageBox::No, nullptr,
                {{QMessageBox::Yes, tr("Send")}, {QMessageBox::No, tr("Do not send")}}) == QMessageBox::Yes;
    });
    return isAllowed;
}

bool SnapshotHistory::mayLeaveOut(QWidget &window, OrbSetup &store,
                                  const std::function<QString(const QString &path)> &caption,
                                  const std::function<void(const std::function<void()> &)> &ask)
{
    auto *snapshot = qobject_cast<SnapshotStore *>(&store);
    if (snapshot)
        snapshot->setCaption(caption);
    const QString leftOut = snapshot ? snapshot->editsLeftOut() : QString();
    if (leftOut.isEmpty())
        return true;
    auto answer = QMessageBox::NoButton; // behind a closed window nobody is asked
    ask([&] {
        answer = OrbDlgQuestion::DoExplained(
            &window, QMessageBox::Warning, window.windowTitle(),
            tr("Not all changes can be kept in the snapshot. Save the others?"), leftOut,
            QMessageBox::Save | QMessageBox::Cancel, QMessageBox::Cancel, nullptr,
            {{QMessageBox::Save, tr("Save")}, {QMessageBox::Cancel, tr("Go on editing")}});
    });
    if (answer == QMessageBox::Save)
        snapshot->setKnownLeftOut(leftOut);
    return answer == QMessageBox::Save || answer == QMessageBox::NoButton;
}

PresentSettings SnapshotHistory::present() const
{
    PresentSettings present;
    const FileContents files = fetchedFiles(present.problem);
    describeRecorder(present.recorder, files);
    present.recorder.recorder = recorder();
    // The keys of the fetched files and of what was changed since; their values are those of the store.
    present.values = valuesOf(files);
    for (const Change &change : m_changes.list().all()) {
        const ConfigAddress address(change.path);
        present.values[address.file().toString()].set(address.entry().toString(), {});
    }
    for (auto file = present.values.begin(); file != present.values.end(); ++file) {
        const QStringList entries = file->all().keys();
        for (const QString &entry : entries) {
            const QString path = file.key() + u'/' + entry;
            if (!ConfigAddress(path).hasRest()) // no address names a key with "/", so it has no edits
                file->set(entry, m_store->storedValue(path).value_or(QString()));
        }
    }
    present.caption = [this](const QString &path) { return m_changes.caption(path); };
    present.isSent = [this](const QString &path) { return isSent(path); };
    present.isEditable = [this](const QString &path) { return m_changes.isEditable(path); };
    present.isSecret = [this](const QString &path) { return m_changes.list().isSecret(path); };
    return present;
}

/// A save sends the file of this value.
bool SnapshotHistory::isSent(const QString &path) const
{
    const QString file = path.section(u'/', 0, 0);
    return m_store->fileExists(file) && ChangeList::isSent(*m_store, file);
}

void SnapshotHistory::apply(QList<ValueEdit> edits)
{
    edits.removeIf([this](const ValueEdit &edit) { return !isSent(edit.path); });
    if (!edits.isEmpty())
        m_changes.apply(edits);
}

void SnapshotHistory::show()
{
    const SnapshotFolder folder(m_options.folder, recorder());
    HistoryDialog dialog(folder, present(), &m_window);
    connect(&dialog, &HistoryDialog::showRequested, this, [this](const Snapshot &snapshot) {
        SnapshotStore store(snapshot);
        Q_EMIT showRequested(store);
    });
    m_runDialog(dialog);
    apply(dialog.restored());
}

QString SnapshotHistory::offerEdits(const QString &path)
{
    const auto [snapshot, problem] = snapshotarchive::read(path);
    if (!problem.isEmpty())
        return problem;
    const PresentSettings present = this->present();
    ConfigurationValues recorder = present.values;
    recorder.removeIf([this](auto file) { return !isSent(file.key()); });
    const QList<MergedEdit> edits = mergeEdits(snapshot, recorder);
    if (edits.isEmpty())
        return tr("The snapshot %1 holds no edits.").arg(path);
    if (!present.problem.isEmpty())
        return present.problem;
    MergeDialog dialog(snapshot, edits, present, &m_window);
    m_runDialog(dialog);
    if (dialog.result() == QDialog::Accepted)
        apply(dialog.chosen());
    return {};
}

} // namespace paravue
