#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QPointer>
#include <QWidget>

namespace paravue
{

/// Lets the user ask for another attempt while pictures of a widget wait for one: by a click on the widget,
/// or by Enter or the space bar when it has the focus. The widget is one that takes no input otherwise, and
/// takes none again afterwards.
class RetryGesture : public QObject
{
    Q_DECLARE_TR_FUNCTIONS(RetryGesture)

public:
    /// False for a widget with an input of its own, such as a mask.
    static bool suits(const QWidget &widget) { return !(widget.focusPolicy() & Qt::ClickFocus); }

    explicit RetryGesture(QWidget &widget);
    ~RetryGesture() override;

    bool belongsTo(const QWidget *widget) const { return m_widget == widget; }
    bool isRequested() const { return m_isRequested; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    const QPointer<QWidget> m_widget;
    bool m_hasToolTip = false;
    bool m_isRequested = false;
};

} // namespace paravue
