#include "entry/SetupPage.h"

#include "store/OrbSetup.h"
#include "ui/CWinMain.h"

#include <QVBoxLayout>

#include <utility>

namespace paravue
{

SetupPage::SetupPage(OrbSetup *setup, QWidget *parent) : QWidget(parent), m_setup(setup)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
}

SetupPage::~SetupPage()
{
    // A message of the window that is being made may be waiting for the user.
    if (m_isBeginning)
        m_window = findChild<CWinMain *>(QString(), Qt::FindDirectChildrenOnly);
    if (m_window)
        m_window->disconnect(this);
    end();
}

void SetupPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // From the event loop, when the page and the window around it are visible.
    if (!std::exchange(m_hasBegun, true))
        QMetaObject::invokeMethod(this, &SetupPage::begin, Qt::QueuedConnection);
}

bool SetupPage::hasChanges() const
{
    return m_window && m_window->hasChangesToAskAbout();
}

bool SetupPage::mayClose()
{
    if (!hasChanges())
        return true;
    if (!isVisible())
        return false;
    const QPointer<SetupPage> alive(this);
    const bool isAllowed = m_window->mayClose();
    return isAllowed || !alive || !m_window;
}

void SetupPage::begin()
{
    if (!m_setup)
        return;
    const QPointer<SetupPage> self(this);
    m_isBeginning = true;
    auto *window = new CWinMain(&*m_setup, this, CWinMain::Placement::Page, m_options);
    if (!self)
        return; // the window ends by itself
    m_isBeginning = false;
    m_window = window;
    layout()->addWidget(m_window);
    const auto finish = [this](int result) {
        end();
        Q_EMIT finished(result == QDialog::Accepted);
    };
    connect(m_window, &QDialog::finished, this, finish);
    if (m_window->isHidden()) // a host that hears of a failure may have closed it already
        finish(m_window->result());
}

void SetupPage::end()
{
    if (!m_window)
        return;
    CWinMain *window = m_window;
    m_window = nullptr;
    try {
        window->endSession();
    } catch (...) {
        // Whatever the clean-up of a host's objects throws, the session is over.
    }
    window->deleteWhenIdle();
}

} // namespace paravue
