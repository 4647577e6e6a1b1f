// The check of a description without a window: what it costs per control however many there are, and how it
// stands to the mere reading of the document.

#include "GeneratedForm.h"
#include "PairedRatio.h"

#include "check/DescriptionCheck.h"

#include <QDomDocument>
#include <QFile>
#include <QTemporaryDir>

#include <stdexcept>

namespace
{

/// A description on the disk, and the file that its addresses are about.
class DescribedForm
{
public:
    explicit DescribedForm(int controls)
    {
        const GeneratedForm form(controls);
        write("described", form.description().replace("values/", "streams/"));
        write("streams", form.values());
    }

    QString path() const { return m_folder.filePath("described"); }

    void check() const { benchmark::DoNotOptimize(paravue::checkDescription(path(), m_folder.path())); }

    void read() const
    {
        QFile file(path());
        QDomDocument document;
        if (!file.open(QIODevice::ReadOnly) || !document.setContent(file.readAll()))
            throw std::runtime_error("cannot read the description");
    }

private:
    void write(const QString &name, const QByteArray &text)
    {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            throw std::runtime_error("cannot write the description");
    }

    QTemporaryDir m_folder;
};

/// Time per control beside a description of 1,000.
void checkPerControl(benchmark::State &state)
{
    const DescribedForm large(int(state.range(0)));
    const DescribedForm small(1000);
    paravue::bench::pairedRatio(
        state, [&] { large.check(); }, [&] { small.check(); },
        {.limit = 2, .ourUnits = double(state.range(0)), .peerUnits = 1000});
}
BENCHMARK(checkPerControl)->Arg(10'000)->Apply(paravue::bench::applyPaired);

/// Beside QDomDocument, which builds the same tree and looks at nothing.
void checkBesideReading(benchmark::State &state)
{
    const DescribedForm form(10'000);
    paravue::bench::pairedRatio(
        state, [&] { form.check(); }, [&] { form.read(); }, {.limit = 4});
}
BENCHMARK(checkBesideReading)->Apply(paravue::bench::applyPaired);

} // namespace

BENCHMARK_MAIN();
