#pragma once

#include "FaultTest.h"
#include "ModalWatcher.h"
#include "changes/FileValues.h"
#include "device/login/Credentials.h"
#include "store/ExchangeQueue.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QToolButton>
#include <QTreeWidget>

namespace paravue::test
{

/// Of few files, so that each of the many saves is short.
inline const char SavedPage[] = R"(<pvsetup version="1.0">
  <di>
    <difile name="interface" get_command="GET SETUP"/>
    <difile name="streams" get_command="GET CONFIG" put_command="PUT CONFIG"/>
    <difile name="net" get_command="GET NET CONFIG" put_command="PUT NET CONFIG" type="sectionless"/>
    <difile name="soft" get_command="GET SOFT CONFIG" type="sectionless"/>
    <difile name="time" get_command="GET TIME CONFIG" put_command="PUT TIME CONFIG" type="sectionless"/>
  </di>
  <window><self/></window>
  <buttonOK>
    <action type="call" slot="callSetup" param="save_settings">device</action>
    <action type="call" slot="accept">self</action>
  </buttonOK>
  <tabwidget><tab><name>Page</name>
    <item type="gridlayout">
      <item type="setup"><device/></item>
      <item type="label" row="1"><text>Host</text></item>
      <item type="edit" row="1" column="1"><key>net/untitled/HOSTNAME</key></item>
      <item type="label" row="2"><text>Place</text></item>
      <item type="edit" row="2" column="1"><key>net/untitled/PLACE</key></item>
      <item type="label" row="3"><text>Key</text></item>
      <item type="edit" row="3" column="1"><key>net/untitled/WIFI_KEY</key></item>
      <item type="label" row="4"><text>Name</text></item>
      <item type="edit" row="4" column="1" required="yes"><key>streams/common/name</key></item>
      <item type="list" row="5" column="1">
        <column>Event</column>
        <column_source>net/untitled/EVENT</column_source>
        <row_count>net/untitled/EVENTS</row_count>
      </item>
    </item>
  </tab></tabwidget>
</pvsetup>)";

inline const QString Name = "Warehouse recorder";
inline const QByteArray Net = "HOSTNAME=old\nPLACE=Gate\nWIFI_KEY=secret\nUPTIME=17\n";

/// Every row of \a list, its columns joined by "|".
inline QStringList rows(const QTreeWidget &list)
{
    QStringList texts;
    for (int i = 0; i < list.topLevelItemCount(); ++i) {
        QStringList columns;
        for (int column = 0; column < list.columnCount(); ++column)
            columns << list.topLevelItem(i)->text(column);
        texts << columns.join('|');
    }
    return texts;
}

class KnownLogin : public CredentialsSource
{
public:
    explicit KnownLogin(const QByteArray &password) : m_password(password) {}
    bool ask(Credentials &record) override
    {
        record.login = "admin";
        record.password = m_password;
        return true;
    }
    void save(const Credentials &) override {}

private:
    QByteArray m_password;
};

/// A window whose saves are compared and confirmed.
struct Sending {
    explicit Sending(const QString &address, bool compares = true, bool isReviewed = false,
                     const QString &snapshots = {}, WindowOptions options = {})
        : store(address)
    {
        QSignalSpy loaded(&store, &OrbSetup::loadDone);
        options.tracksChanges = true;
        options.comparesBeforeSending = compares;
        options.confirmsSaves = true;
        options.reviewBeforeSending = isReviewed;
        options.snapshots.folder = snapshots;
        window = std::make_unique<CWinMain>(&store, nullptr, CWinMain::Placement::Window, options);
        isLoaded = loaded.wait(20'000) && waitUntil([this] { return isIdle(); });
    }
    bool isIdle() const { return store.linkStatus().state == LinkStatus::State::Idle; }
    void type(const QString &old, const QString &text) const
    {
        for (QLineEdit *edit : window->findChildren<QLineEdit *>()) {
            if (edit->text() == old) {
                edit->setFocus();
                replaceText(*edit, text);
            }
        }
    }
    void pressOk() const { buttonWithText<QPushButton>(*window, "OK")->click(); }
    /// Empty without any.
    QString changes() const
    {
        const auto *button = window->findChild<QToolButton *>("changes");
        return button->isHidden() ? QString() : button->text();
    }

    OrbNetSetup store;
    std::unique_ptr<CWinMain> window;
    bool isLoaded = false;
};

/// Drives the dialog of a save: waits for each of the states that the script names, notes what it shows, and
/// presses the button that the script has for it.
class SavePilot
{
public:
    struct Step {
        QString headline; ///< its beginning
        QString button;
        std::function<void()> before = {};
    };
    explicit SavePilot(const QList<Step> &script)
        : m_script(script), m_watcher([this](QWidget &dialog) { drive(dialog); }, "paravue::SendingDialog")
    {
    }

    QStringList files;  ///< of the last step
    QStringList values; ///< that are kept otherwise
    QString headline;
    QString described; ///< what a screen reader hears of the widget with the focus
    bool isAtItsEnd() const { return m_next == m_script.size(); }

private:
    void drive(QWidget &dialog)
    {
        const auto lists = dialog.findChildren<QTreeWidget *>();
        // The one of comparing before a save goes by itself.
        while (m_next < m_script.size()) {
            const Step &step = m_script.at(m_next);
            const bool isReached = waitUntil(
                [&] { return !dialog.isVisible() || headlineOf(dialog).startsWith(step.headline); }, 10'000);
            headline = headlineOf(dialog);
            if (!isReached || !dialog.isVisible())
                return;
            files = rows(*lists.at(0));
            values = rows(*lists.at(1));
            described = dialog.focusWidget() ? dialog.focusWidget()->accessibleDescription() : QString();
            ++m_next;
            if (step.before)
                step.before();
            buttonWithText<QPushButton>(dialog, step.button)->click();
        }
        waitUntil([&] { return !dialog.isVisible(); });
    }
    static QString headlineOf(const QWidget &dialog)
    {
        QStringList lines;
        for (const QLabel *label : dialog.findChildren<QLabel *>()) {
            if (label->wordWrap())
                lines << label->text();
        }
        return lines.join(' ');
    }

    const QList<Step> m_script;
    qsizetype m_next = 0;
    ModalWatcher m_watcher;
};

using Steps = QList<SavePilot::Step>;

/// Base of tests with saves that are compared with the recorder before and afterwards.
class CheckedSaveTest : public FaultTest
{
protected:
    /// A new recorder with SavedPage and Net.
    void startSaving();
    /// What the recorder has.
    QByteArray net() const;
};

inline void CheckedSaveTest::startSaving()
{
    startRecorder();
    setFile("interface", SavedPage);
    setFile("net", Net);
}

inline QByteArray CheckedSaveTest::net() const
{
    QFile file(m_recorder->filePath("net"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().replace("\r\n", "\n") : QByteArray();
}

/// Presses Enter where the focus of \a dialog is, as often as a held key repeats it.
inline void holdEnter(QWidget &dialog)
{
    for (int i = 0; i < 3; ++i) {
        QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
        QCoreApplication::sendEvent(dialog.focusWidget(), &repeated);
    }
}

/// Lets the recorder's changes of somebody else stand.
class ForeignChangesAccepted
{
public:
    bool wereShown() const { return m_watcher.count() > 0; }

private:
    const ModalWatcher m_watcher{[](QWidget &dialog) { static_cast<QDialog &>(dialog).accept(); },
                                 "paravue::ForeignChangesDialog"};
};

} // namespace paravue::test
