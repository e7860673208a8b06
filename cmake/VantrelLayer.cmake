include_guard(GLOBAL)

add_library(vantrel_flags INTERFACE)
target_compile_options(vantrel_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
  -Woverloaded-virtual -Wcast-qual -Wdeprecated-copy-dtor -Werror)
target_compile_definitions(vantrel_flags INTERFACE QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII
  QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_DISABLE_DEPRECATED_BEFORE=0x060400)
# GCC 12 at -O3 takes growing a vector for writing past its end, and a text put before another for
# overlapping it.
target_compile_options(vantrel_flags INTERFACE
  $<$<CONFIG:Release>:-Wno-stringop-overflow> $<$<CONFIG:Release>:-Wno-restrict>)
if(VANTREL_SANITIZE)
  target_compile_options(vantrel_flags INTERFACE -fsanitize=address,undefined
    -fno-sanitize-recover=undefined -fno-omit-frame-pointer
    -Wno-maybe-uninitialized)  # false under the sanitizers' code
  target_link_options(vantrel_flags INTERFACE -fsanitize=address,undefined)
endif()

# vantrel_add_layer(name SOURCES … HEADERS … [DEPENDS …] [PRIVATE …])
#
# Makes the static library of one folder under src/, called vantrel_<name>. DEPENDS names what its
# headers need: other layers (without the prefix) and Qt targets. PRIVATE names third-party targets
# that only its sources include, so that their headers stay hidden from the layers above. Warnings
# are errors, and every header is compiled alone by the target all_verify_interface_header_sets.
function(vantrel_add_layer name)
  cmake_parse_arguments(PARSE_ARGV 1 layer "" "" "SOURCES;HEADERS;DEPENDS;PRIVATE")
  set(target vantrel_${name})
  add_library(${target} STATIC ${layer_SOURCES})
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}/src"
    FILES ${layer_HEADERS})
  set_target_properties(${target} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
  target_link_libraries(${target} PRIVATE vantrel_flags)
  foreach(dependency IN LISTS layer_DEPENDS)
    if(TARGET vantrel_${dependency})
      target_link_libraries(${target} PUBLIC vantrel_${dependency})
    else()
      target_link_libraries(${target} PUBLIC ${dependency})
    endif()
    if(dependency MATCHES "^Qt6::")
      set_target_properties(${target} PROPERTIES AUTOMOC ON)
    endif()
  endforeach()
  target_link_libraries(${target} PRIVATE ${layer_PRIVATE})
endfunction()

# vantrel_add_program(name SOURCES … DEPENDS …): an executable in build/bin.
function(vantrel_add_program name)
  cmake_parse_arguments(PARSE_ARGV 1 program "" "" "SOURCES;DEPENDS")
  add_executable(${name} ${program_SOURCES})
  target_link_libraries(${name} PRIVATE vantrel_flags ${program_DEPENDS})
endfunction()

# vantrel_add_test(name SOURCES … DEPENDS … [GUI] [LAUNCHER command…]): one test executable, run by
# CTest as one test, by the launcher if there is one. GUI tests get a QApplication, the others a
# QCoreApplication; either fails on a warning that no test announced.
function(vantrel_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 test "GUI" "" "SOURCES;DEPENDS;LAUNCHER")
  add_executable(${name} ${test_SOURCES})
  if(test_GUI)
    target_link_libraries(${name} PRIVATE vantrel_test_main_gui)
  else()
    target_link_libraries(${name} PRIVATE vantrel_test_main)
  endif()
  target_link_libraries(${name} PRIVATE vantrel_flags ${test_DEPENDS})
  # A call within EXPECT_THROW has no use for its result.
  target_compile_options(${name} PRIVATE -Wno-unused-result)
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_compile_definitions(${name} PRIVATE
    VANTREL_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
    VANTREL_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data"
    VANTREL_BIN_DIR="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
  add_test(NAME ${name} COMMAND ${test_LAUNCHER} $<TARGET_FILE:${name}>)
  set_tests_properties(${name} PROPERTIES TIMEOUT 600)
  if(test_GUI)
    # One program at a time may have the keyboard focus.
    set_tests_properties(${name} PROPERTIES RESOURCE_LOCK display)
  endif()
endfunction()

# vantrel_repeat_test(name suffix ENVIRONMENT variable=value… [ARGUMENTS …]): runs the GUI test once
# more, elsewhere or in part.
function(vantrel_repeat_test name suffix)
  cmake_parse_arguments(PARSE_ARGV 2 test "" "" "ENVIRONMENT;ARGUMENTS")
  add_test(NAME ${name}_${suffix} COMMAND ${name} ${test_ARGUMENTS})
  set_tests_properties(${name}_${suffix} PROPERTIES
    ENVIRONMENT "${test_ENVIRONMENT}" RESOURCE_LOCK display TIMEOUT 600)
endfunction()
