#include "PairedRatio.h"
#include "PlainIni.h"

#include "store/IniEntries.h"
#include "store/OrbSettings.h"
#include "store/OrbSetup.h"

#include <QFile>
#include <QHash>
#include <QRandomGenerator>
#include <QSettings>
#include <QTemporaryDir>

#define SI_NO_CONVERSION // of plain text, to other types of characters
#include <SimpleIni.h>
#include <ini.h>

#include <malloc.h>
#include <map>
#include <string>
#include <unordered_map>

// The configuration store beside QSettings and other parsers, on the same files.

namespace
{

using paravue::bench::applyPaired;
using paravue::bench::pairedRatio;
using paravue::bench::Seconds;

constexpr qsizetype Small = 4 << 10;
constexpr qsizetype Medium = 64 << 10;
constexpr qsizetype Large = 8 << 20;

constexpr int KeysPerSection = 20;
constexpr int Edits = 100;

/// A recorder's configuration file of about a given size.
struct SampleFile {
    QByteArray text;
    QStringList keys;                                           ///< "section/key"
    std::vector<std::pair<std::string, std::string>> plainKeys; ///< section and name of each
    int lines = 0;
};

/// With other quotes than those that are written, every line of a key is written anew.
SampleFile makeSample(qsizetype size, bool hasOtherQuotes)
{
    static const QByteArray words[] = {"'Camera at the north gate'", "enabled", "'192.168.0.64'", "1920x1080",
                                       "'rtsp://10.0.0.7/live'"};
    static const QByteArray quoted[] = {"\"Camera at the north gate\"", "\"enabled\"", "\"192.168.0.64\"",
                                        "\"1920x1080\"", "\"rtsp://10.0.0.7/live\""};
    SampleFile sample;
    QRandomGenerator random(7);
    QByteArray section;
    for (int i = 0; sample.text.size() < size; ++i) {
        if (i % KeysPerSection == 0) {
            section = "Channel" + QByteArray::number(i / KeysPerSection);
            sample.text += "; settings of one channel\r\n[ " + section + " ]\r\n";
            sample.lines += 2;
        }
        const QByteArray name = "PARAMETER_" + QByteArray::number(i % KeysPerSection);
        const QByteArray number = QByteArray::number(random.bounded(100'000));
        const QByteArray value = i % 2 == 1       ? (hasOtherQuotes ? quoted : words)[random.bounded(5)]
                                 : hasOtherQuotes ? '"' + number + '"'
                                                  : number;
        sample.text += name + " = " + value + "\r\n";
        sample.keys << QString::fromLatin1(section + '/' + name);
        sample.plainKeys.emplace_back(section.toStdString(), name.toStdString());
        ++sample.lines;
    }
    return sample;
}

const SampleFile &sampleOf(qsizetype size, bool hasOtherQuotes = false)
{
    static std::map<std::pair<qsizetype, bool>, SampleFile> samples;
    const std::pair kind(size, hasOtherQuotes);
    auto found = samples.find(kind);
    if (found == samples.end())
        found = samples.emplace(kind, makeSample(size, hasOtherQuotes)).first;
    return found->second;
}

/// Gives every run a file of its own: QSettings keeps what it has parsed for a path that it has read before.
class FreshFiles
{
public:
    explicit FreshFiles(const QByteArray &text) : m_text(text) {}

    QString next()
    {
        if (!m_path.isEmpty())
            QFile::remove(m_path);
        return another();
    }

    /// Beside those that are there.
    QString another()
    {
        m_path = m_folder.filePath(QStringLiteral("sample%1.ini").arg(++m_count));
        QFile file(m_path);
        if (!file.open(QIODevice::WriteOnly) || file.write(m_text) != m_text.size())
            qFatal("cannot write the sample file");
        return m_path;
    }

private:
    QTemporaryDir m_folder;
    QByteArray m_text;
    QString m_path;
    int m_count = 0;
};

template <typename Work>
Seconds measured(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::steady_clock::now() - start;
}

Seconds parseOurs(FreshFiles &files, const SampleFile &sample)
{
    const QString path = files.next();
    return measured([&] {
        OrbSettings settings(path);
        settings.read();
        benchmark::DoNotOptimize(settings.value(sample.keys.constLast()));
        settings.setPath(QString()); // its destruction writes nothing now
    });
}

Seconds parsePeer(FreshFiles &files, const SampleFile &sample)
{
    const QString path = files.next();
    return measured([&] {
        QSettings settings(path, QSettings::IniFormat);
        settings.childKeys(); // makes it parse every section, not just the one that is asked for
        benchmark::DoNotOptimize(settings.value(sample.keys.constLast()));
    });
}

/// Parses, changes keys all over the file, and writes it by destruction.
template <typename Settings>
void edit(Settings &settings, const SampleFile &sample)
{
    const qsizetype step = qMax<qsizetype>(1, sample.keys.size() / Edits);
    for (int i = 0; i < Edits; ++i)
        settings.setValue(sample.keys.at(i * step % sample.keys.size()), i);
}

Seconds editOurs(FreshFiles &files, const SampleFile &sample)
{
    const QString path = files.next();
    return measured([&] {
        OrbSettings settings(path);
        edit(settings, sample);
    });
}

Seconds editPeer(FreshFiles &files, const SampleFile &sample)
{
    const QString path = files.next();
    return measured([&] {
        QSettings settings(path, QSettings::IniFormat);
        settings.childKeys();
        edit(settings, sample);
    });
}

void parse(benchmark::State &state)
{
    const SampleFile &sample = sampleOf(state.range(0));
    FreshFiles files(sample.text);
    pairedRatio(
        state, [&] { return parseOurs(files, sample); }, [&] { return parsePeer(files, sample); },
        {.limit = 0.6});
}

void parseEditWrite(benchmark::State &state)
{
    const SampleFile &sample = sampleOf(state.range(0));
    FreshFiles files(sample.text);
    pairedRatio(
        state, [&] { return editOurs(files, sample); }, [&] { return editPeer(files, sample); },
        {.limit = 0.25});
}

Seconds parseByHand(FreshFiles &files, const SampleFile &sample)
{
    const std::string path = files.next().toStdString();
    return measured([&] {
        const auto &[section, name] = sample.plainKeys.back();
        const PlainIni ini(path);
        benchmark::DoNotOptimize(*ini.value(section, name));
    });
}

Seconds parseWithSimpleIni(FreshFiles &files, const SampleFile &sample)
{
    const std::string path = files.next().toStdString();
    return measured([&] {
        const auto &[section, name] = sample.plainKeys.back();
        CSimpleIniA ini(true);
        ini.LoadFile(path.c_str());
        benchmark::DoNotOptimize(ini.GetValue(section.c_str(), name.c_str()));
    });
}

Seconds parseWithInih(FreshFiles &files, const SampleFile &sample)
{
    using Values = std::unordered_map<std::string, std::string>;
    const std::string path = files.next().toStdString();
    const std::string key = sample.keys.constLast().toStdString();
    return measured([&] {
        Values values;
        const auto keep = [](void *all, const char *section, const char *name, const char *value) {
            (*static_cast<Values *>(all))[std::string(section) + '/' + name] = value;
            return 1;
        };
        ini_parse(path.c_str(), keep, &values);
        benchmark::DoNotOptimize(values[key]);
    });
}

template <auto peer, int limitPercent>
void parseBeside(benchmark::State &state)
{
    const SampleFile &sample = sampleOf(state.range(0));
    FreshFiles files(sample.text);
    pairedRatio(
        state, [&] { return parseOurs(files, sample); }, [&] { return peer(files, sample); },
        {.limit = limitPercent / 100.0});
}

/// Calls \a set with section, name and value of the keys that edit() changes.
template <typename Set>
void forEachEdit(const SampleFile &sample, Set set)
{
    const qsizetype step = qMax<qsizetype>(1, sample.keys.size() / Edits);
    for (int i = 0; i < Edits; ++i) {
        const auto &[section, name] = sample.plainKeys[size_t(i * step % sample.keys.size())];
        set(section, name, std::to_string(i));
    }
}

Seconds editByHand(FreshFiles &files, const SampleFile &sample)
{
    const std::string path = files.next().toStdString();
    return measured([&] {
        PlainIni ini(path);
        std::vector<std::string> values;
        values.reserve(Edits);
        forEachEdit(sample, [&](const std::string &section, const std::string &name, std::string value) {
            ini.setValue(section, name, values.emplace_back(std::move(value)));
        });
        ini.write(path);
    });
}

Seconds editWithSimpleIni(FreshFiles &files, const SampleFile &sample)
{
    const std::string path = files.next().toStdString();
    return measured([&] {
        CSimpleIniA ini(true);
        ini.LoadFile(path.c_str());
        forEachEdit(sample,
                    [&](const std::string &section, const std::string &name, const std::string &value) {
                        ini.SetValue(section.c_str(), name.c_str(), value.c_str());
                    });
        ini.SaveFile(path.c_str(), false);
    });
}

/// Every key line is written anew.
template <auto peer, int limitPercent>
void rewriteBeside(benchmark::State &state)
{
    const SampleFile &sample = sampleOf(state.range(0), true);
    FreshFiles files(sample.text);
    pairedRatio(
        state, [&] { return editOurs(files, sample); }, [&] { return peer(files, sample); },
        {.limit = limitPercent / 100.0});
}

/// A value with an apostrophe, whose line is no key line when it is written, beside a file without one.
void writeApostrophe(benchmark::State &state)
{
    const SampleFile &sample = sampleOf(state.range(0));
    FreshFiles files(sample.text);
    const auto write = [&](const QString &value) {
        OrbSettings settings(files.next());
        settings.setValue(sample.keys[sample.keys.size() / 2], value);
        return measured([&] { settings.write(); });
    };
    pairedRatio(
        state, [&] { return write("it's"); }, [&] { return write("its"); }, {.limit = 1.8});
}

/// The time per line in a large file beside that in a medium one: cache misses, nothing quadratic.
template <auto work>
void perLine(benchmark::State &state)
{
    const SampleFile &large = sampleOf(Large);
    const SampleFile &medium = sampleOf(Medium);
    FreshFiles largeFiles(large.text);
    FreshFiles mediumFiles(medium.text);
    pairedRatio(
        state, [&] { return work(largeFiles, large); }, [&] { return work(mediumFiles, medium); },
        {.limit = 3, .ourUnits = double(large.lines), .peerUnits = double(medium.lines)});
}

/// The entries of a file beside a QHash of their keys, which KeyIndex is used instead of.
void addKeys(benchmark::State &state)
{
    const SampleFile &sample = sampleOf(state.range(0));
    const auto addToEntries = [&] {
        paravue::IniEntries entries;
        entries.reserve(sample.keys.size());
        for (const QString &key : sample.keys)
            benchmark::DoNotOptimize(entries.numberOf(key));
    };
    const auto addToHash = [&] {
        QStringList entries;
        QHash<QString, quint32> numbers;
        entries.reserve(sample.keys.size());
        numbers.reserve(sample.keys.size());
        for (const QString &key : sample.keys) {
            if (numbers.contains(key))
                continue;
            const QString kept(key.constData(), key.size()); // a key is a part of a line at first
            numbers.insert(kept, quint32(entries.size()));
            entries << kept;
        }
        benchmark::DoNotOptimize(entries.constData());
    };
    pairedRatio(state, addToEntries, addToHash, {.limit = 0.7});
}

/// New keys in a large file: what one costs must not depend on how many there are.
void newKeys(benchmark::State &state)
{
    const SampleFile &sample = sampleOf(Large);
    FreshFiles files(sample.text);
    const auto add = [&](int count) {
        OrbSettings settings(files.next());
        settings.read();
        return measured([&] {
            for (int i = 0; i < count; ++i)
                settings.setValue(QStringLiteral("Channel7/NEW_%1").arg(i), QStringLiteral("it's new"));
            settings.write();
        });
    };
    pairedRatio(
        state, [&] { return add(100'000); }, [&] { return add(10'000); },
        {.limit = 1.5, .ourUnits = 100'000, .peerUnits = 10'000});
}

/// Lines of one name that all cease to be key lines when they are written, with new keys in one place.
void quotedValues(benchmark::State &state)
{
    const auto write = [](int count) {
        QByteArray text;
        for (int i = 0; i < count; ++i)
            text += "[s" + QByteArray::number(i) + "]\na = \"it's\"\n";
        FreshFiles files(text);
        OrbSettings settings(files.next());
        settings.read();
        return measured([&] {
            for (int i = 0; i < count; ++i)
                settings.setValue(QStringLiteral("s7/new%1").arg(i), i % 2 ? "it's" : "its");
            settings.write();
        });
    };
    pairedRatio(
        state, [&] { return write(50'000); }, [&] { return write(5'000); },
        {.limit = 3, .ourUnits = 50'000, .peerUnits = 5'000});
}

/// One value by its whole address, beside a hash of whole addresses.
void lookUp(benchmark::State &state)
{
    const SampleFile &sample = sampleOf(state.range(0));
    FreshFiles files(sample.text);
    const int usedFiles = int(state.range(1));
    OrbSetup store;
    // A session has some twenty files.
    for (int i = 0; i < 20; ++i)
        store.setFilePath(QStringLiteral("file%1").arg(i), i < usedFiles ? files.another() : QString());
    QHash<QString, QString> hash;
    QStringList addresses;
    for (const QString &key : sample.keys) {
        addresses << QStringLiteral("file%1/").arg(addresses.size() % usedFiles) + key;
        hash[addresses.constLast()] = store.value(addresses.constLast());
    }
    for (int i = 0; i < 20; ++i)
        store.value(QStringLiteral("file%1/a/b").arg(i));

    // Strings of their own, as a caller's are: the hash must not get its own keys to compare with.
    for (QString &address : addresses)
        address = QString(address.constData(), address.size());
    QRandomGenerator random(11);
    std::shuffle(addresses.begin(), addresses.end(), random);
    addresses.resize(qMin<qsizetype>(addresses.size(), 20'000));
    const qsizetype rounds = 20'000 / addresses.size();
    const auto all = [&](auto look) {
        for (qsizetype round = 0; round < rounds; ++round) {
            for (const QString &address : std::as_const(addresses))
                benchmark::DoNotOptimize(look(address));
        }
    };
    pairedRatio(
        state, [&] { all([&](const QString &address) { return store.value(address); }); },
        [&] { all([&](const QString &address) { return hash.value(address); }); },
        // Addresses come in runs of one file. From file to file, each is looked for by two hashes.
        {.limit = usedFiles == 1 ? 3.0 : 8.0});
}

double heapInUse()
{
    const auto info = mallinfo2();
    return double(info.uordblks + info.hblkhd);
}

/// What is kept of a file of which every key is available, and once every value was asked for.
void heapPerByte(benchmark::State &state)
{
    constexpr double Limit = 8;
    const SampleFile &sample = sampleOf(state.range(0));
    FreshFiles files(sample.text);
    for (auto _ : state) {
        const QString path = files.next();
        const double before = heapInUse();
        OrbSettings settings(path);
        settings.read();
        const double perByte = (heapInUse() - before) / double(sample.text.size());
        for (const QString &key : sample.keys)
            benchmark::DoNotOptimize(settings.find(key));
        state.counters["bytes"] = perByte;
        state.counters["with_values"] = (heapInUse() - before) / double(sample.text.size());
        state.counters["limit"] = Limit;
        state.SetLabel(perByte <= Limit ? "within limit" : "OVER LIMIT");
        settings.setPath(QString());
    }
}

BENCHMARK(parse)->Arg(Small)->Arg(Medium)->Arg(Large)->Apply(applyPaired);
BENCHMARK(parseEditWrite)->Arg(Small)->Arg(Medium)->Arg(Large)->Apply(applyPaired);
BENCHMARK(parseBeside<parseByHand, 150>)->Arg(Small)->Arg(Medium)->Arg(Large)->Apply(applyPaired);
BENCHMARK(parseBeside<parseWithSimpleIni, 90>)->Arg(Small)->Arg(Medium)->Arg(Large)->Apply(applyPaired);
BENCHMARK(parseBeside<parseWithInih, 0>)->Arg(Small)->Arg(Medium)->Arg(Large)->Apply(applyPaired);
BENCHMARK(rewriteBeside<editByHand, 200>)->Arg(Small)->Arg(Medium)->Arg(Large)->Apply(applyPaired);
BENCHMARK(rewriteBeside<editWithSimpleIni, 50>)->Arg(Small)->Arg(Medium)->Arg(Large)->Apply(applyPaired);
BENCHMARK(rewriteBeside<editPeer, 0>)->Arg(Small)->Arg(Medium)->Arg(Large)->Apply(applyPaired);
BENCHMARK(writeApostrophe)->Arg(Medium)->Apply(applyPaired);
BENCHMARK(perLine<parseOurs>)->Apply(applyPaired);
BENCHMARK(perLine<editOurs>)->Apply(applyPaired);
BENCHMARK(addKeys)->Arg(Small)->Arg(Medium)->Arg(Large)->Apply(applyPaired);
BENCHMARK(newKeys)->Apply(applyPaired);
BENCHMARK(quotedValues)->Apply(applyPaired);
BENCHMARK(heapPerByte)->Arg(Small)->Arg(Medium)->Arg(Large)->Iterations(2);
BENCHMARK(lookUp)->ArgsProduct({{Small, Medium, Large}, {1}})->Args({Small, 20})->Apply(applyPaired);

} // namespace

BENCHMARK_MAIN();
