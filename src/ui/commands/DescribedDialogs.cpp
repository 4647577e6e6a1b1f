#include "ui/commands/DescribedDialogs.h"

#include "ui/base/RetiredWidgets.h"
#include "ui/base/UiLimits.h"
#include "ui/base/WindowText.h"
#include "ui/binding/ActionRunner.h"
#include "ui/binding/Bindings.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/ControlTable.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/page/PageArea.h"
#include "ui/page/PageBuilder.h"
#include "ui/tasks/TimeTasks.h"

#include <QDialog>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace paravue
{

DescribedDialogs::DescribedDialogs(QWidget &window, const Parts &parts) : m_window(window), m_parts(parts) {}

void DescribedDialogs::run(const QString &tag, const std::function<void(QDialog &)> &runModal)
{
    const QDomElement element = m_parts.document.first(tag).parentNode().toElement();
    if (element.isNull()) {
        m_parts.context.report(WindowText::tr("Unknown dialog tag \"%1\"").arg(tag));
        return;
    }
    if (find(element))
        return;
    const QPointer<QDialog> dialog = open(element);
    if (dialog)
        runModal(*dialog);
    if (dialog) {
        closed(dialog);
        dialog->deleteLater();
    }
}

bool DescribedDialogs::show(const QString &tag)
{
    const QDomElement element = m_parts.document.first(tag).parentNode().toElement();
    if (element.isNull())
        return false;
    if (find(element))
        return true;
    QDialog *dialog = open(element);
    if (!dialog)
        return false;
    find(element)->isModal = false;
    QObject::connect(dialog, &QDialog::finished, &m_window, [this, dialog] { closed(dialog); });
    dialog->show();
    return true;
}

void DescribedDialogs::close(const QString &tag)
{
    OpenDialog *open = find(m_parts.document.first(tag).parentNode().toElement());
    if (open && open->dialog)
        open->dialog->accept();
}

void DescribedDialogs::closeAll()
{
    // The dialogs that are modal come back to run(), which deletes them.
    const std::vector<OpenDialog> open = std::exchange(m_open, {});
    for (const OpenDialog &entry : open) {
        release(entry);
        if (entry.dialog) {
            entry.dialog->disconnect(&m_window);
            entry.dialog->reject();
            if (!entry.isModal)
                m_parts.retired.add(entry.dialog, entry.loopsBegun);
        }
    }
}

QDialog *DescribedDialogs::open(const QDomElement &element)
{
    // Each modal one runs an event loop inside that of the one before.
    if (m_open.size() >= limits::OpenDialogs) {
        m_parts.context.report(WindowText::tr("Too many dialogs are open at the same time"));
        return nullptr;
    }
    const quint64 loopsBegun = m_parts.retired.loopsBegun();
    auto *dialog = new QDialog(&m_window);
    dialog->setWindowTitle(title(element));
    const int first = m_parts.table.nextNumber();
    m_parts.builder.adoptWindow(element, dialog);
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(dialog);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new PageArea(page, PageArea::OfThePage));
    m_parts.builder.buildPage(element, page);
    const QList<int> controls = m_parts.table.numbersSince(first);
    m_parts.bindings.loadNew(controls);
    m_open.push_back({element, dialog, controls, m_parts.tasks.add(element), true, loopsBegun});
    m_parts.actions.runCalls(element);
    dialog->installEventFilter(&m_window);
    if (find(element))
        return dialog;
    // Its own actions have brought a new description.
    dialog->deleteLater();
    return nullptr;
}

DescribedDialogs::OpenDialog *DescribedDialogs::find(const QDomElement &element)
{
    const auto found = std::find_if(m_open.begin(), m_open.end(),
                                    [&](const OpenDialog &open) { return open.element == element; });
    return found == m_open.end() || element.isNull() ? nullptr : &*found;
}

void DescribedDialogs::closed(QDialog *dialog)
{
    const auto found = std::find_if(m_open.begin(), m_open.end(),
                                    [&](const OpenDialog &open) { return open.dialog == dialog; });
    if (found == m_open.end())
        return;
    const OpenDialog open = *found;
    m_open.erase(found);
    release(open);
    dialog->hide();
    if (!open.isModal)
        m_parts.retired.add(dialog, open.loopsBegun);
}

void DescribedDialogs::release(const OpenDialog &open)
{
    m_parts.tasks.remove(open.tasks);
    m_parts.table.remove(open.controls);
}

QString DescribedDialogs::title(const QDomElement &element) const
{
    const QDomElement title = element.firstChildElement(QStringLiteral("title"));
    return title.isNull() ? m_window.windowTitle() : m_parts.context.text(title.text());
}

} // namespace paravue
