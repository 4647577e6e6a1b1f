// Searching a large window, and the list of many changes.

#include "GeneratedForm.h"
#include "PairedRatio.h"
#include "ProcessorTime.h"

#include "store/OrbSetup.h"
#include "ui/CWinMain.h"

#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QLineEdit>
#include <QSettings>
#include <QShortcut>
#include <QTemporaryDir>
#include <QTimer>

#include <functional>
#include <memory>
#include <stdexcept>

namespace
{

using paravue::bench::Seconds;

/// A window on a local store that tracks changes, with files of these texts.
class TrackedWindow
{
public:
    TrackedWindow(const QByteArray &description, const QByteArray &values)
    {
        write("interface", description);
        write("values", values);
        write("values.original", values); // as of what a recorder has sent
        m_window = std::make_unique<CWinMain>(&m_store, nullptr, CWinMain::Placement::Window,
                                              paravue::WindowOptions{.tracksChanges = true});
    }

    OrbSetup &store() { return m_store; }
    QString path(const QString &name) const { return m_folder.filePath(name); }

    /// Opens the dialog that these keys open, and runs \a work in it once it is shown.
    void inDialog(const QKeySequence &keys, const std::function<void(QDialog &)> &work)
    {
        QTimer::singleShot(0, m_window.get(), [&work] {
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            QCoreApplication::processEvents();
            work(*dialog);
            dialog->close();
        });
        for (QShortcut *shortcut : m_window->findChildren<QShortcut *>()) {
            if (shortcut->key() == keys)
                return Q_EMIT shortcut->activated();
        }
        throw std::runtime_error("nothing has these keys");
    }

private:
    void write(const QString &name, const QByteArray &text)
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            throw std::runtime_error("cannot write the files");
        m_store.setFilePath(name, file.fileName());
    }

    QTemporaryDir m_folder;
    OrbSetup m_store;
    std::unique_ptr<CWinMain> m_window;
};

/// Each key of a query, until what was found is painted.
void findAmongControls(benchmark::State &state)
{
    const GeneratedForm form(int(state.range(0)));
    TrackedWindow window(form.description(), form.values());
    Seconds longest{};
    for (auto _ : state) {
        window.inDialog(QKeySequence::Find, [&](QDialog &dialog) {
            auto *query = dialog.findChild<QLineEdit *>();
            for (const QString &text : {QString("v"), QString("va"), QString("val"), QString("value 19"),
                                        QString("value 19 high"), QString("value 19 hig nothing")}) {
                longest = std::max(longest, paravue::bench::processorTime([&] {
                                       query->setText(text);
                                       QCoreApplication::processEvents();
                                   }));
            }
        });
    }
    constexpr double FrameMs = 16;
    state.counters["longest_ms"] = longest.count() * 1000;
    state.SetLabel(longest.count() * 1000 <= FrameMs ? "within limit" : "OVER LIMIT");
}
BENCHMARK(findAmongControls)->Arg(10'000)->Iterations(3)->Unit(benchmark::kMillisecond);

/// 1,000 changes among 100,000 values, half of them of controls, from the request to the shown list, beside
/// QSettings, which only parses the file.
void listChanges(benchmark::State &state)
{
    constexpr int Values = 100'000;
    constexpr int Rows = 500; // with five controls and four values each
    constexpr int Others = Values - 4 * Rows;
    const GeneratedForm form(5 * Rows);
    QByteArray values = "[untitled]\r\n" + form.values();
    for (int i = 0; i < Others; ++i)
        values += "KEY" + QByteArray::number(i) + "='Value number " + QByteArray::number(i) + "'\r\n";
    TrackedWindow window(form.description(), values);
    for (int row = 0; row < Rows; ++row) {
        window.store().setValue(QStringLiteral("values/untitled/TEXT%1/changed").arg(row));
        window.store().setValue(QStringLiteral("values/untitled/KEY%1/changed").arg(row * (Others / Rows)));
    }
    const auto list = [&] {
        const auto start = std::chrono::steady_clock::now();
        Seconds elapsed{};
        window.inDialog(QKeySequence(Qt::CTRL | Qt::Key_R),
                        [&](QDialog &) { elapsed = std::chrono::steady_clock::now() - start; });
        return elapsed;
    };
    const auto parse = [&] {
        QSettings settings(window.path("values"), QSettings::IniFormat);
        benchmark::DoNotOptimize(settings.value("untitled/KEY1").toString());
    };
    paravue::bench::pairedRatio(state, list, parse, {.limit = 1.0 / 3});
}
BENCHMARK(listChanges)->Apply(paravue::bench::applyPaired);

} // namespace
