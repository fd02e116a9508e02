// Integer- and string-keyed hash tables.
#include "simulator_test_support.h"

#include <cmath>
#include <cstring>
#include <memory>

namespace ksvsim::testing {
namespace {

struct TableDeleter {
    void operator()(hashtable_t* table) const { delete_hashtable(table); }
};
using Table = std::unique_ptr<hashtable_t, TableDeleter>;

class HashTables : public SimulatorTest {};

TEST_F(HashTables, IntegerKeysPointToInt64AndMissingKeysReadAsTheInvalidValue) {
    Table table(create_int_hashtable(2048, 0.75f));
    ASSERT_TRUE(table);
    const int64_t seven = 7;
    const int64_t large = int64_t{1} << 40;
    EXPECT_EQ(hashtable_contains_key(table.get(), &seven), 0);
    EXPECT_EQ(hashtable_get(table.get(), &seven), -1);
    ASSERT_EQ(hashtable_put(table.get(), &seven, 70), API_OK);
    ASSERT_EQ(hashtable_put(table.get(), &large, -5), API_OK);
    EXPECT_EQ(hashtable_contains_key(table.get(), &seven), 1);
    EXPECT_EQ(hashtable_get(table.get(), &seven), 70);
    EXPECT_EQ(hashtable_get(table.get(), &large), -5);
    ASSERT_EQ(hashtable_put(table.get(), &seven, 71), API_OK);
    EXPECT_EQ(hashtable_get(table.get(), &seven), 71) << "put replaces";

    const int64_t three = 3;
    set_invalid_value(table.get(), 0);
    EXPECT_EQ(hashtable_get(table.get(), &three), 0);
    ASSERT_EQ(hashtable_put(table.get(), &three, 0), API_OK);
    EXPECT_EQ(hashtable_contains_key(table.get(), &three), 1) << "a value equal to the marker";
    hashtable_clear(table.get());
    EXPECT_EQ(hashtable_contains_key(table.get(), &seven), 0);
}

TEST_F(HashTables, StringKeysAreCopiedAndCompareExactly) {
    Table table(create_string_hashtable(2048, 0.75f));
    ASSERT_TRUE(table);
    char version[8] = "4.0";
    ASSERT_EQ(hashtable_put(table.get(), version, 0), API_OK);
    std::strcpy(version, "4.02");
    EXPECT_EQ(hashtable_contains_key(table.get(), "4.0"), 1);
    EXPECT_EQ(hashtable_contains_key(table.get(), version), 0);
    EXPECT_EQ(hashtable_contains_key(table.get(), "4.0 "), 0);
    ASSERT_EQ(hashtable_put(table.get(), version, 1), API_OK);
    EXPECT_EQ(hashtable_get(table.get(), "4.02"), 1);
    EXPECT_EQ(hashtable_get(table.get(), "4.0"), 0);
}

TEST_F(HashTables, BadArgumentsGiveNoTableOrAreRefused) {
    EXPECT_EQ(create_int_hashtable(0, 0.75f), nullptr);
    EXPECT_EQ(create_int_hashtable(-4, 0.75f), nullptr);
    EXPECT_EQ(create_string_hashtable(16, 0.0f), nullptr);
    EXPECT_EQ(create_string_hashtable(16, 1.5f), nullptr);
    EXPECT_EQ(create_string_hashtable(16, std::nanf("")), nullptr);
    const int64_t key = 1;
    Table table(create_int_hashtable(4, 1.0f));
    EXPECT_EQ(hashtable_put(nullptr, &key, 1), API_E_INVALID);
    EXPECT_EQ(hashtable_put(table.get(), nullptr, 1), API_E_INVALID);
    EXPECT_EQ(hashtable_contains_key(nullptr, &key), 0);
    EXPECT_EQ(hashtable_get(table.get(), nullptr), -1);
}

} // namespace
} // namespace ksvsim::testing
