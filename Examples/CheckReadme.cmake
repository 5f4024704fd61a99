# cmake -DREADME=FILE -DEXAMPLE=FILE -P CheckReadme.cmake: fails unless README shows EXAMPLE, byte by byte.
file(READ ${README} FRAMESIFT_README)
file(READ ${EXAMPLE} FRAMESIFT_EXAMPLE)
string(FIND "${FRAMESIFT_README}" "```c\n${FRAMESIFT_EXAMPLE}```\n" FRAMESIFT_PLACE)
if(FRAMESIFT_PLACE EQUAL -1)
    message(FATAL_ERROR "${README} does not show ${EXAMPLE} as it is")
endif()
