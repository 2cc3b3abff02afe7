set(mingw_processor i686)
set(mingw_library_flags -Wl,--enable-stdcall-fixup)
# A 64-bit Wine alone cannot start these programs: scripts/test-x86 runs them.
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
