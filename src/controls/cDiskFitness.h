#pragma once

#include <QString>
#include <QWidget>

/// How healthy a disk is, estimated from its S.M.A.R.T. attributes (see paravue::DiskHealth): a bar with one
/// figure from 0 to 100.
class cDiskFitness : public QWidget
{
    Q_OBJECT

public:
    cDiskFitness(QWidget *parent, const QString &report);

    /// A disk below this many percent should be replaced.
    static constexpr int GoodFrom = 30;
    bool isGood() const { return healthPercent >= GoodFrom; }
    const QString &report() const { return m_report; }

    /// As in paravue::DiskHealth.
    int healthPercent = 0;
    int powerOnHours = 0;
    int powerOnValue = 0;
    int reallocatedRaw = 0;
    int reallocatedThreshold = 0;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_report;
};
