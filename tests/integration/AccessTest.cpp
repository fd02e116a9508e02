// A user whom the array refuses is answered "access denied" by every operation of every class
// of the module and of its siblings, while users the array admits are served.
#include "IntegrationTest.h"

namespace ksv::integration {
namespace {

const char DENIED[] = "CIM_ERR_ACCESS_DENIED: Insufficient privilege for the user";

const char* const INSTANCE_CLASSES[] = {
    "KSV_DiskDrive",         "KSV_DiskDrivePackage", "KSV_DiskSoftwareIdentity",
    "KSV_DiskStorageExtent", "KSV_StorageSystem",    "KSV_StoragePool",
    "KSV_StorageVolume",     "KSV_Magazine",         "KSV_DiskBay"};

// An object at one end of each association.
const std::pair<const char*, CIMObjectPath (*)()> ASSOCIATION_ENDS[] = {
    {"KSV_SystemDisk", systemPath},
    {"KSV_SystemExtent", [] { return extentPath(0); }},
    {"KSV_DiskPackageRealizes", [] { return packagePath(0); }},
    {"KSV_AssociatedPrimordialDisks", [] { return poolPath("primordial"); }},
    {"KSV_VolumeBasedOnDiskExtent", [] { return volumePath(0); }},
    {"KSV_DiskSoftware", [] { return identityPath("4.0"); }},
    {"KSV_DiskPresent", [] { return diskPath(0); }},
    {"KSV_MagazineContainer", [] { return magazinePath("KSV_Magazine", "IT1-DC0-M0"); }}};

class RefusedUserTest : public IntegrationTest {
protected:
    std::unique_ptr<CIMClient> auditor = client("auditor", "auditor-pw");
    std::unique_ptr<CIMClient> admin = client();
};

TEST_F(RefusedUserTest, EveryInstanceOperationIsDenied) {
    for (const char* className : INSTANCE_CLASSES) {
        SCOPED_TRACE(className);
        const CIMObjectPath one = admin->enumerateInstanceNames(KSV_NAMESPACE, className)[0];
        EXPECT_EQ(cimErrorOf([&] { auditor->enumerateInstanceNames(KSV_NAMESPACE, className); }),
                  DENIED);
        EXPECT_EQ(cimErrorOf([&] { auditor->enumerateInstances(KSV_NAMESPACE, className); }),
                  DENIED);
        EXPECT_EQ(cimErrorOf([&] { auditor->getInstance(KSV_NAMESPACE, one); }), DENIED);
        EXPECT_EQ(cimErrorOf([&] { auditor->getProperty(KSV_NAMESPACE, one, "ElementName"); }),
                  DENIED);
    }
}

TEST_F(RefusedUserTest, EveryAssociationOperationIsDenied) {
    // Named, not structured, so that the lambdas below may capture it under clang 14.
    for (const auto& associationEnd : ASSOCIATION_ENDS) {
        const char* association = associationEnd.first;
        SCOPED_TRACE(association);
        const CIMObjectPath object = associationEnd.second();
        EXPECT_EQ(cimErrorOf([&] { auditor->associators(KSV_NAMESPACE, object, association); }),
                  DENIED);
        EXPECT_EQ(cimErrorOf([&] { auditor->associatorNames(KSV_NAMESPACE, object, association); }),
                  DENIED);
        EXPECT_EQ(cimErrorOf([&] { auditor->references(KSV_NAMESPACE, object, association); }),
                  DENIED);
        EXPECT_EQ(cimErrorOf([&] { auditor->referenceNames(KSV_NAMESPACE, object, association); }),
                  DENIED);
        const CIMObjectPath pair = admin->referenceNames(KSV_NAMESPACE, object, association)[0];
        EXPECT_EQ(cimErrorOf([&] { auditor->getInstance(KSV_NAMESPACE, pair); }), DENIED);
        EXPECT_EQ(cimErrorOf([&] { auditor->enumerateInstanceNames(KSV_NAMESPACE, association); }),
                  DENIED);
        EXPECT_EQ(cimErrorOf([&] { auditor->enumerateInstances(KSV_NAMESPACE, association); }),
                  DENIED);
    }
}

// The gate is the array's: a user without rights to change anything still reads.
TEST_F(RefusedUserTest, AUserTheArrayAdmitsIsServed) {
    const auto monitor = client("monitor", "monitor-pw");
    EXPECT_EQ(monitor->enumerateInstanceNames(KSV_NAMESPACE, "KSV_DiskDrive").size(), 5u);
    EXPECT_EQ(monitor->associatorNames(KSV_NAMESPACE, systemPath(), "KSV_SystemDisk").size(), 5u);
}

} // namespace
} // namespace ksv::integration
