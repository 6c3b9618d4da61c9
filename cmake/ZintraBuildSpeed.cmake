# What keeps a build cheap without changing what it builds:
# - ccache as the compiler launcher when it is installed (ZINTRA_CCACHE; a launcher given
#   on the command line or in the environment wins; CCACHE_DISABLE=1 turns it off);
# - lld (or gold) as the linker where the compiler accepts it: GNU ld spends seconds on
#   each test program's debug sections, lld a fraction of that. The Windows cross-build
#   keeps mingw-w64's own linker (its .def exports and resources are tested with it).
include(CheckLinkerFlag)

option(ZINTRA_CCACHE "Compile through ccache when it is installed" ON)
if(ZINTRA_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER AND NOT DEFINED ENV{CMAKE_CXX_COMPILER_LAUNCHER})
  find_program(ZINTRA_CCACHE_PROGRAM ccache)
  if(ZINTRA_CCACHE_PROGRAM)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${ZINTRA_CCACHE_PROGRAM})
  endif()
endif()

if(WIN32)
  return()
endif()
set(ZINTRA_LINKER "auto" CACHE STRING "Linker for -fuse-ld (auto: lld, else gold, else the default)")
if(ZINTRA_LINKER STREQUAL "auto")
  set(zintra_linker_candidates lld gold)
elseif(ZINTRA_LINKER STREQUAL "default")
  set(zintra_linker_candidates)
else()
  set(zintra_linker_candidates ${ZINTRA_LINKER})
endif()
foreach(linker IN LISTS zintra_linker_candidates)
  check_linker_flag(CXX -fuse-ld=${linker} ZINTRA_HAS_LD_${linker})
  if(ZINTRA_HAS_LD_${linker})
    add_link_options(-fuse-ld=${linker})
    break()
  endif()
endforeach()
