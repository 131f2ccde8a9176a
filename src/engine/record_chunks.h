#pragma once

// The pieces of the column image: fixed runs of rows, each compressed on its own with a hash of
// its bytes, so that a write replaces only the pieces that changed and a reader notices a piece
// that was damaged.

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <optional>

namespace record_chunks {

// Rows per piece of a column (a multiple of the 64 rows of a bit-vector word).
constexpr uint64_t kRowsPerChunk = uint64_t{1} << 20;

constexpr uint64_t chunkCount(uint64_t rows) { return (rows + kRowsPerChunk - 1) / kRowsPerChunk; }

// A 64-bit hash of the bytes (as a positive SQLite integer): the check of a stored piece and
// the test whether a piece changed since it was written.
int64_t hash(const void* data, size_t bytes);

// zlib at its fastest level; empty when zlib fails.
QByteArray compress(const void* data, size_t bytes);
// Inflates `packed` into exactly `bytes` bytes at `dest` and checks their hash; false when the
// piece does not inflate to that size or its hash differs.
bool decompressInto(const QByteArray& packed, void* dest, size_t bytes, int64_t expectedHash);

}  // namespace record_chunks
