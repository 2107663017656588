/* A client library that leaves the file "called" beside itself when any of its functions is called. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

static int Note(void) {
    Dl_info info;
    char path[4096];
    if (dladdr((void*)&Note, &info) != 0) {
        char* slash;
        snprintf(path, sizeof(path) - sizeof("called"), "%s", info.dli_fname);
        slash = strrchr(path, '/');
        strcpy(slash == NULL ? path : slash + 1, "called");
        close(open(path, O_WRONLY | O_CREAT, 0600));
    }
    return 0;
}

#define SPY(name)                                           \
    __attribute__((visibility("default"))) int name(void) { \
        return Note();                                      \
    }

SPY(KrvSessionCreate)
SPY(KrvSessionClose)
SPY(KrvGetNextJukebox)
SPY(KrvGetJukebox)
SPY(KrvGetMagazine)
SPY(KrvGetDrive)
SPY(KrvGetSlot)
SPY(KrvGetSide)
SPY(KrvGetNextVolume)
SPY(KrvVolumeDetail)
SPY(KrvVolumeAspects)
SPY(KrvVolumeLocations)
SPY(KrvVolumeSetAspects)
SPY(KrvVolumeActivate)
SPY(KrvVolumeDeactivate)
SPY(KrvVolumeErase)
SPY(KrvVolumeFinalize)
SPY(KrvVolumeFormat)
SPY(KrvMediaImport)
SPY(KrvMediaExport)
SPY(KrvMediaScan)
SPY(KrvActivateJukebox)
SPY(KrvDeactivateJukebox)
SPY(KrvActivateMagazine)
SPY(KrvDeactivateMagazine)
SPY(KrvActivateDrive)
SPY(KrvDeactivateDrive)
SPY(KrvJukeboxSetName)
SPY(KrvServiceStart)
SPY(KrvServiceStop)
SPY(KrvServiceRestart)
