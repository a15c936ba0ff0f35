#include "document/background_disposal.h"

#include <gtest/gtest.h>
#include <memory>
#include <pthread.h>

namespace velkor {
namespace {

TEST(BackgroundDisposalTest, WithoutAThreadToBeHadTheCallerDisposes) {
  pthread_attr_t before{};
  ASSERT_EQ(pthread_getattr_default_np(&before), 0);
  pthread_attr_t huge = before;
  ASSERT_EQ(pthread_attr_setstacksize(&huge, size_t{1} << 50), 0);  // no address space has it
  ASSERT_EQ(pthread_setattr_default_np(&huge), 0);
  {
    BackgroundDisposal disposal;
    auto thing = std::make_shared<int>(1);
    const std::weak_ptr<int> seen = thing;
    disposal.Dispose({std::move(thing)});
    EXPECT_TRUE(seen.expired());
  }
  ASSERT_EQ(pthread_setattr_default_np(&before), 0);
}

}  // namespace
}  // namespace velkor
