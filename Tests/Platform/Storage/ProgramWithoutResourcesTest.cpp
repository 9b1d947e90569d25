#include <gtest/gtest.h>

#include "Platform/Storage/BResources.h"

// This program carries none; after a failure what was there before is gone too.
TEST(BResourcesTest, AProgramWithoutResourcesHasNone) {
    BResources resources;
    ASSERT_EQ(resources.SetTo(ORVEK_TEST_DATA_DIR "/sample.rsrc"), B_OK);
    EXPECT_EQ(resources.SetToProgram(), B_IO_ERROR);
    EXPECT_EQ(resources.CountResources(), 0);
}
