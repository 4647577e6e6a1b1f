#pragma once

#include <QStringList>
#include <QTreeWidget>

namespace paravue
{

/// A read-only list with columns that says so when it has nothing to show. A text that is cut off is shown
/// whole as a tool tip.
class ListView : public QTreeWidget
{
    Q_OBJECT

public:
    explicit ListView(QWidget *parent = nullptr);

    /// One column per header; a width of 0 or less leaves a column to the toolkit.
    void setColumns(const QStringList &headers, const QList<int> &widths);
    /// Other texts for the same columns. Returns false when they are shown already.
    bool setHeaders(const QStringList &headers);
    /// The text that an empty list shows.
    void setPlaceholder(const QString &text);

    /// Shows these rows and keeps the selection and the scroll position where it can. Rows may be shorter
    /// than the list is wide. Returns false, and touches nothing, when they are shown already.
    virtual bool setRows(const QList<QStringList> &rows);

protected:
    bool viewportEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_placeholder;
};

} // namespace paravue
