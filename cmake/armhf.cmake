# 32-bit ARM with Debian's cross compiler, for processors with NEON. SLATE_ROOT in the environment is a root of
# tools/make-root; Qt's tools are this machine's.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
# The ABI note of GCC 7 is about libraries compiled before it.
set(CMAKE_C_FLAGS_INIT "-mfpu=neon")
set(CMAKE_CXX_FLAGS_INIT "${CMAKE_C_FLAGS_INIT} -Wno-psabi")

set(SLATE_ROOT "$ENV{SLATE_ROOT}" CACHE PATH "A root of tools/make-root armhf")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES SLATE_ROOT)
set(CMAKE_SYSROOT ${SLATE_ROOT})
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../tools/in-root ${SLATE_ROOT})

set(CMAKE_FIND_ROOT_PATH ${SLATE_ROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${SLATE_ROOT})
set(ENV{PKG_CONFIG_LIBDIR} ${SLATE_ROOT}/usr/lib/arm-linux-gnueabihf/pkgconfig:${SLATE_ROOT}/usr/share/pkgconfig)

file(GLOB linguist_tools /usr/lib/*-linux-gnu/cmake/Qt6LinguistTools)
cmake_path(GET linguist_tools PARENT_PATH host_packages)
set(QT_HOST_PATH /usr CACHE PATH "")
set(QT_HOST_PATH_CMAKE_DIR ${host_packages} CACHE PATH "")
set(Qt6LinguistTools_DIR ${linguist_tools} CACHE PATH "") # looked for in the root else
