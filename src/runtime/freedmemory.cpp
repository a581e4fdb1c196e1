#include "runtime/freedmemory.h"

#include <cstdlib>

#if defined(__GLIBC__)
#include <malloc.h>
#elif defined(_WIN32)
#include <malloc.h>
#include <windows.h>
#endif

namespace quorvale {

void returnFreedMemory()
{
#if defined(__GLIBC__)
    malloc_trim(0);
#elif defined(_WIN32)
    // The C runtime's free blocks back to the heap, and the pages no longer
    // touched out of the working set the task manager shows.
    _heapmin();
    SetProcessWorkingSetSize(GetCurrentProcess(), SIZE_T(-1), SIZE_T(-1));
#endif
}

} // namespace quorvale
