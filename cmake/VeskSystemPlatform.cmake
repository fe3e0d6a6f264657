# Finds the device's libbinder, libutils and liblog and their headers as targets vesk::binder, vesk::utils and
# vesk::log, or sets VESK_PLATFORM_MISSING to an error message. CMAKE_SYSROOT, CMAKE_FIND_ROOT_PATH and
# CMAKE_PREFIX_PATH are honoured in the usual way; a directory that is not found can be given as
# VESK_<LIB>_INCLUDE_DIR, a library as VESK_<LIB>_LIBRARY.
# The installed package includes this file too, so nothing here may depend on this project's build.

function(vesk_system_library name header)
  string(TOUPPER ${name} upper)
  find_path(VESK_${upper}_INCLUDE_DIR ${header} DOC "Directory that has <${header}>")
  find_library(VESK_${upper}_LIBRARY ${name} DOC "The device's lib${name}.so")
  mark_as_advanced(VESK_${upper}_INCLUDE_DIR VESK_${upper}_LIBRARY)
  foreach(what INCLUDE_DIR LIBRARY)
    if(NOT VESK_${upper}_${what})
      string(APPEND VESK_PLATFORM_MISSING
        "vesk_client needs the platform's lib${name}.so and <${header}>: VESK_${upper}_${what} was not found. "
        "Point CMAKE_SYSROOT or CMAKE_PREFIX_PATH at the device's files, or set VESK_${upper}_${what}.\n")
    endif()
  endforeach()
  set(VESK_PLATFORM_MISSING "${VESK_PLATFORM_MISSING}" PARENT_SCOPE)
  if(NOT VESK_PLATFORM_MISSING AND NOT TARGET vesk::${name})
    # IMPORTED makes its headers system headers: their warnings are suppressed.
    add_library(vesk::${name} SHARED IMPORTED GLOBAL)
    set_target_properties(vesk::${name} PROPERTIES
      IMPORTED_LOCATION "${VESK_${upper}_LIBRARY}"
      INTERFACE_INCLUDE_DIRECTORIES "${VESK_${upper}_INCLUDE_DIR}"
      INTERFACE_LINK_LIBRARIES "${ARGN}")
  endif()
endfunction()

set(VESK_PLATFORM_MISSING)
vesk_system_library(log android/log.h)
vesk_system_library(utils utils/RefBase.h vesk::log)
vesk_system_library(binder binder/Parcel.h vesk::utils)

# A platform built without type information has none to derive from.
set(VESK_PLATFORM_CXX_FLAGS)
if(NOT VESK_PLATFORM_MISSING)
  file(STRINGS "${VESK_BINDER_LIBRARY}" type_information LIMIT_COUNT 1 REGEX "_ZTIN7android7BBinderE")
  if(NOT type_information)
    set(VESK_PLATFORM_CXX_FLAGS -fno-rtti)
  endif()
  set_property(TARGET vesk::binder PROPERTY
    INTERFACE_COMPILE_OPTIONS "$<$<COMPILE_LANGUAGE:CXX>:${VESK_PLATFORM_CXX_FLAGS}>")
endif()
