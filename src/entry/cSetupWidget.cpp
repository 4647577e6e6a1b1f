#include "entry/cSetupWidget.h"

#include "store/OrbSetup.h"

cSetupWidget::cSetupWidget(OrbSetup *setup) : QWidget(nullptr), m_setup(setup) {}

cSetupWidget::~cSetupWidget() = default;

void cSetupWidget::callSetup(const QString &s)
{
    const qsizetype comma = s.indexOf(u',');
    if (comma < 0)
        m_setup->function(s, QString());
    else
        m_setup->function(s.left(comma), s.mid(comma + 1));
}
