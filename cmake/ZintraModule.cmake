# Libraries compile as unity builds of up to ZINTRA_UNITY_BATCH files each: the files of
# a folder share most of their headers, which one translation unit then parses once.
# So a file-local name (a constant or helper in an anonymous namespace) must not be
# declared differently by two files of one folder: name it for its file ("kJobProcessModule").
option(ZINTRA_UNITY_LIBS "Compile libraries as unity builds" ON)
set(ZINTRA_UNITY_BATCH 8 CACHE STRING "Files per translation unit of a library's unity build")

# zintra_unity_library(TARGET): TARGET compiles as the libraries do.
function(zintra_unity_library target)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ${ZINTRA_UNITY_LIBS}
    UNITY_BUILD_BATCH_SIZE ${ZINTRA_UNITY_BATCH})
  # GCC takes a file included into a unity source for a header, and a class of the file
  # with a member of a type from the file's anonymous namespace for an ODR hazard.
  if(ZINTRA_UNITY_LIBS AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(${target} PRIVATE -Wno-subobject-linkage)
  endif()
endfunction()

# zintra_module(NAME DEPS...): a static library of every .cc in the calling folder,
# compiled with the project's warnings-as-errors set. Its users see the repository root
# and the headers CMake makes (src/core/version.h).
function(zintra_warnings target)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /WX)
  else()
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Werror
      -Wshadow -Wnon-virtual-dtor -Wcast-align -Woverloaded-virtual -Wimplicit-fallthrough)
  endif()
endfunction()

function(zintra_module name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cc)
  if(sources)
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR} ${ZINTRA_GENERATED_DIR})
    target_link_libraries(${name} PUBLIC ${ARGN})
    zintra_warnings(${name})
    zintra_unity_library(${name})
  else()
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE ${PROJECT_SOURCE_DIR} ${ZINTRA_GENERATED_DIR})
    target_link_libraries(${name} INTERFACE ${ARGN})
  endif()
endfunction()

# Test programs compile as unity builds: a folder's test files share one fixture header
# and GoogleTest/GoogleMock, which one translation unit then parses and instantiates once
# instead of once per file. A file whose file-local names clash with a sibling's is left
# out with SKIP_UNITY_BUILD_INCLUSION in its folder's CMakeLists.txt.
option(ZINTRA_UNITY_TESTS "Compile each test program as a unity build" ON)

# Test programs compile with ZINTRA_TEST_OPT in the optimising configurations: three
# quarters of an -O2 test unit's time goes to optimising and emitting the expansions of
# GoogleTest's macros, which no test needs; the libraries under test keep the
# configuration's level (-O2, or -O3 in Release). Empty: the configuration's level for the
# tests too.
set(ZINTRA_TEST_OPT "-Og" CACHE STRING "Optimisation flag of the test programs in Release and RelWithDebInfo")

# Every test program fails a test in which the system's handlers caught a programming
# error (tests/support/programming_error_guard.cc).
set(ZINTRA_TEST_GUARD ${PROJECT_SOURCE_DIR}/tests/support/programming_error_guard.cc)

# zintra_test(NAME DEPS...): one GoogleTest program of every .cc in the calling folder.
function(zintra_test name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cc)
  add_executable(${name} ${sources} ${ZINTRA_TEST_GUARD})
  set_target_properties(${name} PROPERTIES UNITY_BUILD ${ZINTRA_UNITY_TESTS}
    UNITY_BUILD_BATCH_SIZE 0)
  target_link_libraries(${name} PRIVATE ${ARGN} zintra_errors GTest::gmock GTest::gtest_main)
  zintra_warnings(${name})
  if(ZINTRA_TEST_OPT)
    target_compile_options(${name} PRIVATE $<$<CONFIG:Release,RelWithDebInfo>:${ZINTRA_TEST_OPT}>)
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST)
endfunction()

# zintra_wine_test(NAME DEPS...): a GoogleTest program for Windows of every .cc in the
# calling folder; tools/test-windows.sh runs it under Wine.
function(zintra_wine_test name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cc)
  add_executable(${name} ${sources} ${ZINTRA_TEST_GUARD})
  set_target_properties(${name} PROPERTIES UNITY_BUILD ${ZINTRA_UNITY_TESTS}
    UNITY_BUILD_BATCH_SIZE 0)
  target_link_libraries(${name} PRIVATE ${ARGN} zintra_errors gmock gtest_main)
  zintra_warnings(${name})
  if(ZINTRA_TEST_OPT)
    target_compile_options(${name} PRIVATE $<$<CONFIG:Release,RelWithDebInfo>:${ZINTRA_TEST_OPT}>)
  endif()
endfunction()
