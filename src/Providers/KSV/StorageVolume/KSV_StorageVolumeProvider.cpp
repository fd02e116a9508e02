#include "KSV_StorageVolumeProvider.h"

#include "KSV_InternalCacheService.h"

PEGASUS_NAMESPACE_BEGIN

static const String ClassName("KSV_StorageVolumeProvider");

namespace {

// CIM_StorageVolume.NameFormat "VPD83NAA6" and NameNamespace "VPD83Type3": the volume's Name
// is its NAA 6 world-wide name.
const Uint16 NAME_FORMAT_NAA6 = 2;
const Uint16 NAME_NAMESPACE_VPD83_TYPE3 = 2;

// The volumes whose WWN text or name is the key, or every volume for an empty key, read under
// the global semaphore; none when the read fails.
std::vector<api_VV_t> readVolumes(const String& key) {
    api_VVList_t list = {0, nullptr};
    KSV_Common::callUnderSemaphore([&] { return api_getVVs(key.getCString(), &list); });
    std::vector<api_VV_t> volumes(list.vvs, list.vvs + list.count);
    free(list.vvs);
    return volumes;
}

} // namespace

KSV_StorageVolumeProvider::KSV_StorageVolumeProvider()
    : KSV_ReadOnlyInstanceProvider<api_VV_t>(ClassName, {"KSV_StorageVolume"}) {}

void KSV_StorageVolumeProvider::initialize(CIMOMHandle& cimom) {
    KSV_ReadOnlyInstanceProvider<api_VV_t>::initialize(cimom);
    const KSV_InternalCacheService& identity = KSV_InternalCacheService::withSystemInfo(ClassName);
    _systemName = identity.getSystemName();
    _hostAddr = identity.getSystemHostName();
}

CIMObjectPath KSV_StorageVolumeProvider::createObjectPath(String wwnText, const String& systemName,
                                                          const String& hostAddr) {
    Array<CIMKeyBinding> keys;
    keys.append(
        CIMKeyBinding("SystemCreationClassName", "KSV_StorageSystem", CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding("SystemName", systemName, CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding("CreationClassName", "KSV_StorageVolume", CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding("DeviceID", wwnText, CIMKeyBinding::STRING));
    return CIMObjectPath(hostAddr, CIMNamespaceName("root/ksv"), CIMName("KSV_StorageVolume"),
                         keys);
}

String KSV_StorageVolumeProvider::wwnTextOf(const api_VV_t& volume) {
    char text[API_WWN_TEXT_SIZE] = {};
    api_wwnIntToString(volume.wwnHigh, volume.wwnLow, text, sizeof text);
    return text;
}

std::vector<api_VV_t> KSV_StorageVolumeProvider::_readRecords(const CIMName&) const {
    return readVolumes(String());
}

std::vector<api_VV_t>
KSV_StorageVolumeProvider::_readRecordsNamed(const CIMObjectPath& name) const {
    const String deviceID = KSV_Common::getStringProperty(name, "DeviceID");
    // The library also finds volumes by name; the caller's path match leaves those out.
    return deviceID.size() == 0 ? std::vector<api_VV_t>() : readVolumes(deviceID);
}

CIMObjectPath KSV_StorageVolumeProvider::_pathOf(const api_VV_t& volume) const {
    return createObjectPath(wwnTextOf(volume), _systemName, _hostAddr);
}

void KSV_StorageVolumeProvider::_describe(CIMInstance& instance, const api_VV_t& volume) const {
    KSV_Common::setPropertyValue(instance, "ElementName", volume.name);
    KSV_Common::setPropertyValue(instance, "Name", wwnTextOf(volume));
    KSV_Common::setPropertyValue(instance, "NameFormat", NAME_FORMAT_NAA6);
    KSV_Common::setPropertyValue(instance, "NameNamespace", NAME_NAMESPACE_VPD83_TYPE3);
}

PEGASUS_NAMESPACE_END
