#include "engine/record_chunks.h"

#include <zlib.h>

#include <bit>
#include <cstring>

namespace record_chunks {

namespace {

constexpr uint64_t kPrime1 = 0x9E3779B185EBCA87ull;
constexpr uint64_t kPrime2 = 0xC2B2AE3D27D4EB4Full;

uint64_t mix(uint64_t h, uint64_t word) {
    h ^= word * kPrime2;
    return std::rotl(h, 31) * kPrime1;
}

uint64_t finish(uint64_t h) {
    h ^= h >> 33;
    h *= 0xFF51AFD7ED558CCDull;
    h ^= h >> 33;
    h *= 0xC4CEB9FE1A85EC53ull;
    return h ^ (h >> 33);
}

}  // namespace

int64_t hash(const void* data, size_t bytes) {
    const auto* p = static_cast<const unsigned char*>(data);
    // Four independent lanes keep the multiplier busy.
    uint64_t lanes[4] = {kPrime1 ^ bytes, kPrime2, ~kPrime1, bytes * kPrime2};
    size_t i = 0;
    for (; i + 32 <= bytes; i += 32) {
        uint64_t w[4];
        std::memcpy(w, p + i, 32);
        for (int l = 0; l < 4; ++l) lanes[l] = mix(lanes[l], w[l]);
    }
    uint64_t h =
        std::rotl(lanes[0], 1) + std::rotl(lanes[1], 7) + std::rotl(lanes[2], 12) + std::rotl(lanes[3], 18);
    for (; i + 8 <= bytes; i += 8) {
        uint64_t w;
        std::memcpy(&w, p + i, 8);
        h = mix(h, w);
    }
    uint64_t tail = 0;
    if (i < bytes) std::memcpy(&tail, p + i, bytes - i);
    h = mix(h, tail);
    return static_cast<int64_t>(finish(h) >> 1);
}

QByteArray compress(const void* data, size_t bytes) {
    uLongf size = compressBound(static_cast<uLong>(bytes));
    QByteArray out(static_cast<qsizetype>(size), Qt::Uninitialized);
    if (compress2(reinterpret_cast<Bytef*>(out.data()), &size, static_cast<const Bytef*>(data),
                  static_cast<uLong>(bytes), Z_BEST_SPEED) != Z_OK)
        return {};
    out.truncate(static_cast<qsizetype>(size));
    return out;
}

bool decompressInto(const QByteArray& packed, void* dest, size_t bytes, int64_t expectedHash) {
    uLongf size = static_cast<uLongf>(bytes);
    // zlib wants a non-null destination even for nothing.
    unsigned char none = 0;
    Bytef* out = bytes ? static_cast<Bytef*>(dest) : &none;
    if (uncompress(out, &size, reinterpret_cast<const Bytef*>(packed.constData()),
                   static_cast<uLong>(packed.size())) != Z_OK ||
        size != bytes)
        return false;
    return hash(out, bytes) == expectedHash;
}

}  // namespace record_chunks
