#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// A form of any size, told three ways: as an interface description, as a designer file, and as the plain
/// facts for code that creates the widgets by hand. All three give the same widgets, names and values.
///
/// A row is a label, a field, a check box, a drop-down list of three choices and a scroll bar; ten rows make
/// a tab.
class GeneratedForm
{
public:
    static constexpr int Columns = 5;
    static constexpr int RowsPerTab = 10;

    explicit GeneratedForm(int controls) : m_rows(controls / Columns) {}

    int rows() const { return m_rows; }
    int tabs() const { return (m_rows + RowsPerTab - 1) / RowsPerTab; }
    int rowsOf(int tab) const { return qMin(RowsPerTab, m_rows - tab * RowsPerTab); }

    static QString text(int row) { return QStringLiteral("Value %1").arg(row); }
    static bool isChecked(int row) { return row % 2 == 0; }
    static int choice(int row) { return row % 3; }
    static QStringList choices() { return {"Low", "Middle", "High"}; }
    static int position(int row) { return row % 100; }
    static QString tabName(int tab) { return QStringLiteral("Tab %1").arg(tab); }
    static QString textAddress(int row) { return QStringLiteral("values/untitled/TEXT%1").arg(row); }
    static QString controlName(int number) { return QStringLiteral("link%1").arg(number); }

    QByteArray description() const;
    /// The rows as a dialog that the tag \a tag opens, without the XML declaration.
    QByteArray dialog(const QString &tag) const;
    QByteArray values() const; ///< the configuration file that the description refers to
    QByteArray designerFile() const;

private:
    int m_rows;
};
