#include "agents/adapters/QMArchiveDecoder.h"

#include <zstd.h>

#include <new>

struct QMArchiveDecoder {
  ZSTD_DCtx* context = nullptr;
};

QMArchiveDecoderHandle QMArchiveDecoderCreate(void) {
  auto* handle = new (std::nothrow) QMArchiveDecoder;
  if (handle == nullptr) return nullptr;
  handle->context = ZSTD_createDCtx();
  if (handle->context == nullptr ||
      ZSTD_isError(ZSTD_DCtx_setParameter(handle->context, ZSTD_d_windowLogMax, QMArchiveDecoderMaximumWindowLog))) {
    QMArchiveDecoderDestroy(handle);
    return nullptr;
  }
  return handle;
}

bool QMArchiveDecoderProcess(QMArchiveDecoderHandle handle, const void* input, size_t inputSize, size_t* inputConsumed,
                             void* output, size_t outputCapacity, size_t* outputProduced, int* frameFinished) {
  ZSTD_inBuffer in = {input, inputSize, 0};
  ZSTD_outBuffer out = {output, outputCapacity, 0};
  const size_t result = ZSTD_decompressStream(handle->context, &out, &in);
  *inputConsumed = in.pos;
  *outputProduced = out.pos;
  *frameFinished = result == 0 ? 1 : 0;
  return ZSTD_isError(result) == 0;
}

void QMArchiveDecoderDestroy(QMArchiveDecoderHandle handle) {
  if (handle == nullptr) return;
  ZSTD_freeDCtx(handle->context);
  delete handle;
}
