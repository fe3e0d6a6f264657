# Tests start programs from VESK_RUN_DIRECTORY, usually the folder in which they are built. With an emulator it holds a script for
# each program, since the kernel can't start them itself.

set(VESK_RUN_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
if(NOT CMAKE_CROSSCOMPILING_EMULATOR)
  return()
endif()
set(VESK_RUN_DIRECTORY ${CMAKE_BINARY_DIR}/emulated)

function(vesk_emulate_programs directory)
  get_property(targets DIRECTORY ${directory} PROPERTY BUILDSYSTEM_TARGETS)
  list(JOIN CMAKE_CROSSCOMPILING_EMULATOR "' '" emulator)
  foreach(target ${targets})
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "EXECUTABLE")
      file(GENERATE OUTPUT ${VESK_RUN_DIRECTORY}/$<TARGET_FILE_NAME:${target}>
        CONTENT "#!/bin/sh\nexec '${emulator}' '$<TARGET_FILE:${target}>' \"$@\"\n"
        FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
    endif()
  endforeach()
  get_property(subdirectories DIRECTORY ${directory} PROPERTY SUBDIRECTORIES)
  foreach(subdirectory ${subdirectories})
    vesk_emulate_programs(${subdirectory})
  endforeach()
endfunction()

# Deferred until all targets are known.
cmake_language(DEFER DIRECTORY ${PROJECT_SOURCE_DIR} CALL vesk_emulate_programs ${PROJECT_SOURCE_DIR})
