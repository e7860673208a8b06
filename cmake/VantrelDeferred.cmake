include_guard(GLOBAL)
include(GNUInstallDirs)

# vantrel_defer_libraries(program LAYERS layer… [LIBRARIES target…])
#
# The program starts without these shared libraries of C functions, which bring a hundred others with
# them: the first call of one of their functions loads them all. Each function that the layers call
# gets a stand-in in the program (src/app/deferred_functions.cpp); a module that needs all of the
# libraries, installed beside the program, is what is loaded, so that the system's tools see what the
# program depends on. Further programs name no libraries and share the module. Where there are no
# stand-ins for the processor, and under sanitizers, the program is linked as any other.
function(vantrel_defer_libraries program)
  cmake_parse_arguments(PARSE_ARGV 1 deferred "" "" "LAYERS;LIBRARIES")
  if(NOT CMAKE_SYSTEM_NAME STREQUAL "Linux" OR NOT CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$"
      OR NOT CMAKE_SIZEOF_VOID_P EQUAL 8 OR VANTREL_SANITIZE)
    return()
  endif()

  file(RELATIVE_PATH place "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}/vantrel")
  if(NOT TARGET vantrel_codecs)
    file(CONFIGURE OUTPUT no_code.cpp CONTENT "")
    add_library(vantrel_codecs MODULE "${CMAKE_CURRENT_BINARY_DIR}/no_code.cpp")
    target_link_libraries(vantrel_codecs PRIVATE "-Wl,--no-as-needed" ${deferred_LIBRARIES})
    set_target_properties(vantrel_codecs PROPERTIES PREFIX "" OUTPUT_NAME vantrel-codecs
      LIBRARY_OUTPUT_DIRECTORY "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${place}")
    set(files "")
    foreach(library IN LISTS deferred_LIBRARIES)
      get_target_property(type ${library} TYPE)
      if(type STREQUAL "INTERFACE_LIBRARY")
        get_target_property(linked ${library} INTERFACE_LINK_LIBRARIES)
        list(APPEND files ${linked})
      else()
        list(APPEND files "$<TARGET_FILE:${library}>")
      endif()
    endforeach()
    set_target_properties(vantrel_codecs PROPERTIES VANTREL_FILES "${files}")
    install(TARGETS vantrel_codecs LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/vantrel")
  endif()

  get_target_property(files vantrel_codecs VANTREL_FILES)
  list(TRANSFORM deferred_LAYERS REPLACE "(.+)" "$<TARGET_FILE:vantrel_\\1>" OUTPUT_VARIABLE callers)
  set(list "${CMAKE_CURRENT_BINARY_DIR}/deferred_functions.inc")
  add_custom_command(OUTPUT "${list}"
    COMMAND "${CMAKE_COMMAND}" "-DNM=${CMAKE_NM}" "-DCALLERS=${callers}"
      "-DLIBRARIES=${files}" "-DOUTPUT=${list}"
      -P "${PROJECT_SOURCE_DIR}/cmake/list_deferred_functions.cmake"
    DEPENDS ${callers} "${PROJECT_SOURCE_DIR}/cmake/list_deferred_functions.cmake"
    COMMENT "Listing the functions of deferred libraries" VERBATIM)
  target_sources(${program} PRIVATE
    "${PROJECT_SOURCE_DIR}/src/app/deferred_functions.cpp" "${list}")
  target_include_directories(${program} PRIVATE
    "${PROJECT_SOURCE_DIR}/src" "${CMAKE_CURRENT_BINARY_DIR}")
  target_compile_definitions(${program} PRIVATE VANTREL_DEFERS_LIBRARIES)
  # What the stand-ins define, nobody needs the libraries for.
  target_link_options(${program} PRIVATE "-Wl,--as-needed")
  set_target_properties(${program} PROPERTIES
    BUILD_RPATH "\$ORIGIN/${place}" INSTALL_RPATH "\$ORIGIN/${place}")
  add_dependencies(${program} vantrel_codecs)
endfunction()
