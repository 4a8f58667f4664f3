# Rooms: a folder with a CMakeLists.txt is a room, with all folders below it that have none. A room names
# the rooms whose headers its sources may include; no other header of ours is on its include path, so that
# an include that points elsewhere does not build. scripts/check-includes reads the same lines.
#
#   kobd_room(NAME MAY ROOM...)       the room of this folder: headers, include path, target kobd_room_NAME
#   kobd_headers(NAME HEADER...)      a part of this room that others may include by a name of its own
#   kobd_sources(TARGET FILE...)      gives the room's files to a target; without FILE all of the room's .cpp
#
# Each room's headers are linked into KOBD_ROOMS/NAME under the paths that they are included by.
set(KOBD_ROOMS ${CMAKE_BINARY_DIR}/rooms)

function(kobd_link_header room file)
  file(RELATIVE_PATH path ${CMAKE_SOURCE_DIR} ${file})
  cmake_path(GET path PARENT_PATH folder)
  file(MAKE_DIRECTORY ${KOBD_ROOMS}/${room}/${folder})
  file(CREATE_LINK ${file} ${KOBD_ROOMS}/${room}/${path} SYMBOLIC)
endfunction()

# The files of this folder that match the patterns, and those of the folders below it that are no rooms.
function(kobd_room_files result)
  set(found)
  foreach(pattern ${ARGN})
    file(GLOB here CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${pattern})
    list(APPEND found ${here})
  endforeach()
  file(GLOB entries CONFIGURE_DEPENDS LIST_DIRECTORIES true ${CMAKE_CURRENT_SOURCE_DIR}/*)
  foreach(entry ${entries})
    if(IS_DIRECTORY ${entry} AND NOT EXISTS ${entry}/CMakeLists.txt)
      foreach(pattern ${ARGN})
        file(GLOB_RECURSE below CONFIGURE_DEPENDS ${entry}/${pattern})
        list(APPEND found ${below})
      endforeach()
    endif()
  endforeach()
  set(${result} ${found} PARENT_SCOPE)
endfunction()

function(kobd_room name)
  cmake_parse_arguments(ROOM "" "" "MAY" ${ARGN})
  file(REMOVE_RECURSE ${KOBD_ROOMS}/${name})
  file(MAKE_DIRECTORY ${KOBD_ROOMS}/${name})
  kobd_room_files(headers *.h *.def)
  foreach(header ${headers})
    kobd_link_header(${name} ${header})
  endforeach()
  add_library(kobd_room_${name} INTERFACE)
  foreach(room ${name} ${ROOM_MAY})
    target_include_directories(kobd_room_${name} INTERFACE $<BUILD_INTERFACE:${KOBD_ROOMS}/${room}>)
  endforeach()
  set(KOBD_ROOM ${name} PARENT_SCOPE)
endfunction()

function(kobd_headers name)
  file(REMOVE_RECURSE ${KOBD_ROOMS}/${name})
  foreach(header ${ARGN})
    kobd_link_header(${name} ${CMAKE_CURRENT_SOURCE_DIR}/${header})
  endforeach()
endfunction()

function(kobd_sources target)
  set(files ${ARGN})
  if(NOT files)
    kobd_room_files(files *.cpp)
  endif()
  target_sources(${target} PRIVATE ${files})
  target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:kobd_room_${KOBD_ROOM}>)
endfunction()
