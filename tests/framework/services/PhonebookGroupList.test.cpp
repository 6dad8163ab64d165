#include <framework/services/PhonebookGroupList.h>

#include <gtest/gtest.h>

namespace {

// Slots 1 and 2 spare, 3 "Friends", 4 spare, 5 "Work".
PhonebookGroupList someGroups()
{
    PhonebookGroupList groups(5);
    groups.updateGroup(PhonebookGroup(3, "Friends"));
    groups.updateGroup(PhonebookGroup(5, "Work"));
    return groups;
}

TEST(GroupTag, IsTheDecimalIndexAndZeroForNone)
{
    EXPECT_EQ(PhonebookGroup::groupIndexToTag(3), "3");
    EXPECT_EQ(PhonebookGroup::groupIndexToTag(0), "0");
    EXPECT_EQ(PhonebookGroup::groupIndexToTag(-1), "0");
    EXPECT_EQ(PhonebookGroup::groupTagToIndex("3"), 3);
    for (const char* tag : {"", "0", "-2", "3x", "x", "99999999999999"})
        EXPECT_EQ(PhonebookGroup::groupTagToIndex(tag), 0) << tag;
}

TEST(PhonebookGroupList, StartsWithSpareSlots)
{
    const PhonebookGroupList groups;
    EXPECT_EQ(groups.numberOfGroups(), 20);
    EXPECT_TRUE(groups.noGroupsInUse());
    EXPECT_EQ(groups.firstSpareGroup(), 1);
    EXPECT_EQ(groups.namedGroup(1), -1);
}

TEST(PhonebookGroupList, CountsNamedGroupsFromOneAndSlotsFromZero)
{
    const auto groups = someGroups();
    EXPECT_EQ(groups.namedGroup(1), 3);
    EXPECT_EQ(groups.namedGroup(2), 5);
    EXPECT_EQ(groups.namedGroup(3), -1);
    EXPECT_EQ(groups.namedGroup(0), -1);
    for (int n = 0; n < 2; ++n)
        EXPECT_EQ(groups.slotOfNamedGroup(n) + 1, groups.namedGroup(n + 1));
    EXPECT_EQ(groups.slotOfNamedGroup(2), -1);
}

TEST(PhonebookGroupList, FindsByNameAndGivesTheIndexAsId)
{
    const auto groups = someGroups();
    EXPECT_EQ(groups.findGroup("Work"), 5);
    EXPECT_EQ(groups.findGroup("work"), -1);
    PhonebookGroup group;
    ASSERT_TRUE(groups.getGroup(5, group));
    EXPECT_EQ(group.getId(), 5);
    EXPECT_EQ(group.getName(), "Work");
}

TEST(PhonebookGroupList, AddsIntoSpareSlotsOnly)
{
    auto groups = someGroups();
    EXPECT_EQ(groups.newGroupId(), 1);
    EXPECT_TRUE(groups.addGroup(PhonebookGroup(1, "Family")));
    EXPECT_FALSE(groups.addGroup(PhonebookGroup(1, "Other")));
    EXPECT_FALSE(groups.addGroup(PhonebookGroup(-1, "Other")));
    EXPECT_FALSE(groups.addGroup(PhonebookGroup(2, "")));
    EXPECT_EQ(groups.findGroup("Family"), 1);
}

TEST(PhonebookGroupList, IsFullWhenNoSlotIsSpare)
{
    PhonebookGroupList groups(1);
    EXPECT_TRUE(groups.addGroup(PhonebookGroup(1, "Only")));
    EXPECT_EQ(groups.newGroupId(), -1);
}

TEST(PhonebookGroupList, IgnoresIndicesThatDoNotExist)
{
    auto groups = someGroups();
    PhonebookGroup group;
    for (const int index : {-1, 0, 6}) {
        EXPECT_FALSE(groups.getGroup(index, group));
        EXPECT_TRUE(groups.isSpare(index));
        EXPECT_FALSE(groups.makeSpare(index));
        EXPECT_EQ(groups.updateGroup(PhonebookGroup(index, "x")), 0);
    }
    EXPECT_TRUE(groups.makeSpare(3));
    EXPECT_TRUE(groups.isSpare(3));
}

} // namespace
