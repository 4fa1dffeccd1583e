#pragma once

#include <zstd.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace quillmeter::test {

struct ZstdOptions {
  int level = 3;
  bool checksum = true;
  int windowLog = 0;  // 0: the level's own
};

// Writes one zstd frame of bytes that need not be in memory together.
class ZstdWriter {
 public:
  explicit ZstdWriter(const ZstdOptions& options = {}) : context_(ZSTD_createCCtx(), &ZSTD_freeCCtx) {
    set(ZSTD_c_compressionLevel, options.level);
    set(ZSTD_c_checksumFlag, options.checksum ? 1 : 0);
    if (options.windowLog != 0) {
      set(ZSTD_c_windowLog, options.windowLog);
      set(ZSTD_c_enableLongDistanceMatching, 1);
    }
  }

  void append(std::string_view bytes) { run(bytes, ZSTD_e_continue); }
  // What the stream has given so far, for who writes it piece by piece.
  std::string take() { return std::exchange(frame_, {}); }
  std::string finish() {
    run({}, ZSTD_e_end);
    return std::move(frame_);
  }

 private:
  void set(ZSTD_cParameter parameter, int value) {
    if (ZSTD_isError(ZSTD_CCtx_setParameter(context_.get(), parameter, value)) != 0)
      throw std::runtime_error("zstd parameter");
  }

  void run(std::string_view bytes, ZSTD_EndDirective directive) {
    ZSTD_inBuffer in{bytes.data(), bytes.size(), 0};
    std::size_t left = 0;
    do {
      char buffer[65536];
      ZSTD_outBuffer out{buffer, sizeof(buffer), 0};
      left = ZSTD_compressStream2(context_.get(), &out, &in, directive);
      if (ZSTD_isError(left) != 0) throw std::runtime_error("zstd");
      frame_.append(buffer, out.pos);
    } while (in.pos < in.size || (directive == ZSTD_e_end && left > 0));
  }

  std::unique_ptr<ZSTD_CCtx, decltype(&ZSTD_freeCCtx)> context_;
  std::string frame_;
};

inline std::string zstdFrame(std::string_view bytes, const ZstdOptions& options = {}) {
  ZstdWriter writer(options);
  writer.append(bytes);
  return writer.finish();
}

// `bytes` (a multiple of 1 MiB is quickest) of one character.
inline std::string zstdBomb(std::uint64_t bytes, char content = ' ') {
  ZstdWriter writer;
  const std::string piece(1'048'576, content);
  for (; bytes > 0; bytes -= std::min<std::uint64_t>(bytes, piece.size())) {
    writer.append(std::string_view(piece).substr(0, std::min<std::uint64_t>(bytes, piece.size())));
  }
  return writer.finish();
}

}  // namespace quillmeter::test
