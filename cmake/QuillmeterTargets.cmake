# How every target of this project is made. Warnings and sanitizers live in interface targets that only our targets link.

add_library(quillmeter_options INTERFACE)
target_compile_features(quillmeter_options INTERFACE cxx_std_20)
target_include_directories(quillmeter_options INTERFACE "${PROJECT_SOURCE_DIR}/src" "${PROJECT_BINARY_DIR}/generated")
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
if(QUILLMETER_SANITIZE)
  target_compile_options(quillmeter_options INTERFACE "-fsanitize=${QUILLMETER_SANITIZE}" -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(quillmeter_options INTERFACE "-fsanitize=${QUILLMETER_SANITIZE}")
endif()

add_library(quillmeter_warnings INTERFACE)
target_compile_options(quillmeter_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wconversion
                       -Wold-style-cast -Woverloaded-virtual -Wcast-align -Wunused -Wnull-dereference -Wimplicit-fallthrough
                       -Wno-missing-field-initializers)  # a designated initializer leaves out what keeps its default
if(QUILLMETER_DEVELOPER)
  target_compile_options(quillmeter_warnings INTERFACE -Werror)
endif()
# GCC 12 sees overlapping copies in optimised std::string concatenations that cannot overlap (its bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(quillmeter_warnings INTERFACE -Wno-restrict)
  # At -O3 it follows null pointers into the standard library's stream buffers and paths, which guard against them.
  target_compile_options(quillmeter_warnings INTERFACE $<$<CONFIG:Release>:-Wno-null-dereference>)
endif()
# GCC's flow warnings misfire under sanitizers. Clang does not know the second of them, which -Werror makes fatal.
if(QUILLMETER_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(quillmeter_warnings INTERFACE -Wno-null-dereference -Wno-maybe-uninitialized)
endif()

# quillmeter_library(NAME SOURCES ... PUBLIC libs... PRIVATE libs...): one static library per folder, called quillmeter_NAME.
# Headers of third parties stay behind PRIVATE, so that a target without Qt has no Qt on its include path.
function(quillmeter_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  add_library(quillmeter_${name} STATIC ${ARG_SOURCES})
  target_link_libraries(quillmeter_${name} PUBLIC quillmeter_options ${ARG_PUBLIC} PRIVATE quillmeter_warnings ${ARG_PRIVATE})
endfunction()

# quillmeter_interface(NAME PUBLIC libs...): a folder of headers only.
function(quillmeter_interface name)
  cmake_parse_arguments(ARG "" "" "PUBLIC" ${ARGN})
  add_library(quillmeter_${name} INTERFACE)
  target_link_libraries(quillmeter_${name} INTERFACE quillmeter_options ${ARG_PUBLIC})
endfunction()

# quillmeter_test(NAME SOURCES ... LIBS ...): a GoogleTest program NAME_test; each of its tests is one ctest test.
# Tests find fixtures below QUILLMETER_TEST_DATA (tests/data) and get a private, empty directory by support/TemporaryDirectory.h.
function(quillmeter_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name}_test ${ARG_SOURCES})
  target_include_directories(${name}_test PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_compile_definitions(${name}_test PRIVATE QUILLMETER_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
  target_link_libraries(${name}_test PRIVATE quillmeter_options quillmeter_warnings ${ARG_LIBS} GTest::gmock GTest::gtest_main)
  # The libraries under test are built as they ship; optimising the tests themselves would double the time of a full build.
  target_compile_options(${name}_test PRIVATE -O0)
  gtest_discover_tests(${name}_test TEST_PREFIX "${name}." PROPERTIES TIMEOUT 120 DISCOVERY_TIMEOUT 60)
endfunction()

# quillmeter_widget_test(NAME SOURCES ... LIBS ...): a test program of widgets, NAME_test, with a QApplication that has neither
# display nor bus, and demo/FakeServices.h at hand.
function(quillmeter_widget_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  quillmeter_test(${name}
    SOURCES ${ARG_SOURCES} "${PROJECT_SOURCE_DIR}/tests/ui/support/WidgetTestMain.cpp"
    LIBS ${ARG_LIBS} quillmeter_demo Qt6::Widgets Qt6::Test)
endfunction()

# quillmeter_fuzz(NAME SOURCE LIBS ...): an executable NAME_fuzz. With QUILLMETER_FUZZ it fuzzes; otherwise ctest replays fuzz/corpus/NAME.
function(quillmeter_fuzz name source)
  cmake_parse_arguments(ARG "" "" "LIBS" ${ARGN})
  if(QUILLMETER_FUZZ)
    add_executable(${name}_fuzz ${source})
    target_compile_options(${name}_fuzz PRIVATE -fsanitize=fuzzer)
    target_link_options(${name}_fuzz PRIVATE -fsanitize=fuzzer)
  else()
    add_executable(${name}_fuzz ${source} "${PROJECT_SOURCE_DIR}/fuzz/ReplayMain.cpp")
    add_test(NAME fuzz.${name} COMMAND ${name}_fuzz "${PROJECT_SOURCE_DIR}/fuzz/corpus/${name}")
    set_tests_properties(fuzz.${name} PROPERTIES TIMEOUT 120)
  endif()
  target_link_libraries(${name}_fuzz PRIVATE quillmeter_options quillmeter_warnings ${ARG_LIBS})
endfunction()
