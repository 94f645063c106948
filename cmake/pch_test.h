#pragma once

#include "pch_qt.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "../tests/support/QtPrinters.h"
