#include <Pegasus/Common/CIMClass.h>

#include "CommonTestSupport.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

PEGASUS_USING_PEGASUS;

namespace {

CIMProperty keyProperty(const char* name, const CIMValue& key) {
    CIMProperty property(CIMName(name), CIMValue(String("")));
    property.addQualifier(CIMQualifier(CIMName("Key"), key));
    return property;
}

// A disk class as the repository gives it out: one class qualifier, an
// inherited key, an own property with a default and a qualifier.
CIMClass diskClass() {
    CIMClass disk(CIMName("KSV_DiskDrive"), CIMName("CIM_DiskDrive"));
    disk.addQualifier(CIMQualifier(CIMName("Version"), CIMValue(String("1.0"))));
    CIMProperty deviceId = keyProperty("DeviceID", CIMValue(true));
    deviceId.setClassOrigin(CIMName("CIM_LogicalDevice"));
    deviceId.setPropagated(true);
    disk.addProperty(deviceId);
    CIMProperty speed(CIMName("Speed"), CIMValue(Uint64(15000)), 0, CIMName(),
                      CIMName("KSV_DiskDrive"));
    speed.addQualifier(CIMQualifier(CIMName("Units"), CIMValue(String("RPM"))));
    disk.addProperty(speed);
    disk.addProperty(CIMProperty(CIMName("Ports"), CIMValue(CIMTYPE_STRING, true)));
    return disk;
}

TEST(CIMClassBuildInstance, InstanceIsIndependentOfTheClass) {
    CIMClass cimClass = diskClass();
    CIMInstance disk = cimClass.buildInstance(true, true, CIMPropertyList());
    disk.getProperty(1).setValue(CIMValue(Uint64(7200)));
    disk.getProperty(1).getQualifier(0).setValue(CIMValue(String("changed")));
    disk.getQualifier(0).setValue(CIMValue(String("2.0")));
    disk.addProperty(CIMProperty(CIMName("Extra"), CIMValue(true)));

    EXPECT_EQ(cimClass.getProperty(1).getValue(), CIMValue(Uint64(15000)));
    EXPECT_EQ(cimClass.getProperty(1).getQualifier(0).getValue(), CIMValue(String("RPM")));
    EXPECT_EQ(cimClass.getQualifier(0).getValue(), CIMValue(String("1.0")));
    EXPECT_EQ(cimClass.getPropertyCount(), 3u);
}

// Built instances and clones share members with their source until one side changes them,
// also through a handle taken before the copy.
TEST(CIMClassBuildInstance, ChangesOnEitherSideOfACopyStayThere) {
    CIMClass cimClass = diskClass();
    CIMProperty heldSpeed = cimClass.getProperty(1);
    CIMQualifier heldUnits = heldSpeed.getQualifier(0);
    CIMInstance disk = cimClass.buildInstance(true, true, CIMPropertyList());
    CIMInstance copy = disk.clone();
    heldSpeed.setValue(CIMValue(Uint64(10000)));
    heldUnits.setValue(CIMValue(String("rpm")));
    cimClass.getProperty(0).getQualifier(0).setValue(CIMValue(false));
    disk.getProperty(2).setValue(CIMValue(Array<String>(1, String("0:1:2"))));
    disk.getProperty(2).setClassOrigin(CIMName("KSV_Other"));
    disk.getProperty(2).addQualifier(CIMQualifier(CIMName("Override"), CIMValue(String("x"))));

    for (const CIMInstance& built : {disk, copy}) {
        EXPECT_EQ(built.getProperty(1).getValue(), CIMValue(Uint64(15000)));
        EXPECT_EQ(built.getProperty(1).getQualifier(0).getValue(), CIMValue(String("RPM")));
        EXPECT_EQ(built.getProperty(0).getQualifier(0).getValue(), CIMValue(true));
    }
    EXPECT_TRUE(copy.getProperty(2).getValue().isNull());
    for (const CIMConstObject& unchanged : {CIMConstObject(copy), CIMConstObject(cimClass)}) {
        EXPECT_TRUE(unchanged.getProperty(2).getClassOrigin().isNull());
        EXPECT_EQ(unchanged.getProperty(2).getQualifierCount(), 0u);
    }
    EXPECT_EQ(cimClass.getProperty(1).getValue(), CIMValue(Uint64(10000)));
    EXPECT_TRUE(cimClass.getProperty(2).getValue().isNull());
}

// Instances built while nothing outside the class refers to its properties share them until set.
TEST(CIMClassBuildInstance, AHandleTakenFromABuiltInstanceFollowsItsProperty) {
    CIMClass cimClass = diskClass();
    CIMInstance disk = cimClass.buildInstance(true, true, CIMPropertyList());
    CIMInstance other = cimClass.buildInstance(true, true, CIMPropertyList());
    CIMProperty speed = disk.getProperty(1);
    other.getProperty(1).setValue(CIMValue(Uint64(7200)));
    disk.removeProperty(0);
    speed.setValue(CIMValue(Uint64(10000)));
    const CIMInstance before = disk.clone();
    speed.setValue(CIMValue(Uint64(5400)));

    EXPECT_EQ(disk.getProperty(0).getValue(), CIMValue(Uint64(5400)));
    EXPECT_EQ(before.getProperty(0).getValue(), CIMValue(Uint64(10000)));
    EXPECT_EQ(other.getProperty(1).getValue(), CIMValue(Uint64(7200)));
    EXPECT_EQ(cimClass.getProperty(1).getValue(), CIMValue(Uint64(15000)));
}

// A property set in a built instance shares what it declares with the class's property: a handle
// to it keeps that alive after the instance and the class have ended.
TEST(CIMClassBuildInstance, ASetPropertyOutlivesItsInstanceAndClass) {
    CIMProperty speed;
    {
        const CIMClass cimClass = diskClass();
        CIMInstance disk = cimClass.buildInstance(true, true, CIMPropertyList());
        speed = disk.getProperty(1);
        speed.setValue(CIMValue(Uint64(7200)));
    }
    EXPECT_EQ(speed.getName(), CIMName("Speed"));
    EXPECT_EQ(speed.getClassOrigin(), CIMName("KSV_DiskDrive"));
    EXPECT_EQ(speed.getQualifier(0).getValue(), CIMValue(String("RPM")));
    EXPECT_EQ(speed.getValue(), CIMValue(Uint64(7200)));
}

// Instances of a class that is itself a changed copy of another, each setting its own number
// of properties, last first: more than the instances before it, as many, fewer.
TEST(CIMClassBuildInstance, InstancesOfAChangedClassKeepTheirOwnValues) {
    const CIMClass original = diskClass();
    CIMClass changed = original.clone();
    changed.getProperty(1).setValue(CIMValue(Uint64(10000)));
    const CIMInstance skeleton = changed.buildInstance(true, true, CIMPropertyList());
    const Uint32 setCounts[] = {1, 3, 3, 2, 0, 3};
    const auto valueOf = [](Uint32 disk, Uint32 index) {
        const String digit(std::to_string(disk).c_str());
        return index == 0   ? CIMValue(digit)
               : index == 1 ? CIMValue(Uint64(disk))
                            : CIMValue(Array<String>(1, String("0:1:") + digit));
    };
    std::vector<CIMInstance> disks;
    CIMProperty kept;
    for (Uint32 disk = 0; disk < 6; disk++) {
        disks.push_back(skeleton.clone());
        for (Uint32 index = setCounts[disk]; index-- > 0;) {
            kept = disks.back().getProperty(index);
            kept.setValue(valueOf(disk, index));
        }
    }
    CIMProperty renamed = disks[1].getProperty(0).clone();
    renamed.setName(CIMName("Renamed"));

    for (Uint32 disk = 0; disk < 6; disk++) {
        for (Uint32 index = 0; index < 3; index++) {
            EXPECT_EQ(disks[disk].getProperty(index).getValue(),
                      index < setCounts[disk] ? valueOf(disk, index)
                                              : skeleton.getProperty(index).getValue())
                << "disk " << disk << ", property " << index;
        }
    }
    disks.clear();
    kept.setValue(valueOf(7, 0));
    EXPECT_EQ(kept.getValue(), valueOf(7, 0));
    EXPECT_TRUE(skeleton.getProperty(0).getName().equal(CIMName("DeviceID")));
    EXPECT_EQ(skeleton.getProperty(1).getValue(), CIMValue(Uint64(10000)));
    EXPECT_TRUE(changed.getProperty(2).getValue().isNull());
    EXPECT_EQ(original.getProperty(1).getValue(), CIMValue(Uint64(15000)));
}

TEST(CIMClassKeys, KeyNamesInPropertyOrderOnlyForTrueBooleanKeys) {
    CIMClass cimClass(CIMName("KSV_Pair"));
    cimClass.addProperty(keyProperty("Second", CIMValue(true)));
    cimClass.addProperty(keyProperty("NotKey", CIMValue(false)));
    cimClass.addProperty(keyProperty("TextKey", CIMValue(String("true"))));
    cimClass.addProperty(keyProperty("First", CIMValue(true)));
    cimClass.addProperty(keyProperty("NullKey", CIMValue(CIMTYPE_BOOLEAN, false)));
    cimClass.addProperty(CIMProperty(CIMName("Plain"), CIMValue(true)));

    Array<CIMName> keyNames;
    keyNames.append(CIMName("Stale"));
    cimClass.getKeyNames(keyNames);
    ASSERT_EQ(keyNames.size(), 2u);
    EXPECT_EQ(keyNames[0], CIMName("Second"));
    EXPECT_EQ(keyNames[1], CIMName("First"));
    EXPECT_TRUE(cimClass.hasKeys());
    EXPECT_FALSE(CIMConstClass(CIMName("KSV_Keyless")).hasKeys());
    CIMConstClass(diskClass()).getKeyNames(keyNames);
    ASSERT_EQ(keyNames.size(), 1u);
    EXPECT_EQ(keyNames[0], CIMName("DeviceID"));
}

TEST(CIMClassQualifiers, AssociationAndAbstractNeedATrueBoolean) {
    CIMClass association(CIMName("KSV_SystemDisk"));
    EXPECT_FALSE(association.isAssociation());
    association.addQualifier(CIMQualifier(CIMName("ASSOCIATION"), CIMValue(true)));
    EXPECT_TRUE(association.isAssociation());
    EXPECT_FALSE(association.isAbstract());

    CIMClass notAbstract(CIMName("KSV_Thing"));
    notAbstract.addQualifier(CIMQualifier(CIMName("Abstract"), CIMValue(false)));
    notAbstract.addQualifier(CIMQualifier(CIMName("Association"), CIMValue(String("true"))));
    EXPECT_FALSE(notAbstract.isAbstract());
    EXPECT_FALSE(notAbstract.isAssociation());
}

TEST(CIMClassProperties, DuplicatesAreRefusedAndAReferenceNeedsAReferenceClass) {
    EXPECT_THROW(diskClass().addProperty(CIMProperty(CIMName("SPEED"), CIMValue(Uint64(1)))),
                 AlreadyExistsException);
    CIMClass association(CIMName("KSV_SystemDisk"));
    CIMObjectPath path(String("KSV_DiskDrive.DeviceID=\"D1\""));
    EXPECT_THROW(association.addProperty(CIMProperty(CIMName("Dependent"), CIMValue(path))),
                 TypeMismatchException);
    association.addProperty(
        CIMProperty(CIMName("Dependent"), CIMValue(path), 0, CIMName("KSV_DiskDrive")));
    EXPECT_EQ(association.getProperty(0).getReferenceClassName(), CIMName("KSV_DiskDrive"));

    CIMInstance instance(CIMName("KSV_SystemDisk"));
    EXPECT_NO_THROW(instance.addProperty(CIMProperty(CIMName("Dependent"), CIMValue(path))));
}

TEST(CIMClassMethods, MethodsAndParametersAreNamedMembers) {
    CIMMethod locate(CIMName("Locate"), CIMTYPE_UINT32);
    locate.addParameter(CIMParameter(CIMName("State"), CIMTYPE_BOOLEAN));
    locate.addParameter(
        CIMParameter(CIMName("Target"), CIMTYPE_REFERENCE, false, 0, CIMName("KSV_Magazine")));
    EXPECT_THROW(locate.addParameter(CIMParameter(CIMName("state"), CIMTYPE_UINT8)),
                 AlreadyExistsException);
    CIMClass cimClass = diskClass();
    cimClass.addMethod(locate);
    EXPECT_THROW(cimClass.addMethod(CIMMethod(CIMName("LOCATE"), CIMTYPE_UINT32)),
                 AlreadyExistsException);

    ASSERT_EQ(cimClass.findMethod(CIMName("locate")), 0u);
    CIMConstMethod found = CIMConstClass(cimClass).getMethod(0);
    EXPECT_EQ(found.getType(), CIMTYPE_UINT32);
    EXPECT_EQ(found.findParameter(CIMName("TARGET")), 1u);
    EXPECT_EQ(found.getParameter(1).getReferenceClassName(), CIMName("KSV_Magazine"));
    cimClass.removeMethod(0);
    EXPECT_EQ(cimClass.getMethodCount(), 0u);
    EXPECT_THROW(cimClass.getMethod(0), IndexOutOfBoundsException);
}

TEST(CIMClassIdentity, SuperclassAndMethodOriginTakePart) {
    CIMClass cimClass = diskClass();
    EXPECT_EQ(cimClass.getSuperClassName(), CIMName("CIM_DiskDrive"));
    CIMClass other = cimClass.clone();
    other.setSuperClassName(CIMName("CIM_MediaAccessDevice"));
    EXPECT_FALSE(cimClass.identical(other));

    cimClass.addMethod(CIMMethod(CIMName("Locate"), CIMTYPE_UINT32, CIMName("KSV_DiskDrive")));
    CIMClass inherited = cimClass.clone();
    inherited.getMethod(0).setPropagated(true);
    EXPECT_FALSE(cimClass.identical(inherited));
}

TEST(CIMObjectText, ClassPrintsQualifiersPropertiesAndMethodsAsXml) {
    CIMClass association(CIMName("KSV_SystemDisk"));
    association.addQualifier(CIMQualifier(CIMName("Association"), CIMValue(true)));
    association.addProperty(CIMProperty(
        CIMName("Dependent"), CIMValue(CIMObjectPath(String("KSV_DiskDrive.DeviceID=\"D1\""))), 0,
        CIMName("KSV_DiskDrive"), CIMName("KSV_SystemDisk")));
    Array<Uint16> ports;
    ports.append(2);
    association.addProperty(
        CIMProperty(CIMName("Ports"), CIMValue(ports), 0, CIMName(), CIMName(), true));
    CIMMethod locate(CIMName("Locate"), CIMTYPE_UINT32);
    locate.addParameter(CIMParameter(CIMName("State"), CIMTYPE_BOOLEAN));
    association.addMethod(locate);

    EXPECT_EQ(utf8(CIMObject(association).toString()),
              "<CLASS NAME=\"KSV_SystemDisk\" >\n"
              "<QUALIFIER NAME=\"Association\" TYPE=\"boolean\" OVERRIDABLE=\"false\""
              " TOSUBCLASS=\"false\">\n"
              "<VALUE>TRUE</VALUE>\n"
              "</QUALIFIER>\n"
              "<PROPERTY.REFERENCE NAME=\"Dependent\"  REFERENCECLASS=\"KSV_DiskDrive\""
              " CLASSORIGIN=\"KSV_SystemDisk\">\n"
              "<VALUE.REFERENCE>\n"
              "<INSTANCENAME CLASSNAME=\"KSV_DiskDrive\">\n"
              "<KEYBINDING NAME=\"DeviceID\">\n"
              "<KEYVALUE VALUETYPE=\"string\">D1</KEYVALUE>\n"
              "</KEYBINDING>\n"
              "</INSTANCENAME>\n"
              "</VALUE.REFERENCE>\n"
              "</PROPERTY.REFERENCE>\n"
              "<PROPERTY.ARRAY NAME=\"Ports\"  TYPE=\"uint16\" PROPAGATED=\"true\">\n"
              "<VALUE.ARRAY>\n"
              "<VALUE>2</VALUE>\n"
              "</VALUE.ARRAY>\n"
              "</PROPERTY.ARRAY>\n"
              "<METHOD NAME=\"Locate\" TYPE=\"uint32\">\n"
              "<PARAMETER NAME=\"State\" TYPE=\"boolean\">\n"
              "</PARAMETER>\n"
              "</METHOD>\n"
              "</CLASS>\n");
}

} // namespace
