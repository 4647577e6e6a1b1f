#include "ui/binding/ControlTable.h"
#include "ui/description/InterfaceDocument.h"

#include <QTest>
#include <QWidget>

using namespace paravue;

class TestControlTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void decoratesElements();
    void trustsItsOwnDecorationsOnly();
    void removesTheDecorationsOfOneDialog();
    void forgetsDependants();

private:
    QString tags(const QDomElement &element) const;

    InterfaceDocument m_document;
};

void TestControlTable::init()
{
    QCOMPARE(
        m_document.load(
            "<pvsetup><a><key>k</key></a><b><controlWidget address='0' id='link0'/></b></pvsetup>", "here"),
        QString());
}

QString TestControlTable::tags(const QDomElement &element) const
{
    QStringList names;
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        names << child.tagName() + child.attribute("id");
    return names.join(u' ');
}

void TestControlTable::decoratesElements()
{
    ControlTable table(m_document);
    QWidget widget;
    const QDomElement element = m_document.first("a");
    Control &control = table.add(element, nullptr);
    table.attach(control, &widget);
    QCOMPARE(widget.accessibleName(), "link0");
    QCOMPARE(tags(element), "key link0 controlWidgetlink0");
    QCOMPARE(table.of(element), &control);
    QCOMPARE(table.of(&widget), &control);
    table.remove({control.number});
    QCOMPARE(tags(element), "key");
    QVERIFY(!table.of(element));
    QVERIFY(!table.of(&widget));
    QCOMPARE(table.add(element, nullptr).name, "link1"); // a name is never used twice
}

void TestControlTable::trustsItsOwnDecorationsOnly()
{
    ControlTable table(m_document);
    QWidget widget;
    table.attach(table.add(m_document.first("a"), nullptr), &widget);
    QVERIFY(!table.of(m_document.first("b")));
    QWidget impostor;
    impostor.setAccessibleName("link0");
    QVERIFY(!table.of(&impostor));
}

void TestControlTable::removesTheDecorationsOfOneDialog()
{
    // The same element is shown by a page and by a dialog; either may go first.
    for (const bool dialogFirst : {true, false}) {
        init();
        ControlTable table(m_document);
        const QDomElement element = m_document.first("a");
        QWidget page;
        QWidget dialog;
        Control &onPage = table.add(element, nullptr);
        table.attach(onPage, &page);
        Control &inDialog = table.add(element, nullptr);
        table.attach(inDialog, &dialog);
        Control &left = dialogFirst ? onPage : inDialog;
        table.remove({dialogFirst ? inDialog.number : onPage.number});
        QCOMPARE(tags(element), QStringLiteral("key %1 controlWidget%1").arg(left.name));
        QCOMPARE(table.of(element), &left);
    }
}

void TestControlTable::forgetsDependants()
{
    ControlTable table(m_document);
    QWidget widget;
    Control &first = table.add(m_document.first("a"), nullptr);
    Control &second = table.add(m_document.first("b"), nullptr);
    table.attach(first, &widget);
    for (Control *control : {&first, &second, &first})
        table.addDependency(*control, "net/untitled/NAME/default");
    QCOMPARE(table.dependants("net/untitled/NAME"), (QList<int>{first.number, second.number}));
    table.remove({first.number});
    QCOMPARE(table.dependants("net/untitled/NAME"), QList<int>{1});
    table.clear();
    QCOMPARE(table.dependants("net/untitled/NAME"), QList<int>());
}

QTEST_MAIN(TestControlTable)
#include "tst_controltable.moc"
