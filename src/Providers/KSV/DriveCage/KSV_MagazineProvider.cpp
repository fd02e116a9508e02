#include "KSV_MagazineProvider.h"

#include <set>
#include <string>

PEGASUS_NAMESPACE_BEGIN

static const String ClassName("KSV_MagazineProvider");

namespace {

String elementNameOf(const api_Disk_t& disk) {
    return String(disk.cageElementName) + ":" + String(std::to_string(disk.magPosition).c_str());
}

} // namespace

KSV_MagazineProvider::KSV_MagazineProvider()
    : KSV_ReadOnlyInstanceProvider<KSV_MagazineRecord>(ClassName, {"KSV_Magazine", "KSV_DiskBay"}) {
}

void KSV_MagazineProvider::initialize(CIMOMHandle& cimom) {
    KSV_ReadOnlyInstanceProvider<KSV_MagazineRecord>::initialize(cimom);
    _hostAddr = KSV_Common::getSystemHostName(cimom);
}

CIMObjectPath KSV_MagazineProvider::buildObjectPath(const CIMName& className,
                                                    const String& hostAddr,
                                                    const String& magazineDeviceID) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("CreationClassName", className.getString(), CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding("Tag", magazineDeviceID, CIMKeyBinding::STRING));
    return CIMObjectPath(hostAddr, CIMNamespaceName("root/ksv"), className, keys);
}

CIMName KSV_MagazineProvider::_getCIMName(int cageType) {
    const bool holdsDriveBays = cageType >= 6 && cageType <= 8;
    return CIMName(holdsDriveBays ? "KSV_DiskBay" : "KSV_Magazine");
}

std::vector<KSV_MagazineRecord>
KSV_MagazineProvider::magazinesOf(const std::vector<api_Disk_t>& presentDisks,
                                  const CIMName& className) {
    std::vector<KSV_MagazineRecord> magazines;
    std::set<std::string> seen;
    for (const api_Disk_t& disk : presentDisks) {
        const CIMName magazineClass = _getCIMName(disk.cageType);
        if (magazineClass.equal(className) && seen.insert(disk.parentDeviceID).second)
            magazines.push_back(
                {magazineClass.getString(), disk.parentDeviceID, elementNameOf(disk)});
    }
    return magazines;
}

std::vector<KSV_MagazineRecord> KSV_MagazineProvider::_readRecords(const CIMName& className) const {
    std::vector<api_Disk_t> disks;
    KSV_readPresentDisks(disks);
    return magazinesOf(disks, className);
}

CIMObjectPath KSV_MagazineProvider::_pathOf(const KSV_MagazineRecord& magazine) const {
    return buildObjectPath(magazine.className, _hostAddr, magazine.tag);
}

void KSV_MagazineProvider::_describe(CIMInstance& instance,
                                     const KSV_MagazineRecord& magazine) const {
    KSV_Common::setPropertyValue(instance, "ElementName", magazine.elementName);
}

PEGASUS_NAMESPACE_END
