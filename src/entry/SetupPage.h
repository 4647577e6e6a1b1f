#pragma once

#include "ParavueSetupExport.h"
#include "ui/WindowOptions.h"

#include <QPointer>
#include <QWidget>

class CWinMain;
class OrbSetup;

namespace paravue
{

/// A setup session as a part of a window of the host: a page of a tab widget or a stacked widget, for
/// example. It has all that the window of DoParavueSetup() has, OK and Cancel included, but is not modal and
/// takes its size from the layout that it stands in.
///
/// The session begins, and the recorder's files are fetched, when the page is shown for the first time. A
/// page that is hidden meanwhile keeps its edits and shows no live pictures. After finished() it is empty; a
/// save may still be under way, which FinishParavueSetup() waits for.
class PARAVUE_EXPORT SetupPage : public QWidget
{
    Q_OBJECT

public:
    /// \a setup stays the caller's. The session ends when either is deleted.
    explicit SetupPage(OrbSetup *setup, QWidget *parent = nullptr);
    ~SetupPage() override;

    /// To be called before the page is shown for the first time.
    void setWindowOptions(const WindowOptions &options) { m_options = options; }

    /// There are changes that were not sent to the recorder. Always false without
    /// WindowOptions::asksBeforeClosing.
    bool hasChanges() const;
    /// To be called before the host closes its window or deletes the page: true when nothing is lost by that.
    /// Asks the user about changes, in an event loop of its own: "Send" does what OK does, "Discard" answers
    /// true, "Go on editing" false. A hidden page with changes answers false without a question; the host
    /// shows it first. The question may end the session.
    bool mayClose();

Q_SIGNALS:
    /// The user has pressed OK (\a isAccepted) or Cancel, or \a setup was deleted.
    void finished(bool isAccepted);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void begin();
    void end();

    QPointer<OrbSetup> m_setup;
    QPointer<CWinMain> m_window;
    WindowOptions m_options;
    bool m_hasBegun = false;
    bool m_isBeginning = false;
};

} // namespace paravue
