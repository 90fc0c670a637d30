#include "feedserver/gzip.h"

#include <zlib.h>

namespace nimbara {

std::string gzipped(std::string_view bytes) {
  constexpr int kGzipWindow = 15 + 16;
  constexpr int kMemory = 8;
  z_stream stream{};
  // Fails for want of memory only; then nothing is compressed and the plain body is served.
  if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, kGzipWindow, kMemory, Z_DEFAULT_STRATEGY) != Z_OK)
    return {};
  std::string out(deflateBound(&stream, bytes.size()), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = reinterpret_cast<Bytef*>(out.data());
  stream.avail_out = static_cast<uInt>(out.size());
  int const end = deflate(&stream, Z_FINISH);
  out.resize(end == Z_STREAM_END ? stream.total_out : 0);
  deflateEnd(&stream);
  return out;
}

}  // namespace nimbara
