#pragma once

#include <QStringList>
#include <QTreeWidget>

namespace paravue
{

/// A read-only list with columns, and a placeholder text while it is empty. The tool tip of a text that is
/// cut off shows all of it.
class ListView : public QTreeWidget
{
    Q_OBJECT

public:
    explicit ListView(QWidget *parent = nullptr);

    /// One column per header; a width of 0 or less leaves a column to Qt.
    void setColumns(const QStringList &headers, const QList<int> &widths);
    /// Other texts for the same columns. Returns false when they are shown already.
    bool setHeaders(const QStringList &headers);
    /// The text that an empty list shows.
    void setPlaceholder(const QString &text);

    /// Shows these rows and keeps the selection and the scroll position if possible. Rows may have fewer
    /// cells than the list has columns. Returns false when they are shown already.
    virtual bool setRows(const QList<QStringList> &rows);

protected:
    bool viewportEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void makeRoomForHeader(int column);

    QString m_placeholder;
};

} // namespace paravue
