#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMQualifierDecl.h>
#include <Pegasus/Common/InternalException.h>

#include "CommonTestSupport.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

PEGASUS_USING_PEGASUS;

namespace {

CIMInstance disk() {
    CIMInstance instance(CIMName("KSV_DiskDrive"));
    instance.addProperty(CIMProperty(CIMName("DeviceID"), CIMValue(String("D1"))));
    instance.addProperty(CIMProperty(CIMName("Slot"), CIMValue(Uint16(3))));
    return instance;
}

// The recorded cases cover a scalar of another type and a null.
TEST(CIMPropertyHandling, SetValueKeepsArrayFlagAndFixedSize) {
    CIMProperty slot(CIMName("Slot"), CIMValue(Uint16(1)));
    EXPECT_THROW(slot.setValue(CIMValue(Array<Uint16>())), TypeMismatchException);
    CIMProperty fixed(CIMName("Pair"), CIMValue(Array<Uint8>(2)), 2);
    EXPECT_THROW(fixed.setValue(CIMValue(Array<Uint8>(3))), TypeMismatchException);
    EXPECT_NO_THROW(fixed.setValue(CIMValue(Array<Uint8>(2))));
}

TEST(CIMPropertyHandling, QualifiersAreFoundWithoutRegardToCase) {
    CIMProperty property(CIMName("DeviceID"), CIMValue(String("")));
    property.addQualifier(CIMQualifier(CIMName("Key"), CIMValue(true)));
    property.addQualifier(CIMQualifier(CIMName("MaxLen"), CIMValue(Uint32(256))));
    EXPECT_EQ(property.findQualifier(CIMName("maxlen")), 1u);
    EXPECT_EQ(property.findQualifier(CIMName("Override")), PEG_NOT_FOUND);
    EXPECT_EQ(
        messageOf([&] { property.addQualifier(CIMQualifier(CIMName("KEY"), CIMValue(true))); }),
        "already exists: qualifier \"KEY\"");
    property.removeQualifier(0);
    EXPECT_EQ(property.getQualifierCount(), 1u);
    EXPECT_THROW(property.getQualifier(1), IndexOutOfBoundsException);
    EXPECT_THROW(property.removeQualifier(5), IndexOutOfBoundsException);
}

TEST(CIMPropertyHandling, APropertyInAnInstanceKeepsItsName) {
    CIMProperty property(CIMName("Slot"), CIMValue(Uint16(1)));
    property.setName(CIMName("Bay"));
    {
        CIMInstance holder(CIMName("KSV_Thing"));
        holder.addProperty(property);
        EXPECT_NO_THROW(property.setName(CIMName("BAY")));
        EXPECT_EQ(messageOf([&] { property.setName(CIMName("Slot")); }),
                  "Attempted to change the name of a property already in a container.");
    }
    EXPECT_NO_THROW(property.setName(CIMName("Slot")));
}

TEST(CIMPropertyHandling, IdenticalComparesEveryAttributeAndClonesAreDeep) {
    CIMProperty base(CIMName("Caption"), CIMValue(String("c")), 0, CIMName(), CIMName("CIM_Base"),
                     true);
    EXPECT_TRUE(base.identical(base.clone()));
    CIMProperty otherOrigin = base.clone();
    otherOrigin.setClassOrigin(CIMName("KSV_Thing"));
    EXPECT_FALSE(base.identical(otherOrigin));
    CIMProperty notPropagated = base.clone();
    notPropagated.setPropagated(false);
    EXPECT_FALSE(base.identical(notPropagated));
    CIMProperty qualified = base.clone();
    qualified.addQualifier(CIMQualifier(CIMName("Description"), CIMValue(String("d"))));
    EXPECT_FALSE(base.identical(qualified));
    CIMProperty otherValue = base.clone();
    otherValue.setValue(CIMValue(String("other")));
    EXPECT_FALSE(base.identical(otherValue));
    // The clone's qualifiers are its own.
    qualified.clone().getQualifier(0).setValue(CIMValue(String("other")));
    EXPECT_EQ(qualified.getQualifier(0).getValue(), CIMValue(String("d")));
}

// The recorded cases cover lookups, duplicates and copy semantics.
// Long lists find members by an index of their names, which must follow the positions of a list
// made over one made over the class, and of one changed after a lookup.
TEST(CIMInstanceHandling, LongListsFindEveryPropertyAtItsPositionWithoutRegardToCase) {
    CIMClass wide(CIMName("KSV_Wide"));
    for (Uint32 i = 0; i < 20; i++)
        wide.addProperty(
            CIMProperty(CIMName(String("Prop") + CIMValue(i).toString()), CIMValue(i)));
    CIMInstance overlaid = wide.buildInstance(true, true, CIMPropertyList()).clone();
    overlaid.getProperty(2).setValue(CIMValue(Uint32(7)));
    CIMInstance twiceOverlaid = overlaid.clone();
    twiceOverlaid.getProperty(5).setValue(CIMValue(Uint32(7)));
    CIMInstance changedAfterLookup = twiceOverlaid.clone();
    changedAfterLookup.removeProperty(0);
    changedAfterLookup.findProperty(CIMName("Prop2"));
    changedAfterLookup.addProperty(CIMProperty(CIMName("Extra"), CIMValue(true)));
    for (const CIMInstance& instance : {twiceOverlaid, changedAfterLookup}) {
        ASSERT_EQ(instance.getPropertyCount(), 20u);
        for (Uint32 i = 0; i < 20; i++) {
            String name = instance.getProperty(i).getName().getString();
            name.toUpper();
            EXPECT_EQ(instance.findProperty(CIMName(name)), i) << utf8(name);
        }
        EXPECT_EQ(instance.findProperty(CIMName("Prop20")), PEG_NOT_FOUND);
    }
}

// Instances of one skeleton change more or fewer properties than those built before them, one
// holds another, and handles to their properties outlive them.
TEST(CIMInstanceHandling, PropertiesOfEndedInstancesLiveOnInTheirHandles) {
    CIMClass wide(CIMName("KSV_Wide"));
    for (Uint32 i = 0; i < 40; i++)
        wide.addProperty(CIMProperty(CIMName(String("P") + CIMValue(i).toString()), CIMValue(i)));
    wide.addProperty(CIMProperty(CIMName("Held"), CIMValue(CIMTYPE_INSTANCE, false)));
    const CIMInstance skeleton = wide.buildInstance(true, true, CIMPropertyList());
    std::vector<std::pair<CIMProperty, Uint32>> kept;
    for (Uint32 changed : {20u, 8u, 40u, 30u}) {
        CIMInstance holder = skeleton.clone();
        CIMInstance held = skeleton.clone();
        for (Uint32 i = 0; i < changed; i++)
            held.getProperty(i).setValue(CIMValue(changed + i));
        holder.getProperty(40).setValue(CIMValue(held));
        kept.emplace_back(held.getProperty(changed - 1), 2 * changed - 1);
    }
    for (const auto& [property, value] : kept)
        EXPECT_EQ(property.getValue(), CIMValue(value));
}

TEST(CIMInstanceHandling, PathCanChangeButNotItsClass) {
    CIMInstance instance = disk();
    CIMObjectPath path(String("//array/root/ksv:ksv_diskdrive.DeviceID=\"D1\""));
    instance.setPath(path);
    EXPECT_TRUE(instance.getPath().identical(path));
    EXPECT_EQ(instance.getClassName(), CIMName("KSV_DiskDrive"));
    EXPECT_THROW(instance.setPath(CIMObjectPath(String("KSV_Other.DeviceID=\"D1\""))),
                 TypeMismatchException);
    EXPECT_THROW(instance.setPath(CIMObjectPath()), UninitializedObjectException);
}

TEST(CIMInstanceHandling, InstanceFilterDropsWhatWasNotAskedFor) {
    CIMInstance instance(CIMName("KSV_Thing"));
    instance.addQualifier(CIMQualifier(CIMName("Description"), CIMValue(String("d"))));
    CIMProperty kept(CIMName("Kept"), CIMValue(true), 0, CIMName(), CIMName("KSV_Thing"));
    kept.addQualifier(CIMQualifier(CIMName("Units"), CIMValue(String("u"))));
    instance.addProperty(kept);
    instance.addProperty(CIMProperty(CIMName("Dropped"), CIMValue(true)));
    Array<CIMName> names;
    names.append(CIMName("KEPT"));
    const CIMInstance source = instance.clone();

    instance.instanceFilter(false, false, CIMPropertyList(names));
    // The clone it was made from keeps everything.
    EXPECT_EQ(source.getPropertyCount(), 2u);
    EXPECT_EQ(source.getProperty(0).getQualifierCount(), 1u);
    EXPECT_EQ(source.getProperty(0).getClassOrigin(), CIMName("KSV_Thing"));
    EXPECT_EQ(instance.getQualifierCount(), 0u);
    ASSERT_EQ(instance.getPropertyCount(), 1u);
    EXPECT_EQ(instance.getProperty(0).getName(), CIMName("Kept"));
    EXPECT_EQ(instance.getProperty(0).getQualifierCount(), 0u);
    EXPECT_TRUE(instance.getProperty(0).getClassOrigin().isNull());
    EXPECT_THROW(instance.getProperty(1), IndexOutOfBoundsException);
    EXPECT_THROW(instance.removeProperty(1), IndexOutOfBoundsException);
}

TEST(CIMInstanceHandling, BuildPathTakesTheClassKeys) {
    CIMClass cimClass(CIMName("KSV_DiskDrive"));
    CIMProperty key(CIMName("DeviceID"), CIMValue(String("")));
    key.addQualifier(CIMQualifier(CIMName("Key"), CIMValue(true)));
    cimClass.addProperty(key);
    CIMInstance instance = disk();
    CIMObjectPath path = instance.buildPath(cimClass);
    EXPECT_EQ(utf8(path.toString()), "KSV_DiskDrive.DeviceID=\"D1\"");

    instance.removeProperty(instance.findProperty(CIMName("DeviceID")));
    EXPECT_EQ(messageOf([&] { instance.buildPath(cimClass); }), "no such property: DeviceID");
    EXPECT_EQ(utf8(instance.buildPath(CIMClass(CIMName("KSV_DiskDrive"))).toString()),
              "KSV_DiskDrive");
}

TEST(CIMPropertyListHandling, NullSelectsAllEmptyNoneAndNamesIgnoreCase) {
    CIMPropertyList null;
    CIMPropertyList empty{Array<CIMName>()};
    EXPECT_TRUE(null.useThisProperty(CIMName("Any")));
    EXPECT_FALSE(empty.useThisProperty(CIMName("Any")));
    EXPECT_FALSE(null.contains(CIMName("Any")));
    EXPECT_EQ(utf8(null.toString()), "NULL");
    EXPECT_EQ(utf8(empty.toString()), "EMPTY");
    empty.clear();
    EXPECT_TRUE(empty.isNull());

    Array<CIMName> names(1, CIMName("DeviceID"));
    names.append(CIMName("Caption"));
    CIMPropertyList list(names);
    EXPECT_TRUE(list.contains(CIMName("deviceid")));
    EXPECT_FALSE(list.contains(CIMName("Device")));
    EXPECT_THROW((void)list[2], IndexOutOfBoundsException);
    EXPECT_EQ(utf8(list.toString()), "DeviceID, Caption");
    CIMPropertyList assigned;
    assigned = list;
    assigned.set(Array<CIMName>());
    EXPECT_EQ(list.size(), 2u);

    names.append(CIMName());
    EXPECT_THROW(CIMPropertyList{names}, UninitializedObjectException);
    EXPECT_THROW(null.set(names), UninitializedObjectException);
    EXPECT_TRUE(null.isNull());
}

TEST(CIMQualifierHandling, DeclarationNormalizesItsFlavor) {
    CIMQualifierDecl plain(CIMName("Description"), CIMValue(String("")), CIMScope::ANY,
                           CIMFlavor::NONE);
    EXPECT_EQ(utf8(plain.getFlavor().toString()), "OVERRIDABLE TOSUBCLASS");
    CIMQualifierDecl fixed(
        CIMName("Key"), CIMValue(false), CIMScope::PROPERTY + CIMScope::REFERENCE,
        CIMFlavor::DISABLEOVERRIDE + CIMFlavor::RESTRICTED + CIMFlavor::TOSUBCLASS);
    EXPECT_EQ(utf8(fixed.getFlavor().toString()), "DISABLEOVERRIDE RESTRICTED");
    EXPECT_EQ(utf8(fixed.getScope().toString()), "PROPERTY REFERENCE");
    EXPECT_TRUE(fixed.identical(fixed.clone()));
    EXPECT_FALSE(fixed.identical(plain));
}

} // namespace
