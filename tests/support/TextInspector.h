#pragma once

#include <QRegularExpression>
#include <QString>
#include <QStringList>

class QListWidget;
class QTreeWidget;
class QWidget;

namespace paravue::test
{

/// Looks at windows as their users see them, and notes the texts that do not fit their places.
///
/// With a pseudo-translation it also notes words outside of the brackets that every text of ours has then.
/// Words of the recorder have none: \a described are the texts of its description, which may hold addresses
/// in braces, and \a values those of its files.
class TextInspector
{
public:
    TextInspector() = default;
    TextInspector(const QStringList &described, const QStringList &values);

    /// \a place names the window in what is noted.
    void inspect(QWidget &window, const QString &place);

    const QStringList &faults() const { return m_faults; }
    int count() const { return m_count; }

private:
    void inspectPart(QWidget &part, const QString &place);
    void inspectCells(const QTreeWidget &list, const QString &place);
    void inspectItems(const QListWidget &list, const QString &place);
    void inspectTexts(QWidget &part, const QString &place);
    void note(const QString &place, const QString &text, const QString &fault);
    void expectBrackets(const QString &place, const QString &text);

    bool m_hasBrackets = false;
    QList<QRegularExpression> m_described;
    QStringList m_values;
    QStringList m_faults;
    int m_count = 0;
};

} // namespace paravue::test
