// What the disk instance provider tests share: the array made for them and its paths.
#ifndef KSV_TESTS_INSTANCEPROVIDERTESTSUPPORT_H
#define KSV_TESTS_INSTANCEPROVIDERTESTSUPPORT_H

#include "ProviderTestSupport.h"

namespace ksv::test {

// A disk's drive or extent path in the array of these tests.
inline CIMObjectPath devicePath(const std::string& deviceID,
                                const std::string& className = "KSV_DiskDrive",
                                const std::string& systemName = "KSV-MAP") {
    return pathOf(className,
                  {{"SystemCreationClassName", "KSV_StorageSystem"},
                   {"SystemName", systemName},
                   {"CreationClassName", className},
                   {"DeviceID", deviceID}},
                  "ksv-map.example.net");
}

// A harness over arrays/disk-mappings.json, which holds one disk per mapping branch, loaded
// before any provider is initialized.
class MappingArrayTest : public ::testing::Test {
protected:
    MappingArrayTest() { loadArrayText(""); }
    // Replaces the array: by the text given, or by the mapping array for an empty text.
    static void loadArrayText(const std::string& json) {
        const auto error =
            json.empty() ? ksvsim::loadModelFile(std::string(KSV_SOURCE_DIR) +
                                                 "/tests/Providers/KSV/Disk/InstanceProviders/"
                                                 "arrays/disk-mappings.json")
                         : ksvsim::loadModelText(json);
        if (error)
            ADD_FAILURE() << error->describe();
    }

    ProviderHarness harness{"small.json"};
};

} // namespace ksv::test

#endif
