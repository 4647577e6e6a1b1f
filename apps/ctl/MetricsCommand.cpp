#include "Commands.h"
#include "ControlCommandLine.h"
#include "Metrics.h"
#include "RecorderSession.h"
#include "snapshots/Snapshot.h"

#include <QJsonArray>

namespace paravue
{

namespace
{

CommandReport reportOf(const QList<MetricSample> &samples)
{
    QJsonArray rows;
    for (const MetricSample &sample : samples)
        rows.append(sample.toJson());
    return {metricsText(samples), {{"format", "paravue-metrics"}, {"version", 1}, {"samples", rows}}};
}

} // namespace

/// A recorder that cannot be read is reported as one that is not up, and the run has failed.
void runMetrics(const ControlCommandLine &line, const CommandEnd &end)
{
    const QString recorder = recorderOfAddress(line.address);
    const QString name = line.recorderName.isEmpty() ? recorder : line.recorderName;
    Outcome problem;
    const auto session = RecorderSession::open(line, problem);
    if (!session)
        return end(problem, reportOf(metricsOf(name, recorder, {}, false)));
    session->fetch([=](const Outcome &fetched) {
        FileContents files;
        const Outcome read = fetched.isDone() ? session->contents(files) : fetched;
        end(read, reportOf(metricsOf(name, recorder, files, read.isDone())));
    });
}

} // namespace paravue
