// From the description file to the loaded, bound and shown window, beside code that creates the same widgets
// by hand and beside QUiLoader.

#include "GeneratedForm.h"
#include "HandWrittenForm.h"
#include "PairedRatio.h"

#include "store/OrbSetup.h"
#include "ui/CWinMain.h"

#include <QCoreApplication>
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QUiLoader>
#include <QWindow>

#include <memory>
#include <stdexcept>

namespace
{

using paravue::bench::Seconds;

/// The files of one form on the disk.
class FormFiles
{
public:
    explicit FormFiles(int controls) : form(controls)
    {
        write("interface", form.description());
        write("values", form.values());
        write("form.ui", form.designerFile());
    }

    QString path(const QString &name) const { return m_folder.filePath(name); }

    const GeneratedForm form;

private:
    void write(const QString &name, const QByteArray &text)
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            throw std::runtime_error("cannot write the form's files");
    }

    QTemporaryDir m_folder;
};

void waitUntilShown(QWidget &window)
{
    while (!window.windowHandle() || !window.windowHandle()->isExposed())
        QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

/// A setup window on a local store.
struct SetupForm {
    explicit SetupForm(const FormFiles &files, const paravue::WindowOptions &options = {})
    {
        store.setFilePath("interface", files.path("interface"));
        store.setFilePath("values", files.path("values"));
        window = std::make_unique<CWinMain>(&store, nullptr, CWinMain::Placement::Window, options);
        waitUntilShown(*window);
    }

    OrbSetup store;
    std::unique_ptr<CWinMain> window;
};

template <typename Make>
Seconds timeToShow(Make make)
{
    const auto start = std::chrono::steady_clock::now();
    const auto shown = make();
    const Seconds elapsed = std::chrono::steady_clock::now() - start;
    return elapsed; // taken down outside the measured time
}

Seconds showSetupForm(const FormFiles &files)
{
    return timeToShow([&] { return std::make_unique<SetupForm>(files); });
}

std::unique_ptr<HandWrittenForm> shownHandWrittenForm(const FormFiles &files)
{
    auto form = std::make_unique<HandWrittenForm>(files.form);
    form->resize(840, 600);
    form->show();
    waitUntilShown(*form);
    return form;
}

Seconds showHandWrittenForm(const FormFiles &files)
{
    return timeToShow([&] { return shownHandWrittenForm(files); });
}

Seconds showDesignerForm(const FormFiles &files)
{
    return timeToShow([&] {
        QFile file(files.path("form.ui"));
        file.open(QIODevice::ReadOnly);
        std::unique_ptr<QWidget> form(QUiLoader().load(&file));
        form->resize(840, 600);
        form->show();
        waitUntilShown(*form);
        return form;
    });
}

void besideHandWrittenCode(benchmark::State &state)
{
    const FormFiles files(int(state.range(0)));
    paravue::bench::pairedRatio(
        state, [&] { return showSetupForm(files); }, [&] { return showHandWrittenForm(files); },
        {.limit = 1.4});
}
BENCHMARK(besideHandWrittenCode)->Arg(100)->Arg(1000)->Arg(10'000)->Apply(paravue::bench::applyPaired);

void besideTheDesignerLoader(benchmark::State &state)
{
    const FormFiles files(int(state.range(0)));
    paravue::bench::pairedRatio(
        state, [&] { return showSetupForm(files); }, [&] { return showDesignerForm(files); },
        {.limit = state.range(0) >= 1000 ? 0.9 : 0});
}
BENCHMARK(besideTheDesignerLoader)->Arg(100)->Arg(1000)->Arg(10'000)->Apply(paravue::bench::applyPaired);

/// 10,000 controls beside 1,000, per control.
void growthPerControl(benchmark::State &state)
{
    const FormFiles large(10'000);
    const FormFiles small(1000);
    paravue::bench::pairedRatio(
        state, [&] { return showSetupForm(large); }, [&] { return showSetupForm(small); },
        {.limit = 1.3, .ourUnits = 10'000, .peerUnits = 1000});
}
BENCHMARK(growthPerControl)->Apply(paravue::bench::applyPaired);

/// The pages of an open window are built again, as after the recorder has sent another description.
void rebuild(benchmark::State &state)
{
    const FormFiles files(10'000);
    SetupForm form(files);
    const auto changeDescription = [&] {
        QFile file(files.path("interface"));
        if (!file.open(QIODevice::Append) || file.write("<!-- -->") < 0)
            throw std::runtime_error("cannot change the description");
    };
    paravue::bench::pairedRatio(
        state,
        [&] {
            changeDescription();
            const auto start = std::chrono::steady_clock::now();
            Q_EMIT form.store.loadDone();
            return Seconds(std::chrono::steady_clock::now() - start);
        },
        [&] { return showSetupForm(files); }, {.limit = 2});
}
BENCHMARK(rebuild)->Apply(paravue::bench::applyPaired);

template <typename Make>
Seconds timeToClose(Make make)
{
    auto shown = make();
    const auto start = std::chrono::steady_clock::now();
    shown.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return std::chrono::steady_clock::now() - start;
}

void closeBesideHandWrittenCode(benchmark::State &state)
{
    const FormFiles files(int(state.range(0)));
    paravue::bench::pairedRatio(
        state,
        [&] {
            SetupForm form(files);
            return timeToClose([&] { return std::move(form.window); });
        },
        [&] { return timeToClose([&] { return shownHandWrittenForm(files); }); }, {.limit = 3.5});
}
BENCHMARK(closeBesideHandWrittenCode)->Arg(100)->Arg(1000)->Arg(10'000)->Apply(paravue::bench::applyPaired);

/// So few that they stay in the caches, which those of 10,000 controls do not, whoever edits them.
constexpr int FewFields = 20;

QList<QLineEdit *> fieldsOf(const SetupForm &form)
{
    QList<QLineEdit *> fields = form.window->findChildren<QLineEdit *>();
    fields.removeIf([](const QLineEdit *field) { return !field->accessibleName().startsWith("link"); });
    return fields;
}

/// Edits in fields all over the form, each of which writes its value and reloads the label that shows it.
Seconds editOften(const QList<QLineEdit *> &fields)
{
    constexpr int Edits = 1000;
    constexpr int Stride = 7;
    static int run = 0;
    QStringList texts;
    ++run;
    for (int i = 0; i < Edits; ++i)
        texts << QString::number(run * Edits + i);
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < Edits; ++i)
        fields[i * Stride % fields.size()]->setText(texts[i]);
    return std::chrono::steady_clock::now() - start;
}

void editBesideHandWrittenCode(benchmark::State &state)
{
    const FormFiles files(int(state.range(0)));
    SetupForm form(files);
    const auto handWritten = shownHandWrittenForm(files);
    handWritten->bindTexts();
    const QList<QLineEdit *> ours = fieldsOf(form);
    paravue::bench::pairedRatio(
        state, [&] { return editOften(ours); }, [&] { return editOften(handWritten->fields()); },
        {.limit = 4});
}
BENCHMARK(editBesideHandWrittenCode)->Arg(100)->Arg(1000)->Arg(10'000)->Apply(paravue::bench::applyPaired);

void editInALargeWindow(benchmark::State &state)
{
    const FormFiles largeFiles(int(state.range(0)));
    const FormFiles smallFiles(100);
    const SetupForm large(largeFiles);
    const SetupForm small(smallFiles);
    const QList<QLineEdit *> ofSmall = fieldsOf(small).first(FewFields);
    const QList<QLineEdit *> ofLarge = fieldsOf(large).first(FewFields);
    paravue::bench::pairedRatio(
        state, [&] { return editOften(ofLarge); }, [&] { return editOften(ofSmall); }, {.limit = 1.3});
}
BENCHMARK(editInALargeWindow)->Arg(1000)->Arg(10'000)->Apply(paravue::bench::applyPaired);

const paravue::WindowOptions Tracking{.tracksChanges = true};

void openTracked(benchmark::State &state)
{
    const FormFiles files(10'000);
    paravue::bench::pairedRatio(
        state, [&] { return timeToShow([&] { return std::make_unique<SetupForm>(files, Tracking); }); },
        [&] { return showSetupForm(files); }, {.limit = 1.03});
}
BENCHMARK(openTracked)->Apply(paravue::bench::applyPaired);

void editTracked(benchmark::State &state)
{
    const FormFiles files(10'000);
    const SetupForm tracked(files, Tracking);
    const SetupForm plain(files);
    const QList<QLineEdit *> ofTracked = fieldsOf(tracked).first(FewFields);
    const QList<QLineEdit *> ofPlain = fieldsOf(plain).first(FewFields);
    paravue::bench::pairedRatio(
        state, [&] { return editOften(ofTracked); }, [&] { return editOften(ofPlain); }, {.limit = 1.3});
}
BENCHMARK(editTracked)->Apply(paravue::bench::applyPaired);

/// The same as it is typed: one field again and again.
void typeTracked(benchmark::State &state)
{
    const FormFiles files(10'000);
    const SetupForm tracked(files, Tracking);
    const SetupForm plain(files);
    const QList<QLineEdit *> ofTracked = fieldsOf(tracked).first(1);
    const QList<QLineEdit *> ofPlain = fieldsOf(plain).first(1);
    paravue::bench::pairedRatio(
        state, [&] { return editOften(ofTracked); }, [&] { return editOften(ofPlain); }, {.limit = 1.2});
}
BENCHMARK(typeTracked)->Apply(paravue::bench::applyPaired);

} // namespace
