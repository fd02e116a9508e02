/*
 * ksvapi.h - management interface of the storage array (libksvapi).
 *
 * Conventions:
 *  - Functions returning int answer API_OK (0) on success and one of the
 *    api_result_e codes otherwise, unless stated differently.
 *  - Records are little-endian C structs whose layout is fixed by the
 *    assertions at the end of this file; never reorder their members.
 *  - Lists filled by the library belong to the caller, who releases them as
 *    stated with each function. Callers zero a holder before passing it in.
 *  - Calls that read or change the array are made between cim_sem_wait()
 *    and cim_sem_post() by the caller.
 *  - Every function is safe to call from several threads at once.
 */
#ifndef KSVAPI_H
#define KSVAPI_H

#include <netinet/in.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#pragma GCC visibility push(default)
#define KSVAPI_PRINTF(fmt, args) __attribute__((format(printf, fmt, args)))
#define KSVAPI_NORETURN __attribute__((noreturn))
#else
#define KSVAPI_PRINTF(fmt, args)
#define KSVAPI_NORETURN
#endif

/* ---------------------------------------------------------------------- */
/* Result codes                                                            */
/* ---------------------------------------------------------------------- */

enum api_result_e {
    API_OK = 0,
    API_E_INVALID = 1,         /* an argument is missing or malformed */
    API_E_NOT_FOUND = 2,       /* the named object does not exist */
    API_E_DENIED = 5,          /* the user may not do this */
    API_E_SEM_TIMEOUT = 29,    /* the global semaphore was not free in time */
    API_E_LIST_TOO_BIG = 1030, /* the answer would not fit in memory */
    API_E_NO_MEMORY = 1150     /* allocation failed */
};

/* ---------------------------------------------------------------------- */
/* Logging and fatal errors                                                */
/* ---------------------------------------------------------------------- */

enum api_log_level_e {
    KSV_LOG_FATAL = 1,
    KSV_LOG_ERROR = 2,
    KSV_LOG_WARNING = 3,
    KSV_LOG_TRACE = 4
};

/* Writes one printf-style line at the given level (lower is more severe).
 * The text is kept exactly as formatted; the sink adds a newline when the
 * text has none. Which levels reach the sink, and which sink (standard
 * error, a file, syslog), is configured by KSV_LOG_LEVEL and KSV_LOG_SINK. */
void log_message(int level, const char* format, ...) KSVAPI_PRINTF(2, 3);

/* Writes the formatted text to standard error and the log, then aborts the
 * process. Never returns. */
void ksv_panic(const char* format, ...) KSVAPI_PRINTF(1, 2) KSVAPI_NORETURN;

/* ---------------------------------------------------------------------- */
/* Session and global semaphore                                            */
/* ---------------------------------------------------------------------- */

/* Opens (or re-opens) the library for a CIM server user and decides whether
 * that user may use it: API_OK when granted, API_E_DENIED for an unknown or
 * refused user (or a NULL or empty name). */
int api_ksvOpenForCimserver(const char* userName);

/* Takes the process-wide semaphore that serializes all array access.
 * API_OK when taken; API_E_SEM_TIMEOUT when it stayed taken for the
 * library's time-out (KSV_SEM_TIMEOUT_MS, default 5000). Not recursive. */
int cim_sem_wait(void);

/* Releases the semaphore. API_OK, or API_E_INVALID when it was not taken;
 * such a post is logged at level 2 and changes nothing. */
int cim_sem_post(void);

/* ---------------------------------------------------------------------- */
/* Error-information record                                                */
/* ---------------------------------------------------------------------- */

typedef struct api_status_s {
    int code;       /* 0: no error */
    char text[256]; /* NUL-terminated description */
} api_status_t;

/* Clears the record: code 0, empty text. NULL is ignored. */
void api_initStatus(api_status_t* status);

/* Stores a code and a text (cut to fit) in the record. NULL is ignored. */
void errinfo_set_str(api_status_t* status, int code, const char* text);

/* ---------------------------------------------------------------------- */
/* System identity and addresses                                           */
/* ---------------------------------------------------------------------- */

typedef struct api_SystemInfo_s {
    char name[64];      /* system name */
    char hostName[256]; /* host name of the management address */
    uint32_t id;        /* system serial number */
    int type;           /* model code */
    uint8_t isQuadPort; /* 1: disks have four paths */
} api_SystemInfo_t;

/* Fills the system's identity. API_E_INVALID for NULL. */
int api_getSystemInfo(api_SystemInfo_t* info);

/* The number of live controller nodes (at least 1), or a negative value
 * when it cannot be read. */
int getNumberOfNodes(void);

typedef struct api_DualIP_s {
    uint32_t addrCount;   /* 2: only ipv4 is valid; 3: ipv6 is valid too */
    struct in_addr ipv4;  /* network byte order */
    struct in6_addr ipv6; /* all zero unless addrCount > 2 */
} api_DualIP_t;

/* Fills the system's management addresses. API_E_INVALID for NULL. */
int api_getSystemDualIP(api_DualIP_t* addresses);

#define API_IP_TEXT_SIZE 46

/* Checks a textual IP address. Returns the address family, 2 (AF_INET) or
 * 10 (AF_INET6), and writes the normalised text into 'normalized', which
 * must hold API_IP_TEXT_SIZE characters. Returns -1 for text that is no
 * address (and for NULL arguments); 'normalized' is then left unchanged. */
int validateConvertIP(const char* text, char* normalized);

/* ---------------------------------------------------------------------- */
/* Controller ports                                                        */
/* ---------------------------------------------------------------------- */

/* A port location (LPID) packs node in bits 7-9, slot in bits 3-6 and port
 * in bits 0-2. 0 and API_LPID_NONE name no port. */
#define API_LPID_NONE 0xFFFCu

typedef enum api_port_status_e {
    API_PORT_CONFIG_WAIT = 0,
    API_PORT_ALPA_WAIT = 1,
    API_PORT_LOGIN_WAIT = 2,
    API_PORT_READY = 3,
    API_PORT_LOSS_SYNC = 4,
    API_PORT_ERROR = 5,
    API_PORT_UNKNOWN = 6,
    API_PORT_COMM_ERROR = 7,
    API_PORT_CRITICAL_ERROR = 8,
    API_PORT_OFFLINE = 9,
    API_PORT_FAILED = 10,
    API_PORT_LINK_INIT = 11,
    API_PORT_INIT_WAIT = 12,
    API_PORT_NEGOTIATING = 13
} api_port_status_t;

/* The location of the Fibre Channel port with this WWN.
 * API_E_NOT_FOUND (lpid untouched) when no such port exists. */
int api_getFCPortLPID(uint64_t portWwn, uint16_t* lpid);

/* The location of the iSCSI port with this name (at most 223 characters).
 * API_E_NOT_FOUND (lpid untouched) when no such port exists. */
int api_getiSCSIPortLPID(const char* iscsiName, uint16_t* lpid);

/* Converts "node:slot:port" (node 0-7, slot 0-15, port 0-7) into its packed
 * form. API_E_INVALID (portId untouched) for any other text. */
int api_convertStrLPIDtoPortID(const char* text, uint16_t* portId);

/* ---------------------------------------------------------------------- */
/* Disk records                                                            */
/* ---------------------------------------------------------------------- */

/* One path from a controller node to a disk. */
typedef struct api_Loop_s {
    int loopState;        /* state of the path */
    uint16_t loopALPA;    /* arbitrated-loop physical address */
    uint64_t nodePortWWN; /* WWN of the node port */
    uint16_t lpid;        /* node port location; 0 or API_LPID_NONE: no path */
    unsigned char isPrimary : 1;
    unsigned char : 7;
} api_Loop_t;

typedef struct api_DiskMfg_s {
    char vendor[32];
    char model[65];
    char serial[32];
    char saleable_serial[32];
    char saleable_product[32];
    char spare_part[32];
    char mktg_model[32]; /* marketing model name */
    char asmbly_rev[32];
    char checksum[32];
} api_DiskMfg_t;

typedef struct api_FwState_s {
    uint32_t actual;
    int overall;
} api_FwState_t;

typedef struct api_ChunkCounts_s {
    uint32_t usedOKChunks;
    uint32_t usedFailChunks;
    uint32_t unusedFreeChunks;
    uint32_t unusedUninitChunks;
    uint32_t unusedFailChunks;
} api_ChunkCounts_t;

/* An error count of all bits set is not known. */
#define API_ERRCOUNT_UNKNOWN UINT64_MAX

typedef struct api_ErrCounts_s {
    uint64_t corrErrors;
    uint64_t uncorrErrors;
} api_ErrCounts_t;

/* Enclosure-services block. */
typedef struct api_DiskEsi_s {
    uint8_t present; /* non-zero: the enclosure reports services */
    uint8_t reserved[3];
    uint32_t state; /* ESI state */
} api_DiskEsi_t;

/* Bit of u.locate.flags: the disk's locate LED is lit. */
#define API_DISK_LOCATE_LIT 0x40u

/* Enclosure-dependent block of a disk; which members hold data depends on
 * the disk's cage type. */
typedef union api_DiskEnclosure_u {
    uint32_t ledState;    /* LED state word: cage types 1, 2, 3, 5 */
    api_DiskEsi_t esiAt0; /* enclosure services: cage types 6, 7, 8 */
    struct {
        uint32_t ledState;
        api_DiskEsi_t esi; /* enclosure services: cage types 3, 4, 5 */
    } esiAt4;
    struct {
        uint8_t reserved[12];
        uint8_t flags; /* API_DISK_LOCATE_LIT; every cage type */
        uint8_t reserved2[3];
    } locate;
} api_DiskEnclosure_u;

typedef struct api_Disk_s {
    unsigned char isAbsent : 1; /* the disk is not in its slot: ignore it */
    unsigned char : 7;
    char deviceID[65];       /* "%016X-id-%d" of wwn and id */
    char parentDeviceID[65]; /* DeviceID of the magazine holding the disk */
    char cageDeviceID[65];   /* DeviceID of the drive cage */
    uint16_t position;       /* position in the magazine */
    uint32_t id;             /* the array's disk number */
    char cageElementName[32];
    uint16_t magPosition; /* magazine position in the cage */
    char elemName[32];
    uint64_t wwn;
    int type_;    /* technology: 1, 2 rotating; 4 solid-state; 5 nearline */
    int cageType; /* 1 to 8 */
    uint32_t cageSide;
    uint16_t temp;
    uint64_t blockSize;
    uint64_t numBlocks;
    uint64_t consumBlocks;
    uint64_t chunkSize;
    unsigned char isLDAllocateable : 1; /* may be allocated to logical disks */
    unsigned char : 7;
    uint32_t speed;       /* thousands of revolutions per minute */
    uint32_t ad_capacity; /* capacity in the library's capacity unit */
    uint32_t mediaType;
    uint32_t wearlevelRemain;
    api_Loop_t loopA;
    api_Loop_t loopB;
    api_Loop_t loopA1;
    api_Loop_t loopB1;
    int opStatus;    /* the array's own status code */
    int cimOpStatus; /* CIM OperationalStatus value */
    int healthState; /* CIM HealthState value */
    api_DiskMfg_t mfg;
    char fwVersion[32];
    api_FwState_t fwState;
    api_ChunkCounts_t normal;
    api_ChunkCounts_t spare;
    uint32_t freeChunks;
    int connectorType; /* 1, 2, 3 */
    api_ErrCounts_t readErr;
    api_ErrCounts_t writeErr;
    api_DiskEnclosure_u u;
    int encryption;
} api_Disk_t;

typedef struct api_DiskList_s {
    uint32_t count;
    api_Disk_t* disks; /* released by the caller with free() */
} api_DiskList_t;

/* Selector of api_getSystemDisks that asks for every disk. */
#define API_ALL_DISKS (-10)

/* Fills 'list' with every disk (selector API_ALL_DISKS) or with the one disk
 * whose WWN equals the selector. On failure the list is empty:
 * API_E_NOT_FOUND for an unknown WWN, API_E_INVALID for NULL,
 * API_E_NO_MEMORY. The caller frees list->disks with free(). */
int api_getSystemDisks(int64_t selector, api_DiskList_t* list);

/* Looks a disk DeviceID up: writes the disk's WWN as the selector of
 * api_getSystemDisks and its id. API_E_NOT_FOUND for an unknown DeviceID
 * (both outputs untouched). Either output may be NULL. */
int api_deReferenceDiskDeviceID(const char* deviceID, int64_t* selector, uint32_t* diskId);

/* One entry of the disk DeviceID list (116 bytes). */
typedef struct api_DiskDeviceID_s {
    uint32_t diskId;
    char deviceID[108];
    int32_t status; /* health of the disk's extent; above 19: unusable */
} api_DiskDeviceID_t;

typedef struct api_DiskDeviceIDList_s {
    uint32_t count;
    api_DiskDeviceID_t* entries; /* released with freeDiskDeviceIDs() */
    uint64_t reserved;
} api_DiskDeviceIDList_t;

/* Disk id that asks for every disk. */
#define API_ALL_DISK_IDS 0xFFFFFFFEu

/* Fills 'list' with the DeviceIDs of the present disks (API_ALL_DISK_IDS)
 * or of the one present disk with that id. On failure the list is empty:
 * API_E_NOT_FOUND for an unknown or absent disk, API_E_INVALID for NULL,
 * API_E_NO_MEMORY or API_E_LIST_TOO_BIG when the list cannot be built. */
int getDiskDeviceIDs(uint32_t diskId, api_DiskDeviceIDList_t* list);

/* Releases what getDiskDeviceIDs allocated and zeroes the holder. */
void freeDiskDeviceIDs(api_DiskDeviceIDList_t* list);

/* Values of api_locateMagazine. */
#define API_LOCATE_ON 255
#define API_LOCATE_OFF 1

/* Lights (API_LOCATE_ON) or switches off (API_LOCATE_OFF) the locate LED of
 * every disk in the magazine at 'magPosition' of the named cage.
 * API_E_NOT_FOUND for an unknown cage or magazine, API_E_INVALID for any
 * other value. */
int api_locateMagazine(const char* cageName, uint16_t magPosition, int value);

/* ---------------------------------------------------------------------- */
/* Chunklet maps                                                           */
/* ---------------------------------------------------------------------- */

/* One chunklet of a volume (16 bytes). */
typedef struct api_MapCh_s {
    uint64_t diskWwn;  /* WWN of the disk holding the chunklet */
    int32_t diskId;    /* that disk's id */
    uint16_t chunklet; /* chunklet number on the disk */
    uint16_t reserved;
} api_MapCh_t;

/* One volume with its chunklets (48 bytes). The chunklets lie in three
 * consecutive runs; the third run holds the volume's user data. */
typedef struct api_MapVVtoCh_s {
    uint64_t wwnHigh; /* first word of the 128-bit volume WWN */
    uint64_t wwnLow;  /* second word */
    uint32_t volumeId;
    uint32_t firstRunLength;
    uint32_t secondRunLength;
    uint32_t thirdRunLength;
    uint32_t chunkletCount; /* all entries of 'chunklets' */
    api_MapCh_t* chunklets;
} api_MapVVtoCh_t;

typedef struct api_MapsVVtoCh_s {
    uint32_t count;
    api_MapVVtoCh_t* volumes; /* released with api_freeMapsVVtoCh() */
} api_MapsVVtoCh_t;

/* One volume having user data on a disk (108 bytes). */
typedef struct api_MapPDVolume_s {
    char wwn[40];     /* 32 upper-case hexadecimal digits of the volume WWN */
    char name[32];    /* volume name */
    uint8_t excluded; /* non-zero: leave this entry out */
    uint8_t reserved[3];
    uint32_t volumeId;
    uint32_t chunkletCount; /* user-data chunklets of the volume on the disk */
    uint8_t reserved2[24];
} api_MapPDVolume_t;

/* One disk with the volumes using it (88 bytes). */
typedef struct api_MapPDtoVV_s {
    char deviceID[65]; /* the disk's DeviceID */
    uint32_t diskId;
    uint32_t volumeCount;
    api_MapPDVolume_t* volumes;
} api_MapPDtoVV_t;

typedef struct api_MapsPDtoVV_s {
    uint32_t count;
    api_MapPDtoVV_t* disks; /* released with api_freeMapsPDtoVV() */
} api_MapsPDtoVV_t;

/* Fills 'maps' with the named volume, or with every volume when the name is
 * NULL or empty. API_E_NOT_FOUND (empty set) for an unknown name. */
int api_getMapsVVtoCh(const char* volumeName, api_MapsVVtoCh_t* maps);

/* Releases what api_getMapsVVtoCh allocated and zeroes the holder. */
void api_freeMapsVVtoCh(api_MapsVVtoCh_t* maps);

/* Fills 'maps' with the volumes that have user data on the disk with this
 * id, or on each present disk for API_ALL_DISK_IDS. API_E_NOT_FOUND (empty
 * set) for an unknown disk. */
int api_getMapsPDtoVV(uint32_t diskId, api_MapsPDtoVV_t* maps);

/* Releases what api_getMapsPDtoVV allocated and zeroes the holder. */
void api_freeMapsPDtoVV(api_MapsPDtoVV_t* maps);

/* Parses a disk DeviceID, 16 hexadecimal digits, "-id-" and a decimal id.
 * API_E_INVALID for any other text (outputs untouched). */
int api_extractFromSystemDiskID(const char* deviceID, uint64_t* wwn, int32_t* diskId);

/* Parses a volume WWN of 32 hexadecimal digits into its two words.
 * API_E_INVALID for any other text (outputs untouched). */
int api_wwnStringToInt(const char* text, uint64_t* high, uint64_t* low);

#define API_WWN_TEXT_SIZE 33

/* Writes a volume WWN as 32 upper-case hexadecimal digits. API_E_INVALID
 * when 'size' is below API_WWN_TEXT_SIZE. */
int api_wwnIntToString(uint64_t high, uint64_t low, char* text, size_t size);

/* ---------------------------------------------------------------------- */
/* Volumes and user rights                                                 */
/* ---------------------------------------------------------------------- */

enum api_vv_kind_e {
    API_VV_INVALID = 0,
    API_VV_BASE = 1,
    API_VV_PHYSICAL_COPY = 2,
    API_VV_VIRTUAL_COPY = 3,
    API_VV_OTHER = 4
};

typedef struct api_VV_s {
    uint32_t id;
    int kind; /* api_vv_kind_e */
    char name[32];
    char wwn[API_WWN_TEXT_SIZE];
    uint64_t wwnHigh;
    uint64_t wwnLow;
} api_VV_t;

typedef struct api_VVList_s {
    uint32_t count;
    api_VV_t* vvs; /* released by the caller with free() */
} api_VVList_t;

/* Fills 'list' with the volume whose WWN text (any letter case) or name is
 * 'volumeKey', or with every volume when the key is NULL or empty.
 * API_E_NOT_FOUND (empty list) when nothing matches. */
int api_getVVs(const char* volumeKey, api_VVList_t* list);

/* Decides whether a user may perform the operation named by an operation
 * key (such as "ksv_storagesetting.modifyinstance") from the given client
 * address: API_OK or API_E_DENIED. */
int api_authorizeCIMUser(const char* userName, const char* ipAddr, const char* operationKey);

/* Checks a user's password for the management server's login: API_OK or
 * API_E_DENIED. */
int api_checkUserPassword(const char* userName, const char* password);

/* ---------------------------------------------------------------------- */
/* Hash tables                                                             */
/* ---------------------------------------------------------------------- */

/* A table of int64_t values keyed by integers or by strings, with a lock of
 * its own for callers that need a sequence of operations to be atomic.
 * Every operation is safe on its own without the lock.
 * Keys are passed as 'const void*': for an integer table a pointer to an
 * int64_t, for a string table a NUL-terminated string (copied). */
typedef struct hashtable_s hashtable_t;

/* New empty tables; NULL when the capacity is not positive or the load
 * factor is not in (0, 1]. Released with delete_hashtable(). */
hashtable_t* create_int_hashtable(int initialCapacity, float loadFactor);
hashtable_t* create_string_hashtable(int initialCapacity, float loadFactor);

/* The value hashtable_get answers for a missing key (initially -1). */
void set_invalid_value(hashtable_t* table, int64_t value);

/* Takes and releases the table's lock (not recursive). */
void hashtable_lock(hashtable_t* table);
void hashtable_unlock(hashtable_t* table);

/* 1 when the key is in the table, else 0 (also for NULL arguments). */
int hashtable_contains_key(hashtable_t* table, const void* key);

/* Stores or replaces the value of a key. API_E_INVALID for NULL. */
int hashtable_put(hashtable_t* table, const void* key, int64_t value);

/* The value of a key; the invalid value when the key is missing, -1 for
 * NULL arguments. */
int64_t hashtable_get(hashtable_t* table, const void* key);

/* Removes every key. */
void hashtable_clear(hashtable_t* table);

/* Releases the table; it must not be locked. NULL is ignored. */
void delete_hashtable(hashtable_t* table);

/* ---------------------------------------------------------------------- */
/* Record layouts                                                          */
/* ---------------------------------------------------------------------- */

#ifdef __cplusplus
#define KSVAPI_LAYOUT(cond) static_assert(cond, #cond)
#else
#define KSVAPI_LAYOUT(cond) _Static_assert(cond, #cond)
#endif

KSVAPI_LAYOUT(sizeof(api_Loop_t) == 24);
KSVAPI_LAYOUT(offsetof(api_Loop_t, loopALPA) == 4);
KSVAPI_LAYOUT(offsetof(api_Loop_t, nodePortWWN) == 8);
KSVAPI_LAYOUT(offsetof(api_Loop_t, lpid) == 16);
KSVAPI_LAYOUT(sizeof(api_DiskMfg_t) == 321);
KSVAPI_LAYOUT(sizeof(api_DiskEnclosure_u) == 16);
KSVAPI_LAYOUT(offsetof(api_DiskEnclosure_u, ledState) == 0);
KSVAPI_LAYOUT(offsetof(api_DiskEnclosure_u, esiAt0.present) == 0);
KSVAPI_LAYOUT(offsetof(api_DiskEnclosure_u, esiAt0.state) == 4);
KSVAPI_LAYOUT(offsetof(api_DiskEnclosure_u, esiAt4.esi.present) == 4);
KSVAPI_LAYOUT(offsetof(api_DiskEnclosure_u, esiAt4.esi.state) == 8);
KSVAPI_LAYOUT(offsetof(api_DiskEnclosure_u, locate.flags) == 12);

KSVAPI_LAYOUT(offsetof(api_Disk_t, deviceID) == 1);
KSVAPI_LAYOUT(offsetof(api_Disk_t, parentDeviceID) == 66);
KSVAPI_LAYOUT(offsetof(api_Disk_t, cageDeviceID) == 131);
KSVAPI_LAYOUT(offsetof(api_Disk_t, position) == 196);
KSVAPI_LAYOUT(offsetof(api_Disk_t, id) == 200);
KSVAPI_LAYOUT(offsetof(api_Disk_t, cageElementName) == 204);
KSVAPI_LAYOUT(offsetof(api_Disk_t, magPosition) == 236);
KSVAPI_LAYOUT(offsetof(api_Disk_t, elemName) == 238);
KSVAPI_LAYOUT(offsetof(api_Disk_t, wwn) == 272);
KSVAPI_LAYOUT(offsetof(api_Disk_t, type_) == 280);
KSVAPI_LAYOUT(offsetof(api_Disk_t, cageType) == 284);
KSVAPI_LAYOUT(offsetof(api_Disk_t, cageSide) == 288);
KSVAPI_LAYOUT(offsetof(api_Disk_t, temp) == 292);
KSVAPI_LAYOUT(offsetof(api_Disk_t, blockSize) == 296);
KSVAPI_LAYOUT(offsetof(api_Disk_t, chunkSize) == 320);
KSVAPI_LAYOUT(offsetof(api_Disk_t, speed) == 332);
KSVAPI_LAYOUT(offsetof(api_Disk_t, wearlevelRemain) == 344);
KSVAPI_LAYOUT(offsetof(api_Disk_t, loopA) == 352);
KSVAPI_LAYOUT(offsetof(api_Disk_t, loopB) == 376);
KSVAPI_LAYOUT(offsetof(api_Disk_t, loopA1) == 400);
KSVAPI_LAYOUT(offsetof(api_Disk_t, loopB1) == 424);
KSVAPI_LAYOUT(offsetof(api_Disk_t, opStatus) == 448);
KSVAPI_LAYOUT(offsetof(api_Disk_t, healthState) == 456);
KSVAPI_LAYOUT(offsetof(api_Disk_t, mfg) == 460);
KSVAPI_LAYOUT(offsetof(api_Disk_t, fwVersion) == 781);
KSVAPI_LAYOUT(offsetof(api_Disk_t, fwState) == 816);
KSVAPI_LAYOUT(offsetof(api_Disk_t, normal) == 824);
KSVAPI_LAYOUT(offsetof(api_Disk_t, spare) == 844);
KSVAPI_LAYOUT(offsetof(api_Disk_t, freeChunks) == 864);
KSVAPI_LAYOUT(offsetof(api_Disk_t, connectorType) == 868);
KSVAPI_LAYOUT(offsetof(api_Disk_t, readErr) == 872);
KSVAPI_LAYOUT(offsetof(api_Disk_t, writeErr) == 888);
KSVAPI_LAYOUT(offsetof(api_Disk_t, u) == 904);
KSVAPI_LAYOUT(offsetof(api_Disk_t, encryption) == 920);
KSVAPI_LAYOUT(sizeof(api_Disk_t) == 928);

KSVAPI_LAYOUT(sizeof(api_DiskList_t) == 16);
KSVAPI_LAYOUT(offsetof(api_DiskList_t, disks) == 8);

KSVAPI_LAYOUT(sizeof(api_DiskDeviceID_t) == 116);
KSVAPI_LAYOUT(offsetof(api_DiskDeviceID_t, deviceID) == 4);
KSVAPI_LAYOUT(offsetof(api_DiskDeviceID_t, status) == 112);
KSVAPI_LAYOUT(sizeof(api_DiskDeviceIDList_t) == 24);
KSVAPI_LAYOUT(offsetof(api_DiskDeviceIDList_t, entries) == 8);

KSVAPI_LAYOUT(sizeof(api_MapCh_t) == 16);
KSVAPI_LAYOUT(offsetof(api_MapCh_t, diskId) == 8);
KSVAPI_LAYOUT(offsetof(api_MapCh_t, chunklet) == 12);
KSVAPI_LAYOUT(sizeof(api_MapVVtoCh_t) == 48);
KSVAPI_LAYOUT(offsetof(api_MapVVtoCh_t, wwnLow) == 8);
KSVAPI_LAYOUT(offsetof(api_MapVVtoCh_t, firstRunLength) == 20);
KSVAPI_LAYOUT(offsetof(api_MapVVtoCh_t, secondRunLength) == 24);
KSVAPI_LAYOUT(offsetof(api_MapVVtoCh_t, thirdRunLength) == 28);
KSVAPI_LAYOUT(offsetof(api_MapVVtoCh_t, chunkletCount) == 32);
KSVAPI_LAYOUT(offsetof(api_MapVVtoCh_t, chunklets) == 40);
KSVAPI_LAYOUT(sizeof(api_MapsVVtoCh_t) == 16);
KSVAPI_LAYOUT(offsetof(api_MapsVVtoCh_t, volumes) == 8);

KSVAPI_LAYOUT(sizeof(api_MapPDVolume_t) == 108);
KSVAPI_LAYOUT(offsetof(api_MapPDVolume_t, excluded) == 72);
KSVAPI_LAYOUT(sizeof(api_MapPDtoVV_t) == 88);
KSVAPI_LAYOUT(offsetof(api_MapPDtoVV_t, volumeCount) == 72);
KSVAPI_LAYOUT(offsetof(api_MapPDtoVV_t, volumes) == 80);
KSVAPI_LAYOUT(sizeof(api_MapsPDtoVV_t) == 16);
KSVAPI_LAYOUT(offsetof(api_MapsPDtoVV_t, disks) == 8);

#undef KSVAPI_LAYOUT

#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#ifdef __cplusplus
}
#endif

#endif /* KSVAPI_H */
