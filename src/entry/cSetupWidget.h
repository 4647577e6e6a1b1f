#pragma once

#include "ParavueSetupExport.h"

#include <QWidget>

class OrbSetup;

/// Triggers functions of a configuration store from a text command. It has nothing to show; an interface
/// description embeds one ("setup") so that its buttons can call the store.
class PARAVUE_EXPORT cSetupWidget : public QWidget
{
    Q_OBJECT

public:
    /// \a setup stays the caller's and must outlive the widget.
    explicit cSetupWidget(OrbSetup *setup);
    ~cSetupWidget() override;

public Q_SLOTS:
    /// "name,argument": the text before the first "," names the function, everything behind it is the
    /// argument, further commas included.
    void callSetup(const QString &s);

private:
    OrbSetup *m_setup;
};
