#include "DebFile.h"

#include "recorder/files/DebPackage.h"
#include "support/TestTable.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <archive.h>

using namespace paravue::test;
using recorder::DebPackage;
using recorder::readDebPackage;

namespace
{

const QByteArray Control = "Package: thermo-probe\nVersion: 0.9-2\nArchitecture: all\n"
                           "Maintainer: Nobody <nobody@example.net>\nDescription: Reads probes\n and more\n";
constexpr qsizetype MaxControlData = 1024 * 1024;

QByteArray package(const QByteArray &controlName, const QByteArray &controlData)
{
    return arArchive({{"debian-binary", "2.0\n"}, {controlName, controlData}, {"data.tar.xz", "?"}});
}

QByteArray flipped(QByteArray bytes, qsizetype index)
{
    bytes[index < 0 ? bytes.size() + index : index] ^= 1;
    return bytes;
}

struct Compression {
    QByteArray name; ///< as dpkg-deb knows it
    QByteArray suffix;
    int filter;
};

QList<Compression> compressions()
{
    return {{"gzip", ".gz", ARCHIVE_FILTER_GZIP},
            {"xz", ".xz", ARCHIVE_FILTER_XZ},
            {"zstd", ".zst", ARCHIVE_FILTER_ZSTD}};
}

/// A tar archive of this size, with a control file before the data that fills it.
QByteArray tarOfSize(qsizetype size)
{
    const qsizetype others = tarArchive({{"./control", Control}, {"./filler", {}}}).size();
    return tarArchive({{"./control", Control}, {"./filler", QByteArray(size - others, '\0')}});
}

} // namespace

class TestRecorderPackages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsPackagesOfDpkgDeb_data();
    void readsPackagesOfDpkgDeb();
    void readsControlData_data();
    void readsControlData();
    void refusesDamagedControlData_data();
    void refusesDamagedControlData();
    void refusesFile_data();
    void refusesFile();
};

void TestRecorderPackages::readsPackagesOfDpkgDeb_data()
{
    const TestTable<QByteArray> row("compression");
    for (const Compression &compression : compressions())
        row(compression.name, compression.name);
    row("none", "none");
}

void TestRecorderPackages::readsPackagesOfDpkgDeb()
{
    QFETCH(QByteArray, compression);
    if (QStandardPaths::findExecutable("dpkg-deb").isEmpty())
        QSKIP("there is no dpkg-deb on this computer");
    const QTemporaryDir folder;
    const QString controlFolder = folder.filePath("tree/DEBIAN");
    QVERIFY(QDir().mkpath(controlFolder));
    // dpkg-deb wants it readable for everybody, whatever the umask.
    QVERIFY(QFile::setPermissions(controlFolder, QFile::Permissions(0x7755)));
    QFile control(controlFolder + "/control");
    QVERIFY(control.open(QIODevice::WriteOnly) && control.write(Control) > 0);
    control.close();
    QFile file(folder.filePath("probe.deb"));
    QProcess dpkg;
    dpkg.start("dpkg-deb", {"-Z" + compression, "-b", folder.filePath("tree"), file.fileName()});
    QVERIFY(dpkg.waitForFinished());
    QVERIFY2(dpkg.exitCode() == 0, dpkg.readAllStandardError());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    const DebPackage package = readDebPackage(bytes);
    QCOMPARE(package.fault, QString());
    QCOMPARE(package.name, "thermo-probe");
    QCOMPARE(package.version, "0.9-2");
    QCOMPARE(package.description, "Reads probes");
    QCOMPARE(package.priority, "optional");
    // Cut within the control data.
    const qsizetype controlStart = bytes.indexOf("control.tar");
    QCOMPARE(readDebPackage(bytes.first(controlStart + 100)).fault, "the package is incomplete");
}

void TestRecorderPackages::readsControlData_data()
{
    const TestTable<QByteArray, QByteArray> row("name", "data");
    row("large but plain", "control.tar", tarOfSize(2 * MaxControlData));
    row("without the folder", "control.tar", tarArchive({{"md5sums", "?"}, {"control", Control}}));
    for (const Compression &compression : compressions())
        row(compression.name + " of the largest size", "control.tar" + compression.suffix,
            compressed(tarOfSize(MaxControlData), compression.filter));
}

void TestRecorderPackages::readsControlData()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, data);
    const DebPackage read = readDebPackage(package(name, data));
    QCOMPARE(read.fault, QString());
    QCOMPARE(read.name, "thermo-probe");
}

void TestRecorderPackages::refusesDamagedControlData_data()
{
    const TestTable<QByteArray, QByteArray> row("name", "data");
    const QByteArray tar = tarArchive({{"./control", Control}});
    row("empty", "control.tar", "");
    row("wrong checksum", "control.tar", flipped(tar, 150));
    row("cut", "control.tar", tar.first(600));
    row("no control file", "control.tar", tarArchive({{"./contrxl", Control}}));
    row("too large a control file", "control.tar",
        tarArchive({{"./control", Control + QByteArray(MaxControlData, 'x')}}));
    for (const Compression &compression : compressions()) {
        const QByteArray name = "control.tar" + compression.suffix;
        const QByteArray data = compressed(tar, compression.filter);
        row(compression.name + " cut", name, data.chopped(9));
        row(compression.name + " with a wrong header", name, flipped(data, 1));
        row(compression.name + " with a wrong end", name, flipped(data, -6));
        row(compression.name + " beyond the limit", name,
            compressed(tarOfSize(MaxControlData + 512), compression.filter));
    }
    row("compressed twice", "control.tar.xz",
        compressed(compressed(tar, ARCHIVE_FILTER_ZSTD), ARCHIVE_FILTER_XZ));
}

void TestRecorderPackages::refusesDamagedControlData()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, data);
    QCOMPARE(readDebPackage(package(name, data)).fault, "the control data of the package is damaged");
}

void TestRecorderPackages::refusesFile_data()
{
    const TestTable<QByteArray, QString> row("file", "fault");
    const QByteArray tar = tarArchive({{"./control", Control}});
    row("empty", "", "this is no package");
    row("text", "hello", "this is no package");
    row("archive of something else", arArchive({{"main.o", "?"}}), "this is no package");
    row("format of the future", debFile(Control).replace("2.0\n", "3.0\n"),
        "the format of the package is unknown");
    row("member of another name", package("control.xz", tar), "the package has no control data");
    row("without files", arArchive({{"debian-binary", "2.0\n"}, {"control.tar", tar}}),
        "the package is incomplete");
    row("cut", debFile(Control).chopped(40), "the package is incomplete");
    row("size beyond the end", debFile(Control).replace("2560      `", "9999999999`"),
        "the package is incomplete");
    row("unknown compression", package("control.tar.bz2", compressed(tar, ARCHIVE_FILTER_BZIP2)),
        "the control data of the package is not packed with gzip");
    row("no name", debFile("Version: 1\n"), "the package has no proper name");
    row("wrong version", debFile("Package: ab\nVersion: a'b\n"), "the package has no proper version");
}

void TestRecorderPackages::refusesFile()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, fault);
    QCOMPARE(readDebPackage(file).fault, fault);
}

QTEST_GUILESS_MAIN(TestRecorderPackages)
#include "tst_recorder_packages.moc"
