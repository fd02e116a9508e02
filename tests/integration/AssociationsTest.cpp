// The eight associations of the disk module, asked from each of their two ends through the
// running server: the far ends must be objects that their own providers serve, and the
// association names must be fetchable.
#include "IntegrationTest.h"

#include <set>

namespace ksv::integration {
namespace {

struct AssociationEnd {
    const char* association;
    const char* end; // test name
    CIMObjectPath (*object)();
    size_t related;
};

const AssociationEnd ENDS[] = {
    {"KSV_SystemDisk", "System", systemPath, 5},
    {"KSV_SystemDisk", "Disk", [] { return diskPath(0); }, 1},
    {"KSV_SystemExtent", "System", systemPath, 5},
    {"KSV_SystemExtent", "Extent", [] { return extentPath(0); }, 1},
    {"KSV_DiskPackageRealizes", "Package", [] { return packagePath(0); }, 1},
    {"KSV_DiskPackageRealizes", "Disk", [] { return diskPath(0); }, 1},
    // Disk 5 is unusable and not a component of the pool.
    {"KSV_AssociatedPrimordialDisks", "Pool", [] { return poolPath("primordial"); }, 4},
    {"KSV_AssociatedPrimordialDisks", "Extent", [] { return extentPath(1); }, 1},
    {"KSV_VolumeBasedOnDiskExtent", "Extent", [] { return extentPath(1); }, 2},
    {"KSV_VolumeBasedOnDiskExtent", "Volume", [] { return volumePath(0); }, 3},
    // The present disks with firmware "4.0"; the absent one is left out.
    {"KSV_DiskSoftware", "Identity", [] { return identityPath("4.0"); }, 2},
    {"KSV_DiskSoftware", "Disk", [] { return diskPath(1); }, 1},
    {"KSV_DiskPresent", "Disk", [] { return diskPath(3); }, 1},
    {"KSV_DiskPresent", "Extent", [] { return extentPath(3); }, 1},
    {"KSV_MagazineContainer", "Magazine", [] { return magazinePath("KSV_Magazine", "IT1-DC0-M0"); },
     2},
    // The package of a disk in a drive bay.
    {"KSV_MagazineContainer", "Package", [] { return packagePath(3); }, 1},
};

std::string bareText(CIMObjectPath path) {
    path.setHost(String());
    path.setNameSpace(CIMNamespaceName());
    return text(path.toString());
}

template <typename Objects>
std::set<std::string> pathsOf(const Objects& objects) {
    std::set<std::string> paths;
    for (Uint32 i = 0; i < objects.size(); i++)
        paths.insert(bareText(objects[i].getPath()));
    return paths;
}

std::set<std::string> bareTexts(const Array<CIMObjectPath>& paths) {
    std::set<std::string> texts;
    for (Uint32 i = 0; i < paths.size(); i++)
        texts.insert(bareText(paths[i]));
    return texts;
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

class AssociationTest : public IntegrationTest,
                        public ::testing::WithParamInterface<AssociationEnd> {
protected:
    const CIMName association{GetParam().association};
    const CIMObjectPath object = GetParam().object();
};

TEST_P(AssociationTest, TheFarEndsAreObjectsTheirProvidersServe) {
    const auto admin = client();
    const Array<CIMObjectPath> names = admin->associatorNames(KSV_NAMESPACE, object, association);
    EXPECT_EQ(names.size(), GetParam().related);
    for (Uint32 i = 0; i < names.size(); i++) {
        EXPECT_TRUE(isNamedBy(admin->getInstance(KSV_NAMESPACE, names[i]), names[i]))
            << text(names[i].toString());
    }
    const Array<CIMObject> objects = admin->associators(KSV_NAMESPACE, object, association);
    EXPECT_EQ(pathsOf(objects), bareTexts(names));
}

TEST_P(AssociationTest, TheAssociationsReferToTheObjectAndCanBeFetched) {
    const auto admin = client();
    const Array<CIMObjectPath> names = admin->referenceNames(KSV_NAMESPACE, object, association);
    EXPECT_EQ(names.size(), GetParam().related);
    for (Uint32 i = 0; i < names.size(); i++) {
        EXPECT_TRUE(names[i].getClassName().equal(association)) << text(names[i].toString());
        const CIMInstance fetched = admin->getInstance(KSV_NAMESPACE, names[i]);
        EXPECT_TRUE(refersTo(fetched, object)) << text(names[i].toString());
    }
    const Array<CIMObject> references = admin->references(KSV_NAMESPACE, object, association);
    EXPECT_EQ(pathsOf(references), bareTexts(names));
    for (Uint32 i = 0; i < references.size(); i++)
        EXPECT_TRUE(refersTo(CIMInstance(references[i]), object));
}

INSTANTIATE_TEST_SUITE_P(EightAssociations, AssociationTest, ::testing::ValuesIn(ENDS),
                         [](const auto& info) {
                             return std::string(info.param.association) + "_From" + info.param.end;
                         });

class AssociationEnumerationTest : public IntegrationTest {};

// Each association, enumerated as a class, names every pair once.
TEST_F(AssociationEnumerationTest, EveryAssociationClassEnumeratesItsPairs) {
    const auto admin = client();
    const std::pair<const char*, size_t> classes[] = {{"KSV_SystemDisk", 5},
                                                      {"KSV_SystemExtent", 5},
                                                      {"KSV_DiskPackageRealizes", 5},
                                                      {"KSV_AssociatedPrimordialDisks", 4},
                                                      {"KSV_VolumeBasedOnDiskExtent", 5},
                                                      {"KSV_DiskSoftware", 4},
                                                      {"KSV_DiskPresent", 5},
                                                      {"KSV_MagazineContainer", 5}};
    for (const auto& [className, pairs] : classes) {
        const Array<CIMObjectPath> names = admin->enumerateInstanceNames(KSV_NAMESPACE, className);
        EXPECT_EQ(names.size(), pairs) << className;
        EXPECT_EQ(bareTexts(names).size(), names.size()) << className;
        EXPECT_EQ(admin->enumerateInstances(KSV_NAMESPACE, className).size(), pairs) << className;
    }
}

} // namespace
} // namespace ksv::integration
