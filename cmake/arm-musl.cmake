# The router's processor and C library: 32-bit ARM, hard float, musl. The compiler is the one that
# scripts/fetch-cross-compiler puts into .cache/cross; programs run here under qemu.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(KOBD_CROSS ${CMAKE_CURRENT_LIST_DIR}/../scripts/cross)
set(CMAKE_C_COMPILER ${KOBD_CROSS}/cc)
set(CMAKE_CXX_COMPILER ${KOBD_CROSS}/c++)
set(CMAKE_AR ${KOBD_CROSS}/ar CACHE FILEPATH "archiver")
set(CMAKE_RANLIB ${KOBD_CROSS}/ranlib CACHE FILEPATH "archive indexer")
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm-static)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE NEVER)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
