# What `cmake --install` and the Debian package put where. Included by the top folder's CMakeLists.
# Nothing installed knows an absolute folder of its own but the service files, so a tree can be moved.
include(CMakePackageConfigHelpers)
set(KOBD_PACKAGING ${CMAKE_SOURCE_DIR}/packaging)
set(KOBD_MADE ${CMAKE_BINARY_DIR}/packaging)
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME runtime)

# Programs find the libraries from where they stand, and the libraries each other. The build folder,
# where all lie side by side, has the same paths: one that an install replaces is filled up with colons,
# and nothing between two colons means the folder that the user happens to be in.
file(RELATIVE_PATH KOBD_LIBRARIES_FROM_PROGRAMS /p/${CMAKE_INSTALL_SBINDIR} /p/${CMAKE_INSTALL_LIBDIR})
set_target_properties(kobd kobctl PROPERTIES INSTALL_RPATH "$ORIGIN/${KOBD_LIBRARIES_FROM_PROGRAMS};$ORIGIN")
set_target_properties(kobd_bus kobd_host kobd_client PROPERTIES INSTALL_RPATH "$ORIGIN")
set_target_properties(kobd kobctl kobd_bus kobd_host kobd_client uci PROPERTIES BUILD_WITH_INSTALL_RPATH ON)
install(TARGETS kobd RUNTIME DESTINATION ${CMAKE_INSTALL_SBINDIR})
install(TARGETS kobctl RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS uci RUNTIME DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/kobd)
if(KOBD_STATIC)
  # A static client library is nothing without the archives below it.
  install(TARGETS kobd_client kobd_client_dictionary kobd_client_log kobd_value_rule kobd_bus kobd_tlv EXPORT kobd_client
    ARCHIVE COMPONENT development)
else()
  install(TARGETS kobd_client kobd_bus EXPORT kobd_client LIBRARY NAMELINK_COMPONENT development)
  install(TARGETS kobd_host LIBRARY)
endif()

# -- the gateway to HTTP
if(TARGET kobd-web)
  file(RELATIVE_PATH KOBD_LIBRARIES_FROM_WEB /p/${CMAKE_INSTALL_BINDIR} /p/${CMAKE_INSTALL_LIBDIR})
  set_target_properties(kobd-web PROPERTIES INSTALL_RPATH "$ORIGIN/${KOBD_LIBRARIES_FROM_WEB};$ORIGIN" BUILD_WITH_INSTALL_RPATH ON)
  install(TARGETS kobd-web RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT web)
endif()

# -- for those who write a client
install(FILES client/library/kobd_client.h TYPE INCLUDE COMPONENT development)
set(KOBD_PACKAGE_FOLDER ${CMAKE_INSTALL_LIBDIR}/cmake/kobd_client)
install(EXPORT kobd_client FILE kobd_client-config.cmake NAMESPACE kobd:: DESTINATION ${KOBD_PACKAGE_FOLDER}
  COMPONENT development)
write_basic_package_version_file(${KOBD_MADE}/kobd_client-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${KOBD_MADE}/kobd_client-config-version.cmake DESTINATION ${KOBD_PACKAGE_FOLDER} COMPONENT development)
file(RELATIVE_PATH KOBD_PREFIX_FROM_PKGCONFIG /p/${CMAKE_INSTALL_LIBDIR}/pkgconfig /p)
string(REGEX REPLACE "/$" "" KOBD_PREFIX_FROM_PKGCONFIG ${KOBD_PREFIX_FROM_PKGCONFIG})
if(KOBD_STATIC)
  set(KOBD_PKGCONFIG_LIBRARIES 
      "-lkobd_client -lkobd_client_dictionary -lkobd_client_log -lkobd_value_rule -lkobd_tlv -lkobd_bus -l${KOBD_CXX_LIBRARY}")
else()
  set(KOBD_PKGCONFIG_LIBRARIES "-lkobd_client")
endif()
configure_file(${KOBD_PACKAGING}/kobd_client.pc.in ${KOBD_MADE}/kobd_client.pc @ONLY)
install(FILES ${KOBD_MADE}/kobd_client.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

# -- for Python: where Debian's interpreter looks. Its package only: other systems have other folders.
install(DIRECTORY python/kobd DESTINATION lib/python3/dist-packages COMPONENT python EXCLUDE_FROM_ALL
  FILES_MATCHING PATTERN "*.py" PATTERN "py.typed" PATTERN "__pycache__" EXCLUDE PATTERN ".mypy_cache" EXCLUDE)
install(DIRECTORY python/examples DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/python3-kobd COMPONENT python
  EXCLUDE_FROM_ALL FILES_MATCHING PATTERN "*.py" PATTERN "__pycache__" EXCLUDE)

# -- pages: some written, some made from the pages of docs/ so that both say the same
foreach(page kobd.8 kobd-state.5)
  configure_file(${KOBD_PACKAGING}/man/${page}.in ${KOBD_MADE}/${page} @ONLY)
endforeach()
configure_file(${KOBD_PACKAGING}/man/kobctl.1.in ${KOBD_MADE}/kobctl.1.in @ONLY)
set(KOBD_COMMANDS ${CMAKE_SOURCE_DIR}/scripts/commands-to-man ${CMAKE_SOURCE_DIR}/client/commands/commands.def)
add_custom_command(OUTPUT ${KOBD_MADE}/kobctl.1 DEPENDS ${KOBD_COMMANDS} ${KOBD_MADE}/kobctl.1.in VERBATIM
  COMMAND sh -c "exec \"$0\" \"$@\" <'${KOBD_MADE}/kobctl.1.in' >'${KOBD_MADE}/kobctl.1'" ${KOBD_COMMANDS})
function(kobd_page_from_docs document section what)
  set(page ${KOBD_MADE}/kobd-${document}.${section})
  set(command ${CMAKE_SOURCE_DIR}/scripts/markdown-to-man)
  set(source ${CMAKE_SOURCE_DIR}/docs/${document}.md)
  add_custom_command(OUTPUT ${page} DEPENDS ${command} ${source} VERBATIM
    COMMAND sh -c "exec \"$0\" \"$@\" <'${source}' >'${page}'" ${command} kobd-${document} ${section} ${what} ${PROJECT_VERSION})
  set_property(GLOBAL APPEND PROPERTY KOBD_MADE_PAGES_${section} ${page})
endfunction()
kobd_page_from_docs(protocol 5 "the messages of kobd and the bus that carries them")
kobd_page_from_docs(uci 5 "the cellular tables of kobd and the uci of the host platform")
kobd_page_from_docs(rpcd 5 "the methods of kobd on ubus, for LuCI and scripts")
kobd_page_from_docs(simulator 5 "scenarios, and what moves in the imitated router")
if(TARGET kobd-web)
  kobd_page_from_docs(web 1 "the gateway of kobd to HTTP, with its page")
endif()
get_property(KOBD_MADE_PAGES GLOBAL PROPERTY KOBD_MADE_PAGES_5)
get_property(KOBD_WEB_PAGE GLOBAL PROPERTY KOBD_MADE_PAGES_1)
add_custom_target(kobd_pages ALL DEPENDS ${KOBD_MADE}/kobctl.1 ${KOBD_MADE_PAGES} ${KOBD_WEB_PAGE})
install(FILES ${KOBD_MADE}/kobctl.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
if(TARGET kobd-web)
  install(FILES ${KOBD_WEB_PAGE} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT web)
  install(FILES docs/web.md TYPE DOC COMPONENT web)
endif()
install(FILES ${KOBD_MADE}/kobd.8 DESTINATION ${CMAKE_INSTALL_MANDIR}/man8)
install(FILES ${KOBD_MADE}/kobd-state.5 ${KOBD_MADE_PAGES} DESTINATION ${CMAKE_INSTALL_MANDIR}/man5)
install(FILES completion/kobctl.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME kobctl)
install(FILES completion/kobctl.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
if(CMAKE_INSTALL_PREFIX STREQUAL /usr)  # where Debian's zsh looks for those of packages
  set(KOBD_ZSH_FOLDER vendor-completions)
else()
  set(KOBD_ZSH_FOLDER site-functions)
endif()
install(FILES completion/kobctl.zsh DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/${KOBD_ZSH_FOLDER} RENAME _kobctl)
install(DIRECTORY scenarios DESTINATION ${CMAKE_INSTALL_DATADIR}/kobd)
install(FILES README.md CHANGELOG.md docs/architecture.md docs/comparison.md docs/json.md docs/json.schema.json docs/porting.md docs/protocol.md docs/python.md docs/robustness.md
  docs/rpcd.md docs/security.md docs/simulator.md docs/uci.md docs/usp.md docs/kobd.lua TYPE DOC)

# -- service of hosts with systemd or with init scripts; OpenWrt's package brings its own. Written when
# they are installed, because `cmake --install --prefix` decides only then where the programs are.
install(CODE "
  cmake_path(APPEND CMAKE_INSTALL_PREFIX \"${CMAKE_INSTALL_SBINDIR}\" OUTPUT_VARIABLE KOBD_SBIN_FOLDER)
  cmake_path(APPEND CMAKE_INSTALL_PREFIX \"${CMAKE_INSTALL_BINDIR}\" OUTPUT_VARIABLE KOBD_BIN_FOLDER)
  foreach(file kobd.service kobd.init)
    configure_file(\"${KOBD_PACKAGING}/debian/\${file}.in\" \"${KOBD_MADE}/\${file}\" @ONLY)
  endforeach()")
install(FILES ${KOBD_MADE}/kobd.service DESTINATION lib/systemd/system)
install(FILES ${KOBD_PACKAGING}/debian/kobd.tmpfiles DESTINATION lib/tmpfiles.d RENAME kobd.conf)
# Not in /etc/init.d, so that nothing leaves the prefix: whoever wants it there makes a link.
install(PROGRAMS ${KOBD_MADE}/kobd.init DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/kobd RENAME init)

# -- Debian packages: kobd with everything a router needs, libkobd-dev and python3-kobd for those who write a client,
# kobd-web
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kobd)
set(KOBD_PACKAGE_CONTACT "kobd maintainers <kobd@localhost>" CACHE STRING "Who answers for the Debian packages")
set(CPACK_PACKAGE_CONTACT ${KOBD_PACKAGE_CONTACT})
set(CPACK_SET_DESTDIR ON)  # the service files tell the prefix
set(CPACK_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime development python)
set(CPACK_KOBD_DEBIAN_PACKAGES kobd libkobd-dev python3-kobd)  # their names, in the same order
set(CPACK_PRE_BUILD_SCRIPTS ${KOBD_PACKAGING}/debian/finish.cmake)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME kobd)
set(CPACK_DEBIAN_RUNTIME_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION net)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS procps)  # sysctl, for the kernel's message limits
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SUGGESTS "bash-completion, libedit2, man-db")
# Each its own first line: without a summary for all, the description is taken as it is.
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "Configuration and status daemon of an LTE/5G router\n\
Serves named objects and tables over a message bus and keeps them in readable\nfiles; with kobctl, its command line.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  ${KOBD_PACKAGING}/debian/postinst ${KOBD_PACKAGING}/debian/prerm ${KOBD_PACKAGING}/debian/postrm
  ${KOBD_PACKAGING}/debian/triggers ${KOBD_MADE}/shlibs)
configure_file(${KOBD_PACKAGING}/debian/shlibs.in ${KOBD_MADE}/shlibs @ONLY)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libkobd-dev)
set(CPACK_DEBIAN_DEVELOPMENT_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "kobd (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Client library of kobd, for those who write a client\n\
Calls with deadlines, decoded replies, result codes with their texts, and\nwatching: the header, the link name, and files for pkg-config and CMake.")
set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-kobd)
set(CPACK_DEBIAN_PYTHON_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "kobd (>= ${PROJECT_VERSION}), python3 (>= 3.9)")
set(CPACK_DEBIAN_PYTHON_PACKAGE_SHLIBDEPS OFF)
set(CPACK_COMPONENT_PYTHON_DESCRIPTION "Python package of kobd, for scripts and tests\n\
Objects, tables, announcements and the simulator of the imitated router, over\nthe client library.")
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
  ${KOBD_PACKAGING}/debian/python/postinst ${KOBD_PACKAGING}/debian/python/prerm)
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_STRICT_PERMISSION ON)
if(TARGET kobd-web)
  list(APPEND CPACK_COMPONENTS_ALL web)
  list(APPEND CPACK_KOBD_DEBIAN_PACKAGES kobd-web)
  set(CPACK_DEBIAN_WEB_PACKAGE_NAME kobd-web)
  set(CPACK_DEBIAN_WEB_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_WEB_PACKAGE_SECTION net)
  set(CPACK_DEBIAN_WEB_PACKAGE_DEPENDS "kobd (= ${PROJECT_VERSION})")
  set(CPACK_COMPONENT_WEB_DESCRIPTION "Gateway of kobd to HTTP, with a page\n\
Serves the objects and tables of kobd to programs of the same machine, with\nJSON, events and a page that shows, changes and plots them.")
endif()
include(CPack)
