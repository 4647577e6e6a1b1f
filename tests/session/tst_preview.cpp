#include "ModalWatcher.h"
#include "PseudoTranslator.h"
#include "TextInspector.h"
#include "entry/DoParavueSetup.h"
#include "setup/FindingsView.h"
#include "setup/PreviewFiles.h"
#include "setup/PreviewWatch.h"
#include "store/OrbSetup.h"
#include "support/TestTable.h"
#include "support/Waiting.h"
#include "translations/InstallTranslations.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QSaveFile>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>

using namespace paravue;

namespace
{

/// Two pages and a dialog: a label, and a field on a page within a page; \a more stands beside the field.
QByteArray description(const QByteArray &label, const QByteArray &more = {})
{
    return "<pvsetup>\n<window><main/></window>\n"
           "<buttonOK><action type='call' slot='accept'>main</action></buttonOK>\n"
           "<tabwidget><tabposition>Up</tabposition><tab><name>First</name><item type='gridlayout'>"
           "<item type='label'><text>" +
           label +
           "</text></item></item></tab>\n<tab><name>Second</name><item type='gridlayout'><item "
           "type='tabwidget'>"
           "<tab><name>A</name></tab><tab><name>B</name><item type='gridlayout'>\n"
           "<item type='edit' colour='red'><key>general/a/b</key></item>" +
           more +
           "</item></tab></item></item></tab></tabwidget>\n<ask><asked/><item type='gridlayout'>"
           "<item type='checkbox'/><item type='edit' row='1' colour='red'/></item></ask></pvsetup>";
}

} // namespace

/// The window of a preview while its description is being written.
class TestPreview : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void followsTheFile();
    void keepsTheWindowOfTheLastDocument();
    void jumpsToControls();
    void findingsFit_data();
    void findingsFit();
    void staysInItsFolder();

private:
    /// Runs a preview; \a user acts while its window is open.
    void preview(const std::function<void()> &user);
    bool write(const QByteArray &text) const;
    QStringList findings() const;
    bool shows(const QString &text) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    OrbSetup *m_store = nullptr;
    QWidget *m_window = nullptr;
};

void TestPreview::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(write(description("One")));
}

void TestPreview::preview(const std::function<void()> &user)
{
    PreviewFiles files;
    OrbSetup store("described.xml");
    const QString path = m_folder->filePath("described.xml");
    QCOMPARE(files.copyTo(store, path, {}), QString());
    const PreviewWatch watch(store, files, path, QString());
    bool hasActed = false;
    QTimer closing;
    connect(&closing, &QTimer::timeout, this, [] {
        if (QWidget *top = QApplication::activeModalWidget())
            top->close();
    });
    QTimer::singleShot(0, this, [&] {
        m_store = &store;
        m_window = QApplication::activeModalWidget();
        hasActed = m_window && test::waitUntil([this] { return findings().size() == 4; });
        if (hasActed)
            user();
        closing.start(50);
    });
    DoParavueSetup(&store);
    QVERIFY(hasActed);
}

/// As most editors do: another file takes its place.
bool TestPreview::write(const QByteArray &text) const
{
    QSaveFile file(m_folder->filePath("described.xml"));
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
}

QStringList TestPreview::findings() const
{
    const auto *view = m_window->findChild<FindingsView *>();
    QStringList lines;
    for (int row = 0; view && view->isVisible() && row < view->count(); ++row)
        lines << view->item(row)->text();
    return lines;
}

bool TestPreview::shows(const QString &text) const
{
    for (const QLabel *label : m_window->findChildren<QLabel *>()) {
        if (label->text() == text)
            return true;
    }
    return false;
}

void TestPreview::followsTheFile()
{
    preview([this] {
        QVERIFY(shows("One"));
        m_store->setValue("general/a/b/typed");
        QVERIFY(write(description("Two", "<item type='edit' row='1' validator='['/>")));
        QVERIFY(test::waitUntil([this] { return shows("Two"); }));
        QVERIFY(test::waitUntil([this] { return findings().size() == 5; }));
        QVERIFY2(findings().at(2).endsWith("missing terminating ] for character class"),
                 qPrintable(findings().at(2)));
        QCOMPARE(m_window->findChild<QLineEdit *>()->text(), "typed");
        // Once more, as the watched file is another one now.
        QVERIFY(write(description("Three")));
        QVERIFY(test::waitUntil([this] { return shows("Three"); }));
        QVERIFY(test::waitUntil([this] { return findings().size() == 4; }));
    });
}

void TestPreview::keepsTheWindowOfTheLastDocument()
{
    preview([this] {
        QVERIFY(write(description("Two").chopped(3)));
        QVERIFY(test::waitUntil([this] { return findings().size() == 1; }));
        QVERIFY2(findings().at(0).startsWith("7:"), qPrintable(findings().at(0)));
        QVERIFY(shows("One"));
        QVERIFY(write(description("Two")));
        QVERIFY(test::waitUntil([this] { return shows("Two"); }));
    });
}

void TestPreview::jumpsToControls()
{
    preview([this] {
        auto *view = m_window->findChild<FindingsView *>();
        auto *pages = m_window->findChild<QTabWidget *>("tabWidget");
        const auto *field = m_window->findChild<QLineEdit *>();
        QCOMPARE(pages->currentIndex(), 0);
        QVERIFY(view->item(1)->text().contains("colour"));
        view->setCurrentRow(1);
        QTest::keyClick(view, Qt::Key_Return);
        QCOMPARE(pages->currentIndex(), 1);
        QVERIFY(field->isVisible());
        QCOMPARE(m_window->focusWidget(), field);
        // What is about no control of the pages leads nowhere.
        pages->setCurrentIndex(0);
        QVERIFY(view->item(0)->text().contains("Unknown word"));
        view->setCurrentRow(0);
        QTest::keyClick(view, Qt::Key_Return);
        QCOMPARE(pages->currentIndex(), 0);
        // A control of a dialog.
        QWidget *focus = nullptr;
        const test::ModalWatcher dialogs([&focus](QWidget &dialog) { focus = dialog.focusWidget(); },
                                         "QDialog");
        view->setCurrentRow(3);
        QVERIFY(view->item(3)->text().contains("colour"));
        QTest::keyClick(view, Qt::Key_Return);
        QCOMPARE(dialogs.count(), 1);
        QVERIFY(qobject_cast<QLineEdit *>(focus));
    });
}

void TestPreview::findingsFit_data()
{
    const test::TestTable<QString> row("language");
    row("longer texts in brackets", "");
    row("Russian", "ru");
}

void TestPreview::findingsFit()
{
    QFETCH(QString, language);
    if (!QFile::exists(PSEUDO_TRANSLATION))
        QSKIP("there was no lrelease or no python3");
    test::PseudoTranslator pseudo;
    test::TextInspector inspector;
    if (language.isEmpty()) {
        QVERIFY(pseudo.load(PSEUDO_TRANSLATION));
        QCoreApplication::installTranslator(&pseudo);
        inspector = test::TextInspector({}, {"described", "xml"});
    } else {
        QCOMPARE(installTranslations({language}), language);
    }
    preview([&] { inspector.inspect(*m_window->findChild<FindingsView *>(), "findings"); });
    installTranslations({"en"});
    QVERIFY(inspector.count() > 8);
    QCOMPARE(inspector.faults(), QStringList());
}

/// Windows would take these names out of the folder, or to a device.
void TestPreview::staysInItsFolder()
{
    QVERIFY(write("<pvsetup><di><difile name='interface'/><difile name='..\\..\\above'/><difile "
                  "name='C:net'/><difile name='nul'/><difile name='lens'/></di></pvsetup>"));
    PreviewFiles files;
    OrbSetup store("described.xml");
    QCOMPARE(files.copyTo(store, m_folder->filePath("described.xml"), m_folder->path()), QString());
    QVERIFY(store.fileExists("lens"));
    for (const char *name : {"..\\..\\above", "C:net", "nul"})
        QVERIFY2(!store.fileExists(name), name);
}

QTEST_MAIN(TestPreview)
#include "tst_preview.moc"
