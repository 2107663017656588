// The 31 entry points of the client library. Not finished: each answers a clear failure.
#include <cstdio>

#include "krvcmd/service/krv_sdk.h"

namespace {

KrvBool Refuse(KrvCallContext* context, const char* function) {
    if (context != nullptr && context->errorInfo != nullptr) {
        context->errorInfo->code = 1000;
        std::snprintf(context->errorInfo->text, sizeof(context->errorInfo->text), "%s is not supported yet.",
                      function);
    }
    return 0;
}

}  // namespace

KrvBool KrvSessionCreate(KrvCallContext* context, const char*, KrvSession*) {
    return Refuse(context, "KrvSessionCreate");
}

KrvBool KrvSessionClose(KrvCallContext* context) {
    return Refuse(context, "KrvSessionClose");
}

KrvBool KrvGetNextJukebox(KrvCallContext* context, uint32_t, uint32_t*) {
    return Refuse(context, "KrvGetNextJukebox");
}

KrvBool KrvGetJukebox(KrvCallContext* context, const JukeboxKey*, JukeboxRecord*) {
    return Refuse(context, "KrvGetJukebox");
}

KrvBool KrvGetMagazine(KrvCallContext* context, const MagazineKey*, MagazineRecord*) {
    return Refuse(context, "KrvGetMagazine");
}

KrvBool KrvGetDrive(KrvCallContext* context, const DriveKey*, DriveRecord*) {
    return Refuse(context, "KrvGetDrive");
}

KrvBool KrvGetSlot(KrvCallContext* context, const SlotKey*, SlotRecord*) {
    return Refuse(context, "KrvGetSlot");
}

KrvBool KrvGetSide(KrvCallContext* context, const SideKey*, SideRecord*) {
    return Refuse(context, "KrvGetSide");
}

KrvBool KrvGetNextVolume(KrvCallContext* context, uint32_t, uint32_t*) {
    return Refuse(context, "KrvGetNextVolume");
}

KrvBool KrvVolumeDetail(KrvCallContext* context, uint32_t, VolumeRecord*) {
    return Refuse(context, "KrvVolumeDetail");
}

KrvBool KrvVolumeAspects(KrvCallContext* context, uint32_t, char*, uint32_t, uint32_t*) {
    return Refuse(context, "KrvVolumeAspects");
}

KrvBool KrvVolumeLocations(KrvCallContext* context, uint32_t, SideKey*, uint32_t, uint32_t*) {
    return Refuse(context, "KrvVolumeLocations");
}

KrvBool KrvVolumeSetAspects(KrvCallContext* context, uint32_t, const char*, uint32_t) {
    return Refuse(context, "KrvVolumeSetAspects");
}

KrvBool KrvVolumeActivate(KrvCallContext* context, uint32_t, const void*) {
    return Refuse(context, "KrvVolumeActivate");
}

KrvBool KrvVolumeDeactivate(KrvCallContext* context, uint32_t) {
    return Refuse(context, "KrvVolumeDeactivate");
}

KrvBool KrvVolumeErase(KrvCallContext* context, const SideKey*) {
    return Refuse(context, "KrvVolumeErase");
}

KrvBool KrvVolumeFinalize(KrvCallContext* context, const SideKey*) {
    return Refuse(context, "KrvVolumeFinalize");
}

KrvBool KrvVolumeFormat(KrvCallContext* context, const SideKey*, const FormatOptions*) {
    return Refuse(context, "KrvVolumeFormat");
}

KrvBool KrvMediaImport(KrvCallContext* context, const SlotKey*) {
    return Refuse(context, "KrvMediaImport");
}

KrvBool KrvMediaExport(KrvCallContext* context, const SlotKey*) {
    return Refuse(context, "KrvMediaExport");
}

KrvBool KrvMediaScan(KrvCallContext* context, const SideKey*) {
    return Refuse(context, "KrvMediaScan");
}

KrvBool KrvActivateJukebox(KrvCallContext* context, const JukeboxKey*) {
    return Refuse(context, "KrvActivateJukebox");
}

KrvBool KrvDeactivateJukebox(KrvCallContext* context, const JukeboxKey*) {
    return Refuse(context, "KrvDeactivateJukebox");
}

KrvBool KrvActivateMagazine(KrvCallContext* context, const MagazineKey*) {
    return Refuse(context, "KrvActivateMagazine");
}

KrvBool KrvDeactivateMagazine(KrvCallContext* context, const MagazineKey*) {
    return Refuse(context, "KrvDeactivateMagazine");
}

KrvBool KrvActivateDrive(KrvCallContext* context, const DriveKey*) {
    return Refuse(context, "KrvActivateDrive");
}

KrvBool KrvDeactivateDrive(KrvCallContext* context, const DriveKey*) {
    return Refuse(context, "KrvDeactivateDrive");
}

KrvBool KrvJukeboxSetName(KrvCallContext* context, const JukeboxKey*, const char*) {
    return Refuse(context, "KrvJukeboxSetName");
}

KrvBool KrvServiceStart(KrvCallContext* context, const char*) {
    return Refuse(context, "KrvServiceStart");
}

KrvBool KrvServiceStop(KrvCallContext* context) {
    return Refuse(context, "KrvServiceStop");
}

KrvBool KrvServiceRestart(KrvCallContext* context) {
    return Refuse(context, "KrvServiceRestart");
}
