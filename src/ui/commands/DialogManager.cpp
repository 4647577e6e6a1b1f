#include "ui/commands/DialogManager.h"

#include "controls/DialogFrame.h"
#include "ui/base/RetiredWidgets.h"
#include "ui/base/UiLimits.h"
#include "ui/base/WindowText.h"
#include "ui/binding/ActionRunner.h"
#include "ui/binding/Bindings.h"
#include "ui/binding/BuiltDescription.h"
#include "ui/binding/ControlContext.h"
#include "ui/page/PageArea.h"
#include "ui/page/PageBuilder.h"
#include "ui/tasks/TimeTasks.h"

#include <QDialog>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace paravue
{

DialogManager::DialogManager(QWidget &window, ControlContext &context, PageBuilder &builder,
                             Bindings &bindings, ActionRunner &actions, TimeTasks &tasks,
                             RetiredWidgets &retired)
    : m_window(window), m_context(context), m_builder(builder), m_bindings(bindings), m_actions(actions),
      m_tasks(tasks), m_retired(retired)
{
}

void DialogManager::run(const QString &tag, const std::function<void(QDialog &)> &runModal)
{
    const QDomElement element = m_context.description().document().first(tag).parentNode().toElement();
    if (element.isNull()) {
        m_context.report(WindowText::tr("Unknown dialog tag \"%1\"").arg(tag));
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

bool DialogManager::show(const QString &tag)
{
    const QDomElement element = m_context.description().document().first(tag).parentNode().toElement();
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

void DialogManager::close(const QString &tag)
{
    OpenDialog *open = find(m_context.description().document().first(tag).parentNode().toElement());
    if (open && open->dialog)
        open->dialog->accept();
}

void DialogManager::showTitles()
{
    for (const OpenDialog &open : m_open) {
        if (open.dialog)
            open.dialog->setWindowTitle(title(open.element));
    }
}

void DialogManager::closeLast(const std::function<bool(const QDomElement &)> &isMeant)
{
    const auto open = std::find_if(m_open.rbegin(), m_open.rend(), [&](const OpenDialog &entry) {
        return entry.dialog && isMeant(entry.element);
    });
    if (open != m_open.rend())
        open->dialog->accept();
}

void DialogManager::closeAll()
{
    // Modal dialogs are deleted by run(), which is waiting for them.
    const std::vector<OpenDialog> open = std::exchange(m_open, {});
    for (const OpenDialog &entry : open) {
        release(entry);
        if (entry.dialog) {
            entry.dialog->disconnect(&m_window);
            entry.dialog->reject();
            if (!entry.isModal)
                m_retired.add(entry.dialog, entry.loopsBegun);
        }
    }
}

QDialog *DialogManager::open(const QDomElement &element)
{
    // Each modal dialog nests another event loop.
    if (m_open.size() >= limits::OpenDialogs) {
        m_context.report(WindowText::tr("Too many dialogs are open at the same time"));
        return nullptr;
    }
    const quint64 loopsBegun = m_retired.loopsBegun();
    auto *dialog = new QDialog(&m_window);
    dialog->setWindowTitle(title(element));
    const int first = m_context.description().table().nextNumber();
    m_builder.adoptWindow(element, dialog);
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(dialog);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new PageArea(page, PageArea::OfThePage));
    m_builder.buildPage(element, page);
    const QList<int> controls = m_context.description().table().numbersSince(first);
    m_bindings.loadNew(controls);
    m_open.push_back({element, dialog, controls, m_tasks.add(element), true, loopsBegun});
    m_actions.runCalls(element);
    dialog->installEventFilter(&m_window);
    DialogFrame::give(*dialog, DialogFrame::Size::OfTheUser);
    if (find(element))
        return dialog;
    // Its own actions have brought a new description.
    dialog->deleteLater();
    return nullptr;
}

DialogManager::OpenDialog *DialogManager::find(const QDomElement &element)
{
    const auto found = std::find_if(m_open.begin(), m_open.end(),
                                    [&](const OpenDialog &open) { return open.element == element; });
    return found == m_open.end() || element.isNull() ? nullptr : &*found;
}

void DialogManager::closed(QDialog *dialog)
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
        m_retired.add(dialog, open.loopsBegun);
}

void DialogManager::release(const OpenDialog &open)
{
    m_tasks.remove(open.tasks);
    m_context.description().table().remove(open.controls);
}

QString DialogManager::title(const QDomElement &element) const
{
    const QDomElement title = element.firstChildElement(QStringLiteral("title"));
    return title.isNull() ? m_window.windowTitle() : m_context.text(title.text());
}

} // namespace paravue
