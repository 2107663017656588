/* All volumes as a small program on libsmartcols lists them: the same calls to the client library and the
 * same columns as krvcmd, sorted by the number at the end of the label. */
#include <inttypes.h>
#include <libsmartcols.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include "krvcmd/service/sdk/krv_sdk.h"
enum { kId, kLocation, kStatus, kType, kDirectory, kFileSystem, kUsed, kTotal, kLabel, kVolumeType };
static const char* const kTitles[] = {"Vol ID",      "Location",  "Status",     "Type",  "Directory",
                                      "File System", "Used Capa", "Total Capa", "Label", "Volume Type"};
static KrvSession session;

static KrvCallContext* Fresh(void) {
    static KrvCallContext c;
    memset(&c, 0, sizeof c);
    c.headSize = offsetof(KrvCallContext, error), c.session = session;
    c.errorInfo = &c.error, c.error.size = sizeof c.error;
    return &c;
}

static long Number(struct libscols_cell* cell) {
    return atol(strchr(scols_cell_get_data(cell), '-') + 1);
}

static int CompareLabels(struct libscols_cell* a, struct libscols_cell* b, void* unused) {
    (void)unused;
    return (Number(a) > Number(b)) - (Number(a) < Number(b));
}

static void AddVolume(struct libscols_table* table, uint32_t id) {
    VolumeRecord v = {.size = sizeof v, .libraryValue1 = -1};
    SideKey at = {sizeof at, -1, -1, -1, -1};
    JukeboxRecord jukebox = {.size = sizeof jukebox, .driveCount = -1, .magazineCount = -1};
    SideRecord side = {sizeof side, 0, 254, 0, -1};
    char directory[260] = "", location[80], idText[12], used[24], total[24];
    uint32_t size = 0, count = 0;
    KrvVolumeDetail(Fresh(), id, &v);
    if (KrvVolumeAspects(Fresh(), id, directory, 1, &size) && size > 0 && size < sizeof directory)
        KrvVolumeAspects(Fresh(), id, directory, size, &size);
    KrvVolumeLocations(Fresh(), id, &at, 1, &count);
    KrvGetJukebox(Fresh(), &(JukeboxKey){sizeof(JukeboxKey), at.jukeboxId}, &jukebox);
    KrvGetSide(Fresh(), &at, &side);
    snprintf(idText, sizeof idText, "%" PRIu32, id);
    snprintf(location, sizeof location, "%s\\%d\\%d.%c", jukebox.name, at.magazine + 1, at.slot + 1,
             'A' + at.side);
    snprintf(used, sizeof used, "%d%%", (int)((v.totalCapacity - v.freeCapacity) * 100 / v.totalCapacity));
    snprintf(total, sizeof total, "%1.2f GByte", (double)v.totalCapacity / 1073741824);
    const char* const texts[] = {idText,
                                 location,
                                 v.state == 0 ? "active" : "disabled",
                                 side.mediumCode == 5 ? "DVD-R" : "CD-R",
                                 directory,
                                 v.fileSystem,
                                 used,
                                 total,
                                 v.label,
                                 v.type == 0 ? "Disc" : "Mirror"};
    struct libscols_line* line = scols_table_new_line(table, NULL);
    for (size_t i = kId; i <= kVolumeType; ++i)
        scols_line_set_data(line, i, texts[i]);
}

int main(void) {
    struct libscols_table* table = scols_new_table();
    for (int i = kId; i <= kVolumeType; ++i)
        scols_table_new_column(table, kTitles[i], 0,
                               i == kId || i == kUsed || i == kTotal ? SCOLS_FL_RIGHT : 0);
    scols_column_set_cmpfunc(scols_table_get_column(table, kLabel), CompareLabels, NULL);
    KrvSessionCreate(Fresh(), ".", &session);
    for (uint32_t id = 0, next = 0; KrvGetNextVolume(Fresh(), id, &next) && next > 0; id = next, next = 0)
        AddVolume(table, next);
    KrvSessionClose(Fresh());
    scols_sort_table(table, scols_table_get_column(table, kLabel));
    return scols_print_table(table);
}
