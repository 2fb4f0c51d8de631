# How every target of this project is built: one standard, one set of warnings, one way to make a
# room (library), a test and a benchmark.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

set(ORVEL_SANITIZE "" CACHE STRING "Sanitizers for every target, e.g. address,undefined or thread")

find_package(Threads REQUIRED)

add_library(orvel_options INTERFACE)
target_compile_options(orvel_options INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wno-sign-conversion
  -Wnon-virtual-dtor -Wold-style-cast -Wcast-qual
  # The same numbers on every machine: no multiply and add is fused behind our back.
  -ffp-contract=off
  # Nobody reads the flags of floating-point exceptions: loops that compare may be vectorised.
  -fno-trapping-math)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Unique symbols would keep a host from ever unloading the plug-in. (clang's -Wdouble-promotion
  # also warns of double{x}, which is how we write a promotion that is meant.)
  target_compile_options(orvel_options INTERFACE -fno-gnu-unique -Wdouble-promotion)
endif()
if(ORVEL_SANITIZE)
  target_compile_options(orvel_options INTERFACE
    -fsanitize=${ORVEL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(orvel_options INTERFACE -fsanitize=${ORVEL_SANITIZE})
endif()
if(ORVEL_FUZZ)
  target_compile_options(orvel_options INTERFACE
    -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all)
  target_link_options(orvel_options INTERFACE -fsanitize=address,undefined)
endif()

# orvel_room(NAME SOURCES ... LINKS ... PRIVATE_LINKS ...)
# One floor or room of the house: a static library whose public headers live in include/NAME/.
function(orvel_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  add_library(${name} STATIC ${ROOM_SOURCES})
  target_include_directories(${name} PUBLIC include PRIVATE src)
  target_link_libraries(${name} PUBLIC ${ROOM_LINKS} Threads::Threads
                                PRIVATE orvel_options ${ROOM_PRIVATE_LINKS})
endfunction()

# All tests about threads: what the thread sanitizer must build.
add_custom_target(threaded_tests)

# orvel_test(NAME SOURCES ... LINKS ... [LABELS ...] [THREADED])
# A GoogleTest program; every case is known to CTest by itself. Its settings and folders are
# private to the run (see tests/support/TestMain.cpp). THREADED: some of its cases are about threads.
# The label `tsan` has the thread sanitizer run all of them; without it, those whose name says so.
function(orvel_test name)
  cmake_parse_arguments(TEST "THREADED" "" "SOURCES;LINKS;LABELS" ${ARGN})
  add_executable(${name} ${TEST_SOURCES})
  target_link_libraries(${name} PRIVATE orvel_options orvel_test_main ${TEST_LINKS})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests/bin")
  if(TEST_THREADED)
    add_dependencies(threaded_tests ${name})
  endif()
  gtest_discover_tests(${name}
    DISCOVERY_MODE PRE_TEST
    TEST_PREFIX "${name}."
    PROPERTIES TIMEOUT 300 LABELS "${TEST_LABELS}")
endfunction()

# orvel_plugin_module(NAME SUFFIX FOLDER SOURCES ... LINKS ...)
# A module that hosts load, OrvelScope + SUFFIX in FOLDER: the adapter it links, and the plug-in. Only
# the names in the caller's src/exports.map are seen from outside, so that several of them, and other
# versions, live in one process.
function(orvel_plugin_module name suffix folder)
  cmake_parse_arguments(MODULE "" "" "SOURCES;LINKS" ${ARGN})
  set(exports "${CMAKE_CURRENT_SOURCE_DIR}/src/exports.map")
  add_library(${name} MODULE ${MODULE_SOURCES})
  target_link_libraries(${name} PRIVATE orvel_options ${MODULE_LINKS} plugin)
  target_link_options(${name} PRIVATE
    -Wl,-Bsymbolic -Wl,-z,now -Wl,--version-script=${exports})
  if(NOT ORVEL_SANITIZE)
    # A sanitizer's own functions come with the program that loads the module.
    target_link_options(${name} PRIVATE -Wl,--no-undefined)
  endif()
  set_target_properties(${name} PROPERTIES
    OUTPUT_NAME OrvelScope
    PREFIX ""
    SUFFIX ${suffix}
    LINK_DEPENDS "${exports}"
    LIBRARY_OUTPUT_DIRECTORY "${folder}")
endfunction()

# orvel_bench(NAME SOURCES ... LINKS ...)
# A Google Benchmark program. Never run as a test: its figures are for people.
function(orvel_bench name)
  cmake_parse_arguments(BENCH "" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name} ${BENCH_SOURCES})
  target_link_libraries(${name} PRIVATE orvel_options benchmark::benchmark_main ${BENCH_LINKS})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bench")
endfunction()
