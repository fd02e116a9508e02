// Storage settings and RAID properties: the identifiers of settings and capabilities, the map
// between RAID levels and the CIM redundancy pair, and the property sets that the pool, volume
// and setting providers of the sibling modules publish.
#include "KSV_Common.h"

#include <cstring>

PEGASUS_NAMESPACE_BEGIN

const KSV_Common::RaidMapping KSV_Common::raidMappingTable[4] = {
    {0, 1, 1, false, 1, 262144, 32768},
    {10, 2, 2, true, 2, 262144, 32768},
    {50, 2, 1, true, 2, 131072, 65536},
    {60, 3, 1, true, 2, 65536, 65536},
};

namespace {

const int kNoRaidType = 99;

struct RaidName {
    int raidType;
    const char* name;
    const char* captionText;
};

const RaidName kRaidNames[] = {
    {0, "RAID0", "RAID 0 "},
    {10, "RAID10", "RAID 10 "},
    {50, "RAID50", "RAID 50 "},
    {60, "RAID60", "RAID 60 "},
};

const char* const kLegacyVolumeFixedSettings[] = {
    "QUANOR:StorageSetting:RAID0", "QUANOR:StorageSetting:RAID10", "QUANOR:StorageSetting:RAID50",
    "QUANOR:StorageSetting:RAID60"};
const char* const kDynamicPoolFixedSettings[] = {
    "QUANOR:DynamicStoragePoolSetting:RAID0", "QUANOR:DynamicStoragePoolSetting:RAID10",
    "QUANOR:DynamicStoragePoolSetting:RAID50", "QUANOR:DynamicStoragePoolSetting:RAID60"};
const char* const kGenDefSettings[] = {"QUANOR:GenDefSetting-all-FC", "QUANOR:GenDefSetting-all-NL",
                                       "QUANOR:GenDefSetting-all-SSD"};
const char* const kGenGoalSettings[] = {"QUANOR:GenGoalSetting-all-FC",
                                        "QUANOR:GenGoalSetting-all-NL",
                                        "QUANOR:GenGoalSetting-all-SSD"};
const char* const kDynamicPoolGenSettings[] = {"GenDefSetting-DSP", "GenGoalSetting-DSP"};
// In the order in which an exact match widens the redundancy bounds.
const char* const kCapabilities[] = {
    "QUANOR:StorageCapabilities:primordial", "QUANOR:StorageCapabilities:all-FC",
    "QUANOR:StorageCapabilities:all-NL", "QUANOR:StorageCapabilities:all-SSD"};

struct PoolVolumePrefix {
    const char* prefix;
    bool thin;
    const char* caption;
};

const PoolVolumePrefix kPoolVolumePrefixes[] = {
    {"QUANOR:ThinProvisionedVolumeSetting from DynamicStoragePool ", true,
     "Fixed StorageSetting that can be used to create a default thinly-provisioned volume that "
     "allocates from a DynamicStoragePool "},
    {"QUANOR:FullyProvisionedVolumeSetting from DynamicStoragePool ", false,
     "Fixed StorageSetting that can be used to create a default fully-provisioned volume that "
     "allocates from a DynamicStoragePool "},
};

// The concrete pools by disk type, in the order the identifier is searched. The codes are
// those the disk drive instances of the same disks carry, so that a pool's setting and its
// disks can be matched: the array's technology code (DeviceType) and the CIM DiskType.
struct DiskClass {
    const char* name;
    bool solidState;
    Uint16 deviceType;
    Uint16 diskType;
};

const DiskClass kDiskClasses[] = {
    {"all-SSD", true, 4, 3},
    {"all-FC", false, 1, 2},
    {"all-NL", false, 5, 1},
};

const char* const kPrimordial = "primordial";

bool contains(const String& text, const char* part) {
    return text.find(part) != PEG_NOT_FOUND;
}

template <size_t N>
bool containsAny(const String& text, const char* const (&parts)[N]) {
    for (const char* part : parts) {
        if (contains(text, part))
            return true;
    }
    return false;
}

template <size_t N>
bool equalsAny(const String& text, const char* const (&candidates)[N]) {
    for (const char* candidate : candidates) {
        if (text == candidate)
            return true;
    }
    return false;
}

const RaidName* findRaidName(int raidType) {
    for (const RaidName& entry : kRaidNames) {
        if (entry.raidType == raidType)
            return &entry;
    }
    return nullptr;
}

const KSV_Common::RaidMapping* findRaidMapping(int raidType) {
    for (const KSV_Common::RaidMapping& row : KSV_Common::raidMappingTable) {
        if (row.raidType == raidType)
            return &row;
    }
    return nullptr;
}

// ---- Identifier classification ---------------------------------------------------------------

enum class Kind {
    PoolVolumeSetting,    // thin or fully provisioned volume from a dynamic pool
    PoolGeneratedSetting, // generated from the capabilities of a dynamic pool
    Capabilities,
    PoolFixedSetting,   // creates a dynamic pool
    LegacyFixedSetting, // creates a fully provisioned volume straight from a concrete pool
    GeneratedSetting,   // generated from a concrete pool's capabilities
    Other
};

struct Identifier {
    Kind kind = Kind::Other;
    const DiskClass* diskClass = nullptr;
    String poolClass; // the disk class or "primordial"; empty when none is named
    const PoolVolumePrefix* poolVolume = nullptr;
    String dynamicPool; // the pool a volume setting allocates from
    bool goal = false;  // a generated goal setting rather than a default one
};

const DiskClass* findDiskClass(const String& instanceID) {
    for (const DiskClass& diskClass : kDiskClasses) {
        if (contains(instanceID, diskClass.name))
            return &diskClass;
    }
    return nullptr;
}

Kind kindOf(const String& instanceID, const Identifier& identifier) {
    if (identifier.poolVolume)
        return Kind::PoolVolumeSetting;
    if (containsAny(instanceID, kDynamicPoolGenSettings))
        return Kind::PoolGeneratedSetting;
    if (containsAny(instanceID, kCapabilities))
        return Kind::Capabilities;
    if (KSV_Common::isDSPFixedSettingFromConcreteOrPrimordialPoolCap(instanceID))
        return Kind::PoolFixedSetting;
    if (KSV_Common::isLegacyVolumeFixedSettingFromConcretePoolCap(instanceID))
        return Kind::LegacyFixedSetting;
    if (KSV_Common::isGenSettingFromConcretePoolCap(instanceID))
        return Kind::GeneratedSetting;
    return Kind::Other;
}

Identifier classify(const String& instanceID) {
    Identifier identifier;
    for (const PoolVolumePrefix& entry : kPoolVolumePrefixes) {
        const Uint32 start = instanceID.find(entry.prefix);
        if (start != PEG_NOT_FOUND) {
            identifier.poolVolume = &entry;
            identifier.dynamicPool = instanceID.subString(start + Uint32(strlen(entry.prefix)));
            break;
        }
    }
    identifier.kind = kindOf(instanceID, identifier);
    identifier.diskClass = findDiskClass(instanceID);
    if (identifier.diskClass)
        identifier.poolClass = identifier.diskClass->name;
    else if (contains(instanceID, kPrimordial))
        identifier.poolClass = kPrimordial;
    identifier.goal = contains(instanceID, "GenGoalSetting-");
    return identifier;
}

// What the instance describes decides which properties it receives.
enum class Target { Capabilities, DynamicPool, LegacyVolume, PoolVolume, Other };

Target targetOf(Kind kind, const CIMName& className) {
    switch (kind) {
    case Kind::Capabilities:
        return Target::Capabilities;
    case Kind::PoolVolumeSetting:
    case Kind::PoolGeneratedSetting:
        return Target::PoolVolume;
    case Kind::PoolFixedSetting:
        return Target::DynamicPool;
    case Kind::LegacyFixedSetting:
        return Target::LegacyVolume;
    case Kind::GeneratedSetting:
        // A concrete pool's capabilities create both dynamic pools and fully provisioned
        // volumes; the class of the generated setting says which one it is for.
        if (className.equal("KSV_VolumeSetting"))
            return Target::LegacyVolume;
        if (className.equal("KSV_StorageSetting"))
            return Target::DynamicPool;
        return Target::Other;
    case Kind::Other:
        break;
    }
    return Target::Other;
}

// ---- Redundancy and layout values --------------------------------------------------------------

struct RaidValues {
    Boolean noSinglePointOfFailure = false;
    Uint16 dataRedundancyGoal = 0;
    Uint16 dataRedundancyMin = 0;
    Uint16 dataRedundancyMax = 0;
    Uint16 packageRedundancyGoal = 0;
    Uint16 packageRedundancyMin = 0;
    Uint16 packageRedundancyMax = 0;
    Uint16 extentStripeLength = 0;
    Uint64 userDataStripeDepth = 0;
    Uint16 parityLayout = 1;  // non-rotated parity
    Uint16 paritySetSize = 0; // 0: the level has no parity sets
};

// Share of the space a delta replica may reserve, in percent: anything, nothing by default.
const Uint8 kDeltaReservationMax = 100;
const Uint8 kDeltaReservationMin = 0;
const Uint8 kDeltaReservationGoal = 0;

struct ParityLayout {
    int raidType;
    Uint16 layout;
    Uint16 setSize;
};

// Rotated parity, in sets of 3+1 and 6+2.
const ParityLayout kParityLayouts[] = {{50, 2, 4}, {60, 2, 8}};

void applyParity(RaidValues& values, int raidType) {
    for (const ParityLayout& entry : kParityLayouts) {
        if (entry.raidType == raidType) {
            values.parityLayout = entry.layout;
            values.paritySetSize = entry.setSize;
        }
    }
}

// Mirrors may take more copies and parity sets more parity disks than the level's default;
// a pool's capabilities at any other level offer the whole range the array supports.
void widenRedundancy(RaidValues& values, int raidType, const String& instanceID) {
    if (raidType == 10) {
        values.dataRedundancyMax = 4;
        values.dataRedundancyMin = 2;
        values.packageRedundancyMax = 4;
        values.packageRedundancyMin = 2;
    } else if (raidType == 60) {
        values.packageRedundancyMin = 3;
        values.packageRedundancyMax = 5;
    } else if (equalsAny(instanceID, kCapabilities)) {
        values.dataRedundancyMax = 4;
        values.dataRedundancyMin = 1;
        values.packageRedundancyMax = 5;
        values.packageRedundancyMin = 1;
    }
}

RaidValues raidValuesFor(int raidType, const String& instanceID, const Identifier& identifier) {
    RaidValues values;
    if (const KSV_Common::RaidMapping* row = findRaidMapping(raidType)) {
        values.noSinglePointOfFailure = row->noSinglePointOfFailure;
        values.dataRedundancyGoal = values.dataRedundancyMin = values.dataRedundancyMax =
            row->dataRedundancy;
        values.packageRedundancyGoal = values.packageRedundancyMin = values.packageRedundancyMax =
            row->packageRedundancy;
        const bool solidState = identifier.diskClass && identifier.diskClass->solidState;
        values.userDataStripeDepth =
            solidState ? row->userDataStripeDepthDefaultSSD : row->userDataStripeDepthDefaultFCNL;
        values.extentStripeLength = row->extentStripeLengthDefault;
    }
    widenRedundancy(values, raidType, instanceID);
    applyParity(values, raidType);
    return values;
}

// ---- Captions and names ------------------------------------------------------------------------

// What a fixed setting creates, with and without the pool it comes from.
struct Subject {
    const char* from;
    const char* alone;
};

const Subject kVolumeSubject = {"StorageVolume from ", "StorageVolume."};
const Subject kDynamicPoolSubject = {"DynamicStoragePool from ", "DynamicStoragePool."};

String raidCaptionText(int raidType) {
    const RaidName* name = findRaidName(raidType);
    return String(name ? name->captionText : "");
}

// Dynamic pools are carved from the primordial pool's extents or from a concrete pool.
String poolPhrase(const Subject& subject, const String& poolClass) {
    if (poolClass.size() == 0)
        return String(subject.alone);
    String phrase(subject.from);
    phrase.append(poolClass);
    phrase.append(poolClass == kPrimordial ? " extents." : " pool.");
    return phrase;
}

String captionOf(const Identifier& identifier, int raidType) {
    String caption;
    switch (identifier.kind) {
    case Kind::LegacyFixedSetting:
        caption = "Fixed StorageSetting that can be used to create a default fully-provisioned ";
        caption.append(raidCaptionText(raidType));
        caption.append(poolPhrase(kVolumeSubject, identifier.poolClass));
        break;
    case Kind::PoolFixedSetting:
        caption = "Fixed StorageSetting that can be used to create a default ";
        caption.append(raidCaptionText(raidType));
        caption.append(poolPhrase(kDynamicPoolSubject, identifier.poolClass));
        break;
    case Kind::PoolVolumeSetting:
        caption = identifier.poolVolume->caption;
        caption.append(identifier.dynamicPool);
        break;
    case Kind::GeneratedSetting:
        caption = "StorageSetting generated from fixed StorageCapabilities.";
        break;
    case Kind::PoolGeneratedSetting:
        caption = "StorageSetting generated from StorageCapabilities associated to a "
                  "DynamicStoragePool.";
        break;
    case Kind::Capabilities:
        caption = "StorageCapacities of ";
        caption.append(identifier.poolClass);
        caption.append(" pool.");
        break;
    case Kind::Other:
        break;
    }
    return caption;
}

// Capabilities are named after the pools they create; the delta replica pools publish the
// same identifiers under a class of their own.
String capabilitiesName(const CIMName& className, const String& elementName) {
    const bool deltaReplica = contains(className.getString(), "DeltaReplica");
    String name(deltaReplica ? "CapabilitiesForDeltaReplicaStoragePool:"
                             : "CapabilitiesForDynamicStoragePool:");
    name.append(elementName);
    return name;
}

// ---- Property groups ---------------------------------------------------------------------------

struct Fill {
    const Identifier& identifier;
    const RaidValues& raid;
    int raidType;
};

template <typename T>
void put(CIMInstance& instance, const char* name, const T& value) {
    KSV_Common::setPropertyValue(instance, CIMName(name), value);
}

void putSettingRedundancy(CIMInstance& instance, const Fill& fill) {
    put(instance, "DataRedundancyMax", fill.raid.dataRedundancyMax);
    put(instance, "DataRedundancyMin", fill.raid.dataRedundancyMin);
    put(instance, "DataRedundancyGoal", fill.raid.dataRedundancyGoal);
    put(instance, "PackageRedundancyMax", fill.raid.packageRedundancyMax);
    put(instance, "PackageRedundancyMin", fill.raid.packageRedundancyMin);
    put(instance, "PackageRedundancyGoal", fill.raid.packageRedundancyGoal);
    put(instance, "NoSinglePointOfFailure", fill.raid.noSinglePointOfFailure);
    put(instance, "DeltaReservationMax", kDeltaReservationMax);
    put(instance, "DeltaReservationMin", kDeltaReservationMin);
    put(instance, "DeltaReservationGoal", kDeltaReservationGoal);
}

// Capabilities offer the setting's goals as their defaults; their delta reservations are
// 16-bit.
void putCapabilityRedundancy(CIMInstance& instance, const Fill& fill) {
    put(instance, "DataRedundancyMax", fill.raid.dataRedundancyMax);
    put(instance, "DataRedundancyMin", fill.raid.dataRedundancyMin);
    put(instance, "DataRedundancyDefault", fill.raid.dataRedundancyGoal);
    put(instance, "PackageRedundancyMax", fill.raid.packageRedundancyMax);
    put(instance, "PackageRedundancyMin", fill.raid.packageRedundancyMin);
    put(instance, "PackageRedundancyDefault", fill.raid.packageRedundancyGoal);
    put(instance, "NoSinglePointOfFailure", fill.raid.noSinglePointOfFailure);
    put(instance, "NoSinglePointOfFailureDefault", fill.raid.noSinglePointOfFailure);
    put(instance, "DeltaReservationMax", Uint16(kDeltaReservationMax));
    put(instance, "DeltaReservationMin", Uint16(kDeltaReservationMin));
    put(instance, "DeltaReservationDefault", Uint16(kDeltaReservationGoal));
}

// The array lays data out with one stripe depth per level and disk type: the bounds are
// that depth.
void putSettingLayout(CIMInstance& instance, const Fill& fill) {
    put(instance, "ExtentStripeLengthMin", fill.raid.extentStripeLength);
    put(instance, "UserDataStripeDepth", fill.raid.userDataStripeDepth);
    put(instance, "UserDataStripeDepthMin", fill.raid.userDataStripeDepth);
    put(instance, "UserDataStripeDepthMax", fill.raid.userDataStripeDepth);
    put(instance, "ParityLayout", fill.raid.parityLayout);
    if (fill.raid.paritySetSize != 0)
        put(instance, "ParitySetSize", fill.raid.paritySetSize);
}

void putCapabilityLayout(CIMInstance& instance, const Fill& fill) {
    put(instance, "ParityLayoutDefault", fill.raid.parityLayout);
    put(instance, "UserDataStripeDepthDefault", fill.raid.userDataStripeDepth);
}

// HighAvailability: 1 port, 2 magazine, 3 cage. Members of one RAID set on different
// magazines is what every array can give, whatever its number of cages.
const Uint16 kMagazineAvailability = 2;

void putAvailability(CIMInstance& instance, const Fill&) {
    put(instance, "HighAvailability", kMagazineAvailability);
}

void putDiskType(CIMInstance& instance, const Fill& fill) {
    if (fill.identifier.diskClass)
        put(instance, "DiskType", fill.identifier.diskClass->diskType);
}

// The geometry hosts see on every volume of the array.
const Uint32 kSectorsPerTrack = 304;
const Uint32 kHeadsPerCylinder = 8;
const Uint32 kSectorSize = 512;

// Policy: bit mask of volume policies; none beyond the array's own defaults.
const Uint32 kDefaultVolumePolicy = 0;

// TemplateForVolumeType: 1 fully provisioned, 2 thinly provisioned.
const Uint16 kFullyProvisionedVolume = 1;
const Uint16 kThinlyProvisionedVolume = 2;

void putVolume(CIMInstance& instance, const Fill& fill) {
    // Only the thin setting of a dynamic pool makes thin volumes; the generated settings
    // default to full provisioning, as the array does.
    const bool thin = fill.identifier.poolVolume && fill.identifier.poolVolume->thin;
    put(instance, "GeometrySectorsPerTrack", kSectorsPerTrack);
    put(instance, "GeometryHeadsPerCylinder", kHeadsPerCylinder);
    put(instance, "GeometrySectorSize", kSectorSize);
    put(instance, "Policy", kDefaultVolumePolicy);
    put(instance, "ThinlyProvisioned", Boolean(thin));
    put(instance, "TemplateForVolumeType",
        thin ? kThinlyProvisionedVolume : kFullyProvisionedVolume);
    put(instance, "TemplateVolumeRaidType", Uint16(fill.raidType));
    if (fill.identifier.diskClass)
        put(instance, "TemplateVolumeDeviceType", fill.identifier.diskClass->deviceType);
}

// A dynamic pool grows by its allocation unit from its parent's space: with no limit, no
// warnings until the administrator sets them, and ThinProvisionedPoolType 4 (limitless).
const Uint64 kNoSpaceLimit = 0;
const Uint16 kNoWarning = 0;
const Uint64 kNoGrowWarning = 0;
const Uint16 kLimitlessPool = 4;

struct AllocationUnits {
    Uint64 max;
    Uint64 min;
    Uint64 def;
};

// Beyond eight nodes the array keeps the eight-node bounds.
AllocationUnits allocationUnits() {
    AllocationUnits units = {0, 34359738368ull, 137438953472ull};
    KSV_Common::getDSPAllocUnitBoundaryValues(units.max, units.min, units.def);
    return units;
}

void putPool(CIMInstance& instance, const Fill& fill) {
    const AllocationUnits units = allocationUnits();
    put(instance, "SpaceLimit", kNoSpaceLimit);
    put(instance, "SpaceLimitWarningThreshold", kNoWarning);
    put(instance, "DSPSnapSpaceGrowWarning", kNoGrowWarning);
    put(instance, "LowSpaceWarningThreshold", kNoWarning);
    put(instance, "AllocationUnit", units.def);
    put(instance, "AllocationUnitMax", units.max);
    put(instance, "AllocationUnitMin", units.min);
    put(instance, "ThinProvisionedPoolType", kLimitlessPool);
    putDiskType(instance, fill);
}

// ElementType: the primordial pool's extents only make pools (5, StoragePool); a concrete
// pool makes pools and fully provisioned volumes (2, Any Type).
const Uint16 kElementTypeAny = 2;
const Uint16 kElementTypeStoragePool = 5;

void putCapabilityPool(CIMInstance& instance, const Fill& fill) {
    const AllocationUnits units = allocationUnits();
    const bool primordial = fill.identifier.poolClass == kPrimordial;
    put(instance, "ElementType", primordial ? kElementTypeStoragePool : kElementTypeAny);
    put(instance, "AllocationUnitMax", units.max);
    put(instance, "AllocationUnitMin", units.min);
    put(instance, "AllocationUnitDefault", units.def);
    put(instance, "SpaceLimitSupported", Boolean(true));
    put(instance, "SpaceLimitWarningThresholdDefault", kNoWarning);
    put(instance, "LowSpaceWarningThresholdDefault", kNoWarning);
    putDiskType(instance, fill);
}

// ChangeableType: fixed settings cannot be changed (0); generated ones are changeable and
// transient (1). TemplateType: 1 fixed, 2 generated default, 3 generated goal.
const Uint16 kFixedNotChangeable = 0;
const Uint16 kChangeableTransient = 1;
const Uint16 kFixedTemplate = 1;
const Uint16 kDefaultTemplate = 2;
const Uint16 kGoalTemplate = 3;

void putSettingTemplate(CIMInstance& instance, const Fill& fill) {
    const Kind kind = fill.identifier.kind;
    const bool generated = kind == Kind::GeneratedSetting || kind == Kind::PoolGeneratedSetting;
    put(instance, "ChangeableType", generated ? kChangeableTransient : kFixedNotChangeable);
    const Uint16 generatedTemplate = fill.identifier.goal ? kGoalTemplate : kDefaultTemplate;
    put(instance, "TemplateType", generated ? generatedTemplate : kFixedTemplate);
}

using PropertyGroup = void (*)(CIMInstance&, const Fill&);

struct TargetProperties {
    Target target;
    PropertyGroup groups[5];
};

// Pools carry no volume geometry and volumes no pool growth; a volume of a dynamic pool gets
// its availability from the pool. An unknown identifier gets the redundancy only.
const TargetProperties kTargetProperties[] = {
    {Target::Capabilities, {putCapabilityRedundancy, putCapabilityLayout, putCapabilityPool}},
    {Target::DynamicPool,
     {putSettingRedundancy, putSettingLayout, putAvailability, putPool, putSettingTemplate}},
    {Target::LegacyVolume,
     {putSettingRedundancy, putSettingLayout, putAvailability, putVolume, putSettingTemplate}},
    {Target::PoolVolume, {putSettingRedundancy, putSettingLayout, putVolume, putSettingTemplate}},
    {Target::Other, {putSettingRedundancy}},
};

void putProperties(CIMInstance& instance, Target target, const Fill& fill) {
    for (const TargetProperties& entry : kTargetProperties) {
        if (entry.target != target)
            continue;
        for (PropertyGroup group : entry.groups) {
            if (group)
                group(instance, fill);
        }
    }
}

// ---- Allocation-unit bounds --------------------------------------------------------------------

struct NodeBound {
    int maxNodes;
    Uint64 min;
};

// 8 GiB per node pair; the default is four times the minimum.
const NodeBound kAllocationUnitMin[] = {
    {2, 8589934592ull},
    {4, 17179869184ull},
    {6, 25769803776ull},
    {8, 34359738368ull},
};

const Uint64 kAllocationUnitMax = 2197949513728ull; // 2047 GiB

} // namespace

String KSV_Common::getRaidTypeStr(int raidType) {
    const RaidName* name = findRaidName(raidType);
    return String(name ? name->name : "");
}

int KSV_Common::returnRAIDType(Uint16 packageRedundancy, Uint16 dataRedundancy) {
    if (packageRedundancy == 1 && dataRedundancy == 1)
        return 0;
    if (packageRedundancy >= 2 && dataRedundancy >= 2)
        return 10;
    if (packageRedundancy == 2 && dataRedundancy == 1)
        return 50;
    if (packageRedundancy >= 3 && dataRedundancy == 1)
        return 60;
    return kNoRaidType;
}

bool KSV_Common::isSameRAID(Uint16 dataRedundancy1, Uint16 packageRedundancy1,
                            Uint16 dataRedundancy2, Uint16 packageRedundancy2) {
    return returnRAIDType(packageRedundancy1, dataRedundancy1) ==
           returnRAIDType(packageRedundancy2, dataRedundancy2);
}

bool KSV_Common::isSameRAID(Uint16 raidType, Uint16 dataRedundancy, Uint16 packageRedundancy) {
    return returnRAIDType(packageRedundancy, dataRedundancy) == raidType;
}

bool KSV_Common::isLegacyVolumeFixedSettingFromConcretePoolCap(const String& instanceID) {
    return containsAny(instanceID, kLegacyVolumeFixedSettings);
}

bool KSV_Common::isDSPFixedSettingFromConcreteOrPrimordialPoolCap(const String& instanceID) {
    return containsAny(instanceID, kDynamicPoolFixedSettings);
}

bool KSV_Common::isFixedSettingFromConcretePoolCap(const String& instanceID) {
    return isLegacyVolumeFixedSettingFromConcretePoolCap(instanceID) ||
           isDSPFixedSettingFromConcreteOrPrimordialPoolCap(instanceID);
}

bool KSV_Common::isGenDefSettingFromConcretePoolCap(const String& instanceID) {
    return containsAny(instanceID, kGenDefSettings);
}

bool KSV_Common::isGenGoalSettingFromConcretePoolCap(const String& instanceID) {
    return containsAny(instanceID, kGenGoalSettings);
}

bool KSV_Common::isGenSettingFromConcretePoolCap(const String& instanceID) {
    return isGenGoalSettingFromConcretePoolCap(instanceID) ||
           isGenDefSettingFromConcretePoolCap(instanceID);
}

void KSV_Common::getDSPAllocUnitBoundaryValues(Uint64& max, Uint64& min, Uint64& def) {
    max = kAllocationUnitMax;
    // The node count is not array data: asked without the semaphore, so that callers holding
    // it may ask too.
    const int nodes = getNumberOfNodes();
    for (const NodeBound& bound : kAllocationUnitMin) {
        if (nodes <= bound.maxNodes) {
            min = bound.min;
            def = 4 * bound.min;
            return;
        }
    }
}

CIMObjectPath KSV_Common::buildSettingCapObjectPath(const String& systemAddress,
                                                    const CIMName& className,
                                                    const String& instanceID) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("InstanceID", instanceID, CIMKeyBinding::STRING));
    return CIMObjectPath(systemAddress, CIMNamespaceName("root/ksv"), className, keys);
}

void KSV_Common::fillInRAIDProperties(CIMInstance& instance, const String& systemAddress,
                                      const String& instanceID, const String& elementName,
                                      int raidType) {
    log_message(4, "-->KSV_Common::fillInRAIDProperties, instanceID = %s \n",
                (const char*)instanceID.getCString());
    const Identifier identifier = classify(instanceID);
    const RaidValues raid = raidValuesFor(raidType, instanceID, identifier);
    const Target target = targetOf(identifier.kind, instance.getClassName());

    setPropertyValue(instance, "InstanceID", instanceID);
    setPropertyValue(instance, "Caption", captionOf(identifier, raidType));
    setPropertyValue(instance, "ElementName",
                     target == Target::Capabilities
                         ? capabilitiesName(instance.getClassName(), elementName)
                         : elementName);
    putProperties(instance, target, Fill{identifier, raid, raidType});
    instance.setPath(buildSettingCapObjectPath(systemAddress, instance.getClassName(), instanceID));
    log_message(4, "<--KSV_Common::fillInRAIDProperties ");
}

PEGASUS_NAMESPACE_END
