// The internal cache service: one per process, its policy and its class store.
#include "StorageVolume/KSV_InternalCacheService.h"

#include "ProviderHarness.h"

#include <gtest/gtest.h>

#include <cctype>
#include <set>
#include <string>

namespace ksv::test {
namespace {

using namespace Pegasus;

TEST(InternalCacheService, OneServicePerProcessUntilDestroyed) {
    KSV_InternalCacheService* service = KSV_InternalCacheService::getInstance();
    EXPECT_EQ(KSV_InternalCacheService::getInstance(), service);
    service->setPolicy(5);
    KSV_InternalCacheService::destroy();
    EXPECT_EQ(KSV_InternalCacheService::getInstance()->getPolicy(), 0u);
}

TEST(InternalCacheService, ClassesSpreadOverFourTablesWithoutRegardToCase) {
    std::set<Uint32> used;
    for (const char* name : {"KSV_DiskDrive", "KSV_DiskDrivePackage", "KSV_DiskStorageExtent",
                             "KSV_DiskSoftwareIdentity", "KSV_SystemDisk", "KSV_SystemExtent",
                             "KSV_DiskPresent", "KSV_DiskSoftware", "KSV_MagazineContainer",
                             "KSV_StoragePool", "KSV_StorageVolume", "KSV_StorageSystem"}) {
        std::string lower = name;
        for (char& c : lower)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        const Uint32 index = KSV_InternalCacheService::getClassHashArrayIndex(name);
        EXPECT_LT(index, 4u);
        EXPECT_EQ(KSV_InternalCacheService::getClassHashArrayIndex(lower.c_str()), index) << name;
        used.insert(index);
    }
    EXPECT_GT(used.size(), 1u);
}

class ClassStore : public ::testing::Test {
protected:
    ProviderHarness harness;
    CIMOMHandle cimom = harness.cimom();
    KSV_InternalCacheService& store = *KSV_InternalCacheService::getInstance();

    CIMClass served(const char* nameSpace, const char* className, bool includeQualifiers,
                    bool includeClassOrigin, const CIMPropertyList& propertyList,
                    bool localOnly = false) {
        return store.getStoredCIMClass(cimom, OperationContext(), nameSpace, className, localOnly,
                                       includeQualifiers, includeClassOrigin, propertyList);
    }
    CIMClass expected(const char* nameSpace, const char* className, bool includeQualifiers,
                      bool includeClassOrigin, const CIMPropertyList& propertyList,
                      bool localOnly = false) {
        return harness.shippedClasses().getClass(nameSpace, className, localOnly, includeQualifiers,
                                                 includeClassOrigin, propertyList);
    }
};

CIMPropertyList listOf(std::initializer_list<const char*> names) {
    Array<CIMName> list;
    for (const char* name : names)
        list.append(name);
    return CIMPropertyList(list);
}

TEST_F(ClassStore, ServesEveryRequestAsTheServerWouldFromOneFetchPerClass) {
    const struct {
        const char* nameSpace;
        const char* className;
    } classes[] = {{"root/ksv", "KSV_DiskDrive"},
                   {"root/ksv", "KSV_SystemDisk"},
                   {"root/PG_Internal", "KSV_InternalCache"}};
    const CIMPropertyList lists[] = {CIMPropertyList(), listOf({}),
                                     listOf({"DeviceID", "PartComponent", "InstanceID"}),
                                     listOf({"deviceid", "NoSuchProperty"})};
    for (const auto& c : classes) {
        for (bool qualifiers : {true, false}) {
            for (bool origins : {true, false}) {
                for (const CIMPropertyList& list : lists) {
                    SCOPED_TRACE(std::string(c.className) + (qualifiers ? " q" : "") +
                                 (origins ? " o" : "") + " " +
                                 std::string(list.toString().getCString()));
                    EXPECT_TRUE(served(c.nameSpace, c.className, qualifiers, origins, list)
                                    .identical(expected(c.nameSpace, c.className, qualifiers,
                                                        origins, list)));
                }
            }
        }
    }
    EXPECT_EQ(harness.server().calls("getClass").size(), 3u);
}

TEST_F(ClassStore, ManyPropertyListsOfOneClassAreAllServed) {
    const CIMClass full = expected("root/ksv", "KSV_DiskDrive", true, true, CIMPropertyList());
    for (Uint32 i = 0; i < 24; i++) {
        const CIMPropertyList one =
            listOf({full.getProperty(i).getName().getString().getCString()});
        EXPECT_TRUE(served("root/ksv", "KSV_DiskDrive", true, false, one)
                        .identical(expected("root/ksv", "KSV_DiskDrive", true, false, one)))
            << i;
    }
    EXPECT_EQ(harness.server().calls("getClass").size(), 1u);
}

TEST_F(ClassStore, NamespacesAreKeptApartAndFailuresAreNotStored) {
    for (int attempt = 0; attempt < 2; attempt++) {
        try {
            served("root/ksv", "KSV_InternalCache", true, true, CIMPropertyList());
            ADD_FAILURE() << "a class of root/PG_Internal was served in root/ksv";
        } catch (const CIMException& e) {
            EXPECT_EQ(e.getCode(), CIM_ERR_NOT_FOUND);
        }
    }
    EXPECT_EQ(harness.server().calls("getClass").size(), 2u);
    EXPECT_EQ(served("root/PG_Internal", "KSV_InternalCache", true, true, CIMPropertyList())
                  .getMethodCount(),
              6u);
}

TEST_F(ClassStore, LocalOnlyRequestsArePassedToTheServer) {
    for (int attempt = 0; attempt < 2; attempt++) {
        EXPECT_TRUE(served("root/ksv", "KSV_DiskDrive", true, true, CIMPropertyList(), true)
                        .identical(expected("root/ksv", "KSV_DiskDrive", true, true,
                                            CIMPropertyList(), true)));
    }
    EXPECT_EQ(harness.server().calls("getClass").size(), 2u);
}

} // namespace
} // namespace ksv::test
