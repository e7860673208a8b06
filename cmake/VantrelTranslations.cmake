include_guard(GLOBAL)

# The catalogue of all texts lies in src/resources/translations: vantrel.ts, without a translation, for
# those who begin a new language as vantrel_<language>.ts beside it. The target `translations` brings
# all of them up to date with the sources. A catalogue of a language is compiled and installed where
# the tool for that is there; without any, the program speaks as it is written.
find_program(VANTREL_LUPDATE NAMES lupdate HINTS /usr/lib/qt6/bin /usr/lib64/qt6/bin)
find_program(VANTREL_LRELEASE NAMES lrelease HINTS /usr/lib/qt6/bin /usr/lib64/qt6/bin)
set(VANTREL_TRANSLATIONS "${PROJECT_SOURCE_DIR}/src/resources/translations")
set(VANTREL_LUPDATE_OPTIONS -silent -no-obsolete -locations none -source-language en_US)

# vantrel_add_translations(): puts the catalogues where the program looks for them, in the build tree
# as where it is installed.
function(vantrel_add_translations)
  file(GLOB sources CONFIGURE_DEPENDS "${VANTREL_TRANSLATIONS}/*.ts")
  if(VANTREL_LUPDATE)
    # Anew, so that its texts are in the order of the sources.
    add_custom_target(translations VERBATIM
      COMMAND "${CMAKE_COMMAND}" -E rm -f "${VANTREL_TRANSLATIONS}/vantrel.ts"
      COMMAND "${VANTREL_LUPDATE}" ${VANTREL_LUPDATE_OPTIONS} "${PROJECT_SOURCE_DIR}/src"
        -ts ${sources})
  endif()
  list(REMOVE_ITEM sources "${VANTREL_TRANSLATIONS}/vantrel.ts")
  if(NOT VANTREL_LRELEASE OR NOT sources)
    return()
  endif()
  cmake_path(GET CMAKE_RUNTIME_OUTPUT_DIRECTORY PARENT_PATH prefix)
  set(folder "${prefix}/share/vantrel/translations")
  foreach(source IN LISTS sources)
    cmake_path(GET source STEM name)
    add_custom_command(OUTPUT "${folder}/${name}.qm" DEPENDS "${source}" VERBATIM
      COMMAND "${VANTREL_LRELEASE}" -silent "${source}" -qm "${folder}/${name}.qm")
    list(APPEND catalogues "${folder}/${name}.qm")
  endforeach()
  add_custom_target(catalogues ALL DEPENDS ${catalogues})
  install(FILES ${catalogues} DESTINATION "${CMAKE_INSTALL_DATADIR}/vantrel/translations")
endfunction()
