/* Lists the frames of a recording: list_frames FILE */
#include <framesift/framesift.h>
#include <stdio.h>

int main(int argc, char** argv)
{
    static uint8_t chunk[65536];
    FILE* file = argc == 2 ? fopen(argv[1], "rb") : NULL;
    void* handle = KX_CreateFrameSift(0);
    KX_FRAME_INFO frame;
    if (file == NULL || handle == NULL)
        return 1;
    for (size_t size = 0; (size = fread(chunk, 1, sizeof chunk, file)) > 0;) {
        KX_ParseData(handle, chunk, (int32_t)size); /* the frames lead into chunk until the next call */
        while (KX_GetOneFrame(handle, &frame) == KX_SUCCESS)
            printf("kind %d.%d codec %d, %dx%d, %d bytes, error %d\n", frame.frameType, frame.frameSubType,
                   frame.frameEncodeType, frame.width, frame.height, frame.streamLen, frame.errorFlags);
    }
    KX_Destroy(handle);
    return fclose(file);
}
