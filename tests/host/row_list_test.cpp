// One list of rows: which indexes it gives, what next follows, and what a walk costs.
#include "host/tables/row_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <set>

namespace kobd::test
{
using namespace host;

namespace
{
constexpr size_t kRowSize = 64;
constexpr size_t kRows = 4;
constexpr int32_t kNone = -99;

int32_t IndexOrNone(const Row* row) { return row == nullptr ? kNone : IndexOf(*row); }
}  // namespace

// Beside a set of indexes: whatever is done next may follow whatever was done last.
TEST(RowList, GivesEachIndexOnceAndFindsWhatIsThere)
{
    std::mt19937 random(3);
    for (int round = 0; round < 500; ++round)
    {
        RowList list(kRowSize, kRows);
        std::set<int32_t> indexes;
        int32_t last = 0;
        for (int step = 0; step < 40; ++step)
        {
            const auto index = static_cast<int32_t>(random() % 12) - 2;
            const bool is_new = index > last;
            const bool is_there = indexes.contains(index);
            const bool has_room = indexes.size() < kRows && last < INT32_MAX;
            const auto next = index == kBeforeFirst ? indexes.begin() : indexes.upper_bound(index);
            const bool goes_on = (index == kBeforeFirst || is_there) && next != indexes.end();
            int32_t added = kNone;
            switch (random() % 6)
            {
                case 0:
                    ASSERT_EQ(IndexOrNone(list.Append(index)), is_new ? index : kNone);
                    if (is_new) indexes.insert(last = index);
                    break;
                case 1:
                    ASSERT_EQ(list.Add(&added), has_room ? 0 : kTableFull);
                    ASSERT_EQ(added, has_room ? last + 1 : kNone) << "no index is told of what was not added";
                    if (has_room) indexes.insert(++last);
                    break;
                case 2: ASSERT_EQ(list.Del(index), indexes.erase(index) != 0 ? 0 : kIndexNotFound); break;
                case 3:
                    list.RaiseLastIndex(random() % 8 == 0 ? INT32_MAX - 1 : index);
                    ASSERT_TRUE(list.LastIndex() == std::max(last, index) || list.LastIndex() == INT32_MAX - 1);
                    last = list.LastIndex();
                    break;
                case 4: ASSERT_EQ(IndexOrNone(list.Find(index)), is_there ? index : kNone); break;
                default: ASSERT_EQ(IndexOrNone(list.Next(index)), goes_on ? *next : kNone) << "behind " << index;
            }
            ASSERT_EQ(list.LastIndex(), last);
        }
    }
}

TEST(RowList, AWalkCostsTheSameAtEveryRow)
{
    RowList list(kRowSize, 80000);
    int32_t index = 0;
    while (list.Add(&index) == 0) continue;
    const auto begin = std::chrono::steady_clock::now();
    int rows = 0;
    for (const Row* row = list.Next(kBeforeFirst); row != nullptr; row = list.Next(IndexOf(*row))) ++rows;
    EXPECT_EQ(rows, 80000);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2))
        << "an eternity where each step searches from the start";
}
}  // namespace kobd::test
