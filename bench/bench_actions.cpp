// Dialogs and time tasks: neither may cost more because the description around them is large.

#include "GeneratedForm.h"
#include "PairedRatio.h"

#include "store/OrbSetup.h"
#include "ui/CWinMain.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <QWindow>

#include <memory>
#include <stdexcept>

namespace
{

using paravue::bench::Seconds;

constexpr int DialogControls = 200;
constexpr double TickMilliseconds = 0.1;

/// A setup window on a local store, with a dialog and time tasks of long periods.
class SetupWindow
{
public:
    SetupWindow(int controls, int tasks)
    {
        const GeneratedForm form(controls);
        const QByteArray rest =
            "<window><self/>" +
            QByteArray("<timetask type='call' slot='onLoadDone' period='86400000'>self</timetask>")
                .repeated(tasks) +
            "</window>" + GeneratedForm(DialogControls).dialog("box") + "</pvsetup>";
        add("interface", form.description().replace("</pvsetup>", rest));
        add("values", form.values());
        m_window = std::make_unique<CWinMain>(&m_store, nullptr);
        waitUntilShown(*m_window);
    }

    CWinMain &window() { return *m_window; }

    /// From the call that opens the dialog until it is on the screen and closed again.
    Seconds openDialog()
    {
        QTimer::singleShot(0, m_window.get(), [] {
            QWidget *dialog = QApplication::activeModalWidget();
            waitUntilShown(*dialog);
            dialog->close();
        });
        const auto start = std::chrono::steady_clock::now();
        m_window->showDialog("box");
        const Seconds elapsed = std::chrono::steady_clock::now() - start;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        return elapsed;
    }

private:
    void add(const QString &name, const QByteArray &text)
    {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            throw std::runtime_error("cannot write the form's files");
        m_store.setFilePath(name, file.fileName());
    }

    static void waitUntilShown(QWidget &window)
    {
        while (!window.windowHandle() || !window.windowHandle()->isExposed())
            QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }

    QTemporaryDir m_folder;
    OrbSetup m_store;
    std::unique_ptr<CWinMain> m_window;
};

void dialogInALargeDescription(benchmark::State &state)
{
    SetupWindow large(10'000, 0);
    SetupWindow small(500, 0);
    paravue::bench::pairedRatio(
        state, [&] { return large.openDialog(); }, [&] { return small.openDialog(); }, {.limit = 1.1});
}
BENCHMARK(dialogInALargeDescription)->Apply(paravue::bench::applyPaired);

void tickOfTasksAtRest(benchmark::State &state)
{
    SetupWindow form(500, int(state.range(0)));
    constexpr int Ticks = 1000;
    Seconds best{1};
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < Ticks; ++i)
            form.window().timeout();
        const Seconds tick = (std::chrono::steady_clock::now() - start) / Ticks;
        best = std::min(best, tick);
        state.SetIterationTime(tick.count());
    }
    state.counters["tick_us"] = best.count() * 1e6;
    state.SetLabel(best.count() * 1e3 < TickMilliseconds ? "within limit" : "OVER LIMIT");
}
BENCHMARK(tickOfTasksAtRest)->Arg(100)->Apply(paravue::bench::applyPaired);

} // namespace
