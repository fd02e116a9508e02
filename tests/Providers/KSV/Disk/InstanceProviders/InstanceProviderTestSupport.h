// What the disk instance provider tests share: the read operations run through recording
// handlers, compact renderings of instances and paths, and the array made for these tests.
#ifndef KSV_TESTS_INSTANCEPROVIDERTESTSUPPORT_H
#define KSV_TESTS_INSTANCEPROVIDERTESTSUPPORT_H

#include "DiskTestSupport.h"

#include <Pegasus/Common/CIMProperty.h>

#include <map>
#include <sstream>

namespace ksv::test {

// "Name=value ..." of the named properties: "null" for a null value, arrays as "[a b]".
// Property types are fixed by the class, so the text identifies the value.
inline std::string render(const CIMInstance& instance, const std::string& names) {
    std::istringstream words(names);
    std::string name;
    std::string rendered;
    while (words >> name) {
        const Uint32 index = instance.findProperty(CIMName(name.c_str()));
        std::string value = "absent";
        if (index != PEG_NOT_FOUND) {
            const CIMValue cimValue = instance.getProperty(index).getValue();
            value = cimValue.isNull() ? "null" : text(cimValue.toString());
            if (!cimValue.isNull() && cimValue.isArray())
                value = "[" + value.substr(0, value.empty() ? 0 : value.size() - 1) + "]";
        }
        rendered += (rendered.empty() ? "" : " ") + name + "=" + value;
    }
    return rendered;
}

// "host root/ksv:Class Key=value ..." with the keys sorted by name.
inline std::string render(const CIMObjectPath& path) {
    std::map<std::string, std::string> keys;
    for (Uint32 i = 0; i < path.getKeyBindings().size(); i++) {
        const CIMKeyBinding& key = path.getKeyBindings()[i];
        keys[text(key.getName().getString())] = text(key.getValue());
    }
    std::string rendered = text(path.getHost()) + " " + text(path.getNameSpace().getString()) +
                           ":" + text(path.getClassName().getString());
    for (const auto& [name, value] : keys)
        rendered += " " + name + "=" + value;
    return rendered;
}

inline CIMObjectPath pathOf(const std::string& className,
                            const std::vector<std::pair<std::string, std::string>>& keys,
                            const std::string& host = "ksv-map.example.net") {
    Array<CIMKeyBinding> bindings;
    for (const auto& [name, value] : keys)
        bindings.append(CIMKeyBinding(name.c_str(), value.c_str(), CIMKeyBinding::STRING));
    return CIMObjectPath(host.c_str(), "root/ksv", className.c_str(), bindings);
}

// A disk's drive or extent path in the array of these tests.
inline CIMObjectPath devicePath(const std::string& deviceID,
                                const std::string& className = "KSV_DiskDrive",
                                const std::string& systemName = "KSV-MAP") {
    return pathOf(className, {{"SystemCreationClassName", "KSV_StorageSystem"},
                              {"SystemName", systemName},
                              {"CreationClassName", className},
                              {"DeviceID", deviceID}});
}

// The properties of the one instance getInstance finds at the path.
inline std::string propertiesAt(RunningProvider& provider, const CIMObjectPath& path,
                                const std::string& names) {
    const std::vector<CIMInstance> found = provider.getInstance(path).delivered;
    return found.size() == 1 ? render(found[0], names) : "not one";
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
