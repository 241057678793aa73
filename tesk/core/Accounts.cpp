#include "tesk/core/Accounts.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace tesk {
namespace {

constinit TeskAccount *classes = nullptr;
constinit TeskAccount *tags = nullptr;
constinit std::int64_t liveBytes = 0;
constinit std::int64_t peakLiveBytes = 0;

constinit int failingKinds = 0;
constinit std::int64_t allocationsUntilFailure = 0;

/// Stands in front of every allocation.
struct alignas(std::max_align_t) Block {
    TeskAccount *account;
    std::size_t bytes;
};

TeskAccount *FindOrOpen(TeskAccount *&list, const char *name)
{
    for (TeskAccount *account = list; account; account = account->next) {
        if (std::strcmp(account->name, name) == 0)
            return account;
    }
    const std::size_t nameSize = std::strlen(name) + 1;
    char *const memory = static_cast<char *>(std::malloc(sizeof(TeskAccount) + nameSize));
    if (!memory)
        return nullptr;
    char *const ownName = memory + sizeof(TeskAccount);
    std::memcpy(ownName, name, nameSize);
    list = new (memory) TeskAccount{.next = list, .name = ownName};
    return list;
}

/// Counts down to the allocation that was ordered to fail; true for that one.
bool FailsOnPurpose(TeskAllocationKind kind)
{
    return (failingKinds & kind) && allocationsUntilFailure > 0 && --allocationsUntilFailure == 0;
}

} // namespace

TeskAccount *ClassAccount(const char *name)
{
    return FindOrOpen(classes, name);
}

TeskAccount *TagAccount(const char *tag)
{
    return FindOrOpen(tags, tag);
}

void *Allocate(TeskAllocationKind kind, TeskAccount *account, std::size_t bytes)
{
    if (FailsOnPurpose(kind) || !account || bytes > PTRDIFF_MAX - sizeof(Block))
        return nullptr;
    void *const memory = std::malloc(sizeof(Block) + bytes);
    if (!memory)
        return nullptr;
    ++account->allocations;
    account->bytes += static_cast<std::int64_t>(bytes);
    account->peakAllocations = std::max(account->peakAllocations, account->allocations);
    account->peakBytes = std::max(account->peakBytes, account->bytes);
    liveBytes += static_cast<std::int64_t>(bytes);
    peakLiveBytes = std::max(peakLiveBytes, liveBytes);
    Block *const block = new (memory) Block{account, bytes};
    return block + 1;
}

void Free(void *memory)
{
    Block *const block = static_cast<Block *>(memory) - 1;
    const auto bytes = static_cast<std::int64_t>(block->bytes);
    --block->account->allocations;
    block->account->bytes -= bytes;
    liveBytes -= bytes;
    std::free(block);
}

TeskTotals AccountTotals()
{
    TeskTotals totals = {};
    for (const TeskAccount *list : {classes, tags}) {
        for (const TeskAccount *account = list; account; account = account->next) {
            totals.liveObjects += account->liveObjects;
            totals.allocations += account->allocations;
        }
    }
    totals.bytes = liveBytes;
    totals.peakBytes = peakLiveBytes;
    return totals;
}

void ResetPeaks()
{
    for (TeskAccount *list : {classes, tags}) {
        for (TeskAccount *account = list; account; account = account->next) {
            account->peakAllocations = account->allocations;
            account->peakBytes = account->bytes;
        }
    }
    peakLiveBytes = liveBytes;
}

} // namespace tesk

const TeskAccount *TeskClassAccounts(void)
{
    return tesk::classes;
}

const TeskAccount *TeskTagAccounts(void)
{
    return tesk::tags;
}

void TeskFailAllocation(int kinds, std::int64_t n)
{
    tesk::failingKinds = kinds;
    tesk::allocationsUntilFailure = n;
}

bool TeskFailureIsPending(void)
{
    return tesk::allocationsUntilFailure > 0;
}
