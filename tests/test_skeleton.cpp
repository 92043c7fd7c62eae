#include <gtest/gtest.h>
#include "Main.h"
TEST(Skeleton, RandomStaysInRange) { EXPECT_LE(random(1.0), 1.0); }
