// The setup window of a description that has more of one kind of control than a window may hold: how long the
// longest turn of the event loop takes, in which the window does not answer, and how much memory it needs. A
// turn is measured in processor time, so that a busy machine gives the same.

#include "ProcessorTime.h"

#include "store/OrbSetup.h"
#include "ui/CWinMain.h"
#include "ui/types/ControlTypes.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>
#include <malloc.h>

namespace
{

constexpr int DescribedItems = 20'000;
constexpr int Columns = 100;
constexpr double LongestTurnMs = 1000;
constexpr double MostMiB = 256;

/// The items stand on one page, as a grid of many rows, or on pages of ten rows.
QByteArray describe(const QByteArray &attributes, bool onOnePage)
{
    const int rowsPerPage = onOnePage ? DescribedItems : 10;
    QByteArray text = "<pvsetup version='1.0'><tabwidget>";
    for (int i = 0; i < DescribedItems; ++i) {
        const int row = i / Columns % rowsPerPage;
        const int column = i % Columns;
        if (row == 0 && column == 0)
            text += i == 0 ? "<tab><name>P</name><item type='gridlayout'>"
                           : "</item></tab><tab><name>P</name><item type='gridlayout'>";
        text += "<item " + attributes + " row='" + QByteArray::number(row) + "' column='" +
                QByteArray::number(column) + "'/>";
    }
    return text + "</item></tab></tabwidget></pvsetup>";
}

double allocatedMiB()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks + info.hblkhd) / (1024 * 1024);
}

class LongestTurn
{
public:
    template <typename Work>
    void measure(Work work)
    {
        const std::chrono::duration<double, std::milli> elapsed = paravue::bench::processorTime(work);
        m_milliseconds = std::max(m_milliseconds, elapsed.count());
    }
    double milliseconds() const { return m_milliseconds; }

private:
    double m_milliseconds = 0;
};

void fullWindow(benchmark::State &state, const QByteArray &attributes, bool onOnePage)
{
    QTemporaryDir folder;
    QFile file(folder.filePath("interface"));
    const QByteArray description = describe(attributes, onOnePage);
    if (!file.open(QIODevice::WriteOnly) || file.write(description) != description.size() || !file.flush())
        throw std::runtime_error("cannot write the description");
    LongestTurn longest;
    double usedMiB = 0;
    for (auto _ : state) {
        const double before = allocatedMiB();
        OrbSetup store;
        store.setFilePath("interface", file.fileName());
        std::unique_ptr<CWinMain> window;
        longest.measure([&] { window = std::make_unique<CWinMain>(&store, nullptr); });
        longest.measure([] { QCoreApplication::processEvents(); });
        while (!window->windowHandle()->isExposed())
            longest.measure([] { QCoreApplication::processEvents(); });
        longest.measure([&] {
            window->resize(1900, 1000);
            QCoreApplication::processEvents();
        });
        usedMiB = std::max(usedMiB, allocatedMiB() - before);
        longest.measure([&] { window.reset(); });
    }
    state.counters["longest_ms"] = longest.milliseconds();
    state.counters["MiB"] = usedMiB;
    const bool isWithin = longest.milliseconds() <= LongestTurnMs && usedMiB <= MostMiB;
    state.SetLabel(isWithin ? "within limit" : "OVER LIMIT");
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    // The message that says what was left out waits for an answer.
    QTimer answers;
    QObject::connect(&answers, &QTimer::timeout, &answers, [] {
        if (QWidget *message = QApplication::activeModalWidget(); message && message->inherits("QMessageBox"))
            message->close();
    });
    answers.start(1);
    const auto add = [](const QString &type, const QByteArray &attributes, const std::string &size) {
        for (const bool onOnePage : {true, false}) {
            const std::string name = "fullWindow/" + type.toStdString() + size;
            benchmark::RegisterBenchmark((name + (onOnePage ? "/one_page" : "/pages")).c_str(), fullWindow,
                                         "type='" + type.toUtf8() + '\'' + attributes, onOnePage)
                ->Iterations(1)
                ->Unit(benchmark::kMillisecond);
        }
    };
    paravue::forEachControlType([&add](const QString &type, const auto &) { add(type, {}, ""); });
    add("maskctrl", " ctrlColumns='128' ctrlRows='128'", "_largest");
    add("PTZAlarm", " ctrlColumns='128' ctrlRows='128'", "_largest");
    add("PTZCalibrator", " points='64'", "_largest");
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
