#include "controls/cDiskFitness.h"

#include <QTest>

class TestDiskFitness : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void estimates_data();
    void estimates();
    void drawsTheFigure();
};

namespace
{

/// The line of an attribute as smartctl lists it.
QByteArray line(const char *name, const char *value, const char *threshold, const char *raw)
{
    return QByteArray(name).leftJustified(28) + "0x0033   " + value + "   " + value + "   " + threshold +
           "    Old_age   Always       -       " + raw + "\n";
}

QByteArray age(const char *hours, const char *value = "100")
{
    return line("  9 Power_On_Hours", value, "000", hours);
}

QByteArray sectors(const char *raw, const char *threshold = "036")
{
    return line("  5 Reallocated_Sector_Ct", "100", threshold, raw);
}

} // namespace

void TestDiskFitness::estimates_data()
{
    QTest::addColumn<QByteArray>("report");
    QTest::addColumn<QList<int>>("figures"); // health, hours, their value, sectors, their threshold

    const auto row = [](const char *name, const QByteArray &report, const QList<int> &figures) {
        QTest::newRow(name) << report << figures;
    };
    const QByteArray head = "ID# ATTRIBUTE_NAME          FLAG     VALUE WORST THRESH TYPE\n";
    const QByteArray usual = head + sectors("0") + age("1500");
    row("no report", "", {0, 0, 0, 0, 0});
    row("by its age", usual, {90, 1500, 100, 0, 36});
    row("escaped line feeds", QByteArray(usual).replace("\n", "\\n"), {90, 1500, 100, 0, 36});
    row("carriage returns", QByteArray(usual).replace("\n", "\r\n"), {90, 1500, 100, 0, 36});
    row("no line feed at the end", usual.chopped(1), {90, 1500, 100, 0, 36});
    row("the first of two lines", usual + age("9000"), {90, 1500, 100, 0, 36});
    row("hours beyond the life of a disk", sectors("0") + age("30000"), {0, 30000, 100, 0, 36});
    row("by its value", sectors("0") + age("149", "042"), {42, 149, 42, 0, 36});
    row("by its sectors", sectors("18") + age("0"), {50, 0, 100, 18, 36});
    row("no threshold, no sectors", sectors("0", "000") + age("0"), {100, 0, 100, 0, 0});
    row("no threshold, one sector", sectors("1", "---") + age("0"), {0, 0, 100, 1, 0});
    row("raw values that are no numbers", sectors("24 (1 of 3)") + age("2483h+12m"), {100, 0, 100, 0, 36});
    row("the largest numbers", sectors("2147483647", "001") + age("2147483647"),
        {0, 2147483647, 100, 2147483647, 1});
    row("numbers beyond", sectors("2147483648") + age("99999999999"), {100, 0, 100, 0, 36});
    row("negative numbers", sectors("-72") + age("-30000", "253"), {100, -30000, 253, -72, 36});
    // The columns of an absent line begin one before the text: " 10" of the value 100.
    row("no line of the age", sectors("7"), {10, 7, 10, 7, 36});
    row("no line of the sectors", age("0", "095"), {95, 0, 95, 0, 0});
    row("cut in the name's line", "  9 Power_On_Hours", {0, 0, 0, 0, 0});
    row("another text", "\\n\\\n", {0, 0, 0, 0, 0});
}

void TestDiskFitness::estimates()
{
    QFETCH(QByteArray, report);
    const cDiskFitness disk(nullptr, QString::fromLatin1(report));
    const QList<int> figures{disk.healthPercent, disk.powerOnHours, disk.powerOnValue, disk.reallocatedRaw,
                             disk.reallocatedThreshold};
    QTEST(figures, "figures");
}

void TestDiskFitness::drawsTheFigure()
{
    QWidget parent;
    auto *good = new cDiskFitness(&parent, sectors("0") + age("1500"));
    auto *bad = new cDiskFitness(&parent, sectors("0") + age("14000"));
    QVERIFY(good->isGood() && !bad->isGood());
    for (cDiskFitness *disk : {good, bad})
        disk->resize(disk->sizeHint());
    QVERIFY(good->grab().toImage() != bad->grab().toImage());
}

QTEST_MAIN(TestDiskFitness)
#include "tst_disk_fitness.moc"
