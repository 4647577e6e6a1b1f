#include "ui/accessibility/ControlName.h"

#include <QAbstractButton>
#include <QGridLayout>
#include <QHash>
#include <QLabel>
#include <QPointer>
#include <QTextDocumentFragment>
#include <QVariant>

#include <memory>
#include <utility>

namespace paravue
{
namespace
{

const char *const labelsProperty = "paravuePageLabels";

bool isPicture(const QLabel &label)
{
    return label.hasScaledContents();
}

QString labelText(const QLabel &label)
{
    const QString text = plainText(label.text(), label.textFormat());
    return label.buddy() ? withoutAccessKey(text) : text;
}

/// The labels that stand beside the widgets of one page, collected in one pass over its grids, so that naming
/// all widgets of a page costs time for each of them once.
class PageLabels
{
public:
    explicit PageLabels(const QWidget &page)
    {
        ++count;
        read(page.layout());
    }
    ~PageLabels() { --count; }
    Q_DISABLE_COPY_MOVE(PageLabels)

    /// False until a name was asked for, so that building a page costs nothing here.
    static bool exist() { return count > 0; }

    QString textFor(const QWidget *widget) const
    {
        for (const Labels *labels : {&m_buddies, &m_left, &m_above}) {
            const QPointer<QLabel> label = labels->value(widget);
            if (const QString text = label ? labelText(*label) : QString(); !text.isEmpty())
                return text;
        }
        return {};
    }

private:
    using Labels = QHash<const QWidget *, QPointer<QLabel>>;
    using Places = QHash<std::pair<int, int>, QLabel *>; ///< by row and column

    struct Cell {
        int row, column, rows, columns;
    };

    static Cell cellOf(const QGridLayout &grid, int index)
    {
        Cell cell{};
        grid.getItemPosition(index, &cell.row, &cell.column, &cell.rows, &cell.columns);
        return cell;
    }

    void read(QLayout *layout)
    {
        if (!layout)
            return;
        for (int i = 0; i < layout->count(); ++i)
            read(layout->itemAt(i)->layout());
        if (const auto *grid = qobject_cast<QGridLayout *>(layout))
            readGrid(*grid);
    }

    void readGrid(const QGridLayout &grid)
    {
        Places rightOf; // the place right of each label, and the one below it
        Places below;
        for (int i = 0; i < grid.count(); ++i) {
            auto *label = qobject_cast<QLabel *>(grid.itemAt(i)->widget());
            if (!label || isPicture(*label))
                continue;
            const Cell cell = cellOf(grid, i);
            rightOf.insert({cell.row, cell.column + cell.columns}, label);
            below.insert({cell.row + cell.rows, cell.column}, label);
            if (label->buddy())
                m_buddies.insert(label->buddy(), label);
        }
        for (int i = 0; i < grid.count(); ++i) {
            const QWidget *widget = grid.itemAt(i)->widget();
            if (!widget)
                continue;
            const Cell cell = cellOf(grid, i);
            m_left.insert(widget, rightOf.value({cell.row, cell.column}));
            m_above.insert(widget, below.value({cell.row, cell.column}));
        }
    }

    static inline int count = 0;

    Labels m_buddies;
    Labels m_left;
    Labels m_above;
};

using SharedLabels = std::shared_ptr<const PageLabels>;

QString textBeside(const QWidget &widget)
{
    QWidget *page = widget.parentWidget();
    if (!page || widget.isWindow())
        return {};
    auto labels = page->property(labelsProperty).value<SharedLabels>();
    if (!labels) {
        labels = std::make_shared<const PageLabels>(*page);
        page->setProperty(labelsProperty, QVariant::fromValue(labels));
    }
    return labels->textFor(&widget);
}

QString captionOf(const QWidget &widget)
{
    if (widget.isWindow())
        return widget.windowTitle();
    if (const auto *button = qobject_cast<const QAbstractButton *>(&widget))
        return withoutAccessKey(button->text());
    const auto *label = qobject_cast<const QLabel *>(&widget);
    return label && !isPicture(*label) ? labelText(*label) : QString();
}

/// A label does not name a text or a line beside it, but it does name a picture.
bool isLabelled(const QWidget &widget)
{
    const auto *label = qobject_cast<const QLabel *>(&widget);
    return (!label || isPicture(*label)) && widget.metaObject() != &QFrame::staticMetaObject;
}

} // namespace

QString controlName(const QWidget &control)
{
    QString name = captionOf(control);
    if (name.isEmpty() && isLabelled(control))
        name = textBeside(control);
    return name.isEmpty() ? plainToolTip(control) : name;
}

QString plainText(const QString &text, Qt::TextFormat format)
{
    const bool isRich = format == Qt::RichText || (format == Qt::AutoText && Qt::mightBeRichText(text));
    return (isRich ? QTextDocumentFragment::fromHtml(text).toPlainText() : text).simplified();
}

QString withoutAccessKey(const QString &caption)
{
    QString text;
    for (qsizetype i = 0; i < caption.size(); ++i) {
        if (caption[i] == u'&' && ++i == caption.size())
            break;
        text.append(caption[i]);
    }
    return text.simplified();
}

QString plainToolTip(const QWidget &control)
{
    return plainText(control.toolTip());
}

void forgetLabels(QWidget &page)
{
    if (PageLabels::exist() && page.property(labelsProperty).isValid())
        page.setProperty(labelsProperty, QVariant());
}

} // namespace paravue
