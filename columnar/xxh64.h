// The 64-bit hash of the columnar kernels: XXH64 with seed 0, written once with its
// constants and stages named. The fixed-width hashes use one accumulate round of it,
// the decimal128 hash the whole algorithm over one 8-byte word, the varchar hash the
// whole algorithm over a row.
#pragma once

#include <stdint.h>
#include <string.h>

namespace zivks::xxh64 {

// ---- Primes
inline constexpr uint64_t kPrime1 = 0x9E3779B185EBCA87ull;
inline constexpr uint64_t kPrime2 = 0xC2B2AE3D27D4EB4Full;
inline constexpr uint64_t kPrime3 = 0x165667B19E3779F9ull;
inline constexpr uint64_t kPrime4 = 0x85EBCA77C2B2AE63ull;
inline constexpr uint64_t kPrime5 = 0x27D4EB2F165667C5ull;

// Bytes of one stripe of the four-lane loop.
inline constexpr int32_t kStripe = 32;

inline uint64_t rotl(uint64_t x, int r) { return (x << r) | (x >> (64 - r)); }

// Little-endian reads at any address.
inline uint64_t read64(const uint8_t* p) {
  uint64_t v;
  memcpy(&v, p, 8);
  if constexpr (__BYTE_ORDER__ == __ORDER_BIG_ENDIAN__) v = __builtin_bswap64(v);
  return v;
}
inline uint32_t read32(const uint8_t* p) {
  uint32_t v;
  memcpy(&v, p, 4);
  if constexpr (__BYTE_ORDER__ == __ORDER_BIG_ENDIAN__) v = __builtin_bswap32(v);
  return v;
}

// ---- round
// Accumulates the 64-bit input x into acc.
inline uint64_t round(uint64_t acc, uint64_t x) { return rotl(acc + x * kPrime2, 31) * kPrime1; }

// ---- merge_round
// Folds one lane of the stripe loop into the merged state.
inline uint64_t merge_round(uint64_t h, uint64_t lane) { return (h ^ round(0, lane)) * kPrime1 + kPrime4; }

// ---- stripes
// Runs the four lanes over the n & ~31 leading bytes of p (n at least 32) and returns
// their merged state.
inline uint64_t stripes(const uint8_t* p, int64_t n) {
  uint64_t v1 = kPrime1 + kPrime2, v2 = kPrime2, v3 = 0, v4 = 0 - kPrime1;
  const uint8_t* const end = p + (n & ~int64_t{kStripe - 1});
  for (; p < end; p += kStripe) {
    v1 = round(v1, read64(p));
    v2 = round(v2, read64(p + 8));
    v3 = round(v3, read64(p + 16));
    v4 = round(v4, read64(p + 24));
  }
  uint64_t h = rotl(v1, 1) + rotl(v2, 7) + rotl(v3, 12) + rotl(v4, 18);
  h = merge_round(h, v1);
  h = merge_round(h, v2);
  h = merge_round(h, v3);
  return merge_round(h, v4);
}

// ---- short_start
// The state a row of fewer than 32 bytes starts from: the fifth prime plus the seed 0.
inline constexpr uint64_t kShortStart = kPrime5;

// ---- tail
// Folds the last n bytes at p (n below 32) into h: 8-byte words, one 4-byte word, then
// single bytes.
inline uint64_t tail(uint64_t h, const uint8_t* p, int64_t n) {
  for (; n >= 8; n -= 8, p += 8) h = rotl(h ^ round(0, read64(p)), 27) * kPrime1 + kPrime4;
  if (n >= 4) {
    h = rotl(h ^ (uint64_t{read32(p)} * kPrime1), 23) * kPrime2 + kPrime3;
    n -= 4;
    p += 4;
  }
  for (; n > 0; --n, ++p) h = rotl(h ^ (uint64_t{*p} * kPrime5), 11) * kPrime1;
  return h;
}

// ---- avalanche
// Mixes every input bit into every output bit: the last stage.
inline uint64_t avalanche(uint64_t h) {
  h ^= h >> 33;
  h *= kPrime2;
  h ^= h >> 29;
  h *= kPrime3;
  return h ^ (h >> 32);
}

// ---- hash
// XXH64 of the n bytes at p, seed 0.
inline uint64_t hash(const uint8_t* p, int64_t n) {
  uint64_t h = n >= kStripe ? stripes(p, n) : kShortStart;
  h += static_cast<uint64_t>(n);
  const int64_t done = n & ~int64_t{kStripe - 1};
  return avalanche(tail(h, p + done, n - done));
}

// ---- hash_word
// XXH64 of the 8 little-endian bytes of x, seed 0.
inline uint64_t hash_word(uint64_t x) {
  const uint64_t h = (kShortStart + 8) ^ round(0, x);
  return avalanche(rotl(h, 27) * kPrime1 + kPrime4);
}

}  // namespace zivks::xxh64
