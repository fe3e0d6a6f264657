# 32-bit ARM with hardware floating point; the compiler is arm-linux-gnueabihf-g++ (Debian package
# g++-arm-linux-gnueabihf).
#
#   CMAKE_SYSROOT           the folder with the device's usr/include and usr/lib, the only place of headers and libraries
#   CMAKE_FIND_ROOT_PATH    further such folders
#
# If qemu-arm is installed, CMake and CTest run the programs with it, on the libraries of the sysroot.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)

set(triplet arm-linux-gnueabihf)
set(CMAKE_C_COMPILER ${triplet}-gcc)
set(CMAKE_CXX_COMPILER ${triplet}-g++)

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

if(CMAKE_SYSROOT)
  set(ENV{PKG_CONFIG_SYSROOT_DIR} ${CMAKE_SYSROOT})
  set(ENV{PKG_CONFIG_LIBDIR} "${CMAKE_SYSROOT}/usr/lib/${triplet}/pkgconfig:${CMAKE_SYSROOT}/usr/lib/pkgconfig")
  unset(ENV{PKG_CONFIG_PATH})

  find_program(QEMU_ARM NAMES qemu-arm qemu-arm-static)
  mark_as_advanced(QEMU_ARM)
  if(QEMU_ARM)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${QEMU_ARM} -L ${CMAKE_SYSROOT})
  endif()
endif()
