#include "tesk/TeskReport.h"

#include "tesk/core/Accounts.h"

#include <cinttypes>

namespace {

void PrintAccounts(std::FILE *stream, const char *kind, const TeskAccount *account)
{
    for (; account; account = account->next) {
        std::fprintf(stream, "%s %s:", kind, account->name);
        if (!account->file)
            std::fprintf(stream, " %" PRId64 " live objects,", account->liveObjects);
        std::fprintf(stream,
                     " %" PRId64 " bytes in %" PRId64 " allocations (peak %" PRId64
                     " bytes, %" PRId64 " allocations)",
                     account->bytes, account->allocations, account->peakBytes,
                     account->peakAllocations);
        if (account->file)
            std::fprintf(stream, ", %s:%" PRId32, account->file, account->line);
        std::fprintf(stream, "\n");
    }
}

} // namespace

TeskTotals TeskReportTotals(void)
{
    TeskTotals totals = tesk::AccountTotals();
    totals.assertionHits = tesk::AssertionHits();
    return totals;
}

void TeskResetReport(void)
{
    tesk::ResetPeaks();
    tesk::ForgetAssertions();
    TeskFailAllocation(0, 0);
}

void TeskPrintReport(std::FILE *stream)
{
    PrintAccounts(stream, "class", TeskClassAccounts());
    PrintAccounts(stream, "tag", TeskTagAccounts());
    for (const TeskAssertionCount *count = TeskAssertionCounts(); count; count = count->next)
        std::fprintf(stream, "assertion \"%s\" failed %" PRId64 " times, %s:%" PRId32 "\n",
                     count->expression, count->hits, count->file, count->line);
    const TeskTotals totals = TeskReportTotals();
    std::fprintf(stream,
                 "total: %" PRId64 " live objects, %" PRId64 " bytes in %" PRId64
                 " allocations (peak %" PRId64 " bytes), %" PRId64 " assertion hits\n",
                 totals.liveObjects, totals.bytes, totals.allocations, totals.peakBytes,
                 totals.assertionHits);
}
