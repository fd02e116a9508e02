// Every class of the disk module and of its sibling modules through the running server: each
// instance class enumerated and fetched, each association asked from both of its ends, and each of
// those operations answered "access denied" for a user whom the array refuses.
#include "IntegrationTest.h"

#include <functional>

namespace ksv::test {
namespace {

const char DENIED[] = "CIM_ERR_ACCESS_DENIED: Insufficient privilege for the user";

struct ClassCase {
    const char* className;
    size_t count; // with the subclasses
    CIMObjectPath (*one)();
    const char* property; // of that one
    const char* value;
};

const ClassCase CLASSES[] = {
    {"KSV_DiskDrive", 5, [] { return diskPath(0); }, "ElementName", "cage0:0:0"},
    {"KSV_DiskDrivePackage", 5, [] { return packagePath(1); }, "SerialNumber", "IT-1"},
    {"KSV_DiskSoftwareIdentity", 3, [] { return identityPath("4.02"); }, "VersionString", "4.02"},
    {"KSV_DiskStorageExtent", 5, [] { return extentPath(3); }, "NumberOfBlocks", "800000"},
    {"KSV_StorageSystem", 1, systemPath, "ElementName", "KSV-IT1"},
    {"KSV_StoragePool", 4, [] { return poolPath("all-SSD"); }, "PoolID", "all-SSD"},
    {"KSV_StorageVolume", 3, [] { return volumePath(1); }, "ElementName", "it.logs"},
    {"KSV_Magazine", 3, [] { return magazinePath("KSV_Magazine", "IT1-DC0-M1"); }, "ElementName",
     "cage0:1"},
    {"KSV_DiskBay", 1, [] { return magazinePath("KSV_DiskBay", "IT1-DC1-M0"); }, "ElementName",
     "cage1:0"},
};

struct AssociationEnd {
    const char* association;
    CIMObjectPath (*object)();
    size_t related;
};

const AssociationEnd ENDS[] = {
    {"KSV_SystemDisk", systemPath, 5},
    {"KSV_SystemDisk", [] { return diskPath(0); }, 1},
    {"KSV_SystemExtent", systemPath, 5},
    {"KSV_SystemExtent", [] { return extentPath(0); }, 1},
    {"KSV_DiskPackageRealizes", [] { return packagePath(0); }, 1},
    {"KSV_DiskPackageRealizes", [] { return diskPath(0); }, 1},
    // Disk 5 is unusable and not a component of the pool.
    {"KSV_AssociatedPrimordialDisks", [] { return poolPath("primordial"); }, 4},
    {"KSV_AssociatedPrimordialDisks", [] { return extentPath(1); }, 1},
    {"KSV_VolumeBasedOnDiskExtent", [] { return extentPath(1); }, 2},
    {"KSV_VolumeBasedOnDiskExtent", [] { return volumePath(0); }, 3},
    // The present disks with firmware "4.0"; the absent one is left out.
    {"KSV_DiskSoftware", [] { return identityPath("4.0"); }, 2},
    {"KSV_DiskSoftware", [] { return diskPath(1); }, 1},
    {"KSV_DiskPresent", [] { return diskPath(3); }, 1},
    {"KSV_DiskPresent", [] { return extentPath(3); }, 1},
    {"KSV_MagazineContainer", [] { return magazinePath("KSV_Magazine", "IT1-DC0-M0"); }, 2},
    // The package of a disk in a drive bay.
    {"KSV_MagazineContainer", [] { return packagePath(3); }, 1},
};

// Each association class with the number of pairs it holds.
const std::pair<const char*, size_t> PAIRS[] = {{"KSV_SystemDisk", 5},
                                                {"KSV_SystemExtent", 5},
                                                {"KSV_DiskPackageRealizes", 5},
                                                {"KSV_AssociatedPrimordialDisks", 4},
                                                {"KSV_VolumeBasedOnDiskExtent", 5},
                                                {"KSV_DiskSoftware", 4},
                                                {"KSV_DiskPresent", 5},
                                                {"KSV_MagazineContainer", 5}};

std::string valueOf(const CIMInstance& instance, const char* name) {
    const Uint32 index = instance.findProperty(name);
    return index == PEG_NOT_FOUND ? "absent"
                                  : text(instance.getProperty(index).getValue().toString());
}

// Whether one reference property of the association names the object.
bool refersTo(const CIMInstance& association, const CIMObjectPath& object) {
    for (Uint32 i = 0; i < association.getPropertyCount(); i++) {
        const CIMConstProperty property = association.getProperty(i);
        if (property.getType() != CIMTYPE_REFERENCE || property.getValue().isNull())
            continue;
        CIMObjectPath reference;
        property.getValue().get(reference);
        if (bareText(reference) == bareText(object))
            return true;
    }
    return false;
}

class ArrayObjectsTest : public IntegrationTest {
protected:
    // Each call must be refused to the refused user.
    void expectDenied(std::initializer_list<std::function<void()>> calls) {
        for (const auto& call : calls)
            EXPECT_EQ(cimErrorOf(call), DENIED);
    }

    std::unique_ptr<CIMClient> admin = client();
    std::unique_ptr<CIMClient> auditor = client("auditor", "auditor-pw");
};

TEST_F(ArrayObjectsTest, EveryInstanceClassServesItsObjectsByName) {
    for (const ClassCase& c : CLASSES) {
        SCOPED_TRACE(c.className);
        const Array<CIMObjectPath> names =
            admin->enumerateInstanceNames(KSV_NAMESPACE, c.className);
        EXPECT_EQ(names.size(), c.count);
        for (Uint32 i = 0; i < names.size(); i++) {
            EXPECT_TRUE(isNamedBy(admin->getInstance(KSV_NAMESPACE, names[i]), names[i]))
                << text(names[i].toString());
        }
        EXPECT_EQ(bareTexts(admin->enumerateInstances(KSV_NAMESPACE, c.className)),
                  bareTexts(names));
        const CIMObjectPath one = c.one();
        EXPECT_EQ(valueOf(admin->getInstance(KSV_NAMESPACE, one), c.property), c.value);
        EXPECT_EQ(text(admin->getProperty(KSV_NAMESPACE, one, c.property).toString()), c.value);
        expectDenied({[&] { auditor->enumerateInstanceNames(KSV_NAMESPACE, c.className); },
                      [&] { auditor->enumerateInstances(KSV_NAMESPACE, c.className); },
                      [&] { auditor->getInstance(KSV_NAMESPACE, one); },
                      [&] { auditor->getProperty(KSV_NAMESPACE, one, "ElementName"); }});
    }
}

// The far ends are objects their own providers serve, and the pairs can be fetched.
TEST_F(ArrayObjectsTest, EveryAssociationAnswersFromEachOfItsEnds) {
    for (const AssociationEnd& end : ENDS) {
        const CIMName association(end.association);
        const CIMObjectPath object = end.object();
        SCOPED_TRACE(std::string(end.association) + " from " + text(object.toString()));
        const Array<CIMObjectPath> far = admin->associatorNames(KSV_NAMESPACE, object, association);
        EXPECT_EQ(far.size(), end.related);
        for (Uint32 i = 0; i < far.size(); i++)
            EXPECT_TRUE(isNamedBy(admin->getInstance(KSV_NAMESPACE, far[i]), far[i]));
        EXPECT_EQ(bareTexts(admin->associators(KSV_NAMESPACE, object, association)),
                  bareTexts(far));

        const Array<CIMObjectPath> pairs =
            admin->referenceNames(KSV_NAMESPACE, object, association);
        EXPECT_EQ(pairs.size(), end.related);
        for (Uint32 i = 0; i < pairs.size(); i++) {
            EXPECT_TRUE(pairs[i].getClassName().equal(association)) << text(pairs[i].toString());
            EXPECT_TRUE(refersTo(admin->getInstance(KSV_NAMESPACE, pairs[i]), object));
        }
        const Array<CIMObject> references = admin->references(KSV_NAMESPACE, object, association);
        EXPECT_EQ(bareTexts(references), bareTexts(pairs));
        for (Uint32 i = 0; i < references.size(); i++)
            EXPECT_TRUE(refersTo(CIMInstance(references[i]), object));

        expectDenied({[&] { auditor->associators(KSV_NAMESPACE, object, association); },
                      [&] { auditor->associatorNames(KSV_NAMESPACE, object, association); },
                      [&] { auditor->references(KSV_NAMESPACE, object, association); },
                      [&] { auditor->referenceNames(KSV_NAMESPACE, object, association); },
                      [&] { auditor->getInstance(KSV_NAMESPACE, pairs[0]); }});
    }
}

TEST_F(ArrayObjectsTest, EveryAssociationClassEnumeratesEachOfItsPairsOnce) {
    for (const auto& entry : PAIRS) {
        const char* className = entry.first;
        SCOPED_TRACE(className);
        const Array<CIMObjectPath> names = admin->enumerateInstanceNames(KSV_NAMESPACE, className);
        EXPECT_EQ(names.size(), entry.second);
        EXPECT_EQ(bareTexts(names).size(), names.size());
        EXPECT_EQ(admin->enumerateInstances(KSV_NAMESPACE, className).size(), entry.second);
        expectDenied({[&] { auditor->enumerateInstanceNames(KSV_NAMESPACE, className); },
                      [&] { auditor->enumerateInstances(KSV_NAMESPACE, className); }});
    }
    // The gate is the array's: a user without rights to change anything still reads.
    const auto monitor = client("monitor", "monitor-pw");
    EXPECT_EQ(monitor->enumerateInstanceNames(KSV_NAMESPACE, "KSV_DiskDrive").size(), 5u);
    EXPECT_EQ(monitor->associatorNames(KSV_NAMESPACE, systemPath(), "KSV_SystemDisk").size(), 5u);
}

TEST_F(ArrayObjectsTest, TheInternalCacheAnswersOverTheLocalSocket) {
    setenv("KSV_CIMSERVER_SOCKET", server().socketPath().c_str(), 1);
    CIMClient local;
    local.connectLocal();
    Array<CIMParamValue> outputs;
    const CIMValue returned =
        local.invokeMethod("root/PG_Internal", cachePath(), "GetSystemHostName", {}, outputs);
    EXPECT_EQ(text(returned.toString()), "0");
    ASSERT_EQ(outputs.size(), 1u);
    EXPECT_EQ(text(outputs[0].getParameterName()), "SystemHostName");
    EXPECT_EQ(text(outputs[0].getValue().toString()), "ksv-it1.example.net");
    local.disconnect();
}

} // namespace
} // namespace ksv::test
