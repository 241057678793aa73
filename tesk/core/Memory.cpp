// Memory of host objects and the tracking allocator.

#include "tesk/core/Accounts.h"
#include "teskexposure/include/TeskHost"
#include "vexcore/include/VEXMemory"

#include <new>

void *TeskInternalCreate(size_t size, const char *name)
{
    return tesk::Allocate(TeskObjectAllocation, tesk::ClassAccount(name), size);
}

void TeskInternalFreeObject(void *memory)
{
    tesk::Free(memory);
}

void *VEXMallocWithTracking(size_t bytes, const char *tag, const char *file, int line)
{
    TeskAccount *const account = tesk::TagAccount(tag);
    void *const memory = tesk::Allocate(TeskContainerAllocation, account, bytes);
    if (!memory)
        throw std::bad_alloc();
    account->file = file;
    account->line = line;
    return memory;
}

void VEXFreeWithTracking(void *memory)
{
    tesk::Free(memory);
}
