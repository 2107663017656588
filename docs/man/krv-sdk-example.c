#include <krv_sdk.h>
#include <stdio.h>
#include <string.h>

static KrvCallContext* Prepare(KrvCallContext* context, KrvSession session) {
    memset(context, 0, sizeof *context);
    context->headSize = offsetof(KrvCallContext, error);
    context->session = session;
    context->errorInfo = &context->error;
    context->error.size = sizeof context->error;
    return context;
}

int main(void) {
    KrvCallContext context;
    KrvSession session = 0;
    if (!KrvSessionCreate(Prepare(&context, 0), ".", &session)) {
        fprintf(stderr, "%d: %.1024s\n", (int)context.error.code, context.error.text);
        return 1;
    }

    uint32_t id = 0;
    while (KrvGetNextJukebox(Prepare(&context, session), id, &id) && id != 0) {
        JukeboxKey key = {sizeof key, (int32_t)id};
        JukeboxRecord record = {.size = sizeof record, .driveCount = -1, .magazineCount = -1};
        if (KrvGetJukebox(Prepare(&context, session), &key, &record)) {
            printf("%u %.52s\n", (unsigned)id, record.name);
        }
    }

    KrvSessionClose(Prepare(&context, session));
    return 0;
}
