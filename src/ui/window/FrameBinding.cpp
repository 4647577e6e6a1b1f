#include "ui/window/FrameBinding.h"

#include "ui/base/PageTabs.h"
#include "ui/base/SafeText.h"
#include "ui/base/WindowText.h"
#include "ui/page/TabCaptions.h"
#include "ui/window/WindowFrame.h"
#include "ui/window/WindowHeader.h"
#include "ui/window/WindowParts.h"
#include "ui/window/WindowPlace.h"

#include <QDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>

#include <algorithm>

namespace paravue
{
namespace
{

constexpr qsizetype LongestModel = 200;

QString childText(const QDomElement &element, const QString &tag)
{
    return element.firstChildElement(tag).text();
}

QTabWidget::TabPosition tabPosition(const QString &word)
{
    if (word == QLatin1String("South"))
        return QTabWidget::South;
    if (word == QLatin1String("West"))
        return QTabWidget::West;
    return word == QLatin1String("East") ? QTabWidget::East : QTabWidget::North;
}

} // namespace

FrameBinding::FrameBinding(QDialog &window, WindowFrame &frame, WindowParts &parts,
                           const WindowMemory &memory)
    : m_window(window), m_frame(frame), m_parts(parts), m_memory(memory),
      m_headerBase(frame.header()->label()->text()), m_retiredPages(new QWidget)
{
}

FrameBinding::~FrameBinding() = default;

void FrameBinding::build(int shownPage)
{
    adoptWindow();
    showTexts();
    m_model = model();
    const auto last = shownPage < 0 ? WindowPlace::recall(m_memory, m_model) : std::nullopt;
    buildPages(last ? last->page : shownPage);
    if (!last)
        return applySize();
    const bool isOnScreen = QGuiApplication::screenAt(last->middle);
    m_frame.place(last->size, isOnScreen ? last->middle : m_frame.middle());
}

void FrameBinding::remember() const
{
    if (!m_model.isEmpty())
        WindowPlace{m_window.normalGeometry().size(), m_frame.middle(), m_frame.tabs()->currentIndex()}.keep(
            m_memory, m_model);
}

/// As the recorder calls it; of one that does not say, what its tabs are called.
QString FrameBinding::model() const
{
    const QDomElement root = m_parts.description.document().root();
    const QString name = m_parts.context.text(
        childText(root.firstChildElement(QStringLiteral("window")), QStringLiteral("model")));
    if (!name.trimmed().isEmpty())
        return name.trimmed().left(LongestModel);
    QStringList tabs{QStringLiteral("tabs")};
    const QDomElement pages = root.firstChildElement(QStringLiteral("tabwidget"));
    for (QDomElement tab = pages.firstChildElement(QStringLiteral("tab")); !tab.isNull();
         tab = tab.nextSiblingElement(QStringLiteral("tab")))
        tabs.append(childText(tab, QStringLiteral("name")));
    return tabs.join(u' ').left(LongestModel);
}

void FrameBinding::adoptWindow()
{
    m_window.setMinimumSize(0, 0);
    m_window.unsetLayoutDirection();
    m_window.setToolTip(QString());
    const QDomElement window =
        m_parts.description.document().root().firstChildElement(QStringLiteral("window"));
    if (!window.isNull())
        m_parts.builder.adoptWindow(window, &m_window);
}

void FrameBinding::showTexts()
{
    const auto visible = [this](const QString &raw) { return m_parts.context.text(raw); };
    const QDomElement root = m_parts.description.document().root();
    const QDomElement window = root.firstChildElement(QStringLiteral("window"));
    m_frame.header()->label()->setText(m_headerBase + visible(childText(window, QStringLiteral("title"))));
    showButtons();
    showTabCaptions(root.firstChildElement(QStringLiteral("tabwidget")), *m_frame.tabs(), visible);
}

void FrameBinding::showButtons()
{
    const QDomElement root = m_parts.description.document().root();
    const QDomElement ok = root.firstChildElement(QStringLiteral("buttonOK"));
    // Deliberate: Cancel has the tool tip that stands under buttonOK.
    const QString toolTip = childText(ok, QStringLiteral("tooltip"));
    const auto show = [&](QPushButton *button, const QDomElement &element, const QString &ownText) {
        const QDomElement text = element.firstChildElement(QStringLiteral("text"));
        button->setText(text.isNull() ? ownText : m_parts.context.text(text.text()));
        button->setToolTip(element.isNull() ? QString() : safeRichText(m_parts.context.text(toolTip)));
    };
    show(m_frame.okButton(), ok, WindowText::tr("OK"));
    show(m_frame.cancelButton(), root.firstChildElement(QStringLiteral("buttonCancel")),
         WindowText::tr("Cancel"));
}

void FrameBinding::retirePages()
{
    PageTabs &tabs = *m_frame.tabs();
    const PageTabs::Changes changes(tabs);
    while (tabs.count() > 0) {
        // The shown one goes last, or else each page would be shown before it goes.
        const int last = tabs.count() - 1;
        const int index = last == tabs.currentIndex() ? std::max(last - 1, 0) : last;
        QWidget *page = tabs.widget(index);
        tabs.removeTab(index);
        page->setParent(m_retiredPages.get());
        m_parts.retired.add(page);
    }
}

void FrameBinding::buildPages(int shownPage)
{
    PageTabs *tabs = m_frame.tabs();
    retirePages();
    const QDomElement element =
        m_parts.description.document().root().firstChildElement(QStringLiteral("tabwidget"));
    tabs->setTabPosition(tabPosition(childText(element, QStringLiteral("tabposition"))));
    m_parts.builder.buildTabs(element, *tabs, PageBuilder::Scrolling);
    const int selection = childText(element, QStringLiteral("selection")).toInt();
    tabs->setCurrentIndex(shownPage >= 0 && shownPage < tabs->count() ? shownPage : selection);
}

void FrameBinding::applySize()
{
    const QDomElement window =
        m_parts.description.document().root().firstChildElement(QStringLiteral("window"));
    const int width = childText(window, QStringLiteral("width")).toInt();
    const int height = childText(window, QStringLiteral("height")).toInt();
    if (width == 0 || height == 0)
        return;
    m_frame.place(QSize(width, height), m_frame.middle());
}

} // namespace paravue
