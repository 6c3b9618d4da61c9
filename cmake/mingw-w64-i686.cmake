# Cross-compiles for 32-bit Windows (32-bit Outlook) with Debian's mingw-w64 (posix thread
# model): the x86-64 toolchain's settings for the i686 compiler.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86)
set(ZINTRA_MINGW_PREFIX i686-w64-mingw32)
set(CMAKE_C_COMPILER ${ZINTRA_MINGW_PREFIX}-gcc-posix)
set(CMAKE_CXX_COMPILER ${ZINTRA_MINGW_PREFIX}-g++-posix)
set(CMAKE_RC_COMPILER ${ZINTRA_MINGW_PREFIX}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${ZINTRA_MINGW_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
# Only system DLLs may be imported: the C++ runtime and winpthread are linked in.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
# The .def file names the COM entry points undecorated, as COM and regsvr32 look them up;
# the linker binds those names to the stdcall functions (DllGetClassObject@12 and so on).
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static -Wl,--enable-stdcall-fixup")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static -Wl,--enable-stdcall-fixup")
# GCC 12 reports impossible overlaps inside std::string's inlined copies at -O2 and above.
set(CMAKE_CXX_FLAGS_INIT "-Wno-restrict")
