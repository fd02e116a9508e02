// The MOF shipped under mof/: it compiles, classes and associations have the
// bases and keys their paths use, and only the locate indicator is writable. The
// registration is proved by the end-to-end suite, whose server serves every
// registered class through it.

#include <set>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMProperty.h>

#include "MofTestSupport.h"

namespace ksv::mof::test {
namespace {

using namespace Pegasus;

const char* const ksv = "root/ksv";

class ShippedMof : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        MofCompiler compiler;
        compiler.compileFile(shippedMof("standalone.mof"));
        warnings = compiler.warnings();
        repository = compiler.repository();
    }

    static CIMClass classIn(const char* nameSpace, const std::string& className) {
        return repository.getClass(nameSpace, className.c_str(), false, true, true);
    }

    static inline ClassRepository repository;
    static inline std::vector<std::string> warnings;
};

TEST_F(ShippedMof, CompilesWithoutWarnings) {
    EXPECT_EQ(warnings, std::vector<std::string>{});
}

TEST(ShippedMofFiles, EachNamespaceFileCompilesOverTheSchemaItNeeds) {
    const std::pair<const char*, std::vector<const char*>> cases[] = {
        {"root/ksv", {"dmtf/CIM_Schema.mof", "root_ksv.mof"}},
        {"root/PG_Internal", {"dmtf/CIM_Qualifiers.mof", "root_PG_Internal.mof"}},
        {"root/PG_InterOp",
         {"dmtf/CIM_Schema.mof", "registration/PG_ProviderRegistration.mof",
          "root_PG_InterOp.mof"}},
    };
    for (const auto& [nameSpace, files] : cases) {
        MofCompiler compiler(MofCompilerOptions{nameSpace, {}});
        for (const char* file : files)
            EXPECT_NO_THROW(compiler.compileFile(shippedMof(file))) << file;
        EXPECT_EQ(compiler.repository().enumerateNameSpaces().size(), 1u) << nameSpace;
    }
}

// The keys of each class, sorted, a reference key with the class it refers to.
TEST_F(ShippedMof, ClassesAndAssociationsHaveTheBasesAndKeysPathsUse) {
    const char* const deviceKeys = "creationclassname deviceid systemcreationclassname systemname";
    const char* const packageKeys = "creationclassname tag";
    const struct {
        const char* className;
        const char* superClass;
        const char* keys;
    } rows[] = {
        {"KSV_DiskDrive", "CIM_DiskDrive", deviceKeys},
        {"KSV_DiskStorageExtent", "CIM_StorageExtent", deviceKeys},
        {"KSV_DiskDrivePackage", "CIM_PhysicalPackage", packageKeys},
        {"KSV_DiskSoftwareIdentity", "CIM_SoftwareIdentity", "instanceid"},
        {"KSV_StorageSystem", "CIM_ComputerSystem", "creationclassname name"},
        {"KSV_SystemPackage", "CIM_PhysicalPackage", packageKeys},
        {"KSV_StorageSystemView", "CIM_View", "instanceid"},
        {"KSV_StoragePool", "CIM_StoragePool", "instanceid"},
        {"KSV_StorageVolume", "CIM_StorageVolume", deviceKeys},
        {"KSV_Magazine", "CIM_PhysicalPackage", packageKeys},
        {"KSV_DiskBay", "KSV_Magazine", packageKeys},
        {"KSV_SystemDisk", "CIM_SystemDevice",
         "groupcomponent:KSV_StorageSystem partcomponent:KSV_DiskDrive"},
        {"KSV_SystemExtent", "CIM_SystemDevice",
         "groupcomponent:KSV_StorageSystem partcomponent:KSV_DiskStorageExtent"},
        {"KSV_DiskPackageRealizes", "CIM_Realizes",
         "antecedent:KSV_DiskDrivePackage dependent:KSV_DiskDrive"},
        {"KSV_AssociatedPrimordialDisks", "CIM_AssociatedComponentExtent",
         "groupcomponent:KSV_StoragePool partcomponent:KSV_DiskStorageExtent"},
        {"KSV_VolumeBasedOnDiskExtent", "CIM_BasedOn",
         "antecedent:KSV_DiskStorageExtent dependent:KSV_StorageVolume"},
        {"KSV_DiskSoftware", "CIM_ElementSoftwareIdentity",
         "antecedent:KSV_DiskSoftwareIdentity dependent:KSV_DiskDrive"},
        {"KSV_DiskPresent", "CIM_MediaPresent",
         "antecedent:KSV_DiskDrive dependent:KSV_DiskStorageExtent"},
        {"KSV_MagazineContainer", "CIM_Container",
         "groupcomponent:KSV_Magazine partcomponent:KSV_DiskDrivePackage"},
    };
    for (const auto& row : rows) {
        CIMClass cimClass = classIn(ksv, row.className);
        EXPECT_EQ(utf8(cimClass.getSuperClassName().getString()), row.superClass);
        std::set<std::string> keys;
        for (Uint32 i = 0; i < cimClass.getPropertyCount(); ++i) {
            CIMConstProperty property = cimClass.getProperty(i);
            if (qualifierText(property, "Key") != "TRUE")
                continue;
            std::string reference = utf8(property.getReferenceClassName().getString());
            keys.insert(foldName(property.getName()) + (reference.empty() ? "" : ":" + reference));
        }
        std::string joined;
        for (const std::string& key : keys)
            joined += (joined.empty() ? "" : " ") + key;
        EXPECT_EQ(joined, row.keys) << row.className;
        EXPECT_EQ(cimClass.isAssociation(), joined.find(':') != std::string::npos) << row.className;
    }
}

TEST_F(ShippedMof, OnlyTheLocateIndicatorOfADiskIsWritable) {
    CIMClass drive = classIn(ksv, "KSV_DiskDrive");
    std::vector<std::string> writable;
    for (Uint32 i = 0; i < drive.getPropertyCount(); ++i) {
        CIMConstProperty property = drive.getProperty(i);
        if (property.getClassOrigin() == CIMName("KSV_DiskDrive") &&
            qualifierText(property, "Write") == "TRUE")
            writable.push_back(utf8(property.getName().getString()));
    }
    EXPECT_EQ(writable, std::vector<std::string>{"LocationIndicator"});
}

} // namespace
} // namespace ksv::mof::test
