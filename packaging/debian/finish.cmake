# Run by cpack between installing into its staging folders and packing them: what Debian wants in its
# packages and `cmake --install` elsewhere does not: compressed pages, a changelog and a copyright file
# in each package.
find_program(gzip gzip REQUIRED)
function(compress)
  # -n: no time stamp, so that equal sources give equal packages
  execute_process(COMMAND ${gzip} -9n ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(debian ${CMAKE_CURRENT_LIST_DIR})
set(staging ${CPACK_TEMPORARY_DIRECTORY})
file(GLOB pages ${staging}/*${CPACK_INSTALL_PREFIX}/share/man/man*/*.[1-8])
if(NOT pages)
  message(FATAL_ERROR "no pages in ${staging}")
endif()
compress(${pages})
foreach(component package IN ZIP_LISTS CPACK_COMPONENTS_ALL CPACK_KOBD_DEBIAN_PACKAGES)
  set(doc ${staging}/${component}${CPACK_INSTALL_PREFIX}/share/doc/${package})
  file(COPY ${debian}/copyright DESTINATION ${doc})
  set(PROJECT_VERSION ${CPACK_PACKAGE_VERSION})
  configure_file(${debian}/changelog.in ${doc}/changelog @ONLY)
  compress(${doc}/changelog)
endforeach()
set(overrides ${staging}/runtime${CPACK_INSTALL_PREFIX}/share/lintian/overrides)
configure_file(${debian}/lintian-overrides ${overrides}/kobd COPYONLY)
