// Provider of the array's virtual volumes, class KSV_StorageVolume in root/ksv.
#ifndef KSV_StorageVolumeProvider_h
#define KSV_StorageVolumeProvider_h

#include "KSV_ReadOnlyInstanceProvider.h"

PEGASUS_NAMESPACE_BEGIN

class KSV_StorageVolumeProvider : public KSV_ReadOnlyInstanceProvider<api_VV_t> {
public:
    KSV_StorageVolumeProvider();

    // Reads the array's identity; the provider cannot serve without it.
    void initialize(CIMOMHandle& cimom) override;

    // //<hostAddr>/root/ksv:KSV_StorageVolume with the string keys, in this order,
    //   SystemCreationClassName = "KSV_StorageSystem"
    //   SystemName              = systemName
    //   CreationClassName       = "KSV_StorageVolume"
    //   DeviceID                = wwnText (the volume's WWN, 32 hexadecimal digits)
    static CIMObjectPath createObjectPath(String wwnText, const String& systemName,
                                          const String& hostAddr);

    // The WWN text that names a volume, as the library writes it: 32 upper-case hexadecimal
    // digits.
    static String wwnTextOf(const api_VV_t& volume);

private:
    std::vector<api_VV_t> _readRecords(const CIMName& className) const override;
    // A volume's DeviceID selects it in the array: only that volume is read.
    std::vector<api_VV_t> _readRecordsNamed(const CIMObjectPath& name) const override;
    CIMObjectPath _pathOf(const api_VV_t& volume) const override;
    void _describe(CIMInstance& instance, const api_VV_t& volume) const override;

    String _systemName;
    String _hostAddr;
};

PEGASUS_NAMESPACE_END

#endif
