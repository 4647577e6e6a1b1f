#include "GeneratedForm.h"

#include <QXmlStreamWriter>

namespace
{

class XmlText
{
public:
    XmlText() : m_writer(&m_text) { m_writer.writeStartDocument(); }

    void open(const QString &tag, const QList<QPair<QString, QString>> &attributes = {})
    {
        m_writer.writeStartElement(tag);
        for (const auto &[name, value] : attributes)
            m_writer.writeAttribute(name, value);
    }
    void close() { m_writer.writeEndElement(); }
    void leaf(const QString &tag, const QString &text) { m_writer.writeTextElement(tag, text); }

    QByteArray finished()
    {
        m_writer.writeEndDocument();
        return m_text;
    }

private:
    QByteArray m_text;
    QXmlStreamWriter m_writer;
};

QString key(const QString &name, int row)
{
    return QStringLiteral("values/untitled/%1%2").arg(name).arg(row);
}

void openCell(XmlText &xml, const QString &type, int row, int column,
              QList<QPair<QString, QString>> attributes = {})
{
    attributes.prepend({"column", QString::number(column)});
    attributes.prepend({"row", QString::number(row)});
    attributes.prepend({"type", type});
    xml.open("item", attributes);
}

void describeRow(XmlText &xml, int row, int gridRow)
{
    openCell(xml, "label", gridRow, 0);
    xml.leaf("text", QStringLiteral("{%1}").arg(GeneratedForm::textAddress(row)));
    xml.close();
    openCell(xml, "edit", gridRow, 1);
    xml.leaf("key", GeneratedForm::textAddress(row));
    xml.close();
    openCell(xml, "checkbox", gridRow, 2);
    xml.leaf("text", "Enabled");
    xml.leaf("key", key("CHECK", row));
    xml.close();
    openCell(xml, "dropdown", gridRow, 3);
    const QStringList choices = GeneratedForm::choices();
    for (int i = 0; i < choices.size(); ++i) {
        xml.leaf("text", choices[i]);
        xml.leaf("key", key("CHOICE", row) + u'/' + QString::number(i));
    }
    xml.close();
    openCell(xml, "scroll", gridRow, 4,
             {{"orientation", "horizontal"}, {"minvalue", "0"}, {"maxvalue", "100"}, {"width", "120"}});
    xml.leaf("key", key("POSITION", row));
    xml.close();
}

void designProperty(XmlText &xml, const QString &name, const QString &kind, const QString &value)
{
    xml.open("property", {{"name", name}});
    xml.leaf(kind, value);
    xml.close();
}

/// Opens a widget in a cell of the grid; closeWidget() ends both.
void openWidget(XmlText &xml, const QString &type, int number, int row, int column)
{
    xml.open("item", {{"row", QString::number(row)}, {"column", QString::number(column)}});
    xml.open("widget", {{"class", type}, {"name", QStringLiteral("w%1").arg(number)}});
    designProperty(xml, "accessibleName", "string", GeneratedForm::controlName(number));
}

void closeWidget(XmlText &xml)
{
    xml.close();
    xml.close();
}

void designRow(XmlText &xml, int row, int gridRow)
{
    const int first = row * GeneratedForm::Columns;
    openWidget(xml, "QLabel", first, gridRow, 0);
    designProperty(xml, "text", "string", GeneratedForm::text(row));
    closeWidget(xml);
    openWidget(xml, "QLineEdit", first + 1, gridRow, 1);
    designProperty(xml, "text", "string", GeneratedForm::text(row));
    closeWidget(xml);
    openWidget(xml, "QCheckBox", first + 2, gridRow, 2);
    designProperty(xml, "text", "string", "Enabled");
    designProperty(xml, "checked", "bool", GeneratedForm::isChecked(row) ? "true" : "false");
    closeWidget(xml);
    openWidget(xml, "QComboBox", first + 3, gridRow, 3);
    for (const QString &choice : GeneratedForm::choices()) {
        xml.open("item");
        designProperty(xml, "text", "string", choice);
        xml.close();
    }
    designProperty(xml, "currentIndex", "number", QString::number(GeneratedForm::choice(row)));
    closeWidget(xml);
    openWidget(xml, "QScrollBar", first + 4, gridRow, 4);
    designProperty(xml, "maximum", "number", "100");
    designProperty(xml, "value", "number", QString::number(GeneratedForm::position(row)));
    designProperty(xml, "orientation", "enum", "Qt::Horizontal");
    closeWidget(xml);
}

} // namespace

QByteArray GeneratedForm::description() const
{
    XmlText xml;
    xml.open("pvsetup", {{"version", "1.0"}});
    xml.open("tabwidget");
    for (int tab = 0; tab < tabs(); ++tab) {
        xml.open("tab");
        xml.leaf("name", tabName(tab));
        xml.open("item", {{"type", "gridlayout"}});
        for (int row = 0; row < rowsOf(tab); ++row)
            describeRow(xml, tab * RowsPerTab + row, row);
        xml.close();
        xml.close();
    }
    xml.close();
    xml.close();
    return xml.finished();
}

QByteArray GeneratedForm::dialog(const QString &tag) const
{
    XmlText xml;
    xml.open("dialog");
    xml.open(tag);
    xml.close();
    xml.open("item", {{"type", "gridlayout"}});
    for (int row = 0; row < m_rows; ++row)
        describeRow(xml, row, row);
    xml.close();
    xml.close();
    const QByteArray text = xml.finished();
    return text.mid(text.indexOf("<dialog"));
}

QByteArray GeneratedForm::values() const
{
    QString result;
    for (int row = 0; row < m_rows; ++row) {
        result += QStringLiteral("TEXT%1 = '%2'\r\n").arg(QString::number(row), text(row));
        result +=
            QStringLiteral("CHECK%1 = '%2'\r\n").arg(QString::number(row), isChecked(row) ? "on" : "off");
        result += QStringLiteral("CHOICE%1 = %2\r\n").arg(row).arg(choice(row));
        result += QStringLiteral("POSITION%1 = %2\r\n").arg(row).arg(position(row));
    }
    return result.toUtf8();
}

QByteArray GeneratedForm::designerFile() const
{
    XmlText xml;
    xml.open("ui", {{"version", "4.0"}});
    xml.open("widget", {{"class", "QDialog"}, {"name", "Form"}});
    xml.open("layout", {{"class", "QVBoxLayout"}});
    xml.open("item");
    xml.open("widget", {{"class", "QTabWidget"}, {"name", "tabs"}});
    for (int tab = 0; tab < tabs(); ++tab) {
        xml.open("widget", {{"class", "QScrollArea"}, {"name", QStringLiteral("area%1").arg(tab)}});
        xml.open("attribute", {{"name", "title"}});
        xml.leaf("string", tabName(tab));
        xml.close();
        designProperty(xml, "widgetResizable", "bool", "true");
        xml.open("widget", {{"class", "QWidget"}, {"name", QStringLiteral("page%1").arg(tab)}});
        xml.open("layout", {{"class", "QGridLayout"}});
        for (int row = 0; row < rowsOf(tab); ++row)
            designRow(xml, tab * RowsPerTab + row, row);
        xml.close();
        xml.close();
        xml.close();
    }
    for (int open = 0; open < 5; ++open)
        xml.close();
    return xml.finished();
}
