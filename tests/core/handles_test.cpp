// The handles module: byte counts that stop at the int32 range, the data-type table,
// allocation through the exported allocator and release through ZIVKS_Free, seen
// through the recording core services.
#include "core/handles.h"

#include <string.h>

#include <type_traits>

#include "support/zt.h"

namespace {

using namespace zivks::handles;

TEST(Handles, ByteCountsStopAtTheInt32Range) {
  // Scratch copies of 4- and 8-byte keys: the last lengths that fit, and one more.
  EXPECT_EQ(times(0x1FFFFFFF, 4), 0x7FFFFFFC);
  EXPECT_EQ(times(0x20000000, 4), kNoSize);
  EXPECT_EQ(times(0x0FFFFFFF, 8), 0x7FFFFFF8);
  EXPECT_EQ(times(0x10000000, 8), kNoSize);
  // Three and six words a key.
  EXPECT_EQ(times(0x0AAAAAAA, 12), 0x7FFFFFF8);
  EXPECT_EQ(times(0x0AAAAAAB, 12), kNoSize);
  EXPECT_EQ(times(0x05555555, 24), 0x7FFFFFF8);
  EXPECT_EQ(times(0x05555556, 24), kNoSize);
  EXPECT_EQ(times(INT32_MAX, 1), INT32_MAX);
  // kNoSize stays kNoSize through every step, also where the arithmetic would fit.
  EXPECT_EQ(times(kNoSize, 1), kNoSize);
  EXPECT_EQ(plus(kNoSize, 1024), kNoSize);
  EXPECT_EQ(plus(16, kNoSize), kNoSize);
  EXPECT_EQ(round_up(kNoSize, 16), kNoSize);

  EXPECT_EQ(plus(INT32_MAX - 1024, 1024), INT32_MAX);
  EXPECT_EQ(plus(INT32_MAX - 1023, 1024), kNoSize);
  // Rounding up to 16: exact multiples stay, the last multiple of 16 below the range is
  // the largest result.
  EXPECT_EQ(round_up(0x7FFFFFF0, 16), 0x7FFFFFF0);
  EXPECT_EQ(round_up(0x7FFFFFF1, 16), kNoSize);
  EXPECT_EQ(round_up(1, 16), 16);
  EXPECT_EQ(round_up(17, 16), 32);
  // The largest median windows of 1- and 8-byte elements just fit.
  EXPECT_EQ(round_up(times(2147483631, 1), 16), 0x7FFFFFF0);
  EXPECT_EQ(round_up(times(268435453, 8), 16), 0x7FFFFFF0);
}

TEST(Handles, DataTypeTable) {
  const int32_t sizes[][2] = {{ZIVK_DT_8U, 1},  {ZIVK_DT_16U, 2}, {ZIVK_DT_16S, 2},
                              {ZIVK_DT_32U, 4}, {ZIVK_DT_32S, 4}, {ZIVK_DT_32F, 4},
                              {ZIVK_DT_64U, 8}, {ZIVK_DT_64S, 8}, {ZIVK_DT_64F, 8}};
  int accepted = 0;
  for (int32_t dt = -40; dt < 70; ++dt) accepted += kAllDataTypes.has(dt);
  EXPECT_EQ(accepted, 9);
  for (const auto& s : sizes) {
    EXPECT_TRUE(kAllDataTypes.has(s[0])) << s[0];
    EXPECT_EQ(element_size(s[0]), s[1]) << s[0];
  }
  EXPECT_FALSE(kAllDataTypes.has(INT32_MIN));
  EXPECT_FALSE(kAllDataTypes.has(INT32_MAX));
  EXPECT_FALSE(kAllDataTypes.has(32 + ZIVK_DT_8U));  // no wrap of the bit index

  // Signedness and float-ness come through the dispatch, not only the size.
  EXPECT_TRUE(with_element_type(ZIVK_DT_16S, [](auto t) { return std::is_signed_v<typename decltype(t)::type>; }));
  EXPECT_FALSE(with_element_type(ZIVK_DT_64U, [](auto t) { return std::is_signed_v<typename decltype(t)::type>; }));
  EXPECT_TRUE(with_element_type(ZIVK_DT_32F, [](auto t) { return std::is_same_v<typename decltype(t)::type, float>; }));

  // A family's own subset.
  constexpr DataTypes median{ZIVK_DT_8U, ZIVK_DT_16S, ZIVK_DT_32S, ZIVK_DT_32F, ZIVK_DT_64F};
  EXPECT_TRUE(median.has(ZIVK_DT_16S));
  EXPECT_FALSE(median.has(ZIVK_DT_16U));
  EXPECT_FALSE(median.has(ZIVK_DT_64S));
}

TEST(Handles, ChecksGiveTheFirstFailureInOrder) {
  EXPECT_EQ(first_failure({}), ZIVK_STS_NO_ERR);
  EXPECT_EQ(first_failure({{false, ZIVK_STS_NULL_PTR_ERR}, {false, ZIVK_STS_SIZE_ERR}}), ZIVK_STS_NO_ERR);
  EXPECT_EQ(first_failure({{false, ZIVK_STS_NULL_PTR_ERR}, {true, ZIVK_STS_MASK_SIZE_ERR},
                           {true, ZIVK_STS_DATA_TYPE_ERR}}),
            ZIVK_STS_MASK_SIZE_ERR);
  EXPECT_EQ(first_failure({{false, ZIVK_STS_NULL_PTR_ERR}, {false, ZIVK_STS_MASK_SIZE_ERR},
                           {true, ZIVK_STS_DATA_TYPE_ERR}, {true, ZIVK_STS_MASK_SIZE_ERR}}),
            ZIVK_STS_DATA_TYPE_ERR);
}

TEST(Handles, AllocationAndRelease) {
  auto& r = zt::core_record();
  int marker = 0;
  void* const untouched = &marker;

  // A size that does not fit reaches no core service and leaves the out-pointer.
  r = {};
  void* h = untouched;
  EXPECT_EQ(allocate(times(0x20000000, 4), &h), ZIVK_STS_MALLOC_ERR);
  EXPECT_EQ(h, untouched);
  EXPECT_EQ(r.malloc_calls, 0);

  // A refusal of the core is the same status, with the exact size asked for.
  r = {};
  r.fail_next = true;
  EXPECT_EQ(allocate(round_up(plus(times(100, 16), 2048), 16), &h), ZIVK_STS_MALLOC_ERR);
  EXPECT_EQ(h, untouched);
  EXPECT_EQ(r.malloc_calls, 1);
  EXPECT_EQ(r.last_size, 100 * 16 + 2048);

  r = {};
  EXPECT_EQ(allocate(1024, &h), ZIVK_STS_NO_ERR);
  ASSERT_NE(h, untouched);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(r.last_size, 1024);
  memset(h, 0x5A, 1024);  // the whole block is usable
  EXPECT_EQ(release(h), ZIVK_STS_NO_ERR);
  EXPECT_EQ(r.free_calls, 1);

  // Release passes null on without a test of its own.
  r = {};
  EXPECT_EQ(release(nullptr), ZIVK_STS_NO_ERR);
  EXPECT_EQ(r.free_calls, 1);

  // Records come straight from the core, sized by their type.
  struct Record {
    double low, high;
    uint32_t seed;
  };
  Record* rec = nullptr;
  r = {};
  r.fail_next = true;
  EXPECT_EQ(allocate_record(&rec), ZIVK_STS_MALLOC_ERR);
  EXPECT_EQ(rec, nullptr);
  EXPECT_EQ(r.last_size, static_cast<int32_t>(sizeof(Record)));
  EXPECT_EQ(allocate_record(&rec), ZIVK_STS_NO_ERR);
  ASSERT_NE(rec, nullptr);
  release(rec);
  r = {};
}

TEST(Handles, WorkBufferIsFreedWhenTheCallEnds) {
  auto& r = zt::core_record();
  r = {};
  {
    WorkBuffer<int32_t> b(ZIVKS_Malloc_32s, 65536);
    ASSERT_TRUE(b.ok());
    EXPECT_EQ(r.last_size, 65536 * 4);
    b.get()[65535] = 7;
    EXPECT_EQ(r.free_calls, 0);
  }
  EXPECT_EQ(r.free_calls, 1);

  // A refused buffer is not freed.
  r = {};
  r.fail_next = true;
  {
    WorkBuffer<int32_t> b(ZIVKS_Malloc_32s, 16);
    EXPECT_FALSE(b.ok());
  }
  EXPECT_EQ(r.free_calls, 0);
  {
    WorkBuffer<int32_t> b(ZIVKS_Malloc_32s, 0);  // refused by the allocator itself
    EXPECT_FALSE(b.ok());
  }
  EXPECT_EQ(r.malloc_calls, 1);
  EXPECT_EQ(r.free_calls, 0);
  r = {};
}

}  // namespace
