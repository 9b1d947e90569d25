// Precompiled for the tests. No source includes this file.
#pragma once

#include <gtest/gtest.h>
