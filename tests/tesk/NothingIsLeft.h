#pragma once

#include "tesk/TeskReport.h"

#include <gtest/gtest.h>

/// No object lives, no memory is accounted for, no assertion has failed since the last reset.
inline void ExpectNothingIsLeft()
{
    const TeskTotals totals = TeskReportTotals();
    EXPECT_EQ(totals.liveObjects, 0) << TeskReportText();
    EXPECT_EQ(totals.allocations, 0) << TeskReportText();
    EXPECT_EQ(totals.bytes, 0);
    EXPECT_EQ(totals.assertionHits, 0) << TeskReportText();
    EXPECT_FALSE(TeskFailureIsPending());
}
