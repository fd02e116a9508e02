// Typed readers and writers, instance skeletons and the class store.
#include "ProviderTestSupport.h"

#include <Pegasus/Common/CIMQualifier.h>

namespace ksv::test {
namespace {

// A disk-like instance with one property of each type the readers serve, and null ones.
CIMInstance sampleInstance() {
    CIMInstance instance("KSV_Thing");
    const String ports[] = {"0:1:1", "1:1:1"};
    instance.addProperty(CIMProperty("Small", CIMValue(Uint8(7))));
    instance.addProperty(CIMProperty("Position", CIMValue(Uint16(12))));
    instance.addProperty(CIMProperty("ID", CIMValue(Uint32(4000000000u))));
    instance.addProperty(CIMProperty("Blocks", CIMValue(Uint64(1ull << 40))));
    instance.addProperty(CIMProperty("Allocatable", CIMValue(true)));
    instance.addProperty(
        CIMProperty("Installed", CIMValue(CIMDateTime("20240229123456.000000+060"))));
    instance.addProperty(CIMProperty("Ports", CIMValue(Array<String>(ports, 2))));
    instance.addProperty(CIMProperty("Levels", CIMValue(Array<Sint32>(1, -3))));
    instance.addProperty(CIMProperty("OperationalStatus", CIMValue(Array<Uint16>(1, 2))));
    instance.addProperty(CIMProperty("Ref", CIMValue(path("KSV_DiskDrive.DeviceID=\"X\""))));
    instance.addProperty(CIMProperty("Name", CIMValue(String("disk 7"))));
    instance.addProperty(CIMProperty("NullCount", CIMValue(CIMTYPE_UINT16, false)));
    instance.addProperty(CIMProperty("NullName", CIMValue(CIMTYPE_STRING, false)));
    return instance;
}

class Readers : public HarnessTest {
protected:
    // The status of the typed read, then the value it leaves.
    template <typename T>
    std::string read(const char* property, T value = T()) {
        const int status = KSV_Common::getProperty(instance, property, value);
        return std::to_string(status) + " " + text(CIMValue(value).toString());
    }

    CIMInstance instance = sampleInstance();
};

TEST_F(Readers, PropertyFoundAbsentOrNullGivesZeroThreeOrFour) {
    EXPECT_EQ(read<Uint8>("small"), "0 7");
    EXPECT_EQ(read<Uint16>("Missing", 99), "3 99"); // untouched when not found
    EXPECT_EQ(read<Uint16>("NullCount", 99), "4 99");
    EXPECT_EQ(read<Uint16>("Position"), "0 12");
    EXPECT_EQ(read<Uint32>("ID"), "0 4000000000");
    EXPECT_EQ(read<Uint64>("Blocks"), "0 1099511627776");
    EXPECT_EQ(read<Boolean>("Allocatable"), "0 TRUE");
    EXPECT_EQ(read<CIMDateTime>("Installed"), "0 20240229123456.000000+060");
    EXPECT_EQ(read<Array<String>>("Ports"), "0 0:1:1 1:1:1 ");
    EXPECT_EQ(read<Array<Sint32>>("Levels"), "0 -3 ");
    EXPECT_EQ(read<Array<Uint16>>("OperationalStatus"), "0 2 ");
    EXPECT_EQ(read<CIMObjectPath>("Ref"), "0 KSV_DiskDrive.DeviceID=\"X\"");
    EXPECT_EQ(read<CIMObjectPath>("").substr(0, 2), "3 ");
    Uint8 small = 0;
    EXPECT_EQ(KSV_Common::getProperty(CIMInstance(), "Small", small), 3);
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
        logTexts(4),
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

TEST_F(Readers, ParameterPresentOnlyAsNullCountsAsAbsentAndAfterANullIsReportedAsNull) {
    Uint16 size = 5;
    EXPECT_EQ(KSV_Common::getParameter(parameters({{"Size", CIMValue(CIMTYPE_UINT16, false)}}),
                                       "Size", size),
              3);
    EXPECT_EQ(KSV_Common::getParameter(parameters({}), "Size", size), 3);
    EXPECT_EQ(size, 5);
    const Array<CIMParamValue> twoSizes =
        parameters({{"Other", CIMValue(Uint16(1))}, {"SIZE", CIMValue(Uint16(8))}});
    EXPECT_EQ(KSV_Common::getParameter(twoSizes, "size", size), 0);
    EXPECT_EQ(size, 8);
    String name;
    const Array<CIMParamValue> nullFirst =
        parameters({{"ElementName", CIMValue(CIMTYPE_STRING, false)},
                    {"ElementName", CIMValue(String("vol1"))}});
    EXPECT_EQ(KSV_Common::getParameter(nullFirst, "ElementName", name), 4);
    EXPECT_EQ(text(name), "vol1");
}

TEST_F(Readers, ParameterReadersTraceNameAndValue) {
    Uint16 size = 0;
    Array<String> names;
    CIMObjectPath element;
    KSV_Common::getParameter(parameters({{"Size", CIMValue(Uint16(5))}}), "Size", size);
    KSV_Common::getParameter(parameters({}), "Names", names);
    KSV_Common::getParameter(parameters({{"TheElement", CIMValue(path("X.K=\"v\""))}}),
                             "TheElement", element);
    EXPECT_EQ(logTexts(4),
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
    EXPECT_EQ(logTexts(4).at(1), "<--KSV_Common::getStringProperty(), value = disk 7\n");
    // The value reader is traced with the string reader's texts.
    ksvsim::clearCapturedLog();
    EXPECT_EQ(KSV_Common::getPropertyValue(instance, "Position"), CIMValue(Uint16(12)));
    EXPECT_TRUE(KSV_Common::getPropertyValue(instance, "Missing").isNull());
    EXPECT_EQ(logTexts(4).at(1), "<--KSV_Common::getStringProperty()\n");
    // A path's key is found without regard to case.
    const CIMObjectPath disk =
        path("//h/root/ksv:KSV_DiskDrive.DeviceID=\"A-id-1\",SystemName=\"S\"");
    EXPECT_EQ(text(KSV_Common::getStringProperty(disk, "deviceid")), "A-id-1");
    EXPECT_EQ(text(KSV_Common::getStringProperty(disk, "Tag")), "");
}

TEST_F(Readers, EmptyNameOrUninitializedInstanceIsAnInvalidRequest) {
    EXPECT_EQ(text(KSV_Common::getStringProperty(instance, "")), "");
    EXPECT_EQ(text(KSV_Common::getStringProperty(CIMInstance(), "Name")), "");
    EXPECT_TRUE(KSV_Common::getPropertyValue(instance, "").isNull());
    EXPECT_EQ(logTexts(3), Strings(3, "\tInvalid property name.\n"));
    for (const std::string& trace : logTexts(4))
        EXPECT_EQ(trace.find("<--"), std::string::npos) << "no exit line after " << trace;
}

TEST(Writers, ReplaceValuesButNeverAddPropertiesSaveEmbeddedInstances) {
    CIMInstance instance = sampleInstance();
    const Uint32 count = instance.getPropertyCount();
    KSV_Common::setPropertyValue(instance, "Position", Uint16(3));
    KSV_Common::setPropertyValue(instance, "Name", "disk 8"); // a literal writes a string
    KSV_Common::setPropertyValue(instance, "Ref", path("KSV_DiskDrive.DeviceID=\"Y\""));
    KSV_Common::setPropertyValue(instance, "NotThere", Uint16(3));
    KSV_Common::setPropertyValueToNull(instance, "ID", CIMTYPE_UINT32);
    KSV_Common::setPropertyValueToNull(instance, "AlsoNotThere", CIMTYPE_UINT32);

    EXPECT_EQ(instance.getPropertyCount(), count);
    EXPECT_EQ(KSV_Common::getPropertyValue(instance, "Position"), CIMValue(Uint16(3)));
    EXPECT_EQ(KSV_Common::getPropertyValue(instance, "Name"), CIMValue(String("disk 8")));
    EXPECT_EQ(text(KSV_Common::getPropertyValue(instance, "Ref").toString()),
              "KSV_DiskDrive.DeviceID=\"Y\"");
    const CIMValue id = KSV_Common::getPropertyValue(instance, "ID");
    EXPECT_TRUE(id.isNull());
    EXPECT_EQ(id.getType(), CIMTYPE_UINT32);

    CIMInstance setting("KSV_StorageSetting");
    setting.addProperty(CIMProperty("InstanceID", CIMValue(String("QUANOR:RAID5"))));
    KSV_Common::setPropertyValue(instance, "Name", setting);
    KSV_Common::setPropertyValue(instance, "Goal", setting);
    EXPECT_EQ(KSV_Common::getPropertyValue(instance, "Name").getType(), CIMTYPE_INSTANCE);
    EXPECT_EQ(KSV_Common::getPropertyValue(instance, "Goal").getType(), CIMTYPE_INSTANCE);
    EXPECT_EQ(instance.getPropertyCount(), count + 1);
}

TEST_F(Readers, SkeletonHoldsEveryPropertyWithDefaultsQualifiersAndOrigins) {
    CIMClass thing("KSV_Thing", "CIM_Thing");
    CIMProperty position("Position", CIMValue(Uint16(7)), 0, CIMName(), "KSV_Thing");
    position.addQualifier(CIMQualifier("Description", CIMValue(String("slot"))));
    thing.addProperty(position);
    thing.addProperty(
        CIMProperty("Ports", CIMValue(CIMTYPE_STRING, true), 0, CIMName(), "CIM_Thing"));

    const CIMInstance skeleton = KSV_Common::buildInstanceSkeleton(thing);
    ASSERT_EQ(skeleton.getPropertyCount(), 2u);
    const CIMConstProperty built = skeleton.getProperty(skeleton.findProperty("Position"));
    EXPECT_EQ(built.getValue(), CIMValue(Uint16(7)));
    EXPECT_EQ(built.getQualifierCount(), 1u);
    EXPECT_EQ(text(built.getClassOrigin().getString()), "KSV_Thing");
    EXPECT_TRUE(skeleton.getProperty(skeleton.findProperty("Ports")).getValue().isNull());
    EXPECT_EQ(logTexts(4), (std::vector<std::string>{"-->KSV_Common::_buildInstanceSkeleton()\n",
                                                     "<--KSV_Common::_buildInstanceSkeleton()\n"}));
}

} // namespace
} // namespace ksv::test
