// Integer-keyed hash tables; the string-keyed ones are exercised by the firmware identities.
#include "simulator_test_support.h"

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

} // namespace
} // namespace ksvsim::testing
