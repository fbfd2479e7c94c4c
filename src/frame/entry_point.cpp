// The dynamic-library entry point. The library has nothing to set up or tear
// down: it reports success for every attach and detach reason. On ELF
// platforms there is no such entry point and nothing to do.
#if defined(_WIN32)
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) { return TRUE; }
#endif
