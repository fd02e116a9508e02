// Typed readers and writers, instance skeletons and the class store.
#include "CommonTestSupport.h"

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>

namespace ksv::test {
namespace {

using namespace Pegasus;

CIMValue nullOf(CIMType type, bool isArray = false) {
    return CIMValue(type, isArray);
}

// A disk-like instance with one property of each type the readers serve, and null ones.
CIMInstance sampleInstance() {
    CIMInstance instance("KSV_Thing");
    Array<String> ports;
    ports.append("0:1:1");
    ports.append("1:1:1");
    Array<Sint32> levels;
    levels.append(-3);
    Array<Uint16> status;
    status.append(2);
    instance.addProperty(CIMProperty("Small", CIMValue(Uint8(7))));
    instance.addProperty(CIMProperty("Position", CIMValue(Uint16(12))));
    instance.addProperty(CIMProperty("ID", CIMValue(Uint32(4000000000u))));
    instance.addProperty(CIMProperty("Blocks", CIMValue(Uint64(1ull << 40))));
    instance.addProperty(CIMProperty("Allocatable", CIMValue(true)));
    instance.addProperty(
        CIMProperty("Installed", CIMValue(CIMDateTime("20240229123456.000000+060"))));
    instance.addProperty(CIMProperty("Ports", CIMValue(ports)));
    instance.addProperty(CIMProperty("Levels", CIMValue(levels)));
    instance.addProperty(CIMProperty("OperationalStatus", CIMValue(status)));
    instance.addProperty(CIMProperty("Ref", CIMValue(path("KSV_DiskDrive.DeviceID=\"X\""))));
    instance.addProperty(CIMProperty("Name", CIMValue(String("disk 7"))));
    instance.addProperty(CIMProperty("NullCount", nullOf(CIMTYPE_UINT16)));
    instance.addProperty(CIMProperty("NullName", nullOf(CIMTYPE_STRING)));
    return instance;
}

class Readers : public HarnessTest {
protected:
    CIMInstance instance = sampleInstance();

    template <typename T>
    void expectStatus(const char* property, int expected, T& value) {
        EXPECT_EQ(KSV_Common::getProperty(instance, property, value), expected) << property;
    }
};

TEST_F(Readers, PropertyFoundAbsentOrNullGivesZeroThreeOrFour) {
    Uint8 small = 0;
    expectStatus("small", 0, small);
    EXPECT_EQ(small, 7);
    Uint16 position = 99;
    expectStatus("Missing", 3, position);
    expectStatus("NullCount", 4, position);
    EXPECT_EQ(position, 99); // untouched when not found
    expectStatus("Position", 0, position);
    EXPECT_EQ(position, 12);
    Uint32 id = 0;
    expectStatus("ID", 0, id);
    EXPECT_EQ(id, 4000000000u);
    Uint64 blocks = 0;
    expectStatus("Blocks", 0, blocks);
    EXPECT_EQ(blocks, 1ull << 40);
    Boolean allocatable = false;
    expectStatus("Allocatable", 0, allocatable);
    EXPECT_TRUE(allocatable);
    CIMDateTime installed;
    expectStatus("Installed", 0, installed);
    EXPECT_EQ(text(installed.toString()), "20240229123456.000000+060");
    Array<String> ports;
    expectStatus("Ports", 0, ports);
    EXPECT_EQ(ports.size(), 2u);
    Array<Sint32> levels;
    expectStatus("Levels", 0, levels);
    EXPECT_EQ(levels[0], -3);
    Array<Uint16> status;
    expectStatus("OperationalStatus", 0, status);
    EXPECT_EQ(status[0], 2);
    CIMObjectPath ref;
    expectStatus("Ref", 0, ref);
    EXPECT_EQ(text(ref.toString()), "KSV_DiskDrive.DeviceID=\"X\"");
    expectStatus("", 3, ref);
    CIMInstance uninitialized;
    EXPECT_EQ(KSV_Common::getProperty(uninitialized, "Small", small), 3);
}

TEST_F(Readers, PropertyReadersTraceNameAndTheOutputsValue) {
    Uint8 small = 0;
    Uint64 blocks = 42;
    CIMObjectPath ref;
    Array<Sint32> levels;
    KSV_Common::getProperty(instance, "Small", small);
    KSV_Common::getProperty(instance, "Missing", blocks);
    KSV_Common::getProperty(instance, "Ref", ref);
    KSV_Common::getProperty(instance, "Levels", levels);
    EXPECT_EQ(
        harness.logTexts(4),
        (std::vector<std::string>{
            "-->KSV_Common::getProperty(uint8), propertyName = Small\n",
            "<--KSV_Common::getProperty(uint8), value = 7\n",
            "-->KSV_Common::getProperty(uint64), propertyName = Missing\n",
            "<--KSV_Common::getProperty(uint64), value = 42\n",
            "-->KSV_Common::getProperty(Array<String>), propertyName = Ref\n",
            "<--KSV_Common::getProperty(Array<String>), value = KSV_DiskDrive.DeviceID=\"X\"\n",
            "-->KSV_Common::getProperty(Array<Sint32>), propertyName = Levels\n",
            "<--KSV_Common::getProperty(Array<Sint32>)\n"}));
}

Array<CIMParamValue> parameters(std::initializer_list<CIMParamValue> values) {
    Array<CIMParamValue> result;
    for (const CIMParamValue& value : values)
        result.append(value);
    return result;
}

TEST_F(Readers, ParameterPresentOnlyAsNullCountsAsAbsent) {
    Uint16 size = 5;
    EXPECT_EQ(KSV_Common::getParameter(parameters({CIMParamValue("Size", nullOf(CIMTYPE_UINT16))}),
                                       "Size", size),
              3);
    EXPECT_EQ(KSV_Common::getParameter(parameters({}), "Size", size), 3);
    EXPECT_EQ(size, 5);
    EXPECT_EQ(KSV_Common::getParameter(parameters({CIMParamValue("Other", CIMValue(Uint16(1))),
                                                   CIMParamValue("SIZE", CIMValue(Uint16(8)))}),
                                       "size", size),
              0);
    EXPECT_EQ(size, 8);
}

TEST_F(Readers, ParameterAfterANullOccurrenceIsReadButReportedAsNull) {
    String name;
    const Array<CIMParamValue> params =
        parameters({CIMParamValue("ElementName", nullOf(CIMTYPE_STRING)),
                    CIMParamValue("ElementName", CIMValue(String("vol1")))});
    EXPECT_EQ(KSV_Common::getParameter(params, "ElementName", name), 4);
    EXPECT_EQ(text(name), "vol1");
}

TEST_F(Readers, ParameterReadersTraceNameAndValue) {
    Uint16 size = 0;
    Array<String> names;
    CIMObjectPath element;
    KSV_Common::getParameter(parameters({CIMParamValue("Size", CIMValue(Uint16(5)))}), "Size",
                             size);
    KSV_Common::getParameter(parameters({}), "Names", names);
    KSV_Common::getParameter(parameters({CIMParamValue("TheElement", CIMValue(path("X.K=\"v\"")))}),
                             "TheElement", element);
    EXPECT_EQ(harness.logTexts(4),
              (std::vector<std::string>{
                  "-->KSV_Common::getParameter(Uint16), paramName = Size\n",
                  "<--KSV_Common::getParameter(Uint16), paramValue = 5\n",
                  "-->KSV_Common::getParameter(Array<String>), paramName = Names\n",
                  "<--KSV_Common::getParameter(Array<String>)",
                  "-->KSV_Common::getParameter(CIMObjectPath), paramName = TheElement\n",
                  "<--KSV_Common::getParameter(CIMObjectPath), paramValue = X.K=\"v\"\n"}));
}

TEST_F(Readers, StringPropertyIsEmptyWhenAbsentOrNullAndTextForOtherTypes) {
    EXPECT_EQ(text(KSV_Common::getStringProperty(instance, "name")), "disk 7");
    EXPECT_EQ(text(KSV_Common::getStringProperty(instance, "Missing")), "");
    EXPECT_EQ(text(KSV_Common::getStringProperty(instance, "NullName")), "");
    EXPECT_EQ(text(KSV_Common::getStringProperty(instance, "Position")), "12");
    EXPECT_EQ(harness.logTexts(4).at(1), "<--KSV_Common::getStringProperty(), value = disk 7\n");
}

TEST_F(Readers, EmptyNameOrUninitializedInstanceIsAnInvalidRequest) {
    EXPECT_EQ(text(KSV_Common::getStringProperty(instance, "")), "");
    EXPECT_EQ(text(KSV_Common::getStringProperty(CIMInstance(), "Name")), "");
    EXPECT_TRUE(KSV_Common::getPropertyValue(instance, "").isNull());
    EXPECT_EQ(harness.logTexts(3), std::vector<std::string>(3, "\tInvalid property name.\n"));
    for (const std::string& trace : harness.logTexts(4))
        EXPECT_EQ(trace.find("<--"), std::string::npos) << "no exit line after " << trace;
}

TEST_F(Readers, KeyOfAPathIsFoundWithoutRegardToCase) {
    const CIMObjectPath disk =
        path("//h/root/ksv:KSV_DiskDrive.DeviceID=\"A-id-1\",SystemName=\"S\"");
    EXPECT_EQ(text(KSV_Common::getStringProperty(disk, "deviceid")), "A-id-1");
    EXPECT_EQ(text(KSV_Common::getStringProperty(disk, "Tag")), "");
}

TEST_F(Readers, PropertyValueIsTracedWithTheStringReadersTexts) {
    EXPECT_EQ(KSV_Common::getPropertyValue(instance, "Position"), CIMValue(Uint16(12)));
    EXPECT_TRUE(KSV_Common::getPropertyValue(instance, "Missing").isNull());
    EXPECT_EQ(harness.logTexts(4).at(1), "<--KSV_Common::getStringProperty()\n");
}

TEST(Writers, ReplaceValuesButNeverAddProperties) {
    CIMInstance instance = sampleInstance();
    const Uint32 count = instance.getPropertyCount();
    KSV_Common::setPropertyValue(instance, "Position", Uint16(3));
    KSV_Common::setPropertyValue(instance, "Name", "disk 8"); // a literal writes a string
    KSV_Common::setPropertyValue(instance, "Ref", path("KSV_DiskDrive.DeviceID=\"Y\""));
    KSV_Common::setPropertyValue(instance, "NotThere", Uint16(3));
    KSV_Common::setPropertyValueToNull(instance, "ID", CIMTYPE_UINT32);
    KSV_Common::setPropertyValueToNull(instance, "AlsoNotThere", CIMTYPE_UINT32);

    EXPECT_EQ(instance.getPropertyCount(), count);
    EXPECT_EQ(instance.findProperty("NotThere"), PEG_NOT_FOUND);
    EXPECT_EQ(KSV_Common::getPropertyValue(instance, "Position"), CIMValue(Uint16(3)));
    EXPECT_EQ(KSV_Common::getPropertyValue(instance, "Name"), CIMValue(String("disk 8")));
    EXPECT_EQ(text(KSV_Common::getPropertyValue(instance, "Ref").toString()),
              "KSV_DiskDrive.DeviceID=\"Y\"");
    const CIMValue id = KSV_Common::getPropertyValue(instance, "ID");
    EXPECT_TRUE(id.isNull());
    EXPECT_EQ(id.getType(), CIMTYPE_UINT32);
}

TEST(Writers, EmbeddedInstanceReplacesOrAddsTheProperty) {
    CIMInstance instance = sampleInstance();
    CIMInstance setting("KSV_StorageSetting");
    setting.addProperty(CIMProperty("InstanceID", CIMValue(String("QUANOR:RAID5"))));
    KSV_Common::setPropertyValue(instance, "Name", setting);
    KSV_Common::setPropertyValue(instance, "Goal", setting);
    EXPECT_EQ(KSV_Common::getPropertyValue(instance, "Name").getType(), CIMTYPE_INSTANCE);
    EXPECT_EQ(KSV_Common::getPropertyValue(instance, "Goal").getType(), CIMTYPE_INSTANCE);
    EXPECT_EQ(instance.getPropertyCount(), sampleInstance().getPropertyCount() + 1);
}

TEST_F(Readers, SkeletonHoldsEveryPropertyWithDefaultsQualifiersAndOrigins) {
    CIMClass thing("KSV_Thing", "CIM_Thing");
    CIMProperty position("Position", CIMValue(Uint16(7)), 0, CIMName(), "KSV_Thing");
    position.addQualifier(CIMQualifier("Description", CIMValue(String("slot"))));
    thing.addProperty(position);
    thing.addProperty(
        CIMProperty("Ports", nullOf(CIMTYPE_STRING, true), 0, CIMName(), "CIM_Thing"));

    const CIMInstance skeleton = KSV_Common::buildInstanceSkeleton(thing);
    ASSERT_EQ(skeleton.getPropertyCount(), 2u);
    const CIMConstProperty built = skeleton.getProperty(skeleton.findProperty("Position"));
    EXPECT_EQ(built.getValue(), CIMValue(Uint16(7)));
    EXPECT_EQ(built.getQualifierCount(), 1u);
    EXPECT_EQ(text(built.getClassOrigin().getString()), "KSV_Thing");
    EXPECT_TRUE(skeleton.getProperty(skeleton.findProperty("Ports")).getValue().isNull());
    EXPECT_EQ(harness.logTexts(4),
              (std::vector<std::string>{"-->KSV_Common::_buildInstanceSkeleton()\n",
                                        "<--KSV_Common::_buildInstanceSkeleton()\n"}));
}

TEST_F(Readers, StoredClassComesFromTheServerOnceAndHonoursTheRequest) {
    Array<CIMName> names;
    names.append("DeviceID");
    const CIMClass narrowed = KSV_Common::getStoredCIMClass(
        cimom, OperationContext(), "root/ksv", "KSV_DiskDrive", false, false, false, names);
    const CIMClass full =
        KSV_Common::getStoredCIMClass(cimom, OperationContext(), "root/ksv", "ksv_diskdrive", false,
                                      true, true, CIMPropertyList());
    EXPECT_EQ(narrowed.getPropertyCount(), 1u);
    EXPECT_EQ(narrowed.getQualifierCount(), 0u);
    EXPECT_TRUE(full.identical(
        harness.shippedClasses().getClass("root/ksv", "KSV_DiskDrive", false, true, true)));
    EXPECT_EQ(harness.server().calls("getClass").size(), 1u);
}

} // namespace
} // namespace ksv::test
