#include "ModalWatcher.h"
#include "OwnUserFolders.h"
#include "PseudoTranslator.h"
#include "SetupRun.h"
#include "TextInspector.h"
#include "controls/LiveView.h"
#include "entry/FinishParavueSetup.h"
#include "recorder/RecorderServer.h"
#include "snapshots/SnapshotArchive.h"
#include "snapshots/SnapshotFolder.h"
#include "support/TestTable.h"
#include "support/Waiting.h"
#include "translations/InstallTranslations.h"
#include "ui/window/FileAccessPrompt.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeWidget>

using namespace paravue;
using namespace paravue::test;

namespace
{

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// All texts of a description: the translations, and texts that are the same in every language.
QStringList textsOf(const QByteArray &description)
{
    QDomDocument document;
    document.setContent(description);
    QStringList texts;
    const QDomElement translations = document.documentElement().firstChildElement("translations");
    for (QDomElement language = translations.firstChildElement(); !language.isNull();
         language = language.nextSiblingElement()) {
        for (QDomElement text = language.firstChildElement(); !text.isNull();
             text = text.nextSiblingElement())
            texts << text.text();
    }
    for (const char *name : {"text", "tooltip", "name", "title", "column"}) {
        const QDomNodeList found = document.elementsByTagName(name);
        for (int i = 0; i < found.size(); ++i)
            texts << found.at(i).toElement().text();
    }
    texts.removeDuplicates();
    return texts;
}

/// The words in the files of a recorder besides its description.
QStringList wordsBeside(const QFileInfo &description)
{
    static const QRegularExpression word("\\p{L}{2,}");
    QStringList words;
    for (const QFileInfo &file : description.dir().entryInfoList(QDir::Files)) {
        if (file == description)
            continue;
        for (auto found = word.globalMatch(QString::fromUtf8(contentOf(file.filePath()))); found.hasNext();)
            words << found.next().captured();
    }
    words.removeDuplicates();
    return words;
}

/// The menu of a button, or null.
QMenu *menuOf(const QWidget &control)
{
    if (const auto *tool = qobject_cast<const QToolButton *>(&control))
        return tool->menu();
    const auto *button = qobject_cast<const QPushButton *>(&control);
    return button ? button->menu() : nullptr;
}

} // namespace

/// The window of the shipped model, with all dialogs of ours, and the controls of the model that has them
/// all, in other languages: every text is translated, and fits.
class TestLanguages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void everyWindow_data();
    void everyWindow();
    void everyControl_data() { everyWindow_data(); }
    void everyControl();
    void choosesALanguage();
    void followsTheLanguage();
    void countsInEveryForm();

private:
    static QString addressOf(const recorder::RecorderServer &recorder);
    void startRecorder(const QString &model);
    void open(const QString &language);
    using Visit = void (TestLanguages::*)();
    void visitAll(const QList<Visit> &visits);
    void visitPages();
    void visitMenus();
    void visitStreamDetails();
    void visitQuestions();
    void visitReview();
    void visitSave();
    void visitUnfinishedSave();
    void visitHistory();
    void visitMerge();
    void visitFileAccess();
    void visitFailures();
    void press(const QKeySequence &keys);
    void edit(const QString &text);
    ModalWatcher::Action inspecting(const QString &place, const ModalWatcher::Action &then = {});

    OwnUserFolders m_user;
    std::unique_ptr<PseudoTranslator> m_pseudo;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<recorder::RecorderServer> m_recorder;
    std::unique_ptr<OrbNetSetup> m_store;
    std::unique_ptr<CWinMain> m_window;
    TextInspector m_inspector;
};

QString TestLanguages::addressOf(const recorder::RecorderServer &recorder)
{
    return OrbNetSetup::deviceAddress("admin", "admin", "127.0.0.1", recorder.port());
}

void TestLanguages::init()
{
    startRecorder("standard");
}

void TestLanguages::startRecorder(const QString &model)
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_recorder = std::make_unique<recorder::RecorderServer>(m_folder->filePath("data"), model);
    QVERIFY2(m_recorder->listen(), qPrintable(m_recorder->errorString()));
}

void TestLanguages::cleanup()
{
    m_window.reset();
    m_store.reset();
    m_pseudo.reset();
    installTranslations({"en"});
}

void TestLanguages::press(const QKeySequence &keys)
{
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QTest::keySequence(m_window->focusWidget(), keys);
}

/// Notes what is wrong with a dialog, and closes it.
ModalWatcher::Action TestLanguages::inspecting(const QString &place, const ModalWatcher::Action &then)
{
    return [this, place, then](QWidget &dialog) {
        m_inspector.inspect(dialog, place);
        if (then)
            then(dialog);
    };
}

void TestLanguages::edit(const QString &text)
{
    for (QLineEdit *field : m_window->findChildren<QLineEdit *>()) {
        if (field->text() == m_store->value("net/untitled/HOSTNAME/")) {
            replaceText(*field, text);
            return;
        }
    }
    QFAIL("there is no field for the name");
}

void TestLanguages::visitPages()
{
    auto *pages = m_window->findChild<QTabWidget *>("tabWidget");
    const auto inspectTab = [&](QTabWidget &tabs, int tab) {
        tabs.setCurrentIndex(tab);
        QCoreApplication::processEvents();
        m_inspector.inspect(*m_window, QString("page %1, %2").arg(pages->currentIndex()).arg(tab));
    };
    for (int page = 0; page < pages->count(); ++page) {
        inspectTab(*pages, page);
        for (auto *tabs : pages->currentWidget()->findChildren<QTabWidget *>()) {
            for (int tab = 0; tab < tabs->count(); ++tab)
                inspectTab(*tabs, tab);
        }
    }
}

/// Asks every control of ours for its menu.
void TestLanguages::visitMenus()
{
    auto *tabs = m_window->findChild<QTabWidget *>("tabWidget");
    int menus = 0;
    const auto inspectMenu = [&] {
        if (QWidget *menu = QApplication::activePopupWidget()) {
            m_inspector.inspect(*menu, "menu");
            menu->close();
            ++menus;
        }
    };
    for (int page = 0; page < tabs->count(); ++page) {
        tabs->setCurrentIndex(page);
        for (QWidget *control : m_window->findChildren<QWidget *>()) {
            if (!control->isVisible())
                continue;
            if (QMenu *menu = menuOf(*control)) {
                menu->popup(control->mapToGlobal(control->rect().center()));
                inspectMenu();
            }
            if (!QByteArrayView(control->metaObject()->className()).startsWith("paravue::"))
                continue;
            QContextMenuEvent event(QContextMenuEvent::Keyboard, control->rect().center(),
                                    control->mapToGlobal(control->rect().center()));
            QCoreApplication::sendEvent(control, &event);
            inspectMenu();
        }
    }
    QVERIFY(menus > 2);
}

void TestLanguages::visitStreamDetails()
{
    auto *tabs = m_window->findChild<QTabWidget *>("tabWidget");
    LiveView *live = m_window->findChild<LiveView *>();
    QVERIFY(live);
    for (int page = 0; page < tabs->count() && !live->isVisible(); ++page)
        tabs->setCurrentIndex(page);
    AWAIT_VERIFY(live->isVisible());
    live->setFocus();
    QTest::keyClick(live, Qt::Key_I);
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->inherits("paravue::StreamDetails")) {
            m_inspector.inspect(*window, "stream details");
            window->close();
            return;
        }
    }
    QFAIL("there are no details");
}

/// The dangerous functions of the shipped model have dialogs of its description.
void TestLanguages::visitQuestions()
{
    const QStringList functions{"format_disk1", "clear_email_disk", "soft_reset", "soft_reboot"};
    QByteArray page = "<pvsetup version='1.0'><tabwidget><tab><item type='gridlayout'>"
                      "<item type='setup'><device/></item>";
    for (const QString &function : functions)
        page += "<item type='pushbutton'><action type='call' slot='callSetup' param='" + function.toLatin1() +
                "'>device</action></item>";
    page += "</item></tab></tabwidget></pvsetup>";
    recorder::RecorderServer recorder(m_folder->filePath("questions"), "standard");
    QFile description(recorder.filePath("interface"));
    QVERIFY(description.open(QIODevice::WriteOnly) && description.write(page) > 0);
    description.close();
    QVERIFY(recorder.listen());
    const Session session(addressOf(recorder), {.confirmsDangerousFunctions = true});
    QVERIFY(session.isFine());
    session.window->show();
    const ModalWatcher question(inspecting("question"));
    for (QPushButton *button :
         session.window->findChild<QTabWidget *>("tabWidget")->findChildren<QPushButton *>())
        button->click();
    QCOMPARE(question.count(), functions.size());
}

void TestLanguages::visitReview()
{
    edit("gate");
    {
        const ModalWatcher find(inspecting("find"), "paravue::FindDialog");
        press(QKeySequence::Find);
        QVERIFY(find.hasSeen());
    }
    {
        const ModalWatcher review(inspecting("review"), "paravue::ReviewDialog");
        press(Qt::CTRL | Qt::Key_R);
        QVERIFY(review.hasSeen());
    }
    const ModalWatcher closing(inspecting("closing", [](QWidget &box) {
        static_cast<QMessageBox &>(box).button(QMessageBox::Cancel)->click();
    }));
    m_window->close();
    QVERIFY(closing.hasSeen());
    QVERIFY(m_window->isVisible());
}

void TestLanguages::visitSave()
{
    QFile net(m_recorder->filePath("net"));
    QVERIFY(net.open(QIODevice::ReadOnly));
    const QByteArray theirs = net.readAll().replace("9.9.9.9", "8.8.8.8");
    net.close();
    QVERIFY(net.open(QIODevice::WriteOnly) && net.write(theirs) > 0);
    net.close();
    const ModalWatcher review(
        inspecting("review of a save", [](QWidget &dialog) { QTest::keyClick(&dialog, Qt::Key_Return); }),
        "paravue::ReviewDialog");
    const ModalWatcher foreign(
        inspecting("foreign changes", [](QWidget &dialog) { QTest::keyClick(&dialog, Qt::Key_Return); }),
        "paravue::ForeignChangesDialog");
    const ModalWatcher sending(
        [this](QWidget &dialog) {
            const QString close = QCoreApplication::translate("paravue::SendingDialog", "Close");
            waitUntil(
                [&] {
                    if (dialog.isVisible())
                        m_inspector.inspect(dialog, "sending");
                    auto *button = buttonWithText<QPushButton>(dialog, close);
                    if (button && button->isVisible())
                        button->click();
                    return !dialog.isVisible();
                },
                20'000);
        },
        "paravue::SendingDialog");
    m_window->findChild<QPushButton *>("buttonOK")->click();
    AWAIT_VERIFY_WITHIN(review.hasSeen() && foreign.hasSeen() && sending.hasSeen(), 20'000);
    AWAIT_VERIFY(m_store->linkStatus().state == LinkStatus::State::Idle);
}

/// A save that goes on behind the window: the recorder falls silent when the user is asked whether to stop.
void TestLanguages::visitUnfinishedSave()
{
    OrbNetSetup store(addressOf(*m_recorder));
    QSignalSpy loaded(&store, &OrbSetup::loadDone);
    store.load();
    QVERIFY(loaded.wait());
    const auto hasArrived = [&store] { return !store.saveStatus().arrived.isEmpty(); };
    const ModalWatcher progress(
        inspecting("progress of a save", [&](QWidget &) { QVERIFY(waitUntil(hasArrived)); }),
        "paravue::SaveProgressDialog");
    const ModalWatcher questions(
        inspecting("unfinished save", [this](QWidget &) { m_recorder->setReplyDelay(60'000); }));
    m_recorder->setReplyDelay(120);
    store.store();
    QCOMPARE(FinishParavueSetup(&store, {true, 800}).result, SaveOutcome::Result::Failed);
    m_recorder->setReplyDelay(0);
    QVERIFY(progress.hasSeen());
    QCOMPARE(questions.count(), 2);
    QVERIFY2(questions.texts().constLast().count("\n") == 3, qPrintable(questions.texts().constLast()));
}

void TestLanguages::visitHistory()
{
    m_window->show();
    const ModalWatcher history(inspecting("history"), "paravue::HistoryDialog");
    press(Qt::CTRL | Qt::Key_H);
    QVERIFY(history.hasSeen());
}

/// Edits in the last snapshot, one of them of a value that has changed since.
void TestLanguages::visitMerge()
{
    const QString folder = m_folder->filePath("kept");
    const auto kept = SnapshotFolder(folder, recorderOfAddress(m_store->address())).list();
    QVERIFY(!kept.isEmpty());
    Snapshot snapshot = snapshotarchive::read(kept.constFirst().path).snapshot;
    snapshot.edited["net"] =
        QByteArray(snapshot.files["net"]).replace("paravue-r4", "yard").replace("554", "555");
    const QString edited = m_folder->filePath("edited.zip");
    QCOMPARE(snapshotarchive::write(snapshot, edited), QString());
    const ModalWatcher merge(inspecting("merge"), "paravue::MergeDialog");
    const Session session(addressOf(*m_recorder),
                          {.tracksChanges = true, .snapshots = {.folder = folder}, .offeredEdits = edited});
    AWAIT_VERIFY(merge.hasSeen());
}

void TestLanguages::visitFileAccess()
{
    for (const FileUse use : {FileUse::Read, FileUse::Write}) {
        const ModalWatcher question(inspecting("file access"));
        askForFileAccess(m_window.get(), m_folder->filePath("picture.png"), use);
        QVERIFY(question.hasSeen());
    }
}

void TestLanguages::visitFailures()
{
    {
        const ModalWatcher login(inspecting("login"), "cDlg");
        const ModalWatcher message(inspecting("message"));
        OrbNetSetup store(OrbNetSetup::deviceAddress("admin", "wrong", "127.0.0.1", m_recorder->port()));
        CWinMain window(&store, nullptr);
        window.show();
        m_inspector.inspect(window, "loading");
        AWAIT_VERIFY(login.hasSeen() && message.hasSeen());
        m_inspector.inspect(window, "not loaded");
    }
    const ModalWatcher message(inspecting("no recorder"));
    m_recorder->close();
    press(Qt::Key_F5);
    AWAIT_VERIFY(message.hasSeen());
    m_inspector.inspect(*m_window, "no recorder");
}

void TestLanguages::everyWindow_data()
{
    const TestTable<QString> row("language");
    row("longer texts in brackets", "");
    row("Russian", "ru");
}

/// Shows the window of the recorder.
void TestLanguages::open(const QString &language)
{
    if (language.isEmpty()) {
        m_pseudo = std::make_unique<PseudoTranslator>();
        QVERIFY(m_pseudo->load(PSEUDO_TRANSLATION));
        QCoreApplication::installTranslator(m_pseudo.get());
        const QString description = m_recorder->filePath("interface");
        m_inspector =
            TextInspector(textsOf(contentOf(description)),
                          wordsBeside(QFileInfo(description)) + QStringList{"PNG", "JPEG", "png", "jpg"});
    } else {
        QCOMPARE(installTranslations({language}), language);
        m_inspector = TextInspector();
    }
    m_store = std::make_unique<OrbNetSetup>(addressOf(*m_recorder));
    if (!language.isEmpty())
        connect(m_store.get(), &OrbSetup::loadDone, m_store.get(),
                [this, language] { m_store->setValue("streams/common/language/" + language); });
    m_window = std::make_unique<CWinMain>(m_store.get(), nullptr, CWinMain::Placement::Window,
                                          WindowOptions{.offersRefresh = true,
                                                        .tracksChanges = true,
                                                        .asksBeforeClosing = true,
                                                        .reviewBeforeSending = true,
                                                        .comparesBeforeSending = true,
                                                        .confirmsSaves = true,
                                                        .confirmsDangerousFunctions = true,
                                                        .snapshots = {.folder = m_folder->filePath("kept")}});
    m_window->show();
    m_inspector.inspect(*m_window, "loading");
    AWAIT_VERIFY_WITHIN(m_window->isBuilt(), 20'000);
}

void TestLanguages::visitAll(const QList<Visit> &visits)
{
    for (const Visit visit : visits) {
        if (QTest::currentTestFailed())
            return;
        (this->*visit)();
    }
    for (const QString &fault : m_inspector.faults())
        qWarning("%s", qPrintable(fault));
    QCOMPARE(m_inspector.faults().size(), 0);
}

void TestLanguages::everyWindow()
{
    QFETCH(QString, language);
    if (!QFile::exists(PSEUDO_TRANSLATION))
        QSKIP("there was no lrelease or no python3");
    open(language);
    visitAll({&TestLanguages::visitPages, &TestLanguages::visitMenus, &TestLanguages::visitStreamDetails,
              &TestLanguages::visitQuestions, &TestLanguages::visitReview, &TestLanguages::visitSave,
              &TestLanguages::visitUnfinishedSave, &TestLanguages::visitHistory, &TestLanguages::visitMerge,
              &TestLanguages::visitFileAccess, &TestLanguages::visitFailures});
    QVERIFY(m_inspector.count() > 500);
}

void TestLanguages::everyControl()
{
    QFETCH(QString, language);
    if (!QFile::exists(PSEUDO_TRANSLATION))
        QSKIP("there was no lrelease or no python3");
    startRecorder("everything");
    open(language);
    visitAll({&TestLanguages::visitPages, &TestLanguages::visitMenus});
    QVERIFY(m_inspector.count() > 500);
}

void TestLanguages::choosesALanguage()
{
    QCOMPARE(installTranslations({"xx", "ru_RU", "en"}), "ru");
    QCOMPARE(QCoreApplication::translate("paravue::StatusLine", "Refresh"), "Обновить");
    QCOMPARE(QLocale().toString(1.5), "1,5");
    QCOMPARE(installTranslations({"xx"}), "en");
    QCOMPARE(QCoreApplication::translate("paravue::StatusLine", "Refresh"), "Refresh");
    QCOMPARE(QLocale().toString(1.5), "1.5");
}

void TestLanguages::followsTheLanguage()
{
    Session session(addressOf(*m_recorder), {.offersRefresh = true, .tracksChanges = true});
    QVERIFY(session.isFine());
    replaceText(*session.field("paravue-r4"), "gate");
    session.window->show();
    auto *refresh = session.window->findChild<QToolButton *>("statusRefresh");
    auto *changes = session.window->findChild<QToolButton *>("changes");
    QCOMPARE(changes->text(), "1 change");
    installTranslations({"ru"});
    AWAIT_COMPARE(refresh->text(), "Обновить");
    QCOMPARE(changes->text(), "1 изменение");
    QCOMPARE(session.window->locale().language(), QLocale::Russian);
    installTranslations({"en"});
    AWAIT_COMPARE(refresh->text(), "Refresh");
}

void TestLanguages::countsInEveryForm()
{
    installTranslations({"ru"});
    const auto changes = [](int count) {
        return QCoreApplication::translate("paravue::TabBadges", "%n changes", nullptr, count);
    };
    QCOMPARE(changes(2), "2 изменения");
    QCOMPARE(changes(5), "5 изменений");
    QCOMPARE(changes(21), "21 изменение");
}

QTEST_MAIN(TestLanguages)
#include "tst_languages.moc"
