// One list of rows: which indexes it gives, what next follows, and what a walk costs.
#include "host/tables/row_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

namespace kobd::test
{
using namespace host;

namespace
{
constexpr size_t kRowSize = 64;

std::vector<int32_t> Walk(RowList* list)
{
    std::vector<int32_t> indexes;
    for (const Row* row = list->Next(kBeforeFirst); row != nullptr; row = list->Next(IndexOf(*row)))
        indexes.push_back(IndexOf(*row));
    return indexes;
}

double WalkSeconds(int rows)
{
    RowList list(kRowSize, static_cast<size_t>(rows));
    int32_t index = 0;
    while (list.Add(&index) == 0) continue;
    double best = 1;
    for (int run = 0; run < 5; ++run)
    {
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_EQ(Walk(&list).size(), static_cast<size_t>(rows));
        best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
    }
    return best;
}
}  // namespace

TEST(RowList, IndexOfADeletedRowIsNotGivenAgain)
{
    RowList list(kRowSize, 3);
    int32_t index = 0;
    for (const int32_t expected : {1, 2, 3})
    {
        ASSERT_EQ(list.Add(&index), 0);
        EXPECT_EQ(index, expected);
    }
    index = 77;
    EXPECT_EQ(list.Add(&index), kTableFull);
    EXPECT_EQ(index, 77) << "nothing was added, no index is told";
    for (const int32_t deleted : {3, 1})
    {
        EXPECT_EQ(list.Del(deleted), 0);
        EXPECT_EQ(list.Del(deleted), kIndexNotFound);
        ASSERT_EQ(list.Add(&index), 0);
        EXPECT_EQ(index, list.LastIndex());
    }
    EXPECT_EQ(Walk(&list), (std::vector<int32_t>{2, 4, 5}));
}

TEST(RowList, NoIndexIsLeft)
{
    RowList list(kRowSize, 3);
    int32_t index = 0;
    list.RaiseLastIndex(INT32_MAX - 1);
    EXPECT_EQ(list.Add(&index), 0);
    EXPECT_EQ(index, INT32_MAX);
    EXPECT_EQ(list.Del(index), 0);
    EXPECT_EQ(list.Add(&index), kTableFull) << "rather than an index for the second time";
    list.RaiseLastIndex(5);
    EXPECT_EQ(list.LastIndex(), INT32_MAX) << "never lowered";
}

TEST(RowList, FindAndNextOfWhatIsThereAndWhatIsNot)
{
    RowList list(kRowSize, 10);
    EXPECT_EQ(list.Next(kBeforeFirst), nullptr) << "empty";
    EXPECT_EQ(list.Find(1), nullptr);
    for (const int32_t index : {2, 5, 9}) ASSERT_NE(list.Append(index), nullptr);
    for (const int32_t index : {9, 5, 0, -1}) EXPECT_EQ(list.Append(index), nullptr) << index;

    const struct
    {
        int32_t previous;
        int32_t next;  // 0: none
        const char* why;
    } kCases[] = {{-1, 2, "the first"},           {2, 5, "over a gap"},       {9, 0, "behind the last"},
                  {5, 9, "backwards in between"}, {3, 0, "no row, in a gap"}, {0, 0, "no row"},
                  {-2, 0, "only -1 begins"},      {INT32_MIN, 0, "no row"},   {INT32_MAX, 0, "beyond all"},
                  {2, 5, "and once more"}};
    for (const auto& c : kCases)
    {
        const Row* next = list.Next(c.previous);
        EXPECT_EQ(next == nullptr ? 0 : IndexOf(*next), c.next) << c.previous << ": " << c.why;
        EXPECT_EQ(list.Find(c.previous) != nullptr, c.previous == 2 || c.previous == 5 || c.previous == 9) << c.why;
    }
}

TEST(RowList, DeletingWhereTheLastSearchEndedMisleadsNoSearch)
{
    RowList list(kRowSize, 10);
    for (int32_t index = 1; index <= 6; ++index) list.Append(index);
    for (const int32_t deleted : {6, 3, 1})
    {
        ASSERT_NE(list.Find(deleted), nullptr);
        ASSERT_EQ(list.Del(deleted), 0);
        EXPECT_EQ(list.Find(deleted), nullptr);
    }
    EXPECT_EQ(Walk(&list), (std::vector<int32_t>{2, 4, 5}));
}

TEST(RowList, WalkCostsTheSameAtEveryRow)
{
    const double small = WalkSeconds(10000);
    const double large = WalkSeconds(80000);
    RecordProperty("microseconds_of_10000_rows", static_cast<int>(small * 1e6));
    // 8 times the rows: 8 times the time and some for the cache; 64 times when next were linear.
    EXPECT_LT(large, 30 * small) << "10000 rows " << small * 1e6 << " us, 80000 rows " << large * 1e6 << " us";
}
}  // namespace kobd::test
