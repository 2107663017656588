/**
 * @file
 * The binary interface of the Carvoline client library (krvSdk64): the records that
 * cross it and its 31 functions. Usable from C and from C++.
 *
 * Rules that hold for every function:
 *  - The first argument is a KrvCallContext that was prepared afresh for this one call.
 *  - The result is a 32-bit boolean: non-zero is success, zero is failure. On failure the
 *    library has written code and text into the context's KrvErrorInfo.
 *  - Every record starts with its own size in bytes, set by the caller before the call.
 *  - Magazine, slot, drive and side numbers are zero-based; -1 stands for "not set".
 *  - Jukebox and volume IDs are positive; an ID below 1 never names an item.
 *  - Texts are NUL-terminated byte strings; on Windows they are in the process's ANSI code
 *    page, elsewhere no encoding is promised. A reader treats the end of a text field as the
 *    end of the text when the NUL is missing.
 *  - All fields are little-endian. The caller owns every buffer that it passes.
 */
#ifndef KRVCMD_SERVICE_KRV_SDK_H
#define KRVCMD_SERVICE_KRV_SDK_H

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

/**
 * Marks the functions of the library. The build of the library defines KRV_SDK_BUILD; on
 * Windows the module definition file krvSdk64.def names the exports instead.
 */
#if defined(KRV_SDK_BUILD) && !defined(_WIN32)
#define KRV_API __attribute__((visibility("default")))
#else
#define KRV_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** Opaque handle of a session; 0 before a session exists. */
typedef uint64_t KrvSession;

/** Non-zero: success. Zero: failure, described in the context's error part. */
typedef int32_t KrvBool;

/** The error part of a call context. */
typedef struct KrvErrorInfo {
    uint32_t size;   /**< bytes of this part: 1032 */
    int32_t code;    /**< 0 before the call; the library sets it on failure */
    char text[1024]; /**< all zero before the call; the library fills it on failure */
} KrvErrorInfo;

static_assert(sizeof(KrvErrorInfo) == 1032, "KrvErrorInfo is 1032 bytes");
static_assert(offsetof(KrvErrorInfo, size) == 0, "size at 0");
static_assert(offsetof(KrvErrorInfo, code) == 4, "code at 4");
static_assert(offsetof(KrvErrorInfo, text) == 8, "text at 8");

/** What every call takes first; one is built afresh before each call. */
typedef struct KrvCallContext {
    uint32_t headSize;       /**< bytes of the head, the part before `error`: 24 */
    uint32_t padding;        /**< not read */
    KrvSession session;      /**< the session that the call belongs to */
    KrvErrorInfo* errorInfo; /**< address of `error` in this same record */
    KrvErrorInfo error;      /**< where the library describes a failure */
} KrvCallContext;

static_assert(sizeof(KrvCallContext) == 1056, "KrvCallContext is 1056 bytes");
static_assert(offsetof(KrvCallContext, headSize) == 0, "headSize at 0");
static_assert(offsetof(KrvCallContext, padding) == 4, "padding at 4");
static_assert(offsetof(KrvCallContext, session) == 8, "session at 8");
static_assert(offsetof(KrvCallContext, errorInfo) == 16, "errorInfo at 16");
static_assert(offsetof(KrvCallContext, error) == 24, "error at 24");

/* ---- Key records: filled by the caller, read by the library ---------------------- */

/** Addresses a jukebox. */
typedef struct JukeboxKey {
    uint32_t size;     /**< 8 */
    int32_t jukeboxId; /**< 1 or more; -1 = not set */
} JukeboxKey;

static_assert(sizeof(JukeboxKey) == 8, "JukeboxKey is 8 bytes");
static_assert(offsetof(JukeboxKey, size) == 0, "size at 0");
static_assert(offsetof(JukeboxKey, jukeboxId) == 4, "jukeboxId at 4");

/** Addresses a magazine. */
typedef struct MagazineKey {
    uint32_t size;     /**< 12 */
    int32_t jukeboxId; /**< 1 or more; -1 = not set */
    int32_t magazine;  /**< zero-based; -1 = not set */
} MagazineKey;

static_assert(sizeof(MagazineKey) == 12, "MagazineKey is 12 bytes");
static_assert(offsetof(MagazineKey, size) == 0, "size at 0");
static_assert(offsetof(MagazineKey, jukeboxId) == 4, "jukeboxId at 4");
static_assert(offsetof(MagazineKey, magazine) == 8, "magazine at 8");

/** Addresses a drive. */
typedef struct DriveKey {
    uint32_t size;     /**< 12 */
    int32_t jukeboxId; /**< 1 or more; -1 = not set */
    int32_t drive;     /**< zero-based; -1 = not set */
} DriveKey;

static_assert(sizeof(DriveKey) == 12, "DriveKey is 12 bytes");
static_assert(offsetof(DriveKey, size) == 0, "size at 0");
static_assert(offsetof(DriveKey, jukeboxId) == 4, "jukeboxId at 4");
static_assert(offsetof(DriveKey, drive) == 8, "drive at 8");

/** Addresses a slot. */
typedef struct SlotKey {
    uint32_t size;     /**< 16 */
    int32_t jukeboxId; /**< 1 or more; -1 = not set */
    int32_t magazine;  /**< zero-based; -1 = not set: `slot` counts through the whole jukebox */
    int32_t slot;      /**< zero-based; -1 = not set */
} SlotKey;

static_assert(sizeof(SlotKey) == 16, "SlotKey is 16 bytes");
static_assert(offsetof(SlotKey, size) == 0, "size at 0");
static_assert(offsetof(SlotKey, jukeboxId) == 4, "jukeboxId at 4");
static_assert(offsetof(SlotKey, magazine) == 8, "magazine at 8");
static_assert(offsetof(SlotKey, slot) == 12, "slot at 12");

/** Addresses one side; also the element of a volume's location list, filled by the library. */
typedef struct SideKey {
    uint32_t size;     /**< 20 */
    int32_t jukeboxId; /**< 1 or more; -1 = not set */
    int32_t magazine;  /**< zero-based; -1 = not set: `slot` counts through the whole jukebox */
    int32_t slot;      /**< zero-based; -1 = not set */
    int32_t side;      /**< 0 = side A, 1 = side B, 2 = both sides; -1 = not set */
} SideKey;

static_assert(sizeof(SideKey) == 20, "SideKey is 20 bytes");
static_assert(offsetof(SideKey, size) == 0, "size at 0");
static_assert(offsetof(SideKey, jukeboxId) == 4, "jukeboxId at 4");
static_assert(offsetof(SideKey, magazine) == 8, "magazine at 8");
static_assert(offsetof(SideKey, slot) == 12, "slot at 12");
static_assert(offsetof(SideKey, side) == 16, "side at 16");

/* ---- Result records: prepared by the caller, filled by the library ---------------- */

/** Who a changer or a drive is, as its SCSI inquiry tells. */
typedef struct DeviceIdentity {
    int32_t scsiAddress[3]; /**< shown in decimal, joined by "/" */
    char vendor[9];         /**< may carry trailing blanks */
    char product[17];       /**< shown after the vendor */
    char revision[5];       /**< firmware revision */
    char padding;           /**< not read */
} DeviceIdentity;

static_assert(sizeof(DeviceIdentity) == 44, "DeviceIdentity is 44 bytes");
static_assert(offsetof(DeviceIdentity, scsiAddress) == 0, "scsiAddress at 0");
static_assert(offsetof(DeviceIdentity, vendor) == 12, "vendor at 12");
static_assert(offsetof(DeviceIdentity, product) == 21, "product at 21");
static_assert(offsetof(DeviceIdentity, revision) == 38, "revision at 38");
static_assert(offsetof(DeviceIdentity, padding) == 43, "padding at 43");

/** Describes a jukebox; filled by KrvGetJukebox(). */
typedef struct JukeboxRecord {
    uint32_t size;           /**< 120 */
    DeviceIdentity identity; /**< of the changer; all zero before the call */
    uint32_t enabled;        /**< non-zero = active, 0 = disabled; 0 before the call */
    uint32_t doubleSided;    /**< non-zero = handles double-sided media; 0 before the call */
    int32_t driveCount;      /**< 0 or more; -1 before the call */
    int32_t magazineCount;   /**< 0 or more; -1 before the call */
    int32_t slotCount;       /**< 0 or more, of all magazines together */
    char name[52];           /**< at most 51 bytes and the NUL */
} JukeboxRecord;

static_assert(sizeof(JukeboxRecord) == 120, "JukeboxRecord is 120 bytes");
static_assert(offsetof(JukeboxRecord, size) == 0, "size at 0");
static_assert(offsetof(JukeboxRecord, identity) == 4, "identity at 4");
static_assert(offsetof(JukeboxRecord, enabled) == 48, "enabled at 48");
static_assert(offsetof(JukeboxRecord, doubleSided) == 52, "doubleSided at 52");
static_assert(offsetof(JukeboxRecord, driveCount) == 56, "driveCount at 56");
static_assert(offsetof(JukeboxRecord, magazineCount) == 60, "magazineCount at 60");
static_assert(offsetof(JukeboxRecord, slotCount) == 64, "slotCount at 64");
static_assert(offsetof(JukeboxRecord, name) == 68, "name at 68");

/** Describes a magazine; filled by KrvGetMagazine(). */
typedef struct MagazineRecord {
    uint32_t size;     /**< 12 */
    int32_t slotCount; /**< 0 or more; -1 before the call */
    uint32_t present;  /**< non-zero = available, 0 = not present; 0 before the call */
} MagazineRecord;

static_assert(sizeof(MagazineRecord) == 12, "MagazineRecord is 12 bytes");
static_assert(offsetof(MagazineRecord, size) == 0, "size at 0");
static_assert(offsetof(MagazineRecord, slotCount) == 4, "slotCount at 4");
static_assert(offsetof(MagazineRecord, present) == 8, "present at 8");

/** Describes a drive; filled by KrvGetDrive(). */
typedef struct DriveRecord {
    uint32_t size;           /**< 72 */
    DeviceIdentity identity; /**< all zero before the call */
    uint32_t enabled;        /**< non-zero = active, 0 = disabled; 0 before the call */
    uint32_t padding;        /**< not read */
    uint64_t libraryValue1;  /**< the library's own; 0 before the call */
    uint64_t libraryValue2;  /**< the library's own; 0 before the call */
} DriveRecord;

static_assert(sizeof(DriveRecord) == 72, "DriveRecord is 72 bytes");
static_assert(offsetof(DriveRecord, size) == 0, "size at 0");
static_assert(offsetof(DriveRecord, identity) == 4, "identity at 4");
static_assert(offsetof(DriveRecord, enabled) == 48, "enabled at 48");
static_assert(offsetof(DriveRecord, padding) == 52, "padding at 52");
static_assert(offsetof(DriveRecord, libraryValue1) == 56, "libraryValue1 at 56");
static_assert(offsetof(DriveRecord, libraryValue2) == 64, "libraryValue2 at 64");

/** Describes a slot; filled by KrvGetSlot(). */
typedef struct SlotRecord {
    uint32_t size; /**< 12 */
    /** 0 = unknown, 1 = not present, 2 = scan failed, 3 = empty, 4 = full; 0 before the call */
    uint32_t state;
    uint32_t mediumCode; /**< media type; 255 = no medium; 254 before the call */
} SlotRecord;

static_assert(sizeof(SlotRecord) == 12, "SlotRecord is 12 bytes");
static_assert(offsetof(SlotRecord, size) == 0, "size at 0");
static_assert(offsetof(SlotRecord, state) == 4, "state at 4");
static_assert(offsetof(SlotRecord, mediumCode) == 8, "mediumCode at 8");

/** Describes a side of the medium in a slot; filled by KrvGetSide(). */
typedef struct SideRecord {
    uint32_t size; /**< 20 */
    /** 0 = unknown, 1 = not present, 2 = scan failed, 3 = bad side, 4 = blank side,
        5 = no file system, 6 = contains a file system; 0 before the call */
    uint32_t state;
    uint32_t mediumCode; /**< media type; 255 = no medium; 254 before the call */
    /** 0 = unknown, 1 = not finalized, 2 = finalized, 3 = closed; 0 before the call */
    uint32_t finalization;
    int32_t volumeId; /**< the volume on this side; below 1 = none; -1 before the call */
} SideRecord;

static_assert(sizeof(SideRecord) == 20, "SideRecord is 20 bytes");
static_assert(offsetof(SideRecord, size) == 0, "size at 0");
static_assert(offsetof(SideRecord, state) == 4, "state at 4");
static_assert(offsetof(SideRecord, mediumCode) == 8, "mediumCode at 8");
static_assert(offsetof(SideRecord, finalization) == 12, "finalization at 12");
static_assert(offsetof(SideRecord, volumeId) == 16, "volumeId at 16");

/** Describes a volume; filled by KrvVolumeDetail(). */
typedef struct VolumeRecord {
    uint32_t size;              /**< 336 */
    uint32_t type;              /**< 0 = single disc, 1 = mirror, 2 = volume set; 0 before the call */
    uint32_t state;             /**< 0 = active, 1 = disabled, 2 = offline, other = unknown */
    int32_t libraryValue1;      /**< the library's own; -1 before the call */
    char fileSystem[30];        /**< name of the file system; all zero before the call */
    char label[256];            /**< volume label; all zero before the call */
    char padding[2];            /**< not read */
    uint64_t totalCapacity;     /**< bytes; 0 before the call */
    uint64_t freeCapacity;      /**< bytes; 0 before the call */
    uint32_t libraryValue2;     /**< the library's own; 0 before the call */
    unsigned char reserved[12]; /**< zero before the call */
} VolumeRecord;

static_assert(sizeof(VolumeRecord) == 336, "VolumeRecord is 336 bytes");
static_assert(offsetof(VolumeRecord, size) == 0, "size at 0");
static_assert(offsetof(VolumeRecord, type) == 4, "type at 4");
static_assert(offsetof(VolumeRecord, state) == 8, "state at 8");
static_assert(offsetof(VolumeRecord, libraryValue1) == 12, "libraryValue1 at 12");
static_assert(offsetof(VolumeRecord, fileSystem) == 16, "fileSystem at 16");
static_assert(offsetof(VolumeRecord, label) == 46, "label at 46");
static_assert(offsetof(VolumeRecord, padding) == 302, "padding at 302");
static_assert(offsetof(VolumeRecord, totalCapacity) == 304, "totalCapacity at 304");
static_assert(offsetof(VolumeRecord, freeCapacity) == 312, "freeCapacity at 312");
static_assert(offsetof(VolumeRecord, libraryValue2) == 320, "libraryValue2 at 320");
static_assert(offsetof(VolumeRecord, reserved) == 324, "reserved at 324");

/** How a side is to be formatted; every byte that is not named here is zero. */
typedef struct FormatOptions {
    uint32_t size;              /**< 284 */
    char label[256];            /**< at most 255 bytes and the NUL; empty = no label given */
    uint32_t certify;           /**< 1 = certify, 0 = do not */
    uint32_t sequential;        /**< 1 = sequential/write-once file system, 0 = by media type */
    uint32_t alwaysZero;        /**< 0 */
    unsigned char reserved[12]; /**< always zero */
} FormatOptions;

static_assert(sizeof(FormatOptions) == 284, "FormatOptions is 284 bytes");
static_assert(offsetof(FormatOptions, size) == 0, "size at 0");
static_assert(offsetof(FormatOptions, label) == 4, "label at 4");
static_assert(offsetof(FormatOptions, certify) == 260, "certify at 260");
static_assert(offsetof(FormatOptions, sequential) == 264, "sequential at 264");
static_assert(offsetof(FormatOptions, alwaysZero) == 268, "alwaysZero at 268");
static_assert(offsetof(FormatOptions, reserved) == 272, "reserved at 272");

/* ---- Sessions ---------------------------------------------------------------------- */

/** Opens a session with the service on `serverName` ("." = the local machine). */
KRV_API KrvBool KrvSessionCreate(KrvCallContext* context, const char* serverName, KrvSession* session);

/** Closes the session that the context names. krvcmd also calls it, with session 0, after
    KrvSessionCreate() has failed. */
KRV_API KrvBool KrvSessionClose(KrvCallContext* context);

/* ---- Looking ----------------------------------------------------------------------- */

/** One step of the jukebox enumeration. `previousId` is 0 to start. `*nextId` becomes the
    next ID, or 0 after the last one. */
KRV_API KrvBool KrvGetNextJukebox(KrvCallContext* context, uint32_t previousId, uint32_t* nextId);

/** Describes a jukebox. */
KRV_API KrvBool KrvGetJukebox(KrvCallContext* context, const JukeboxKey* key, JukeboxRecord* record);

/** Describes a magazine. */
KRV_API KrvBool KrvGetMagazine(KrvCallContext* context, const MagazineKey* key, MagazineRecord* record);

/** Describes a drive. */
KRV_API KrvBool KrvGetDrive(KrvCallContext* context, const DriveKey* key, DriveRecord* record);

/** Describes a slot. */
KRV_API KrvBool KrvGetSlot(KrvCallContext* context, const SlotKey* key, SlotRecord* record);

/** Describes a side. Code 3: the side cannot be read; the record is filled all the same. */
KRV_API KrvBool KrvGetSide(KrvCallContext* context, const SideKey* key, SideRecord* record);

/** One step of the volume enumeration, as KrvGetNextJukebox(). */
KRV_API KrvBool KrvGetNextVolume(KrvCallContext* context, uint32_t previousId, uint32_t* nextId);

/** Describes a volume. */
KRV_API KrvBool KrvVolumeDetail(KrvCallContext* context, uint32_t volumeId, VolumeRecord* record);

/** The volume's aspects (its directory names): NUL-terminated strings one after the other,
    ended by an empty one. `*requiredSize` becomes the bytes that the whole list needs, 0 when
    there is none. A buffer that is too small is left alone; the call succeeds. */
KRV_API KrvBool KrvVolumeAspects(KrvCallContext* context, uint32_t volumeId, char* buffer,
                                 uint32_t bufferSize, uint32_t* requiredSize);

/** Where the volume is. `*count` is read and written. In the first call it is 0, and `locations`
    has one element. If the volume has more locations, the caller passes the returned number in
    a second call, with an array of that many elements. The sizes of all elements are set. The
    library writes at most max(1, `*count`) elements and sets `*count` to the number of all
    locations. `always1` is 1 in every call. Code 500: the volume has no location. */
KRV_API KrvBool KrvVolumeLocations(KrvCallContext* context, uint32_t volumeId, SideKey* locations,
                                   uint32_t always1, uint32_t* count);

/* ---- Changing volumes ---------------------------------------------------------------- */

/** Sets the volume's directory name. `always1` is 1 in every call. */
KRV_API KrvBool KrvVolumeSetAspects(KrvCallContext* context, uint32_t volumeId, const char* text,
                                    uint32_t always1);

/** Enables the volume. `alwaysNull` is null in every call. */
KRV_API KrvBool KrvVolumeActivate(KrvCallContext* context, uint32_t volumeId, const void* alwaysNull);

/** Disables the volume. */
KRV_API KrvBool KrvVolumeDeactivate(KrvCallContext* context, uint32_t volumeId);

/** Erases one side; krvcmd passes side 0 or 1. */
KRV_API KrvBool KrvVolumeErase(KrvCallContext* context, const SideKey* key);

/** Finalizes and closes the medium; the side is 2 (the whole medium). */
KRV_API KrvBool KrvVolumeFinalize(KrvCallContext* context, const SideKey* key);

/** Formats one side; krvcmd passes side 0 or 1. */
KRV_API KrvBool KrvVolumeFormat(KrvCallContext* context, const SideKey* key, const FormatOptions* options);

/* ---- Moving media ---------------------------------------------------------------------- */

/** Imports a medium into the slot; parts of the key that are not set leave the choice to the service. */
KRV_API KrvBool KrvMediaImport(KrvCallContext* context, const SlotKey* key);

/** Exports the medium in the slot. */
KRV_API KrvBool KrvMediaExport(KrvCallContext* context, const SlotKey* key);

/** Rescans the medium in the slot; the side is 2 (both sides). */
KRV_API KrvBool KrvMediaScan(KrvCallContext* context, const SideKey* key);

/* ---- Switching items on and off, names ------------------------------------------------- */

/** Enables the jukebox. */
KRV_API KrvBool KrvActivateJukebox(KrvCallContext* context, const JukeboxKey* key);

/** Disables the jukebox. */
KRV_API KrvBool KrvDeactivateJukebox(KrvCallContext* context, const JukeboxKey* key);

/** Enables the magazine. */
KRV_API KrvBool KrvActivateMagazine(KrvCallContext* context, const MagazineKey* key);

/** Disables the magazine. */
KRV_API KrvBool KrvDeactivateMagazine(KrvCallContext* context, const MagazineKey* key);

/** Enables the drive. */
KRV_API KrvBool KrvActivateDrive(KrvCallContext* context, const DriveKey* key);

/** Disables the drive. */
KRV_API KrvBool KrvDeactivateDrive(KrvCallContext* context, const DriveKey* key);

/** Renames the jukebox. */
KRV_API KrvBool KrvJukeboxSetName(KrvCallContext* context, const JukeboxKey* key, const char* newName);

/* ---- The service itself ------------------------------------------------------------------ */

/** Starts the service. Needs no session; `serverName` as for KrvSessionCreate(). */
KRV_API KrvBool KrvServiceStart(KrvCallContext* context, const char* serverName);

/** Stops the service of the session. */
KRV_API KrvBool KrvServiceStop(KrvCallContext* context);

/** Restarts the service of the session. */
KRV_API KrvBool KrvServiceRestart(KrvCallContext* context);

#ifdef __cplusplus
}
#endif

#endif
