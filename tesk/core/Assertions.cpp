// The assertion handler: counts, and lets execution go on.

#include "tesk/core/Accounts.h"
#include "vexcore/include/VEXAssert"

#include <cstdlib>
#include <cstring>
#include <new>

namespace tesk {
namespace {

constinit TeskAssertionCount *counts = nullptr;
constinit std::int64_t hits = 0;

TeskAssertionCount *FindOrAdd(const char *expression, const char *file, int line)
{
    for (TeskAssertionCount *count = counts; count; count = count->next) {
        if (count->line == line && std::strcmp(count->file, file) == 0 &&
            std::strcmp(count->expression, expression) == 0)
            return count;
    }
    void *const memory = std::malloc(sizeof(TeskAssertionCount));
    if (!memory)
        return nullptr;
    counts = new (memory) TeskAssertionCount{counts, expression, file, line, 0};
    return counts;
}

} // namespace

std::int64_t AssertionHits()
{
    return hits;
}

void ForgetAssertions()
{
    while (TeskAssertionCount *const count = counts) {
        counts = count->next;
        std::free(count);
    }
    hits = 0;
}

} // namespace tesk

VEXAssertResult VEXAssertHelper::Handle(const char *expression, const char *file, int line)
{
    ++tesk::hits;
    if (TeskAssertionCount *const count = tesk::FindOrAdd(expression, file, line))
        ++count->hits;
    return VEXAssertContinue;
}

const TeskAssertionCount *TeskAssertionCounts(void)
{
    return tesk::counts;
}
