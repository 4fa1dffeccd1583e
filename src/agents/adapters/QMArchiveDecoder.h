#pragma once

#include <stdbool.h>
#include <stddef.h>

// The streaming decoder of compressed transcripts, as a C interface over the zstd library. A handle belongs to one
// reader at a time; several streams may be decoded by several handles at once.

#ifdef __cplusplus
extern "C" {
#endif

typedef struct QMArchiveDecoder* QMArchiveDecoderHandle;

// The base-two logarithm of the largest window that a frame may ask for (32 MiB): what its header demands is allocated,
// so it has to stay well below the memory that reading a transcript may take. Frames of the ordinary levels (up to 19)
// ask for 8 MiB at most.
enum { QMArchiveDecoderMaximumWindowLog = 25 };

// A handle that owns one decompression context; null when there is no memory for it.
QMArchiveDecoderHandle QMArchiveDecoderCreate(void);

// Decodes a piece: takes bytes from `input` and puts bytes into `output`, and says how many of each. `frameFinished` is
// 1 when a frame has been decoded and flushed completely with this call, else 0. False for data that are no zstd
// stream, or one whose window is too large; the handle is then good for QMArchiveDecoderDestroy only.
bool QMArchiveDecoderProcess(QMArchiveDecoderHandle handle, const void* input, size_t inputSize, size_t* inputConsumed,
                             void* output, size_t outputCapacity, size_t* outputProduced, int* frameFinished);

// Frees the context and the handle; null is ignored.
void QMArchiveDecoderDestroy(QMArchiveDecoderHandle handle);

#ifdef __cplusplus
}
#endif
