#include "TextInspector.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QAction>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTextDocumentFragment>
#include <QTreeWidget>
#include <QWidget>

#include <algorithm>

namespace paravue::test
{

namespace
{

constexpr QSize SmallScreen(1024, 768);

QString plain(QString text)
{
    if (Qt::mightBeRichText(text))
        text = QTextDocumentFragment::fromHtml(text).toPlainText();
    return text.remove(QRegularExpression("&(?!&)")).simplified();
}

/// Without what stands in brackets, and in brackets in them.
QString outsideOfBrackets(const QString &text)
{
    QString outside;
    int depth = 0;
    for (const QChar letter : text) {
        depth += letter == u'[' ? 1 : 0;
        if (depth == 0)
            outside += letter;
        else
            depth -= letter == u']' ? 1 : 0;
    }
    return outside;
}

/// A text of a description, with any values at the addresses in it, that is not a part of a longer sentence.
/// At its ends values have one word only: "{version} of {date}" would stand for any sentence with "of".
QRegularExpression described(const QString &text)
{
    static const QString address("\\\\\\{[^}]*\\\\\\}");
    static const QRegularExpression outer('^' + address + "|" + address + '$');
    static const QRegularExpression inner(address);
    QString pattern = QRegularExpression::escape(plain(text));
    pattern.replace(outer, "\\S*").replace(inner, ".*?");
    return QRegularExpression("(?<!\\w)(?<!\\w )" + pattern + "(?!\\w)(?! \\w)");
}

/// Empty when the text of \a label fits. A label that elides its text asks for less room than all of it
/// takes.
QString faultOfLabel(const QLabel &label)
{
    const QSize least = label.minimumSizeHint();
    const QSize needed = label.wordWrap() ? QSize(least.width(), label.heightForWidth(label.width()))
                                          : least.boundedTo(label.sizeHint());
    return needed.width() <= label.width() && needed.height() <= label.height()
               ? QString()
               : QString("needs %1 × %2").arg(needed.width()).arg(needed.height());
}

} // namespace

TextInspector::TextInspector(const QStringList &described, const QStringList &values)
    : m_hasBrackets(true), m_values(values)
{
    QStringList texts = described;
    std::sort(texts.begin(), texts.end(),
              [](const QString &one, const QString &other) { return one.size() > other.size(); });
    static const QRegularExpression address("\\{[^}]*\\}");
    static const QRegularExpression letters("\\p{L}{2,}");
    for (const QString &text : texts) {
        if (QString(text).remove(address).contains(letters)) // others would stand for any text
            m_described << test::described(text);
    }
}

void TextInspector::inspect(QWidget &window, const QString &place)
{
    if (window.isWindow() && (window.width() > SmallScreen.width() || window.height() > SmallScreen.height()))
        note(place, window.windowTitle(), "is larger than a small screen");
    expectBrackets(place, window.windowTitle());
    inspectPart(window, place);
    for (QWidget *part : window.findChildren<QWidget *>()) {
        if (part->isVisible() && part->window() == &window)
            inspectPart(*part, place);
    }
}

void TextInspector::inspectPart(QWidget &part, const QString &place)
{
    if (const auto *label = qobject_cast<QLabel *>(&part); label && !label->text().isEmpty()) {
        expectBrackets(place, label->text());
        note(place, label->text(), faultOfLabel(*label));
    } else if (const auto *button = qobject_cast<QAbstractButton *>(&part);
               button && !button->text().isEmpty()) {
        expectBrackets(place, button->text());
        if (button->sizeHint().width() > button->width())
            note(place, button->text(), QString("needs a width of %1").arg(button->sizeHint().width()));
    } else if (const auto *edit = qobject_cast<QLineEdit *>(&part); edit && edit->text().isEmpty()) {
        expectBrackets(place, edit->placeholderText());
        if (edit->fontMetrics().horizontalAdvance(edit->placeholderText()) > edit->width())
            note(place, edit->placeholderText(), "is wider than its field");
    } else if (const auto *header = qobject_cast<QHeaderView *>(&part);
               header && header->orientation() == Qt::Horizontal) {
        for (int section = 0; section < header->count(); ++section) {
            const QString text = header->model()->headerData(section, Qt::Horizontal).toString();
            expectBrackets(place, text);
            if (!header->isSectionHidden(section) &&
                header->fontMetrics().horizontalAdvance(text) > header->sectionSize(section))
                note(place, text, "is wider than its column");
        }
    }
    if (const auto *list = qobject_cast<QTreeWidget *>(&part))
        inspectCells(*list, place);
    if (const auto *list = qobject_cast<QListWidget *>(&part))
        inspectItems(*list, place);
    inspectTexts(part, place);
}

/// Cells may be elided when a tool tip shows the whole text.
void TextInspector::inspectCells(const QTreeWidget &list, const QString &place)
{
    for (int row = 0; row < list.topLevelItemCount(); ++row) {
        const QTreeWidgetItem &item = *list.topLevelItem(row);
        for (int column = 0; column < list.columnCount(); ++column) {
            const bool isElided =
                list.fontMetrics().horizontalAdvance(item.text(column)) > list.columnWidth(column);
            if (isElided && item.toolTip(column).isEmpty())
                note(place, item.text(column), "is wider than its column");
        }
    }
}

void TextInspector::inspectItems(const QListWidget &list, const QString &place)
{
    for (int row = 0; row < list.count(); ++row) {
        const QListWidgetItem &item = *list.item(row);
        expectBrackets(place, item.text());
        expectBrackets(place, item.toolTip());
        if (list.visualItemRect(&item).width() > list.viewport()->width())
            note(place, item.text(), "is wider than its list");
    }
}

void TextInspector::inspectTexts(QWidget &part, const QString &place)
{
    expectBrackets(place, part.toolTip());
    if (QAccessibleInterface *heard = QAccessible::queryAccessibleInterface(&part)) {
        for (const QAccessible::Text kind : {QAccessible::Name, QAccessible::Description})
            expectBrackets(place, heard->text(kind));
    }
    if (!part.inherits("QMenu"))
        return;
    for (const QAction *action : part.actions())
        expectBrackets(place, action->text());
}

void TextInspector::note(const QString &place, const QString &text, const QString &fault)
{
    const QString line = QString("%1: \"%2\" %3").arg(place, plain(text), fault);
    if (!fault.isEmpty() && !m_faults.contains(line))
        m_faults << line;
}

void TextInspector::expectBrackets(const QString &place, const QString &text)
{
    if (text.isEmpty())
        return;
    ++m_count;
    if (!m_hasBrackets)
        return;
    QString rest = outsideOfBrackets(plain(text));
    static const QRegularExpression word("\\p{L}{2,}");
    for (const QRegularExpression &described : m_described) {
        if (!rest.contains(word))
            return;
        rest.remove(described);
    }
    for (auto found = word.globalMatch(rest); found.hasNext();) {
        if (!m_values.contains(found.next().captured())) {
            note(place, text, "is not translated");
            return;
        }
    }
}

} // namespace paravue::test
