# Cross build with mingw-w64 for `mingw_processor`, with `mingw_library_flags` where it links DLLs; the
# posix variants, because GoogleTest needs std::mutex.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${mingw_processor})
set(CMAKE_C_COMPILER ${mingw_processor}-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER ${mingw_processor}-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER ${mingw_processor}-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${mingw_processor}-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
# No runtime DLL beside the product.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static ${mingw_library_flags}")
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/wine)
