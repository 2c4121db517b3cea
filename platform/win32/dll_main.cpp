// SPDX-License-Identifier: MIT
// The entry function of the DLL, which the static library has no need of.
#include <cstddef>
#include <windows.h>

#ifdef __GLIBCXX__
namespace __gnu_cxx {
void __freeres();  // its header declares nothing
}
#endif

// An application that unloads the DLL gets back what the compiler's run-time library has allocated when it
// was loaded: the memory in which exceptions are thrown when the heap is exhausted. At the end of the
// process, where other threads have been stopped in the midst of anything, the system frees it. Nothing
// else is run.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void *process_ends) {
#ifdef __GLIBCXX__
    if (reason == DLL_PROCESS_DETACH && process_ends == nullptr) __gnu_cxx::__freeres();
#endif
    return TRUE;
}
