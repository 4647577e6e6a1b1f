#pragma once

#include "capi/Library.h"
#include "ui/WindowOptions.h"

#include <QObject>
#include <QRect>

#include <memory>

class QWindow;

namespace paravue
{
class SetupPage;
}

namespace paravue::capi
{

class StoreRecord;

/// A window of the C interface: a modal one of its own, or a page in a native window of the host.
class WindowRecord : public QObject
{
    Q_OBJECT

public:
    /// \a options is whole: it has all fields of this version.
    WindowRecord(StoreRecord &store, const paravue_window_options &options);
    ~WindowRecord() override;

    StoreRecord &store() const { return m_store; }
    bool hasParent() const { return m_options.parent != 0; }
    bool hasBegun() const { return m_hasBegun; }

    /// Makes the page within the parent. False when this platform does not know windows of others, or not
    /// this one.
    bool embed();
    paravue_result run(Library &library, bool &isAccepted);
    void show();
    void setGeometry(const QRect &pixels);
    void close();

Q_SIGNALS:
    void over();

private:
    WindowOptions windowOptions() const;
    void begin();
    void finish(bool isAccepted);
    bool runAlone();
    void runEmbedded();
    /// Ends the session of the page, if there is one, without a question.
    void endPage();

    StoreRecord &m_store;
    const paravue_window_options m_options;
    std::unique_ptr<QWindow> m_parent; ///< stands for the host's window, which is not closed with it
    std::unique_ptr<SetupPage> m_page; ///< null without a parent, and after endPage()
    bool m_hasBegun = false;
    bool m_isLoaded = false;
    bool m_isOver = false;
    bool m_isAccepted = false;
};

} // namespace paravue::capi
