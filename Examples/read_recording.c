/* Indexes a recording, then reads from its last key frame on: read_recording FILE */
#include <framesift/framesift.h>
#include <pthread.h>
#include <stdio.h>

struct index
{
    pthread_mutex_t lock; /* the callbacks come on the parse thread */
    pthread_cond_t ended;
    int is_ended;
    KXint64 last_key; /* offset of the last key frame, -1: none yet */
};

static int is_key(const KX_FRAME_INFO* frame)
{
    return frame->frameType == KX_FRAME_TYPE_VIDEO && (frame->frameSubType == KX_FRAME_SUB_TYPE_VIDEO_I_FRAME ||
                                                       frame->frameSubType == KX_FRAME_SUB_TYPE_VIDEO_JPEG_FRAME);
}

static int on_frame(void* token, KX_FRAME_INFO* frame, KX_INDEX_INFO* place, int percent, void* user)
{
    struct index* index = user;
    (void)token;
    (void)percent;
    if (frame != NULL) {
        if (is_key(frame))
            index->last_key = place->frameOffset;
        return 0;
    }
    pthread_mutex_lock(&index->lock); /* the end mark: nothing comes behind it */
    index->is_ended = 1;
    pthread_cond_signal(&index->ended);
    pthread_mutex_unlock(&index->lock);
    return 0;
}

static int on_summary(void* token, KX_FILE_INFO* info, void* user)
{
    (void)token;
    (void)user;
    printf("%u frames, %u of them video, %u key frames, %u s\n", info->framenum, info->videonum, info->keyframenum,
           info->duration);
    return 0;
}

int main(int argc, char** argv)
{
    struct index index = {PTHREAD_MUTEX_INITIALIZER, PTHREAD_COND_INITIALIZER, 0, -1};
    KX_FRAME_INFO frame;
    KXint64 offset;
    void* handle = argc == 2 ? KX_CreateFileHandle(0, argv[1]) : NULL;
    int result = handle != NULL ? KX_FileParser(handle, on_frame, on_summary, &index) : KX_ERROR_PARAMETER;
    if (result != KX_SUCCESS) {
        fprintf(stderr, "read_recording: cannot index: code %d\n", result);
        KX_Destroy(handle);
        return 1;
    }
    pthread_mutex_lock(&index.lock);
    while (!index.is_ended)
        pthread_cond_wait(&index.ended, &index.lock);
    pthread_mutex_unlock(&index.lock);

    /* Behind the pass a seek comes first, reads then. */
    result = KX_FileSeekByOffset(handle, index.last_key < 0 ? 0 : index.last_key, KX_SEEK_PRECISE_OFFSET);
    while (result == KX_SUCCESS && (result = KX_FileReadOneFrame(handle, &offset, &frame)) == KX_SUCCESS)
        printf("at %lld: kind %d.%d, %d bytes of payload, error %d\n", (long long)offset, frame.frameType,
               frame.frameSubType, frame.streamLen, frame.errorFlags);
    KX_Destroy(handle);
    return result == KX_ERROR_READ_FILE_END ? 0 : 1;
}
