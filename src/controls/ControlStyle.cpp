#include "controls/ControlStyle.h"

#include "controls/ControlPainting.h"
#include "controls/DrawnIcon.h"
#include "controls/ReadablePalette.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QPointer>
#include <QProxyStyle>
#include <QStyleOption>

namespace paravue
{

namespace
{

constexpr int FocusRingMargin = 3;
constexpr const char *ValueProperty = "paravueShowsValue";
constexpr const char *ProblemProperty = "paravueProblem";

QStyleOptionButton asDefault(const QStyleOptionButton &button, const QPainter &painter)
{
    QStyleOptionButton option = button;
    const QColor text = option.palette.color(QPalette::HighlightedText);
    option.palette.setBrush(QPalette::Button, option.palette.brush(QPalette::Highlight));
    option.palette.setColor(QPalette::ButtonText, text);
    if (!option.icon.isNull())
        option.icon = iconInColor(option.icon, option.iconSize, painter, text);
    return option;
}

class ControlStyle : public QProxyStyle
{
public:
    ControlStyle() : QProxyStyle(QApplication::style()->name()) { setParent(qApp); }

    int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override
    {
        if (metric == PM_FocusFrameHMargin || metric == PM_FocusFrameVMargin)
            return FocusRingMargin;
        return QProxyStyle::pixelMetric(metric, option, widget);
    }

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        // Otherwise a parent without room around the widget would cut the ring off.
        if (hint == SH_FocusFrame_AboveWidget)
            return 1;
        return QProxyStyle::styleHint(hint, option, widget, data);
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override
    {
        if (!drawOwn(element, *option, *painter, widget))
            QProxyStyle::drawPrimitive(element, option, painter, widget);
    }

    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override
    {
        const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
        const auto *tab = qstyleoption_cast<const QStyleOptionTab *>(option);
        const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
        if (element == CE_FocusFrame)
            paintRing(*painter, option->palette, option->rect);
        else if (element == CE_ProgressBarGroove)
            paintField(*painter, *option, QPalette::Base);
        else if (element == CE_PushButton && button)
            drawButton(*button, *painter, widget);
        else if (element == CE_PushButtonBevel && button)
            drawBevel(*button, *painter);
        else if (element == CE_TabBarTabShape && tab)
            paintTab(*painter, *tab, pixelMetric(PM_TabBarBaseOverlap, option, widget));
        else if (element == CE_TabBarTabLabel && tab)
            drawTabLabel(*tab, *painter, widget);
        else if (element == CE_MenuItem && item)
            drawChoice(*item, *painter, widget);
        else
            QProxyStyle::drawControl(element, option, painter, widget);
    }

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override
    {
        if (const auto *box = qstyleoption_cast<const QStyleOptionComboBox *>(option))
            drawDropDown(*box, *painter, widget);
        else if (const auto *spin = qstyleoption_cast<const QStyleOptionSpinBox *>(option))
            drawSpinBox(*spin, *painter, widget);
        else
            QProxyStyle::drawComplexControl(control, option, painter, widget);
    }

private:
    static bool drawOwn(PrimitiveElement element, const QStyleOption &option, QPainter &painter,
                        const QWidget *widget)
    {
        const bool isList = qobject_cast<const QAbstractItemView *>(widget);
        const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(&option);
        switch (element) {
        case PE_PanelLineEdit:
            if (!frame || frame->lineWidth <= 0)
                return false; // a part of another control
            if (!isShownAsValue(widget))
                paintField(painter, option, QPalette::Base);
            if (widget && widget->property(ProblemProperty).toBool())
                paintProblem(painter, option);
            return true;
        case PE_Frame:
            if (!isList && !(widget && widget->windowType() == Qt::Popup))
                return false;
            if (!isShownAsValue(widget)) {
                painter.setPen(edgeColor(option));
                painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
            }
            return true;
        case PE_FrameTabWidget:
            paintPane(painter, option);
            return true;
        case PE_IndicatorCheckBox:
            paintCheckBox(painter, option, isShownAsValue(widget));
            return true;
        case PE_PanelButtonCommand:
            paintButtonGround(painter, option, option.palette.color(QPalette::Button), edgeColor(option));
            return true;
        case PE_FrameFocusRect:
            return !isList; // the ring shows the focus; in a list the current row is shown, too
        default:
            return false;
        }
    }

    void drawButton(const QStyleOptionButton &option, QPainter &painter, const QWidget *widget) const
    {
        const bool isDefault =
            (option.features & QStyleOptionButton::DefaultButton) && (option.state & State_Enabled);
        if (!isDefault) {
            QProxyStyle::drawControl(CE_PushButton, &option, &painter, widget);
            return;
        }
        const QStyleOptionButton marked = asDefault(option, painter);
        QProxyStyle::drawControl(CE_PushButton, &marked, &painter, widget);
    }

    /// Native styles paint it with pictures of their own.
    void drawBevel(const QStyleOptionButton &option, QPainter &painter) const
    {
        const bool isPressed = option.state & (State_Sunken | State_On);
        if (!(option.features & QStyleOptionButton::Flat) || isPressed)
            paintButtonGround(painter, option, option.palette.color(QPalette::Button), edgeColor(option));
        if (!(option.features & QStyleOptionButton::HasMenu))
            return;
        const int size = pixelMetric(PM_MenuButtonIndicator, &option, nullptr);
        const QRect arrow(option.rect.right() - size, option.rect.top(), size, option.rect.height());
        paintArrow(painter, visualRect(option.direction, option.rect, arrow),
                   option.palette.color(QPalette::ButtonText), ArrowDirection::Down);
    }

    /// The focus frame would surround the whole bar.
    void drawTabLabel(const QStyleOptionTab &tab, QPainter &painter, const QWidget *widget) const
    {
        constexpr int Inset = 2;
        QProxyStyle::drawControl(CE_TabBarTabLabel, &tab, &painter, widget);
        if (tab.state & State_HasFocus)
            paintRing(painter, tab.palette, tab.rect.adjusted(Inset, Inset, -Inset, -Inset));
    }

    /// The rows of a drop-down have the palette of the application's menus.
    void drawChoice(const QStyleOptionMenuItem &item, QPainter &painter, const QWidget *widget) const
    {
        QStyleOptionMenuItem readable = item;
        readable.palette = readablePalette(item.palette);
        QProxyStyle::drawControl(CE_MenuItem, &readable, &painter, widget);
    }

    void drawDropDown(const QStyleOptionComboBox &option, QPainter &painter, const QWidget *widget) const
    {
        if (isShownAsValue(widget))
            return;
        // Styles write the text of a drop-down in the colour of buttons, and that of an editable one as a
        // field.
        const bool isField = option.editable;
        paintField(painter, option, isField ? QPalette::Base : QPalette::Button);
        const QRect arrow = subControlRect(CC_ComboBox, &option, SC_ComboBoxArrow, widget);
        const QPalette::ColorRole ink = isField ? QPalette::Text : QPalette::ButtonText;
        paintArrow(painter, arrow, option.palette.color(ink), ArrowDirection::Down);
    }

    void drawSpinBox(const QStyleOptionSpinBox &option, QPainter &painter, const QWidget *widget) const
    {
        if (isShownAsValue(widget))
            return;
        paintField(painter, option, QPalette::Base);
        for (const SubControl part : {SC_SpinBoxUp, SC_SpinBoxDown}) {
            const bool isUp = part == SC_SpinBoxUp;
            const auto step = isUp ? QAbstractSpinBox::StepUpEnabled : QAbstractSpinBox::StepDownEnabled;
            const bool canStep = (option.state & State_Enabled) && option.stepEnabled.testFlag(step);
            paintArrow(painter, subControlRect(CC_SpinBox, &option, part, widget),
                       option.palette.color(canStep ? QPalette::Active : QPalette::Disabled, QPalette::Text),
                       isUp ? ArrowDirection::Up : ArrowDirection::Down);
        }
    }
};

/// Keeps the text of a value as dark as that of a label when the colours of the desktop change.
class ValueColors : public QObject
{
public:
    explicit ValueColors(QWidget &widget) : QObject(&widget), m_widget(widget)
    {
        widget.installEventFilter(this);
        apply();
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::PaletteChange)
            apply();
        return false;
    }

private:
    void apply()
    {
        QPalette palette = m_widget.palette();
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            palette.setBrush(QPalette::Disabled, role, palette.brush(QPalette::Active, QPalette::WindowText));
        palette.setBrush(QPalette::Disabled, QPalette::Base,
                         palette.brush(QPalette::Active, QPalette::Window));
        m_widget.setPalette(palette);
    }

    QWidget &m_widget;
};

} // namespace

QStyle *controlStyle()
{
    static QPointer<ControlStyle> style;
    if (!style)
        style = new ControlStyle; // a child of the application
    return style;
}

void showAsValue(QWidget &widget)
{
    if (widget.property(ValueProperty).toBool())
        return;
    widget.setProperty(ValueProperty, true);
    new ValueColors(widget);
}

bool isShownAsValue(const QWidget *widget)
{
    return widget && !widget->isEnabled() && widget->property(ValueProperty).toBool();
}

void showProblem(QWidget &field, bool hasProblem)
{
    field.setProperty(ProblemProperty, hasProblem);
    field.update();
}

} // namespace paravue
