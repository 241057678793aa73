#include "tesk/TeskReport.h"

#include "tesk/core/Accounts.h"

#include <sstream>

namespace {

void WriteMemory(std::ostream &out, const TeskAccount &account)
{
    out << account.bytes << " bytes in " << account.allocations << " allocations (peak "
        << account.peakBytes << " bytes, " << account.peakAllocations << " allocations)";
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

std::string TeskReportText()
{
    std::ostringstream out;
    for (const TeskAccount *account = TeskClassAccounts(); account; account = account->next) {
        out << "class " << account->name << ": " << account->liveObjects << " live objects, ";
        WriteMemory(out, *account);
        out << '\n';
    }
    for (const TeskAccount *account = TeskTagAccounts(); account; account = account->next) {
        out << "tag " << account->name << ": ";
        WriteMemory(out, *account);
        out << ", " << account->file << ':' << account->line << '\n';
    }
    for (const TeskAssertionCount *count = TeskAssertionCounts(); count; count = count->next) {
        out << "assertion \"" << count->expression << "\" failed " << count->hits << " times, "
            << count->file << ':' << count->line << '\n';
    }
    const TeskTotals totals = TeskReportTotals();
    out << "total: " << totals.liveObjects << " live objects, " << totals.bytes << " bytes in "
        << totals.allocations << " allocations (peak " << totals.peakBytes << " bytes), "
        << totals.assertionHits << " assertion hits\n";
    return out.str();
}
