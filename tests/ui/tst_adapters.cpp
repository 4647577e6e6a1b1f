#include "StoreFixture.h"
#include "support/TestTable.h"
#include "ui/CWinMain.h"
#include "ui/binding/BuiltDescription.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlContext.h"
#include "ui/types/ControlTypes.h"

#include <QComboBox>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>

#include <memory>

using namespace paravue;
using namespace paravue::test;

namespace
{

/// A control of one element on a store, without a window and without a page.
struct LoneControl {
    LoneControl(OrbSetup &store, const QByteArray &item)
        : description(store), context(store, description, [](const QString &) {})
    {
        InterfaceDocument document;
        fault = document.load("<pvsetup version='1.0'>" + item + "</pvsetup>", "description");
        description.replace(document);
        const QDomElement element = document.root().firstChildElement();
        adapter = adapterOfType(element.attribute("type"));
        control = &description.table().add(element, adapter);
        widget.reset(adapter->create(context, *control, nullptr));
        description.table().attach(*control, widget.get());
        adapter->load(context, *control);
    }

    QStringList assignments()
    {
        QStringList texts;
        for (const Assignment &assignment : adapter->assignments(context, *control))
            texts << assignment.text();
        return texts;
    }

    QString fault;
    BuiltDescription description;
    ControlContext context;
    const ControlAdapter *adapter;
    Control *control;
    std::unique_ptr<QWidget> widget;
};

} // namespace

class TestAdapters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyTypeFitsTheWindow_data();
    void everyTypeFitsTheWindow();
    void carriesValues_data();
    void carriesValues();
};

void TestAdapters::everyTypeFitsTheWindow_data()
{
    QTest::addColumn<QString>("type");
    forEachControlType([](const QString &name, const ControlAdapter &) {
        QTest::addRow("%ls", qUtf16Printable(name)) << name;
    });
}

void TestAdapters::everyTypeFitsTheWindow()
{
    QFETCH(QString, type);
    StoreFixture fixture({});
    const LoneControl lone(fixture.store(), "<item type='" + type.toUtf8() + "'/>");
    const ControlAdapter &adapter = *lone.adapter;
    QVERIFY(lone.widget->metaObject()->inherits(&adapter.widgetClass()));
    QCOMPARE(adapter.tabs(*lone.control) != nullptr, adapter.traits().hasPages);
    // A state that nobody announces would be an error of every description that uses it.
    const QDomElement &element = lone.control->element;
    if (const QString state = adapter.actionState(*lone.control); !state.isEmpty())
        QVERIFY2(adapter.actionStates(element).contains(state), qPrintable(state));
    if (const QString state = adapter.callState(*lone.control); !state.isEmpty())
        QVERIFY2(adapter.callStates(element).contains(state), qPrintable(state));
}

void TestAdapters::carriesValues_data()
{
    using Use = std::function<void(QWidget &)>;
    const TestTable<QByteArray, QByteArray, Use, QStringList> row("item", "property", "use", "written");
    row("edit with two keys",
        "<item type='edit'><key>net/untitled/A/none</key><key>net/untitled/B</key></item>", "text=one",
        [](QWidget &widget) { static_cast<QLineEdit &>(widget).setText("x/y"); },
        {"net/untitled/A/x/y", "net/untitled/B/x/y"});
    row("drop-down list",
        "<item type='dropdown'><text>a</text><text>b</text><key>net/untitled/A/two</key>"
        "<key>net/untitled/A/one</key></item>",
        "currentIndex=1", [](QWidget &widget) { static_cast<QComboBox &>(widget).setCurrentIndex(0); },
        {"net/untitled/A/two"});
    row("scroll bar with its first key",
        "<item type='scroll' maxvalue='9'><key>net/untitled/N</key><key>net/untitled/A</key></item>",
        "value=7", [](QWidget &widget) { static_cast<QScrollBar &>(widget).setValue(8); },
        {"net/untitled/N/8"});
    row("list that nobody has edited", "<item type='accesslist'><key>net/untitled</key></item>",
        "columnCount=2", [](QWidget &) {}, {});
}

void TestAdapters::carriesValues()
{
    using Use = std::function<void(QWidget &)>;
    QFETCH(QByteArray, item);
    QFETCH(QByteArray, property);
    QFETCH(Use, use);
    StoreFixture fixture({{"net", "A=one\nN=7\n"}});
    LoneControl lone(fixture.store(), item);
    QCOMPARE(lone.fault, QString());
    const QList<QByteArray> shown = property.split('=');
    QCOMPARE(lone.widget->property(shown[0]).toString(), QString(shown[1]));
    use(*lone.widget);
    QTEST(lone.assignments(), "written");
}

QTEST_MAIN(TestAdapters)
#include "tst_adapters.moc"
