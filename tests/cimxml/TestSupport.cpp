#include "TestSupport.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>

#include <string>

using namespace Pegasus;

namespace ksv::cimxml::testing {

::testing::AssertionResult sameContent(const CIMConstObject& expected,
                                       const CIMConstObject& actual) {
    if (expected.getClassName() == actual.getClassName()) {
        CIMObject withActualPath = expected.clone();
        withActualPath.setPath(actual.getPath());
        if (withActualPath.identical(actual)) {
            return ::testing::AssertionSuccess();
        }
    }
    return ::testing::AssertionFailure() << utf8(actual.clone().toString());
}

CIMInstance sampleDisk(int index) {
    const String deviceId(("5000C500A1B2C3D4-id-" + std::to_string(index)).c_str());
    CIMInstance disk(CIMName("KSV_DiskDrive"));
    disk.addProperty(CIMProperty(CIMName("DeviceID"), CIMValue(deviceId)));
    disk.addProperty(CIMProperty(CIMName("SystemName"), CIMValue(String("array-7 <main>"))));
    disk.addProperty(CIMProperty(CIMName("Capacity"), CIMValue(Uint64(1920383410176ULL))));
    disk.addProperty(CIMProperty(CIMName("Temperature"), CIMValue(Sint16(-3 + index % 50))));
    disk.addProperty(CIMProperty(CIMName("Healthy"), CIMValue(true)));
    disk.addProperty(CIMProperty(CIMName("Utilization"), CIMValue(Real64(0.37 * index))));
    Array<Uint16> status;
    status.append(2);
    status.append(Uint16(32768 + index));
    disk.addProperty(CIMProperty(CIMName("OperationalStatus"), CIMValue(status)));
    disk.addProperty(
        CIMProperty(CIMName("InstallDate"), CIMValue(CIMDateTime("20240131120000.000000+060"))));
    disk.addProperty(CIMProperty(CIMName("Description"), CIMValue(String::EMPTY)));
    disk.addProperty(CIMProperty(CIMName("Firmware"), CIMValue(CIMTYPE_STRING, false), 0, CIMName(),
                                 CIMName("CIM_PhysicalElement"), true));
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("CreationClassName"), String("KSV_DiskDrive"),
                              CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding(CIMName("DeviceID"), deviceId, CIMKeyBinding::STRING));
    disk.setPath(CIMObjectPath(String(), CIMNamespaceName(), CIMName("KSV_DiskDrive"), keys));
    return disk;
}

CIMClass sampleClass() {
    CIMClass cimClass(CIMName("KSV_Thing"), CIMName("CIM_Base"));
    cimClass.addQualifier(
        CIMQualifier(CIMName("Description"), CIMValue(String("A thing")),
                     CIMFlavor::OVERRIDABLE + CIMFlavor::TOSUBCLASS + CIMFlavor::TRANSLATABLE));
    cimClass.addQualifier(CIMQualifier(CIMName("Abstract"), CIMValue(false),
                                       CIMFlavor::DISABLEOVERRIDE + CIMFlavor::RESTRICTED));
    CIMProperty key(CIMName("DeviceID"), CIMValue(CIMTYPE_STRING, false), 0, CIMName(),
                    CIMName("CIM_Base"), true);
    key.addQualifier(CIMQualifier(CIMName("Key"), CIMValue(true),
                                  CIMFlavor::DISABLEOVERRIDE + CIMFlavor::TOSUBCLASS, true));
    cimClass.addProperty(key);
    Array<String> values;
    values.append("a");
    values.append("b");
    CIMProperty valueMap(CIMName("Mode"), CIMValue(Uint16(7)));
    valueMap.addQualifier(
        CIMQualifier(CIMName("ValueMap"), CIMValue(values),
                     CIMFlavor::OVERRIDABLE + CIMFlavor::TOSUBCLASS + CIMFlavor::TOINSTANCE));
    cimClass.addProperty(valueMap);
    cimClass.addProperty(CIMProperty(CIMName("Slots"), CIMValue(CIMTYPE_UINT8, true, 4), 4));
    cimClass.addProperty(CIMProperty(CIMName("Owner"), CIMValue(CIMTYPE_REFERENCE, false), 0,
                                     CIMName("CIM_System")));
    CIMMethod method(CIMName("Locate"), CIMTYPE_UINT32);
    method.addQualifier(CIMQualifier(CIMName("Description"), CIMValue(String("Blinks")),
                                     CIMFlavor::OVERRIDABLE + CIMFlavor::TOSUBCLASS));
    CIMParameter seconds(CIMName("Seconds"), CIMTYPE_UINT16);
    seconds.addQualifier(CIMQualifier(CIMName("In"), CIMValue(true),
                                      CIMFlavor::DISABLEOVERRIDE + CIMFlavor::TOSUBCLASS));
    method.addParameter(seconds);
    method.addParameter(CIMParameter(CIMName("Pattern"), CIMTYPE_BOOLEAN, true, 8));
    method.addParameter(
        CIMParameter(CIMName("Target"), CIMTYPE_REFERENCE, false, 0, CIMName("CIM_Disk")));
    method.addParameter(
        CIMParameter(CIMName("Peers"), CIMTYPE_REFERENCE, true, 0, CIMName("CIM_Disk")));
    cimClass.addMethod(method);
    return cimClass;
}

} // namespace ksv::cimxml::testing
