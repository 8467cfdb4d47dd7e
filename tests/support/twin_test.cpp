#include "support/zt.h"

// Backend comparisons are only as good as the twin they load.
TEST(GenericTwin, LoadsWhereTheNativeBackendIsNotGeneric) {
  if (ZT_TWIN_PATH[0] == '\0') GTEST_SKIP() << "this build is the generic backend";
  ASSERT_NE(zt::twin_library(), nullptr) << dlerror();
  EXPECT_NE(ZT_TWIN(ZIVKS_Add_32f), nullptr);
  EXPECT_NE(reinterpret_cast<void*>(ZT_TWIN(ZIVKS_Add_32f)), reinterpret_cast<void*>(&ZIVKS_Add_32f));
}
