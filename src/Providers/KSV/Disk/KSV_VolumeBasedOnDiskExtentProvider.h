// Provider of the association of the disk extents with the volumes that have chunklets
// on them, class KSV_VolumeBasedOnDiskExtent in root/ksv.
#ifndef KSV_VolumeBasedOnDiskExtentProvider_h
#define KSV_VolumeBasedOnDiskExtentProvider_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>

#include <ksvapi.h>

#include <vector>

PEGASUS_NAMESPACE_BEGIN

class KSV_Association;

class KSV_VolumeBasedOnDiskExtentProvider : public CIMAssociationProvider,
                                            public CIMInstanceProvider {
public:
    KSV_VolumeBasedOnDiskExtentProvider();
    ~KSV_VolumeBasedOnDiskExtentProvider() override;

    void initialize(CIMOMHandle& cimom) override;
    void terminate() override;
    void associators(const OperationContext& context, const CIMObjectPath& objectName,
                     const CIMName& associationClass, const CIMName& resultClass,
                     const String& role, const String& resultRole, const Boolean includeQualifiers,
                     const Boolean includeClassOrigin, const CIMPropertyList& propertyList,
                     ObjectResponseHandler& handler) override;
    void associatorNames(const OperationContext& context, const CIMObjectPath& objectName,
                         const CIMName& associationClass, const CIMName& resultClass,
                         const String& role, const String& resultRole,
                         ObjectPathResponseHandler& handler) override;
    void references(const OperationContext& context, const CIMObjectPath& objectName,
                    const CIMName& resultClass, const String& role, const Boolean includeQualifiers,
                    const Boolean includeClassOrigin, const CIMPropertyList& propertyList,
                    ObjectResponseHandler& handler) override;
    void referenceNames(const OperationContext& context, const CIMObjectPath& objectName,
                        const CIMName& resultClass, const String& role,
                        ObjectPathResponseHandler& handler) override;
    void getInstance(const OperationContext& context, const CIMObjectPath& instanceReference,
                     const Boolean includeQualifiers, const Boolean includeClassOrigin,
                     const CIMPropertyList& propertyList,
                     InstanceResponseHandler& handler) override;
    void enumerateInstances(const OperationContext& context, const CIMObjectPath& classReference,
                            const Boolean includeQualifiers, const Boolean includeClassOrigin,
                            const CIMPropertyList& propertyList,
                            InstanceResponseHandler& handler) override;
    void enumerateInstanceNames(const OperationContext& context,
                                const CIMObjectPath& classReference,
                                ObjectPathResponseHandler& handler) override;
    void modifyInstance(const OperationContext& context, const CIMObjectPath& instanceReference,
                        const CIMInstance& instanceObject, const Boolean includeQualifiers,
                        const CIMPropertyList& propertyList, ResponseHandler& handler) override;
    void createInstance(const OperationContext& context, const CIMObjectPath& instanceReference,
                        const CIMInstance& instanceObject,
                        ObjectPathResponseHandler& handler) override;
    void deleteInstance(const OperationContext& context, const CIMObjectPath& instanceReference,
                        ResponseHandler& handler) override;

private:
    struct PairFilter;
    struct WalkTraces;
    struct ChunkletPair;
    class VolumeMaps;
    class PairBuilder;

    // The lowest and the highest chunklet number the entries hold on the disk; 0 and 0 when
    // they hold none.
    static void _getChunkletRange(const api_MapCh_t* entries, Uint32 count,
                                  const String& diskDeviceID, Uint64& start, Uint64& end);
    // Whether a response with this property list carries StartingAddress and EndingAddress.
    static bool _isAddressesNeeded(const CIMPropertyList& propertyList);
    // Antecedent is the disk extent, Dependent the volume. With the volume's map record the
    // instance carries the chunklet range the volume uses on the disk.
    CIMInstance _buildAssociationInstance(const CIMObjectPath& volumePath,
                                          const CIMObjectPath& diskPath,
                                          const api_MapVVtoCh_t* volumeRecord,
                                          bool includeQualifiers, bool includeClassOrigin,
                                          const CIMPropertyList& propertyList);
    // Sets StartingAddress and EndingAddress of a built association when the response carries
    // them: the chunklet range the volume's record holds on the disk.
    void _addChunkletRange(CIMInstance& instance, const CIMObjectPath& diskPath,
                           const api_MapVVtoCh_t* volumeRecord,
                           const CIMPropertyList& propertyList);
    // The DeviceIDs of the distinct disks holding the volume's user data, first seen first.
    Array<String> _getUniqueDeviceIDs(const api_MapVVtoCh_t& volume);
    // The far ends: the volumes with user data on a disk extent, or a volume's disk extents.
    Array<CIMObjectPath> _getRelatedInstanceNames(const OperationContext& context,
                                                  const CIMObjectPath& objectName);
    Array<CIMObjectPath> _volumesOnDisk(const String& deviceID) const;
    Array<CIMObjectPath> _disksOfVolume(const OperationContext& context,
                                        const CIMObjectPath& volumePath, const String& deviceID);
    // Calls use(diskPath, volumeRecord) for each disk extent holding the volume's user data, in
    // the order its chunklets first name them; none when the server does not know the volume or
    // its maps do not hold the record of volumeDeviceID(), which is asked once they are read.
    template <typename VolumeDeviceID, typename Use>
    void _forEachDiskOfVolume(const OperationContext& context, const CIMObjectPath& volumePath,
                              VolumeDeviceID&& volumeDeviceID, Use&& use);
    Array<CIMInstance> _getRelatedInstances(const CIMObjectPath& objectName,
                                            const OperationContext& context, bool includeQualifiers,
                                            bool includeClassOrigin,
                                            const CIMPropertyList& propertyList);
    Array<CIMInstance> _referencesOfVolume(const OperationContext& context,
                                           const CIMObjectPath& volumePath, bool includeQualifiers,
                                           bool includeClassOrigin,
                                           const CIMPropertyList& propertyList);
    Array<CIMInstance> _referencesOfDisk(const OperationContext& context,
                                         const CIMObjectPath& diskPath, bool includeQualifiers,
                                         bool includeClassOrigin,
                                         const CIMPropertyList& propertyList);
    // The volume's name as the server knows it; false (and logged) when the server fails.
    bool _volumeElementName(const OperationContext& context, const CIMObjectPath& volumePath,
                            String& elementName);

    // Every association, or those of the disk and volume the keys of objectPath name, built
    // and then streamed to the handler or collected in out. With matchOnly only the first
    // association whose path is objectPath is answered.
    void getOrDeliverInstances(const OperationContext& context, const CIMObjectPath& objectPath,
                               bool includeQualifiers, bool includeClassOrigin,
                               const CIMPropertyList& propertyList, Array<CIMInstance>& out,
                               InstanceResponseHandler* handler, int matchOnly);
    void getOrDeliverInstanceNames(const OperationContext& context, const CIMObjectPath& objectPath,
                                   bool includeQualifiers, bool includeClassOrigin,
                                   const CIMPropertyList& propertyList, Array<CIMObjectPath>& out,
                                   ObjectPathResponseHandler* handler);
    PairFilter _requestedPairs(const OperationContext& context, const CIMObjectPath& objectPath);
    // Collects the (volume, chunklet) pairs under the table lock, enforcing the instance cap
    // before anything is built, then builds each pair's association for the sink.
    std::vector<ChunkletPair> _collectPairs(const VolumeMaps& maps, const PairFilter& filter);
    static Uint32 _userDataEntries(const VolumeMaps& maps);
    bool _counts(const api_MapCh_t& entry, const PairFilter& filter);
    template <typename Sink>
    void _walkPairs(const WalkTraces& traces, const OperationContext& context,
                    const CIMObjectPath& objectPath, bool includeQualifiers,
                    bool includeClassOrigin, const CIMPropertyList& propertyList, Sink& sink);
    // The texts, rules and ends of KSV_VolumeBasedOnDiskExtent: Antecedent is the disk extent,
    // Dependent the volume.
    KSV_Association _association();

    CIMOMHandle _cimom;
    CIMName _assoClassName;
    CIMName _diskClassName;
    CIMName _volClassName;
    String _hostAddr;
    String _systemName;
    hashtable_t* _intHashTable;
    Uint32 _maxInstCount;
};

PEGASUS_NAMESPACE_END

#endif
