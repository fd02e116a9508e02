// Integer- and string-keyed hash tables with a caller-visible lock.
#include "call_registry.h"

#include "ksvapi.h"

#include <cmath>
#include <memory_resource>
#include <mutex>
#include <string>
#include <unordered_map>

using namespace ksvsim::detail;

// The caller's lock (hashtable_lock) and the lock that keeps each single
// operation safe are separate, so that a caller holding the first can still
// use the table.
struct hashtable_s {
    hashtable_s(bool keyedByString, int initialCapacity, float loadFactor)
        : stringKeys(keyedByString) {
        ints.max_load_factor(loadFactor);
        strings.max_load_factor(loadFactor);
        if (stringKeys) {
            strings.reserve(static_cast<std::size_t>(initialCapacity));
        } else {
            ints.reserve(static_cast<std::size_t>(initialCapacity));
        }
    }

    const bool stringKeys;
    std::mutex callerLock;
    std::mutex dataLock;
    int64_t invalidValue = -1;
    // Entries come and go by the hundred thousand between clears; the pool, used under
    // dataLock only, keeps their memory for the next ones.
    std::pmr::unsynchronized_pool_resource entryPool;
    std::pmr::unordered_map<int64_t, int64_t> ints{&entryPool};
    std::unordered_map<std::string, int64_t> strings;
};

namespace {

hashtable_t* createTable(const char* function, bool stringKeys, int initialCapacity,
                         float loadFactor) {
    recordCall(function, std::to_string(initialCapacity));
    const bool valid =
        initialCapacity > 0 && std::isfinite(loadFactor) && loadFactor > 0.0f && loadFactor <= 1.0f;
    return valid ? new hashtable_s(stringKeys, initialCapacity, loadFactor) : nullptr;
}

// Runs 'action' on the map of the table's key kind, under its data lock.
template <typename Action>
auto withKey(hashtable_t* table, const void* key, Action&& action) {
    std::lock_guard<std::mutex> lock(table->dataLock);
    if (table->stringKeys) {
        return action(table->strings, std::string(static_cast<const char*>(key)));
    }
    return action(table->ints, *static_cast<const int64_t*>(key));
}

// Entry by entry: clear() would also wipe every bucket of the table's initial capacity, which
// costs more than the few entries a caller puts between two clears.
template <typename Map>
void emptyKeepingBuckets(Map& map) {
    while (!map.empty()) {
        map.erase(map.begin());
    }
}

} // namespace

extern "C" {

hashtable_t* create_int_hashtable(int initialCapacity, float loadFactor) {
    return createTable("create_int_hashtable", false, initialCapacity, loadFactor);
}

hashtable_t* create_string_hashtable(int initialCapacity, float loadFactor) {
    return createTable("create_string_hashtable", true, initialCapacity, loadFactor);
}

void set_invalid_value(hashtable_t* table, int64_t value) {
    recordCall("set_invalid_value", std::to_string(value));
    if (table != nullptr) {
        std::lock_guard<std::mutex> lock(table->dataLock);
        table->invalidValue = value;
    }
}

void hashtable_lock(hashtable_t* table) {
    recordCall("hashtable_lock");
    if (table != nullptr) {
        table->callerLock.lock();
    }
}

void hashtable_unlock(hashtable_t* table) {
    recordCall("hashtable_unlock");
    if (table != nullptr) {
        table->callerLock.unlock();
    }
}

int hashtable_contains_key(hashtable_t* table, const void* key) {
    return tracedCall("hashtable_contains_key", "", [&]() -> int {
        if (table == nullptr || key == nullptr) {
            return 0;
        }
        return withKey(table, key,
                       [](auto& map, const auto& k) { return map.count(k) != 0 ? 1 : 0; });
    });
}

int hashtable_put(hashtable_t* table, const void* key, int64_t value) {
    return tracedCall("hashtable_put", "", [&]() -> int {
        if (table == nullptr || key == nullptr) {
            return API_E_INVALID;
        }
        withKey(table, key, [value](auto& map, const auto& k) { map[k] = value; });
        return API_OK;
    });
}

int64_t hashtable_get(hashtable_t* table, const void* key) {
    recordCall("hashtable_get");
    if (table == nullptr || key == nullptr) {
        return -1;
    }
    return withKey(table, key, [table](auto& map, const auto& k) {
        const auto found = map.find(k);
        return found != map.end() ? found->second : table->invalidValue;
    });
}

void hashtable_clear(hashtable_t* table) {
    recordCall("hashtable_clear");
    if (table != nullptr) {
        std::lock_guard<std::mutex> lock(table->dataLock);
        emptyKeepingBuckets(table->ints);
        emptyKeepingBuckets(table->strings);
    }
}

void delete_hashtable(hashtable_t* table) {
    recordCall("delete_hashtable");
    delete table;
}

} // extern "C"
