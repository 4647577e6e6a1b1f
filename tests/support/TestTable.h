#pragma once

#include <QTest>

namespace paravue::test
{

/// The columns of a data-driven test, and its rows: TestTable<int, QString> row("number", "text"); and then
/// row("one", 1, "I");
template <typename... Values>
class TestTable
{
public:
    template <typename... Names>
    explicit TestTable(Names... columns)
    {
        (QTest::addColumn<Values>(columns), ...);
    }

    void operator()(const char *row, const Values &...values) const { (QTest::newRow(row) << ... << values); }
};

} // namespace paravue::test
