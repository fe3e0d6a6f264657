# The client library and the two targets that programs use, in this tree as in the installed one (see VeskInstall.cmake).

# The sources are compiled once: the shared library exports the public interface, the tests link the objects and reach the rest.
add_library(vesk_client_objects OBJECT)
set_target_properties(vesk_client_objects PROPERTIES
  POSITION_INDEPENDENT_CODE ON
  CXX_VISIBILITY_PRESET hidden
  VISIBILITY_INLINES_HIDDEN ON)
target_include_directories(vesk_client_objects
  PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
  PRIVATE ${PROJECT_SOURCE_DIR})
target_link_libraries(vesk_client_objects
  PUBLIC vesk::binder vesk::utils vesk::log
  PRIVATE vesk_compile Threads::Threads)
target_compile_options(vesk_client_objects PRIVATE $<$<CONFIG:Release>:-Os>)
foreach(folder ipc array call config database misc relay externalkey)
  add_subdirectory(${folder})
endforeach()

add_library(vesk_client SHARED)
add_library(vesk::client ALIAS vesk_client)
# The platform's headers are not part of the interface: an application in C has no use for them.
target_include_directories(vesk_client
  INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
# The objects bring the platform's libraries already, but only a direct link is recorded for the users of the installed library.
target_link_libraries(vesk_client PRIVATE vesk_client_objects vesk::binder vesk::utils vesk::log)
set_target_properties(vesk_client PROPERTIES EXPORT_NAME client)
if(VESK_PLATFORM STREQUAL "host")
  set_target_properties(vesk_client PROPERTIES INSTALL_RPATH "$ORIGIN")
endif()

# Binder threads may be in its code until the process is gone: dlclose() must not unmap it.
target_link_options(vesk_client PRIVATE -Wl,-z,nodelete)
# Most relocations fill virtual tables. Bound at link time, they need no symbol look-up.
target_link_options(vesk_client PRIVATE -Wl,-Bsymbolic-functions)
include(CheckLinkerFlag)
# No page padding between code and constants.
check_linker_flag(CXX -Wl,-z,noseparate-code VESK_HAS_NOSEPARATE_CODE)
if(VESK_HAS_NOSEPARATE_CODE)
  target_link_options(vesk_client PRIVATE -Wl,-z,noseparate-code)
endif()
# RELR: about one bit instead of 24 bytes for a relocation. It needs support in the loader, which glibc has from 2.36 on; off for a
# device, whose loader may have none.
check_linker_flag(CXX -Wl,-z,pack-relative-relocs VESK_HAS_PACKED_RELOCATIONS)
set(pack_relocations OFF)
if(VESK_PLATFORM STREQUAL "host")
  set(pack_relocations ${VESK_HAS_PACKED_RELOCATIONS})
endif()
option(VESK_PACK_RELOCATIONS "Pack the library's relative relocations" ${pack_relocations})
if(VESK_PACK_RELOCATIONS)
  target_link_options(vesk_client PRIVATE -Wl,-z,pack-relative-relocs)
endif()

add_library(vesk_service INTERFACE)
add_library(vesk::service ALIAS vesk_service)
target_link_libraries(vesk_service INTERFACE vesk_client vesk::binder vesk::utils vesk::log)
target_compile_features(vesk_service INTERFACE cxx_std_20)
set_target_properties(vesk_service PROPERTIES EXPORT_NAME service)
