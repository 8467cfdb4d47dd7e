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

// ---- tails
// Folds the last n[r] bytes at p[r] (each below 32) into h[r] for R rows at once: 8-byte
// words while 8 bytes remain, one 4-byte word if 4 remain, then single bytes. Every
// possible step is computed and kept only where its bytes exist, a missing one reading
// a zero word instead of the bytes past the row, so a row's length decides no branch;
// and the rows go step by step side by side, so their chains overlap in flight.
template <int R>
inline void tails(uint64_t (&h)[R], const uint8_t* const (&p)[R], const int64_t (&n)[R]) {
  static constexpr uint8_t kNothing[8] = {};
  // All ones where a step's bytes exist, zero where they do not.
  const auto present = [](bool b) { return 0 - static_cast<uint64_t>(b); };
  const auto at = [](const uint8_t* q, int64_t offset, uint64_t m) {
    const uintptr_t a = reinterpret_cast<uintptr_t>(q) + static_cast<uintptr_t>(offset);
    return reinterpret_cast<const uint8_t*>((a & m) | (reinterpret_cast<uintptr_t>(kNothing) & ~m));
  };
  const auto keep = [](uint64_t next, uint64_t old, uint64_t m) { return (next & m) | (old & ~m); };
  // Word steps that no row takes are left out: a column of short rows skips the last.
  int64_t words = 0;
  for (int r = 0; r < R; ++r) words = words > (n[r] >> 3) ? words : (n[r] >> 3);
  for (int64_t w = 0; w < words; ++w) {
    for (int r = 0; r < R; ++r) {
      const uint64_t m = present(w < (n[r] >> 3));
      h[r] = keep(rotl(h[r] ^ round(0, read64(at(p[r], 8 * w, m))), 27) * kPrime1 + kPrime4, h[r], m);
    }
  }
  for (int r = 0; r < R; ++r) {
    const uint64_t m = present((n[r] & 4) != 0);
    h[r] = keep(rotl(h[r] ^ (uint64_t{read32(at(p[r], n[r] & 24, m))} * kPrime1), 23) * kPrime2 + kPrime3, h[r], m);
  }
  for (int64_t k = 0; k < 3; ++k) {
    for (int r = 0; r < R; ++r) {
      const uint64_t m = present(k < (n[r] & 3));
      h[r] = keep(rotl(h[r] ^ (uint64_t{*at(p[r], (n[r] & 28) + k, m)} * kPrime5), 11) * kPrime1, h[r], m);
    }
  }
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
// XXH64 of the n bytes at p[r], seed 0, for R rows at once: stripes, the length, the
// tails side by side, the avalanche.
template <int R>
inline void hash_rows(const uint8_t* const (&p)[R], const int64_t (&n)[R], uint64_t (&out)[R]) {
  const uint8_t* rest[R];
  int64_t left[R];
  for (int r = 0; r < R; ++r) {
    out[r] = (n[r] >= kStripe ? stripes(p[r], n[r]) : kShortStart) + static_cast<uint64_t>(n[r]);
    const int64_t done = n[r] & ~int64_t{kStripe - 1};
    rest[r] = p[r] + done;
    left[r] = n[r] - done;
  }
  tails<R>(out, rest, left);
  for (int r = 0; r < R; ++r) out[r] = avalanche(out[r]);
}

// XXH64 of the n bytes at p, seed 0.
inline uint64_t hash(const uint8_t* p, int64_t n) {
  uint64_t h[1];
  hash_rows<1>({p}, {n}, h);
  return h[0];
}

// ---- hash_word
// XXH64 of the 8 little-endian bytes of x, seed 0.
inline uint64_t hash_word(uint64_t x) {
  const uint64_t h = (kShortStart + 8) ^ round(0, x);
  return avalanche(rotl(h, 27) * kPrime1 + kPrime4);
}

}  // namespace zivks::xxh64
