// Object-path matching, reference checks and filters, and the association builders.
#include "ProviderTestSupport.h"

namespace ksv::test {
namespace {

TEST(MatchObjectPath, HostsNeverMatterNamesIgnoreCaseAndKeyOrderDeviceIDsCompareExactly) {
    const struct {
        const char* a;
        const char* b;
        bool match;
    } cases[] = {
        {"//a/root/ksv:KSV_DiskDrive.DeviceID=\"X\"",
         "//b.example.net/root/ksv:KSV_DiskDrive.DeviceID=\"X\"", true},
        {"root/ksv:KSV_DiskDrive.DeviceID=\"X\"", "//b/root/ksv:KSV_DiskDrive.DeviceID=\"X\"",
         true},
        {"//h/root/ksv:KSV_SystemDisk.GroupComponent=\"//h1/root/ksv:KSV_StorageSystem."
         "CreationClassName=\\\"KSV_StorageSystem\\\",Name=\\\"S1\\\"\"",
         "root/ksv:KSV_SystemDisk.GroupComponent=\"//h2/root/ksv:KSV_StorageSystem."
         "CreationClassName=\\\"KSV_StorageSystem\\\",Name=\\\"S1\\\"\"",
         true},
        {"root/ksv:KSV_DiskDrive.DeviceID=\"X\"", "KSV_DiskDrive.DeviceID=\"X\"", false},
        {"root/ksv:KSV_DiskDrive.DeviceID=\"X\"", "root/other:KSV_DiskDrive.DeviceID=\"X\"", false},
        {"KSV_DiskDrive.DeviceID=\"X\"", "KSV_DiskDriveX.DeviceID=\"X\"", false},
        {"KSV_DiskDrive.DeviceID=\"X\"", "KSV_DiskDrive.DeviceID=\"X\",Tag=\"T\"", false},
        {"//h/root/ksv:KSV_SystemDisk.PartComponent=\"root/ksv:KSV_DiskDrive.DeviceID=\\\"X\\\"\"",
         "//h/root/ksv:KSV_SystemDisk.PartComponent=\"root/ksv:KSV_DiskDrive.DeviceID=\\\"Y\\\"\"",
         false},
        {"ROOT/KSV:ksv_diskdrive.deviceid=\"5000C500A1B2C3D4-id-7\",SystemName=\"S\"",
         "root/ksv:KSV_DiskDrive.SystemName=\"S\",DeviceID=\"5000C500A1B2C3D4-id-7\"", true},
        {"KSV_DiskDrive.DeviceID=\"5000C500A1B2C3D4-id-7\"",
         "KSV_DiskDrive.DeviceID=\"5000c500a1b2c3d4-id-7\"", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(KSV_Common::matchObjectPath(path(c.a), path(c.b)), c.match) << c.a << " " << c.b;
}

TEST(MatchObjectPath, StringKeyHoldingAPathMatchesTheReferenceKeyOfThatPath) {
    const char* reference = "//elsewhere/root/ksv:KSV_DiskDrive.DeviceID=\"X\"";
    Array<CIMKeyBinding> asString;
    asString.append(CIMKeyBinding("PartComponent", reference, CIMKeyBinding::STRING));
    Array<CIMKeyBinding> asReference;
    asReference.append(CIMKeyBinding("PartComponent", "root/ksv:KSV_DiskDrive.DeviceID=\"X\"",
                                     CIMKeyBinding::REFERENCE));
    const CIMObjectPath a("h1", "root/ksv", "KSV_SystemDisk", asString);
    const CIMObjectPath b("", "root/ksv", "KSV_SystemDisk", asReference);
    EXPECT_TRUE(KSV_Common::matchObjectPath(a, b));
    // Neither input is changed.
    EXPECT_EQ(text(a.getHost()), "h1");
    EXPECT_EQ(a.getKeyBindings()[0].getType(), CIMKeyBinding::STRING);
    EXPECT_EQ(text(a.getKeyBindings()[0].getValue()), reference);
}

using VerifyRef = HarnessTest;

TEST_F(VerifyRef, NamespaceAndHostMustBeThisSystemsAndAMissingNamespaceIsFilledIn) {
    const struct {
        const char* ref;
        const char* host;
        bool valid;
    } cases[] = {{"KSV_StorageVolume.DeviceID=\"V\"", "", true},
                 {"root/other:KSV_StorageVolume.DeviceID=\"V\"", "", false},
                 {"root/ksv:KSV_StorageVolume.DeviceID=\"V\"", "KSV-D7.Example.NET", true},
                 {"root/ksv:KSV_StorageVolume.DeviceID=\"V\"", "198.51.100.25", true},
                 {"root/ksv:KSV_StorageVolume.DeviceID=\"V\"",
                  "[2001:0db8:0100:0000:0000:0000:0000:0025]", true},
                 {"root/ksv:KSV_StorageVolume.DeviceID=\"V\"", "[2001:DB8:100::25]", true},
                 {"root/ksv:KSV_StorageVolume.DeviceID=\"V\"", "[2001:db8:100::26]", false},
                 {"root/ksv:KSV_StorageVolume.DeviceID=\"V\"", "198.51.100.26", false},
                 {"root/ksv:KSV_StorageVolume.DeviceID=\"V\"", "other.example.net", false}};
    for (const auto& c : cases) {
        CIMObjectPath ref = path(c.ref);
        ref.setHost(c.host);
        EXPECT_EQ(KSV_Common::verifyRefMethodParam(ref, "root/ksv", "ksv-d7.example.net"), c.valid)
            << c.ref << " on " << c.host;
        if (c.valid) {
            EXPECT_EQ(text(ref.getNameSpace().getString()), "root/ksv");
        }
    }
    EXPECT_EQ(logTexts(2).front(), "The ref param root/other:KSV_StorageVolume.DeviceID=\"V\" "
                                   "contains the wrong name space root/other\n");
    EXPECT_EQ(logTexts(2).back(),
              "The ref host [other.example.net] does not match for this host!\n");
}

TEST_F(VerifyRef, ClassOverloadsAlsoRequireTheClass) {
    CIMObjectPath ref = path("//ksv-d7.example.net/root/ksv:KSV_StorageVolume.DeviceID=\"V\"");
    const auto verify = [&ref](const auto& classes) {
        return KSV_Common::verifyRefMethodParam(ref, "root/ksv", "ksv-d7.example.net", classes);
    };
    Array<CIMName> volumeClasses;
    volumeClasses.append("KSV_SnapshotVolume");
    volumeClasses.append("ksv_storagevolume");
    EXPECT_TRUE(verify(CIMName("KSV_STORAGEVOLUME")));
    EXPECT_FALSE(verify(CIMName("KSV_StoragePool")));
    EXPECT_TRUE(verify(volumeClasses));
    volumeClasses.remove(1);
    EXPECT_FALSE(verify(volumeClasses));
}

const char* const SYSTEM =
    "//ksv/root/ksv:KSV_StorageSystem.CreationClassName=\"KSV_StorageSystem\","
    "Name=\"S1\"";
const char* const DISK_A = "//ksv/root/ksv:KSV_DiskDrive.DeviceID=\"A\"";
const char* const DISK_B = "//ksv/root/ksv:KSV_DiskDrive.DeviceID=\"B\"";

CIMInstance systemDisk(const char* className, const char* disk) {
    CIMInstance instance(className);
    instance.addProperty(
        CIMProperty("GroupComponent", CIMValue(path(SYSTEM)), 0, "KSV_StorageSystem"));
    instance.addProperty(CIMProperty("PartComponent", CIMValue(path(disk)), 0, "KSV_DiskDrive"));
    instance.addProperty(CIMProperty("Note", CIMValue(String("not a reference"))));
    instance.setPath(KSV_Common::buildAssocPath(className, "GroupComponent", "PartComponent",
                                                path(SYSTEM), path(disk), "ksv", "root/ksv"));
    return instance;
}

TEST(ReferenceChecks, RoleNamingNoReferencePropertyIsAnInvalidParameter) {
    const CIMInstance assoc = systemDisk("KSV_SystemDisk", DISK_A);
    for (const char* role : {"Antecedent", "Note"}) {
        try {
            KSV_Common::_isInstanceValidReference(path("KSV_DiskDrive.DeviceID=\"A\""), assoc,
                                                  role);
            FAIL() << role;
        } catch (const CIMException& e) {
            EXPECT_EQ(e.getCode(), CIM_ERR_INVALID_PARAMETER);
            EXPECT_EQ(text(e.getMessage()), "");
        }
    }
}

TEST(ReferenceChecks, ReferenceMatchesWithoutItsHostAndNamespaceAndOnlyInItsRole) {
    const CIMInstance assoc = systemDisk("KSV_SystemDisk", DISK_A);
    const CIMObjectPath disk = path("KSV_DiskDrive.DeviceID=\"A\"");
    EXPECT_TRUE(KSV_Common::_isInstanceValidReference(disk, assoc, ""));
    EXPECT_TRUE(KSV_Common::_isInstanceValidReference(disk, assoc, "partcomponent"));
    EXPECT_FALSE(KSV_Common::_isInstanceValidReference(disk, assoc, "GroupComponent"));
    EXPECT_FALSE(KSV_Common::_isInstanceValidReference(path(DISK_A), assoc, ""));
}

TEST(ReferenceFilters, ReferenceNamesKeepTheInstancesOfTheResultClassThatNameTheObject) {
    Array<CIMInstance> instances;
    instances.append(systemDisk("KSV_SystemDisk", DISK_A));
    instances.append(systemDisk("KSV_SystemDisk", DISK_B));
    instances.append(systemDisk("KSV_OtherDisk", DISK_A));
    const auto kept = [&instances](const char* object, const CIMName& resultClass,
                                   const char* role) {
        return KSV_Common::filterReferenceNames(instances, path(object), resultClass, role);
    };
    const Array<CIMInstance> anyClass = kept(DISK_A, CIMName(), "");
    ASSERT_EQ(anyClass.size(), 2u);
    EXPECT_EQ(text(anyClass[1].getClassName().getString()), "KSV_OtherDisk");
    EXPECT_EQ(kept(DISK_A, "ksv_systemdisk", "").size(), 1u);
    EXPECT_EQ(kept(SYSTEM, "KSV_SystemDisk", "GroupComponent").size(), 2u);
    EXPECT_EQ(kept(SYSTEM, CIMName(), "PartComponent").size(), 0u);
}

TEST(ReferenceFilters, TargetsAreTheFarEndsOfTheRoleAndClassAsked) {
    const CIMInstance assoc = systemDisk("KSV_SystemDisk", DISK_A);
    Array<CIMName> diskClasses;
    diskClasses.append("KSV_DiskDrive");
    const auto targets = [&assoc](const char* object, const Array<CIMName>& classes,
                                  const char* role) {
        return KSV_Common::filterAssocInstanceToTargetPaths(assoc, path(object), classes, role);
    };
    const Array<CIMObjectPath> fromSystem = targets(SYSTEM, Array<CIMName>(), "");
    ASSERT_EQ(fromSystem.size(), 1u);
    EXPECT_EQ(text(fromSystem[0].toString()), DISK_A); // as stored, host included
    EXPECT_EQ(targets(DISK_A, diskClasses, "").size(), 0u);
    EXPECT_EQ(targets(SYSTEM, diskClasses, "PartComponent").size(), 1u);
    EXPECT_EQ(targets(SYSTEM, diskClasses, "GroupComponent").size(), 0u);

    Array<CIMInstance> candidates;
    for (const char* disk : {DISK_B, "//other/root/ksv:KSV_DiskDrive.DeviceID=\"A\""}) {
        CIMInstance candidate("KSV_DiskDrive");
        candidate.setPath(path(disk));
        candidates.append(candidate);
    }
    const Array<CIMInstance> found = KSV_Common::filterAssocInstanceToTargetInstances(
        assoc, path(SYSTEM), candidates, diskClasses, "");
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(text(found[0].getPath().getHost()), "other");
}

TEST(PoolPath, AnyKeyHoldingTheIdentifierInAnyCase) {
    for (const char* pool : {"KSV_StoragePool.InstanceID=\"quanor:PRIMORDIAL\"",
                             "KSV_StoragePool.A=\"x\",Other=\"QUANOR:primordial\""})
        EXPECT_TRUE(KSV_Common::isPoolPath(path(pool), "QUANOR:primordial")) << pool;
    EXPECT_FALSE(KSV_Common::isPoolPath(path("KSV_StoragePool.InstanceID=\"QUANOR:cpg1\""),
                                        "QUANOR:primordial"));
}

std::vector<std::string> keyNames(const CIMObjectPath& assoc) {
    std::vector<std::string> names;
    for (Uint32 i = 0; i < assoc.getKeyBindings().size(); i++) {
        EXPECT_EQ(assoc.getKeyBindings()[i].getType(), CIMKeyBinding::REFERENCE);
        names.push_back(text(assoc.getKeyBindings()[i].getName().getString()));
    }
    return names;
}

CIMObjectPath reference(const CIMObjectPath& assoc, Uint32 index) {
    return CIMObjectPath(assoc.getKeyBindings()[index].getValue());
}

TEST(AssocPaths, TwoReferencesGetExactlyTheTwoRoleKeysAndTheHostsGiven) {
    const CIMObjectPath oneHost = KSV_Common::buildAssocPath(
        "KSV_DiskPackageRealizes", "Antecedent", "Dependent",
        path("//x/root/ksv:KSV_DiskDrivePackage.Tag=\"A\""),
        path("root/other:KSV_DiskDrive.DeviceID=\"A\""), "ksv-d7", "root/ksv");
    EXPECT_EQ(keyNames(oneHost), (std::vector<std::string>{"Antecedent", "Dependent"}));
    EXPECT_EQ(text(oneHost.getHost()), "ksv-d7");
    EXPECT_EQ(text(oneHost.getNameSpace().getString()), "root/ksv");
    EXPECT_EQ(text(reference(oneHost, 0).toString()),
              "//ksv-d7/root/ksv:KSV_DiskDrivePackage.Tag=\"A\"");
    // A reference keeps its own namespace.
    EXPECT_EQ(text(reference(oneHost, 1).toString()),
              "//ksv-d7/root/other:KSV_DiskDrive.DeviceID=\"A\"");

    const CIMObjectPath threeHosts =
        KSV_Common::buildAssocPath("KSV_SystemDisk", "GroupComponent", "PartComponent",
                                   path(SYSTEM), path(DISK_A), "h1", "h2", "h3", "root/ksv");
    EXPECT_EQ(text(threeHosts.getHost()), "h3");
    EXPECT_EQ(text(reference(threeHosts, 0).getHost()), "h1");
    EXPECT_EQ(text(reference(threeHosts, 1).getHost()), "h2");
}

// Ends made once serve many instances: each sets its role's property, where the class has one,
// and names the instance by the same reference, given the end's host.
TEST(AssocPaths, PreparedEndsSetTheirRolesAndKeysWithTheirHost) {
    CIMClass assocClass("KSV_SystemDisk");
    assocClass.addProperty(
        CIMProperty("GroupComponent", CIMValue(CIMTYPE_REFERENCE, false), 0, "KSV_StorageSystem"));
    const KSV_Common::AssocEnd system("GroupComponent", path(SYSTEM), "h9");
    const KSV_Common::AssocEnd disk("PartComponent",
                                    path("root/other:KSV_DiskDrive.DeviceID=\"A\""), "h9");
    const CIMInstance instance = KSV_Common::buildAssocInstance("KSV_SystemDisk", system, disk,
                                                                assocClass, "h3", "root/ksv");
    const std::string systemText = "//h9/root/ksv:KSV_StorageSystem.CreationClassName="
                                   "\"KSV_StorageSystem\",Name=\"S1\"";
    CIMObjectPath groupComponent;
    instance.getProperty(instance.findProperty("GroupComponent")).getValue().get(groupComponent);
    EXPECT_EQ(text(groupComponent.toString()), systemText);
    EXPECT_EQ(instance.findProperty("PartComponent"), PEG_NOT_FOUND);
    EXPECT_EQ(text(instance.getPath().getHost()), "h3");
    EXPECT_EQ(keyNames(instance.getPath()),
              (std::vector<std::string>{"GroupComponent", "PartComponent"}));
    EXPECT_EQ(text(reference(instance.getPath(), 0).toString()), systemText);
    EXPECT_EQ(text(reference(instance.getPath(), 1).toString()),
              "//h9/root/other:KSV_DiskDrive.DeviceID=\"A\"");
}

} // namespace
} // namespace ksv::test
