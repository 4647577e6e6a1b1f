#include "controls/cDiskFitness.h"

#include "controls/DiskHealth.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionProgressBar>

cDiskFitness::cDiskFitness(QWidget *parent, const QString &report) : QWidget(parent), m_report(report)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_report.replace(QLatin1String("\\n"), QLatin1String("\n"));
    const auto disk = paravue::DiskHealth::ofReport(m_report);
    healthPercent = disk.healthPercent;
    powerOnHours = disk.powerOnHours;
    powerOnValue = disk.powerOnValue;
    reallocatedRaw = disk.reallocatedRaw;
    reallocatedThreshold = disk.reallocatedThreshold;
}

QSize cDiskFitness::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return {metrics.horizontalAdvance(u'0') * 24, metrics.height() + 8};
}

void cDiskFitness::paintEvent(QPaintEvent *)
{
    QStyleOptionProgressBar option;
    option.initFrom(this);
    option.state |= QStyle::State_Horizontal;
    option.maximum = 100;
    option.progress = healthPercent;
    option.text = tr("%1%").arg(healthPercent);
    option.textAlignment = Qt::AlignCenter;
    option.textVisible = true;
    QPainter painter(this);
    style()->drawControl(QStyle::CE_ProgressBar, &option, &painter, this);
}
