// The association providers driven the way the CIM server drives them: created by name through
// the module entry, initialized against the in-process server over an array model, asked one
// request at a time with recording handlers.
#ifndef KSV_TESTS_ASSOCIATIONTESTSUPPORT_H
#define KSV_TESTS_ASSOCIATIONTESTSUPPORT_H

#include "ProviderTestSupport.h"

namespace ksv::test {

// The model made for these tests, named as the harness finds models.
const char TEST_MODEL[] = "../../tests/Providers/KSV/Disk/Associations/models/associations.json";

// Its disks: D1 has health 19, D2 health 20 and no firmware, D3 is absent, D4's extent is
// unusable (status 20). Firmware: D0 "4.0", D1 "4.02", D4 "2.1", D5 "2.10".
const char D0[] = "5000CCA000000A00-id-0";
const char D1[] = "5000CCA000000A01-id-1";
const char D2[] = "5000CCA000000A02-id-2";
const char D3[] = "5000CCA000000A03-id-3";
const char D4[] = "5000CCA000000A04-id-4";
const char D5[] = "5000CCA000000A05-id-5";
const char UNKNOWN_DISK[] = "5000CCA0000000FF-id-99";
// Its volumes, by WWN: user data of VOL0 on D0 (chunklets 5, 2, 9) and D1 (4; 7 in the first
// run), VOL1 on D0 (0), VOL2 on D4 (65535), VOL3 on D1 (excluded) and D5; VOL4 has none.
const char VOL0[] = "60002AC0000000000000000000000A00";
const char VOL1[] = "60002AC0000000000000000000000A01";
const char VOL2[] = "60002AC0000000000000000000000A02";
const char VOL3[] = "60002AC0000000000000000000000A03";
const char VOL4[] = "60002AC0000000000000000000000A04";

const Strings EMPTY_ANSWER = {"processing", "complete"};

// Paths of the model's objects, spelled out key by key as clients send them.
class ModelPaths {
public:
    explicit ModelPaths(const ProviderHarness& harness)
        : _system(harness.systemName()), _host(harness.hostName()) {}

    CIMObjectPath system(const std::string& name = "") const {
        return pathOf("KSV_StorageSystem", {{"CreationClassName", "KSV_StorageSystem"},
                                            {"Name", name.empty() ? _system : name}});
    }
    CIMObjectPath disk(const std::string& deviceID) const {
        return device("KSV_DiskDrive", deviceID);
    }
    CIMObjectPath extent(const std::string& deviceID) const {
        return device("KSV_DiskStorageExtent", deviceID);
    }
    CIMObjectPath package(const std::string& deviceID) const {
        return pathOf("KSV_DiskDrivePackage",
                      {{"CreationClassName", "KSV_DiskDrivePackage"}, {"Tag", deviceID}});
    }
    CIMObjectPath identity(const std::string& version) const {
        return pathOf("KSV_DiskSoftwareIdentity", {{"InstanceID", "QUANOR:" + version}});
    }
    CIMObjectPath magazine(const std::string& tag, const char* className = "KSV_Magazine") const {
        return pathOf(className, {{"CreationClassName", className}, {"Tag", tag}});
    }
    CIMObjectPath pool(const std::string& instanceID) const {
        return pathOf("KSV_StoragePool", {{"InstanceID", instanceID}});
    }
    CIMObjectPath volume(const std::string& wwn) const { return device("KSV_StorageVolume", wwn); }

    // An association path as a client writes it: the two references by role, in this order.
    CIMObjectPath association(const char* className, const char* role1, const CIMObjectPath& end1,
                              const char* role2, const CIMObjectPath& end2) const {
        Array<CIMKeyBinding> keys;
        keys.append(CIMKeyBinding(role1, end1.toString(), CIMKeyBinding::REFERENCE));
        keys.append(CIMKeyBinding(role2, end2.toString(), CIMKeyBinding::REFERENCE));
        return CIMObjectPath(_host.c_str(), CIMNamespaceName("root/ksv"), className, keys);
    }

private:
    CIMObjectPath device(const char* className, const std::string& deviceID) const {
        return pathOf(className, {{"SystemCreationClassName", "KSV_StorageSystem"},
                                  {"SystemName", _system},
                                  {"CreationClassName", className},
                                  {"DeviceID", deviceID}});
    }

    std::string _system;
    std::string _host;
};

// Whether the association path holds the two references under these roles, in this order.
inline bool joins(const CIMObjectPath& association, const char* role1, const CIMObjectPath& end1,
                  const char* role2, const CIMObjectPath& end2) {
    const Array<CIMKeyBinding>& keys = association.getKeyBindings();
    return keys.size() == 2 && keys[0].getName().equal(role1) && keys[1].getName().equal(role2) &&
           KSV_Common::matchObjectPath(CIMObjectPath(keys[0].getValue()), end1) &&
           KSV_Common::matchObjectPath(CIMObjectPath(keys[1].getValue()), end2);
}

// Whether the paths name exactly the wanted objects, in that order.
inline bool sameObjects(const std::vector<CIMObjectPath>& paths,
                        const std::vector<CIMObjectPath>& wanted) {
    return paths.size() == wanted.size() &&
           std::equal(paths.begin(), paths.end(), wanted.begin(), KSV_Common::matchObjectPath);
}

} // namespace ksv::test

#endif
